// Plain models of periods, peaks and pitch marks, step by step as promised.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <vector>

#include "model/reductions.h"

namespace model {

// Multipliers for 1 to 16 samples.
inline constexpr float oneOver[17] = {0.f,      1.f, .5f,      .333333f, .25f,      .2f,      .166666f, .142857f, .125f,
                                      .111111f, .1f, .090909f, .083333f, .0769231f, .071429f, .066666f, .0625f};
inline constexpr float oneOverRoot[17] = {0.f,      1.f,      .707107f, .57735f,  .5f,      .447214f,
                                          .408248f, .377965f, .353553f, .333333f, .316228f, .301511f,
                                          .288675f, .27735f,  .267261f, .258199f, .25f};
inline constexpr std::int64_t oneOverQ30[17] = {0,         1073741824, 536870912, 357913941, 268435456, 214748364,
                                                178956970, 153391689,  134217728, 119304647, 107374182, 97612893,
                                                89478485,  82595524,   76695844,  71582788,  67108864};
inline constexpr std::int64_t oneOverRootQ30[17] = {0,         1073741824, 759250124, 619925131, 536870912, 480191941,
                                                    438353264, 405836262,  379625062, 357913941, 339546978, 323745341,
                                                    309962565, 297802400,  286969573, 277238946, 268435456};

template <class Measure>
struct Periodicity {
    Measure periodicity = 0;
    int period = 0;
};

inline Periodicity<float> periodicity(const std::vector<float>& x, int minPeriod, int maxPeriod) {
    const int len = static_cast<int>(x.size());
    const float total = sumFast(x);
    if (!(std::fabs((double)total) > 1e-6 * std::fabs(std::max(0.0, (double)total)))) return {};
    Periodicity<float> result;
    float best = 0, bestSum = 0;
    for (int p = minPeriod; p <= maxPeriod; ++p) {
        for (int j = 0; j < p; ++j) {
            float s = x[j];
            int n = 1;
            for (int m = 1; m <= 5 && j + m * p < len; ++m) {
                s += x[j + m * p];
                ++n;
            }
            const float a = s * oneOver[n];
            if (a > best) {
                best = a;
                bestSum = s;
                result.period = p;
            }
        }
    }
    result.periodicity = bestSum / total;
    return result;
}

inline Periodicity<std::int16_t> periodicity(const std::vector<std::int32_t>& x, int minPeriod, int maxPeriod) {
    const int len = static_cast<int>(x.size());
    std::int64_t total = 0;
    for (std::int32_t v : x) total += v;
    int c = 0;
    for (; total > 0x7FFFFFFF; total >>= 1) ++c;
    if (total == 0) return {};
    Periodicity<std::int16_t> result;
    std::int64_t bestSum = 0;
    std::int32_t best = 0;
    for (int p = minPeriod; p <= maxPeriod; ++p) {
        for (int j = 0; j < p; ++j) {
            std::int64_t s = x[j];
            int n = 1;
            for (int m = 1; m <= 5 && j + m * p < len; ++m) {
                s += x[j + m * p];
                ++n;
            }
            const auto a = static_cast<std::int32_t>((oneOverQ30[n] * s) >> 30);
            if (a > best) {
                best = a;
                bestSum = s >> c;
                result.period = p;
            }
        }
    }
    result.periodicity = static_cast<std::int16_t>(std::min<std::int64_t>(bestSum * 32768 / total, 32767));
    return result;
}

// The order of the single dot product: four lanes of four sums over each sixteen, then pairs and a last one.
inline float dotInSingle(const std::vector<float>& a, const std::vector<float>& b) {
    float sum[4][4] = {};
    std::size_t i = 0;
    for (; i + 16 <= a.size(); i += 16) {
        for (std::size_t k = 0; k < 16; ++k) sum[k / 4][k % 4] += a[i + k] * b[i + k];
    }
    for (std::size_t k = 0; i < a.size(); ++i, k = 1 - k) sum[0][k] += a[i] * b[i];
    float lane[4];
    for (int k = 0; k < 4; ++k) lane[k] = (sum[0][k] + sum[1][k]) + (sum[2][k] + sum[3][k]);
    return (lane[0] + lane[1]) + (lane[2] + lane[3]);
}

inline Periodicity<float> leastSquaresPeriod(const std::vector<float>& x, int minPeriod, int maxPeriod) {
    const int len = static_cast<int>(x.size());
    const float energy = dotInSingle(x, x);
    Periodicity<float> result;
    for (int p = minPeriod; p <= maxPeriod; ++p) {
        float a = 0, b = 0;
        for (int j = 0; j < p; ++j) {
            float s = x[j], q = x[j] * x[j];
            int n = 1;
            for (int i = j + p; i < len; i += p) {
                s += x[i];
                const float square = x[i] * x[i];
                q += square;
                ++n;
            }
            s = s * oneOverRoot[n];
            const float square = s * s;
            a += square;
            const float share = q * oneOver[n];
            b += share;
        }
        const float num = a - b, den = energy - b;
        if (den > 0 && num > 0) {
            const float ratio = num / den;
            if (ratio > result.periodicity) result = {ratio, p};
        }
    }
    return result;
}

inline Periodicity<std::int16_t> leastSquaresPeriod(const std::vector<std::int16_t>& x, int minPeriod, int maxPeriod) {
    const int len = static_cast<int>(x.size());
    std::int64_t energy = 0;
    for (std::int64_t v : x) energy += v * v;
    int c = 0;
    for (; energy > 0x7FFFFFFF; energy >>= 1) ++c;
    const int c1 = c >> 1, c2 = c - c1;
    Periodicity<std::int16_t> result;
    for (int p = minPeriod; p <= maxPeriod; ++p) {
        std::uint32_t a = 0, b = 0;
        for (int j = 0; j < p; ++j) {
            std::int32_t s = 0;
            std::int64_t q = 0;
            int n = 0;
            for (int i = j; i < len; i += p) {
                s += x[i];
                q += (std::int64_t{x[i]} * x[i]) >> c;
                ++n;
            }
            const std::int64_t v = s * oneOverRootQ30[n];
            a += static_cast<std::uint32_t>((v >> (c1 + 30)) * (v >> (c2 + 30)));
            b += static_cast<std::uint32_t>((q * oneOverQ30[n]) >> 30);
        }
        const auto num = static_cast<std::int32_t>(a - b);
        const auto den = static_cast<std::int32_t>(static_cast<std::uint32_t>(energy) - b);
        if (num >= 1 && den >= 1) {
            const std::int64_t r = std::min<std::int64_t>(num * std::int64_t{32768} / den, 32767);
            if (r > result.periodicity) result = {static_cast<std::int16_t>(r), p};
        }
    }
    return result;
}

// The signal whose peaks are sought: means where m is not 0.
inline std::vector<double> averaged(const std::vector<float>& x, int m) {
    const int n = static_cast<int>(x.size());
    std::vector<double> s(x.begin(), x.end());
    if (m == 0) return s;
    for (int i = 0; i < n; ++i) {
        double sum = 0;
        int count = 0;
        for (int k = std::max(i - m, 0); k <= std::min(i + m, n - 1); ++k, ++count) sum += (double)x[k];
        s[i] = sum / count;
    }
    return s;
}
inline std::vector<std::int32_t> averaged(const std::vector<std::int32_t>& x, int m) {
    const int n = static_cast<int>(x.size());
    std::vector<std::int32_t> s = x;
    for (int i = 0; m != 0 && i < n; ++i) {
        std::int64_t sum = 0, count = 0;
        for (int k = std::max(i - m, 0); k <= std::min(i + m, n - 1); ++k, ++count) sum += x[k];
        s[i] = static_cast<std::int32_t>(sum / count);
    }
    return s;
}

template <class T>
std::vector<std::uint8_t> peaks(const std::vector<T>& src, int q, int m) {
    const int n = static_cast<int>(src.size());
    std::vector<std::uint8_t> dst(n, 0);
    if (n == 1) return {1};
    if (m >= n - 1) return dst;
    const auto s = averaged(src, m);
    int i = 1, f = 0;
    while (i < n && s[i] < s[i - 1]) {
        dst[i - 1] = 0;
        ++i;
        ++f;
    }
    if (i == n) {
        dst[n - 1] = 0;
        dst[0] = 1;
        return dst;
    }
    if (f >= q) dst[0] = 1;
    if (i == n - 1) {
        dst[n - 1] = src[n - 1] > src[n - 2] && q == 1;
        return dst;
    }
    while (i < n) {
        int r = s[i] != s[i - 1] ? 1 : 0;
        while (i < n - 1) {
            dst[i] = 0;
            if (s[i] >= s[i + 1]) break;
            ++i;
            ++r;
        }
        if (i == n - 1) {
            dst[i] = i < q ? r >= i : r >= q;
            return dst;
        }
        if (!(s[i] == s[i + 1])) {
            int d = 1;
            ++i;
            while (i < n - 1) {
                dst[i] = 0;
                if (s[i + 1] >= s[i]) break;
                ++i;
                ++d;
            }
            const int p = i - d;
            if (r >= std::min(p, q) && (p < n - q ? d >= q : d >= n - 1 - p)) dst[p] = 1;
        }
        ++i;
    }
    dst[i - 1] = 0;
    return dst;
}

// Whether a zero difference was met comes second.
inline std::pair<std::vector<float>, bool> candidates(const std::vector<float>& marks) {
    std::vector<float> dst;
    bool zero = false;
    float before = 0;
    for (float mark : marks) {
        const float d = mark - before;
        zero = zero || d == 0;
        dst.push_back(d == 0 ? std::numeric_limits<float>::infinity() : 1.0f / d);
        before = mark;
    }
    return {dst, zero};
}
inline std::pair<std::vector<std::int16_t>, bool> candidates(const std::vector<std::int16_t>& marks, float scale) {
    std::vector<std::int16_t> dst;
    bool zero = false;
    float before = 0;
    for (std::int16_t mark : marks) {
        const float d = static_cast<float>(mark) - before;
        zero = zero || d == 0;
        const float y = d == 0 ? 0.0f : scale / d;
        dst.push_back(static_cast<std::int16_t>(std::nearbyint(std::clamp(y, -32768.0f, 32767.0f))));
        before = mark;
    }
    return {dst, zero};
}

}  // namespace model
