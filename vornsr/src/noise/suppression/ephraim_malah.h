// Gains of the minimum mean-square error rule of Ephraim and Malah (1984): W f(v) with v = W gamma, f from its table.
#pragma once

#include <bit>
#include <cstdint>

#include "frame/scale.h"
#include "loops/elementwise.h"
#include "noise/suppression/tables.h"
#include "simd/gather.h"
#include "simd/part.h"

namespace vorn::suppression {

inline constexpr int octaveCount = sizeof octaves / sizeof *octaves;
static_assert(std::int64_t{100} << 22 < std::int64_t{1} << (octaveCount + 7), "no v beyond the table");

// In octave i, X = 2^(i+7) (1 + u/4) with 0 <= u < 4. The stated y = ((((bend d) >> 13) - slope) d) >> (i + 5) with
// d = X - 2^(i+7) is then floor((floor(bend 2^(i-8) u) - slope) u). In doubles the products are exact, and so is the
// sum with the start of the octave, which no shift touches and which makes it positive: its truncation is the floor.
struct OctaveColumns {
    double start[octaveCount], slope[octaveCount], bend[octaveCount];
};
inline constexpr OctaveColumns octaveColumns = [] {
    OctaveColumns columns{};
    for (int i = 0; i < octaveCount; ++i) {
        columns.start[i] = octaves[i].start;
        columns.slope[i] = octaves[i].slope;
        columns.bend[i] = octaves[i].bend * GetScale_32s64f(8 - i);
    }
    return columns;
}();

// What a lane keeps between the two truncations, which are of two halves of integers at once.
struct OctaveHalf {
    f64xN u;
    i64xN octave;

    // X above 128.
    VORN_INLINE explicit OctaveHalf(f64xN x) {
        const i64xN bits = bitsOf(x);
        const f64xN four = splat<f64xN>(4);
        u = floatOf((bits & splat<i64xN>((std::int64_t{1} << 52) - 1)) | bitsOf(four)) - four;
        octave = shiftRightLogical<52>(bits) - splat<i64xN>(1023 + 7);
    }
    VORN_INLINE f64xN bent() const { return gather<f64xN>(octaveColumns.bend, octave) * u; }
    VORN_INLINE f64xN gain(f64xN bent) const {
        return gather<f64xN>(octaveColumns.start, octave) + (bent - gather<f64xN>(octaveColumns.slope, octave)) * u;
    }
};

// f in Q22 of X above 128.
VORN_INLINE i32xN gainQ22(i32xN x) {
    const OctaveHalf low(toDoubleLow(x)), high(toDoubleHigh(x));
    const i32xN bent = truncToInt(low.bent(), high.bent());
    return truncToInt(low.gain(toDoubleLow(bent)), high.gain(toDoubleHigh(bent)));
}

// A form says which arguments it allows, X, and the product with W.

struct SingleGain {
    using V = f32xN;
    VORN_INLINE static auto allowed(V w, V gamma) {
        return (w >= splat<V>(0)) & (w <= splat<V>(1)) & (gamma >= splat<V>(3.05176e-05f)) & (gamma <= splat<V>(32768));
    }
    VORN_INLINE static i32xN index(V w, V gamma) {
        const V limited = minOf(maxOf(gamma, splat<V>(3.1e-05f)), splat<V>(100));
        return truncToInt(limited * w * splat<V>(0x1p22f));
    }
    VORN_INLINE static V product(V w, i32xN gain) { return toFloat(gain) * w * splat<V>(0x1p-22f); }
    static float small(float w, std::int32_t gain) { return w * static_cast<float>(gain); }
};

// W in Q31, gamma in Q15. A product of W and gain that a double has not exactly is beyond the largest result.
struct FixedGain {
    using V = i32xN;
    VORN_INLINE static auto allowed(V w, V gamma) {
        return !((splat<V>(0) > w) | (splat<V>(1) > gamma) | (gamma > splat<V>(0x40000000)));
    }
    VORN_INLINE static i32xN index(V w, V gamma) {
        const V limited = minOf(gamma, splat<V>(100 << 15));
        const f64xN unit = splat<f64xN>(0x1p-24);
        return truncToInt(toDoubleLow(limited) * toDoubleLow(w) * unit, toDoubleHigh(limited) * toDoubleHigh(w) * unit);
    }
    VORN_INLINE static V product(V w, i32xN gain) {
        return truncToInt(half(toDoubleLow(w), toDoubleLow(gain)), half(toDoubleHigh(w), toDoubleHigh(gain)));
    }
    static std::int32_t small(std::int32_t w, std::int32_t gain) {
        const std::int64_t product = std::int64_t{w} * gain;
        return product > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(product);
    }

private:
    VORN_INLINE static f64xN half(f64xN w, f64xN gain) {
        return minOf(w * gain * splat<f64xN>(0x1p-22), splat<f64xN>(2147483647.0));
    }
};

template <class Form>
struct GainKernel {
    using V = typename Form::V;
    using T = typename V::Element;
    static constexpr std::int64_t step = V::lanes;
    static constexpr bool unrolled = false;
    const T *wiener, *postSNR;
    T* dst;

    VORN_INLINE static V of(V w, V gamma) {
        const i32xN x = Form::index(w, gamma);
        const auto isSmall = splat<i32xN>(smallest + 1) > x;
        const V gain = Form::product(w, gainQ22(maxOf(x, splat<i32xN>(smallest + 1))));
        if (!any(isSmall)) return gain;
        T ws[V::lanes], gains[V::lanes];
        std::int32_t xs[V::lanes];
        store(ws, w);
        store(xs, x);
        store(gains, gain);
        tabulate(ws, xs, gains);
        return load<V>(gains);
    }
    VORN_INLINE V at(std::int64_t i) const { return of(load<V>(wiener + i), load<V>(postSNR + i)); }
    VORN_INLINE void put(std::int64_t i, V gain) const { store(dst + i, gain); }
    VORN_INLINE void part(std::int64_t n) const {
        storePart(dst, of(loadPart<V>(wiener, n), loadPart<V>(postSNR, n)), n);
    }
    T* result() const { return dst; }

private:
    // The lanes of small X.
    __attribute__((noinline)) static void tabulate(const T* w, const std::int32_t* x, T* gain) {
        for (int lane = 0; lane < V::lanes; ++lane) {
            if (x[lane] <= smallest) gain[lane] = Form::small(w[lane], gainOfSmall[x[lane]]);
        }
    }
};

template <class Form, class T>
bool allAllowed(const T* wiener, const T* postSNR, std::int64_t len) {
    using V = typename Form::V;
    std::int64_t i = 0;
    for (; i + V::lanes <= len; i += V::lanes) {
        if (!all(Form::allowed(load<V>(wiener + i), load<V>(postSNR + i)))) return false;
    }
    if (i == len) return true;
    const std::int64_t n = len - i;
    return all(Form::allowed(loadPart<V>(wiener + i, n), withRest(loadPart<V>(postSNR + i, n), n, 1)));
}

template <class Form, class T>
void gains(const T* wiener, const T* postSNR, T* dst, std::int64_t len) {
    const GainKernel<Form> kernel{wiener, postSNR, dst};
    if (len < kernel.step) return kernel.part(len);
    stepsInCache(len, kernel);
}

}  // namespace vorn::suppression
