// The candidates that a grid names for a query.
#pragma once

#include <algorithm>
#include <cstddef>
#include <type_traits>

#include "simd/simd.h"
#include "vq/codebook/state.h"
#include "vq/search/distances.h"

namespace vorn::vq {

// The cell that a quotient falls into: -1 below the first one and for what is no number, the number of cells beyond the
// last one. Integers move up a little, lest one on a border falls below it by rounding.
template <class T>
int cellOf(Vorn32f quotient, int cells) {
    if (!(quotient >= 0.0f)) return -1;
    const Vorn64f moved = std::is_same_v<T, Vorn32f> ? Vorn64f{quotient} : quotient + 0.001;
    return moved >= cells ? cells : static_cast<int>(moved);
}

struct Candidates {
    const int* list;
    int count;
};

template <class T>
Candidates candidatesOf(const Line& line, const Vorn32f* x) {
    const std::ptrdiff_t entry = cellOf<T>((x[0] - line.low) / line.cellWidth, line.cells) + std::ptrdiff_t{1};
    return {line.lists[entry], line.sizes[entry]};
}
template <class T>
Candidates candidatesOf(const Square& square, const Vorn32f* x) {
    const std::ptrdiff_t column =
        cellOf<T>((x[0] - square.lowX) / square.cellWidthX, square.cellsX) + std::ptrdiff_t{1};
    const std::ptrdiff_t row = cellOf<T>((square.highY - x[1]) / square.cellWidthY, square.cellsY) + std::ptrdiff_t{1};
    const std::ptrdiff_t entry = column + row * (std::ptrdiff_t{square.cellsX} + 2);
    return {square.lists[entry], square.sizes[entry]};
}

template <class T>
Found searchGrid(const VornCdbkState& book, const Query& query) {
    const Candidates candidates = book.vecLen == 1 ? candidatesOf<T>(*static_cast<const Line*>(book.grid), query.x)
                                                   : candidatesOf<T>(*static_cast<const Square*>(book.grid), query.x);
    const T* words = static_cast<const T*>(book.words);
    Found found;
    constexpr int groups = 2, atOnce = 4 * groups;
    for (int first = 0; first < candidates.count; first += atOnce) {
        // Behind the last candidate it takes the place of those that fill up a group: again no nearer.
        const T* word[groups][4];
        for (int k = 0; k < atOnce; ++k) {
            const int candidate = candidates.list[std::min(first + k, candidates.count - 1)];
            word[k / 4][k % 4] = words + std::ptrdiff_t{candidate} * book.rowStep;
        }
        f32x4 sum[groups];
        distancesOfGroups(query, word, sum);
        // No distance is negative, so only one that is smaller can be below by the tolerance.
        const f32x4 best = splat<f32x4>(found.distance);
        if (!any((sum[0] < best) | (sum[1] < best))) continue;
        Vorn32f distance[atOnce];
        store(distance, sum[0]);
        store(distance + 4, sum[1]);
        const int count = std::min(atOnce, candidates.count - first);
        for (int k = 0; k < count; ++k) found.meet(candidates.list[first + k], distance[k]);
    }
    return found;
}

}  // namespace vorn::vq
