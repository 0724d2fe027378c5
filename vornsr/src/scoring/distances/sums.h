// Distances of one vector: the sums of the Gaussian scores where an address chooses the order, and the exact sum of
// 16-bit data.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "frame/align.h"
#include "frame/wrap.h"
#include "scoring/gauss/one_vector/sums.h"
#include "simd/part.h"
#include "simd/simd.h"
#include "simd/tile.h"
#include "vornsr/types.h"

namespace vorn::mahalanobis {

template <class T>
using SingleTerms = FloatTerms<T, Vorn32f>;

// sum, joined in order by the terms of the columns from `from` on.
template <class T>
inline Vorn32f addInSingle(Vorn32f sum, const T* x, const T* mean, const T* var, std::ptrdiff_t from,
                           std::ptrdiff_t len) {
    for (std::ptrdiff_t j = from; j < len; ++j) sum += SingleTerms<T>::column(x + j, mean + j, var + j);
    return sum;
}

// S of the columns in front of a 16-byte address, at least one, in order.
template <class T>
VORN_INLINE Vorn32f firstColumns(const T* x, const T* mean, const T* var, std::ptrdiff_t count) {
    Vorn32f term[16];
    for (int k = 0; k < 8 && k < 16 / static_cast<int>(sizeof(T)); k += 4) {
        store(term + 8 - count + k, SingleTerms<T>::template of<f32x4>(x + k, mean + k, var + k));
    }
    return joinLast<Added>(0.0f, *reinterpret_cast<const Vorn32f(*)[8]>(term), count);
}

// S for vectors that do not all stand on 16 bytes. Up to ten columns, and where mean or var stand between elements, it
// goes in order. Above, the columns in front of the mean's next 16-byte address go in order and open lane 0 of the
// first of two accumulators of four lanes; of each eight columns then four go to the one and four to the other; both
// added, (lane 0 + lane 1) + (lane 2 + lane 3), the rest in order.
template <class T>
inline Vorn32f singleSumByAddress(const T* x, const T* mean, const T* var, std::ptrdiff_t len) {
    using Terms = SingleTerms<T>;
    if (len < 11 || !isAligned(mean, sizeof(T)) || !isAligned(var, sizeof(T))) {
        return addInSingle(0.0f, x, mean, var, 0, len);
    }
    std::ptrdiff_t j = alignedUp(mean, 16) - mean;
    f32x4 first = splat<f32x4>(0.0f), second = first;
    if (j > 0) first = withFirst(first, firstColumns<T>(x, mean, var, j));
    for (; j + 8 <= len; j += 8) {
        first = first + Terms::template of<f32x4>(x + j, mean + j, var + j);
        second = second + Terms::template of<f32x4>(x + j + 4, mean + j + 4, var + j + 4);
    }
    const Vorn32f sum = sumNeighbours(first + second);
    if (j == len) return sum;
    Vorn32f term[8];
    const std::ptrdiff_t last = len - 8;
    store(term, Terms::template of<f32x4>(x + last, mean + last, var + last));
    store(term + 4, Terms::template of<f32x4>(x + last + 4, mean + last + 4, var + last + 4));
    return joinLast<Added>(sum, term, len - j);
}

// S in single, as the three addresses decide.
template <class T>
inline Vorn32f singleSum(const T* x, const T* mean, const T* var, std::ptrdiff_t len) {
    if (isAligned(x, 16) && isAligned(mean, 16) && isAligned(var, 16)) return floatSum<Added>(x, mean, var, len);
    return singleSumByAddress(x, mean, var, len);
}

// S in double where the addresses do not count: the order of aligned vectors.
inline Vorn64f alignedDoubleSum(const Vorn64f* x, const Vorn64f* mean, const Vorn64f* var, std::ptrdiff_t len) {
    return len > 8 ? pairedDoubleSum(0.0, x, mean, var, 0, len) : addInOrder(0.0, x, mean, var, 0, len);
}

// ---- 16 bits, exact.

// Sums over columns of v x d^2, d = |x - m| up to 65535. With d^2 = 2^16 h + l the halves h and l have 16 bits without
// a sign, and neither is ever 65535: d^2 is at most 0xFFFE0001, and a square leaves 0 or 1 modulo 4. So 32767 - h and
// 32767 - l have 16 bits with a sign and are never -32768, and two of their products with v fit 32 bits. With
// H = sum of (32767 - h) v, L = sum of (32767 - l) v and V = sum of v,
//     sum of v d^2 = 32767 x (2^16 + 1) x V - (2^16 H + L).
// H and L are held in parts of 16 bits: 2^16 H + L = 2^32 upper + 2^16 middle + lower.
template <class I>
struct SquareHalves {
    I upper = splat<I>(0), middle = splat<I>(0), lower = splat<I>(0), weights = splat<I>(0);

    template <class V>
    VORN_INLINE void add(V x, V mean, V v) {
        const V d = maxOf(x, mean) - minOf(x, mean), flip = splat<V>(0x7FFF);
        const I high = mulAddPairs(mulHighUnsigned(d, d) ^ flip, v), low = mulAddPairs(mulLow(d, d) ^ flip, v);
        const I lower16 = splat<I>(0xFFFF);
        upper = upper + shiftRight<16>(high);
        middle = middle + ((high & lower16) + shiftRight<16>(low));
        lower = lower + (low & lower16);
        weights = weights + mulAddPairs(v, splat<V>(1));
    }
    // Modulo 2^64.
    VORN_INLINE std::uint64_t total() const requires std::is_same_v<I, i32x4> {
        std::int32_t sum[4];
        store(sum, sumNeighbours(sumNeighbours(upper, middle), sumNeighbours(lower, weights)));
        const auto extended = [&](int k) { return static_cast<std::uint64_t>(std::int64_t{sum[k]}); };
        return 32767u * std::uint64_t{65537} * extended(3) - ((extended(0) << 32) + (extended(1) << 16) + extended(2));
    }
    VORN_INLINE SquareHalves<i32x4> folded() const {
        return {foldedToFour(upper), foldedToFour(middle), foldedToFour(lower), foldedToFour(weights)};
    }
};

// The length from which vectors pay.
inline constexpr std::ptrdiff_t vectorsFrom = 16;

// The sum of (x - m)^2 v, exact modulo 2^64.
inline std::int64_t exactSum(const Vorn16s* x, const Vorn16s* mean, const Vorn16s* var, std::ptrdiff_t len) {
    std::uint64_t sum = 0;
    std::ptrdiff_t j = 0;
    if (len < vectorsFrom) {
        for (; j < len; ++j) {
            const std::int64_t d = std::int64_t{elementAt(x + j)} - elementAt(mean + j);
            sum += static_cast<std::uint64_t>(d * d * elementAt(var + j));
        }
        return static_cast<std::int64_t>(sum);
    }
    // After so many steps all lanes together still fit 32 bits, and so do the few steps for the end of the vectors.
    constexpr std::ptrdiff_t steps = 1024;
    while (len - j >= widensFrom && len - j >= i16xN::lanes) {
        SquareHalves<i32xN> wide;
        for (std::ptrdiff_t n = std::min((len - j) / i16xN::lanes, steps); n > 0; --n, j += i16xN::lanes) {
            wide.add(load<i16xN>(x + j), load<i16xN>(mean + j), load<i16xN>(var + j));
        }
        sum += wide.folded().total();
    }
    SquareHalves<i32x4> rest;
    for (; j + 8 <= len; j += 8) rest.add(load<i16x8>(x + j), load<i16x8>(mean + j), load<i16x8>(var + j));
    if (j < len) {
        // The last eight columns; those that have been added count nothing.
        const auto* counted =
            nothingThenAll.bytes + sizeof(i8xN) - sizeof(Vorn16s) * static_cast<std::size_t>(8 - (len - j));
        const i16x8 v = load<i16x8>(var + len - 8) & load<i16x8>(reinterpret_cast<const Vorn16s*>(counted));
        rest.add(load<i16x8>(x + len - 8), load<i16x8>(mean + len - 8), v);
    }
    return static_cast<std::int64_t>(sum + rest.total());
}

// sum x 2^-scaleFactor without rounding, saturated; nothing is lost before that, whatever the scale factor.
inline Vorn32s scaledAndSaturated(std::int64_t sum, int scaleFactor) {
    if (scaleFactor >= 0) return saturate<Vorn32s>(sum >> std::min(scaleFactor, 63));
    // A left shift by 31 saturates everything but zero already.
    const int left = scaleFactor < -31 ? 31 : -scaleFactor;
    return saturate<Vorn32s>(std::int64_t{saturate<Vorn32s>(sum)} * (std::int64_t{1} << left));
}

}  // namespace vorn::mahalanobis
