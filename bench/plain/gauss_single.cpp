#include "plain/gauss_single.h"

#include <algorithm>
#include <cstdint>

namespace plain {
namespace {

int saturated(int d) { return std::clamp(d, -32768, 32767); }

// term(j) in the type of the sum.
template <class R, class Term>
R sumOf(int len, Term term) {
    R sum = 0;
    for (int j = 0; j < len; ++j) sum += term(j);
    return sum;
}

// Low precision: squares without their lowest bit, sums that wrap in 32 bits.
template <class Weight>
Vorn32s lowScore(const Vorn16s* x, const Vorn16s* m, int len, Vorn32s val, int scaleFactor, Weight weight) {
    std::uint32_t sum = 0;
    for (int j = 0; j < len; ++j) {
        const int d = saturated(x[j] - m[j]);
        sum -= static_cast<std::uint32_t>((d * d) >> 1) * static_cast<std::uint32_t>(weight(j));
    }
    return val + (static_cast<Vorn32s>(sum) >> scaleFactor);
}

template <class T, class R>
R blockForm(const T* x, const T* m, const T* const* rows, int len) {
    R sum = 0;
    for (int r = 0; r < len; ++r) {
        R t = 0;
        for (int j = 0; j < len; ++j) t += static_cast<R>(rows[r][j]) * static_cast<R>(x[j] - m[j]);
        sum += static_cast<R>(x[r] - m[r]) * t;
    }
    return sum;
}

}  // namespace

Vorn32f gaussScore(const Vorn32f* x, const Vorn32f* m, const Vorn32f* v, int len, Vorn32f val) {
    return val - 0.5f * sumOf<Vorn32f>(len, [=](int j) { return (x[j] - m[j]) * (x[j] - m[j]) * v[j]; });
}
Vorn64f gaussScore(const Vorn64f* x, const Vorn64f* m, const Vorn64f* v, int len, Vorn64f val) {
    return val - 0.5 * sumOf<Vorn64f>(len, [=](int j) { return (x[j] - m[j]) * (x[j] - m[j]) * v[j]; });
}
Vorn64f gaussScoreWidened(const Vorn32f* x, const Vorn32f* m, const Vorn32f* v, int len, Vorn64f val) {
    return val - 0.5 * sumOf<Vorn64f>(len, [=](int j) {
                     const double d = static_cast<double>(x[j]) - static_cast<double>(m[j]);
                     return d * d * static_cast<double>(v[j]);
                 });
}
Vorn32f gaussScoreIdentity(const Vorn32f* x, const Vorn32f* m, int len, Vorn32f val) {
    return val - 0.5f * sumOf<Vorn32f>(len, [=](int j) { return (x[j] - m[j]) * (x[j] - m[j]); });
}
Vorn64f gaussScoreIdentity(const Vorn64f* x, const Vorn64f* m, int len, Vorn64f val) {
    return val - 0.5 * sumOf<Vorn64f>(len, [=](int j) { return (x[j] - m[j]) * (x[j] - m[j]); });
}
Vorn32f gaussScoreDivided(const Vorn32f* x, const Vorn32f* m, const Vorn32f* v, int len, Vorn32f val) {
    return val - 0.5f * sumOf<Vorn32f>(len, [=](int j) { return (x[j] - m[j]) * (x[j] - m[j]) / v[j]; });
}
Vorn64f gaussScoreDivided(const Vorn64f* x, const Vorn64f* m, const Vorn64f* v, int len, Vorn64f val) {
    return val - 0.5 * sumOf<Vorn64f>(len, [=](int j) { return (x[j] - m[j]) * (x[j] - m[j]) / v[j]; });
}
Vorn32f gaussScore(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, Vorn32f val, Vorn32f scale) {
    return val - scale * sumOf<Vorn32f>(len, [=](int j) {
                     const int d = saturated(x[j] - m[j]);
                     return static_cast<float>(d * d) * static_cast<float>(v[j]);
                 });
}
Vorn32f gaussScoreDivided(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, Vorn32f val, Vorn32f scale) {
    return val - scale * sumOf<Vorn32f>(len, [=](int j) {
                     const int d = saturated(x[j] - m[j]);
                     return static_cast<float>(d * d) / static_cast<float>(v[j]);
                 });
}
Vorn32f gaussScoreIdentity(const Vorn16s* x, const Vorn16s* m, int len, Vorn32f val, Vorn32f scale) {
    const auto sum = sumOf<std::int64_t>(len, [=](int j) {
        const int d = saturated(x[j] - m[j]);
        return d * d;
    });
    return val - static_cast<float>(sum) * scale;
}
Vorn32s gaussScoreLow(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, Vorn32s val, int scaleFactor) {
    return lowScore(x, m, len, val, scaleFactor, [=](int j) { return v[j]; });
}
Vorn32s gaussScoreLowIdentity(const Vorn16s* x, const Vorn16s* m, int len, Vorn32s val, int scaleFactor) {
    return lowScore(x, m, len, val, scaleFactor, [](int) { return 1; });
}
Vorn32f gaussScoreBlock(const Vorn32f* x, const Vorn32f* m, const Vorn32f* const* rows, int len, Vorn32f val) {
    return val - 0.5f * blockForm<Vorn32f, Vorn32f>(x, m, rows, len);
}
Vorn64f gaussScoreBlock(const Vorn64f* x, const Vorn64f* m, const Vorn64f* const* rows, int len, Vorn64f val) {
    return val - 0.5 * blockForm<Vorn64f, Vorn64f>(x, m, rows, len);
}
Vorn32f gaussScoreBlock(const Vorn16s* x, const Vorn16s* m, const Vorn16s* const* rows, int len, Vorn32f val,
                        Vorn32f scale) {
    return val - 0.5f * scale * blockForm<Vorn16s, Vorn32f>(x, m, rows, len);
}

}  // namespace plain
