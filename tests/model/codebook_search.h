// Plain models of the search of a codebook: the nearest word by grid, tree or scan, and words in order. They read the
// record as it stands.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "vornsr.h"
#include "vq/codebook/state.h"

namespace model {

inline constexpr float largest = 3.4028235e38f;

struct Nearest {
    int index = -1;
    float distance = largest;  // squared
};

template <class T>
const T* wordOf(const VornCdbkState& book, int index) {
    return static_cast<const T*>(book.words) + static_cast<std::ptrdiff_t>(index) * book.rowStep;
}

// The sum of squares from 0, in singles, with weights or without.
template <class T>
float squares(const T* a, const T* b, const T* weight, int len) {
    volatile float sum = 0;
    for (int i = 0; i < len; ++i) {
        volatile float difference = static_cast<float>(a[i]) - static_cast<float>(b[i]);
        volatile float term = difference * difference;
        if (weight != nullptr) term = term * static_cast<float>(weight[i]);
        sum = sum + term;
    }
    return sum;
}

inline bool isBelowByTolerance(float a, float b) { return static_cast<double>(a) * 1.000001 < static_cast<double>(b); }
inline bool isAboutEqual(float a, float b) {
    const double larger = a > b ? a : b;
    return std::fabs(static_cast<double>(a) - static_cast<double>(b)) <= 0.0001 * std::fabs(larger);
}

template <class T>
const T* weightsOf(const VornCdbkState& book) {
    return book.mode & 2 ? static_cast<const T*>(book.weights) : nullptr;
}

template <class T>
Nearest nearestOf(const VornCdbkState& book, const T* x, const std::vector<int>& candidates) {
    Nearest best;
    for (const int j : candidates) {
        const float d = squares(x, wordOf<T>(book, j), weightsOf<T>(book), book.vecLen);
        if (isBelowByTolerance(d, best.distance)) best = {j, d};
    }
    return best;
}

template <class T>
Nearest byScan(const VornCdbkState& book, const T* x) {
    std::vector<int> all;
    for (int j = 0; j < book.cdbkSize; ++j) all.push_back(j);
    return nearestOf(book, x, all);
}

template <class T>
int cellNumber(float v, int cells) {
    if (std::isnan(v) || v < 0) return -1;
    double moved = v;
    if (sizeof(T) == 2) moved += 0.001;
    return moved >= static_cast<double>(cells) ? cells : static_cast<int>(moved);
}
template <class T>
Nearest byGrid(const VornCdbkState& book, const T* x) {
    const int* list;
    int size;
    if (book.vecLen == 1) {
        const auto& line = *static_cast<const vorn::vq::Line*>(book.grid);
        const int c = cellNumber<T>((static_cast<float>(x[0]) - line.low) / line.cellWidth, line.cells);
        list = line.lists[c + 1];
        size = line.sizes[c + 1];
    } else {
        const auto& square = *static_cast<const vorn::vq::Square*>(book.grid);
        const int cx = cellNumber<T>((static_cast<float>(x[0]) - square.lowX) / square.cellWidthX, square.cellsX);
        const int cy = cellNumber<T>((square.highY - static_cast<float>(x[1])) / square.cellWidthY, square.cellsY);
        const int entry = (cx + 1) + (cy + 1) * (square.cellsX + 2);
        list = square.lists[entry];
        size = square.sizes[entry];
    }
    return nearestOf(book, x, std::vector<int>(list, list + size));
}

template <class T>
float unweighted(const vorn::vq::Cluster& node, const T* x, int len) {
    return squares(static_cast<const T*>(node.centroid), x, static_cast<const T*>(nullptr), len);
}

// Without weights, by distance.
template <class T>
int byTree(const VornCdbkState& book, const T* x) {
    const vorn::vq::Cluster* node = book.root;
    while (!node->isLeaf) {
        const auto *l = node->left, *r = node->right;
        const float a1 = unweighted(l->isLeaf ? *l : *l->left, x, book.vecLen);
        const float a2 = unweighted(l->isLeaf ? *l : *l->right, x, book.vecLen);
        const float b1 = unweighted(r->isLeaf ? *r : *r->left, x, book.vecLen);
        const float b2 = unweighted(r->isLeaf ? *r : *r->right, x, book.vecLen);
        const auto beatsBoth = [&](float a) { return isBelowByTolerance(a, b1) && isBelowByTolerance(a, b2); };
        node = beatsBoth(a1) || beatsBoth(a2) ? l : r;
    }
    float d = unweighted(*node, x, book.vecLen);
    for (int n = 0; n < node->nearCount; ++n) {
        const float dn = unweighted(*node->near[n], x, book.vecLen);
        if (!isBelowByTolerance(dn, d) || isAboutEqual(dn, d)) continue;
        node = node->near[n];
        d = dn;
        n = -1;
    }
    return node->index;
}

// With weights, by the scores of the library's Gaussians, whose own models stand elsewhere: one call a centroid.
inline float scoreOf(const vorn::vq::Cluster& node, const Vorn32f* x, const Vorn32f* weight, int len) {
    float score = 0;
    const auto* row = static_cast<const Vorn32f*>(node.centroid);
    vornsLogGauss_32f_D2L(&row, x, weight, len, &score, 1, 0);
    return score;
}
inline float scoreOf(const vorn::vq::Cluster& node, const Vorn16s* x, const Vorn16s* weight, int len) {
    Vorn32s score = 0;
    const auto* row = static_cast<const Vorn16s*>(node.centroid);
    vornsLogGauss_16s32s_D2LSfs(&row, x, weight, len, &score, 1, 0,
                                static_cast<int>(std::log(static_cast<double>(len)) / std::log(2.0)) + 1);
    return static_cast<float>(score);
}
inline float singleScoreOf(const vorn::vq::Cluster& node, const Vorn32f* x, const Vorn32f* weight, int len) {
    float score = 0;
    vornsLogGaussSingle_32f(static_cast<const Vorn32f*>(node.centroid), x, weight, len, &score, 0);
    return score;
}
inline float singleScoreOf(const vorn::vq::Cluster& node, const Vorn16s* x, const Vorn16s* weight, int len) {
    Vorn32s score = 0;
    vornsLogGaussSingle_16s32s_Sfs(static_cast<const Vorn16s*>(node.centroid), x, weight, len, &score, 0,
                                   static_cast<int>(std::log(static_cast<double>(len)) / std::log(2.0)) + 1);
    return static_cast<float>(score);
}
template <class T>
int byWeightedTree(const VornCdbkState& book, const T* x) {
    const auto* weight = static_cast<const T*>(book.weights);
    const int len = book.vecLen;
    const vorn::vq::Cluster* node = book.root;
    while (!node->isLeaf) {
        const auto *l = node->left, *r = node->right;
        const float a1 = scoreOf(l->isLeaf ? *l : *l->left, x, weight, len);
        const float a2 = scoreOf(l->isLeaf ? *l : *l->right, x, weight, len);
        const float b1 = scoreOf(r->isLeaf ? *r : *r->left, x, weight, len);
        const float b2 = scoreOf(r->isLeaf ? *r : *r->right, x, weight, len);
        const bool left = (b1 * 1.000001 < a1 && b2 * 1.000001 < a1) || (b1 * 1.000001 < a2 && b2 * 1.000001 < a2);
        node = left ? l : r;
    }
    float d = singleScoreOf(*node, x, weight, len);
    for (int n = 0; n < node->nearCount; ++n) {
        const float s = scoreOf(*node->near[n], x, weight, len);
        if (!(d * 1.000001 < s) || isAboutEqual(s, d)) continue;
        node = node->near[n];
        d = s;
        n = -1;
    }
    return node->index;
}

// By the structure that the codebook has; of a tree the distance is that of the word.
template <class T>
Nearest nearest(const VornCdbkState& book, const T* x) {
    if (book.hint == 1) return book.mode & 1 ? byGrid(book, x) : byScan(book, x);
    const int index = book.mode & 2 ? byWeightedTree(book, x) : byTree(book, x);
    return {index, squares(x, wordOf<T>(book, index), static_cast<const T*>(book.weights), book.vecLen)};
}

inline float rootOf(float squared) { return static_cast<float>(std::sqrt(static_cast<double>(squared))); }

// The words in order, as far as any qualifies.
template <class T>
std::vector<Nearest> ranked(const VornCdbkState& book, const T* x, int ranks) {
    std::vector<float> scratch;
    for (int j = 0; j < book.cdbkSize; ++j) {
        scratch.push_back(squares(x, wordOf<T>(book, j), static_cast<const T*>(book.weights), book.vecLen));
    }
    std::vector<Nearest> order;
    float p = 0;
    int q = -1;
    for (int r = 0; r < ranks; ++r) {
        float best = largest;
        int b = -1, limit = q;
        for (int j = 0; j < book.cdbkSize; ++j) {
            const float v = scratch[static_cast<std::size_t>(j)];
            if (!std::isfinite(v)) continue;
            if (v * 1.000001 < best && p * 1.000001 < v) {
                best = v;
                b = j;
            }
            const double larger = v > p ? v : p;
            if (j > limit && std::fabs(static_cast<double>(v) - p) <= 1e-06 * std::fabs(larger)) {
                best = p;
                b = j;
                limit = book.cdbkSize;
            }
        }
        order.push_back({b, best});
        p = best;
        q = b;
    }
    return order;
}

}  // namespace model
