#include "plain/row_reductions.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <type_traits>

namespace plain {
namespace {

template <class S, class T>
inline void columns(const S* src, int step, int height, T* __restrict dst, int width) {
    for (int j = 0; j < width; ++j) dst[j] = 0;
    for (int i = 0; i < height; ++i) {
        const S* row = src + std::ptrdiff_t{i} * step;
        for (int j = 0; j < width; ++j) dst[j] += static_cast<T>(row[j]);
    }
}

template <class S, class T>
inline void rows(const S* src, int width, int step, T* __restrict dst, int height) {
    for (int i = 0; i < height; ++i) {
        const S* row = src + std::ptrdiff_t{i} * step;
        T sum = 0;
        for (int j = 0; j < width; ++j) sum += static_cast<T>(row[j]);
        dst[i] = sum;
    }
}

template <class S, class T>
inline void map(const S* src, T* __restrict dst, int len, float min, float max, float lower, float upper, float range) {
    const float w = max - min, hi = upper * w + min, lo = min + lower * w, k = range / (upper * w - lower * w);
    for (int i = 0; i < len; ++i) {
        const float x = static_cast<float>(src[i]), clipped = x < hi ? x : hi, above = clipped - lo;
        const float y = (above > 0 ? above : 0) * k;
        if constexpr (std::is_same_v<T, float>) {
            dst[i] = y;
        } else {
            const int whole = static_cast<int>(std::rint(y));
            dst[i] =
                static_cast<T>(std::clamp<int>(whole, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()));
        }
    }
}

}  // namespace

void sumColumns(const float* src, int step, int height, float* dst, int width) {
    columns(src, step, height, dst, width);
}
void sumColumns(const double* src, int step, int height, double* dst, int width) {
    columns(src, step, height, dst, width);
}
void sumColumns(const std::int16_t* src, int step, int height, float* dst, int width) {
    columns(src, step, height, dst, width);
}
void sumRows(const float* src, int width, int step, float* dst, int height) { rows(src, width, step, dst, height); }
void sumRows(const double* src, int width, int step, double* dst, int height) { rows(src, width, step, dst, height); }
void sumRows(const std::int16_t* src, int width, int step, float* dst, int height) {
    rows(src, width, step, dst, height);
}

void subRow(const float* __restrict row, int width, float* __restrict srcDst, int step, int height) {
    for (int i = 0; i < height; ++i) {
        float* x = srcDst + std::ptrdiff_t{i} * step;
        for (int j = 0; j < width; ++j) x[j] -= row[j];
    }
}
void subRow(const std::int16_t* __restrict row, int width, std::int16_t* __restrict srcDst, int step, int height) {
    for (int i = 0; i < height; ++i) {
        std::int16_t* x = srcDst + std::ptrdiff_t{i} * step;
        for (int j = 0; j < width; ++j) x[j] = static_cast<std::int16_t>(std::clamp(x[j] - row[j], -32768, 32767));
    }
}
void normalizeColumns(float* __restrict srcDst, int step, int height, const float* __restrict mean,
                      const float* __restrict scale, int width) {
    for (int i = 0; i < height; ++i) {
        float* x = srcDst + std::ptrdiff_t{i} * step;
        for (int j = 0; j < width; ++j) x[j] = (x[j] - mean[j]) * scale[j];
    }
}
void normalizeColumns(std::int16_t* __restrict srcDst, int step, int height, const std::int16_t* __restrict mean,
                      const std::int16_t* __restrict scale, int width, int shift) {
    for (int i = 0; i < height; ++i) {
        std::int16_t* x = srcDst + std::ptrdiff_t{i} * step;
        for (int j = 0; j < width; ++j) {
            x[j] = static_cast<std::int16_t>(std::clamp((x[j] - mean[j]) * scale[j] >> shift, -32768, 32767));
        }
    }
}

void mapInRange(const float* src, float* dst, int len, float min, float max, float lower, float upper, float range) {
    map(src, dst, len, min, max, lower, upper, range);
}
void mapInRange(const float* src, std::int16_t* dst, int len, float min, float max, float lower, float upper,
                float range) {
    map(src, dst, len, min, max, lower, upper, range);
}
void mapInRange(const float* src, std::uint8_t* dst, int len, float min, float max, float lower, float upper,
                float range) {
    map(src, dst, len, min, max, lower, upper, range);
}
void mapInRange(const std::int16_t* src, std::int16_t* dst, int len, float min, float max, float lower, float upper,
                float range) {
    map(src, dst, len, min, max, lower, upper, range);
}
void mapInRange(const std::int16_t* src, std::uint8_t* dst, int len, float min, float max, float lower, float upper,
                float range) {
    map(src, dst, len, min, max, lower, upper, range);
}

}  // namespace plain
