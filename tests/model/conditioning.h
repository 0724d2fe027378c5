// Sign changes, energy normalisation and mean removal as they are promised.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

namespace model {

inline int signChanges(const std::vector<std::int16_t>& x) {
    int count = 0;
    for (std::size_t n = 1; n < x.size(); ++n) count += (std::int32_t)x[n - 1] * x[n] < 0;
    return count;
}
inline float signChanges(const std::vector<float>& x) {
    int count = 0;
    for (std::size_t n = 1; n < x.size(); ++n) {
        const float product = x[n - 1] * x[n];
        if (!(product >= 0)) ++count;
    }
    return (float)count;
}
inline int signBits(const std::vector<float>& x) {
    int count = 0;
    for (std::size_t n = 1; n < x.size(); ++n) count += std::signbit(x[n - 1]) != std::signbit(x[n]);
    return count;
}
template <class T>
int signSteps(const std::vector<T>& x) {
    const auto sgn = [](T v) { return v > 0 ? 1 : v == 0 ? 0 : -1; };
    int sum = 0;
    for (std::size_t n = 1; n < x.size(); ++n) sum += std::abs(sgn(x[n]) - sgn(x[n - 1]));
    return sum;
}

inline float normalisedEnergy(float x, float m, float minDb, float top, float val) {
    const float range = minDb * 0.230259f;
    const float floor = m - range;
    const float raised = x > floor ? x : floor;
    const float below = m - raised;
    const float scaled = below * val;
    return top - scaled;
}
inline std::int16_t energy16(float y) {
    if (std::isnan(y)) return 0;  // the low half of -2147483648
    return y < -32768.0f ? -32768 : y > 32767.0f ? 32767 : (std::int16_t)y;
}

inline std::vector<std::int16_t> zeroMean(const std::vector<std::int16_t>& x) {
    std::int64_t sum = 0;
    for (std::int16_t v : x) sum += v;
    const auto wrapped = (std::int32_t)(std::uint32_t)(std::uint64_t)sum;
    const std::int64_t m2 = 2 * (std::int64_t)wrapped / (std::int64_t)x.size();
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
