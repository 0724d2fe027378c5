// Sums and sums of squares down the columns of a matrix, in single precision, the rows taken in pairs.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "loops/cache.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::accumulate {

template <class V>
using HalfOf = decltype(lowHalf(std::declval<V>()));

template <class V>
VORN_INLINE V singlesAt(const Vorn32f* p) {
    return load<V>(p);
}
template <class V>
VORN_INLINE V singlesAt(const Vorn16s* p) {
    return toFloat(loadWidened<decltype(bitsOf(std::declval<V>()))>(p));
}

// The two sums of some columns, which are vectors or single columns.
template <class V>
struct ColumnSums {
    V sum, squares;
    VORN_INLINE void addPair(V first, V second) {
        sum = sum + (first + second);
        squares = squares + (first * first + second * second);
    }
    VORN_INLINE void addLast(V row) {
        sum = sum + row;
        squares = squares + row * row;
    }
};

// So few columns, read by at(row, k), that their sums stay in registers over the whole height.
template <int count, class V, class RowsOf, class At>
VORN_INLINE void addInRegisters(RowsOf rows, std::ptrdiff_t height, ColumnSums<V> (&sums)[count], const At& at) {
    std::ptrdiff_t row = 0;
    for (; row + 2 <= height; row += 2) {
        const auto *first = rows[row], *second = rows[row + 1];
        for (int k = 0; k < count; ++k) sums[k].addPair(at(first, k), at(second, k));
    }
    if (row < height) {
        const auto* last = rows[row];
        for (int k = 0; k < count; ++k) sums[k].addLast(at(last, k));
    }
}

// Vectors side by side, the last of which may begin early so as to end at the last column.
template <class V, int count, class RowsOf>
VORN_INLINE void addToVectors(RowsOf rows, std::ptrdiff_t height, Vorn32f* sum, Vorn32f* squares,
                              std::ptrdiff_t width) {
    const auto place = [last = width - V::lanes](int k) __attribute__((always_inline)) {
        return k == count - 1 ? last : std::ptrdiff_t{k} * V::lanes;
    };
    ColumnSums<V> sums[count];
    for (int k = 0; k < count; ++k) sums[k] = {load<V>(sum + place(k)), load<V>(squares + place(k))};
    addInRegisters(
        rows, height,
        sums, [&](const auto* row, int k) __attribute__((always_inline)) { return singlesAt<V>(row + place(k)); });
    for (int k = 0; k < count; ++k) {
        store(sum + place(k), sums[k].sum);
        store(squares + place(k), sums[k].squares);
    }
}

template <int width, class RowsOf>
VORN_INLINE void addToFew(RowsOf rows, std::ptrdiff_t height, Vorn32f* sum, Vorn32f* squares) {
    ColumnSums<Vorn32f> sums[width];
    for (int k = 0; k < width; ++k) sums[k] = {sum[k], squares[k]};
    addInRegisters(
        rows, height, sums,
        [](const auto* row, int k) __attribute__((always_inline)) { return static_cast<Vorn32f>(row[k]); });
    for (int k = 0; k < width; ++k) {
        sum[k] = sums[k].sum;
        squares[k] = sums[k].squares;
    }
}

// Of wider matrices some rows at once cross all columns. That is no order in which the processor would see the next
// rows coming: of a large matrix each of these rows asks, once a line of the cache, for the one that stands as far
// behind it as they are many.
constexpr std::ptrdiff_t cachedBytes = 1 << 20;  // what a second-level cache holds anyway

template <int count, bool fetches, class V, class RowsOf>
VORN_INLINE void addRowsAtOnce(RowsOf rows, std::ptrdiff_t row, Vorn32f* sum, Vorn32f* squares, std::ptrdiff_t width) {
    static_assert(count == 1 || count % 2 == 0);
    using Source = std::remove_cvref_t<decltype(rows[0][0])>;
    const Source* x[count];
    for (int r = 0; r < count; ++r) x[r] = rows[row + r];
    const auto sumsAt = [&](std::ptrdiff_t column) __attribute__((always_inline)) {
        ColumnSums<V> sums = {load<V>(sum + column), load<V>(squares + column)};
        if constexpr (count == 1) {
            sums.addLast(singlesAt<V>(x[0] + column));
        } else {
            for (int r = 0; r < count; r += 2) {
                sums.addPair(singlesAt<V>(x[r] + column), singlesAt<V>(x[r + 1] + column));
            }
        }
        return sums;
    };
    const auto put = [&](std::ptrdiff_t column, const ColumnSums<V>& sums) __attribute__((always_inline)) {
        store(sum + column, sums.sum);
        store(squares + column, sums.squares);
    };
    [[maybe_unused]] const auto ahead = static_cast<std::uintptr_t>(
        (reinterpret_cast<std::intptr_t>(x[count > 1 ? 1 : 0]) - reinterpret_cast<std::intptr_t>(x[0])) * count);
    constexpr std::ptrdiff_t line = 64 / sizeof(Source);
    // The last vector may begin early: it is computed before its columns are stored.
    const std::ptrdiff_t end = width - V::lanes;
    const ColumnSums<V> last = sumsAt(end);
    for (std::ptrdiff_t column = 0; column < end; column += V::lanes) {
        if (fetches && column % line == 0) {
            for (int r = 0; r < count; ++r) {
                fetchAhead<0>(reinterpret_cast<const char*>(reinterpret_cast<std::uintptr_t>(x[r] + column) + ahead));
            }
        }
        put(column, sumsAt(column));
    }
    put(end, last);
}

// sum[j] += x[0][j] + x[1][j], squares[j] += x[0][j]^2 + x[1][j]^2, and so on; an odd last row alone.
template <class V, class RowsOf>
VORN_INLINE void addRowPairsOf(RowsOf rows, std::ptrdiff_t height, Vorn32f* sum, Vorn32f* squares,
                               std::ptrdiff_t width) {
    if (width < V::lanes) {
        if constexpr (sizeof(V) > 16) {
            return addRowPairsOf<HalfOf<V>>(rows, height, sum, squares, width);
        } else {
            switch (width) {
                case 1:
                    return addToFew<1>(rows, height, sum, squares);
                case 2:
                    return addToFew<2>(rows, height, sum, squares);
                default:
                    return addToFew<3>(rows, height, sum, squares);
            }
        }
    }
    if (width == V::lanes) return addToVectors<V, 1>(rows, height, sum, squares, width);
    if (width <= 2 * V::lanes) return addToVectors<V, 2>(rows, height, sum, squares, width);
    if constexpr (sizeof(V) == sizeof(f32xN)) {
        if (width <= 3 * V::lanes) return addToVectors<V, 3>(rows, height, sum, squares, width);
        if (width <= 4 * V::lanes) return addToVectors<V, 4>(rows, height, sum, squares, width);
        constexpr int atOnce = 8;
        std::ptrdiff_t row = 0;
        if (height > cachedBytes / (width * static_cast<std::ptrdiff_t>(sizeof(rows[0][0])))) {
            for (; row + atOnce <= height; row += atOnce)
                addRowsAtOnce<atOnce, true, V>(rows, row, sum, squares, width);
        }
        for (; row + atOnce <= height; row += atOnce) addRowsAtOnce<atOnce, false, V>(rows, row, sum, squares, width);
        for (; row + 2 <= height; row += 2) addRowsAtOnce<2, false, V>(rows, row, sum, squares, width);
        if (row < height) addRowsAtOnce<1, false, V>(rows, row, sum, squares, width);
    }
}

template <class RowsOf>
void addRowPairs(RowsOf rows, std::ptrdiff_t height, Vorn32f* sum, Vorn32f* squares, std::ptrdiff_t width) {
    addRowPairsOf<f32xN>(rows, height, sum, squares, width);
}

template <class RowsOf>
void sumRowPairs(RowsOf rows, std::ptrdiff_t height, Vorn32f* sum, Vorn32f* squares, std::ptrdiff_t width) {
    std::fill_n(sum, width, 0.0f);
    std::fill_n(squares, width, 0.0f);
    addRowPairs(rows, height, sum, squares, width);
}

}  // namespace vorn::accumulate
