// What several steps of noise reduction need of 64-bit integers.
#pragma once

#include <bit>
#include <cstdint>

#include "frame/wrap.h"
#include "simd/simd.h"

namespace vorn::noise_reduction {

// A shift of 64 bits by a scale factor: to the right and arithmetic from 0 on, to the left below, where bits that leave
// at the top are lost. Counts are taken modulo 64.
class Shift64 {
public:
    explicit Shift64(int scaleFactor) {
        const unsigned sf = static_cast<unsigned>(scaleFactor);
        right_ = scaleFactor >= 0 ? static_cast<int>(sf & 63u) : 0;
        left_ = scaleFactor >= 0 ? 0 : static_cast<int>((0u - sf) & 63u);
    }
    int right() const { return right_; }
    int left() const { return left_; }
    std::int64_t operator()(std::int64_t x) const { return shiftLeft64(shiftRight64(x, right_), left_); }
    // Of lanes that are not negative.
    VORN_INLINE i64xN operator()(i64xN x) const { return shiftLeft(shiftRightLogical(x, right_), left_); }

private:
    int right_, left_;
};

VORN_INLINE i32xN oddLanes(i32xN a) { return std::bit_cast<i32xN>(shiftRightLogical<32>(std::bit_cast<i64xN>(a))); }

}  // namespace vorn::noise_reduction
