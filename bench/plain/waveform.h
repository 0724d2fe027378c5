// Plain loops of waveform processing.
#pragma once

#include <cstdint>

namespace plain {

// A frame of 200 samples.
void processWaveform(const float* x, float* y);
void processWaveform(const std::int16_t* x, std::int16_t* y);

}  // namespace plain
