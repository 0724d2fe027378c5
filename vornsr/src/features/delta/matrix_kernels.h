// Deltas of all rows of a matrix, by weighted differences over a window of any size.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "features/delta/arithmetic.h"
#include "loops/stripes.h"

namespace vorn::delta {

// The rows that one result looks at: the k-th to the right stands k rightStep elements behind right, likewise to the
// left. A step of 0 means that one row stands for all of them.
template <class T>
struct Window {
    const T *right, *left;
    std::ptrdiff_t rightStep, leftStep;

    Window from(std::ptrdiff_t column) const { return {right + column, left + column, rightStep, leftStep}; }
};

// The sum of k (right(k) - left(k)), the terms added in the order of k, and its product with the factor.
template <class Stripe>
VORN_INLINE auto weightedSum(const Singles&, const Stripe& stripe, Window<float> at, std::ptrdiff_t size) {
    auto sum = stripe.load(at.right + at.rightStep) - stripe.load(at.left + at.leftStep);
    for (std::ptrdiff_t k = 2; k <= size; ++k) {
        const auto difference = stripe.load(at.right + k * at.rightStep) - stripe.load(at.left + k * at.leftStep);
        sum = sum + stripe.all(static_cast<float>(k)) * difference;
    }
    return sum;
}
template <class V>
VORN_INLINE V finished(const Singles&, V sum, V factor) {
    return sum * factor;
}

// The low 32 bits of products of 32-bit lanes with 16-bit factors, which stand twice in each lane.
template <class W>
VORN_INLINE W timesShort(W x, W twice) {
    const auto parts = shortsOf(x), factor = shortsOf(twice);
    // The lower half counts as unsigned, which is what a negative factor must give back.
    const auto above = mulHighUnsigned(parts, factor) - (parts & shiftRight<15>(factor));
    return intsOf(mulLow(parts, factor)) + shiftLeft<16>(intsOf(above));
}

// In 32 bits, which wrap; the differences wrap to 16 bits. Terms are taken in runs of so many that their weights inside
// the run have 16 bits: with k = run m + i, the sum of k d(k) is that of i d(k) and run times that of m d(k), which is
// the sum over m = 1, 2, ... of all d from run m on.
template <class Stripe>
VORN_INLINE auto weightedSum(const WrappedDifferences&, const Stripe& stripe, Window<std::int16_t> at,
                             std::ptrdiff_t size) {
    using V = typename Stripe::Value;
    const auto difference = [=](std::ptrdiff_t k) __attribute__((always_inline)) {
        return stripe.load(at.right + k * at.rightStep) - stripe.load(at.left + k * at.leftStep);
    };
    using W = decltype(intsOf(V()));
    constexpr std::ptrdiff_t runBits = 10, run = std::ptrdiff_t{1} << runBits;
    const W zero = splat<W>(0), ones = splat<W>(0x00010001);
    Halves<W> sum = {zero, zero}, behind = {zero, zero}, runs = {zero, zero};
    for (std::ptrdiff_t m = (size - 1) / run; m >= 0; --m) {
        const std::ptrdiff_t base = m * run, count = std::min(size - base, run);
        W weights = splat<W>(0x00020001);  // i and i + 1
        for (std::ptrdiff_t i = 1; i <= count; i += 2, weights = weights + splat<W>(0x00020002)) {
            const V first = difference(base + i);
            const V second = i < count ? difference(base + i + 1) : splat<V>(0);
            sum = sum + twoProducts(first, second, Halves<W>{weights, weights});
            if (m > 0) behind = behind + twoProducts(first, second, Halves<W>{ones, ones});
        }
        if (m > 0) runs = runs + behind;
    }
    if (size > run) sum = sum + Halves<W>{shiftLeft<runBits>(runs.low), shiftLeft<runBits>(runs.high)};
    return sum;
}
template <class W, class V>
VORN_INLINE V finished(const WrappedDifferences& arithmetic, Halves<W> sum, V factor) {
    const Halves<W> twice = zip(factor, factor);
    return arithmetic.shift.saturated(Halves<W>{timesShort(sum.low, twice.low), timesShort(sum.high, twice.high)});
}

VORN_INLINE std::int32_t weightedSum(const WrappedDifferences&, const SingleStripe<std::int16_t>&,
                                     Window<std::int16_t> at, std::ptrdiff_t size) {
    std::int32_t sum = 0;
    for (std::ptrdiff_t k = 1; k <= size; ++k) {
        const auto difference = static_cast<std::int16_t>(at.right[k * at.rightStep] - at.left[k * at.leftStep]);
        sum = wrapAdd(sum, wrapMul(static_cast<std::int32_t>(k), difference));
    }
    return sum;
}
VORN_INLINE std::int16_t finished(const WrappedDifferences& arithmetic, std::int32_t sum, std::int16_t factor) {
    return arithmetic.shift.saturated(wrapMul(sum, factor));
}

template <class T>
struct Matrix {
    T* frames;  // the first frame; its delta stands width elements behind it
    std::ptrdiff_t height, step, width;

    T* row(std::ptrdiff_t r) const { return frames + r * step; }
};

// At the ends of the matrix, where the window reaches beyond it for some k, its end row stands for that side of the
// window for every k. From window sizes of 3 on this is not the repetition of the end frame that the streaming forms
// have.
template <class T>
VORN_INLINE Window<T> windowAround(const Matrix<T>& matrix, std::ptrdiff_t r, std::ptrdiff_t size) {
    Window<T> window = {matrix.row(r), matrix.row(r), matrix.step, -matrix.step};
    if (r < size) {
        window.left = matrix.row(0);
        window.leftStep = 0;
    }
    if (r >= matrix.height - size) {
        window.right = matrix.row(matrix.height - 1);
        window.rightStep = 0;
    }
    return window;
}

template <class T, class Rule>
void deltasOfMatrix(const Matrix<T>& matrix, std::ptrdiff_t size, const Rule& rule) {
    for (std::ptrdiff_t r = 0; r < matrix.height; ++r) {
        const Window<T> window = windowAround(matrix, r, size);
        T* to = matrix.row(r) + matrix.width;
        overVectors<T>(
            matrix.width, [=](auto stripe, std::ptrdiff_t column) __attribute__((always_inline)) {
                const auto factor = rule.factors.template of<1>(stripe, column);
                const auto sum = weightedSum(rule.arithmetic, stripe, window.from(column), size);
                stripe.store(to + column, finished(rule.arithmetic, sum, factor));
            });
    }
}

}  // namespace vorn::delta
