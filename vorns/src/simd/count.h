// Counting lanes: what sums of yes and no need of the SIMD vocabulary.
#pragma once

#include "simd/simd.h"

namespace vorn {

// Where exactly one of the two holds.
VORN_INLINE mask32x4 operator^(mask32x4 a, mask32x4 b) { return {_mm_xor_ps(a.v, b.v)}; }
VORN_INLINE mask16x8 operator^(mask16x8 a, mask16x8 b) { return {_mm_xor_si128(a.v, b.v)}; }
// Below, or not a number.
VORN_INLINE mask32x4 notAtLeast(f32x4 a, f32x4 b) { return {_mm_cmpnge_ps(a.v, b.v)}; }
// One more in the lanes where the mask holds.
VORN_INLINE i32x4 countWhere(i32x4 count, mask32x4 m) { return {_mm_sub_epi32(count.v, _mm_castps_si128(m.v))}; }
VORN_INLINE i16x8 countWhere(i16x8 count, mask16x8 m) { return {_mm_sub_epi16(count.v, m.v)}; }

#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
VORN_INLINE mask32x8 operator^(mask32x8 a, mask32x8 b) { return {_mm256_xor_ps(a.v, b.v)}; }
VORN_INLINE mask16x16 operator^(mask16x16 a, mask16x16 b) { return {_mm256_xor_si256(a.v, b.v)}; }
VORN_INLINE mask32x8 notAtLeast(f32x8 a, f32x8 b) { return {_mm256_cmp_ps(a.v, b.v, _CMP_NGE_UQ)}; }
VORN_INLINE i32x8 countWhere(i32x8 count, mask32x8 m) { return {_mm256_sub_epi32(count.v, _mm256_castps_si256(m.v))}; }
VORN_INLINE i16x16 countWhere(i16x16 count, mask16x16 m) { return {_mm256_sub_epi16(count.v, m.v)}; }
#endif

#if defined(VORN_SIMD_AVX512)
VORN_INLINE mask32x16 operator^(mask32x16 a, mask32x16 b) { return {static_cast<decltype(a.v)>(a.v ^ b.v)}; }
VORN_INLINE mask16x32 operator^(mask16x32 a, mask16x32 b) { return {static_cast<decltype(a.v)>(a.v ^ b.v)}; }
VORN_INLINE mask32x16 notAtLeast(f32x16 a, f32x16 b) { return {_mm512_cmp_ps_mask(a.v, b.v, _CMP_NGE_UQ)}; }
VORN_INLINE i32x16 countWhere(i32x16 count, mask32x16 m) {
    return {_mm512_mask_add_epi32(count.v, m.v, count.v, _mm512_set1_epi32(1))};
}
VORN_INLINE i16x32 countWhere(i16x32 count, mask16x32 m) {
    return {_mm512_mask_add_epi16(count.v, m.v, count.v, _mm512_set1_epi16(1))};
}
#endif

}  // namespace vorn
