// A matrix as U B V^T with B bidiagonal, by Householder reflections (Golub and Reinsch, 1970).
//
// All sums down a column have one accumulator that takes the rows in their order. Different columns do not know of one
// another, so each walk over the rows serves all columns at once, in the registers of the build.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "frame/rows.h"
#include "linalg/svd/columns.h"
#include "loops/stripes.h"
#include "reductions/sixteen.h"
#include "simd/simd.h"

namespace vorn::svd {

using Matrix = AnyRows<Vorn64f>;

VORN_INLINE Vorn64f squareRoot(Vorn64f x) { return firstLane(sqrtOf(splat<f64x2>(x))); }

// Rows begin to end of some columns of a matrix.
struct Panel {
    Matrix rows;
    std::ptrdiff_t begin, end, column, width;
};

// sums[j] = start + the sum over the rows of factor(row) x[row][j]
template <class Factor>
VORN_INLINE void sumColumns(const Panel& x, Vorn64f start, const Factor& factor, Vorn64f* sums) {
    overStripes<Vorn64f>(
        x.width, [&](auto stripe, std::ptrdiff_t j) __attribute__((always_inline)) {
            auto sum = stripe.all(start);
            for (std::ptrdiff_t row = x.begin; row < x.end; ++row)
                sum = sum + stripe.all(factor(row)) * stripe.load(x.rows[row] + x.column + j);
            stripe.store(sums + j, sum);
        });
}

// x[row][j] += multiples[j] factor(row)
template <class Factor>
VORN_INLINE void addToColumns(const Panel& x, const Vorn64f* multiples, const Factor& factor) {
    overStripes<Vorn64f>(
        x.width, [&](auto stripe, std::ptrdiff_t j) __attribute__((always_inline)) {
            const auto multiple = stripe.load(multiples + j);
            for (std::ptrdiff_t row = x.begin; row < x.end; ++row) {
                Vorn64f* const at = x.rows[row] + x.column + j;
                stripe.store(at, stripe.load(at) + multiple * stripe.all(factor(row)));
            }
        });
}

// Both in one walk: the second, and on its results the first, which leaves its sums in the place of the multiples.
template <class Factor, class NextFactor>
VORN_INLINE void addToColumnsAndSum(const Panel& x, Vorn64f* multiples, const Factor& factor, Vorn64f start,
                                    const NextFactor& nextFactor) {
    overStripes<Vorn64f>(
        x.width, [&](auto stripe, std::ptrdiff_t j) __attribute__((always_inline)) {
            const auto multiple = stripe.load(multiples + j);
            auto sum = stripe.all(start);
            for (std::ptrdiff_t row = x.begin; row < x.end; ++row) {
                Vorn64f* const at = x.rows[row] + x.column + j;
                const auto y = stripe.load(at) + multiple * stripe.all(factor(row));
                stripe.store(at, y);
                sum = sum + stripe.all(nextFactor(row)) * y;
            }
            stripe.store(multiples + j, sum);
        });
}

// The sum of a[i] b[i] as vornsDotProd_64f gives it, without its call for every row.
template <class V = f64xN>
VORN_INLINE Vorn64f dotInLanes(const Vorn64f* a, const Vorn64f* b, std::ptrdiff_t len) {
    auto sum = Sixteen<Vorn64f>::zero();
    std::ptrdiff_t i = 0;
    for (; i + 16 <= len; i += 16) addProduct(sum, load16<Vorn64f>(a + i), load16<Vorn64f>(b + i));
    // A lane without an element stays as it is.
    const auto addPart = [=](V & part, std::ptrdiff_t at) __attribute__((always_inline)) {
        if (at + V::lanes <= len) {
            part = part + load<V>(a + at) * load<V>(b + at);
        } else if (at < len) {
            if constexpr (V::lanes == 2) {
                part = part + withFirst(splat<V>(0.0), a[at]) * withFirst(splat<V>(0.0), b[at]);
            } else {
                part = part + loadFirst<V>(a + at, len - at) * loadFirst<V>(b + at, len - at);
            }
        }
    };
    [&]<int... part>(std::integer_sequence<int, part...>) __attribute__((always_inline)) {
        (addPart(sum.part[part], i + part * V::lanes), ...);
    }
    (std::make_integer_sequence<int, Sixteen<Vorn64f>::parts>());
    return sum.folded();
}

// The reflection that leaves of a vector its first element alone. The vector is scaled by the sum of its magnitudes, so
// that its squares neither overflow nor vanish.
struct Reflection {
    Vorn64f scale = 0.0, length = 0.0, divisor = 0.0;

    // Scales x and makes its first element that of the reflection's vector; x itself stays when it is zero.
    template <class Elements>
    VORN_INLINE static Reflection of(Elements x, std::ptrdiff_t begin, std::ptrdiff_t end, Vorn64f magnitudes) {
        Reflection r;
        r.scale = magnitudes;
        if (r.isNone()) return r;
        const Vorn64f s = scaleAndSumSquares(x, begin, end, 1.0 / r.scale);
        const Vorn64f f = x[begin], root = squareRoot(s);
        r.length = f < 0.0 ? root : -root;
        r.divisor = f * r.length - s;
        x[begin] = f - r.length;
        return r;
    }
    bool isNone() const { return scale == 0.0; }
    Vorn64f element() const { return scale * length; }
};

// B in w, its diagonal, and e, what stands above it: e[i] in column i. The vectors of the reflections take the place of
// a. Returns the largest |w[i]| + |e[i]|; a not-a-number stays, so that no such matrix seems to converge.
inline Vorn64f reduceToBidiagonal(Matrix a, std::ptrdiff_t m, std::ptrdiff_t n, Vorn64f* w, Vorn64f* e,
                                  Vorn64f* multiples) {
    Vorn64f norm = 0.0, magnitudes = sumOfMagnitudes(Column{a, 0}, 0, m);  // of column i from row i on
    Reflection right;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        const std::ptrdiff_t l = i + 1, width = n - l;
        e[i] = right.element();
        Reflection left;
        right = Reflection();
        if (i < m) {
            left = Reflection::of(Column{a, i}, i, m, magnitudes);
            if (!left.isNone()) {
                const auto vector = [=](std::ptrdiff_t row) { return a[row][i]; };
                const Panel rest = {a, i, m, l, width};
                sumColumns(rest, 0.0, vector, multiples);
                for (std::ptrdiff_t j = 0; j < width; ++j) multiples[j] /= left.divisor;
                addToColumns(rest, multiples, vector);
                scale(Column{a, i}, i, m, left.scale);
            }
            if (l < n) {
                Vorn64f* const x = a[i] + l;
                right = Reflection::of(x, 0, width, sumOfMagnitudes(x, 0, width));
                magnitudes = 0.0;
                for (std::ptrdiff_t k = 0; k < width && !right.isNone(); ++k) e[l + k] = x[k] / right.divisor;
                for (std::ptrdiff_t row = l; row < m; ++row) {
                    Vorn64f* const y = a[row] + l;
                    if (!right.isNone()) addMultiple(e + l, y, width, dotInLanes(y, x, width));
                    magnitudes += std::fabs(y[0]);
                }
                if (!right.isNone()) scale(x, 0, width, right.scale);
            }
        }
        w[i] = left.element();
        const Vorn64f size = std::fabs(w[i]) + std::fabs(e[i]);
        if (!(size <= norm) && norm == norm) norm = size;
    }
    return norm;
}

// V from the rows of a behind the diagonal. While the columns of a step are updated, those sums are formed that the
// next step needs: of its row of a with each column of V.
inline void accumulateRight(Matrix a, std::ptrdiff_t n, const Vorn64f* e, Matrix v, Vorn64f* sums) {
    for (std::ptrdiff_t i = n - 1; i >= 0; --i) {
        const std::ptrdiff_t l = i + 1, width = n - l;
        const Panel rest = {v, l, n, l, width};
        // The next step's row, if it needs sums. Row i of V, which they begin with, is one on the diagonal, zero
        // behind.
        const Vorn64f* const next = i > 0 && e[i] != 0.0 ? a[i - 1] : nullptr;
        const Vorn64f start = next != nullptr ? 0.0 + next[i] * 0.0 : 0.0;
        const auto nextFactor = [=](std::ptrdiff_t row) { return next[row]; };
        if (l < n && e[l] != 0.0) {
            const Vorn64f* const x = a[i];
            for (std::ptrdiff_t j = l; j < n; ++j) v[j][i] = (x[j] / x[l]) / e[l];
            const auto vector = [=](std::ptrdiff_t row) { return v[row][i]; };
            if (next != nullptr) {
                addToColumnsAndSum(rest, sums + l, vector, start, nextFactor);
            } else {
                addToColumns(rest, sums + l, vector);
            }
        } else if (next != nullptr) {
            sumColumns(rest, start, nextFactor, sums + l);
        }
        for (std::ptrdiff_t j = l; j < n; ++j) v[i][j] = v[j][i] = 0.0;
        v[i][i] = 1.0;
        if (next != nullptr) sums[i] = sumOfProducts(Column{v, i}, next, i, n);
    }
}

// U in the place of a. Here too the sums of the next step, of its column with all columns behind it, are formed on the
// way.
inline void accumulateLeft(Matrix a, std::ptrdiff_t m, std::ptrdiff_t n, const Vorn64f* w, Vorn64f* sums) {
    const std::ptrdiff_t last = std::min(m, n) - 1;
    std::fill(sums + last + 1, sums + n, 0.0);
    for (std::ptrdiff_t i = last; i >= 0; --i) {
        const std::ptrdiff_t l = i + 1, width = n - l;
        const Panel rest = {a, i, m, l, width};
        const auto nextFactor = [=](std::ptrdiff_t row) { return a[row][i - 1]; };
        std::fill(a[i] + l, a[i] + n, 0.0);
        if (w[i] != 0.0) {
            const Vorn64f g = 1.0 / w[i], corner = a[i][i];
            const auto vector = [=](std::ptrdiff_t row) { return a[row][i]; };
            for (std::ptrdiff_t j = l; j < n; ++j) sums[j] = sums[j] / corner * g;
            if (i > 0) {
                addToColumnsAndSum(rest, sums + l, vector, 0.0, nextFactor);
            } else {
                addToColumns(rest, sums + l, vector);
            }
            scale(Column{a, i}, i, m, g);
        } else {
            if (i > 0) sumColumns(rest, 0.0, nextFactor, sums + l);
            for (std::ptrdiff_t row = i; row < m; ++row) a[row][i] = 0.0;
        }
        a[i][i] += 1.0;
        if (i > 0) sums[i] = sumOfProducts(Column{a, i - 1}, Column{a, i}, i, m);
    }
}

}  // namespace vorn::svd
