// Square roots of vectors.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "frame/checks.h"
#include "frame/rounding.h"
#include "frame/scale.h"
#include "simd.h"
#include "simd_block.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

__extension__ using uint128 = unsigned __int128;

VornStatus rootStatus(bool anyNegative) { return anyNegative ? vornStsSqrtNegArg : vornStsNoErr; }

// Correctly rounded; a negative number gives the processor's not-a-number.
template <class Element>
VornStatus roots(const Element* src, Element* dst, std::ptrdiff_t len) {
    using V = Wide<Element>;
    const V zero = splat<V>(0);
    auto negative = zero < zero;
    std::ptrdiff_t i = 0;
    for (; i + V::lanes <= len; i += V::lanes) {
        const V x = load<V>(src + i);
        negative = negative | (x < zero);
        store(dst + i, sqrtOf(x));
    }
    if (i < len) {
        const V x = loadPart<V>(src + i, len - i);
        negative = negative | (x < zero);
        storePart(dst + i, sqrtOf(x), len - i);
    }
    return rootStatus(any(negative));
}

struct ComplexLanes {
    f64xN re, im;
};

// The principal root, in double: u = sqrt((|z| + |re|)/2) and im/(2u) are its parts, in this order where re is not
// negative. An infinite imaginary part makes both infinite. For parts whose squares neither overflow nor vanish.
VORN_INLINE ComplexLanes principalRoot(f64xN re, f64xN im) {
    const f64xN zero = splat<f64xN>(0.0), infinity = splat<f64xN>(std::numeric_limits<double>::infinity());
    const f64xN size = sqrtOf(re * re + im * im);
    const f64xN larger = sqrtOf(splat<f64xN>(0.5) * (size + absOf(re)));
    f64xN smaller = im / (larger + larger);
    smaller = select(larger == zero, im, smaller);
    smaller = select(absOf(im) == infinity, im, smaller);
    const f64xN sign = im & splat<f64xN>(-0.0);
    const auto left = re < zero;
    return {select(left, absOf(smaller), larger), select(left, larger | sign, smaller)};
}

// Powers of two that bring the larger part near 1; the root takes half of the exponent back.
VORN_INLINE ComplexLanes scaledRoot(f64xN re, f64xN im) {
    const f64xN largest = maxOf(absOf(re), absOf(im));
    const auto tiny = largest<splat<f64xN>(0x1p-500), huge = largest> splat<f64xN>(0x1p500);
    const f64xN one = splat<f64xN>(1.0);
    const f64xN scale = select(tiny, splat<f64xN>(0x1p600), select(huge, splat<f64xN>(0x1p-600), one));
    const f64xN back = select(tiny, splat<f64xN>(0x1p-300), select(huge, splat<f64xN>(0x1p300), one));
    const ComplexLanes root = principalRoot(re * scale, im * scale);
    return {root.re * back, root.im * back};
}

void complexRoots(const Vorn64f* src, Vorn64f* dst, std::ptrdiff_t len) {
    forBlocks<2 * f64xN::lanes>(src, dst, 2 * len, [](const Vorn64f* from, Vorn64f* to) {
        f64xN re, im;
        loadPairs(from, re, im);
        const ComplexLanes root = scaledRoot(re, im);
        storePairs(to, root.re, root.im);
    });
}

void complexRoots(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t len) {
    forBlocks<2 * f32xN::lanes>(src, dst, 2 * len, [](const Vorn32f* from, Vorn32f* to) {
        f32xN re, im;
        loadPairs(from, re, im);
        const ComplexLanes low = principalRoot(widenLow(re), widenLow(im));
        const ComplexLanes high = principalRoot(widenHigh(re), widenHigh(im));
        storePairs(to, narrow(low.re, high.re), narrow(low.im, high.im));
    });
}

// Scales beyond these change no result, and the power of two stays finite.
double rootScale(int scaleFactor) { return GetScale_32s64f(std::clamp(scaleFactor, -1000, 1000)); }

VORN_INLINE i32xN loadInts(const Vorn32s* p) { return load<i32xN>(p); }
template <class Source>
VORN_INLINE i32xN loadInts(const Source* p) {
    return loadWidened<i32xN>(p);
}
VORN_INLINE void storePacked(Vorn8u* p, const i32xN (&root)[4]) {
    store(reinterpret_cast<std::int8_t*>(p), narrowSatU8(root[0], root[1], root[2], root[3]));
}
VORN_INLINE void storePacked(Vorn16s* p, const i32xN (&root)[2]) { store(p, narrowSat(root[0], root[1])); }
VORN_INLINE void storePacked(Vorn16u* p, const i32xN (&root)[2]) {
    store(reinterpret_cast<Vorn16s*>(p), narrowU16(root[0], root[1]));
}

// One register of results at a time; root() makes them of as many 32-bit integers as a register holds.
template <class Source, class Result, class Root>
VORN_INLINE VornStatus rootsOfIntegers(const Source* src, Result* dst, std::ptrdiff_t len, Root root) {
    constexpr int parts = 4 / static_cast<int>(sizeof(Result));
    i32xN signs = splat<i32xN>(0);
    forBlocks<parts * i32xN::lanes>(src, dst, len, [&](const Source* from, Result* to) {
        i32xN result[parts];
        for (int k = 0; k < parts; ++k) {
            const i32xN x = loadInts(from + k * i32xN::lanes);
            signs = signs | x;
            result[k] = root(x);
        }
        storePacked(to, result);
    });
    return rootStatus(any(splat<i32xN>(0) > signs));
}

// Integers of up to 32 bits, results of up to 16: in double the root is exact enough to round correctly at every scale,
// since such a result is never closer than 2^-34, relatively, to a tie that it does not hit.
template <class Source, class Result>
VornStatus rootsInDouble(const Source* src, Result* dst, std::ptrdiff_t len, int scaleFactor) {
    const f64xN scale = splat<f64xN>(rootScale(scaleFactor)), zero = splat<f64xN>(0.0);
    const f64xN largest = splat<f64xN>(std::numeric_limits<Result>::max());
    const auto rootOf = [&](f64xN x) { return minOf(sqrtOf(maxOf(x, zero)) * scale, largest); };
    return rootsOfIntegers(src, dst, len,
                           [&](i32xN x) { return roundToInt(rootOf(toDoubleLow(x)), rootOf(toDoubleHigh(x))); });
}

// Integers of up to 16 bits in single. Twice a tie is an odd number T and the square of twice the scaled root an
// integer other than T^2: they are at least 1/(2T) apart, more than half a unit of a single as long as T < 4096.
template <class Element>
VornStatus rootsInSingle(const Element* src, Element* dst, std::ptrdiff_t len, int scaleFactor) {
    const f32xN scale = splat<f32xN>(static_cast<float>(rootScale(std::clamp(scaleFactor, -16, 64))));
    const f32xN largest = splat<f32xN>(static_cast<float>(std::numeric_limits<Element>::max()));
    const f32xN zero = splat<f32xN>(0.0f);
    return rootsOfIntegers(
        src, dst, len, [&](i32xN x) { return roundToInt(minOf(sqrtOf(maxOf(toFloat(x), zero)) * scale, largest)); });
}

// Where a result below the largest can be as large as 2048, single cannot tell it from a tie.
template <class Element>
VornStatus smallIntegerRoots(const Element* src, Element* dst, std::ptrdiff_t len, int scaleFactor) {
    if constexpr (sizeof(Element) > 1) {
        if (scaleFactor < -3) return rootsInDouble(src, dst, len, scaleFactor);
    }
    return rootsInSingle(src, dst, len, scaleFactor);
}

void complexIntegerRoots(const Vorn16sc* src, Vorn16sc* dst, std::ptrdiff_t len, int scaleFactor) {
    const f64xN scale = splat<f64xN>(rootScale(scaleFactor));
    const f64xN lowest = splat<f64xN>(-32768.0), highest = splat<f64xN>(32767.0);
    const auto scaled = [&](f64xN low, f64xN high) {
        return roundToInt(minOf(maxOf(low * scale, lowest), highest), minOf(maxOf(high * scale, lowest), highest));
    };
    const auto* numbers = reinterpret_cast<const Vorn16s*>(src);
    forBlocks<i16xN::lanes>(numbers, reinterpret_cast<Vorn16s*>(dst), 2 * len, [&](const Vorn16s* from, Vorn16s* to) {
        const i32xN both = intsOf(load<i16xN>(from));
        const i32xN re = shiftRight<16>(shiftLeft<16>(both)), im = shiftRight<16>(both);
        const ComplexLanes low = principalRoot(toDoubleLow(re), toDoubleLow(im));
        const ComplexLanes high = principalRoot(toDoubleHigh(re), toDoubleHigh(im));
        const i32xN rootRe = scaled(low.re, high.re), rootIm = scaled(low.im, high.im);
        store(to, shortsOf((rootRe & splat<i32xN>(0xFFFF)) | shiftLeft<16>(rootIm)));
    });
}

// The integer part of the root of x, below 2^126: an estimate in double, one step of Newton, and a correction.
std::uint64_t integerRoot(uint128 x) {
    if (x == 0) return 0;
    const double estimate = std::sqrt(static_cast<double>(static_cast<std::uint64_t>(x >> 64)) * 0x1p64 +
                                      static_cast<double>(static_cast<std::uint64_t>(x)));
    auto root = std::max<std::uint64_t>(1, static_cast<std::uint64_t>(estimate));
    if (x >> 50 != 0) root = static_cast<std::uint64_t>((root + x / root) >> 1);
    while (static_cast<uint128>(root) * root > x) --root;
    while (static_cast<uint128>(root + 1) * (root + 1) <= x) ++root;
    return root;
}

// sqrt(x) 2^-scaleFactor rounded to nearest, ties to even, saturated; in integers, since a double cannot tell a tie.
std::int64_t scaledRootOf64(std::int64_t number, int scaleFactor) {
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
    if (number <= 0) return 0;
    const auto x = static_cast<std::uint64_t>(number);
    if (scaleFactor > 32) return 0;
    if (scaleFactor <= 0) {
        const int shift = -2 * std::max(scaleFactor, -63);
        if (std::bit_width(x) + shift > 126) return largest;
        const uint128 shifted = static_cast<uint128>(x) << shift;
        const std::uint64_t root = integerRoot(shifted);
        const bool up = shifted - static_cast<uint128>(root) * root > root;
        return static_cast<std::int64_t>(std::min<std::uint64_t>(root + up, static_cast<std::uint64_t>(largest)));
    }
    const std::uint64_t root = integerRoot(x) >> scaleFactor;
    const uint128 tie = static_cast<uint128>(2 * root + 1) << (scaleFactor - 1);
    const uint128 square = tie * tie;
    const bool up = x > square || (x == square && (root & 1) != 0);
    return static_cast<std::int64_t>(root + up);
}

// Rounded once: the upper halves stand in the low bits of 2^84 + 2^63 and the lower ones in those of 2^52.
VORN_INLINE f64xN toDouble(i64xN x) {
    const i64xN upper = shiftRightLogical<32>(x) ^ splat<i64xN>(0x4530000080000000);
    const i64xN lower = (x & splat<i64xN>(0xFFFFFFFF)) | splat<i64xN>(0x4330000000000000);
    return (floatOf(upper) - splat<f64xN>(0x1p84 + 0x1p63 + 0x1p52)) + floatOf(lower);
}

VORN_INLINE void storeIntegers(Vorn64s* p, i64xN x) { store(p, x); }
VORN_INLINE void storeIntegers(Vorn16s* p, i64xN x) {
    Vorn64s lane[i64xN::lanes];
    store(lane, x);
    for (int k = 0; k < i64xN::lanes; ++k) p[k] = static_cast<Vorn16s>(lane[k]);
}

// Roots of 64-bit integers through double, whose relative error is below 2^-52. That decides wherever the root and the
// result are below 2^24, for then a tie is either hit exactly or at least 2^-51 away, and wherever no tie is within
// 2^-50. What is left goes through integers. The rounding mode is to nearest.
template <class Result>
VORN_NOINLINE bool rootsThroughDouble(const Vorn64s* src, Result* dst, std::ptrdiff_t len, int scaleFactor) {
    constexpr int lanes = i64xN::lanes;
    constexpr Result largest = std::numeric_limits<Result>::max();
    const f64xN zero = splat<f64xN>(0.0), shifter = splat<f64xN>(0x1p52), small = splat<f64xN>(0x1p24);
    const f64xN limit = splat<f64xN>(std::min(static_cast<double>(largest), 0x1p51));
    const f64xN scale = splat<f64xN>(rootScale(scaleFactor));
    auto negative = zero < zero;
    const auto rootsOf = [&](const Vorn64s* from, Result* to) {
        const f64xN number = toDouble(load<i64xN>(from));
        negative = negative | (number < zero);
        const f64xN root = sqrtOf(maxOf(number, zero)), scaled = minOf(root * scale, limit);
        const f64xN shifted = scaled + shifter;
        const f64xN fromTie = splat<f64xN>(0.5) - absOf(scaled - (shifted - shifter));
        if (all((maxOf(root, scaled) < small) | (fromTie > scaled * splat<f64xN>(0x1p-50)))) {
            storeIntegers(to, bitsOf(shifted) ^ bitsOf(shifter));
        } else {
            for (int k = 0; k < lanes; ++k) {
                to[k] = static_cast<Result>(std::min<std::int64_t>(scaledRootOf64(from[k], scaleFactor), largest));
            }
        }
    };
    forBlocks<lanes>(src, dst, len, rootsOf);
    return any(negative);
}

template <class Result>
VornStatus roots64(const Vorn64s* src, Result* dst, std::ptrdiff_t len, int scaleFactor) {
    const RoundingGuard guard(Rounding::Nearest);
    return rootStatus(rootsThroughDouble(src, dst, len, scaleFactor));
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsSqrt_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return roots(src, dst, len);
}

VornStatus vornsSqrt_32f_I(Vorn32f* srcDst, int len) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    return roots(srcDst, srcDst, len);
}

VornStatus vornsSqrt_64f(const Vorn64f* src, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return roots(src, dst, len);
}

VornStatus vornsSqrt_64f_I(Vorn64f* srcDst, int len) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    return roots(srcDst, srcDst, len);
}

VornStatus vornsSqrt_32fc(const Vorn32fc* src, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    complexRoots(&src->re, &dst->re, len);
    return vornStsNoErr;
}

VornStatus vornsSqrt_32fc_I(Vorn32fc* srcDst, int len) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    complexRoots(&srcDst->re, &srcDst->re, len);
    return vornStsNoErr;
}

VornStatus vornsSqrt_64fc(const Vorn64fc* src, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    complexRoots(&src->re, &dst->re, len);
    return vornStsNoErr;
}

VornStatus vornsSqrt_64fc_I(Vorn64fc* srcDst, int len) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    complexRoots(&srcDst->re, &srcDst->re, len);
    return vornStsNoErr;
}

VornStatus vornsSqrt_8u_Sfs(const Vorn8u* src, Vorn8u* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return smallIntegerRoots(src, dst, len, scaleFactor);
}

VornStatus vornsSqrt_8u_ISfs(Vorn8u* srcDst, int len, int scaleFactor) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    return smallIntegerRoots(srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsSqrt_16u_Sfs(const Vorn16u* src, Vorn16u* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return smallIntegerRoots(src, dst, len, scaleFactor);
}

VornStatus vornsSqrt_16u_ISfs(Vorn16u* srcDst, int len, int scaleFactor) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    return smallIntegerRoots(srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsSqrt_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return smallIntegerRoots(src, dst, len, scaleFactor);
}

VornStatus vornsSqrt_16s_ISfs(Vorn16s* srcDst, int len, int scaleFactor) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    return smallIntegerRoots(srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsSqrt_16sc_Sfs(const Vorn16sc* src, Vorn16sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    complexIntegerRoots(src, dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSqrt_16sc_ISfs(Vorn16sc* srcDst, int len, int scaleFactor) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    complexIntegerRoots(srcDst, srcDst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSqrt_64s_Sfs(const Vorn64s* src, Vorn64s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return roots64(src, dst, len, scaleFactor);
}

VornStatus vornsSqrt_64s_ISfs(Vorn64s* srcDst, int len, int scaleFactor) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(len));
    return roots64(srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsSqrt_32s16s_Sfs(const Vorn32s* src, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return rootsInDouble(src, dst, len, scaleFactor);
}

VornStatus vornsSqrt_64s16s_Sfs(const Vorn64s* src, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return roots64(src, dst, len, scaleFactor);
}
