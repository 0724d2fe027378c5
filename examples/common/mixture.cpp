// The frames are summed up by the library's accumulators, and its updates turn the sums into parameters.
#include "mixture.h"

#include <algorithm>

#include "checked.h"

namespace digits {
namespace {

constexpr Vorn32f kSplitDistance = 0.2f;  // standard deviations from the mean of a Gaussian to those of its halves
constexpr Vorn32f kLeastShare = 1e-6f;    // a Gaussian that answers for less of a frame is left out of it

// exp(score - all) of each score, in place. No score lies above `all`, save by rounding.
void toShares(std::vector<Vorn32f>& scores, Vorn32f all) {
    const auto count = static_cast<int>(scores.size());
    const std::vector<Vorn32f> nothing(scores.size(), 0.0f);
    DIGITS_CALL(vornsSubCRev_32f_I, all, scores.data(), count);
    DIGITS_CALL(vornsMaxEvery_32f_I, nothing.data(), scores.data(), count);
    DIGITS_CALL(vornsSqrt_32f_I, scores.data(), count);
    DIGITS_CALL(vornsExpNegSqr_32f_I, scores.data(), count);
}

}  // namespace

Mixture::Mixture(const Frames& frames, const std::vector<Vorn32f>& floor)
    : mean_(kRowStep, 0.0f), variance_(kRowStep, 0.0f), weight_(1, 1.0f) {
    const FeatureSums sums(frames);
    DIGITS_CALL(vornsUpdateMean_32f, sums.sum.data(), mean_.data(), kFeatures, sums.height);
    DIGITS_WARNS(vornStsBelowFloor, vornsUpdateVar_32f, sums.sum.data(), sums.squares.data(), floor.data(),
                 variance_.data(), kFeatures, sums.height, sums.height);
}

void Mixture::grow(int gaussians) {
    while (size() < gaussians) {
        const int other = size();
        Vorn32f heaviest = 0.0f;
        int g = 0;
        DIGITS_CALL(vornsMaxIndx_32f, weight_.data(), other, &heaviest, &g);
        weight_[g] = 0.5f * heaviest;
        weight_.push_back(weight_[g]);
        mean_.resize(mean_.size() + kRowStep, 0.0f);
        variance_.resize(variance_.size() + kRowStep, 0.0f);
        DIGITS_CALL(vornsGaussianSplit_32f, mean(g), variance(g), mean(other), variance(other), kFeatures,
                    kSplitDistance);
    }
}

void Mixture::sweep(const Frames& frames, const std::vector<Vorn32f>& floor) {
    State state;
    store(state);
    // What each frame adds to a Gaussian, in shares: itself, its distance from the mean, and the square of that.
    std::vector<Vorn32f> occupation(weight_.size(), 0.0f), share;
    std::vector<Vorn32f> distance(mean_.size(), 0.0f), square(mean_.size(), 0.0f);
    for (const Stretch& stretch : frames) {
        for (int t = 0; t < stretch.height; ++t) {
            share = state.constant;
            DIGITS_CALL(vornsLogGaussMultiMix_32f_D2, state.mean.data(), state.inverseVariance.data(), kRowStep,
                        stretch.row(t), kFeatures, share.data(), size());
            Vorn32f all = 0.0f;
            DIGITS_CALL(vornsLogSum_32f, share.data(), &all, size());
            toShares(share, all);
            for (int g = 0; g < size(); ++g) {
                if (share[g] < kLeastShare) continue;
                occupation[g] += share[g];
                const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(g) * kRowStep;
                DIGITS_CALL(vornsMeanVarAcc_32f, stretch.row(t), mean(g), distance.data() + at, square.data() + at,
                            kFeatures, share[g]);
            }
        }
    }

    for (int g = 0; g < size(); ++g) {
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(g) * kRowStep;
        if (DIGITS_WARNS(vornStsZeroOcc, vornsUpdateMean_32f, distance.data() + at, mean(g), kFeatures,
                         occupation[g])) {
            continue;
        }
        DIGITS_WARNS(vornStsBelowFloor, vornsUpdateVar_32f, distance.data() + at, square.data() + at, floor.data(),
                     variance(g), kFeatures, occupation[g], occupation[g]);
    }
    // No Gaussian weighs less than one frame. That is more than all of them have where frames are few.
    const auto height = static_cast<Vorn32f>(heightOf(frames));
    Vorn32f weights = 0.0f;
    DIGITS_WARNS(vornStsBelowFloor, vornsUpdateWeight_32f, occupation.data(), weight_.data(), size(), &weights, height,
                 1.0f / height);
    DIGITS_CALL(vornsDivC_32f_I, weights, weight_.data(), size());
}

void Mixture::store(State& state) const {
    state.mean = mean_;
    state.inverseVariance.assign(variance_.size(), 0.0f);
    state.constant.assign(weight_.size(), 0.0f);
    std::vector<Vorn32f> logarithm(weight_.size()), gconst(weight_.size());
    DIGITS_CALL(vornsLn_32f, weight_.data(), logarithm.data(), size());
    for (int g = 0; g < size(); ++g) {
        const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(g) * kRowStep;
        Vorn32f* const inverse = state.inverseVariance.data() + at;
        DIGITS_CALL(vornsDivCRev_32f, variance_.data() + at, 1.0f, inverse, kFeatures);
        DIGITS_CALL(vornsUpdateGConst_32f, inverse, kFeatures, &gconst[g]);
    }
    DIGITS_CALL(vornsOutProbPreCalc_32f, logarithm.data(), gconst.data(), state.constant.data(), size());
}

}  // namespace digits
