#include "plain/accumulate.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace plain {
namespace {

template <class T>
inline void addDeviations(const T* src, const T* mean, T* __restrict meanAcc, T* __restrict varAcc, int len, T val) {
    for (int i = 0; i < len; ++i) {
        const T d = src[i] - mean[i], t = d * val;
        meanAcc[i] += t;
        varAcc[i] += d * t;
    }
}

template <class S>
inline void addRows(const S* src, int step, int height, float* __restrict sum, float* __restrict sumSq, int width) {
    for (int i = 0; i < height; ++i) {
        const S* x = src + std::ptrdiff_t{i} * step;
        for (int j = 0; j < width; ++j) {
            const auto value = static_cast<float>(x[j]);
            sum[j] += value;
            sumSq[j] += value * value;
        }
    }
}

template <class S>
inline void addProducts(const S* src, int step, int height, const S* mean, double* __restrict dst, int width,
                        double val, double* __restrict sums, double* __restrict deviations) {
    std::fill_n(sums, std::ptrdiff_t{width} * width, 0.0);
    for (int f = 0; f < height; ++f) {
        const S* x = src + std::ptrdiff_t{f} * step;
        for (int j = 0; j < width; ++j) deviations[j] = static_cast<double>(x[j]) - static_cast<double>(mean[j]);
        for (int i = 0; i < width; ++i) {
            double* row = sums + std::ptrdiff_t{i} * width;
            const double xi = x[i];
            for (int j = i; j < width; ++j) row[j] += (xi - static_cast<double>(mean[j])) * deviations[j];
        }
    }
    for (int i = 0; i < width; ++i) {
        for (int j = i; j < width; ++j) {
            const std::ptrdiff_t at = std::ptrdiff_t{i} * width + j;
            dst[at] += val * sums[at];
            dst[std::ptrdiff_t{j} * width + i] = dst[at];
        }
    }
}

template <class S>
inline void subtractMeans(const S* src, int step, int height, const S* mean, double* __restrict dst, int width) {
    for (int f = 0; f < height; ++f) {
        const S* x = src + std::ptrdiff_t{f} * step;
        double* row = dst + std::ptrdiff_t{f} * width;
        for (int j = 0; j < width; ++j) row[j] = static_cast<double>(x[j]) - static_cast<double>(mean[j]);
    }
}

}  // namespace

void meanVarAcc(const float* src, const float* mean, float* meanAcc, float* varAcc, int len, float val) {
    addDeviations(src, mean, meanAcc, varAcc, len, val);
}
void meanVarAcc(const double* src, const double* mean, double* meanAcc, double* varAcc, int len, double val) {
    addDeviations(src, mean, meanAcc, varAcc, len, val);
}
void sumMeanVar(const float* src, int step, int height, float* sum, float* sumSq, int width) {
    addRows(src, step, height, sum, sumSq, width);
}
void sumMeanVar(const std::int16_t* src, int step, int height, float* sum, float* sumSq, int width) {
    addRows(src, step, height, sum, sumSq, width);
}
void newVar(const float* mean, const float* sumSq, float* __restrict dst, int len, float val1, float val2) {
    for (int i = 0; i < len; ++i) {
        const double square = mean[i] * mean[i];
        dst[i] = static_cast<float>((static_cast<double>(sumSq[i]) - square * static_cast<double>(val1)) *
                                    static_cast<double>(val2));
    }
}
void newVarInPlace(const float* mean, float* __restrict sumSq, int len, float val1, float val2) {
    for (int i = 0; i < len; ++i) sumSq[i] = (sumSq[i] - mean[i] * mean[i] * val1) * val2;
}
void newVar(const std::int32_t* mean, const std::int32_t* sumSq, std::int32_t* __restrict dst, int len, float scale,
            float val1, float val2) {
    for (int i = 0; i < len; ++i) {
        const auto m = static_cast<float>(mean[i]);
        const float var = (static_cast<float>(sumSq[i]) - m * m * val1) * val2 * scale;
        dst[i] = var >= 2147483648.0f
                     ? 2147483647
                     : static_cast<std::int32_t>(std::rint(var < -2147483648.0f ? -2147483648.0f : var));
    }
}
void accCovariance(const float* src, int step, int height, const float* mean, double* dst, int width, double val,
                   double* sums, double* deviations) {
    addProducts(src, step, height, mean, dst, width, val, sums, deviations);
}
void accCovariance(const std::int16_t* src, int step, int height, const std::int16_t* mean, double* dst, int width,
                   double val, double* sums, double* deviations) {
    addProducts(src, step, height, mean, dst, width, val, sums, deviations);
}
void centred(const float* src, int step, int height, const float* mean, double* dst, int width) {
    subtractMeans(src, step, height, mean, dst, width);
}
void centred(const std::int16_t* src, int step, int height, const std::int16_t* mean, double* dst, int width) {
    subtractMeans(src, step, height, mean, dst, width);
}

}  // namespace plain
