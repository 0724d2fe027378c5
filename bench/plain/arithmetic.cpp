#include "plain/arithmetic.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace plain {
namespace {

template <class T, class W>
T saturated(W x) {
    return static_cast<T>(std::clamp<W>(x, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
}
template <class W>
W rounded(W s, int sf) {
    return (s + ((W{1} << (sf - 1)) - 1) + ((s >> sf) & 1)) >> sf;
}

// One loop for each kind of scale factor; W holds every intermediate value.
template <class W, class T, class Op>
void scaledLoop(const T* __restrict a, const T* __restrict b, T* __restrict dst, std::size_t len, int sf, Op op) {
    if (sf == 0) {
        for (std::size_t i = 0; i < len; ++i) dst[i] = saturated<T>(op(W(a[i]), W(b[i])));
    } else if (sf > 0) {
        for (std::size_t i = 0; i < len; ++i) dst[i] = saturated<T>(rounded(op(W(a[i]), W(b[i])), sf));
    } else {
        for (std::size_t i = 0; i < len; ++i) {
            dst[i] = saturated<T>(W(saturated<T>(op(W(a[i]), W(b[i])))) * (W{1} << -sf));
        }
    }
}

template <class T>
using Working = std::conditional_t<sizeof(T) == 4, std::int64_t, std::int32_t>;

}  // namespace

template <class T>
void add(const T* __restrict a, const T* __restrict b, T* __restrict dst, std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) dst[i] = a[i] + b[i];
}
template <class T>
void multiply(const T* __restrict a, const T* __restrict b, T* __restrict dst, std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) dst[i] = a[i] * b[i];
}
template <class T>
void divide(const T* __restrict a, const T* __restrict b, T* __restrict dst, std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) dst[i] = a[i] / b[i];
}
void multiplyComplex(const Vorn32fc* __restrict a, const Vorn32fc* __restrict b, Vorn32fc* __restrict dst,
                     std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) {
        dst[i] = {a[i].re * b[i].re - a[i].im * b[i].im, a[i].re * b[i].im + a[i].im * b[i].re};
    }
}
void divideComplex(const Vorn32fc* __restrict a, const Vorn32fc* __restrict b, Vorn32fc* __restrict dst,
                   std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) {
        const float square = b[i].re * b[i].re + b[i].im * b[i].im;
        dst[i] = {(a[i].re * b[i].re + a[i].im * b[i].im) / square, (a[i].im * b[i].re - a[i].re * b[i].im) / square};
    }
}
void multiplyConstant(const Vorn32f* __restrict a, Vorn32f val, Vorn32f* __restrict dst, std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) dst[i] = a[i] * val;
}

template <class T>
void addScaled(const T* a, const T* b, T* dst, std::size_t len, int sf) {
    scaledLoop<Working<T>>(a, b, dst, len, sf, [](auto x, auto y) { return x + y; });
}
template <class T>
void multiplyScaled(const T* a, const T* b, T* dst, std::size_t len, int sf) {
    scaledLoop<Working<T>>(a, b, dst, len, sf, [](auto x, auto y) { return x * y; });
}
template <class T>
void divideScaled(const T* __restrict dividend, const T* __restrict divisor, T* __restrict dst, std::size_t len,
                  int sf) {
    const double factor = std::ldexp(1.0, -sf);
    for (std::size_t i = 0; i < len; ++i) {
        const double d = divisor[i] == 0 ? 0x1p-100 : static_cast<double>(divisor[i]);
        const double x = std::nearbyint(static_cast<double>(dividend[i]) * factor / d);
        dst[i] = saturated<T>(x);
    }
}
template <class C>
void multiplyComplexScaled(const C* __restrict a, const C* __restrict b, C* __restrict dst, std::size_t len, int sf) {
    using T = decltype(C::re);
    using W = std::int64_t;
    for (std::size_t i = 0; i < len; ++i) {
        const W re = W{a[i].re} * b[i].re - W{a[i].im} * b[i].im, im = W{a[i].re} * b[i].im + W{a[i].im} * b[i].re;
        dst[i] = {saturated<T>(rounded(re, sf)), saturated<T>(rounded(im, sf))};
    }
}

template void add(const Vorn32f*, const Vorn32f*, Vorn32f*, std::size_t);
template void add(const Vorn64f*, const Vorn64f*, Vorn64f*, std::size_t);
template void multiply(const Vorn32f*, const Vorn32f*, Vorn32f*, std::size_t);
template void divide(const Vorn32f*, const Vorn32f*, Vorn32f*, std::size_t);
template void divide(const Vorn64f*, const Vorn64f*, Vorn64f*, std::size_t);
template void addScaled(const Vorn8u*, const Vorn8u*, Vorn8u*, std::size_t, int);
template void addScaled(const Vorn16s*, const Vorn16s*, Vorn16s*, std::size_t, int);
template void addScaled(const Vorn32s*, const Vorn32s*, Vorn32s*, std::size_t, int);
template void multiplyScaled(const Vorn8u*, const Vorn8u*, Vorn8u*, std::size_t, int);
template void multiplyScaled(const Vorn16s*, const Vorn16s*, Vorn16s*, std::size_t, int);
template void multiplyScaled(const Vorn32s*, const Vorn32s*, Vorn32s*, std::size_t, int);
template void divideScaled(const Vorn8u*, const Vorn8u*, Vorn8u*, std::size_t, int);
template void divideScaled(const Vorn16s*, const Vorn16s*, Vorn16s*, std::size_t, int);
template void divideScaled(const Vorn32s*, const Vorn32s*, Vorn32s*, std::size_t, int);
template void multiplyComplexScaled(const Vorn16sc*, const Vorn16sc*, Vorn16sc*, std::size_t, int);
template void multiplyComplexScaled(const Vorn32sc*, const Vorn32sc*, Vorn32sc*, std::size_t, int);

}  // namespace plain
