// Many frames against one Gaussian, and one frame against many Gaussians, in every arithmetic.
#include "scoring/gauss/scores_model.h"

extern "C" {
void vornsLogGauss_32f_D2_M7(const Vorn32f* src, Vorn64s step, const Vorn32f* mean, const Vorn32f* var, Vorn64s len,
                             Vorn32f* result, Vorn64s height, const Vorn32f* val);
void vornsLogGauss_32f_D2L_M7(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var, Vorn64s len,
                              Vorn32f* result, Vorn64s height, const Vorn32f* val);
void vornsLGauss_64f_D2_M7(const Vorn64f* src, Vorn64s step, const Vorn64f* mean, const Vorn64f* var, Vorn64s len,
                           Vorn64f* result, Vorn64s height, const Vorn64f* val);
void vornsLGauss_64f_D2L_M7(const Vorn64f* const* src, const Vorn64f* mean, const Vorn64f* var, Vorn64s len,
                            Vorn64f* result, Vorn64s height, const Vorn64f* val);
void vornsLGauss_16s32s_D2_M7(const Vorn16s* src, Vorn64s step, const Vorn16s* mean, const Vorn16s* var, Vorn64s len,
                              Vorn32s* result, Vorn64s height, const Vorn32s* val, int scaleFactor);
void vornsLGauss_16s32s_D2L_M7(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var, Vorn64s len,
                               Vorn32s* result, Vorn64s height, const Vorn32s* val, int scaleFactor);
void vornsLGauss_16s32f_M7(const Vorn16s* src, Vorn64s step, const Vorn16s* mean, const Vorn16s* var, Vorn64s len,
                           Vorn32f* result, Vorn64s height, const Vorn32f* val, const Vorn32f* scale);
void vornsLGauss_16s32f_D2L_M7(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var, Vorn64s len,
                               Vorn32f* result, Vorn64s height, const Vorn32f* val, const Vorn32f* scale);
void vornsLGaussMax_32f_D2L_M7(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var, Vorn64s len,
                               Vorn32f* srcDst, Vorn64s height, const Vorn32f* val);
void vornsLogGaussMultiMix_Low_16s32f_D2L_M7(const Vorn16s* const* mean, const Vorn16s* const* var, const Vorn16s* src,
                                             Vorn64s len, Vorn32f* srcDst, Vorn64s height, int scaleFactor);

decltype(vornsLogGauss_32f_D2_M7) vornsLogGauss_32f_D2_M7_Al;
decltype(vornsLogGauss_32f_D2L_M7) vornsLogGauss_32f_D2L_M7_Al;
decltype(vornsLGauss_64f_D2_M7) vornsLGauss_64f_D2_M7_Al;
decltype(vornsLGauss_64f_D2L_M7) vornsLGauss_64f_D2L_M7_Al;
decltype(vornsLGauss_16s32s_D2_M7) vornsLGauss_16s32s_D2_M7_Al;
decltype(vornsLGauss_16s32s_D2L_M7) vornsLGauss_16s32s_D2L_M7_Al;
decltype(vornsLGauss_16s32f_M7) vornsLGauss_16s32f_M7_Al;
decltype(vornsLGauss_16s32f_D2L_M7) vornsLGauss_16s32f_D2L_M7_Al;
decltype(vornsLGaussMax_32f_D2L_M7) vornsLGaussMax_32f_D2L_M7_Al;
decltype(vornsLogGaussMultiMix_Low_16s32f_D2L_M7) vornsLogGaussMultiMix_Low_16s32f_D2L_M7_Al;
}

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
        ASSERT_EQ(call(vornsLogGaussMultiMix_32f_D2, argumentsOf(p, out.data())), vornStsNoErr);
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

// One row is a last odd one.
TEST(LogGauss, OneRowHasAnEndOfItsOwn) {
    Guarded<Vorn16s> src{1}, mean{0}, three{3};
    Guarded<Vorn32s> result(1);
    ASSERT_EQ(vornsLogGauss_16s32s_D2Sfs(src, 1, mean, three, 1, result, 1, 0, 0), vornStsNoErr);
    EXPECT_EQ(result[0], -2);
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

// Less than four columns: the score of the same columns with others behind them where the frame equals the mean.
TEST(LogGauss, FewColumnsScoreAsPaddedOnes) {
    test::Random random(31);
    for (int len : {1, 2, 3}) {
        for (int padded : {4, 5, 8, 13}) {
            const int height = 7;
            Guarded<float> few(random.floats(at(height * len), -30, 30)), many(at(height * padded));
            Guarded<float> mean(random.floats(at(padded), -30, 30)), var(random.floats(at(padded), 0.1, 3));
            for (int r = 0; r < height; ++r) {
                for (int j = 0; j < padded; ++j)
                    many[at(r * padded + j)] = j < len ? few[at(r * len + j)] : mean[at(j)];
            }
            Guarded<float> score(at(height)), wanted(at(height));
            ASSERT_EQ(vornsLogGauss_32f_D2(few, len, mean, var, len, score, height, 2.5f), vornStsNoErr);
            ASSERT_EQ(vornsLogGauss_32f_D2(many, padded, mean, var, padded, wanted, height, 2.5f), vornStsNoErr);
            for (std::size_t r = 0; r < at(height); ++r) {
                EXPECT_NEAR(score[r], wanted[r], 1e-6 * (1 + std::fabs(wanted[r]))) << len << " as " << padded;
            }
        }
    }
}

// Every kernel that has a name of its own, and its twin for aligned data.
template <class Kernel, class Out, class Call>
void expectKernels(std::initializer_list<Kernel*> twins, const std::vector<Out>& old, const std::vector<Out>& wanted,
                   const Call& callOf) {
    for (Kernel* kernel : twins) {
        Guarded<Out> out(old);
        callOf(kernel, out.data());
        EXPECT_TRUE(test::sameBits(out.values(), wanted));
        EXPECT_TRUE(out.surroundingsUntouched());
    }
}
TEST(LogGauss, KernelsUnderTheirNames) {
    const auto s = makeProblem<float, float>(7, 43, 0, 1, 21);
    const auto d = makeProblem<double, double>(7, 43, 0, 1, 22);
    const auto f = makeProblem<Vorn16s, float>(7, 43, 9, 1, 23);
    const auto i = makeProblem<Vorn16s, Vorn32s>(7, 43, 9, 1, 24);
    const float scale = 0x1p-10f;
    const std::vector<float> none(7);
    const auto singles = scoresOf<frames>(s, [](const Single& place) { return doubledVal(place); });
    expectKernels({vornsLogGauss_32f_D2_M7, vornsLogGauss_32f_D2_M7_Al}, none, singles, [&](auto* kernel, float* out) {
        kernel(s.many.block, s.many.step, s.one, s.oneVar, s.len, out, s.height, s.val);
    });
    const auto onRows = [&](auto* kernel, float* out) {
        kernel(s.many.rows, s.one, s.oneVar, s.len, out, s.height, s.val);
    };
    expectKernels({vornsLogGauss_32f_D2L_M7, vornsLogGauss_32f_D2L_M7_Al}, none, singles, onRows);
    const std::vector<float> old = oldValues<frames, float, float, float>(s, 1, 5);
    std::vector<float> greatest(7);
    for (std::size_t r = 0; r < 7; ++r) greatest[r] = std::max(singles[r], old[r]);
    expectKernels({vornsLGaussMax_32f_D2L_M7, vornsLGaussMax_32f_D2L_M7_Al}, old, greatest, onRows);

    const auto doubles = scoresOf<frames>(d, [](const Double& place) { return halvedSum(place); });
    expectKernels({vornsLGauss_64f_D2_M7, vornsLGauss_64f_D2_M7_Al}, std::vector<double>(7), doubles,
                  [&](auto* kernel, double* out) {
                      kernel(d.many.block, d.many.step, d.one, d.oneVar, d.len, out, d.height, d.val);
                  });
    expectKernels(
        {vornsLGauss_64f_D2L_M7, vornsLGauss_64f_D2L_M7_Al}, std::vector<double>(7), doubles,
        [&](auto* kernel, double* out) { kernel(d.many.rows, d.one, d.oneVar, d.len, out, d.height, d.val); });

    const auto scaledScores = scoresOf<framesSf>(f, [](const Short& place) { return scaled(place); });
    expectKernels({vornsLGauss_16s32f_M7, vornsLGauss_16s32f_M7_Al}, none, scaledScores, [&](auto* kernel, float* out) {
        kernel(f.many.block, f.many.step, f.one, f.oneVar, f.len, out, f.height, f.val, &scale);
    });
    expectKernels(
        {vornsLGauss_16s32f_D2L_M7, vornsLGauss_16s32f_D2L_M7_Al}, none, scaledScores,
        [&](auto* kernel, float* out) { kernel(f.many.rows, f.one, f.oneVar, f.len, out, f.height, f.val, &scale); });
    const auto lowScores = scoresOf<gaussiansSf>(f, [](const Short& place) { return lowScaled(place); });
    expectKernels({vornsLogGaussMultiMix_Low_16s32f_D2L_M7, vornsLogGaussMultiMix_Low_16s32f_D2L_M7_Al}, f.val.values(),
                  lowScores, [&](auto* kernel, float* out) {
                      kernel(f.many.rows, f.manyVar.rows, f.one, f.len, out, f.height, f.scaleFactor);
                  });

    const auto integers = scoresOf<framesSf>(i, [](const Integer& place) { return integerOddRounded(place); });
    expectKernels({vornsLGauss_16s32s_D2_M7, vornsLGauss_16s32s_D2_M7_Al}, std::vector<Vorn32s>(7), integers,
                  [&](auto* kernel, Vorn32s* out) {
                      kernel(i.many.block, i.many.step, i.one, i.oneVar, i.len, out, i.height, i.val, i.scaleFactor);
                  });
    expectKernels({vornsLGauss_16s32s_D2L_M7, vornsLGauss_16s32s_D2L_M7_Al}, std::vector<Vorn32s>(7), integers,
                  [&](auto* kernel, Vorn32s* out) {
                      kernel(i.many.rows, i.one, i.oneVar, i.len, out, i.height, i.val, i.scaleFactor);
                  });
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
