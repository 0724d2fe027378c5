// Scores log-added to what is there, in every arithmetic.
#include "scoring/gauss/folds/not_a_number.h"
#include "scoring/gauss/scores_model.h"

namespace gauss {
namespace {

constexpr Shape frames{}, framesId{.identity = true}, framesSf{.scaled = true},
    framesIdSf{.identity = true, .scaled = true}, gaussians{.gaussians = true, .separateVal = true},
    gaussiansSf{.gaussians = true, .scaled = true, .separateVal = true};

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

TEST(LogGaussAdd, OfANotANumberIsNone) {
    NO_SCORE(frames, Vorn32f, Vorn32f, vornsLogGaussAdd_32f);
    NO_SCORE(framesId, Vorn32f, Vorn32f, vornsLogGaussAdd_IdVar_32f);
    NO_SCORE(frames, Vorn64f, Vorn64f, vornsLogGaussAdd_64f);
    NO_SCORE(framesId, Vorn64f, Vorn64f, vornsLogGaussAdd_IdVar_64f);
    NO_SCORE(gaussians, Vorn32f, Vorn32f, vornsLogGaussAddMultiMix_32f);
    NO_SCORE(gaussians, Vorn64f, Vorn64f, vornsLogGaussAddMultiMix_64f);
    NO_SCORE(framesSf, Vorn16s, Vorn32f, vornsLogGaussAdd_Scaled_16s32f);
    NO_SCORE(framesIdSf, Vorn16s, Vorn32f, vornsLogGaussAdd_IdVarScaled_16s32f);
    NO_SCORE(framesSf, Vorn16s, Vorn32f, vornsLogGaussAdd_LowScaled_16s32f);
    NO_SCORE(framesIdSf, Vorn16s, Vorn32f, vornsLogGaussAdd_IdVarLowScaled_16s32f);
    NO_SCORE(gaussiansSf, Vorn16s, Vorn32f, vornsLogGaussAddMultiMix_Scaled_16s32f);
    NO_SCORE(gaussiansSf, Vorn16s, Vorn32f, vornsLogGaussAddMultiMix_LowScaled_16s32f);
}

// From 1000 Gaussians on a last odd one is log-added by itself.
TEST(LogGaussAdd, OfANotANumberIsNoneAmongManyGaussians) {
    for (int height : {1000, 1001}) {
        RowsOfFive<gaussians, Vorn64f, Vorn64f> rows(height, 3);
        for (std::size_t r : {std::size_t{0}, std::size_t{501}, at(height) - 1}) {
            const auto val = [r](auto& of) -> double& { return of.val(r); };
            EXPECT_TRUE(std::isnan(rows.with<false>(vornsLogGaussAddMultiMix_64f_D2, val)[r])) << r;
            const auto old = [r](auto& of) -> double& { return of.old(r); };
            EXPECT_TRUE(std::isnan(rows.with<false>(vornsLogGaussAddMultiMix_64f_D2, old)[r])) << r;
        }
    }
}

}  // namespace
}  // namespace gauss
