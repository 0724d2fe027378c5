#include "plain/noise_reduction.h"

#include <xmmintrin.h>

#include <algorithm>
#include <cmath>

namespace plain {

void smoothedPower(const float* src, float* dst, int len) {
    const int last = len / 4;
    dst[0] = 0.5f * (src[0] * src[0] + src[2] * src[2] + src[3] * src[3]);
    for (int k = 1; k < last; ++k) {
        const float* s = src + 4 * k;
        dst[k] = 0.5f * ((s[0] * s[0] + s[1] * s[1]) + (s[2] * s[2] + s[3] * s[3]));
    }
    dst[last] = src[1] * src[1];
}

void smoothedPower(const std::int16_t* src, std::int16_t* dst, int len) {
    const int last = len / 4;
    const auto half = [](int x) { return static_cast<unsigned>(x * x) >> 1; };
    const auto saturated = [](unsigned x) { return static_cast<std::int16_t>(std::min(x, 32767u)); };
    dst[0] = saturated(half(src[0]) + half(src[2]) + half(src[3]));
    for (int k = 1; k < last; ++k) {
        const std::int16_t* s = src + 4 * k;
        dst[k] = saturated(half(s[0]) + half(s[1]) + half(s[2]) + half(s[3]));
    }
    dst[last] = saturated(static_cast<unsigned>(src[1] * src[1]));
}

namespace {

template <class Result, class Store>
void smoothed(const std::int32_t* src, Result* dst, int len, const Store& store) {
    const int last = len / 4;
    const auto half = [](std::int64_t x) { return static_cast<std::uint64_t>(x * x) >> 1; };
    const auto notAbove = [](std::uint64_t x) { return static_cast<std::int64_t>(x - (x >> 63)); };
    dst[0] = store(notAbove(half(src[0]) + half(src[2]) + half(src[3])));
    for (int k = 1; k < last; ++k) {
        const std::int32_t* s = src + 4 * k;
        dst[k] = store(notAbove(half(s[0]) + half(s[1]) + half(s[2]) + half(s[3])));
    }
    dst[last] =
        store(static_cast<std::int32_t>(static_cast<std::uint32_t>(src[1]) * static_cast<std::uint32_t>(src[1])));
}

}  // namespace

void smoothedPower(const std::int32_t* src, std::int32_t* dst, int len, int scaleFactor) {
    smoothed(src, dst, len, [=](std::int64_t x) {
        return static_cast<std::int32_t>(std::clamp<std::int64_t>(x >> scaleFactor, INT32_MIN, INT32_MAX));
    });
}

void smoothedPower(const std::int32_t* src, std::int64_t* dst, int len, int scaleFactor) {
    smoothed(src, dst, len, [=](std::int64_t x) { return x >> scaleFactor; });
}

namespace {

[[gnu::noinline]] void updateTruncated(const float* in, const float* noise, float* dst, int len) {
    for (int i = 0; i < len; ++i) {
        const float a = in[i], b = noise[i], p = 0.1f * a;
        const float y = b * ((b / (b + p) + 1.0f) * (p / (a + b)) + 0.9f);
        dst[i] = a + b == 0.0f || b + p == 0.0f ? 0.0f : y;
    }
}

}  // namespace

// Truncates, as is asked of it.
void noiseUpdate(const float* in, const float* noise, float* dst, int len) {
    const unsigned mode = _MM_GET_ROUNDING_MODE();
    _MM_SET_ROUNDING_MODE(_MM_ROUND_TOWARD_ZERO);
    updateTruncated(in, noise, dst, len);
    _MM_SET_ROUNDING_MODE(mode);
}

namespace {

template <class T, class Store>
void updated(const T* in, const T* noise, T* dst, int len, float scale, const Store& store) {
    for (int i = 0; i < len; ++i) {
        const float a = in[i], b = noise[i], v = 0.1f * a + b;
        const float y = b * (a / (a + b) * 0.1f * (b / v + 1.0f) + 0.9f) * scale;
        dst[i] = in[i] + noise[i] == 0 || std::fabs(v) < 1.0f ? 0 : store(y);
    }
}

}  // namespace

void noiseUpdate(const std::int16_t* in, const std::int16_t* noise, std::int16_t* dst, int len, int scaleFactor) {
    updated(in, noise, dst, len, std::ldexp(1.0f, -scaleFactor),
            [](float y) { return static_cast<std::int16_t>(std::max(std::min(y, 32767.0f), -32768.0f)); });
}

void noiseUpdate(const std::int32_t* in, const std::int32_t* noise, std::int32_t* dst, int len, int scaleFactor) {
    updated(in, noise, dst, len, std::ldexp(1.0f, -scaleFactor), [](float y) { return static_cast<std::int32_t>(y); });
}

void wienerGain(const float* in, const float* noise, const float* den, float* dst, int len) {
    for (int i = 0; i < len; ++i) {
        const float r = 1.0f / noise[i], over = in[i] - noise[i];
        const float eta1 = (0.98f * den[i] + 0.02f * (over > 0.0f ? over : 0.0f)) * r;
        const float ratio = eta1 / (eta1 + 1.0f) * (in[i] * r);
        const float eta2 = ratio > 0.0794328f ? ratio : 0.0794328f;
        dst[i] = eta2 / (eta2 + 1.0f);
    }
}

void wienerGain(const std::int16_t* in, const std::int16_t* noise, const std::int16_t* den, std::int16_t* dst,
                int len) {
    for (int i = 0; i < len; ++i) {
        dst[i] = 1206;
        if (noise[i] == 0) continue;
        const std::int64_t a = in[i], b = noise[i], inverse = 16384 / noise[i];
        const std::int64_t eta1 = ((den[i] * 4014 + std::max<std::int64_t>(a - b, 0) * 82) * inverse) >> 14;
        if (eta1 == -4096) continue;
        const std::int64_t h1 = eta1 * 16384 / (eta1 + 4096);
        const std::int64_t eta2 = std::max<std::int64_t>(((a * h1) >> 14) * inverse, 1301);
        dst[i] = static_cast<std::int16_t>(eta2 * 128 / ((eta2 >> 7) + 128));
    }
}

namespace {

template <class T>
void spread(const T* src, T* dst) {
    for (int k = 0; k <= 8; ++k) dst[k] = src[8 - k];
    for (int k = 9; k < 17; ++k) dst[k] = src[k - 7];
}

}  // namespace

void spreadTaps(const float* src, float* dst) { spread(src, dst); }
void spreadTaps(const std::int16_t* src, std::int16_t* dst) { spread(src, dst); }

void residualFilter(const float* src, float* dst, const float* taps) {
    for (int n = 0; n < 80; ++n) {
        float sum = 0;
        for (int i = 0; i < 17; ++i) sum += src[n + i] * taps[i];
        dst[n] = sum;
    }
}

void residualFilter(const std::int16_t* src, std::int16_t* dst, const std::int16_t* taps, int scaleFactor) {
    for (int n = 0; n < 80; ++n) {
        std::int64_t sum = 0;
        for (int i = 0; i < 17; ++i) sum += src[n + i] * taps[i];
        dst[n] = static_cast<std::int16_t>(std::clamp<std::int64_t>(sum >> scaleFactor, -32768, 32767));
    }
}

}  // namespace plain
