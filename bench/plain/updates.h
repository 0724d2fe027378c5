// Plain loops of parameter updates, compiled for this very processor.
#pragma once

#include <cstdint>

namespace plain {

void updateMean(const float* src, float* mean, int len, float occ);
void updateMean(const double* src, double* mean, int len, double occ);
bool updateVar(const float* mean, const float* var, const float* floor, float* dst, int len, float meanOcc,
               float varOcc);
bool updateVar(const double* mean, const double* var, const double* floor, double* dst, int len, double meanOcc,
               double varOcc);
bool updateWeight(const float* src, float* dst, int len, float* sum, float occ, float floor);
bool updateWeight(const double* src, double* dst, int len, double* sum, double occ, double floor);
float gaussConstant(const float* var, int len, float sign);
double gaussConstant(const double* var, int len, double sign);
void lessHalf(const float* src, const float* constant, float* dst, int len);
void lessHalf(const double* src, const double* constant, double* dst, int len);
void lessHalf(const std::int32_t* src, const std::int32_t* constant, std::int32_t* dst, int len);

}  // namespace plain
