// The covariance method of linear prediction.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "features/prediction/analysis.h"
#include "features/prediction/signals.h"
#include "model/linear_prediction.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using model::Singles;
using test::Guarded;
using test::Offset;
using test::Random;
using test::sameBits;

constexpr float inf = std::numeric_limits<float>::infinity();

void expectTheModel(const Singles& x, int order) {
    Guarded<float> src(x), dst(static_cast<std::size_t>(order));
    ASSERT_EQ(vornsLinearPrediction_Cov_32f(src, static_cast<int>(x.size()), dst, order), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst.values(), model::covarianceMethod(x, order))) << x.size() << " samples, order " << order;
    EXPECT_TRUE(dst.surroundingsUntouched());
}

void expectTheModelFixed(const std::vector<Vorn16s>& x, int order, int scale) {
    Guarded<Vorn16s> src(x), dst(static_cast<std::size_t>(order));
    ASSERT_EQ(vornsLinearPrediction_Cov_16s_Sfs(src, static_cast<int>(x.size()), dst, order, scale), vornStsNoErr);
    EXPECT_TRUE(sameBits(dst.values(), model::shortsOf(model::covarianceMethod(model::singlesOf(x), order), scale)))
        << x.size() << " samples, order " << order << ", scale " << scale;
    EXPECT_TRUE(dst.surroundingsUntouched());
}

TEST(LinearPredictionCov, EqualsTheModel) {
    Random random(1);
    for (std::size_t len = 1; len <= 70; ++len) {
        for (int order : {1, 2, 3, 4, 5, 8, 12, 16, 17, static_cast<int>(len) - 1, static_cast<int>(len)}) {
            if (order < 1 || order > static_cast<int>(len)) continue;
            expectTheModel(random.floats(len, -1000, 1000), order);
            expectTheModel(random.pick(test::hardFloats<float>(), len), order);
            expectTheModelFixed(random.integers<Vorn16s>(len), order, -8);
        }
    }
    for (std::size_t len : {200, 400}) {
        for (int order = 1; order <= 70; ++order) {
            const Singles x = test::vowel(random, len);
            expectTheModel(x, order);
            expectTheModelFixed(test::shorts(x), order, -10);
        }
    }
    for (int order : {127, 128, 129, 193, 300}) expectTheModel(test::vowel(random, 600), order);
}

TEST(LinearPredictionCov, ExtremeScalesEqualTheModel) {
    Random random(2);
    const auto x = test::shorts(test::vowel(random, 100));
    for (int scale : test::extremeScales) expectTheModelFixed(x, 9, scale);
}

TEST(LinearPredictionCov, FollowsTheRoundingMode) {
    Random random(3);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (int order : {1, 2, 3, 4, 12, 20}) {
            const Singles x = test::vowel(random, 120), silence(20, 0.0f);
            const test::RoundingMode changed(mode);
            expectTheModel(x, order);
            expectTheModel(silence, order);
            expectTheModelFixed(test::shorts(x), order, -12);
        }
    }
}

TEST(LinearPredictionCov, AnyAlignmentAndTheFrameItselfGiveTheSame) {
    Random random(4);
    const Singles x = test::vowel(random, 77);
    const auto fixed = test::shorts(x);
    for (int order : {1, 10, 16, 77}) {
        const auto expected = model::covarianceMethod(x, order);
        const auto expectedFixed = model::shortsOf(model::covarianceMethod(model::singlesOf(fixed), order), -12);
        for (std::size_t shift = 0; shift < 64; shift += 4) {
            Offset<float> src(x.size(), shift), dst(expected.size(), 60 - shift);
            src.assign(x);
            ASSERT_EQ(vornsLinearPrediction_Cov_32f(src, 77, dst, order), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.data(), expected.data(), expected.size()));
            EXPECT_TRUE(dst.surroundingsUntouched());
            ASSERT_EQ(vornsLinearPrediction_Cov_32f(src, 77, src, order), vornStsNoErr);
            EXPECT_TRUE(sameBits(src.data(), expected.data(), expected.size()));
            Offset<Vorn16s> srcDst(fixed.size(), shift / 2);
            srcDst.assign(fixed);
            ASSERT_EQ(vornsLinearPrediction_Cov_16s_Sfs(srcDst, 77, srcDst, order, -12), vornStsNoErr);
            EXPECT_TRUE(sameBits(srcDst.data(), expectedFixed.data(), expectedFixed.size()));
        }
    }
}

TEST(LinearPredictionCov, Literal) {
    // T(1,1) = 1 + 4 = 5 over the first two samples, psi(1) = 1 x 2 + 2 x 4 = 10: a doubling sequence.
    const float doubling[] = {1, 2, 4};
    float a[4];
    ASSERT_EQ(vornsLinearPrediction_Cov_32f(doubling, 3, a, 1), vornStsNoErr);
    EXPECT_EQ(a[0], 2.0f);
    const Vorn16s fixed[] = {100, 200, 400};
    Vorn16s fixedA[1];
    ASSERT_EQ(vornsLinearPrediction_Cov_16s_Sfs(fixed, 3, fixedA, 1, -12), vornStsNoErr);
    EXPECT_EQ(fixedA[0], 8192);
    ASSERT_EQ(vornsLinearPrediction_Cov_16s_Sfs(fixed, 3, fixedA, 1, 2), vornStsNoErr);
    EXPECT_EQ(fixedA[0], 0) << "one half goes to even";
    // Order 2 of 1, 2, 3: T = 5 2; 2 1, psi = 8, 3.
    const float ramp[] = {1, 2, 3};
    ASSERT_EQ(vornsLinearPrediction_Cov_32f(ramp, 3, a, 2), vornStsNoErr);
    EXPECT_NEAR(a[0], 2, 1e-5);  // 5 a1 + 2 a2 = 8, 2 a1 + a2 = 3
    EXPECT_NEAR(a[1], -1, 1e-5);
}

// T of silence is zero, and so is the right side.
TEST(LinearPredictionCov, NothingIsTested) {
    for (int order : {1, 4, 12}) {
        const Singles silence(30, 0.0f);
        Singles a(static_cast<std::size_t>(order));
        ASSERT_EQ(vornsLinearPrediction_Cov_32f(silence.data(), 30, a.data(), order), vornStsNoErr);
        for (float x : a) EXPECT_TRUE(std::isnan(x)) << "0 / 0";
        const std::vector<Vorn16s> quiet(30, 0);
        std::vector<Vorn16s> fixed(static_cast<std::size_t>(order));
        ASSERT_EQ(vornsLinearPrediction_Cov_16s_Sfs(quiet.data(), 30, fixed.data(), order, 5), vornStsNoErr);
        for (Vorn16s x : fixed) EXPECT_EQ(x, 32767);
    }
    // A zero D under a right side that is none: T(1,1) underflows in single, psi does not, as its other factor is one.
    const float faint[] = {1e-30f, 1};
    float a;
    ASSERT_EQ(vornsLinearPrediction_Cov_32f(faint, 2, &a, 1), vornStsNoErr);
    EXPECT_EQ(a, inf);
    const float opposite[] = {-1e-30f, 1};
    ASSERT_EQ(vornsLinearPrediction_Cov_32f(opposite, 2, &a, 1), vornStsNoErr);
    EXPECT_EQ(a, -inf);
    const float single[] = {5};
    ASSERT_EQ(vornsLinearPrediction_Cov_32f(single, 1, &a, 1), vornStsNoErr) << "no product at all";
    EXPECT_TRUE(std::isnan(a));
}

// Up to order 3 the factors are those of the matrix.
TEST(LinearPredictionCov, SolvesTheNormalEquationsUpToOrder3) {
    Random random(5);
    double worst = 0;
    for (int turn = 0; turn < 60; ++turn) {
        const int order = 1 + turn % 3, len = 100 + turn;
        const Singles x = random.floats(static_cast<std::size_t>(len), -1, 1);
        std::vector<std::vector<long double>> rows(order, std::vector<long double>(order));
        std::vector<long double> right(order);
        for (int i = 1; i <= order; ++i) {
            for (int t = 0; t < len - i; ++t) right[i - 1] += static_cast<long double>(x[t]) * x[t + i];
            for (int j = 1; j <= i; ++j) {
                long double sum = 0;
                for (int t = 0; t < len - i; ++t) sum += static_cast<long double>(x[t]) * x[t + i - j];
                rows[i - 1][j - 1] = rows[j - 1][i - 1] = sum;
            }
        }
        const auto exact = test::solved(rows, right);
        Singles a(static_cast<std::size_t>(order));
        ASSERT_EQ(vornsLinearPrediction_Cov_32f(x.data(), len, a.data(), order), vornStsNoErr);
        for (int i = 0; i < order; ++i) {
            worst = std::max(worst, static_cast<double>(std::fabs(exact[i] - a[i]) * 0x1p24L));
        }
    }
    EXPECT_LT(worst, 4.0) << "in units of 2^-24";
}

// From order 4 on they are not: element (4,3) takes L(3,1) where row 3 has L(3,2). Worked by hand on one matrix.
TEST(LinearPredictionCov, TakesThePackedElementsFromTheirStart) {
    Random random(6);
    const Singles x = test::vowel(random, 60);
    std::vector<std::vector<double>> t(5, std::vector<double>(5));
    std::vector<double> psi(5);
    for (int i = 1; i <= 4; ++i) {
        for (int n = 0; n < 60 - i; ++n) psi[i] += double{x[n]} * x[n + i];
        for (int j = 1; j <= i; ++j) {
            for (int n = 0; n < 60 - i; ++n) t[i][j] += double{x[n]} * x[n + i - j];
        }
    }
    const double d1 = t[1][1], l21 = t[2][1] / d1, l31 = t[3][1] / d1, l41 = t[4][1] / d1;
    const double d2 = t[2][2] - l21 * l21 * d1;
    const double l32 = (t[3][2] - l31 * d1 * l21) / d2, l42 = (t[4][2] - l41 * d1 * l21) / d2;
    const double d3 = t[3][3] - l31 * l31 * d1 - l32 * l32 * d2;
    const double l43 = (t[4][3] - l41 * d1 * l21 - l42 * d2 * l31) / d3;
    const double d4 = t[4][4] - l41 * l41 * d1 - l42 * l42 * d2 - l43 * l43 * d3;
    const double y1 = psi[1], y2 = psi[2] - l21 * y1, y3 = psi[3] - l31 * y1 - l32 * y2;
    const double y4 = psi[4] - l41 * y1 - l42 * y2 - l43 * y3;
    const double a4 = y4 / d4, a3 = y3 / d3 - l43 * a4, a2 = y2 / d2 - l32 * a3 - l42 * a4;
    const double a1 = y1 / d1 - l21 * a2 - l31 * a3 - l41 * a4;
    Singles a(4);
    ASSERT_EQ(vornsLinearPrediction_Cov_32f(x.data(), 60, a.data(), 4), vornStsNoErr);
    const double expected[] = {a1, a2, a3, a4};
    for (int i = 0; i < 4; ++i) EXPECT_NEAR(a[i], expected[i], 1e-3 * std::fabs(expected[i])) << i;
}

const test::Analysis<Vorn16s> fixedForm = [](const Vorn16s* src, int len, Vorn16s* dst, int order) {
    return vornsLinearPrediction_Cov_16s_Sfs(src, len, dst, order, -12);
};

TEST(LinearPredictionCov, ChecksInOrder) {
    test::expectAnalysisOrder<float>(vornsLinearPrediction_Cov_32f);
    test::expectAnalysisOrder<Vorn16s>(fixedForm);
}

TEST(LinearPredictionCov, FailedAllocations) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator cannot fail on demand";
    Random random(7);
    for (int order : {1, 12, 63, 64}) {
        const auto x = random.floats(80, -1000, 1000);
        EXPECT_GE(test::expectFailedAnalysis<float>(vornsLinearPrediction_Cov_32f, x, order), 1);
        EXPECT_GE(test::expectFailedAnalysis<Vorn16s>(fixedForm, random.integers<Vorn16s>(80), order), 3);
    }
}

// Scratch of more elements than an int can count.
TEST(LinearPredictionCov, RefusesWhatNoScratchHolds) {
    Guarded<float> x{1}, dst(1);
    for (int len : {INT_MAX, INT_MAX - 1, 50000}) {
        EXPECT_EQ(vornsLinearPrediction_Cov_32f(x, len, dst, len), vornStsMemAllocErr);
    }
    EXPECT_EQ(vornsLinearPrediction_Cov_32f(x, INT_MAX, dst, 1), vornStsMemAllocErr);
    EXPECT_TRUE(dst.untouched());
}

}  // namespace
