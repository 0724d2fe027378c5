// 1 / n and 1 / sqrt(n) for combs of n samples, as the measures of periodicity promise them: short decimals in single,
// in Q30 what is left of the quotient below the point.
#pragma once

#include <cstdint>

#include "vornsr/types.h"

namespace vorn::pitch {

inline constexpr int mostTeeth = 16;  // samples of the longest comb

inline constexpr Vorn32f oneOver[mostTeeth + 1] = {0.0f,      1.0f,       0.5f,      0.333333f, 0.25f,  0.2f,
                                                   0.166666f, 0.142857f,  0.125f,    0.111111f, 0.1f,   0.090909f,
                                                   0.083333f, 0.0769231f, 0.071429f, 0.066666f, 0.0625f};
inline constexpr Vorn32f oneOverRoot[mostTeeth + 1] = {0.0f,      1.0f,      0.707107f, 0.57735f,  0.5f,      0.447214f,
                                                       0.408248f, 0.377965f, 0.353553f, 0.333333f, 0.316228f, 0.301511f,
                                                       0.288675f, 0.27735f,  0.267261f, 0.258199f, 0.25f};

struct TableQ30 {
    std::int32_t entry[mostTeeth + 1] = {};
    constexpr std::int32_t operator[](int n) const { return entry[n]; }
};
inline constexpr TableQ30 oneOverQ30 = [] {
    TableQ30 table;
    for (int n = 1; n <= mostTeeth; ++n) table.entry[n] = (1 << 30) / n;
    return table;
}();
inline constexpr TableQ30 oneOverRootQ30 = [] {
    TableQ30 table;
    for (std::int64_t n = 1; n <= mostTeeth; ++n) {
        std::int64_t quotient = 0;  // the largest whose square, times n, is not above 2^60
        for (std::int64_t bit = 1 << 30; bit > 0; bit >>= 1) {
            if ((quotient + bit) * (quotient + bit) <= (std::int64_t{1} << 60) / n) quotient += bit;
        }
        table.entry[n] = static_cast<std::int32_t>(quotient);
    }
    return table;
}();

}  // namespace vorn::pitch
