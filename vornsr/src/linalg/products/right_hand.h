// A matrix times a vector: one sum over each row.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "frame/rounding.h"
#include "frame/rows.h"
#include "frame/wrap.h"
#include "simd/groups.h"
#include "simd/pairs.h"
#include "simd/part.h"
#include "simd/tile.h"
#include "vornsr/types.h"

namespace vorn {

template <class V, class T>
VORN_INLINE V columnsAt(const T* p) {
    if constexpr (std::is_same_v<typename V::Element, T>) {
        return load<V>(p);
    } else {
        return loadWidened<V>(p);
    }
}

// The sums of four rows from their lanes, lane 0 + lane 1 or (lane 0 + lane 1) + (lane 2 + lane 3); and a further
// column added to them.
VORN_INLINE void putSums(Vorn32f* sum, f32x4 row0, f32x4 row1, f32x4 row2, f32x4 row3) {
    store(sum, sumNeighbours(row0, row1, row2, row3));
}
VORN_INLINE void putSums(Vorn64f* sum, f64x2 row0, f64x2 row1, f64x2 row2, f64x2 row3) {
    f64x2 firstTwo[2] = {row0, row1}, lastTwo[2] = {row2, row3};
    transposeGroups(firstTwo);
    transposeGroups(lastTwo);
    store(sum, firstTwo[0] + firstTwo[1]);
    store(sum + 2, lastTwo[0] + lastTwo[1]);
}
VORN_INLINE void addColumn(Vorn32f* sum, const Vorn32f* const* row, std::ptrdiff_t j, Vorn32f x) {
    const f32x4 column = lanesOf(row[0][j], row[1][j], row[2][j], row[3][j]);
    store(sum, load<f32x4>(sum) + column * splat<f32x4>(x));
}
VORN_INLINE void addColumn(Vorn64f* sum, const Vorn32s* const* row, std::ptrdiff_t j, Vorn32s x) {
    for (int r = 0; r < 4; ++r) sum[r] = sum[r] + static_cast<Vorn64f>(row[r][j]) * static_cast<Vorn64f>(x);
}

// A form of the product says how many rows advance together and what their sums are; how many they are changes no bit.

// Sums in floating point: each row keeps the lanes of one 16-byte register, which take the columns in their order, are
// added as neighbours and then joined by the columns left over, one by one.
template <class T, class Lanes_, class Vector_>
struct LaneSums {
    using Element = T;
    using Sum = typename Lanes_::Element;
    using Lanes = Lanes_;
    using Vector = Vector_;

    template <int rows>
    static VORN_INLINE void add(const T* const (&row)[rows], const T* vec, std::ptrdiff_t width, Sum (&sum)[rows]) {
        // Row r shares its register with row r + count where two fit.
        constexpr int count = rows * Lanes::lanes / Vector::lanes;
        Vector lanes[count];
        for (int k = 0; k < count; ++k) lanes[k] = splat<Vector>(0);
        std::ptrdiff_t j = 0;
        for (; j + Vector::lanes <= width; j += Vector::lanes) {
            const Vector x = columnsAt<Vector>(vec + j);
#pragma GCC unroll 8
            for (int k = 0; k < count; ++k) {
                if constexpr (count == rows) {
                    lanes[k] = lanes[k] + columnsAt<Vector>(row[k] + j) * x;
                } else {
                    Vector groups[2] = {columnsAt<Vector>(row[k] + j) * x, columnsAt<Vector>(row[k + count] + j) * x};
                    turnParts(groups);
                    lanes[k] = lanes[k] + groups[0];
                    lanes[k] = lanes[k] + groups[1];
                }
            }
        }
        if constexpr (count < rows) {
            if (j + Lanes::lanes <= width) {
                const Lanes x = columnsAt<Lanes>(vec + j);
#pragma GCC unroll 8
                for (int k = 0; k < count; ++k) {
                    lanes[k] =
                        lanes[k] + join(columnsAt<Lanes>(row[k] + j) * x, columnsAt<Lanes>(row[k + count] + j) * x);
                }
                j += Lanes::lanes;
            }
        }
        const auto lanesOfRow = [&](int r) __attribute__((always_inline)) {
            if constexpr (count == rows) {
                return lanes[r];
            } else {
                return r < count ? lowHalf(lanes[r]) : highHalf(lanes[r - count]);
            }
        };
#pragma GCC unroll 2
        for (int r = 0; r < rows; r += 4) {
            putSums(sum + r, lanesOfRow(r), lanesOfRow(r + 1), lanesOfRow(r + 2), lanesOfRow(r + 3));
        }
        for (; j < width; ++j) {
#pragma GCC unroll 2
            for (int r = 0; r < rows; r += 4) addColumn(sum + r, row + r, j, vec[j]);
        }
    }
};
using RowSums_32f = LaneSums<Vorn32f, f32x4, f32Pairs>;
using RowSums_32s = LaneSums<Vorn32s, f64x2, f64Pairs>;

// Exact sums of 16-bit products. The vector is taken as 256 high + low with low from 0 to 255: the sum of two products
// with either then keeps within 25 bits, even of -32768 with itself, and 32-bit lanes hold the sums of many columns.
struct RowSums_16s {
    using Element = Vorn16s;
    using Sum = std::int64_t;

    template <int rows>
    static VORN_INLINE void add(const Vorn16s* const (&row)[rows], const Vorn16s* vec, std::ptrdiff_t width,
                                std::int64_t (&sum)[rows]) {
        for (int r = 0; r < rows; ++r) sum[r] = 0;
        if (width >= 2 * i16xN::lanes) return addVectors<i16xN>(row, vec, width, sum);
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
        if (width >= i16x16::lanes) return addVectors<i16x16>(row, vec, width, sum);
#endif
        if (width >= i16x8::lanes) return addVectors<i16x8>(row, vec, width, sum);
        for (std::ptrdiff_t j = 0; j < width; ++j) {
            for (int r = 0; r < rows; ++r) sum[r] += std::int32_t{row[r][j]} * vec[j];
        }
    }

private:
    // So many columns keep the sum of all lanes within 32 bits: 256 x 32768 x 255 < 2^31.
    static constexpr std::ptrdiff_t most = 256;

    template <class V, int rows>
    static VORN_INLINE void addVectors(const Vorn16s* const (&row)[rows], const Vorn16s* vec, std::ptrdiff_t width,
                                       std::int64_t (&sum)[rows]) {
        for (std::ptrdiff_t begin = 0; begin < width; begin += most) {
            const std::ptrdiff_t end = std::min(width, begin + most);
            // The last columns come first: their vector may begin early, and what it shares with the others counts as
            // zero.
            const std::ptrdiff_t last = end - V::lanes, columns = (end - begin - 1) % V::lanes + 1;
            BytesOf<V> low[rows], high[rows];
            {
                const V x = load<V>(vec + last) & lastLanes<V>(columns);
                const V lowByte = x & splat<V>(255), highByte = shiftRight<8>(x);
#pragma GCC unroll 4
                for (int r = 0; r < rows; ++r) {
                    const V a = load<V>(row[r] + last);
                    low[r] = mulAddPairs(a, lowByte);
                    high[r] = mulAddPairs(a, highByte);
                }
            }
            for (std::ptrdiff_t j = begin; j < end - columns; j += V::lanes) {
                const V x = load<V>(vec + j);
                const V lowByte = x & splat<V>(255), highByte = shiftRight<8>(x);
#pragma GCC unroll 4
                for (int r = 0; r < rows; ++r) {
                    const V a = load<V>(row[r] + j);
                    low[r] = low[r] + mulAddPairs(a, lowByte);
                    high[r] = high[r] + mulAddPairs(a, highByte);
                }
            }
            std::int32_t lowTotal[rows], highTotal[rows];
            fold(low, lowTotal);
            fold(high, highTotal);
            for (int r = 0; r < rows; r += LongSums::lanes) {
                const LongSums highs = shiftLeft<8>(loadInto64<LongSums>(highTotal + r));
                store(sum + r, load<LongSums>(sum + r) + (highs + loadInto64<LongSums>(lowTotal + r)));
            }
        }
    }

#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
    using LongSums = i64x4;
#else
    using LongSums = i64x2;
#endif
    // The 32-bit lanes of a register of V.
    template <class V>
    using BytesOf = decltype(mulAddPairs(V(), V()));

    // All bits in the last n lanes, none before them.
    template <class V>
    static VORN_INLINE V lastLanes(std::ptrdiff_t n) {
        const std::uint8_t* p = nothingThenAll.bytes + sizeof(i8xN) - sizeof(V) + n * sizeof(Vorn16s);
        return load<V>(reinterpret_cast<const Vorn16s*>(p));
    }

    static VORN_INLINE i32x4 quarter(i32x4 a) { return a; }
    template <class V>
    static VORN_INLINE i32x4 quarter(V a) {
        return quarter(lowHalf(a) + highHalf(a));
    }
    template <class V>
    static VORN_INLINE void fold(const V (&a)[4], std::int32_t (&total)[4]) {
        store(total,
              sumNeighbours(sumNeighbours(quarter(a[0]), quarter(a[1])), sumNeighbours(quarter(a[2]), quarter(a[3]))));
    }
};

// What becomes of the sums of some rows.

struct SumAsItIs {
    VORN_INLINE Vorn32f operator()(Vorn32f sum) const { return sum; }
};

// Times 2^-scaleFactor by a shift in 64 bits whose count is taken modulo 64, so it rounds down and loses what it shifts
// out at the top; then saturated.
template <class Result>
class ShiftedSum {
public:
    explicit ShiftedSum(int scaleFactor)
        : left_(scaleFactor < 0 ? static_cast<int>((0u - static_cast<unsigned>(scaleFactor)) & 63u) : 0),
          right_(scaleFactor > 0 ? scaleFactor & 63 : 0) {}
    VORN_INLINE Result operator()(std::int64_t sum) const {
        return saturate<Result>(shiftRight64(shiftLeft64(sum, left_), right_));
    }

private:
    int left_, right_;
};

// Rounded without a clamp: out of range, and not a number, is -2147483648.
struct RoundedSum {
    Vorn64f factor;
    VORN_INLINE Vorn32s operator()(Vorn64f sum) const {
        const f64x2 scaled = splat<f64x2>(sum * factor);
        return firstLane(roundToInt(scaled, scaled));
    }
};

template <class Form, int together, class Result, class Scaled>
VORN_INLINE void someRows(const AnyRows<const typename Form::Element>& rows, const typename Form::Element* vec,
                          std::ptrdiff_t width, Result* dst, std::ptrdiff_t left, Scaled scaled) {
    using T = typename Form::Element;
    // Where fewer rows are left, the last one stands for those that are not there.
    const T* row[together];
    rows.as([&](const auto& of) {
        if (left >= together) {
            for (int r = 0; r < together; ++r) row[r] = keepApart(of[r]);
        } else {
            for (int r = 0; r < together; ++r) row[r] = keepApart(of[std::min<std::ptrdiff_t>(r, left - 1)]);
        }
    });
    typename Form::Sum sum[together];
    Form::add(row, vec, width, sum);
    if (left >= together) {
        for (int r = 0; r < together; ++r) dst[r] = scaled(sum[r]);
    } else {
        for (std::ptrdiff_t r = 0; r < left; ++r) dst[r] = scaled(sum[r]);
    }
}

template <class Form, class Result, class Scaled>
VORN_NOINLINE void matVecMul(AnyRows<const typename Form::Element> rows, const typename Form::Element* vec,
                             std::ptrdiff_t width, Result* dst, std::ptrdiff_t height, Scaled scaled) {
    std::ptrdiff_t row = 0;
    if constexpr (std::is_floating_point_v<typename Form::Sum>) {
        for (; height - row > 4; row += 8)
            someRows<Form, 8>(rows.from(row), vec, width, dst + row, height - row, scaled);
    }
    for (; row < height; row += 4) someRows<Form, 4>(rows.from(row), vec, width, dst + row, height - row, scaled);
}

}  // namespace vorn
