// The sine of wide lanes of doubles. Each lane has its own bits, whatever stands beside it.
#pragma once

#include "elementary/elementary.h"
#include "frame/rounding.h"
#include "simd/simd.h"

namespace vorn {

// Where the steps below do not reach: the marked lanes, one by one.
template <class V>
VORN_NOINLINE void sinesOfLanes(const double* x, double* sine, unsigned marked) {
    for (int k = 0; k < V::lanes; ++k) {
        if ((marked >> k & 1u) != 0) sine[k] = sin64(x[k]);
    }
}
template <class V>
VORN_INLINE V withSinesOfLanes(V sine, V x, unsigned marked) {
    alignas(V) double from[V::lanes], to[V::lanes];
    store(from, x);
    store(to, sine);
    sinesOfLanes<V>(from, to, marked);
    return load<V>(to);
}

inline constexpr double largestReduced = 0x1p20;  // up to here the products of the reductions are exact

// Within 0.82 units in the last place. The angle is taken to the nearest multiple of pi/2, whose first two parts have
// 33 bits each (Cody, Waite 1980), as high + low; there the Taylor series of sine and cosine are taken, both, and the
// lane chooses. Large angles, and those that come very close to a multiple, go to sin64.
template <class V>
VORN_INLINE V sineOf(V x) {
    using Bits = decltype(bitsOf(x));
    constexpr double quarterPi = 0x1.921fb54442d18p-1;
    constexpr double quadrantsPerUnit = 0x1.45f306dc9c883p-1;
    constexpr double halfPi1 = 0x1.921fb544p0;
    constexpr double halfPi2 = 0x1.0b4611a6p-34;
    constexpr double halfPi3 = 0x1.3198a2e037073p-69;
    const auto c = [](double constant) __attribute__((always_inline)) { return splat<V>(constant); };
    const V integerShift = c(0x1.8p52), one = c(1.0);

    const V shifted = x * c(quadrantsPerUnit) + integerShift;
    const V quadrants = shifted - integerShift;
    const V first = x - quadrants * c(halfPi1);
    const V second = quadrants * c(halfPi2), third = quadrants * c(halfPi3);
    const V two = first - second;  // exact wherever second is the larger
    const V high = two - third;
    const V low = ((two - high) - third) + ((first - two) - second);

    const V z = high * high, z2 = z * z, z4 = z2 * z2;
    const V halfSquare = c(0.5) * z, oneLessHalf = one - halfSquare;
    const V sineSeries = ((z * c(0x1.1111111111111p-7) - c(0x1.5555555555555p-3)) +
                          z2 * (z * c(0x1.71de3a556c734p-19) - c(0x1.a01a01a01a01ap-13))) +
                         z4 * ((z * c(0x1.6124613a86d09p-33) - c(0x1.ae64567f544e4p-26)) +
                               z2 * (z * c(0x1.952c77030ad4ap-49) - c(0x1.ae7f3e733b81fp-41)));
    const V cosineSeries =
        ((c(0x1.5555555555555p-5) - z * c(0x1.6c16c16c16c17p-10)) +
         z2 * (c(0x1.a01a01a01a01ap-16) - z * c(0x1.27e4fb7789f5cp-22))) +
        z4 * ((c(0x1.1eed8eff8d898p-29) - z * c(0x1.93974a8c07c9dp-37)) + z2 * c(0x1.ae7f3e733b81fp-45));
    const V sine = high + (low * oneLessHalf + (high * z) * sineSeries);
    const V size = absOf(x);
    if (all(size <= c(quarterPi))) return sine;  // the multiple is none
    const V cosine = oneLessHalf + (((one - oneLessHalf) - halfSquare) + (z2 * cosineSeries - high * low));

    const Bits count = bitsOf(shifted);
    const auto isOdd = floatOf(shiftLeft<63>(count) | bitsOf(one)) < c(0.0);
    const Bits sign = shiftLeft<62>(count & splat<Bits>(2));
    const V value = floatOf(bitsOf(select(isOdd, cosine, sine)) ^ sign);

    const auto reached = (size <= c(largestReduced)) & (absOf(two) >= c(0x1p-30));
    if (all(reached)) [[likely]]
        return value;
    const unsigned marked = laneBits(!(reached | (size <= c(0.5))));
    return marked == 0 ? value : withSinesOfLanes(value, x, marked);
}

// Of doubles that hold singles up to largestReduced: within 2^-36 of the sine, and within 2^-50.5 unless the angle
// comes closer than 2^-15 to a multiple of pi; this is next to nothing beside a unit of a single. One series serves to
// both sides of the nearest multiple of pi.
template <class V>
VORN_INLINE V sineOfSingle(V x) {
    constexpr double halfTurnsPerUnit = 0x1.45f306dc9c883p-2;
    constexpr double pi1 = 0x1.921fb544p1;
    constexpr double pi2 = 0x1.0b4611a626331p-33;
    const auto c = [](double constant) __attribute__((always_inline)) { return splat<V>(constant); };

    const V shifted = x * c(halfTurnsPerUnit) + c(0x1.8p52);
    const V halfTurns = shifted - c(0x1.8p52);
    const V r = (x - halfTurns * c(pi1)) - halfTurns * c(pi2);

    const V z = r * r, z2 = z * z, z4 = z2 * z2;
    const V series = ((z * c(0x1.1111111111111p-7) - c(0x1.5555555555555p-3)) +
                      z2 * (z * c(0x1.71de3a556c734p-19) - c(0x1.a01a01a01a01ap-13))) +
                     z4 * (((z * c(0x1.6124613a86d09p-33) - c(0x1.ae64567f544e4p-26)) +
                            z2 * (z * c(0x1.952c77030ad4ap-49) - c(0x1.ae7f3e733b81fp-41))) +
                           z4 * (z * c(0x1.71b8ef6dcf572p-66) - c(0x1.2f49b46814157p-57)));
    const V sine = r + (r * z) * series;
    return floatOf(bitsOf(sine) ^ shiftLeft<63>(bitsOf(shifted)));
}

}  // namespace vorn
