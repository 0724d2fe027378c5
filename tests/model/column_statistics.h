// Column statistics, one column and one row after the other. x[i][j] is column j of row i, h the number of rows.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include "model/convert.h"
#include "model/integers.h"
#include "vornsr/types.h"

namespace model {

// Read anew, so that the compiler does not subtract h times a square instead: that is the same to nearest alone.
inline float minusHeight(int h) {
    const volatile float value = -(float)h;
    return value;
}

// ---- Singles.

// acc + (x[i] + x[i + 1]), an odd last row alone, from zero.
template <class S>
float sumOfPairs(const S* const* x, int h, int j) {
    float acc = 0;
    for (int i = 0; i < h; i += 2) {
        if (i + 1 < h) {
            const float pair = (float)x[i][j] + (float)x[i + 1][j];
            acc = acc + pair;
        } else {
            acc = acc + (float)x[i][j];
        }
    }
    return acc;
}
template <class S>
float squaresOnto(float acc, const S* const* x, int h, int j) {
    for (int i = 0; i < h; ++i) {
        const float value = (float)x[i][j];
        const float square = value * value;
        acc = acc + square;
    }
    return acc;
}

inline void meanColumn(const float* const* x, int h, float* mean, int width) {
    const float r = (float)(1.0 / (double)h);
    for (int j = 0; j < width; ++j) mean[j] = sumOfPairs(x, h, j) * r;
}

inline void varColumn(const float* const* x, int h, const float* mean, float* var, int width) {
    const float s = (float)(1.0 / (double)(h - 1)), minusH = minusHeight(h);
    for (int j = 0; j < width; ++j) {
        const float meanSq = mean[j] * mean[j];
        const float term = minusH * meanSq;
        var[j] = squaresOnto(term, x, h, j) * s;
    }
}

inline void meanVarColumn(const float* const* x, int h, float* mean, float* var, int width) {
    const float r = (float)(1.0 / (double)h), s = (float)(1.0 / (double)(h - 1)), minusH = minusHeight(h);
    for (int j = 0; j < width; ++j) {
        float sum = 0;
        for (int i = 0; i < h; ++i) sum = sum + x[i][j];
        const float sumSq = squaresOnto(0.0f, x, h, j);
        mean[j] = sum * r;
        const float meanSq = mean[j] * mean[j];
        const float term = minusH * meanSq;
        var[j] = (sumSq + term) * s;
    }
}

// ---- With a weight w[i] a row.

template <class T>
T weightedSum(const T* const* x, const T* w, int h, int j) {
    T sum = 0;
    for (int i = 0; i < h; ++i) {
        const T term = w[i] * x[i][j];
        sum = sum + term;
    }
    return sum;
}
template <class T>
T weightedSquares(const T* const* x, const T* w, int h, int j) {
    T sum = 0;
    for (int i = 0; i < h; ++i) {
        const T square = x[i][j] * x[i][j];
        const T term = w[i] * square;
        sum = sum + term;
    }
    return sum;
}
template <class T>
void weightedMeanColumn(const T* const* x, const T* w, int h, T* mean, int width) {
    for (int j = 0; j < width; ++j) mean[j] = weightedSum(x, w, h, j);
}
template <class T>
void weightedVarColumn(const T* const* x, const T* w, int h, const T* mean, T* var, int width) {
    for (int j = 0; j < width; ++j) {
        const T meanSq = mean[j] * mean[j];
        var[j] = weightedSquares(x, w, h, j) - meanSq;
    }
}
template <class T>
void weightedMeanVarColumn(const T* const* x, const T* w, int h, T* mean, T* var, int width) {
    weightedMeanColumn(x, w, h, mean, width);
    weightedVarColumn(x, w, h, mean, var, width);
}

// ---- 16-bit integers. rounded: the way through singles; otherwise the one through integers, which truncates.

// The number truncated, shifted right by sf or left by its negative, in 64 bits and counts modulo 64, saturated.
inline Vorn16s truncatedAndShifted(float x, int sf) {
    const Big whole = (Big)(std::int64_t)std::trunc(x);
    const long long left = sf > 0 ? 0 : -(long long)sf % 64, right = sf > 0 ? sf % 64 : 0;
    const Big divisor = Big{1} << right;
    Big shifted = whole / divisor;
    if (whole % divisor < 0) shifted -= 1;
    return saturateTo<Vorn16s>((Big)wrapTo<std::int64_t>(shifted * (Big{1} << left)));
}

inline void meanColumn(const Vorn16s* const* x, int h, Vorn16s* mean, int width, bool rounded) {
    const float r = 1.0f / (float)h;
    for (int j = 0; j < width; ++j) {
        if (rounded) {
            mean[j] = to16s(sumOfPairs(x, h, j) * r, vornRndNear, 1.0f);
        } else {
            std::int64_t sum = 0;
            for (int i = 0; i < h; ++i) sum += x[i][j];
            const float product = (float)sum * r;
            mean[j] = (Vorn16s)std::trunc(product);
        }
    }
}

inline void varColumn(const Vorn16s* const* x, int h, const Vorn16s* mean, Vorn16s* var, int width, int sf,
                      bool rounded) {
    const float s = 1.0f / (float)(h - 1), minusH = minusHeight(h);
    for (int j = 0; j < width; ++j) {
        if (rounded) {
            const float m = (float)mean[j];
            const float meanSq = m * m;
            const float term = minusH * meanSq;
            var[j] = to16s((squaresOnto(0.0f, x, h, j) + term) * s, vornRndNear, singleOfScale(sf));
        } else {
            std::int64_t acc = -(std::int64_t)h * mean[j] * mean[j];
            for (int i = 0; i < h; ++i) acc += x[i][j] * x[i][j];
            var[j] = truncatedAndShifted((float)acc * s, sf);
        }
    }
}

inline void meanVarColumn(const Vorn16s* const* x, int h, Vorn16s* mean, Vorn16s* var, int width, int sf,
                          bool rounded) {
    const float r = 1.0f / (float)h, s = 1.0f / (float)(h - 1), minusH = minusHeight(h);
    for (int j = 0; j < width; ++j) {
        const float sumSq = squaresOnto(0.0f, x, h, j);
        if (rounded) {
            const float m = sumOfPairs(x, h, j) * r;
            const float meanSq = m * m;
            const float term = minusH * meanSq;
            mean[j] = to16s(m, vornRndNear, 1.0f);
            var[j] = to16s((sumSq + term) * s, vornRndNear, singleOfScale(sf));
        } else {
            std::int64_t sum = 0;
            for (int i = 0; i < h; ++i) sum += x[i][j];
            const float m = (float)sum * r;
            mean[j] = (Vorn16s)std::trunc(m < -32768.0f ? -32768.0f : m > 32767.0f ? 32767.0f : m);
            const float meanSq = m * m;
            const float term = meanSq * (float)h;
            var[j] = truncatedAndShifted((sumSq - term) * s, sf);
        }
    }
}

// ---- 16-bit integers to wider results, in double. inSingle: the reciprocals are those of singles.

struct DoubleStatistics {
    double mean, var;
};
inline DoubleStatistics doubleStatistics(const Vorn16s* const* x, int h, int j, bool inSingle, double scale) {
    double sum = 0, sumSq = 0;
    for (int i = 0; i < h; ++i) {
        sum = sum + (double)x[i][j];
        sumSq = sumSq + (double)(x[i][j] * x[i][j]);
    }
    const double r = inSingle ? (double)(1.0f / (float)h) : 1.0 / (double)h;
    const double s = inSingle ? (double)(1.0f / (float)(h - 1)) : 1.0 / (double)(h - 1);
    const double mean = sum * r;
    const double meanSq = mean * mean;
    const double term = meanSq * (double)h;
    const double factor = s * scale;
    return {mean, (sumSq - term) * factor};
}
// 2^-sf, infinite or zero where a double cannot hold it.
inline double doubleOfScale(int sf) {
    if (sf <= -1024) return std::numeric_limits<double>::infinity();
    return sf > 1074 ? 0.0 : std::ldexp(1.0, -sf);
}
inline void meanVarColumn(const Vorn16s* const* x, int h, Vorn32s* mean, Vorn32s* var, int width, int sf,
                          bool inSingle) {
    for (int j = 0; j < width; ++j) {
        const DoubleStatistics d = doubleStatistics(x, h, j, inSingle, doubleOfScale(sf));
        mean[j] = to32s(d.mean, vornRndNear, 1.0f);
        var[j] = to32s(d.var, vornRndNear, 1.0f);
    }
}
inline void meanVarColumn(const Vorn16s* const* x, int h, Vorn16s* mean, Vorn32s* var, int width, bool inSingle) {
    for (int j = 0; j < width; ++j) {
        const DoubleStatistics d = doubleStatistics(x, h, j, inSingle, 1.0);
        mean[j] = wrapTo<Vorn16s>((Big)nearestWhole(d.mean));
        var[j] = wrapTo<Vorn32s>((Big)nearestWhole(d.var));
    }
}

}  // namespace model
