// Exact sums of products of 32-bit integers in 64 bits, four products a step.
#pragma once

#include <limits>

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

// The products in 64 bits, each shifted right by 8, arithmetically. The weights are not negative, the sum wraps.
class ShiftedProductSum {
public:
    VORN_INLINE void add(i32x4 value, i32x4 weight) {
#if defined(VORN_SIMD_AVX512)
        const __m256i products = _mm256_mul_epi32(_mm256_cvtepu32_epi64(value.v), _mm256_cvtepu32_epi64(weight.v));
        lanes_ = _mm256_add_epi64(lanes_, _mm256_srai_epi64(products, shift));
#elif defined(VORN_SIMD_AVX2)
        // Flipped in bit 63 a product is itself plus 2^63, and then needs no sign; total() takes off what is left of
        // it.
        const __m256i products = _mm256_mul_epi32(_mm256_cvtepu32_epi64(value.v), _mm256_cvtepu32_epi64(weight.v));
        const __m256i sign = _mm256_set1_epi64x(std::numeric_limits<std::int64_t>::min());
        lanes_ = _mm256_add_epi64(lanes_, _mm256_srli_epi64(_mm256_xor_si256(products, sign), shift));
        bias_ += std::uint64_t{4} << (63 - shift);
#else
        // Flipped in bit 31 a value is itself plus 2^31, and its product is 2^31 times the weight too large: a multiple
        // of what the shift drops, which total() takes off. The sum of the weights is kept in two: of all, as the
        // 64-bit lanes have them, and of the odd ones.
        const __m128i above = _mm_xor_si128(value.v, _mm_set1_epi32(std::numeric_limits<std::int32_t>::min()));
        const __m128i oddWeight = _mm_srli_epi64(weight.v, 32);
        const __m128i even = _mm_mul_epu32(above, weight.v);
        const __m128i odd = _mm_mul_epu32(_mm_srli_epi64(above, 32), oddWeight);
        lanes_ = _mm_add_epi64(lanes_, _mm_add_epi64(_mm_srli_epi64(even, shift), _mm_srli_epi64(odd, shift)));
        weights_ = _mm_add_epi64(weights_, weight.v);
        oddWeights_ = _mm_add_epi64(oddWeights_, oddWeight);
#endif
    }
    VORN_INLINE std::int64_t total() const {
#if defined(VORN_SIMD_AVX512)
        return sumOfLanes(lanes_);
#elif defined(VORN_SIMD_AVX2)
        return static_cast<std::int64_t>(static_cast<std::uint64_t>(sumOfLanes(lanes_)) - bias_);
#else
        const __m128i both = _mm_add_epi64(_mm_sub_epi64(weights_, _mm_slli_epi64(oddWeights_, 32)), oddWeights_);
        return sumOfLanes(_mm_sub_epi64(lanes_, _mm_slli_epi64(both, 31 - shift)));
#endif
    }

private:
    static constexpr int shift = 8;
#if defined(VORN_SIMD_AVX512)
    __m256i lanes_ = _mm256_setzero_si256();
#elif defined(VORN_SIMD_AVX2)
    __m256i lanes_ = _mm256_setzero_si256();
    std::uint64_t bias_ = 0;
#else
    __m128i lanes_ = _mm_setzero_si128(), weights_ = _mm_setzero_si128(), oddWeights_ = _mm_setzero_si128();
#endif
};

}  // namespace vorn
