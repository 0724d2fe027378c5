// Mixtures of Gaussians with the identity covariance: each Gaussian is scored as a single one.
#include "model/gauss_one_vector.h"
#include "scoring/gauss/scores_model.h"

namespace gauss {
namespace {

constexpr Shape mixture{
    .gaussians = true, .identity = true, .separateVal = true, .oneResult = true, .order = Order::NullStrideSize},
    mixtureSf{.gaussians = true, .identity = true, .scaled = true, .separateVal = true, .oneResult = true};

template <Shape shape, class T, class Out, class D2, class D2L, class Score>
void mixtures(const char* name, D2 d2, D2L d2l, Score score) {
    sweep<shape, T, Out, Out>(name, d2, d2l, [=](const auto& p, const auto&, auto) {
        return std::vector<Out>{model::logSumOfRuns(scoresOf<shape>(p, score))};
    });
}

// Single scores in the block form: no runs, val doubled, one log-add after the other.
TEST(LogGaussMixtureIdVar, Single) {
    sweep<mixture, float, float, float>(
        "vornsLogGaussMixture_IdVar_32f", vornsLogGaussMixture_IdVar_32f_D2, vornsLogGaussMixture_IdVar_32f_D2L,
        [](const auto& p, const auto&, auto list) {
            if constexpr (decltype(list)::value) {
                return std::vector<float>{model::logSumOfRuns(scoresOf<mixture>(p, [](const Single& place) {
                    return model::single(place.row.x, place.row.m, nullptr, place.row.len, place.val);
                }))};
            } else {
                const std::vector<float> scores =
                    scoresOf<mixture>(p, [](const Single& place) { return doubledVal(place); });
                float sum = scores[0];
                for (std::size_t g = 1; g < scores.size(); ++g) sum = model::scalarLogAdd(scores[g], sum);
                return std::vector<float>{sum};
            }
        });
}

// The kernel of one vector sums in its lanes whatever the addresses, and for short vectors too.
TEST(LogGaussMixtureIdVar, Double) {
    mixtures<mixture, double, double>("vornsLogGaussMixture_IdVar_64f", vornsLogGaussMixture_IdVar_64f_D2,
                                      vornsLogGaussMixture_IdVar_64f_D2L, [](const Double& p) {
                                          const double* none = nullptr;
                                          return p.val -
                                                 model::pairedSum(0.0, p.row.x, p.row.m, none, 0, p.row.len) * 0.5;
                                      });
}

TEST(LogGaussMixtureIdVar, SixteenBits) {
    mixtures<mixtureSf, Vorn16s, float>(
        "vornsLogGaussMixture_IdVarScaled_16s32f", vornsLogGaussMixture_IdVarScaled_16s32f_D2,
        vornsLogGaussMixture_IdVarScaled_16s32f_D2L,
        [](const Short& p) { return model::identityScaled(p.row.x, p.row.m, p.row.len, p.val, p.scaleFactor); });
    mixtures<mixtureSf, Vorn16s, float>(
        "vornsLogGaussMixture_IdVarLowScaled_16s32f", vornsLogGaussMixture_IdVarLowScaled_16s32f_D2,
        vornsLogGaussMixture_IdVarLowScaled_16s32f_D2L,
        [](const Short& p) { return model::identityLowScaled(p.row.x, p.row.m, p.row.len, p.val, p.scaleFactor); });
}

}  // namespace
}  // namespace gauss
