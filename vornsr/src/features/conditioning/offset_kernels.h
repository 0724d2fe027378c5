// The first-order filter that removes a constant offset from samples: y(n) = x(n) - x(n-1) + val y(n-1).
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "features/conditioning/truncate.h"
#include "frame/wrap.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn {

// The first output is formed in another order than the rest, and the 16-bit one truncates.
inline float firstOffsetOutput(float x, float xBefore, float yBefore, float val) {
    return (yBefore * val + x) - xBefore;
}
inline Vorn16s firstOffsetOutput(Vorn16s x, Vorn16s xBefore, Vorn16s yBefore, float val) {
    return truncSat16(
        firstOffsetOutput(static_cast<float>(x), static_cast<float>(xBefore), static_cast<float>(yBefore), val));
}

// Each step is a policy: the next output from the sample, the sample before it and the output before it.

struct SingleStep {
    float val;
    float operator()(float x, float xBefore, float yBefore) const { return (x - xBefore) + val * yBefore; }
};

// Kept out of line so that the loops below have a branch in its place: all but never taken, and off the chain from one
// output to the next.
__attribute__((cold, noinline)) inline std::int32_t saturateSeldom(std::int32_t y) { return saturate<Vorn16s>(y); }
__attribute__((cold, noinline)) inline float saturateSeldom(float y) { return truncSat16(y); }

// Rounds halves away from zero: one half with the sign of the value is added, then truncated. The outputs stay singles
// on their way to the next one.
struct RoundedStep {
    float val;
    float operator()(float x, float xBefore, float yBefore) const {
        const float y = (x - xBefore) + yBefore * val;
        const float rounded = y + std::copysign(0.5f, y);
        if (rounded > -32768.0f && rounded < 32767.0f) return firstLane(toFloat(truncToInt(splat<f32x4>(rounded))));
        return saturateSeldom(rounded);
    }
};

// The factor in Q12. The difference saturates by itself; the product is truncated by its arithmetic shift.
struct Q12Step {
    std::int32_t q;
    std::int32_t operator()(std::int32_t x, std::int32_t xBefore, std::int32_t yBefore) const {
        const std::int32_t y = ((yBefore * q) >> 12) + saturate<Vorn16s>(x - xBefore);
        return static_cast<Vorn16s>(y) == y ? y : saturateSeldom(y);
    }
};

// The factor in Q15 and the sum exact: truncated toward zero, saturated.
struct Q15Step {
    std::int32_t val;
    std::int32_t operator()(std::int32_t x, std::int32_t xBefore, std::int32_t yBefore) const {
        const std::int64_t sum = std::int64_t{yBefore} * val + std::int64_t{x - xBefore} * 32768;
        return saturate<Vorn16s>(sum / 32768);
    }
};

// dst may be src: a sample is read before its output is written.
template <class T, class Step>
void compensateOffset(const T* src, T* dst, std::ptrdiff_t len, T srcLast, T dstLast, Step step) {
    decltype(step(srcLast, srcLast, dstLast)) xBefore = srcLast, yBefore = dstLast;
    for (std::ptrdiff_t n = 0; n < len; ++n) {
        const T x = src[n];
        yBefore = step(x, xBefore, yBefore);
        dst[n] = static_cast<T>(yBefore);
        xBefore = x;
    }
}

}  // namespace vorn
