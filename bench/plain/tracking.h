// Plain loops of noise tracking, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {

// What a tracker keeps; the arrays are the caller's.
template <class T>
struct Tracker {
    int bins, minWindow, frameIdx;
    T alphaD, alphaP, alphaS, delta;
    T *presence, *smoothed, *minimum, *tempMinimum;
};
void trackNoise(Tracker<float>& t, const float* in, float* noise);
// Parameters in Q31, delta in Q15.
void trackNoise(Tracker<std::int32_t>& t, const std::int32_t* in, std::int32_t* noise);

}  // namespace plain
