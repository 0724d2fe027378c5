// Viterbi over the mixture scores of the library. Ties go to the earlier state and to the smaller digit.
#include "decode.h"

#include <algorithm>

#include "checked.h"

namespace digits {
namespace {

// score(t, s) is that of frame t in state s.
template <typename Score>
Path bestPathOf(const WordModel& word, int height, Score score) {
    const auto states = word.states.size();
    const auto frames = static_cast<std::size_t>(height);
    std::vector<Vorn32f> gain(frames * states), total(frames * states);
    std::vector<unsigned char> cameFromBefore(frames * states, 0);

    for (std::size_t t = 0; t < frames; ++t) {
        // A road starts in the first state and ends in the last: all other states are out of reach.
        const std::size_t first = t + states > frames ? t + states - frames : 0;
        const std::size_t last = std::min(t, states - 1);
        for (std::size_t s = first; s <= last; ++s) {
            const State& state = word.states[s];
            const std::size_t here = t * states + s;
            Vorn32f way = 0.0f, before = 0.0f;
            if (t > 0) {
                const bool canStay = s < t && s + frames >= t + states - 1;
                const bool canCome = s > 0;
                const Vorn32f stay = canStay ? total[here - states] + state.stay : 0.0f;
                const Vorn32f come = canCome ? total[here - states - 1] + word.states[s - 1].leave : 0.0f;
                cameFromBefore[here] = canCome && (!canStay || come > stay);
                way = cameFromBefore[here] ? word.states[s - 1].leave : state.stay;
                before = total[here - states - cameFromBefore[here]];
            }
            gain[here] = way + score(static_cast<int>(t), static_cast<int>(s));
            total[here] = before + gain[here];
        }
    }

    Path path{total.back(), std::vector<int>(frames), std::vector<Vorn32f>(frames)};
    std::size_t s = states - 1;
    for (std::size_t t = frames; t-- > 0;) {
        path.states[t] = static_cast<int>(s);
        path.gains[t] = gain[t * states + s];
        s -= cameFromBefore[t * states + s];
    }
    return path;
}

// pathOf(w) is the best road through word w.
template <typename PathOf>
Decision bestOf(PathOf pathOf) {
    Decision decision;
    for (int w = 0; w < kWords; ++w) {
        decision.paths[w] = pathOf(w);
        if (decision.paths[w].score > decision.paths[decision.best].score) decision.best = w;
    }
    return decision;
}

}  // namespace

Path bestPath(const WordModel& word, const Analysis& analysis) {
    return bestPathOf(word, analysis.frames, [&](int t, int s) {
        const State& state = word.states[s];
        Vorn32f score = 0.0f;
        DIGITS_CALL(vornsLogGaussMixture_32f_D2, analysis.row(t), state.mean.data(), state.inverseVariance.data(),
                    state.gaussians(), kRowStep, kFeatures, state.constant.data(), &score);
        return score;
    });
}

int Decision::secondBest() const {
    int second = best == 0 ? 1 : 0;
    for (int w = 0; w < kWords; ++w) {
        if (w != best && paths[w].score > paths[second].score) second = w;
    }
    return second;
}

Vorn32f Decision::leadOver(int word) const {
    return (paths[best].score - paths[word].score) / static_cast<Vorn32f>(paths[best].states.size());
}

Decision decideBy(const Models& models, int frames, const std::function<Score(int)>& scoresOf) {
    return bestOf([&](int w) { return bestPathOf(models.words[w], frames, scoresOf(w)); });
}

Decision decide(const Models& models, const Analysis& analysis) {
    return bestOf([&](int w) { return bestPath(models.words[w], analysis); });
}

Decision decide(const QuantisedModels& models, const Analysis& analysis) {
    const std::vector<Vorn16s> features = models.quantise(analysis.features);
    return bestOf([&](int w) {
        return bestPathOf(models.models().words[w], analysis.frames,
                          [&](int t, int s) { return models.score(w, s, features.data() + t * kRowStep); });
    });
}

}  // namespace digits
