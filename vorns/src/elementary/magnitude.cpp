// Magnitudes of complex vectors: sqrt(re^2 + im^2).
#include <algorithm>
#include <cstddef>

#include "frame/checks.h"
#include "frame/scale.h"
#include "simd/block.h"
#include "simd/simd.h"
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
        Block<Element, 2 * V::lanes> last;
        fillBlock<2 * V::lanes>(src + 2 * i, 2 * n, last);
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
        return {loadPart<V>(re + i, n), loadPart<V>(im + i, n)};
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

// 16-bit numbers: the sum of squares is exact in 32 bits; 2^31, which wraps, is the only negative one. As many of them
// at once as a register holds of 16-bit numbers, from pairs or from parts apart.
struct SumsOfSquares {
    i32xN low, high;
};
VORN_INLINE SumsOfSquares sumsOfSquares(i16xN low, i16xN high) {
    return {mulAddPairs(low, low), mulAddPairs(high, high)};
}
struct Pairs16 {
    const Vorn16s* src;
    VORN_INLINE SumsOfSquares at(std::ptrdiff_t i) const {
        return sumsOfSquares(load<i16xN>(src + 2 * i), load<i16xN>(src + 2 * i + i16xN::lanes));
    }
    VORN_INLINE SumsOfSquares firstAt(std::ptrdiff_t i, std::ptrdiff_t n) const {
        return sumsOfSquares(loadUpTo<i16xN>(src + 2 * i, 2 * n),
                             loadUpTo<i16xN>(src + 2 * i + i16xN::lanes, 2 * n - i16xN::lanes));
    }
};
struct Apart16 {
    const Vorn16s *re, *im;
    VORN_INLINE SumsOfSquares at(std::ptrdiff_t i) const { return paired(load<i16xN>(re + i), load<i16xN>(im + i)); }
    VORN_INLINE SumsOfSquares firstAt(std::ptrdiff_t i, std::ptrdiff_t n) const {
        return paired(loadPart<i16xN>(re + i, n), loadPart<i16xN>(im + i, n));
    }

private:
    static VORN_INLINE SumsOfSquares paired(i16xN re, i16xN im) {
        const auto pairs = inOrder(zip(re, im));
        return sumsOfSquares(shortsOf(pairs.low), shortsOf(pairs.high));
    }
};

class RootInSingle {
public:
    VORN_INLINE void put(Vorn32f* dst, SumsOfSquares sums) const {
        store(dst, root(sums.low));
        store(dst + f32xN::lanes, root(sums.high));
    }
    VORN_INLINE void putFirst(Vorn32f* dst, SumsOfSquares sums, std::ptrdiff_t n) const {
        storeUpTo(dst, root(sums.low), n);
        storeUpTo(dst + f32xN::lanes, root(sums.high), n - f32xN::lanes);
    }

private:
    static VORN_INLINE f32xN root(i32xN sum) { return sqrtOf(absOf(toFloat(sum))); }
};
// The root times 2^-scaleFactor, rounded to nearest; exact, since in double no root comes near a tie that it does not
// hit.
class ScaledRootInDouble {
public:
    explicit ScaledRootInDouble(int scaleFactor)
        : scale_(splat<f64xN>(GetScale_32s64f(std::clamp(scaleFactor, -1000, 1000)))) {}
    VORN_INLINE i32xN operator()(i32xN sum) const {
        return roundToInt(scaled(toDoubleLow(sum)), scaled(toDoubleHigh(sum)));
    }

private:
    VORN_INLINE f64xN scaled(f64xN sum) const { return minOf(sqrtOf(absOf(sum)) * scale_, splat<f64xN>(32767.0)); }
    f64xN scale_;
};

// The same for scale factors from 0 to 14, in single. The root is within 0.011 of the truth, whatever the rounding
// mode, so that q, cut off after almost a half was added, is the result or one less; the square of the tie above q,
// ((2q + 1) 2^scaleFactor / 2)^2, decides. Sums of squares and ties stay below 2^32 and their differences below 2^31.
class ScaledRootInSingle {
public:
    static constexpr int largestFactor = 14;
    explicit ScaledRootInSingle(int scaleFactor)
        : scale_(splat<f32xN>(GetScale_32s32f(scaleFactor))),
          halfSquare_(splat<i32xN>((1 << 2 * scaleFactor) / 4)),
          odd_(splat<i32xN>(scaleFactor > 0 ? 1 : 0)),
          doubled_(2 * scaleFactor) {}
    VORN_INLINE i32xN operator()(i32xN sum) const {
        const i32xN q = truncToInt(sqrtOf(absOf(toFloat(sum))) * scale_ + splat<f32xN>(0.48f)), one = splat<i32xN>(1);
        const i32xN tie = shiftLeft(product(q, q + one), doubled_) + halfSquare_;
        const i32xN beyond = (sum - tie) + (q & odd_);  // to even on the tie
        return q + select(beyond > splat<i32xN>(0), one, splat<i32xN>(0));
    }

private:
    // Of numbers below 2^16, modulo 2^32.
    static VORN_INLINE i32xN product(i32xN a, i32xN b) {
        const i16xN x = shortsOf(a), y = shortsOf(b);
        return intsOf(mulLow(x, y)) | shiftLeft<16>(intsOf(mulHighUnsigned(x, y)));
    }
    f32xN scale_;
    i32xN halfSquare_, odd_;
    int doubled_;
};

// Saturated to 16 bits.
template <class ScaledRoot>
class RootTo16 {
public:
    explicit RootTo16(int scaleFactor) : root_(scaleFactor) {}
    VORN_INLINE void put(Vorn16s* dst, SumsOfSquares sums) const { store(dst, roots(sums)); }
    VORN_INLINE void putFirst(Vorn16s* dst, SumsOfSquares sums, std::ptrdiff_t n) const {
        storePart(dst, roots(sums), n);
    }

private:
    VORN_INLINE i16xN roots(SumsOfSquares sums) const { return narrowSat(root_(sums.low), root_(sums.high)); }
    ScaledRoot root_;
};

// Sources load what does not fill a register themselves: the loop over blocks knows only one vector of operands.
template <class Source, class Result, class Root>
void magnitudes16(Source src, Result* dst, std::ptrdiff_t len, Root root) {
    constexpr int lanes = i16xN::lanes;
    std::ptrdiff_t i = 0;
    for (; i + lanes <= len; i += lanes) root.put(dst + i, src.at(i));
    if (i < len) root.putFirst(dst + i, src.firstAt(i, len - i), len - i);
}

// The largest root, 46341, rounds to 1 at scale factor 16 and to 0 above, where nothing need be read.
constexpr int lastFactor16 = 16;

template <class Source>
void scaledMagnitudes16(Source src, Vorn16s* dst, std::ptrdiff_t len, int scaleFactor) {
    if (scaleFactor > lastFactor16) {
        std::fill_n(dst, len, Vorn16s{0});
    } else if (scaleFactor >= 0 && scaleFactor <= ScaledRootInSingle::largestFactor) {
        magnitudes16(src, dst, len, RootTo16<ScaledRootInSingle>(scaleFactor));
    } else {
        magnitudes16(src, dst, len, RootTo16<ScaledRootInDouble>(scaleFactor));
    }
}

template <class Source, class Result, class Magnitude>
void magnitudes(Source src, Result* dst, std::ptrdiff_t len, Magnitude magnitude) {
    constexpr int lanes = Source::V::lanes;
    std::ptrdiff_t i = 0;
    for (; i + lanes <= len; i += lanes) store(dst + i, magnitude(src.at(i)));
    if (i < len) storePart(dst + i, magnitude(src.firstAt(i, len - i)), len - i);
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
    magnitudes16(Pairs16{&src->re}, dst, len, RootInSingle());
    return vornStsNoErr;
}

VornStatus vornsMagnitude_16s32f(const Vorn16s* re, const Vorn16s* im, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(re, im, dst));
    VORN_CHECK(positive(len));
    magnitudes16(Apart16{re, im}, dst, len, RootInSingle());
    return vornStsNoErr;
}

VornStatus vornsMagnitude_16sc_Sfs(const Vorn16sc* src, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    scaledMagnitudes16(Pairs16{&src->re}, dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMagnitude_16s_Sfs(const Vorn16s* re, const Vorn16s* im, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(re, im, dst));
    VORN_CHECK(positive(len));
    scaledMagnitudes16(Apart16{re, im}, dst, len, scaleFactor);
    return vornStsNoErr;
}
