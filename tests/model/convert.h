// Conversions, one element at a time, by exact arithmetic on doubles and integers.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "model/integers.h"
#include "vornsr/types.h"

namespace model {

inline double rounded(double x, bool near) { return near ? nearestWhole(x) : std::trunc(x); }

// Float to integer, every mode but 0 to nearest, times a factor in the precision of the source. What becomes of a
// not-a-number is the form's own.

template <class Integer, class Float>
Integer toInteger(Float x, VornRoundMode mode, float factor, Integer fromNan) {
    const Float y = x * static_cast<Float>(factor);
    if (std::isnan(y)) return fromNan;
    return saturateWhole<Integer>(rounded(static_cast<double>(y), mode != 0));
}

inline Vorn8s to8s(float x, VornRoundMode mode, float factor) { return toInteger<Vorn8s>(x, mode, factor, 127); }
inline Vorn8u to8u(float x, VornRoundMode mode, float factor) { return toInteger<Vorn8u>(x, mode, factor, 255); }
inline Vorn16s to16s(float x, VornRoundMode mode, float factor) { return toInteger<Vorn16s>(x, mode, factor, 32767); }
inline Vorn16u to16u(float x, VornRoundMode mode, float factor) { return toInteger<Vorn16u>(x, mode, factor, 0); }
// A not-a-number goes by its sign; one that comes from 0 x infinity counts as sign set.
inline Vorn32s to32s(float x, VornRoundMode mode, float factor) {
    const bool positive = std::isnan(x) && !std::signbit(x);
    return toInteger<Vorn32s>(x, mode, factor, positive ? 2147483647 : std::numeric_limits<Vorn32s>::min());
}
inline Vorn32s to32s(double x, VornRoundMode mode, float factor) {
    return toInteger<Vorn32s>(x, mode, factor, 2147483647);
}

// Integer to float.

inline float toSingle(std::int64_t x, int scale, int lowest, int highest) {
    return static_cast<float>(
        std::ldexp(static_cast<double>(static_cast<float>(x)), -std::clamp(scale, lowest, highest)));
}
inline double toDouble(std::int64_t x, int scale, int lowest, int highest) {
    return std::ldexp(static_cast<double>(x), -std::clamp(scale, lowest, highest));
}

inline Vorn16s to16s(Vorn32s x, int scale) {
    scale = std::clamp(scale, -15, 31);
    return saturateTo<Vorn16s>(scale <= 0 ? Big{x} << -scale : nearestRatio(x, Big{1} << scale));
}

inline float toSingle(double x) {
    constexpr double bound = 3.402823466e+38;
    if (std::isnan(x)) return static_cast<float>(bound);
    return static_cast<float>(std::max(std::min(x, bound), -bound));
}

// Halves.

struct Half {
    bool negative;
    int exponent, mantissa;
    explicit Half(Vorn16f bits) : negative(bits >> 15), exponent((bits >> 10) & 31), mantissa(bits & 1023) {}
    double sign() const { return negative ? -1.0 : 1.0; }
    // Of a finite half.
    double value() const {
        return sign() * (exponent == 0 ? std::ldexp(mantissa, -24) : std::ldexp(1024 + mantissa, exponent - 25));
    }
};

// The bits, so that infinities and the payloads of not-a-numbers can be compared.
inline std::uint32_t halfToSingleBits(Vorn16f bits) {
    const Half half(bits);
    if (half.exponent == 31) {
        return (half.negative ? 0xFF800000u : 0x7F800000u) | static_cast<std::uint32_t>(half.mantissa) << 13;
    }
    return std::bit_cast<std::uint32_t>(static_cast<float>(half.value()));
}

inline Vorn16s halfTo16s(Vorn16f bits, VornRoundMode mode, int scale) {
    const Half half(bits);
    const bool near = mode == 1;
    if (scale < -14) {
        if (half.exponent == 31) return bits == 0x7C00 ? 32767 : -32768;
        return saturateWhole<Vorn16s>(
            rounded(std::ldexp(half.value(), std::min(-static_cast<std::int64_t>(scale), std::int64_t{200})), near));
    }
    if (half.exponent == 31) return half.negative ? -32768 : 32767;
    if (scale > 16) return 0;
    // Exponent 0 counts like any other.
    const double value = half.sign() * std::ldexp(1.0 + half.mantissa / 1024.0, half.exponent - 15 - scale);
    return saturateWhole<Vorn16s>(rounded(value, near));
}

// The single bits shortened by 13, to nearest even or dropped.
inline std::uint32_t shortened(std::uint32_t bits, bool near) {
    if (near) bits += 0xFFF + ((bits >> 13) & 1);
    return bits >> 13;
}

inline Vorn16f toHalf(float x, VornRoundMode mode) {
    const bool near = mode == 1;
    const std::uint32_t bits = std::bit_cast<std::uint32_t>(x);
    const auto sign = static_cast<Vorn16f>((bits >> 16) & 0x8000);
    if (std::isnan(x)) {
        return static_cast<Vorn16f>(sign | (near ? 0x7FFF : 0x7C00 | 0x0200 | ((bits >> 13) & 0x03FF)));
    }
    const double product = std::min(std::fabs(static_cast<double>(x)), 65536.0) * 0x1p-112;  // exact
    float single = static_cast<float>(product);
    if (!near && static_cast<double>(single) > product) single = std::nextafter(single, 0.0f);
    return static_cast<Vorn16f>(sign | shortened(std::bit_cast<std::uint32_t>(single), near));
}

// The nearest half, or the one below in magnitude: 11 bits of the integer's magnitude.
inline Vorn16f toHalf(Vorn16s x, VornRoundMode mode) {
    const int sign = x < 0 ? 0x8000 : 0;
    int magnitude = std::abs(static_cast<int>(x)), exponent = 25;
    if (magnitude == 0) return 0;
    double mantissa = magnitude;
    while (mantissa >= 2048.0) mantissa /= 2, ++exponent;
    while (mantissa < 1024.0) mantissa *= 2, --exponent;
    // A mantissa that rounds up to 2048 carries into the exponent.
    return static_cast<Vorn16f>(sign + (exponent << 10) + static_cast<int>(rounded(mantissa, mode == 1)) - 1024);
}

}  // namespace model
