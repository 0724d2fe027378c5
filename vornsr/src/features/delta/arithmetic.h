// What the differences along time are made of: singles, or 16-bit integers with a factor, a shift and saturation.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/wrap.h"
#include "simd/simd.h"

namespace vorn::delta {

// Singles: each step rounds.
struct Singles {
    // Times the factor, over the rows t - lag to t + lag: past holds the rows t - lag to t + lag - 1.
    template <int lag, class V>
    VORN_INLINE auto differences(V factor) const {
        return [factor](const V(&past)[2 * lag], V newest) __attribute__((always_inline)) {
            if constexpr (lag == 1) {
                return (newest - past[0]) * factor;
            } else {
                const V near = past[3] - past[1];
                const V far = newest - past[0];
                return (near + far + far) * factor;
            }
        };
    }
    template <class V>
    VORN_INLINE auto product(V factor) const {
        return [factor](V x) __attribute__((always_inline)) { return x * factor; };
    }
};

// 32-bit lanes twice as many as a register has, in the order of zip and joinSat.
template <class W>
VORN_INLINE Halves<W> operator+(Halves<W> a, Halves<W> b) {
    return {a.low + b.low, a.high + b.high};
}
template <class W>
VORN_INLINE Halves<W> operator+(Halves<W> a, W both) {
    return {a.low + both, a.high + both};
}

// x1 y1 + x2 y2 in 32 bits, lane by lane. y1, y2: a pair for each lane, as zip makes it, or one pair for all lanes.
template <class V, class W>
VORN_INLINE Halves<W> twoProducts(V x1, V x2, Halves<W> y) {
    const Halves<W> pairs = zip(x1, x2);
    return {mulAddPairs(shortsOf(pairs.low), shortsOf(y.low)), mulAddPairs(shortsOf(pairs.high), shortsOf(y.high))};
}
template <class V>
VORN_INLINE auto products(V x, V y) {
    return zip(mulLow(x, y), mulHigh(x, y));
}

// The way from 32 bits to a result: times 2^-scale without rounding, the count modulo 32. A negative scale shifts left,
// and what leaves the 32 bits is lost.
class Shift {
public:
    explicit Shift(int scale)
        : left_(scale < 0),
          count_(static_cast<int>((left_ ? 0u - static_cast<unsigned>(scale) : static_cast<unsigned>(scale)) & 31u)) {}

    VORN_INLINE std::int16_t saturated(std::int32_t x) const {
        return saturate<std::int16_t>(left_ ? static_cast<std::int32_t>(static_cast<std::uint32_t>(x) << count_)
                                            : x >> count_);
    }
    template <class W>
    VORN_INLINE auto saturated(Halves<W> x) const {
        if (left_) return joinSat(Halves<W>{shiftLeft(x.low, count_), shiftLeft(x.high, count_)});
        return joinSat(Halves<W>{shiftRight(x.low, count_), shiftRight(x.high, count_)});
    }

private:
    bool left_;
    int count_;
};

// 16-bit integers whose differences wrap to 16 bits; their products and sums wrap in 32 bits.
struct WrappedDifferences {
    Shift shift;

    template <int lag, class V>
    VORN_INLINE auto differences(V factor) const {
        if constexpr (lag == 1) {
            return [ factor, shift = shift ](const V(&past)[2], V newest) __attribute__((always_inline)) {
                return shift.saturated(products(newest - past[0], factor));
            };
        } else {
            const auto twice = zip(factor, factor);
            return [ factor, twice, shift = shift ](const V(&past)[4], V newest) __attribute__((always_inline)) {
                const V far = newest - past[0];
                return shift.saturated(twoProducts(past[3] - past[1], far, twice) + products(far, factor));
            };
        }
    }
    template <int lag>
    VORN_INLINE auto differences(std::int16_t factor) const {
        return [factor, shift = shift](const std::int16_t(&past)[2 * lag], std::int16_t newest) {
            const auto far = static_cast<std::int16_t>(newest - past[0]);
            if constexpr (lag == 1) {
                return shift.saturated(far * factor);
            } else {
                const auto near = static_cast<std::int16_t>(past[3] - past[1]);
                return shift.saturated(wrapMul(near + 2 * far, factor));
            }
        };
    }
    template <class V>
    VORN_INLINE auto product(V factor) const {
        return [ factor, shift = shift ](V x) __attribute__((always_inline)) {
            return shift.saturated(products(x, factor));
        };
    }
    VORN_INLINE auto product(std::int16_t factor) const {
        return [factor, shift = shift](std::int16_t x) { return shift.saturated(x * factor); };
    }
};

// 16-bit integers whose differences keep all their bits, 17 of them; one factor for all lanes. A difference times the
// factor is a factor + (-1 - b) factor + factor, where every operand has its 16 bits.
struct WholeDifferences {
    Shift shift;

    template <int lag, class V>
    VORN_INLINE auto differences(V factor) const {
        using W = decltype(intsOf(factor));
        const Halves<W> twice = {intsOf(factor), intsOf(factor)};
        // The last term of each difference: once, or once and twice.
        const W rest = mulAddPairs(factor, shortsOf(splat<W>(lag == 1 ? 1 : 0x00020001)));
        const V minusOne = splat<V>(-1);
        return [ =, shift = shift ](const V(&past)[2 * lag], V newest) __attribute__((always_inline)) {
            const auto far = twoProducts(newest, past[0] ^ minusOne, twice);
            if constexpr (lag == 1) {
                return shift.saturated(far + rest);
            } else {
                return shift.saturated(twoProducts(past[3], past[1] ^ minusOne, twice) + far + far + rest);
            }
        };
    }
    template <int lag>
    VORN_INLINE auto differences(std::int16_t factor) const {
        return [factor, shift = shift](const std::int16_t(&past)[2 * lag], std::int16_t newest) {
            const std::int32_t far = newest - past[0];
            if constexpr (lag == 1) {
                return shift.saturated(far * factor);
            } else {
                return shift.saturated(wrapMul(past[3] - past[1] + 2 * far, factor));
            }
        };
    }
};

// Factors shared by all columns.
template <class T>
struct SharedFactors {
    static constexpr bool scaleFrames = false;
    T val[2];  // of the delta, of the acceleration

    template <int result, class Stripe>
    VORN_INLINE auto of(const Stripe& stripe, std::ptrdiff_t) const {
        return stripe.all(val[result - 1]);
    }
};

// Factors of each column: of the frames, of the deltas, of the accelerations, width of them each.
template <class T>
struct ColumnFactors {
    static constexpr bool scaleFrames = true;
    const T* pVal;
    std::ptrdiff_t width;

    template <int result, class Stripe>
    VORN_INLINE auto of(const Stripe& stripe, std::ptrdiff_t column) const {
        return stripe.load(pVal + result * width + column);
    }
};

// What makes a result of the rows around it.
template <class Arithmetic, class Factors>
struct Rule {
    static constexpr bool scalesFrames = Factors::scaleFrames;
    Arithmetic arithmetic;
    Factors factors;

    template <int lag, int result, class Stripe>
    VORN_INLINE auto differences(const Stripe& stripe, std::ptrdiff_t column) const {
        return arithmetic.template differences<lag>(factors.template of<result>(stripe, column));
    }
    // From a frame as it comes to the frame as it is stored.
    template <class Stripe>
    VORN_INLINE auto frame(const Stripe& stripe, std::ptrdiff_t column) const {
        if constexpr (scalesFrames) {
            return arithmetic.product(factors.template of<0>(stripe, column));
        } else {
            return [](auto x) __attribute__((always_inline)) { return x; };
        }
    }
};

}  // namespace vorn::delta
