// The gain of a Wiener filter in two passes: the second takes the signal that the gain of the first one leaves.
#pragma once

#include <bit>
#include <cstdint>

#include "aurora/noise_reduction/lanes.h"
#include "loops/operands.h"
#include "simd/divide.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::noise_reduction {

// Two operands in the place of one: the noise, and the denoised spectrum of the frame before.
template <class V>
struct NoiseAndDenoised {
    V noise, den;
};
template <class V>
struct RunOfNoiseAndDenoised {
    RunOf<V> noise, den;
    VORN_INLINE NoiseAndDenoised<V> at(std::int64_t i) const { return {noise.at(i), den.at(i)}; }
    VORN_INLINE void fetch(std::int64_t i) const {
        noise.fetch(i);
        den.fetch(i);
    }
    template <int rest>
    VORN_INLINE NoiseAndDenoised<V> first(std::int64_t n) const {
        return {noise.template first<rest>(n), den.template first<rest>(n)};
    }
};

// 10^(-22/20): the gain stays above 22 dB of attenuation in the second pass.
inline constexpr Vorn32f leastRatio = 0x1.455b5ap-4f;

// A maximum is its second operand unless the first is above it: a not-a-number counts as the floor.
template <class V>
struct SingleGain : Operation<V::lanes, false> {
    VORN_INLINE V operator()(V in, NoiseAndDenoised<V> x) const {
        const V zero = splat<V>(0.0f), one = splat<V>(1.0f);
        const V r = divided(one, x.noise);
        const V signal = splat<V>(0.98f) * x.den + splat<V>(0.02f) * maxOf(in - x.noise, zero);
        const V eta1 = signal * r;
        const V h1 = divided(eta1, eta1 + one);
        const V eta2 = maxOf(h1 * (in * r), splat<V>(leastRatio));
        return divided(eta2, eta2 + one);
    }
};

// The same in integers, whose quotients are truncated. They are made by the divider of floats, which is exact here: let
// x and y be integers that a format of p bits holds, and |x| + |y| <= 2^(p-1). With n the truncated magnitude of x / y,
// the magnitude of x / y is from n to n + 1 - 1 / |y|; a number of the format lies in front of n + 1 no further than
// (n + 1) 2^(1-p), which is at most 1 / |y| since (n + 1) |y| <= |x| + |y|. So in every rounding mode the quotient
// stays below n + 1, and does not fall below n, which is a number of the format.
class ShortGain : public Operation<i16xN::lanes, false> {
public:
    VORN_INLINE i16xN operator()(i16xN in, NoiseAndDenoised<i16xN> x) const {
        const auto inAndNoise = zip(in, x.noise), den = zip(x.den, x.den);
        return joinSat({gain(inAndNoise.low, den.low), gain(inAndNoise.high, den.high)});
    }

private:
    static constexpr std::int32_t floorGain = 1206;  // in Q14, of the least ratio

    // Of lanes with `in` in their lower half and the noise in the upper one, and with `den` in the lower half.
    static VORN_INLINE i32xN gain(i32xN inAndNoise, i32xN den) {
        const i32xN in = shiftRight<16>(shiftLeft<16>(inAndNoise)), noise = shiftRight<16>(inAndNoise);
        // 0.98 and 0.02 in Q12. Their sum is below 2^28.
        const i32xN above = mulAddPairs(shortsOf(inAndNoise), twoWeights(82, -82));
        const i32xN signal = mulAddPairs(shortsOf(den), twoWeights(4014, 0)) + maxOf(above, splat<i32xN>(0));
        // |x| + |y| <= 2^14 + 2^15 in single.
        const i32xN inverse = truncToInt(divided(splat<f32xN>(16384.0f), toFloat(noise)));
        const i32xN eta1 = productInQ14(signal, inverse);  // below 2^28, in Q12
        const i32xN h1 = firstGain(eta1);
        const i32xN eta2 = limitedRatio(productInQ14(in, h1), inverse);
        const auto hasNone = (noise == splat<i32xN>(0)) | (eta1 == splat<i32xN>(-4096));
        return select(hasNone, splat<i32xN>(floorGain), secondGain(eta2));
    }

    static VORN_INLINE i16xN twoWeights(int lower, int upper) {
        return shortsOf(splat<i32xN>((lower & 0xFFFF) | static_cast<int>(static_cast<unsigned>(upper) << 16)));
    }

    // a b / 2^14, rounded down, where 32 bits hold it.
    static VORN_INLINE i32xN productInQ14(i32xN a, i32xN b) {
        const i64xN lower = splat<i64xN>(0xFFFFFFFF);
        const i64xN even = shiftRightLogical<14>(mulEven(a, b));
        const i64xN odd = shiftLeft<32 - 14>(mulEven(oddLanes(a), oddLanes(b)));
        return std::bit_cast<i32xN>((even & lower) | andNot(lower, odd));
    }

    // (eta << 14) / (eta + 4096), in Q14: at most 2^27 in magnitude. |x| + |y| < 2^43 in double.
    static VORN_INLINE i32xN firstGain(i32xN eta) {
        const auto quotient = [](f64xN x) __attribute__((always_inline)) {
            return divided(x * splat<f64xN>(16384.0), x + splat<f64xN>(4096.0));
        };
        return truncToInt(quotient(toDoubleLow(eta)), quotient(toDoubleHigh(eta)));
    }

    // The ratio in Q14, not below 10^(-22/20), and not above 2^28, from where on the gain is the same.
    static VORN_INLINE i32xN limitedRatio(i32xN signal, i32xN inverse) {
        const auto product = [](f64xN x, f64xN y) __attribute__((always_inline)) {
            return minOf(maxOf(x * y, splat<f64xN>(1301.0)), splat<f64xN>(0x1p28));
        };
        return truncToInt(product(toDoubleLow(signal), toDoubleLow(inverse)),
                          product(toDoubleHigh(signal), toDoubleHigh(inverse)));
    }

    // (eta << 7) / ((eta >> 7) + 128). With d the divisor and r the last seven bits of eta this is
    // 2^14 - (2^21 - 2^7 r) / d, where the second quotient is rounded up. |x| + |y| < 2^23 in single; and from eta =
    // 2^28 on what is taken off is above 0 and below 1.
    static VORN_INLINE i32xN secondGain(i32xN eta) {
        const i32xN divisor = shiftRight<7>(eta) + splat<i32xN>(128);
        const i32xN missing = splat<i32xN>(1 << 21) - shiftLeft<7>(eta & splat<i32xN>(127));
        const i32xN roundedUp = missing + divisor - splat<i32xN>(1);
        return splat<i32xN>(16384) - truncToInt(divided(toFloat(roundedUp), toFloat(divisor)));
    }
};

}  // namespace vorn::noise_reduction
