// The SIMD vocabulary: the lanes of one register joined by an operation.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "simd/simd.h"

namespace vorn {

#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
VORN_INLINE i16x8 lowHalf(i16x16 a) { return {_mm256_castsi256_si128(a.v)}; }
VORN_INLINE i16x8 highHalf(i16x16 a) { return {_mm256_extracti128_si256(a.v, 1)}; }
VORN_INLINE u8x16 lowHalf(u8x32 a) { return {_mm256_castsi256_si128(a.v)}; }
VORN_INLINE u8x16 highHalf(u8x32 a) { return {_mm256_extracti128_si256(a.v, 1)}; }
#endif
#if defined(VORN_SIMD_AVX512)
VORN_INLINE i16x16 lowHalf(i16x32 a) { return {_mm512_castsi512_si256(a.v)}; }
VORN_INLINE i16x16 highHalf(i16x32 a) { return {_mm512_extracti64x4_epi64(a.v, 1)}; }
VORN_INLINE u8x32 lowHalf(u8x64 a) { return {_mm512_castsi512_si256(a.v)}; }
VORN_INLINE u8x32 highHalf(u8x64 a) { return {_mm512_extracti64x4_epi64(a.v, 1)}; }
#endif

// The lanes of a 16-byte register moved down by some bytes.
template <int bytes, class V>
VORN_INLINE V shiftedDown(V a) {
    return std::bit_cast<V>(_mm_srli_si128(std::bit_cast<__m128i>(a), bytes));
}

// join(lane j, lane j + half) for halves of the lanes, of what remains, and so on down to one lane; or, with bytes,
// down to the register's first `bytes` bytes, whose upper neighbours then mean nothing.
template <int bytes, class V, class Join>
VORN_INLINE auto foldedTo(V a, Join join) {
    if constexpr (sizeof(V) > 16) {
        return foldedTo<bytes>(join(lowHalf(a), highHalf(a)), join);
    } else {
        if constexpr (bytes <= 8) a = join(a, shiftedDown<8>(a));
        if constexpr (bytes <= 4) a = join(a, shiftedDown<4>(a));
        if constexpr (bytes <= 2) a = join(a, shiftedDown<2>(a));
        if constexpr (bytes <= 1) a = join(a, shiftedDown<1>(a));
        return a;
    }
}
template <class V, class Join>
VORN_INLINE typename V::Element folded(V a, Join join) {
    const auto register16 = foldedTo<sizeof(typename V::Element)>(a, join);
    typename V::Element first;
    std::memcpy(&first, &register16, sizeof first);
    return first;
}
template <class V>
VORN_INLINE typename V::Element sumOfLanes(V a) {
    return folded(a, [](auto x, auto y) { return x + y; });
}

// The exact sum of integer lanes.
VORN_INLINE std::int64_t wideSumOfLanes(i32xN a) {
    return static_cast<std::int64_t>(sumOfLanes(toDoubleLow(a) + toDoubleHigh(a)));
}

}  // namespace vorn
