// The codebook context: its record, and the tree or the grid over its words.
#pragma once

#include <cstddef>

#include "frame/align.h"
#include "vornsr/vq.h"

namespace vorn::vq {

// A node of the tree of clusters.
struct Cluster {
    Vorn32f radius;  // twice the largest squared distance of a member from the centroid
    void* centroid;  // vecLen elements; a leaf's is its word
    int index;       // of the codeword, in a leaf
    int count;       // members; in an inner node, those that it had when it was split
    int isLeaf;
    int depth;  // 1 at the root
    Cluster *left, *right;
    int nearCount;
    Cluster** near;  // the nearest other leaves, nearest first
    void* quad;      // no search needs one: null
};

// Candidates of intervals, of codebooks of single numbers. Entry c + 1 serves cell c; the first and the last entry are
// for numbers beyond the range.
struct Line {
    int cells;
    Vorn32f cellWidth, low, high;
    int** lists;  // indices of codewords
    int* sizes;
};

// Candidates of rectangles, of codebooks of pairs: rows of cellsX + 2 entries, cellsY + 2 of them, with a ring around
// for pairs beyond the range. Columns count up from lowX, rows down from highY.
struct Square {
    int cellsX, cellsY;
    Vorn32f cellWidthX, cellWidthY, lowX, highY, highX, lowY;
    int** lists;
    int* sizes;
};

enum Hint : int { wordsAsGiven = 1, largestRadius = 2, mostMembers = 3 };
enum Mode : int { hasGrid = 1, isWeighted = 2 };

}  // namespace vorn::vq

struct VornCdbkState {
    int maxDepth;  // of the leaves; the last index where there is no tree
    int cdbkSize;
    int vecLen;
    int rowStep;  // elements from word to word
    int hint;
    void* words;
    vorn::vq::Cluster* root;
    int mode;
    void* weights;     // vecLen, of the element type
    void* grid;        // a Line or a Square
    int indexBits;     // of the largest index
    Vorn32f* scratch;  // cdbkSize distances
};

namespace vorn::vq {

// The record behind a caller's pointer. A block may start at any address; the record stands on the first suitable one.
inline VornCdbkState* recordAt(VornCdbkState* pCdbk) { return alignedUp(pCdbk, alignof(VornCdbkState)); }
inline const VornCdbkState* recordAt(const VornCdbkState* pCdbk) { return alignedUp(pCdbk, alignof(VornCdbkState)); }

}  // namespace vorn::vq
