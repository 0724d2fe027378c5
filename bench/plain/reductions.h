// Plain loops of the reductions: what a compiler makes of the formula. Results go to an array of one element.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <type_traits>

#include "vornsr/types.h"

namespace plain {

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
void sumLn(const T* src, R* dst, int len) {
    double sum = 0.0;
    for (int i = 0; i < len; ++i) {
        using Number = std::conditional_t<std::is_same_v<T, double>, double, float>;
        sum += static_cast<double>(std::log(static_cast<Number>(src[i])));
    }
    *dst = static_cast<R>(sum);
}

}  // namespace plain
