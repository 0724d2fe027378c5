// Banks that are spaced in hertz up to a frequency and in mel above it: one weight at a time, every rounding in a
// variable of its own. The logarithm is the library's, which has tests of its own: it enters differences in double.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "elementary/elementary.h"
#include "model/convert.h"

namespace model {

struct MixedBank {
    int N, nFilter, nLinear;
    float sampleFreq, lowFreq, highFreq, highLinFreq, melMul, melDiv;
    bool straight;  // weights in bin number, centres rounded

    std::vector<float> F;         // the centre frequencies that are spaced in hertz
    std::vector<std::int32_t> c;  // nFilter + 2 bins
};

inline float mixedMel(const MixedBank& bank, float frequency) {
    const float ratio = frequency / bank.melDiv;
    const float argument = ratio + 1.0f;
    return (float)((double)bank.melMul * vorn::log64((double)argument));
}

inline void placeCenters(MixedBank& bank) {
    const int mode = bank.straight ? 1 : 0;
    const float perHertz = (float)bank.N / bank.sampleFreq;
    const bool allLinear = bank.nLinear == bank.nFilter;
    const int last = allLinear ? bank.nFilter + 1 : bank.nLinear;
    const float span = bank.highLinFreq - bank.lowFreq;
    bank.c.assign((std::size_t)bank.nFilter + 2, 0);
    for (int i = 0; i <= last; ++i) {
        const float product = (float)i * span;
        const float part = product / (float)last;
        bank.F.push_back(part + bank.lowFreq);
        bank.c[(std::size_t)i] = to32s(bank.F.back() * perHertz, mode, 1.0f);
    }
    if (allLinear) return;
    const float binScale = perHertz * bank.melDiv;
    const float melA = mixedMel(bank, bank.highLinFreq);
    const float melRange = mixedMel(bank, bank.highFreq) - melA;
    const int steps = bank.nFilter - bank.nLinear + 1;
    for (int i = 0; i <= steps; ++i) {
        const float product = (float)i * melRange;
        const float part = product / (float)steps;
        const float m = part + melA;
        const float exponent = m / bank.melMul;
        const float x = (float)(vorn::exp64((double)exponent) - 1.0);
        bank.c[(std::size_t)(bank.nLinear + i)] = to32s(x * binScale, mode, 1.0f);
    }
}

// The mel value of a bin, in double, and of a centre frequency, whose logarithm is rounded.
inline double mixedBinMel(const MixedBank& bank, int j) {
    const float binHz = bank.sampleFreq / (float)bank.N;
    const float hertz = (float)j * binHz;
    const float ratio = hertz / bank.melDiv;
    return (double)bank.melMul * vorn::log64((double)ratio + 1.0);
}
inline float mixedCentreMel(const MixedBank& bank, int i) {
    const float ratio = bank.F[(std::size_t)i] / bank.melDiv;
    const float logarithm = (float)vorn::log64((double)ratio + 1.0);
    return logarithm * bank.melMul;
}

// The element forms of a quotient that stands in double and of one in single, of a straight line, and of the limit.
struct MixedSingle {
    using Weight = float;
    static float inDouble(double part, double whole) { return limit((float)(part / whole)); }
    static float inSingle(float part, float whole) { return limit(part / whole); }
    static float line(int part, int whole) { return (float)part / (float)whole; }
    static float limit(float weight) { return weight < 0.0f ? 0.0f : weight; }
};
struct MixedQ14 {
    using Weight = std::int32_t;
    static std::int32_t inDouble(double part, double whole) { return limit(part * 16384.0 / whole); }
    static std::int32_t inSingle(float part, float whole) {
        const float scaled = part * 16384.0f;
        return limit((double)(scaled / whole));
    }
    static std::int32_t line(int part, int whole) { return (std::int32_t)(((std::int64_t)part << 14) / whole); }
    // What no 32-bit integer holds becomes the smallest one, and that is limited as well.
    static std::int32_t limit(double x) {
        if (!(x > 0.0) || x >= 2147483648.0) return 0;
        return (std::int32_t)std::trunc(x);
    }
};

// Rising weight of filter k (from 1) at bin j from c[k-1] to c[k], falling one at j from c[k] + 1 to c[k+1].
template <class Form>
typename Form::Weight mixedRise(const MixedBank& bank, int k, int j) {
    const auto* c = bank.c.data();
    const bool inMel = k < bank.nLinear || bank.nLinear == bank.nFilter || k == bank.nLinear;
    if (bank.straight || !inMel) return Form::line(j - c[k - 1] + 1, c[k] - c[k - 1] + 1);
    const float left = mixedCentreMel(bank, k - 1), centre = mixedCentreMel(bank, k);
    const float whole = centre - left;
    return Form::inDouble(mixedBinMel(bank, j) - (double)left, (double)whole);
}
template <class Form>
typename Form::Weight mixedFall(const MixedBank& bank, int k, int j) {
    const auto* c = bank.c.data();
    const bool inMel = k < bank.nLinear || bank.nLinear == bank.nFilter;
    if (!bank.straight && inMel) {
        const float centre = mixedCentreMel(bank, k), right = mixedCentreMel(bank, k + 1);
        const float whole = right - centre;
        return Form::inDouble((double)right - mixedBinMel(bank, j), (double)whole);
    }
    if (!bank.straight && k == bank.nLinear) {
        const float part = (float)((double)c[k + 1] - mixedBinMel(bank, j));
        return Form::inSingle(part, (float)(c[k + 1] - c[k]));
    }
    return Form::line(c[k + 1] - j + 1, c[k + 1] - c[k] + 1);
}

}  // namespace model
