// Division by elements and by constants. Integer quotients are exact: the division in floating point is precise enough
// for that, for the reasons beside each.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

#include "arithmetic/ops.h"
#include "frame/scale.h"
#include "loops/operands.h"
#include "simd/divide.h"
#include "simd/simd.h"

namespace vorn {

template <class V>
using MaskOf = decltype(V{} == V{});

// Remembers whether a divisor was zero. The lanes that fill up a short vector are ones.
template <class Mask, int lanesAtOnce, bool lightWork>
class WatchesDivisor {
public:
    static constexpr int lanes = lanesAtOnce;
    static constexpr bool light = lightWork;
    static constexpr int padding = 1;
    bool metZero() const { return any(zeros_); }

protected:
    VORN_INLINE Mask note(Mask zero) const {
        zeros_ = zeros_ | zero;
        return zero;
    }

private:
    mutable Mask zeros_{};
};

// Floats: the processor's division says everything.
template <class T>
struct FloatQuotient : WatchesDivisor<MaskOf<Wide<T>>, Wide<T>::lanes, true> {
    using V = Wide<T>;
    VORN_INLINE V operator()(V dividend, V divisor) const {
        this->note(divisor == splat<V>(0));
        return divided(dividend, divisor);
    }
};

// Integers.
//
// The quotient x = a 2^-sf / b is rounded to the nearest integer, ties to even, in nearest mode. A floating-point
// quotient y with p bits differs from x by at most |x| 2^-p. It rounds to the same integer as x if no tie lies between
// the two; the ties nearest to x, other than x itself, are at least 2^-s / 2|b| away, where s = max(sf, 0). So
// |a| 2^(-sf + s) < 2^(p - 1) makes it exact. Where the result saturates anyhow, nothing is asked.
//
// A zero divisor counts as one so small that every dividend but 0 saturates.

template <class V>
VORN_INLINE V tinyDivisor() {
    return splat<V>(sizeof(typename V::Element) == 4 ? 0x1p-100f : 0x1p-100);
}

template <class V>
struct RealDivision {
    V factor, lowest, highest;
    VORN_INLINE V operator()(V a, V b, MaskOf<V> zero) const {
        return between(lowest, a * factor / select(zero, tinyDivisor<V>(), b), highest);
    }
};

// The nearest integer, in nearest mode, for |x| < 2^51.
VORN_INLINE f64xN nearestInteger(f64xN x) {
    const f64xN shift = splat<f64xN>(0x1.8p52);
    return (x + shift) - shift;
}

// Exact also where |a| 2^-sf reaches 2^52: the remainder decides. The nearest integer n to y is the nearest to x or its
// neighbour; N - n b is computed without a rounding, n in two pieces of which no product with b has more than 48 bits.
struct CorrectedDivision {
    f64xN factor, lowest, highest;
    VORN_INLINE f64xN operator()(f64xN a, f64xN b, MaskOf<f64xN> zero) const {
        const f64xN divisor = select(zero, tinyDivisor<f64xN>(), b), dividend = a * factor;
        const f64xN bound = splat<f64xN>(0x1p32);
        const f64xN n = nearestInteger(maxOf(minOf(dividend / divisor, bound), -bound));
        const f64xN upper = nearestInteger(n * splat<f64xN>(0x1p-16)) * splat<f64xN>(0x1p16);
        const f64xN remainder = (dividend - upper * divisor) - (n - upper) * divisor;
        const f64xN twice = absOf(remainder + remainder), size = absOf(divisor);
        const f64xN half = n * splat<f64xN>(0.5);
        const auto away = (twice > size) | ((twice == size) & (nearestInteger(half) != half));
        const f64xN sign = (remainder ^ divisor) & splat<f64xN>(-0.0);
        return between(lowest, n + select(away, splat<f64xN>(1) | sign, splat<f64xN>(0)), highest);
    }
};

// Above these scale factors every quotient by a constant other than 0 rounds to 0; by a vector, a zero among the
// divisors still saturates.
inline constexpr int upperScaleOfQuotients8u = 8, upperScaleOfQuotients16s = 15;

// From integer lanes to floating-point ones and back.

VORN_INLINE Halves<i32xN> widen(i16xN a) { return zip(a, shiftRight<15>(a)); }
VORN_INLINE Halves<i32xN> widenUnsigned(i16xN a) { return zip(a, splat<i16xN>(0)); }

template <class V, class Division, int lanesAtOnce>
class IntegerQuotient : public WatchesDivisor<MaskOf<V>, lanesAtOnce, false> {
public:
    // The quotient with scale factor sf, from lowest to highest.
    IntegerQuotient(int sf, typename V::Element lowest, typename V::Element highest)
        : division_{splat<V>(static_cast<typename V::Element>(GetScale_32s64f(sf))), splat<V>(lowest),
                    splat<V>(highest)} {}

protected:
    VORN_INLINE i32xN quotient(i32xN a, i32xN b) const {
        if constexpr (sizeof(typename V::Element) == 4) {
            return roundToInt(divide(toFloat(a), toFloat(b)));
        } else {
            return roundToInt(divide(toDoubleLow(a), toDoubleLow(b)), divide(toDoubleHigh(a), toDoubleHigh(b)));
        }
    }
    VORN_INLINE Halves<i32xN> quotient(Halves<i32xN> a, Halves<i32xN> b) const {
        return {quotient(a.low, b.low), quotient(a.high, b.high)};
    }

private:
    VORN_INLINE V divide(V a, V b) const { return division_(a, b, this->note(b == splat<V>(0))); }
    Division division_;
};

// Single precision is exact: 255 x 2^15 < 2^23, and at sf = -16 every quotient saturates.
struct Quotient8u : IntegerQuotient<f32xN, RealDivision<f32xN>, i8xN::lanes> {
    explicit Quotient8u(int sf) : IntegerQuotient(std::clamp(sf, -16, 9), 0, 255) {}
    VORN_INLINE i8xN operator()(i8xN dividend, i8xN divisor) const {
        const auto a = splitUnsigned(dividend), b = splitUnsigned(divisor);
        return joinSatUnsigned(Halves<i16xN>{joinSat(quotient(widenUnsigned(a.low), widenUnsigned(b.low))),
                                             joinSat(quotient(widenUnsigned(a.high), widenUnsigned(b.high)))});
    }
};

// Single precision is exact from sf = -7 on (2^15 x 2^7 < 2^23), double precision for the rest.
template <class V>
struct Quotient16s : IntegerQuotient<V, RealDivision<V>, i16xN::lanes> {
    using Base = IntegerQuotient<V, RealDivision<V>, i16xN::lanes>;
    explicit Quotient16s(int sf) : Base(std::clamp(sf, -31, 16), -32768, 32767) {}
    VORN_INLINE i16xN operator()(i16xN dividend, i16xN divisor) const {
        return joinSat(this->quotient(widen(dividend), widen(divisor)));
    }
};
inline constexpr int leastScaleInSingle16s = -7;

// Double precision is exact from sf = -20 on (2^31 x 2^20 < 2^52).
template <class Division>
struct Quotient32s : IntegerQuotient<f64xN, Division, i32xN::lanes> {
    using Base = IntegerQuotient<f64xN, Division, i32xN::lanes>;
    explicit Quotient32s(int sf) : Base(std::clamp(sf, -63, 33), -2147483648.0, 2147483647.0) {}
    VORN_INLINE i32xN operator()(i32xN dividend, i32xN divisor) const { return this->quotient(dividend, divisor); }
};
inline constexpr int leastUncorrectedScale32s = -20;

// Double precision is exact: a quotient that does not saturate is below 2^16, and |b| at most 2^15.
struct Quotient32s16s : IntegerQuotient<f64xN, RealDivision<f64xN>, i16xN::lanes> {
    explicit Quotient32s16s(int sf) : IntegerQuotient(std::clamp(sf, -30, 32), -32768, 32767) {}
    VORN_INLINE i16xN operator()(Halves<i32xN> dividend, i16xN divisor) const {
        return narrowSat(quotient(dividend.low, widenLow(divisor)), quotient(dividend.high, widenHigh(divisor)));
    }
};

// Both are without a sign: 65535 < 2^23.
struct Quotient16u : IntegerQuotient<f32xN, RealDivision<f32xN>, i16xN::lanes> {
    Quotient16u() : IntegerQuotient(0, 0, 65535) {}
    VORN_INLINE i16xN operator()(i16xN dividend, i16xN divisor) const {
        const auto q = quotient(widenUnsigned(dividend), widenUnsigned(divisor));
        const i32xN middle = splat<i32xN>(32768);
        return joinSat(Halves<i32xN>{q.low - middle, q.high - middle}) ^ splat<i16xN>(-32768);
    }
};

// a / b = (a conj(b)) / |b|^2 with an exact numerator below 2^32 and an exact denominator up to 2^31: with |x| < 2^16
// what does not saturate is exact in double precision, and no quotient is above 2^16 or, other than 0, below 2^-31.
struct Quotient16sc : WatchesDivisor<MaskOf<f64xN>, i16xN::lanes, false> {
    f64xN factor;
    explicit Quotient16sc(int sf) : factor(splat<f64xN>(GetScale_32s64f(std::clamp(sf, -50, 20)))) {}
    VORN_INLINE i16xN operator()(i16xN dividend, i16xN divisor) const {
        const auto a = widen(dividend), b = widen(divisor);
        return joinSat(Halves<i32xN>{quotient(a.low, b.low), quotient(a.high, b.high)});
    }

private:
    VORN_INLINE i32xN quotient(i32xN a, i32xN b) const {
        return roundToInt(divide(toDoubleLow(a), toDoubleLow(b)), divide(toDoubleHigh(a), toDoubleHigh(b)));
    }
    VORN_INLINE f64xN divide(f64xN a, f64xN b) const {
        const auto zero = note(zeros(b));
        const f64xN squares = b * b;
        const f64xN product = subAdd(a * dupEven(b), exchanged(a) * dupOdd(b));
        const f64xN numerator = select(zero, a, product);
        const f64xN denominator = select(zero, tinyDivisor<f64xN>(), squares + exchanged(squares));
        return between(splat<f64xN>(-32768), numerator * factor / denominator, splat<f64xN>(32767));
    }
};

}  // namespace vorn
