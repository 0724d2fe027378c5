// Normalisation of log energies over an utterance, and removal of the mean of a frame.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "features/offset_kernels.h"
#include "frame/wrap.h"
#include "simd.h"
#include "vornsr/types.h"

namespace vorn {

// Natural-log units a decibel: ln 10 / 10, to the digits that the contract has.
inline constexpr Vorn32f unitsPerDecibel = 0.230259f;

// The largest of the elements, or the start if none is above it; not-a-numbers are above nothing.
template <class T>
Vorn32f largest(const T* x, std::ptrdiff_t step, std::ptrdiff_t height, Vorn32f start) {
    for (std::ptrdiff_t i = 0; i < height; ++i) start = std::max(start, static_cast<Vorn32f>(x[i * step]));
    return start;
}

inline void storeEnergy(Vorn32f y, Vorn32f* dst) { *dst = y; }
inline void storeEnergy(Vorn32f y, Vorn16s* dst) { *dst = truncSat16(y); }

// Each element becomes top - (maxE - max(x, floor)) val; a not-a-number counts as the floor, minDb decibels below maxE.
template <class T>
void normEnergy(T* x, std::ptrdiff_t step, std::ptrdiff_t height, Vorn32f maxE, Vorn32f minDb, Vorn32f top,
                Vorn32f val) {
    const Vorn32f floor = maxE - minDb * unitsPerDecibel;
    for (std::ptrdiff_t i = 0; i < height; ++i) {
        const auto energy = static_cast<Vorn32f>(x[i * step]);
        storeEnergy(top - (maxE - (energy > floor ? energy : floor)) * val, x + i * step);
    }
}

// The sum of the elements, wrapped at 32 bits.
inline std::int32_t wrappedSum(const Vorn16s* x, std::ptrdiff_t len) {
    i32xN lanes = splat<i32xN>(0);
    std::ptrdiff_t n = 0;
    for (; n + i16xN::lanes <= len; n += i16xN::lanes) lanes = lanes + mulAddPairs(load<i16xN>(x + n), splat<i16xN>(1));
    std::int32_t lane[i32xN::lanes];
    store(lane, lanes);
    std::int32_t sum = 0;
    for (std::int32_t part : lane) sum = wrapAdd(sum, part);
    for (; n < len; ++n) sum = wrapAdd(sum, std::int32_t{x[n]});
    return sum;
}

// Half of 2 x less the doubled mean, moved one away from zero first and then rounded down; never below -32767.
inline void subtractHalf(Vorn16s* x, std::ptrdiff_t len, std::int32_t doubledMean) {
    const auto half = [mean = splat<i32xN>(doubledMean)](i32xN v) {
        const i32xN d = v + v - mean;
        return shiftRight<1>(d + shiftRight<31>(d) + shiftRightLogical<31>(splat<i32xN>(0) - d));
    };
    std::ptrdiff_t n = 0;
    for (; n + i16xN::lanes <= len; n += i16xN::lanes) {
        const i16xN v = load<i16xN>(x + n);
        store(x + n, maxOf(narrowSat(half(widenLow(v)), half(widenHigh(v))), splat<i16xN>(-32767)));
    }
    for (; n < len; ++n) {
        const std::int32_t d = 2 * x[n] - doubledMean;
        x[n] = static_cast<Vorn16s>(std::clamp((d + (d > 0) - (d < 0)) >> 1, -32767, 32767));
    }
}

}  // namespace vorn
