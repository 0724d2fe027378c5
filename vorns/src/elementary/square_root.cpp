// Square roots of vectors.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "frame/checks.h"
#include "frame/rounding.h"
#include "frame/scale.h"
#include "simd/block.h"
#include "simd/simd.h"
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
    forBlocks<V::lanes>(src, dst, len, [&](const Element* from, Element* to) {
        const V x = load<V>(from);
        negative = negative | (x < zero);
        store(to, sqrtOf(x));
    });
    return rootStatus(any(negative));
}

struct ComplexRoot {
    f64xN re, im;
};

// The principal root of z has the parts u = sqrt((|z| + |re|)/2) and im/(2u), in this order where re is not negative.
// An infinite imaginary part makes both infinite.
VORN_INLINE ComplexRoot principal(f64xN re, f64xN im, f64xN larger, f64xN smaller) {
    const f64xN zero = splat<f64xN>(0.0), infiniteSize = splat<f64xN>(std::numeric_limits<double>::infinity());
    smaller = select(larger == zero, im, smaller);
    smaller = select(absOf(im) == infiniteSize, im, smaller);
    const f64xN sign = im & splat<f64xN>(-0.0);
    const auto left = re < zero;
    return {select(left, absOf(smaller), larger), select(left, larger | sign, smaller)};
}

// In double, for parts whose squares neither overflow nor vanish and whose result is rounded to a narrower type.
VORN_INLINE ComplexRoot principalRoot(f64xN re, f64xN im) {
    const f64xN size = sqrtOf(re * re + im * im);
    const f64xN larger = sqrtOf(splat<f64xN>(0.5) * (size + absOf(re)));
    return principal(re, im, larger, im / (larger + larger));
}

// A number and what its rounding lost.
struct Exact {
    f64xN high, low;
};
// Halves of 26 bits (Veltkamp 1968), whose products are exact (Dekker 1971).
VORN_INLINE Exact halvesOf(f64xN a) {
    const f64xN spread = splat<f64xN>(0x1p27 + 1.0) * a;
    const f64xN high = spread - (spread - a);
    return {high, a - high};
}
VORN_INLINE Exact exactProduct(f64xN a, f64xN b) {
    const f64xN high = a * b;
    const Exact x = halvesOf(a), y = halvesOf(b);
    return {high, ((x.high * y.high - high) + (x.high * y.low + x.low * y.high)) + x.low * y.low};
}

// u and part/(2u) for |re| = x and |im| = y, within 0.501 units in the last place. What the roundings of the steps lose
// is carried along: |z| = size + sizeRest, u = larger + largerRest. restOf(number, rest) decides whether a rest is one.
struct RootParts {
    f64xN larger, smaller;
};
template <class RestOf>
VORN_INLINE RootParts rootParts(f64xN x, f64xN y, f64xN part, RestOf restOf) {
    const f64xN half = splat<f64xN>(0.5), most = maxOf(x, y), least = minOf(x, y);
    const Exact most2 = exactProduct(most, most), least2 = exactProduct(least, least);
    const f64xN square = most2.high + least2.high;
    const f64xN squareRest = ((most2.high - square) + least2.high) + (most2.low + least2.low);

    const f64xN size = sqrtOf(square);
    const Exact size2 = exactProduct(size, size);
    const f64xN sizeRest = restOf(size, (((square - size2.high) - size2.low) + squareRest) / (size + size));

    const f64xN sum = size + x, sumRest = (x - (sum - size)) + sizeRest;
    const f64xN larger = sqrtOf(half * sum), inverse = splat<f64xN>(1.0) / (larger + larger);
    const Exact larger2 = exactProduct(larger, larger);
    const f64xN largerRest = restOf(larger, (((half * sum - larger2.high) - larger2.low) + half * sumRest) * inverse);

    const f64xN smaller = part * inverse;
    const Exact product = exactProduct(smaller, larger);
    const f64xN missing = (part - (product.high + product.high)) - (product.low + product.low);
    const f64xN smallerRest = restOf(smaller, (missing - (smaller + smaller) * largerRest) * inverse);
    return {larger + largerRest, smaller + smallerRest};
}

// Powers of two that bring numbers of any size near 1.
VORN_INLINE f64xN towardsOne(f64xN size, double power) {
    return select(size < splat<f64xN>(0x1p-300), splat<f64xN>(power),
                  select(size > splat<f64xN>(0x1p300), splat<f64xN>(1.0 / power), splat<f64xN>(1.0)));
}

// Parts of any size. The imaginary one is divided with a power of its own, since it may be much smaller. Rests of
// zeros, infinities and not-a-numbers are none.
VORN_NOINLINE RootParts rootPartsOfAny(f64xN x, f64xN y) {
    const f64xN most = maxOf(x, y), one = splat<f64xN>(1.0);
    const f64xN scale = towardsOne(most, 0x1p600), scaleOfRoot = towardsOne(most, 0x1p300);
    const f64xN scaleOfPart = towardsOne(y, 0x1p600);
    const RootParts root = rootParts(x * scale, y * scale, y * scaleOfPart, [](f64xN number, f64xN rest) {
        return select(absOf(rest) <= absOf(number) * splat<f64xN>(0x1p-40), rest, splat<f64xN>(0.0));
    });
    return {root.larger * (one / scaleOfRoot), root.smaller * (scaleOfRoot / scaleOfPart)};
}

VORN_INLINE ComplexRoot preciseRoot(f64xN re, f64xN im) {
    const f64xN x = absOf(re), y = absOf(im), largest = splat<f64xN>(0x1p300);
    const bool ordinary = all((x <= largest) & (y <= largest) & (y >= splat<f64xN>(0x1p-300)));
    const RootParts root = ordinary ? rootParts(x, y, y, [](f64xN, f64xN rest) { return rest; }) : rootPartsOfAny(x, y);
    return principal(re, im, root.larger, root.smaller | (im & splat<f64xN>(-0.0)));
}

void complexRoots(const Vorn64f* src, Vorn64f* dst, std::ptrdiff_t len) {
    forBlocks<2 * f64xN::lanes>(src, dst, 2 * len, [](const Vorn64f* from, Vorn64f* to) {
        f64xN re, im;
        loadPairs(from, re, im);
        const ComplexRoot root = preciseRoot(re, im);
        storePairs(to, root.re, root.im);
    });
}

void complexRoots(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t len) {
    forBlocks<2 * f32xN::lanes>(src, dst, 2 * len, [](const Vorn32f* from, Vorn32f* to) {
        f32xN re, im;
        loadPairs(from, re, im);
        const ComplexRoot low = principalRoot(widenLow(re), widenLow(im));
        const ComplexRoot high = principalRoot(widenHigh(re), widenHigh(im));
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
        const ComplexRoot low = principalRoot(toDoubleLow(re), toDoubleLow(im));
        const ComplexRoot high = principalRoot(toDoubleHigh(re), toDoubleHigh(im));
        const i32xN rootRe = scaled(low.re, high.re), rootIm = scaled(low.im, high.im);
        store(to, shortsOf((rootRe & splat<i32xN>(0xFFFF)) | shiftLeft<16>(rootIm)));
    });
}

// The results of the 16-bit form are 0 from this factor on, like those of its 32-bit sister, although roots of 64-bit
// numbers would still round to more.
constexpr int zerosOf16 = 17;
// From this one on every root of a 64-bit number rounds to 0.
constexpr int zerosOf64 = 33;

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
    if (scaleFactor >= zerosOf64) return 0;
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
    if (std::is_same_v<Result, Vorn16s> && scaleFactor >= zerosOf16) scaleFactor = zerosOf64;
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

VornStatus vornsSqrt_32f_I(Vorn32f* srcDst, int len) { return vornsSqrt_32f(srcDst, srcDst, len); }

VornStatus vornsSqrt_64f(const Vorn64f* src, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return roots(src, dst, len);
}

VornStatus vornsSqrt_64f_I(Vorn64f* srcDst, int len) { return vornsSqrt_64f(srcDst, srcDst, len); }

VornStatus vornsSqrt_32fc(const Vorn32fc* src, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    complexRoots(&src->re, &dst->re, len);
    return vornStsNoErr;
}

VornStatus vornsSqrt_32fc_I(Vorn32fc* srcDst, int len) { return vornsSqrt_32fc(srcDst, srcDst, len); }

VornStatus vornsSqrt_64fc(const Vorn64fc* src, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    complexRoots(&src->re, &dst->re, len);
    return vornStsNoErr;
}

VornStatus vornsSqrt_64fc_I(Vorn64fc* srcDst, int len) { return vornsSqrt_64fc(srcDst, srcDst, len); }

VornStatus vornsSqrt_8u_Sfs(const Vorn8u* src, Vorn8u* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return smallIntegerRoots(src, dst, len, scaleFactor);
}

VornStatus vornsSqrt_8u_ISfs(Vorn8u* srcDst, int len, int scaleFactor) {
    return vornsSqrt_8u_Sfs(srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsSqrt_16u_Sfs(const Vorn16u* src, Vorn16u* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return smallIntegerRoots(src, dst, len, scaleFactor);
}

VornStatus vornsSqrt_16u_ISfs(Vorn16u* srcDst, int len, int scaleFactor) {
    return vornsSqrt_16u_Sfs(srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsSqrt_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return smallIntegerRoots(src, dst, len, scaleFactor);
}

VornStatus vornsSqrt_16s_ISfs(Vorn16s* srcDst, int len, int scaleFactor) {
    return vornsSqrt_16s_Sfs(srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsSqrt_16sc_Sfs(const Vorn16sc* src, Vorn16sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    complexIntegerRoots(src, dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSqrt_16sc_ISfs(Vorn16sc* srcDst, int len, int scaleFactor) {
    return vornsSqrt_16sc_Sfs(srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsSqrt_64s_Sfs(const Vorn64s* src, Vorn64s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return roots64(src, dst, len, scaleFactor);
}

VornStatus vornsSqrt_64s_ISfs(Vorn64s* srcDst, int len, int scaleFactor) {
    return vornsSqrt_64s_Sfs(srcDst, srcDst, len, scaleFactor);
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
