// Velocities and accelerations of cepstra by weighted sums over nine frames.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "features/delta/kernels.h"
#include "simd/fold.h"
#include "simd/simd.h"
#include "vornsr/features.h"

namespace vorn::aurora_delta {

inline constexpr std::ptrdiff_t frameWidth = 14, columns = 13, energyColumn = 12;
inline constexpr std::ptrdiff_t reach = 4;             // of a window, to either side
inline constexpr std::ptrdiff_t lookback = 2 * reach;  // rows of an earlier call that a later one reads

template <class T>
struct Call {
    const T* src;
    const T* val;  // factors of the features, the velocities, the accelerations; null if there are none
    T* dst;
    std::ptrdiff_t step;
    std::ptrdiff_t height;
    int mode;
    int scale;
};

// The last feature of a row is made of a frame's last two numbers.
VORN_INLINE float energyOf(float c0, float logEnergy) { return c0 * 0.6f / 23.0f + logEnergy * 0.4f; }

// The vectors of thirteen columns: side by side, the last one so early that it ends at the last column. A vector that
// is wider than a row leaves its upper lanes alone.
using V = f32xN;
using W = i32xN;
inline constexpr std::ptrdiff_t lastVector = std::max<std::ptrdiff_t>(0, columns - V::lanes);

VORN_INLINE V loadColumns(const float* p) {
    if constexpr (V::lanes > columns) {
        return loadFirst<V>(p, columns);
    } else {
        return load<V>(p);
    }
}
VORN_INLINE void storeColumns(float* p, V x) {
    if constexpr (V::lanes > columns) {
        storeFirst(p, x, columns);
    } else {
        store(p, x);
    }
}
VORN_INLINE W loadColumns(const std::int16_t* p) {
    if constexpr (W::lanes > columns) {
        return widenLow(loadFirst<i16xN>(p, columns));
    } else {
        return loadWidened<W>(p);
    }
}
// Saturates.
template <class Ints>
VORN_INLINE void storeColumns(std::int16_t* p, Ints x) {
    if constexpr (Ints::lanes > columns) {
        storeFirst(p, narrowSat(x, x), columns);
    } else if constexpr (Ints::lanes == 8) {
        store(p, narrowSat(lowHalf(x), highHalf(x)));
    } else {
        const auto twice = narrowSat(x, x);
        std::memcpy(p, &twice, Ints::lanes * sizeof *p);
    }
}

// Of the last vector, the lane of the last feature.
struct EnergyLane {
    std::int32_t bits[W::lanes] = {};
    constexpr EnergyLane() { bits[energyColumn - lastVector] = -1; }
};
inline constexpr EnergyLane energyLane;
template <class Lanes>
VORN_INLINE Lanes withEnergy(Lanes x, typename Lanes::Element energy) {
    return select(load<W>(energyLane.bits) == splat<W>(-1), splat<Lanes>(energy), x);
}

// Weights below 0, in every lane.
struct NegativeWeights {
    alignas(sizeof(V)) float velocity[4][V::lanes];      // of the rows t - 3 to t
    alignas(sizeof(V)) float acceleration[3][V::lanes];  // of the rows t - 2 to t
    constexpr NegativeWeights() : velocity(), acceleration() {
        for (int i = 0; i < V::lanes; ++i) {
            velocity[0][i] = -0.75f, velocity[1][i] = -0.5f, velocity[2][i] = -0.25f, velocity[3][i] = -0.0f;
            acceleration[0][i] = -0.285714f, acceleration[1][i] = -0.607143f, acceleration[2][i] = -0.714286f;
        }
    }
};
inline constexpr NegativeWeights negativeWeights;

// Both sums over the rows t - 4 to t + 4, the oldest first.
class NineRows {
public:
    struct Sums {
        V velocity, acceleration;
    };

    // The compiler must not know the negative weights: what it may make of a + (-w) x is the same to nearest alone.
    VORN_INLINE NineRows() : negative_(&negativeWeights) { asm("" : "+r"(negative_)); }

    VORN_INLINE Sums operator()(const V (&x)[2 * reach], V newest) const {
        const auto v = [&](int row) __attribute__((always_inline)) {
            return x[row] * vorn::load<V>(negative_->velocity[row - 1]);
        };
        const auto a = [&](int row) __attribute__((always_inline)) {
            return x[row] * vorn::load<V>(negative_->acceleration[row < reach ? row - 2 : 2 * reach - row - 2]);
        };
        const V quarter = splat<V>(0.25f), half = splat<V>(0.5f), threeQuarters = splat<V>(0.75f);
        V velocity = v(1) - x[0];
        velocity = velocity + v(2) + v(3) + v(4);
        velocity = velocity + x[5] * quarter + x[6] * half + x[7] * threeQuarters + newest;
        V acceleration = x[0] + x[1] * quarter;
        acceleration = acceleration + a(2) + a(3) + a(4) + a(5) + a(6);
        acceleration = acceleration + x[7] * quarter + newest;
        return {velocity, acceleration};
    }

private:
    const NegativeWeights* negative_;
};

// The arithmetics: how one vector of columns comes from a frame and goes to the results. Pointers but that of a frame
// stand at the vector's first column.

template <bool weighted>
struct Singles {
    using Element = Vorn32f;

    template <bool hasEnergy>
    class Columns {
    public:
        VORN_INLINE Columns(const Call<Vorn32f>& call, std::ptrdiff_t column) : column_(column) {
            if constexpr (weighted) {
                for (int k = 0; k < 3; ++k) factor_[k] = loadColumns(call.val + k * columns + column);
            }
        }

        VORN_INLINE V load(const Vorn32f* p) const { return loadColumns(p); }
        // The feature of a frame, as it is stored.
        VORN_INLINE V take(const Vorn32f* frame, Vorn32f* to) const {
            V x = loadColumns(frame + column_);
            if constexpr (hasEnergy) x = withEnergy(x, energyOf(frame[energyColumn], frame[energyColumn + 1]));
            x = times<0>(x);
            storeColumns(to, x);
            return x;
        }
        VORN_INLINE void storeVelocity(Vorn32f* to, V sum) const { storeColumns(to, times<1>(sum)); }
        VORN_INLINE void storeAcceleration(Vorn32f* to, V sum) const { storeColumns(to, times<2>(sum)); }

    private:
        template <int k>
        VORN_INLINE V times(V x) const {
            if constexpr (weighted) return x * factor_[k];
            return x;
        }
        std::ptrdiff_t column_;
        V factor_[weighted ? 3 : 1];
    };
};

// 16-bit integers. As singles they are exact, and so are the sums of velocities, in quarters.
template <bool weighted>
struct Shorts {
    using Element = Vorn16s;

    template <bool hasEnergy>
    class Columns {
    public:
        VORN_INLINE Columns(const Call<Vorn16s>& call, std::ptrdiff_t column)
            : column_(column),
              shift_(static_cast<int>(static_cast<unsigned>(call.scale) & 31u)),
              velocityShift_(static_cast<int>((static_cast<unsigned>(call.scale) + 2u) & 31u)) {
            if constexpr (weighted) {
                for (int k = 0; k < 2; ++k) factor_[k] = loadColumns(call.val + k * columns + column) & lowHalves();
                accelerationFactor_ = toFloat(loadColumns(call.val + 2 * columns + column));
                energyFactor_ = call.val[energyColumn];
            }
        }

        VORN_INLINE V load(const Vorn16s* p) const { return toFloat(loadColumns(p)); }
        VORN_INLINE V take(const Vorn16s* frame, Vorn16s* to) const {
            W x = loadColumns(frame + column_);
            if constexpr (weighted) x = timesFactor(x, 0);
            if constexpr (hasEnergy) {
                const float energy = energyOf(frame[energyColumn], frame[energyColumn + 1]);
                x = withEnergy(x, static_cast<std::int32_t>(weighted ? energyFactor_ * energy : energy));
            }
            x = shiftRight(x, shift_);
            storeColumns(to, x);
            if constexpr (!weighted) return toFloat(x);
            return minOf(maxOf(toFloat(x), splat<V>(-32768)), splat<V>(32767));
        }
        VORN_INLINE void storeVelocity(Vorn16s* to, V sum) const {
            const W x = truncToInt(sum * splat<V>(4));
            storeColumns(to, weighted ? scaledProduct(x) : shiftRight(x, velocityShift_));
        }
        VORN_INLINE void storeAcceleration(Vorn16s* to, V sum) const {
            storeColumns(to, shiftRight(truncToInt(weighted ? accelerationFactor_ * sum : sum), shift_));
        }

    private:
        static VORN_INLINE W lowHalves() { return splat<W>(0xFFFF); }
        // The lower 16 bits of x times the factor.
        VORN_INLINE W timesFactor(W x, int k) const { return mulAddPairs(shortsOf(x), shortsOf(factor_[k])); }
        // x times the velocity's factor, of up to 36 bits, shifted right; beyond 16 bits only the sign is right. With
        // x = 2^14 high + low the product is 2^14 above + below.
        VORN_INLINE W scaledProduct(W x) const {
            constexpr int digit = 14;
            const W mask = splat<W>((1 << digit) - 1);
            const W low = timesFactor(x & mask, 1), high = timesFactor(shiftRight<digit>(x), 1);
            const W above = high + shiftRight<digit>(low), below = low & mask;
            if (velocityShift_ >= digit) return shiftRight(above, velocityShift_ - digit);
            const W bounded = minOf(maxOf(above, splat<W>(-32768)), splat<W>(32767));
            return shiftLeft(bounded, digit - velocityShift_) + shiftRight(below, velocityShift_);
        }

        std::ptrdiff_t column_;
        int shift_, velocityShift_;
        W factor_[weighted ? 2 : 1];
        V accelerationFactor_;
        float energyFactor_;
    };
};

// A block of rows. Rows before the utterance are its first one, rows behind it the last one.
template <class T>
struct Block {
    const T* frame;  // the first new one
    T* row;          // where it goes
    std::ptrdiff_t step;
    bool starts;             // the utterance: the first frames complete no window
    std::ptrdiff_t frames;   // each of which, but for those, completes the window of the row four rows before it
    std::ptrdiff_t repeats;  // of the last row
};

template <class Columns, class T>
VORN_INLINE void slideWindow(Block<T> block, std::ptrdiff_t column, const Columns& stripe) {
    const std::ptrdiff_t step = block.step;
    T* row = block.row + column;
    delta::Stage<reach, V, NineRows> window{NineRows()};
    if (block.starts) {
        window.repeat(stripe.take(block.frame, row));
        for (int i = 0; i < reach; ++i, block.frame += frameWidth, row += step) {
            window.push(stripe.take(block.frame, row));
        }
        block.frames -= reach;
    } else {
        window.resume(stripe, row, step);
    }
    const auto push = [&](V x) __attribute__((always_inline)) {
        const auto sums = window.push(x);
        T* centre = row - reach * step;
        stripe.storeVelocity(centre + columns, sums.velocity);
        stripe.storeAcceleration(centre + 2 * columns, sums.acceleration);
        row += step;
    };
    for (; block.frames > 0; --block.frames, block.frame += frameWidth) push(stripe.take(block.frame, row));
    for (; block.repeats > 0; --block.repeats) push(window.newest());
}

// Vector by vector, and so that a long call reads and writes memory once: the windows of a block find the rows before
// it in dst.
template <class Arithmetic, class T>
void deltas(const Call<T>& call) {
    constexpr std::ptrdiff_t blockBytes = 24 << 10, leastRows = 16;
    const std::ptrdiff_t blockRows =
        call.height <= leastRows ? leastRows
                                 : std::max(leastRows, blockBytes / static_cast<std::ptrdiff_t>(sizeof(T)) / call.step);
    const bool starts = call.mode & vornDeltaFirst, ends = call.mode & vornDeltaLast;
    Block<T> block = {call.src, starts ? call.dst : call.dst + lookback * call.step, call.step, starts, 0, 0};
    std::ptrdiff_t left = call.height;
    do {
        block.frames = std::min(left, blockRows);
        left -= block.frames;
        if (left == 0 && ends) block.repeats = reach;
        for (std::ptrdiff_t column = 0; column < lastVector; column += V::lanes) {
            slideWindow(block, column, typename Arithmetic::template Columns<false>(call, column));
        }
        slideWindow(block, lastVector, typename Arithmetic::template Columns<true>(call, lastVector));
        block.frame += block.frames * frameWidth;
        block.row += block.frames * block.step;
        block.starts = false;
    } while (left > 0);
}

}  // namespace vorn::aurora_delta
