// Rates of sign changes, step by step.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstdlib>
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

}  // namespace model
