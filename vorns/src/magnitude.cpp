// Magnitudes of complex vectors: sqrt(re^2 + im^2).
#include <algorithm>
#include <cstddef>

#include "frame/checks.h"
#include "frame/scale.h"
#include "simd.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

template <class V>
struct Parts {
    V re, im;
};

// Complex numbers as pairs.
template <class Element>
struct Pairs {
    using V = Wide<Element>;
    const Element* src;

    VORN_INLINE Parts<V> at(std::ptrdiff_t i) const { return separate(src + 2 * i); }
    VORN_INLINE Parts<V> firstAt(std::ptrdiff_t i, std::ptrdiff_t n) const {
        Element last[2 * V::lanes] = {};
        std::copy_n(src + 2 * i, 2 * n, last);
        return separate(last);
    }

private:
    static VORN_INLINE Parts<V> separate(const Element* pairs) {
        Parts<V> parts;
        loadPairs(pairs, parts.re, parts.im);
        return parts;
    }
};

// Real and imaginary parts in two vectors.
template <class Element>
struct Apart {
    using V = Wide<Element>;
    const Element *re, *im;

    VORN_INLINE Parts<V> at(std::ptrdiff_t i) const { return {load<V>(re + i), load<V>(im + i)}; }
    VORN_INLINE Parts<V> firstAt(std::ptrdiff_t i, std::ptrdiff_t n) const {
        return {loadFirst<V>(re + i, n), loadFirst<V>(im + i, n)};
    }
};

// Squares, sum and root in the type of the parts. A zero sum gives 0.
struct FloatMagnitude {
    template <class V>
    VORN_INLINE V operator()(Parts<V> z) const {
        return sqrtOf(z.re * z.re + z.im * z.im);
    }
};

// Through double: the root times 2^-scaleFactor, rounded to nearest and saturated.
class ScaledMagnitude {
public:
    explicit ScaledMagnitude(int scaleFactor) : scale_(splat<f64xN>(GetScale_32s64f(scaleFactor))) {}
    VORN_INLINE i32xN operator()(Parts<i32xN> z) const {
        return roundToInt(scaled(toDoubleLow(z.re), toDoubleLow(z.im)), scaled(toDoubleHigh(z.re), toDoubleHigh(z.im)));
    }

private:
    // The lower bound takes up the not-a-number that zero times an infinite scale gives.
    VORN_INLINE f64xN scaled(f64xN re, f64xN im) const {
        const f64xN magnitude = sqrtOf(re * re + im * im) * scale_;
        return minOf(maxOf(magnitude, splat<f64xN>(0.0)), splat<f64xN>(2147483647.0));
    }
    f64xN scale_;
};

// 16-bit numbers: the sum of squares is exact in 32 bits; 2^31, which wraps, is the only negative one.
VORN_INLINE i32xN sumOfSquares(const Vorn16s* pairs) {
    const i16xN z = load<i16xN>(pairs);
    return mulAddPairs(z, z);
}
struct RootInSingle {
    VORN_INLINE f32xN operator()(i32xN sum) const { return sqrtOf(absOf(toFloat(sum))); }
};
// Rounded to nearest and saturated; exact, since in double no root comes near a tie that it does not hit.
class ScaledRoot {
public:
    explicit ScaledRoot(int scaleFactor)
        : scale_(splat<f64xN>(GetScale_32s64f(std::clamp(scaleFactor, -1000, 1000)))) {}
    VORN_INLINE i32xN operator()(i32xN sum) const {
        return roundToInt(scaled(toDoubleLow(sum)), scaled(toDoubleHigh(sum)));
    }

private:
    VORN_INLINE f64xN scaled(f64xN sum) const { return minOf(sqrtOf(absOf(sum)) * scale_, splat<f64xN>(32767.0)); }
    f64xN scale_;
};

// Blocks of pairs on the stack take up the last elements and both layouts: fetch(i, n, pairs) brings n numbers from i.
template <class Fetch, class Result, class Root>
void magnitudes16(Fetch fetch, Result* dst, std::ptrdiff_t len, Root root) {
    constexpr std::ptrdiff_t block = 128;
    Vorn16s pairs[2 * block] = {};
    for (std::ptrdiff_t i = 0; i < len; i += block) {
        const std::ptrdiff_t n = std::min(block, len - i);
        fetch(i, n, pairs);
        typename decltype(root(splat<i32xN>(0)))::Element result[block];
        for (std::ptrdiff_t j = 0; j < n; j += i32xN::lanes) store(result + j, root(sumOfSquares(pairs + 2 * j)));
        for (std::ptrdiff_t j = 0; j < n; ++j) dst[i + j] = static_cast<Result>(result[j]);
    }
}

auto pairsOf(const Vorn16sc* src) {
    return [src](std::ptrdiff_t i, std::ptrdiff_t n, Vorn16s* pairs) { std::copy_n(&src[i].re, 2 * n, pairs); };
}
auto pairsOf(const Vorn16s* re, const Vorn16s* im) {
    return [re, im](std::ptrdiff_t i, std::ptrdiff_t n, Vorn16s* pairs) {
        for (std::ptrdiff_t j = 0; j < n; ++j) {
            pairs[2 * j] = re[i + j];
            pairs[2 * j + 1] = im[i + j];
        }
    };
}

template <class Source, class Result, class Magnitude>
void magnitudes(Source src, Result* dst, std::ptrdiff_t len, Magnitude magnitude) {
    constexpr int lanes = Source::V::lanes;
    std::ptrdiff_t i = 0;
    for (; i + lanes <= len; i += lanes) store(dst + i, magnitude(src.at(i)));
    if (i < len) storeFirst(dst + i, magnitude(src.firstAt(i, len - i)), len - i);
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsMagnitude_32fc(const Vorn32fc* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    magnitudes(Pairs<Vorn32f>{&src->re}, dst, len, FloatMagnitude());
    return vornStsNoErr;
}

VornStatus vornsMagnitude_32sc_Sfs(const Vorn32sc* src, Vorn32s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    magnitudes(Pairs<Vorn32s>{&src->re}, dst, len, ScaledMagnitude(scaleFactor));
    return vornStsNoErr;
}

VornStatus vornsMagnitude_64fc(const Vorn64fc* src, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    magnitudes(Pairs<Vorn64f>{&src->re}, dst, len, FloatMagnitude());
    return vornStsNoErr;
}

VornStatus vornsMagnitude_32f(const Vorn32f* re, const Vorn32f* im, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(re, im, dst));
    VORN_CHECK(positive(len));
    magnitudes(Apart<Vorn32f>{re, im}, dst, len, FloatMagnitude());
    return vornStsNoErr;
}

VornStatus vornsMagnitude_64f(const Vorn64f* re, const Vorn64f* im, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(re, im, dst));
    VORN_CHECK(positive(len));
    magnitudes(Apart<Vorn64f>{re, im}, dst, len, FloatMagnitude());
    return vornStsNoErr;
}

VornStatus vornsMagnitude_16sc32f(const Vorn16sc* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    magnitudes16(pairsOf(src), dst, len, RootInSingle());
    return vornStsNoErr;
}

VornStatus vornsMagnitude_16s32f(const Vorn16s* re, const Vorn16s* im, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(re, im, dst));
    VORN_CHECK(positive(len));
    magnitudes16(pairsOf(re, im), dst, len, RootInSingle());
    return vornStsNoErr;
}

VornStatus vornsMagnitude_16sc_Sfs(const Vorn16sc* src, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    magnitudes16(pairsOf(src), dst, len, ScaledRoot(scaleFactor));
    return vornStsNoErr;
}

VornStatus vornsMagnitude_16s_Sfs(const Vorn16s* re, const Vorn16s* im, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(re, im, dst));
    VORN_CHECK(positive(len));
    magnitudes16(pairsOf(re, im), dst, len, ScaledRoot(scaleFactor));
    return vornStsNoErr;
}
