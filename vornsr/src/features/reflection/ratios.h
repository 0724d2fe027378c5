// Ratios made of reflection coefficients, and the running product of area ratios.
#pragma once

#include <bit>
#include <cstdint>
#include <limits>

#include "elementary/logarithm_kernels.h"
#include "loops/operands.h"
#include "simd/divide.h"
#include "simd/part.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::reflection {

// Integers as singles, times a factor. What fills up a short vector is the integer's.
struct ReadableShorts {
    const Vorn16s* p;
    f32xN factor;
    VORN_INLINE f32xN at(std::int64_t i) const { return toFloat(loadWidened<i32xN>(p + i)) * factor; }
    VORN_INLINE void fetch(std::int64_t i) const { fetchAhead(p + i); }
    template <int rest>
    VORN_INLINE f32xN first(std::int64_t n) const {
        return toFloat(widenLow(partOf<i16xN, rest>(p, n))) * factor;
    }
};
// The same as it is handed to a function.
struct Shorts {
    const Vorn16s* p;
    Vorn32f factor;
    VORN_INLINE Shorts from(std::int64_t i) const { return {p + i, factor}; }
};
VORN_INLINE ReadableShorts readable(Shorts a) { return {a.p, splat<f32xN>(a.factor)}; }

// A quotient whose divisor is zero is +infinity, whatever is divided and whichever sign the zero has; that there was
// one is remembered. Zeros are rare: a branch costs less than their exchange.
struct WatchedQuotient : Operation<f32xN::lanes, true> {
    static constexpr int padding = 1;  // gives no divisor of zero
    bool metZero() const { return metZero_; }

protected:
    VORN_INLINE f32xN quotient(f32xN dividend, f32xN divisor) const {
        const f32xN q = divided(dividend, divisor);
        const auto zero = divisor == splat<f32xN>(0);
        if (!any(zero)) [[likely]]
            return q;
        metZero_ = true;
        return select(zero, splat<f32xN>(std::numeric_limits<Vorn32f>::infinity()), q);
    }

private:
    mutable bool metZero_ = false;
};

// (1 - k) / (1 + k)
struct AreaRatio : WatchedQuotient {
    VORN_INLINE f32xN operator()(f32xN k, f32xN one) const { return quotient(one - k, one + k); }
};
// (|a| - |b|) / (a + b)
struct Tilt : WatchedQuotient {
    VORN_INLINE f32xN operator()(f32xN a, f32xN b) const { return quotient(absOf(a) - absOf(b), a + b); }
};
// (2|a| - (|a| + |b|)) / (|a| + |b|)
struct AbsTilt : WatchedQuotient {
    VORN_INLINE f32xN operator()(f32xN a, f32xN b) const {
        const f32xN size = absOf(a), sum = size + absOf(b);
        return quotient((size + size) - sum, sum);
    }
};

// The logarithm of the area ratio of k, which is limited to -limit..limit with limit below 1: the ratio is then a
// normal positive number. A not-a-number stays one.
struct LogAreaRatio : Operation<f32xN::lanes, false> {
    static bool metZero() { return false; }
    VORN_INLINE f32xN operator()(f32xN k, f32xN limit) const {
        const f32xN one = splat<f32xN>(1), limited = minOf(limit, maxOf(-limit, k));
        const f32xN ln = lnOfSeparated(separate(divided(one - limited, one + limited)));
        return select(unordered(k, k), k, ln);
    }
};

// The product of the area ratios so far. From the first k of -1 on it is an infinity, whose sign each further k decides
// by the one before it; a 1 there ends the numbers. May be called for one piece of a vector after the other.
class RunningProduct {
public:
    // k(i) gives a coefficient; dst may be where it comes from.
    template <class Coefficient>
    VORN_INLINE void operator()(const Coefficient& k, Vorn32f* dst, std::int64_t len) {
        Vorn32f y = y_;
        std::int64_t i = 0;
        if (phase_ == Phase::ratios) {
            for (; i < len; ++i) {
                const Vorn32f ki = k(i);
                if (std::bit_cast<std::int32_t>(ki) == std::bit_cast<std::int32_t>(-1.0f)) break;
                dst[i] = y = y * (1 - ki) / (ki + 1);
            }
            if (i < len) phase_ = Phase::infinities;
        }
        for (; i < len; ++i) dst[i] = y = behindMinusOne(k(i), y);
        y_ = y;
    }
    VornStatus status() const { return status_; }

private:
    enum class Phase { ratios, infinities, ended };

    Vorn32f behindMinusOne(Vorn32f k, Vorn32f y) {
        constexpr Vorn32f infinity = std::numeric_limits<Vorn32f>::infinity();
        if (k == 1) phase_ = Phase::ended;
        if (phase_ == Phase::ended) return std::numeric_limits<Vorn32f>::quiet_NaN();
        if (k == -1) status_ = vornStsDivByZero;
        const bool within = k >= -1 && k <= 1;
        const bool upwards = within ? y > 0 : !(y >= 0);
        return upwards ? infinity : -infinity;
    }

    Vorn32f y_ = 1;
    Phase phase_ = Phase::ratios;
    VornStatus status_ = vornStsNoErr;
};

}  // namespace vorn::reflection
