// Noise reduction of speech: smoothed spectra, noise update, gain, impulse response, one element after the other.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "model/integers.h"
#include "support/rounding_mode.h"

namespace model {

// ---- Smoothed power spectra.

inline std::vector<float> smoothedPower(const std::vector<float>& src) {
    const std::size_t quads = src.size() / 4;
    std::vector<float> dst(quads + 1);
    const auto square = [&](std::size_t i) {
        const volatile float y = src[i] * src[i];
        return y;
    };
    const volatile float firstTwo = square(0) + square(2);
    dst[0] = (firstTwo + square(3)) * 0.5f;
    for (std::size_t k = 1; k < quads; ++k) {
        const volatile float left = square(4 * k) + square(4 * k + 1);
        const volatile float right = square(4 * k + 2) + square(4 * k + 3);
        dst[k] = (left + right) * 0.5f;
    }
    dst[quads] = square(1);
    return dst;
}

inline Big halfSquare(Big x) { return x * x / 2; }  // never negative, so rounded down

inline std::vector<std::int16_t> smoothedPower(const std::vector<std::int16_t>& src) {
    const std::size_t quads = src.size() / 4;
    std::vector<std::int16_t> dst(quads + 1);
    dst[0] = saturateTo<std::int16_t>(halfSquare(src[2]) + halfSquare(src[3]) + halfSquare(src[0]));
    for (std::size_t k = 1; k < quads; ++k) {
        Big sum = 0;
        for (std::size_t i = 4 * k; i < 4 * k + 4; ++i) sum += halfSquare(src[i]);
        dst[k] = saturateTo<std::int16_t>(sum);
    }
    dst[quads] = saturateTo<std::int16_t>(Big{src[1]} * src[1]);
    return dst;
}

// A 64-bit number shifted right and rounded down from 0 on, left with what leaves at the top lost below 0; places are
// taken modulo 64.
inline std::int64_t shifted64(Big x, int scaleFactor) {
    const std::int64_t places = std::abs(std::int64_t{scaleFactor}) % 64;
    const Big power = Big{1} << places;
    if (scaleFactor < 0) return wrapTo<std::int64_t>(x * power);
    Big quotient = x / power;
    if (x % power < 0) quotient -= 1;
    return static_cast<std::int64_t>(quotient);
}

// Result is 32 bits, saturated, or 64.
template <class Result>
std::vector<Result> smoothedPower(const std::vector<std::int32_t>& src, int scaleFactor) {
    const std::size_t quads = src.size() / 4;
    std::vector<Result> dst(quads + 1);
    const auto stored = [&](Big x) { return saturateTo<Result>(shifted64(saturateTo<std::int64_t>(x), scaleFactor)); };
    dst[0] = stored(halfSquare(src[0]) + halfSquare(src[2]) + halfSquare(src[3]));
    for (std::size_t k = 1; k < quads; ++k) {
        Big sum = 0;
        for (std::size_t i = 4 * k; i < 4 * k + 4; ++i) sum += halfSquare(src[i]);
        dst[k] = stored(sum);
    }
    dst[quads] = stored(wrapTo<std::int32_t>(Big{src[1]} * src[1]));
    return dst;
}

// ---- Noise.

inline float updatedNoise(float a, float b) {
    const test::RoundingMode truncation(test::RoundingMode::towardZero);
    const volatile float in = a, noise = b, one = 1.0f;
    const volatile float tenth = 0.1f * in;
    const volatile float sum = in + noise, slowSum = noise + tenth;
    const volatile float r1 = one / sum, r2 = one / slowSum;
    const volatile float ratio = noise * r2;
    const volatile float raised = ratio + one;
    const volatile float share = tenth * r1;
    const volatile float product = raised * share;
    const volatile float factor = product + 0.9f;
    const volatile float y = noise * factor;
    return sum == 0.0f || slowSum == 0.0f ? 0.0f : y;
}

// The single that is truncated and stored, and whether there is one at all.
struct ScaledUpdate {
    bool isZero;
    float y;
};
inline ScaledUpdate scaledUpdate(std::int32_t a, std::int32_t b, int scaleFactor) {
    const test::RoundingMode nearest(test::RoundingMode::nearest);
    if (wrapTo<std::int32_t>(Big{a} + b) == 0) return {true, 0.0f};
    const volatile float in = static_cast<float>(a), noise = static_cast<float>(b);
    const volatile float tenth = 0.1f * in;
    const volatile float v = tenth + noise;
    if (v > -1.0f && v < 1.0f) return {true, 0.0f};
    const volatile float sum = in + noise;
    const volatile float share = in / sum;
    const volatile float tenthOfShare = share * 0.1f;
    const volatile float ratio = noise / v;
    const volatile float raised = ratio + 1.0f;
    const volatile float product = tenthOfShare * raised;
    const volatile float r = product + 0.9f;
    const volatile float unscaled = noise * r;
    const volatile float y = unscaled * singleOfScale(scaleFactor);
    return {std::isnan(y), y};
}
inline std::int16_t updatedNoise(std::int16_t a, std::int16_t b, int scaleFactor) {
    const ScaledUpdate update = scaledUpdate(a, b, scaleFactor);
    if (update.isZero) return 0;
    if (update.y > 32767.0f) return 32767;
    return static_cast<std::int16_t>(update.y < -32768.0f ? -32768.0f : update.y);
}
inline std::int32_t updatedNoise(std::int32_t a, std::int32_t b, int scaleFactor) {
    const ScaledUpdate update = scaledUpdate(a, b, scaleFactor);
    if (update.isZero) return 0;
    const bool fits = update.y >= -2147483648.0f && update.y < 2147483648.0f;
    return fits ? static_cast<std::int32_t>(update.y) : std::numeric_limits<std::int32_t>::min();
}

// ---- Gain. The single one runs in the caller's rounding mode.

inline float wienerGain(float in, float noise, float den) {
    const auto largerOr = [](float x, float c) { return x > c ? x : c; };
    const volatile float one = 1.0f;
    const volatile float r = one / noise;
    const volatile float difference = in - noise;
    const volatile float before = 0.98f * den;
    const volatile float now = 0.02f * largerOr(difference, 0.0f);
    const volatile float signal = before + now;
    const volatile float eta1 = signal * r;
    const volatile float above1 = eta1 + 1.0f;
    const volatile float h1 = eta1 / above1;
    const volatile float ratio = in * r;
    const volatile float product = h1 * ratio;
    const volatile float eta2 = largerOr(product, 0.07943282276391983f);
    const volatile float above2 = eta2 + 1.0f;
    return eta2 / above2;
}

inline std::int16_t wienerGain(std::int16_t in, std::int16_t noise, std::int16_t den) {
    if (noise == 0) return 1206;
    const std::int64_t a = in, b = noise, c = den;
    const std::int64_t inv = 16384 / b;
    const std::int64_t over = a > b ? a - b : 0;
    const std::int64_t eta1 = ((c * 4014 + over * 82) * inv) >> 14;
    if (eta1 == -4096) return 1206;
    const std::int64_t h1 = eta1 * 16384 / (eta1 + 4096);
    std::int64_t eta2 = ((a * h1) >> 14) * inv;
    if (eta2 < 1301) eta2 = 1301;
    const std::int64_t gain = eta2 * 128 / ((eta2 >> 7) + 128);
    return wrapTo<std::int16_t>(gain);
}

// ---- Impulse response.

template <class T>
std::vector<T> spreadTaps(const std::vector<T>& s) {
    return {s[8], s[7], s[6], s[5], s[4], s[3], s[2], s[1], s[0], s[2], s[3], s[4], s[5], s[6], s[7], s[8], s[9]};
}

inline std::vector<float> residual(const std::vector<float>& src, const std::vector<float>& taps) {
    std::vector<float> dst(80);
    for (std::size_t n = 0; n < dst.size(); ++n) {
        volatile float sum = src[n] * taps[0];
        for (std::size_t i = 1; i < 17; ++i) {
            const volatile float product = src[n + i] * taps[i];
            sum = sum + product;
        }
        dst[n] = sum;
    }
    return dst;
}

inline std::vector<std::int16_t> residual(const std::vector<std::int16_t>& src, const std::vector<std::int16_t>& taps,
                                          int scaleFactor) {
    std::vector<std::int16_t> dst(80);
    for (std::size_t n = 0; n < dst.size(); ++n) {
        Big sum = 0;
        for (std::size_t i = 0; i < 17; ++i) sum += Big{src[n + i]} * taps[i];
        dst[n] = saturateTo<std::int16_t>(shifted64(sum, scaleFactor));
    }
    return dst;
}

}  // namespace model
