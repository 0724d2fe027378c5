// The steps of exp64 and log64, lane by lane: the scalar functions are their instance of one lane, a kernel that knows
// the range of its arguments calls the wide ones. Every lane has the bits of the scalar function.
#pragma once

#include <bit>
#include <cstdint>

#include "elementary/tables.h"
#include "simd/gather.h"

namespace vorn {

// ---- One lane, with the operations that the steps need.

struct f64x1 {
    static constexpr int lanes = 1;
    using Element = double;
    double v;
};
struct i64x1 {
    static constexpr int lanes = 1;
    using Element = std::int64_t;
    std::uint64_t v;  // wraps
};

template <>
VORN_INLINE f64x1 splat<f64x1>(double x) {
    return {x};
}
template <>
VORN_INLINE i64x1 splat<i64x1>(std::int64_t x) {
    return {static_cast<std::uint64_t>(x)};
}
VORN_INLINE f64x1 operator+(f64x1 a, f64x1 b) { return {a.v + b.v}; }
VORN_INLINE f64x1 operator-(f64x1 a, f64x1 b) { return {a.v - b.v}; }
VORN_INLINE f64x1 operator*(f64x1 a, f64x1 b) { return {a.v * b.v}; }
VORN_INLINE i64x1 operator+(i64x1 a, i64x1 b) { return {a.v + b.v}; }
VORN_INLINE i64x1 operator&(i64x1 a, i64x1 b) { return {a.v & b.v}; }
VORN_INLINE i64x1 operator|(i64x1 a, i64x1 b) { return {a.v | b.v}; }
template <int count>
VORN_INLINE i64x1 shiftLeft(i64x1 a) {
    return {a.v << count};
}
template <int count>
VORN_INLINE i64x1 shiftRightLogical(i64x1 a) {
    return {a.v >> count};
}
VORN_INLINE i64x1 bitsOf(f64x1 a) { return {std::bit_cast<std::uint64_t>(a.v)}; }
VORN_INLINE f64x1 floatOf(i64x1 bits) { return {std::bit_cast<double>(bits.v)}; }
template <>
VORN_INLINE f64x1 gather<f64x1>(const double* table, i64x1 index) {
    return {table[index.v]};
}

// ---- exp

// x = k ln2/128 + r with |r| <= ln2/256, exp x = 2^(k/128) (1 + r + r^2/2 + ... + r^6/720); the omitted rest is below
// 2^-71. |x| < 708.
template <class V>
struct ExpSteps {
    using Bits = decltype(bitsOf(V{}));
    Bits shifted;             // k stands in the low bits
    V power, rest, mantissa;  // 2^(k mod 128 / 128) + rest = mantissa, and that is exp x / 2^(k div 128)

    VORN_INLINE explicit ExpSteps(V x) {
        constexpr double integerShift = 0x1.8p52;  // adding it rounds to an integer
        constexpr double stepsPerUnit = 0x1.71547652b82fep7;
        constexpr double stepHigh = 0x1.62e42fefcp-8;  // a multiple of 2^-42: times k it is exact
        constexpr double stepLow = -0x1.c610ca86c3899p-44;
        const auto c = [](double constant) { return splat<V>(constant); };

        const V sum = x * c(stepsPerUnit) + c(integerShift);
        const V steps = sum - c(integerShift);
        const V r = (x - steps * c(stepHigh)) - steps * c(stepLow);

        shifted = bitsOf(sum);
        const Bits entry = shiftLeft<1>(shifted & splat<Bits>(127));
        power = gather<V>(&powersOfTwo[0].value, entry);
        const V r2 = r * r;
        const V head = gather<V>(&powersOfTwo[0].rest, entry) + r;
        const V tail =
            r2 * ((c(0x1p-1) + r * c(0x1.5555555555555p-3)) +
                  r2 * ((c(0x1.5555555555555p-5) + r * c(0x1.1111111111111p-7)) + r2 * c(0x1.6c16c16c16c17p-10)));
        rest = power * (head + tail);
        mantissa = power + rest;
    }

    // exp x where it is not a denormal.
    VORN_INLINE V normal() const {
        return floatOf(bitsOf(mantissa) + shiftLeft<45>(shifted & splat<Bits>(~std::int64_t{127})));
    }
};

// exp64(x) for |x| < 708.
template <class V>
VORN_INLINE V expOfModerate(V x) {
    return ExpSteps<V>(x).normal();
}

// ---- log

// Around 1: the series in r = x - 1, |r| < 2^-6, its square term in two parts.
template <class V>
VORN_INLINE V logNearOne(V r) {
    using Bits = decltype(bitsOf(r));
    const auto c = [](double constant) { return splat<V>(constant); };
    const V high = floatOf(bitsOf(r) & splat<Bits>(~std::int64_t{0x7FFFFFF}));
    const V halfSquare = c(0.5) * (high * high);
    const V halfSquareRest = c(0.5) * ((r - high) * (r + high));
    const V leading = r - halfSquare;
    const V leadingRest = (r - leading) - halfSquare;
    const V r2 = r * r;
    const V series =
        ((c(0x1.5555555555555p-2) - r * c(0x1p-2)) + r2 * (c(0x1.999999999999ap-3) - r * c(0x1.5555555555555p-3))) +
        (r2 * r2) *
            ((c(0x1.2492492492492p-3) - r * c(0x1p-3)) + r2 * (c(0x1.c71c71c71c71cp-4) - r * c(0x1.999999999999ap-4)));
    return leading + ((leadingRest - halfSquareRest) + (r * r2) * series);
}

// x = 2^k m, m x reciprocal = 1 + r with |r| < 0.005: ln x = k ln2 - ln reciprocal + r - r^2/2 + ... - r^8/8. The
// reciprocal has ten bits, so that its products with the two halves of m are exact, and so is the sum of the three
// leading terms. bits are those of a normal number above zero, whose exponent counts from bias.
template <class V, class Bits>
VORN_INLINE V logAwayFromOne(Bits bits, int bias) {
    constexpr double ln2High = 0x1.62e42fefa38p-1;  // a multiple of 2^-42
    constexpr double ln2Low = 0x1.ef35793c7673p-45;
    constexpr std::int64_t upperHalf = ~std::int64_t{0xFFFFFFFF};
    constexpr std::int64_t one = std::bit_cast<std::int64_t>(1.0);
    constexpr double ulpIsOne = 0x1p52;  // an integer in its low bits is added to it
    const auto c = [](double constant) { return splat<V>(constant); };
    const auto b = [](std::int64_t constant) { return splat<Bits>(constant); };

    const V k = floatOf(shiftRightLogical<52>(bits) | b(std::bit_cast<std::int64_t>(ulpIsOne))) - c(ulpIsOne + bias);
    const Bits mantissaBits = (bits & b(0x000FFFFFFFFFFFFF)) | b(one);
    const V mantissa = floatOf(mantissaBits);
    const V mantissaHigh = floatOf(mantissaBits & b(upperHalf));
    const Bits step = shiftRightLogical<45>(bits) & b(127);
    const Bits entry = step + step + step;
    const V reciprocal = gather<V>(&logarithmsOfSteps[0].reciprocal, entry);

    const V rHigh = mantissaHigh * reciprocal - c(1.0);
    const V rLow = (mantissa - mantissaHigh) * reciprocal;
    const V r = rHigh + rLow;
    const V leading = (k * c(ln2High) + gather<V>(&logarithmsOfSteps[0].ln, entry)) + rHigh;
    const V leadingRest = rLow + (k * c(ln2Low) + gather<V>(&logarithmsOfSteps[0].rest, entry));
    const V r2 = r * r;
    const V series = ((c(0x1p-1) - r * c(0x1.5555555555555p-2)) + r2 * (c(0x1p-2) - r * c(0x1.999999999999ap-3))) +
                     (r2 * r2) * ((c(0x1.5555555555555p-3) - r * c(0x1.2492492492492p-3)) + r2 * c(0x1p-3));
    return leading + (leadingRest - r2 * series);
}

inline constexpr int exponentBias = 1023;
inline constexpr double nearOne = 0x1p-6;  // up to here from 1 the series around 1 is taken

// log64(x) for normal numbers above zero. Other lanes get a value without a meaning.
template <class V>
VORN_INLINE V logOfNormal(V x) {
    const V fromOne = x - splat<V>(1.0);
    const auto isNear = absOf(fromOne) < splat<V>(nearOne);
    if (all(isNear)) return logNearOne(fromOne);
    const V away = logAwayFromOne<V>(bitsOf(x), exponentBias);
    return any(isNear) ? select(isNear, logNearOne(fromOne), away) : away;
}

}  // namespace vorn
