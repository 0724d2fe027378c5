// The update of a noise spectrum: b (0.9 + (0.1 a / (a + b)) (1 + b / (b + 0.1 a))) of the spectrum a and the estimate
// b.
#pragma once

#include "aurora/noise_reduction/lanes.h"
#include "loops/operands.h"
#include "simd/divide.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::noise_reduction {

// In single, with reciprocals; the rounding mode is truncation. 0 where a divisor is zero.
template <class V>
struct UpdateOfSingles : Operation<V::lanes, false> {
    VORN_INLINE V operator()(V a, V b) const {
        const V zero = splat<V>(0.0f), one = splat<V>(1.0f);
        const V p = splat<V>(0.1f) * a;
        const V sum = a + b, slow = b + p;
        const V r1 = divided(one, sum), r2 = divided(one, slow);
        const V factor = (b * r2 + one) * (p * r1) + splat<V>(0.9f);
        return select((sum == zero) | (slow == zero), zero, b * factor);
    }
};

// Of integers, in single, with quotients; the rounding mode is to nearest. 0 where the sum of the integers is zero,
// where the slow sum v has no whole part, and where a scale that is infinite meets a zero.
class UpdateOfIntegers {
public:
    explicit UpdateOfIntegers(Vorn32f scale) : scale_(scale) {}

protected:
    template <class Mask>
    VORN_INLINE f32xN updated(f32xN a, f32xN b, Mask sumIsZero) const {
        const f32xN one = splat<f32xN>(1.0f), tenth = splat<f32xN>(0.1f);
        const f32xN v = tenth * a + b;
        const f32xN r = divided(a, a + b) * tenth * (divided(b, v) + one) + splat<f32xN>(0.9f);
        const f32xN y = b * r * splat<f32xN>(scale_);
        return select((absOf(v) >= one) & (y == y) & !sumIsZero, y, splat<f32xN>(0.0f));
    }

private:
    Vorn32f scale_;
};

// Truncated and saturated. What no 32-bit integer holds becomes the smallest one, so only the upper end needs a limit.
struct UpdateOfShorts : UpdateOfIntegers, Operation<i16xN::lanes, false> {
    using UpdateOfIntegers::UpdateOfIntegers;
    VORN_INLINE i32xN half(i32xN a, i32xN b) const {
        const f32xN y = updated(toFloat(a), toFloat(b), a + b == splat<i32xN>(0));
        return truncToInt(minOf(y, splat<f32xN>(32767.0f)));
    }
    VORN_INLINE i16xN operator()(i16xN a, i16xN b) const {
        return narrowSat(half(widenLow(a), widenLow(b)), half(widenHigh(a), widenHigh(b)));
    }
};

// Truncated. What 32 bits do not hold becomes -2147483648 at both ends, and the sum that is tested for zero wraps: both
// on purpose.
struct UpdateOfLongs : UpdateOfIntegers, Operation<i32xN::lanes, false> {
    using UpdateOfIntegers::UpdateOfIntegers;
    VORN_INLINE i32xN operator()(i32xN a, i32xN b) const {
        return truncToInt(updated(toFloat(a), toFloat(b), a + b == splat<i32xN>(0)));
    }
};

}  // namespace vorn::noise_reduction
