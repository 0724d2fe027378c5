// A vector times a matrix: the rows, each times its number, added in their order to one sum a column.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "frame/rounding.h"
#include "frame/rows.h"
#include "frame/scale.h"
#include "simd/block.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn {

// The columns of one register of the matrix's elements are a slot. A form says what the sums of a slot are and how rows
// are added to them. The columns of a slot that is not whole count from 0 to n - 1.

// The sums of a slot in doubles, in the order of the columns.
template <int count>
struct DoubleSlot {
    f64xN part[count];
};
template <int count>
VORN_INLINE DoubleSlot<count> operator+(DoubleSlot<count> a, const DoubleSlot<count>& b) {
    for (int i = 0; i < count; ++i) a.part[i] = a.part[i] + b.part[i];
    return a;
}

// No bound for the rows that one sum takes.
inline constexpr std::ptrdiff_t allRows = std::numeric_limits<std::ptrdiff_t>::max();

struct SingleColumns {
    using Element = Vorn32f;
    using Sum = f32xN;
    using Total = f32xN;
    static constexpr int slotsTogether = 4, rowsTogether = 1;
    static constexpr std::ptrdiff_t rowsOfOneSum = allRows;

    struct Factors {
        Factors(const Vorn32f* vec, std::ptrdiff_t) : vec_(vec) {}
        VORN_INLINE f32xN operator[](std::ptrdiff_t row) const { return splat<f32xN>(vec_[row]); }

    private:
        const Vorn32f* vec_;
    };
    static VORN_INLINE Sum zero() { return splat<f32xN>(0); }
    template <bool whole>
    static VORN_INLINE Sum added(Sum sum, const Vorn32f* const (&row)[1], f32xN factor, std::ptrdiff_t n) {
        return sum + factor * (whole ? load<f32xN>(row[0]) : loadPart<f32xN>(row[0], n));
    }
    static VORN_INLINE Total total(Sum sum) { return sum; }
};

// Elements, products and sums in double.
template <class T>
struct DoubleColumns {
    static constexpr int parts = Wide<T>::lanes / f64xN::lanes;
    using Element = T;
    using Sum = DoubleSlot<parts>;
    using Total = Sum;
    static constexpr int slotsTogether = 2, rowsTogether = 1;
    static constexpr std::ptrdiff_t rowsOfOneSum = allRows;

    struct Factors {
        Factors(const T* vec, std::ptrdiff_t) : vec_(vec) {}
        VORN_INLINE f64xN operator[](std::ptrdiff_t row) const { return splat<f64xN>(vec_[row]); }

    private:
        const T* vec_;
    };
    static VORN_INLINE Sum zero() {
        Sum sum;
        for (int i = 0; i < parts; ++i) sum.part[i] = splat<f64xN>(0);
        return sum;
    }
    template <bool whole>
    static VORN_INLINE Sum added(Sum sum, const T* const (&row)[1], f64xN factor, std::ptrdiff_t n) {
        const T* from = row[0];
        Block<T, Wide<T>::lanes> block;
        if constexpr (!whole) {
            fillBlock<Wide<T>::lanes>(from, n, block);
            from = block;
        }
        for (int i = 0; i < parts; ++i) {
            sum.part[i] = sum.part[i] + factor * loadWidened<f64xN>(from + i * f64xN::lanes);
        }
        return sum;
    }
    static VORN_INLINE Total total(const Sum& sum) { return sum; }
};

// Exact sums of 16-bit products, two rows at a time. The vector is taken as 256 high + low with low from 0 to 255: the
// sum of two products with either keeps within 25 bits, and 32-bit lanes hold the sums of 256 rows.
struct ShortColumns {
    using Element = Vorn16s;
    struct Sum {
        Halves<i32xN> low, high;
    };
    using Total = DoubleSlot<4>;
    static constexpr int slotsTogether = sizeof(i16xN) == 64 ? 4 : 2, rowsTogether = 2;
    static constexpr std::ptrdiff_t rowsOfOneSum = 256;

    struct Factor {
        i16xN low, high;
    };
    class Factors {
    public:
        Factors(const Vorn16s* vec, std::ptrdiff_t rows) {
            for (std::ptrdiff_t row = 0; row < rows; row += 2) {
                const int first = vec[row], second = row + 1 < rows ? vec[row + 1] : 0;
                low_[row / 2] = sideBySide(first & 255, second & 255);
                high_[row / 2] = sideBySide(first >> 8, second >> 8);
            }
        }
        VORN_INLINE Factor operator[](std::ptrdiff_t row) const {
            return {shortsOf(splat<i32xN>(low_[row / 2])), shortsOf(splat<i32xN>(high_[row / 2]))};
        }

    private:
        static std::int32_t sideBySide(int first, int second) {
            return static_cast<std::int32_t>((static_cast<unsigned>(first) & 0xFFFFu) |
                                             (static_cast<unsigned>(second) << 16));
        }
        std::int32_t low_[rowsOfOneSum / 2], high_[rowsOfOneSum / 2];
    };
    static VORN_INLINE Sum zero() {
        const i32xN none = splat<i32xN>(0);
        return {{none, none}, {none, none}};
    }
    template <bool whole>
    static VORN_INLINE Sum added(const Sum& sum, const Vorn16s* const (&row)[2], const Factor& factor,
                                 std::ptrdiff_t n) {
        const i16xN first = whole ? load<i16xN>(row[0]) : loadPart<i16xN>(row[0], n);
        const i16xN second = whole ? load<i16xN>(row[1]) : loadPart<i16xN>(row[1], n);
        const Halves<i32xN> pairs = zip(first, second);
        const i16xN a = shortsOf(pairs.low), b = shortsOf(pairs.high);
        return {{sum.low.low + mulAddPairs(a, factor.low), sum.low.high + mulAddPairs(b, factor.low)},
                {sum.high.low + mulAddPairs(a, factor.high), sum.high.high + mulAddPairs(b, factor.high)}};
    }
    static VORN_INLINE Total total(const Sum& sum) {
        const Halves<i32xN> low = inOrder(sum.low), high = inOrder(sum.high);
        const f64xN unit = splat<f64xN>(256);
        return {{toDoubleLow(high.low) * unit + toDoubleLow(low.low),
                 toDoubleHigh(high.low) * unit + toDoubleHigh(low.low),
                 toDoubleLow(high.high) * unit + toDoubleLow(low.high),
                 toDoubleHigh(high.high) * unit + toDoubleHigh(low.high)}};
    }
};
// Up to so many rows every sum of 16-bit products is below 2^53, and sums in double have nothing to round.
inline constexpr std::ptrdiff_t exactRows = std::ptrdiff_t{1} << 23;

// What becomes of the sums of a slot, of which n columns count.

struct ColumnsAsTheyAre {
    VORN_INLINE void store(Vorn32f* dst, f32xN sum, std::ptrdiff_t n) const { storeUpTo(dst, sum, n); }
};

// Times the factor, clamped to the range of the result, rounded.
template <class Result>
class ClampedColumns {
public:
    // The largest double does what an infinite factor would do to a sum, but for zero, which stays.
    explicit ClampedColumns(int scaleFactor)
        : factor_(std::min(GetScale_32s64f(scaleFactor), std::numeric_limits<Vorn64f>::max())) {}

    template <int parts>
    VORN_INLINE void store(Result* dst, const DoubleSlot<parts>& sum, std::ptrdiff_t n) const {
        for (int i = 0; i < parts; i += 4) {
            const i32xN first = rounded(sum.part[i], sum.part[i + 1]);
            if constexpr (parts == 2) {
                storeUpTo(dst, first, n);
            } else {
                const i32xN second = rounded(sum.part[i + 2], sum.part[i + 3]);
                if constexpr (std::is_same_v<Result, Vorn16s>) {
                    storeUpTo(dst, narrowSat(first, second), n);
                } else {
                    storeUpTo(dst, first, n);
                    storeUpTo(dst + i32xN::lanes, second, n - i32xN::lanes);
                }
            }
        }
    }

private:
    VORN_INLINE i32xN rounded(f64xN low, f64xN high) const { return roundToInt(clamped(low), clamped(high)); }
    VORN_INLINE f64xN clamped(f64xN sum) const {
        const f64xN lowest = splat<f64xN>(std::numeric_limits<Result>::min());
        const f64xN highest = splat<f64xN>(std::numeric_limits<Result>::max());
        return maxOf(lowest, minOf(highest, sum * splat<f64xN>(factor_)));
    }
    Vorn64f factor_;
};

// Adds the rows from begin to end to `slots` neighbouring slots, the last of which begins at column `last`.
template <class Form, int slots, bool whole, class RowsOf>
VORN_INLINE void addRowsTo(typename Form::Sum* sums, RowsOf rows, std::ptrdiff_t column, std::ptrdiff_t last,
                           std::ptrdiff_t begin, std::ptrdiff_t end, const typename Form::Factors& factors, bool first,
                           std::ptrdiff_t n) {
    using T = typename Form::Element;
    constexpr int together = Form::rowsTogether;
    typename Form::Sum sum[slots];
#pragma GCC unroll 4
    for (int i = 0; i < slots; ++i) sum[i] = first ? Form::zero() : sums[i];
    for (std::ptrdiff_t row = begin; row < end; row += together) {
        const auto factor = factors[row];
        const T* line[together];
        for (int r = 0; r < together; ++r) line[r] = rows[std::min(row + r, end - 1)];
#pragma GCC unroll 4
        for (int i = 0; i < slots; ++i) {
            const std::ptrdiff_t at = i == slots - 1 ? last : column + i * Wide<T>::lanes;
            const T* of[together];
            for (int r = 0; r < together; ++r) of[r] = line[r] + at;
            sum[i] = Form::template added<whole>(sum[i], of, factor, n);
        }
    }
#pragma GCC unroll 4
    for (int i = 0; i < slots; ++i) sums[i] = sum[i];
}

// So many columns have their sums on the stack.
inline constexpr std::ptrdiff_t columnsAtOnce = 1024;
// Rows of so many bytes stay in the first-level cache while the slots walk over them.
inline constexpr std::ptrdiff_t rowsBytesAtOnce = 8 << 10;

// The columns from `begin` on, n of them.
template <class Form, class Result, class Store>
VORN_INLINE void columnBlock(const typename Form::Element* vec, const AnyRows<const typename Form::Element>& rows,
                             std::ptrdiff_t height, std::ptrdiff_t begin, std::ptrdiff_t n, Result* dst, Store store) {
    using T = typename Form::Element;
    constexpr std::ptrdiff_t lanes = Wide<T>::lanes;
    constexpr int most = Form::slotsTogether;
    typename Form::Sum sums[columnsAtOnce / lanes];
    typename Form::Total totals[columnsAtOnce / lanes];
    const std::ptrdiff_t slots = (n + lanes - 1) / lanes;
    // The last slot begins early so as to end with the last column: some columns are summed twice, to the same bits.
    const auto columnOf = [=](std::ptrdiff_t slot) {
        return begin + std::max<std::ptrdiff_t>(0, std::min(slot * lanes, n - lanes));
    };
    const std::ptrdiff_t rowBytes = n * static_cast<std::ptrdiff_t>(sizeof(T));
    const std::ptrdiff_t blockRows = std::max<std::ptrdiff_t>(8, rowsBytesAtOnce / rowBytes / 2 * 2);

    for (std::ptrdiff_t sumRow = 0; sumRow < height;) {
        const std::ptrdiff_t rowsOfSum = std::min(height - sumRow, Form::rowsOfOneSum);
        const typename Form::Factors factors(vec + sumRow, rowsOfSum);
        for (std::ptrdiff_t row = 0; row < rowsOfSum; row += blockRows) {
            const std::ptrdiff_t end = std::min(rowsOfSum, row + blockRows);
            rows.from(sumRow).as([&](const auto& of) __attribute__((always_inline)) {
                if (n < lanes) return addRowsTo<Form, 1, false>(sums, of, begin, begin, row, end, factors, row == 0, n);
                std::ptrdiff_t slot = 0;
                for (; slot + most <= slots; slot += most) {
                    addRowsTo<Form, most, true>(sums + slot, of, begin + slot * lanes, columnOf(slot + most - 1), row,
                                                end, factors, row == 0, n);
                }
                for (; slot < slots; ++slot) {
                    addRowsTo<Form, 1, true>(sums + slot, of, columnOf(slot), columnOf(slot), row, end, factors,
                                             row == 0, n);
                }
            });
        }
        const bool isFirst = sumRow == 0;
        sumRow += rowsOfSum;
        for (std::ptrdiff_t slot = 0; slot < slots; ++slot) {
            auto total = Form::total(sums[slot]);
            if constexpr (Form::rowsOfOneSum < allRows) {
                if (!isFirst) total = totals[slot] + total;
            }
            if (sumRow < height) {
                totals[slot] = total;
            } else {
                store.store(dst + columnOf(slot), total, std::min(n, lanes));
            }
        }
    }
}

template <class Form, class Result, class Store>
VORN_NOINLINE void vecMatMul(const typename Form::Element* vec, AnyRows<const typename Form::Element> rows,
                             std::ptrdiff_t height, Result* dst, std::ptrdiff_t width, Store store) {
    // Blocks of nearly one width, whole registers each but for the last.
    const std::ptrdiff_t blocks = (width + columnsAtOnce - 1) / columnsAtOnce;
    const std::ptrdiff_t columns = ((width + blocks - 1) / blocks + 63) / 64 * 64;
    for (std::ptrdiff_t column = 0; column < width; column += columns) {
        columnBlock<Form>(vec, rows, height, column, std::min(columns, width - column), dst, store);
    }
}

}  // namespace vorn
