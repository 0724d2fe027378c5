#include "plain/features.h"

#include <algorithm>
#include <cstddef>

namespace plain {

// Row by row into the results: unit stride, and as many independent sums as there are columns.
void meanVarColumn(const float* src, int height, int step, float* __restrict mean, float* __restrict var, int width) {
    std::fill_n(mean, width, 0.0f);
    std::fill_n(var, width, 0.0f);
    for (int i = 0; i < height; ++i) {
        const float* x = src + static_cast<std::ptrdiff_t>(i) * step;
        for (int j = 0; j < width; ++j) {
            mean[j] += x[j];
            var[j] += x[j] * x[j];
        }
    }
    const float r = 1.0f / static_cast<float>(height), s = 1.0f / static_cast<float>(height - 1);
    for (int j = 0; j < width; ++j) {
        mean[j] *= r;
        var[j] = (var[j] - static_cast<float>(height) * mean[j] * mean[j]) * s;
    }
}

void weightedMeanVarColumn(const float* src, int step, const float* weight, int height, float* __restrict mean,
                           float* __restrict var, int width) {
    std::fill_n(mean, width, 0.0f);
    std::fill_n(var, width, 0.0f);
    for (int i = 0; i < height; ++i) {
        const float* x = src + static_cast<std::ptrdiff_t>(i) * step;
        for (int j = 0; j < width; ++j) {
            mean[j] += weight[i] * x[j];
            var[j] += weight[i] * (x[j] * x[j]);
        }
    }
    for (int j = 0; j < width; ++j) var[j] -= mean[j] * mean[j];
}

void compensateOffset(const float* src, float* dst, int len, float* srcLast, float dstLast, float val) {
    float before = *srcLast, y = dstLast;
    for (int n = 0; n < len; ++n) {
        y = src[n] - before + val * y;
        before = src[n];
        dst[n] = y;
    }
    *srcLast = before;
}

void compensateOffset(const std::int16_t* src, std::int16_t* dst, int len, std::int16_t* srcLast, std::int16_t dstLast,
                      float val) {
    const int q = static_cast<int>(val * 4096.0f);
    int before = *srcLast, y = dstLast;
    for (int n = 0; n < len; ++n) {
        const int d = std::clamp(src[n] - before, -32768, 32767);
        y = std::clamp(((y * q) >> 12) + d, -32768, 32767);
        before = src[n];
        dst[n] = static_cast<std::int16_t>(y);
    }
    *srcLast = static_cast<std::int16_t>(before);
}

namespace {

// One operator over the whole utterance, from the columns at x to the columns at d of the same rows.
void operator2(float* x, float* __restrict d, int width, int step, int height, float val) {
    for (int t = 0; t < height; ++t) {
        const auto row = [&](int at) { return x + static_cast<std::ptrdiff_t>(std::clamp(at, 0, height - 1)) * step; };
        const float *x1 = row(t + 1), *x2 = row(t + 2), *y1 = row(t - 1), *y2 = row(t - 2);
        float* out = d + static_cast<std::ptrdiff_t>(t) * step;
        for (int c = 0; c < width; ++c) {
            const float a = x1[c] - y1[c], b = x2[c] - y2[c];
            out[c] = (a + b + b) * val;
        }
    }
}

}  // namespace

void delta2(const float* src, int width, float* dst, int step, int height, float val) {
    for (int t = 0; t < height; ++t) {
        std::copy_n(src + static_cast<std::ptrdiff_t>(t) * width, width, dst + static_cast<std::ptrdiff_t>(t) * step);
    }
    operator2(dst, dst + width, width, step, height, val);
}

void deltaDelta2(const float* src, int width, float* dst, int step, int height, float val1, float val2) {
    delta2(src, width, dst, step, height, val1);
    operator2(dst + width, dst + 2 * width, width, step, height, val2);
}

void dctLifter(const float* x, float* dst, const float* rows, int stride, const float* weight, int lenDCT, int lenCep) {
    for (int i = 0; i < lenCep; ++i) {
        float sum = 0;
        for (int j = 0; j < lenDCT; ++j) sum += x[j] * rows[static_cast<std::ptrdiff_t>(i) * stride + j];
        dst[i] = weight[i] * sum;
    }
}

void filterBank(const float* spectrum, float* dst, const int* center, const float* rises, const float* falls,
                int stride, int nFilter) {
    for (int k = 0; k < nFilter; ++k) {
        const float* rise = rises + static_cast<std::ptrdiff_t>(k) * stride - center[k];
        const float* fall = falls + static_cast<std::ptrdiff_t>(k) * stride - center[k + 1] - 1;
        float sum = 0;
        for (int j = center[k]; j <= center[k + 1]; ++j) sum += rise[j] * spectrum[j];
        for (int j = center[k + 1] + 1; j <= center[k + 2]; ++j) sum += fall[j] * spectrum[j];
        dst[k] = sum;
    }
}

void filterBank(const std::int16_t* spectrum, std::int16_t* dst, const int* center, const int* rises, const int* falls,
                int stride, int nFilter, int shift) {
    for (int k = 0; k < nFilter; ++k) {
        const int* rise = rises + static_cast<std::ptrdiff_t>(k) * stride - center[k];
        const int* fall = falls + static_cast<std::ptrdiff_t>(k) * stride - center[k + 1] - 1;
        std::int64_t sum = 0;
        for (int j = center[k]; j <= center[k + 1]; ++j) sum += rise[j] * spectrum[j];
        for (int j = center[k + 1] + 1; j <= center[k + 2]; ++j) sum += fall[j] * spectrum[j];
        dst[k] = static_cast<std::int16_t>(std::clamp<std::int64_t>(sum >> shift, -32768, 32767));
    }
}

}  // namespace plain
