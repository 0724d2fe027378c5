#include "plain/clustering.h"

#include <cmath>

namespace plain {
namespace {

template <class T>
void statistics(const T* __restrict mean, const T* __restrict var, T* __restrict sum, T* __restrict sqr, int len,
                T occ) {
    for (int i = 0; i < len; ++i) {
        sum[i] = mean[i] * occ;
        sqr[i] = (1 / var[i] + mean[i] * mean[i]) * occ;
    }
}
template <class T>
void directStatistics(const T* __restrict mean, const T* __restrict var, T* __restrict sum, T* __restrict sqr, int len,
                      T occ) {
    for (int i = 0; i < len; ++i) {
        sum[i] = mean[i] * occ;
        sqr[i] = (mean[i] * mean[i] + var[i]) * occ;
    }
}

template <class T>
double pool(const T* __restrict sum, const T* __restrict sqr, int len, double occ) {
    double logarithms = 0;
    for (int i = 0; i < len; ++i) {
        const double s = sum[i], q = sqr[i];
        logarithms += std::log(q * occ - s * s);
    }
    return 0.5 * occ * (len * (2 * std::log(occ) - 1 - 1.8378770664093456) - logarithms);
}

template <class T>
double mergeInto(const T* __restrict m1, const T* __restrict v1, const T* __restrict m2, const T* __restrict v2,
                 T* __restrict mean, T* __restrict var, int len, T w1, T w2) {
    const T weight = w1 + w2;
    double constant = len * 1.8378770664093;
    for (int i = 0; i < len; ++i) {
        mean[i] = (w1 * m1[i] + w2 * m2[i]) / weight;
        var[i] = ((m1[i] * m1[i] + v1[i]) * w1 + (m2[i] * m2[i] + v2[i]) * w2) / weight - mean[i] * mean[i];
        constant -= std::log(static_cast<double>(var[i]));
    }
    return constant;
}

template <class T>
double logarithms(const T* __restrict m1, const T* __restrict v1, const T* __restrict m2, const T* __restrict v2,
                  int len, double w1, double w2) {
    const double weight = w1 + w2;
    double sum = 0;
    for (int i = 0; i < len; ++i) {
        const double a = m1[i], b = m2[i], mean = (w1 * a + w2 * b) / weight;
        sum += std::log(((a * a + v1[i]) * w1 + (b * b + v2[i]) * w2) / weight - mean * mean);
    }
    return sum;
}

template <class T>
void halves(T* __restrict up, const T* __restrict var, T* __restrict down, T* __restrict dstVar, int len, T val) {
    for (int i = 0; i < len; ++i) {
        const T mean = up[i], shift = val * std::sqrt(var[i]);
        down[i] = mean - shift;
        up[i] = mean + shift;
        dstVar[i] = var[i];
    }
}

}  // namespace

void accumulate(const float* mean, const float* var, float* sum, float* sqr, int len, float occ) {
    statistics(mean, var, sum, sqr, len, occ);
}
void accumulate(const double* mean, const double* var, double* sum, double* sqr, int len, double occ) {
    statistics(mean, var, sum, sqr, len, occ);
}
void accumulateDirect(const float* mean, const float* var, float* sum, float* sqr, int len, float occ) {
    directStatistics(mean, var, sum, sqr, len, occ);
}
void accumulateDirect(const double* mean, const double* var, double* sum, double* sqr, int len, double occ) {
    directStatistics(mean, var, sum, sqr, len, occ);
}
double likelihood(const float* sum, const float* sqr, int len, double occ) { return pool(sum, sqr, len, occ); }
double likelihood(const double* sum, const double* sqr, int len, double occ) { return pool(sum, sqr, len, occ); }
double merge(const float* m1, const float* v1, const float* m2, const float* v2, float* mean, float* var, int len,
             float w1, float w2) {
    return mergeInto(m1, v1, m2, v2, mean, var, len, w1, w2);
}
double merge(const double* m1, const double* v1, const double* m2, const double* v2, double* mean, double* var, int len,
             double w1, double w2) {
    return mergeInto(m1, v1, m2, v2, mean, var, len, w1, w2);
}
double mergeLogarithms(const float* m1, const float* v1, const float* m2, const float* v2, int len, double w1,
                       double w2) {
    return logarithms(m1, v1, m2, v2, len, w1, w2);
}
double mergeLogarithms(const double* m1, const double* v1, const double* m2, const double* v2, int len, double w1,
                       double w2) {
    return logarithms(m1, v1, m2, v2, len, w1, w2);
}
void split(float* up, const float* var, float* down, float* dstVar, int len, float val) {
    halves(up, var, down, dstVar, len, val);
}
void split(double* up, const double* var, double* down, double* dstVar, int len, double val) {
    halves(up, var, down, dstVar, len, val);
}

}  // namespace plain
