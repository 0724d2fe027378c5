// Dot products, without conjugation.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "frame/checks.h"
#include "frame/scale.h"
#include "scaled_result.h"
#include "simd.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

// Sixteen numbers in vectors of the build's width, in the type of the sum.
template <class Sum>
struct Sixteen {
    using V = Wide<Sum>;
    static constexpr int parts = 16 / V::lanes;
    V part[parts];

    static VORN_INLINE Sixteen zero() {
        Sixteen x;
        for (V& v : x.part) v = splat<V>(0);
        return x;
    }
    // Lane j takes j + 8, j + 4, j + 2, j + 1 in turn.
    Sum folded() const {
        Sum lane[16];
        storeTo(lane);
        for (int half = 8; half > 0; half /= 2) {
            for (int j = 0; j < half; ++j) lane[j] += lane[j + half];
        }
        return lane[0];
    }
    VORN_INLINE void storeTo(Sum* lane) const {
        for (int k = 0; k < parts; ++k) store(lane + k * V::lanes, part[k]);
    }
};

template <class Sum, class Element>
VORN_INLINE Sixteen<Sum> load16(const Element* src) {
    using V = Wide<Sum>;
    Sixteen<Sum> x;
    for (int k = 0; k < Sixteen<Sum>::parts; ++k) {
        if constexpr (std::is_same_v<Sum, Element>) {
            x.part[k] = load<V>(src + k * V::lanes);
        } else {
            x.part[k] = loadWidened<V>(src + k * V::lanes);
        }
    }
    return x;
}

VORN_INLINE f64xN toDoubleLow(f32xN x) { return widenLow(x); }
VORN_INLINE f64xN toDoubleHigh(f32xN x) { return widenHigh(x); }

template <class Sum, class Element>
VORN_INLINE void loadPairs16(const Element* src, Sixteen<Sum>& re, Sixteen<Sum>& im) {
    using Source = Wide<Element>;
    for (int k = 0; k < 16 / Source::lanes; ++k) {
        Source evens, odds;
        loadPairs(src + 2 * k * Source::lanes, evens, odds);
        if constexpr (std::is_same_v<Sum, Element>) {
            re.part[k] = evens;
            im.part[k] = odds;
        } else {
            re.part[2 * k] = toDoubleLow(evens);
            re.part[2 * k + 1] = toDoubleHigh(evens);
            im.part[2 * k] = toDoubleLow(odds);
            im.part[2 * k + 1] = toDoubleHigh(odds);
        }
    }
}

template <class Sum>
struct ComplexSixteen {
    Sixteen<Sum> re, im;
};

// A vector of real or of complex numbers as the operand of a product.
template <class Sum, class Element>
struct Real {
    const Element* src;
    static constexpr int components = 1;
    VORN_INLINE Sixteen<Sum> at(std::ptrdiff_t i) const { return load16<Sum>(src + i); }
};
template <class Sum, class Element>
struct Complex {
    const Element* src;
    static constexpr int components = 2;
    VORN_INLINE ComplexSixteen<Sum> at(std::ptrdiff_t i) const {
        ComplexSixteen<Sum> x;
        loadPairs16(src + 2 * i, x.re, x.im);
        return x;
    }
};

template <class Sum>
VORN_INLINE void addProduct(Sixteen<Sum>& sum, const Sixteen<Sum>& a, const Sixteen<Sum>& b) {
    for (int k = 0; k < Sixteen<Sum>::parts; ++k) sum.part[k] = sum.part[k] + a.part[k] * b.part[k];
}
template <class Sum>
VORN_INLINE void addProduct(ComplexSixteen<Sum>& sum, const Sixteen<Sum>& a, const ComplexSixteen<Sum>& b) {
    addProduct(sum.re, a, b.re);
    addProduct(sum.im, a, b.im);
}
template <class Sum>
VORN_INLINE void addProduct(ComplexSixteen<Sum>& sum, const ComplexSixteen<Sum>& a, const ComplexSixteen<Sum>& b) {
    for (int k = 0; k < Sixteen<Sum>::parts; ++k) {
        sum.re.part[k] = sum.re.part[k] + (a.re.part[k] * b.re.part[k] - a.im.part[k] * b.im.part[k]);
        sum.im.part[k] = sum.im.part[k] + (a.re.part[k] * b.im.part[k] + a.im.part[k] * b.re.part[k]);
    }
}

// Sixteen lanes: lane j takes elements j, j + 16, ... The last group is filled up with zeros.
template <class Total, template <class, class> class Operand1, template <class, class> class Operand2, class Sum,
          class E1, class E2>
Total accumulate(Operand1<Sum, E1> a, Operand2<Sum, E2> b, std::ptrdiff_t len, Total total) {
    std::ptrdiff_t i = 0;
    for (; i + 16 <= len; i += 16) addProduct(total, a.at(i), b.at(i));
    if (i < len) {
        constexpr int components1 = Operand1<Sum, E1>::components, components2 = Operand2<Sum, E2>::components;
        E1 rest1[16 * components1] = {};
        E2 rest2[16 * components2] = {};
        std::copy_n(a.src + i * components1, (len - i) * components1, rest1);
        std::copy_n(b.src + i * components2, (len - i) * components2, rest2);
        addProduct(total, Operand1<Sum, E1>{rest1}.at(0), Operand2<Sum, E2>{rest2}.at(0));
    }
    return total;
}

template <class Sum, class E1, class E2>
Sum realDot(const E1* src1, const E2* src2, std::ptrdiff_t len) {
    return accumulate(Real<Sum, E1>{src1}, Real<Sum, E2>{src2}, len, Sixteen<Sum>::zero()).folded();
}
template <class Sum, class Operand1, class Operand2>
void complexDot(Operand1 src1, Operand2 src2, std::ptrdiff_t len, Sum& re, Sum& im) {
    const ComplexSixteen<Sum> zero = {Sixteen<Sum>::zero(), Sixteen<Sum>::zero()};
    const ComplexSixteen<Sum> sum = accumulate(src1, src2, len, zero);
    re = sum.re.folded();
    im = sum.im.folded();
}

// Single precision in its stated order. Below 16 elements two lanes over pairs, the odd last one in the first lane.
// From 16 on four four-lane sums, sixteen elements a step; the pairs and the last one that remain go to the first lanes
// of the first sum; the sums fold as (0 + 1) + (2 + 3), then the lanes likewise.
Vorn32f dotInSingle(const Vorn32f* src1, const Vorn32f* src2, std::ptrdiff_t len) {
    Vorn32f lane[16] = {};
    std::ptrdiff_t i = 0;
    if (len >= 16) {
        Sixteen<Vorn32f> sums = Sixteen<Vorn32f>::zero();
        for (; i + 16 <= len; i += 16) addProduct(sums, load16<Vorn32f>(src1 + i), load16<Vorn32f>(src2 + i));
        sums.storeTo(lane);
    }
    const bool isLong = i > 0;
    for (; i + 2 <= len; i += 2) {
        lane[0] += src1[i] * src2[i];
        lane[1] += src1[i + 1] * src2[i + 1];
    }
    if (i < len) lane[0] += src1[i] * src2[i];
    if (!isLong) return lane[0] + lane[1];
    const auto sum = [&lane](int k) { return load<f32x4>(lane + 4 * k); };
    return sumNeighbours((sum(0) + sum(1)) + (sum(2) + sum(3)));
}

// Exact dot products of 16-bit numbers: 32-bit lanes hold two products each, shifted so that none is negative; their
// upper and lower halves are summed apart, so that 32-bit lanes hold many of them.
template <std::uint32_t shift>
class HalfSums {
public:
    VORN_INLINE void add(i32xN pairs) {
        const i32xN shifted = pairs + splat<i32xN>(static_cast<std::int32_t>(shift));
        low_ = low_ + (shifted & splat<i32xN>(0xFFFF));
        high_ = high_ + shiftRightLogical<16>(shifted);
    }
    // The sum of what `count` calls have added.
    std::int64_t total(std::int64_t count) const {
        std::int32_t low[i32xN::lanes], high[i32xN::lanes];
        store(low, low_);
        store(high, high_);
        std::int64_t sum = -count * i32xN::lanes * std::int64_t{shift};
        for (int j = 0; j < i32xN::lanes; ++j) sum += low[j] + std::int64_t{high[j]} * 65536;
        return sum;
    }
    static constexpr std::ptrdiff_t atOnce = 32767;

private:
    i32xN low_ = splat<i32xN>(0), high_ = splat<i32xN>(0);
};
// Two products of one sign wrap at most to -2^31, which is then 2^31: the smallest true sum is -2147418112.
using SumOfProducts = HalfSums<2147418112u>;
using DifferenceOfProducts = HalfSums<2147483648u>;

std::int64_t exactDot(const Vorn16s* src1, const Vorn16s* src2, std::ptrdiff_t len) {
    std::int64_t sum = 0;
    std::ptrdiff_t i = 0;
    while (i + i16xN::lanes <= len) {
        const std::ptrdiff_t vectors = std::min((len - i) / i16xN::lanes, SumOfProducts::atOnce);
        SumOfProducts sums;
        for (std::ptrdiff_t v = 0; v < vectors; ++v, i += i16xN::lanes) {
            sums.add(mulAddPairs(load<i16xN>(src1 + i), load<i16xN>(src2 + i)));
        }
        sum += sums.total(vectors);
    }
    for (; i < len; ++i) sum += src1[i] * src2[i];
    return sum;
}

struct Exact {
    std::int64_t re, im;
};

// Real and imaginary parts exchanged.
VORN_INLINE i16xN exchanged(i16xN pairs) {
    const i32xN both = intsOf(pairs);
    return shortsOf(shiftLeft<16>(both) | shiftRightLogical<16>(both));
}

Exact exactDot(const Vorn16sc* src1, const Vorn16sc* src2, std::ptrdiff_t len) {
    constexpr int step = i32xN::lanes;
    Exact sum = {0, 0};
    std::ptrdiff_t i = 0;
    while (i + step <= len) {
        const std::ptrdiff_t vectors = std::min((len - i) / step, SumOfProducts::atOnce);
        DifferenceOfProducts re;
        SumOfProducts im;
        for (std::ptrdiff_t v = 0; v < vectors; ++v, i += step) {
            const i16xN a = load<i16xN>(&src1[i].re), b = load<i16xN>(&src2[i].re);
            const i16xN realOfA = a & shortsOf(splat<i32xN>(0xFFFF));
            re.add(mulAddPairs(realOfA, b) - mulAddPairs(a ^ realOfA, b));
            im.add(mulAddPairs(a, exchanged(b)));
        }
        sum.re += re.total(vectors);
        sum.im += im.total(vectors);
    }
    for (; i < len; ++i) {
        sum.re += std::int64_t{src1[i].re} * src2[i].re - std::int64_t{src1[i].im} * src2[i].im;
        sum.im += std::int64_t{src1[i].re} * src2[i].im + std::int64_t{src1[i].im} * src2[i].re;
    }
    return sum;
}

Exact exactDot(const Vorn16s* src1, const Vorn16sc* src2, std::ptrdiff_t len) {
    constexpr int step = i32xN::lanes;
    Exact sum = {0, 0};
    std::ptrdiff_t i = 0;
    while (i + step <= len) {
        const std::ptrdiff_t vectors = std::min((len - i) / step, SumOfProducts::atOnce);
        SumOfProducts re, im;
        for (std::ptrdiff_t v = 0; v < vectors; ++v, i += step) {
            const i16xN a = shortsOf(loadWidened<i32xN>(src1 + i) & splat<i32xN>(0xFFFF));
            const i16xN b = load<i16xN>(&src2[i].re);
            re.add(mulAddPairs(a, b));
            im.add(mulAddPairs(a, exchanged(b)));
        }
        sum.re += re.total(vectors);
        sum.im += im.total(vectors);
    }
    for (; i < len; ++i) {
        sum.re += src1[i] * src2[i].re;
        sum.im += src1[i] * src2[i].im;
    }
    return sum;
}

Vorn16s scaled16(std::int64_t sum, int scaleFactor) { return scaledSum<Vorn16s>(sum, scaleFactor, -15, 31); }
Vorn32s scaled32(std::int64_t sum, int scaleFactor) { return scaledSum<Vorn32s>(sum, scaleFactor, -31, 31); }
// The 32-bit operands' route through double.
Vorn32s scaledFromDouble(double sum, int scaleFactor) {
    return scaledSum(sum, factorOfExponentBits(std::clamp(scaleFactor, -31, 93)));
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsDotProd_32f(const Vorn32f* src1, const Vorn32f* src2, int len, Vorn32f* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    *dp = dotInSingle(src1, src2, len);
    return vornStsNoErr;
}

VornStatus vornsDotProd_64f(const Vorn64f* src1, const Vorn64f* src2, int len, Vorn64f* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    *dp = realDot<Vorn64f>(src1, src2, len);
    return vornStsNoErr;
}

VornStatus vornsDotProd_32f64f(const Vorn32f* src1, const Vorn32f* src2, int len, Vorn64f* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    *dp = realDot<Vorn64f>(src1, src2, len);
    return vornStsNoErr;
}

VornStatus vornsDotProd_32fc(const Vorn32fc* src1, const Vorn32fc* src2, int len, Vorn32fc* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    complexDot(Complex<Vorn32f, Vorn32f>{&src1->re}, Complex<Vorn32f, Vorn32f>{&src2->re}, len, dp->re, dp->im);
    return vornStsNoErr;
}

VornStatus vornsDotProd_32f32fc(const Vorn32f* src1, const Vorn32fc* src2, int len, Vorn32fc* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    complexDot(Real<Vorn32f, Vorn32f>{src1}, Complex<Vorn32f, Vorn32f>{&src2->re}, len, dp->re, dp->im);
    return vornStsNoErr;
}

VornStatus vornsDotProd_64fc(const Vorn64fc* src1, const Vorn64fc* src2, int len, Vorn64fc* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    complexDot(Complex<Vorn64f, Vorn64f>{&src1->re}, Complex<Vorn64f, Vorn64f>{&src2->re}, len, dp->re, dp->im);
    return vornStsNoErr;
}

VornStatus vornsDotProd_64f64fc(const Vorn64f* src1, const Vorn64fc* src2, int len, Vorn64fc* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    complexDot(Real<Vorn64f, Vorn64f>{src1}, Complex<Vorn64f, Vorn64f>{&src2->re}, len, dp->re, dp->im);
    return vornStsNoErr;
}

VornStatus vornsDotProd_32fc64fc(const Vorn32fc* src1, const Vorn32fc* src2, int len, Vorn64fc* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    complexDot(Complex<Vorn64f, Vorn32f>{&src1->re}, Complex<Vorn64f, Vorn32f>{&src2->re}, len, dp->re, dp->im);
    return vornStsNoErr;
}

VornStatus vornsDotProd_32f32fc64fc(const Vorn32f* src1, const Vorn32fc* src2, int len, Vorn64fc* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    complexDot(Real<Vorn64f, Vorn32f>{src1}, Complex<Vorn64f, Vorn32f>{&src2->re}, len, dp->re, dp->im);
    return vornStsNoErr;
}

VornStatus vornsDotProd_16s64s(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn64s* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    *dp = exactDot(src1, src2, len);
    return vornStsNoErr;
}

VornStatus vornsDotProd_16s32f(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn32f* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    *dp = static_cast<Vorn32f>(exactDot(src1, src2, len));
    return vornStsNoErr;
}

VornStatus vornsDotProd_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn16s* dp, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    *dp = scaled16(exactDot(src1, src2, len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsDotProd_16s32s_Sfs(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn32s* dp, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    *dp = scaled32(exactDot(src1, src2, len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsDotProd_16sc64sc(const Vorn16sc* src1, const Vorn16sc* src2, int len, Vorn64sc* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    const Exact exact = exactDot(src1, src2, len);
    *dp = {exact.re, exact.im};
    return vornStsNoErr;
}

VornStatus vornsDotProd_16sc32fc(const Vorn16sc* src1, const Vorn16sc* src2, int len, Vorn32fc* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    const Exact exact = exactDot(src1, src2, len);
    *dp = {static_cast<Vorn32f>(exact.re), static_cast<Vorn32f>(exact.im)};
    return vornStsNoErr;
}

VornStatus vornsDotProd_16sc_Sfs(const Vorn16sc* src1, const Vorn16sc* src2, int len, Vorn16sc* dp, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    const Exact exact = exactDot(src1, src2, len);
    *dp = {scaled16(exact.re, scaleFactor), scaled16(exact.im, scaleFactor)};
    return vornStsNoErr;
}

VornStatus vornsDotProd_16sc32sc_Sfs(const Vorn16sc* src1, const Vorn16sc* src2, int len, Vorn32sc* dp,
                                     int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    const Exact exact = exactDot(src1, src2, len);
    *dp = {scaled32(exact.re, scaleFactor), scaled32(exact.im, scaleFactor)};
    return vornStsNoErr;
}

VornStatus vornsDotProd_16s16sc64sc(const Vorn16s* src1, const Vorn16sc* src2, int len, Vorn64sc* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    const Exact exact = exactDot(src1, src2, len);
    *dp = {exact.re, exact.im};
    return vornStsNoErr;
}

VornStatus vornsDotProd_16s16sc32fc(const Vorn16s* src1, const Vorn16sc* src2, int len, Vorn32fc* dp) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    const Exact exact = exactDot(src1, src2, len);
    *dp = {static_cast<Vorn32f>(exact.re), static_cast<Vorn32f>(exact.im)};
    return vornStsNoErr;
}

VornStatus vornsDotProd_16s16sc_Sfs(const Vorn16s* src1, const Vorn16sc* src2, int len, Vorn16sc* dp, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    const Exact exact = exactDot(src1, src2, len);
    *dp = {scaled16(exact.re, scaleFactor), scaled16(exact.im, scaleFactor)};
    return vornStsNoErr;
}

VornStatus vornsDotProd_16s16sc32sc_Sfs(const Vorn16s* src1, const Vorn16sc* src2, int len, Vorn32sc* dp,
                                        int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    const Exact exact = exactDot(src1, src2, len);
    *dp = {scaled32(exact.re, scaleFactor), scaled32(exact.im, scaleFactor)};
    return vornStsNoErr;
}

VornStatus vornsDotProd_32s_Sfs(const Vorn32s* src1, const Vorn32s* src2, int len, Vorn32s* dp, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    *dp = scaledFromDouble(realDot<Vorn64f>(src1, src2, len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsDotProd_16s32s32s_Sfs(const Vorn16s* src1, const Vorn32s* src2, int len, Vorn32s* dp, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    *dp = scaledFromDouble(realDot<Vorn64f>(src1, src2, len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsDotProd_32sc_Sfs(const Vorn32sc* src1, const Vorn32sc* src2, int len, Vorn32sc* dp, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    Vorn64f re, im;
    complexDot(Complex<Vorn64f, Vorn32s>{&src1->re}, Complex<Vorn64f, Vorn32s>{&src2->re}, len, re, im);
    *dp = {scaledFromDouble(re, scaleFactor), scaledFromDouble(im, scaleFactor)};
    return vornStsNoErr;
}

VornStatus vornsDotProd_32s32sc_Sfs(const Vorn32s* src1, const Vorn32sc* src2, int len, Vorn32sc* dp, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dp));
    VORN_CHECK(positive(len));
    Vorn64f re, im;
    complexDot(Real<Vorn64f, Vorn32s>{src1}, Complex<Vorn64f, Vorn32s>{&src2->re}, len, re, im);
    *dp = {scaledFromDouble(re, scaleFactor), scaledFromDouble(im, scaleFactor)};
    return vornStsNoErr;
}
