// What a scale factor asks of integers: the shift right that rounds to nearest, ties to even, and the shift left that
// saturates. The one place for both.
#pragma once

#include <cstdint>
#include <limits>

#include "simd/simd.h"

namespace vorn {

template <class V>
inline constexpr int widthOf = 8 * static_cast<int>(sizeof(typename V::Element));

template <class V>
VORN_INLINE V highestOf() {
    return splat<V>(std::numeric_limits<typename V::Element>::max());
}

// x times 2^-count, rounded to nearest with ties to even; count is from 1 to the lane's bits less 1. Above one half, or
// on it above an odd number, what the shift drops carries into the result: so does its sum with one half, less 1, and
// the lowest bit of the result. In this way no carry leaves the lane. Where lanes hold the floor of half a number, bit
// 0 of `below` is the bit that they have lost (its other bits mean nothing), and count is one less than the number's.
template <class V>
VORN_INLINE V roundedShiftRight(V x, int count, V below = splat<V>(0)) {
    using Element = typename V::Element;
    const V quotient = shiftRight(x, count);
    const V remainder = x & splat<V>(static_cast<Element>((std::uint64_t{1} << count) - 1));
    const V carryIn = splat<V>(static_cast<Element>((std::uint64_t{1} << (count - 1)) - 1));
    const V oddOrLost = (quotient | below) & splat<V>(1);
    return quotient + shiftRightLogical(remainder + carryIn + oddOrLost, count);
}
constexpr std::int64_t roundedShiftRight(std::int64_t x, int count) {
    const std::int64_t quotient = x >> count;
    const std::uint64_t remainder = static_cast<std::uint64_t>(x) & ((std::uint64_t{1} << count) - 1);
    const std::uint64_t carryIn = (std::uint64_t{1} << (count - 1)) - 1 + static_cast<std::uint64_t>(quotient & 1);
    return quotient + static_cast<std::int64_t>((remainder + carryIn) >> count);
}

// x + bit, saturated: (2^n - 1) / 2 rounds up to a number that the lane cannot hold. Lanes of 64 bits hold numbers far
// from their ends.
VORN_INLINE i16xN addBit(i16xN x, i16xN bit) { return addSat(x, bit); }
VORN_INLINE i32xN addBit(i32xN x, i32xN bit) { return x + select(x == highestOf<i32xN>(), splat<i32xN>(0), bit); }
VORN_INLINE i64xN addBit(i64xN x, i64xN bit) { return x + bit; }

// A number rounded to its half, saturated: one more than the floor when the lost bit is a tie above an odd number.
template <class V>
VORN_INLINE V roundedHalf(V half, V below) {
    return addBit(half, half & below & splat<V>(1));
}

// x times 2^count, saturated to the lane: count is from 1 to the lane's bits less 1. The last of these leaves only the
// sign: the largest value for a positive x, the smallest for a negative one, 0 for 0.
template <class V>
VORN_INLINE V shiftLeftSat(V x, int count) {
    using Element = typename V::Element;
    if constexpr (sizeof(Element) == 2) {
        // What would leave the lane is limited before the shift, which brings in ones above the limit. Lanes of 16 bits
        // have a minimum and a maximum in every build.
        constexpr int largest = std::numeric_limits<Element>::max();
        const V highest = splat<V>(static_cast<Element>(largest >> count));
        const V lowest = splat<V>(static_cast<Element>(~(largest >> count)));
        const V ones = splat<V>(static_cast<Element>((1 << count) - 1));
        return shiftLeft(maxOf(minOf(x, highest), lowest), count) | select(x > highest, ones, splat<V>(0));
    } else {
        const V shifted = shiftLeft(x, count);
        return select(shiftRight(shifted, count) == x, shifted, shiftRight(x, widthOf<V> - 1) ^ highestOf<V>());
    }
}
// Values of 32 bits in lanes of 64: nothing is lost up to 31 places, and the result saturates where it is stored.
VORN_INLINE i64xN shiftLeftSat(i64xN x, int count) { return shiftLeft(x, count < 31 ? count : 31); }

// x times 2^count, saturated to Result; count is from 0 to the bits of Result less 1.
template <class Result>
constexpr Result shiftLeftSatTo(std::int64_t x, int count) {
    using L = std::numeric_limits<Result>;
    if (x > (std::int64_t{L::max()} >> count)) return L::max();
    if (x < (std::int64_t{L::min()} >> count)) return L::min();
    return static_cast<Result>(x * (std::int64_t{1} << count));
}

}  // namespace vorn
