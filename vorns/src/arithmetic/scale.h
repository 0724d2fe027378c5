// What a scale factor does to an integer result: the one place for it.
//
// The result with scale factor sf is the exact value times 2^-sf, rounded to nearest with ties to even and saturated,
// for every sf. A family's limits only say from where on this needs no arithmetic: above the upper one every result
// rounds to 0, and below the lower one every value but 0 saturates.
#pragma once

#include <cstdint>
#include <limits>

#include "simd/simd.h"

namespace vorn {

struct ScaleLimits {
    int upper, lower;
};

inline constexpr ScaleLimits limitsOfSums8u{9, -7};
inline constexpr ScaleLimits limitsOfSums16s{16, -15};
inline constexpr ScaleLimits limitsOfSums32s{32, -30};
inline constexpr ScaleLimits limitsOfProducts8u{16, -7};
inline constexpr ScaleLimits limitsOfProducts16s{30, -15};
inline constexpr ScaleLimits limitsOfProducts16u16s{31, -14};
inline constexpr ScaleLimits limitsOfProducts16s32s{30, -30};
inline constexpr ScaleLimits limitsOfProducts16sc{31, -15};
inline constexpr ScaleLimits limitsOfProducts32sc{63, -30};
inline constexpr ScaleLimits limitsOfProducts32s{62, -31};

// Exact values in the lanes of V. What the scaling asks of one:
//   value()  the value, saturated to what the lane or the result can hold
//   half()   floor(value / 2), which always fits
//   low()    in bit 0 the bit that half() has lost; the other bits mean nothing

// A value that fits into its lane.
template <class Register>
struct Whole {
    using V = Register;
    V s;
    VORN_INLINE V value() const { return s; }
    VORN_INLINE V half() const { return shiftRight(s, 1); }
    VORN_INLINE V low() const { return s; }
};

template <class V>
inline constexpr int widthOf = 8 * static_cast<int>(sizeof(typename V::Element));

template <class V>
VORN_INLINE V highestOf() {
    return splat<V>(std::numeric_limits<typename V::Element>::max());
}

// x times 2^count, saturated to the lane: count is from 1 to the lane's bits less 1. The last of these leaves only the
// sign: the largest value for a positive x, the smallest for a negative one, 0 for 0.
template <class V>
VORN_INLINE V shiftLeftSat(V x, int count) {
    const V shifted = shiftLeft(x, count);
    return select(shiftRight(shifted, count) == x, shifted, shiftRight(x, widthOf<V> - 1) ^ highestOf<V>());
}
// Values of 32 bits in lanes of 64: nothing is lost up to 31 places, and the result saturates where it is stored.
VORN_INLINE i64xN shiftLeftSat(i64xN x, int count) { return shiftLeft(x, count < 31 ? count : 31); }

// x + bit, saturated: (2^n - 1) / 2 rounds up to a number that the lane cannot hold.
VORN_INLINE i16xN addBit(i16xN x, i16xN bit) { return addSat(x, bit); }
VORN_INLINE i32xN addBit(i32xN x, i32xN bit) { return x + select(x == highestOf<i32xN>(), splat<i32xN>(0), bit); }
VORN_INLINE i64xN addBit(i64xN x, i64xN bit) { return x + bit; }

// The cases.

struct Unscaled {
    template <class Exact>
    VORN_INLINE auto operator()(Exact x) const {
        return x.value();
    }
};

// sf = 1: one more when the lost bit is a tie above an odd number.
struct Halved {
    template <class Exact>
    VORN_INLINE auto operator()(Exact x) const {
        using V = typename Exact::V;
        const V half = x.half();
        return addBit(half, half & x.low() & splat<V>(1));
    }
};

// sf from 2 on. With h = floor(s / 2) and n = sf - 1 the result is floor(h / 2^n), and one more when what lies below,
// (h mod 2^n) and the lost bit, is above one half, or exactly one half below an odd number. That is the carry of
// (h mod 2^n) + 2^(n-1) - 1 + (lost bit or lowest bit of the result).
struct ShiftedRight {
    int count;
    template <class Exact>
    VORN_INLINE auto operator()(Exact x) const {
        using V = typename Exact::V;
        using Element = typename V::Element;
        const int n = count - 1;
        const V half = x.half();
        const V quotient = shiftRight(half, n);
        const V remainder = half & splat<V>(static_cast<Element>((std::uint64_t{1} << n) - 1));
        const V carryIn = splat<V>(static_cast<Element>((std::uint64_t{1} << (n - 1)) - 1));
        const V oddOrLost = (quotient | x.low()) & splat<V>(1);
        return quotient + shiftRightLogical(remainder + carryIn + oddOrLost, n);
    }
};

struct ShiftedLeft {
    int count;
    template <class Exact>
    VORN_INLINE auto operator()(Exact x) const {
        return shiftLeftSat(x.value(), count);
    }
};

// Runs the case of sf, for exact values in lanes of so many bits: run(case) for those that compute, zero() where every
// result is 0.
template <int bits, class Run, class Zero>
VORN_INLINE void withScale(int sf, ScaleLimits limits, const Run& run, const Zero& zero) {
    if (sf == 0) {
        run(Unscaled{});
    } else if (sf == 1) {
        run(Halved{});
    } else if (sf > limits.upper) {
        zero();
    } else if (sf > 0) {
        run(ShiftedRight{sf});
    } else {
        run(ShiftedLeft{sf >= limits.lower ? -sf : bits - 1});
    }
}

}  // namespace vorn
