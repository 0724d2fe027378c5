// Accumulators, variances from sums and covariance-like matrices, one element after the other. A matrix is a list of
// rows.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "model/convert.h"
#include "model/integers.h"
#include "vornsr/types.h"

namespace model {

template <class T>
void meanVarAcc(const T* src, const T* mean, T* meanAcc, T* varAcc, int len, T val) {
    for (int i = 0; i < len; ++i) {
        const T d = src[i] - mean[i];
        const T t = d * val;
        meanAcc[i] = meanAcc[i] + t;
        const T dt = d * t;
        varAcc[i] = varAcc[i] + dt;
    }
}

// Adds to what stands in sum and sumSq.
template <class Source>
void addRowPairs(const Source* const* rows, int height, float* sum, float* sumSq, int width) {
    for (int j = 0; j < width; ++j) {
        for (int i = 0; i < height; i += 2) {
            const float x = (float)rows[i][j];
            const float xx = x * x;
            if (i + 1 == height) {
                sum[j] = sum[j] + x;
                sumSq[j] = sumSq[j] + xx;
            } else {
                const float y = (float)rows[i + 1][j];
                const float yy = y * y;
                const float both = x + y, bothSq = xx + yy;
                sum[j] = sum[j] + both;
                sumSq[j] = sumSq[j] + bothSq;
            }
        }
    }
}

inline float newVarSingle(float mean, float sumSq, float val1, float val2) {
    const float square = mean * mean;
    const float product = square * val1;
    const float difference = sumSq - product;
    return difference * val2;
}
inline float newVarMixed(float mean, float sumSq, float val1, float val2) {
    const float square = mean * mean;
    const double product = (double)square * (double)val1;
    const double difference = (double)sumSq - product;
    const double var = difference * (double)val2;
    return (float)var;
}
inline Vorn32s newVarRounded(Vorn32s mean, Vorn32s sumSq, float val1, float val2, int scaleFactor) {
    return to32s(newVarSingle((float)mean, (float)sumSq, val1, val2), 1, singleOfScale(scaleFactor));
}
inline Vorn32s newVarTruncated(Vorn32s mean, Vorn32s sumSq, float val1, float val2, int scaleFactor) {
    const float scaled = newVarSingle((float)mean, (float)sumSq, val1, val2) * singleOfScale(scaleFactor);
    const float clamped = scaled < -2147483648.0f ? -2147483648.0f : scaled > 2147483648.0f ? 2147483648.0f : scaled;
    // What no 32-bit integer holds becomes the smallest one.
    if (std::isnan(clamped) || clamped == 2147483648.0f) return INT32_MIN;
    return (Vorn32s)std::trunc(clamped);
}

// The sum over the frames, then times val.
template <class Source>
void accCovarianceWhole(const Source* const* rows, int height, const Source* mean, double* const* dst, int width,
                        double val) {
    for (int i = 0; i < width; ++i) {
        for (int j = i; j < width; ++j) {
            double sum = 0;
            for (int f = 0; f < height; ++f) {
                const double e = (double)rows[f][i] - (double)mean[j];
                const double d = (double)rows[f][j] - (double)mean[j];
                const double product = e * d;
                sum = sum + product;
            }
            const double scaled = val * sum;
            dst[i][j] = dst[i][j] + scaled;
            dst[j][i] = dst[i][j];
        }
    }
}

// Frame by frame.
inline void accCovarianceByFrame(const float* const* rows, int height, const float* mean, double* const* dst, int width,
                                 double val) {
    for (int f = 0; f < height; ++f) {
        for (int i = 0; i < width; ++i) {
            for (int j = i; j < width; ++j) {
                const float e = rows[f][i] - mean[j];
                const float d = rows[f][j] - mean[j];
                const double product = (double)e * (double)d;
                const double scaled = val * product;
                dst[i][j] = dst[i][j] + scaled;
            }
        }
    }
    for (int i = 0; i < width; ++i) {
        for (int j = i; j < width; ++j) dst[j][i] = dst[i][j];
    }
}
inline void accCovarianceByFrame(const Vorn16s* const* rows, int height, const Vorn16s* mean, double* const* dst,
                                 int width, double val) {
    for (int f = 0; f < height; ++f) {
        for (int i = 0; i < width; ++i) {
            int j = i;
            const auto add = [&](int e, int d) {
                const double product = (double)e * (double)d;
                const double scaled = val * product;
                dst[i][j] = dst[i][j] + scaled;
                ++j;
            };
            while (j + 4 <= width) {
                for (int k = 0; k < 4; ++k) {
                    add(saturateTo<Vorn16s>(rows[f][i] - mean[j]), saturateTo<Vorn16s>(rows[f][j] - mean[j]));
                }
            }
            while (j < width) add(rows[f][i] - mean[j], rows[f][j] - mean[j]);
        }
    }
    for (int i = 0; i < width; ++i) {
        for (int j = i; j < width; ++j) dst[j][i] = dst[i][j];
    }
}

}  // namespace model
