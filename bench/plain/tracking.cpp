#include "plain/tracking.h"

#include <algorithm>
#include <cmath>

namespace plain {
namespace {

template <class T, class Smooth, class Follow>
void overBins(Tracker<T>& t, const T* __restrict in, T* __restrict noise, Smooth smooth, Follow follow) {
    T* __restrict presence = t.presence, * __restrict smoothed = t.smoothed;
    T* __restrict minimum = t.minimum, * __restrict tempMinimum = t.tempMinimum;
    const bool restarts = t.frameIdx == t.minWindow;
    if (restarts) {
        for (int k = 0; k < t.bins; ++k) {
            smoothed[k] = smooth(smoothed[k], in[k]);
            minimum[k] = std::min(smoothed[k], tempMinimum[k]);
            tempMinimum[k] = smoothed[k];
        }
        t.frameIdx = 0;
    } else {
        for (int k = 0; k < t.bins; ++k) {
            smoothed[k] = smooth(smoothed[k], in[k]);
            minimum[k] = std::min(smoothed[k], minimum[k]);
            tempMinimum[k] = std::min(smoothed[k], tempMinimum[k]);
        }
    }
    for (int k = 0; k < t.bins; ++k) follow(smoothed[k], minimum[k], in[k], presence[k], noise[k]);
    ++t.frameIdx;
}

}  // namespace

void trackNoise(Tracker<float>& t, const float* in, float* noise) {
    const float alphaD = t.alphaD, alphaP = t.alphaP, alphaS = t.alphaS, delta = t.delta;
    overBins(
        t, in, noise, [=](float s, float y) { return s * alphaS + (1 - alphaS) * y; },
        [=](float s, float m, float y, float& presence, float& n) {
            float p = alphaP * presence;
            if (s > m * delta) p += 1 - alphaP;
            presence = p;
            const float a = alphaD + (1 - alphaD) * p;
            n = a * n + (1 - a) * y;
        });
}

void trackNoise(Tracker<std::int32_t>& t, const std::int32_t* in, std::int32_t* noise) {
    const std::int64_t alphaS = t.alphaS, restS = INT32_MAX - alphaS;
    const double alphaD = t.alphaD, alphaP = t.alphaP, delta = t.delta * 0x1p-15;
    overBins(
        t, in, noise,
        [=](std::int32_t s, std::int32_t y) { return static_cast<std::int32_t>((s * alphaS + restS * y) >> 31); },
        [=](std::int32_t s, std::int32_t m, std::int32_t y, std::int32_t& presence, std::int32_t& n) {
            double p = presence * alphaP * 0x1p-31;
            if (std::min(m * delta, 2147483647.0) < s) p += 2147483647.0 - alphaP;
            presence = static_cast<std::int32_t>(std::nearbyint(p));
            const double a = alphaD + p * (2147483647.0 - alphaD) * 0x1p-31;
            n = static_cast<std::int32_t>(std::nearbyint((a * n + (2147483647.0 - a) * y) * 0x1p-31));
        });
}

}  // namespace plain
