// Gaussian scores at low precision: squares in two halves, times v, in 32-bit lanes that wrap; no float in the inner
// loop. The lowest bit of a square is lost.
#pragma once

#include "simd/simd.h"

namespace vorn {

// A shift by `left` or by `right` bits, one of which is 0.
struct Shift {
    int left, right;
    template <class V>
    VORN_INLINE V operator()(V a) const {
        return shiftRight(shiftLeft(a, left), right);
    }
};

// The shifts that bring the two halves of a sum to the unit of the score.
struct LowShifts {
    Shift high, low;

    explicit LowShifts(int scaleFactor) : high{0, 0}, low{0, 0} {
        if (scaleFactor > 15) {
            high.right = scaleFactor - 15;
            low.right = 15;  // goes no further with the scale factor
        } else if (scaleFactor >= 0) {
            high.left = 15 - scaleFactor;
            low.right = scaleFactor;
        } else {
            const int up = scaleFactor < -32 ? 32 : -scaleFactor;  // from 32 on nothing is left
            high.left = 15 + up;
            low.left = up;
        }
    }
    // Shifts to the left alone give the same sum before and after additions.
    VORN_INLINE bool truncate() const { return (high.right | low.right) != 0; }
    template <class V>
    VORN_INLINE V operator()(V highSum, V lowSum) const {
        return high(highSum) + low(lowSum);
    }
};

// Sums of neighbouring terms: the high 16 bits of the squares, signed, and the low ones without the last bit, each
// times v.
template <class I>
struct HighAndLow {
    I high, low;
};
template <class V>
VORN_INLINE auto lowTerms(V d, V v) {
    using I = decltype(mulAddPairs(d, d));
    return HighAndLow<I>{mulAddPairs(mulHigh(d, d), v), mulAddPairs(shiftRightLogical<1>(mulLow(d, d)), v)};
}

}  // namespace vorn
