// Plain loops of blind equalisation and of the coding of a high band, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {
void equaliseBlindly(const float* ref, float* x, float* bias, int len, float energy);
void equaliseBlindly(const std::int16_t* ref, std::int16_t* x, std::int16_t* bias, int len, int energy);
// Logarithms by the C library.
void codeHighBand(const float* bands, const float* low, const float* high, float* dst);
void codeHighBand(const std::int32_t* bands, const std::int32_t* low, const std::int32_t* high, std::int32_t* dst,
                  int scaleFactor);
}  // namespace plain
