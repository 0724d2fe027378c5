// What a scale factor does to an integer result: its cases and their limits.
//
// The result with scale factor sf is the exact value times 2^-sf, rounded to nearest with ties to even and saturated,
// for every sf. A family's limits only say from where on this needs no arithmetic: above the upper one every result
// rounds to 0, and below the lower one every value but 0 saturates.
#pragma once

#include "simd/rounded_shift.h"
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

// The cases.

struct Unscaled {
    template <class Exact>
    VORN_INLINE auto operator()(Exact x) const {
        return x.value();
    }
};

struct Halved {
    template <class Exact>
    VORN_INLINE auto operator()(Exact x) const {
        return roundedHalf(x.half(), x.low());
    }
};

// sf from 2 on.
struct ShiftedRight {
    int count;
    template <class Exact>
    VORN_INLINE auto operator()(Exact x) const {
        return roundedShiftRight(x.half(), count - 1, x.low());
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
