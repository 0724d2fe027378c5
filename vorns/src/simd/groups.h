// Groups: the runs of 16 bytes that make up a register. What is done within each of them alone costs the same in every
// build; the transforms are written so that they need nothing else.
#pragma once

#include <cstddef>

#include "simd/simd.h"

namespace vorn {

// Turns each group of four singles (two doubles) of as many vectors: element i of vector n becomes element n of vector
// i. Only shuffles of two operands are used; the processors have more units for them than for interleaving.
VORN_INLINE void transposeGroups(f32x4 (&v)[4]) {
    const __m128 low01 = _mm_shuffle_ps(v[0].v, v[1].v, _MM_SHUFFLE(0, 1, 0, 1));
    const __m128 high01 = _mm_shuffle_ps(v[0].v, v[1].v, _MM_SHUFFLE(2, 3, 2, 3));
    const __m128 low23 = _mm_shuffle_ps(v[2].v, v[3].v, _MM_SHUFFLE(0, 1, 0, 1));
    const __m128 high23 = _mm_shuffle_ps(v[2].v, v[3].v, _MM_SHUFFLE(2, 3, 2, 3));
    v[0] = {_mm_shuffle_ps(low01, low23, _MM_SHUFFLE(3, 1, 3, 1))};
    v[1] = {_mm_shuffle_ps(low01, low23, _MM_SHUFFLE(2, 0, 2, 0))};
    v[2] = {_mm_shuffle_ps(high01, high23, _MM_SHUFFLE(3, 1, 3, 1))};
    v[3] = {_mm_shuffle_ps(high01, high23, _MM_SHUFFLE(2, 0, 2, 0))};
}
VORN_INLINE void transposeGroups(f64x2 (&v)[2]) {
    const f64x2 low = interleaveLow(v[0], v[1]), high = interleaveHigh(v[0], v[1]);
    v[0] = low, v[1] = high;
}

// The same with pairs of singles for elements.
VORN_INLINE void transposePairs(f32x4 (&v)[2]) {
    const __m128 low = _mm_shuffle_ps(v[0].v, v[1].v, _MM_SHUFFLE(1, 0, 1, 0));
    const __m128 high = _mm_shuffle_ps(v[0].v, v[1].v, _MM_SHUFFLE(3, 2, 3, 2));
    v[0] = {low}, v[1] = {high};
}

// The first pair of a, the second of b.
VORN_INLINE f32x4 firstAndSecondPair(f32x4 a, f32x4 b) { return {_mm_shuffle_ps(a.v, b.v, _MM_SHUFFLE(3, 2, 1, 0))}; }

// Group g from p + g * step.
template <class V>
V loadGroups(const typename V::Element* p, std::ptrdiff_t step);
template <>
VORN_INLINE f32x4 loadGroups<f32x4>(const float* p, std::ptrdiff_t) {
    return load<f32x4>(p);
}
template <>
VORN_INLINE f64x2 loadGroups<f64x2>(const double* p, std::ptrdiff_t) {
    return load<f64x2>(p);
}

// The first or the second of each pair of neighbours with its sign changed.
VORN_INLINE f32x4 negateFirsts(f32x4 a) { return {_mm_xor_ps(a.v, _mm_setr_ps(-0.0F, 0.0F, -0.0F, 0.0F))}; }
VORN_INLINE f32x4 negateSeconds(f32x4 a) { return {_mm_xor_ps(a.v, _mm_setr_ps(0.0F, -0.0F, 0.0F, -0.0F))}; }
VORN_INLINE f64x2 negateFirsts(f64x2 a) { return {_mm_xor_pd(a.v, _mm_setr_pd(-0.0, 0.0))}; }
VORN_INLINE f64x2 negateSeconds(f64x2 a) { return {_mm_xor_pd(a.v, _mm_setr_pd(0.0, -0.0))}; }

// The 16 bytes at p in every group.
template <class V>
V repeatGroup(const typename V::Element* p);
template <>
VORN_INLINE f32x4 repeatGroup<f32x4>(const float* p) {
    return {_mm_loadu_ps(p)};
}
template <>
VORN_INLINE f64x2 repeatGroup<f64x2>(const double* p) {
    return {_mm_loadu_pd(p)};
}

// Stores group number g.
template <int g>
VORN_INLINE void storeGroup(float* to, f32x4 a) {
    _mm_storeu_ps(to, a.v);
}
template <int g>
VORN_INLINE void storeGroup(double* to, f64x2 a) {
    _mm_storeu_pd(to, a.v);
}

#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
VORN_INLINE void transposeGroups(f32x8 (&v)[4]) {
    const __m256 low01 = _mm256_shuffle_ps(v[0].v, v[1].v, _MM_SHUFFLE(0, 1, 0, 1));
    const __m256 high01 = _mm256_shuffle_ps(v[0].v, v[1].v, _MM_SHUFFLE(2, 3, 2, 3));
    const __m256 low23 = _mm256_shuffle_ps(v[2].v, v[3].v, _MM_SHUFFLE(0, 1, 0, 1));
    const __m256 high23 = _mm256_shuffle_ps(v[2].v, v[3].v, _MM_SHUFFLE(2, 3, 2, 3));
    v[0] = {_mm256_shuffle_ps(low01, low23, _MM_SHUFFLE(3, 1, 3, 1))};
    v[1] = {_mm256_shuffle_ps(low01, low23, _MM_SHUFFLE(2, 0, 2, 0))};
    v[2] = {_mm256_shuffle_ps(high01, high23, _MM_SHUFFLE(3, 1, 3, 1))};
    v[3] = {_mm256_shuffle_ps(high01, high23, _MM_SHUFFLE(2, 0, 2, 0))};
}
VORN_INLINE void transposeGroups(f64x4 (&v)[2]) {
    const f64x4 low = interleaveLow(v[0], v[1]), high = interleaveHigh(v[0], v[1]);
    v[0] = low, v[1] = high;
}
VORN_INLINE void transposePairs(f32x8 (&v)[2]) {
    const __m256 low = _mm256_shuffle_ps(v[0].v, v[1].v, _MM_SHUFFLE(1, 0, 1, 0));
    const __m256 high = _mm256_shuffle_ps(v[0].v, v[1].v, _MM_SHUFFLE(3, 2, 3, 2));
    v[0] = {low}, v[1] = {high};
}
// The second group of a and the first of b change place.
VORN_INLINE void exchangeGroups(f64x4& a, f64x4& b) {
    const __m256d low = _mm256_permute2f128_pd(a.v, b.v, 0x20), high = _mm256_permute2f128_pd(a.v, b.v, 0x31);
    a = {low}, b = {high};
}
// Turns the halves, or the quarters, of as many vectors: part i of vector n becomes part n of vector i.
VORN_INLINE void turnParts(f32x8 (&v)[2]) {
    const __m256 low = _mm256_permute2f128_ps(v[0].v, v[1].v, 0x20),
                 high = _mm256_permute2f128_ps(v[0].v, v[1].v, 0x31);
    v[0] = {low}, v[1] = {high};
}
VORN_INLINE void turnParts(f64x4 (&v)[2]) { exchangeGroups(v[0], v[1]); }
template <>
VORN_INLINE f32x8 loadGroups<f32x8>(const float* p, std::ptrdiff_t step) {
    return {_mm256_insertf128_ps(_mm256_castps128_ps256(_mm_loadu_ps(p)), _mm_loadu_ps(p + step), 1)};
}
template <>
VORN_INLINE f64x4 loadGroups<f64x4>(const double* p, std::ptrdiff_t step) {
    return {_mm256_insertf128_pd(_mm256_castpd128_pd256(_mm_loadu_pd(p)), _mm_loadu_pd(p + step), 1)};
}
VORN_INLINE f32x8 negateFirsts(f32x8 a) {
    return {_mm256_xor_ps(a.v, _mm256_castsi256_ps(_mm256_set1_epi64x(0x80000000LL)))};
}
VORN_INLINE f32x8 negateSeconds(f32x8 a) { return {_mm256_xor_ps(a.v, _mm256_castpd_ps(_mm256_set1_pd(-0.0)))}; }
VORN_INLINE f64x4 negateFirsts(f64x4 a) { return {_mm256_xor_pd(a.v, _mm256_setr_pd(-0.0, 0.0, -0.0, 0.0))}; }
VORN_INLINE f64x4 negateSeconds(f64x4 a) { return {_mm256_xor_pd(a.v, _mm256_setr_pd(0.0, -0.0, 0.0, -0.0))}; }
template <>
VORN_INLINE f32x8 repeatGroup<f32x8>(const float* p) {
    return {_mm256_broadcast_ps(reinterpret_cast<const __m128*>(p))};
}
template <>
VORN_INLINE f64x4 repeatGroup<f64x4>(const double* p) {
    return {_mm256_broadcast_pd(reinterpret_cast<const __m128d*>(p))};
}
template <int g>
VORN_INLINE void storeGroup(float* to, f32x8 a) {
    _mm_storeu_ps(to, g == 0 ? _mm256_castps256_ps128(a.v) : _mm256_extractf128_ps(a.v, 1));
}
template <int g>
VORN_INLINE void storeGroup(double* to, f64x4 a) {
    _mm_storeu_pd(to, g == 0 ? _mm256_castpd256_pd128(a.v) : _mm256_extractf128_pd(a.v, 1));
}
#endif

#if defined(VORN_SIMD_AVX512)
// Group i of vector n becomes group n of vector i.
VORN_INLINE void turnGroups(f32x16 (&v)[4]) {
    const __m512 low01 = _mm512_shuffle_f32x4(v[0].v, v[1].v, 0x44),
                 high01 = _mm512_shuffle_f32x4(v[0].v, v[1].v, 0xEE);
    const __m512 low23 = _mm512_shuffle_f32x4(v[2].v, v[3].v, 0x44),
                 high23 = _mm512_shuffle_f32x4(v[2].v, v[3].v, 0xEE);
    v[0] = {_mm512_shuffle_f32x4(low01, low23, 0x88)}, v[1] = {_mm512_shuffle_f32x4(low01, low23, 0xDD)};
    v[2] = {_mm512_shuffle_f32x4(high01, high23, 0x88)}, v[3] = {_mm512_shuffle_f32x4(high01, high23, 0xDD)};
}
VORN_INLINE void turnGroups(f64x8 (&v)[4]) {
    f32x16 groups[4];
    for (int i = 0; i < 4; ++i) groups[i] = {_mm512_castpd_ps(v[i].v)};
    turnGroups(groups);
    for (int i = 0; i < 4; ++i) v[i] = {_mm512_castps_pd(groups[i].v)};
}
VORN_INLINE void turnParts(f32x16 (&v)[2]) {
    const __m512 low = _mm512_shuffle_f32x4(v[0].v, v[1].v, 0x44), high = _mm512_shuffle_f32x4(v[0].v, v[1].v, 0xEE);
    v[0] = {low}, v[1] = {high};
}
VORN_INLINE void turnParts(f32x16 (&v)[4]) { turnGroups(v); }
VORN_INLINE void turnParts(f64x8 (&v)[2]) {
    const __m512d low = _mm512_shuffle_f64x2(v[0].v, v[1].v, 0x44), high = _mm512_shuffle_f64x2(v[0].v, v[1].v, 0xEE);
    v[0] = {low}, v[1] = {high};
}
VORN_INLINE void transposeGroups(f32x16 (&v)[4]) {
    const __m512 low01 = _mm512_shuffle_ps(v[0].v, v[1].v, _MM_SHUFFLE(0, 1, 0, 1));
    const __m512 high01 = _mm512_shuffle_ps(v[0].v, v[1].v, _MM_SHUFFLE(2, 3, 2, 3));
    const __m512 low23 = _mm512_shuffle_ps(v[2].v, v[3].v, _MM_SHUFFLE(0, 1, 0, 1));
    const __m512 high23 = _mm512_shuffle_ps(v[2].v, v[3].v, _MM_SHUFFLE(2, 3, 2, 3));
    v[0] = {_mm512_shuffle_ps(low01, low23, _MM_SHUFFLE(3, 1, 3, 1))};
    v[1] = {_mm512_shuffle_ps(low01, low23, _MM_SHUFFLE(2, 0, 2, 0))};
    v[2] = {_mm512_shuffle_ps(high01, high23, _MM_SHUFFLE(3, 1, 3, 1))};
    v[3] = {_mm512_shuffle_ps(high01, high23, _MM_SHUFFLE(2, 0, 2, 0))};
}
VORN_INLINE void transposeGroups(f64x8 (&v)[2]) {
    const __m512d low = _mm512_unpacklo_pd(v[0].v, v[1].v), high = _mm512_unpackhi_pd(v[0].v, v[1].v);
    v[0] = {low}, v[1] = {high};
}
VORN_INLINE void transposePairs(f32x16 (&v)[2]) {
    const __m512d a = _mm512_castps_pd(v[0].v), b = _mm512_castps_pd(v[1].v);
    v[0] = {_mm512_castpd_ps(_mm512_unpacklo_pd(a, b))}, v[1] = {_mm512_castpd_ps(_mm512_unpackhi_pd(a, b))};
}
template <>
VORN_INLINE f32x16 loadGroups<f32x16>(const float* p, std::ptrdiff_t step) {
    const __m512 low = _mm512_castps256_ps512(loadGroups<f32x8>(p, step).v);
    return {_mm512_insertf32x8(low, loadGroups<f32x8>(p + 2 * step, step).v, 1)};
}
template <>
VORN_INLINE f64x8 loadGroups<f64x8>(const double* p, std::ptrdiff_t step) {
    const __m512d low = _mm512_castpd256_pd512(loadGroups<f64x4>(p, step).v);
    return {_mm512_insertf64x4(low, loadGroups<f64x4>(p + 2 * step, step).v, 1)};
}
VORN_INLINE f32x16 negateFirsts(f32x16 a) {
    return {_mm512_xor_ps(a.v, _mm512_castsi512_ps(_mm512_set1_epi64(0x80000000LL)))};
}
VORN_INLINE f32x16 negateSeconds(f32x16 a) { return {_mm512_xor_ps(a.v, _mm512_castpd_ps(_mm512_set1_pd(-0.0)))}; }
VORN_INLINE f64x8 negateFirsts(f64x8 a) { return {_mm512_xor_pd(a.v, _mm512_broadcast_f64x2(_mm_setr_pd(-0.0, 0.0)))}; }
VORN_INLINE f64x8 negateSeconds(f64x8 a) {
    return {_mm512_xor_pd(a.v, _mm512_broadcast_f64x2(_mm_setr_pd(0.0, -0.0)))};
}
template <>
VORN_INLINE f32x16 repeatGroup<f32x16>(const float* p) {
    return {_mm512_broadcast_f32x4(_mm_loadu_ps(p))};
}
template <>
VORN_INLINE f64x8 repeatGroup<f64x8>(const double* p) {
    return {_mm512_broadcast_f64x2(_mm_loadu_pd(p))};
}
template <int g>
VORN_INLINE void storeGroup(float* to, f32x16 a) {
    _mm_storeu_ps(to, g == 0 ? _mm512_castps512_ps128(a.v) : _mm512_extractf32x4_ps(a.v, g));
}
template <int g>
VORN_INLINE void storeGroup(double* to, f64x8 a) {
    _mm_storeu_pd(to, g == 0 ? _mm512_castpd512_pd128(a.v) : _mm512_extractf64x2_pd(a.v, g));
}
#endif

// Puts the pairs (first, second) side by side, group by group: a store of half a register costs less than a shuffle
// across the groups.
template <class T, class V>
VORN_INLINE void storePairGroups(T* p, V first, V second) {
    storePairs(p, first, second);
}
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
VORN_INLINE void storePairGroups(float* p, f32x8 first, f32x8 second) {
    const f32x8 low = interleaveLow(first, second), high = interleaveHigh(first, second);
    storeGroup<0>(p, low);
    storeGroup<0>(p + 4, high);
    storeGroup<1>(p + 8, low);
    storeGroup<1>(p + 12, high);
}
VORN_INLINE void storePairGroups(double* p, f64x4 first, f64x4 second) {
    const f64x4 low = interleaveLow(first, second), high = interleaveHigh(first, second);
    storeGroup<0>(p, low);
    storeGroup<0>(p + 2, high);
    storeGroup<1>(p + 4, low);
    storeGroup<1>(p + 6, high);
}
#endif

}  // namespace vorn
