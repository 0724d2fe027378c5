// A block-diagonal matrix of inverse covariances, held in one allocation.
#pragma once

#include <cstddef>

#include "vornsr/scoring.h"

namespace vorn {

template <class T>
struct BlockDiagonal {
    T** rows;         // one pointer a matrix row, in order through all blocks
    int* blockSizes;  // the rows and columns of each block
    void* allocBase;  // the one block of memory that everything lies in
    int numBlocks;
    int totalSize;  // the sum of the block sizes: the length of a feature vector
};

}  // namespace vorn

struct VornBlockDMatrix_32f : vorn::BlockDiagonal<Vorn32f> {};
struct VornBlockDMatrix_64f : vorn::BlockDiagonal<Vorn64f> {};
struct VornBlockDMatrix_16s : vorn::BlockDiagonal<Vorn16s> {};
