// Gaussian scores of one vector: the sum S = sum over j of (x[j] - m[j])^2 x v[j] in each arithmetic, with the order of
// additions that belongs to it. The inverse variances are an array of the data's type, singles, or UnitVar.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "frame/align.h"
#include "frame/wrap.h"
#include "scoring/gauss/low_parts.h"
#include "scoring/gauss/terms.h"
#include "simd/simd.h"
#include "simd/tile.h"
#include "vornsr/types.h"

namespace vorn {

// ---- Single.

// S, or -S, of singles or of 16-bit data in single. Of each sixteen columns the first eight go to one accumulator of
// four lanes and the next eight to another; then eight to the first, and what remains to its lane 0; (lane 0 + lane 1)
// + (lane 2 + lane 3) of both together.
template <class Sign, class T, class Var>
inline float floatSum(const T* x, const T* mean, Var var, std::ptrdiff_t len) {
    f32x4 first = splat<f32x4>(0.0f), second = first;
    std::ptrdiff_t j = 0;
    constexpr Sign join;
    using Terms = FloatTerms<T, Vorn32f>;
    const auto joinEight = [&](f32x4 sum, std::ptrdiff_t at) __attribute__((always_inline)) {
        sum = join(sum, Terms::template of<f32x4>(x + at, mean + at, var + at));
        return join(sum, Terms::template of<f32x4>(x + at + 4, mean + at + 4, var + at + 4));
    };
    for (; j + 16 <= len; j += 16) {
        first = joinEight(first, j);
        second = joinEight(second, j + 8);
    }
    if (j + 8 <= len) {
        first = joinEight(first, j);
        j += 8;
    }
    if (j == len) return sumNeighbours(first + second);
    float lane0 = firstLane(first);
    if (len >= 8) {
        float term[8];
        const std::ptrdiff_t last = len - 8;
        store(term, Terms::template of<f32x4>(x + last, mean + last, var + last));
        store(term + 4, Terms::template of<f32x4>(x + last + 4, mean + last + 4, var + last + 4));
        lane0 = joinLast<Sign>(lane0, term, len - j);
    } else {
        for (; j < len; ++j) lane0 = join(lane0, Terms::column(x + j, mean + j, var + j));
    }
    return sumNeighbours(withFirst(first, lane0) + second);
}

// ---- Double, over doubles or over singles that are widened before they are subtracted.

template <class T>
using DoubleTerms = FloatTerms<T, Vorn64f>;

template <class T, class Var>
inline double addInOrder(double sum, const T* x, const T* mean, Var var, std::ptrdiff_t from, std::ptrdiff_t len) {
    for (std::ptrdiff_t j = from; j < len; ++j) sum += DoubleTerms<T>::column(x + j, mean + j, var + j);
    return sum;
}

// S in two pairs of lanes: of each eight columns from `from` on, 0, 1 and 4, 5 go to the one pair, 2, 3 and 6, 7 to the
// other; pair + pair, lane + lane, then what remains in order. sum is what lane 0 starts with.
template <class T, class Var>
inline double pairedDoubleSum(double sum, const T* x, const T* mean, Var var, std::ptrdiff_t from, std::ptrdiff_t len) {
    using V = f64x4;
    using Terms = DoubleTerms<T>;
    V pairs = firstOnly(sum);
    std::ptrdiff_t j = from;
    for (; j + 8 <= len; j += 8) {
        pairs = pairs + Terms::template of<V>(x + j, mean + j, var + j);
        pairs = pairs + Terms::template of<V>(x + j + 4, mean + j + 4, var + j + 4);
    }
    sum = sumLanes(foldHalves(pairs));
    if (j == len) return sum;
    if (len < 8) return addInOrder(sum, x, mean, var, j, len);
    double term[8];
    const std::ptrdiff_t last = len - 8;
    store(term, Terms::template of<V>(x + last, mean + last, var + last));
    store(term + 4, Terms::template of<V>(x + last + 4, mean + last + 4, var + last + 4));
    return joinLast<Added>(sum, term, len - j);
}

// S as the address of the inverse variances (of the mean, where there are none) decides for vectors above eight
// columns: on a pair of elements as above, on an odd element with the first column taken alone, elsewhere in order.
template <class T, class Var>
inline double doubleSum(const T* x, const T* mean, Var var, std::ptrdiff_t len) {
    const T* deciding = mean;
    if constexpr (!isUnit<Var>) deciding = var;
    if (len <= 8 || !isAligned(deciding, sizeof(T))) return addInOrder(0.0, x, mean, var, 0, len);
    const std::ptrdiff_t alone = isAligned(deciding, 2 * sizeof(T)) ? 0 : 1;
    return pairedDoubleSum(addInOrder(0.0, x, mean, var, 0, alone), x, mean, var, alone, len);
}

// S with variances in the place of their inverses, divided by: two lanes, a last odd column to lane 0.
inline double dividedDoubleSum(const Vorn64f* x, const Vorn64f* mean, const Vorn64f* var, std::ptrdiff_t len) {
    f64x2 lanes = splat<f64x2>(0.0);
    std::ptrdiff_t j = 0;
    for (; j + 2 <= len; j += 2) {
        const f64x2 d = load<f64x2>(x + j) - load<f64x2>(mean + j);
        lanes = lanes + (d * d) / load<f64x2>(var + j);
    }
    if (j < len) {
        const double d = elementAt(x + j) - elementAt(mean + j);
        lanes = withFirst(lanes, firstLane(lanes) + (d * d) / elementAt(var + j));
    }
    return sumLanes(lanes);
}

// ---- 16 bits, summed in single.

// Eight columns as singles.
struct EightFloats {
    f32x4 low, high;
};
VORN_INLINE EightFloats floatsOf(const Vorn16s* p) {
    const i16x8 x = load<i16x8>(p);
    return {toFloat(widenLow(x)), toFloat(widenHigh(x))};
}
VORN_INLINE EightFloats floatsOf(const Vorn32f* p) { return {load<f32x4>(p), load<f32x4>(p + 4)}; }

// Adds the sums of two groups of eight columns to the running sum, in order: lanes 0 to 3 + lanes 4 to 7, then
// (0 + 2) + (1 + 3).
template <class V, class Var>
VORN_INLINE void addTwoGroups(float& sum, V d, Var var) {
    auto first = toFloat(widenLow(d)), second = toFloat(widenHigh(d));
    using F = decltype(first);
    first = first * first, second = second * second;
    if constexpr (std::is_same_v<Var, const Vorn16s*>) {
        const V v = load<V>(var);
        first = first * toFloat(widenLow(v)), second = second * toFloat(widenHigh(v));
    } else if constexpr (!isUnit<Var>) {
        first = first * load<F>(var), second = second * load<F>(var + F::lanes);
    }
    sum += sumHalves(lowHalf(first) + highHalf(first));
    sum += sumHalves(lowHalf(second) + highHalf(second));
}

// The terms of eight columns with exact differences.
template <class Var>
VORN_INLINE EightFloats exactTerms(const Vorn16s* x, const Vorn16s* mean, Var var) {
    const i16x8 a = load<i16x8>(x), b = load<i16x8>(mean);
    const f32x4 low = toFloat(widenLow(a) - widenLow(b)), high = toFloat(widenHigh(a) - widenHigh(b));
    if constexpr (isUnit<Var>) {
        return {low * low, high * high};
    } else {
        const EightFloats v = floatsOf(var);
        return {(low * low) * v.low, (high * high) * v.high};
    }
}

// S: groups of eight with differences that saturate, each summed whole before it joins the running sum, lanes 0 to 3 +
// lanes 4 to 7, then (0 + 2) + (1 + 3). What remains joins column by column, with exact differences that do not
// saturate.
template <class Var>
inline float fixedSum(const Vorn16s* x, const Vorn16s* mean, Var var, std::ptrdiff_t len) {
    float sum = 0.0f;
    std::ptrdiff_t j = 0;
    using TwoGroups = FourShortRows::Vector;
    if constexpr (TwoGroups::lanes == 16) {
        for (; j + 16 <= len; j += 16) {
            addTwoGroups(sum, subSat(load<TwoGroups>(x + j), load<TwoGroups>(mean + j)), var + j);
        }
    }
    for (; j + 8 <= len; j += 8) {
        const i16x8 d = subSat(load<i16x8>(x + j), load<i16x8>(mean + j));
        f32x4 low = toFloat(productsLow(d, d)), high = toFloat(productsHigh(d, d));
        if constexpr (!isUnit<Var>) {
            const EightFloats v = floatsOf(var + j);
            low = low * v.low, high = high * v.high;
        }
        sum += sumHalves(low + high);
    }
    if (j == len) return sum;
    if (len >= 8) {
        float term[8];
        const EightFloats last = exactTerms(x + len - 8, mean + len - 8, var + (len - 8));
        store(term, last.low), store(term + 4, last.high);
        return joinLast<Added>(sum, term, len - j);
    }
    for (; j < len; ++j) sum += ExactShortTerms::column(x + j, mean + j, var + j);
    return sum;
}

// Lane k of the result is the sum of the lanes k, k + 4, ..., which are whole groups apart.
VORN_INLINE i32x4 foldedToFour(i32x4 a) { return a; }
template <class I>
VORN_INLINE i32x4 foldedToFour(I a) {
    return foldedToFour(lowHalf(a) + highHalf(a));
}

// Sums of squares, their lower and upper 16 bits apart: a sum of two squares has 32 bits without a sign.
template <class I>
struct SquareSums {
    I low = splat<I>(0), high = splat<I>(0);
    template <class V>
    VORN_INLINE void add(V d) {
        const I pairs = mulAddPairs(d, d);
        low = low + (pairs & splat<I>(0xFFFF));
        high = high + shiftRightLogical<16>(pairs);
    }
};

// S of the identity covariance, exact. All differences saturate.
inline std::int64_t exactSquares(const Vorn16s* x, const Vorn16s* mean, std::ptrdiff_t len) {
    // After so many steps all lanes together still fit into 32 bits, and so does one step more of each kind.
    constexpr std::ptrdiff_t steps = 4000;
    std::int64_t sum = 0;
    std::ptrdiff_t j = 0;
    do {
        const std::ptrdiff_t vectors = (len - j) / i16xN::lanes;
        SquareSums<i32x4> four;
        if (vectors > 0) {
            SquareSums<i32xN> wide;
            for (std::ptrdiff_t n = vectors < steps ? vectors : steps; n > 0; --n, j += i16xN::lanes) {
                wide.add(subSat(load<i16xN>(x + j), load<i16xN>(mean + j)));
            }
            four = {foldedToFour(wide.low), foldedToFour(wide.high)};
        }
        if (vectors <= steps) {
            for (; j + 8 <= len; j += 8) four.add(subSat(load<i16x8>(x + j), load<i16x8>(mean + j)));
            if (len & 4) four.add(subSat(loadFirst<i16x8, 4>(x + j), loadFirst<i16x8, 4>(mean + j))), j += 4;
            if (len & 2) four.add(subSat(loadFirst<i16x8, 2>(x + j), loadFirst<i16x8, 2>(mean + j))), j += 2;
            if (len & 1) four.add(subSat(loadFirst<i16x8, 1>(x + j), loadFirst<i16x8, 1>(mean + j))), j += 1;
        }
        sum += static_cast<std::uint32_t>(sumLanes(four.low));
        sum += std::int64_t{static_cast<std::uint32_t>(sumLanes(four.high))} << 16;
    } while (j < len);
    return sum;
}

// -S of the identity covariance in four lanes: the squares of neighbours come from one multiply-add (two squares of
// -32768 wrap) and are then converted. Eight columns a step, four, two, and a last one with its exact difference.
inline float negatedPairSquares(const Vorn16s* x, const Vorn16s* mean, std::ptrdiff_t len) {
    f32x4 lanes = splat<f32x4>(0.0f);
    std::ptrdiff_t j = 0;
    const auto subtract = [&](i16x8 a, i16x8 b) __attribute__((always_inline)) {
        lanes = lanes - ShortPairTerms::ofDifferences(subSat(a, b));
    };
    for (; j + 8 <= len; j += 8) subtract(load<i16x8>(x + j), load<i16x8>(mean + j));
    if (len & 4) subtract(loadFirst<i16x8, 4>(x + j), loadFirst<i16x8, 4>(mean + j)), j += 4;
    if (len & 2) subtract(loadFirst<i16x8, 2>(x + j), loadFirst<i16x8, 2>(mean + j)), j += 2;
    if (len & 1) {
        lanes = withFirst(lanes, firstLane(lanes) - ExactShortTerms::column(x + j, mean + j, UnitVar()));
    }
    return sumHalves(lanes);
}

// ---- 16 bits, low precision: integers only.

template <class V, class Var>
VORN_INLINE V lowWeights(Var var) {
    if constexpr (isUnit<Var>) {
        return splat<V>(1);
    } else {
        return load<V>(var);
    }
}
template <int count, class Var>
VORN_INLINE i16x8 firstLowWeights(Var var) {
    if constexpr (isUnit<Var>) {
        return splat<i16x8>(1);
    } else {
        return loadFirst<i16x8, count>(var);
    }
}

// The length from which low-precision sums in the widest vectors of the build pay for folding them at the end.
inline constexpr std::ptrdiff_t widensFrom = i16xN::lanes > 8 ? 2 * i16xN::lanes : 0;

// -S / 2 x 2^-scaleFactor in wrapping integers. The groups of eight are shifted once, at their end and negated; the
// remainders of four, of two and of one at once and then subtracted.
template <class Var>
inline std::int32_t negatedLowScore(const Vorn16s* x, const Vorn16s* mean, Var var, std::ptrdiff_t len,
                                    int scaleFactor) {
    const LowShifts shifts(scaleFactor);
    i32x4 high = splat<i32x4>(0), low = high;
    std::ptrdiff_t j = 0;
    if (len >= widensFrom) {
        i32xN wideHigh = splat<i32xN>(0), wideLow = wideHigh;
        for (; j + i16xN::lanes <= len; j += i16xN::lanes) {
            const i16xN d = subSat(load<i16xN>(x + j), load<i16xN>(mean + j));
            const auto t = lowTerms(d, lowWeights<i16xN>(var + j));
            wideHigh = wideHigh - t.high, wideLow = wideLow - t.low;
        }
        high = foldedToFour(wideHigh), low = foldedToFour(wideLow);
    }
    for (; j + 8 <= len; j += 8) {
        const i16x8 d = subSat(load<i16x8>(x + j), load<i16x8>(mean + j));
        const auto t = lowTerms(d, lowWeights<i16x8>(var + j));
        high = high - t.high, low = low - t.low;
    }
    i32x4 total = shifts(high, low);
    if (len & 4) {
        const i16x8 d = subSat(loadFirst<i16x8, 4>(x + j), loadFirst<i16x8, 4>(mean + j));
        const auto t = lowTerms(d, firstLowWeights<4>(var + j));
        total = total - shifts(t.high, t.low);
        j += 4;
    }
    if (len & 2) {
        const i16x8 d = subSat(loadFirst<i16x8, 2>(x + j), loadFirst<i16x8, 2>(mean + j));
        const auto t = lowTerms(d, firstLowWeights<2>(var + j));
        total = total - shifts(t.high, t.low);
        j += 2;
    }
    std::int32_t score = sumLanes(total);
    if (len & 1) {
        if (isUnit<Var> && scaleFactor < 0) {
            // The last difference is exact here.
            const std::int64_t d = x[j] - mean[j];
            const auto half = splat<i32x4>(static_cast<std::int32_t>((d * d) >> 1));
            score = wrapSub(score, firstLane(shiftLeft(half, shifts.low.left)));
        } else {
            // Without variances the last difference wraps in 16 bits, with them it saturates.
            const i16x8 a = loadFirst<i16x8, 1>(x + j), b = loadFirst<i16x8, 1>(mean + j);
            const auto t = lowTerms(isUnit<Var> ? a - b : subSat(a, b), firstLowWeights<1>(var + j));
            score = wrapSub(score, firstLane(shifts(t.high, t.low)));
        }
    }
    return score;
}

}  // namespace vorn
