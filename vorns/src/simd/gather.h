// The SIMD vocabulary: look-ups in tables in memory.
#pragma once

#include "simd/simd.h"

namespace vorn {

// Each lane takes the entry of a table that its index names.
template <class V, class Index>
V gather(const typename V::Element* table, Index index);

template <>
VORN_INLINE f64x2 gather<f64x2>(const double* table, i64x2 index) {
    const std::int64_t first = _mm_cvtsi128_si64(index.v);
    const std::int64_t second = _mm_cvtsi128_si64(_mm_unpackhi_epi64(index.v, index.v));
    return {_mm_loadh_pd(_mm_load_sd(table + first), table + second)};
}
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
template <>
VORN_INLINE f64x4 gather<f64x4>(const double* table, i64x4 index) {
    return {_mm256_i64gather_pd(table, index.v, 8)};
}
#endif
#if defined(VORN_SIMD_AVX512)
template <>
VORN_INLINE f64x8 gather<f64x8>(const double* table, i64x8 index) {
    return {_mm512_i64gather_pd(index.v, table, 8)};
}
#endif

}  // namespace vorn
