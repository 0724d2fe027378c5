// Dot products, without conjugation.
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "frame/checks.h"
#include "frame/scale.h"
#include "reductions/dot_kernels.h"
#include "reductions/scaled_result.h"
#include "reductions/sixteen.h"
#include "simd/block.h"
#include "simd/fold.h"
#include "simd/simd.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

using namespace dots;

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

// A vector of complex numbers as the operand of a product.
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

template <class Sum, class Operand1, class Operand2>
void complexDot(Operand1 src1, Operand2 src2, std::ptrdiff_t len, Sum& re, Sum& im) {
    ComplexSixteen<Sum> sum = {Sixteen<Sum>::zero(), Sixteen<Sum>::zero()};
    accumulate(src1, src2, len, sum);
    re = sum.re.folded();
    im = sum.im.folded();
}

struct Exact {
    std::int64_t re, im;
};

// Real and imaginary parts exchanged.
VORN_INLINE i16xN exchanged(i16xN pairs) {
    const i32xN both = intsOf(pairs);
    return shortsOf(shiftLeft<16>(both) | shiftRightLogical<16>(both));
}

VORN_INLINE i16xN takePairs(const Vorn16sc* p, std::integral_constant<int, i32xN::lanes>) {
    return load<i16xN>(&p->re);
}
VORN_INLINE i16xN takePairs(const Vorn16sc* p, std::ptrdiff_t n) { return loadPart<i16xN>(&p->re, 2 * n); }
// Real numbers in the places of the real parts.
VORN_INLINE i16xN takeAsPairs(const Vorn16s* p, std::integral_constant<int, i32xN::lanes>) {
    return shortsOf(loadWidened<i32xN>(p) & splat<i32xN>(0xFFFF));
}
VORN_INLINE i16xN takeAsPairs(const Vorn16s* p, std::ptrdiff_t n) {
    Block<Vorn16s, i16xN::lanes> block;
    fillBlock<i16xN::lanes>(p, n, block);
    return takeAsPairs(block, std::integral_constant<int, i32xN::lanes>());
}

Exact exactDot(const Vorn16sc* src1, const Vorn16sc* src2, std::ptrdiff_t len) {
    Exact sum = {0, 0};
    DifferenceOfProducts re;
    SumOfProducts im;
    overSteps<i32xN::lanes>(
        len,
        [&](std::ptrdiff_t i, auto n) {
            const i16xN a = takePairs(src1 + i, n), b = takePairs(src2 + i, n);
            const i16xN realOfA = a & shortsOf(splat<i32xN>(0xFFFF));
            re.add(mulAddPairs(realOfA, b) - mulAddPairs(a ^ realOfA, b));
            im.add(mulAddPairs(a, exchanged(b)));
        },
        [&](std::ptrdiff_t count) {
            sum.re += re.takeTotal(count);
            sum.im += im.takeTotal(count);
        });
    return sum;
}

Exact exactDot(const Vorn16s* src1, const Vorn16sc* src2, std::ptrdiff_t len) {
    Exact sum = {0, 0};
    SumOfProducts re, im;
    overSteps<i32xN::lanes>(
        len,
        [&](std::ptrdiff_t i, auto n) {
            const i16xN a = takeAsPairs(src1 + i, n), b = takePairs(src2 + i, n);
            re.add(mulAddPairs(a, b));
            im.add(mulAddPairs(a, exchanged(b)));
        },
        [&](std::ptrdiff_t count) {
            sum.re += re.takeTotal(count);
            sum.im += im.takeTotal(count);
        });
    return sum;
}

Vorn16s scaled16(std::int64_t sum, int scaleFactor) { return scaledSum<Vorn16s>(sum, scaleFactor, -15, 31); }
Vorn32s scaledProducts32(std::int64_t sum, int scaleFactor) { return scaledSum<Vorn32s>(sum, scaleFactor, -31, 31); }
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
    *dp = scaledProducts32(exactDot(src1, src2, len), scaleFactor);
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
    *dp = {scaledProducts32(exact.re, scaleFactor), scaledProducts32(exact.im, scaleFactor)};
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
    *dp = {scaledProducts32(exact.re, scaleFactor), scaledProducts32(exact.im, scaleFactor)};
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
