// What several models need of integers and of rounding to them, each said once: saturation, wrapping, rounding to
// nearest even, and the powers of two of scale factors. All exact, in whatever rounding mode the caller runs.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include "vornsr/types.h"

namespace model {

using Big = __int128;

// x, or the end of the range of T that it lies beyond.
template <class T>
T saturateTo(Big x) {
    const Big low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
    return static_cast<T>(x < low ? low : x > high ? high : x);
}

// The low bits of x: what is left of it in arithmetic that wraps.
template <class T>
T wrapTo(Big x) {
    const Big span = Big{1} << (8 * sizeof(T));
    const Big low = ((x % span) + span) % span;  // not negative
    return static_cast<T>(low > std::numeric_limits<T>::max() ? low - span : low);
}

// The integer nearest to n / d, ties to even; d > 0.
inline Big nearestRatio(Big n, Big d) {
    Big q = n / d, r = n % d;
    if (r < 0) q -= 1, r += d;  // floor
    const bool up = 2 * r > d || (2 * r == d && q % 2 != 0);
    return up ? q + 1 : q;
}

// The whole number nearest to x, ties to even.
inline double nearestWhole(double x) {
    const double floor = std::floor(x), rest = x - floor;
    if (rest < 0.5) return floor;
    if (rest > 0.5) return floor + 1.0;
    return std::fmod(floor, 2.0) == 0.0 ? floor : floor + 1.0;
}

// A whole number, or an infinity, saturated.
template <class T>
T saturateWhole(double x) {
    if (x >= static_cast<double>(std::numeric_limits<T>::max())) return std::numeric_limits<T>::max();
    if (x <= static_cast<double>(std::numeric_limits<T>::min())) return std::numeric_limits<T>::min();
    return static_cast<T>(x);
}

// Truncated to 16 bits and saturated; not a number: the low half of the processor's -2147483648, which is 0.
inline std::int16_t truncatedShort(float x) { return std::isnan(x) ? 0 : saturateWhole<std::int16_t>(std::trunc(x)); }

// 2^-sf in single precision, infinite or zero where it does not fit.
inline float singleOfScale(int sf) {
    if (sf < -127) return std::numeric_limits<float>::infinity();
    if (sf > 149) return 0.0f;
    return std::ldexp(1.0f, -sf);
}

}  // namespace model
