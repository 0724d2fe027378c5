// Words between pauses: the word models, and one state for the noise in front of a word and behind it.
#pragma once

#include <array>
#include <functional>
#include <vector>

#include "model.h"
#include "utterance.h"

namespace digits {

struct Trainee {
    Utterance utterance;
    int word;
};

class Recogniser {
public:
    // The frames of a word train its model, all the others the pause. Where words are in the recordings is known in
    // training, and only there. step() is called trainingSteps(kGaussians) times.
    Recogniser(const std::vector<Trainee>& trainees, const std::function<void()>& step);

    // The word whose best road from a pause through its states to a pause has the greatest score. Pauses may be
    // missing.
    int decide(const Analysis& analysis) const;

private:
    Models models_;
    State pause_;
};

}  // namespace digits
