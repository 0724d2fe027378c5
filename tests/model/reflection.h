// Features of reflection coefficients, one element after the other.
#pragma once

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "model/convert.h"
#include "vornsr/types.h"

namespace model {

struct Features {
    std::vector<float> values;
    VornStatus status = vornStsNoErr;
};

inline float overOrInfinity(float dividend, float divisor, VornStatus& status) {
    if (divisor == 0.0f) {
        status = vornStsDivByZero;
        return INFINITY;
    }
    return dividend / divisor;
}

inline Features areaRatios(const std::vector<float>& k) {
    Features out;
    for (float x : k) out.values.push_back(overOrInfinity(1.0f - x, 1.0f + x, out.status));
    return out;
}

// Before the logarithm.
inline std::vector<float> limitedAreaRatios(const std::vector<float>& k, float val) {
    std::vector<float> out;
    for (float x : k) {
        if (x > val) x = val;
        if (x < -val) x = -val;
        out.push_back((1.0f - x) / (1.0f + x));
    }
    return out;
}

inline Features tilts(const std::vector<float>& a, const std::vector<float>& b) {
    Features out;
    for (std::size_t n = 0; n < a.size(); ++n)
        out.values.push_back(overOrInfinity(std::fabs(a[n]) - std::fabs(b[n]), a[n] + b[n], out.status));
    return out;
}

inline Features absTilts(const std::vector<float>& a, const std::vector<float>& b) {
    Features out;
    for (std::size_t n = 0; n < a.size(); ++n) {
        const float sum = std::fabs(a[n]) + std::fabs(b[n]);
        const float twice = 2.0f * std::fabs(a[n]);
        out.values.push_back(overOrInfinity(twice - sum, sum, out.status));
    }
    return out;
}

inline Features trueAreaRatios(const std::vector<float>& k) {
    Features out;
    const std::size_t len = k.size();
    float y = 1.0f;
    std::size_t n = 0;
    while (n < len && !(k[n] == -1.0f)) {
        const float product = y * (1.0f - k[n]);
        y = product / (k[n] + 1.0f);
        out.values.push_back(y);
        ++n;
    }
    for (; n < len; ++n) {
        const bool isWithin = -1.0f <= k[n] && k[n] <= 1.0f;
        if (isWithin && k[n] == -1.0f) out.status = vornStsDivByZero;
        if (isWithin && k[n] == 1.0f) break;
        if (isWithin && y > 0.0f) {
            y = INFINITY;
        } else if (!isWithin && !(y >= 0.0f)) {
            y = INFINITY;
        } else {
            y = -INFINITY;
        }
        out.values.push_back(y);
    }
    while (out.values.size() < len) out.values.push_back(std::numeric_limits<float>::quiet_NaN());
    return out;
}

inline std::vector<float> scaledSingles(const std::vector<Vorn16s>& x, float factor) {
    std::vector<float> out;
    for (Vorn16s e : x) out.push_back((float)e * factor);
    return out;
}

inline std::vector<Vorn16s> shorts(const std::vector<float>& y, VornRoundMode mode, int scale) {
    std::vector<Vorn16s> out;
    for (float e : y) out.push_back(to16s(e, mode, singleOfScale(scale)));
    return out;
}

}  // namespace model
