// Division of complex numbers. For finite operands a quotient that the element can hold comes out as such, however
// large or small its operands are.
#pragma once

#include <cstdint>
#include <limits>

#include "arithmetic/division.h"
#include "frame/rounding.h"
#include "loops/operands.h"
#include "simd/complex.h"
#include "simd/divide.h"
#include "simd/simd.h"

namespace vorn {

// Complex numbers with their real and their imaginary parts in a register each, in an order that is the build's own.
struct SplitComplex {
    f64xN re, im;
};
VORN_INLINE SplitComplex split(f64xN low, f64xN high) { return {interleaveLow(low, high), interleaveHigh(low, high)}; }
VORN_INLINE Halves<f64xN> joined(f64xN re, f64xN im) { return {interleaveLow(re, im), interleaveHigh(re, im)}; }

VORN_INLINE MaskOf<f64xN> isReal(const SplitComplex& a) { return a.im == splat<f64xN>(0); }

// Single, by way of double: there products are exact, each sum of two of them is rounded once, and everything stays
// within the range. What is left before the result is rounded is below 5 x 2^-53 of each part.
struct ComplexQuotient32f : WatchesDivisor<MaskOf<f64xN>, f32xN::lanes, false> {
    VORN_INLINE f32xN operator()(f32xN dividend, f32xN divisor) const {
        const SplitComplex a = split(widenLow(dividend), widenHigh(dividend));
        const SplitComplex b = split(widenLow(divisor), widenHigh(divisor));
        const f64xN inverse = divided(splat<f64xN>(1), b.re * b.re + b.im * b.im);
        f64xN re = (a.re * b.re + a.im * b.im) * inverse, im = (a.im * b.re - a.re * b.im) * inverse;
        const auto real = isReal(b);
        if (any(real)) [[unlikely]] {
            note(real & (b.re == splat<f64xN>(0)));
            re = select(real, a.re / b.re, re);
            im = select(real, a.im / b.re, im);
        }
        const auto quotient = joined(re, im);
        return narrow(quotient.low, quotient.high);
    }
};

// Double. The larger part |re| or |im| of an operand is its size here.
//
// A part of the quotient is n / d with n = a.re b.re + a.im b.im or a.im b.re - a.re b.im and d = b.re^2 + b.im^2. With
// every product and sum rounded the error can reach 5 units in the last place of the larger part. So both n and d are
// made of two numbers: each operand is cut at a place 24 or 25 bits below its size, the sum of the two products of
// upper pieces has no more than 53 bits and is exact, and what the others add is rounded 72 bits below. d is then
// rounded, d = divisor + rest, and the rest, which weighs no more than the rounding of n, is taken off n: with 1 /
// divisor known to 1/8 that leaves 1/8 of a rounding. Together with the roundings of n and of the quotient the error is
// below 1.63 units in the last place of the part, or 2^-70 of the larger one.
struct ComplexFraction64f {
    f64xN re, im, divisor;

    VORN_INLINE ComplexFraction64f(const SplitComplex& a, const SplitComplex& b, f64xN sizeA, f64xN sizeB) {
        const Cut aRe(a.re, sizeA), aIm(a.im, sizeA), bRe(b.re, sizeB), bIm(b.im, sizeB);
        const f64xN square = bRe.high * bRe.high + bIm.high * bIm.high;
        const f64xN more = bRe.low * (bRe.high + b.re) + bIm.low * (bIm.high + b.im);
        divisor = square + more;
        const f64xN rest = (square - divisor) + more;
        // The bits of a positive number taken from these are those of its reciprocal, up to 1/8 too large.
        const f64xN inverse = floatOf(splat<i64xN>(0x7FE0000000000000) - bitsOf(divisor));
        const auto corrected = [&](f64xN high, f64xN low) { return high + (low - high * inverse * rest); };
        re = corrected(aRe.high * bRe.high + aIm.high * bIm.high,
                       (aRe.high * bRe.low + aRe.low * b.re) + (aIm.high * bIm.low + aIm.low * b.im));
        im = corrected(aIm.high * bRe.high - aRe.high * bIm.high,
                       (aIm.high * bRe.low + aIm.low * b.re) - (aRe.high * bIm.low + aRe.low * b.im));
    }

private:
    // x = high + low: adding a number 2^28 times the size, and taking it off, rounds to its last place.
    struct Cut {
        f64xN high, low;
        VORN_INLINE Cut(f64xN x, f64xN size) {
            const f64xN far = size * splat<f64xN>(0x1p28);
            high = (x + far) - far;
            low = x - high;
        }
    };
};

VORN_INLINE f64xN sizeOf(const SplitComplex& a) { return maxOf(absOf(a.re), absOf(a.im)); }

// Between these sizes no step of the fraction leaves the range, nor does the quotient.
inline constexpr double leastUnscaledSize = 0x1p-450, mostUnscaledSize = 0x1p450;

// What brings a size between them, in two steps.
VORN_INLINE f64xN halfScale(f64xN size) {
    return select(size > splat<f64xN>(mostUnscaledSize), splat<f64xN>(0x1p-300),
                  select(size < splat<f64xN>(leastUnscaledSize), splat<f64xN>(0x1p350), splat<f64xN>(1)));
}

struct ComplexQuotient64f : WatchesDivisor<MaskOf<f64xN>, 2 * f64xN::lanes, false> {
    VORN_INLINE Halves<f64xN> operator()(Halves<f64xN> dividend, Halves<f64xN> divisor) const {
        const SplitComplex a = split(dividend.low, dividend.high), b = split(divisor.low, divisor.high);
        const f64xN sizeA = sizeOf(a), sizeB = sizeOf(b);
        const auto unscaled = (minOf(sizeA, sizeB) >= splat<f64xN>(leastUnscaledSize)) &
                              (maxOf(sizeA, sizeB) <= splat<f64xN>(mostUnscaledSize));
        const auto real = isReal(b);
        if (!all(unscaled & !real)) [[unlikely]] {
            note(real & (b.re == splat<f64xN>(0)));
            return quotientOfAny(a, b);
        }
        const ComplexFraction64f fraction(a, b, sizeA, sizeB);
        return joined(divided(fraction.re, fraction.divisor), divided(fraction.im, fraction.divisor));
    }

private:
    // The quotients where a size is beyond them, an operand is infinite or a divisor real. A lane where none of this
    // holds goes the same way as without the others. Scales are powers of two, so that only the last step may round,
    // where the quotient is denormal; what is too small for its scale is too small beside the other part.
    VORN_NOINLINE static Halves<f64xN> quotientOfAny(const SplitComplex& a, const SplitComplex& b) {
        const f64xN one = splat<f64xN>(1), infinity = splat<f64xN>(std::numeric_limits<double>::infinity());
        const f64xN sizeA = sizeOf(a), sizeB = sizeOf(b);
        const auto real = isReal(b), infinite = (sizeA == infinity) | (sizeB == infinity);
        const f64xN scaleA = select(real, one, halfScale(sizeA)), scaleB = select(real, one, halfScale(sizeB));
        const auto scaled = [](f64xN x, f64xN scale) { return x * scale * scale; };
        const SplitComplex x = {scaled(a.re, scaleA), scaled(a.im, scaleA)};
        const SplitComplex y = {scaled(b.re, scaleB), scaled(b.im, scaleB)};
        const ComplexFraction64f fraction(x, y, scaled(sizeA, scaleA), scaled(sizeB, scaleB));

        // By a real number each part is divided by itself. An infinity has no pieces, and beside it a number, though
        // not a not-a-number, counts as 0: in an unlimited range the product would be a number too.
        const auto ifInfinite = [&](f64xN part) { return select(absOf(part) == infinity, part, part - part); };
        const SplitComplex u = {ifInfinite(a.re), ifInfinite(a.im)};
        const auto choose = [&](f64xN ifReal, f64xN infiniteOne, f64xN otherwise) {
            return select(real, ifReal, select(infinite, infiniteOne, otherwise));
        };
        const f64xN re = choose(a.re, u.re * b.re + u.im * b.im, fraction.re);
        const f64xN im = choose(a.im, u.im * b.re - u.re * b.im, fraction.im);
        const f64xN divisor = choose(b.re, y.re * y.re + y.im * y.im, fraction.divisor);
        const f64xN back = scaleB / scaleA;
        return joined(scaled(re / divisor, back), scaled(im / divisor, back));
    }
};

}  // namespace vorn
