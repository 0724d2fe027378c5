// Viterbi over the mixture scores of the library. Ties go to the earlier state and to the smaller digit.
#include "decode.h"

#include <algorithm>

#include "checked.h"

namespace digits {

Path bestPath(const WordModel& word, const Analysis& analysis) {
    const auto states = word.states.size();
    const auto frames = static_cast<std::size_t>(analysis.frames);
    std::vector<Vorn32f> gain(frames * states), total(frames * states);
    std::vector<unsigned char> cameFromBefore(frames * states, 0);

    for (std::size_t t = 0; t < frames; ++t) {
        // A road starts in the first state and ends in the last: all other states are out of reach.
        const std::size_t first = t + states > frames ? t + states - frames : 0;
        const std::size_t last = std::min(t, states - 1);
        for (std::size_t s = first; s <= last; ++s) {
            const State& state = word.states[s];
            Vorn32f score = 0.0f;
            DIGITS_CALL(vornsLogGaussMixture_32f_D2, analysis.row(static_cast<int>(t)), state.mean.data(),
                        state.inverseVariance.data(), state.gaussians(), kRowStep, kFeatures, state.constant.data(),
                        &score);
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
            gain[here] = way + score;
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

Decision decide(const Models& models, const Analysis& analysis) {
    Decision decision;
    for (int w = 0; w < kWords; ++w) {
        decision.paths[w] = bestPath(models.words[w], analysis);
        if (decision.paths[w].score > decision.paths[decision.best].score) decision.best = w;
    }
    return decision;
}

}  // namespace digits
