// Gaussian scores with a block-diagonal covariance: the difference vector d and the quadratic form
// S = sum over the rows r of d[r] x (row r . d within the row's block), in lanes that are added at the end.
#pragma once

#include <cstddef>
#include <cstdint>

#include "scoring/gauss/one_vector/block_diagonal.h"
#include "simd/simd.h"

namespace vorn {

// d = src - mean.
template <class T>
inline void differences(const T* src, const T* mean, T* d, std::ptrdiff_t len) {
    using V = Wide<T>;
    std::ptrdiff_t j = 0;
    for (; j + V::lanes <= len; j += V::lanes) store(d + j, load<V>(src + j) - load<V>(mean + j));
    for (; j < len; ++j) d[j] = src[j] - mean[j];
}
// In 16 bits the groups of sixteen, eight and four saturate; the last one to three columns wrap.
inline void differences(const Vorn16s* src, const Vorn16s* mean, Vorn16s* d, std::ptrdiff_t len) {
    std::ptrdiff_t j = 0;
    for (; j + 8 <= len; j += 8) store(d + j, subSat(load<i16x8>(src + j), load<i16x8>(mean + j)));
    if (len & 4) {
        storeFirst(d + j, subSat(loadFirst<i16x8, 4>(src + j), loadFirst<i16x8, 4>(mean + j)), 4);
        j += 4;
    }
    for (; j < len; ++j) d[j] = static_cast<Vorn16s>(src[j] - mean[j]);
}

// A matrix row times the differences of its block, in lanes: as many whole groups as fit, then half groups down to one
// column. Lane k takes the columns k, k + lanes, ...; a last column goes to lane 0.
inline f32x4 dotLanes(const Vorn32f* row, const Vorn32f* d, std::ptrdiff_t size) {
    f32x4 t = splat<f32x4>(0.0f);
    std::ptrdiff_t j = 0;
    for (; j + 4 <= size; j += 4) t = t + load<f32x4>(row + j) * load<f32x4>(d + j);
    if (size & 2) t = t + loadFirst<f32x4, 2>(row + j) * loadFirst<f32x4, 2>(d + j), j += 2;
    if (size & 1) t = withFirst(t, firstLane(t) + row[j] * d[j]);
    return t;
}
inline f64x2 dotLanes(const Vorn64f* row, const Vorn64f* d, std::ptrdiff_t size) {
    f64x2 t = splat<f64x2>(0.0);
    std::ptrdiff_t j = 0;
    for (; j + 2 <= size; j += 2) t = t + load<f64x2>(row + j) * load<f64x2>(d + j);
    if (size & 1) t = withFirst(t, firstLane(t) + row[j] * d[j]);
    return t;
}
// 16 bits: exact products, each converted to single.
inline f32x4 dotLanes(const Vorn16s* row, const Vorn16s* d, std::ptrdiff_t size) {
    f32x4 t = splat<f32x4>(0.0f);
    std::ptrdiff_t j = 0;
    for (; j + 8 <= size; j += 8) {
        const i16x8 a = load<i16x8>(row + j), b = load<i16x8>(d + j);
        t = (t + toFloat(productsLow(a, b))) + toFloat(productsHigh(a, b));
    }
    if (size & 4) t = t + toFloat(productsLow(loadFirst<i16x8, 4>(row + j), loadFirst<i16x8, 4>(d + j))), j += 4;
    if (size & 2) t = t + toFloat(productsLow(loadFirst<i16x8, 2>(row + j), loadFirst<i16x8, 2>(d + j))), j += 2;
    if (size & 1) t = withFirst(t, firstLane(t) + static_cast<float>(row[j] * d[j]));
    return t;
}

// Four lanes in double.
struct FourDoubles {
    f64x2 low, high;
};

// What the rows' products are collected in.
struct SumInFloat {
    f32x4 sum = splat<f32x4>(0.0f);
    template <class T>
    VORN_INLINE void add(T d, f32x4 t) {
        sum = sum + splat<f32x4>(static_cast<float>(d)) * t;
    }
};
struct SumInDouble {
    f64x2 sum = splat<f64x2>(0.0);
    VORN_INLINE void add(Vorn64f d, f64x2 t) { sum = sum + splat<f64x2>(d) * t; }
};
struct SumWidened {
    FourDoubles sum = {splat<f64x2>(0.0), splat<f64x2>(0.0)};
    VORN_INLINE void add(Vorn32f d, f32x4 t) {
        const f64x2 wide = splat<f64x2>(d);
        sum = {sum.low + wide * widenLow(t), sum.high + wide * widenHigh(t)};
    }
};

// The lanes of S.
template <class Lanes, class T>
inline auto quadraticForm(const BlockDiagonal<T>& matrix, const T* d) {
    Lanes lanes;
    const T* const* row = matrix.rows;
    for (int block = 0; block < matrix.numBlocks; ++block) {
        const std::ptrdiff_t size = matrix.blockSizes[block];
        for (std::ptrdiff_t r = 0; r < size; ++r) lanes.add(d[r], dotLanes(row[r], d, size));
        row += size;
        d += size;
    }
    return lanes.sum;
}

}  // namespace vorn
