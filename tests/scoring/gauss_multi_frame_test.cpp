// Many frames against one Gaussian, and one frame against many Gaussians, in every arithmetic.
#include "scoring/gauss_scores_model.h"

namespace gauss {
namespace {

constexpr Shape frames{}, framesId{.identity = true}, framesSf{.scaled = true},
    framesIdSf{.identity = true, .scaled = true}, gaussians{.gaussians = true},
    gaussiansSf{.gaussians = true, .scaled = true};

template <Shape shape, class T, class Val, class Out, class D2, class D2L, class Score>
void scores(const char* name, D2 d2, D2L d2l, Score score) {
    sweep<shape, T, Val, Out>(name, d2, d2l,
                              [=](const auto& p, const auto&, auto) { return scoresOf<shape>(p, score); });
}
#define SCORES(shape, T, Val, Out, stem, d2, d2l, score) \
    scores<shape, T, Val, Out>(#stem, stem##d2, stem##d2l, [](const auto& place) { return score(place); })

TEST(LogGauss, Floats) {
    SCORES(frames, Vorn32f, Vorn32f, Vorn32f, vornsLogGauss_32f, _D2, _D2L, doubledVal);
    SCORES(framesId, Vorn32f, Vorn32f, Vorn32f, vornsLogGauss_IdVar_32f, _D2, _D2L, doubledVal);
    SCORES(frames, Vorn64f, Vorn64f, Vorn64f, vornsLogGauss_64f, _D2, _D2L, halvedSum);
    SCORES(framesId, Vorn64f, Vorn64f, Vorn64f, vornsLogGauss_IdVar_64f, _D2, _D2L, halvedSum);
}
TEST(LogGauss, SixteenBits) {
    SCORES(framesSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_Scaled_16s32f, _D2, _D2L, scaled);
    SCORES(framesIdSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_IdVarScaled_16s32f, _D2, _D2L, scaled);
    SCORES(framesSf, Vorn16s, Vorn32s, Vorn32s, vornsLogGauss_16s32s, _D2Sfs, _D2LSfs, integerOddRounded);
    SCORES(framesIdSf, Vorn16s, Vorn32s, Vorn32s, vornsLogGauss_IdVar_16s32s, _D2Sfs, _D2LSfs, integerTruncated);
}
TEST(LogGauss, LowPrecision) {
    SCORES(framesSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_LowScaled_16s32f, _D2, _D2L, lowScaled);
    SCORES(framesIdSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_IdVarLowScaled_16s32f, _D2, _D2L, identityLowScaled);
    SCORES(framesSf, Vorn16s, Vorn32s, Vorn32s, vornsLogGauss_Low_16s32s, _D2Sfs, _D2LSfs, lowInteger);
    SCORES(framesIdSf, Vorn16s, Vorn32s, Vorn32s, vornsLogGauss_IdVarLow_16s32s, _D2Sfs, _D2LSfs, lowTotal);
    SCORES(frames, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_Low_16s32f, _D2, _D2L, lowScaled);
    SCORES(framesId, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_IdVarLow_16s32f, _D2, _D2L, identityLowScaled);
}
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
        const std::vector<float> wanted = scoresOf<gaussians>(p, [](const Single& place) { return halvedSum(place); });
        Guarded<float> out(p.val.values());
        ASSERT_EQ((call<gaussians, false>(vornsLogGaussMultiMix_32f_D2, argumentsOf(p, out.data()))), vornStsNoErr);
        EXPECT_TRUE(test::sameBits(out.data(), wanted.data(), wanted.size())) << round;
    }
}

// Each score is -1.5: the rows of a pair truncate it, a last odd row rounds to even.
TEST(LogGauss, RowParityDecidesTheRounding) {
    Guarded<Vorn16s> src{1, 1, 1}, mean{0}, three{3};
    Guarded<Vorn32s> result(3);
    ASSERT_EQ(vornsLogGauss_16s32s_D2Sfs(src, 1, mean, three, 1, result, 3, 0, 0), vornStsNoErr);
    EXPECT_EQ(result[0], -1);
    EXPECT_EQ(result[1], -1);
    EXPECT_EQ(result[2], -2);
    ASSERT_EQ(vornsLogGauss_IdVar_16s32s_D2Sfs(src, 1, mean, 1, result, 3, -1, 0), vornStsNoErr);
    EXPECT_EQ(result[2], -1) << "the identity covariance truncates";
}

TEST(LogGauss, OutOfRangeIsTheSmallestInteger) {
    Guarded<Vorn16s> src{30000, 30000, 30000}, mean{0}, var{-30000};
    Guarded<Vorn32s> result(3);
    ASSERT_EQ(vornsLogGauss_16s32s_D2Sfs(src, 1, mean, var, 1, result, 3, 0, 0), vornStsNoErr);
    for (Vorn32s score : result) EXPECT_EQ(score, INT32_MIN);
}

// 32767 - -1 saturates in a group of eight columns and not behind it.
TEST(LogGauss, TheTailDoesNotSaturate) {
    Guarded<Vorn16s> src(std::vector<Vorn16s>(9, 0)), mean(std::vector<Vorn16s>(9, 0)), var(std::vector<Vorn16s>(9, 1));
    Guarded<Vorn32f> result(1);
    src[0] = 32767, mean[0] = -1;
    ASSERT_EQ(vornsLogGauss_Scaled_16s32f_D2(src, 9, mean, var, 9, result, 1, 0.0f, 0), vornStsNoErr);
    EXPECT_EQ(result[0], -0.5f * 32767.0f * 32767.0f);
    src[0] = mean[0] = 0, src[8] = 32767, mean[8] = -1;
    ASSERT_EQ(vornsLogGauss_Scaled_16s32f_D2(src, 9, mean, var, 9, result, 1, 0.0f, 0), vornStsNoErr);
    EXPECT_EQ(result[0], -0.5f * 32768.0f * 32768.0f);
}

// The lowest bit of an odd square is lost, and an odd row truncates its parts by group.
TEST(LogGauss, LowPrecisionLosesBits) {
    Guarded<Vorn16s> src{3, 3}, mean{0}, var{1};
    Guarded<Vorn32s> result(2);
    ASSERT_EQ(vornsLogGauss_Low_16s32s_D2Sfs(src, 1, mean, var, 1, result, 2, 0, 0), vornStsNoErr);
    EXPECT_EQ(result[0], -4);
    EXPECT_EQ(result[1], -4);
    // Two groups of eight whose lanes hold -4 x 4 halves each: shifted by 3, once -8 / 8 = -1, by group -4 / 8 -> -1.
    Guarded<Vorn16s> wide(std::vector<Vorn16s>(48, 2)), zero(std::vector<Vorn16s>(16, 0)),
        ones(std::vector<Vorn16s>(16, 1));
    Guarded<Vorn32s> scores(3);
    ASSERT_EQ(vornsLogGauss_Low_16s32s_D2Sfs(wide, 16, zero, ones, 16, scores, 3, 0, 3), vornStsNoErr);
    EXPECT_EQ(scores[0], -4);
    EXPECT_EQ(scores[1], -4);
    EXPECT_EQ(scores[2], -8);
}

TEST(LogGaussMultiMix, HeightsAround1000DifferInRoundingOnly) {
    for (int height : {999, 1000}) {
        const auto p = makeProblem<double, double>(height, 39, 0, 1, 11);
        Guarded<double> out(p.val.values());
        ASSERT_EQ((call<gaussians, false>(vornsLogGaussMultiMix_64f_D2, argumentsOf(p, out.data()))), vornStsNoErr);
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
