// The processor's own conversions of halves, where it has them: with AVX2 and wider.
//
//   widenHalves(p)    halves as singles, exact; a signalling not-a-number becomes a quiet one
//   storeHalves(p, x)  singles as halves, rounded to nearest even or, where the template says so, toward zero, whatever
//                     the mode; toward zero only infinity gives infinity; a not-a-number keeps its top mantissa bits
#pragma once

#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn {

// Declared in every build, so that a kernel can choose; where the processor has none there is nothing to call.
f32xN widenHalves(const Vorn16f* p);
enum class HalfRounding { toNearest, towardZero };
template <HalfRounding rounding>
void storeHalves(Vorn16f* p, f32xN x);

#if defined(VORN_SIMD_AVX512) || defined(VORN_SIMD_AVX2)
inline constexpr bool hasHalfConversions = true;

template <HalfRounding rounding>
inline constexpr int halfRoundingBits =
    rounding == HalfRounding::toNearest ? _MM_FROUND_TO_NEAREST_INT : _MM_FROUND_TO_ZERO;

#if defined(VORN_SIMD_AVX512)
VORN_INLINE f32xN widenHalves(const Vorn16f* p) {
    return {_mm512_cvtph_ps(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p)))};
}
template <HalfRounding rounding>
VORN_INLINE void storeHalves(Vorn16f* p, f32xN x) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(p), _mm512_cvtps_ph(x.v, halfRoundingBits<rounding>));
}
#else
VORN_INLINE f32xN widenHalves(const Vorn16f* p) {
    return {_mm256_cvtph_ps(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)))};
}
template <HalfRounding rounding>
VORN_INLINE void storeHalves(Vorn16f* p, f32xN x) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), _mm256_cvtps_ph(x.v, halfRoundingBits<rounding>));
}
#endif
#else
inline constexpr bool hasHalfConversions = false;
#endif

}  // namespace vorn
