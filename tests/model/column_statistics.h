// Column statistics, one column and one row after the other.
#pragma once

#include <cstddef>

namespace model {

inline void meanVarColumn(const float* src, int height, int step, float* mean, float* var, int width) {
    const float r = (float)(1.0 / (double)height);
    const float s = (float)(1.0 / (double)(height - 1));
    // Read anew, so that the compiler does not subtract h times a square instead: that is the same to nearest alone.
    const volatile float minusH = -(float)height;
    for (int j = 0; j < width; ++j) {
        float sum = 0, sumSq = 0;
        for (int i = 0; i < height; ++i) {
            const float x = src[(std::ptrdiff_t)i * step + j];
            sum += x;
            const float square = x * x;
            sumSq += square;
        }
        mean[j] = sum * r;
        const float meanSq = mean[j] * mean[j];
        const float term = minusH * meanSq;
        var[j] = (sumSq + term) * s;
    }
}

inline void weightedMeanVarColumn(const float* src, int step, const float* weight, int height, float* mean, float* var,
                                  int width) {
    for (int j = 0; j < width; ++j) {
        float sum = 0, sumSq = 0;
        for (int i = 0; i < height; ++i) {
            const float x = src[(std::ptrdiff_t)i * step + j];
            const float wx = weight[i] * x;
            sum += wx;
            const float square = x * x;
            const float wxx = weight[i] * square;
            sumSq += wxx;
        }
        mean[j] = sum;
        const float meanSq = sum * sum;
        var[j] = sumSq - meanSq;
    }
}

}  // namespace model
