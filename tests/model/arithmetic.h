// Plain models of element-wise arithmetic: exact integers of 128 bits, one element at a time.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "model/integers.h"
#include "vornsr/types.h"

namespace model {

// n / d times 2^-sf, rounded to nearest even, saturated, for |n| up to 2^64 and 0 < d up to 2^32.
template <class T>
T scaled(Big n, Big d, int sf) {
    if (n == 0) return 0;
    if (sf > 70) return 0;
    if (sf < -100) return n > 0 ? std::numeric_limits<T>::max() : std::numeric_limits<T>::min();
    if (sf >= 0 && sf <= 28) return saturateTo<T>(nearestRatio(n, d << sf));
    if (sf > 28) {
        // 2^sf d may not fit: halve |n| exactly as often as the result needs, keeping whether anything was lost.
        const Big whole = d << 28;
        Big q = n / whole, r = n % whole;
        if (r < 0) q -= 1, r += whole;
        const Big sticky = 2 * q + (r != 0 ? 1 : 0);  // 2 n / (d 2^28), the last bit says "and a little more"
        return saturateTo<T>(nearestRatio(sticky, Big{2} << (sf - 28)));
    }
    Big q = n;
    for (int k = 0; k < -sf; ++k) {
        q *= 2;
        const Big limit = d * (Big{1} << 40);
        if (q > limit || q < -limit) return q > 0 ? std::numeric_limits<T>::max() : std::numeric_limits<T>::min();
    }
    return saturateTo<T>(nearestRatio(q, d));
}
template <class T>
T scaled(Big s, int sf) {
    return scaled<T>(s, 1, sf);
}

template <class T>
T sum(Big a, Big b, int sf) {
    return scaled<T>(a + b, sf);
}
template <class T>
T difference(Big a, Big b, int sf) {
    return scaled<T>(a - b, sf);
}
template <class T>
T product(Big a, Big b, int sf) {
    return scaled<T>(a * b, sf);
}
// A zero divisor gives the largest value for a positive dividend, the smallest for a negative one, 0 for 0.
template <class T>
T quotient(Big dividend, Big divisor, int sf) {
    if (divisor == 0) {
        return dividend > 0 ? std::numeric_limits<T>::max() : dividend < 0 ? std::numeric_limits<T>::min() : T{0};
    }
    return divisor > 0 ? scaled<T>(dividend, divisor, sf) : scaled<T>(-dividend, -divisor, sf);
}

// The product of 32-bit integers by way of doubles.
inline Vorn32s product32s(Vorn32s a, Vorn32s b, int sf) {
    if (sf > 62) return 0;
    double x = static_cast<double>(a) * static_cast<double>(b);
    if (sf == 0) return static_cast<Vorn32s>(std::trunc(std::clamp(x, -2147483648.0, 2147483647.0)));
    if (sf < -31) return x > 0 ? 2147483647 : x < 0 ? std::numeric_limits<Vorn32s>::min() : 0;
    x = std::clamp(std::ldexp(x, -sf), -2147483648.0, 2147483647.0);
    return static_cast<Vorn32s>(std::nearbyint(x));
}

template <class Complex>
using Part = decltype(Complex::re);

template <class C>
C sumC(C a, C b, int sf) {
    return {sum<Part<C>>(a.re, b.re, sf), sum<Part<C>>(a.im, b.im, sf)};
}
template <class C>
C differenceC(C a, C b, int sf) {
    return {difference<Part<C>>(a.re, b.re, sf), difference<Part<C>>(a.im, b.im, sf)};
}
template <class C>
C productC(C a, C b, int sf) {
    return {scaled<Part<C>>(Big{a.re} * b.re - Big{a.im} * b.im, sf),
            scaled<Part<C>>(Big{a.re} * b.im + Big{a.im} * b.re, sf)};
}
// By a zero divisor each part is divided as a real number.
template <class C>
C quotientC(C dividend, C divisor, int sf) {
    using T = Part<C>;
    const Big a = dividend.re, b = dividend.im, c = divisor.re, d = divisor.im, square = c * c + d * d;
    if (square == 0) return {quotient<T>(a, 0, sf), quotient<T>(b, 0, sf)};
    return {scaled<T>(a * c + b * d, square, sf), scaled<T>(b * c - a * d, square, sf)};
}

// Singles to 16-bit integers: min(x, 32767), which is 32767 for a not-a-number, rounded to nearest even, saturated.
inline Vorn16s rounded16s(Vorn32f x) { return x < 32767.0f ? saturateWhole<Vorn16s>(nearestWhole(x)) : Vorn16s{32767}; }

}  // namespace model
