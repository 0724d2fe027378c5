// A plain voice activity detector, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {

// Trackers are singles, or 32-bit integers.
template <class Tracker>
struct Detector {
    std::int16_t flagBands, flagLow, flagVar, onsetSeen = 0;
    Tracker bandMean = 0, lowTrack = 0, bandTrack = 0, varTrack = 0, lowPrev = 0;
    int ringHead = 0, hangReload = 23, hangCount = 0, shortHang = 0;
    std::uint8_t ring[7] = {};
    int frameCount = 0;
};

int decide(Detector<float>& detector, const float* bands, const float* spectrum, int activity);
int decide(Detector<std::int32_t>& detector, const std::int16_t* bands, const std::int16_t* spectrum, int activity);
int flush(Detector<float>& detector);

}  // namespace plain
