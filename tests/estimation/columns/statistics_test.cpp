// Means and variances of columns, plain and weighted.
#include "model/column_statistics.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/expect.h"
#include "support/guarded.h"
#include "support/rounding_mode.h"
#include "support/values.h"
#include "vornsr.h"

namespace {

using test::Guarded;
using test::Offset;
using test::Random;
using test::RoundingMode;
using test::sameBits;

// The two members behind one face: the unweighted one takes the weights and leaves them.
struct MeanVar {
    static constexpr int leastHeight = 2;
    static VornStatus call(const float* src, int step, const float*, int height, float* mean, float* var, int width) {
        return vornsMeanVarColumn_32f_D2(src, height, step, mean, var, width);
    }
    static void model(const float* src, int step, const float*, int height, float* mean, float* var, int width) {
        model::meanVarColumn(src, height, step, mean, var, width);
    }
};

struct WeightedMeanVar {
    static constexpr int leastHeight = 1;
    static VornStatus call(const float* src, int step, const float* weight, int height, float* mean, float* var,
                           int width) {
        return vornsWeightedMeanVarColumn_32f_D2(src, step, weight, height, mean, var, width);
    }
    static void model(const float* src, int step, const float* weight, int height, float* mean, float* var, int width) {
        model::weightedMeanVarColumn(src, step, weight, height, mean, var, width);
    }
};

template <class Member>
class ColumnStatistics : public testing::Test {
protected:
    // The last row is as long as the width only: nothing behind it belongs to the matrix.
    static void compare(const std::vector<float>& data, const std::vector<float>& weights, int step, int width) {
        const int height = static_cast<int>(weights.size());
        Guarded<float> src(static_cast<std::size_t>(height - 1) * step + width);
        src.assign(std::vector<float>(data.begin(), data.begin() + static_cast<std::ptrdiff_t>(src.size())));
        Guarded<float> weight(weights);
        Guarded<float> mean(width), var(width);
        std::vector<float> expectedMean(width), expectedVar(width);
        Member::model(src, step, weight, height, expectedMean.data(), expectedVar.data(), width);
        ASSERT_EQ(Member::call(src, step, weight, height, mean, var, width), vornStsNoErr);
        EXPECT_TRUE(sameBits(mean.data(), expectedMean.data(), width))
            << "mean, " << height << " x " << width << ", " << step;
        EXPECT_TRUE(sameBits(var.data(), expectedVar.data(), width))
            << "var, " << height << " x " << width << ", " << step;
        EXPECT_TRUE(mean.surroundingsUntouched() && var.surroundingsUntouched());
    }
};

using Members = testing::Types<MeanVar, WeightedMeanVar>;
TYPED_TEST_SUITE(ColumnStatistics, Members);

TYPED_TEST(ColumnStatistics, EqualsTheModelBitForBit) {
    Random random(1);
    for (int width = 1; width <= 70; ++width) {
        for (int height : {TypeParam::leastHeight, 2, 3, 4, 5, 7, 8, 17, 40}) {
            for (int step : {width, width + 1, width + 5, (width + 7) / 8 * 8}) {
                const auto data = random.floats(static_cast<std::size_t>(height) * step, -10.0, 10.0);
                this->compare(data, random.floats(height, 0.0, 0.1), step, width);
            }
        }
    }
}

TYPED_TEST(ColumnStatistics, EqualsTheModelOverManyRows) {
    Random random(2);
    for (int width : {1, 3, 4, 13, 15, 16, 39, 64, 65, 79, 80, 81, 129, 200, 1025}) {
        for (int height : {100, 511, 1000}) {
            const auto data = random.floats(static_cast<std::size_t>(height) * width, -100.0, 300.0);
            this->compare(data, random.floats(height, 0.0, 0.01), width, width);
        }
    }
}

// More than a second-level cache holds, and more than a stripe in each way that a row can end.
TYPED_TEST(ColumnStatistics, EqualsTheModelOverLargeMatrices) {
    Random random(6);
    for (int width : {1, 3, 6, 13, 39}) {
        const int height = (5 << 18) / width / static_cast<int>(sizeof(float));
        const auto data = random.floats(static_cast<std::size_t>(height) * width, -100.0, 300.0);
        this->compare(data, random.floats(height, 0.0, 0.01), width, width);
    }
}

TYPED_TEST(ColumnStatistics, HardValuesPassThrough) {
    const auto hard = test::hardFloats<float>();
    Random random(3);
    for (int width : {1, 2, 5, 9, 16, 23, 39}) {
        for (int height : {2, 5, 12}) {
            std::vector<float> data(static_cast<std::size_t>(height) * width), weights(height);
            for (int turn = 0; turn < 20; ++turn) {
                for (float& x : data)
                    x = hard[static_cast<std::size_t>(random.integer(0, static_cast<int>(hard.size()) - 1))];
                for (float& x : weights)
                    x = hard[static_cast<std::size_t>(random.integer(0, static_cast<int>(hard.size()) - 1))];
                this->compare(data, weights, width, width);
            }
        }
    }
}

TYPED_TEST(ColumnStatistics, AlignmentChangesNothing) {
    Random random(4);
    const int height = 9;
    for (int width : {3, 8, 13, 21}) {
        for (int step : {24, 25}) {
            const auto data = random.floats(static_cast<std::size_t>(height) * step, -5.0, 5.0);
            const auto weights = random.floats(height, 0.0, 1.0);
            std::vector<float> mean(width), var(width);
            TypeParam::model(data.data(), step, weights.data(), height, mean.data(), var.data(), width);
            for (std::size_t a = 0; a < 32; a += 4) {
                for (std::size_t b : {0, 4, 16}) {
                    Offset<float> src(data.size(), a), weight(height, b), dstMean(width, (a + b) % 32),
                        dstVar(width, b);
                    src.assign(data);
                    weight.assign(weights);
                    ASSERT_EQ(TypeParam::call(src, step, weight, height, dstMean, dstVar, width), vornStsNoErr);
                    EXPECT_TRUE(sameBits(dstMean.data(), mean.data(), width)) << a << " " << b;
                    EXPECT_TRUE(sameBits(dstVar.data(), var.data(), width)) << a << " " << b;
                    EXPECT_TRUE(dstMean.surroundingsUntouched() && dstVar.surroundingsUntouched());
                }
            }
        }
    }
}

TYPED_TEST(ColumnStatistics, FollowsTheCallersRoundingModeAndKeepsIt) {
    Random random(5);
    const auto data = random.floats(5 * 13, -5.0, 5.0);
    const auto weights = random.floats(5, 0.0, 1.0);
    std::vector<float> nearest(13);
    auto* volatile model =
        TypeParam::model;  // not known to the compiler, which else moves its arithmetic out of the mode
    for (unsigned mode : {RoundingMode::nearest, RoundingMode::down, RoundingMode::up, RoundingMode::towardZero}) {
        std::vector<float> mean(13), var(13), expectedMean(13), expectedVar(13);
        VornStatus status;
        unsigned after;
        {
            const RoundingMode caller(mode);
            model(data.data(), 13, weights.data(), 5, expectedMean.data(), expectedVar.data(), 13);
            status = TypeParam::call(data.data(), 13, weights.data(), 5, mean.data(), var.data(), 13);
            after = RoundingMode::current();
        }
        EXPECT_EQ(status, vornStsNoErr);
        EXPECT_EQ(after, mode);
        EXPECT_TRUE(sameBits(mean, expectedMean)) << mode;
        EXPECT_TRUE(sameBits(var, expectedVar)) << mode;
        if (mode == RoundingMode::nearest) nearest = var;
        EXPECT_EQ(var == nearest, mode == RoundingMode::nearest) << "the mode shows in the results";
    }
}

TEST(MeanVarColumn, LiteralValues) {
    const float src[] = {1, 10, 2, 10, 3, 10, 6, 10};
    float mean[2], var[2];
    ASSERT_EQ(vornsMeanVarColumn_32f_D2(src, 4, 2, mean, var, 2), vornStsNoErr);
    EXPECT_EQ(mean[0], 3.0f);
    EXPECT_EQ(mean[1], 10.0f);
    EXPECT_EQ(var[0], (50.0f - 36.0f) * static_cast<float>(1.0 / 3.0));
    EXPECT_EQ(var[1], 0.0f);
}

TEST(WeightedMeanVarColumn, WeightsAreNotNormalised) {
    const float src[] = {1, 2, 3, 4};
    const float weight[] = {2, 3};
    float mean[2], var[2];
    ASSERT_EQ(vornsWeightedMeanVarColumn_32f_D2(src, 2, weight, 2, mean, var, 2), vornStsNoErr);
    EXPECT_EQ(mean[0], 11.0f);
    EXPECT_EQ(mean[1], 16.0f);
    EXPECT_EQ(var[0], 29.0f - 121.0f);
    EXPECT_EQ(var[1], 56.0f - 256.0f);
}

TEST(WeightedMeanVarColumn, OneRowIsEnough) {
    const float src[] = {3};
    const float weight[] = {0.5f};
    float mean, var;
    ASSERT_EQ(vornsWeightedMeanVarColumn_32f_D2(src, 1, weight, 1, &mean, &var, 1), vornStsNoErr);
    EXPECT_EQ(mean, 1.5f);
    EXPECT_EQ(var, 4.5f - 2.25f);
}

struct Arguments {
    std::vector<float> data = std::vector<float>(12, 1.0f);
    Guarded<float> outMean = Guarded<float>(3), outVar = Guarded<float>(3);
    const float* src = data.data();
    const float* weight = data.data();
    int step = 3, height = 4, width = 3;
    float* mean = outMean.data();
    float* var = outVar.data();
    VornStatus plain() { return vornsMeanVarColumn_32f_D2(src, height, step, mean, var, width); }
    VornStatus weighted() { return vornsWeightedMeanVarColumn_32f_D2(src, step, weight, height, mean, var, width); }
    bool untouched() { return outMean.untouched() && outVar.untouched(); }
};

using Rule = test::Rule<Arguments>;
const Rule noSrc{"src", vornStsNullPtrErr, [](Arguments& a) { a.src = nullptr; }};
const Rule noWeight{"weight", vornStsNullPtrErr, [](Arguments& a) { a.weight = nullptr; }};
const Rule noMean{"dstMean", vornStsNullPtrErr, [](Arguments& a) { a.mean = nullptr; }};
const Rule noVar{"dstVar", vornStsNullPtrErr, [](Arguments& a) { a.var = nullptr; }};
const Rule noWidth{"width 0", vornStsSizeErr, [](Arguments& a) { a.width = 0; }};
const Rule noHeight{"height 0", vornStsSizeErr, [](Arguments& a) { a.height = 0; }};
const Rule oneRow{"height 1", vornStsSizeErr, [](Arguments& a) { a.height = 1; }};
const Rule shortStep{"step below width", vornStsStrideErr, [](Arguments& a) { a.step = a.width - 1; }};

TEST(MeanVarColumn, ChecksInOrder) {
    test::expectCheckOrder<Arguments>([] { return Arguments(); }, [](Arguments& a) { return a.plain(); },
                                      [](Arguments& a) { return a.untouched(); },
                                      {noSrc, noMean, noVar, noWidth, noHeight, oneRow, shortStep});
}

TEST(WeightedMeanVarColumn, ChecksInOrder) {
    // A width of 0 leaves no step too short for it but a negative one, which is what the last rule breaks.
    const Rule negativeStep{"step -1", vornStsStrideErr, [](Arguments& a) { a.step = -1; }};
    test::expectCheckOrder<Arguments>([] { return Arguments(); }, [](Arguments& a) { return a.weighted(); },
                                      [](Arguments& a) { return a.untouched(); },
                                      {noSrc, noWeight, noMean, noVar, negativeStep, noWidth, noHeight});
    Arguments a;
    a.step = 2;
    EXPECT_EQ(a.weighted(), vornStsStrideErr);
    EXPECT_TRUE(a.untouched());
}

}  // namespace
