// Word models: a chain of states for each digit, each state a mixture of diagonal Gaussians; and their file.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "front_end.h"

namespace digits {

inline constexpr int kWords = 10;

// A mixture as the scoring functions take it: rows of kRowStep elements, inverse variances, and for each Gaussian the
// constant ln(weight) - (kFeatures ln(2 pi) + sum of ln(variance)) / 2.
struct State {
    std::vector<Vorn32f> mean;
    std::vector<Vorn32f> inverseVariance;
    std::vector<Vorn32f> constant;
    Vorn32f stay = 0.0f;  // logarithms of the two ways on from a frame: the same state again, or the next one
    Vorn32f leave = 0.0f;

    int gaussians() const { return static_cast<int>(constant.size()); }
};

struct WordModel {
    std::vector<State> states;
};

struct Models {
    std::vector<WordModel> words;  // kWords of them

    int states() const { return static_cast<int>(words.front().states.size()); }
    int gaussians() const { return words.front().states.front().gaussians(); }
};

const char* wordOf(int digit);

void save(const Models& models, const std::filesystem::path& path);

// Throws InputError when the file is not a whole and undamaged model of this version and of this front end.
Models load(const std::filesystem::path& path);

}  // namespace digits
