// Offset compensation as it is promised, sample by sample. Intermediate singles stand in variables of their own.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

namespace model {

inline std::int16_t clamp16(std::int64_t y) { return (std::int16_t)(y > 32767 ? 32767 : y < -32768 ? -32768 : y); }

// At or above 32767.0: 32767; at or below -32768.0: -32768; not a number: the low half of -2147483648.
inline std::int16_t truncate16(float y) {
    if (std::isnan(y)) return 0;
    if (y >= 32767.0f) return 32767;
    if (y <= -32768.0f) return -32768;
    return (std::int16_t)std::trunc(y);
}

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

inline void compensateOffset(const std::vector<std::int16_t>& x, std::vector<std::int16_t>& y, std::int16_t& srcLast,
                             std::int16_t dstLast, float val) {
    const float product = (float)dstLast * val;
    const float sum = (float)x[0] + product;
    y[0] = truncate16(sum - (float)srcLast);
    for (std::size_t n = 1; n < x.size(); ++n) {
        if (val >= -1.0f && val <= 1.0f) {
            const auto q = (std::int16_t)std::trunc(val * 4096.0f);
            const std::int32_t scaled = (std::int32_t)std::floor((double)y[n - 1] * q / 4096.0);
            y[n] = clamp16(scaled + clamp16((std::int32_t)x[n] - x[n - 1]));
        } else {
            const float difference = (float)x[n] - (float)x[n - 1];
            const float fedBack = (float)y[n - 1] * val;
            const float value = difference + fedBack;
            y[n] = truncate16(value < 0 ? value - 0.5f : value + 0.5f);
        }
    }
    srcLast = x.back();
}

// The in-place 16-bit form: single precision behind the first output, whatever the factor.
inline void compensateOffsetInPlace(const std::vector<std::int16_t>& x, std::vector<std::int16_t>& y,
                                    std::int16_t& srcLast, std::int16_t dstLast, float val) {
    const float product = (float)dstLast * val;
    const float sum = (float)x[0] + product;
    y[0] = truncate16(sum - (float)srcLast);
    for (std::size_t n = 1; n < x.size(); ++n) {
        const float difference = (float)x[n] - (float)x[n - 1];
        const float fedBack = (float)y[n - 1] * val;
        const float value = difference + fedBack;
        y[n] = truncate16(value < 0 ? value - 0.5f : value + 0.5f);
    }
    srcLast = x.back();
}

// The shift and its correction as the header words them.
inline void compensateOffsetQ15(const std::vector<std::int16_t>& x, std::vector<std::int16_t>& y, std::int16_t& srcLast,
                                std::int16_t dstLast, std::int16_t val) {
    for (std::size_t n = 0; n < x.size(); ++n) {
        const std::int64_t product = (std::int64_t)(n == 0 ? dstLast : y[n - 1]) * val;
        const std::int64_t t = product + ((std::int64_t)x[n] - (n == 0 ? srcLast : x[n - 1])) * 32768;
        const std::int64_t tested = n == 0 ? t : product;
        y[n] = clamp16((t >> 15) + (t < 0 && (tested & 0x7FFF) != 0 ? 1 : 0));
    }
    srcLast = x.back();
}

}  // namespace model
