#include "plain/distances.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace plain {
namespace {

template <class R, class T>
R sumOfSquares(const T* x, const T* m, const T* v, int len) {
    R sum = 0;
    for (int j = 0; j < len; ++j) {
        const R d = static_cast<R>(x[j]) - static_cast<R>(m[j]);
        sum += d * d * static_cast<R>(v[j]);
    }
    return sum;
}
template <class T>
void ofFrames(const T* src, int step, const T* m, const T* v, int len, T* dst, int height) {
    for (int r = 0; r < height; ++r) dst[r] = sumOfSquares<T>(src + static_cast<long>(r) * step, m, v, len);
}
template <class T>
void ofGaussians(const T* m, const T* v, int step, const T* x, int len, T* dst, int height) {
    for (int r = 0; r < height; ++r) {
        const long row = static_cast<long>(r) * step;
        dst[r] = sumOfSquares<T>(x, m + row, v + row, len);
    }
}

// False where a mean or a variance is not above zero, as the library tests it.
bool usable(const float* mean1, const float* var1, const float* mean2, const float* var2, int len) {
    bool faulty = false;
    for (int j = 0; j < len; ++j) faulty |= mean1[j] <= 0 || var1[j] <= 0 || mean2[j] <= 0 || var2[j] <= 0;
    return !faulty;
}
template <class R>
R ratios(const float* mean1, const float* var1, const float* mean2, const float* var2, int len) {
    if (!usable(mean1, var1, mean2, var2, len)) return 0;
    R k = 0, l = 0;
    for (int j = 0; j < len; ++j) {
        const R d = static_cast<R>(mean1[j]) - static_cast<R>(mean2[j]);
        const R v1 = static_cast<R>(var1[j]), v2 = static_cast<R>(var2[j]), sum = v1 + v2;
        k += d * d / sum;
        l += std::log(sum * sum / (v1 * v2));
    }
    return R(0.25) * k + R(0.25) * (l - static_cast<R>(len) * R(1.386294));
}
template <class R>
R sums(const float* mean1, const float* var1, const float* mean2, const float* var2, int len, float sumLogs) {
    if (!usable(mean1, var1, mean2, var2, len)) return 0;
    R k = 0, l = 0;
    for (int j = 0; j < len; ++j) {
        const R d = static_cast<R>(mean1[j]) - static_cast<R>(mean2[j]);
        const R sum = static_cast<R>(var1[j]) + static_cast<R>(var2[j]);
        k += d * d / sum;
        l += std::log(sum);
    }
    return R(0.25) * k + R(0.5) * (l - static_cast<R>(len) * R(0.693147)) - R(0.25) * static_cast<R>(sumLogs);
}

}  // namespace

float mahalanobis(const float* x, const float* m, const float* v, int len) { return sumOfSquares<float>(x, m, v, len); }
double mahalanobis(const double* x, const double* m, const double* v, int len) {
    return sumOfSquares<double>(x, m, v, len);
}
double mahalanobisWidened(const float* x, const float* m, const float* v, int len) {
    return sumOfSquares<double>(x, m, v, len);
}
float mahalanobis(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len) {
    return sumOfSquares<float>(x, m, v, len);
}
Vorn32s mahalanobis(const Vorn16s* x, const Vorn16s* m, const Vorn16s* v, int len, int scaleFactor) {
    const std::int64_t sum = sumOfSquares<std::int64_t>(x, m, v, len) >> scaleFactor;
    return static_cast<Vorn32s>(std::clamp<std::int64_t>(sum, INT32_MIN, INT32_MAX));
}

void mahalanobisOfFrames(const float* src, int step, const float* m, const float* v, int len, float* dst, int height) {
    ofFrames(src, step, m, v, len, dst, height);
}
void mahalanobisOfFrames(const double* src, int step, const double* m, const double* v, int len, double* dst,
                         int height) {
    ofFrames(src, step, m, v, len, dst, height);
}
void mahalanobisOfGaussians(const float* m, const float* v, int step, const float* x, int len, float* dst, int height) {
    ofGaussians(m, v, step, x, len, dst, height);
}
void mahalanobisOfGaussians(const double* m, const double* v, int step, const double* x, int len, double* dst,
                            int height) {
    ofGaussians(m, v, step, x, len, dst, height);
}

float bhattacharyya(const float* mean1, const float* var1, const float* mean2, const float* var2, int len) {
    return ratios<float>(mean1, var1, mean2, var2, len);
}
double bhattacharyyaWidened(const float* mean1, const float* var1, const float* mean2, const float* var2, int len) {
    return ratios<double>(mean1, var1, mean2, var2, len);
}
float bhattacharyyaOfSums(const float* mean1, const float* var1, const float* mean2, const float* var2, int len,
                          float sumLogs) {
    return sums<float>(mean1, var1, mean2, var2, len, sumLogs);
}
double bhattacharyyaOfSumsWidened(const float* mean1, const float* var1, const float* mean2, const float* var2, int len,
                                  float sumLogs) {
    return sums<double>(mean1, var1, mean2, var2, len, sumLogs);
}

void addRows(const float* src, int step, const Vorn32s* ind, const Vorn16u* addInd, int rows, float* dst, int len,
             float weight) {
    for (int j = 0; j < len; ++j) dst[j] = weight;
    for (int i = 0; i < rows; ++i) {
        const float* row = src + (static_cast<long>(ind[i]) + addInd[i]) * step;
        for (int j = 0; j < len; ++j) dst[j] += row[j];
    }
}

}  // namespace plain
