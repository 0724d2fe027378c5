// Complex quotients: for finite operands an ordinary quotient comes out as such, against MPFR.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/precise.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

template <class T>
struct Of;
template <>
struct Of<Vorn32f> {
    using Complex = Vorn32fc;
    static constexpr auto divide = vornsDiv_32fc;
    static constexpr auto divideInPlace = vornsDiv_32fc_I;
    static constexpr auto divideBy = vornsDivC_32fc;
    static constexpr auto divideByInPlace = vornsDivC_32fc_I;
    static constexpr double bound = 0.501;
};
template <>
struct Of<Vorn64f> {
    using Complex = Vorn64fc;
    static constexpr auto divide = vornsDiv_64fc;
    static constexpr auto divideInPlace = vornsDiv_64fc_I;
    static constexpr auto divideBy = vornsDivC_64fc;
    static constexpr auto divideByInPlace = vornsDivC_64fc_I;
    static constexpr double bound = 1.63;
};
template <class T>
using Complex = typename Of<T>::Complex;

template <class T>
class ComplexDivision : public testing::Test {};
using Reals = testing::Types<Vorn32f, Vorn64f>;
TYPED_TEST_SUITE(ComplexDivision, Reals);

template <class C>
std::string show(C a, C b) {
    char text[160];
    std::snprintf(text, sizeof text, "(%a, %a) / (%a, %a)", double{a.re}, double{a.im}, double{b.re}, double{b.im});
    return text;
}

// The result of every form of the call; they have to agree.
template <class C, class T = decltype(C::re)>
C quotient(C a, C b) {
    C q, own = a, byConstant, ownByConstant = a;
    EXPECT_EQ(Of<T>::divide(&b, &a, &q, 1), vornStsNoErr) << show(a, b);
    EXPECT_EQ(Of<T>::divideInPlace(&b, &own, 1), vornStsNoErr) << show(a, b);
    EXPECT_EQ(Of<T>::divideBy(&a, b, &byConstant, 1), vornStsNoErr) << show(a, b);
    EXPECT_EQ(Of<T>::divideByInPlace(b, &ownByConstant, 1), vornStsNoErr) << show(a, b);
    for (const C& other : {own, byConstant, ownByConstant}) {
        EXPECT_TRUE(test::sameBits(&other, &q, 1)) << show(a, b);
    }
    return q;
}

// How far q is from a / b, in units in the last place of the larger part of a / b. A part that is too large for the
// element has to be an infinity.
template <class C>
double error(C a, C b, C q) {
    using T = decltype(a.re);
    using test::Precise;
    const Precise aRe = double{a.re}, aIm = double{a.im}, bRe = double{b.re}, bIm = double{b.im};
    const Precise square = bRe * bRe + bIm * bIm;
    const Precise parts[] = {(aRe * bRe + aIm * bIm) / square, (aIm * bRe - aRe * bIm) / square};
    // The ratio of the parts and its inverse: a double holds neither part where the quotient leaves its range.
    const bool imIsLarger = std::fabs((parts[1] / parts[0]).toDouble()) > 1;
    const Precise& larger = parts[imIsLarger];
    const double sizeInUnits = larger.distance(T(0));
    if (sizeInUnits == 0 || std::isinf(sizeInUnits)) return q.re == 0 && q.im == 0 ? 0 : INFINITY;  // 0 / b
    double worst = 0;
    for (int k = 0; k < 2; ++k) {
        const T found = k == 0 ? q.re : q.im;
        const T nearest = sizeof(T) == 4 ? static_cast<T>(parts[k].toFloat()) : static_cast<T>(parts[k].toDouble());
        if (std::isinf(nearest) || std::isinf(found)) {
            const bool onTheEdge = std::nextafter(nearest, found) == found;
            if (found != nearest && !onTheEdge) return INFINITY;
            continue;
        }
        const double off = std::fabs(((parts[k] - Precise(double{found})) / larger).toDouble()) * sizeInUnits;
        if (!(off <= worst)) worst = off;
    }
    return worst;
}

// Every bit pattern that is finite is as likely as any other: exponents of all sizes, denormals, zeros.
template <class T>
T anyFinite(test::Random& random) {
    for (;;) {
        const T x = random.anyBits<T>();
        if (std::isfinite(x)) return random.next() % 32 == 0 ? T(0) : x;
    }
}

// A number with an exponent near another's, or at one of the range's edges.
template <class T>
T someFinite(test::Random& random, int exponent) {
    using Limits = std::numeric_limits<T>;
    switch (random.next() % 12) {
        case 0:
            return Limits::denorm_min() * static_cast<T>(random.integer(-20, 20));
        case 1:
            return random.next() % 2 ? Limits::max() : -Limits::max();
        case 2:
            return Limits::min() * static_cast<T>(random.uniform(-3, 3));
        case 3:
            return anyFinite<T>(random);
        default: {
            const T x =
                std::ldexp(static_cast<T>(random.uniform(-2, 2)), exponent + static_cast<int>(random.integer(-3, 3)));
            return std::isfinite(x) ? x : Limits::max();
        }
    }
}
template <class T>
Complex<T> someNumber(test::Random& random) {
    using Limits = std::numeric_limits<T>;
    const int exponent = static_cast<int>(random.integer(Limits::min_exponent - Limits::digits, Limits::max_exponent));
    return {someFinite<T>(random, exponent), someFinite<T>(random, exponent)};
}

template <class C>
bool isZero(C x) {
    return x.re == 0 && x.im == 0;
}

TYPED_TEST(ComplexDivision, OfOrdinaryNumbers) {
    using T = TypeParam;
    test::Random random(101);
    test::Worst worst;
    for (int i = 0; i < 60000; ++i) {
        const auto part = [&] { return static_cast<T>(random.uniform(-2, 2)); };
        const Complex<T> a = {part(), part()}, b = {part(), part()};
        const Complex<T> q = quotient(a, b);
        const double off = error(a, b, q);
        worst.meet(off, i);
        ASSERT_LE(off, Of<T>::bound) << show(a, b);
    }
    std::printf("worst %s\n", worst.text().c_str());
}

TYPED_TEST(ComplexDivision, OverTheWholeRange) {
    using T = TypeParam;
    test::Random random(102);
    test::Worst worst;
    for (int i = 0; i < 60000; ++i) {
        const Complex<T> a = someNumber<T>(random), b = someNumber<T>(random);
        if (isZero(b)) continue;
        const double off = error(a, b, quotient(a, b));
        worst.meet(off, i);
        ASSERT_LE(off, Of<T>::bound) << show(a, b);
    }
    std::printf("worst %s\n", worst.text().c_str());
}

// Quotients around the edges of the range: a = q b, rounded, for q and b of all sizes.
TYPED_TEST(ComplexDivision, QuotientsOnTheEdges) {
    using T = TypeParam;
    using Limits = std::numeric_limits<T>;
    test::Random random(103);
    for (int i = 0; i < 60000; ++i) {
        const int low = Limits::min_exponent - Limits::digits;
        const int ofQuotient = random.next() % 2 ? Limits::max_exponent - static_cast<int>(random.integer(0, 3))
                                                 : low + static_cast<int>(random.integer(0, Limits::digits + 3));
        const int ofDivisor = static_cast<int>(random.integer(low, Limits::max_exponent));
        const auto part = [&](int exponent) {
            const T x = std::ldexp(static_cast<T>(random.uniform(-1, 1)), exponent);
            return std::isfinite(x) ? x : Limits::max();
        };
        const Complex<T> a = {part(ofQuotient + ofDivisor), part(ofQuotient + ofDivisor)};
        const Complex<T> b = {part(ofDivisor), part(ofDivisor)};
        if (isZero(b)) continue;
        ASSERT_LE(error(a, b, quotient(a, b)), Of<T>::bound) << show(a, b);
    }
}

// A part of the quotient that nearly vanishes: what is left of it is as exact as the larger part, no more is asked.
TYPED_TEST(ComplexDivision, Cancellation) {
    using T = TypeParam;
    test::Random random(104);
    for (int i = 0; i < 60000; ++i) {
        const auto part = [&] { return static_cast<T>(random.uniform(-2, 2)); };
        const Complex<T> b = {part(), part()};
        const T size = part();
        // b times a real number or an imaginary one, each part rounded or a few units beside.
        Complex<T> a = random.next() % 2 ? Complex<T>{b.re * size, b.im * size} : Complex<T>{-b.im * size, b.re * size};
        for (T* x : {&a.re, &a.im}) {
            for (int steps = static_cast<int>(random.integer(0, 2)); steps > 0; --steps) *x = std::nextafter(*x, T(9));
        }
        if (isZero(b)) continue;
        ASSERT_LE(error(a, b, quotient(a, b)), Of<T>::bound) << show(a, b);
    }
}

// Parts just above and just below powers of two, where a rounding weighs most.
TYPED_TEST(ComplexDivision, BesidePowersOfTwo) {
    using T = TypeParam;
    test::Random random(105);
    const auto part = [&] {
        const T x = static_cast<T>(random.integer(-3, 3)) / 2;
        T step = std::ldexp(T(1), -static_cast<int>(random.integer(1, std::numeric_limits<T>::digits)));
        return x + static_cast<T>(random.integer(-3, 3)) * step;
    };
    for (int i = 0; i < 60000; ++i) {
        const Complex<T> a = {part(), part()}, b = {part(), part()};
        if (isZero(b)) continue;
        ASSERT_LE(error(a, b, quotient(a, b)), Of<T>::bound) << show(a, b);
    }
}

// By a divisor without an imaginary part, each part of the dividend is divided as a real number, whatever it is.
TYPED_TEST(ComplexDivision, ByRealNumbers) {
    using T = TypeParam;
    test::Random random(106);
    const std::vector<T> hard = test::hardFloats<T>();
    const auto part = [&] {
        return random.next() % 2 ? hard[random.next() % hard.size()] : random.template anyBits<T>();
    };
    for (int i = 0; i < 60000; ++i) {
        const Complex<T> a = {part(), part()}, b = {part(), random.next() % 2 ? T(0) : T(-0.0)};
        if (b.re == 0) continue;
        const Complex<T> q = quotient(a, b), expected = {a.re / b.re, a.im / b.re};
        ASSERT_TRUE(test::sameBits(&q, &expected, 1)) << show(a, b);
    }
    const T infinity = std::numeric_limits<T>::infinity();
    const Complex<T> q = quotient(Complex<T>{infinity, 3}, Complex<T>{2, 0});
    EXPECT_EQ(q.re, infinity);
    EXPECT_EQ(q.im, T(1.5));
}

TYPED_TEST(ComplexDivision, ByZero) {
    using T = TypeParam;
    const T infinity = std::numeric_limits<T>::infinity();
    for (T re : {T(0), T(-0.0)}) {
        for (T im : {T(0), T(-0.0)}) {
            const Complex<T> zero = {re, im}, a = {3, -2};
            Complex<T> q, own = a;
            const T expected = std::signbit(re) ? -infinity : infinity;
            EXPECT_EQ(Of<T>::divide(&zero, &a, &q, 1), vornStsDivByZero);
            EXPECT_EQ(q.re, expected);
            EXPECT_EQ(q.im, -expected);
            EXPECT_EQ(Of<T>::divideInPlace(&zero, &own, 1), vornStsDivByZero);
            EXPECT_TRUE(test::sameBits(&own, &q, 1));
            EXPECT_EQ(Of<T>::divideBy(&a, zero, &q, 1), vornStsDivByZeroErr);
            EXPECT_EQ(Of<T>::divideByInPlace(zero, &own, 1), vornStsDivByZeroErr);
        }
    }
    // A divisor so small that its square vanishes is none.
    const T tiny = std::numeric_limits<T>::denorm_min();
    for (const Complex<T> b : {Complex<T>{tiny, 0}, Complex<T>{0, tiny}, Complex<T>{tiny, -tiny}}) {
        const Complex<T> q = quotient(b, b);
        EXPECT_EQ(q.re, 1);
        EXPECT_EQ(q.im, 0);
    }
}

// What stands beside a number in a vector does not change its quotient: neither an infinity nor a zero, nor a number of
// another size.
TYPED_TEST(ComplexDivision, NeighboursDoNotMatter) {
    using T = TypeParam;
    using C = Complex<T>;
    test::Random random(107);
    const T infinity = std::numeric_limits<T>::infinity();
    for (std::size_t len = 1; len <= 70; ++len) {
        for (int turn = 0; turn < 20; ++turn) {
            std::vector<C> a(len), b(len), expected(len);
            bool zero = false;
            for (std::size_t i = 0; i < len; ++i) {
                const auto part = [&] { return static_cast<T>(random.uniform(-2, 2)); };
                const bool ordinary = random.next() % 8 != 0;
                a[i] = ordinary ? C{part(), part()} : someNumber<T>(random);
                b[i] = ordinary ? C{part(), part()} : someNumber<T>(random);
                // Parts of very different sizes: the smaller one is lost in the larger's scale.
                if (random.next() % 8 == 0) a[i].re = anyFinite<T>(random);
                if (random.next() % 8 == 0) b[i].im = anyFinite<T>(random);
                if (random.next() % 32 == 0) a[i].im = infinity;
                if (random.next() % 32 == 0) b[i].im = 0;
                if (random.next() % 64 == 0) b[i] = {};
                zero = zero || isZero(b[i]);
                Of<T>::divide(&b[i], &a[i], &expected[i], 1);
            }
            const test::Guarded<C> src1(b), src2(a), dst(len);
            const int n = static_cast<int>(len);
            ASSERT_EQ(Of<T>::divide(src1, src2, dst, n), zero ? vornStsDivByZero : vornStsNoErr);
            ASSERT_TRUE(test::sameBits(dst, expected)) << len;
            ASSERT_TRUE(dst.surroundingsUntouched());
            ASSERT_EQ(Of<T>::divideInPlace(src1, src2, n), zero ? vornStsDivByZero : vornStsNoErr);
            ASSERT_TRUE(test::sameBits(src2, expected)) << len;
            const C val = b[random.next() % len];
            if (isZero(val)) continue;
            for (std::size_t i = 0; i < len; ++i) Of<T>::divide(&val, &a[i], &expected[i], 1);
            const test::Guarded<C> srcDst(a);
            ASSERT_EQ(Of<T>::divideByInPlace(val, srcDst, n), vornStsNoErr);
            ASSERT_TRUE(test::sameBits(srcDst, expected)) << len;
        }
    }
}

// As everywhere, an infinite part and a divisor with an imaginary one make infinities or no numbers, never a number.
TYPED_TEST(ComplexDivision, OfInfinities) {
    using T = TypeParam;
    const T infinity = std::numeric_limits<T>::infinity(), nan = std::numeric_limits<T>::quiet_NaN();
    const Complex<T> q = quotient(Complex<T>{infinity, 1}, Complex<T>{1, 1});
    EXPECT_EQ(q.re, infinity);
    EXPECT_EQ(q.im, -infinity);
    // However small the number is that it is multiplied by.
    const T high = std::numeric_limits<T>::max(), low = std::numeric_limits<T>::denorm_min();
    for (const Complex<T> b : {Complex<T>{high, low}, Complex<T>{low, high}, Complex<T>{low, low}}) {
        const Complex<T> r = quotient(Complex<T>{high, infinity}, b);
        EXPECT_EQ(r.re, infinity) << show(r, b);
        EXPECT_EQ(r.im, infinity) << show(r, b);
    }
    for (const Complex<T> a : {Complex<T>{nan, 1}, Complex<T>{1, nan}, Complex<T>{nan, infinity}}) {
        for (const Complex<T> b : {Complex<T>{1, 1}, Complex<T>{std::numeric_limits<T>::max(), 1}}) {
            const Complex<T> r = quotient(a, b), s = quotient(b, a);
            EXPECT_TRUE(std::isnan(r.re) && std::isnan(r.im)) << show(a, b);
            EXPECT_TRUE(std::isnan(s.re) && std::isnan(s.im)) << show(b, a);
        }
    }
}

// Numbers whose squares leave the element's range.
TEST(ComplexDivisionExamples, Squares) {
    const auto expectQuotient = [](auto a, auto b, double re, double im) {
        const auto q = quotient(a, b);
        using T = decltype(q.re);
        EXPECT_EQ(q.re, static_cast<T>(re)) << show(a, b);
        EXPECT_EQ(q.im, static_cast<T>(im)) << show(a, b);
    };
    expectQuotient(Vorn32fc{1e20f, 0}, Vorn32fc{1e20f, 0}, 1, 0);
    expectQuotient(Vorn32fc{2e38f, 1}, Vorn32fc{2, 0}, 2e38f / 2, 0.5);
    expectQuotient(Vorn32fc{1e-30f, 0}, Vorn32fc{1e-18f, 0}, 1e-30f / 1e-18f, 0);
    expectQuotient(Vorn32fc{3e38f, 3e38f}, Vorn32fc{0, 3e38f}, 1, -1);
    expectQuotient(Vorn64fc{1e200, 0}, Vorn64fc{1e200, 0}, 1, 0);
    expectQuotient(Vorn64fc{1e308, 1}, Vorn64fc{2, 0}, 5e307, 0.5);
    expectQuotient(Vorn64fc{1e-250, 0}, Vorn64fc{1e-180, 0}, 1e-250 / 1e-180, 0);
    expectQuotient(Vorn64fc{1e200, 1e200}, Vorn64fc{0, 1e200}, 1, -1);
    expectQuotient(Vorn64fc{0x1p1023, 0x1p1023}, Vorn64fc{0x1p1023, -0x1p1023}, 0, 1);
    expectQuotient(Vorn64fc{0x1p-1074, -0x1p-1074}, Vorn64fc{0x1p-1074, 0x1p-1074}, 0, -1);
    // (1 + 2 i) (3 + 4 i) = -5 + 10 i.
    expectQuotient(Vorn32fc{-5, 10}, Vorn32fc{3, 4}, 1, 2);
    expectQuotient(Vorn64fc{-5, 10}, Vorn64fc{3, 4}, 1, 2);
}

}  // namespace
