// Quotients of two vectors, and of a vector and a constant. Division by a vector takes the divisor first.
#include "arithmetic/complex_division.h"
#include "arithmetic/compute.h"
#include "arithmetic/division.h"
#include "frame/checks.h"
#include "vornsr/signal.h"

using namespace vorn;

namespace {

template <class T>
constexpr VornStatus notZero(const T& val) {
    if constexpr (LaneOf<T>::count == 2) {
        return require(val.re != 0 || val.im != 0, vornStsDivByZeroErr);
    } else {
        return require(val != 0, vornStsDivByZeroErr);
    }
}

// The whole vector is computed, also where a divisor is zero.
template <class Quotient, class A, class B, class D>
VornStatus divideLong(const Quotient& how, A dividend, B divisor, D* dst, std::int64_t len);

template <Route route = Route::inCache, class Quotient, class A, class B, class D>
VORN_NOINLINE VornStatus divide(const Quotient& how, A dividend, B divisor, D* dst, std::int64_t len) {
    if (route == Route::inCache && !isSmall<D>(len)) return divideLong(how, dividend, divisor, dst, len);
    const Quotient quotient = how;
    forElementsOn<route>(quotient, dividend, divisor, dst, len);
    return quotient.metZero() ? vornStsDivByZero : vornStsNoErr;
}
template <class Quotient, class A, class B, class D>
VORN_NOINLINE VornStatus divideLong(const Quotient& how, A dividend, B divisor, D* dst, std::int64_t len) {
    VornStatus status = vornStsNoErr;
    const auto note = [&](VornStatus ofPiece) { status = ofPiece == vornStsNoErr ? status : ofPiece; };
    piecewise(
        dividend, divisor, dst, len, [&](auto... piece) { note(divide(how, piece...)); },
        [&](auto... piece) { note(divide<Route::pastCache>(how, piece...)); });
    return status;
}

// Integer quotients are exact in nearest mode, whatever the caller's.
template <class Quotient, class A, class B, class D>
VornStatus divideExactly(const Quotient& quotient, A dividend, B divisor, D* dst, std::int64_t len) {
    const RoundingGuard nearest(Rounding::Nearest);
    return divide(quotient, dividend, divisor, dst, len);
}

template <class A, class B>
VornStatus divide16s(A dividend, B divisor, Vorn16s* dst, std::int64_t len, int sf) {
    if (sf >= leastScaleInSingle16s) return divideExactly(Quotient16s<f32xN>(sf), dividend, divisor, dst, len);
    return divideExactly(Quotient16s<f64xN>(sf), dividend, divisor, dst, len);
}

template <class A, class B>
VornStatus divide32s(A dividend, B divisor, Vorn32s* dst, std::int64_t len, int sf) {
    if (sf >= leastUncorrectedScale32s) {
        return divideExactly(Quotient32s<RealDivision<f64xN>>(sf), dividend, divisor, dst, len);
    }
    return divideExactly(Quotient32s<CorrectedDivision>(sf), dividend, divisor, dst, len);
}

// By a complex constant; one without an imaginary part divides each part. Its parts come as two numbers and by a call:
// a compiler that sees a structure of them stores it in pieces and loads it as a whole, for which the load waits.
VORN_NOINLINE void divideBy(const Vorn32fc* src, Vorn32f re, Vorn32f im, Vorn32fc* dst, int len) {
    if (im == 0) {
        divide(FloatQuotient<Vorn32f>(), parts(src), constant(re), lanesAt(dst), twice(len));
    } else {
        divide(ComplexQuotient32f(), elements(src), constant(Vorn32fc{re, im}), dst, len);
    }
}
VORN_NOINLINE void divideBy(const Vorn64fc* src, Vorn64f re, Vorn64f im, Vorn64fc* dst, int len) {
    if (im == 0) {
        divide(FloatQuotient<Vorn64f>(), parts(src), constant(re), lanesAt(dst), twice(len));
    } else {
        divide(ComplexQuotient64f(), elementPairs(src), constantPair(Vorn64fc{re, im}), dst, len);
    }
}

}  // namespace

VornStatus vornsDiv_8u_Sfs(const Vorn8u* src1, const Vorn8u* src2, Vorn8u* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return divideExactly(Quotient8u(scaleFactor), elements(src2), elements(src1), dst, len);
}

VornStatus vornsDiv_8u_ISfs(const Vorn8u* src, Vorn8u* srcDst, int len, int scaleFactor) {
    return vornsDiv_8u_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsDiv_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return divide16s(elements(src2), elements(src1), dst, len, scaleFactor);
}

VornStatus vornsDiv_16s_ISfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor) {
    return vornsDiv_16s_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsDiv_16sc_Sfs(const Vorn16sc* src1, const Vorn16sc* src2, Vorn16sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return divideExactly(Quotient16sc(scaleFactor), elements(src2), elements(src1), dst, len);
}

VornStatus vornsDiv_16sc_ISfs(const Vorn16sc* src, Vorn16sc* srcDst, int len, int scaleFactor) {
    return vornsDiv_16sc_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsDiv_32s_Sfs(const Vorn32s* src1, const Vorn32s* src2, Vorn32s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return divide32s(elements(src2), elements(src1), dst, len, scaleFactor);
}

VornStatus vornsDiv_32s_ISfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor) {
    return vornsDiv_32s_Sfs(src, srcDst, srcDst, len, scaleFactor);
}

VornStatus vornsDiv_32s16s_Sfs(const Vorn16s* src1, const Vorn32s* src2, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return divideExactly(Quotient32s16s(scaleFactor), elementPairs(src2), elements(src1), dst, len);
}

VornStatus vornsDiv_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return divide(FloatQuotient<Vorn32f>(), elements(src2), elements(src1), dst, len);
}

VornStatus vornsDiv_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len) {
    return vornsDiv_32f(src, srcDst, srcDst, len);
}

VornStatus vornsDiv_32fc(const Vorn32fc* src1, const Vorn32fc* src2, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return divide(ComplexQuotient32f(), elements(src2), elements(src1), dst, len);
}

VornStatus vornsDiv_32fc_I(const Vorn32fc* src, Vorn32fc* srcDst, int len) {
    return vornsDiv_32fc(src, srcDst, srcDst, len);
}

VornStatus vornsDiv_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return divide(FloatQuotient<Vorn64f>(), elements(src2), elements(src1), dst, len);
}

VornStatus vornsDiv_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len) {
    return vornsDiv_64f(src, srcDst, srcDst, len);
}

VornStatus vornsDiv_64fc(const Vorn64fc* src1, const Vorn64fc* src2, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return divide(ComplexQuotient64f(), elementPairs(src2), elementPairs(src1), dst, len);
}

VornStatus vornsDiv_64fc_I(const Vorn64fc* src, Vorn64fc* srcDst, int len) {
    return vornsDiv_64fc(src, srcDst, srcDst, len);
}

VornStatus vornsDivC_8u_Sfs(const Vorn8u* src, Vorn8u val, Vorn8u* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(notZero(val));
    if (scaleFactor > upperScaleOfQuotients8u) {
        zeroElements(dst, len);
        return vornStsNoErr;
    }
    divideExactly(Quotient8u(scaleFactor), elements(src), constant(val), dst, len);
    return vornStsNoErr;
}

VornStatus vornsDivC_8u_ISfs(Vorn8u val, Vorn8u* srcDst, int len, int scaleFactor) {
    return vornsDivC_8u_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsDivC_16s_Sfs(const Vorn16s* src, Vorn16s val, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(notZero(val));
    if (scaleFactor > upperScaleOfQuotients16s) {
        zeroElements(dst, len);
        return vornStsNoErr;
    }
    divide16s(elements(src), constant(val), dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsDivC_16s_ISfs(Vorn16s val, Vorn16s* srcDst, int len, int scaleFactor) {
    return vornsDivC_16s_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsDivC_16sc_Sfs(const Vorn16sc* src, Vorn16sc val, Vorn16sc* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(notZero(val));
    if (scaleFactor > upperScaleOfQuotients16s) {
        zeroElements(dst, len);
        return vornStsNoErr;
    }
    divideExactly(Quotient16sc(scaleFactor), elements(src), constant(val), dst, len);
    return vornStsNoErr;
}

VornStatus vornsDivC_16sc_ISfs(Vorn16sc val, Vorn16sc* srcDst, int len, int scaleFactor) {
    return vornsDivC_16sc_Sfs(srcDst, val, srcDst, len, scaleFactor);
}

VornStatus vornsDivC_32f(const Vorn32f* src, Vorn32f val, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(notZero(val));
    multiplyByConstant(src, 1 / val, dst, len);
    return vornStsNoErr;
}

VornStatus vornsDivC_32f_I(Vorn32f val, Vorn32f* srcDst, int len) { return vornsDivC_32f(srcDst, val, srcDst, len); }

VornStatus vornsDivC_32fc(const Vorn32fc* src, Vorn32fc val, Vorn32fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(notZero(val));
    divideBy(src, val.re, val.im, dst, len);
    return vornStsNoErr;
}

VornStatus vornsDivC_32fc_I(Vorn32fc val, Vorn32fc* srcDst, int len) {
    return vornsDivC_32fc(srcDst, val, srcDst, len);
}

VornStatus vornsDivC_64f(const Vorn64f* src, Vorn64f val, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(notZero(val));
    divide(FloatQuotient<Vorn64f>(), elements(src), constant(val), dst, len);
    return vornStsNoErr;
}

VornStatus vornsDivC_64f_I(Vorn64f val, Vorn64f* srcDst, int len) { return vornsDivC_64f(srcDst, val, srcDst, len); }

VornStatus vornsDivC_64fc(const Vorn64fc* src, Vorn64fc val, Vorn64fc* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VORN_CHECK(notZero(val));
    divideBy(src, val.re, val.im, dst, len);
    return vornStsNoErr;
}

VornStatus vornsDivC_64fc_I(Vorn64fc val, Vorn64fc* srcDst, int len) {
    return vornsDivC_64fc(srcDst, val, srcDst, len);
}

VornStatus vornsDivCRev_16u(const Vorn16u* src, Vorn16u val, Vorn16u* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return divideExactly(Quotient16u(), constant(val), elements(src), dst, len);
}

VornStatus vornsDivCRev_16u_I(Vorn16u val, Vorn16u* srcDst, int len) {
    return vornsDivCRev_16u(srcDst, val, srcDst, len);
}

VornStatus vornsDivCRev_32f(const Vorn32f* src, Vorn32f val, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return divide(FloatQuotient<Vorn32f>(), constant(val), elements(src), dst, len);
}

VornStatus vornsDivCRev_32f_I(Vorn32f val, Vorn32f* srcDst, int len) {
    return vornsDivCRev_32f(srcDst, val, srcDst, len);
}
