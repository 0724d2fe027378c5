// Sums and updates of single columns and rows. Each sum is one accumulator in the order of the rows, or of the
// elements.
#pragma once

#include <cmath>
#include <cstddef>

#include "loops/stripes.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::svd {

// What these run over: anything with elements x[i], such as a vector or one column of a matrix.
template <class RowsOf>
struct Column {
    RowsOf rows;
    std::ptrdiff_t column;
    auto& operator[](std::ptrdiff_t row) const { return rows[row][column]; }
};
template <class RowsOf>
Column(RowsOf, std::ptrdiff_t) -> Column<RowsOf>;

// The terms are added one after the other. Told so, the compiler does not collect them in vectors first, only to take
// them out again, which takes longer than the additions.
VORN_INLINE void inOrder(Vorn64f& sum) { asm("" : "+x"(sum)); }

template <class Elements>
VORN_INLINE Vorn64f sumOfMagnitudes(Elements x, std::ptrdiff_t begin, std::ptrdiff_t end) {
    Vorn64f sum = 0.0;
    for (std::ptrdiff_t i = begin; i < end; ++i) {
        sum += std::fabs(x[i]);
        inOrder(sum);
    }
    return sum;
}

// Multiplies by val and gives the sum of the squares of what that leaves.
template <class Elements>
VORN_INLINE Vorn64f scaleAndSumSquares(Elements x, std::ptrdiff_t begin, std::ptrdiff_t end, Vorn64f val) {
    Vorn64f sum = 0.0;
    for (std::ptrdiff_t i = begin; i < end; ++i) {
        const Vorn64f scaled = x[i] * val;
        x[i] = scaled;
        sum += scaled * scaled;
        inOrder(sum);
    }
    return sum;
}

template <class Elements>
VORN_INLINE void scale(Elements x, std::ptrdiff_t begin, std::ptrdiff_t end, Vorn64f val) {
    for (std::ptrdiff_t i = begin; i < end; ++i) x[i] *= val;
}

// p = c p + s q and q = c q - s p, both from the old values. Where p and q are one column, q is stored last.
template <class Elements>
VORN_INLINE void rotate(Elements p, Elements q, std::ptrdiff_t end, Vorn64f c, Vorn64f s) {
    for (std::ptrdiff_t i = 0; i < end; ++i) {
        const Vorn64f before = p[i], next = q[i];
        p[i] = c * before + s * next;
        q[i] = next * c - before * s;
    }
}

template <class First, class Second>
VORN_INLINE Vorn64f sumOfProducts(First a, Second b, std::ptrdiff_t begin, std::ptrdiff_t end) {
    Vorn64f sum = 0.0;
    for (std::ptrdiff_t i = begin; i < end; ++i) {
        sum += a[i] * b[i];
        inOrder(sum);
    }
    return sum;
}

// y[i] += val x[i]
template <class Elements>
VORN_INLINE void addMultiple(Elements x, Elements y, std::ptrdiff_t begin, std::ptrdiff_t end, Vorn64f val) {
    for (std::ptrdiff_t i = begin; i < end; ++i) y[i] += val * x[i];
}
VORN_INLINE void addMultiple(const Vorn64f* src, Vorn64f* srcDst, std::ptrdiff_t len, Vorn64f val) {
    overStripes<Vorn64f>(
        len, [=](auto stripe, std::ptrdiff_t i) __attribute__((always_inline)) {
            stripe.store(srcDst + i, stripe.load(srcDst + i) + stripe.all(val) * stripe.load(src + i));
        });
}

}  // namespace vorn::svd
