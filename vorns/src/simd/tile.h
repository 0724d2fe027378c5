// The SIMD vocabulary: tiles, four rows of one 16-byte register each, held in as few registers as the build allows.
// With them four order-bound sums advance at once: each row keeps its own lanes and its own order in every build, and
// wide loads still pay.
#pragma once

#include <type_traits>

#include "simd/four.h"
#include "simd/simd.h"

// With AVX-512 too a tile is two registers of 32 bytes: building one of 64 bytes takes more shuffles than it saves
// operations on short rows, and 64-byte arithmetic slows down what runs between the scores.
#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
#define VORN_WIDE_TILES 1
#endif

namespace vorn {

// Hides how a pointer came about. Without it GCC 12 computes the addresses of neighbouring rows in vector registers,
// which costs more than the sums of a short row.
template <class T>
VORN_INLINE T* keepApart(T* pointer) {
    asm("" : "+r"(pointer));
    return pointer;
}

// A list of vector types, widest first: a loop over columns takes as many as it can with each.
template <class... V>
struct Widths {};

// Rows of f32x4.
struct f32x4x4 {
    using Element = float;
    using Block = f32x4;
#if defined(VORN_WIDE_TILES)
    __m256 v02, v13;
#else
    __m128 v0, v1, v2, v3;
#endif
};

// Rows of f64x2.
struct f64x2x4 {
    using Element = double;
    using Block = f64x2;
#if defined(VORN_WIDE_TILES)
    __m256d v02, v13;
#else
    __m128d v0, v1, v2, v3;
#endif
};

// Eight singles in every build.
//
// upperFloats(a): the elements times 2^16, where that is cheaper than the elements themselves; a sum over them comes
// back by upperUnit. squares(a): the squares of the elements, rounded once.
#if defined(VORN_WIDE_TILES)
using f32x8of8 = f32x8;
VORN_INLINE f32x8of8 toFloats(i16x8 a) { return {_mm256_cvtepi32_ps(_mm256_cvtepi16_epi32(a.v))}; }
inline constexpr float upperUnit = 1;
VORN_INLINE f32x8of8 upperFloats(i16x8 a) { return toFloats(a); }
VORN_INLINE f32x8of8 squares(i16x8 a) { return toFloats(a) * toFloats(a); }
#else
struct f32x8of8 {
    static constexpr int lanes = 8;
    using Element = float;
    f32x4 low, high;
};
VORN_INLINE f32x8of8 operator-(f32x8of8 a, f32x8of8 b) { return {a.low - b.low, a.high - b.high}; }
VORN_INLINE f32x8of8 operator*(f32x8of8 a, f32x8of8 b) { return {a.low * b.low, a.high * b.high}; }
VORN_INLINE f32x8of8 toFloats(i16x8 a) { return {toFloat(widenLow(a)), toFloat(widenHigh(a))}; }
VORN_INLINE f32x4 lowHalf(f32x8of8 a) { return a.low; }
VORN_INLINE f32x4 highHalf(f32x8of8 a) { return a.high; }
inline constexpr float upperUnit = 0x1p-16f;
VORN_INLINE f32x8of8 upperFloats(i16x8 a) {
    const __m128i zero = _mm_setzero_si128();
    return {{_mm_cvtepi32_ps(_mm_unpacklo_epi16(zero, a.v))}, {_mm_cvtepi32_ps(_mm_unpackhi_epi16(zero, a.v))}};
}
VORN_INLINE f32x8of8 squares(i16x8 a) { return {toFloat(productsLow(a, a)), toFloat(productsHigh(a, a))}; }
#endif

// What a build takes at a time: singles and doubles, 16-bit integers (whole groups of eight), and 16-bit integers that
// are to be widened to singles.
#if defined(VORN_WIDE_TILES)
using SingleWidths = Widths<f32x8, f32x4>;
using DoubleWidths = Widths<f64x4, f64x2>;
using ShortWidths = Widths<i16x16, i16x8>;
using ShortToSingleWidths = Widths<i16x8>;
#else
using SingleWidths = Widths<f32x4>;
using DoubleWidths = Widths<f64x2>;
using ShortWidths = Widths<i16x8>;
using ShortToSingleWidths = Widths<i16x8>;
#endif

// The vector that holds one element for each row of a tile.
template <class T>
struct FourOf;
template <>
struct FourOf<float> {
    using type = f32x4;
};
template <>
struct FourOf<std::int32_t> {
    using type = i32x4;
};
template <>
struct FourOf<double> {
    using type = f64x4;
};
template <class T>
using Four = typename FourOf<T>::type;

// The lanes by name.
VORN_INLINE f32x4 lanesOf(float a, float b, float c, float d) { return {_mm_setr_ps(a, b, c, d)}; }

// rowsOf<b>(r0, r1, r2, r3): the tile whose row r is block b (of 16 bytes) of the r-th argument.
// sumNeighbours(tile): (lane 0 + lane 1) + (lane 2 + lane 3) of each row; sumLanes(tile): lane 0 + lane 1.
// columnsOf(tile, c): c[k] holds lane k of each row.
template <int block, class V>
struct RowsOf;
template <int block, class V>
VORN_INLINE auto rowsOf(V r0, V r1, V r2, V r3) {
    return RowsOf<block, V>::of(r0, r1, r2, r3);
}

#if defined(VORN_WIDE_TILES)

VORN_INLINE f32x4x4 operator+(f32x4x4 a, f32x4x4 b) {
    return {_mm256_add_ps(a.v02, b.v02), _mm256_add_ps(a.v13, b.v13)};
}
VORN_INLINE f64x2x4 operator+(f64x2x4 a, f64x2x4 b) {
    return {_mm256_add_pd(a.v02, b.v02), _mm256_add_pd(a.v13, b.v13)};
}
VORN_INLINE f32x4x4 operator-(f32x4x4 a, f32x4x4 b) {
    return {_mm256_sub_ps(a.v02, b.v02), _mm256_sub_ps(a.v13, b.v13)};
}
VORN_INLINE f64x2x4 operator-(f64x2x4 a, f64x2x4 b) {
    return {_mm256_sub_pd(a.v02, b.v02), _mm256_sub_pd(a.v13, b.v13)};
}

template <int block>
struct RowsOf<block, f32x8> {
    static VORN_INLINE f32x4x4 of(f32x8 r0, f32x8 r1, f32x8 r2, f32x8 r3) {
        constexpr int half = block == 0 ? 0x20 : 0x31;
        return {_mm256_permute2f128_ps(r0.v, r2.v, half), _mm256_permute2f128_ps(r1.v, r3.v, half)};
    }
};
template <>
struct RowsOf<0, f32x4> {
    static VORN_INLINE f32x4x4 of(f32x4 r0, f32x4 r1, f32x4 r2, f32x4 r3) {
        return {_mm256_set_m128(r2.v, r0.v), _mm256_set_m128(r3.v, r1.v)};
    }
};
template <int block>
struct RowsOf<block, f64x4> {
    static VORN_INLINE f64x2x4 of(f64x4 r0, f64x4 r1, f64x4 r2, f64x4 r3) {
        constexpr int half = block == 0 ? 0x20 : 0x31;
        return {_mm256_permute2f128_pd(r0.v, r2.v, half), _mm256_permute2f128_pd(r1.v, r3.v, half)};
    }
};
template <>
struct RowsOf<0, f64x2> {
    static VORN_INLINE f64x2x4 of(f64x2 r0, f64x2 r1, f64x2 r2, f64x2 r3) {
        return {_mm256_set_m128d(r2.v, r0.v), _mm256_set_m128d(r3.v, r1.v)};
    }
};

VORN_INLINE f32x4 sumNeighbours(f32x4x4 a) {
    const __m256 pairs = _mm256_hadd_ps(a.v02, a.v13);  // of rows 0 and 1, then of rows 2 and 3
    return {_mm_hadd_ps(_mm256_castps256_ps128(pairs), _mm256_extractf128_ps(pairs, 1))};
}
VORN_INLINE f64x4 sumLanes(f64x2x4 a) { return {_mm256_hadd_pd(a.v02, a.v13)}; }
VORN_INLINE void columnsOf(f32x4x4 a, f32x4 (&column)[4]) {
    const __m256 c01 = _mm256_unpacklo_ps(a.v02, a.v13), c23 = _mm256_unpackhi_ps(a.v02, a.v13);
    const __m128 c01Low = _mm256_castps256_ps128(c01), c01High = _mm256_extractf128_ps(c01, 1);
    const __m128 c23Low = _mm256_castps256_ps128(c23), c23High = _mm256_extractf128_ps(c23, 1);
    column[0] = {_mm_movelh_ps(c01Low, c01High)};
    column[1] = {_mm_movehl_ps(c01High, c01Low)};
    column[2] = {_mm_movelh_ps(c23Low, c23High)};
    column[3] = {_mm_movehl_ps(c23High, c23Low)};
}
VORN_INLINE void columnsOf(f64x2x4 a, f64x4 (&column)[2]) {
    column[0] = {_mm256_unpacklo_pd(a.v02, a.v13)};
    column[1] = {_mm256_unpackhi_pd(a.v02, a.v13)};
}

#else

VORN_INLINE f32x4x4 operator+(f32x4x4 a, f32x4x4 b) {
    return {_mm_add_ps(a.v0, b.v0), _mm_add_ps(a.v1, b.v1), _mm_add_ps(a.v2, b.v2), _mm_add_ps(a.v3, b.v3)};
}
VORN_INLINE f64x2x4 operator+(f64x2x4 a, f64x2x4 b) {
    return {_mm_add_pd(a.v0, b.v0), _mm_add_pd(a.v1, b.v1), _mm_add_pd(a.v2, b.v2), _mm_add_pd(a.v3, b.v3)};
}
VORN_INLINE f32x4x4 operator-(f32x4x4 a, f32x4x4 b) {
    return {_mm_sub_ps(a.v0, b.v0), _mm_sub_ps(a.v1, b.v1), _mm_sub_ps(a.v2, b.v2), _mm_sub_ps(a.v3, b.v3)};
}
VORN_INLINE f64x2x4 operator-(f64x2x4 a, f64x2x4 b) {
    return {_mm_sub_pd(a.v0, b.v0), _mm_sub_pd(a.v1, b.v1), _mm_sub_pd(a.v2, b.v2), _mm_sub_pd(a.v3, b.v3)};
}

template <>
struct RowsOf<0, f32x4> {
    static VORN_INLINE f32x4x4 of(f32x4 r0, f32x4 r1, f32x4 r2, f32x4 r3) { return {r0.v, r1.v, r2.v, r3.v}; }
};
template <int block>
struct RowsOf<block, f32x8of8> {
    static VORN_INLINE f32x4x4 of(f32x8of8 r0, f32x8of8 r1, f32x8of8 r2, f32x8of8 r3) {
        if constexpr (block == 0) {
            return {r0.low.v, r1.low.v, r2.low.v, r3.low.v};
        } else {
            return {r0.high.v, r1.high.v, r2.high.v, r3.high.v};
        }
    }
};
template <>
struct RowsOf<0, f64x2> {
    static VORN_INLINE f64x2x4 of(f64x2 r0, f64x2 r1, f64x2 r2, f64x2 r3) { return {r0.v, r1.v, r2.v, r3.v}; }
};

VORN_INLINE f32x4 sumNeighbours(f32x4x4 a) { return {_mm_hadd_ps(_mm_hadd_ps(a.v0, a.v1), _mm_hadd_ps(a.v2, a.v3))}; }
VORN_INLINE f64x4 sumLanes(f64x2x4 a) { return {{_mm_hadd_pd(a.v0, a.v1)}, {_mm_hadd_pd(a.v2, a.v3)}}; }
VORN_INLINE void columnsOf(f32x4x4 a, f32x4 (&column)[4]) {
    const __m128 c01Low = _mm_unpacklo_ps(a.v0, a.v1), c01High = _mm_unpacklo_ps(a.v2, a.v3);
    const __m128 c23Low = _mm_unpackhi_ps(a.v0, a.v1), c23High = _mm_unpackhi_ps(a.v2, a.v3);
    column[0] = {_mm_movelh_ps(c01Low, c01High)};
    column[1] = {_mm_movehl_ps(c01High, c01Low)};
    column[2] = {_mm_movelh_ps(c23Low, c23High)};
    column[3] = {_mm_movehl_ps(c23High, c23Low)};
}
VORN_INLINE void columnsOf(f64x2x4 a, f64x4 (&column)[2]) {
    column[0] = {{_mm_unpacklo_pd(a.v0, a.v1)}, {_mm_unpacklo_pd(a.v2, a.v3)}};
    column[1] = {{_mm_unpackhi_pd(a.v0, a.v1)}, {_mm_unpackhi_pd(a.v2, a.v3)}};
}

#endif

// Integer lanes.

// Lane n of each block of 16 bytes comes to its lane 0, and so on; zeros follow.
template <int n>
VORN_INLINE i16x8 dropFirst(i16x8 a) {
    return {_mm_srli_si128(a.v, 2 * n)};
}
template <int n>
VORN_INLINE i32x4 dropFirst(i32x4 a) {
    return {_mm_srli_si128(a.v, 4 * n)};
}
// Of each block of 16 bytes: the first two lanes of a, then those of b; the last two of both; each lane and its
// neighbour exchanged.
VORN_INLINE i32x4 firstTwoOf(i32x4 a, i32x4 b) { return {_mm_unpacklo_epi64(a.v, b.v)}; }
VORN_INLINE i32x4 lastTwoOf(i32x4 a, i32x4 b) { return {_mm_unpackhi_epi64(a.v, b.v)}; }
VORN_INLINE i32x4 neighboursExchanged(i32x4 a) { return {_mm_shuffle_epi32(a.v, 0xB1)}; }
VORN_INLINE i32x4 evenLanes(i32x4 a) { return {_mm_and_si128(a.v, _mm_set1_epi64x(0xFFFFFFFF))}; }
// Lane 0 + lane 1, lane 2 + lane 3 of a, then of b, wrapping.
VORN_INLINE i32x4 sumNeighbours(i32x4 a, i32x4 b) {
    const __m128 x = _mm_castsi128_ps(a.v), y = _mm_castsi128_ps(b.v);
    return {_mm_add_epi32(_mm_castps_si128(_mm_shuffle_ps(x, y, 0x88)), _mm_castps_si128(_mm_shuffle_ps(x, y, 0xDD)))};
}
#if defined(VORN_WIDE_TILES)
template <int n>
VORN_INLINE i16x16 dropFirst(i16x16 a) {
    return {_mm256_srli_si256(a.v, 2 * n)};
}
VORN_INLINE i32x8 firstTwoOf(i32x8 a, i32x8 b) { return {_mm256_unpacklo_epi64(a.v, b.v)}; }
VORN_INLINE i32x8 lastTwoOf(i32x8 a, i32x8 b) { return {_mm256_unpackhi_epi64(a.v, b.v)}; }
VORN_INLINE i32x8 neighboursExchanged(i32x8 a) { return {_mm256_shuffle_epi32(a.v, 0xB1)}; }
VORN_INLINE i32x8 evenLanes(i32x8 a) { return {_mm256_and_si256(a.v, _mm256_set1_epi64x(0xFFFFFFFF))}; }
VORN_INLINE i16x16 sideBySide(i16x8 low, i16x8 high) { return {_mm256_set_m128i(high.v, low.v)}; }
#endif

// The same 16 bytes in each block of V.
template <class V>
V inEachBlock(i16x8 a);
template <>
VORN_INLINE i16x8 inEachBlock<i16x8>(i16x8 a) {
    return a;
}
#if defined(VORN_WIDE_TILES)
template <>
VORN_INLINE i16x16 inEachBlock<i16x16>(i16x8 a) {
    return {_mm256_broadcastsi128_si256(a.v)};
}
#endif

// Four rows of eight 16-bit columns, or one. Part p holds row p or, where two fit into a vector, the rows p and p + 2.
template <class V, int n>
struct Parts {
    using Vector = V;
    static constexpr int count = n;
    V part[n];
};
using OneShortRow = Parts<i16x8, 1>;
#if defined(VORN_WIDE_TILES)
using FourShortRows = Parts<i16x16, 2>;
VORN_INLINE FourShortRows fourShortRows(i16x8 r0, i16x8 r1, i16x8 r2, i16x8 r3) {
    return {{sideBySide(r0, r2), sideBySide(r1, r3)}};
}
#else
using FourShortRows = Parts<i16x8, 4>;
VORN_INLINE FourShortRows fourShortRows(i16x8 r0, i16x8 r1, i16x8 r2, i16x8 r3) { return {{r0, r1, r2, r3}}; }
#endif
// of(p) for each part p, a number that the compiler knows.
template <int n, class Function>
VORN_INLINE void forParts(const Function& of) {
    of(std::integral_constant<int, 0>());
    if constexpr (n > 1) of(std::integral_constant<int, 1>());
    if constexpr (n > 2) of(std::integral_constant<int, 2>()), of(std::integral_constant<int, 3>());
}

}  // namespace vorn
