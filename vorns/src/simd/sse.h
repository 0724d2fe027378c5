// The SIMD vocabulary, 16-byte registers: the fixed types of every build, written for SSE3.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

#include "simd/intrinsics.h"

#define VORN_INLINE inline __attribute__((always_inline))

namespace vorn {

struct f32x4 {
    static constexpr int lanes = 4;
    using Element = float;
    __m128 v;
};
struct f64x2 {
    static constexpr int lanes = 2;
    using Element = double;
    __m128d v;
};
struct i64x2 {
    static constexpr int lanes = 2;
    using Element = std::int64_t;
    __m128i v;
};
struct i32x4 {
    static constexpr int lanes = 4;
    using Element = std::int32_t;
    __m128i v;
};
struct i16x8 {
    static constexpr int lanes = 8;
    using Element = std::int16_t;
    __m128i v;
};
struct i8x16 {
    static constexpr int lanes = 16;
    using Element = std::int8_t;
    __m128i v;
};
struct u8x16 {
    static constexpr int lanes = 16;
    using Element = std::uint8_t;
    __m128i v;
};

// A mask of 32-bit or 64-bit lanes: all bits of a lane set, or none.
struct mask32x4 {
    __m128 v;
};
struct mask64x2 {
    __m128d v;
};
struct mask16x8 {
    __m128i v;
};

template <class V>
concept FloatLanes = std::is_floating_point_v<typename V::Element>;
// Types of integer lanes in a register of so many bytes. They share what looks at bits alone.
template <class V, int bytes>
concept IntegerLanes = std::is_integral_v<typename V::Element> && sizeof(V::v) == bytes;

// Loads, stores, constants.

template <FloatLanes V>
V load(const typename V::Element* p);
template <IntegerLanes<32> V>
V load(const typename V::Element* p);
template <IntegerLanes<64> V>
V load(const typename V::Element* p);
template <class V>
V splat(typename V::Element x);

template <>
VORN_INLINE f32x4 load<f32x4>(const float* p) {
    return {_mm_loadu_ps(p)};
}
VORN_INLINE void store(float* p, f32x4 a) { _mm_storeu_ps(p, a.v); }
template <>
VORN_INLINE f32x4 splat<f32x4>(float x) {
    return {_mm_set1_ps(x)};
}
// Bypasses the cache; p is on a 16-byte address. Close a run of these with storeFence().
VORN_INLINE void storeStream(float* p, f32x4 a) { _mm_stream_ps(p, a.v); }
template <>
VORN_INLINE f64x2 load<f64x2>(const double* p) {
    return {_mm_loadu_pd(p)};
}
VORN_INLINE void store(double* p, f64x2 a) { _mm_storeu_pd(p, a.v); }
template <>
VORN_INLINE f64x2 splat<f64x2>(double x) {
    return {_mm_set1_pd(x)};
}
// Bypasses the cache; p is on a 16-byte address. Close a run of these with storeFence().
VORN_INLINE void storeStream(double* p, f64x2 a) { _mm_stream_pd(p, a.v); }
template <IntegerLanes<16> V>
VORN_INLINE V load(const typename V::Element* p) {
    return {_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))};
}
template <IntegerLanes<16> V>
VORN_INLINE void store(typename V::Element* p, V a) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(p), a.v);
}
template <IntegerLanes<16> V>
VORN_INLINE void storeStream(typename V::Element* p, V a) {
    _mm_stream_si128(reinterpret_cast<__m128i*>(p), a.v);
}
template <>
VORN_INLINE i64x2 splat<i64x2>(std::int64_t x) {
    return {_mm_set1_epi64x(x)};
}
template <>
VORN_INLINE i32x4 splat<i32x4>(std::int32_t x) {
    return {_mm_set1_epi32(x)};
}
template <>
VORN_INLINE i16x8 splat<i16x8>(std::int16_t x) {
    return {_mm_set1_epi16(x)};
}
template <>
VORN_INLINE i8x16 splat<i8x16>(std::int8_t x) {
    return {_mm_set1_epi8(x)};
}
VORN_INLINE void storeFence() { _mm_sfence(); }

// Through memory, where the processor has no lanes that it can leave out.
template <class V>
VORN_INLINE V loadFirst(const typename V::Element* p, std::ptrdiff_t n) {
    typename V::Element lane[V::lanes] = {};
    std::memcpy(lane, p, static_cast<std::size_t>(n) * sizeof *p);
    return load<V>(lane);
}
template <class V>
VORN_INLINE void storeFirst(typename V::Element* p, V a, std::ptrdiff_t n) {
    typename V::Element lane[V::lanes];
    store(lane, a);
    std::memcpy(p, lane, static_cast<std::size_t>(n) * sizeof *p);
}

// The first n elements, a number known to the compiler, and zeros: one load, where loadFirst goes through memory.
template <class V, int n>
VORN_INLINE V loadFirst(const typename V::Element* p) {
    static_assert(n == 1 || n == 2 || n == 4);
    constexpr int bytes = n * static_cast<int>(sizeof(*p));
    static_assert(bytes == 2 || bytes == 4 || bytes == 8);
    __m128i x;
    if constexpr (bytes == 8) {
        x = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
    } else if constexpr (bytes == 4) {
        std::int32_t bits;
        std::memcpy(&bits, p, sizeof bits);
        x = _mm_cvtsi32_si128(bits);
    } else {
        std::uint16_t bits;
        std::memcpy(&bits, p, sizeof bits);
        x = _mm_cvtsi32_si128(bits);
    }
    if constexpr (std::is_same_v<typename V::Element, float>) {
        return V{_mm_castsi128_ps(x)};
    } else {
        return V{x};
    }
}

// Arithmetic.

VORN_INLINE f32x4 operator+(f32x4 a, f32x4 b) { return {_mm_add_ps(a.v, b.v)}; }
VORN_INLINE f32x4 operator-(f32x4 a, f32x4 b) { return {_mm_sub_ps(a.v, b.v)}; }
VORN_INLINE f32x4 operator*(f32x4 a, f32x4 b) { return {_mm_mul_ps(a.v, b.v)}; }
VORN_INLINE f32x4 operator/(f32x4 a, f32x4 b) { return {_mm_div_ps(a.v, b.v)}; }
VORN_INLINE f32x4 minOf(f32x4 a, f32x4 b) { return {_mm_min_ps(a.v, b.v)}; }
VORN_INLINE f32x4 maxOf(f32x4 a, f32x4 b) { return {_mm_max_ps(a.v, b.v)}; }
VORN_INLINE f32x4 sqrtOf(f32x4 a) { return {_mm_sqrt_ps(a.v)}; }
VORN_INLINE f32x4 operator&(f32x4 a, f32x4 b) { return {_mm_and_ps(a.v, b.v)}; }
VORN_INLINE f32x4 operator|(f32x4 a, f32x4 b) { return {_mm_or_ps(a.v, b.v)}; }
VORN_INLINE f32x4 operator^(f32x4 a, f32x4 b) { return {_mm_xor_ps(a.v, b.v)}; }
VORN_INLINE f32x4 absOf(f32x4 a) { return {_mm_andnot_ps(_mm_set1_ps(-0.0f), a.v)}; }
VORN_INLINE f32x4 operator-(f32x4 a) { return {_mm_xor_ps(_mm_set1_ps(-0.0f), a.v)}; }
VORN_INLINE f64x2 operator+(f64x2 a, f64x2 b) { return {_mm_add_pd(a.v, b.v)}; }
VORN_INLINE f64x2 operator-(f64x2 a, f64x2 b) { return {_mm_sub_pd(a.v, b.v)}; }
VORN_INLINE f64x2 operator*(f64x2 a, f64x2 b) { return {_mm_mul_pd(a.v, b.v)}; }
VORN_INLINE f64x2 operator/(f64x2 a, f64x2 b) { return {_mm_div_pd(a.v, b.v)}; }
VORN_INLINE f64x2 minOf(f64x2 a, f64x2 b) { return {_mm_min_pd(a.v, b.v)}; }
VORN_INLINE f64x2 maxOf(f64x2 a, f64x2 b) { return {_mm_max_pd(a.v, b.v)}; }
VORN_INLINE f64x2 sqrtOf(f64x2 a) { return {_mm_sqrt_pd(a.v)}; }
VORN_INLINE f64x2 operator&(f64x2 a, f64x2 b) { return {_mm_and_pd(a.v, b.v)}; }
VORN_INLINE f64x2 operator|(f64x2 a, f64x2 b) { return {_mm_or_pd(a.v, b.v)}; }
VORN_INLINE f64x2 operator^(f64x2 a, f64x2 b) { return {_mm_xor_pd(a.v, b.v)}; }
VORN_INLINE f64x2 absOf(f64x2 a) { return {_mm_andnot_pd(_mm_set1_pd(-0.0), a.v)}; }
VORN_INLINE f64x2 operator-(f64x2 a) { return {_mm_xor_pd(_mm_set1_pd(-0.0), a.v)}; }
template <IntegerLanes<16> V>
VORN_INLINE V operator&(V a, V b) {
    return {_mm_and_si128(a.v, b.v)};
}
template <IntegerLanes<16> V>
VORN_INLINE V operator|(V a, V b) {
    return {_mm_or_si128(a.v, b.v)};
}
template <IntegerLanes<16> V>
VORN_INLINE V operator^(V a, V b) {
    return {_mm_xor_si128(a.v, b.v)};
}
// Lanes of b where a has no bit.
template <IntegerLanes<16> V>
VORN_INLINE V andNot(V a, V b) {
    return {_mm_andnot_si128(a.v, b.v)};
}
VORN_INLINE i64x2 operator+(i64x2 a, i64x2 b) { return {_mm_add_epi64(a.v, b.v)}; }
VORN_INLINE i64x2 operator-(i64x2 a, i64x2 b) { return {_mm_sub_epi64(a.v, b.v)}; }
VORN_INLINE i32x4 operator+(i32x4 a, i32x4 b) { return {_mm_add_epi32(a.v, b.v)}; }
VORN_INLINE i32x4 operator-(i32x4 a, i32x4 b) { return {_mm_sub_epi32(a.v, b.v)}; }
VORN_INLINE i16x8 operator+(i16x8 a, i16x8 b) { return {_mm_add_epi16(a.v, b.v)}; }
VORN_INLINE i16x8 operator-(i16x8 a, i16x8 b) { return {_mm_sub_epi16(a.v, b.v)}; }
VORN_INLINE i8x16 operator+(i8x16 a, i8x16 b) { return {_mm_add_epi8(a.v, b.v)}; }
VORN_INLINE i8x16 operator-(i8x16 a, i8x16 b) { return {_mm_sub_epi8(a.v, b.v)}; }
VORN_INLINE i16x8 addSat(i16x8 a, i16x8 b) { return {_mm_adds_epi16(a.v, b.v)}; }
VORN_INLINE i16x8 subSat(i16x8 a, i16x8 b) { return {_mm_subs_epi16(a.v, b.v)}; }
VORN_INLINE i16x8 minOf(i16x8 a, i16x8 b) { return {_mm_min_epi16(a.v, b.v)}; }
VORN_INLINE i16x8 maxOf(i16x8 a, i16x8 b) { return {_mm_max_epi16(a.v, b.v)}; }
// Low and high halves of the 16 by 16 bit products.
VORN_INLINE i16x8 mulLow(i16x8 a, i16x8 b) { return {_mm_mullo_epi16(a.v, b.v)}; }
VORN_INLINE i16x8 mulHigh(i16x8 a, i16x8 b) { return {_mm_mulhi_epi16(a.v, b.v)}; }
// Products of 16-bit lanes, neighbours added in 32 bits (two squares of -32768 wrap).
VORN_INLINE i32x4 mulAddPairs(i16x8 a, i16x8 b) { return {_mm_madd_epi16(a.v, b.v)}; }
// The exact products of the lower and of the upper half of the lanes.
VORN_INLINE i32x4 productsLow(i16x8 a, i16x8 b) {
    return {_mm_unpacklo_epi16(_mm_mullo_epi16(a.v, b.v), _mm_mulhi_epi16(a.v, b.v))};
}
VORN_INLINE i32x4 productsHigh(i16x8 a, i16x8 b) {
    return {_mm_unpackhi_epi16(_mm_mullo_epi16(a.v, b.v), _mm_mulhi_epi16(a.v, b.v))};
}

// Exact integer arithmetic: saturation, products and sums that are wider than their operands.

VORN_INLINE i8x16 addSatUnsigned(i8x16 a, i8x16 b) { return {_mm_adds_epu8(a.v, b.v)}; }
VORN_INLINE i8x16 subSatUnsigned(i8x16 a, i8x16 b) { return {_mm_subs_epu8(a.v, b.v)}; }
VORN_INLINE i16x8 addSatUnsigned(i16x8 a, i16x8 b) { return {_mm_adds_epu16(a.v, b.v)}; }
VORN_INLINE i16x8 subSatUnsigned(i16x8 a, i16x8 b) { return {_mm_subs_epu16(a.v, b.v)}; }
VORN_INLINE i16x8 mulHighUnsigned(i16x8 a, i16x8 b) { return {_mm_mulhi_epu16(a.v, b.v)}; }
// The signed products of the even 32-bit lanes.
VORN_INLINE i64x2 mulEven(i32x4 a, i32x4 b) {
    const __m128i above =
        _mm_add_epi32(_mm_and_si128(_mm_srai_epi32(a.v, 31), b.v), _mm_and_si128(_mm_srai_epi32(b.v, 31), a.v));
    return {_mm_sub_epi64(_mm_mul_epu32(a.v, b.v), _mm_slli_epi64(above, 32))};
}
// A count at or above 64 gives the sign fill.
VORN_INLINE i64x2 shiftRight(i64x2 a, int count) {
    const __m128i sign = _mm_shuffle_epi32(_mm_srai_epi32(a.v, 31), 0xF5);
    return {_mm_xor_si128(_mm_srl_epi64(_mm_xor_si128(a.v, sign), _mm_cvtsi32_si128(count)), sign)};
}
// Clamps to the range of 32 bits; the lanes stay 64 bits wide.
VORN_INLINE i64x2 saturateTo32(i64x2 a) {
    const __m128i high = _mm_shuffle_epi32(a.v, 0xF5), low = _mm_shuffle_epi32(a.v, 0xA0);
    const __m128i fits = _mm_cmpeq_epi32(high, _mm_srai_epi32(low, 31));
    const __m128i limit = _mm_xor_si128(_mm_srai_epi32(high, 31), _mm_set_epi32(0, 0x7FFFFFFF, 0, 0x7FFFFFFF));
    return {_mm_or_si128(_mm_and_si128(fits, a.v), _mm_andnot_si128(fits, limit))};
}
// One element a 64-bit lane, its value kept.
template <class V>
V loadInto64(const std::int32_t* p);
template <>
VORN_INLINE i64x2 loadInto64<i64x2>(const std::int32_t* p) {
    const __m128i a = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
    return {_mm_unpacklo_epi32(a, _mm_srai_epi32(a, 31))};
}

// Two registers that hold what one held in narrower lanes. split and zip deal the lanes out in an order that is the
// build's own; join takes them back, and inOrder brings the first half of the elements into low, the second into high.
template <class V>
struct Halves {
    V low, high;
};
VORN_INLINE Halves<i16x8> splitUnsigned(i8x16 a) {
    const __m128i zero = _mm_setzero_si128();
    return {{_mm_unpacklo_epi8(a.v, zero)}, {_mm_unpackhi_epi8(a.v, zero)}};
}
// 32-bit lanes from their lower and upper 16 bits.
VORN_INLINE Halves<i32x4> zip(i16x8 lower, i16x8 upper) {
    return {{_mm_unpacklo_epi16(lower.v, upper.v)}, {_mm_unpackhi_epi16(lower.v, upper.v)}};
}
// Lanes of even and odd in turn.
VORN_INLINE Halves<i32x4> zip(i32x4 even, i32x4 odd) {
    return {{_mm_unpacklo_epi32(even.v, odd.v)}, {_mm_unpackhi_epi32(even.v, odd.v)}};
}
VORN_INLINE i16x8 joinSat(Halves<i32x4> a) { return {_mm_packs_epi32(a.low.v, a.high.v)}; }
VORN_INLINE i8x16 joinSatUnsigned(Halves<i16x8> a) { return {_mm_packus_epi16(a.low.v, a.high.v)}; }
VORN_INLINE Halves<i32x4> inOrder(Halves<i32x4> a) { return a; }
VORN_INLINE Halves<i16x8> inOrder(Halves<i16x8> a) { return a; }

// Neighbouring lanes, as complex numbers hold them: the even ones twice, the odd ones twice, the two exchanged; addSub
// subtracts in the even lanes and adds in the odd ones.

// What only moves lanes within groups of 16 bytes is done by integer shuffles where there is one: processors have more
// units for them than for those of floats.
VORN_INLINE f32x4 dupEven(f32x4 a) { return {_mm_moveldup_ps(a.v)}; }
VORN_INLINE f32x4 dupOdd(f32x4 a) { return {_mm_movehdup_ps(a.v)}; }
VORN_INLINE f32x4 swapPairs(f32x4 a) { return {_mm_castsi128_ps(_mm_shuffle_epi32(_mm_castps_si128(a.v), 0xB1))}; }
VORN_INLINE f32x4 addSub(f32x4 a, f32x4 b) { return {_mm_addsub_ps(a.v, b.v)}; }
VORN_INLINE f64x2 dupEven(f64x2 a) { return {_mm_movedup_pd(a.v)}; }
VORN_INLINE f64x2 dupOdd(f64x2 a) { return {_mm_castsi128_pd(_mm_shuffle_epi32(_mm_castpd_si128(a.v), 0xEE))}; }
VORN_INLINE f64x2 swapPairs(f64x2 a) { return {_mm_castsi128_pd(_mm_shuffle_epi32(_mm_castpd_si128(a.v), 0x4E))}; }
VORN_INLINE f64x2 addSub(f64x2 a, f64x2 b) { return {_mm_addsub_pd(a.v, b.v)}; }

// The first, and the second, halves of the 16-byte groups of a and b, lane by lane in turn.
VORN_INLINE f32x4 interleaveLow(f32x4 a, f32x4 b) {
    return {_mm_castsi128_ps(_mm_unpacklo_epi32(_mm_castps_si128(a.v), _mm_castps_si128(b.v)))};
}
VORN_INLINE f32x4 interleaveHigh(f32x4 a, f32x4 b) {
    return {_mm_castsi128_ps(_mm_unpackhi_epi32(_mm_castps_si128(a.v), _mm_castps_si128(b.v)))};
}
VORN_INLINE f64x2 interleaveLow(f64x2 a, f64x2 b) {
    return {_mm_castsi128_pd(_mm_unpacklo_epi64(_mm_castpd_si128(a.v), _mm_castpd_si128(b.v)))};
}
VORN_INLINE f64x2 interleaveHigh(f64x2 a, f64x2 b) {
    return {_mm_castsi128_pd(_mm_unpackhi_epi64(_mm_castpd_si128(a.v), _mm_castpd_si128(b.v)))};
}

// Shifts. A count at or above the width gives 0, in an arithmetic shift the sign fill.

VORN_INLINE i64x2 shiftLeft(i64x2 a, int count) { return {_mm_sll_epi64(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i64x2 shiftRightLogical(i64x2 a, int count) { return {_mm_srl_epi64(a.v, _mm_cvtsi32_si128(count))}; }
template <int count>
VORN_INLINE i64x2 shiftLeft(i64x2 a) {
    return {_mm_slli_epi64(a.v, count)};
}
template <int count>
VORN_INLINE i64x2 shiftRightLogical(i64x2 a) {
    return {_mm_srli_epi64(a.v, count)};
}
VORN_INLINE i32x4 shiftLeft(i32x4 a, int count) { return {_mm_sll_epi32(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i32x4 shiftRightLogical(i32x4 a, int count) { return {_mm_srl_epi32(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i32x4 shiftRight(i32x4 a, int count) { return {_mm_sra_epi32(a.v, _mm_cvtsi32_si128(count))}; }
template <int count>
VORN_INLINE i32x4 shiftLeft(i32x4 a) {
    return {_mm_slli_epi32(a.v, count)};
}
template <int count>
VORN_INLINE i32x4 shiftRightLogical(i32x4 a) {
    return {_mm_srli_epi32(a.v, count)};
}
template <int count>
VORN_INLINE i32x4 shiftRight(i32x4 a) {
    return {_mm_srai_epi32(a.v, count)};
}
VORN_INLINE i16x8 shiftLeft(i16x8 a, int count) { return {_mm_sll_epi16(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i16x8 shiftRightLogical(i16x8 a, int count) { return {_mm_srl_epi16(a.v, _mm_cvtsi32_si128(count))}; }
VORN_INLINE i16x8 shiftRight(i16x8 a, int count) { return {_mm_sra_epi16(a.v, _mm_cvtsi32_si128(count))}; }
template <int count>
VORN_INLINE i16x8 shiftLeft(i16x8 a) {
    return {_mm_slli_epi16(a.v, count)};
}
template <int count>
VORN_INLINE i16x8 shiftRightLogical(i16x8 a) {
    return {_mm_srli_epi16(a.v, count)};
}
template <int count>
VORN_INLINE i16x8 shiftRight(i16x8 a) {
    return {_mm_srai_epi16(a.v, count)};
}

// Comparisons and selection.

VORN_INLINE mask32x4 operator<(f32x4 a, f32x4 b) { return {_mm_cmplt_ps(a.v, b.v)}; }
VORN_INLINE mask32x4 operator<=(f32x4 a, f32x4 b) { return {_mm_cmple_ps(a.v, b.v)}; }
VORN_INLINE mask32x4 operator>(f32x4 a, f32x4 b) { return {_mm_cmpgt_ps(a.v, b.v)}; }
VORN_INLINE mask32x4 operator>=(f32x4 a, f32x4 b) { return {_mm_cmpge_ps(a.v, b.v)}; }
VORN_INLINE mask32x4 operator==(f32x4 a, f32x4 b) { return {_mm_cmpeq_ps(a.v, b.v)}; }
VORN_INLINE mask32x4 operator!=(f32x4 a, f32x4 b) { return {_mm_cmpneq_ps(a.v, b.v)}; }
VORN_INLINE mask32x4 unordered(f32x4 a, f32x4 b) { return {_mm_cmpunord_ps(a.v, b.v)}; }
VORN_INLINE f32x4 select(mask32x4 m, f32x4 a, f32x4 b) {
    return {_mm_or_ps(_mm_and_ps(m.v, a.v), _mm_andnot_ps(m.v, b.v))};
}
VORN_INLINE mask64x2 operator<(f64x2 a, f64x2 b) { return {_mm_cmplt_pd(a.v, b.v)}; }
VORN_INLINE mask64x2 operator<=(f64x2 a, f64x2 b) { return {_mm_cmple_pd(a.v, b.v)}; }
VORN_INLINE mask64x2 operator>(f64x2 a, f64x2 b) { return {_mm_cmpgt_pd(a.v, b.v)}; }
VORN_INLINE mask64x2 operator>=(f64x2 a, f64x2 b) { return {_mm_cmpge_pd(a.v, b.v)}; }
VORN_INLINE mask64x2 operator==(f64x2 a, f64x2 b) { return {_mm_cmpeq_pd(a.v, b.v)}; }
VORN_INLINE mask64x2 operator!=(f64x2 a, f64x2 b) { return {_mm_cmpneq_pd(a.v, b.v)}; }
VORN_INLINE mask64x2 unordered(f64x2 a, f64x2 b) { return {_mm_cmpunord_pd(a.v, b.v)}; }
VORN_INLINE f64x2 select(mask64x2 m, f64x2 a, f64x2 b) {
    return {_mm_or_pd(_mm_and_pd(m.v, a.v), _mm_andnot_pd(m.v, b.v))};
}
VORN_INLINE mask32x4 operator>(i32x4 a, i32x4 b) { return {_mm_castsi128_ps(_mm_cmpgt_epi32(a.v, b.v))}; }
VORN_INLINE mask32x4 operator==(i32x4 a, i32x4 b) { return {_mm_castsi128_ps(_mm_cmpeq_epi32(a.v, b.v))}; }
VORN_INLINE i32x4 select(mask32x4 m, i32x4 a, i32x4 b) {
    return {_mm_or_si128(_mm_and_si128(_mm_castps_si128(m.v), a.v), _mm_andnot_si128(_mm_castps_si128(m.v), b.v))};
}
VORN_INLINE mask16x8 operator>(i16x8 a, i16x8 b) { return {_mm_cmpgt_epi16(a.v, b.v)}; }
VORN_INLINE mask16x8 operator==(i16x8 a, i16x8 b) { return {_mm_cmpeq_epi16(a.v, b.v)}; }
VORN_INLINE i16x8 select(mask16x8 m, i16x8 a, i16x8 b) {
    return {_mm_or_si128(_mm_and_si128(m.v, a.v), _mm_andnot_si128(m.v, b.v))};
}
VORN_INLINE mask32x4 operator&(mask32x4 a, mask32x4 b) { return {_mm_and_ps(a.v, b.v)}; }
VORN_INLINE mask32x4 operator|(mask32x4 a, mask32x4 b) { return {_mm_or_ps(a.v, b.v)}; }
VORN_INLINE mask32x4 operator!(mask32x4 a) { return {_mm_xor_ps(a.v, _mm_castsi128_ps(_mm_set1_epi32(-1)))}; }
VORN_INLINE bool any(mask32x4 a) { return _mm_movemask_ps(a.v) != 0; }
VORN_INLINE bool all(mask32x4 a) { return _mm_movemask_ps(a.v) == 15; }
// Bit i is lane i.
VORN_INLINE unsigned laneBits(mask32x4 a) { return static_cast<unsigned>(_mm_movemask_ps(a.v)); }
VORN_INLINE mask64x2 operator&(mask64x2 a, mask64x2 b) { return {_mm_and_pd(a.v, b.v)}; }
VORN_INLINE mask64x2 operator|(mask64x2 a, mask64x2 b) { return {_mm_or_pd(a.v, b.v)}; }
VORN_INLINE mask64x2 operator!(mask64x2 a) { return {_mm_xor_pd(a.v, _mm_castsi128_pd(_mm_set1_epi32(-1)))}; }
VORN_INLINE bool any(mask64x2 a) { return _mm_movemask_pd(a.v) != 0; }
VORN_INLINE bool all(mask64x2 a) { return _mm_movemask_pd(a.v) == 3; }
// Bit i is lane i.
VORN_INLINE unsigned laneBits(mask64x2 a) { return static_cast<unsigned>(_mm_movemask_pd(a.v)); }
VORN_INLINE mask16x8 operator&(mask16x8 a, mask16x8 b) { return {_mm_and_si128(a.v, b.v)}; }
VORN_INLINE mask16x8 operator|(mask16x8 a, mask16x8 b) { return {_mm_or_si128(a.v, b.v)}; }
VORN_INLINE mask16x8 operator!(mask16x8 a) { return {_mm_xor_si128(a.v, _mm_set1_epi32(-1))}; }
VORN_INLINE bool any(mask16x8 a) { return _mm_movemask_epi8(a.v) != 0; }

// Conversions.

VORN_INLINE f32x4 toFloat(i32x4 a) { return {_mm_cvtepi32_ps(a.v)}; }
// The same bits as lanes of half or double the width.
VORN_INLINE i16x8 shortsOf(i32x4 a) { return {a.v}; }
VORN_INLINE i32x4 intsOf(i16x8 a) { return {a.v}; }
VORN_INLINE i32x4 roundToInt(f32x4 a) { return {_mm_cvtps_epi32(a.v)}; }
VORN_INLINE i32x4 truncToInt(f32x4 a) { return {_mm_cvttps_epi32(a.v)}; }
VORN_INLINE i32x4 bitsOf(f32x4 a) { return {_mm_castps_si128(a.v)}; }
VORN_INLINE i64x2 bitsOf(f64x2 a) { return {_mm_castpd_si128(a.v)}; }
VORN_INLINE f32x4 floatOf(i32x4 bits) { return {_mm_castsi128_ps(bits.v)}; }
VORN_INLINE f64x2 floatOf(i64x2 bits) { return {_mm_castsi128_pd(bits.v)}; }
// The lower and the upper half of the lanes, widened or narrowed.
VORN_INLINE f64x2 widenLow(f32x4 a) { return {_mm_cvtps_pd(a.v)}; }
VORN_INLINE f64x2 widenHigh(f32x4 a) { return {_mm_cvtps_pd(_mm_movehl_ps(a.v, a.v))}; }
VORN_INLINE f32x4 narrow(f64x2 low, f64x2 high) { return {_mm_movelh_ps(_mm_cvtpd_ps(low.v), _mm_cvtpd_ps(high.v))}; }
VORN_INLINE i32x4 widenLow(i16x8 a) { return {_mm_srai_epi32(_mm_unpacklo_epi16(a.v, a.v), 16)}; }
VORN_INLINE i32x4 widenHigh(i16x8 a) { return {_mm_srai_epi32(_mm_unpackhi_epi16(a.v, a.v), 16)}; }
// Saturates to 16 bits.
VORN_INLINE i16x8 narrowSat(i32x4 low, i32x4 high) { return {_mm_packs_epi32(low.v, high.v)}; }
VORN_INLINE f64x2 toDoubleLow(i32x4 a) { return {_mm_cvtepi32_pd(a.v)}; }
VORN_INLINE f64x2 toDoubleHigh(i32x4 a) { return {_mm_cvtepi32_pd(_mm_unpackhi_epi64(a.v, a.v))}; }
VORN_INLINE i32x4 roundToInt(f64x2 low, f64x2 high) {
    return {_mm_unpacklo_epi64(_mm_cvtpd_epi32(low.v), _mm_cvtpd_epi32(high.v))};
}
VORN_INLINE i32x4 truncToInt(f64x2 low, f64x2 high) {
    return {_mm_unpacklo_epi64(_mm_cvttpd_epi32(low.v), _mm_cvttpd_epi32(high.v))};
}

// Order of the lanes.

// The last lane first.
VORN_INLINE i32x4 reverse(i32x4 a) { return {_mm_shuffle_epi32(a.v, 0x1B)}; }
VORN_INLINE i64x2 reverse(i64x2 a) { return {_mm_shuffle_epi32(a.v, 0x4E)}; }
// The last two lanes first; the lanes of a pair keep their order.
VORN_INLINE i64x2 reversePairs(i64x2 a) { return a; }
// Two values in turn.
template <class V>
V splatPair(std::int64_t even, std::int64_t odd);
template <>
VORN_INLINE i64x2 splatPair<i64x2>(std::int64_t even, std::int64_t odd) {
    return {_mm_set_epi64x(odd, even)};
}

// Writes value count times; the processor's string store, which is at its best on long runs.
VORN_INLINE void fillString(std::uint64_t* p, std::uint64_t value, std::ptrdiff_t count) {
    __asm__ volatile("rep stosq" : "+D"(p), "+c"(count) : "a"(value) : "memory");
}
// Widening loads: one element a lane, its value kept.

VORN_INLINE __m128i loadFourBytes(const void* p) {
    int bytes;
    std::memcpy(&bytes, p, sizeof bytes);
    return _mm_cvtsi32_si128(bytes);
}
VORN_INLINE __m128i loadEightBytes(const void* p) { return _mm_loadl_epi64(static_cast<const __m128i*>(p)); }
template <class V, class Narrow>
V loadWidened(const Narrow* p);
template <>
VORN_INLINE i16x8 loadWidened<i16x8>(const std::int8_t* p) {
    const __m128i a = loadEightBytes(p);
    return {_mm_srai_epi16(_mm_unpacklo_epi8(a, a), 8)};
}
template <>
VORN_INLINE i32x4 loadWidened<i32x4>(const std::int8_t* p) {
    const __m128i a = loadFourBytes(p), pairs = _mm_unpacklo_epi8(a, a);
    return {_mm_srai_epi32(_mm_unpacklo_epi16(pairs, pairs), 24)};
}
template <>
VORN_INLINE i32x4 loadWidened<i32x4>(const std::uint8_t* p) {
    const __m128i zero = _mm_setzero_si128();
    return {_mm_unpacklo_epi16(_mm_unpacklo_epi8(loadFourBytes(p), zero), zero)};
}
template <>
VORN_INLINE i32x4 loadWidened<i32x4>(const std::int16_t* p) {
    const __m128i a = loadEightBytes(p);
    return {_mm_srai_epi32(_mm_unpacklo_epi16(a, a), 16)};
}
template <>
VORN_INLINE i32x4 loadWidened<i32x4>(const std::uint16_t* p) {
    return {_mm_unpacklo_epi16(loadEightBytes(p), _mm_setzero_si128())};
}
template <>
VORN_INLINE f64x2 loadWidened<f64x2>(const std::int16_t* p) {
    const __m128i a = loadFourBytes(p);
    return {_mm_cvtepi32_pd(_mm_srai_epi32(_mm_unpacklo_epi16(a, a), 16))};
}
template <>
VORN_INLINE f64x2 loadWidened<f64x2>(const std::int32_t* p) {
    return {_mm_cvtepi32_pd(loadEightBytes(p))};
}
template <>
VORN_INLINE f64x2 loadWidened<f64x2>(const float* p) {
    return {_mm_cvtps_pd(_mm_castsi128_ps(loadEightBytes(p)))};
}

// Two vectors from one run of narrow elements. Where widening unpacks a register, one load serves both.
template <class V>
struct Two {
    V low, high;
};
template <class V, class Narrow>
VORN_INLINE Two<V> loadWidenedTwo(const Narrow* p) {
    return {loadWidened<V>(p), loadWidened<V>(p + V::lanes)};
}
VORN_INLINE Two<i32x4> widenBoth(__m128i a) {
    const __m128i sign = _mm_cmpgt_epi16(_mm_setzero_si128(), a);
    return {{_mm_unpacklo_epi16(a, sign)}, {_mm_unpackhi_epi16(a, sign)}};
}
template <>
VORN_INLINE Two<i16x8> loadWidenedTwo<i16x8>(const std::int8_t* p) {
    const __m128i a = load<i8x16>(p).v, sign = _mm_cmpgt_epi8(_mm_setzero_si128(), a);
    return {{_mm_unpacklo_epi8(a, sign)}, {_mm_unpackhi_epi8(a, sign)}};
}
template <>
VORN_INLINE Two<i32x4> loadWidenedTwo<i32x4>(const std::int8_t* p) {
    return widenBoth(loadWidened<i16x8>(p).v);
}
template <>
VORN_INLINE Two<i32x4> loadWidenedTwo<i32x4>(const std::uint8_t* p) {
    const __m128i zero = _mm_setzero_si128(), a = _mm_unpacklo_epi8(loadEightBytes(p), zero);
    return {{_mm_unpacklo_epi16(a, zero)}, {_mm_unpackhi_epi16(a, zero)}};
}
template <>
VORN_INLINE Two<i32x4> loadWidenedTwo<i32x4>(const std::int16_t* p) {
    return widenBoth(load<i16x8>(p).v);
}
template <>
VORN_INLINE Two<i32x4> loadWidenedTwo<i32x4>(const std::uint16_t* p) {
    const __m128i zero = _mm_setzero_si128(), a = load<i16x8>(reinterpret_cast<const std::int16_t*>(p)).v;
    return {{_mm_unpacklo_epi16(a, zero)}, {_mm_unpackhi_epi16(a, zero)}};
}
template <>
VORN_INLINE Two<f64x2> loadWidenedTwo<f64x2>(const std::int16_t* p) {
    const i32x4 a = loadWidened<i32x4>(p);
    return {toDoubleLow(a), toDoubleHigh(a)};
}

// Narrowing of 32-bit lanes, the first operand lowest: saturated to signed and to unsigned 8 bits; to unsigned 16 bits
// where every lane is within 0 to 65535 already.
VORN_INLINE i8x16 narrowSat8(i32x4 a, i32x4 b, i32x4 c, i32x4 d) {
    return {_mm_packs_epi16(_mm_packs_epi32(a.v, b.v), _mm_packs_epi32(c.v, d.v))};
}
VORN_INLINE i8x16 narrowSatU8(i32x4 a, i32x4 b, i32x4 c, i32x4 d) {
    return {_mm_packus_epi16(_mm_packs_epi32(a.v, b.v), _mm_packs_epi32(c.v, d.v))};
}
VORN_INLINE i16x8 narrowU16(i32x4 low, i32x4 high) {
    const __m128i middle = _mm_set1_epi32(32768);
    return {_mm_xor_si128(_mm_packs_epi32(_mm_sub_epi32(low.v, middle), _mm_sub_epi32(high.v, middle)),
                          _mm_set1_epi16(-32768))};
}
// Rounds each lane to single in the current mode.
VORN_INLINE void storeNarrowed(float* p, f64x2 a) { _mm_storel_pi(reinterpret_cast<__m64*>(p), _mm_cvtpd_ps(a.v)); }
VORN_INLINE i32x4 maxOf(i32x4 a, i32x4 b) { return select(a > b, a, b); }
VORN_INLINE i32x4 minOf(i32x4 a, i32x4 b) { return select(a > b, b, a); }
// Absolute values; -2147483648 gives 2147483647.
VORN_INLINE i32x4 absSat(i32x4 a) {
    const i32x4 sign = shiftRight<31>(a), wrapped = (a ^ sign) - sign;
    return wrapped + shiftRight<31>(wrapped);
}

// Unsigned bytes, for what depends on their order.

template <>
VORN_INLINE u8x16 splat<u8x16>(std::uint8_t x) {
    return {_mm_set1_epi8(static_cast<char>(x))};
}
VORN_INLINE u8x16 minOf(u8x16 a, u8x16 b) { return {_mm_min_epu8(a.v, b.v)}; }
VORN_INLINE u8x16 maxOf(u8x16 a, u8x16 b) { return {_mm_max_epu8(a.v, b.v)}; }

// Parts and sums of the lanes.

VORN_INLINE float firstLane(f32x4 a) { return _mm_cvtss_f32(a.v); }
VORN_INLINE double firstLane(f64x2 a) { return _mm_cvtsd_f64(a.v); }
VORN_INLINE std::int64_t firstLane(i64x2 a) { return _mm_cvtsi128_si64(a.v); }
VORN_INLINE std::int32_t firstLane(i32x4 a) { return _mm_cvtsi128_si32(a.v); }
// (lane 0 + lane 1) + (lane 2 + lane 3)
VORN_INLINE float sumNeighbours(f32x4 a) {
    const __m128 pairs = _mm_hadd_ps(a.v, a.v);
    return _mm_cvtss_f32(_mm_add_ss(pairs, _mm_shuffle_ps(pairs, pairs, 1)));
}
// (lane 0 + lane 2) + (lane 1 + lane 3)
VORN_INLINE float sumHalves(f32x4 a) {
    const __m128 pairs = _mm_add_ps(a.v, _mm_movehl_ps(a.v, a.v));
    return _mm_cvtss_f32(_mm_add_ss(pairs, _mm_shuffle_ps(pairs, pairs, 1)));
}
// Wraps.
VORN_INLINE std::int32_t sumLanes(i32x4 a) {
    const __m128i halves = _mm_add_epi32(a.v, _mm_unpackhi_epi64(a.v, a.v));
    return _mm_cvtsi128_si32(_mm_add_epi32(halves, _mm_shuffle_epi32(halves, 0x55)));
}
VORN_INLINE double sumLanes(f64x2 a) { return _mm_cvtsd_f64(_mm_add_sd(a.v, _mm_unpackhi_pd(a.v, a.v))); }
// The upper half of the lanes in the place of the lower one; the upper half stays.
VORN_INLINE f32x4 upperToLower(f32x4 a) { return {_mm_movehl_ps(a.v, a.v)}; }
VORN_INLINE f64x2 upperToLower(f64x2 a) { return {_mm_unpackhi_pd(a.v, a.v)}; }
// a with x in lane 0.
VORN_INLINE f32x4 withFirst(f32x4 a, float x) { return {_mm_move_ss(a.v, _mm_set_ss(x))}; }
VORN_INLINE f64x2 withFirst(f64x2 a, double x) { return {_mm_move_sd(a.v, _mm_set_sd(x))}; }
// Lane 1 in all lanes.
VORN_INLINE f32x4 splatSecond(f32x4 a) { return {_mm_shuffle_ps(a.v, a.v, 0x55)}; }
// The sum of each row's lanes, (0 + 1) + (2 + 3), one row a lane.
VORN_INLINE f32x4 sumNeighbours(f32x4 a, f32x4 b, f32x4 c, f32x4 d) {
    return {_mm_hadd_ps(_mm_hadd_ps(a.v, b.v), _mm_hadd_ps(c.v, d.v))};
}

// Pairs, columns, order of the lanes.

// Splits 2 x lanes neighbouring elements into the first and the second of each pair; storePairs puts them back.
VORN_INLINE void loadPairs(const float* p, f32x4& first, f32x4& second) {
    const __m128 low = _mm_loadu_ps(p), high = _mm_loadu_ps(p + 4);
    first = {_mm_shuffle_ps(low, high, _MM_SHUFFLE(2, 0, 2, 0))};
    second = {_mm_shuffle_ps(low, high, _MM_SHUFFLE(3, 1, 3, 1))};
}
VORN_INLINE void storePairs(float* p, f32x4 first, f32x4 second) {
    store(p, interleaveLow(first, second));
    store(p + 4, interleaveHigh(first, second));
}
VORN_INLINE void loadPairs(const double* p, f64x2& first, f64x2& second) {
    const f64x2 low = load<f64x2>(p), high = load<f64x2>(p + 2);
    first = interleaveLow(low, high);
    second = interleaveHigh(low, high);
}
VORN_INLINE void storePairs(double* p, f64x2 first, f64x2 second) {
    store(p, interleaveLow(first, second));
    store(p + 2, interleaveHigh(first, second));
}

VORN_INLINE void loadPairs(const std::int32_t* p, i32x4& first, i32x4& second) {
    f32x4 even, odd;
    loadPairs(reinterpret_cast<const float*>(p), even, odd);
    first = bitsOf(even);
    second = bitsOf(odd);
}

// The last lane first.
VORN_INLINE f32x4 reverse(f32x4 a) { return {_mm_shuffle_ps(a.v, a.v, _MM_SHUFFLE(0, 1, 2, 3))}; }
VORN_INLINE f64x2 reverse(f64x2 a) { return {_mm_shuffle_pd(a.v, a.v, 1)}; }

}  // namespace vorn
