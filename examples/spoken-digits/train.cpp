// Training: each word's recordings are cut into states along their best roads, and the frames of a state re-estimate
// its mixture by expectation and maximisation; in turns, with the mixtures growing by splitting.
//
// L. R. Rabiner, "A tutorial on hidden Markov models and selected applications in speech recognition", 1989.
// A. P. Dempster, N. M. Laird, D. B. Rubin, "Maximum likelihood from incomplete data via the EM algorithm", 1977.
#include "train.h"

#include <algorithm>
#include <cmath>

#include "checked.h"
#include "decode.h"
#include "exponential.h"

namespace digits {
namespace {

constexpr Vorn32f kFloorShare = 0.10f;     // no variance below this share of the variance of all frames
constexpr Vorn32f kLeastVariance = 1e-4f;  // for a feature that never changes
constexpr Vorn32f kSplitDistance = 0.2f;   // standard deviations from the mean of a Gaussian to those of its halves
constexpr Vorn32f kLeastFrames = 3.0f;     // a Gaussian that answers for fewer frames keeps its mean and variance
constexpr int kSweeps = 4;                 // of expectation and maximisation in each round
constexpr int kAccurate = 2;               // hint of the sum: accumulate in double

// Frames as the library takes a matrix: rows of kRowStep elements.
struct Frames {
    std::vector<Vorn32f> rows;
    int height = 0;

    void append(const Vorn32f* row) {
        rows.insert(rows.end(), row, row + kRowStep);
        ++height;
    }
    const Vorn32f* row(int t) const { return rows.data() + static_cast<std::ptrdiff_t>(t) * kRowStep; }
};

struct Gaussian {
    std::vector<Vorn32f> mean = std::vector<Vorn32f>(kRowStep, 0.0f);
    std::vector<Vorn32f> variance = std::vector<Vorn32f>(kRowStep, 0.0f);
    Vorn32f weight = 1.0f;
};

using Mixture = std::vector<Gaussian>;

Vorn32f logarithm(Vorn32f x) {
    DIGITS_CALL(vornsLn_32f_I, &x, 1);
    return x;
}

void applyFloor(Gaussian& gaussian, const std::vector<Vorn32f>& floor) {
    for (int c = 0; c < kFeatures; ++c) gaussian.variance[c] = std::max(gaussian.variance[c], floor[c]);
}

Gaussian gaussianOf(const Frames& frames) {
    Gaussian gaussian;
    DIGITS_CALL(vornsMeanVarColumn_32f_D2, frames.rows.data(), frames.height, kRowStep, gaussian.mean.data(),
                gaussian.variance.data(), kFeatures);
    return gaussian;
}

// The form that scoring takes.
void store(const Mixture& mixture, State& state) {
    state.mean.clear();
    state.inverseVariance.clear();
    state.constant.clear();
    for (const Gaussian& gaussian : mixture) {
        state.mean.insert(state.mean.end(), gaussian.mean.begin(), gaussian.mean.end());
        for (int c = 0; c < kRowStep; ++c) {
            state.inverseVariance.push_back(c < kFeatures ? 1.0f / gaussian.variance[c] : 0.0f);
        }
        Vorn32f gconst = 0.0f;
        DIGITS_CALL(vornsUpdateGConst_DirectVar_32f, gaussian.variance.data(), kFeatures, &gconst);
        state.constant.push_back(logarithm(gaussian.weight) - 0.5f * gconst);
    }
}

// One sweep: how much each Gaussian answers for each frame, and new Gaussians from these shares.
void sweep(Mixture& mixture, const Frames& frames, const std::vector<Vorn32f>& floor) {
    State state;
    store(mixture, state);
    const auto height = static_cast<std::size_t>(frames.height);
    std::vector<Vorn32f> share(mixture.size() * height);
    std::vector<Vorn32f> score(mixture.size());
    for (std::size_t t = 0; t < height; ++t) {
        score = state.constant;
        DIGITS_CALL(vornsLogGaussMultiMix_32f_D2, state.mean.data(), state.inverseVariance.data(), kRowStep,
                    frames.row(static_cast<int>(t)), kFeatures, score.data(), state.gaussians());
        Vorn32f all = 0.0f;
        DIGITS_CALL(vornsLogSum_32f, score.data(), &all, state.gaussians());
        for (std::size_t g = 0; g < mixture.size(); ++g) share[g * height + t] = exponential(score[g] - all);
    }

    Vorn32f weights = 0.0f;
    for (std::size_t g = 0; g < mixture.size(); ++g) {
        Gaussian& gaussian = mixture[g];
        Vorn32f* shares = share.data() + g * height;
        Vorn32f occupation = 0.0f;
        DIGITS_CALL(vornsSum_32f, shares, frames.height, &occupation, kAccurate);
        gaussian.weight = std::max(occupation, 1.0f);
        weights += gaussian.weight;
        if (occupation < kLeastFrames) continue;
        for (std::size_t t = 0; t < height; ++t) shares[t] /= occupation;
        DIGITS_CALL(vornsWeightedMeanVarColumn_32f_D2, frames.rows.data(), kRowStep, shares, frames.height,
                    gaussian.mean.data(), gaussian.variance.data(), kFeatures);
        applyFloor(gaussian, floor);
    }
    for (Gaussian& gaussian : mixture) gaussian.weight /= weights;
}

void splitHeaviest(Mixture& mixture) {
    const auto heaviest = std::max_element(mixture.begin(), mixture.end(),
                                           [](const Gaussian& a, const Gaussian& b) { return a.weight < b.weight; });
    heaviest->weight *= 0.5f;
    Gaussian other = *heaviest;
    for (int c = 0; c < kFeatures; ++c) {
        const Vorn32f distance = kSplitDistance * std::sqrt(other.variance[c]);
        heaviest->mean[c] -= distance;
        other.mean[c] += distance;
    }
    mixture.push_back(std::move(other));
}

// Where each recording is in each of its frames, before there is a model: all states last equally long.
std::vector<int> evenCut(int frames) {
    std::vector<int> states(static_cast<std::size_t>(frames));
    for (int t = 0; t < frames; ++t) states[t] = t * kStates / frames;
    return states;
}

class WordTrainer {
public:
    WordTrainer(const std::vector<Analysis>& recordings, const std::vector<Vorn32f>& floor)
        : recordings_(recordings), floor_(floor), mixtures_(kStates), word_{std::vector<State>(kStates)} {
        for (const Analysis& recording : recordings_) cuts_.push_back(evenCut(recording.frames));
    }

    // One round: new mixtures from the present cuts, with the given number of Gaussians, and new cuts from them.
    void round(int gaussians) {
        for (int s = 0; s < kStates; ++s) reestimate(s, gaussians);
        for (std::size_t r = 0; r < recordings_.size(); ++r) cuts_[r] = bestPath(word_, recordings_[r]).states;
    }

    WordModel take() { return std::move(word_); }

private:
    void reestimate(int s, int gaussians) {
        Frames frames;
        for (std::size_t r = 0; r < recordings_.size(); ++r) {
            for (int t = 0; t < recordings_[r].frames; ++t) {
                if (cuts_[r][t] == s) frames.append(recordings_[r].row(t));
            }
        }
        Mixture& mixture = mixtures_[s];
        if (gaussians == 1) {
            mixture.assign(1, gaussianOf(frames));
            applyFloor(mixture[0], floor_);
        }
        while (static_cast<int>(mixture.size()) < gaussians) splitHeaviest(mixture);
        if (gaussians > 1) {
            for (int i = 0; i < kSweeps; ++i) sweep(mixture, frames, floor_);
        }
        State& state = word_.states[s];
        store(mixture, state);
        // Each recording leaves the state once.
        const auto left = static_cast<Vorn32f>(recordings_.size());
        const auto stayed = std::max(static_cast<Vorn32f>(frames.height) - left, 1.0f);
        state.stay = logarithm(stayed / (stayed + left));
        state.leave = logarithm(left / (stayed + left));
    }

    const std::vector<Analysis>& recordings_;
    const std::vector<Vorn32f>& floor_;
    std::vector<std::vector<int>> cuts_;
    std::vector<Mixture> mixtures_;
    WordModel word_;
};

std::vector<Vorn32f> varianceFloor(const TrainingSet& recordings) {
    Frames all;
    for (const auto& word : recordings) {
        for (const Analysis& recording : word) {
            for (int t = 0; t < recording.frames; ++t) all.append(recording.row(t));
        }
    }
    std::vector<Vorn32f> floor = gaussianOf(all).variance;
    for (int c = 0; c < kFeatures; ++c) floor[c] = std::max(kFloorShare * floor[c], kLeastVariance);
    return floor;
}

}  // namespace

Models train(const TrainingSet& recordings, const std::function<void()>& step) {
    constexpr int kRounds[] = {1, 1, 1, 2, 2, 3, 3, 4, 5, 6, 6, 6};  // the number of Gaussians in each round
    static_assert(std::size(kRounds) * kWords == kTrainingSteps && kRounds[std::size(kRounds) - 1] == kGaussians);

    const std::vector<Vorn32f> floor = varianceFloor(recordings);
    Models models;
    for (const auto& word : recordings) {
        WordTrainer trainer(word, floor);
        for (const int gaussians : kRounds) {
            trainer.round(gaussians);
            step();
        }
        models.words.push_back(trainer.take());
    }
    return models;
}

}  // namespace digits
