// One recording after another, with a clock at each step.
#include "recogniser.h"

#include <algorithm>
#include <utility>

#include "recordings.h"
#include "stopwatch.h"
#include "train.h"
#include "wav.h"

namespace digits {
namespace {

// The last recording of the run once more, in each of the other arithmetics.
void compareArithmetics(const std::vector<QuantisedModels>& rivals, const Analysis& analysis, double secondsInFloat,
                        Run& run) {
    if (rivals.empty()) return;
    Outcome outcome = run.outcomes.back();
    run.trials[0].add(outcome, secondsInFloat);
    for (std::size_t i = 0; i < rivals.size(); ++i) {
        Stopwatch watch;
        outcome.decision = decide(rivals[i], analysis);
        run.trials[i + 1].add(outcome, watch.lap());
    }
}

// The same by a large model, with all of its Gaussians and with those of the lists.
void compareShortlists(const Selection& selection, const Analysis& analysis, Outcome outcome, SelectionRun& run) {
    Stopwatch watch;
    outcome.decision = decide(selection.models(), analysis);
    SelectionTrial& whole = run.trials[0];
    whole.add(outcome, watch.lap());
    for (std::size_t i = 0; i < selection.lists().size(); ++i) {
        watch.lap();
        Shortlists::Result result = selection.lists()[i].decide(analysis, codewordsOf(selection.codebook(), analysis));
        const double seconds = watch.lap();
        outcome.decision = std::move(result.decision);
        SelectionTrial& trial = run.trials[i + 1];
        trial.add(outcome, seconds);
        trial.computed += result.computed;
        trial.all += result.all;
        if (i == 0) whole.computed = whole.all += result.all;
    }
}

}  // namespace

int Recogniser::leastFrames() const {
    const int states = models ? models->states() : kStates;
    return selection ? std::max(states, selection->models().states()) : states;
}

Run Recogniser::begin() const {
    Run run;
    if (models) run.gaussians = static_cast<long long>(kWords) * models->states() * models->gaussians();
    if (!rivals.empty()) run.trials.emplace_back(Arithmetic::kFloat);
    for (const QuantisedModels& rival : rivals) run.trials.emplace_back(rival.arithmetic());
    if (templates) run.byTemplates.emplace(*templates);
    if (selection) {
        run.selection = SelectionRun{selection->codebook().size(), {SelectionTrial(selection->gaussians())}};
        for (const Shortlists& lists : selection->lists()) run.selection->trials.emplace_back(lists.length());
    }
    return run;
}

void Recogniser::add(const std::filesystem::path& path, Run& run) const {
    Stopwatch watch;
    const std::vector<Vorn16s> samples = readWav(path, kSampleRate);
    run.seconds.reading += watch.lap();
    const Analysis analysis = analyse(frontEnd, path, samples, leastFrames());
    run.seconds.frontEnd += watch.lap();
    run.seconds.audio += static_cast<double>(samples.size()) / kSampleRate;
    run.frames += analysis.frames;
    ++run.recognised;
    const std::optional<int> spoken = spokenDigit(path);
    if (models) {
        watch.lap();
        run.outcomes.push_back({path, spoken, analysis.frames, decide(*models, analysis), {}});
        const double scoring = watch.lap();
        run.seconds.scoring += scoring;
        run.outcomes.back().mean = meanFrame(analysis);  // for a picture only
        compareArithmetics(rivals, analysis, scoring, run);
        if (selection) compareShortlists(*selection, analysis, run.outcomes.back(), *run.selection);
    }
    if (templates) {
        watch.lap();
        const Match match = templates->match(analysis);
        run.byTemplates->seconds += watch.lap();
        run.byTemplates->outcomes.push_back({path, spoken, match});
    }
}

}  // namespace digits
