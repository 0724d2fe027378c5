// Recognises the test recordings in every noise at every level, by every front end.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "corpus.h"
#include "mixing.h"
#include "recogniser.h"

namespace digits {

// What a front end makes of a recording in noise. It is asked for by several threads at once.
using FrontEndCall = std::function<Utterance(const Mixed& mixed)>;

struct Contender {
    std::string name;
    FrontEndCall call;
};

struct Condition {
    Noise noise;
    Snr snr;
};

// On what a recogniser was trained: the recordings as they are, or in all noises at 20 to 5 dB and clean.
enum class Training { kClean, kMixed };
inline constexpr Training kTrainings[] = {Training::kClean, Training::kMixed};
const char* nameOf(Training training);

// Clean first, which is the same for every noise; then each noise from the highest level to the lowest.
std::vector<Condition> allConditions();

// Clean, and two levels of each noise.
std::vector<Condition> quickConditions();

// What is recognised after which training, and with how many threads, which changes no number.
struct Experiment {
    Corpus train, test;
    std::uint64_t seed = 1;
    int threads = 1;
    std::vector<Condition> conditions = allConditions();
    std::vector<Training> trainings{Training::kClean, Training::kMixed};
};

// The noises of an experiment; babble is made of its training recordings.
NoiseMaker noiseMaker(const Experiment& experiment);

// The random numbers of the i-th test recording in a noise.
Random testDraw(const Experiment& experiment, int i, Noise noise);

// How many were right.
struct Result {
    std::string name;
    Training training;
    int known;  // recordings in each condition
    std::vector<Condition> conditions;
    std::vector<int> right;  // in each of them
};

// How often evaluate() calls step().
int evaluationSteps(const Experiment& experiment);

// A result for each training.
std::vector<Result> evaluate(const Experiment& experiment, const Contender& contender,
                             const std::function<void()>& step);

// Per cent of the conditions that `counted` takes.
double accuracy(const Result& result, const std::function<bool(const Condition&)>& counted);

// Between the highest level and kLowestOfMean.
bool countsInMean(const Condition& condition);

// Of the conditions that count, in the noise or in all.
double meanAccuracy(const Result& result, std::optional<Noise> noise = {});

// The share of the errors of the one that the other does not make, in per cent; 0 where there are none to save.
double errorsSaved(double accuracyOfOne, double accuracyOfOther);

}  // namespace digits
