// The bank in integer arithmetic, step by step in 128 bits, so that nothing can wrap unnoticed.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "model/integers.h"

namespace model {

struct IntegerBank {
    int fftLen, sampleFreq, lowFreq, highFreq, nFilter, melMul, melDiv;

    int N = 0;
    std::vector<std::int32_t> c;  // nFilter + 2 bins
};

inline Big shiftedRight(Big x, int count) {  // arithmetic: the floor of the quotient
    const Big one = Big{1} << count;
    return x >= 0 ? x / one : -((-x + one - 1) / one);
}
inline Big power2(int count) { return Big{1} << count; }

constexpr std::int64_t ln2Q31 = 1488522236, inverseLn2Q31 = 3098164009;

inline Big lnQ22(Big x) {
    int e = 0;
    for (Big rest = x; rest >= 2; rest /= 2) ++e;
    Big y = e >= 29 ? shiftedRight(x, e - 29) : x * power2(29 - e);
    Big f = 0;
    for (int round = 0; round < 31; ++round) {
        const Big t = y * y;
        f = 2 * f;
        y = shiftedRight(t, 29);
        if (y >= power2(30)) {
            f = f + 1;
            y = shiftedRight(t, 30);
        }
    }
    return shiftedRight(Big{e} * ln2Q31 + shiftedRight(f * ln2Q31, 31) - 32747489192, 9);
}

// The two tables from their definition.
inline std::int64_t expTable1(int i) { return std::llroundl(std::log1pl(std::ldexp(1.0L, -(i + 1))) * 2147483648.0L); }
inline std::int64_t expTable2(int i) { return std::llroundl(std::log1pl(-std::ldexp(1.0L, -(i + 1))) * 2147483648.0L); }

// exp(q) - 1, both in Q22.
inline Big expLessOneQ22(Big q) {
    const Big p = q * inverseLn2Q31;
    const int n = (int)shiftedRight(p, 53);
    const auto frac = wrapTo<std::int32_t>(shiftedRight(p, 22) - Big{n} * power2(31));
    Big t = wrapTo<std::int32_t>(shiftedRight(Big{frac} * ln2Q31, 31));
    Big v = power2(31), s = power2(30);
    for (int i = 0; i < 32; ++i) {
        if (t > expTable1(i)) {
            v = shiftedRight(v * power2(31) + v * s, 31);
            t = t - expTable1(i);
        } else if (t < expTable2(i)) {
            v = shiftedRight(v * power2(31) - v * s, 31);
            t = t - expTable2(i);
        }
        s = s / 2;
    }
    const Big highest = power2(31) - 1;
    Big E;
    if (9 - n >= 0) {
        E = shiftedRight(v, 9 - n);
        if (E > highest) E = highest;
    } else {
        E = n <= 40 && v < power2(40 - n) ? v * power2(n - 9) : highest;
    }
    return E - power2(22);
}

inline void placeCenters(IntegerBank& bank) {
    for (bank.N = 2; bank.N < bank.fftLen;) bank.N *= 2;
    const Big d = Big{bank.melDiv} * 128, u = Big{bank.melMul} * 128;
    const auto mel = [&](int frequency) {
        return shiftedRight((lnQ22(Big{frequency} * power2(22) + d) - lnQ22(d)) * bank.melMul, 15);
    };
    const Big melLow = mel(bank.lowFreq), range = mel(bank.highFreq) - melLow;
    const Big r = Big{bank.N} * power2(22) / bank.sampleFreq;
    const Big word = power2(32);
    const Big b = (r / word) * d * 1024 + shiftedRight((r % word) * d, 22);
    const Big steps = bank.nFilter + 1;
    for (int i = 0; i <= bank.nFilter + 1; ++i) {
        const Big m = (melLow * steps + i * range) / steps;
        const Big q = m * power2(22) / u;
        const Big x = expLessOneQ22(q);
        const Big w = (b / word) * x * 1024 + shiftedRight(x * (b % word), 22);
        const Big bit21 = shiftedRight(w, 21) - 2 * shiftedRight(w, 22);
        bank.c.push_back(wrapTo<std::int32_t>(shiftedRight(w, 22) + bit21));
    }
}

inline std::int32_t integerRise(const IntegerBank& bank, int k, int j) {
    const Big part = j - bank.c[(std::size_t)k - 1] + 1,
              whole = bank.c[(std::size_t)k] - bank.c[(std::size_t)k - 1] + 1;
    return (std::int32_t)(part * power2(30) / whole);
}
inline std::int32_t integerFall(const IntegerBank& bank, int k, int j) {
    const Big part = bank.c[(std::size_t)k + 1] - j + 1,
              whole = bank.c[(std::size_t)k + 1] - bank.c[(std::size_t)k] + 1;
    return (std::int32_t)(part * power2(30) / whole);
}

// One filter's sum: each product loses eight bits, the sum keeps 64.
inline std::int64_t integerSum(const std::vector<std::int32_t>& spectrum, int firstBin,
                               const std::vector<std::int32_t>& weights) {
    Big sum = 0;
    for (std::size_t e = 0; e < weights.size(); ++e) {
        sum += shiftedRight(Big{spectrum[(std::size_t)firstBin + e]} * weights[e], 8);
    }
    return wrapTo<std::int64_t>(sum);
}
inline std::int32_t integerResult(std::int64_t sum, int scale) {
    Big a = sum;
    if (scale >= 0) {
        a = shiftedRight(a, scale);
    } else {
        a = a < power2(63 + scale) ? Big{wrapTo<std::int64_t>(a * power2(-scale))} : power2(63) - 1;
    }
    const Big bit21 = shiftedRight(a, 21) - 2 * shiftedRight(a, 22);
    const Big rounded = shiftedRight(a, 22) + bit21;
    return wrapTo<std::int32_t>(rounded > 2147483647 ? Big{2147483647} : rounded);
}

}  // namespace model
