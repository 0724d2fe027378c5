// Plain loops of the integer forms of the cepstral lifter, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {
// rows: lenCep rows of lenDCT cosines, stride elements apart. The coefficients times 2^-scale are rounded and
// saturated.
void dctLifter(const std::int16_t* x, std::int16_t* dst, const float* rows, int stride, const float* weight, int lenDCT,
               int lenCep, int scale);
void dctLifter(const std::int32_t* x, std::int16_t* dst, const float* rows, int stride, const float* weight, int lenDCT,
               int lenCep, int scale);
}  // namespace plain
