// The Bhattacharyya distance of two diagonal Gaussians: the scan of their values, K = sum of (mean1 - mean2)^2 /
// (var1 + var2), the terms whose logarithms are summed, and what becomes of both.
#pragma once

#include <cstddef>
#include <type_traits>

#include "frame/opaque.h"
#include "scoring/gauss/terms.h"
#include "simd/divide.h"
#include "simd/simd.h"
#include "simd/tile.h"
#include "vornsr/types.h"

namespace vorn::bhattacharyya {

struct TwoGaussians {
    const Vorn32f *mean1, *var1, *mean2, *var2;
};

// ---- The scan. Means count as variances do: kept so on purpose.

enum Fault : int { noFault = 0, negativeFault = 1, zeroFault = 2 };

// Whether fits(x) holds for any of the values at the columns from j on, a lane a column.
template <class V, class Fits>
VORN_INLINE bool anyFits(const TwoGaussians& g, std::ptrdiff_t j, const Fits& fits) {
    return any((fits(load<V>(g.mean1 + j)) | fits(load<V>(g.var1 + j))) |
               (fits(load<V>(g.mean2 + j)) | fits(load<V>(g.var2 + j))));
}
// Of four columns, or of one: a negative value comes before a zero.
template <class V>
VORN_INLINE Fault faultOfGroup(const TwoGaussians& g, std::ptrdiff_t j) {
    const V zero = splat<V>(0);
    const auto isBelow = [zero](V x) __attribute__((always_inline)) { return x < zero; };
    const auto isZero = [zero](V x) __attribute__((always_inline)) { return x == zero; };
    return anyFits<V>(g, j, isBelow) ? negativeFault : anyFits<V>(g, j, isZero) ? zeroFault : noFault;
}
inline Fault faultOfColumn(const TwoGaussians& g, std::ptrdiff_t j) {
    const Vorn32f values[] = {g.mean1[j], g.var1[j], g.mean2[j], g.var2[j]};
    Fault fault = noFault;
    for (const Vorn32f x : values) {
        if (x < 0) return negativeFault;
        if (x == 0) fault = zeroFault;
    }
    return fault;
}
// The first group of four columns, or single column behind the groups, with a negative value or a zero decides. What is
// not a number is neither.
inline Fault firstFault(const TwoGaussians& g, std::ptrdiff_t len) {
    std::ptrdiff_t j = 0;
    const f32xN zero = splat<f32xN>(0);
    const auto isFaulty = [zero](f32xN x) __attribute__((always_inline)) { return x <= zero; };
    while (j + f32xN::lanes <= len && !anyFits<f32xN>(g, j, isFaulty)) j += f32xN::lanes;
    for (; j + 4 <= len; j += 4) {
        if (const Fault fault = faultOfGroup<f32x4>(g, j)) return fault;
    }
    for (; j < len; ++j) {
        if (const Fault fault = faultOfColumn(g, j)) return fault;
    }
    return noFault;
}

// ---- The terms whose logarithms are summed.

// (var1 + var2)^2 / (var1 x var2), which in single is (2 + r) + 1 / r with r = var2 / var1: no square overflows.
struct RatioTerm {
    template <class V>
    static VORN_INLINE V inSingle(V var1, V var2, V) {
        const V r = divided(var2, var1);
        return (splat<V>(2) + r) + divided(splat<V>(1), r);
    }
    static VORN_INLINE Vorn32f inSingle(Vorn32f var1, Vorn32f var2, Vorn32f) {
        const Vorn32f r = var2 / var1;
        return (2 + r) + 1 / r;
    }
    template <class V>
    static VORN_INLINE V inDouble(V var1, V var2, V sum) {
        return (sum * sum) / (var1 * var2);
    }
};
// var1 + var2.
struct SumTerm {
    template <class V>
    static VORN_INLINE V inSingle(V, V, V sum) {
        return sum;
    }
    template <class V>
    static VORN_INLINE V inDouble(V, V, V sum) {
        return sum;
    }
};

// ---- Single: a term for each column.

// Four columns after four join their lanes.
VORN_INLINE f32x4 addInFours(f32x4 lanes, f32x4 x) { return lanes + x; }
template <class V>
VORN_INLINE f32x4 addInFours(f32x4 lanes, V x) {
    return addInFours(addInFours(lanes, lowHalf(x)), highHalf(x));
}

template <class Term, class V>
VORN_INLINE f32x4 columnsInSingle(const TwoGaussians& g, std::ptrdiff_t j, Vorn32f* terms, f32x4 lanes) {
    const V var1 = load<V>(g.var1 + j), var2 = load<V>(g.var2 + j), sum = var1 + var2;
    const V d = load<V>(g.mean1 + j) - load<V>(g.mean2 + j);
    store(terms + j, Term::inSingle(var1, var2, sum));
    return addInFours(lanes, divided(d * d, sum));
}

// K in four lanes, what remains of the columns to lane 0; (lane 0 + lane 1) + (lane 2 + lane 3).
template <class Term>
Vorn32f formTerms(const TwoGaussians& g, std::ptrdiff_t len, Vorn32f* terms) {
    f32x4 lanes = splat<f32x4>(0);
    std::ptrdiff_t j = 0;
    for (; j + f32xN::lanes <= len; j += f32xN::lanes) lanes = columnsInSingle<Term, f32xN>(g, j, terms, lanes);
    for (; j + 4 <= len; j += 4) lanes = columnsInSingle<Term, f32x4>(g, j, terms, lanes);
    Vorn32f lane0 = firstLane(lanes);
    for (; j < len; ++j) {
        const Vorn32f d = g.mean1[j] - g.mean2[j], sum = g.var1[j] + g.var2[j];
        terms[j] = Term::inSingle(g.var1[j], g.var2[j], sum);
        lane0 += (d * d) / sum;
    }
    return sumNeighbours(withFirst(lanes, lane0));
}
inline std::ptrdiff_t termCount(const Vorn32f*, std::ptrdiff_t len) { return len; }

// ---- Double: one product for every four columns, whose logarithm is the sum of theirs.

// K in four lanes, (lane 0 + lane 2) + (lane 1 + lane 3), then what remains of the columns in order. Their terms join
// the last product, or the first where there is none.
template <class Term>
Vorn64f formTerms(const TwoGaussians& g, std::ptrdiff_t len, Vorn64f* products) {
    using V = f64x4;
    V lanes = splat<V>(0);
    std::ptrdiff_t j = 0;
    Vorn64f* product = products;
    for (; j + 4 <= len; j += 4) {
        const V var1 = loadAs<V>(g.var1 + j), var2 = loadAs<V>(g.var2 + j), sum = var1 + var2;
        const V d = loadAs<V>(g.mean1 + j) - loadAs<V>(g.mean2 + j);
        lanes = lanes + (d * d) / sum;
        const V term = Term::inDouble(var1, var2, sum);
        const f64x2 pairs = lowHalf(term) * highHalf(term);
        *product++ = firstLane(pairs) * firstLane(upperToLower(pairs));
    }
    Vorn64f k = sumLanes(foldHalves(lanes));
    if (j == len) return k;
    if (product == products) *product++ = 1;
    for (; j < len; ++j) {
        const Vorn64f var1 = g.var1[j], var2 = g.var2[j], sum = var1 + var2;
        const Vorn64f d = Vorn64f{g.mean1[j]} - Vorn64f{g.mean2[j]};
        k += (d * d) / sum;
        product[-1] *= Term::inDouble(var1, var2, sum);
    }
    return k;
}
inline std::ptrdiff_t termCount(const Vorn64f*, std::ptrdiff_t len) { return len < 4 ? 1 : len / 4; }

// ---- The distance. L is the sum of the logarithms; products with L, K and the sums of logarithms are made in their
// own types, the rest in double.

struct WholeDistance {
    template <class T>
    Vorn64f operator()(T l, T k, std::ptrdiff_t len) const {
        const Vorn64f logarithms = Vorn64f{l * T(0.5)} - opaque(static_cast<Vorn64f>(len) * 1.386294) * 0.5;
        return logarithms * 0.5 + Vorn64f{k * T(0.25)};
    }
};
struct DistanceFromSums {
    Vorn32f sumLog1, sumLog2;
    template <class T>
    Vorn64f operator()(T l, T k, std::ptrdiff_t len) const {
        const Vorn64f logarithms = (Vorn64f{l} - opaque(static_cast<Vorn64f>(len) * 0.693147)) * 0.5;
        return (logarithms - Vorn64f{(sumLog1 + sumLog2) * 0.25f}) + Vorn64f{k * T(0.25)};
    }
};

}  // namespace vorn::bhattacharyya
