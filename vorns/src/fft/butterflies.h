// Complex values in lanes, and the butterflies of the transform. The order of every multiplication and addition is
// fixed here and does not depend on the lanes, so every build gives the same bits.
#pragma once

#include <cstddef>

#include "simd.h"

namespace vorn::fft {

// V is a vector of singles or doubles, or one single or double.
template <class V>
struct Complex {
    V re, im;
};

template <class V>
VORN_INLINE Complex<V> operator+(Complex<V> a, Complex<V> b) {
    return {a.re + b.re, a.im + b.im};
}
template <class V>
VORN_INLINE Complex<V> operator-(Complex<V> a, Complex<V> b) {
    return {a.re - b.re, a.im - b.im};
}
// a - i b and a + i b.
template <class V>
VORN_INLINE Complex<V> minusTimesI(Complex<V> a, Complex<V> b) {
    return {a.re + b.im, a.im - b.re};
}
template <class V>
VORN_INLINE Complex<V> plusTimesI(Complex<V> a, Complex<V> b) {
    return {a.re - b.im, a.im + b.re};
}
template <class V>
VORN_INLINE Complex<V> operator*(Complex<V> a, Complex<V> w) {
    return {a.re * w.re - a.im * w.im, a.re * w.im + a.im * w.re};
}

template <class V>
struct ElementOf {
    using type = typename V::Element;
    static constexpr int lanes = V::lanes;
};
template <>
struct ElementOf<float> {
    using type = float;
    static constexpr int lanes = 1;
};
template <>
struct ElementOf<double> {
    using type = double;
    static constexpr int lanes = 1;
};
template <class V>
using Element = typename ElementOf<V>::type;

template <class V>
VORN_INLINE V constant(Element<V> x) {
    if constexpr (ElementOf<V>::lanes == 1) {
        return x;
    } else {
        return splat<V>(x);
    }
}

// What happens to the first level of sums of a butterfly.
struct AsIs {
    template <class V>
    VORN_INLINE Complex<V> operator()(Complex<V> a) const {
        return a;
    }
};
template <class T>
struct TimesFactor {
    T factor;
    template <class V>
    VORN_INLINE Complex<V> operator()(Complex<V> a) const {
        const V f = constant<V>(factor);
        return {a.re * f, a.im * f};
    }
};

// The forward transforms of 4 and 8 values: x[n] in natural order becomes X[k] in natural order.
template <class V, class Level = AsIs>
VORN_INLINE void transform(Complex<V> (&x)[4], Level level = {}) {
    const Complex<V> sum02 = level(x[0] + x[2]), dif02 = level(x[0] - x[2]);
    const Complex<V> sum13 = level(x[1] + x[3]), dif13 = level(x[1] - x[3]);
    x[0] = sum02 + sum13;
    x[1] = minusTimesI(dif02, dif13);
    x[2] = sum02 - sum13;
    x[3] = plusTimesI(dif02, dif13);
}

template <class V, class Level = AsIs>
VORN_INLINE void transform(Complex<V> (&x)[8], Level level = {}) {
    Complex<V> even[4] = {x[0], x[2], x[4], x[6]};
    Complex<V> odd[4] = {x[1], x[3], x[5], x[7]};
    transform(even, level);
    transform(odd, level);
    const V root = constant<V>(static_cast<Element<V>>(0.7071067811865476));  // cos(pi / 4)
    const Complex<V> odd1 = {(odd[1].re + odd[1].im) * root, (odd[1].im - odd[1].re) * root};
    const Complex<V> odd3 = {(odd[3].im - odd[3].re) * root, (odd[3].re + odd[3].im) * root};
    x[0] = even[0] + odd[0];
    x[4] = even[0] - odd[0];
    x[1] = even[1] + odd1;
    x[5] = even[1] - odd1;
    x[2] = minusTimesI(even[2], odd[2]);
    x[6] = plusTimesI(even[2], odd[2]);
    x[3] = {even[3].re + odd3.re, even[3].im - odd3.im};
    x[7] = {even[3].re - odd3.re, even[3].im + odd3.im};
}

// i with its bits reversed, for i below count (a power of two).
constexpr int bitReversed(int i, int count) {
    int result = 0;
    for (; count > 1; count /= 2, i /= 2) result = result * 2 + i % 2;
    return result;
}

}  // namespace vorn::fft
