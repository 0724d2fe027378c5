// The score of a mixture, in every arithmetic. With the identity covariance each Gaussian is scored by itself.
#include "model/gauss_one_vector.h"
#include "scoring/gauss/folds/not_a_number.h"
#include "scoring/gauss/scores_model.h"

namespace gauss {
namespace {

constexpr Shape mixture{.gaussians = true, .separateVal = true, .oneResult = true, .order = Order::NullStrideSize},
    mixtureSf{.gaussians = true, .scaled = true, .separateVal = true, .oneResult = true},
    mixtureId{
        .gaussians = true, .identity = true, .separateVal = true, .oneResult = true, .order = Order::NullStrideSize},
    mixtureIdSf{.gaussians = true, .identity = true, .scaled = true, .separateVal = true, .oneResult = true};

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

// Floats in the block form: no runs, val doubled, one log-add after the other.
TEST(LogGaussMixtureIdVar, Float) {
    sweep<mixtureId, float, float, float>(
        "vornsLogGaussMixture_IdVar_32f", vornsLogGaussMixture_IdVar_32f_D2, vornsLogGaussMixture_IdVar_32f_D2L,
        [](const auto& p, const auto&, auto list) {
            if constexpr (decltype(list)::value) {
                return std::vector<float>{model::logSumOfRuns(scoresOf<mixtureId>(p, [](const Float& place) {
                    return model::floatScore(place.row.x, place.row.m, nullptr, place.row.len, place.val);
                }))};
            } else {
                const std::vector<float> scores =
                    scoresOf<mixtureId>(p, [](const Float& place) { return doubledVal(place); });
                float sum = scores[0];
                for (std::size_t g = 1; g < scores.size(); ++g) sum = model::scalarLogAdd(scores[g], sum);
                return std::vector<float>{sum};
            }
        });
}

// The kernel of one vector sums in its lanes whatever the addresses, and for short vectors too.
TEST(LogGaussMixtureIdVar, Double) {
    mixtures<mixtureId, double, double>("vornsLogGaussMixture_IdVar_64f", vornsLogGaussMixture_IdVar_64f_D2,
                                        vornsLogGaussMixture_IdVar_64f_D2L, [](const Double& p) {
                                            const double* none = nullptr;
                                            return p.val -
                                                   model::pairedSum(0.0, p.row.x, p.row.m, none, 0, p.row.len) * 0.5;
                                        });
}

TEST(LogGaussMixtureIdVar, SixteenBits) {
    mixtures<mixtureIdSf, Vorn16s, float>(
        "vornsLogGaussMixture_IdVarScaled_16s32f", vornsLogGaussMixture_IdVarScaled_16s32f_D2,
        vornsLogGaussMixture_IdVarScaled_16s32f_D2L,
        [](const Short& p) { return model::identityScaled(p.row.x, p.row.m, p.row.len, p.val, p.scaleFactor); });
    mixtures<mixtureIdSf, Vorn16s, float>(
        "vornsLogGaussMixture_IdVarLowScaled_16s32f", vornsLogGaussMixture_IdVarLowScaled_16s32f_D2,
        vornsLogGaussMixture_IdVarLowScaled_16s32f_D2L,
        [](const Short& p) { return model::identityLowScaled(p.row.x, p.row.m, p.row.len, p.val, p.scaleFactor); });
}

TEST(LogGaussMixture, OfANotANumberIsNone) {
    NO_SCORE(mixture, Vorn32f, Vorn32f, vornsLogGaussMixture_32f);
    NO_SCORE(mixture, Vorn64f, Vorn64f, vornsLogGaussMixture_64f);
    NO_SCORE(mixtureSf, Vorn16s, Vorn32f, vornsLogGaussMixture_Scaled_16s32f);
    NO_SCORE(mixtureSf, Vorn16s, Vorn32f, vornsLogGaussMixture_LowScaled_16s32f);
    NO_SCORE(mixtureId, Vorn32f, Vorn32f, vornsLogGaussMixture_IdVar_32f);
    NO_SCORE(mixtureId, Vorn64f, Vorn64f, vornsLogGaussMixture_IdVar_64f);
    NO_SCORE(mixtureIdSf, Vorn16s, Vorn32f, vornsLogGaussMixture_IdVarScaled_16s32f);
    NO_SCORE(mixtureIdSf, Vorn16s, Vorn32f, vornsLogGaussMixture_IdVarLowScaled_16s32f);
}

}  // namespace
}  // namespace gauss
