// Plain loops of velocities and accelerations over nine frames, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {

// As the library's functions; val is null for those without factors.
void auroraDeltas(const float* src, const float* val, float* dst, int dstWidth, int height, int mode, int);
void auroraDeltas(const std::int16_t* src, const std::int16_t* val, std::int16_t* dst, int dstWidth, int height,
                  int mode, int scaleFactor);

}  // namespace plain
