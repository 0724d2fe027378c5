// The autocorrelation method of linear prediction.
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
using test::Analysis;
using test::Guarded;
using test::Offset;
using test::Random;
using test::sameBits;

constexpr float inf = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

// What a frame that fails leaves: the coefficients of the rounds completed, and behind them what the caller had, here
// the number 3; negated in the one form.
void expectTheModel(const Singles& x, int order) {
    const auto expected = model::autocorrelationMethod(x, order);
    Singles filter = expected.found;
    filter.resize(static_cast<std::size_t>(order), 3.0f);
    const int len = static_cast<int>(x.size());
    Guarded<float> src(x), dst(Singles(filter.size(), 3.0f)), opposite(Singles(filter.size(), 3.0f));
    ASSERT_EQ(vornsLinearPrediction_Auto_32f(src, len, dst, order), expected.status);
    ASSERT_EQ(vornsLinearPredictionNeg_Auto_32f(src, len, opposite, order), expected.status);
    EXPECT_TRUE(sameBits(dst.values(), filter)) << len << " samples, order " << order;
    EXPECT_TRUE(sameBits(opposite.values(), model::negated(filter))) << len << " samples, order " << order;
    EXPECT_TRUE(dst.surroundingsUntouched() && opposite.surroundingsUntouched());
}

void expectTheModelFixed(const std::vector<Vorn16s>& x, int order, int scale) {
    const auto expected = model::autocorrelationMethod(model::singlesOf(x), order);
    const int len = static_cast<int>(x.size());
    Guarded<Vorn16s> src(x), dst(static_cast<std::size_t>(order)), opposite(static_cast<std::size_t>(order));
    ASSERT_EQ(vornsLinearPrediction_Auto_16s_Sfs(src, len, dst, order, scale), expected.status);
    ASSERT_EQ(vornsLinearPredictionNeg_Auto_16s_Sfs(src, len, opposite, order, scale), expected.status);
    if (expected.status != vornStsNoErr) {
        EXPECT_TRUE(dst.untouched() && opposite.untouched());
    } else {
        EXPECT_TRUE(sameBits(dst.values(), model::shortsOf(expected.found, scale))) << order << ", scale " << scale;
        EXPECT_TRUE(sameBits(opposite.values(), model::shortsOf(model::negated(expected.found), scale)))
            << order << ", scale " << scale;
    }
    EXPECT_TRUE(dst.surroundingsUntouched() && opposite.surroundingsUntouched());
}

TEST(LinearPredictionAuto, EqualsTheModel) {
    Random random(1);
    for (std::size_t len = 1; len <= 70; ++len) {
        for (int order : {1, 2, 3, 8, 12, 13, static_cast<int>(len) - 1, static_cast<int>(len)}) {
            if (order < 1 || order > static_cast<int>(len)) continue;
            expectTheModel(random.floats(len, -1000, 1000), order);
            expectTheModel(random.pick(test::hardFloats<float>(), len), order);
            expectTheModelFixed(random.integers<Vorn16s>(len), order, -11);
            expectTheModelFixed(random.pick<Vorn16s>({-32768, 32767, 0}, len), order, -13);
        }
    }
    for (std::size_t len : {200, 400, 1000}) {
        for (int order : {8, 10, 12, 16, 61, 62, 63, 64, 65, 100}) {
            const Singles x = test::vowel(random, len);
            expectTheModel(x, order);
            expectTheModelFixed(test::shorts(x), order, -12);
        }
    }
}

TEST(LinearPredictionAuto, ExtremeScalesEqualTheModel) {
    Random random(2);
    for (std::size_t len : {30, 100}) {
        const auto x = test::shorts(test::vowel(random, len));
        for (int scale : test::extremeScales) expectTheModelFixed(x, 9, scale);
    }
}

TEST(LinearPredictionAuto, FollowsTheRoundingMode) {
    Random random(3);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        for (int order : {1, 12, 20}) {
            const Singles x = test::vowel(random, 120), silence(20, 0.0f);
            const test::RoundingMode changed(mode);
            expectTheModel(x, order);
            expectTheModel(silence, order);
            expectTheModelFixed(test::shorts(x), order, -12);
        }
    }
}

TEST(LinearPredictionAuto, IsTheRecursionOnTheAutocorrelation) {
    Random random(4);
    for (int order : {12, 855, 900}) {  // the last one finds its sums by the transform
        const Singles x = random.floats(1500, -1, 1);
        Singles r(static_cast<std::size_t>(order) + 1), a(static_cast<std::size_t>(order)), filter = a;
        float error;
        ASSERT_EQ(vornsAutoCorr_32f(x.data(), 1500, r.data(), order + 1), vornStsNoErr);
        ASSERT_EQ(vornsDurbin_32f(r.data(), a.data(), order, &error), vornStsNoErr);
        ASSERT_EQ(vornsLinearPrediction_Auto_32f(x.data(), 1500, filter.data(), order), vornStsNoErr);
        EXPECT_TRUE(sameBits(filter, a)) << order;
    }
}

TEST(LinearPredictionAuto, AnyAlignmentAndTheFrameItselfGiveTheSame) {
    Random random(5);
    const Singles x = test::vowel(random, 77);
    const auto fixed = test::shorts(x);
    for (int order : {1, 10, 16, 77}) {
        const auto expected = model::autocorrelationMethod(x, order).found;
        const auto expectedFixed =
            model::shortsOf(model::negated(model::autocorrelationMethod(model::singlesOf(fixed), order).found), -12);
        for (std::size_t shift = 0; shift < 64; shift += 4) {
            Offset<float> src(x.size(), shift), dst(expected.size(), 60 - shift);
            src.assign(x);
            ASSERT_EQ(vornsLinearPrediction_Auto_32f(src, 77, dst, order), vornStsNoErr);
            EXPECT_TRUE(sameBits(dst.data(), expected.data(), expected.size()));
            EXPECT_TRUE(dst.surroundingsUntouched());
            Offset<Vorn16s> srcDst(fixed.size(), shift / 2);
            srcDst.assign(fixed);
            ASSERT_EQ(vornsLinearPredictionNeg_Auto_16s_Sfs(srcDst, 77, srcDst, order, -12), vornStsNoErr);
            EXPECT_TRUE(sameBits(srcDst.data(), expectedFixed.data(), expectedFixed.size()));
        }
        auto srcDst = x;
        ASSERT_EQ(vornsLinearPrediction_Auto_32f(srcDst.data(), 77, srcDst.data(), order), vornStsNoErr);
        EXPECT_TRUE(sameBits(srcDst.data(), expected.data(), expected.size()));
    }
}

TEST(LinearPredictionAuto, Literal) {
    // r = 5, 2: a(1) = -0.4 and no more, as lag 2 lies beyond the frame; its k is -0.16 / 0.84 of a(1).
    const float x[] = {1, 2};
    float a[2], opposite[2];
    ASSERT_EQ(vornsLinearPrediction_Auto_32f(x, 2, a, 1), vornStsNoErr);
    EXPECT_EQ(a[0], -0.4f);
    ASSERT_EQ(vornsLinearPrediction_Auto_32f(x, 2, a, 2), vornStsNoErr) << "the order may be the length";
    EXPECT_NEAR(a[0], -10.0 / 21, 1e-6);  // 5 a1 + 2 a2 = -2, 2 a1 + 5 a2 = 0
    EXPECT_NEAR(a[1], 4.0 / 21, 1e-6);
    ASSERT_EQ(vornsLinearPredictionNeg_Auto_32f(x, 2, opposite, 2), vornStsNoErr);
    EXPECT_EQ(opposite[0], -a[0]);
    EXPECT_EQ(opposite[1], -a[1]);
    const float one[] = {3};
    ASSERT_EQ(vornsLinearPrediction_Auto_32f(one, 1, a, 1), vornStsNoErr);
    EXPECT_TRUE(test::same(a[0], 0.0f));
    ASSERT_EQ(vornsLinearPredictionNeg_Auto_32f(one, 1, a, 1), vornStsNoErr);
    EXPECT_TRUE(test::same(a[0], 0.0f)) << "0 minus 0 has no sign";
    const Vorn16s fixed[] = {1000, 2000};
    Vorn16s fixedA[1];
    ASSERT_EQ(vornsLinearPrediction_Auto_16s_Sfs(fixed, 2, fixedA, 1, -12), vornStsNoErr);
    EXPECT_EQ(fixedA[0], -1638);  // -0.4 x 4096 = -1638.4
    ASSERT_EQ(vornsLinearPredictionNeg_Auto_16s_Sfs(fixed, 2, fixedA, 1, -12), vornStsNoErr);
    EXPECT_EQ(fixedA[0], 1638);
    ASSERT_EQ(vornsLinearPredictionNeg_Auto_16s_Sfs(fixed, 2, fixedA, 1, -18), vornStsNoErr);
    EXPECT_EQ(fixedA[0], 32767) << "saturated";
}

TEST(LinearPredictionAuto, FramesThatFail) {
    const Singles silence(30, 0.0f), faint(30, 1e-30f), loud(30, 1e20f);
    Singles noNumber(30, 1.0f), infinite(30, 1.0f);
    noNumber[29] = nan;
    infinite[5] = inf;
    for (const Singles& x : {silence, faint, loud, noNumber, infinite}) {
        Guarded<float> dst(3);
        EXPECT_EQ(vornsLinearPrediction_Auto_32f(x.data(), 30, dst, 3), vornStsDurbinErr);
        EXPECT_TRUE(dst.untouched());
        float opposite[] = {1, -2, 0};
        EXPECT_EQ(vornsLinearPredictionNeg_Auto_32f(x.data(), 30, opposite, 3), vornStsDurbinErr);
        EXPECT_EQ(opposite[0], -1.0f) << "what the caller had is negated as well";
        EXPECT_EQ(opposite[1], 2.0f);
        EXPECT_TRUE(test::same(opposite[2], 0.0f));
    }
    Guarded<Vorn16s> quiet(std::vector<Vorn16s>(30, 0)), dst(3);
    EXPECT_EQ(vornsLinearPrediction_Auto_16s_Sfs(quiet, 30, dst, 3, 0), vornStsDurbinErr);
    EXPECT_EQ(vornsLinearPredictionNeg_Auto_16s_Sfs(quiet, 30, dst, 3, 0), vornStsDurbinErr);
    EXPECT_TRUE(dst.untouched());
}

// A tone under a smooth window fails some rounds later; a constant, a clipped tone and one without a window do not.
TEST(LinearPredictionAuto, RealFrames) {
    Singles window(400), tone(400), clipped(400), constant(400, 32767.0f);
    for (std::size_t n = 0; n < 400; ++n) {
        const double hann = 0.5 - 0.5 * std::cos(2 * 3.141592653589793 * static_cast<double>(n) / 399);
        const double sample = 30000 * std::sin(0.1 * static_cast<double>(n));
        window[n] = static_cast<float>(hann * hann * sample);
        tone[n] = static_cast<float>(sample);
        clipped[n] = static_cast<float>(std::clamp(3 * sample, -32768.0, 32767.0));
    }
    EXPECT_EQ(model::autocorrelationMethod(window, 30).status, vornStsDurbinErr);
    EXPECT_GE(model::autocorrelationMethod(window, 30).found.size(), 2u);
    for (const Singles& x : {window, tone, clipped, constant}) {
        expectTheModel(x, 30);
        expectTheModelFixed(test::shorts(x), 30, -11);
    }
    for (const Singles& x : {tone, clipped, constant}) {
        EXPECT_EQ(model::autocorrelationMethod(x, 12).status, vornStsNoErr);
    }
}

// What is promised of a filter: its residual is smaller than the frame, and no other filter's energy is below the
// error that the recursion tells.
TEST(LinearPredictionAuto, LeavesTheErrorThatTheRecursionTells) {
    Random random(6);
    for (int order : {2, 8, 12, 20}) {
        const Singles x = test::vowel(random, 400);
        const Singles r = test::autocorrelation(x, order);
        Singles a(static_cast<std::size_t>(order));
        float error;
        ASSERT_EQ(vornsLinearPrediction_Auto_32f(x.data(), 400, a.data(), order), vornStsNoErr);
        ASSERT_EQ(vornsDurbin_32f(r.data(), Singles(a).data(), order, &error), vornStsNoErr);
        double energy = 0;
        for (int n = 0; n < 400 + order; ++n) {
            double residual = n < 400 ? x[n] : 0;
            for (int k = 1; k <= order; ++k) residual += n - k >= 0 && n - k < 400 ? a[k - 1] * double{x[n - k]} : 0;
            energy += residual * residual;
        }
        EXPECT_NEAR(energy / r[0], error / r[0], 1e-4);
        EXPECT_LT(energy, 0.5 * r[0]);
    }
}

Analysis<Vorn16s> fixedForms[] = {[](const Vorn16s* src, int len, Vorn16s* dst, int order) {
                                      return vornsLinearPrediction_Auto_16s_Sfs(src, len, dst, order, -12);
                                  },
                                  [](const Vorn16s* src, int len, Vorn16s* dst, int order) {
                                      return vornsLinearPredictionNeg_Auto_16s_Sfs(src, len, dst, order, -12);
                                  }};
Analysis<float> forms[] = {vornsLinearPrediction_Auto_32f, vornsLinearPredictionNeg_Auto_32f};

TEST(LinearPredictionAuto, ChecksInOrder) {
    for (auto form : forms) test::expectAnalysisOrder<float>(form);
    for (auto form : fixedForms) test::expectAnalysisOrder<Vorn16s>(form);
}

TEST(LinearPredictionAuto, AllocatesFromOrder63AndFixedFromLength64) {
    if (!test::FailAllocation::available()) GTEST_SKIP() << "the sanitizer's allocator cannot fail on demand";
    Random random(7);
    for (std::size_t len : {30, 62, 63, 64, 65, 100, 1000}) {
        const auto x = random.floats(len, -1000, 1000);
        const auto fixed = random.integers<Vorn16s>(len);
        for (int order : {1, 12, 61, 62, 63, 64, 65, 900}) {
            if (order > static_cast<int>(len)) continue;
            for (auto form : forms) {
                const int allocations = test::expectFailedAnalysis<float>(form, x, order);
                EXPECT_EQ(allocations > 0, order >= 63) << len << ", " << order;
                EXPECT_EQ(allocations > 1, order >= 64) << len << ", " << order;
            }
            for (auto form : fixedForms) {
                const int allocations = test::expectFailedAnalysis<Vorn16s>(form, fixed, order);
                EXPECT_EQ(allocations > 0, order >= 63 || len >= 64) << len << ", " << order;
            }
        }
    }
}

// One autocorrelation more than an int can count.
TEST(LinearPredictionAuto, RefusesWhatNoScratchHolds) {
    Guarded<float> x{1}, dst(1);
    for (auto form : forms) EXPECT_EQ(form(x, INT_MAX, dst, INT_MAX), vornStsMemAllocErr);
    EXPECT_TRUE(dst.untouched());
}

}  // namespace
