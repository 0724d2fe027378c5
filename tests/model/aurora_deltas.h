// Velocities and accelerations over nine frames, one call step by step. Each single stands in a volatile variable, so
// that it is rounded once, in the caller's mode.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace model::aurora_deltas {

inline float single(float x) {
    volatile float kept = x;
    return kept;
}
inline float product(float a, float b) { return single(single(a) * single(b)); }
inline float quotient(float a, float b) { return single(single(a) / single(b)); }
inline float sum(float a, float b) { return single(single(a) + single(b)); }

inline float combined(float c0, float logEnergy) {
    return sum(quotient(product(c0, 0.6f), 23.0f), product(logEnergy, 0.4f));
}

// Towards zero; what 32 bits cannot hold becomes their lowest number.
inline std::int64_t truncated(float x) {
    const double whole = std::trunc((double)x);
    if (!(whole >= -2147483648.0 && whole <= 2147483647.0)) return std::numeric_limits<std::int32_t>::min();
    return (std::int64_t)whole;
}
// Divided by 2^(count modulo 32), downwards, and saturated.
inline std::int16_t shifted(std::int64_t x, std::int64_t count) {
    const std::int64_t divisor = std::int64_t{1} << (((count % 32) + 32) % 32);
    const std::int64_t rest = ((x % divisor) + divisor) % divisor;
    return (std::int16_t)std::clamp<std::int64_t>((x - rest) / divisor, -32768, 32767);
}

inline const float VEL[9] = {-1.0f, -0.75f, -0.5f, -0.25f, -0.0f, 0.25f, 0.5f, 0.75f, 1.0f};
inline const float ACC[9] = {1.0f, 0.25f, -0.285714f, -0.607143f, -0.714286f, -0.607143f, -0.285714f, 0.25f, 1.0f};

// Of nine values, the oldest first. val may be null.
inline float weighted(const float* x, const float* w) {
    float total = product(w[0], x[0]);
    for (int k = 1; k < 9; ++k) total = sum(total, product(w[k], x[k]));
    return total;
}
inline float velocity(const float* x, const float* val, int) {
    const float total = weighted(x, VEL);
    return val != nullptr ? product(*val, total) : total;
}
inline float acceleration(const float* x, const float* val, int) {
    const float total = weighted(x, ACC);
    return val != nullptr ? product(*val, total) : total;
}
inline std::int16_t velocity(const std::int16_t* x, const std::int16_t* val, int scaleFactor) {
    std::int64_t total = 0;
    for (int k = 0; k < 9; ++k) total += (k - 4) * std::int64_t{x[k]};
    return shifted(total * (val != nullptr ? *val : 1), std::int64_t{scaleFactor} + 2);
}
inline std::int16_t acceleration(const std::int16_t* x, const std::int16_t* val, int scaleFactor) {
    float singles[9];
    for (int k = 0; k < 9; ++k) singles[k] = x[k];
    float total = weighted(singles, ACC);
    if (val != nullptr) total = product(*val, total);
    return shifted(truncated(total), scaleFactor);
}
inline float feature(const float* frame, int c, const float* val, int) {
    const float x = c < 12 ? frame[c] : combined(frame[12], frame[13]);
    return val != nullptr ? product(x, val[c]) : x;
}
inline std::int16_t feature(const std::int16_t* frame, int c, const std::int16_t* val, int scaleFactor) {
    if (c < 12) return shifted(std::int64_t{frame[c]} * (val != nullptr ? val[c] : 1), scaleFactor);
    const float x = combined(frame[12], frame[13]);
    return shifted(truncated(val != nullptr ? product(val[12], x) : x), scaleFactor);
}

template <class T>
void call(const T* src, const T* val, T* dst, int dstWidth, int height, int mode, int scaleFactor) {
    const auto at = [&](std::ptrdiff_t row, int column) -> T& { return dst[row * dstWidth + column]; };
    const auto makeStatic = [&](std::ptrdiff_t row) {
        for (int c = 0; c < 13; ++c) at(row, c) = feature(src, c, val, scaleFactor);
        src += 14;
    };
    // Of row t, where rows below `lowest` and above `highest` count as these.
    const auto derive = [&](std::ptrdiff_t t, std::ptrdiff_t lowest, std::ptrdiff_t highest) {
        for (int c = 0; c < 13; ++c) {
            T x[9];
            for (int k = 0; k < 9; ++k) x[k] = at(std::clamp(t - 4 + k, lowest, highest), c);
            at(t, 13 + c) = velocity(x, val != nullptr ? val + 13 + c : nullptr, scaleFactor);
            at(t, 26 + c) = acceleration(x, val != nullptr ? val + 26 + c : nullptr, scaleFactor);
        }
    };
    std::ptrdiff_t R = height;
    if (mode & 1) {
        for (int row = 0; row < 8; ++row) makeStatic(row);
        for (int t = 0; t < 4; ++t) derive(t, 0, 7);
        R = height - 8;
    }
    for (std::ptrdiff_t i = 0; i < R; ++i) {
        makeStatic(i + 8);
        derive(i + 4, i, i + 8);
    }
    if (mode & 2) {
        for (int j = 0; j < 4; ++j) derive(R + 4 + j, R + j, R + 7);
    }
}

}  // namespace model::aurora_deltas
