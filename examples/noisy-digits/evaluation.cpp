#include "evaluation.h"

#include <optional>

#include "parallel.h"
#include "train.h"

namespace digits {
namespace {

enum Draw { kTrainingDraw, kTestDraw };  // parts of the random numbers

// In training, mixtures go down to 5 dB, as they do in the field's corpora.
constexpr Snr kTrainingLevels[] = {std::nullopt, 20, 15, 10, 5};

Condition trainingCondition(Training training, Random random) {
    if (training == Training::kClean) return {Noise::kWhite, std::nullopt};
    const Noise noise = kNoises[random.below(std::size(kNoises))];
    return {noise, kTrainingLevels[random.below(std::size(kTrainingLevels))]};
}

int count(const Corpus& corpus) { return static_cast<int>(corpus.recordings.size()); }

}  // namespace

const char* nameOf(Training training) { return training == Training::kClean ? "clean" : "mixed"; }

std::vector<Condition> allConditions() {
    std::vector<Condition> conditions{{Noise::kWhite, std::nullopt}};
    for (const Noise noise : kNoises) {
        for (const int level : kLevels) conditions.push_back({noise, level});
    }
    return conditions;
}

std::vector<Condition> quickConditions() {
    std::vector<Condition> conditions{{Noise::kWhite, std::nullopt}};
    for (const Noise noise : kNoises) {
        for (const int level : {15, 5}) conditions.push_back({noise, level});
    }
    return conditions;
}

NoiseMaker noiseMaker(const Experiment& experiment) {
    std::vector<std::vector<Vorn16s>> voices;
    for (const Recording& recording : experiment.train.recordings) voices.push_back(recording.samples);
    return NoiseMaker(voices);
}

Random testDraw(const Experiment& experiment, int i, Noise noise) {
    return Random(experiment.seed)
        .split(kTestDraw)
        .split(static_cast<std::uint64_t>(i))
        .split(static_cast<std::uint64_t>(noise));
}

int evaluationSteps(const Experiment& experiment) {
    return static_cast<int>(experiment.trainings.size()) * trainingSteps(kGaussians) +
           static_cast<int>(experiment.conditions.size());
}

std::vector<Result> evaluate(const Experiment& experiment, const Contender& contender,
                             const std::function<void()>& step) {
    const NoiseMaker maker = noiseMaker(experiment);
    const auto make = [&](const Recording& recording, Condition condition, const Random& draw) {
        return contender.call(mixed(recording.samples, condition.noise, condition.snr, maker, draw));
    };

    std::vector<Recogniser> recognisers;
    std::vector<Result> results;
    for (const Training training : experiment.trainings) {
        std::vector<Trainee> trainees(experiment.train.recordings.size());
        forEach(count(experiment.train), experiment.threads, [&](int i) {
            const Recording& recording = experiment.train.recordings[static_cast<std::size_t>(i)];
            const Random draw = Random(experiment.seed).split(kTrainingDraw).split(static_cast<std::uint64_t>(i));
            trainees[static_cast<std::size_t>(i)] = {make(recording, trainingCondition(training, draw), draw.split(0)),
                                                     recording.word};
        });
        recognisers.emplace_back(trainees, step);
        results.push_back({contender.name, training, count(experiment.test), experiment.conditions, {}});
    }

    for (const Condition& condition : experiment.conditions) {
        std::vector<std::vector<char>> right(recognisers.size(), std::vector<char>(experiment.test.recordings.size()));
        forEach(count(experiment.test), experiment.threads, [&](int i) {
            const auto index = static_cast<std::size_t>(i);
            const Recording& recording = experiment.test.recordings[index];
            const Utterance utterance = make(recording, condition, testDraw(experiment, i, condition.noise));
            for (std::size_t r = 0; r < recognisers.size(); ++r) {
                right[r][index] = recognisers[r].decide(utterance.analysis) == recording.word;
            }
        });
        for (std::size_t r = 0; r < recognisers.size(); ++r) {
            int sum = 0;
            for (const char one : right[r]) sum += one;
            results[r].right.push_back(sum);
        }
        step();
    }
    return results;
}

double accuracy(const Result& result, const std::function<bool(const Condition&)>& counted) {
    int right = 0, known = 0;
    for (std::size_t c = 0; c < result.conditions.size(); ++c) {
        if (!counted(result.conditions[c])) continue;
        right += result.right[c];
        known += result.known;
    }
    return known > 0 ? 100.0 * right / known : 0.0;
}

bool countsInMean(const Condition& condition) { return condition.snr && *condition.snr >= kLowestOfMean; }

double meanAccuracy(const Result& result, std::optional<Noise> noise) {
    return accuracy(result, [&](const Condition& condition) {
        return countsInMean(condition) && (!noise || condition.noise == *noise);
    });
}

double errorsSaved(double accuracyOfOne, double accuracyOfOther) {
    const double errors = 100.0 - accuracyOfOne;
    return errors > 0.0 ? 100.0 * (accuracyOfOther - accuracyOfOne) / errors : 0.0;
}

}  // namespace digits
