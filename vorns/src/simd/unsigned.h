// Minimum and maximum of lanes read as unsigned numbers, where the processor has them: with AVX2 and wider.
#pragma once

#include "simd/simd.h"

namespace vorn {

// Declared in every build, so that a kernel can choose.
template <class V>
V minOfUnsigned(V a, V b);
template <class V>
V maxOfUnsigned(V a, V b);

#if defined(VORN_SIMD_AVX512)
inline constexpr bool hasUnsignedOrder = true;
template <>
VORN_INLINE i16xN minOfUnsigned(i16xN a, i16xN b) {
    return {_mm512_min_epu16(a.v, b.v)};
}
template <>
VORN_INLINE i16xN maxOfUnsigned(i16xN a, i16xN b) {
    return {_mm512_max_epu16(a.v, b.v)};
}
template <>
VORN_INLINE i32xN minOfUnsigned(i32xN a, i32xN b) {
    return {_mm512_min_epu32(a.v, b.v)};
}
template <>
VORN_INLINE i32xN maxOfUnsigned(i32xN a, i32xN b) {
    return {_mm512_max_epu32(a.v, b.v)};
}
#elif defined(VORN_SIMD_AVX2)
inline constexpr bool hasUnsignedOrder = true;
template <>
VORN_INLINE i16xN minOfUnsigned(i16xN a, i16xN b) {
    return {_mm256_min_epu16(a.v, b.v)};
}
template <>
VORN_INLINE i16xN maxOfUnsigned(i16xN a, i16xN b) {
    return {_mm256_max_epu16(a.v, b.v)};
}
template <>
VORN_INLINE i32xN minOfUnsigned(i32xN a, i32xN b) {
    return {_mm256_min_epu32(a.v, b.v)};
}
template <>
VORN_INLINE i32xN maxOfUnsigned(i32xN a, i32xN b) {
    return {_mm256_max_epu32(a.v, b.v)};
}
#else
inline constexpr bool hasUnsignedOrder = false;
#endif

}  // namespace vorn
