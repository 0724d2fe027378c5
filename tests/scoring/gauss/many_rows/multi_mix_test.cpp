// One frame against many Gaussians, in every arithmetic.
#include "scoring/gauss/scores_model.h"

namespace gauss {
namespace {

constexpr Shape gaussians{.gaussians = true}, gaussiansSf{.gaussians = true, .scaled = true};

TEST(LogGaussMultiMix, Floats) {
    SCORES(gaussians, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMultiMix_32f, _D2, _D2L, halvedSum);
    SCORES(gaussians, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMultiMix_64f, _D2, _D2L, tallSum);
}
// The two layouts of the integer form differ in a last odd row.
TEST(LogGaussMultiMix, SixteenBits) {
    SCORES(gaussiansSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMultiMix_Scaled_16s32f, _D2, _D2L, scaled);
    sweep<gaussiansSf, Vorn16s, Vorn32s, Vorn32s>(
        "vornsLogGaussMultiMix_16s32s", vornsLogGaussMultiMix_16s32s_D2Sfs, vornsLogGaussMultiMix_16s32s_D2LSfs,
        [](const auto& p, const auto&, auto list) {
            return scoresOf<gaussiansSf>(p, [](const Integer& place) {
                return decltype(list)::value ? integerTruncated(place) : integerOddRounded(place);
            });
        });
}
TEST(LogGaussMultiMix, LowPrecision) {
    SCORES(gaussiansSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMultiMix_LowScaled_16s32f, _D2, _D2L, lowScaled);
    SCORES(gaussiansSf, Vorn16s, Vorn32s, Vorn32s, vornsLogGaussMultiMix_Low_16s32s, _D2Sfs, _D2LSfs,
           lowIntegerOfGaussians);
    SCORES(gaussians, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMultiMix_Low_16s32f, _D2, _D2L, lowScaled);
}

TEST(LogGaussMultiMix, CountsTheValOnceMoreInEveryCall) {
    Guarded<float> mean{1}, var{2}, src{3}, srcDst{10};
    ASSERT_EQ(vornsLogGaussMultiMix_32f_D2(mean, var, 1, src, 1, srcDst, 1), vornStsNoErr);
    EXPECT_EQ(srcDst[0], 6.0f);
    ASSERT_EQ(vornsLogGaussMultiMix_32f_D2(mean, var, 1, src, 1, srcDst, 1), vornStsNoErr);
    EXPECT_EQ(srcDst[0], 2.0f);
}

TEST(LogGaussMultiMix, HardValues) {
    const std::vector<float> hard = test::hardFloats<float>();
    test::Random random(4);
    for (int round = 0; round < 400; ++round) {
        const auto p = makeProblem<float, float>(5, 1 + round % 45, 0, 1, static_cast<std::uint64_t>(round));
        const auto spoil = [&](const Guarded<float>& values) {
            for (float& x : values) {
                if (random.integer(0, 19) == 0) x = hard[static_cast<std::size_t>(random.next() % hard.size())];
            }
        };
        spoil(p.many.block), spoil(p.manyVar.block), spoil(p.one), spoil(p.val);
        const std::vector<float> wanted = scoresOf<gaussians>(p, [](const Float& place) { return halvedSum(place); });
        Guarded<float> out(p.val.values());
        ASSERT_EQ(call(vornsLogGaussMultiMix_32f_D2, argumentsOf(p, out.data())), vornStsNoErr);
        EXPECT_TRUE(test::sameBits(out.data(), wanted.data(), wanted.size())) << round;
    }
}

// One row is a last odd one.
TEST(LogGaussMultiMix, OneRowHasAnEndOfItsOwn) {
    Guarded<Vorn16s> src{1}, mean{0}, three{3};
    Guarded<Vorn32s> result(1);
    result[0] = 0;
    ASSERT_EQ(vornsLogGaussMultiMix_16s32s_D2Sfs(src, three, 1, mean, 1, result, 1, 0), vornStsNoErr);
    EXPECT_EQ(result[0], -2);
    const Vorn16s* const row[] = {src};
    const Vorn16s* const var[] = {three};
    result[0] = 0;
    ASSERT_EQ(vornsLogGaussMultiMix_16s32s_D2LSfs(row, var, mean, 1, result, 1, 0), vornStsNoErr);
    EXPECT_EQ(result[0], -1) << "row pointers truncate";
    // With a negative scale factor the score itself is truncated, and val comes last: 2^31 - 1 is no single.
    result[0] = 2147483647;
    ASSERT_EQ(vornsLogGaussMultiMix_Low_16s32s_D2Sfs(src, three, 1, mean, 1, result, 1, -1), vornStsNoErr);
    EXPECT_EQ(result[0], 2147483644);
}

TEST(LogGaussMultiMix, HeightsAround1000DifferInRoundingOnly) {
    for (int height : {999, 1000}) {
        const auto p = makeProblem<double, double>(height, 39, 0, 1, 11);
        Guarded<double> out(p.val.values());
        ASSERT_EQ(call(vornsLogGaussMultiMix_64f_D2, argumentsOf(p, out.data())), vornStsNoErr);
        const auto inLanes = scoresOf<gaussians>(p, [](const Double& place) { return halvedSum(place); });
        bool differs = false;
        for (int g = 0; g < height; ++g) {
            EXPECT_NEAR(out[at(g)], inLanes[at(g)], 1e-11);
            differs = differs || out[at(g)] != inLanes[at(g)];
        }
        EXPECT_EQ(differs, height == 1000);
    }
}

}  // namespace
}  // namespace gauss
