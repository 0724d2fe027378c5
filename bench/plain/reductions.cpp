#include "plain/reductions.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace plain {
namespace {

// A number times a power of two as an integer: to nearest, saturated.
template <class R, class Number>
R rounded(Number x) {
    constexpr auto low = static_cast<Number>(std::numeric_limits<R>::min());
    constexpr auto high = static_cast<Number>(std::numeric_limits<R>::max());
    return static_cast<R>(std::nearbyint(std::min(std::max(x, low), high)));
}

}  // namespace

template <class Sum, class T, class R>
void sum(const T* src, R* dst, int len) {
    Sum sum = 0;
    for (int i = 0; i < len; ++i) sum += src[i];
    *dst = static_cast<R>(sum);
}
template <class Sum, class T, class R>
void sumComplex(const T* src, R* dst, int len) {
    Sum re = 0, im = 0;
    for (int i = 0; i < len; ++i) {
        re += src[i].re;
        im += src[i].im;
    }
    dst->re = static_cast<decltype(dst->re)>(re);
    dst->im = static_cast<decltype(dst->im)>(im);
}

template <class Sum, class A, class B, class R>
void dot(const A* a, const B* b, R* dst, int len) {
    Sum sum = 0;
    for (int i = 0; i < len; ++i) sum += static_cast<Sum>(a[i]) * static_cast<Sum>(b[i]);
    *dst = static_cast<R>(sum);
}
template <class Sum, class A, class B, class R>
void dotRealComplex(const A* a, const B* b, R* dst, int len) {
    Sum re = 0, im = 0;
    for (int i = 0; i < len; ++i) {
        re += static_cast<Sum>(a[i]) * static_cast<Sum>(b[i].re);
        im += static_cast<Sum>(a[i]) * static_cast<Sum>(b[i].im);
    }
    dst->re = static_cast<decltype(dst->re)>(re);
    dst->im = static_cast<decltype(dst->im)>(im);
}
template <class Sum, class T, class R>
void dotComplex(const T* a, const T* b, R* dst, int len) {
    Sum re = 0, im = 0;
    for (int i = 0; i < len; ++i) {
        const auto ar = static_cast<Sum>(a[i].re), ai = static_cast<Sum>(a[i].im);
        const auto br = static_cast<Sum>(b[i].re), bi = static_cast<Sum>(b[i].im);
        re += ar * br - ai * bi;
        im += ar * bi + ai * br;
    }
    dst->re = static_cast<decltype(dst->re)>(re);
    dst->im = static_cast<decltype(dst->im)>(im);
}

template <class T>
void max(const T* src, T* dst, int len) {
    T best = src[0];
    for (int i = 1; i < len; ++i) best = std::max(best, src[i]);
    *dst = best;
}
template <class T>
void min(const T* src, T* dst, int len) {
    T best = src[0];
    for (int i = 1; i < len; ++i) best = std::min(best, src[i]);
    *dst = best;
}
template <class T>
void minMax(const T* src, T* min, T* max, int len) {
    T low = src[0], high = src[0];
    for (int i = 1; i < len; ++i) {
        low = std::min(low, src[i]);
        high = std::max(high, src[i]);
    }
    *min = low;
    *max = high;
}
template <class T>
void maxIndex(const T* src, T* dst, int* index, int len) {
    T best = src[0];
    int at = 0;
    for (int i = 1; i < len; ++i) {
        if (src[i] > best) {
            best = src[i];
            at = i;
        }
    }
    *dst = best;
    *index = at;
}
template <class T>
void maxEvery(const T* __restrict src, T* __restrict srcDst, int len) {
    for (int i = 0; i < len; ++i) srcDst[i] = std::max(srcDst[i], src[i]);
}

template <class T, class R>
void ln(const T* __restrict src, R* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = static_cast<R>(std::log(src[i]));
}
void lnScaled(const Vorn32s* __restrict src, Vorn32s* __restrict dst, int len, int scaleFactor) {
    const float scale = std::ldexp(1.0f, -scaleFactor);
    for (int i = 0; i < len; ++i) {
        dst[i] = static_cast<Vorn32s>(std::nearbyint(std::log(static_cast<float>(src[i])) * scale));
    }
}
template <class T, class R>
void sumLn(const T* src, R* dst, int len) {
    double sum = 0.0;
    for (int i = 0; i < len; ++i) {
        using Number = std::conditional_t<std::is_same_v<T, double>, double, float>;
        sum += static_cast<double>(std::log(static_cast<Number>(src[i])));
    }
    *dst = static_cast<R>(sum);
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
void rootComplexScaled(const Vorn16sc* src, Vorn16sc* dst, int len, int scaleFactor) {
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

template <class T>
void absolute(const T* __restrict src, T* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) {
        if constexpr (std::is_integral_v<T>) {
            dst[i] = src[i] == std::numeric_limits<T>::min() ? std::numeric_limits<T>::max()
                                                             : static_cast<T>(std::abs(src[i]));
        } else {
            dst[i] = std::fabs(src[i]);
        }
    }
}

template void sum<float>(const Vorn32f*, Vorn32f*, int);
template void sum<double>(const Vorn32f*, Vorn32f*, int);
template void sum<double>(const Vorn64f*, Vorn64f*, int);
template void sum<std::int64_t>(const Vorn16s*, Vorn32s*, int);
template void sum<std::int64_t>(const Vorn32s*, Vorn32s*, int);
template void sumComplex<float>(const Vorn32fc*, Vorn32fc*, int);
template void sumComplex<double>(const Vorn32fc*, Vorn32fc*, int);
template void sumComplex<double>(const Vorn64fc*, Vorn64fc*, int);
template void sumComplex<std::int64_t>(const Vorn16sc*, Vorn32sc*, int);

template void dot<float>(const Vorn32f*, const Vorn32f*, Vorn32f*, int);
template void dot<double>(const Vorn64f*, const Vorn64f*, Vorn64f*, int);
template void dot<double>(const Vorn32f*, const Vorn32f*, Vorn64f*, int);
template void dot<std::int64_t>(const Vorn16s*, const Vorn16s*, Vorn64s*, int);
template void dot<double>(const Vorn32s*, const Vorn32s*, Vorn32s*, int);
template void dot<double>(const Vorn16s*, const Vorn32s*, Vorn32s*, int);
template void dotRealComplex<float>(const Vorn32f*, const Vorn32fc*, Vorn32fc*, int);
template void dotRealComplex<double>(const Vorn64f*, const Vorn64fc*, Vorn64fc*, int);
template void dotRealComplex<double>(const Vorn32f*, const Vorn32fc*, Vorn64fc*, int);
template void dotRealComplex<std::int64_t>(const Vorn16s*, const Vorn16sc*, Vorn64sc*, int);
template void dotRealComplex<double>(const Vorn32s*, const Vorn32sc*, Vorn32sc*, int);
template void dotComplex<float>(const Vorn32fc*, const Vorn32fc*, Vorn32fc*, int);
template void dotComplex<double>(const Vorn64fc*, const Vorn64fc*, Vorn64fc*, int);
template void dotComplex<double>(const Vorn32fc*, const Vorn32fc*, Vorn64fc*, int);
template void dotComplex<std::int64_t>(const Vorn16sc*, const Vorn16sc*, Vorn64sc*, int);
template void dotComplex<double>(const Vorn32sc*, const Vorn32sc*, Vorn32sc*, int);

template void max(const Vorn16s*, Vorn16s*, int);
template void max(const Vorn32f*, Vorn32f*, int);
template void max(const Vorn64f*, Vorn64f*, int);
template void min(const Vorn16s*, Vorn16s*, int);
template void minMax(const Vorn8u*, Vorn8u*, Vorn8u*, int);
template void minMax(const Vorn16u*, Vorn16u*, Vorn16u*, int);
template void minMax(const Vorn16s*, Vorn16s*, Vorn16s*, int);
template void minMax(const Vorn32u*, Vorn32u*, Vorn32u*, int);
template void minMax(const Vorn32s*, Vorn32s*, Vorn32s*, int);
template void minMax(const Vorn32f*, Vorn32f*, Vorn32f*, int);
template void minMax(const Vorn64f*, Vorn64f*, Vorn64f*, int);
template void maxIndex(const Vorn16s*, Vorn16s*, int*, int);
template void maxIndex(const Vorn32f*, Vorn32f*, int*, int);
template void maxIndex(const Vorn64f*, Vorn64f*, int*, int);
template void maxEvery(const Vorn16s*, Vorn16s*, int);
template void maxEvery(const Vorn32s*, Vorn32s*, int);
template void maxEvery(const Vorn32f*, Vorn32f*, int);

template void ln(const Vorn32f*, Vorn32f*, int);
template void ln(const Vorn64f*, Vorn64f*, int);
template void ln(const Vorn64f*, Vorn32f*, int);
template void sumLn(const Vorn32f*, Vorn32f*, int);
template void sumLn(const Vorn64f*, Vorn64f*, int);
template void sumLn(const Vorn16s*, Vorn32f*, int);

template void root(const Vorn32f*, Vorn32f*, int);
template void root(const Vorn64f*, Vorn64f*, int);
template void rootComplex(const Vorn32fc*, Vorn32fc*, int);
template void rootComplex(const Vorn64fc*, Vorn64fc*, int);
template void rootScaled<float>(const Vorn8u*, Vorn8u*, int, int);
template void rootScaled<float>(const Vorn16u*, Vorn16u*, int, int);
template void rootScaled<float>(const Vorn16s*, Vorn16s*, int, int);
template void rootScaled<double>(const Vorn32s*, Vorn16s*, int, int);
template void rootScaled<double>(const Vorn64s*, Vorn16s*, int, int);
template void rootScaled<double>(const Vorn64s*, Vorn64s*, int, int);

template void magnitude<float>(const Vorn32fc*, Vorn32f*, int);
template void magnitude<double>(const Vorn64fc*, Vorn64f*, int);
template void magnitude<float>(const Vorn16sc*, Vorn32f*, int);
template void magnitude<float>(const Vorn32f*, const Vorn32f*, Vorn32f*, int);
template void magnitude<double>(const Vorn64f*, const Vorn64f*, Vorn64f*, int);
template void magnitude<float>(const Vorn16s*, const Vorn16s*, Vorn32f*, int);
template void magnitudeScaled(const Vorn16sc*, Vorn16s*, int, int);
template void magnitudeScaled(const Vorn32sc*, Vorn32s*, int, int);
template void magnitudeScaled(const Vorn16s*, const Vorn16s*, Vorn16s*, int, int);

template void absolute(const Vorn16s*, Vorn16s*, int);
template void absolute(const Vorn32s*, Vorn32s*, int);
template void absolute(const Vorn32f*, Vorn32f*, int);
template void absolute(const Vorn64f*, Vorn64f*, int);

}  // namespace plain
