// Exact sums of 32-bit products in 64 bits, four products a step.
#pragma once

#include "simd/simd.h"

namespace vorn {

VORN_INLINE std::int64_t sumOfLanes(__m128i lanes) {
    return _mm_cvtsi128_si64(_mm_add_epi64(lanes, _mm_unpackhi_epi64(lanes, lanes)));
}
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
VORN_INLINE std::int64_t sumOfLanes(__m256i lanes) {
    return sumOfLanes(_mm_add_epi64(_mm256_castsi256_si128(lanes), _mm256_extracti128_si256(lanes, 1)));
}
#endif

// Each product wraps at 32 bits, the sum is exact.
class ProductSum {
public:
    VORN_INLINE void add(i32x4 a, i32x4 b) {
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
        lanes_ = _mm256_add_epi64(lanes_, _mm256_cvtepi32_epi64(_mm_mullo_epi32(a.v, b.v)));
#else
        // The low 32 bits of a product are the same with and without signs. Flipped in bit 31 they are the signed
        // value plus 2^31, which total() takes off again.
        const __m128i even = _mm_mul_epu32(a.v, b.v);
        const __m128i odd = _mm_mul_epu32(_mm_srli_epi64(a.v, 32), _mm_srli_epi64(b.v, 32));
        const __m128i low = _mm_set1_epi64x(0xFFFFFFFF), sign = _mm_set1_epi64x(0x80000000);
        lanes_ = _mm_add_epi64(lanes_, _mm_add_epi64(_mm_xor_si128(_mm_and_si128(even, low), sign),
                                                     _mm_xor_si128(_mm_and_si128(odd, low), sign)));
        bias_ += std::int64_t{4} << 31;
#endif
    }
    VORN_INLINE std::int64_t total() const {
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
        return sumOfLanes(lanes_);
#else
        return sumOfLanes(_mm_sub_epi64(lanes_, _mm_cvtsi64_si128(bias_)));
#endif
    }

private:
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
    __m256i lanes_ = _mm256_setzero_si256();
#else
    __m128i lanes_ = _mm_setzero_si128();
    std::int64_t bias_ = 0;
#endif
};

// The same for 16-bit values and weights that fit 16 bits with one to spare: two products then share 32 bits.
class ShortProductSum {
public:
    // The next eight weights. Those that do not fit saturate, which fit() then tells.
    static VORN_INLINE i16x8 weights(const std::int32_t* p) { return narrowSat(load<i32x4>(p), load<i32x4>(p + 4)); }
    VORN_INLINE void add(i16x8 value, i16x8 weight) {
        low_ = minOf(low_, weight);
        high_ = maxOf(high_, weight);
        const __m128i pairs = _mm_madd_epi16(value.v, weight.v);
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
        lanes_ = _mm256_add_epi64(lanes_, _mm256_cvtepi32_epi64(pairs));
#else
        const __m128i sign = _mm_srai_epi32(pairs, 31);
        lanes_ = _mm_add_epi64(lanes_, _mm_unpacklo_epi32(pairs, sign));
        lanes_ = _mm_add_epi64(lanes_, _mm_unpackhi_epi32(pairs, sign));
#endif
    }
    VORN_INLINE bool fit() const { return !any((low_ == splat<i16x8>(-32768)) | (high_ == splat<i16x8>(32767))); }
    VORN_INLINE std::int64_t total() const { return sumOfLanes(lanes_); }

private:
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
    __m256i lanes_ = _mm256_setzero_si256();
#else
    __m128i lanes_ = _mm_setzero_si128();
#endif
    i16x8 low_ = splat<i16x8>(0), high_ = splat<i16x8>(0);
};

}  // namespace vorn
