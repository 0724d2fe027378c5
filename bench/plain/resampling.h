// Plain loops of resampling, compiled for this very processor.
#pragma once

#include <cstdint>
#include <vector>

namespace plain {

// rows: `out` rows of 2H taps, that of phase 0 with one more, stride elements apart. Returns the number of samples.
int resampleFixed(const float* rows, int stride, int in, int out, int halfLen, const float* src, int len, float* dst,
                  float gain);
int resampleFixed(const float* rows, int stride, int in, int out, int halfLen, const std::int16_t* src, int len,
                  std::int16_t* dst, float gain);
int resampleFixed(const std::int16_t* rows, int stride, int in, int out, int halfLen, const std::int16_t* src, int len,
                  std::int16_t* dst, float gain);

// table: tableLen points, nStep a sample, and one more.
int resample(const float* table, int nStep, int tableLen, const float* src, int len, float* dst, double factor,
             float norm);
int resample(const float* table, int nStep, int tableLen, const std::int16_t* src, int len, std::int16_t* dst,
             double factor, float norm);

}  // namespace plain
