// Scores a recording against the word models: the best road through the states of each word (Viterbi, 1967).
#pragma once

#include <array>
#include <functional>
#include <vector>

#include "model.h"
#include "quantise.h"

namespace digits {

struct Path {
    Vorn32f score = 0.0f;        // log likelihood of the frames along the best road
    std::vector<int> states;     // the state of each frame
    std::vector<Vorn32f> gains;  // what each frame adds to the score
};

// The recording must have at least as many frames as the word has states.
Path bestPath(const WordModel& word, const Analysis& analysis);

struct Decision {
    std::array<Path, kWords> paths;
    int best = 0;

    int secondBest() const;
    // How much better the best word is than another one, in log likelihood a frame.
    Vorn32f leadOver(int word) const;
};

// The score of a frame in a state of one word.
using Score = std::function<Vorn32f(int frame, int state)>;

// The best word of a recording, where scoresOf(w) gives the scores of word w.
Decision decideBy(const Models& models, int frames, const std::function<Score(int word)>& scoresOf);

Decision decide(const Models& models, const Analysis& analysis);
Decision decide(const QuantisedModels& models, const Analysis& analysis);

}  // namespace digits
