// Waveform processing of a frame of 200 samples: energies, running sums, peaks in both directions, weights, each in an
// array of its own.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "model/integers.h"

namespace model {

// Arithmetic of the two forms. Singles round after each operation; integers wrap at 32 bits.
struct WaveSingles {
    using Sample = float;
    using Value = float;
    using Weight = float;
    static constexpr float background = 0.8f, boosted = 1.2f, edge = 1.0f;
    static Value add(Value a, Value b) {
        const volatile float r = a + b;
        return r;
    }
    static Value sub(Value a, Value b) {
        const volatile float r = a - b;
        return r;
    }
    static Value mul(Value a, Value b) {
        const volatile float r = a * b;
        return r;
    }
    static Value magnitude(Value a, bool) { return std::fabs(a); }
    static int span(int spacing) { return (int)mul((float)spacing, 0.8f); }
    static Sample weighted(Weight w, Sample x) { return mul(w, x); }
};
struct WaveShorts {
    using Sample = std::int16_t;
    using Value = std::int32_t;
    using Weight = std::int16_t;
    static constexpr std::int16_t background = 27, boosted = 38, edge = 32;
    static Value add(Value a, Value b) { return wrapTo<std::int32_t>(Big{a} + b); }
    static Value sub(Value a, Value b) { return wrapTo<std::int32_t>(Big{a} - b); }
    static Value mul(Value a, Value b) { return wrapTo<std::int32_t>(Big{a} * b); }
    static Value magnitude(Value a, bool limited) {
        const Big m = a < 0 ? -Big{a} : Big{a};
        return limited ? saturateTo<std::int32_t>(m) : wrapTo<std::int32_t>(m);
    }
    static int span(int spacing) { return (spacing * 27) >> 5; }
    static Sample weighted(Weight w, Sample x) { return saturateTo<std::int16_t>(nearestRatio(Big{w} * x, Big{32})); }
};

template <class Form>
struct Wave {
    std::vector<typename Form::Value> e, s;
    std::vector<int> fwdPeaks, bwdPeaks, peaks;
    std::vector<typename Form::Weight> w;
    std::vector<typename Form::Sample> dst;
};

template <class T>
int firstMaximum(const std::vector<T>& s, int from, int L) {
    int best = from;
    for (int i = from; i < from + L; ++i) {
        if (s.at((std::size_t)i) > s.at((std::size_t)best)) best = i;
    }
    return best;
}

template <class Form>
Wave<Form> processWave(const std::vector<typename Form::Sample>& x) {
    using F = Form;
    Wave<Form> v{std::vector<typename F::Value>(200),
                 std::vector<typename F::Value>(200),
                 std::vector<int>(20),
                 std::vector<int>(20),
                 std::vector<int>(40),
                 std::vector<typename F::Weight>(200, F::background),
                 {}};
    auto &e = v.e, &s = v.s;
    e[0] = F::magnitude(F::sub(F::mul(x[0], x[0]), F::mul(x[0], x[1])), false);
    for (std::size_t n = 1; n <= 198; ++n) {
        e[n] = F::magnitude(F::sub(F::mul(x[n], x[n]), F::mul(x[n - 1], x[n + 1])), n >= 4 && n <= 195);
    }
    e[199] = F::magnitude(F::sub(F::mul(x[199], x[199]), F::mul(x[198], x[199])), false);

    s[0] = F::add(F::add(F::add(F::add(F::mul(5, e[0]), e[1]), e[2]), e[3]), e[4]);
    for (std::size_t n = 1; n <= 4; ++n) s[n] = F::add(F::sub(s[n - 1], e[0]), e[n + 4]);
    for (std::size_t n = 5; n <= 195; ++n) s[n] = F::add(F::sub(s[n - 1], e[n - 5]), e[n + 4]);
    for (std::size_t n = 196; n <= 199; ++n) s[n] = F::add(F::sub(s[n - 1], e[n - 5]), e[199]);

    const int P = firstMaximum(s, 0, 200);
    v.fwdPeaks[0] = v.bwdPeaks[0] = P;
    std::size_t NF = 0, NB = 0;
    if (P < 175) {
        do {
            const int p = v.fwdPeaks[NF];
            v.fwdPeaks[NF + 1] = firstMaximum(s, p + 25, p < 121 ? 55 : 175 - p);
            ++NF;
        } while (v.fwdPeaks[NF] < 175);
    }
    if (P > 25) {
        do {
            const int q = v.bwdPeaks[NB], L = std::min(q, 79) - 24;
            v.bwdPeaks[NB + 1] = firstMaximum(s, q - 24 - L, L);
            ++NB;
        } while (v.bwdPeaks[NB] > 25);
    }
    v.fwdPeaks.resize(NF + 1);
    v.bwdPeaks.resize(NB + 1);
    v.peaks.assign(v.bwdPeaks.rbegin(), v.bwdPeaks.rend() - 1);
    v.peaks.insert(v.peaks.end(), v.fwdPeaks.begin(), v.fwdPeaks.end());
    const std::size_t K = NF + NB;

    const auto put = [&](int n, typename F::Weight weight) { v.w.at((std::size_t)n) = weight; };
    for (std::size_t i = 0; i < K; ++i) {
        const int c = v.peaks[i], d = v.peaks[i + 1];
        const int b = std::max(c - 4, 0), end = c - 4 + F::span(d - c);
        int at = b;
        if (b < end) {
            for (int n = b; n < end; ++n) put(n, F::boosted);
            at = end;
        }
        if (b > 0) put(b - 1, F::edge), put(b, F::edge);
        put(at - 1, F::edge), put(at, F::edge);
    }
    const int c = v.peaks[K], d = v.peaks[K - 1];
    const int b = c - 4, end = std::min(b + F::span(c - d), 200);
    int at = b;
    if (b < end) {
        for (int n = b; n < end; ++n) put(n, F::boosted);
        at = end;
    }
    if (b < 198) put(b - 1, F::edge), put(b, F::edge);
    if (at < 200) put(at - 1, F::edge), put(at, F::edge);

    for (std::size_t n = 0; n < 200; ++n) v.dst.push_back(F::weighted(v.w[n], x[n]));
    return v;
}

}  // namespace model
