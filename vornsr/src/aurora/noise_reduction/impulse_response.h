// An impulse response made causal, and a frame filtered with it.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <type_traits>

#include "aurora/noise_reduction/lanes.h"
#include "frame/rounding.h"
#include "frame/wrap.h"
#include "simd/rounded_shift.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::noise_reduction {

inline constexpr int responseTaps = 17, filteredSamples = 80;

// Backwards from value 8 to value 0, then forwards from value 2 to value 9. It is not symmetric: value 1 stands once
// and value 9 at the top alone, on purpose.
VORN_INLINE f32x4 backwards(f32x4 x) { return reverse(x); }
VORN_INLINE i16x8 backwards(i16x8 x) {
    const i32x4 pairs = reverse(intsOf(x));
    return shortsOf(shiftLeft<16>(pairs) | shiftRightLogical<16>(pairs));
}

// All values are read before one is written: dst may be src.
template <class T>
VORN_INLINE void spreadTaps(const T* src, T* dst) {
    using V = std::conditional_t<sizeof(T) == 4, f32x4, i16x8>;
    constexpr int lanes = V::lanes, count = 8 / lanes;
    V down[count], up[count];
    for (int k = 0; k < count; ++k) {
        down[k] = backwards(load<V>(src + 8 - lanes * (k + 1)));
        up[k] = load<V>(src + 2 + lanes * k);
    }
    std::memcpy(dst, src + 8, sizeof(T));
    for (int k = 0; k < count; ++k) {
        store(dst + 1 + lanes * k, down[k]);
        store(dst + 9 + lanes * k, up[k]);
    }
}

// dst[n] = the sum of src[n + i] taps[i] in the order of i, in single. The samples of a run are all read before one of
// them is written: dst may be src.
VORN_INLINE void filterFrame(const Vorn32f* src, const Vorn32f* taps, Vorn32f* dst) {
    constexpr int lanes = f32xN::lanes, registers = std::min(10, filteredSamples / lanes);
    for (int n = 0; n < filteredSamples; n += registers * lanes) {
        const Vorn32f* x = src + n;
        f32xN sum[registers];
        for (int r = 0; r < registers; ++r) sum[r] = load<f32xN>(x + r * lanes) * splat<f32xN>(taps[0]);
        for (int i = 1; i < responseTaps; ++i) {
            const f32xN tap = splat<f32xN>(taps[i]);
            for (int r = 0; r < registers; ++r) sum[r] = sum[r] + load<f32xN>(x + i + r * lanes) * tap;
        }
        for (int r = 0; r < registers; ++r) store(dst + n + r * lanes, sum[r]);
    }
}

// The same of integers: exact sums, shifted by a scale factor, saturated to 16 bits.
//
// A lane holds two neighbouring samples, from an even place on, whose products with two weights are added in 32 bits.
// Samples 2 j and 2 j + 1 meet taps 2 j and 2 j + 1 in the even sums, taps 2 j - 1 and 2 j in the odd ones.
struct PairedTaps {
    static constexpr int pairs = responseTaps / 2 + 1;
    std::int32_t even[pairs], odd[pairs];

    static std::int32_t pairOf(std::int32_t lower, std::int32_t upper) {
        return static_cast<std::int32_t>((static_cast<std::uint32_t>(upper) << 16) |
                                         (static_cast<std::uint32_t>(lower) & 0xFFFF));
    }
    template <class Take>
    PairedTaps(const Vorn16s* taps, Take take) {
        even[0] = pairOf(take(taps[0]), take(taps[1]));
        odd[0] = pairOf(0, take(taps[0]));
        for (int j = 1; j < pairs; ++j) {
            even[j] = pairOf(take(taps[2 * j]), 2 * j + 1 < responseTaps ? take(taps[2 * j + 1]) : 0);
            odd[j] = pairOf(take(taps[2 * j - 1]), take(taps[2 * j]));
        }
    }
};

// Registers of which a whole number makes the frame.
using FrameShorts = AtMost32Bytes<i16xN>;
using FrameInts = decltype(mulAddPairs(FrameShorts(), FrameShorts()));

// The sums of a run of registers.
struct FrameSums {
    static constexpr int registers = 5, samples = registers * FrameShorts::lanes;
    FrameInts even[registers], odd[registers];

    VORN_INLINE FrameSums(const Vorn16s* src, const PairedTaps& taps) {
        for (int r = 0; r < registers; ++r) even[r] = odd[r] = splat<FrameInts>(0);
        for (int j = 0; j < PairedTaps::pairs; ++j) {
            const FrameShorts evenTaps = shortsOf(splat<FrameInts>(taps.even[j]));
            const FrameShorts oddTaps = shortsOf(splat<FrameInts>(taps.odd[j]));
            for (int r = 0; r < registers; ++r) {
                const FrameShorts x = load<FrameShorts>(src + 2 * j + r * FrameShorts::lanes);
                even[r] = even[r] + mulAddPairs(x, evenTaps);
                odd[r] = odd[r] + mulAddPairs(x, oddTaps);
            }
        }
    }
};

// The exact sum of a frame's samples and taps in any case, one by one.
inline void filterFrameExactly(const Vorn16s* src, const Vorn16s* taps, Vorn16s* dst, Shift64 shift) {
    for (int n = 0; n < filteredSamples; ++n) {
        std::int64_t sum = 0;
        for (int i = 0; i < responseTaps; ++i) sum += std::int32_t{src[n + i]} * taps[i];
        dst[n] = saturate<Vorn16s>(shift(sum));
    }
}

// Sums that 32 bits hold, shifted and saturated. 15 places to the left leave of a number nothing but its sign.
VORN_INLINE void storeShifted(const FrameSums& sums, int right, int left, Vorn16s* dst) {
    for (int r = 0; r < FrameSums::registers; ++r) {
        FrameShorts y = joinSat(zip(shiftRight(sums.even[r], right), shiftRight(sums.odd[r], right)));
        if (left > 0) y = shiftLeftSat(y, std::min(left, 15));
        store(dst + r * FrameShorts::lanes, y);
    }
}

// Of taps whose magnitudes add up to less than 2^16: no sum and no part of one leaves 32 bits.
VORN_INLINE void filterFrameInOne(const Vorn16s* src, const Vorn16s* taps, Vorn16s* dst, Shift64 shift) {
    const PairedTaps whole(taps, [](int tap) { return tap; });
    for (int n = 0; n < filteredSamples; n += FrameSums::samples) {
        storeShifted(FrameSums(src + n, whole), shift.right, shift.left, dst + n);
    }
}

// Of any taps, as 2^8 high + low, with low from 0 to 255: the sums of either are below 2^28. The low sum hands over to
// the high one what it has above 8 bits. Of a shift by 8 or more only the high sum is left then; of a smaller one every
// high sum from 2^22 on saturates.
VORN_INLINE FrameInts joinedSums(FrameInts high, FrameInts low, bool highAlone) {
    const FrameInts carried = high + shiftRight<8>(low);
    if (highAlone) return carried;
    const FrameInts limit = splat<FrameInts>(1 << 22);
    const FrameInts limited = maxOf(minOf(carried, limit), splat<FrameInts>(-(1 << 22)));
    return shiftLeft<8>(limited) | (low & splat<FrameInts>(255));
}
VORN_INLINE void filterFrameInTwo(const Vorn16s* src, const Vorn16s* taps, Vorn16s* dst, Shift64 shift) {
    const PairedTaps highs(taps, [](int tap) { return tap >> 8; }), lows(taps, [](int tap) { return tap & 255; });
    const bool highAlone = shift.right >= 8;
    for (int n = 0; n < filteredSamples; n += FrameSums::samples) {
        FrameSums sums(src + n, highs);
        const FrameSums low(src + n, lows);
        for (int r = 0; r < FrameSums::registers; ++r) {
            sums.even[r] = joinedSums(sums.even[r], low.even[r], highAlone);
            sums.odd[r] = joinedSums(sums.odd[r], low.odd[r], highAlone);
        }
        storeShifted(sums, shift.right - (highAlone ? 8 : 0), shift.left, dst + n);
    }
}

// The sum is below 2^35: up to 28 places to the left no bit leaves 64.
VORN_NOINLINE inline void filterFrame(const Vorn16s* src, const Vorn16s* taps, Vorn16s* dst, Shift64 shift) {
    if (shift.left > 28) return filterFrameExactly(src, taps, dst, shift);
    int size = 0;
    for (int i = 0; i < responseTaps; ++i) size += std::abs(int{taps[i]});
    if (size < 1 << 16) {
        filterFrameInOne(src, taps, dst, shift);
    } else {
        filterFrameInTwo(src, taps, dst, shift);
    }
}

}  // namespace vorn::noise_reduction
