#include "tables.h"

#include <string>

namespace digits {
namespace {

const Result& baseline(const std::vector<Result>& results, Training training) {
    for (const Result& result : results) {
        if (result.training == training) return result;
    }
    return results.front();
}

void printTable(std::FILE* file, const Experiment& experiment, const Result& result, const Result& plain) {
    std::fprintf(file, "%s, trained %s: words right in per cent, %d in each condition\n", result.name.c_str(),
                 nameOf(result.training), result.known);
    std::fprintf(file, "  %-8s", "SNR");
    for (const Noise noise : kNoises) std::fprintf(file, "%9s", nameOf(noise));
    std::fprintf(file, "%9s  errors saved\n", "mean");
    const auto row = [&](const std::string& label, auto counted) {
        std::fprintf(file, "  %-8s", label.c_str());
        for (const Noise noise : kNoises) {
            std::fprintf(file, "%9.2f",
                         accuracy(experiment, result, [&](const Condition& c) { return counted(c, noise); }));
        }
        const auto all = [&](const Condition& c) { return counted(c, c.noise); };
        const double mine = accuracy(experiment, result, all), other = accuracy(experiment, plain, all);
        std::fprintf(file, "%9.2f", mine);
        if (&result != &plain) std::fprintf(file, "  %9.1f %%", errorsSaved(other, mine));
        std::fprintf(file, "\n");
    };
    row("clean", [](const Condition& c, Noise) { return !c.snr; });
    for (const int level : kLevels) {
        row(std::to_string(level) + " dB", [&](const Condition& c, Noise noise) {
            return c.snr == level && c.noise == noise;
        });
    }
    row("20..0 dB", [](const Condition& c, Noise noise) { return c.snr && *c.snr >= kLowestOfMean && c.noise == noise; });
    std::fprintf(file, "\n");
}

}  // namespace

void printTables(std::FILE* file, const Experiment& experiment, const std::vector<Result>& results) {
    for (const Result& result : results) printTable(file, experiment, result, baseline(results, result.training));
}

}  // namespace digits
