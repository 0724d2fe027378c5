// Complex values in lanes, and the butterflies of the transform. The order of every multiplication and addition is
// fixed here and does not depend on the lanes, so every build gives the same bits.
#pragma once

#include <cstddef>

#include "simd/groups.h"
#include "simd/simd.h"

namespace vorn::fft {

// V is a vector of singles or doubles, or one single or double.
template <class V>
struct Complex {
    V re, im;
};

// Pairs as they lie in memory: the real part in the first of two neighbouring lanes, or the imaginary one.
enum class Parts { RealFirst, ImaginaryFirst };
template <class V, Parts parts>
struct Pairs {
    V v;
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
    template <class Z>
    VORN_INLINE Z operator()(Z a) const {
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
    template <class V, Parts parts>
    VORN_INLINE Pairs<V, parts> operator()(Pairs<V, parts> a) const {
        return {a.v * constant<V>(factor)};
    }
};

// Pairs as vectors.
template <class V, Parts parts>
VORN_INLINE Pairs<V, parts> operator+(Pairs<V, parts> a, Pairs<V, parts> b) {
    return {a.v + b.v};
}
template <class V, Parts parts>
VORN_INLINE Pairs<V, parts> operator-(Pairs<V, parts> a, Pairs<V, parts> b) {
    return {a.v - b.v};
}
// -i a.
template <class V, Parts parts>
VORN_INLINE Pairs<V, parts> turned(Pairs<V, parts> a) {
    const V exchanged = swapPairs(a.v);
    return {parts == Parts::RealFirst ? negateSeconds(exchanged) : negateFirsts(exchanged)};
}
template <class V, Parts parts>
VORN_INLINE Pairs<V, parts> minusTimesI(Pairs<V, parts> a, Pairs<V, parts> b) {
    return a + turned(b);
}
template <class V, Parts parts>
VORN_INLINE Pairs<V, parts> plusTimesI(Pairs<V, parts> a, Pairs<V, parts> b) {
    return a - turned(b);
}

// The sum and the difference of a and b exp(-i pi / 4), or b exp(-3 i pi / 4).
template <class V>
VORN_INLINE void eighthButterfly(Complex<V> a, Complex<V> b, Complex<V>& sum, Complex<V>& dif) {
    const V root = constant<V>(static_cast<Element<V>>(0.7071067811865476));  // cos(pi / 4)
    const Complex<V> w = {(b.re + b.im) * root, (b.im - b.re) * root};
    sum = a + w;
    dif = a - w;
}
template <class V>
VORN_INLINE void threeEighthsButterfly(Complex<V> a, Complex<V> b, Complex<V>& sum, Complex<V>& dif) {
    const V root = constant<V>(static_cast<Element<V>>(0.7071067811865476));
    const Complex<V> conjugate = {(b.im - b.re) * root, (b.re + b.im) * root};
    sum = {a.re + conjugate.re, a.im - conjugate.im};
    dif = {a.re - conjugate.re, a.im + conjugate.im};
}
template <class V, Parts parts>
VORN_INLINE void eighthButterfly(Pairs<V, parts> a, Pairs<V, parts> b, Pairs<V, parts>& sum, Pairs<V, parts>& dif) {
    const Pairs<V, parts> w = {(b.v + turned(b).v) * constant<V>(static_cast<Element<V>>(0.7071067811865476))};
    sum = a + w;
    dif = a - w;
}
template <class V, Parts parts>
VORN_INLINE void threeEighthsButterfly(Pairs<V, parts> a, Pairs<V, parts> b, Pairs<V, parts>& sum,
                                       Pairs<V, parts>& dif) {
    const Pairs<V, parts> w = {(turned(b).v - b.v) * constant<V>(static_cast<Element<V>>(0.7071067811865476))};
    sum = a + w;
    dif = a - w;
}

// The forward transform of 4 or 8 values, Complex or Pairs: load(n) gives x[n], store(k, z) takes X[k]. The values are
// loaded and stored one by one, where they are needed; all are loaded before the first is stored.
template <int length, class Load, class Store, class Level = AsIs>
VORN_INLINE void transform(Load load, Store store, Level level = {}) {
    using Z = decltype(load(0));
    if constexpr (length == 4) {
        const Z x0 = load(0), x2 = load(2);
        const Z sum02 = level(x0 + x2), dif02 = level(x0 - x2);
        const Z x1 = load(1), x3 = load(3);
        const Z sum13 = level(x1 + x3), dif13 = level(x1 - x3);
        store(0, sum02 + sum13);
        store(1, minusTimesI(dif02, dif13));
        store(2, sum02 - sum13);
        store(3, plusTimesI(dif02, dif13));
    } else {
        Z even[4], odd[4], sum, dif;
        transform<4>([&](int n) { return load(2 * n); }, [&](int k, Z z) { even[k] = z; }, level);
        transform<4>([&](int n) { return load(2 * n + 1); }, [&](int k, Z z) { odd[k] = z; }, level);
        store(0, even[0] + odd[0]);
        store(4, even[0] - odd[0]);
        eighthButterfly(even[1], odd[1], sum, dif);
        store(1, sum);
        store(5, dif);
        store(2, minusTimesI(even[2], odd[2]));
        store(6, plusTimesI(even[2], odd[2]));
        threeEighthsButterfly(even[3], odd[3], sum, dif);
        store(3, sum);
        store(7, dif);
    }
}
// The same, but all values are loaded first and stored last.
template <int length, class Load, class Store>
VORN_INLINE void transformInRegisters(Load load, Store store) {
    using Z = decltype(load(0));
    Z x[length], result[length];
    for (int n = 0; n < length; ++n) x[n] = load(n);
    transform<length>([&](int n) { return x[n]; }, [&](int k, Z z) { result[k] = z; });
    for (int k = 0; k < length; ++k) store(k, result[k]);
}
template <int length, class Z>
VORN_INLINE void transform(Z (&x)[length]) {
    transform<length>([&](int n) { return x[n]; }, [&](int k, Z z) { x[k] = z; });
}

// X[k] of several columns, turned into runs of neighbouring k. Each group of 16 bytes of a run holds the values k to
// k + length - 1 of one column: of column perGroup g + i % perGroup, with k = i / perGroup * length, in group g of run
// i.
template <class Z>
struct Runs;
template <class V, Parts parts>
struct Runs<Pairs<V, parts>> {
    using Vector = V;
    static constexpr int length = 16 / sizeof(Element<V>);
    static constexpr int perGroup = length / 2;
    static constexpr int columns = V::lanes / 2;
    template <int n>
    static VORN_INLINE void from(const Pairs<V, parts> (&x)[n], Complex<V> (&runs)[n / 2]) {
        for (int k = 0; k < n; k += length) {
            V v[length];
            for (int i = 0; i < length; ++i) v[i] = x[k + i].v;
            transposeGroups(v);
            for (int i = 0; i < length; i += 2) {
                Complex<V>& run = runs[(k + i) / 2];
                if constexpr (parts == Parts::RealFirst) {
                    run = {v[i], v[i + 1]};
                } else {
                    run = {v[i + 1], v[i]};
                }
            }
        }
    }
};
template <class V>
struct Runs<Complex<V>> {
    using Vector = V;
    static constexpr int length = 16 / sizeof(Element<V>);
    static constexpr int perGroup = length;
    static constexpr int columns = V::lanes;
    template <int n>
    static VORN_INLINE void from(const Complex<V> (&x)[n], Complex<V> (&runs)[n]) {
        for (int k = 0; k < n; k += length) {
            V re[length], im[length];
            for (int i = 0; i < length; ++i) re[i] = x[k + i].re, im[i] = x[k + i].im;
            transposeGroups(re);
            transposeGroups(im);
            for (int i = 0; i < length; ++i) runs[k + i] = {re[i], im[i]};
        }
    }
};

// i with its bits reversed, for i below count (a power of two).
constexpr int bitReversed(int i, int count) {
    int result = 0;
    for (; count > 1; count /= 2, i /= 2) result = result * 2 + i % 2;
    return result;
}

}  // namespace vorn::fft
