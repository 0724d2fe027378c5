// How many codewords a speaker needs, found out without any recording but those for training.
#pragma once

#include <functional>
#include <vector>

#include "recordings.h"

namespace digits {

inline constexpr int kParts = 5;

struct ValidatedSize {
    int codewords;
    int right = 0, known = 0;

    double accuracy() const { return 100.0 * right / known; }
};

// The sizes that are tried: those for which every speaker has enough frames. None where a speaker has one recording.
std::vector<int> sizesToTry(const std::vector<Labelled>& recordings);

// Five-fold cross-validation: each part of the recordings is recognised by codebooks of the other parts. Those of a
// speaker go to the parts in turn. Calls step() once a part and size.
std::vector<ValidatedSize> validate(const std::vector<Labelled>& recordings, const std::vector<int>& sizes,
                                    const std::function<void()>& step);

// The one with the most right; of several the smallest.
int bestOf(const std::vector<ValidatedSize>& sizes);

}  // namespace digits
