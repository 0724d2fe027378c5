#include "recogniser.h"

#include <algorithm>
#include <limits>

#include "checked.h"
#include "train.h"

namespace digits {
namespace {

constexpr Vorn32f kOut = -std::numeric_limits<Vorn32f>::infinity();
constexpr Vorn32f kFloorShare = 0.10f;  // no variance of the pause below this share of that of all its frames
constexpr Vorn32f kLeastVariance = 1e-4f;
constexpr int kSweeps = 4;  // of expectation and maximisation for each size of the mixture

// The rows of a part of the frames.
Analysis partOf(const Analysis& analysis, int begin, int end) {
    Analysis part;
    part.frames = end - begin;
    part.features.assign(analysis.row(begin), analysis.row(end));
    return part;
}

State trainedPause(const std::vector<Trainee>& trainees) {
    Frames frames;
    for (const Trainee& trainee : trainees) {
        const auto& [analysis, begin, end] = trainee.utterance;
        if (begin > 0) frames.push_back({analysis.row(0), begin});
        if (end < analysis.frames) frames.push_back({analysis.row(end), analysis.frames - end});
    }
    std::vector<Vorn32f> floor = Moments(frames).variance;
    DIGITS_CALL(vornsMulC_32f_I, kFloorShare, floor.data(), kFeatures);
    for (Vorn32f& least : floor) least = std::max(least, kLeastVariance);

    Mixture mixture(frames, floor);
    while (mixture.size() < kGaussians) {
        mixture.grow(mixture.size() + 1);
        for (int i = 0; i < kSweeps; ++i) mixture.sweep(frames, floor);
    }
    State pause;
    mixture.store(pause);
    return pause;
}

// Scores of all frames in one state.
void scoreFrames(const State& state, const Analysis& analysis, Vorn32f* scores) {
    for (int t = 0; t < analysis.frames; ++t) {
        DIGITS_CALL(vornsLogGaussMixture_32f_D2, analysis.row(t), state.mean.data(), state.inverseVariance.data(),
                    state.gaussians(), kRowStep, kFeatures, state.constant.data(), &scores[t]);
    }
}

// The score of the best road. The pauses cost nothing but their frames' scores, so they are the same for all words.
Vorn32f bestScore(const WordModel& word, const Analysis& analysis, const std::vector<Vorn32f>& pause) {
    const std::size_t states = word.states.size();
    const auto frames = static_cast<std::size_t>(analysis.frames);
    std::vector<Vorn32f> scores(states * frames);
    for (std::size_t s = 0; s < states; ++s) scoreFrames(word.states[s], analysis, scores.data() + s * frames);

    std::vector<Vorn32f> best(states, kOut);  // of the roads that are in the state
    Vorn32f before = 0.0f, behind = kOut;     // of those that have not begun the word, and that have ended it
    for (std::size_t t = 0; t < frames; ++t) {
        behind = std::max(behind, best.back() + word.states.back().leave) + pause[t];
        for (std::size_t s = states; s-- > 0;) {
            const Vorn32f come = s > 0 ? best[s - 1] + word.states[s - 1].leave : before;
            best[s] = std::max(best[s] + word.states[s].stay, come) + scores[s * frames + t];
        }
        before += pause[t];
    }
    return std::max(behind, best.back() + word.states.back().leave);
}

}  // namespace

Recogniser::Recogniser(const std::vector<Trainee>& trainees, const std::function<void()>& step) {
    TrainingSet words;
    for (const Trainee& trainee : trainees) {
        const auto& [analysis, begin, end] = trainee.utterance;
        words[static_cast<std::size_t>(trainee.word)].push_back(partOf(analysis, begin, end));
    }
    models_ = train(words, kGaussians, step);
    pause_ = trainedPause(trainees);
}

int Recogniser::decide(const Analysis& analysis) const {
    std::vector<Vorn32f> pause(static_cast<std::size_t>(analysis.frames));
    scoreFrames(pause_, analysis, pause.data());
    int best = 0;
    Vorn32f most = kOut;
    for (int w = 0; w < kWords; ++w) {
        const Vorn32f score = bestScore(models_.words[static_cast<std::size_t>(w)], analysis, pause);
        if (score > most) most = score, best = w;
    }
    return best;
}

}  // namespace digits
