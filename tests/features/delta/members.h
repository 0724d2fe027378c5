// The streaming members behind one face.
#pragma once

#include <type_traits>
#include <vector>

#include "model/delta.h"
#include "vornsr.h"

namespace test::deltas {

template <class T>
struct Member {
    const char* name;
    model::DeltaRules rules;
    // Factors of the frames, the deltas and the accelerations, width of them each; where all columns share one, it is
    // the first of its part. Singles have no scale.
    VornStatus (*call)(const T* src, const T* f, int width, T* dst, int step, int height, int mode, int scale);

    int parts() const { return rules.acceleration ? 3 : 2; }
    int lag() const { return rules.window; }
    int lookback() const { return rules.window * parts(); }
};

template <class T, auto function>
VornStatus callOf(const T* src, const T* f, int width, T* dst, int step, int height, int mode, int scale) {
    const auto with = [&](auto... tail) {
        using F = decltype(function);
        if constexpr (std::is_invocable_v<F, const T*, const T*, int, T*, int, int, decltype(tail)...>) {
            return function(src, f, width, dst, step, height, tail...);
        } else if constexpr (std::is_invocable_v<F, const T*, int, T*, int, int, T, decltype(tail)...>) {
            return function(src, width, dst, step, height, f[width], tail...);
        } else {
            return function(src, width, dst, step, height, f[width], f[2 * width], tail...);
        }
    };
    if constexpr (std::is_same_v<T, Vorn32f>) {
        return with(mode);
    } else {
        return with(mode, scale);
    }
}

// Window, acceleration, factors of columns, differences that wrap.
#define ROW(name, ...) \
    { #name, {__VA_ARGS__ }, callOf < T, name> }

template <class T>
std::vector<Member<T>> membersOf();
template <>
inline std::vector<Member<Vorn32f>> membersOf() {
    using T = Vorn32f;
    return {
        ROW(vornsDelta_Win1_32f_D2, 1, false, false, false),
        ROW(vornsDelta_Win2_32f_D2, 2, false, false, false),
        ROW(vornsDeltaDelta_Win1_32f_D2, 1, true, false, false),
        ROW(vornsDeltaDelta_Win2_32f_D2, 2, true, false, false),
        ROW(vornsDeltaMul_Win1_32f_D2, 1, false, true, false),
        ROW(vornsDeltaMul_Win2_32f_D2, 2, false, true, false),
        ROW(vornsDeltaDeltaMul_Win1_32f_D2, 1, true, true, false),
        ROW(vornsDeltaDeltaMul_Win2_32f_D2, 2, true, true, false),
    };
}
template <>
inline std::vector<Member<Vorn16s>> membersOf() {
    using T = Vorn16s;
    return {
        ROW(vornsDelta_Win1_16s_D2Sfs, 1, false, false, false),
        ROW(vornsDelta_Win2_16s_D2Sfs, 2, false, false, false),
        ROW(vornsDeltaDelta_Win1_16s_D2Sfs, 1, true, false, false),
        ROW(vornsDeltaDelta_Win2_16s_D2Sfs, 2, true, false, true),
        ROW(vornsDeltaMul_Win1_16s_D2Sfs, 1, false, true, true),
        ROW(vornsDeltaMul_Win2_16s_D2Sfs, 2, false, true, true),
        ROW(vornsDeltaDeltaMul_Win1_16s_D2Sfs, 1, true, true, true),
        ROW(vornsDeltaDeltaMul_Win2_16s_D2Sfs, 2, true, true, true),
    };
}

#undef ROW

}  // namespace test::deltas
