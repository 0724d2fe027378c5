// Plain loops of the split into two bands, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {

// Output by output, the sums of even and of odd taps.
void splitBands(const float* src, float* low, float* high, int len, const float* taps, int tapsLen);
void splitBands(const std::int16_t* src, std::int16_t* low, std::int16_t* high, int len, const std::int16_t* taps,
                int tapsLen, int shift);
// Tap by tap, all outputs at once.
void splitBandsByTaps(const float* src, float* low, float* high, int len, const float* taps, int tapsLen);

}  // namespace plain
