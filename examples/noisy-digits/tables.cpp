#include "tables.h"

#include <algorithm>
#include <string>

namespace digits {
namespace {

const Result& baseline(const std::vector<Result>& results, Training training) {
    for (const Result& result : results) {
        if (result.training == training) return result;
    }
    return results.front();
}

void printTable(std::FILE* file, const Result& result, const Result& plain) {
    std::fprintf(file, "%s, trained %s: words right in per cent, %d in each condition\n", result.name.c_str(),
                 nameOf(result.training), result.known);
    std::fprintf(file, "  %-8s", "SNR");
    for (const Noise noise : kNoises) std::fprintf(file, "%9s", nameOf(noise));
    std::fprintf(file, "%9s  errors saved\n", "mean");
    const auto row = [&](const std::string& label, auto counted) {
        const auto measured = [&](const Condition& c) { return counted(c, c.noise); };
        if (std::none_of(result.conditions.begin(), result.conditions.end(), measured)) return;
        std::fprintf(file, "  %-8s", label.c_str());
        for (const Noise noise : kNoises) {
            std::fprintf(file, "%9.2f", accuracy(result, [&](const Condition& c) { return counted(c, noise); }));
        }
        const auto all = [&](const Condition& c) { return counted(c, c.noise); };
        const double mine = accuracy(result, all), other = accuracy(plain, all);
        std::fprintf(file, "%9.2f", mine);
        if (&result != &plain) std::fprintf(file, "  %9.1f %%", errorsSaved(other, mine));
        std::fprintf(file, "\n");
    };
    row("clean", [](const Condition& c, Noise) { return !c.snr; });
    for (const int level : kLevels) {
        row(std::to_string(level) + " dB",
            [&](const Condition& c, Noise noise) { return c.snr == level && c.noise == noise; });
    }
    row("20..0 dB",
        [](const Condition& c, Noise noise) { return c.snr && *c.snr >= kLowestOfMean && c.noise == noise; });
    std::fprintf(file, "\n");
}

}  // namespace

void printTables(std::FILE* file, const std::vector<Result>& results) {
    for (const Result& result : results) printTable(file, result, baseline(results, result.training));
}

void printAblations(std::FILE* file, const std::vector<Result>& results) {
    std::fprintf(file, "two-stage without one step, trained clean: words right in per cent, mean of 20 to 0 dB\n");
    const double all = 100.0 - meanAccuracy(results.front());
    for (const Result& result : results) {
        const double right = meanAccuracy(result);
        std::fprintf(file, "  %-24s%7.2f", result.name.c_str(), right);
        if (all > 0.0) std::fprintf(file, "  %5.2f times the errors", (100.0 - right) / all);
        std::fprintf(file, "\n");
    }
    std::fprintf(file, "\n");
}

void printSides(std::FILE* file, const std::vector<Side>& sides) {
    std::fprintf(file,
                 "single precision and integers, given the same numbers: differences in per cent of the root mean "
                 "square\n");
    for (const Side& side : sides) {
        std::fprintf(file, "  %-38s  %-43s", side.inSingle.c_str(), side.inIntegers.c_str());
        if (side.counts) {
            std::fprintf(file, "%9.3g %% of %lld differ\n", side.usual, side.values);
        } else {
            std::fprintf(file, "%9.3g %%, at most %.3g %%\n", side.usual, side.most);
        }
    }
    std::fprintf(file, "\n");
}

void printSummary(std::FILE* file, const std::vector<Result>& results) {
    std::fprintf(file, "summary: words right in per cent, mean of 20 to 0 dB\n");
    for (const Result& result : results) {
        const Result& plain = baseline(results, result.training);
        const double mine = meanAccuracy(result), other = meanAccuracy(plain);
        std::fprintf(file, "  %-14s trained %-6s%7.2f", result.name.c_str(), nameOf(result.training), mine);
        if (&result != &plain) std::fprintf(file, "  %5.1f %% of the errors saved", errorsSaved(other, mine));
        std::fprintf(file, "\n");
    }
}

}  // namespace digits
