// Scores folded as they are made: the maximum, the log-add, and the log-sum of a mixture.
#include "scoring/gauss/scores_model.h"

namespace gauss {
namespace {

constexpr Shape frames{}, framesId{.identity = true}, framesSf{.scaled = true},
    framesIdSf{.identity = true, .scaled = true}, gaussians{.gaussians = true, .separateVal = true},
    gaussiansSf{.gaussians = true, .scaled = true, .separateVal = true},
    gaussiansSfStrideLast{.gaussians = true, .scaled = true, .separateVal = true, .order = Order::NullSizeStride},
    mixture{.gaussians = true, .separateVal = true, .oneResult = true, .order = Order::NullStrideSize},
    mixtureSf{.gaussians = true, .scaled = true, .separateVal = true, .oneResult = true};

template <class T>
T greater(T score, T old) {
    return score > old ? score : old;
}

template <Shape shape, class T, class Val, class Out, class D2, class D2L, class Score>
void maxima(const char* name, D2 d2, D2L d2l, Score score) {
    sweep<shape, T, Val, Out>(name, d2, d2l, [=](const auto& p, std::vector<Out> out, auto) {
        const auto scores = scoresOf<shape>(p, score);
        for (std::size_t r = 0; r < out.size(); ++r) out[r] = greater<Out>(scores[r], out[r]);
        return out;
    });
}
#define MAXIMA(shape, T, Val, Out, stem, d2, d2l, score) \
    maxima<shape, T, Val, Out>(#stem, stem##d2, stem##d2l, [](const auto& place) { return score(place); })

// The integer maximum: everything truncates, save the conversion of the one val of many frames.
template <Shape shape, class D2, class D2L>
void integerMaxima(const char* name, D2 d2, D2L d2l) {
    sweep<shape, Vorn16s, Vorn32s, Vorn32s>(name, d2, d2l, [](const auto& p, std::vector<Vorn32s> out, auto) {
        const float oneVal = static_cast<float>(p.val[0]);
        const test::RoundingMode truncating(test::RoundingMode::towardZero);
        const auto scores = scoresOf<shape>(
            p, [&](const Integer& place) __attribute__((noinline)) {
                const float val = shape.gaussians ? static_cast<float>(place.val) : oneVal;
                const float scale = model::scaleSingle(place.scaleFactor + 1);
                const float score = model::negatedSum(place.row) * scale + val;
                return model::maxOf(model::minOf(score, 2147483648.0f), -2147483648.0f);
            });
        for (std::size_t r = 0; r < out.size(); ++r) {
            out[r] = model::truncated(greater(scores[r], static_cast<float>(out[r])));
        }
        return out;
    });
}

// At low precision with variances: integers are compared as such, save where a negative scale factor works in single.
template <Shape shape, class D2, class D2L>
void lowMaxima(const char* name, D2 d2, D2L d2l) {
    sweep<shape, Vorn16s, Vorn32s, Vorn32s>(name, d2, d2l, [](const auto& p, std::vector<Vorn32s> out, auto) {
        const auto totals = scoresOf<shape>(p, lowTotal);
        const auto singles = scoresOf<shape>(p, integerInSingle);
        for (std::size_t r = 0; r < out.size(); ++r) {
            out[r] = p.scaleFactor < 0 ? model::truncated(greater(singles[r], static_cast<float>(out[r])))
                                       : greater(totals[r], out[r]);
        }
        return out;
    });
}

TEST(LogGaussMax, Floats) {
    MAXIMA(frames, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMax_32f, _D2, _D2L, doubledVal);
    MAXIMA(framesId, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMax_IdVar_32f, _D2, _D2L, doubledVal);
    MAXIMA(frames, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMax_64f, _D2, _D2L, halvedSum);
    MAXIMA(framesId, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMax_IdVar_64f, _D2, _D2L, tallSum);
    MAXIMA(gaussians, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMaxMultiMix_32f, _D2, _D2L, halvedSum);
    MAXIMA(gaussians, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMaxMultiMix_64f, _D2, _D2L, tallSum);
}
TEST(LogGaussMax, SixteenBits) {
    MAXIMA(framesSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMax_Scaled_16s32f, _D2, _D2L, scaled);
    MAXIMA(framesIdSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMax_IdVarScaled_16s32f, _D2, _D2L, scaled);
    MAXIMA(gaussiansSfStrideLast, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMaxMultiMix_Scaled_16s32f, _D2, _D2L, scaled);
}
TEST(LogGaussMax, Integers) {
    integerMaxima<framesSf>("vornsLogGaussMax_16s32s", vornsLogGaussMax_16s32s_D2Sfs, vornsLogGaussMax_16s32s_D2LSfs);
    integerMaxima<framesIdSf>("vornsLogGaussMax_IdVar_16s32s", vornsLogGaussMax_IdVar_16s32s_D2Sfs,
                              vornsLogGaussMax_IdVar_16s32s_D2LSfs);
    integerMaxima<gaussiansSf>("vornsLogGaussMaxMultiMix_16s32s", vornsLogGaussMaxMultiMix_16s32s_D2Sfs,
                               vornsLogGaussMaxMultiMix_16s32s_D2LSfs);
}
TEST(LogGaussMax, LowPrecision) {
    MAXIMA(framesSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMax_LowScaled_16s32f, _D2, _D2L, lowScaled);
    MAXIMA(framesIdSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMax_IdVarLowScaled_16s32f, _D2, _D2L, identityLowScaled);
    MAXIMA(gaussiansSfStrideLast, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMaxMultiMix_LowScaled_16s32f, _D2, _D2L,
           lowScaled);
    MAXIMA(framesIdSf, Vorn16s, Vorn32s, Vorn32s, vornsLogGaussMax_IdVarLow_16s32s, _D2Sfs, _D2LSfs, lowTotal);
    lowMaxima<framesSf>("vornsLogGaussMax_Low_16s32s", vornsLogGaussMax_Low_16s32s_D2Sfs,
                        vornsLogGaussMax_Low_16s32s_D2LSfs);
    lowMaxima<gaussiansSf>("vornsLogGaussMaxMultiMix_Low_16s32s", vornsLogGaussMaxMultiMix_Low_16s32s_D2Sfs,
                           vornsLogGaussMaxMultiMix_Low_16s32s_D2LSfs);
}

template <Shape shape, class T, class Val, class Out, class D2, class D2L, class Score>
void logAdds(const char* name, D2 d2, D2L d2l, Score score) {
    sweep<shape, T, Val, Out>(name, d2, d2l, [=](const auto& p, const std::vector<Out>& old, auto list) {
        const std::vector<Out> scores = scoresOf<shape>(p, score);
        // Rows of less than four columns in one block are log-added one by one.
        if constexpr (std::is_same_v<T, Vorn32f> && !shape.gaussians && !decltype(list)::value) {
            if (p.len < 4) {
                std::vector<Out> out = old;
                for (std::size_t r = 0; r < out.size(); ++r) out[r] = model::scalarLogAdd(scores[r], out[r]);
                return out;
            }
        }
        return model::logAddInRuns(scores, old, shape.gaussians ? 100 : 128);
    });
}
#define LOG_ADDS(shape, T, Val, Out, stem, score) \
    logAdds<shape, T, Val, Out>(#stem, stem##_D2, stem##_D2L, [](const auto& place) { return score(place); })

TEST(LogGaussAdd, Floats) {
    LOG_ADDS(frames, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussAdd_32f, doubledVal);
    LOG_ADDS(framesId, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussAdd_IdVar_32f, doubledVal);
    LOG_ADDS(frames, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussAdd_64f, halvedSum);
    LOG_ADDS(framesId, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussAdd_IdVar_64f, halvedSum);
    LOG_ADDS(gaussians, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussAddMultiMix_32f, halvedSum);
    LOG_ADDS(gaussians, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussAddMultiMix_64f, tallSum);
}
TEST(LogGaussAdd, SixteenBits) {
    LOG_ADDS(framesSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussAdd_Scaled_16s32f, scaled);
    LOG_ADDS(framesIdSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussAdd_IdVarScaled_16s32f, scaled);
    LOG_ADDS(framesSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussAdd_LowScaled_16s32f, lowScaled);
    LOG_ADDS(framesIdSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussAdd_IdVarLowScaled_16s32f, identityLowScaled);
    LOG_ADDS(gaussiansSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussAddMultiMix_Scaled_16s32f, scaled);
    LOG_ADDS(gaussiansSf, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussAddMultiMix_LowScaled_16s32f, lowScaled);
}

// From 1000 Gaussians on a difference exactly on a split counts to the lower interval in a last odd one as well.
TEST(LogGaussAdd, SplitOfATallOddGaussian) {
    const int height = 1001;
    Guarded<double> mean(at(height)), var(at(height)), val(at(height)), srcDst(at(height)), src{0};
    for (int g = 0; g < height; ++g) mean[at(g)] = 0, var[at(g)] = 1, val[at(g)] = -3.5, srcDst[at(g)] = 0;
    ASSERT_EQ(vornsLogGaussAddMultiMix_64f_D2(mean, var, 1, src, 1, val, srcDst, height), vornStsNoErr);
    for (int g = 0; g < height; ++g) ASSERT_TRUE(test::same(srcDst[at(g)], model::logAdd(-3.5, 0.0, true))) << g;
}

template <Shape shape, class T, class Out, class D2, class D2L, class Score>
void mixtures(const char* name, D2 d2, D2L d2l, Score score) {
    sweep<shape, T, Out, Out>(name, d2, d2l, [=](const auto& p, const auto&, auto) {
        return std::vector<Out>{model::logSumOfRuns(scoresOf<shape>(p, score))};
    });
}
#define MIXTURES(shape, T, Out, stem, score) \
    mixtures<shape, T, Out>(#stem, stem##_D2, stem##_D2L, [](const auto& place) { return score(place); })

TEST(LogGaussMixture, EveryArithmetic) {
    MIXTURES(mixture, Vorn32f, Vorn32f, vornsLogGaussMixture_32f, halvedSum);
    MIXTURES(mixture, Vorn64f, Vorn64f, vornsLogGaussMixture_64f, halvedSum);
    MIXTURES(mixtureSf, Vorn16s, Vorn32f, vornsLogGaussMixture_Scaled_16s32f, scaled);
    MIXTURES(mixtureSf, Vorn16s, Vorn32f, vornsLogGaussMixture_LowScaled_16s32f, lowScaled);
}

TEST(LogGaussMax, TakesTheScoresOverTheFloor) {
    Guarded<float> src{3, 4, 5}, mean{1}, var{2}, srcDst{-4500000.0f, -4500000.0f, -4500000.0f};
    ASSERT_EQ(vornsLogGaussMax_32f_D2(src, 1, mean, var, 1, srcDst, 3, 10.0f), vornStsNoErr);
    EXPECT_EQ(srcDst[0], 6.0f);
    EXPECT_EQ(srcDst[1], 1.0f);
    EXPECT_EQ(srcDst[2], -6.0f);
}

// The maximum in single rounds an old value that stays; the one in integers keeps it.
TEST(LogGaussMax, OldValueOfMoreThan24Bits) {
    Guarded<Vorn16s> src{3, 3}, mean{1}, var{2};
    for (int scaleFactor : {0, 5}) {
        Guarded<Vorn32s> single{16777217, 16777219}, low{16777217, 16777219};
        ASSERT_EQ(vornsLogGaussMax_16s32s_D2Sfs(src, 1, mean, var, 1, single, 2, 0, scaleFactor), vornStsNoErr);
        EXPECT_EQ(single[0], 16777216);
        EXPECT_EQ(single[1], 16777218) << "truncated, not rounded";
        ASSERT_EQ(vornsLogGaussMax_Low_16s32s_D2Sfs(src, 1, mean, var, 1, low, 2, 0, scaleFactor), vornStsNoErr);
        EXPECT_EQ(low[0], 16777217);
        EXPECT_EQ(low[1], 16777219);
    }
}

TEST(LogGaussMax, IntegerFormsIgnoreTheCallersRounding) {
    const auto p = makeProblem<Vorn16s, Vorn32s>(9, 39, 12, 1, 3);
    const std::vector<Vorn32s> old = oldValues<gaussiansSf, Vorn16s, Vorn32s, Vorn32s>(p, 1, 4);
    Guarded<Vorn32s> wanted(old);
    ASSERT_EQ(call(vornsLogGaussMaxMultiMix_16s32s_D2Sfs, argumentsOf(p, wanted.data())), vornStsNoErr);
    for (unsigned mode : {test::RoundingMode::down, test::RoundingMode::up, test::RoundingMode::towardZero}) {
        Guarded<Vorn32s> out(old);
        {
            const test::RoundingMode rounding(mode);
            EXPECT_EQ(call(vornsLogGaussMaxMultiMix_16s32s_D2Sfs, argumentsOf(p, out.data())), vornStsNoErr);
            EXPECT_EQ(test::RoundingMode::current(), mode) << "the caller's mode comes back";
        }
        EXPECT_TRUE(test::sameBits(out.data(), wanted.data(), old.size())) << mode;
    }
}

TEST(LogGaussMax, NotANumberLeavesTheOldValue) {
    Guarded<float> src{std::nanf(""), 1}, mean{1}, var{2}, srcDst{-7, -7};
    ASSERT_EQ(vornsLogGaussMax_32f_D2(src, 1, mean, var, 1, srcDst, 2, 3.0f), vornStsNoErr);
    EXPECT_EQ(srcDst[0], -7.0f);
    EXPECT_EQ(srcDst[1], 3.0f);
}

TEST(LogGaussMixture, OneGaussianIsItsScore) {
    Guarded<float> src{3, 0}, mean{1, 5}, var{2, 4}, val{10}, result(1);
    ASSERT_EQ(vornsLogGaussMixture_32f_D2(src, mean, var, 1, 2, 2, val, result), vornStsNoErr);
    EXPECT_EQ(result[0], -44.0f);
}

// 100 equal scores s in one run, then one more log-add: about s + ln 101.
TEST(LogGaussMixture, HundredAndOneEqualScores) {
    Guarded<float> src{3}, mean(std::vector<float>(101, 1.0f)), var(std::vector<float>(101, 2.0f)),
        val(std::vector<float>(101, -6.0f)), result(1);
    ASSERT_EQ(vornsLogGaussMixture_32f_D2(src, mean, var, 101, 1, 1, val, result), vornStsNoErr);
    const std::vector<float> run(100, -10.0f);
    const float hundred = model::logSum(run.data(), 100);
    EXPECT_EQ(result[0], model::logAdd(hundred, -10.0f, false));
    EXPECT_NEAR(result[0], -10.0 + 4.61512, 3e-5);
}

}  // namespace
}  // namespace gauss
