// The SIMD vocabulary, 64-byte registers (AVX-512 F, BW, DQ, VL).
#pragma once

#include "simd/avx2.h"

// GCC 12 takes the undefined pass-through operand inside its own AVX-512 intrinsics for an uninitialised value.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#pragma GCC diagnostic ignored "-Wuninitialized"
#endif

namespace vorn {

struct f32x16 {
    static constexpr int lanes = 16;
    using Element = float;
    __m512 v;
};
struct f64x8 {
    static constexpr int lanes = 8;
    using Element = double;
    __m512d v;
};
struct i64x8 {
    static constexpr int lanes = 8;
    using Element = std::int64_t;
    __m512i v;
};
struct i32x16 {
    static constexpr int lanes = 16;
    using Element = std::int32_t;
    __m512i v;
};
struct i16x32 {
    static constexpr int lanes = 32;
    using Element = std::int16_t;
    __m512i v;
};
struct i8x64 {
    static constexpr int lanes = 64;
    using Element = std::int8_t;
    __m512i v;
};
struct u8x64 {
    static constexpr int lanes = 64;
    using Element = std::uint8_t;
    __m512i v;
};

struct mask64x8 {
    __mmask8 v;
};
struct mask32x16 {
    __mmask16 v;
};
struct mask16x32 {
    __mmask32 v;
};
// A bit a lane in every one of them.
template <class M>
concept LaneMask = std::is_same_v<M, mask64x8> || std::is_same_v<M, mask32x16> || std::is_same_v<M, mask16x32>;

// Loads, stores, constants.

template <>
VORN_INLINE f32x16 load<f32x16>(const float* p) {
    return {_mm512_loadu_ps(p)};
}
VORN_INLINE void store(float* p, f32x16 a) { _mm512_storeu_ps(p, a.v); }
template <>
VORN_INLINE f32x16 splat<f32x16>(float x) {
    return {_mm512_set1_ps(x)};
}
// Bypasses the cache; p is on a 64-byte address. Close a run of these with storeFence().
VORN_INLINE void storeStream(float* p, f32x16 a) { _mm512_stream_ps(p, a.v); }
template <>
VORN_INLINE f64x8 load<f64x8>(const double* p) {
    return {_mm512_loadu_pd(p)};
}
VORN_INLINE void store(double* p, f64x8 a) { _mm512_storeu_pd(p, a.v); }
template <>
VORN_INLINE f64x8 splat<f64x8>(double x) {
    return {_mm512_set1_pd(x)};
}
// Bypasses the cache; p is on a 64-byte address. Close a run of these with storeFence().
VORN_INLINE void storeStream(double* p, f64x8 a) { _mm512_stream_pd(p, a.v); }
template <IntegerLanes<64> V>
VORN_INLINE V load(const typename V::Element* p) {
    return {_mm512_loadu_si512(reinterpret_cast<const __m512i*>(p))};
}
template <IntegerLanes<64> V>
VORN_INLINE void store(typename V::Element* p, V a) {
    _mm512_storeu_si512(reinterpret_cast<__m512i*>(p), a.v);
}
template <IntegerLanes<64> V>
VORN_INLINE void storeStream(typename V::Element* p, V a) {
    _mm512_stream_si512(reinterpret_cast<__m512i*>(p), a.v);
}
template <>
VORN_INLINE i64x8 splat<i64x8>(std::int64_t x) {
    return {_mm512_set1_epi64(x)};
}
template <>
VORN_INLINE i32x16 splat<i32x16>(std::int32_t x) {
    return {_mm512_set1_epi32(x)};
}
template <>
VORN_INLINE i16x32 splat<i16x32>(std::int16_t x) {
    return {_mm512_set1_epi16(x)};
}
template <>
VORN_INLINE i8x64 splat<i8x64>(std::int8_t x) {
    return {_mm512_set1_epi8(x)};
}

VORN_INLINE __mmask32 lanesBelow(std::ptrdiff_t n) { return _bzhi_u32(~0u, static_cast<unsigned>(n)); }
template <>
VORN_INLINE f32x16 loadFirst<f32x16>(const float* p, std::ptrdiff_t n) {
    return {_mm512_maskz_loadu_ps(static_cast<__mmask16>(lanesBelow(n)), p)};
}
VORN_INLINE void storeFirst(float* p, f32x16 a, std::ptrdiff_t n) {
    _mm512_mask_storeu_ps(p, static_cast<__mmask16>(lanesBelow(n)), a.v);
}
template <>
VORN_INLINE f64x8 loadFirst<f64x8>(const double* p, std::ptrdiff_t n) {
    return {_mm512_maskz_loadu_pd(static_cast<__mmask8>(lanesBelow(n)), p)};
}
VORN_INLINE void storeFirst(double* p, f64x8 a, std::ptrdiff_t n) {
    _mm512_mask_storeu_pd(p, static_cast<__mmask8>(lanesBelow(n)), a.v);
}
template <>
VORN_INLINE i64x8 loadFirst<i64x8>(const std::int64_t* p, std::ptrdiff_t n) {
    return {_mm512_maskz_loadu_epi64(static_cast<__mmask8>(lanesBelow(n)), p)};
}
VORN_INLINE void storeFirst(std::int64_t* p, i64x8 a, std::ptrdiff_t n) {
    _mm512_mask_storeu_epi64(p, static_cast<__mmask8>(lanesBelow(n)), a.v);
}
template <>
VORN_INLINE i32x16 loadFirst<i32x16>(const std::int32_t* p, std::ptrdiff_t n) {
    return {_mm512_maskz_loadu_epi32(static_cast<__mmask16>(lanesBelow(n)), p)};
}
VORN_INLINE void storeFirst(std::int32_t* p, i32x16 a, std::ptrdiff_t n) {
    _mm512_mask_storeu_epi32(p, static_cast<__mmask16>(lanesBelow(n)), a.v);
}
template <>
VORN_INLINE i16x32 loadFirst<i16x32>(const std::int16_t* p, std::ptrdiff_t n) {
    return {_mm512_maskz_loadu_epi16(lanesBelow(n), p)};
}
VORN_INLINE void storeFirst(std::int16_t* p, i16x32 a, std::ptrdiff_t n) {
    _mm512_mask_storeu_epi16(p, lanesBelow(n), a.v);
}
template <>
VORN_INLINE i8x64 loadFirst<i8x64>(const std::int8_t* p, std::ptrdiff_t n) {
    return {_mm512_maskz_loadu_epi8(_bzhi_u64(~0ull, static_cast<unsigned>(n)), p)};
}
VORN_INLINE void storeFirst(std::int8_t* p, i8x64 a, std::ptrdiff_t n) {
    _mm512_mask_storeu_epi8(p, _bzhi_u64(~0ull, static_cast<unsigned>(n)), a.v);
}

// Arithmetic.

VORN_INLINE f32x16 operator+(f32x16 a, f32x16 b) { return {_mm512_add_ps(a.v, b.v)}; }
VORN_INLINE f32x16 operator-(f32x16 a, f32x16 b) { return {_mm512_sub_ps(a.v, b.v)}; }
VORN_INLINE f32x16 operator*(f32x16 a, f32x16 b) { return {_mm512_mul_ps(a.v, b.v)}; }
VORN_INLINE f32x16 operator/(f32x16 a, f32x16 b) { return {_mm512_div_ps(a.v, b.v)}; }
VORN_INLINE f32x16 minOf(f32x16 a, f32x16 b) { return {_mm512_min_ps(a.v, b.v)}; }
VORN_INLINE f32x16 maxOf(f32x16 a, f32x16 b) { return {_mm512_max_ps(a.v, b.v)}; }
VORN_INLINE f32x16 sqrtOf(f32x16 a) { return {_mm512_sqrt_ps(a.v)}; }
VORN_INLINE f32x16 operator&(f32x16 a, f32x16 b) { return {_mm512_and_ps(a.v, b.v)}; }
VORN_INLINE f32x16 operator|(f32x16 a, f32x16 b) { return {_mm512_or_ps(a.v, b.v)}; }
VORN_INLINE f32x16 operator^(f32x16 a, f32x16 b) { return {_mm512_xor_ps(a.v, b.v)}; }
VORN_INLINE f32x16 absOf(f32x16 a) { return {_mm512_andnot_ps(_mm512_set1_ps(-0.0f), a.v)}; }
VORN_INLINE f32x16 operator-(f32x16 a) { return {_mm512_xor_ps(_mm512_set1_ps(-0.0f), a.v)}; }
VORN_INLINE f64x8 operator+(f64x8 a, f64x8 b) { return {_mm512_add_pd(a.v, b.v)}; }
VORN_INLINE f64x8 operator-(f64x8 a, f64x8 b) { return {_mm512_sub_pd(a.v, b.v)}; }
VORN_INLINE f64x8 operator*(f64x8 a, f64x8 b) { return {_mm512_mul_pd(a.v, b.v)}; }
VORN_INLINE f64x8 operator/(f64x8 a, f64x8 b) { return {_mm512_div_pd(a.v, b.v)}; }
VORN_INLINE f64x8 minOf(f64x8 a, f64x8 b) { return {_mm512_min_pd(a.v, b.v)}; }
VORN_INLINE f64x8 maxOf(f64x8 a, f64x8 b) { return {_mm512_max_pd(a.v, b.v)}; }
VORN_INLINE f64x8 sqrtOf(f64x8 a) { return {_mm512_sqrt_pd(a.v)}; }
VORN_INLINE f64x8 operator&(f64x8 a, f64x8 b) { return {_mm512_and_pd(a.v, b.v)}; }
VORN_INLINE f64x8 operator|(f64x8 a, f64x8 b) { return {_mm512_or_pd(a.v, b.v)}; }
VORN_INLINE f64x8 operator^(f64x8 a, f64x8 b) { return {_mm512_xor_pd(a.v, b.v)}; }
VORN_INLINE f64x8 absOf(f64x8 a) { return {_mm512_andnot_pd(_mm512_set1_pd(-0.0), a.v)}; }
VORN_INLINE f64x8 operator-(f64x8 a) { return {_mm512_xor_pd(_mm512_set1_pd(-0.0), a.v)}; }
template <IntegerLanes<64> V>
VORN_INLINE V operator&(V a, V b) {
    return {_mm512_and_si512(a.v, b.v)};
}
template <IntegerLanes<64> V>
VORN_INLINE V operator|(V a, V b) {
    return {_mm512_or_si512(a.v, b.v)};
}
template <IntegerLanes<64> V>
VORN_INLINE V operator^(V a, V b) {
    return {_mm512_xor_si512(a.v, b.v)};
}
template <IntegerLanes<64> V>
VORN_INLINE V andNot(V a, V b) {
    return {_mm512_andnot_si512(a.v, b.v)};
}
VORN_INLINE i64x8 operator+(i64x8 a, i64x8 b) { return {_mm512_add_epi64(a.v, b.v)}; }
VORN_INLINE i64x8 operator-(i64x8 a, i64x8 b) { return {_mm512_sub_epi64(a.v, b.v)}; }
VORN_INLINE i32x16 operator+(i32x16 a, i32x16 b) { return {_mm512_add_epi32(a.v, b.v)}; }
VORN_INLINE i32x16 operator-(i32x16 a, i32x16 b) { return {_mm512_sub_epi32(a.v, b.v)}; }
VORN_INLINE i16x32 operator+(i16x32 a, i16x32 b) { return {_mm512_add_epi16(a.v, b.v)}; }
VORN_INLINE i16x32 operator-(i16x32 a, i16x32 b) { return {_mm512_sub_epi16(a.v, b.v)}; }
VORN_INLINE i8x64 operator+(i8x64 a, i8x64 b) { return {_mm512_add_epi8(a.v, b.v)}; }
VORN_INLINE i8x64 operator-(i8x64 a, i8x64 b) { return {_mm512_sub_epi8(a.v, b.v)}; }
VORN_INLINE i16x32 addSat(i16x32 a, i16x32 b) { return {_mm512_adds_epi16(a.v, b.v)}; }
VORN_INLINE i16x32 subSat(i16x32 a, i16x32 b) { return {_mm512_subs_epi16(a.v, b.v)}; }
VORN_INLINE i16x32 minOf(i16x32 a, i16x32 b) { return {_mm512_min_epi16(a.v, b.v)}; }
VORN_INLINE i16x32 maxOf(i16x32 a, i16x32 b) { return {_mm512_max_epi16(a.v, b.v)}; }
// Low and high halves of the 16 by 16 bit products.
VORN_INLINE i16x32 mulLow(i16x32 a, i16x32 b) { return {_mm512_mullo_epi16(a.v, b.v)}; }
VORN_INLINE i16x32 mulHigh(i16x32 a, i16x32 b) { return {_mm512_mulhi_epi16(a.v, b.v)}; }
// Products of 16-bit lanes, neighbours added in 32 bits (two squares of -32768 wrap).
VORN_INLINE i32x16 mulAddPairs(i16x32 a, i16x32 b) { return {_mm512_madd_epi16(a.v, b.v)}; }

// Exact integer arithmetic: saturation, products and sums that are wider than their operands.

VORN_INLINE i8x64 addSatUnsigned(i8x64 a, i8x64 b) { return {_mm512_adds_epu8(a.v, b.v)}; }
VORN_INLINE i8x64 subSatUnsigned(i8x64 a, i8x64 b) { return {_mm512_subs_epu8(a.v, b.v)}; }
VORN_INLINE i16x32 addSatUnsigned(i16x32 a, i16x32 b) { return {_mm512_adds_epu16(a.v, b.v)}; }
VORN_INLINE i16x32 subSatUnsigned(i16x32 a, i16x32 b) { return {_mm512_subs_epu16(a.v, b.v)}; }
VORN_INLINE i16x32 mulHighUnsigned(i16x32 a, i16x32 b) { return {_mm512_mulhi_epu16(a.v, b.v)}; }
VORN_INLINE i64x8 mulEven(i32x16 a, i32x16 b) { return {_mm512_maskz_mul_epi32(0xFF, a.v, b.v)}; }
VORN_INLINE i64x8 shiftRight(i64x8 a, int count) {
    return {_mm512_maskz_sra_epi64(0xFF, a.v, _mm_cvtsi32_si128(count))};
}
VORN_INLINE i64x8 saturateTo32(i64x8 a) {
    const __m512i notAbove = _mm512_maskz_min_epi64(0xFF, a.v, _mm512_set1_epi64(0x7FFFFFFF));
    return {_mm512_maskz_max_epi64(0xFF, notAbove, _mm512_set1_epi64(-0x80000000ll))};
}
template <>
VORN_INLINE i64x8 loadInto64<i64x8>(const std::int32_t* p) {
    return {_mm512_maskz_cvtepi32_epi64(0xFF, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)))};
}
VORN_INLINE Halves<i16x32> splitUnsigned(i8x64 a) {
    const __m512i zero = _mm512_setzero_si512();
    return {{_mm512_unpacklo_epi8(a.v, zero)}, {_mm512_unpackhi_epi8(a.v, zero)}};
}
VORN_INLINE Halves<i32x16> zip(i16x32 lower, i16x32 upper) {
    return {{_mm512_unpacklo_epi16(lower.v, upper.v)}, {_mm512_unpackhi_epi16(lower.v, upper.v)}};
}
VORN_INLINE Halves<i32x16> zip(i32x16 even, i32x16 odd) {
    return {{_mm512_maskz_unpacklo_epi32(0xFFFF, even.v, odd.v)}, {_mm512_maskz_unpackhi_epi32(0xFFFF, even.v, odd.v)}};
}
VORN_INLINE i16x32 joinSat(Halves<i32x16> a) { return {_mm512_packs_epi32(a.low.v, a.high.v)}; }
VORN_INLINE i8x64 joinSatUnsigned(Halves<i16x32> a) { return {_mm512_packus_epi16(a.low.v, a.high.v)}; }
VORN_INLINE Halves<i32x16> inOrder(Halves<i32x16> a) {
    const __m512i first = _mm512_setr_epi64(0, 1, 8, 9, 2, 3, 10, 11);
    const __m512i second = _mm512_setr_epi64(4, 5, 12, 13, 6, 7, 14, 15);
    return {{_mm512_permutex2var_epi64(a.low.v, first, a.high.v)},
            {_mm512_permutex2var_epi64(a.low.v, second, a.high.v)}};
}
VORN_INLINE Halves<i16x32> inOrder(Halves<i16x32> a) {
    const Halves<i32x16> ordered = inOrder(Halves<i32x16>{{a.low.v}, {a.high.v}});
    return {{ordered.low.v}, {ordered.high.v}};
}

VORN_INLINE f32x16 dupEven(f32x16 a) { return {_mm512_maskz_moveldup_ps(0xFFFF, a.v)}; }
VORN_INLINE f32x16 dupOdd(f32x16 a) { return {_mm512_maskz_movehdup_ps(0xFFFF, a.v)}; }
VORN_INLINE f32x16 swapPairs(f32x16 a) { return {_mm512_maskz_permute_ps(0xFFFF, a.v, 0xB1)}; }
VORN_INLINE f32x16 addSub(f32x16 a, f32x16 b) {
    return {_mm512_mask_sub_ps(_mm512_add_ps(a.v, b.v), 0x5555, a.v, b.v)};
}
VORN_INLINE f64x8 dupEven(f64x8 a) { return {_mm512_maskz_movedup_pd(0xFF, a.v)}; }
VORN_INLINE f64x8 dupOdd(f64x8 a) { return {_mm512_maskz_permute_pd(0xFF, a.v, 0xFF)}; }
VORN_INLINE f64x8 swapPairs(f64x8 a) { return {_mm512_maskz_permute_pd(0xFF, a.v, 0x55)}; }
VORN_INLINE f64x8 addSub(f64x8 a, f64x8 b) { return {_mm512_mask_sub_pd(_mm512_add_pd(a.v, b.v), 0x55, a.v, b.v)}; }

// Shifts. A count at or above the width gives 0, in an arithmetic shift the sign fill.

VORN_INLINE i64x8 shiftLeft(i64x8 a, int count) { return {_mm512_sll_epi64(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i64x8 shiftRightLogical(i64x8 a, int count) { return {_mm512_srl_epi64(a.v, _mm_cvtsi32_si128(count))}; }
template <int count>
VORN_INLINE i64x8 shiftLeft(i64x8 a) {
    return {_mm512_slli_epi64(a.v, count)};
}
template <int count>
VORN_INLINE i64x8 shiftRightLogical(i64x8 a) {
    return {_mm512_srli_epi64(a.v, count)};
}
VORN_INLINE i32x16 shiftLeft(i32x16 a, int count) { return {_mm512_sll_epi32(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i32x16 shiftRightLogical(i32x16 a, int count) { return {_mm512_srl_epi32(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i32x16 shiftRight(i32x16 a, int count) { return {_mm512_sra_epi32(a.v, _mm_cvtsi32_si128(count))}; }
template <int count>
VORN_INLINE i32x16 shiftLeft(i32x16 a) {
    return {_mm512_slli_epi32(a.v, count)};
}
template <int count>
VORN_INLINE i32x16 shiftRightLogical(i32x16 a) {
    return {_mm512_srli_epi32(a.v, count)};
}
template <int count>
VORN_INLINE i32x16 shiftRight(i32x16 a) {
    return {_mm512_srai_epi32(a.v, count)};
}
VORN_INLINE i16x32 shiftLeft(i16x32 a, int count) { return {_mm512_sll_epi16(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i16x32 shiftRightLogical(i16x32 a, int count) { return {_mm512_srl_epi16(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i16x32 shiftRight(i16x32 a, int count) { return {_mm512_sra_epi16(a.v, _mm_cvtsi32_si128(count))}; }
template <int count>
VORN_INLINE i16x32 shiftLeft(i16x32 a) {
    return {_mm512_slli_epi16(a.v, count)};
}
template <int count>
VORN_INLINE i16x32 shiftRightLogical(i16x32 a) {
    return {_mm512_srli_epi16(a.v, count)};
}
template <int count>
VORN_INLINE i16x32 shiftRight(i16x32 a) {
    return {_mm512_srai_epi16(a.v, count)};
}

// Comparisons and selection.

VORN_INLINE mask32x16 operator<(f32x16 a, f32x16 b) { return {_mm512_cmp_ps_mask(a.v, b.v, _CMP_LT_OQ)}; }
VORN_INLINE mask32x16 operator<=(f32x16 a, f32x16 b) { return {_mm512_cmp_ps_mask(a.v, b.v, _CMP_LE_OQ)}; }
VORN_INLINE mask32x16 operator>(f32x16 a, f32x16 b) { return {_mm512_cmp_ps_mask(a.v, b.v, _CMP_GT_OQ)}; }
VORN_INLINE mask32x16 operator>=(f32x16 a, f32x16 b) { return {_mm512_cmp_ps_mask(a.v, b.v, _CMP_GE_OQ)}; }
VORN_INLINE mask32x16 operator==(f32x16 a, f32x16 b) { return {_mm512_cmp_ps_mask(a.v, b.v, _CMP_EQ_OQ)}; }
VORN_INLINE mask32x16 operator!=(f32x16 a, f32x16 b) { return {_mm512_cmp_ps_mask(a.v, b.v, _CMP_NEQ_UQ)}; }
VORN_INLINE mask32x16 unordered(f32x16 a, f32x16 b) { return {_mm512_cmp_ps_mask(a.v, b.v, _CMP_UNORD_Q)}; }
VORN_INLINE f32x16 select(mask32x16 m, f32x16 a, f32x16 b) { return {_mm512_mask_blend_ps(m.v, b.v, a.v)}; }
VORN_INLINE mask64x8 operator<(f64x8 a, f64x8 b) { return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_LT_OQ)}; }
VORN_INLINE mask64x8 operator<=(f64x8 a, f64x8 b) { return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_LE_OQ)}; }
VORN_INLINE mask64x8 operator>(f64x8 a, f64x8 b) { return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_GT_OQ)}; }
VORN_INLINE mask64x8 operator>=(f64x8 a, f64x8 b) { return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_GE_OQ)}; }
VORN_INLINE mask64x8 operator==(f64x8 a, f64x8 b) { return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_EQ_OQ)}; }
VORN_INLINE mask64x8 operator!=(f64x8 a, f64x8 b) { return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_NEQ_UQ)}; }
VORN_INLINE mask64x8 unordered(f64x8 a, f64x8 b) { return {_mm512_cmp_pd_mask(a.v, b.v, _CMP_UNORD_Q)}; }
VORN_INLINE f64x8 select(mask64x8 m, f64x8 a, f64x8 b) { return {_mm512_mask_blend_pd(m.v, b.v, a.v)}; }
VORN_INLINE mask32x16 operator>(i32x16 a, i32x16 b) { return {_mm512_cmpgt_epi32_mask(a.v, b.v)}; }
VORN_INLINE mask32x16 operator==(i32x16 a, i32x16 b) { return {_mm512_cmpeq_epi32_mask(a.v, b.v)}; }
VORN_INLINE i32x16 select(mask32x16 m, i32x16 a, i32x16 b) { return {_mm512_mask_blend_epi32(m.v, b.v, a.v)}; }
VORN_INLINE mask16x32 operator>(i16x32 a, i16x32 b) { return {_mm512_cmpgt_epi16_mask(a.v, b.v)}; }
VORN_INLINE mask16x32 operator==(i16x32 a, i16x32 b) { return {_mm512_cmpeq_epi16_mask(a.v, b.v)}; }
VORN_INLINE i16x32 select(mask16x32 m, i16x32 a, i16x32 b) { return {_mm512_mask_blend_epi16(m.v, b.v, a.v)}; }
template <LaneMask M>
VORN_INLINE M operator&(M a, M b) {
    return {static_cast<decltype(a.v)>(a.v & b.v)};
}
template <LaneMask M>
VORN_INLINE M operator|(M a, M b) {
    return {static_cast<decltype(a.v)>(a.v | b.v)};
}
template <LaneMask M>
VORN_INLINE M operator!(M a) {
    return {static_cast<decltype(a.v)>(~a.v)};
}
template <LaneMask M>
VORN_INLINE bool any(M a) {
    return a.v != 0;
}
template <LaneMask M>
VORN_INLINE bool all(M a) {
    return static_cast<decltype(a.v)>(~a.v) == 0;
}
// Bit i is lane i.
template <LaneMask M>
VORN_INLINE unsigned laneBits(M a) {
    return a.v;
}

// Conversions.

VORN_INLINE f32x16 toFloat(i32x16 a) { return {_mm512_cvtepi32_ps(a.v)}; }
VORN_INLINE i16x32 shortsOf(i32x16 a) { return {a.v}; }
VORN_INLINE i32x16 intsOf(i16x32 a) { return {a.v}; }
VORN_INLINE i32x16 roundToInt(f32x16 a) { return {_mm512_cvtps_epi32(a.v)}; }
VORN_INLINE i32x16 truncToInt(f32x16 a) { return {_mm512_cvttps_epi32(a.v)}; }
VORN_INLINE i32x16 bitsOf(f32x16 a) { return {_mm512_castps_si512(a.v)}; }
VORN_INLINE i64x8 bitsOf(f64x8 a) { return {_mm512_castpd_si512(a.v)}; }
VORN_INLINE f32x16 floatOf(i32x16 bits) { return {_mm512_castsi512_ps(bits.v)}; }
VORN_INLINE f64x8 floatOf(i64x8 bits) { return {_mm512_castsi512_pd(bits.v)}; }
VORN_INLINE f64x8 widenLow(f32x16 a) { return {_mm512_cvtps_pd(_mm512_castps512_ps256(a.v))}; }
VORN_INLINE f64x8 widenHigh(f32x16 a) { return {_mm512_cvtps_pd(_mm512_extractf32x8_ps(a.v, 1))}; }
VORN_INLINE f32x16 narrow(f64x8 low, f64x8 high) {
    return {_mm512_insertf32x8(_mm512_castps256_ps512(_mm512_cvtpd_ps(low.v)), _mm512_cvtpd_ps(high.v), 1)};
}
VORN_INLINE i32x16 widenLow(i16x32 a) { return {_mm512_cvtepi16_epi32(_mm512_castsi512_si256(a.v))}; }
VORN_INLINE i32x16 widenHigh(i16x32 a) { return {_mm512_cvtepi16_epi32(_mm512_extracti64x4_epi64(a.v, 1))}; }
VORN_INLINE __m512i inOrderOfTwoPacked(__m512i mixed) {
    return _mm512_permutexvar_epi64(_mm512_setr_epi64(0, 2, 4, 6, 1, 3, 5, 7), mixed);
}
VORN_INLINE i16x32 narrowSat(i32x16 low, i32x16 high) {
    return {inOrderOfTwoPacked(_mm512_packs_epi32(low.v, high.v))};
}
VORN_INLINE f64x8 toDoubleLow(i32x16 a) { return {_mm512_cvtepi32_pd(_mm512_castsi512_si256(a.v))}; }
VORN_INLINE f64x8 toDoubleHigh(i32x16 a) { return {_mm512_cvtepi32_pd(_mm512_extracti64x4_epi64(a.v, 1))}; }
VORN_INLINE i32x16 roundToInt(f64x8 low, f64x8 high) {
    return {_mm512_inserti64x4(_mm512_castsi256_si512(_mm512_cvtpd_epi32(low.v)), _mm512_cvtpd_epi32(high.v), 1)};
}
VORN_INLINE i32x16 truncToInt(f64x8 low, f64x8 high) {
    return {_mm512_inserti64x4(_mm512_castsi256_si512(_mm512_cvttpd_epi32(low.v)), _mm512_cvttpd_epi32(high.v), 1)};
}

// Order of the lanes. The forms with a full mask say the same as the plain ones, about which GCC 12 warns in its own
// header (a register left undefined on purpose).

VORN_INLINE i32x16 reverse(i32x16 a) {
    return {_mm512_maskz_permutexvar_epi32(
        0xFFFF, _mm512_setr_epi32(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0), a.v)};
}
VORN_INLINE i64x8 reverse(i64x8 a) {
    return {_mm512_maskz_permutexvar_epi64(0xFF, _mm512_setr_epi64(7, 6, 5, 4, 3, 2, 1, 0), a.v)};
}
VORN_INLINE i64x8 reversePairs(i64x8 a) { return {_mm512_maskz_shuffle_i64x2(0xFF, a.v, a.v, 0x1B)}; }
template <>
VORN_INLINE i64x8 splatPair<i64x8>(std::int64_t even, std::int64_t odd) {
    return {_mm512_set_epi64(odd, even, odd, even, odd, even, odd, even)};
}

// Widening loads: one element a lane, its value kept.

VORN_INLINE __m256i loadThirtyTwoBytes(const void* p) { return _mm256_loadu_si256(static_cast<const __m256i*>(p)); }
template <>
VORN_INLINE i16x32 loadWidened<i16x32>(const std::int8_t* p) {
    return {_mm512_cvtepi8_epi16(loadThirtyTwoBytes(p))};
}
template <>
VORN_INLINE i32x16 loadWidened<i32x16>(const std::int8_t* p) {
    return {_mm512_cvtepi8_epi32(loadSixteenBytes(p))};
}
template <>
VORN_INLINE i32x16 loadWidened<i32x16>(const std::uint8_t* p) {
    return {_mm512_cvtepu8_epi32(loadSixteenBytes(p))};
}
template <>
VORN_INLINE i32x16 loadWidened<i32x16>(const std::int16_t* p) {
    return {_mm512_cvtepi16_epi32(loadThirtyTwoBytes(p))};
}
template <>
VORN_INLINE i32x16 loadWidened<i32x16>(const std::uint16_t* p) {
    return {_mm512_cvtepu16_epi32(loadThirtyTwoBytes(p))};
}
template <>
VORN_INLINE f64x8 loadWidened<f64x8>(const std::int16_t* p) {
    return {_mm512_cvtepi32_pd(_mm256_cvtepi16_epi32(loadSixteenBytes(p)))};
}
template <>
VORN_INLINE f64x8 loadWidened<f64x8>(const std::int32_t* p) {
    return {_mm512_cvtepi32_pd(loadThirtyTwoBytes(p))};
}
template <>
VORN_INLINE f64x8 loadWidened<f64x8>(const float* p) {
    return {_mm512_cvtps_pd(_mm256_loadu_ps(p))};
}

// The packing instructions work within each 16-byte part; a permutation brings the parts into order.
VORN_INLINE __m512i inOrderOfFourPacked(__m512i mixed) {
    return _mm512_permutexvar_epi32(_mm512_setr_epi32(0, 4, 8, 12, 1, 5, 9, 13, 2, 6, 10, 14, 3, 7, 11, 15), mixed);
}
VORN_INLINE i8x64 narrowSat8(i32x16 a, i32x16 b, i32x16 c, i32x16 d) {
    return {inOrderOfFourPacked(_mm512_packs_epi16(_mm512_packs_epi32(a.v, b.v), _mm512_packs_epi32(c.v, d.v)))};
}
VORN_INLINE i8x64 narrowSatU8(i32x16 a, i32x16 b, i32x16 c, i32x16 d) {
    return {inOrderOfFourPacked(_mm512_packus_epi16(_mm512_packs_epi32(a.v, b.v), _mm512_packs_epi32(c.v, d.v)))};
}
VORN_INLINE i16x32 narrowU16(i32x16 low, i32x16 high) {
    return {inOrderOfTwoPacked(_mm512_packus_epi32(low.v, high.v))};
}
VORN_INLINE void storeNarrowed(float* p, f64x8 a) { _mm256_storeu_ps(p, _mm512_cvtpd_ps(a.v)); }
VORN_INLINE i32x16 maxOf(i32x16 a, i32x16 b) { return {_mm512_max_epi32(a.v, b.v)}; }
VORN_INLINE i32x16 minOf(i32x16 a, i32x16 b) { return {_mm512_min_epi32(a.v, b.v)}; }
VORN_INLINE i32x16 absSat(i32x16 a) { return {_mm512_min_epu32(_mm512_abs_epi32(a.v), _mm512_set1_epi32(0x7FFFFFFF))}; }

// Unsigned bytes, for what depends on their order.

template <>
VORN_INLINE u8x64 splat<u8x64>(std::uint8_t x) {
    return {_mm512_set1_epi8(static_cast<char>(x))};
}
VORN_INLINE u8x64 minOf(u8x64 a, u8x64 b) { return {_mm512_min_epu8(a.v, b.v)}; }
VORN_INLINE u8x64 maxOf(u8x64 a, u8x64 b) { return {_mm512_max_epu8(a.v, b.v)}; }

// Parts and sums of the lanes.

VORN_INLINE f32x8 lowHalf(f32x16 a) { return {_mm512_castps512_ps256(a.v)}; }
VORN_INLINE f32x8 highHalf(f32x16 a) { return {_mm512_extractf32x8_ps(a.v, 1)}; }
VORN_INLINE f64x4 lowHalf(f64x8 a) { return {_mm512_castpd512_pd256(a.v)}; }
VORN_INLINE f64x4 highHalf(f64x8 a) { return {_mm512_extractf64x4_pd(a.v, 1)}; }
VORN_INLINE i32x8 lowHalf(i32x16 a) { return {_mm512_castsi512_si256(a.v)}; }
VORN_INLINE i32x8 highHalf(i32x16 a) { return {_mm512_extracti64x4_epi64(a.v, 1)}; }

// Table look-up inside the registers: each lane takes the entry of a table of four that its index (0 to 3) names.

template <>
VORN_INLINE f32x16 lookup<f32x16>(const float* four, i32x16 index) {
    return {_mm512_permutevar_ps(_mm512_broadcast_f32x4(_mm_loadu_ps(four)), index.v)};
}
template <>
VORN_INLINE f64x8 lookup<f64x8>(const double* four, i64x8 index) {
    return {_mm512_permutexvar_pd(index.v, _mm512_broadcast_f64x4(_mm256_loadu_pd(four)))};
}

// Pairs, columns, order of the lanes.

VORN_INLINE void loadPairs(const float* p, f32x16& first, f32x16& second) {
    const __m512i even = _mm512_setr_epi32(0, 2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24, 26, 28, 30);
    const __m512i odd = _mm512_setr_epi32(1, 3, 5, 7, 9, 11, 13, 15, 17, 19, 21, 23, 25, 27, 29, 31);
    const __m512 low = _mm512_loadu_ps(p), high = _mm512_loadu_ps(p + 16);
    first = {_mm512_permutex2var_ps(low, even, high)};
    second = {_mm512_permutex2var_ps(low, odd, high)};
}
VORN_INLINE void storePairs(float* p, f32x16 first, f32x16 second) {
    const __m512i low = _mm512_setr_epi32(0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
    const __m512i high = _mm512_setr_epi32(8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
    _mm512_storeu_ps(p, _mm512_permutex2var_ps(first.v, low, second.v));
    _mm512_storeu_ps(p + 16, _mm512_permutex2var_ps(first.v, high, second.v));
}
VORN_INLINE void loadPairs(const double* p, f64x8& first, f64x8& second) {
    const __m512i even = _mm512_setr_epi64(0, 2, 4, 6, 8, 10, 12, 14);
    const __m512i odd = _mm512_setr_epi64(1, 3, 5, 7, 9, 11, 13, 15);
    const __m512d low = _mm512_loadu_pd(p), high = _mm512_loadu_pd(p + 8);
    first = {_mm512_permutex2var_pd(low, even, high)};
    second = {_mm512_permutex2var_pd(low, odd, high)};
}
VORN_INLINE void storePairs(double* p, f64x8 first, f64x8 second) {
    const __m512i low = _mm512_setr_epi64(0, 8, 1, 9, 2, 10, 3, 11);
    const __m512i high = _mm512_setr_epi64(4, 12, 5, 13, 6, 14, 7, 15);
    _mm512_storeu_pd(p, _mm512_permutex2var_pd(first.v, low, second.v));
    _mm512_storeu_pd(p + 8, _mm512_permutex2var_pd(first.v, high, second.v));
}
VORN_INLINE void loadPairs(const std::int32_t* p, i32x16& first, i32x16& second) {
    f32x16 even, odd;
    loadPairs(reinterpret_cast<const float*>(p), even, odd);
    first = bitsOf(even);
    second = bitsOf(odd);
}
VORN_INLINE f32x16 reverse(f32x16 a) {
    return {_mm512_permutexvar_ps(_mm512_setr_epi32(15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0), a.v)};
}
VORN_INLINE f64x8 reverse(f64x8 a) { return {_mm512_permutexvar_pd(_mm512_setr_epi64(7, 6, 5, 4, 3, 2, 1, 0), a.v)}; }

}  // namespace vorn

#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif
