#include "plain/matrix_products.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>

namespace plain {
namespace {

template <class R>
R saturated(std::int64_t sum) {
    return static_cast<R>(std::clamp<std::int64_t>(sum, std::numeric_limits<R>::min(), std::numeric_limits<R>::max()));
}

template <class R>
void shifted(const std::int16_t* src, int step, const std::int16_t* vec, int width, R* __restrict dst, int height,
             int sf) {
    for (int i = 0; i < height; ++i) {
        const std::int16_t* row = src + static_cast<std::ptrdiff_t>(i) * step;
        std::int64_t sum = 0;
        for (int j = 0; j < width; ++j) sum += row[j] * vec[j];
        dst[i] = saturated<R>(sf > 0 ? sum >> sf : sum << -sf);
    }
}

template <class T, class R>
void clamped(const T* vec, const T* src, int step, int height, R* __restrict dst, int width, int sf,
             double* __restrict sums) {
    std::fill_n(sums, width, 0.0);
    for (int i = 0; i < height; ++i) {
        const T* row = src + static_cast<std::ptrdiff_t>(i) * step;
        const double x = vec[i];
        for (int j = 0; j < width; ++j) sums[j] += x * row[j];
    }
    const double factor = std::ldexp(1.0, -sf);
    for (int j = 0; j < width; ++j) {
        const double y =
            std::clamp<double>(sums[j] * factor, std::numeric_limits<R>::min(), std::numeric_limits<R>::max());
        dst[j] = static_cast<R>(std::nearbyint(y));
    }
}

}  // namespace

void matVecMul(const float* src, int step, const float* vec, int width, float* __restrict dst, int height) {
    for (int i = 0; i < height; ++i) {
        const float* row = src + static_cast<std::ptrdiff_t>(i) * step;
        float sum = 0;
        for (int j = 0; j < width; ++j) sum += row[j] * vec[j];
        dst[i] = sum;
    }
}
void matVecMul(const std::int16_t* src, int step, const std::int16_t* vec, int width, std::int16_t* dst, int height,
               int sf) {
    shifted(src, step, vec, width, dst, height, sf);
}
void matVecMul(const std::int16_t* src, int step, const std::int16_t* vec, int width, std::int32_t* dst, int height,
               int sf) {
    shifted(src, step, vec, width, dst, height, sf);
}
void matVecMul(const std::int32_t* src, int step, const std::int32_t* vec, int width, std::int32_t* __restrict dst,
               int height, int sf) {
    const double factor = std::ldexp(1.0, -sf);
    for (int i = 0; i < height; ++i) {
        const std::int32_t* row = src + static_cast<std::ptrdiff_t>(i) * step;
        double sum = 0;
        for (int j = 0; j < width; ++j) sum += static_cast<double>(row[j]) * vec[j];
        dst[i] = static_cast<std::int32_t>(std::nearbyint(sum * factor));
    }
}
void vecMatMul(const float* vec, const float* src, int step, int height, float* __restrict dst, int width) {
    std::fill_n(dst, width, 0.0f);
    for (int i = 0; i < height; ++i) {
        const float* row = src + static_cast<std::ptrdiff_t>(i) * step;
        for (int j = 0; j < width; ++j) dst[j] += vec[i] * row[j];
    }
}
void vecMatMul(const std::int16_t* vec, const std::int16_t* src, int step, int height, std::int16_t* dst, int width,
               int sf, double* sums) {
    clamped(vec, src, step, height, dst, width, sf, sums);
}
void vecMatMul(const std::int16_t* vec, const std::int16_t* src, int step, int height, std::int32_t* dst, int width,
               int sf, double* sums) {
    clamped(vec, src, step, height, dst, width, sf, sums);
}
void vecMatMul(const std::int32_t* vec, const std::int32_t* src, int step, int height, std::int32_t* dst, int width,
               int sf, double* sums) {
    clamped(vec, src, step, height, dst, width, sf, sums);
}

}  // namespace plain
