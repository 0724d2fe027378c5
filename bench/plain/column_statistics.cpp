#include "plain/column_statistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <type_traits>

namespace plain {
namespace {

// sum[j] += x, squares[j] += x^2, with a weight or without.
template <bool weighted, class S, class T>
void sums(const S* src, int step, const std::type_identity_t<T>* weight, int height, T* __restrict sum, int width) {
    std::fill_n(sum, width, T(0));
    for (int i = 0; i < height; ++i) {
        const S* x = src + std::ptrdiff_t{i} * step;
        for (int j = 0; j < width; ++j) sum[j] += (weighted ? weight[i] : T(1)) * static_cast<T>(x[j]);
    }
}
template <bool weighted, class S, class T>
void squareSums(const S* src, int step, const std::type_identity_t<T>* weight, int height, T* __restrict squares,
                int width) {
    std::fill_n(squares, width, T(0));
    for (int i = 0; i < height; ++i) {
        const S* row = src + std::ptrdiff_t{i} * step;
        for (int j = 0; j < width; ++j) {
            const T x = static_cast<T>(row[j]);
            squares[j] += (weighted ? weight[i] : T(1)) * (x * x);
        }
    }
}
template <bool weighted, class S, class T, class Q>
void bothSums(const S* src, int step, const std::type_identity_t<T>* weight, int height, T* __restrict sum,
              Q* __restrict squares, int width) {
    std::fill_n(sum, width, T(0));
    std::fill_n(squares, width, Q(0));
    for (int i = 0; i < height; ++i) {
        const S* row = src + std::ptrdiff_t{i} * step;
        for (int j = 0; j < width; ++j) {
            const T w = weighted ? weight[i] : T(1), x = static_cast<T>(row[j]);
            const Q q = static_cast<Q>(row[j]);
            sum[j] += w * x;
            squares[j] += static_cast<Q>(w) * (q * q);
        }
    }
}

template <class T>
struct Work {
    T first[mostColumns], second[mostColumns];
};
template <class T>
Work<T>& work() {
    static Work<T> here;
    return here;
}

template <class R, class T>
R rounded(T x) {
    return static_cast<R>(std::clamp(std::nearbyint(x), static_cast<T>(std::numeric_limits<R>::min()),
                                     static_cast<T>(std::numeric_limits<R>::max())));
}
template <class R>
R truncated(float x) {
    return static_cast<R>(std::clamp<std::int64_t>(static_cast<std::int64_t>(x), std::numeric_limits<R>::min(),
                                                   std::numeric_limits<R>::max()));
}

template <class T>
void weightedVar(const T* src, int step, const T* weight, int height, const T* mean, T* var, int width) {
    squareSums<true>(src, step, weight, height, var, width);
    for (int j = 0; j < width; ++j) var[j] -= mean[j] * mean[j];
}
template <class T>
void weightedMeanVar(const T* src, int step, const T* weight, int height, T* mean, T* var, int width) {
    bothSums<true>(src, step, weight, height, mean, var, width);
    for (int j = 0; j < width; ++j) var[j] -= mean[j] * mean[j];
}

template <class M>
void meanVarInDouble(const std::int16_t* src, int height, int step, M* mean, std::int32_t* var, int width) {
    auto& [sum, squares] = work<double>();
    bothSums<false>(src, step, nullptr, height, sum, squares, width);
    const double h = height, r = 1.0 / h, s = 1.0 / (h - 1);
    for (int j = 0; j < width; ++j) {
        const double m = sum[j] * r;
        mean[j] = rounded<M>(m);
        var[j] = rounded<std::int32_t>((squares[j] - m * m * h) * s);
    }
}

}  // namespace

void meanColumn(const float* src, int height, int step, float* mean, int width) {
    sums<false>(src, step, nullptr, height, mean, width);
    const float r = 1.0f / static_cast<float>(height);
    for (int j = 0; j < width; ++j) mean[j] *= r;
}
void varColumn(const float* src, int height, int step, const float* mean, float* var, int width) {
    squareSums<false>(src, step, nullptr, height, var, width);
    const float h = static_cast<float>(height), s = 1.0f / (h - 1);
    for (int j = 0; j < width; ++j) var[j] = (var[j] - h * mean[j] * mean[j]) * s;
}
void meanVarColumn(const float* src, int height, int step, float* mean, float* var, int width) {
    bothSums<false>(src, step, nullptr, height, mean, var, width);
    const float h = static_cast<float>(height), r = 1.0f / h, s = 1.0f / (h - 1);
    for (int j = 0; j < width; ++j) {
        mean[j] *= r;
        var[j] = (var[j] - h * mean[j] * mean[j]) * s;
    }
}

void weightedMeanColumn(const float* src, int step, const float* weight, int height, float* mean, int width) {
    sums<true>(src, step, weight, height, mean, width);
}
void weightedVarColumn(const float* src, int step, const float* weight, int height, const float* mean, float* var,
                       int width) {
    weightedVar(src, step, weight, height, mean, var, width);
}
void weightedMeanVarColumn(const float* src, int step, const float* weight, int height, float* mean, float* var,
                           int width) {
    weightedMeanVar(src, step, weight, height, mean, var, width);
}
void weightedMeanColumn(const double* src, int step, const double* weight, int height, double* mean, int width) {
    sums<true>(src, step, weight, height, mean, width);
}
void weightedVarColumn(const double* src, int step, const double* weight, int height, const double* mean, double* var,
                       int width) {
    weightedVar(src, step, weight, height, mean, var, width);
}
void weightedMeanVarColumn(const double* src, int step, const double* weight, int height, double* mean, double* var,
                           int width) {
    weightedMeanVar(src, step, weight, height, mean, var, width);
}

void meanColumn(const std::int16_t* src, int height, int step, std::int16_t* mean, int width) {
    float* sum = work<float>().first;
    sums<false>(src, step, nullptr, height, sum, width);
    const float r = 1.0f / static_cast<float>(height);
    for (int j = 0; j < width; ++j) mean[j] = rounded<std::int16_t>(sum[j] * r);
}
void varColumn(const std::int16_t* src, int height, int step, const std::int16_t* mean, std::int16_t* var, int width) {
    float* squares = work<float>().first;
    squareSums<false>(src, step, nullptr, height, squares, width);
    const float h = static_cast<float>(height), s = 1.0f / (h - 1);
    for (int j = 0; j < width; ++j) {
        const float m = mean[j];
        var[j] = rounded<std::int16_t>((squares[j] - h * m * m) * s);
    }
}
void meanVarColumn(const std::int16_t* src, int height, int step, std::int16_t* mean, std::int16_t* var, int width) {
    auto& [sum, squares] = work<float>();
    bothSums<false>(src, step, nullptr, height, sum, squares, width);
    const float h = static_cast<float>(height), r = 1.0f / h, s = 1.0f / (h - 1);
    for (int j = 0; j < width; ++j) {
        const float m = sum[j] * r;
        mean[j] = rounded<std::int16_t>(m);
        var[j] = rounded<std::int16_t>((squares[j] - h * m * m) * s);
    }
}

void meanColumnExact(const std::int16_t* src, int height, int step, std::int16_t* mean, int width) {
    std::int64_t* sum = work<std::int64_t>().first;
    sums<false>(src, step, nullptr, height, sum, width);
    const float r = 1.0f / static_cast<float>(height);
    for (int j = 0; j < width; ++j) mean[j] = truncated<std::int16_t>(static_cast<float>(sum[j]) * r);
}
void varColumnExact(const std::int16_t* src, int height, int step, const std::int16_t* mean, std::int16_t* var,
                    int width) {
    std::int64_t* squares = work<std::int64_t>().first;
    squareSums<false>(src, step, nullptr, height, squares, width);
    const float s = 1.0f / static_cast<float>(height - 1);
    for (int j = 0; j < width; ++j) {
        const std::int64_t m = mean[j];
        var[j] = truncated<std::int16_t>(static_cast<float>(squares[j] - height * m * m) * s);
    }
}
void meanVarColumnExact(const std::int16_t* src, int height, int step, std::int16_t* mean, std::int16_t* var,
                        int width) {
    std::int64_t* sum = work<std::int64_t>().first;
    float* squares = work<float>().first;
    bothSums<false>(src, step, nullptr, height, sum, squares, width);
    const float h = static_cast<float>(height), r = 1.0f / h, s = 1.0f / (h - 1);
    for (int j = 0; j < width; ++j) {
        const float m = static_cast<float>(sum[j]) * r;
        mean[j] = truncated<std::int16_t>(m);
        var[j] = truncated<std::int16_t>((squares[j] - h * m * m) * s);
    }
}

void meanVarColumn(const std::int16_t* src, int height, int step, std::int32_t* mean, std::int32_t* var, int width) {
    meanVarInDouble(src, height, step, mean, var, width);
}
void meanVarColumn(const std::int16_t* src, int height, int step, std::int16_t* mean, std::int32_t* var, int width) {
    meanVarInDouble(src, height, step, mean, var, width);
}

}  // namespace plain
