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
#include "simd/tile.h"
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
    static constexpr int rowsTogether = 1, slotsHeld = f32xN::lanes == 16 ? 4 : 8;
    static constexpr std::ptrdiff_t rowsOfOneSum = allRows;

    static VORN_INLINE Sum zero() { return splat<f32xN>(0); }
    static VORN_INLINE f32xN factor(const Vorn32f* vec, std::ptrdiff_t) { return splat<f32xN>(*vec); }
    template <bool whole>
    static VORN_INLINE Sum added(Sum sum, const Vorn32f* const* row, std::ptrdiff_t at, f32xN factor,
                                 std::ptrdiff_t n) {
        return sum + factor * (whole ? load<f32xN>(row[0] + at) : loadPart<f32xN>(row[0] + at, n));
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
    static constexpr int rowsTogether = 1, slotsHeld = sizeof(T) == 2 ? 1 : 2;
    static constexpr std::ptrdiff_t rowsOfOneSum = allRows;

    static VORN_INLINE f64xN factor(const T* vec, std::ptrdiff_t) { return splat<f64xN>(*vec); }
    static VORN_INLINE Sum zero() {
        Sum sum;
        for (int i = 0; i < parts; ++i) sum.part[i] = splat<f64xN>(0);
        return sum;
    }
    template <bool whole>
    static VORN_INLINE Sum added(Sum sum, const T* const* row, std::ptrdiff_t at, f64xN factor, std::ptrdiff_t n) {
        const T* from = row[0] + at;
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
    static constexpr int rowsTogether = 2, slotsHeld = 2;
    static constexpr std::ptrdiff_t rowsOfOneSum = 256;

    struct Factor {
        i16xN low, high;
    };
    // Of two rows, or of one.
    static VORN_INLINE Factor factor(const Vorn16s* vec, std::ptrdiff_t rows) {
        const int first = vec[0], second = rows > 1 ? vec[1] : 0;
        return {sideBySide(first & 255, second & 255), sideBySide(first >> 8, second >> 8)};
    }
    static VORN_INLINE Sum zero() {
        const i32xN none = splat<i32xN>(0);
        return {{none, none}, {none, none}};
    }
    template <bool whole>
    static VORN_INLINE Sum added(const Sum& sum, const Vorn16s* const* row, std::ptrdiff_t at, const Factor& factor,
                                 std::ptrdiff_t n) {
        const i16xN first = whole ? load<i16xN>(row[0] + at) : loadPart<i16xN>(row[0] + at, n);
        const i16xN second = whole ? load<i16xN>(row[1] + at) : loadPart<i16xN>(row[1] + at, n);
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

private:
    static VORN_INLINE i16xN sideBySide(int first, int second) {
        return shortsOf(splat<i32xN>(
            static_cast<std::int32_t>((static_cast<unsigned>(first) & 0xFFFFu) | static_cast<unsigned>(second) << 16)));
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

// Slots side by side, the last of which begins early so as to end with the last column: some columns are summed twice,
// to the same bits. Columns that do not fill one slot are a part of it.
struct Slots {
    std::ptrdiff_t begin, columns, lanes;
    std::ptrdiff_t count() const { return (columns + lanes - 1) / lanes; }
    std::ptrdiff_t operator[](std::ptrdiff_t slot) const {
        return begin + std::max<std::ptrdiff_t>(0, std::min(slot * lanes, columns - lanes));
    }
    bool areWhole() const { return columns >= lanes; }
};

// Adds `rows` rows to all sums; `present` of them are there.
template <class Form, int rows>
VORN_INLINE void addRows(const typename Form::Element* const (&row)[rows], const typename Form::Element* vec,
                         std::ptrdiff_t present, const Slots& slots, typename Form::Sum* sums) {
    constexpr int steps = rows / Form::rowsTogether;
    decltype(Form::factor(vec, 0)) factor[steps];
#pragma GCC unroll 8
    for (int k = 0; k < steps; ++k) factor[k] = Form::factor(vec + k * Form::rowsTogether, present);
    const auto addAt = [&](typename Form::Sum & to, std::ptrdiff_t column) __attribute__((always_inline)) {
        typename Form::Sum sum = to;
#pragma GCC unroll 8
        for (int k = 0; k < steps; ++k) {
            sum = Form::template added<true>(sum, row + k * Form::rowsTogether, column, factor[k], slots.columns);
        }
        to = sum;
    };
    const std::ptrdiff_t last = slots.count() - 1;
    std::ptrdiff_t column = slots.begin;
    for (std::ptrdiff_t slot = 0; slot < last; ++slot, column += Wide<typename Form::Element>::lanes) {
        addAt(sums[slot], column);
    }
    addAt(sums[last], slots[last]);
}

template <class Form, int rows>
VORN_INLINE void addRows(const AnyRows<const typename Form::Element>& from, const typename Form::Element* vec,
                         std::ptrdiff_t present, const Slots& slots, typename Form::Sum* sums) {
    const typename Form::Element* row[rows];
    from.as([&](const auto& of) {
        for (int r = 0; r < rows; ++r) row[r] = keepApart(of[std::min<std::ptrdiff_t>(r, present - 1)]);
    });
    addRows<Form, rows>(row, vec, present, slots, sums);
}

// The sums of a few slots held in registers while all rows from begin to end pass by.
template <class Form, int count, bool whole, class RowsOf>
VORN_INLINE void holdSums(const RowsOf& rows, const typename Form::Element* vec, std::ptrdiff_t begin,
                          std::ptrdiff_t end, const Slots& slots, typename Form::Sum* sums) {
    constexpr int together = Form::rowsTogether;
    constexpr std::ptrdiff_t lanes = Wide<typename Form::Element>::lanes;
    const std::ptrdiff_t last = slots[count - 1];
    typename Form::Sum sum[count];
#pragma GCC unroll 8
    for (int i = 0; i < count; ++i) sum[i] = Form::zero();
    const auto addRowsAt = [&](std::ptrdiff_t row, std::ptrdiff_t present) __attribute__((always_inline)) {
        const typename Form::Element* line[together];
        for (int r = 0; r < together; ++r) line[r] = rows[row + (r < present ? r : 0)];
        const auto factor = Form::factor(vec + row, present);
#pragma GCC unroll 8
        for (int i = 0; i < count; ++i) {
            const std::ptrdiff_t column = i == count - 1 ? last : slots.begin + i * lanes;
            sum[i] = Form::template added<whole>(sum[i], line, column, factor, slots.columns);
        }
    };
    std::ptrdiff_t row = begin;
    for (; row + together <= end; row += together) addRowsAt(row, together);
    if (row < end) addRowsAt(row, 1);
#pragma GCC unroll 8
    for (int i = 0; i < count; ++i) sums[i] = sum[i];
}
// False if there are too many slots for that.
template <class Form, int count = 1>
VORN_INLINE bool heldSums(const AnyRows<const typename Form::Element>& rows, const typename Form::Element* vec,
                          std::ptrdiff_t begin, std::ptrdiff_t end, const Slots& slots, typename Form::Sum* sums) {
    if (slots.count() > count) {
        if constexpr (count < Form::slotsHeld) return heldSums<Form, count + 1>(rows, vec, begin, end, slots, sums);
        return false;
    }
    rows.as([&](const auto& of) __attribute__((always_inline)) {
        if constexpr (count == 1) {
            if (!slots.areWhole()) return holdSums<Form, 1, false>(of, vec, begin, end, slots, sums);
        }
        holdSums<Form, count, true>(of, vec, begin, end, slots, sums);
    });
    return true;
}

// So many columns have their sums on the stack.
template <class Form>
inline constexpr std::ptrdiff_t columnsAtOnce = 16384 /
                                                sizeof(typename Form::Sum) * Wide<typename Form::Element>::lanes;

// The columns from `begin` on, n of them.
template <class Form, class Result, class Store>
VORN_INLINE void columnBlock(const typename Form::Element* vec, const AnyRows<const typename Form::Element>& rows,
                             std::ptrdiff_t height, std::ptrdiff_t begin, std::ptrdiff_t n, Result* dst, Store store) {
    constexpr std::ptrdiff_t lanes = Wide<typename Form::Element>::lanes;
    typename Form::Sum sums[columnsAtOnce<Form> / lanes];
    [[maybe_unused]] typename Form::Total totals[columnsAtOnce<Form> / lanes];
    const Slots slots = {begin, n, lanes};
    const std::ptrdiff_t count = slots.count();
    for (std::ptrdiff_t row = 0; row < height;) {
        [[maybe_unused]] const bool isFirst = row == 0;
        const std::ptrdiff_t end = std::min(height, row + std::min(height, Form::rowsOfOneSum));
        if (!heldSums<Form>(rows, vec, row, end, slots, sums)) {
            for (std::ptrdiff_t slot = 0; slot < count; ++slot) sums[slot] = Form::zero();
            for (; row + 8 <= end; row += 8) addRows<Form, 8>(rows.from(row), vec + row, 8, slots, sums);
            for (; row + 4 <= end; row += 4) addRows<Form, 4>(rows.from(row), vec + row, 4, slots, sums);
            for (; row < end; row += Form::rowsTogether) {
                addRows<Form, Form::rowsTogether>(rows.from(row), vec + row, end - row, slots, sums);
            }
        }
        row = end;
        for (std::ptrdiff_t slot = 0; slot < count; ++slot) {
            auto total = Form::total(sums[slot]);
            if constexpr (Form::rowsOfOneSum < allRows) {
                if (!isFirst) total = totals[slot] + total;
                if (row < height) {
                    totals[slot] = total;
                    continue;
                }
            }
            store.store(dst + slots[slot], total, std::min(n, lanes));
        }
    }
}

template <class Form, class Result, class Store>
VORN_NOINLINE void vecMatMul(const typename Form::Element* vec, AnyRows<const typename Form::Element> rows,
                             std::ptrdiff_t height, Result* dst, std::ptrdiff_t width, Store store) {
    // Blocks of nearly one width, whole registers each but for the last.
    const std::ptrdiff_t blocks = (width + columnsAtOnce<Form> - 1) / columnsAtOnce<Form>;
    const std::ptrdiff_t columns = ((width + blocks - 1) / blocks + 63) / 64 * 64;
    for (std::ptrdiff_t column = 0; column < width; column += columns) {
        columnBlock<Form>(vec, rows, height, column, std::min(columns, width - column), dst, store);
    }
}

}  // namespace vorn
