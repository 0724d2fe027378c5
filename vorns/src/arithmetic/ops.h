// The operations of element-wise arithmetic on registers: integers exactly, floats as the processor does.
#pragma once

#include <bit>
#include <cstdint>

#include "arithmetic/scale.h"
#include "loops/operands.h"
#include "simd/simd.h"

namespace vorn {

// Sums and differences in lanes of 32 bits saturate too.
VORN_INLINE i32xN saturated(i32xN wrapped, i32xN overflow, i32xN sign) {
    return select(splat<i32xN>(0) > overflow, shiftRight<31>(sign) ^ highestOf<i32xN>(), wrapped);
}
VORN_INLINE i32xN addSat(i32xN a, i32xN b) {
    const i32xN sum = a + b;
    return saturated(sum, (a ^ sum) & (b ^ sum), a);
}
VORN_INLINE i32xN subSat(i32xN a, i32xN b) {
    const i32xN difference = a - b;
    return saturated(difference, (a ^ b) & (a ^ difference), a);
}

// Exact values. a + b and a - b need one bit more than the operands; half of them does not: a + b = 2 (a & b) + (a ^
// b), and -b = ~b + 1 (Warren, Hacker's Delight, 2002, chapter 2).
template <class Register>
struct ExactSum {
    using V = Register;
    V a, b;
    VORN_INLINE V value() const { return addSat(a, b); }
    VORN_INLINE V half() const { return (a & b) + shiftRight<1>(a ^ b); }
    VORN_INLINE V low() const { return a ^ b; }
};
template <class Register>
struct ExactDifference {
    using V = Register;
    V a, b;
    VORN_INLINE V value() const { return subSat(a, b); }
    VORN_INLINE V half() const {
        const V c = b ^ splat<V>(-1);
        return (a | c) - shiftRight<1>(a ^ c);
    }
    VORN_INLINE V low() const { return a ^ b; }
};

// Up to 255 x 255 in 16 bits without a sign; whatever is above 255 saturates.
struct ExactProduct8u {
    using V = i16xN;
    V s;
    VORN_INLINE V value() const { return s - subSatUnsigned(s, splat<V>(255)); }
    VORN_INLINE V half() const { return shiftRightLogical<1>(s); }
    VORN_INLINE V low() const { return s; }
};

// A 64-bit value, stored in 32 bits.
struct Exact64 {
    using V = i64xN;
    V s;
    VORN_INLINE V value() const { return saturateTo32(s); }
    VORN_INLINE V half() const { return shiftRight(s, 1); }
    VORN_INLINE V low() const { return s; }
};

// An integer operation says:
//   limits        of its scale factor
//   exactBits     the width of the lanes of exact values
//   exact(a, b)   the exact values: one register of them, or Halves
//   plain(a, b)   the saturated result for scale factor 0
//   join(r)       what the scaling has left, as the register or registers of the result

template <class T>
struct SameWidth {
    using V = Wide<T>;
    static constexpr int lanes = V::lanes;
    static constexpr ScaleLimits limits = sizeof(T) == 2 ? limitsOfSums16s : limitsOfSums32s;
    static constexpr int exactBits = widthOf<V>;
    static VORN_INLINE V join(V r) { return r; }
};

template <class T>
struct SumOf : SameWidth<T> {
    using V = Wide<T>;
    static VORN_INLINE ExactSum<V> exact(V a, V b) { return {a, b}; }
    static VORN_INLINE V plain(V a, V b) { return addSat(a, b); }
};

template <class T>
struct DifferenceOf : SameWidth<T> {
    using V = Wide<T>;
    static VORN_INLINE ExactDifference<V> exact(V a, V b) { return {a, b}; }
    static VORN_INLINE V plain(V a, V b) { return subSat(a, b); }
};

struct Bytes {
    static constexpr int lanes = i8xN::lanes;
    static constexpr ScaleLimits limits = limitsOfSums8u;
    static constexpr int exactBits = 16;
    static VORN_INLINE i8xN join(Halves<i16xN> r) { return joinSatUnsigned(r); }
};

struct Sum8u : Bytes {
    static VORN_INLINE Halves<Whole<i16xN>> exact(i8xN a, i8xN b) {
        const auto x = splitUnsigned(a), y = splitUnsigned(b);
        return {{x.low + y.low}, {x.high + y.high}};
    }
    static VORN_INLINE i8xN plain(i8xN a, i8xN b) { return addSatUnsigned(a, b); }
};

struct Difference8u : Bytes {
    static VORN_INLINE Halves<Whole<i16xN>> exact(i8xN a, i8xN b) {
        const auto x = splitUnsigned(a), y = splitUnsigned(b);
        return {{x.low - y.low}, {x.high - y.high}};
    }
    static VORN_INLINE i8xN plain(i8xN a, i8xN b) { return subSatUnsigned(a, b); }
};

struct Product8u : Bytes {
    static constexpr ScaleLimits limits = limitsOfProducts8u;
    static VORN_INLINE Halves<ExactProduct8u> exact(i8xN a, i8xN b) {
        const auto x = splitUnsigned(a), y = splitUnsigned(b);
        return {{mulLow(x.low, y.low)}, {mulLow(x.high, y.high)}};
    }
    static VORN_INLINE i8xN plain(i8xN a, i8xN b) {
        const auto s = exact(a, b);
        return joinSatUnsigned({s.low.value(), s.high.value()});
    }
};

VORN_INLINE Halves<i32xN> products(i16xN a, i16xN b) { return zip(mulLow(a, b), mulHigh(a, b)); }

struct Product16s {
    static constexpr int lanes = i16xN::lanes;
    static constexpr ScaleLimits limits = limitsOfProducts16s;
    static constexpr int exactBits = 32;
    static VORN_INLINE Halves<Whole<i32xN>> exact(i16xN a, i16xN b) {
        const auto s = products(a, b);
        return {{s.low}, {s.high}};
    }
    static VORN_INLINE i16xN plain(i16xN a, i16xN b) { return joinSat(products(a, b)); }
    static VORN_INLINE i16xN join(Halves<i32xN> r) { return joinSat(r); }
};

// a has no sign: where b is negative, the unsigned product is too large by 2^16 a.
struct Product16u16s : Product16s {
    static constexpr ScaleLimits limits = limitsOfProducts16u16s;
    static VORN_INLINE Halves<Whole<i32xN>> exact(i16xN a, i16xN b) {
        const auto s = zip(mulLow(a, b), mulHighUnsigned(a, b) - (a & shiftRight<15>(b)));
        return {{s.low}, {s.high}};
    }
    static VORN_INLINE i16xN plain(i16xN a, i16xN b) {
        const auto s = exact(a, b);
        return joinSat({s.low.s, s.high.s});
    }
};

struct Product16s32s : Product16s {
    static constexpr ScaleLimits limits = limitsOfProducts16s32s;
    static VORN_INLINE Halves<i32xN> plain(i16xN a, i16xN b) { return inOrder(products(a, b)); }
    static VORN_INLINE Halves<i32xN> join(Halves<i32xN> r) { return inOrder(r); }
};

// (a.re b.re - a.im b.im, a.re b.im + a.im b.re). The imaginary part is 2^31 when all four numbers are -32768, and
// there alone its 32 bits say -2^31: 2^31 - 1 in its place gives the same result under every scale factor.
struct Product16sc : Product16s {
    static constexpr ScaleLimits limits = limitsOfProducts16sc;
    static VORN_INLINE Halves<Whole<i32xN>> exact(i16xN a, i16xN b) {
        const i32xN realOnly = splat<i32xN>(0xFFFF), pairs = std::bit_cast<i32xN>(b);
        const i16xN aRe = a & std::bit_cast<i16xN>(realOnly), aIm = andNot(std::bit_cast<i16xN>(realOnly), a);
        const i16xN swapped = std::bit_cast<i16xN>(shiftLeft<16>(pairs) | shiftRightLogical<16>(pairs));
        const i32xN re = mulAddPairs(aRe, b) - mulAddPairs(aIm, b), wrapped = mulAddPairs(a, swapped);
        const i32xN lowest = splat<i32xN>(std::numeric_limits<std::int32_t>::min());
        const auto s = zip(re, select(wrapped == lowest, highestOf<i32xN>(), wrapped));
        return {{s.low}, {s.high}};
    }
    static VORN_INLINE i16xN plain(i16xN a, i16xN b) {
        const auto s = exact(a, b);
        return joinSat({s.low.s, s.high.s});
    }
};

// Real parts in low, imaginary parts in high; both are joined to pairs of 32 bits.
struct Complex64 {
    static constexpr int lanes = i32xN::lanes;
    static constexpr ScaleLimits limits = limitsOfProducts32sc;
    static constexpr int exactBits = 64;
    static VORN_INLINE i32xN join(Halves<i64xN> r) {
        const i64xN re = saturateTo32(r.low), im = saturateTo32(r.high);
        return std::bit_cast<i32xN>((re & splat<i64xN>(0xFFFFFFFF)) | shiftLeft<32>(im));
    }
};

VORN_INLINE i32xN oddToEven(i32xN a) { return std::bit_cast<i32xN>(shiftRightLogical<32>(std::bit_cast<i64xN>(a))); }

// As in 16sc: the sum of the imaginary part reaches 2^63 when all four numbers are -2^31, and 2^63 - 1 stands for it.
struct Product32sc : Complex64 {
    static VORN_INLINE Halves<Exact64> exact(i32xN a, i32xN b) {
        const i32xN aIm = oddToEven(a), bIm = oddToEven(b);
        const i64xN reIm = mulEven(a, bIm), imRe = mulEven(aIm, b), wrapped = reIm + imRe;
        const i64xN overflow = shiftRight(andNot(reIm | imRe, wrapped), 63);
        return {{mulEven(a, b) - mulEven(aIm, bIm)}, {wrapped ^ overflow}};
    }
    static VORN_INLINE i32xN plain(i32xN a, i32xN b) {
        const auto s = exact(a, b);
        return join({s.low.s, s.high.s});
    }
};

// a is real, one number in each 64 bits.
struct Product32s32sc : Complex64 {
    static VORN_INLINE Halves<Exact64> exact(i64xN a, i32xN b) {
        const i32xN real = std::bit_cast<i32xN>(a);
        return {{mulEven(real, b)}, {mulEven(real, oddToEven(b))}};
    }
    static VORN_INLINE i32xN plain(i64xN a, i32xN b) {
        const auto s = exact(a, b);
        return join({s.low.s, s.high.s});
    }
};

// An integer operation under one case of the scale factor.
template <class Op, class Case>
struct Scaled : Operation<Op::lanes, std::is_same_v<Case, Unscaled>> {
    Case scale;
    explicit Scaled(Case how) : scale(how) {}
    template <class A, class B>
    VORN_INLINE auto operator()(A a, B b) const {
        if constexpr (std::is_same_v<Case, Unscaled>) {
            return Op::plain(a, b);
        } else {
            return Op::join(applied(Op::exact(a, b)));
        }
    }

private:
    template <class Exact>
    VORN_INLINE auto applied(Exact s) const {
        return scale(s);
    }
    template <class Exact>
    VORN_INLINE auto applied(Halves<Exact> s) const {
        return Halves<typename Exact::V>{scale(s.low), scale(s.high)};
    }
};

// x between two bounds; not a number gives the upper one. What is converted to integers stays within their range,
// because setting the flag of an invalid conversion, and taking it back, costs more than the work on a short vector.
template <class V>
VORN_INLINE V between(V lowest, V x, V highest) {
    return maxOf(minOf(x, highest), lowest);
}

// The product of 32-bit integers goes through double precision: what is above 2^53 loses its low bits. Without a scale
// factor it is truncated to an integer, with one it is rounded to nearest.
template <bool rounded>
struct Product32s : Operation<i32xN::lanes, false> {
    f64xN factor;
    explicit Product32s(double scale) : factor(splat<f64xN>(scale)) {}
    VORN_INLINE i32xN operator()(i32xN a, i32xN b) const {
        const f64xN low = product(toDoubleLow(a), toDoubleLow(b)), high = product(toDoubleHigh(a), toDoubleHigh(b));
        return rounded ? roundToInt(low, high) : truncToInt(low, high);
    }

private:
    VORN_INLINE f64xN product(f64xN a, f64xN b) const {
        return between(splat<f64xN>(-2147483648.0), rounded ? a * b * factor : a * b, splat<f64xN>(2147483647.0));
    }
};

// Singles times val and 2^-sf, rounded to 16 bits; not a number gives 32767.
struct Product32f16s : Operation<i16xN::lanes, false> {
    f32xN factor;
    explicit Product32f16s(float scale) : factor(splat<f32xN>(scale)) {}
    VORN_INLINE i16xN operator()(Halves<f32xN> a, f32xN val) const {
        return narrowSat(rounded(a.low * val), rounded(a.high * val));
    }

private:
    VORN_INLINE i32xN rounded(f32xN x) const {
        return roundToInt(between(splat<f32xN>(-32768), x * factor, splat<f32xN>(32767)));
    }
};

// Integer operations that have no scale factor.

template <class Op>
struct PlainOf : Operation<Op::lanes, true> {
    template <class V>
    VORN_INLINE auto operator()(V a, V b) const {
        return Op::plain(a, b);
    }
};

struct Sum16u : Operation<i16xN::lanes, true> {
    VORN_INLINE i16xN operator()(i16xN a, i16xN b) const { return addSatUnsigned(a, b); }
};

struct Sum32u : Operation<i32xN::lanes, true> {
    VORN_INLINE i32xN operator()(i32xN a, i32xN b) const {
        const i32xN sign = splat<i32xN>(std::numeric_limits<std::int32_t>::min()), sum = a + b;
        return select((a ^ sign) > (sum ^ sign), splat<i32xN>(-1), sum);
    }
};

struct Sum8u16u : Operation<i8xN::lanes, true> {
    VORN_INLINE Halves<i16xN> operator()(i8xN a, i8xN b) const {
        const auto x = splitUnsigned(a), y = splitUnsigned(b);
        return inOrder(Halves<i16xN>{x.low + y.low, x.high + y.high});
    }
};

struct Product8u16u : Operation<i8xN::lanes, true> {
    VORN_INLINE Halves<i16xN> operator()(i8xN a, i8xN b) const {
        const auto x = splitUnsigned(a), y = splitUnsigned(b);
        return inOrder(Halves<i16xN>{mulLow(x.low, y.low), mulLow(x.high, y.high)});
    }
};

// a is the 32-bit vector that the 16-bit one is added into.
struct Sum32s16s : Operation<i16xN::lanes, true> {
    VORN_INLINE Halves<i32xN> operator()(Halves<i32xN> a, i16xN b) const {
        return {addSat(a.low, widenLow(b)), addSat(a.high, widenHigh(b))};
    }
};

// Floats.

struct Plus {
    template <class V>
    static VORN_INLINE V of(V a, V b) {
        return a + b;
    }
};
struct Minus {
    template <class V>
    static VORN_INLINE V of(V a, V b) {
        return a - b;
    }
};
struct Times {
    template <class V>
    static VORN_INLINE V of(V a, V b) {
        return a * b;
    }
};

template <class T, class Arithmetic>
struct InFloat : Operation<Wide<T>::lanes, true> {
    VORN_INLINE Wide<T> operator()(Wide<T> a, Wide<T> b) const { return Arithmetic::of(a, b); }
};

// 16-bit operands, converted to single first.
template <class Arithmetic>
struct In32f : Operation<i16xN::lanes, true> {
    VORN_INLINE Halves<f32xN> operator()(i16xN a, i16xN b) const {
        return {Arithmetic::of(toFloat(widenLow(a)), toFloat(widenLow(b))),
                Arithmetic::of(toFloat(widenHigh(a)), toFloat(widenHigh(b)))};
    }
};

// Every product and every sum is rounded by itself.
template <class T>
struct ComplexTimes : Operation<Wide<T>::lanes, true> {
    using V = Wide<T>;
    VORN_INLINE V operator()(const ComplexFactor<V>& a, V factor) const {
        const V b = inRegister(factor);
        return addSub(a.re * b, a.im * exchanged(b));
    }
};

}  // namespace vorn
