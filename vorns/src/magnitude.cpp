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
