// Plain loops over rows and columns of matrices, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {

void sumColumns(const float* src, int step, int height, float* dst, int width);
void sumColumns(const double* src, int step, int height, double* dst, int width);
void sumColumns(const std::int16_t* src, int step, int height, float* dst, int width);
void sumRows(const float* src, int width, int step, float* dst, int height);
void sumRows(const double* src, int width, int step, double* dst, int height);
void sumRows(const std::int16_t* src, int width, int step, float* dst, int height);
void subRow(const float* row, int width, float* srcDst, int step, int height);
void subRow(const std::int16_t* row, int width, std::int16_t* srcDst, int step, int height);
void normalizeColumns(float* srcDst, int step, int height, const float* mean, const float* scale, int width);
void normalizeColumns(std::int16_t* srcDst, int step, int height, const std::int16_t* mean, const std::int16_t* scale,
                      int width, int shift);
void mapInRange(const float* src, float* dst, int len, float min, float max, float lower, float upper, float range);
void mapInRange(const float* src, std::int16_t* dst, int len, float min, float max, float lower, float upper,
                float range);
void mapInRange(const float* src, std::uint8_t* dst, int len, float min, float max, float lower, float upper,
                float range);
void mapInRange(const std::int16_t* src, std::int16_t* dst, int len, float min, float max, float lower, float upper,
                float range);
void mapInRange(const std::int16_t* src, std::uint8_t* dst, int len, float min, float max, float lower, float upper,
                float range);

}  // namespace plain
