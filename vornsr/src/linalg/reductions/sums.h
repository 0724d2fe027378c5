// Sums down the columns and along the rows of a matrix, of singles, of doubles, and of 16-bit integers in single.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "frame/rounding.h"
#include "loops/columns.h"
#include "simd/part.h"
#include "simd/simd.h"
#include "simd/tile.h"
#include "vornsr/types.h"

namespace vorn::reductions {

// ---- Down the columns: a column's sum takes the rows one by one, in their order.

// So few vectors stay in registers over the whole height.
template <class Group, class RowsOf, class T>
VORN_INLINE void addToGroup(Group group, RowsOf rows, std::ptrdiff_t height, T* sums) {
    using V = typename Group::V;
    V sum[Group::count];
    for (int k = 0; k < Group::count; ++k) sum[k] = load<V>(sums + group.at(k));
    for (std::ptrdiff_t row = 0; row < height; ++row) {
        const auto* x = rows[row];
        for (int k = 0; k < Group::count; ++k) sum[k] = sum[k] + loadAs<V>(x + group.at(k));
    }
    for (int k = 0; k < Group::count; ++k) store(sums + group.at(k), sum[k]);
}

template <int width, class RowsOf, class T>
VORN_INLINE void addToFew(RowsOf rows, std::ptrdiff_t height, T* sums) {
    T sum[width];
    std::copy_n(sums, width, sum);
    for (std::ptrdiff_t row = 0; row < height; ++row) {
        const auto* x = rows[row];
        for (int k = 0; k < width; ++k) sum[k] += static_cast<T>(x[k]);
    }
    std::copy_n(sum, width, sums);
}

// Of wider matrices some rows at once cross all columns.
template <int count, bool fetches, class RowsOf, class T>
VORN_INLINE void addRowsAtOnce(RowsOf rows, std::ptrdiff_t row, T* sums, std::ptrdiff_t width) {
    using V = Wide<T>;
    decltype(rows[0]) x[count];
    for (int r = 0; r < count; ++r) x[r] = rows[row + r];
    const auto sumAt = [&](std::ptrdiff_t column) __attribute__((always_inline)) {
        V sum = load<V>(sums + column);
        for (int r = 0; r < count; ++r) sum = sum + loadAs<V>(x[r] + column);
        return sum;
    };
    // The last vector may begin early: it is computed before its columns are stored.
    const std::ptrdiff_t end = width - V::lanes;
    const V last = sumAt(end);
    [[maybe_unused]] const std::uintptr_t ahead = farAhead(x[0], x[count > 1 ? 1 : 0], count);
    for (std::ptrdiff_t column = 0; column < end; column += V::lanes) {
        if constexpr (fetches) fetchRows(x, column, ahead);
        store(sums + column, sumAt(column));
    }
    store(sums + end, last);
}

// sums[j] += row 0 [j], += row 1 [j], and so on.
template <class RowsOf, class T>
void addRows(RowsOf rows, std::ptrdiff_t height, T* sums, std::ptrdiff_t width) {
    const bool done = asOneGroup<Wide<T>>(
        width, [&](auto group) __attribute__((always_inline)) { addToGroup(group, rows, height, sums); },
        [&]() __attribute__((always_inline)) {
            switch (width) {
                case 1:
                    return addToFew<1>(rows, height, sums);
                case 2:
                    return addToFew<2>(rows, height, sums);
                default:
                    return addToFew<3>(rows, height, sums);
            }
        });
    if (done) return;
    constexpr int atOnce = 8;
    std::ptrdiff_t row = 0;
    if (isLarge(rows[0], height, width)) {
        for (; row + atOnce <= height; row += atOnce) addRowsAtOnce<atOnce, true>(rows, row, sums, width);
    }
    for (; row + atOnce <= height; row += atOnce) addRowsAtOnce<atOnce, false>(rows, row, sums, width);
    for (; row < height; ++row) addRowsAtOnce<1, false>(rows, row, sums, width);
}

template <class RowsOf, class T>
void sumColumns(RowsOf rows, std::ptrdiff_t height, T* sums, std::ptrdiff_t width) {
    std::fill_n(sums, width, T(0));
    addRows(rows, height, sums, width);
}

// As long as a sum of 16-bit integers stays within 2^24, single precision has it exactly.
constexpr int exactInSingle = 1 << 24;

// Rounding downwards makes the difference of equal numbers a negative zero, which integers do not have.
inline bool zeroSumsArePositive() {
    volatile Vorn32f one = 1;
    return !std::signbit(one - one);
}

// Two rows at a time: the elements of a column become neighbours, which one instruction adds.
template <int count, bool fetches, class V, class RowsOf>
VORN_INLINE void addIntegerRows(RowsOf rows, std::ptrdiff_t row, Vorn32s* sums, std::ptrdiff_t width) {
    using Sums = decltype(intsOf(V()));
    const Vorn16s* x[count];
    for (int r = 0; r < count; ++r) x[r] = keepApart(rows[row + r]);
    const V ones = splat<V>(1);
    const auto sumAt = [&](std::ptrdiff_t column) __attribute__((always_inline)) {
        Halves<Sums> sum = {splat<Sums>(0), splat<Sums>(0)};
        for (int r = 0; r < count; r += 2) {
            const V other = r + 1 < count ? load<V>(x[(r + 1) % count] + column) : splat<V>(0);
            const auto pairs = zip(load<V>(x[r] + column), other);
            sum.low = sum.low + mulAddPairs(shortsOf(pairs.low), ones);
            sum.high = sum.high + mulAddPairs(shortsOf(pairs.high), ones);
        }
        const auto ordered = inOrder(sum);
        return Halves<Sums>{load<Sums>(sums + column) + ordered.low,
                            load<Sums>(sums + column + Sums::lanes) + ordered.high};
    };
    const auto put = [&](std::ptrdiff_t column, Halves<Sums> sum) __attribute__((always_inline)) {
        store(sums + column, sum.low);
        store(sums + column + Sums::lanes, sum.high);
    };
    const std::ptrdiff_t end = width - V::lanes;
    const auto last = sumAt(end);
    [[maybe_unused]] const std::uintptr_t ahead = farAhead(x[0], x[count > 1 ? 1 : 0], count);
    for (std::ptrdiff_t column = 0; column < end; column += V::lanes) {
        if constexpr (fetches) fetchRows(x, column, ahead);
        put(column, sumAt(column));
    }
    put(end, last);
}

// Every sum lies so far within what a single holds that `rows` more rows may be added.
inline bool haveRoomFor(std::ptrdiff_t rows, const Vorn32s* sums, std::ptrdiff_t width) {
    const int most = exactInSingle - static_cast<int>(rows) * 32768;
    i32x4 high = splat<i32x4>(most), low = splat<i32x4>(-most);
    for (std::ptrdiff_t j = 0; j < width; j += i32x4::lanes) {
        const i32x4 sum = load<i32x4>(sums + std::min<std::ptrdiff_t>(j, width - i32x4::lanes));
        high = maxOf(high, sum);
        low = minOf(low, sum);
    }
    return all(high == splat<i32x4>(most)) && all(low == splat<i32x4>(-most));
}

inline void inSingles(Vorn32s* sums, Vorn32f* dst, std::ptrdiff_t width) {
    const std::ptrdiff_t end = width - i32x4::lanes;
    const f32x4 last = toFloat(load<i32x4>(sums + end));
    for (std::ptrdiff_t j = 0; j < end; j += i32x4::lanes) store(dst + j, toFloat(load<i32x4>(sums + j)));
    store(dst + end, last);
}

// Adds rows to integers as long as these are all within what a single holds; returns how many.
template <class V, class RowsOf>
VORN_INLINE std::ptrdiff_t addExactRows(RowsOf rows, std::ptrdiff_t height, Vorn32s* sums, std::ptrdiff_t width) {
    if constexpr (sizeof(V) > 16) {
        if (width < V::lanes) return addExactRows<HalfOf<V>>(rows, height, sums, width);
    }
    constexpr std::ptrdiff_t blockRows = 128;
    constexpr int atOnce = 8;
    const bool large = isLarge(rows[0], height, width);
    std::ptrdiff_t row = 0;
    while (row < height && haveRoomFor(blockRows, sums, width)) {
        const std::ptrdiff_t end = std::min(height, row + blockRows);
        if (large) {
            for (; row + atOnce <= end; row += atOnce) addIntegerRows<atOnce, true, V>(rows, row, sums, width);
        }
        for (; row + atOnce <= end; row += atOnce) addIntegerRows<atOnce, false, V>(rows, row, sums, width);
        for (; row < end; ++row) addIntegerRows<1, false, V>(rows, row, sums, width);
    }
    return row;
}

// 16-bit integers: the very sums of singles, as integers while no single would be rounded. They stand where the singles
// are to stand.
template <class RowsOf>
void sumIntegerColumns(RowsOf rows, std::ptrdiff_t height, Vorn32f* dst, std::ptrdiff_t width) {
    std::fill_n(dst, width, 0.0f);
    std::ptrdiff_t done = 0;
    if (width >= i16x8::lanes && zeroSumsArePositive()) {
        auto* sums = reinterpret_cast<Vorn32s*>(dst);
        done = addExactRows<i16xN>(rows, height, sums, width);
        inSingles(sums, dst, width);
    }
    if (done < height) addRows(rows.from(done), height - done, dst, width);
}

// ---- Along the rows: lanes that each take every fourth (of doubles every second) element, in order; the lanes joined,
// (0 + 1) + (2 + 3) or 0 + 1; then the elements behind whole groups, in order. Eight rows advance together, none of
// which waits for another.

constexpr int rowsTogether = 8;

// Two rows that advance in one register, where the build has one for them.
template <class Lanes>
VORN_INLINE auto pairOfRows(Lanes a, Lanes b) {
    if constexpr (requires { join(a, b); }) {
        return join(a, b);
    } else {
        return Halves<Lanes>{a, b};
    }
}
template <class Pair>
VORN_INLINE Pair addPairs(Pair a, Pair b) {
    return a + b;
}
template <class Lanes>
VORN_INLINE Halves<Lanes> addPairs(Halves<Lanes> a, Halves<Lanes> b) {
    return {a.low + b.low, a.high + b.high};
}
template <class Pair>
VORN_INLINE auto firstRow(Pair a) {
    return lowHalf(a);
}
template <class Lanes>
VORN_INLINE Lanes firstRow(Halves<Lanes> a) {
    return a.low;
}
template <class Pair>
VORN_INLINE auto secondRow(Pair a) {
    return highHalf(a);
}
template <class Lanes>
VORN_INLINE Lanes secondRow(Halves<Lanes> a) {
    return a.high;
}

// The lanes of each of four rows joined, one row a lane.
VORN_INLINE f32x4 joinLanes(f32x4 a, f32x4 b, f32x4 c, f32x4 d) { return sumNeighbours(a, b, c, d); }
VORN_INLINE Four<Vorn64f> joinLanes(f64x2 a, f64x2 b, f64x2 c, f64x2 d) { return sumLanes(rowsOf<0>(a, b, c, d)); }

template <class Lanes, bool fetches, class Source, class T>
VORN_NOINLINE void sumEightRows(const Source* const* row, std::ptrdiff_t width, T* sums) {
    constexpr std::ptrdiff_t lanes = Lanes::lanes;
    if (width < lanes) {
        for (int r = 0; r < rowsTogether; ++r) {
            T sum = 0;
            for (std::ptrdiff_t j = 0; j < width; ++j) sum += static_cast<T>(row[r][j]);
            sums[r] = sum;
        }
        return;
    }
    const Source* x[rowsTogether];
    for (int r = 0; r < rowsTogether; ++r) x[r] = keepApart(row[r]);
    using Pair = decltype(pairOfRows(Lanes(), Lanes()));
    Pair sum[rowsTogether / 2];
    for (Pair& s : sum) s = pairOfRows(splat<Lanes>(0), splat<Lanes>(0));
    [[maybe_unused]] const std::uintptr_t ahead = farAhead(x[0], x[1], rowsTogether);
    for (std::ptrdiff_t j = 0; j + lanes <= width; j += lanes) {
        if constexpr (fetches) fetchRows(x, j, ahead);
        for (int r = 0; r < rowsTogether; r += 2) {
            sum[r / 2] = addPairs(sum[r / 2], pairOfRows(loadAs<Lanes>(x[r] + j), loadAs<Lanes>(x[r + 1] + j)));
        }
    }
    const std::ptrdiff_t left = width % lanes;
    for (int r = 0; r < rowsTogether; r += 4) {
        const Pair low = sum[r / 2], high = sum[r / 2 + 1];
        Four<T> total = joinLanes(firstRow(low), secondRow(low), firstRow(high), secondRow(high));
        if (left > 0) {
            const auto last = [&](int k) __attribute__((always_inline)) {
                return loadAs<Lanes>(x[r + k] + width - lanes);
            };
            Four<T> column[lanes];
            columnsOf(rowsOf<0>(last(0), last(1), last(2), last(3)), column);
            // clang may turn an addition under a condition into one of -0 where it does not hold, which in a mode that
            // rounds downwards makes a zero negative; it does not where the condition governs more than the addition.
            for (std::ptrdiff_t k = 1; k < lanes; ++k) {
                if (lanes - k <= left) {
                    total = total + column[k];
                    asm volatile("");
                }
            }
        }
        store(sums + r, total);
    }
}

// A row of so many 16-bit integers: single precision has every partial sum, in any order.
constexpr std::ptrdiff_t mostExact = exactInSingle / 32768;

template <class V, bool fetches>
VORN_INLINE void sumEightExactly(const Vorn16s* const* row, std::ptrdiff_t width, Vorn32f* sums) {
    if (width < V::lanes) {
        if constexpr (sizeof(V) > 16) return sumEightExactly<HalfOf<V>, fetches>(row, width, sums);
        for (int r = 0; r < rowsTogether; ++r) {
            int sum = 0;
            for (std::ptrdiff_t j = 0; j < width; ++j) sum += row[r][j];
            sums[r] = static_cast<Vorn32f>(sum);
        }
        return;
    }
    const Vorn16s* x[rowsTogether];
    for (int r = 0; r < rowsTogether; ++r) x[r] = keepApart(row[r]);
    const V ones = splat<V>(1);
    decltype(mulAddPairs(ones, ones)) sum[rowsTogether];
    // The last vector ends at the last element: those that it shares with the one before it count there.
    const std::ptrdiff_t end = width - V::lanes, left = width % V::lanes;
    const V counted = load<V>(reinterpret_cast<const Vorn16s*>(nothingThenAll.bytes + sizeof(i8xN) - sizeof(V) +
                                                               (left > 0 ? left : V::lanes) * sizeof(Vorn16s)));
    for (int r = 0; r < rowsTogether; ++r) sum[r] = mulAddPairs(load<V>(x[r] + end) & counted, ones);
    [[maybe_unused]] const std::uintptr_t ahead = farAhead(x[0], x[1], rowsTogether);
    for (std::ptrdiff_t j = 0; j < end; j += V::lanes) {
        if constexpr (fetches) fetchRows(x, j, ahead);
        for (int r = 0; r < rowsTogether; ++r) sum[r] = sum[r] + mulAddPairs(load<V>(x[r] + j), ones);
    }
    const auto four = [&](int r) __attribute__((always_inline)) {
        return foldedTo<16>(
            sum[r], [](auto a, auto b) __attribute__((always_inline)) { return a + b; });
    };
    for (int r = 0; r < rowsTogether; r += 4) {
        store(sums + r,
              toFloat(sumNeighbours(sumNeighbours(four(r), four(r + 1)), sumNeighbours(four(r + 2), four(r + 3)))));
    }
}
template <bool fetches>
VORN_NOINLINE void sumEightExactRows(const Vorn16s* const* row, std::ptrdiff_t width, Vorn32f* sums) {
    sumEightExactly<i16xN, fetches>(row, width, sums);
}

template <class Source, class T>
using SumOfEight = void (*)(const Source* const* row, std::ptrdiff_t width, T* sums);

template <class Lanes, class Source, class T>
SumOfEight<Source, T> laneSums(bool large) {
    return large ? sumEightRows<Lanes, true, Source, T> : sumEightRows<Lanes, false, Source, T>;
}
inline SumOfEight<Vorn32f, Vorn32f> sumOfEight(const Vorn32f*, std::ptrdiff_t, bool large) {
    return laneSums<f32x4, Vorn32f, Vorn32f>(large);
}
inline SumOfEight<Vorn64f, Vorn64f> sumOfEight(const Vorn64f*, std::ptrdiff_t, bool large) {
    return laneSums<f64x2, Vorn64f, Vorn64f>(large);
}
inline SumOfEight<Vorn16s, Vorn32f> sumOfEight(const Vorn16s*, std::ptrdiff_t width, bool large) {
    if (width <= mostExact && zeroSumsArePositive()) {
        return large ? sumEightExactRows<true> : sumEightExactRows<false>;
    }
    return laneSums<f32x4, Vorn16s, Vorn32f>(large);
}

// Fewer than eight rows at the end: the last one fills up.
template <class RowsOf, class T>
void sumRows(RowsOf rows, std::ptrdiff_t width, T* sums, std::ptrdiff_t height) {
    const auto ofEight = sumOfEight(rows[0], width, isLarge(rows[0], height, width));
    std::remove_const_t<decltype(rows[0])> eight[rowsTogether];
    std::ptrdiff_t row = 0;
    for (; row + rowsTogether <= height; row += rowsTogether) {
        for (int r = 0; r < rowsTogether; ++r) eight[r] = keepApart(rows[row + r]);
        ofEight(eight, width, sums + row);
    }
    if (row == height) return;
    for (int r = 0; r < rowsTogether; ++r) eight[r] = rows[std::min(row + r, height - 1)];
    T some[rowsTogether];
    ofEight(eight, width, some);
    std::copy_n(some, height - row, sums + row);
}

}  // namespace vorn::reductions
