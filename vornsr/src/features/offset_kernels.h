// The first-order filter that removes a constant offset from samples: y(n) = x(n) - x(n-1) + val y(n-1).
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/wrap.h"
#include "simd.h"
#include "vornsr/types.h"

namespace vorn {

// Truncation to 16 bits that saturates; not a number gives 0, the low half of the processor's integer for it.
inline Vorn16s truncSat16(float y) {
    if (y >= 32767.0f) return 32767;
    if (y <= -32768.0f) return -32768;
    return static_cast<Vorn16s>(firstLane(truncToInt(splat<f32x4>(y))));
}

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

// Rounds halves away from zero: one half with the sign of the value is added, then truncated.
struct RoundedStep {
    float val;
    Vorn16s operator()(Vorn16s x, Vorn16s xBefore, Vorn16s yBefore) const {
        const float y = (static_cast<float>(x) - static_cast<float>(xBefore)) + static_cast<float>(yBefore) * val;
        return truncSat16(y + (y < 0.0f ? -0.5f : 0.5f));
    }
};

// Kept out of line so that the loop below has a branch in its place: all but never taken, and off the chain from one
// output to the next.
__attribute__((cold, noinline)) inline std::int32_t saturateSeldom(std::int32_t y) { return saturate<Vorn16s>(y); }

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
