// Exact sums down the columns of 16-bit integers and of their squares.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "estimation/columns/walk.h"
#include "frame/rows.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::columns {

// So many columns are summed together, their sums on the stack: one vector more than a round number, so that no few
// columns are left behind.
constexpr std::ptrdiff_t panelColumns = 256, mostPanelColumns = panelColumns + 8;
static_assert(mostPanelColumns - panelColumns == i16x8::lanes);

// Calls use(first, columns) for panels that cover all columns.
template <class Use>
void overPanels(std::ptrdiff_t width, const Use& use) {
    std::ptrdiff_t first = 0;
    while (first < width) {
        const std::ptrdiff_t left = width - first, columns = left <= mostPanelColumns ? left : panelColumns;
        use(first, columns);
        first += columns;
    }
}

// For so many rows 32 bits hold each of: a sum, and the sums of the lower and of the upper halves of the squares, two
// squares at a time.
constexpr std::ptrdiff_t exactRows = 1 << 15;
struct ExactParts {
    Vorn32s sum[mostPanelColumns], low[mostPanelColumns], high[mostPanelColumns];
    void clear(std::ptrdiff_t columns, bool squares) {
        std::fill_n(sum, columns, 0);
        if (!squares) return;
        std::fill_n(low, columns, 0);
        std::fill_n(high, columns, 0);
    }
};

template <class V>
VORN_INLINE Halves<V> inOrderPlus(const Vorn32s* p, Halves<V> x) {
    x = inOrder(x);
    return {load<V>(p) + x.low, load<V>(p + V::lanes) + x.high};
}
template <class V>
VORN_INLINE void storeHalves(Vorn32s* p, Halves<V> x) {
    store(p, x.low);
    store(p + V::lanes, x.high);
}

// Two rows at a time: the elements of a column become neighbours, of which one instruction makes the sum, and another
// the sum of their squares (which is below 2^32: without a sign).
template <bool squares, int rows, class V>
VORN_INLINE void addExactRows(const Vorn16s* const (&x)[rows], ExactParts& parts, std::ptrdiff_t columns,
                              std::uintptr_t ahead) {
    using Sums = decltype(intsOf(V()));
    struct Of {
        Halves<Sums> sum, low, high;
    };
    const V ones = splat<V>(1);
    const Sums lowHalves = splat<Sums>(0xFFFF);
    const auto sumsAt = [&](std::ptrdiff_t column) __attribute__((always_inline)) {
        const Halves<Sums> zero = {splat<Sums>(0), splat<Sums>(0)};
        Of of = {zero, zero, zero};
        for (int r = 0; r < rows; r += 2) {
            const V next = r + 1 < rows ? load<V>(x[(r + 1) % rows] + column) : splat<V>(0);
            const auto pairs = zip(load<V>(x[r] + column), next);
            const V low = shortsOf(pairs.low), high = shortsOf(pairs.high);
            of.sum = {of.sum.low + mulAddPairs(low, ones), of.sum.high + mulAddPairs(high, ones)};
            if constexpr (squares) {
                const Sums lowSquares = mulAddPairs(low, low), highSquares = mulAddPairs(high, high);
                of.low = {of.low.low + (lowSquares & lowHalves), of.low.high + (highSquares & lowHalves)};
                of.high = {of.high.low + shiftRightLogical<16>(lowSquares),
                           of.high.high + shiftRightLogical<16>(highSquares)};
            }
        }
        of.sum = inOrderPlus(parts.sum + column, of.sum);
        if constexpr (squares) {
            of.low = inOrderPlus(parts.low + column, of.low);
            of.high = inOrderPlus(parts.high + column, of.high);
        }
        return of;
    };
    const auto put = [&](std::ptrdiff_t column, const Of& of) __attribute__((always_inline)) {
        storeHalves(parts.sum + column, of.sum);
        if constexpr (squares) {
            storeHalves(parts.low + column, of.low);
            storeHalves(parts.high + column, of.high);
        }
    };
    // The last vector may begin early: it is computed before its columns are stored.
    const std::ptrdiff_t end = columns - V::lanes;
    const Of last = sumsAt(end);
    for (std::ptrdiff_t column = 0; column < end; column += V::lanes) {
        if (ahead != 0) fetchRows(x, column, ahead);
        put(column, sumsAt(column));
    }
    put(end, last);
}

template <bool squares, class V, class RowsOf>
void addExactBlock(const RowsOf& rows, std::ptrdiff_t begin, std::ptrdiff_t end, std::ptrdiff_t first,
                   std::ptrdiff_t columns, bool large, ExactParts& parts) {
    const auto add = [&]<int count>(std::ptrdiff_t row) __attribute__((always_inline)) {
        const Vorn16s* x[count];
        for (int r = 0; r < count; ++r) x[r] = keepApart(rows[row + r] + first);
        const std::uintptr_t ahead = large && count > 1 ? farAhead(x[0], x[count > 1 ? 1 : 0], count) : 0;
        addExactRows<squares, count, V>(x, parts, columns, ahead);
    };
    constexpr int atOnce = 8;
    for (; begin + atOnce <= end; begin += atOnce) add.template operator()<atOnce>(begin);
    for (; begin + 2 <= end; begin += 2) add.template operator()<2>(begin);
    if (begin < end) add.template operator()<1>(begin);
}
template <bool squares, class V>
void addExactBlockOfWide(AnyRows<const Vorn16s> rows, std::ptrdiff_t begin, std::ptrdiff_t end, std::ptrdiff_t first,
                         std::ptrdiff_t columns, bool large, ExactParts& parts) {
    if constexpr (sizeof(V) > 16) {
        if (columns < V::lanes) {
            return addExactBlockOfWide<squares, HalfOf<V>>(rows, begin, end, first, columns, large, parts);
        }
    }
    addExactBlock<squares, V>(rows, begin, end, first, columns, large, parts);
}
// Columns that fill no vector, from rows that are copied and filled up with zeros.
template <bool squares>
void addExactBlockOfNarrow(AnyRows<const Vorn16s> rows, std::ptrdiff_t begin, std::ptrdiff_t end, std::ptrdiff_t first,
                           std::ptrdiff_t columns, ExactParts& parts) {
    constexpr std::ptrdiff_t step = i16x8::lanes, most = 64;
    Vorn16s copy[most * step] = {};
    while (begin < end) {
        const std::ptrdiff_t count = std::min(most, end - begin);
        for (std::ptrdiff_t r = 0; r < count; ++r) std::copy_n(rows[begin + r] + first, columns, copy + r * step);
        addExactBlock<squares, i16x8>(Rows(static_cast<const Vorn16s*>(copy), step), 0, count, 0, step, false, parts);
        begin += count;
    }
}

// Adds the rows from begin on to the sums of the columns and, where squares is not null, to the sums of their squares.
// Stops in front of the first rows that bring a sum of squares above `most`; returns the first row not added.
template <bool squares>
std::ptrdiff_t addExactly(AnyRows<const Vorn16s> rows, std::ptrdiff_t begin, std::ptrdiff_t height,
                          std::ptrdiff_t first, std::ptrdiff_t columns, std::int64_t* sum,
                          std::int64_t* squareSum = nullptr, std::int64_t most = INT64_MAX) {
    const bool large = isLarge(rows[0], height, columns);
    while (begin < height) {
        const std::ptrdiff_t end = std::min(height, begin + exactRows);
        ExactParts parts;
        parts.clear(std::max<std::ptrdiff_t>(columns, i16x8::lanes), squares);
        if (columns < i16x8::lanes) {
            addExactBlockOfNarrow<squares>(rows, begin, end, first, columns, parts);
        } else {
            addExactBlockOfWide<squares, i16xN>(rows, begin, end, first, columns, large, parts);
        }
        if constexpr (squares) {
            const auto added = [&](std::ptrdiff_t j) { return parts.low[j] + (std::int64_t{parts.high[j]} << 16); };
            for (std::ptrdiff_t j = 0; j < columns; ++j) {
                if (squareSum[j] > most - added(j)) return begin;
            }
            for (std::ptrdiff_t j = 0; j < columns; ++j) squareSum[j] += added(j);
        }
        for (std::ptrdiff_t j = 0; j < columns; ++j) sum[j] += parts.sum[j];
        begin = end;
    }
    return height;
}

}  // namespace vorn::columns
