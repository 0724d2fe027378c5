// Complex numbers in the wide registers: what products and quotients of whole vectors need of the SIMD vocabulary.
#pragma once

#include <bit>

#include "simd/simd.h"

#if defined(VORN_SIMD_AVX512) && defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif

namespace vorn {

// The real parts twice. From memory that is a load and no more, which a compiler spoils when it finds another load of
// the same address: it then reads once and rearranges a register, where products have the least room.
template <class V>
VORN_INLINE V loadDupEven(const typename V::Element* p) {
    return dupEven(load<V>(p));
}
#if defined(VORN_SIMD_AVX512)
template <>
VORN_INLINE f32x16 loadDupEven<f32x16>(const float* p) {
    f32x16 twice;
    __asm__("vmovsldup %1, %0" : "=v"(twice.v) : "m"(*reinterpret_cast<const float(*)[16]>(p)));
    return twice;
}
template <>
VORN_INLINE f64x8 loadDupEven<f64x8>(const double* p) {
    f64x8 twice;
    __asm__("vmovddup %1, %0" : "=v"(twice.v) : "m"(*reinterpret_cast<const double(*)[8]>(p)));
    return twice;
}
#elif defined(VORN_SIMD_AVX2)
template <>
VORN_INLINE f32x8 loadDupEven<f32x8>(const float* p) {
    f32x8 twice;
    __asm__("vmovsldup %1, %0" : "=x"(twice.v) : "m"(*reinterpret_cast<const float(*)[8]>(p)));
    return twice;
}
template <>
VORN_INLINE f64x4 loadDupEven<f64x4>(const double* p) {
    f64x4 twice;
    __asm__("vmovddup %1, %0" : "=x"(twice.v) : "m"(*reinterpret_cast<const double(*)[4]>(p)));
    return twice;
}
#else
template <>
VORN_INLINE f64x2 loadDupEven<f64x2>(const double* p) {
    return {_mm_loaddup_pd(p)};
}
#endif

// Real and imaginary parts exchanged, on the port that arithmetic leaves free.
template <class V>
VORN_INLINE V exchanged(V a) {
    return swapPairs(a);
}
#if defined(VORN_SIMD_AVX512)
VORN_INLINE f32x16 exchanged(f32x16 a) {
    return {_mm512_castsi512_ps(_mm512_maskz_rol_epi64(0xFF, _mm512_castps_si512(a.v), 32))};
}
#endif

// a + b in the real parts, a - b in the imaginary ones.
template <class V>
VORN_INLINE V subAdd(V a, V b) {
    return addSub(a, -b);
}
#if defined(VORN_SIMD_AVX512)
VORN_INLINE f64x8 subAdd(f64x8 a, f64x8 b) { return {_mm512_mask_sub_pd(_mm512_add_pd(a.v, b.v), 0xAA, a.v, b.v)}; }
#endif

// Where both parts are zero.
template <class V>
VORN_INLINE auto zeros(V a) {
    const V size = absOf(a);
    return size + swapPairs(size) == splat<V>(0);
}

#if defined(VORN_SIMD_AVX512)
VORN_INLINE f64x8 interleaveLow(f64x8 a, f64x8 b) { return {_mm512_maskz_unpacklo_pd(0xFF, a.v, b.v)}; }
VORN_INLINE f64x8 interleaveHigh(f64x8 a, f64x8 b) { return {_mm512_maskz_unpackhi_pd(0xFF, a.v, b.v)}; }
#endif

}  // namespace vorn

#if defined(VORN_SIMD_AVX512) && defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif
