// The natural logarithm of wide lanes, in single and in double precision, and the replacement values around it.
#pragma once

#include <bit>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "frame/rounding.h"
#include "frame/wrap.h"
#include "simd/simd.h"

namespace vorn {

// What a logarithm kernel tells its caller: the kind of the first bad element.
enum LnCode : int { lnGood = 0, lnZero = 2, lnNegative = 4, lnNotFinite = 8 };

// ln(1 + f) = f - (f^2/2 - s (f^2/2 + R(z))) with s = f/(2 + f), z = s^2, R(z) = ln((1 + s)/(1 - s))/s - 2. The
// coefficients of R are fitted for 0 <= z <= 0.04 (Remez 1934; one after the other rounded to the type and the rest
// fitted again); tools/coefficients.py holds their bounds against the minimax polynomial. ln 2 stands in two parts; the
// first has so few bits that its products with an exponent are exact.
template <class Element>
struct LnFormat;

// Relative error of the series below 2^-28.3.
template <>
struct LnFormat<float> {
    using Integer = std::int32_t;
    static constexpr int mantissaBits = 23;
    static constexpr Integer twoThirds = 0x3F2AAAAB;
    static constexpr float ln2High = 0x1.62e4p-1f, ln2Low = 0x1.7f7d1cp-20f;
    static constexpr float negativeResult = std::bit_cast<float>(0xFFC00000);
    template <class V>
    static VORN_INLINE V series(V z) {
        return z * (splat<V>(0x1.5555b4p-1f) + z * (splat<V>(0x1.992a9ap-2f) + z * splat<V>(0x1.36ee8ep-2f)));
    }
};

// Relative error of the series below 2^-60.
template <>
struct LnFormat<double> {
    using Integer = std::int64_t;
    static constexpr int mantissaBits = 52;
    static constexpr Integer twoThirds = 0x3FE5555555555555;
    static constexpr double ln2High = 0x1.62e42fefa38p-1, ln2Low = 0x1.ef35793c7673p-45;
    static constexpr double negativeResult = std::bit_cast<double>(0xFFF8000000000000);
    template <class V>
    static VORN_INLINE V series(V z) {
        constexpr double coefficients[] = {0x1.0daa14f2117bdp-3, 0x1.3b37b5076727cp-3, 0x1.745c3bffb645bp-3,
                                           0x1.c71c74cb69d3ap-3, 0x1.24924921aa0a6p-2, 0x1.999999999c419p-2,
                                           0x1.555555555554fp-1};
        V sum = splat<V>(0x1.1c682fa0eead4p-3);
        for (double coefficient : coefficients) sum = splat<V>(coefficient) + z * sum;
        return z * sum;
    }
};

// x = 2^exponent mantissa, mantissa in [2/3, 4/3).
template <class V>
struct Separated {
    V mantissa, exponent;
};

// The exponent field of a difference of two numbers' bits, as a number.
VORN_INLINE f32xN exponentOf(i32xN difference) { return toFloat(shiftRight<23>(difference)); }
VORN_INLINE f64xN exponentOf(i64xN difference) {
    const i64xN biased = shiftRightLogical<52>(difference + splat<i64xN>(std::int64_t{1024} << 52));
    return floatOf(biased | splat<i64xN>(std::bit_cast<std::int64_t>(0x1p52))) - splat<f64xN>(0x1p52 + 1024.0);
}

template <class V>
VORN_INLINE Separated<V> separate(V x) {
    using Format = LnFormat<typename V::Element>;
    using I = Wide<typename Format::Integer>;
    constexpr auto exponentMask =
        static_cast<typename Format::Integer>(~typename Format::Integer{0} << Format::mantissaBits);
    const I bits = bitsOf(x);
    const I fromTwoThirds = bits - splat<I>(Format::twoThirds);
    return {floatOf(bits - (fromTwoThirds & splat<I>(exponentMask))), exponentOf(fromTwoThirds)};
}

// Largest error in single, over all arguments: 0.84 units in the last place; in double, where it was
// looked for: 0.76.
template <class V>
VORN_INLINE V lnOfSeparated(Separated<V> x) {
    using Format = LnFormat<typename V::Element>;
    const V one = splat<V>(1);
    const V f = x.mantissa - one;
    const V s = f / (x.mantissa + one);
    const V halfSquare = splat<V>(typename V::Element(0.5)) * (f * f);
    const V rest = s * (halfSquare + Format::series(s * s)) + x.exponent * splat<V>(Format::ln2Low);
    const V high = x.exponent * splat<V>(Format::ln2High);
    const V sum = high + f;
    const V sumRest = (high - sum) + f;
    return sum + (sumRest + (rest - halfSquare));
}

// Every lane is a normal positive number. In single one comparison of the bits tells.
template <class V>
VORN_INLINE auto isNormalPositive(V x) {
    using L = std::numeric_limits<typename V::Element>;
    if constexpr (std::is_same_v<typename V::Element, float>) {
        using I = decltype(bitsOf(x));
        constexpr std::int32_t lowest = 0x00800000, infinite = 0x7F800000,
                               least = std::numeric_limits<std::int32_t>::min();
        return splat<I>(wrapAdd(infinite - lowest, least)) > bitsOf(x) + splat<I>(wrapSub(least, lowest));
    } else {
        return (x >= splat<V>(L::min())) & (x <= splat<V>(L::max()));
    }
}

// ln of any lanes, and the code of the first bad one unless an earlier one has set it.
template <class V>
VORN_NOINLINE V lnOfAny(V x, LnCode& code) {
    using Element = typename V::Element;
    using L = std::numeric_limits<Element>;
    constexpr int toNormal = L::digits;
    const V zero = splat<V>(0);
    const auto denormal = x < splat<V>(L::min());
    Separated<V> parts = separate(select(denormal, x * splat<V>(Element(std::int64_t{1} << toNormal)), x));
    parts.exponent = parts.exponent - select(denormal, splat<V>(toNormal), zero);

    const auto finite = absOf(x) <= splat<V>(L::max());
    const auto isZero = x == zero;
    const auto isNegative = (x < zero) & finite;
    V result = lnOfSeparated(parts);
    result = select(isZero, splat<V>(-L::infinity()), result);
    result = select(isNegative, splat<V>(LnFormat<Element>::negativeResult), result);
    result = select(finite, result, x);
    if (const unsigned bad = laneBits(isZero | isNegative); code == lnGood && bad != 0) {
        code = ((laneBits(isZero) >> std::countr_zero(bad)) & 1u) != 0 ? lnZero : lnNegative;
    }
    return result;
}

}  // namespace vorn
