// The same recordings by other searches, in 16 bits, and by codebooks of other sizes.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "speakers.h"

namespace digits {

// A recording as a comparison needs it.
struct Heard {
    const Analysis* analysis;
    std::string speaker;  // empty if nobody knows
};

// What came of all recordings in one of several ways.
struct Measured {
    int known = 0, right = 0;
    double seconds = 0.0;

    double accuracy() const { return known > 0 ? 100.0 * right / known : 0.0; }
};

struct SearchTrial : Measured {
    const char *name = nullptr, *function = nullptr;
    double distortion = 0.0;  // mean squared distance of frames from their own speaker's codewords
    long long elsewhere = 0,
              searches = 0;  // of frames in codebooks: those that did not end at the nearest word, and all
};

struct SizeTrial : Measured {
    int codewords = 0;
    double training = 0.0, test = 0.0;  // mean squared distance of frames from their own speaker's codewords
};

struct Comparison {
    int unusable = 0;  // recordings for training that were refused
    std::vector<SearchTrial> searches;
    std::vector<SizeTrial> sizes;
};

// Codebooks of so many words are grown from the frames of each speaker, who needs as many frames; those of other sizes
// have fewer. Calls step() comparisonSteps() times.
Comparison compare(const VoiceFrames& training, const std::vector<Heard>& recordings, int codewords,
                   const std::function<void()>& step);
int comparisonSteps(int codewords);

}  // namespace digits
