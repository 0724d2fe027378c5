// Normalisation of log energies over an utterance, and removal of the mean of a frame.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "features/conditioning/truncate.h"
#include "frame/opaque.h"
#include "frame/wrap.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn {

// Natural-log units a decibel: ln 10 / 10, to the digits that the header states.
inline constexpr Vorn32f unitsPerDecibel = 0.230259f;

// The largest of the elements, or the start if none is above it; not-a-numbers are above nothing.
template <class T>
T largest(const T* x, std::ptrdiff_t step, std::ptrdiff_t height, T start) {
    using V = Wide<T>;
    std::ptrdiff_t i = 0;
    if (step == 1 && height >= V::lanes) {
        V lanes = splat<V>(start);
        for (; i + V::lanes <= height; i += V::lanes) lanes = maxOf(load<V>(x + i), lanes);
        T lane[V::lanes];
        store(lane, lanes);
        start = *std::max_element(lane, lane + V::lanes);
    }
    for (; i < height; ++i) start = std::max(start, x[i * step]);
    return start;
}

// Each energy x becomes top - (maxE - max(x, floor)) val; a not-a-number counts as the floor, minDb decibels below
// maxE.
class NormalisedEnergy {
public:
    NormalisedEnergy(Vorn32f maxE, Vorn32f minDb, Vorn32f top, Vorn32f val)
        : maxE_(maxE), floor_(maxE - opaque(minDb * unitsPerDecibel)), top_(top), val_(val) {}

    VORN_INLINE Vorn32f operator()(Vorn32f x) const { return top_ - (maxE_ - (x > floor_ ? x : floor_)) * val_; }
    VORN_INLINE f32xN operator()(f32xN x) const {
        const f32xN down = splat<f32xN>(maxE_) - maxOf(x, splat<f32xN>(floor_));
        return splat<f32xN>(top_) - down * splat<f32xN>(val_);
    }

private:
    Vorn32f maxE_, floor_, top_, val_;
};

inline std::ptrdiff_t normWhole(Vorn32f* x, std::ptrdiff_t len, NormalisedEnergy energy) {
    std::ptrdiff_t i = 0;
    for (; i + f32xN::lanes <= len; i += f32xN::lanes) store(x + i, energy(load<f32xN>(x + i)));
    return i;
}
inline std::ptrdiff_t normWhole(Vorn16s* x, std::ptrdiff_t len, NormalisedEnergy energy) {
    const auto truncated = [&](i32xN v) { return truncSat16(energy(toFloat(v))); };
    std::ptrdiff_t i = 0;
    for (; i + i16xN::lanes <= len; i += i16xN::lanes) {
        const i16xN v = load<i16xN>(x + i);
        store(x + i, narrowSat(truncated(widenLow(v)), truncated(widenHigh(v))));
    }
    return i;
}

inline void storeEnergy(Vorn32f y, Vorn32f* dst) { *dst = y; }
inline void storeEnergy(Vorn32f y, Vorn16s* dst) { *dst = truncSat16(y); }

// Whole vectors where the energies lie side by side, then one by one.
template <class T>
void normEnergy(T* x, std::ptrdiff_t step, std::ptrdiff_t height, NormalisedEnergy energy) {
    for (std::ptrdiff_t i = step == 1 ? normWhole(x, height, energy) : 0; i < height; ++i) {
        storeEnergy(energy(static_cast<Vorn32f>(x[i * step])), x + i * step);
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

// Half of 2 x less the doubled mean, moved one away from zero first and then rounded down; never below -32767. So with
// the mean rounded down it is their difference, less one where 2 x is below the doubled mean. The mean is one of 16
// bits, even that of a sum that has wrapped.
inline void subtractHalf(Vorn16s* x, std::ptrdiff_t len, std::int32_t doubledMean) {
    const i16xN mean = splat<i16xN>(static_cast<Vorn16s>(doubledMean >> 1));
    const i16xN meanUp = splat<i16xN>(static_cast<Vorn16s>((doubledMean + 1) >> 1));
    const i16xN zero = splat<i16xN>(0), one = splat<i16xN>(1);
    std::ptrdiff_t n = 0;
    for (; n + i16xN::lanes <= len; n += i16xN::lanes) {
        const i16xN v = load<i16xN>(x + n);
        const i16xN y = subSat(subSat(v, mean), select(meanUp > v, one, zero));
        store(x + n, maxOf(y, splat<i16xN>(-32767)));
    }
    for (; n < len; ++n) {
        const std::int32_t d = 2 * x[n] - doubledMean;
        x[n] = static_cast<Vorn16s>(std::clamp((d + (d > 0) - (d < 0)) >> 1, -32767, 32767));
    }
}

}  // namespace vorn
