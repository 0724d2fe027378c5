// Vectors side by side: element i of as many vectors as four registers hold stands in one run. Each lane then sums the
// distance of its own vector in the order of the elements, and a number of vectors is compared with one at a time.
#pragma once

#include <cstdint>
#include <cstring>

#include "frame/align.h"
#include "frame/memory.h"
#include "simd/simd.h"
#include "vq/codebook/distance.h"
#include "vq/codebook/tolerance.h"

namespace vorn::vq {

inline constexpr int panelLanes = 4 * f32xN::lanes;

class Panels {
public:
    Panels(std::int64_t vectors, int width) : width_(width), memory_(roundUp(vectors, panelLanes) * width) {}
    explicit operator bool() const { return static_cast<bool>(memory_); }
    const Vorn32f* operator[](std::int64_t panel) const { return memory_.get() + panel * panelLanes * width_; }

    // The lanes behind the last vector hold zeros.
    template <class T>
    void fill(const T* vectors, std::ptrdiff_t step, int count) {
        for (std::ptrdiff_t first = 0; first < count; first += panelLanes) {
            Vorn32f* panel = memory_.get() + first * width_;
            const std::ptrdiff_t lanes = count - first < panelLanes ? count - first : panelLanes;
            if (lanes < panelLanes)
                std::memset(panel, 0, sizeof(Vorn32f) * panelLanes * static_cast<std::size_t>(width_));
            for (std::ptrdiff_t lane = 0; lane < lanes; ++lane) {
                const T* vector = vectors + (first + lane) * step;
                for (int i = 0; i < width_; ++i) panel[i * std::ptrdiff_t{panelLanes} + lane] = vector[i];
            }
        }
    }

private:
    int width_;
    Scratch<Vorn32f> memory_;
};

// The distances of a panel's vectors from one vector; weight is null where all weights are 1.
template <bool weighted>
VORN_INLINE void sumSquares(const Vorn32f* panel, const Vorn32f* centre, const Vorn32f* weight, int width, f32xN& s0,
                            f32xN& s1, f32xN& s2, f32xN& s3) {
    constexpr int lanes = f32xN::lanes;
    s0 = s1 = s2 = s3 = splat<f32xN>(0.0f);
    for (int i = 0; i < width; ++i, panel += panelLanes) {
        const f32xN c = splat<f32xN>(centre[i]);
        const f32xN x0 = load<f32xN>(panel), x1 = load<f32xN>(panel + lanes), x2 = load<f32xN>(panel + 2 * lanes),
                    x3 = load<f32xN>(panel + 3 * lanes);
        if constexpr (weighted) {
            const f32xN w = splat<f32xN>(weight[i]);
            s0 = plusSquare(s0, x0, c, w);
            s1 = plusSquare(s1, x1, c, w);
            s2 = plusSquare(s2, x2, c, w);
            s3 = plusSquare(s3, x3, c, w);
        } else {
            s0 = plusSquare(s0, x0, c);
            s1 = plusSquare(s1, x1, c);
            s2 = plusSquare(s2, x2, c);
            s3 = plusSquare(s3, x3, c);
        }
    }
}

// The same into memory, of panelLanes distances.
inline void distancesOf(const Vorn32f* panel, const Vorn32f* centre, const Vorn32f* weight, int width, Vorn32f* dst) {
    f32xN s0, s1, s2, s3;
    if (weight == nullptr) {
        sumSquares<false>(panel, centre, nullptr, width, s0, s1, s2, s3);
    } else {
        sumSquares<true>(panel, centre, weight, width, s0, s1, s2, s3);
    }
    store(dst, s0);
    store(dst + f32xN::lanes, s1);
    store(dst + 2 * f32xN::lanes, s2);
    store(dst + 3 * f32xN::lanes, s3);
}

// One register of bests meets candidate j: isBelow in each lane. What is taken keeps its value through the doubles.
VORN_INLINE void takeBelow(f32xN distance, i32xN j, f32xN& best, i32xN& index) {
    const f64xN low = widenLow(distance), high = widenHigh(distance), bestLow = widenLow(best),
                bestHigh = widenHigh(best), factor = splat<f64xN>(tolerance);
    const f32xN taken =
        narrow(select(low * factor < bestLow, low, bestLow), select(high * factor < bestHigh, high, bestHigh));
    index = select(taken < best, j, index);
    best = taken;
}

// The nearest centre of each vector of a panel, all centres in rising number, with its distance; -1 where none
// qualifies.
template <bool weighted>
void nearestOf(const Vorn32f* panel, const Vorn32f* centres, std::ptrdiff_t step, int count, const Vorn32f* weight,
               int width, Vorn32f* distances, std::int32_t* indices) {
    f32xN b0 = splat<f32xN>(farthest), b1 = b0, b2 = b0, b3 = b0;
    i32xN i0 = splat<i32xN>(-1), i1 = i0, i2 = i0, i3 = i0;
    for (int j = 0; j < count; ++j, centres += step) {
        f32xN s0, s1, s2, s3;
        sumSquares<weighted>(panel, centres, weight, width, s0, s1, s2, s3);
        // No distance is negative, so only one that is smaller can be below by the tolerance.
        if (any((s0 < b0) | (s1 < b1) | (s2 < b2) | (s3 < b3))) {
            const i32xN number = splat<i32xN>(j);
            takeBelow(s0, number, b0, i0);
            takeBelow(s1, number, b1, i1);
            takeBelow(s2, number, b2, i2);
            takeBelow(s3, number, b3, i3);
        }
    }
    constexpr int lanes = f32xN::lanes;
    store(distances, b0), store(distances + lanes, b1);
    store(distances + 2 * lanes, b2), store(distances + 3 * lanes, b3);
    store(indices, i0), store(indices + lanes, i1);
    store(indices + 2 * lanes, i2), store(indices + 3 * lanes, i3);
}

}  // namespace vorn::vq
