// The candidates that a grid names for a query.
#pragma once

#include <cstddef>
#include <type_traits>

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
    for (int k = 0; k < candidates.count; ++k) {
        const T* word = words + std::ptrdiff_t{candidates.list[k]} * book.rowStep;
        Vorn32f d = 0;
        for (int i = 0; i < query.width; ++i) {
            const auto w = static_cast<Vorn32f>(word[i]);
            d = query.weight == nullptr ? plusSquare(d, query.x[i], w) : plusSquare(d, query.x[i], w, query.weight[i]);
        }
        found.meet(candidates.list[k], d);
    }
    return found;
}

}  // namespace vorn::vq
