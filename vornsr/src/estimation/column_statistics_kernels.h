// Means and variances down the columns of a matrix.
#pragma once

#include <algorithm>
#include <cstddef>

#include "stripes.h"

namespace vorn {

// Runs accumulate(stripe, column, firstRow, endRow) over blocks of rows that stay in the first-level cache while the
// stripes walk down them. What is accumulated lives in the caller's results between the blocks.
template <class T, class Accumulate>
VORN_INLINE void overRowBlocks(std::ptrdiff_t height, std::ptrdiff_t width, Accumulate accumulate) {
    constexpr std::ptrdiff_t blockBytes = 8 << 10;
    const std::ptrdiff_t blockRows =
        std::max<std::ptrdiff_t>(8, blockBytes / static_cast<std::ptrdiff_t>(sizeof(T)) / width);
    for (std::ptrdiff_t row = 0; row < height; row += blockRows) {
        const std::ptrdiff_t end = std::min(height, row + blockRows);
        overStripes<T>(width, [&](auto stripe, std::ptrdiff_t column) { accumulate(stripe, column, row, end); });
    }
}

// mean = sum / h, var = (sum of squares - h mean^2) / (h - 1), in one pass and one precision. Both sums take the rows
// in their order; h is held as one T, and the two reciprocals are divided in double and rounded once.
template <class T, class RowsOf>
void meanVarColumns(RowsOf rows, std::ptrdiff_t height, T* mean, T* var, std::ptrdiff_t width) {
    std::fill_n(mean, width, T(0));
    std::fill_n(var, width, T(0));
    overRowBlocks<T>(height, width, [&](auto stripe, std::ptrdiff_t column, std::ptrdiff_t row, std::ptrdiff_t end) {
        auto sum = stripe.load(mean + column);
        auto squares = stripe.load(var + column);
        for (; row < end; ++row) {
            const auto x = stripe.load(rows[row] + column);
            sum = sum + x;
            squares = squares + x * x;
        }
        stripe.store(mean + column, sum);
        stripe.store(var + column, squares);
    });
    const T minusHeight = -static_cast<T>(height);
    const T perRow = static_cast<T>(1.0 / static_cast<double>(height));
    const T perDegree = static_cast<T>(1.0 / static_cast<double>(height - 1));
    overStripes<T>(width, [&](auto stripe, std::ptrdiff_t column) {
        const auto m = stripe.load(mean + column) * stripe.all(perRow);
        const auto squares = stripe.load(var + column);
        stripe.store(mean + column, m);
        stripe.store(var + column, (squares + stripe.all(minusHeight) * (m * m)) * stripe.all(perDegree));
    });
}

// mean = sum of w x, var = sum of w x^2 - mean^2, the rows in their order. Nothing divides by the sum of the weights.
template <class T, class RowsOf>
void weightedMeanVarColumns(RowsOf rows, const T* weight, std::ptrdiff_t height, T* mean, T* var,
                            std::ptrdiff_t width) {
    std::fill_n(mean, width, T(0));
    std::fill_n(var, width, T(0));
    overRowBlocks<T>(height, width, [&](auto stripe, std::ptrdiff_t column, std::ptrdiff_t row, std::ptrdiff_t end) {
        auto sum = stripe.load(mean + column);
        auto squares = stripe.load(var + column);
        for (; row < end; ++row) {
            const auto x = stripe.load(rows[row] + column);
            const auto w = stripe.all(weight[row]);
            sum = sum + w * x;
            squares = squares + w * (x * x);
        }
        stripe.store(mean + column, sum);
        stripe.store(var + column, squares);
    });
    overStripes<T>(width, [&](auto stripe, std::ptrdiff_t column) {
        const auto m = stripe.load(mean + column);
        stripe.store(var + column, stripe.load(var + column) - m * m);
    });
}

}  // namespace vorn
