// Products of packed spectra and their expansion into full complex ones.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "fft/core/butterflies.h"
#include "frame/wrap.h"
#include "move/move_kernels.h"
#include "simd/pairs.h"
#include "simd/rounded_shift.h"

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

template <class V, class T>
VORN_INLINE Two<V> loadTwo(const T* p) {
    return {inRegister(load<V>(p)), inRegister(load<V>(p + V::lanes))};
}
template <class V, class T>
VORN_INLINE void storeTwo(T* p, Two<V> z) {
    store(p, z.low);
    store(p + V::lanes, z.high);
}

// The products of pairs that fill `values` elements, two registers at a time. The last two registers end at the last
// pair and overlap those before; their operands are read before anything is written over them, so dst may be a or b.
// Few pairs go through the narrow registers and at the end through padded ones: GCC 12 would make multiply-adds of a
// plain loop over pairs, contraction or not.
template <class V, class T, class Rule>
void multiplyRegisters(const T* a, const T* b, T* dst, std::ptrdiff_t values, const Rule& rule) {
    using Narrow = typename Rule::Narrow;
    constexpr std::ptrdiff_t step = 2 * V::lanes;
    if (values >= step) {
        const std::ptrdiff_t end = values - step;
        const Two<V> last = rule.product(loadTwo<V>(a + end), loadTwo<V>(b + end));
        for (std::ptrdiff_t i = 0; i < end; i += step) {
            storeTwo(dst + i, rule.product(loadTwo<V>(a + i), loadTwo<V>(b + i)));
        }
        storeTwo(dst + end, last);
    } else if constexpr (!std::is_same_v<V, Narrow>) {
        multiplyRegisters<Narrow>(a, b, dst, values, rule);
    } else {
        const std::size_t bytes = static_cast<std::size_t>(values) * sizeof(T);
        T x[step] = {}, y[step] = {};
        std::memcpy(x, a, bytes);
        std::memcpy(y, b, bytes);
        storeTwo(x, rule.product(loadTwo<V>(x), loadTwo<V>(y)));
        std::memcpy(dst, x, bytes);
    }
}

template <class T, class Rule>
void multiplyPairs(const T* a, const T* b, T* dst, std::ptrdiff_t count, const Rule& rule) {
    multiplyRegisters<typename Rule::Widest>(a, b, dst, 2 * count, rule);
}

// dst[k] = rule(a[k], b[k]) for each real bin and each pair. A spectrum of odd length has no bin at N / 2.
template <class Bins, class T, class Rule>
void multiplyPacked(const T* a, const T* b, T* dst, std::ptrdiff_t len, Rule rule) {
    dst[0] = rule.real(a[0], b[0]);
    const std::ptrdiff_t nyquist = Bins::nyquist(len), pairs = (len - 1) / 2;
    if (len % 2 == 0) dst[nyquist] = rule.real(a[nyquist], b[nyquist]);
    const std::ptrdiff_t first = Bins::firstPair(len);
    multiplyPairs(a + first, b + first, dst + first, pairs, rule);
}

// Float products. The conjugate, where there is one, falls on the second operand.
enum class Second { AsItIs, Conjugated };

template <class T, Second second>
struct FloatProduct {
    using Widest = std::conditional_t<sizeof(T) == 4, f32Pairs, f64Pairs>;
    using Narrow = std::conditional_t<sizeof(T) == 4, f32x4, f64x2>;

    static T real(T a, T b) { return a * b; }

    // (a.re b.re - a.im b.im, a.re b.im + a.im b.re), or conjugated (a.re b.re + a.im b.im, a.im b.re - a.re b.im): the
    // change of sign is that of a rounded product, and exact.
    template <class V>
    static VORN_INLINE Two<V> product(Two<V> a, Two<V> b) {
        return {product(a.low, b.low), product(a.high, b.high)};
    }

private:
    template <class V>
    static VORN_INLINE V product(V x, V y) {
        if constexpr (second == Second::Conjugated) {
            return addSub(dupEven(y) * x, -(dupOdd(y) * swapPairs(x)));
        } else {
            return addSub(dupEven(x) * y, dupOdd(x) * swapPairs(y));
        }
    }
};

// 16-bit products: exact sums, a plain right shift for a positive scale factor, saturation and then a left shift for a
// negative one, and saturation last.
class FixedProduct {
public:
    using Widest = i16xN;
    using Narrow = i16x8;

    explicit FixedProduct(int scaleFactor)
        : right_(std::clamp(scaleFactor, 0, 63)), left_(-std::clamp(scaleFactor, -15, 0)) {}

    Vorn16s real(Vorn16s a, Vorn16s b) const { return scaled(std::int64_t{a} * b); }

    template <class V>
    VORN_INLINE Two<V> product(Two<V> a, Two<V> b) const {
        const auto low = shifted(a.low, b.low), high = shifted(a.high, b.high);
        const Two<V> z = narrowSatPairs({low.re, high.re}, {low.im, high.im});
        return left_ == 0 ? z : Two<V>{shiftLeftSat(z.low, left_), shiftLeftSat(z.high, left_)};
    }

private:
    Vorn16s scaled(std::int64_t x) const {
        return saturate<Vorn16s>(left_ == 0 ? x >> right_
                                            : std::int64_t{saturate<Vorn16s>(x)} * (std::int64_t{1} << left_));
    }

    // Both sums in 32 bits. a.re b.re - a.im b.im = (a.re b.re + a.im ~b.im) + a.im fits, whatever wraps on the way.
    // a.re b.im + a.im b.re fits but for 2^31, of four times -32768, which becomes 2^31 - 1 before it is shifted;
    // nothing else gives the -2^31 that it wraps to.
    template <class V>
    VORN_INLINE auto shifted(V a, V b) const {
        using Int = decltype(intsOf(a));
        const V notIm = shortsOf(splat<Int>(static_cast<std::int32_t>(0xFFFF0000)));
        const Int re = mulAddPairs(a, b ^ notIm) + shiftRight<16>(intsOf(a));
        const Int im = mulAddPairs(a, swapPairs(b));
        const Int largest = splat<Int>(INT32_MAX);
        return Complex<Int>{shiftRight(re, right_),
                            shiftRight(select(im == splat<Int>(INT32_MIN), largest, im), right_)};
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
