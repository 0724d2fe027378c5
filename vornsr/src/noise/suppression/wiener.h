// Wiener gains x / (1 + x) of a-priori signal-to-noise ratios x.
#pragma once

#include <cstdint>

#include "loops/elementwise.h"
#include "simd/divide.h"
#include "simd/part.h"

namespace vorn::suppression {

struct SingleWiener {
    using V = f32xN;
    // Not-a-numbers and the zero of either sign stay.
    VORN_INLINE static V limited(V x) { return maxOf(splat<V>(0), x); }
    VORN_INLINE static V gain(V x) { return divided(x, x + splat<V>(1)); }
};

// Ratios in Q15, gains in Q31. A ratio is first rounded down to one of 87 steps: of 1/16 below 4, of 4 below 64, of 64
// below 512, and 512; from 1024 on the gain is the largest there is.
constexpr double stepGain(double step) { return step * 0x1p31 / (step + 32768); }
constexpr bool gainsOfAllStepsAreRoundedDown() {
    for (std::int64_t first = 0, last = 1 << 17, apart = 1 << 11; last <= 1 << 25;) {
        for (std::int64_t step = first; step < last; step += apart) {
            if (static_cast<std::int64_t>(stepGain(static_cast<double>(step))) != (step << 31) / (step + 32768)) {
                return false;
            }
        }
        first = last;
        apart = last == 1 << 24 ? 1 << 24 : last;
        last = last == 1 << 17 ? 1 << 21 : last == 1 << 21 ? 1 << 24 : last == 1 << 24 ? 1 << 25 : 1 << 26;
    }
    return true;
}
static_assert(gainsOfAllStepsAreRoundedDown());

struct FixedWiener {
    using V = i32xN;
    VORN_INLINE static V limited(V x) { return maxOf(x, splat<V>(0)); }
    VORN_INLINE static V gain(V x) {
        V apart = splat<V>(-(1 << 11));
        apart = select(x > splat<V>((1 << 17) - 1), splat<V>(-(1 << 17)), apart);
        apart = select(x > splat<V>((1 << 21) - 1), splat<V>(-(1 << 21)), apart);
        apart = select(x > splat<V>((1 << 24) - 1), splat<V>(-(1 << 24)), apart);
        const V step = x & apart;
        // Truncated in lanes that are far from any integer where they are none, so that no rounding mode shows.
        const V gain = truncToInt(half(toDoubleLow(step)), half(toDoubleHigh(step)));
        return select(x > splat<V>((1 << 25) - 1), splat<V>(INT32_MAX), gain);
    }

private:
    VORN_INLINE static f64xN half(f64xN step) {
        return divided(step * splat<f64xN>(0x1p31), step + splat<f64xN>(32768));
    }
};

// The gains of ratios that are not negative, 0 for those that are; lowest becomes the lowest ratio of each lane.
template <class Form>
struct WienerKernel {
    using V = typename Form::V;
    using T = typename V::Element;
    static constexpr std::int64_t step = V::lanes;
    static constexpr bool unrolled = false;
    const T* src;
    T* dst;
    V& lowest;

    VORN_INLINE V of(V x) const {
        lowest = minOf(x, lowest);
        return Form::gain(Form::limited(x));
    }
    VORN_INLINE V at(std::int64_t i) const { return of(load<V>(src + i)); }
    VORN_INLINE void put(std::int64_t i, V gain) const { store(dst + i, gain); }
    VORN_INLINE void part(std::int64_t n) const { storePart(dst, of(loadPart<V>(src, n)), n); }
    T* result() const { return dst; }
};

// Whether a ratio was negative.
template <class Form, class T>
bool wienerGains(const T* src, T* dst, std::int64_t len) {
    using V = typename Form::V;
    V lowest = splat<V>(0);
    const WienerKernel<Form> kernel{src, dst, lowest};
    if (len < kernel.step) {
        kernel.part(len);
    } else {
        stepsInCache(len, kernel);
    }
    return any(splat<V>(0) > lowest);
}

}  // namespace vorn::suppression
