// Plain loops of suppression gains, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {

// x / (1 + x), 0 for a negative x; whether there was one.
bool wienerGains(const float* x, float* gain, int len);
// Q15 to Q31, by a table of 87 steps.
bool wienerGains(const std::int32_t* x, std::int32_t* gain, int len);

// The table and the parabola: of 24 octaves and of 129 small arguments.
struct GainTables {
    std::int32_t start[24], slope[24], bend[24], small[129];
};
bool ephraimMalahGains(const GainTables& tables, const float* w, const float* snr, float* gain, int len);
bool ephraimMalahGains(const GainTables& tables, const std::int32_t* w, const std::int32_t* snr, std::int32_t* gain,
                       int len);
// With Bessel functions.
bool ephraimMalahByBessel(const float* w, const float* snr, float* gain, int len);

}  // namespace plain
