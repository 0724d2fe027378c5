// With features and means in steps of 1 / g[c], and inverse variances as v[c] 2^scaleFactor / g[c]^2, the sum over the
// features of v d^2 comes out 2^scaleFactor times as large, which the scoring functions take back.
#include "quantise.h"

#include <algorithm>
#include <cmath>

#include "checked.h"

namespace digits {
namespace {

struct Grid {
    Vorn32f stepsPerSpread;  // of a feature, whose spread is its standard deviation over all words
    int scaleFactor;
    Vorn32f largest;  // inverse variance as an integer; more is cut to it
};

// Sixteen spreads to either side fit 16 bits, and so do inverse variances of up to sixteen times that of the spread;
// training keeps them to about ten times.
constexpr Grid kScaledGrid{2048.0f, 33, 32767.0f};

// Beyond scale factor 15 the low parts of the squares would count for too much, so v d^2 is 2^15 at one standard
// deviation. A spread of 2^5 steps leaves 2^5 for the inverse variance of the spread, and more of them to sharper
// Gaussians. The largest inverse variance keeps the 32-bit sums from wrapping, whatever the features: the high part of
// a square is at most 2^14, and the low part adds less than 1 to it.
constexpr Grid kLowGrid{32.0f, 15, static_cast<Vorn32f>(0x7fffffff / (kFeatures * ((1 << 14) + 1)))};

const Grid& gridOf(Arithmetic arithmetic) { return arithmetic == Arithmetic::kLow ? kLowGrid : kScaledGrid; }

// The standard deviation of each feature when all Gaussians count alike: between their means and within each.
std::vector<Vorn32f> spreads(const Models& models) {
    std::vector<Vorn32f> means, within(kRowStep, 0.0f);
    for (const WordModel& word : models.words) {
        for (const State& state : word.states) {
            means.insert(means.end(), state.mean.begin(), state.mean.end());
            for (std::size_t i = 0; i < state.inverseVariance.size(); ++i) {
                if (i % kRowStep < kFeatures) within[i % kRowStep] += 1.0f / state.inverseVariance[i];
            }
        }
    }
    const auto gaussians = static_cast<int>(means.size()) / kRowStep;
    std::vector<Vorn32f> middle(kRowStep), between(kRowStep);
    DIGITS_CALL(vornsMeanVarColumn_32f_D2, means.data(), gaussians, kRowStep, middle.data(), between.data(), kFeatures);
    std::vector<Vorn32f> spread(kFeatures);
    for (int c = 0; c < kFeatures; ++c) {
        spread[c] = std::sqrt(between[c] + within[c] / static_cast<Vorn32f>(gaussians));
    }
    return spread;
}

// Rounded values times 2^scaleFactor.
std::vector<Vorn16s> integers(const std::vector<Vorn32f>& values, int scaleFactor) {
    std::vector<Vorn16s> result(values.size());
    DIGITS_CALL(vornsConvert_32f16s_Sfs, values.data(), result.data(), static_cast<int>(values.size()), vornRndNear,
                -scaleFactor);
    return result;
}

}  // namespace

const char* nameOf(Arithmetic arithmetic) {
    static constexpr const char* kNames[] = {"float", "scaled", "low"};
    return kNames[static_cast<int>(arithmetic)];
}

const char* functionOf(Arithmetic arithmetic) {
    static constexpr const char* kNames[] = {"vornsLogGaussMixture_32f_D2", "vornsLogGaussMixture_Scaled_16s32f_D2",
                                             "vornsLogGaussMixture_LowScaled_16s32f_D2"};
    return kNames[static_cast<int>(arithmetic)];
}

QuantisedModels::QuantisedModels(const Models& models, Arithmetic arithmetic)
    : models_(models), arithmetic_(arithmetic), scaleFactor_(gridOf(arithmetic).scaleFactor), grid_(kRowStep, 0.0f) {
    const Grid& grid = gridOf(arithmetic);
    const std::vector<Vorn32f> spread = spreads(models);
    for (int c = 0; c < kFeatures; ++c) grid_[c] = grid.stepsPerSpread / spread[c];

    const Vorn32f largest = std::ldexp(grid.largest, -scaleFactor_);
    for (const WordModel& word : models.words) {
        std::vector<Matrices>& states = words_.emplace_back();
        for (const State& state : word.states) {
            std::vector<Vorn32f> inverse(state.inverseVariance.size(), 0.0f);
            for (std::size_t i = 0; i < inverse.size(); ++i) {
                const Vorn32f steps = grid_[i % kRowStep];
                if (steps > 0.0f) inverse[i] = std::min(state.inverseVariance[i] / (steps * steps), largest);
            }
            states.push_back({quantise(state.mean), integers(inverse, scaleFactor_)});
        }
    }
}

std::vector<Vorn16s> QuantisedModels::quantise(const std::vector<Vorn32f>& rows) const {
    std::vector<Vorn32f> steps(rows.size());
    for (std::size_t at = 0; at < rows.size(); at += kRowStep) {
        DIGITS_CALL(vornsMul_32f, rows.data() + at, grid_.data(), steps.data() + at, kRowStep);
    }
    return integers(steps, 0);
}

// The zeros at the end of a row add nothing, and make whole groups of eight, which are fastest.
Vorn32f QuantisedModels::score(int word, int state, const Vorn16s* features) const {
    const auto mixture = arithmetic_ == Arithmetic::kLow ? vornsLogGaussMixture_LowScaled_16s32f_D2
                                                         : vornsLogGaussMixture_Scaled_16s32f_D2;
    const std::vector<Vorn32f>& constant = models_.words[word].states[state].constant;
    const Matrices& matrices = words_[word][state];
    Vorn32f score = 0.0f;
    checked(mixture(features, matrices.mean.data(), matrices.inverseVariance.data(), static_cast<int>(constant.size()),
                    kRowStep, kRowStep, constant.data(), &score, scaleFactor_),
            functionOf(arithmetic_));
    return score;
}

}  // namespace digits
