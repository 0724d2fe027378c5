// Filter banks of noise reduction, row by row as they are described: corners from their frequencies, a half filter at
// bin 0 and triangles, each divided by its sum, or triangles alone.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "model/convert.h"
#include "support/precise.h"

namespace model {

// The bins of count corners from low hertz on, steps of them up to 4000 Hz. The logarithm and the exponential are
// rounded once, to double.
inline std::vector<std::int32_t> auroraCorners(float low, int steps, int count) {
    const auto mel = [](float ratioPlusOne) {
        return (float)(2595.0 * log(test::Precise((double)ratioPlusOne)).toDouble());
    };
    const float lowRatio = low / 700.0f, highRatio = 4000.0f / 700.0f;
    const float m0 = mel(1.0f + lowRatio), m1 = mel(1.0f + highRatio);
    const float range = m1 - m0;
    std::vector<std::int32_t> bins;
    for (int i = 0; i < count; ++i) {
        const float product = (float)i * range;
        const float part = product / (float)steps;
        const float m = part + m0;
        const float above = (float)(exp(test::Precise((double)m / 2595.0)).toDouble() - 1.0);
        const float scaled = above * 0.016f;  // 128 / 8000
        const float f = scaled * 700.0f;
        bins.push_back(to32s(f < 64.0f ? f : 64.0f, 1, 1.0f));
    }
    return bins;
}

template <class Weight>
struct AuroraBank {
    static constexpr int rowLen = 64;
    std::vector<std::int32_t> c;
    std::vector<std::vector<Weight>> rise, fall;

    explicit AuroraBank(int rows)
        : rise((std::size_t)rows, std::vector<Weight>(rowLen)), fall((std::size_t)rows, std::vector<Weight>(rowLen)) {}
};

// n / d of one, and one less n / d.
inline void fraction(int n, int d, float& weight) { weight = (float)n / (float)d; }
inline void fraction(int n, int d, std::int32_t& weight) { weight = (n << 14) / d; }
inline void remainder(int n, int d, float& weight) {
    const volatile float part = (float)n / (float)d;
    weight = 1.0f - part;
}
inline void remainder(int n, int d, std::int32_t& weight) { weight = 16384 - (n << 14) / d; }
inline float shareOf(float weight, float sum) { return weight / sum; }
inline std::int32_t shareOf(std::int32_t weight, std::int32_t sum) {
    return (std::int32_t)(((std::int64_t)weight << 14) / sum);
}

template <class Weight>
void divideBySum(std::vector<Weight>& rise, std::vector<Weight>& fall) {
    volatile Weight sum = 0;
    for (Weight w : rise) sum = sum + w;
    for (Weight w : fall) sum = sum + w;
    if (sum == 0) return;
    for (Weight& w : rise) w = shareOf(w, sum);
    for (Weight& w : fall) w = shareOf(w, sum);
}

template <class Weight>
void triangle(int p, int q, int r, std::vector<Weight>& rise, std::vector<Weight>& fall) {
    for (int n = p + 1; n <= q; ++n) fraction(n - p, q - p, rise[(std::size_t)(n - p)]);
    for (int n = q + 1; n < r; ++n) remainder(n - q, r - q, fall[(std::size_t)(n - q - 1)]);
}

template <class Weight>
AuroraBank<Weight> lowAuroraBank() {
    AuroraBank<Weight> bank(27);
    const auto b = auroraCorners(1.0f, 24, 27);
    const int d = b[1] - b[0];
    for (int n = 0; n < d; ++n) remainder(n, d, bank.rise[0][(std::size_t)n]);
    for (int n = b[0] + 1; n < d; ++n) remainder(n, d, bank.fall[0][(std::size_t)(n - 1 - b[0])]);
    divideBySum(bank.rise[0], bank.fall[0]);
    for (std::size_t j = 1; j <= 25; ++j) {
        triangle(b[j - 1], b[j], b[j + 1], bank.rise[j], bank.fall[j]);
        divideBySum(bank.rise[j], bank.fall[j]);
    }
    bank.c.push_back(0);
    bank.c.insert(bank.c.end(), b.begin(), b.end());
    return bank;
}

template <class Weight>
AuroraBank<Weight> highAuroraBank() {
    AuroraBank<Weight> bank(5);
    bank.c = auroraCorners(80.0f, 4, 5);
    for (std::size_t j = 1; j <= 3; ++j) {
        triangle(bank.c[j - 1], bank.c[j], bank.c[j + 1], bank.rise[j - 1], bank.fall[j - 1]);
    }
    return bank;
}

}  // namespace model
