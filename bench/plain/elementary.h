// Plain loops of the elementary functions: what a compiler makes of the formula.
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>

#include "vornsr/types.h"

namespace plain {

// A number times a power of two as an integer: to nearest, saturated.
template <class R, class Number>
R rounded(Number x) {
    constexpr auto low = static_cast<Number>(std::numeric_limits<R>::min());
    constexpr auto high = static_cast<Number>(std::numeric_limits<R>::max());
    return static_cast<R>(std::nearbyint(std::min(std::max(x, low), high)));
}

template <class T, class R>
void ln(const T* __restrict src, R* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = static_cast<R>(std::log(src[i]));
}
inline void lnScaled(const Vorn32s* __restrict src, Vorn32s* __restrict dst, int len, int scaleFactor) {
    const float scale = std::ldexp(1.0f, -scaleFactor);
    for (int i = 0; i < len; ++i) {
        dst[i] = static_cast<Vorn32s>(std::nearbyint(std::log(static_cast<float>(src[i])) * scale));
    }
}
template <class T>
void root(const T* __restrict src, T* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = std::sqrt(src[i]);
}
template <class Complex>
void rootComplex(const Complex* src, Complex* dst, int len) {
    for (int i = 0; i < len; ++i) {
        const auto root = std::sqrt(std::complex(src[i].re, src[i].im));
        dst[i] = {root.real(), root.imag()};
    }
}
template <class Number, class T, class R>
void rootScaled(const T* __restrict src, R* __restrict dst, int len, int scaleFactor) {
    const auto scale = static_cast<Number>(std::ldexp(1.0, -scaleFactor));
    for (int i = 0; i < len; ++i) dst[i] = rounded<R>(std::sqrt(static_cast<Number>(src[i])) * scale);
}
inline void rootComplexScaled(const Vorn16sc* src, Vorn16sc* dst, int len, int scaleFactor) {
    const double scale = std::ldexp(1.0, -scaleFactor);
    for (int i = 0; i < len; ++i) {
        const auto root = std::sqrt(std::complex(static_cast<double>(src[i].re), static_cast<double>(src[i].im)));
        dst[i] = {rounded<Vorn16s>(root.real() * scale), rounded<Vorn16s>(root.imag() * scale)};
    }
}

template <class Number, class Complex, class R>
void magnitude(const Complex* __restrict src, R* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) {
        const auto re = static_cast<Number>(src[i].re), im = static_cast<Number>(src[i].im);
        dst[i] = static_cast<R>(std::sqrt(re * re + im * im));
    }
}
template <class Number, class T, class R>
void magnitude(const T* __restrict re, const T* __restrict im, R* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) {
        const auto x = static_cast<Number>(re[i]), y = static_cast<Number>(im[i]);
        dst[i] = static_cast<R>(std::sqrt(x * x + y * y));
    }
}
template <class Complex, class R>
void magnitudeScaled(const Complex* __restrict src, R* __restrict dst, int len, int scaleFactor) {
    const double scale = std::ldexp(1.0, -scaleFactor);
    for (int i = 0; i < len; ++i) {
        const double re = src[i].re, im = src[i].im;
        dst[i] = rounded<R>(std::sqrt(re * re + im * im) * scale);
    }
}
template <class T>
void magnitudeScaled(const T* __restrict re, const T* __restrict im, T* __restrict dst, int len, int scaleFactor) {
    const double scale = std::ldexp(1.0, -scaleFactor);
    for (int i = 0; i < len; ++i) {
        const double x = re[i], y = im[i];
        dst[i] = rounded<T>(std::sqrt(x * x + y * y) * scale);
    }
}

}  // namespace plain
