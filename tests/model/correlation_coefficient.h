// Plain models of the correlation coefficients of 16-bit signals.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

namespace model {

// Exact, rounded once to single.
inline float dotOf(const std::int16_t* a, const std::int16_t* b, int len) {
    std::int64_t sum = 0;
    for (int i = 0; i < len; ++i) sum += std::int64_t{a[i]} * b[i];
    return static_cast<float>(sum);
}
inline float overEnergies(float product, float e1, float e2) {
    if (!(std::fabs(static_cast<double>(e1) * e2) > 1.1754943508222875e-38)) return 0;
    const double root1 = std::sqrt(static_cast<double>(e1)), root2 = std::sqrt(static_cast<double>(e2));
    return static_cast<float>(product / (root1 * root2));
}
inline float correlation(const std::vector<std::int16_t>& a, const std::vector<std::int16_t>& b) {
    const int n = static_cast<int>(a.size());
    return overEnergies(dotOf(a.data(), b.data(), n), dotOf(a.data(), a.data(), n), dotOf(b.data(), b.data(), n));
}
inline float correlation(const std::vector<std::int16_t>& a, const std::vector<std::int16_t>& b, float energy) {
    const int n = static_cast<int>(a.size());
    return overEnergies(dotOf(a.data(), b.data(), n), energy, dotOf(b.data(), b.data(), n));
}

inline std::vector<float> decimatedCorrelations(const std::vector<std::int16_t>& src1,
                                                const std::vector<std::int16_t>& src2, int maxLen, int minLen,
                                                int dec) {
    const auto product = [](std::int16_t a, std::int16_t b) { return static_cast<float>(std::int32_t{a} * b); };
    const int d = maxLen - minLen;
    float e1 = 0, e2 = 0, s = 0;
    int beyond = 0;
    for (int k = 0; k < minLen; k += dec) {
        e1 += product(src1[d + k], src1[d + k]);
        e2 += product(src2[k], src2[k]);
        s += product(src1[d + k], src2[k]);
        beyond = k + dec;
    }
    std::vector<float> dst = {overEnergies(s, e1, e2)};
    for (int i = 1; i <= d / dec; ++i) {
        const int a = d - i * dec, b = beyond + (i - 1) * dec;
        e1 += product(src1[a], src1[a]);
        e2 += product(src2[b], src2[b]);
        s = 0;
        for (int k = 0; k <= i * dec + minLen - 1; k += dec) s += product(src1[a + k], src2[k]);
        dst.push_back(overEnergies(s, e1, e2));
    }
    return dst;
}

struct Interpolated {
    bool degenerate = false, written = true;
    float frac = 0, coeff = 0;
};
inline Interpolated interpolated(const std::vector<std::int16_t>& src1, const std::vector<std::int16_t>& src2) {
    double aa = 0, bb = 0, ab = 0, cc = 0, ac = 0, bc = 0;
    for (std::size_t i = 0; i < src1.size(); ++i) {
        const std::int32_t a = src2[i], b = src2[i + 1], c = src1[i];
        aa += a * a;
        bb += b * b;
        ab += a * b;
        cc += c * c;
        ac += a * c;
        bc += b * c;
    }
    const double g1 = (bb - ab) * ac, g2 = (aa - ab) * bc, divisor = g1 + g2;
    if (divisor == 0) return {true, true, 0, static_cast<float>(ac)};
    const double f1 = bc * aa, f2 = ac * ab, f = (f1 - f2) / divisor;
    if (f < 0 || f >= 1 || std::isnan(f)) return {false, false, static_cast<float>(f), 0};
    const double g = 1 - f;
    const double v1 = aa * g * g, v2 = (2 * f) * g * ab, v3 = f * f * bb, x = cc * (v1 + v2 + v3);
    const double p1 = g * ac, p2 = f * bc;
    return {false, true, static_cast<float>(f), static_cast<float>(x != 0 ? (p1 + p2) / std::sqrt(x) : ac)};
}

}  // namespace model
