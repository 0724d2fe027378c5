// Counts of right and wrong, and their text.
#include "evaluation.h"

#include <algorithm>
#include <cmath>

namespace digits {

long long Run::frames() const {
    long long sum = 0;
    for (const Outcome& outcome : outcomes) sum += outcome.frames;
    return sum;
}

void Trial::add(const Outcome& outcome, double duration) {
    seconds += duration;
    if (!outcome.spoken) return;
    closest = known == 0 ? outcome.margin() : std::min(closest, outcome.margin());
    ++known;
    right += !outcome.wrong();
}

int Tally::spoken(int digit) const {
    int sum = 0;
    for (const int count : confusion[digit]) sum += count;
    return sum;
}

Tally tally(const Run& run) {
    Tally result;
    for (const Outcome& outcome : run.outcomes) {
        if (!outcome.spoken) continue;
        ++result.known;
        result.right += !outcome.wrong();
        ++result.confusion[*outcome.spoken][outcome.decision.best];
    }
    return result;
}

std::array<double, 2> confidence(int right, int known) {
    const double n = known, p = right / n, z = 1.959964, zz = z * z / n;
    const double middle = p + zz / 2, half = z * std::sqrt(p * (1 - p) / n + zz / (4 * n));
    return {100 * (middle - half) / (1 + zz), 100 * (middle + half) / (1 + zz)};
}

namespace {

void printConfusion(std::FILE* to, const Tally& counts) {
    std::fputs("confusion matrix (rows: spoken, columns: recognised)\n        ", to);
    for (int w = 0; w < kWords; ++w) std::fprintf(to, "%6s", wordOf(w));
    std::fputc('\n', to);
    for (int row = 0; row < kWords; ++row) {
        std::fprintf(to, "  %-6s", wordOf(row));
        for (const int count : counts.confusion[row]) {
            if (count > 0) {
                std::fprintf(to, "%6d", count);
            } else {
                std::fputs("     .", to);
            }
        }
        std::fputc('\n', to);
    }
}

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
                     nameOf(trial.arithmetic), double(run.frames()) / trial.seconds,
                     run.trials[0].seconds / trial.seconds);
    }
}

}  // namespace

void print(std::FILE* to, const Run& run) {
    const Tally counts = tally(run);
    std::fprintf(to, "recordings: %zu recognised, %d unusable, %lld frames\n", run.outcomes.size(), run.unusable,
                 run.frames());
    if (counts.known > 0) {
        std::fprintf(to, "accuracy:   %.2f %% (%d of %d)\n", counts.accuracy(), counts.right, counts.known);
        printConfusion(to, counts);
    }
    for (const Outcome& outcome : run.outcomes) {
        if (!outcome.wrong()) continue;
        std::fprintf(to, "wrong: %s: spoken %s, recognised %s, ahead by %.3f a frame\n", outcome.path.c_str(),
                     wordOf(*outcome.spoken), wordOf(outcome.decision.best), double(outcome.lead()));
    }
    const Seconds& seconds = run.seconds;
    if (seconds.work() > 0.0) {
        std::fprintf(to, "speed:      %.0f frames per second (front end %.0f ms, scoring %.0f ms)\n",
                     double(run.frames()) / seconds.work(), 1e3 * seconds.frontEnd, 1e3 * seconds.scoring);
        std::fprintf(to, "speed:      real-time factor %.5f (%.2f s of work for %.2f s of speech)\n",
                     seconds.work() / seconds.audio, seconds.work(), seconds.audio);
    }
    if (!run.trials.empty() && !run.outcomes.empty()) printTrials(to, run);
}

}  // namespace digits
