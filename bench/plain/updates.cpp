#include "plain/updates.h"

#include <cmath>

namespace plain {
namespace {

template <class T>
bool variance(const T* __restrict mean, const T* __restrict var, const T* __restrict floor, T* __restrict dst, int len,
              T meanR, T varR) {
    int floored = 0;
    for (int i = 0; i < len; ++i) {
        const T m = mean[i] * meanR, v = var[i] * varR - m * m;
        const bool above = v > floor[i];
        dst[i] = above ? v : floor[i];
        floored += above ? 0 : 1;
    }
    return floored == len;
}

template <class T>
bool weights(const T* __restrict src, T* __restrict dst, int len, T* sum, T r, T floor) {
    int floored = 0;
    T total = 0;
    for (int i = 0; i < len; ++i) {
        const T w = src[i] * r;
        const bool above = w > floor;
        dst[i] = above ? w : floor;
        total += dst[i];
        floored += above ? 0 : 1;
    }
    *sum = total;
    return floored == len;
}

template <class T>
T constant(const T* var, int len, T sign) {
    T sum = 0;
    for (int i = 0; i < len; ++i) sum += std::log(var[i]);
    return static_cast<T>(len * 1.8378770664093) + sign * sum;
}

}  // namespace

void updateMean(const float* __restrict src, float* __restrict mean, int len, float occ) {
    const float r = 1 / occ;
    for (int i = 0; i < len; ++i) mean[i] += src[i] * r;
}
void updateMean(const double* __restrict src, double* __restrict mean, int len, double occ) {
    for (int i = 0; i < len; ++i) mean[i] += src[i] / occ;
}
bool updateVar(const float* mean, const float* var, const float* floor, float* dst, int len, float meanOcc,
               float varOcc) {
    return variance(mean, var, floor, dst, len, 1 / meanOcc, 1 / varOcc);
}
bool updateVar(const double* __restrict mean, const double* __restrict var, const double* __restrict floor,
               double* __restrict dst, int len, double meanOcc, double varOcc) {
    int floored = 0;
    for (int i = 0; i < len; ++i) {
        const double m = mean[i] / meanOcc, v = var[i] / varOcc - m * m;
        const bool above = v > floor[i];
        dst[i] = above ? v : floor[i];
        floored += above ? 0 : 1;
    }
    return floored == len;
}
bool updateWeight(const float* src, float* dst, int len, float* sum, float occ, float floor) {
    return weights(src, dst, len, sum, 1 / occ, floor);
}
bool updateWeight(const double* src, double* dst, int len, double* sum, double occ, double floor) {
    return weights(src, dst, len, sum, 1 / occ, floor);
}
float gaussConstant(const float* var, int len, float sign) { return constant(var, len, sign); }
double gaussConstant(const double* var, int len, double sign) { return constant(var, len, sign); }

void lessHalf(const float* __restrict src, const float* __restrict constant, float* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = src[i] - 0.5f * constant[i];
}
void lessHalf(const double* __restrict src, const double* __restrict constant, double* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = src[i] - 0.5 * constant[i];
}
void lessHalf(const std::int32_t* __restrict src, const std::int32_t* __restrict constant, std::int32_t* __restrict dst,
              int len) {
    for (int i = 0; i < len; ++i) dst[i] = src[i] - (constant[i] >> 1);
}

}  // namespace plain
