// Energy normalisation and mean removal, element by element.
#pragma once

#include <cstdint>
#include <vector>

#include "model/integers.h"

namespace model {

inline float normalisedEnergy(float x, float m, float minDb, float top, float val) {
    const float range = minDb * 0.230259f;
    const float floor = m - range;
    const float raised = x > floor ? x : floor;
    const float below = m - raised;
    const float scaled = below * val;
    return top - scaled;
}

inline std::vector<std::int16_t> zeroMean(const std::vector<std::int16_t>& x) {
    std::int64_t sum = 0;
    for (std::int16_t v : x) sum += v;
    const std::int64_t m2 = 2 * (std::int64_t)wrapTo<std::int32_t>(sum) / (std::int64_t)x.size();
    std::vector<std::int16_t> result;
    for (std::int16_t v : x) {
        std::int64_t d = 2 * v - m2;
        if (d < 0) {
            d -= 1;
        } else if (d > 0) {
            d += 1;
        }
        const std::int64_t y = d >> 1;
        result.push_back((std::int16_t)(y < -32767 ? -32767 : y > 32767 ? 32767 : y));
    }
    return result;
}

}  // namespace model
