// Elementary functions in double precision. The method is the same in all: a table value close by, exact or nearly
// exact reduction to what is left, and a short Taylor polynomial of it, so that all but the last addition stays far
// below the last place of the result. The coefficients are 1/n and 1/n!, rounded to the nearest double.
#include "elementary/elementary.h"

#include <bit>
#include <cstdint>
#include <limits>

#include "elementary/lanes.h"
#include "elementary/tables.h"

namespace vorn {
namespace {

__extension__ using uint128 = unsigned __int128;

constexpr double infinity = std::numeric_limits<double>::infinity();
// The processor's own answer to an invalid operation: quiet, sign set.
constexpr double defaultNan = std::bit_cast<double>(std::uint64_t{0xFFF8000000000000});
constexpr std::uint64_t signBit = std::uint64_t{1} << 63;

std::uint64_t bitsOf(double x) { return std::bit_cast<std::uint64_t>(x); }
double fromBits(std::uint64_t bits) { return std::bit_cast<double>(bits); }
double magnitude(double x) { return fromBits(bitsOf(x) & ~signBit); }
double powerOfTwo(int exponent) { return fromBits(static_cast<std::uint64_t>(exponent + 1023) << 52); }

// Adding it rounds a double to an integer, which then stands in the low bits of the sum.
constexpr double integerShift = 0x1.8p52;

}  // namespace

double exp64(double x) {
    constexpr double largest = 0x1.62e42fefa39efp9;    // exp rounds to a finite number up to here
    constexpr double smallest = -0x1.74910d52d3051p9;  // and to a number above zero down to here
    if (!(magnitude(x) < 708.0)) {
        if (x != x) return x + x;
        if (x > largest) return infinity;
        if (x < smallest) return 0.0;
    }
    const ExpSteps<f64x1> steps(f64x1{x});
    const double value = steps.mantissa.v;
    const int exponent = static_cast<std::int32_t>(steps.shifted.v) >> 7;
    if (static_cast<int>(bitsOf(value) >> 52) + exponent > 0) [[likely]]
        return steps.normal().v;

    // A denormal result: value + below is rounded once, to a multiple of 2^(-1074 - exponent).
    const double below = (steps.power.v - value) + steps.rest.v;
    const double unit = powerOfTwo(-1074 - exponent);
    const double base = unit * 0x1p52;
    const double rounded = base + value;
    std::uint64_t units = bitsOf(rounded) - bitsOf(base);
    const double left = (value - (rounded - base)) + below;
    if (left > 0.5 * unit) ++units;
    if (left < -0.5 * unit) --units;
    return fromBits(units);
}

double log64(double x) {
    const double fromOne = x - 1.0;
    if (magnitude(fromOne) < nearOne) return logNearOne(f64x1{fromOne}).v;

    std::uint64_t bits = bitsOf(x);
    int bias = exponentBias;
    if (bits - 0x0010000000000000 >= 0x7FE0000000000000) [[unlikely]] {
        if (x == 0.0) return -infinity;
        if (x != x || x == infinity) return x + x;
        if (x < 0.0) return defaultNan;
        bits = bitsOf(x * 0x1p52);
        bias += 52;
    }
    return logAwayFromOne<f64x1>(i64x1{bits}, bias).v;
}

namespace {

// An angle as quadrant x pi/2 + (high + low), |high| at most pi/4 and a little.
struct Reduced {
    double high, low;
    unsigned quadrant;  // modulo 4
};

// Any finite angle above 2^-30, with 192 bits of 2/pi (Payne, Hanek 1983): the product of the mantissa and the window
// of 2/pi that stands where the product's weight falls below 4. No double comes nearer to a multiple of pi/2 than
// 2^-61, so that at least 70 bits remain.
Reduced reduceExactly(double x) {
    const std::uint64_t bits = bitsOf(x) & ~signBit;
    const std::uint64_t mantissa = (bits & 0x000FFFFFFFFFFFFF) | 0x0010000000000000;
    const int exponent = static_cast<int>(bits >> 52) - 1075;

    const int offset = exponent + 62;
    const std::uint64_t* words = twoOverPi + (offset >> 6);
    const int shift = offset & 63;
    const auto window = [words, shift](int i) {
        return shift == 0 ? words[i] : (words[i] << shift) | (words[i + 1] >> (64 - shift));
    };
    // The product modulo 4, in units of 2^-190 quadrants: three words, the first one on top.
    const uint128 lowest = static_cast<uint128>(mantissa) * window(2);
    const uint128 middle = static_cast<uint128>(mantissa) * window(1) + static_cast<std::uint64_t>(lowest >> 64);
    std::uint64_t top = mantissa * window(0) + static_cast<std::uint64_t>(middle >> 64);
    uint128 bottom =
        (static_cast<uint128>(static_cast<std::uint64_t>(middle)) << 64) | static_cast<std::uint64_t>(lowest);

    auto quadrant = static_cast<unsigned>((top + (std::uint64_t{1} << 61)) >> 62);
    top -= static_cast<std::uint64_t>(quadrant) << 62;
    bool negative = (top & signBit) != 0;
    if (negative) {
        bottom = -bottom;
        top = ~top + (bottom == 0 ? 1 : 0);
    }
    // The leading 128 bits of the fraction, their first bit set.
    int zeros = 0;
    while (top == 0) {
        top = static_cast<std::uint64_t>(bottom >> 64);
        bottom <<= 64;
        zeros += 64;
    }
    const int more = std::countl_zero(top);
    uint128 fraction = (static_cast<uint128>(top) << 64) | static_cast<std::uint64_t>(bottom >> 64);
    if (more != 0) fraction = (fraction << more) | (static_cast<std::uint64_t>(bottom) >> (64 - more));
    zeros += more;

    // Times pi/2, whose leading 128 bits these are.
    constexpr std::uint64_t halfPiHigh = 0xC90FDAA22168C234;
    constexpr std::uint64_t halfPiLow = 0xC4C6628B80DC1CD1;
    const auto fractionHigh = static_cast<std::uint64_t>(fraction >> 64);
    const auto fractionLow = static_cast<std::uint64_t>(fraction);
    const uint128 cross1 = static_cast<uint128>(fractionHigh) * halfPiLow;
    const uint128 cross2 = static_cast<uint128>(fractionLow) * halfPiHigh;
    const uint128 angle = static_cast<uint128>(fractionHigh) * halfPiHigh + (cross1 >> 64) + (cross2 >> 64);

    const double scale = powerOfTwo(2 - zeros);
    const double leading = static_cast<double>(static_cast<std::int64_t>(angle >> 75)) * (scale * 0x1p-52);
    const double rest =
        static_cast<double>(static_cast<std::int64_t>(angle >> 22) & 0x001FFFFFFFFFFFFF) * (scale * 0x1p-105);
    double high = leading + rest;
    double low = (leading - high) + rest;
    if (bitsOf(x) & signBit) {
        negative = !negative;
        quadrant = 0u - quadrant;
    }
    if (negative) {
        high = -high;
        low = -low;
    }
    return {high, low, quadrant & 3u};
}

// pi/2 in parts of 33, 33 and 53 bits (Cody, Waite 1980), exact up to |x| = 2^20; beyond that, and where x comes very
// close to a multiple of pi/2, the exact reduction.
Reduced reduce(double x) {
    constexpr double quarterPi = 0x1.921fb54442d18p-1;
    constexpr double quadrantsPerUnit = 0x1.45f306dc9c883p-1;
    constexpr double halfPi1 = 0x1.921fb544p0;
    constexpr double halfPi2 = 0x1.0b4611a6p-34;
    constexpr double halfPi3 = 0x1.3198a2e037073p-69;
    if (magnitude(x) <= quarterPi) return {x, 0.0, 0};
    if (magnitude(x) > 0x1p20) return reduceExactly(x);
    const double shifted = x * quadrantsPerUnit + integerShift;
    const double quadrants = shifted - integerShift;
    const double first = x - quadrants * halfPi1;
    const double second = quadrants * halfPi2;
    const double third = quadrants * halfPi3;
    const double two = first - second;
    if (magnitude(two) < 0x1p-30) return reduceExactly(x);
    const double back = first - two;
    const double twoRest = (first - (two + back)) + (back - second);
    const double high = two - third;
    const double low = ((two - high) - third) + twoRest;
    return {high, low, static_cast<unsigned>(bitsOf(shifted)) & 3u};
}

// The nearest table point j/128 below |high + low|, and what is left: |r| <= 2^-8 and a little.
struct TablePoint {
    const SineAndCosine& at;
    double r, sineOfR, oneLessCosineOfR;  // sineOfR without r itself

    TablePoint(double high, double low) : TablePoint(high * 128.0 + integerShift, high, low) {}

private:
    TablePoint(double shifted, double high, double low)
        : at(sinesAndCosines[static_cast<std::uint32_t>(bitsOf(shifted))]),
          r(high - (shifted - integerShift) * 0x1p-7) {
        const double r2 = r * r;
        sineOfR = low + (r * r2) * (r2 * 0x1.1111111111111p-7 - 0x1.5555555555555p-3);
        oneLessCosineOfR = low * r + r2 * (0x1p-1 - r2 * (0x1.5555555555555p-5 - r2 * 0x1.6c16c16c16c17p-10));
    }
};

// Up to 0.18 the series to x^13; above, sin(a + r) = sin a + (cos a sin r - sin a (1 - cos r)).
double sineNearZero(double high, double low) {
    if (magnitude(high) < 0.18) {
        const double x2 = high * high;
        const double x4 = x2 * x2;
        const double series = (x2 * 0x1.1111111111111p-7 - 0x1.5555555555555p-3) +
                              x4 * ((x2 * 0x1.71de3a556c734p-19 - 0x1.a01a01a01a01ap-13) +
                                    x4 * (x2 * 0x1.6124613a86d09p-33 - 0x1.ae64567f544e4p-26));
        return high + (low * (1.0 - 0.5 * x2) + (high * x2) * series);
    }
    const std::uint64_t sign = bitsOf(high) & signBit;
    const TablePoint point(fromBits(bitsOf(high) ^ sign), fromBits(bitsOf(low) ^ sign));
    const SineAndCosine& a = point.at;
    const double small =
        (a.sineRest + a.cosineRest * point.r) + (a.cosine * point.sineOfR - a.sine * point.oneLessCosineOfR);
    return fromBits(bitsOf(a.sine + (a.cosine * point.r + small)) ^ sign);
}

// cos(a + r) = cos a - (sin a sin r + cos a (1 - cos r)).
double cosineNearZero(double high, double low) {
    const std::uint64_t sign = bitsOf(high) & signBit;
    const TablePoint point(fromBits(bitsOf(high) ^ sign), fromBits(bitsOf(low) ^ sign));
    const SineAndCosine& a = point.at;
    const double small =
        (a.cosineRest - a.sineRest * point.r) - (a.sine * point.sineOfR + a.cosine * point.oneLessCosineOfR);
    return a.cosine + (small - a.sine * point.r);
}

}  // namespace

double sin64(double x) {
    if (magnitude(x) < 0x1p-27) return x;
    if (!(magnitude(x) < infinity)) return x - x;
    const Reduced angle = reduce(x);
    const double value =
        (angle.quadrant & 1u) != 0 ? cosineNearZero(angle.high, angle.low) : sineNearZero(angle.high, angle.low);
    return fromBits(bitsOf(value) ^ (static_cast<std::uint64_t>(angle.quadrant & 2u) << 62));
}

double cos64(double x) {
    if (!(magnitude(x) < infinity)) return x - x;
    const Reduced angle = reduce(x);
    const double value =
        (angle.quadrant & 1u) != 0 ? sineNearZero(angle.high, angle.low) : cosineNearZero(angle.high, angle.low);
    return fromBits(bitsOf(value) ^ (static_cast<std::uint64_t>((angle.quadrant + 1u) & 2u) << 62));
}

}  // namespace vorn
