// Plain loops of noise reduction, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {
// dst has len / 4 + 1 values.
void smoothedPower(const float* src, float* dst, int len);
void smoothedPower(const std::int16_t* src, std::int16_t* dst, int len);
void smoothedPower(const std::int32_t* src, std::int32_t* dst, int len, int scaleFactor);
void smoothedPower(const std::int32_t* src, std::int64_t* dst, int len, int scaleFactor);
void noiseUpdate(const float* in, const float* noise, float* dst, int len);
void noiseUpdate(const std::int16_t* in, const std::int16_t* noise, std::int16_t* dst, int len, int scaleFactor);
void noiseUpdate(const std::int32_t* in, const std::int32_t* noise, std::int32_t* dst, int len, int scaleFactor);
void wienerGain(const float* in, const float* noise, const float* den, float* dst, int len);
void wienerGain(const std::int16_t* in, const std::int16_t* noise, const std::int16_t* den, std::int16_t* dst, int len);
void spreadTaps(const float* src, float* dst);
void spreadTaps(const std::int16_t* src, std::int16_t* dst);
void residualFilter(const float* src, float* dst, const float* taps);
void residualFilter(const std::int16_t* src, std::int16_t* dst, const std::int16_t* taps, int scaleFactor);
}  // namespace plain
