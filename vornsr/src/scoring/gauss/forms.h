// Gaussian scores: the final forms of val - S / 2, of one sum or of one in each lane. They differ in their roundings.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <type_traits>

#include "frame/scale.h"
#include "simd/tile.h"
#include "vornsr/types.h"

namespace vorn {

// x in every lane, or x itself.
template <class V>
VORN_INLINE V everywhere(Vorn32f x) {
    if constexpr (std::is_floating_point_v<V>) {
        return x;
    } else {
        return splat<V>(x);
    }
}

VORN_INLINE Vorn32f asFloat(Vorn32f a) { return a; }
VORN_INLINE f32x4 asFloat(f32x4 a) { return a; }
VORN_INLINE f32x4 asFloat(i32x4 a) { return toFloat(a); }

struct DoubledVal {  // 0.5 x (2 x val - S)
    template <class V>
    VORN_INLINE V operator()(V negatedSum, V val) const {
        return everywhere<V>(0.5f) * (val + val + negatedSum);
    }
};

struct HalvedSum {  // val + 0.5 x (-S)
    template <class V>
    VORN_INLINE V operator()(V negatedSum, V val) const {
        return val + everywhere<V>(0.5f) * negatedSum;
    }
};

// scaleFactor + 1: the exponent that takes the factor 1/2 in.
constexpr std::int64_t withHalf(int scaleFactor) { return std::int64_t{scaleFactor} + 1; }
// The unit of half a sum, 2^-(scaleFactor + 1).
constexpr Vorn32f scaleOfHalf(int scaleFactor) { return powerOfTwo_32f(-withHalf(scaleFactor)); }

// x x 2^-exponent by a power of two that is never below one: a positive exponent divides by it. Where it is infinite, a
// quotient is 0 that a product with 2^-exponent would still hold as a denormal.
class ScaledDown {
public:
    explicit ScaledDown(std::int64_t exponent) : divides_(exponent > 0), power_(powerOfTwo_32f(std::abs(exponent))) {}
    template <class V>
    VORN_INLINE V operator()(V x) const {
        const V power = everywhere<V>(power_);
        return divides_ ? x / power : x * power;
    }

private:
    bool divides_;
    Vorn32f power_;
};

// val + (-S) x 2^-(scaleFactor + 1), the power of two in single.
class ScaledSum {
public:
    explicit ScaledSum(int scaleFactor) : scale_(scaleOfHalf(scaleFactor)) {}
    explicit ScaledSum(Vorn32f scale) : scale_(scale) {}
    template <class V>
    VORN_INLINE f32x4 operator()(f32x4 negatedSum, V val) const {
        return negatedSum * splat<f32x4>(scale_) + asFloat(val);
    }

private:
    Vorn32f scale_;
};

// The same by a power of two that is never below one.
class PowerOfTwoSum {
public:
    explicit PowerOfTwoSum(int scaleFactor) : scaled_(withHalf(scaleFactor)) {}
    template <class V>
    VORN_INLINE V scaled(V negatedSum) const {
        return scaled_(negatedSum);
    }
    template <class V, class Val>
    VORN_INLINE V operator()(V negatedSum, Val val) const {
        return scaled_(negatedSum) + asFloat(val);
    }

private:
    ScaledDown scaled_;
};

// The total of a low-precision sum, which is -S / 2 already: as an integer that wraps, or in single.
struct TotalAndVal {
    VORN_INLINE i32x4 operator()(i32x4 total, i32x4 val) const { return total + val; }
    VORN_INLINE f32x4 operator()(i32x4 total, f32x4 val) const { return toFloat(total) + val; }
};

// A score as an integer, in the current rounding mode or toward zero; out of range, on either side, -2147483648.
VORN_INLINE Vorn32s rounded(Vorn32f score) { return firstLane(roundToInt(splat<f32x4>(score))); }
VORN_INLINE Vorn32s truncated(Vorn32f score) { return firstLane(truncToInt(splat<f32x4>(score))); }

}  // namespace vorn
