#include "contenders.h"

#include <memory>
#include <utility>

#include "plain.h"
#include "suppression.h"

namespace digits {
namespace {

// The plain front end behind a noise suppression.
Contender suppressing(const char* name, GainRule rule) {
    return {name, [suppression = std::make_shared<Suppression>(rule), plain = plainFrontEnd()](const Mixed& mixed) {
                return plain({samplesOf(suppression->suppress(waveOf(mixed.samples)).wave), mixed.begin, mixed.end});
            }};
}

Contender robust(const char* name, std::shared_ptr<const RobustFrontEnd> frontEnd) {
    return {name, [frontEnd = std::move(frontEnd)](const Mixed& mixed) { return frontEnd->analyse(mixed); }};
}

}  // namespace

std::vector<Mixed> cleanTraining(const Experiment& experiment) {
    const NoiseMaker maker({});
    std::vector<Mixed> training;
    for (const Recording& recording : experiment.train.recordings) {
        training.push_back(mixed(recording.samples, Noise::kWhite, std::nullopt, maker, Random(experiment.seed)));
    }
    return training;
}

std::vector<Contender> contenders(const std::vector<Mixed>& training) {
    const auto frontEnd = std::make_shared<RobustFrontEnd>();
    frontEnd->learnReference(training);
    const auto fixed = std::make_shared<FixedFrontEnd>(frontEnd->reference());
    return {{"plain", plainFrontEnd()},
            suppressing("wiener", GainRule::kWiener),
            suppressing("ephraim-malah", GainRule::kEphraimMalah),
            robust("two-stage", frontEnd),
            {"fixed", [fixed](const Mixed& mixed) { return fixed->analyse(mixed); }}};
}

std::vector<Contender> ablations(const std::vector<Mixed>& training) {
    const auto without = [&](const char* name, auto change) {
        RobustSteps steps;
        change(steps);
        const auto frontEnd = std::make_shared<RobustFrontEnd>(steps);
        frontEnd->learnReference(training);
        return robust(name, frontEnd);
    };
    return {without("no first stage", [](RobustSteps& steps) { steps.reduction.first = false; }),
            without("no second stage", [](RobustSteps& steps) { steps.reduction.second = false; }),
            without("neither stage", [](RobustSteps& steps) { steps.reduction = {.first = false, .second = false}; }),
            without("no gradual gain", [](RobustSteps& steps) { steps.reduction.gradual = false; }),
            without("no waveform processing", [](RobustSteps& steps) { steps.waveform = false; }),
            without("no equalisation", [](RobustSteps& steps) { steps.equalised = false; }),
            without("no frame dropping", [](RobustSteps& steps) { steps.dropped = false; })};
}

}  // namespace digits
