// Pairs that stay side by side in a register: what products of complex numbers need of the SIMD vocabulary.
#pragma once

#include "simd/simd.h"

#if defined(VORN_SIMD_AVX512) && defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

namespace vorn {

// a, of which several operations are to read one register. The compiler would give each of them the address instead,
// and a load across a cache line counts twice.
template <class V>
VORN_INLINE V inRegister(V a) {
#if defined(VORN_SIMD_AVX512)
    __asm__("" : "+v"(a.v));
#else
    __asm__("" : "+x"(a.v));
#endif
    return a;
}

// The two of each pair exchanged.
VORN_INLINE i16x8 swapPairs(i16x8 a) {
    return {_mm_shufflehi_epi16(_mm_shufflelo_epi16(a.v, _MM_SHUFFLE(2, 3, 0, 1)), _MM_SHUFFLE(2, 3, 0, 1))};
}
// Pairs of which each operand holds the first or the second, saturated to 16 bits and put side by side.
VORN_INLINE Two<i16x8> narrowSatPairs(Two<i32x4> first, Two<i32x4> second) {
    const __m128i a = _mm_packs_epi32(first.low.v, first.high.v), b = _mm_packs_epi32(second.low.v, second.high.v);
    return {{_mm_unpacklo_epi16(a, b)}, {_mm_unpackhi_epi16(a, b)}};
}

#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
VORN_INLINE i16x16 swapPairs(i16x16 a) {
    const __m128i order = _mm_setr_epi8(2, 3, 0, 1, 6, 7, 4, 5, 10, 11, 8, 9, 14, 15, 12, 13);
    return {_mm256_shuffle_epi8(a.v, _mm256_broadcastsi128_si256(order))};
}
// Both steps stay within 16 bytes, so the second undoes the order of the first.
VORN_INLINE Two<i16x16> narrowSatPairs(Two<i32x8> first, Two<i32x8> second) {
    const __m256i a = _mm256_packs_epi32(first.low.v, first.high.v);
    const __m256i b = _mm256_packs_epi32(second.low.v, second.high.v);
    return {{_mm256_unpacklo_epi16(a, b)}, {_mm256_unpackhi_epi16(a, b)}};
}
#endif

#if defined(VORN_SIMD_AVX512)
VORN_INLINE i16x32 swapPairs(i16x32 a) { return {_mm512_rol_epi32(a.v, 16)}; }
VORN_INLINE Two<i16x32> narrowSatPairs(Two<i32x16> first, Two<i32x16> second) {
    const __m512i a = _mm512_packs_epi32(first.low.v, first.high.v);
    const __m512i b = _mm512_packs_epi32(second.low.v, second.high.v);
    return {{_mm512_unpacklo_epi16(a, b)}, {_mm512_unpackhi_epi16(a, b)}};
}
#endif

// The registers of pairs of floats have 32 bytes at most: most spectra have their pairs across the cache lines, where
// wider ones would split every load and store.
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
using f32Pairs = f32x8;
using f64Pairs = f64x4;
#else
using f32Pairs = f32x4;
using f64Pairs = f64x2;
#endif

}  // namespace vorn

#if defined(VORN_SIMD_AVX512) && defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif
