// The SIMD vocabulary: more of four doubles in every build, for sums whose four lanes are promised.
//
//   loadQuad(p), loadQuadBackwards(p)           four singles or 16-bit integers, p[0] to p[3] or p[0] to p[-3]
//   quadOfLanes(a, b, c, d)                     four numbers
//   pairOf(a, b)                                two numbers
//   transposed(a, b, c, d, firsts, seconds)     of four pairs the first, the second numbers
//   truncToInt(a), toQuad(q)                    to 32-bit integers; of those or of singles
//   loadNeighbours(table, q, here, next)        table[q] and table[q + 1]; no index is below 0
//   firstLanes(a, n)                            the first n lanes, 0 (without a sign) in the others
//   sumLanes(a)                                 (0 + 2) + (1 + 3)
#pragma once

#include <cstdint>

#include "simd/four.h"

namespace vorn {

// The last element first, p[0] to p[-3].
VORN_INLINE f32x4 loadBackwards(const float* p) { return reverse(load<f32x4>(p - 3)); }
VORN_INLINE i32x4 loadBackwards(const std::int16_t* p) {
    const __m128i words = _mm_shufflelo_epi16(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(p - 3)), 0x1B);
    return {_mm_srai_epi32(_mm_unpacklo_epi16(words, words), 16)};
}

VORN_INLINE f64x4 toQuad(f32x4 a) { return widened(a); }
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
VORN_INLINE f64x4 toQuad(i32x4 a) { return {_mm256_cvtepi32_pd(a.v)}; }
template <class Narrow>
VORN_INLINE f64x4 loadQuad(const Narrow* p) {
    return loadWidened<f64x4>(p);
}
VORN_INLINE i32x4 truncToInt(f64x4 a) { return {_mm256_cvttpd_epi32(a.v)}; }
VORN_INLINE f64x4 firstLanes(f64x4 a, std::int64_t n) {
    return a & floatOf(i64x4{_mm256_cmpgt_epi64(_mm256_set1_epi64x(n), _mm256_setr_epi64x(0, 1, 2, 3))});
}
VORN_INLINE void transposed(f64x2 a, f64x2 b, f64x2 c, f64x2 d, f64x4& firsts, f64x4& seconds) {
    const f64x4 even = join(a, c), odd = join(b, d);
    firsts = interleaveLow(even, odd);
    seconds = interleaveHigh(even, odd);
}
#else
VORN_INLINE f64x4 toQuad(i32x4 a) { return {toDoubleLow(a), toDoubleHigh(a)}; }
template <class Narrow>
VORN_INLINE f64x4 loadQuad(const Narrow* p) {
    const auto both = loadWidenedTwo<f64x2>(p);
    return {both.low, both.high};
}
VORN_INLINE i32x4 truncToInt(f64x4 a) { return truncToInt(a.low, a.high); }
VORN_INLINE f64x4 firstLanes(f64x4 a, std::int64_t n) {
    const __m128i count = _mm_set1_epi32(static_cast<std::int32_t>(n));
    return {{_mm_and_pd(a.low.v, _mm_castsi128_pd(_mm_cmpgt_epi32(count, _mm_setr_epi32(0, 0, 1, 1))))},
            {_mm_and_pd(a.high.v, _mm_castsi128_pd(_mm_cmpgt_epi32(count, _mm_setr_epi32(2, 2, 3, 3))))}};
}
VORN_INLINE void transposed(f64x2 a, f64x2 b, f64x2 c, f64x2 d, f64x4& firsts, f64x4& seconds) {
    firsts = {interleaveLow(a, b), interleaveLow(c, d)};
    seconds = {interleaveHigh(a, b), interleaveHigh(c, d)};
}
#endif

template <class Narrow>
VORN_INLINE f64x4 loadQuadBackwards(const Narrow* p) {
    return toQuad(loadBackwards(p));
}
VORN_INLINE double sumLanes(f64x4 a) { return sumLanes(foldHalves(a)); }
VORN_INLINE f64x2 pairOf(double a, double b) { return {_mm_setr_pd(a, b)}; }
VORN_INLINE f64x4 quadOfLanes(double a, double b, double c, double d) { return join(pairOf(a, b), pairOf(c, d)); }

VORN_INLINE void loadNeighbours(const double* table, i32x4 q, f64x4& here, f64x4& next) {
    // Two indices a general register: fewer moves between the units than one by one.
    const auto low = static_cast<std::uint64_t>(_mm_cvtsi128_si64(q.v));
    const auto high = static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(q.v, q.v)));
    const auto at = [&](std::uint64_t i) __attribute__((always_inline)) { return load<f64x2>(table + i); };
    transposed(at(low & 0xFFFFFFFF), at(low >> 32), at(high & 0xFFFFFFFF), at(high >> 32), here, next);
}

}  // namespace vorn
