// Accumulators and variances element by element.
#pragma once

#include <algorithm>
#include <climits>
#include <cstdint>

#include "frame/scale.h"
#include "loops/elementwise.h"
#include "loops/operands.h"
#include "move/convert_kernels.h"
#include "simd/part.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::accumulate {

// d = src - mean, t = d val; meanAcc += t, varAcc += d t.
template <class T>
struct WeightedDeviations {
    using V = Wide<T>;
    static constexpr std::int64_t step = V::lanes;
    static constexpr bool unrolled = true;
    struct Sums {
        V mean, var;
    };
    const T *src, *mean;
    T *meanAcc, *varAcc;
    V val;

    VORN_INLINE Sums added(V x, V m, V meanSum, V varSum) const {
        const V d = x - m, t = d * val;
        return {meanSum + t, varSum + d * t};
    }
    VORN_INLINE Sums at(std::int64_t i) const {
        return added(load<V>(src + i), load<V>(mean + i), load<V>(meanAcc + i), load<V>(varAcc + i));
    }
    VORN_INLINE void put(std::int64_t i, const Sums& sums) const {
        store(meanAcc + i, sums.mean);
        store(varAcc + i, sums.var);
    }
    VORN_INLINE void part(std::int64_t n) const {
        const Sums sums =
            added(loadPart<V>(src, n), loadPart<V>(mean, n), loadPart<V>(meanAcc, n), loadPart<V>(varAcc, n));
        storePart(meanAcc, sums.mean, n);
        storePart(varAcc, sums.var, n);
    }
    T* result() const { return meanAcc; }
};

template <class T>
VORN_INLINE void addDeviations(const T* src, const T* mean, T* meanAcc, T* varAcc, std::int64_t len, T val) {
    const WeightedDeviations<T> kernel{src, mean, meanAcc, varAcc, splat<Wide<T>>(val)};
    if (len < kernel.step) return kernel.part(len);
    stepsInCache(len, kernel);
}

// (sumSq - mean^2 val1) val2, all in single precision.
VORN_INLINE f32xN varianceOf(f32xN mean, f32xN sumSq, f32xN val1, f32xN val2) {
    return (sumSq - (mean * mean) * val1) * val2;
}

struct SingleVariance : Operation<f32xN::lanes, true> {
    f32xN val1, val2;
    VORN_INLINE SingleVariance(Vorn32f v1, Vorn32f v2) : val1(splat<f32xN>(v1)), val2(splat<f32xN>(v2)) {}
    VORN_INLINE f32xN operator()(f32xN mean, f32xN sumSq) const { return varianceOf(mean, sumSq, val1, val2); }
};

// The mean is squared in single, on purpose; everything else is in double, and rounded to single at the end.
struct MixedVariance : Operation<f32xN::lanes, false> {
    f64xN val1, val2;
    VORN_INLINE MixedVariance(Vorn32f v1, Vorn32f v2) : val1(splat<f64xN>(v1)), val2(splat<f64xN>(v2)) {}
    VORN_INLINE f32xN operator()(f32xN mean, f32xN sumSq) const {
        const f32xN square = mean * mean;
        return narrow((widenLow(sumSq) - widenLow(square) * val1) * val2,
                      (widenHigh(sumSq) - widenHigh(square) * val1) * val2);
    }
};

// Integers taken as singles; the variance is left as a single. The sign of a not-a-number decides what integer it
// becomes: where val2 is one it is that of val2, and the compiler is not asked which of two factors it hands on.
struct VarianceOfIntegers : SingleVariance {
    VORN_INLINE VarianceOfIntegers(Vorn32f v1, Vorn32f v2) : SingleVariance(v2 == v2 ? v1 : 0.0f, v2) {}
    VORN_INLINE f32xN operator()(i32xN mean, i32xN sumSq) const {
        return SingleVariance::operator()(toFloat(mean), toFloat(sumSq));
    }
};

// The same times a power of two, as integers.
struct ScaledVariance : VarianceOfIntegers {
    f32xN scale;
    VORN_INLINE ScaledVariance(Vorn32f v1, Vorn32f v2, int scaleFactor)
        : VarianceOfIntegers(v1, v2), scale(splat<f32xN>(GetScale_32s32f(scaleFactor))) {}
    VORN_INLINE f32xN scaled(i32xN mean, i32xN sumSq) const {
        return VarianceOfIntegers::operator()(mean, sumSq) * scale;
    }
};

// Truncated. What no 32-bit integer holds becomes the smallest, above the largest too: a limit of 2147483648.0 would
// not change that.
struct TruncatedVariance : ScaledVariance {
    using ScaledVariance::ScaledVariance;
    VORN_INLINE i32xN operator()(i32xN mean, i32xN sumSq) const { return truncToInt(scaled(mean, sumSq)); }
};

// Rounded in the current mode and saturated, by the rule of vornsConvert_32f32s_Sfs for not-a-numbers: their sign
// decides.
struct RoundedVariance : ScaledVariance {
    using ScaledVariance::ScaledVariance;
    VORN_INLINE i32xN operator()(i32xN mean, i32xN sumSq) const {
        constexpr Vorn32s belowLimit = 0x4EFFFFFF;  // the largest single that a 32-bit integer holds, as bits
        const f32xN x = scaled(mean, sumSq);
        return select(bitsOf(x) > splat<i32xN>(belowLimit), splat<i32xN>(INT_MAX), roundToInt(x));
    }
};

// Past the cache only where nothing has just been read.
template <class Op, class T, class D>
VORN_INLINE void variances(const Op& op, const T* mean, const T* sumSq, D* dst, std::int64_t len) {
    const auto kernel = elementKernel(op, elements(mean), elements(sumSq), dst);
    if (static_cast<const void*>(sumSq) != dst) return forEachStep(len, kernel);
    if (len < kernel.step) return kernel.part(len);
    stepsInCache(len, kernel);
}

inline bool roundsToNearest() {
    const volatile Vorn32f one = 1.0f;
    return one + 0x1p-25f == one && one + 0x1.8p-24f != one;
}

// The arithmetic is in the caller's mode, the conversion rounds to nearest: where these are two modes, runs that stay
// in the first-level cache take them one after the other.
inline void roundedVariances(const Vorn32s* mean, const Vorn32s* sumSq, Vorn32s* dst, std::int64_t len, int scaleFactor,
                             Vorn32f val1, Vorn32f val2) {
    if (roundsToNearest()) return variances(RoundedVariance(val1, val2, scaleFactor), mean, sumSq, dst, len);
    constexpr std::int64_t run = 2048;
    for (std::int64_t i = 0; i < len; i += run) {
        const std::int64_t n = std::min(run, len - i);
        auto* singles = reinterpret_cast<Vorn32f*>(dst + i);
        variances(VarianceOfIntegers(val1, val2), mean + i, sumSq + i, singles, n);
        convert(singles, dst + i, n, vornRndNear, scaleFactor);
    }
}

}  // namespace vorn::accumulate
