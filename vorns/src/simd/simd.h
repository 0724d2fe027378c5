// The SIMD vocabulary: small value types with named lanes. Nobody else uses intrinsics.
//
// Types
//   f32x4 f64x2 i64x2 i32x4 i16x8 i8x16 u8x16   fixed: the same lanes in every build, for sums whose order is promised
//   f32xN f64xN i64xN i32xN i16xN i8xN u8xN     wide: the register of the build, for element-wise work, so that one
//                                               source is the kernel of every build; Wide<T> is the one with elements T
//   mask32x4 mask64x2 mask16x8 ...              what comparisons give: one yes or no a lane of so many bits
//   Two<V>                                      two vectors, low and high, with the elements in their order
//   Halves<V>                                   two vectors, low and high, with the elements in the build's own order
//   V::lanes, V::Element                        how many elements, and of which type
// N is four singles in the baseline, eight with AVX2, sixteen with AVX-512.
//
// What holds for every operation: it means the same in every build, lane by lane; there is no multiply-add and no
// estimate. Integers wrap unless the name says otherwise.
//
// Memory, at any address
//   load<V>(p), store(p, a)                     a whole register
//   loadFirst<V>(p, n), storeFirst(p, a, n)     n elements and no more, 0 <= n <= lanes; the other lanes load as 0
//   loadFirst<V, n>(p)                          the same for a number known to the compiler, in fixed types
//   storeStream(p, a), storeFence()             past the cache, p on the register's own size; the fence closes a run
//   loadWidened<V>(p), loadWidenedTwo<V>(p)     one narrower element a lane, its value kept; a run of two registers
//   loadInto64<V>(p)                            the same from 32-bit to 64-bit integers
//   storeNarrowed(p, a)                         doubles as singles, rounded in the current mode
//   loadPairs(p, first, second), storePairs     2 x lanes neighbours as the firsts and the seconds of their pairs
//   fillString(p, value, count)                 the processor's string store, for long runs
// Constants
//   splat<V>(x), splatPair<V>(even, odd)        x in every lane; two values in turn
// Arithmetic
//   + - * / -a, sqrtOf, absOf                   floats, each rounded once in the current mode; absOf and -a touch the
//                                               sign bit alone. Integers have + and -
//   minOf(a, b), maxOf(a, b)                    as the processor does it: where the lanes are equal or either is not a
//                                               number, b. Also for 32-bit, 16-bit and unsigned 8-bit integers
//   addSub(a, b)                                a - b in the even lanes, a + b in the odd ones
//   addSat, subSat, absSat                      saturated; signed 16 bits, and absSat 32 bits
//   addSatUnsigned, subSatUnsigned              saturated; the lanes read as unsigned 8 or 16 bits
//   mulLow, mulHigh, mulHighUnsigned            the lower, the upper half of the products of 16-bit lanes
//   productsLow, productsHigh                   the whole products of the lower, the upper half of the lanes
//   mulAddPairs(a, b)                           products of 16-bit lanes, neighbours added in 32 bits
//   mulEven(a, b)                               64-bit products of the even 32-bit lanes
//   saturateTo32(a)                             64-bit lanes clamped to the range of 32 bits
// Bits
//   & | ^, andNot(a, b)                         andNot: the bits of b that a has not
//   shiftLeft, shiftRight, shiftRightLogical    by one count, f(a, count) or f<count>(a); from the lane's width on 0
//                                               or the sign. 64-bit lanes have no shiftRight<count>
// Comparison
//   < <= > >= == !=, unordered(a, b)            masks; != and unordered hold where either is not a number. Integers of
//                                               32 and 16 bits have > and ==
//   select(m, a, b)                             a where m holds, else b
//   & | ! of masks, any(m), all(m), laneBits(m) bit i of laneBits is lane i
// Conversion
//   bitsOf(a), floatOf(a)                       floats as integers of their width and back, the same bits
//   shortsOf(a), intsOf(a)                      32-bit as 16-bit lanes and back, the same bits
//   toFloat, toDoubleLow, toDoubleHigh          from 32-bit integers; of all lanes, of the lower, of the upper half
//   roundToInt, truncToInt                      to 32-bit integers, in the current mode or towards zero; out of range
//                                               -2147483648. From f32, or from two f64
//   widenLow(a), widenHigh(a)                   the lower, the upper half of the lanes at twice the width
//   narrow(low, high), narrowSat(low, high)     two doubles to single, in the current mode; 32-bit to 16-bit integers
//   narrowSat8, narrowSatU8 (a, b, c, d)        32-bit integers to signed or unsigned 8 bits, saturated
//   narrowU16(low, high)                        32-bit integers that are within 0 to 65535 to unsigned 16 bits
// Halves<V>, which costs fewer shuffles than Two<V>
//   splitUnsigned(a), zip(lower, upper)         unsigned 8-bit lanes at 16 bits; 32-bit lanes from their two halves of
//                                               16 bits, or the 32-bit lanes of two vectors in turn
//   joinSat(h), joinSatUnsigned(h)              back again: 32 to 16 bits, 16 to unsigned 8 bits
//   inOrder(h)                                  the elements in their order, as in Two<V>
// Lanes
//   firstLane(a), withFirst(a, x), splatSecond(a)
//   dupEven(a), dupOdd(a), swapPairs(a)         of a pair of neighbours: the first twice, the second twice, exchanged
//   interleaveLow, interleaveHigh (a, b)        the first, the second halves of the 16-byte groups, lane by lane in
//                                               turn (of 64-byte registers only doubles, in complex.h)
//   reverse(a), reversePairs(a)                 the last lane first; the last two first, each pair in its order
//   upperToLower(a)                             the upper half in the place of the lower one
//   lowHalf(a), highHalf(a), join(low, high)    registers of half the size (where there are such)
//   sumNeighbours(a), sumHalves(a), sumLanes(a) (0 + 1) + (2 + 3); (0 + 2) + (1 + 3); 0 + 1, or integers in any order
//   lookup<V>(four, index)                      of a table of four, the entry that each lane's index names (not in the
//                                               baseline: ask with `requires`)
//
// What few families need stands in small headers of its own: part.h and block.h (the ends of vectors), short_block.h
// (moves and fills of a few bytes), fold.h (the lanes of a register joined), exact_sum.h and count.h (sums of products
// and of yes and no), four.h and quad.h (four doubles in every build), tile.h (four rows at once), groups.h (runs of 16
// bytes), pairs.h and complex.h (complex numbers), rounded_shift.h (shifts that round or saturate), unsigned.h (the
// order of integers without a sign), half.h (halves), divide.h, gather.h, neighbours.h (two registers as neighbours in a
// run of elements).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "simd/sse.h"

#if defined(__AVX2__)
#include "simd/avx2.h"
#endif

#if defined(__AVX512F__) && defined(__AVX512BW__) && defined(__AVX512DQ__) && defined(__AVX512VL__)
#include "simd/avx512.h"
#define VORN_SIMD_AVX512 1
#elif defined(__AVX2__)
#define VORN_SIMD_AVX2 1
#endif

namespace vorn {

#if defined(VORN_SIMD_AVX512)
using f32xN = f32x16;
using f64xN = f64x8;
using i64xN = i64x8;
using i32xN = i32x16;
using i16xN = i16x32;
using i8xN = i8x64;
using u8xN = u8x64;
#elif defined(VORN_SIMD_AVX2)
using f32xN = f32x8;
using f64xN = f64x4;
using i64xN = i64x4;
using i32xN = i32x8;
using i16xN = i16x16;
using i8xN = i8x32;
using u8xN = u8x32;
#else
using f32xN = f32x4;
using f64xN = f64x2;
using i64xN = i64x2;
using i32xN = i32x4;
using i16xN = i16x8;
using i8xN = i8x16;
using u8xN = u8x16;
#endif

// The vector type of the build whose elements are T, and how many it holds.
template <class T>
struct WideOf;
template <>
struct WideOf<float> {
    using type = f32xN;
};
template <>
struct WideOf<double> {
    using type = f64xN;
};
template <>
struct WideOf<std::int64_t> {
    using type = i64xN;
};
template <>
struct WideOf<std::int32_t> {
    using type = i32xN;
};
template <>
struct WideOf<std::int16_t> {
    using type = i16xN;
};
template <>
struct WideOf<std::uint8_t> {
    using type = u8xN;
};
template <>
struct WideOf<std::int8_t> {
    using type = i8xN;
};
template <class T>
using Wide = typename WideOf<T>::type;

}  // namespace vorn
