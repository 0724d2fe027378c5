// What several steps of noise reduction need of lanes, and of shifts of 64 bits.
#pragma once

#include <bit>
#include <cstdint>
#include <type_traits>

#include "frame/wrap.h"
#include "loops/operands.h"
#include "simd/fold.h"
#include "simd/simd.h"

namespace vorn::noise_reduction {

// A shift of 64 bits by a scale factor: to the right and arithmetic from 0 on, to the left below, where bits that leave
// at the top are lost. Counts are taken modulo 64.
struct Shift64 {
    explicit Shift64(int scaleFactor) {
        const unsigned sf = static_cast<unsigned>(scaleFactor);
        right = scaleFactor >= 0 ? static_cast<int>(sf & 63u) : 0;
        left = scaleFactor >= 0 ? 0 : static_cast<int>((0u - sf) & 63u);
    }
    std::int64_t operator()(std::int64_t x) const { return shiftLeft64(shiftRight64(x, right), left); }
    int right, left;
};
// Of one direction. Lanes are not negative.
struct RightShift64 {
    int count;
    std::int64_t operator()(std::int64_t x) const { return shiftRight64(x, count); }
    VORN_INLINE i64xN operator()(i64xN x) const { return shiftRightLogical(x, count); }
};
struct LeftShift64 {
    int count;
    std::int64_t operator()(std::int64_t x) const { return shiftLeft64(x, count); }
    VORN_INLINE i64xN operator()(i64xN x) const { return shiftLeft(x, count); }
};

VORN_INLINE i32xN oddLanes(i32xN a) { return std::bit_cast<i32xN>(shiftRightLogical<32>(std::bit_cast<i64xN>(a))); }

// A register, but one of 64 bytes as its half: for work that is paid by the lane, such as divisions, and for vectors
// that are a whole number of such halves.
template <class V>
VORN_INLINE auto atMost32Bytes(V x) {
    if constexpr (sizeof(V) > 32) {
        return lowHalf(x);
    } else {
        return x;
    }
}
template <class V>
using AtMost32Bytes = decltype(atMost32Bytes(V()));

// An array as an operand, one V a step.
template <class Register>
struct RunOf {
    using V = Register;
    const typename V::Element* p;
    VORN_INLINE V at(std::int64_t i) const { return load<V>(p + i); }
    VORN_INLINE void fetch(std::int64_t i) const { fetchAhead(p + i); }
    template <int rest>
    VORN_INLINE V first(std::int64_t n) const {
        return partOf<V, rest>(p, n);
    }
};

// The loop of work that is paid by the lane: where half a register of 64 bytes holds what is left behind whole ones, it
// takes no more. make(type) gives the kernel for a type of register. (A spectrum of 2^n + 1 bins leaves one.)
template <class V, class MakeKernel>
VORN_INLINE void forEachRegister(std::int64_t len, const MakeKernel& make) {
    const auto kernel = make(std::type_identity<V>());
    if constexpr (sizeof(V) > 32) {
        using Half = AtMost32Bytes<V>;
        const std::int64_t rest = len % V::lanes;
        if (len >= V::lanes && rest > 0 && rest <= Half::lanes) {
            const auto narrow = make(std::type_identity<Half>());
            const auto last = narrow.at(len - Half::lanes);
            forEachStep(len - rest, kernel);
            return narrow.put(len - Half::lanes, last);
        }
    }
    forEachStep(len, kernel);
}

}  // namespace vorn::noise_reduction
