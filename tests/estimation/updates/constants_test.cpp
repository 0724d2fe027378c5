// The constants of Gaussians and of output probabilities.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <string_view>
#include <vector>

#include "model/reductions.h"
#include "model/updates.h"
#include "support/expect.h"
#include "support/guarded.h"
#include "support/members.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "support/vectors.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;
using test::sameBits;

// ---- The constants of Gaussians.

VornStatus gconst(bool direct, const float* src, int len, float* dst) {
    return direct ? vornsUpdateGConst_DirectVar_32f(src, len, dst) : vornsUpdateGConst_32f(src, len, dst);
}
VornStatus gconst(bool direct, const double* src, int len, double* dst) {
    return direct ? vornsUpdateGConst_DirectVar_64f(src, len, dst) : vornsUpdateGConst_64f(src, len, dst);
}

template <class T>
class GConst : public testing::Test {};
using Floats = testing::Types<float, double>;
TYPED_TEST_SUITE(GConst, Floats);

// The constant part and one addition in the precision of the name: bit for bit.
TYPED_TEST(GConst, IsTheConstantPartAndTheSumOfLogarithms) {
    using T = TypeParam;
    Random random(1);
    for (bool direct : {false, true}) {
        for (int len : {1, 2, 3, 4, 5, 7, 8, 9, 13, 26, 39, 40, 64, 70, 255, 256, 257, 511, 512, 513, 1000, 1025}) {
            std::vector<T> x(static_cast<std::size_t>(len));
            for (T& v : x) v = static_cast<T>(random.uniform(1e-3, 100.0));
            const Guarded<T> src(x);
            Guarded<T> dst(1);
            ASSERT_EQ(gconst(direct, src, len, dst), vornStsNoErr);
            const auto sum = static_cast<T>(model::sumLn<T>(x).sum);
            const auto c = static_cast<T>(len * 1.8378770664093);
            const T expected = direct ? c + sum : c - sum;
            EXPECT_EQ(dst[0], expected) << len;
            EXPECT_TRUE(dst.surroundingsUntouched());

            long double exact = len * 1.8378770664093454835606594728112L;
            for (T v : x) exact += (direct ? 1 : -1) * std::log(static_cast<long double>(v));
            EXPECT_NEAR(dst[0], static_cast<double>(exact), (sizeof(T) == 4 ? 1e-6 : 1e-13) * 8 * len)
                << "the formula itself";
        }
    }
}

// A Gaussian has one constant, whether its variances or their reciprocals are given.
TYPED_TEST(GConst, InverseVariancesGiveTheConstantOfTheVariances) {
    using T = TypeParam;
    std::vector<T> var(39), inverse(39);
    for (int i = 0; i < 39; ++i) {
        var[static_cast<std::size_t>(i)] = std::ldexp(T(1), i % 21 - 10);
        inverse[static_cast<std::size_t>(i)] = std::ldexp(T(1), 10 - i % 21);
    }
    T ofVar, ofInverse;
    ASSERT_EQ(gconst(true, var.data(), 39, &ofVar), vornStsNoErr);
    ASSERT_EQ(gconst(false, inverse.data(), 39, &ofInverse), vornStsNoErr);
    EXPECT_EQ(ofVar, ofInverse);
}

TEST(GConst, UnitVariances) {
    const std::vector<float> ones(39, 1.0f);
    const std::vector<double> wideOnes(39, 1.0);
    for (bool direct : {false, true}) {
        float dst;
        ASSERT_EQ(gconst(direct, ones.data(), 39, &dst), vornStsNoErr);
        EXPECT_EQ(dst, 71.6772056f);  // 39 ln(2 pi)
        double wide;
        ASSERT_EQ(gconst(direct, wideOnes.data(), 39, &wide), vornStsNoErr);
        EXPECT_EQ(wide, 39 * 1.8378770664093);
        EXPECT_NE(wide, 39 * 1.8378770664093453) << "the logarithm of two pi has so many digits and no more";
    }
}

TYPED_TEST(GConst, ZerosAndNegativeVariancesWarn) {
    using T = TypeParam;
    constexpr T inf = std::numeric_limits<T>::infinity();
    for (bool direct : {false, true}) {
        T dst = 0;
        const T zero[] = {1, 2, 0, 3, 4};
        EXPECT_EQ(gconst(direct, zero, 5, &dst), vornStsLnZeroArg);
        EXPECT_EQ(dst, inf);
        const T minusZero[] = {1, T(-0.0)};
        EXPECT_EQ(gconst(direct, minusZero, 2, &dst), vornStsLnZeroArg);
        EXPECT_EQ(dst, inf) << "positive, whatever the sign of the sum";
        const T negative[] = {1, 2, 3, -4, 5, 6};
        EXPECT_EQ(gconst(direct, negative, 6, &dst), vornStsLnNegArg);
        EXPECT_TRUE(std::isnan(dst));
        const T infinite[] = {1, inf, 3};
        dst = 0;
        EXPECT_EQ(gconst(direct, infinite, 3, &dst), vornStsNoErr);
        EXPECT_TRUE(std::isnan(dst)) << "what the sum of logarithms stores for an infinity";
    }
}

TYPED_TEST(GConst, ChecksInOrder) {
    using T = TypeParam;
    struct Arguments {
        std::vector<T> data = std::vector<T>(3, T(1));
        Guarded<T> out = Guarded<T>(1);
        const T* src = data.data();
        T* dst = out.data();
        int len = 3;
    };
    for (bool direct : {false, true}) {
        test::expectCheckOrder<Arguments>([] { return Arguments(); },
                                          [=](Arguments& a) { return gconst(direct, a.src, a.len, a.dst); },
                                          [](Arguments& a) { return a.out.untouched(); },
                                          {{"src", vornStsNullPtrErr, [](Arguments& a) { a.src = nullptr; }},
                                           {"dst", vornStsNullPtrErr, [](Arguments& a) { a.dst = nullptr; }},
                                           {"len 0", vornStsSizeErr, [](Arguments& a) { a.len = 0; }},
                                           {"len -1", vornStsSizeErr, [](Arguments& a) { a.len = -1; }}});
    }
}

// ---- The constant part of an output probability.

TEST(OutProbPreCalc, ChecksAndAlignments) {
    const test::Member members[] = {
        MEMBER(vornsOutProbPreCalc_32f),   MEMBER(vornsOutProbPreCalc_64f),   MEMBER(vornsOutProbPreCalc_32s),
        MEMBER(vornsOutProbPreCalc_32f_I), MEMBER(vornsOutProbPreCalc_64f_I), MEMBER(vornsOutProbPreCalc_32s_I),
    };
    for (const test::Member& member : members) {
        test::expectPointersThenLength(member);
        if (std::string_view(member.name()).find("32s") == std::string_view::npos)
            test::expectNoAlignmentChangesAResult(member);
    }
}

VornStatus lessHalf(const float* a, const float* b, float* d, int n) { return vornsOutProbPreCalc_32f(a, b, d, n); }
VornStatus lessHalf(const double* a, const double* b, double* d, int n) { return vornsOutProbPreCalc_64f(a, b, d, n); }
VornStatus lessHalfInPlace(const float* a, float* d, int n) { return vornsOutProbPreCalc_32f_I(a, d, n); }
VornStatus lessHalfInPlace(const double* a, double* d, int n) { return vornsOutProbPreCalc_64f_I(a, d, n); }

template <class T>
void expectLessHalf() {
    Random random(2);
    for (std::size_t len : test::lengths()) {
        for (unsigned mode : {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
            std::vector<T> a = test::data<T>(random, len), b = test::data<T>(random, len);
            if (len % 2 == 1) a = random.pick(test::hardFloats<T>(), len), b = random.pick(test::hardFloats<T>(), len);
            const Guarded<T> src(a), constant(b), dst(len);
            const RoundingMode changed(mode);
            const std::vector<T> expected = model::updates::lessHalf(a, b);
            ASSERT_EQ(lessHalf(src.data(), constant.data(), dst.data(), static_cast<int>(len)), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst, expected)) << len << " mode " << mode;
            EXPECT_TRUE(dst.surroundingsUntouched());
            ASSERT_EQ(lessHalfInPlace(src.data(), constant.data(), static_cast<int>(len)), vornStsNoErr);
            EXPECT_TRUE(sameBits(constant, expected)) << len << " in place, mode " << mode;
            EXPECT_TRUE(sameBits(src, a));
        }
    }
}
TEST(OutProbPreCalc, FloatsAreRoundedOnceAnOperation) {
    expectLessHalf<float>();
    expectLessHalf<double>();
}

// Every address of every vector: 16 bytes apart from the rest only if all are.
TEST(OutProbPreCalc, IntegersAreRoundedByPositionAndAlignment) {
    Random random(3);
    for (std::size_t len = 1; len <= 70; ++len) {
        const std::vector<Vorn32s> a = test::data<Vorn32s>(random, len), b = test::data<Vorn32s>(random, len);
        for (std::size_t addresses = 0; addresses < 64; ++addresses) {
            if (len > 20 && addresses % 21 != 0) continue;
            Offset<Vorn32s> src(len, addresses % 4 * 4), constant(len, addresses / 4 % 4 * 4),
                dst(len, addresses / 16 * 4);
            src.assign(a);
            constant.assign(b);
            ASSERT_EQ(vornsOutProbPreCalc_32s(src, constant, dst, static_cast<int>(len)), vornStsNoErr);
            EXPECT_EQ(dst.values(), model::updates::lessHalf(a, b, addresses == 0)) << len << ' ' << addresses;
            EXPECT_TRUE(dst.surroundingsUntouched());
            ASSERT_EQ(vornsOutProbPreCalc_32s_I(src, constant, static_cast<int>(len)), vornStsNoErr);
            EXPECT_EQ(constant.values(), model::updates::lessHalf(a, b, addresses % 16 == 0)) << "in place " << len;
            EXPECT_TRUE(constant.surroundingsUntouched());
        }
        Guarded<Vorn32s> src(a), constant(b), dst(len);
        const auto at = [](const Vorn32s* p) { return reinterpret_cast<std::uintptr_t>(p) % 16; };
        ASSERT_EQ(vornsOutProbPreCalc_32s(src, constant, dst, static_cast<int>(len)), vornStsNoErr);
        const bool aligned = at(src) == 0 && at(constant) == 0 && at(dst) == 0;
        EXPECT_EQ(dst.values(), model::updates::lessHalf(a, b, aligned)) << len;
        EXPECT_TRUE(dst.surroundingsUntouched());
    }
}

TEST(OutProbPreCalc, ThreeOddConstants) {
    const std::vector<Vorn32s> threes = {3, 3, 3}, tens = {10, 10, 10};
    for (std::size_t offset : {0, 4, 8, 12}) {
        Offset<Vorn32s> src(3, 0), constant(3, offset), dst(3, 0);
        src.assign(tens);
        constant.assign(threes);
        ASSERT_EQ(vornsOutProbPreCalc_32s(src, constant, dst, 3), vornStsNoErr);
        EXPECT_EQ(dst.values(), offset == 0 ? (std::vector<Vorn32s>{9, 9, 8}) : (std::vector<Vorn32s>{8, 8, 8}));
    }
    // A negative odd half: down to -2, up to -1.
    Offset<Vorn32s> src(3, 0), constant(3, 0);
    src.assign({0, 0, 0});
    constant.assign({-3, -3, -3});
    ASSERT_EQ(vornsOutProbPreCalc_32s_I(src, constant, 3), vornStsNoErr);
    EXPECT_EQ(constant.values(), (std::vector<Vorn32s>{2, 2, 1}));
}

TEST(OutProbPreCalc, SumsWrap) {
    Offset<Vorn32s> src(3, 0), constant(3, 0), dst(3, 0);
    src.assign({INT_MIN, INT_MAX, 0});
    constant.assign({2, -2, INT_MAX});
    ASSERT_EQ(vornsOutProbPreCalc_32s(src, constant, dst, 3), vornStsNoErr);
    EXPECT_EQ(dst.values(), (std::vector<Vorn32s>{INT_MAX, INT_MIN, 1073741824}));  // INT_MAX + 1 wraps before its half
}

// Whatever is added to a constant's half comes back.
TEST(OutProbPreCalc, EvenConstantsAreExact) {
    Random random(4);
    for (int len : {1, 2, 3, 4, 5, 39}) {
        const auto size = static_cast<std::size_t>(len);
        const std::vector<Vorn32s> weight = random.integers<Vorn32s>(size, -1000000, 1000000),
                                   half = random.integers<Vorn32s>(size, -1000000, 1000000);
        std::vector<Vorn32s> constant(half), dst(size);
        for (Vorn32s& c : constant) c *= 2;
        ASSERT_EQ(vornsOutProbPreCalc_32s(weight.data(), constant.data(), dst.data(), len), vornStsNoErr);
        for (std::size_t i = 0; i < size; ++i) EXPECT_EQ(dst[i] + half[i], weight[i]);
    }
}

}  // namespace
