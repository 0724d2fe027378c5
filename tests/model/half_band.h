// The split into two bands, output by output.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace model::half_band {

inline float single(float x) {
    volatile float kept = x;
    return kept;
}

// The sign of tap k in the high band of output n.
inline int sign(std::ptrdiff_t n, std::ptrdiff_t k) { return (n + k) % 2 == 0 ? -1 : 1; }

// Singles in the promised order: even taps, odd taps, then both.
inline void split(const float* src, float* low, float* high, int len, const float* taps, int tapsLen) {
    for (std::ptrdiff_t n = 0; n < len / 2; ++n) {
        float sums[2] = {0.0f, 0.0f};
        for (std::ptrdiff_t k = 0; k < tapsLen; ++k) {
            const float product = single(single(src[2 * n + k]) * single(taps[k]));
            sums[k % 2] = single(single(sums[k % 2]) + product);
        }
        const float even = single(sums[0]), odd = single(sums[1]);
        low[n] = single(even + odd);
        high[n] = sign(n, 0) < 0 ? single(odd - even) : single(even - odd);
    }
}

// 2^64 = 0, as of a register; then into the 16 bits of a result.
inline std::int16_t scaled(std::int64_t sum, int scaleFactor) {
    if (scaleFactor > 0) {
        for (int i = 0; i < scaleFactor % 64; ++i) sum = (sum - (sum % 2 != 0 && sum < 0 ? 1 : 0)) / 2;
    } else {
        for (std::int64_t i = 0; i < -std::int64_t{scaleFactor} % 64; ++i)
            sum = (std::int64_t)((std::uint64_t)sum + (std::uint64_t)sum);
    }
    return (std::int16_t)std::clamp<std::int64_t>(sum, -32768, 32767);
}
inline void split(const std::int16_t* src, std::int16_t* low, std::int16_t* high, int len, const std::int16_t* taps,
                  int tapsLen, int scaleFactor) {
    for (std::ptrdiff_t n = 0; n < len / 2; ++n) {
        std::int64_t lowSum = 0, highSum = 0;
        for (std::ptrdiff_t k = 0; k < tapsLen; ++k) {
            const std::int64_t product = std::int64_t{src[2 * n + k]} * taps[k];
            lowSum += product;
            highSum += sign(n, k) * product;
        }
        low[n] = scaled(lowSum, scaleFactor);
        high[n] = scaled(highSum, scaleFactor);
    }
}

}  // namespace model::half_band
