// Plain loops of the products of a matrix with a vector, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {
void matVecMul(const float* src, int step, const float* vec, int width, float* dst, int height);
void matVecMul(const std::int16_t* src, int step, const std::int16_t* vec, int width, std::int16_t* dst, int height,
               int sf);
void matVecMul(const std::int16_t* src, int step, const std::int16_t* vec, int width, std::int32_t* dst, int height,
               int sf);
void matVecMul(const std::int32_t* src, int step, const std::int32_t* vec, int width, std::int32_t* dst, int height,
               int sf);
void vecMatMul(const float* vec, const float* src, int step, int height, float* dst, int width);
// sums: room for as many doubles as the result has elements.
void vecMatMul(const std::int16_t* vec, const std::int16_t* src, int step, int height, std::int16_t* dst, int width,
               int sf, double* sums);
void vecMatMul(const std::int16_t* vec, const std::int16_t* src, int step, int height, std::int32_t* dst, int width,
               int sf, double* sums);
void vecMatMul(const std::int32_t* vec, const std::int32_t* src, int step, int height, std::int32_t* dst, int width,
               int sf, double* sums);
}  // namespace plain
