// The SIMD vocabulary: small value types with named lanes. Nobody else uses intrinsics.
//
// Fixed types have the same lanes in every build: f32x4, f64x2, i32x4, i64x2, i16x8, i8x16. Sums whose order is
// promised are written in them. Wide types take the width of the build: f32xN, f64xN, i32xN, i64xN, i16xN, i8xN, u8xN
// (four singles in the baseline, eight with AVX2, sixteen with AVX-512). Element-wise work is written in them, so that
// one source is the kernel of every build.
//
// What holds for every operation here:
//  - it means the same in every build, lane by lane; there is no multiply-add and no estimate;
//  - minOf(a, b) and maxOf(a, b) are the processor's: where the lanes are equal or either is not a number, the result
//  is b;
//  - roundToInt uses the current rounding mode, truncToInt truncates; out of range both give -2147483648;
//  - loads and stores take any address; loadFirst and storeFirst touch n elements only, with 0 <= n <= lanes;
//  - a comparison gives a mask; select(m, a, b) takes a where m holds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "simd/sse.h"

#if defined(__AVX2__)
#include "simd/avx2.h"
#endif

#if defined(__AVX512F__) && defined(__AVX512BW__) && defined(__AVX512DQ__) && defined(__AVX512VL__)
#include "simd/avx512.h"
#define VORN_SIMD_AVX512 1
#elif defined(__AVX2__)
#define VORN_SIMD_AVX2 1
#endif

namespace vorn {

#if defined(VORN_SIMD_AVX512)
using f32xN = f32x16;
using f64xN = f64x8;
using i64xN = i64x8;
using i32xN = i32x16;
using i16xN = i16x32;
using i8xN = i8x64;
using u8xN = u8x64;
#elif defined(VORN_SIMD_AVX2)
using f32xN = f32x8;
using f64xN = f64x4;
using i64xN = i64x4;
using i32xN = i32x8;
using i16xN = i16x16;
using i8xN = i8x32;
using u8xN = u8x32;
#else
using f32xN = f32x4;
using f64xN = f64x2;
using i64xN = i64x2;
using i32xN = i32x4;
using i16xN = i16x8;
using i8xN = i8x16;
using u8xN = u8x16;
#endif

// The vector type of the build whose elements are T, and how many it holds.
template <class T>
struct WideOf;
template <>
struct WideOf<float> {
    using type = f32xN;
};
template <>
struct WideOf<double> {
    using type = f64xN;
};
template <>
struct WideOf<std::int64_t> {
    using type = i64xN;
};
template <>
struct WideOf<std::int32_t> {
    using type = i32xN;
};
template <>
struct WideOf<std::int16_t> {
    using type = i16xN;
};
template <>
struct WideOf<std::uint8_t> {
    using type = u8xN;
};
template <>
struct WideOf<std::int8_t> {
    using type = i8xN;
};
template <class T>
using Wide = typename WideOf<T>::type;

}  // namespace vorn
