// Means and variances of columns in floats: of singles and doubles, and of 16-bit integers taken for singles.
#pragma once

#include <algorithm>
#include <cstddef>

#include "estimation/columns/walk.h"
#include "frame/opaque.h"

namespace vorn::columns {

// 1/n as the forms for singles take it, rounded to single once behind a division in double; and as those for 16-bit
// integers do.
inline Vorn32f reciprocalByDouble(std::ptrdiff_t n) { return static_cast<Vorn32f>(1.0 / static_cast<double>(n)); }
inline Vorn32f reciprocalInSingle(std::ptrdiff_t n) { return 1.0f / static_cast<Vorn32f>(n); }

// -h, of which the compiler does not know that it is one: it would subtract h times a square instead, which is the same
// to nearest alone.
inline Vorn32f minus(std::ptrdiff_t height) { return opaque(-static_cast<Vorn32f>(height)); }

// mean = (sum of x) / h, the rows in pairs.
inline void meanColumns(AnyRows<const Vorn32f> rows, std::ptrdiff_t height, Vorn32f* mean, std::ptrdiff_t width) {
    const Vorn32f perRow = reciprocalByDouble(height);
    sumRows<InPairs>(rows, height, width, NoWeights(), {mean});
    for (std::ptrdiff_t j = 0; j < width; ++j) mean[j] *= perRow;
}

// var = (-h mean^2 + sum of x^2) / (h - 1), of the caller's mean. The sum starts from the term of the mean.
inline void varColumnsTermFirst(AnyRows<const Vorn32f> rows, std::ptrdiff_t height, const Vorn32f* mean, Vorn32f* var,
                                std::ptrdiff_t width) {
    const Vorn32f minusHeight = minus(height), perDegree = reciprocalByDouble(height - 1);
    for (std::ptrdiff_t j = 0; j < width; ++j) var[j] = minusHeight * (mean[j] * mean[j]);
    addRows<Squares>(rows, height, 0, width, NoWeights(), {var});
    for (std::ptrdiff_t j = 0; j < width; ++j) var[j] *= perDegree;
}

// The same of 16-bit integers. The term of the mean is added last.
template <class Mean>
void varColumnsTermLast(AnyRows<const Vorn16s> rows, std::ptrdiff_t height, const Mean* mean, Vorn32f* var,
                        std::ptrdiff_t width) {
    const Vorn32f minusHeight = minus(height), perDegree = reciprocalInSingle(height - 1);
    sumRows<Squares>(rows, height, width, NoWeights(), {var});
    for (std::ptrdiff_t j = 0; j < width; ++j) {
        const auto m = static_cast<Vorn32f>(mean[j]);
        var[j] = (var[j] + minusHeight * (m * m)) * perDegree;
    }
}

// Both in one pass: mean = (sum of x) perRow, var = (sum of x^2 + (-h) mean^2) perDegree. Sum: the order of the rows in
// the sum of x.
template <class Sum, class Source>
void meanVarColumns(AnyRows<const Source> rows, std::ptrdiff_t height, Vorn32f perRow, Vorn32f perDegree, Vorn32f* mean,
                    Vorn32f* var, std::ptrdiff_t width) {
    const Vorn32f minusHeight = minus(height);
    sumRows<Sum, Squares>(rows, height, width, NoWeights(), {mean, var});
    for (std::ptrdiff_t j = 0; j < width; ++j) {
        const Vorn32f m = mean[j] * perRow;
        mean[j] = m;
        var[j] = (var[j] + minusHeight * (m * m)) * perDegree;
    }
}

// mean = sum of w x, var = sum of w x^2 - mean^2, the rows in their order. Nothing divides by the sum of the weights.
template <class T>
void weightedMeanColumns(AnyRows<const T> rows, const T* weight, std::ptrdiff_t height, T* mean, std::ptrdiff_t width) {
    sumRows<Weighted>(rows, height, width, Weights<T>{weight}, {mean});
}
template <class T>
void subtractSquares(const T* mean, T* var, std::ptrdiff_t width) {
    for (std::ptrdiff_t j = 0; j < width; ++j) var[j] -= mean[j] * mean[j];
}
template <class T>
void weightedVarColumns(AnyRows<const T> rows, const T* weight, std::ptrdiff_t height, const T* mean, T* var,
                        std::ptrdiff_t width) {
    sumRows<WeightedSquares>(rows, height, width, Weights<T>{weight}, {var});
    subtractSquares(mean, var, width);
}
template <class T>
void weightedMeanVarColumns(AnyRows<const T> rows, const T* weight, std::ptrdiff_t height, T* mean, T* var,
                            std::ptrdiff_t width) {
    sumRows<Weighted, WeightedSquares>(rows, height, width, Weights<T>{weight}, {mean, var});
    subtractSquares(mean, var, width);
}

}  // namespace vorn::columns
