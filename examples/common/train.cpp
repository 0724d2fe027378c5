// Training: each word's recordings are cut into states along their best roads, and the frames of a state re-estimate
// its mixture; in turns, with the mixtures growing.
//
// L. R. Rabiner, "A tutorial on hidden Markov models and selected applications in speech recognition", 1989.
#include "train.h"

#include <algorithm>
#include <optional>

#include "checked.h"
#include "decode.h"

namespace digits {
namespace {

constexpr Vorn32f kFloorShare = 0.10f;     // no variance below this share of the variance of all frames
constexpr Vorn32f kLeastVariance = 1e-4f;  // for a feature that never changes
constexpr int kSweeps = 4;                 // of expectation and maximisation in each round

Vorn32f logarithm(Vorn32f x) {
    DIGITS_CALL(vornsLn_32f_I, &x, 1);
    return x;
}

// The number of Gaussians in each round. The first rounds find the states, and the last ones settle what has grown.
std::vector<int> rounds(int gaussians) {
    std::vector<int> plan{1, 1, 1};
    while (plan.back() < gaussians) {
        const int grown = std::min(plan.back() + std::max(plan.back() / 3, 1), gaussians);
        plan.insert(plan.end(), grown <= 3 ? 2 : 1, grown);
    }
    plan.insert(plan.end(), 2, gaussians);
    return plan;
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
    // A road never turns back, so the frames of a state lie together in each recording.
    Frames framesIn(int s) const {
        Frames frames;
        for (std::size_t r = 0; r < recordings_.size(); ++r) {
            const auto [begin, end] = std::equal_range(cuts_[r].begin(), cuts_[r].end(), s);
            frames.push_back(
                {recordings_[r].row(static_cast<int>(begin - cuts_[r].begin())), static_cast<int>(end - begin)});
        }
        return frames;
    }

    void reestimate(int s, int gaussians) {
        const Frames frames = framesIn(s);
        if (gaussians == 1) mixtures_[s].emplace(frames, floor_);
        Mixture& mixture = *mixtures_[s];
        mixture.grow(gaussians);
        for (int i = 0; gaussians > 1 && i < kSweeps; ++i) mixture.sweep(frames, floor_);
        State& state = word_.states[s];
        mixture.store(state);
        // Each recording leaves the state once.
        const auto left = static_cast<Vorn32f>(recordings_.size());
        const auto stayed = std::max(static_cast<Vorn32f>(heightOf(frames)) - left, 1.0f);
        state.stay = logarithm(stayed / (stayed + left));
        state.leave = logarithm(left / (stayed + left));
    }

    const std::vector<Analysis>& recordings_;
    const std::vector<Vorn32f>& floor_;
    std::vector<std::vector<int>> cuts_;
    std::vector<std::optional<Mixture>> mixtures_;
    WordModel word_;
};

std::vector<Vorn32f> varianceFloor(const TrainingSet& recordings) {
    std::vector<Vorn32f> floor = Moments(framesOf(recordings)).variance;
    DIGITS_CALL(vornsMulC_32f_I, kFloorShare, floor.data(), kFeatures);
    const std::vector<Vorn32f> least(kFeatures, kLeastVariance);
    DIGITS_CALL(vornsMaxEvery_32f_I, least.data(), floor.data(), kFeatures);
    return floor;
}

}  // namespace

Frames framesOf(const TrainingSet& recordings) {
    Frames frames;
    for (const auto& word : recordings) {
        for (const Analysis& recording : word) frames.push_back({recording.features.data(), recording.frames});
    }
    return frames;
}

int trainingSteps(int gaussians) { return kWords * static_cast<int>(rounds(gaussians).size()); }

Models train(const TrainingSet& recordings, int gaussians, const std::function<void()>& step) {
    const std::vector<Vorn32f> floor = varianceFloor(recordings);
    Models models;
    for (const auto& word : recordings) {
        WordTrainer trainer(word, floor);
        for (const int count : rounds(gaussians)) {
            trainer.round(count);
            step();
        }
        models.words.push_back(trainer.take());
    }
    return models;
}

}  // namespace digits
