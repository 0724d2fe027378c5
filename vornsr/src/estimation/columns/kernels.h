// Means and variances down the columns of a matrix.
#pragma once

#include <algorithm>
#include <cstddef>

#include "loops/cache.h"
#include "loops/stripes.h"

namespace vorn {

// What a row adds to the two sums of its columns.

struct PlainRow {
    template <class Stripe, class Value>
    VORN_INLINE void addTo(Value& sum, Value& squares, const Value& x, const Stripe&, std::ptrdiff_t) const {
        sum = sum + x;
        squares = squares + x * x;
    }
};

template <class T>
struct WeightedRow {
    const T* weight;

    template <class Stripe, class Value>
    VORN_INLINE void addTo(Value& sum, Value& squares, const Value& x, const Stripe& stripe, std::ptrdiff_t row) const {
        const Value w = stripe.all(weight[row]);
        sum = sum + w * x;
        squares = squares + w * (x * x);
    }
};

// Blocks of rows stay in the first-level cache while the stripes of columns walk down them. That is no order in which
// the processor would see the next block coming.
constexpr std::ptrdiff_t rowBlockBytes = 8 << 10;

// Adds the rows up to the end, in their order, to the two sums of each column. fetches: each row asks for what stands a
// block further on.
template <bool fetches, class T, class RowsOf, class Row>
VORN_INLINE void addRows(RowsOf rows, std::ptrdiff_t begin, std::ptrdiff_t end, T* sums, T* squareSums,
                         std::ptrdiff_t width, Row added) {
    overStripes<T>(width, [=](auto stripe, std::ptrdiff_t column) {
        constexpr std::ptrdiff_t line = 64 / sizeof(T), elements = sizeof(stripe.all(T())) / sizeof(T);
        auto sum = stripe.load(sums + column);
        auto squares = stripe.load(squareSums + column);
        for (std::ptrdiff_t row = begin; row < end; ++row) {
            const T* x = rows[row] + column;
            if constexpr (fetches) {
                for (std::ptrdiff_t i = 0; i < elements; i += line) fetchAhead<rowBlockBytes>(x + i);
            }
            added.addTo(sum, squares, stripe.load(x), stripe, row);
        }
        stripe.store(sums + column, sum);
        stripe.store(squareSums + column, squares);
    });
}

template <class T, class RowsOf, class Row>
VORN_INLINE void sumColumns(RowsOf rows, std::ptrdiff_t height, T* sums, T* squareSums, std::ptrdiff_t width,
                            Row added) {
    constexpr std::ptrdiff_t cachedBytes = 1 << 20;  // what a second-level cache holds anyway
    const std::ptrdiff_t rowBytes = width * static_cast<std::ptrdiff_t>(sizeof(T));
    const std::ptrdiff_t blockRows = std::max<std::ptrdiff_t>(8, rowBlockBytes / rowBytes);
    const bool cached = height <= cachedBytes / rowBytes;
    std::fill_n(sums, width, T(0));
    std::fill_n(squareSums, width, T(0));
    for (std::ptrdiff_t row = 0; row < height; row += blockRows) {
        const std::ptrdiff_t end = std::min(height, row + blockRows);
        if (cached) {
            addRows<false>(rows, row, end, sums, squareSums, width, added);
        } else {
            addRows<true>(rows, row, end, sums, squareSums, width, added);
        }
    }
}

// mean = sum / h, var = (sum of squares - h mean^2) / (h - 1), in one pass and one precision. Both sums take the rows
// in their order; h is held as one T, and the two reciprocals are divided in double and rounded once.
template <class T, class RowsOf>
void meanVarColumns(RowsOf rows, std::ptrdiff_t height, T* mean, T* var, std::ptrdiff_t width) {
    sumColumns(rows, height, mean, var, width, PlainRow());
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
    sumColumns(rows, height, mean, var, width, WeightedRow<T>{weight});
    overStripes<T>(width, [&](auto stripe, std::ptrdiff_t column) {
        const auto m = stripe.load(mean + column);
        stripe.store(var + column, stripe.load(var + column) - m * m);
    });
}

}  // namespace vorn
