// Scalar models of packed spectra: products bin by bin, and expansion by the symmetry of the spectrum.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace model {

// Where bin k of a packed spectrum of len values stands; a real bin has no imaginary place (-1).
struct BinPlace {
    int re, im;
};

inline BinPlace binPlace(bool perm, int len, int k) {
    if (k == 0) return {0, -1};
    if (len % 2 == 0 && k == len / 2) return {perm ? 1 : len - 1, -1};
    const int pair = perm && len % 2 == 0 ? 2 * k : 2 * k - 1;
    return {pair, pair + 1};
}

template <class T>
std::vector<T> multiplyPacked(bool perm, bool conjugate, const std::vector<T>& a, const std::vector<T>& b) {
    const int len = static_cast<int>(a.size());
    std::vector<T> result(a.size());
    for (int k = 0; k <= len / 2; ++k) {
        const BinPlace p = binPlace(perm, len, k);
        if (p.im < 0) {
            result[p.re] = a[p.re] * b[p.re];
        } else if (conjugate) {
            result[p.re] = a[p.re] * b[p.re] + a[p.im] * b[p.im];
            result[p.im] = a[p.im] * b[p.re] - a[p.re] * b[p.im];
        } else {
            result[p.re] = a[p.re] * b[p.re] - a[p.im] * b[p.im];
            result[p.im] = a[p.re] * b[p.im] + a[p.im] * b[p.re];
        }
    }
    return result;
}

// The exact value, saturated to 32 bits, is shifted right without rounding, or saturated to 16 bits and doubled -sf
// times; then it is saturated to 16 bits.
inline std::int16_t scaledProduct(std::int64_t x, int sf) {
    const auto clamp = [](std::int64_t v) { return std::clamp<std::int64_t>(v, -32768, 32767); };
    x = std::min<std::int64_t>(x, 2147483647);
    for (int i = 0; i < sf && x != 0 && x != -1; ++i) x = x >= 0 ? x / 2 : -((-x + 1) / 2);  // toward minus infinity
    if (sf < 0) x = clamp(x);
    for (int i = 0; i > sf && i > -20; --i) x *= 2;
    return static_cast<std::int16_t>(clamp(x));
}

inline std::vector<std::int16_t> multiplyPackedFixed(bool perm, const std::vector<std::int16_t>& a,
                                                     const std::vector<std::int16_t>& b, int sf) {
    const int len = static_cast<int>(a.size());
    std::vector<std::int16_t> result(a.size());
    for (int k = 0; k <= len / 2; ++k) {
        const BinPlace p = binPlace(perm, len, k);
        const std::int64_t aRe = a[p.re], bRe = b[p.re];
        if (p.im < 0) {
            result[p.re] = scaledProduct(aRe * bRe, sf);
        } else {
            const std::int64_t aIm = a[p.im], bIm = b[p.im];
            result[p.re] = scaledProduct(aRe * bRe - aIm * bIm, sf);
            result[p.im] = scaledProduct(aRe * bIm + aIm * bRe, sf);
        }
    }
    return result;
}

// All len complex values of a Pack or Perm spectrum.
template <class Pair, class T>
std::vector<Pair> expandPacked(bool perm, const std::vector<T>& a) {
    const int len = static_cast<int>(a.size());
    std::vector<Pair> result(a.size());
    for (int k = 0; k <= len / 2; ++k) {
        const BinPlace p = binPlace(perm, len, k);
        const T im = p.im < 0 ? T(0) : a[p.im];
        result[k] = {a[p.re], im};
        if (p.im >= 0) result[len - k] = {a[p.re], static_cast<T>(-im)};
    }
    return result;
}

template <class Pair>
std::vector<Pair> expandCcs(const std::vector<Pair>& a, int len) {
    std::vector<Pair> result(a);
    result.resize(static_cast<std::size_t>(len));
    for (int k = 1; k <= (len - 1) / 2; ++k) {
        result[len - k] = a[k];
        result[len - k].im = static_cast<decltype(a[k].im)>(-a[k].im);
    }
    return result;
}

}  // namespace model
