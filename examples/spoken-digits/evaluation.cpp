// Counts of right and wrong, and their text.
#include "evaluation.h"

#include <algorithm>
#include <string>
#include <utility>

namespace digits {

void Measured::add(const Outcome& outcome, double duration) {
    seconds += duration;
    if (!outcome.spoken) return;
    closest = known == 0 ? outcome.margin() : std::min(closest, outcome.margin());
    ++known;
    right += !outcome.wrong();
}

namespace {

Tally noWords() {
    std::vector<std::string> names;
    for (int w = 0; w < kWords; ++w) names.emplace_back(wordOf(w));
    return Tally(std::move(names));
}

}  // namespace

Tally tally(const std::vector<Outcome>& outcomes) {
    Tally result = noWords();
    for (const Outcome& outcome : outcomes) {
        if (outcome.spoken) result.count(*outcome.spoken, outcome.decision.best);
    }
    return result;
}

Tally tally(const std::vector<TemplateRun::Outcome>& outcomes) {
    Tally result = noWords();
    for (const TemplateRun::Outcome& outcome : outcomes) {
        if (outcome.spoken) result.count(*outcome.spoken, outcome.match.best);
    }
    return result;
}

namespace {

// Accuracies first: only the lines of the speeds change from run to run.
void printTrials(std::FILE* to, const Run& run) {
    std::fputs("arithmetics of the mixture scores, with the least margin of the spoken word a frame\n", to);
    for (const Trial& trial : run.trials) {
        std::fprintf(to, "  %-6s", nameOf(trial.arithmetic));
        if (trial.known > 0) {
            std::fprintf(to, "  %6.2f %% (%d of %d), %.3f", trial.accuracy(), trial.right, trial.known,
                         double(trial.closest));
        }
        std::fprintf(to, "  %s\n", functionOf(trial.arithmetic));
    }
    for (const Trial& trial : run.trials) {
        if (trial.seconds <= 0.0) continue;
        std::fprintf(to, "speed:      %-6s  %.0f frames per second scored, %.2f times float\n",
                     nameOf(trial.arithmetic), double(run.frames) / trial.seconds,
                     run.trials[0].seconds / trial.seconds);
    }
}

void printAccuracy(std::FILE* to, const Tally& counts) {
    if (counts.known == 0) return;
    std::fprintf(to, "accuracy:   %.2f %% (%d of %d)\n", counts.accuracy(), counts.right, counts.known);
    printConfusion(to, counts, "spoken");
}

void printSpeed(std::FILE* to, const Run& run, double scoring) {
    const Seconds& seconds = run.seconds;
    const double work = seconds.frontEnd + scoring;
    if (work <= 0.0) return;
    std::fprintf(to, "speed:      %.0f frames per second (front end %.0f ms, scoring %.0f ms)\n",
                 double(run.frames) / work, 1e3 * seconds.frontEnd, 1e3 * scoring);
    std::fprintf(to, "speed:      real-time factor %.5f (%.2f s of work for %.2f s of speech)\n", work / seconds.audio,
                 work, seconds.audio);
}

std::string likeness(const TemplateRun& run, const Match& match) {
    if (!match.best) return "like no template";
    const Template& nearest = run.templates.all()[match.nearest[*match.best]];
    return wordOf(*match.best) + (", like " + nearest.path.filename().string());
}

void printWrong(std::FILE* to, const char* label, const TemplateRun& run) {
    for (const TemplateRun::Outcome& outcome : run.outcomes) {
        if (!outcome.wrong()) continue;
        std::fprintf(to, "%s: %s: spoken %s, recognised %s\n", label, outcome.path.c_str(), wordOf(*outcome.spoken),
                     likeness(run, outcome.match).c_str());
    }
}

void printMethod(std::FILE* to, const char* name, const Tally& counts) {
    std::fprintf(to, "  %-9s", name);
    if (counts.known > 0) std::fprintf(to, "  %6.2f %% (%d of %d)", counts.accuracy(), counts.right, counts.known);
}

void printMethods(std::FILE* to, const Run& run) {
    const TemplateRun& other = *run.byTemplates;
    std::fputs("methods side by side\n", to);
    printMethod(to, "mixtures", tally(run.outcomes));
    std::fprintf(to, "  vornsLogGaussMixture_32f_D2, %d Gaussians\n", run.gaussians);
    printMethod(to, "templates", tally(other.outcomes));
    std::fprintf(to, "  vornsDTW_L2_32f_D2, %zu templates of %lld frames\n", other.templates.all().size(),
                 other.templates.frames());
    printWrong(to, "wrong by templates", other);
    if (run.seconds.scoring <= 0.0 || other.seconds <= 0.0) return;
    std::fprintf(to, "speed:      mixtures   %.0f frames per second scored\n",
                 double(run.frames) / run.seconds.scoring);
    std::fprintf(to, "speed:      templates  %.0f frames per second scored, %.2f times mixtures\n",
                 double(run.frames) / other.seconds, run.seconds.scoring / other.seconds);
}

void printSelection(std::FILE* to, const SelectionRun& run, long long frames) {
    const SelectionTrial& whole = run.trials[0];
    std::fprintf(
        to, "shortlists of %d codewords, in a model of %d Gaussians: the share that is scored, and what is right\n",
        run.codewords, whole.length);
    for (const SelectionTrial& trial : run.trials) {
        const std::string length = &trial == &whole ? "none" : std::to_string(trial.length);
        std::fprintf(to, "  %-5s %6.2f %%", length.c_str(), trial.share());
        if (trial.known > 0) {
            std::fprintf(to, "  %6.2f %% (%d of %d), %.3f", trial.accuracy(), trial.right, trial.known,
                         double(trial.closest));
        }
        std::fprintf(to, "  %s\n",
                     &trial == &whole ? "vornsLogGaussMixture_32f_D2" : "vornsLogGaussMixture_Select_32f_D2");
    }
    for (const SelectionTrial& trial : run.trials) {
        if (trial.seconds <= 0.0) continue;
        const std::string length = &trial == &whole ? "none" : std::to_string(trial.length);
        std::fprintf(to, "speed:      %-5s  %.0f frames per second scored, %.2f times the whole model\n",
                     length.c_str(), double(frames) / trial.seconds, whole.seconds / trial.seconds);
    }
}

void printMixtures(std::FILE* to, const Run& run) {
    printAccuracy(to, tally(run.outcomes));
    for (const Outcome& outcome : run.outcomes) {
        if (!outcome.wrong()) continue;
        std::fprintf(to, "wrong: %s: spoken %s, recognised %s, ahead by %.3f a frame\n", outcome.path.c_str(),
                     wordOf(*outcome.spoken), wordOf(outcome.decision.best), double(outcome.lead()));
    }
    printSpeed(to, run, run.seconds.scoring);
    if (!run.trials.empty() && !run.outcomes.empty()) printTrials(to, run);
}

void printTemplates(std::FILE* to, const Run& run) {
    const TemplateRun& only = *run.byTemplates;
    std::fprintf(to, "templates:  %zu recordings of %lld frames, the most central of each speaker and word\n",
                 only.templates.all().size(), only.templates.frames());
    printAccuracy(to, tally(only.outcomes));
    printWrong(to, "wrong", only);
    printSpeed(to, run, only.seconds);
}

}  // namespace

void printOne(std::FILE* to, const Run& run, int i) {
    if (run.hasMixtures()) {
        const Outcome& outcome = run.outcomes[i];
        const int second = outcome.decision.secondBest();
        std::fprintf(to, "%s: %s, ahead of %s by %.3f a frame\n", outcome.path.c_str(), wordOf(outcome.decision.best),
                     wordOf(second), double(outcome.decision.leadOver(second)));
        return;
    }
    const TemplateRun::Outcome& outcome = run.byTemplates->outcomes[i];
    const Match& match = outcome.match;
    std::fprintf(to, "%s: %s", outcome.path.c_str(), likeness(*run.byTemplates, match).c_str());
    if (match.best) std::fprintf(to, ", %.3f a frame away", double(match.distance[*match.best]));
    const std::optional<int> second = match.best ? match.bestBut(*match.best) : std::nullopt;
    if (second) std::fprintf(to, "; %s is %.3f away", wordOf(*second), double(match.distance[*second]));
    std::fputc('\n', to);
}

void print(std::FILE* to, const Run& run) {
    std::fprintf(to, "recordings: %d recognised, %d unusable, %lld frames\n", run.recognised, run.unusable, run.frames);
    if (!run.hasMixtures()) return printTemplates(to, run);
    printMixtures(to, run);
    if (run.recognised == 0) return;
    if (run.byTemplates) printMethods(to, run);
    if (run.selection) printSelection(to, *run.selection, run.frames);
}

}  // namespace digits
