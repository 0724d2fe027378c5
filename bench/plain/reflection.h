// Plain loops over reflection coefficients, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {
void areaRatios(const float* k, float* dst, int len);
void runningAreaRatios(const float* k, float* dst, int len);
void logAreaRatios(const float* k, float* dst, int len, float val);
void tilts(const float* a, const float* b, float* dst, int len);
void absTilts(const float* a, const float* b, float* dst, int len);
// Coefficients times 2^in; results times 2^-out, rounded (the logarithms truncated) and saturated.
void areaRatios(const std::int16_t* k, int in, std::int16_t* dst, int len, int out);
void runningAreaRatios(const std::int16_t* k, int in, std::int16_t* dst, int len, int out);
void logAreaRatios(const std::int16_t* k, int in, std::int16_t* dst, int len, int out, float val);
void tilts(const std::int16_t* a, const std::int16_t* b, std::int16_t* dst, int len, int out);
void absTilts(const std::int16_t* a, const std::int16_t* b, std::int16_t* dst, int len, int out);
}  // namespace plain
