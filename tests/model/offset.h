// Offset compensation, sample by sample. Intermediate singles stand in variables of their own.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "model/integers.h"

namespace model {

inline void compensateOffset(const std::vector<float>& x, std::vector<float>& y, float& srcLast, float dstLast,
                             float val) {
    for (std::size_t n = 0; n < x.size(); ++n) {
        if (n == 0) {
            const float product = dstLast * val;
            const float sum = product + x[0];
            y[0] = sum - srcLast;
        } else {
            const float difference = x[n] - x[n - 1];
            const float product = val * y[n - 1];
            y[n] = difference + product;
        }
    }
    srcLast = x.back();
}

// The first output, truncated.
inline std::int16_t firstOfOffset(std::int16_t x, std::int16_t srcLast, std::int16_t dstLast, float val) {
    const float product = (float)dstLast * val;
    const float sum = (float)x + product;
    return truncatedShort(sum - (float)srcLast);
}
// A later one in single precision, rounded.
inline std::int16_t roundedOffset(std::int16_t x, std::int16_t before, std::int16_t yBefore, float val) {
    const float difference = (float)x - (float)before;
    const float fedBack = (float)yBefore * val;
    const float value = difference + fedBack;
    return truncatedShort(value < 0 ? value - 0.5f : value + 0.5f);
}

inline void compensateOffset(const std::vector<std::int16_t>& x, std::vector<std::int16_t>& y, std::int16_t& srcLast,
                             std::int16_t dstLast, float val) {
    y[0] = firstOfOffset(x[0], srcLast, dstLast, val);
    for (std::size_t n = 1; n < x.size(); ++n) {
        if (val >= -1.0f && val <= 1.0f) {
            const auto q = (std::int16_t)std::trunc(val * 4096.0f);
            const std::int32_t scaled = (std::int32_t)std::floor((double)y[n - 1] * q / 4096.0);
            y[n] = saturateTo<std::int16_t>(scaled + saturateTo<std::int16_t>((std::int32_t)x[n] - x[n - 1]));
        } else {
            y[n] = roundedOffset(x[n], x[n - 1], y[n - 1], val);
        }
    }
    srcLast = x.back();
}

// The in-place 16-bit form: single precision behind the first output, whatever the factor.
inline void compensateOffsetInPlace(const std::vector<std::int16_t>& x, std::vector<std::int16_t>& y,
                                    std::int16_t& srcLast, std::int16_t dstLast, float val) {
    y[0] = firstOfOffset(x[0], srcLast, dstLast, val);
    for (std::size_t n = 1; n < x.size(); ++n) y[n] = roundedOffset(x[n], x[n - 1], y[n - 1], val);
    srcLast = x.back();
}

// An arithmetic shift, and one added where it has not truncated toward zero.
inline void compensateOffsetQ15(const std::vector<std::int16_t>& x, std::vector<std::int16_t>& y, std::int16_t& srcLast,
                                std::int16_t dstLast, std::int16_t val) {
    for (std::size_t n = 0; n < x.size(); ++n) {
        const std::int64_t product = (std::int64_t)(n == 0 ? dstLast : y[n - 1]) * val;
        const std::int64_t t = product + ((std::int64_t)x[n] - (n == 0 ? srcLast : x[n - 1])) * 32768;
        const std::int64_t tested = n == 0 ? t : product;
        y[n] = saturateTo<std::int16_t>((t >> 15) + (t < 0 && (tested & 0x7FFF) != 0 ? 1 : 0));
    }
    srcLast = x.back();
}

}  // namespace model
