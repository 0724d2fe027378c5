#include "plain/half_band.h"

#include <algorithm>

namespace plain {

void splitBands(const float* src, float* low, float* high, int len, const float* taps, int tapsLen) {
    for (int n = 0; n < len / 2; ++n) {
        float even = 0, odd = 0;
        for (int k = 0; k < tapsLen; k += 2) even += src[2 * n + k] * taps[k];
        for (int k = 1; k < tapsLen; k += 2) odd += src[2 * n + k] * taps[k];
        low[n] = even + odd;
        high[n] = n % 2 == 0 ? odd - even : even - odd;
    }
}

void splitBands(const std::int16_t* src, std::int16_t* low, std::int16_t* high, int len, const std::int16_t* taps,
                int tapsLen, int shift) {
    const auto stored = [=](std::int64_t x) {
        return static_cast<std::int16_t>(std::clamp<std::int64_t>(x >> shift, -32768, 32767));
    };
    for (int n = 0; n < len / 2; ++n) {
        std::int64_t even = 0, odd = 0;
        for (int k = 0; k < tapsLen; k += 2) even += src[2 * n + k] * taps[k];
        for (int k = 1; k < tapsLen; k += 2) odd += src[2 * n + k] * taps[k];
        low[n] = stored(even + odd);
        high[n] = stored(n % 2 == 0 ? odd - even : even - odd);
    }
}

void splitBandsByTaps(const float* src, float* __restrict low, float* __restrict high, int len, const float* taps,
                      int tapsLen) {
    const int outputs = len / 2;
    std::fill_n(low, outputs, 0.0f);
    std::fill_n(high, outputs, 0.0f);
    for (int k = 0; k < tapsLen; k += 2) {
        for (int n = 0; n < outputs; ++n) low[n] += src[2 * n + k] * taps[k];
    }
    for (int k = 1; k < tapsLen; k += 2) {
        for (int n = 0; n < outputs; ++n) high[n] += src[2 * n + k] * taps[k];
    }
    for (int n = 0; n < outputs; ++n) {
        const float even = low[n], odd = high[n];
        low[n] = even + odd;
        high[n] = n % 2 == 0 ? odd - even : even - odd;
    }
}

}  // namespace plain
