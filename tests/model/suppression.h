// Suppression gains, one element at a time, from what they promise.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "support/precise.h"

namespace model {

// f(v) = (sqrt(pi)/2) exp(-v/2) ((1 + v) I0(v/2) + v I1(v/2)) / sqrt(v), by the power series of the Bessel functions,
// whose terms are all positive. Good to 100 bits for v up to 200.
inline test::Precise ephraimMalah(double v) {
    using test::Precise;
    const Precise pi = Precise(3.141592653589793) + Precise(0x1.1a62633145c07p-53);
    const Precise quarter = Precise(v) * Precise(0.25), square = quarter * quarter;
    Precise i0(1.0), i1 = quarter, term0(1.0), term1 = quarter;
    for (int n = 1; n < 80 + (int)v; ++n) {
        term0 = term0 * square / Precise(double(n) * n);
        term1 = term1 * square / Precise(double(n) * (n + 1));
        i0 = i0 + term0;
        i1 = i1 + term1;
    }
    return sqrt(pi) / Precise(2.0) / sqrt(Precise(v)) * exp(Precise(v) * Precise(-0.5)) *
           ((Precise(1.0) + Precise(v)) * i0 + Precise(v) * i1);
}

// D[X], the gain at X 2^-22 to the nearest integer.
inline const std::vector<std::int64_t>& tabulatedGains() {
    static const std::vector<std::int64_t> gains = [] {
        std::vector<std::int64_t> d = {2147483647};
        for (int x = 1; x <= 128; ++x) d.push_back(std::llround(ephraimMalah(std::ldexp(x, -22)).toDouble()));
        return d;
    }();
    return gains;
}

// Above 128: the gain in Q22.
inline std::int64_t octaveGain(std::int64_t x) {
    static const std::int64_t p0[] = {669498645, 473414302, 334764744, 236728959, 167413213, 118408092,
                                      83768274,  59291231,  42007360,  29819668,  21249233,  15255427,
                                      11108711,  8299601,   6470760,   5361107,   4756698,   4463049,
                                      4325745,   4259445,   4226742,   4210491,   4202389,   4198345};
    static const std::int64_t p1[] = {72453962, 51231813, 36225125, 25613282, 18108852, 12801395, 9047010, 6390220,
                                      4508716,  3174276,  2225121,  1546422,  1056723,  698929,   435261,  245271,
                                      121987,   56781,    27183,    13368,    6635,     3306,     1650,    824};
    static const std::int64_t p2[] = {1576642499, 557423223, 197075987, 69674844, 24632335, 8707825, 3077959, 1087711,
                                      384201,     135577,    47749,     16748,    5823,     1986,    648,     193,
                                      49,         11,        2,         0,        0,        0,       0,       0};
    int highest = 0;
    while ((x >> highest) > 1) ++highest;
    const int i = highest - 7;
    const std::int64_t d = x - (std::int64_t{1} << highest);
    const auto bracket = (std::int32_t)(((p2[i] * d) >> 13) - p1[i]);
    const std::int64_t y = (std::int64_t{bracket} * d) >> (i + 5);
    return y + p0[i];
}

inline float ephraimMalahGain(float w, float gamma) {
    const float limited = std::min(std::max(gamma, 3.1e-05f), 100.0f);
    const float v = limited * w;
    const auto x = (std::int64_t)((double)v * 4194304.0);
    if (x <= 128) return w * (float)tabulatedGains()[(std::size_t)x];
    const float product = (float)octaveGain(x) * w;
    return (float)((double)product / 4194304.0);
}
inline std::int32_t ephraimMalahGain(std::int32_t w, std::int32_t gamma) {
    const std::int64_t limited = gamma < 2 ? 1 : std::min(gamma, 3276800);
    const std::int64_t x = (limited * w) >> 24;
    const std::int64_t gain = x < 129 ? w * tabulatedGains()[(std::size_t)x] : (w * octaveGain(x)) >> 22;
    return (std::int32_t)std::min<std::int64_t>(gain, 0x7FFFFFFF);
}

inline float wienerGain(float x) {
    if (x < 0) x = 0;
    const float sum = x + 1.0f;
    return x / sum;
}
inline std::int32_t wienerGain(std::int32_t x) {
    static const std::vector<std::int64_t> table = [] {
        std::vector<std::int64_t> gains(88);
        for (std::int64_t n = 0; n < 64; ++n) gains[(std::size_t)n] = (n << 31) / (16 + n);
        for (std::int64_t n = 64; n <= 78; ++n) gains[(std::size_t)n] = ((4 * (n - 63)) << 31) / (1 + 4 * (n - 63));
        for (std::int64_t n = 79; n <= 85; ++n) gains[(std::size_t)n] = ((64 * (n - 78)) << 31) / (1 + 64 * (n - 78));
        gains[86] = (std::int64_t{512} << 31) / 513;
        return gains;
    }();
    int index = 86;
    if (x < 0) {
        index = 0;
    } else if (x < (1 << 17)) {
        index = x >> 11;
    } else if (x < (1 << 21)) {
        index = 63 + (x >> 17);
    } else if (x < (1 << 24)) {
        index = 78 + (x >> 21);
    } else if (x >= (1 << 25)) {
        return 0x7FFFFFFF;
    }
    return (std::int32_t)table[(std::size_t)index];
}

}  // namespace model
