// The last step of the integer reductions: an exact sum times 2^-scaleFactor, rounded to nearest (ties to even) and
// saturated.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

#include "frame/wrap.h"
#include "simd/rounded_shift.h"
#include "simd/simd.h"

namespace vorn {

// In 64-bit integers, for sums of up to 2^62. The scale factor is clamped to lowest..highest first.
template <class Result>
Result scaledSum(std::int64_t sum, int scaleFactor, int lowest, int highest) {
    const int sf = std::clamp(scaleFactor, lowest, highest);
    if (sf > 0) return saturate<Result>(roundedShiftRight(sum, sf));
    return shiftLeftSatTo<Result>(sum, -sf);
}

// In double, times a factor. A not-a-number (zero times infinity) gives 0.
inline std::int32_t scaledSum(double sum, double factor) {
    double scaled = sum * factor;
    if (scaled != scaled) return 0;
    scaled = std::clamp(scaled, -2147483648.0, 2147483647.0);
    const f64x2 lanes = splat<f64x2>(scaled);
    return firstLane(roundToInt(lanes, lanes));
}

// 2^-scaleFactor from exponent bits alone: no denormals; 0 from 1023 on, infinity down from -1024.
inline double factorOfExponentBits(int scaleFactor) {
    const int biased = 1023 - std::clamp(scaleFactor, -1024, 1023);
    return std::bit_cast<double>(static_cast<std::uint64_t>(biased) << 52);
}

}  // namespace vorn
