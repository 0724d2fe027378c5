// Values mapped into a range, one after the other.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "model/integers.h"
#include "vornsr/types.h"

namespace model {

struct RangeMapping {
    float hi, lo, k;
    // min, max, range: singles, or integers that come as singles first. Read anew, so that nothing is joined or moved.
    RangeMapping(double min, double max, double range, float lower, float upper) {
        const volatile float least = static_cast<float>(min), most = static_cast<float>(max);
        const volatile float w = most - least;
        const volatile float upperW = upper * w, lowerW = lower * w;
        hi = upperW + least;
        lo = least + lowerW;
        const volatile float span = upperW - lowerW;
        k = static_cast<float>(range) / span;
    }
    float operator()(float x) const {
        const float clipped = x < hi ? x : hi;  // hi where x is not a number
        const volatile float above = clipped - lo;
        return (above > 0 || std::isnan(above) ? above : 0.0f) * k;
    }
};

// Rounded to the nearest; what 32 bits cannot hold is their smallest number.
template <class Result>
Result inRange(float product) {
    const double whole = std::isfinite(product) ? nearestWhole(static_cast<double>(product)) : -2147483648.0;
    const bool held = whole >= -2147483648.0 && whole <= 2147483647.0;
    return saturateWhole<Result>(held ? whole : -2147483648.0);
}

template <class Source, class Result>
void mapInto(const Source* src, Result* dst, int len, double min, double max, double range, float lower, float upper) {
    const RangeMapping mapping(min, max, range, lower, upper);
    for (int i = 0; i < len; ++i) {
        const float y = mapping(static_cast<float>(src[i]));
        if constexpr (std::is_same_v<Result, float>) {
            dst[i] = y;
        } else {
            dst[i] = inRange<Result>(y);
        }
    }
}

// The smallest and the largest element that is a number.
template <class Source>
void extremesOf(const Source* src, int len, double& min, double& max) {
    min = max = std::numeric_limits<double>::quiet_NaN();
    for (int i = 0; i < len; ++i) {
        const double x = static_cast<double>(src[i]);
        if (std::isnan(x)) continue;
        if (std::isnan(min) || x < min) min = x;
        if (std::isnan(max) || x > max) max = x;
    }
}

}  // namespace model
