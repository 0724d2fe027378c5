// The SIMD vocabulary, 32-byte registers (AVX2).
#pragma once

#include "simd/sse.h"

namespace vorn {

struct f32x8 {
    static constexpr int lanes = 8;
    using Element = float;
    __m256 v;
};
struct f64x4 {
    static constexpr int lanes = 4;
    using Element = double;
    __m256d v;
};
struct i64x4 {
    static constexpr int lanes = 4;
    using Element = std::int64_t;
    __m256i v;
};
struct i32x8 {
    static constexpr int lanes = 8;
    using Element = std::int32_t;
    __m256i v;
};
struct i16x16 {
    static constexpr int lanes = 16;
    using Element = std::int16_t;
    __m256i v;
};
struct i8x32 {
    static constexpr int lanes = 32;
    using Element = std::int8_t;
    __m256i v;
};
struct u8x32 {
    static constexpr int lanes = 32;
    using Element = std::uint8_t;
    __m256i v;
};

// A mask of 32-bit or 64-bit lanes: all bits of a lane set, or none.
struct mask32x8 {
    __m256 v;
};
struct mask64x4 {
    __m256d v;
};
struct mask16x16 {
    __m256i v;
};

// Loads, stores, constants.

template <>
VORN_INLINE f32x8 load<f32x8>(const float* p) {
    return {_mm256_loadu_ps(p)};
}
VORN_INLINE void store(float* p, f32x8 a) { _mm256_storeu_ps(p, a.v); }
template <>
VORN_INLINE f32x8 splat<f32x8>(float x) {
    return {_mm256_set1_ps(x)};
}
// Bypasses the cache; p is on a 32-byte address. Close a run of these with storeFence().
VORN_INLINE void storeStream(float* p, f32x8 a) { _mm256_stream_ps(p, a.v); }
template <>
VORN_INLINE f64x4 load<f64x4>(const double* p) {
    return {_mm256_loadu_pd(p)};
}
VORN_INLINE void store(double* p, f64x4 a) { _mm256_storeu_pd(p, a.v); }
template <>
VORN_INLINE f64x4 splat<f64x4>(double x) {
    return {_mm256_set1_pd(x)};
}
// Bypasses the cache; p is on a 32-byte address. Close a run of these with storeFence().
VORN_INLINE void storeStream(double* p, f64x4 a) { _mm256_stream_pd(p, a.v); }
template <IntegerLanes<32> V>
VORN_INLINE V load(const typename V::Element* p) {
    return {_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p))};
}
template <IntegerLanes<32> V>
VORN_INLINE void store(typename V::Element* p, V a) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), a.v);
}
template <IntegerLanes<32> V>
VORN_INLINE void storeStream(typename V::Element* p, V a) {
    _mm256_stream_si256(reinterpret_cast<__m256i*>(p), a.v);
}
template <>
VORN_INLINE i64x4 splat<i64x4>(std::int64_t x) {
    return {_mm256_set1_epi64x(x)};
}
template <>
VORN_INLINE i32x8 splat<i32x8>(std::int32_t x) {
    return {_mm256_set1_epi32(x)};
}
template <>
VORN_INLINE i16x16 splat<i16x16>(std::int16_t x) {
    return {_mm256_set1_epi16(x)};
}
template <>
VORN_INLINE i8x32 splat<i8x32>(std::int8_t x) {
    return {_mm256_set1_epi8(x)};
}

VORN_INLINE __m256i laneBelow32(std::ptrdiff_t n) {
    return _mm256_cmpgt_epi32(_mm256_set1_epi32(static_cast<int>(n)), _mm256_setr_epi32(0, 1, 2, 3, 4, 5, 6, 7));
}
VORN_INLINE __m256i laneBelow64(std::ptrdiff_t n) {
    return _mm256_cmpgt_epi64(_mm256_set1_epi64x(n), _mm256_setr_epi64x(0, 1, 2, 3));
}
template <>
VORN_INLINE f32x8 loadFirst<f32x8>(const float* p, std::ptrdiff_t n) {
    return {_mm256_maskload_ps(p, laneBelow32(n))};
}
VORN_INLINE void storeFirst(float* p, f32x8 a, std::ptrdiff_t n) { _mm256_maskstore_ps(p, laneBelow32(n), a.v); }
template <>
VORN_INLINE f64x4 loadFirst<f64x4>(const double* p, std::ptrdiff_t n) {
    return {_mm256_maskload_pd(p, laneBelow64(n))};
}
VORN_INLINE void storeFirst(double* p, f64x4 a, std::ptrdiff_t n) { _mm256_maskstore_pd(p, laneBelow64(n), a.v); }
template <>
VORN_INLINE i64x4 loadFirst<i64x4>(const std::int64_t* p, std::ptrdiff_t n) {
    return {_mm256_maskload_epi64(reinterpret_cast<const long long*>(p), laneBelow64(n))};
}
VORN_INLINE void storeFirst(std::int64_t* p, i64x4 a, std::ptrdiff_t n) {
    _mm256_maskstore_epi64(reinterpret_cast<long long*>(p), laneBelow64(n), a.v);
}
template <>
VORN_INLINE i32x8 loadFirst<i32x8>(const std::int32_t* p, std::ptrdiff_t n) {
    return {_mm256_maskload_epi32(p, laneBelow32(n))};
}
VORN_INLINE void storeFirst(std::int32_t* p, i32x8 a, std::ptrdiff_t n) {
    _mm256_maskstore_epi32(p, laneBelow32(n), a.v);
}

// Arithmetic.

VORN_INLINE f32x8 operator+(f32x8 a, f32x8 b) { return {_mm256_add_ps(a.v, b.v)}; }
VORN_INLINE f32x8 operator-(f32x8 a, f32x8 b) { return {_mm256_sub_ps(a.v, b.v)}; }
VORN_INLINE f32x8 operator*(f32x8 a, f32x8 b) { return {_mm256_mul_ps(a.v, b.v)}; }
VORN_INLINE f32x8 operator/(f32x8 a, f32x8 b) { return {_mm256_div_ps(a.v, b.v)}; }
VORN_INLINE f32x8 minOf(f32x8 a, f32x8 b) { return {_mm256_min_ps(a.v, b.v)}; }
VORN_INLINE f32x8 maxOf(f32x8 a, f32x8 b) { return {_mm256_max_ps(a.v, b.v)}; }
VORN_INLINE f32x8 sqrtOf(f32x8 a) { return {_mm256_sqrt_ps(a.v)}; }
VORN_INLINE f32x8 operator&(f32x8 a, f32x8 b) { return {_mm256_and_ps(a.v, b.v)}; }
VORN_INLINE f32x8 operator|(f32x8 a, f32x8 b) { return {_mm256_or_ps(a.v, b.v)}; }
VORN_INLINE f32x8 operator^(f32x8 a, f32x8 b) { return {_mm256_xor_ps(a.v, b.v)}; }
VORN_INLINE f32x8 absOf(f32x8 a) { return {_mm256_andnot_ps(_mm256_set1_ps(-0.0f), a.v)}; }
VORN_INLINE f32x8 operator-(f32x8 a) { return {_mm256_xor_ps(_mm256_set1_ps(-0.0f), a.v)}; }
VORN_INLINE f64x4 operator+(f64x4 a, f64x4 b) { return {_mm256_add_pd(a.v, b.v)}; }
VORN_INLINE f64x4 operator-(f64x4 a, f64x4 b) { return {_mm256_sub_pd(a.v, b.v)}; }
VORN_INLINE f64x4 operator*(f64x4 a, f64x4 b) { return {_mm256_mul_pd(a.v, b.v)}; }
VORN_INLINE f64x4 operator/(f64x4 a, f64x4 b) { return {_mm256_div_pd(a.v, b.v)}; }
VORN_INLINE f64x4 minOf(f64x4 a, f64x4 b) { return {_mm256_min_pd(a.v, b.v)}; }
VORN_INLINE f64x4 maxOf(f64x4 a, f64x4 b) { return {_mm256_max_pd(a.v, b.v)}; }
VORN_INLINE f64x4 sqrtOf(f64x4 a) { return {_mm256_sqrt_pd(a.v)}; }
VORN_INLINE f64x4 operator&(f64x4 a, f64x4 b) { return {_mm256_and_pd(a.v, b.v)}; }
VORN_INLINE f64x4 operator|(f64x4 a, f64x4 b) { return {_mm256_or_pd(a.v, b.v)}; }
VORN_INLINE f64x4 operator^(f64x4 a, f64x4 b) { return {_mm256_xor_pd(a.v, b.v)}; }
VORN_INLINE f64x4 absOf(f64x4 a) { return {_mm256_andnot_pd(_mm256_set1_pd(-0.0), a.v)}; }
VORN_INLINE f64x4 operator-(f64x4 a) { return {_mm256_xor_pd(_mm256_set1_pd(-0.0), a.v)}; }
template <IntegerLanes<32> V>
VORN_INLINE V operator&(V a, V b) {
    return {_mm256_and_si256(a.v, b.v)};
}
template <IntegerLanes<32> V>
VORN_INLINE V operator|(V a, V b) {
    return {_mm256_or_si256(a.v, b.v)};
}
template <IntegerLanes<32> V>
VORN_INLINE V operator^(V a, V b) {
    return {_mm256_xor_si256(a.v, b.v)};
}
template <IntegerLanes<32> V>
VORN_INLINE V andNot(V a, V b) {
    return {_mm256_andnot_si256(a.v, b.v)};
}
VORN_INLINE i64x4 operator+(i64x4 a, i64x4 b) { return {_mm256_add_epi64(a.v, b.v)}; }
VORN_INLINE i64x4 operator-(i64x4 a, i64x4 b) { return {_mm256_sub_epi64(a.v, b.v)}; }
VORN_INLINE i32x8 operator+(i32x8 a, i32x8 b) { return {_mm256_add_epi32(a.v, b.v)}; }
VORN_INLINE i32x8 operator-(i32x8 a, i32x8 b) { return {_mm256_sub_epi32(a.v, b.v)}; }
VORN_INLINE i16x16 operator+(i16x16 a, i16x16 b) { return {_mm256_add_epi16(a.v, b.v)}; }
VORN_INLINE i16x16 operator-(i16x16 a, i16x16 b) { return {_mm256_sub_epi16(a.v, b.v)}; }
VORN_INLINE i8x32 operator+(i8x32 a, i8x32 b) { return {_mm256_add_epi8(a.v, b.v)}; }
VORN_INLINE i8x32 operator-(i8x32 a, i8x32 b) { return {_mm256_sub_epi8(a.v, b.v)}; }
VORN_INLINE i16x16 addSat(i16x16 a, i16x16 b) { return {_mm256_adds_epi16(a.v, b.v)}; }
VORN_INLINE i16x16 subSat(i16x16 a, i16x16 b) { return {_mm256_subs_epi16(a.v, b.v)}; }
VORN_INLINE i16x16 minOf(i16x16 a, i16x16 b) { return {_mm256_min_epi16(a.v, b.v)}; }
VORN_INLINE i16x16 maxOf(i16x16 a, i16x16 b) { return {_mm256_max_epi16(a.v, b.v)}; }
// Low and high halves of the 16 by 16 bit products.
VORN_INLINE i16x16 mulLow(i16x16 a, i16x16 b) { return {_mm256_mullo_epi16(a.v, b.v)}; }
VORN_INLINE i16x16 mulHigh(i16x16 a, i16x16 b) { return {_mm256_mulhi_epi16(a.v, b.v)}; }
// Products of 16-bit lanes, neighbours added in 32 bits (two squares of -32768 wrap).
VORN_INLINE i32x8 mulAddPairs(i16x16 a, i16x16 b) { return {_mm256_madd_epi16(a.v, b.v)}; }

// Exact integer arithmetic: saturation, products and sums that are wider than their operands.

VORN_INLINE i8x32 addSatUnsigned(i8x32 a, i8x32 b) { return {_mm256_adds_epu8(a.v, b.v)}; }
VORN_INLINE i8x32 subSatUnsigned(i8x32 a, i8x32 b) { return {_mm256_subs_epu8(a.v, b.v)}; }
VORN_INLINE i16x16 addSatUnsigned(i16x16 a, i16x16 b) { return {_mm256_adds_epu16(a.v, b.v)}; }
VORN_INLINE i16x16 subSatUnsigned(i16x16 a, i16x16 b) { return {_mm256_subs_epu16(a.v, b.v)}; }
VORN_INLINE i16x16 mulHighUnsigned(i16x16 a, i16x16 b) { return {_mm256_mulhi_epu16(a.v, b.v)}; }
VORN_INLINE i64x4 mulEven(i32x8 a, i32x8 b) { return {_mm256_mul_epi32(a.v, b.v)}; }
VORN_INLINE i64x4 shiftRight(i64x4 a, int count) {
    const __m256i sign = _mm256_cmpgt_epi64(_mm256_setzero_si256(), a.v);
    return {_mm256_xor_si256(_mm256_srl_epi64(_mm256_xor_si256(a.v, sign), _mm_cvtsi32_si128(count)), sign)};
}
VORN_INLINE i64x4 saturateTo32(i64x4 a) {
    const __m256i high = _mm256_shuffle_epi32(a.v, 0xF5), low = _mm256_shuffle_epi32(a.v, 0xA0);
    const __m256i fits = _mm256_cmpeq_epi32(high, _mm256_srai_epi32(low, 31));
    const __m256i limit = _mm256_xor_si256(_mm256_srai_epi32(high, 31), _mm256_set1_epi64x(0x7FFFFFFF));
    return {_mm256_blendv_epi8(limit, a.v, fits)};
}
template <>
VORN_INLINE i64x4 loadInto64<i64x4>(const std::int32_t* p) {
    return {_mm256_cvtepi32_epi64(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)))};
}
VORN_INLINE Halves<i16x16> splitUnsigned(i8x32 a) {
    const __m256i zero = _mm256_setzero_si256();
    return {{_mm256_unpacklo_epi8(a.v, zero)}, {_mm256_unpackhi_epi8(a.v, zero)}};
}
VORN_INLINE Halves<i32x8> zip(i16x16 lower, i16x16 upper) {
    return {{_mm256_unpacklo_epi16(lower.v, upper.v)}, {_mm256_unpackhi_epi16(lower.v, upper.v)}};
}
VORN_INLINE Halves<i32x8> zip(i32x8 even, i32x8 odd) {
    return {{_mm256_unpacklo_epi32(even.v, odd.v)}, {_mm256_unpackhi_epi32(even.v, odd.v)}};
}
VORN_INLINE i16x16 joinSat(Halves<i32x8> a) { return {_mm256_packs_epi32(a.low.v, a.high.v)}; }
VORN_INLINE i8x32 joinSatUnsigned(Halves<i16x16> a) { return {_mm256_packus_epi16(a.low.v, a.high.v)}; }
VORN_INLINE Halves<i32x8> inOrder(Halves<i32x8> a) {
    return {{_mm256_permute2x128_si256(a.low.v, a.high.v, 0x20)}, {_mm256_permute2x128_si256(a.low.v, a.high.v, 0x31)}};
}
VORN_INLINE Halves<i16x16> inOrder(Halves<i16x16> a) {
    return {{_mm256_permute2x128_si256(a.low.v, a.high.v, 0x20)}, {_mm256_permute2x128_si256(a.low.v, a.high.v, 0x31)}};
}

VORN_INLINE f32x8 interleaveLow(f32x8 a, f32x8 b) {
    return {_mm256_castsi256_ps(_mm256_unpacklo_epi32(_mm256_castps_si256(a.v), _mm256_castps_si256(b.v)))};
}
VORN_INLINE f32x8 interleaveHigh(f32x8 a, f32x8 b) {
    return {_mm256_castsi256_ps(_mm256_unpackhi_epi32(_mm256_castps_si256(a.v), _mm256_castps_si256(b.v)))};
}
VORN_INLINE f64x4 interleaveLow(f64x4 a, f64x4 b) {
    return {_mm256_castsi256_pd(_mm256_unpacklo_epi64(_mm256_castpd_si256(a.v), _mm256_castpd_si256(b.v)))};
}
VORN_INLINE f64x4 interleaveHigh(f64x4 a, f64x4 b) {
    return {_mm256_castsi256_pd(_mm256_unpackhi_epi64(_mm256_castpd_si256(a.v), _mm256_castpd_si256(b.v)))};
}
VORN_INLINE f32x8 dupEven(f32x8 a) { return {_mm256_moveldup_ps(a.v)}; }
VORN_INLINE f32x8 dupOdd(f32x8 a) { return {_mm256_movehdup_ps(a.v)}; }
VORN_INLINE f32x8 swapPairs(f32x8 a) {
    return {_mm256_castsi256_ps(_mm256_shuffle_epi32(_mm256_castps_si256(a.v), 0xB1))};
}
VORN_INLINE f32x8 addSub(f32x8 a, f32x8 b) { return {_mm256_addsub_ps(a.v, b.v)}; }
VORN_INLINE f64x4 dupEven(f64x4 a) { return {_mm256_movedup_pd(a.v)}; }
VORN_INLINE f64x4 dupOdd(f64x4 a) {
    return {_mm256_castsi256_pd(_mm256_shuffle_epi32(_mm256_castpd_si256(a.v), 0xEE))};
}
VORN_INLINE f64x4 swapPairs(f64x4 a) {
    return {_mm256_castsi256_pd(_mm256_shuffle_epi32(_mm256_castpd_si256(a.v), 0x4E))};
}
VORN_INLINE f64x4 addSub(f64x4 a, f64x4 b) { return {_mm256_addsub_pd(a.v, b.v)}; }

// Shifts. A count at or above the width gives 0, in an arithmetic shift the sign fill.

VORN_INLINE i64x4 shiftLeft(i64x4 a, int count) { return {_mm256_sll_epi64(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i64x4 shiftRightLogical(i64x4 a, int count) { return {_mm256_srl_epi64(a.v, _mm_cvtsi32_si128(count))}; }
template <int count>
VORN_INLINE i64x4 shiftLeft(i64x4 a) {
    return {_mm256_slli_epi64(a.v, count)};
}
template <int count>
VORN_INLINE i64x4 shiftRightLogical(i64x4 a) {
    return {_mm256_srli_epi64(a.v, count)};
}
VORN_INLINE i32x8 shiftLeft(i32x8 a, int count) { return {_mm256_sll_epi32(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i32x8 shiftRightLogical(i32x8 a, int count) { return {_mm256_srl_epi32(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i32x8 shiftRight(i32x8 a, int count) { return {_mm256_sra_epi32(a.v, _mm_cvtsi32_si128(count))}; }
template <int count>
VORN_INLINE i32x8 shiftLeft(i32x8 a) {
    return {_mm256_slli_epi32(a.v, count)};
}
template <int count>
VORN_INLINE i32x8 shiftRightLogical(i32x8 a) {
    return {_mm256_srli_epi32(a.v, count)};
}
template <int count>
VORN_INLINE i32x8 shiftRight(i32x8 a) {
    return {_mm256_srai_epi32(a.v, count)};
}
VORN_INLINE i16x16 shiftLeft(i16x16 a, int count) { return {_mm256_sll_epi16(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i16x16 shiftRightLogical(i16x16 a, int count) { return {_mm256_srl_epi16(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i16x16 shiftRight(i16x16 a, int count) { return {_mm256_sra_epi16(a.v, _mm_cvtsi32_si128(count))}; }
template <int count>
VORN_INLINE i16x16 shiftLeft(i16x16 a) {
    return {_mm256_slli_epi16(a.v, count)};
}
template <int count>
VORN_INLINE i16x16 shiftRightLogical(i16x16 a) {
    return {_mm256_srli_epi16(a.v, count)};
}
template <int count>
VORN_INLINE i16x16 shiftRight(i16x16 a) {
    return {_mm256_srai_epi16(a.v, count)};
}

// Comparisons and selection.

VORN_INLINE mask32x8 operator<(f32x8 a, f32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_LT_OQ)}; }
VORN_INLINE mask32x8 operator<=(f32x8 a, f32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_LE_OQ)}; }
VORN_INLINE mask32x8 operator>(f32x8 a, f32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_GT_OQ)}; }
VORN_INLINE mask32x8 operator>=(f32x8 a, f32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_GE_OQ)}; }
VORN_INLINE mask32x8 operator==(f32x8 a, f32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_EQ_OQ)}; }
VORN_INLINE mask32x8 operator!=(f32x8 a, f32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_NEQ_UQ)}; }
VORN_INLINE mask32x8 unordered(f32x8 a, f32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_UNORD_Q)}; }
VORN_INLINE f32x8 select(mask32x8 m, f32x8 a, f32x8 b) { return {_mm256_blendv_ps(b.v, a.v, m.v)}; }
VORN_INLINE mask64x4 operator<(f64x4 a, f64x4 b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_LT_OQ)}; }
VORN_INLINE mask64x4 operator<=(f64x4 a, f64x4 b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_LE_OQ)}; }
VORN_INLINE mask64x4 operator>(f64x4 a, f64x4 b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_GT_OQ)}; }
VORN_INLINE mask64x4 operator>=(f64x4 a, f64x4 b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_GE_OQ)}; }
VORN_INLINE mask64x4 operator==(f64x4 a, f64x4 b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_EQ_OQ)}; }
VORN_INLINE mask64x4 operator!=(f64x4 a, f64x4 b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_NEQ_UQ)}; }
VORN_INLINE mask64x4 unordered(f64x4 a, f64x4 b) { return {_mm256_cmp_pd(a.v, b.v, _CMP_UNORD_Q)}; }
VORN_INLINE f64x4 select(mask64x4 m, f64x4 a, f64x4 b) { return {_mm256_blendv_pd(b.v, a.v, m.v)}; }
VORN_INLINE mask32x8 operator>(i32x8 a, i32x8 b) { return {_mm256_castsi256_ps(_mm256_cmpgt_epi32(a.v, b.v))}; }
VORN_INLINE mask32x8 operator==(i32x8 a, i32x8 b) { return {_mm256_castsi256_ps(_mm256_cmpeq_epi32(a.v, b.v))}; }
VORN_INLINE i32x8 select(mask32x8 m, i32x8 a, i32x8 b) {
    return {_mm256_blendv_epi8(b.v, a.v, _mm256_castps_si256(m.v))};
}
VORN_INLINE mask16x16 operator>(i16x16 a, i16x16 b) { return {_mm256_cmpgt_epi16(a.v, b.v)}; }
VORN_INLINE mask16x16 operator==(i16x16 a, i16x16 b) { return {_mm256_cmpeq_epi16(a.v, b.v)}; }
VORN_INLINE i16x16 select(mask16x16 m, i16x16 a, i16x16 b) { return {_mm256_blendv_epi8(b.v, a.v, m.v)}; }
VORN_INLINE mask32x8 operator&(mask32x8 a, mask32x8 b) { return {_mm256_and_ps(a.v, b.v)}; }
VORN_INLINE mask32x8 operator|(mask32x8 a, mask32x8 b) { return {_mm256_or_ps(a.v, b.v)}; }
VORN_INLINE mask32x8 operator!(mask32x8 a) { return {_mm256_xor_ps(a.v, _mm256_castsi256_ps(_mm256_set1_epi32(-1)))}; }
VORN_INLINE bool any(mask32x8 a) { return _mm256_movemask_ps(a.v) != 0; }
VORN_INLINE bool all(mask32x8 a) { return _mm256_movemask_ps(a.v) == 255; }
// Bit i is lane i.
VORN_INLINE unsigned laneBits(mask32x8 a) { return static_cast<unsigned>(_mm256_movemask_ps(a.v)); }
VORN_INLINE mask64x4 operator&(mask64x4 a, mask64x4 b) { return {_mm256_and_pd(a.v, b.v)}; }
VORN_INLINE mask64x4 operator|(mask64x4 a, mask64x4 b) { return {_mm256_or_pd(a.v, b.v)}; }
VORN_INLINE mask64x4 operator!(mask64x4 a) { return {_mm256_xor_pd(a.v, _mm256_castsi256_pd(_mm256_set1_epi32(-1)))}; }
VORN_INLINE bool any(mask64x4 a) { return _mm256_movemask_pd(a.v) != 0; }
VORN_INLINE bool all(mask64x4 a) { return _mm256_movemask_pd(a.v) == 15; }
// Bit i is lane i.
VORN_INLINE unsigned laneBits(mask64x4 a) { return static_cast<unsigned>(_mm256_movemask_pd(a.v)); }
VORN_INLINE mask16x16 operator&(mask16x16 a, mask16x16 b) { return {_mm256_and_si256(a.v, b.v)}; }
VORN_INLINE mask16x16 operator|(mask16x16 a, mask16x16 b) { return {_mm256_or_si256(a.v, b.v)}; }
VORN_INLINE mask16x16 operator!(mask16x16 a) { return {_mm256_xor_si256(a.v, _mm256_set1_epi32(-1))}; }
VORN_INLINE bool any(mask16x16 a) { return _mm256_movemask_epi8(a.v) != 0; }

// Conversions.

VORN_INLINE f32x8 toFloat(i32x8 a) { return {_mm256_cvtepi32_ps(a.v)}; }
VORN_INLINE i16x16 shortsOf(i32x8 a) { return {a.v}; }
VORN_INLINE i32x8 intsOf(i16x16 a) { return {a.v}; }
VORN_INLINE i32x8 roundToInt(f32x8 a) { return {_mm256_cvtps_epi32(a.v)}; }
VORN_INLINE i32x8 truncToInt(f32x8 a) { return {_mm256_cvttps_epi32(a.v)}; }
VORN_INLINE i32x8 bitsOf(f32x8 a) { return {_mm256_castps_si256(a.v)}; }
VORN_INLINE i64x4 bitsOf(f64x4 a) { return {_mm256_castpd_si256(a.v)}; }
VORN_INLINE f32x8 floatOf(i32x8 bits) { return {_mm256_castsi256_ps(bits.v)}; }
VORN_INLINE f64x4 floatOf(i64x4 bits) { return {_mm256_castsi256_pd(bits.v)}; }
VORN_INLINE f64x4 widenLow(f32x8 a) { return {_mm256_cvtps_pd(_mm256_castps256_ps128(a.v))}; }
VORN_INLINE f64x4 widenHigh(f32x8 a) { return {_mm256_cvtps_pd(_mm256_extractf128_ps(a.v, 1))}; }
VORN_INLINE f32x8 narrow(f64x4 low, f64x4 high) {
    return {_mm256_set_m128(_mm256_cvtpd_ps(high.v), _mm256_cvtpd_ps(low.v))};
}
VORN_INLINE i32x8 widenLow(i16x16 a) { return {_mm256_cvtepi16_epi32(_mm256_castsi256_si128(a.v))}; }
VORN_INLINE i32x8 widenHigh(i16x16 a) { return {_mm256_cvtepi16_epi32(_mm256_extracti128_si256(a.v, 1))}; }
VORN_INLINE i16x16 narrowSat(i32x8 low, i32x8 high) {
    return {_mm256_permute4x64_epi64(_mm256_packs_epi32(low.v, high.v), 0xD8)};
}
VORN_INLINE f64x4 toDoubleLow(i32x8 a) { return {_mm256_cvtepi32_pd(_mm256_castsi256_si128(a.v))}; }
VORN_INLINE f64x4 toDoubleHigh(i32x8 a) { return {_mm256_cvtepi32_pd(_mm256_extracti128_si256(a.v, 1))}; }
VORN_INLINE i32x8 roundToInt(f64x4 low, f64x4 high) {
    return {_mm256_set_m128i(_mm256_cvtpd_epi32(high.v), _mm256_cvtpd_epi32(low.v))};
}
VORN_INLINE i32x8 truncToInt(f64x4 low, f64x4 high) {
    return {_mm256_set_m128i(_mm256_cvttpd_epi32(high.v), _mm256_cvttpd_epi32(low.v))};
}

// Order of the lanes.

VORN_INLINE i32x8 reverse(i32x8 a) {
    return {_mm256_permutevar8x32_epi32(a.v, _mm256_setr_epi32(7, 6, 5, 4, 3, 2, 1, 0))};
}
VORN_INLINE i64x4 reverse(i64x4 a) { return {_mm256_permute4x64_epi64(a.v, 0x1B)}; }
VORN_INLINE i64x4 reversePairs(i64x4 a) { return {_mm256_permute4x64_epi64(a.v, 0x4E)}; }
template <>
VORN_INLINE i64x4 splatPair<i64x4>(std::int64_t even, std::int64_t odd) {
    return {_mm256_set_epi64x(odd, even, odd, even)};
}

// Widening loads: one element a lane, its value kept.

VORN_INLINE __m128i loadSixteenBytes(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }
template <>
VORN_INLINE i16x16 loadWidened<i16x16>(const std::int8_t* p) {
    return {_mm256_cvtepi8_epi16(loadSixteenBytes(p))};
}
template <>
VORN_INLINE i32x8 loadWidened<i32x8>(const std::int8_t* p) {
    return {_mm256_cvtepi8_epi32(loadEightBytes(p))};
}
template <>
VORN_INLINE i32x8 loadWidened<i32x8>(const std::uint8_t* p) {
    return {_mm256_cvtepu8_epi32(loadEightBytes(p))};
}
template <>
VORN_INLINE i32x8 loadWidened<i32x8>(const std::int16_t* p) {
    return {_mm256_cvtepi16_epi32(loadSixteenBytes(p))};
}
template <>
VORN_INLINE i32x8 loadWidened<i32x8>(const std::uint16_t* p) {
    return {_mm256_cvtepu16_epi32(loadSixteenBytes(p))};
}
template <>
VORN_INLINE f64x4 loadWidened<f64x4>(const std::int16_t* p) {
    return {_mm256_cvtepi32_pd(_mm_cvtepi16_epi32(loadEightBytes(p)))};
}
template <>
VORN_INLINE f64x4 loadWidened<f64x4>(const std::int32_t* p) {
    return {_mm256_cvtepi32_pd(loadSixteenBytes(p))};
}
template <>
VORN_INLINE f64x4 loadWidened<f64x4>(const float* p) {
    return {_mm256_cvtps_pd(_mm_loadu_ps(p))};
}

VORN_INLINE i8x32 narrowSat8(i32x8 a, i32x8 b, i32x8 c, i32x8 d) {
    const __m256i mixed = _mm256_packs_epi16(_mm256_packs_epi32(a.v, b.v), _mm256_packs_epi32(c.v, d.v));
    return {_mm256_permutevar8x32_epi32(mixed, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7))};
}
VORN_INLINE i8x32 narrowSatU8(i32x8 a, i32x8 b, i32x8 c, i32x8 d) {
    const __m256i mixed = _mm256_packus_epi16(_mm256_packs_epi32(a.v, b.v), _mm256_packs_epi32(c.v, d.v));
    return {_mm256_permutevar8x32_epi32(mixed, _mm256_setr_epi32(0, 4, 1, 5, 2, 6, 3, 7))};
}
VORN_INLINE i16x16 narrowU16(i32x8 low, i32x8 high) {
    return {_mm256_permute4x64_epi64(_mm256_packus_epi32(low.v, high.v), 0xD8)};
}
VORN_INLINE void storeNarrowed(float* p, f64x4 a) { _mm_storeu_ps(p, _mm256_cvtpd_ps(a.v)); }
VORN_INLINE i32x8 maxOf(i32x8 a, i32x8 b) { return {_mm256_max_epi32(a.v, b.v)}; }
VORN_INLINE i32x8 minOf(i32x8 a, i32x8 b) { return {_mm256_min_epi32(a.v, b.v)}; }
VORN_INLINE i32x8 absSat(i32x8 a) { return {_mm256_min_epu32(_mm256_abs_epi32(a.v), _mm256_set1_epi32(0x7FFFFFFF))}; }

// Unsigned bytes, for what depends on their order.

template <>
VORN_INLINE u8x32 splat<u8x32>(std::uint8_t x) {
    return {_mm256_set1_epi8(static_cast<char>(x))};
}
VORN_INLINE u8x32 minOf(u8x32 a, u8x32 b) { return {_mm256_min_epu8(a.v, b.v)}; }
VORN_INLINE u8x32 maxOf(u8x32 a, u8x32 b) { return {_mm256_max_epu8(a.v, b.v)}; }

// Parts and sums of the lanes.

VORN_INLINE f32x4 lowHalf(f32x8 a) { return {_mm256_castps256_ps128(a.v)}; }
VORN_INLINE f32x4 highHalf(f32x8 a) { return {_mm256_extractf128_ps(a.v, 1)}; }
VORN_INLINE f64x2 lowHalf(f64x4 a) { return {_mm256_castpd256_pd128(a.v)}; }
VORN_INLINE f64x2 highHalf(f64x4 a) { return {_mm256_extractf128_pd(a.v, 1)}; }
VORN_INLINE i32x4 lowHalf(i32x8 a) { return {_mm256_castsi256_si128(a.v)}; }
VORN_INLINE i32x4 highHalf(i32x8 a) { return {_mm256_extracti128_si256(a.v, 1)}; }
VORN_INLINE f32x8 join(f32x4 low, f32x4 high) { return {_mm256_set_m128(high.v, low.v)}; }
VORN_INLINE f64x4 join(f64x2 low, f64x2 high) { return {_mm256_set_m128d(high.v, low.v)}; }

// Table look-up inside the registers: each lane takes the entry of a table of four that its index (0 to 3) names. Not
// in the baseline, which has no such instruction: ask with `requires`.

template <class V, class Index>
V lookup(const typename V::Element* four, Index index);

template <>
VORN_INLINE f32x4 lookup<f32x4>(const float* four, i32x4 index) {
    return {_mm_permutevar_ps(_mm_loadu_ps(four), index.v)};
}
template <>
VORN_INLINE f32x8 lookup<f32x8>(const float* four, i32x8 index) {
    return {_mm256_permutevar_ps(_mm256_broadcast_ps(reinterpret_cast<const __m128*>(four)), index.v)};
}
template <>
VORN_INLINE f64x4 lookup<f64x4>(const double* four, i64x4 index) {
    const __m256i low = _mm256_shuffle_epi32(_mm256_add_epi64(index.v, index.v), 0xA0);
    const __m256i halves = _mm256_add_epi32(low, _mm256_set1_epi64x(std::int64_t{1} << 32));
    return {_mm256_castps_pd(_mm256_permutevar8x32_ps(_mm256_castpd_ps(_mm256_loadu_pd(four)), halves))};
}
template <>
VORN_INLINE f64x2 lookup<f64x2>(const double* four, i64x2 index) {
    return lowHalf(lookup<f64x4>(four, i64x4{_mm256_castsi128_si256(index.v)}));
}

// Pairs, columns, order of the lanes.

VORN_INLINE void loadPairs(const float* p, f32x8& first, f32x8& second) {
    const __m256 even = _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(p)), _mm_loadu_ps(p + 8), 1);
    const __m256 odd = _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(p + 4)), _mm_loadu_ps(p + 12), 1);
    first = {_mm256_shuffle_ps(even, odd, _MM_SHUFFLE(2, 0, 2, 0))};
    second = {_mm256_shuffle_ps(even, odd, _MM_SHUFFLE(3, 1, 3, 1))};
}
VORN_INLINE void storePairs(float* p, f32x8 first, f32x8 second) {
    const __m256 even = interleaveLow(first, second).v, odd = interleaveHigh(first, second).v;
    _mm256_storeu_ps(p, _mm256_permute2f128_ps(even, odd, 0x20));
    _mm256_storeu_ps(p + 8, _mm256_permute2f128_ps(even, odd, 0x31));
}
VORN_INLINE void loadPairs(const double* p, f64x4& first, f64x4& second) {
    const __m256d even = _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(p)), _mm_loadu_pd(p + 4), 1);
    const __m256d odd = _mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(p + 2)), _mm_loadu_pd(p + 6), 1);
    first = interleaveLow(f64x4{even}, f64x4{odd});
    second = interleaveHigh(f64x4{even}, f64x4{odd});
}
VORN_INLINE void storePairs(double* p, f64x4 first, f64x4 second) {
    const __m256d even = interleaveLow(first, second).v, odd = interleaveHigh(first, second).v;
    _mm256_storeu_pd(p, _mm256_permute2f128_pd(even, odd, 0x20));
    _mm256_storeu_pd(p + 4, _mm256_permute2f128_pd(even, odd, 0x31));
}
VORN_INLINE void loadPairs(const std::int32_t* p, i32x8& first, i32x8& second) {
    f32x8 even, odd;
    loadPairs(reinterpret_cast<const float*>(p), even, odd);
    first = bitsOf(even);
    second = bitsOf(odd);
}
VORN_INLINE f32x8 reverse(f32x8 a) {
    return {_mm256_permutevar8x32_ps(a.v, _mm256_setr_epi32(7, 6, 5, 4, 3, 2, 1, 0))};
}
VORN_INLINE f64x4 reverse(f64x4 a) { return {_mm256_permute4x64_pd(a.v, _MM_SHUFFLE(0, 1, 2, 3))}; }

}  // namespace vorn
