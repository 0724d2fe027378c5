// The SIMD vocabulary: four doubles in every build, where the number of lanes is a promise or a tile's.
//
//   splat, load, store, + - * /, maxOf, join, lowHalf, highHalf    as in simd.h
//   storeNarrowed(p, a)                                            the four as singles
//   widened(a)                                                     four singles
//   firstOnly(x)                                                   x in lane 0, zeros behind it
//   foldHalves(a)                                                  lanes 0 and 1 + lanes 2 and 3
//   firstLane(a)                                                   lane 0
#pragma once

#include "simd/simd.h"

namespace vorn {

#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
VORN_INLINE f64x4 widened(f32x4 a) { return {_mm256_cvtps_pd(a.v)}; }
VORN_INLINE f64x4 firstOnly(double x) { return {_mm256_insertf128_pd(_mm256_setzero_pd(), _mm_set_sd(x), 0)}; }
VORN_INLINE double firstLane(f64x4 a) { return firstLane(lowHalf(a)); }
#else
struct f64x4 {
    static constexpr int lanes = 4;
    using Element = double;
    f64x2 low, high;
};
template <>
VORN_INLINE f64x4 load<f64x4>(const double* p) {
    return {load<f64x2>(p), load<f64x2>(p + 2)};
}
template <>
VORN_INLINE f64x4 splat<f64x4>(double x) {
    return {splat<f64x2>(x), splat<f64x2>(x)};
}
VORN_INLINE void store(double* p, f64x4 a) { store(p, a.low), store(p + 2, a.high); }
VORN_INLINE void storeNarrowed(float* p, f64x4 a) { storeNarrowed(p, a.low), storeNarrowed(p + 2, a.high); }
VORN_INLINE f64x4 operator+(f64x4 a, f64x4 b) { return {a.low + b.low, a.high + b.high}; }
VORN_INLINE f64x4 operator-(f64x4 a, f64x4 b) { return {a.low - b.low, a.high - b.high}; }
VORN_INLINE f64x4 operator*(f64x4 a, f64x4 b) { return {a.low * b.low, a.high * b.high}; }
VORN_INLINE f64x4 operator/(f64x4 a, f64x4 b) { return {a.low / b.low, a.high / b.high}; }
VORN_INLINE f64x4 maxOf(f64x4 a, f64x4 b) { return {maxOf(a.low, b.low), maxOf(a.high, b.high)}; }
VORN_INLINE f64x4 join(f64x2 low, f64x2 high) { return {low, high}; }
VORN_INLINE f64x2 lowHalf(f64x4 a) { return a.low; }
VORN_INLINE f64x2 highHalf(f64x4 a) { return a.high; }
VORN_INLINE f64x4 widened(f32x4 a) { return {widenLow(a), widenHigh(a)}; }
VORN_INLINE f64x4 firstOnly(double x) { return {withFirst(splat<f64x2>(0.0), x), splat<f64x2>(0.0)}; }
VORN_INLINE double firstLane(f64x4 a) { return firstLane(a.low); }
#endif
VORN_INLINE f64x2 foldHalves(f64x4 a) { return lowHalf(a) + highHalf(a); }

}  // namespace vorn
