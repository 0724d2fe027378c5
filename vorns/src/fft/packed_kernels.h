// Products of packed spectra and their expansion into full complex ones.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "fft/butterflies.h"
#include "frame/wrap.h"
#include "move_kernels.h"
#include "simd.h"

namespace vorn::fft {

// Where the real bins of a packed spectrum of len values stand; its pairs are in between.
struct PackBins {
    static std::ptrdiff_t nyquist(std::ptrdiff_t len) { return len - 1; }
    static std::ptrdiff_t firstPair(std::ptrdiff_t) { return 1; }
};
struct PermBins {
    static std::ptrdiff_t nyquist(std::ptrdiff_t) { return 1; }
    static std::ptrdiff_t firstPair(std::ptrdiff_t len) { return len % 2 == 0 ? 2 : 1; }
};

// dst[k] = rule(a[k], b[k]) for each real bin and each pair. A spectrum of odd length has no bin at N / 2.
template <class Bins, class T, class Rule>
void multiplyPacked(const T* a, const T* b, T* dst, std::ptrdiff_t len, Rule rule) {
    dst[0] = rule.real(a[0], b[0]);
    const std::ptrdiff_t nyquist = Bins::nyquist(len), pairs = (len - 1) / 2;
    if (len % 2 == 0) dst[nyquist] = rule.real(a[nyquist], b[nyquist]);
    const std::ptrdiff_t first = Bins::firstPair(len);
    rule.pairs(a + first, b + first, dst + first, pairs);
}

// Float products. The conjugate, where there is one, falls on the second operand.
enum class Second { AsItIs, Conjugated };

template <Second second, class V>
VORN_INLINE Complex<V> productOf(Complex<V> a, Complex<V> b) {
    if constexpr (second == Second::Conjugated) {
        return {a.re * b.re + a.im * b.im, a.im * b.re - a.re * b.im};
    } else {
        return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
    }
}

template <class T, Second second>
struct FloatProduct {
    static T real(T a, T b) { return a * b; }
    // The last pairs go through a padded register as well: GCC 12 would make multiply-adds of a plain loop over pairs,
    // contraction or not.
    static void pairs(const T* a, const T* b, T* dst, std::ptrdiff_t count) {
        constexpr std::ptrdiff_t lanes = Wide<T>::lanes;
        std::ptrdiff_t i = 0;
        for (; i + lanes <= count; i += lanes) multiplyLanes(a + 2 * i, b + 2 * i, dst + 2 * i);
        if (i == count) return;
        const std::size_t rest = static_cast<std::size_t>(count - i) * 2 * sizeof(T);
        T x[2 * lanes] = {}, y[2 * lanes] = {};
        std::memcpy(x, a + 2 * i, rest);
        std::memcpy(y, b + 2 * i, rest);
        multiplyLanes(x, y, x);
        std::memcpy(dst + 2 * i, x, rest);
    }

private:
    static VORN_INLINE void multiplyLanes(const T* a, const T* b, T* dst) {
        Complex<Wide<T>> x, y;
        loadPairs(a, x.re, x.im);
        loadPairs(b, y.re, y.im);
        const Complex<Wide<T>> z = productOf<second>(x, y);
        storePairs(dst, z.re, z.im);
    }
};

// 16-bit products: exact sums in 64 bits, a plain right shift for a positive scale factor, saturation and then a left
// shift for a negative one, and saturation last.
class FixedProduct {
public:
    explicit FixedProduct(int scaleFactor)
        : right_(std::clamp(scaleFactor, 0, 63)), left_(-std::clamp(scaleFactor, -31, 0)) {}

    Vorn16s real(Vorn16s a, Vorn16s b) const { return scaled(std::int64_t{a} * b); }
    void pairs(const Vorn16s* a, const Vorn16s* b, Vorn16s* dst, std::ptrdiff_t count) const {
        for (std::ptrdiff_t i = 0; i < 2 * count; i += 2) {
            const std::int64_t aRe = a[i], aIm = a[i + 1], bRe = b[i], bIm = b[i + 1];
            dst[i] = scaled(aRe * bRe - aIm * bIm);
            dst[i + 1] = scaled(aRe * bIm + aIm * bRe);
        }
    }

private:
    Vorn16s scaled(std::int64_t x) const {
        return saturate<Vorn16s>(left_ == 0 ? x >> right_
                                            : std::int64_t{saturate<Vorn16s>(x)} * (std::int64_t{1} << left_));
    }
    int right_, left_;
};

// The upper half of a full spectrum from its lower one: dst[len - k] = conj(dst[k]).
template <class Pair>
void reflect(Pair* dst, std::ptrdiff_t len) {
    const std::ptrdiff_t count = (len - 1) / 2;
    if (count > 0) conjugateReversed(dst + 1, dst + len - count, count);
}

// Expands Pack or Perm; src may be the start of dst.
template <class Bins, class T, class Pair>
void expandPacked(const T* src, Pair* dst, std::ptrdiff_t len) {
    T* to = reinterpret_cast<T*>(dst);
    const T first = src[0], nyquist = src[len % 2 == 0 ? Bins::nyquist(len) : 0];
    std::memmove(to + 2, src + Bins::firstPair(len), static_cast<std::size_t>((len - 1) / 2) * sizeof(Pair));
    dst[0] = {first, T(0)};
    if (len % 2 == 0) dst[len / 2] = {nyquist, T(0)};
    reflect(dst, len);
}

// Expands CCS, whose first len / 2 + 1 values are kept as they stand.
template <class T, class Pair>
void expandCcs(const T* src, Pair* dst, std::ptrdiff_t len) {
    std::memmove(dst, src, static_cast<std::size_t>(len / 2 + 1) * sizeof(Pair));
    reflect(dst, len);
}

}  // namespace vorn::fft
