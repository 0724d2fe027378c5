// Counts of right and wrong, and their text.
#include "evaluation.h"

#include <algorithm>

namespace digits {
namespace {

std::vector<std::string> namesOf(const Run& run) {
    std::vector<std::string> names;
    for (const Speaker& speaker : run.speakers) names.push_back(speaker.name);
    return names;
}

const char* nameOf(const Run& run, int speaker) { return run.speakers[speaker].name.c_str(); }

void printDistortions(std::FILE* to, const Run& run) {
    std::size_t longest = 8;
    for (const Speaker& speaker : run.speakers) longest = std::max(longest, speaker.name.size());
    const int width = static_cast<int>(longest) + 1;
    std::fprintf(to, "distortion (rows: speaker, columns: whose codewords; mean squared distance of a frame)\n  %*s",
                 width, "");
    for (const Speaker& speaker : run.speakers) std::fprintf(to, "%*s", width, speaker.name.c_str());
    std::fputc('\n', to);
    const std::vector<std::vector<double>> matrix = distortions(run);
    for (std::size_t row = 0; row < matrix.size(); ++row) {
        std::fprintf(to, "  %-*s", width, run.speakers[row].name.c_str());
        for (std::size_t column = 0; column < matrix.size(); ++column) {
            if (matrix[row].empty()) {
                std::fprintf(to, "%*s", width, ".");
            } else {
                std::fprintf(to, "%*.1f", width, matrix[row][column]);
            }
        }
        std::fputc('\n', to);
    }
}

void printShare(std::FILE* to, const Measured& measured) {
    if (measured.known == 0) return;
    std::fprintf(to, "  %6.2f %% (%d of %d)", measured.accuracy(), measured.right, measured.known);
}

void printComparison(std::FILE* to, const Comparison& comparison, long long frames) {
    std::fputs("searches: what is right, distortion of a speaker's own frames, searches that miss the nearest word\n",
               to);
    for (const SearchTrial& trial : comparison.searches) {
        std::fprintf(to, "  %-20s", trial.name);
        printShare(to, trial);
        std::fprintf(to, "  %7.2f  %6.3f %%  %s\n", trial.distortion,
                     100.0 * double(trial.elsewhere) / double(std::max(trial.searches, 1LL)), trial.function);
    }
    const SearchTrial& first = comparison.searches[0];
    for (const SearchTrial& trial : comparison.searches) {
        if (trial.seconds <= 0.0) continue;
        std::fprintf(to, "speed:      %-20s  %.0f frames per second in all codebooks, %.2f times all words\n",
                     trial.name, double(frames) / trial.seconds, first.seconds / trial.seconds);
    }
    std::fputs("codewords of a speaker: distortion of the training frames, of these frames, and what is right\n", to);
    for (const SizeTrial& trial : comparison.sizes) {
        std::fprintf(to, "  %5d  %7.2f  %7.2f", trial.codewords, trial.training, trial.test);
        printShare(to, trial);
        std::fputc('\n', to);
    }
}

void printCompression(std::FILE* to, const Compression& compression, const Run& run) {
    std::fprintf(to,
                 "compression: bits of a pair of cepstra, of a frame, a second; bytes of all; decibels;\n"
                 "  digits right by models of features as they are, by models of quantised ones; speakers right\n");
    for (const CompressionTrial& trial : compression.trials) {
        if (trial.pairBits == 0) {
            std::fputs("  none", to);
        } else {
            std::fprintf(to, "  %4d", trial.pairBits);
        }
        std::fprintf(to, " %4d %6d %8lld", trial.bits, trial.bitsPerSecond(), trial.bytes);
        if (trial.pairBits == 0) {
            std::fputs("      -", to);
        } else {
            std::fprintf(to, "  %5.2f", trial.decibels);
        }
        printShare(to, trial.clean);
        printShare(to, trial.quantised);
        printShare(to, trial.speakers);
        std::fputc('\n', to);
    }
    std::fprintf(to, "streams at %d bits a pair: words, bits, decibels of the training frames, of these frames\n",
                 kTypicalPairBits);
    for (const StreamTrial& stream : compression.streams) {
        std::fprintf(to, "  %-8s  %4d  %2d  %6.2f  %6.2f\n", streamName(stream).c_str(), stream.words, stream.bits,
                     stream.training, stream.test);
    }
    for (const CompressionTrial& trial : compression.trials) {
        if (trial.pairBits != kTypicalPairBits || trial.packing <= 0.0 || trial.unpacking <= 0.0) continue;
        std::fprintf(to, "  by trees, %.3f %% of the words are others\n",
                     100.0 * double(compression.otherWords) / double(std::max(compression.words, 1LL)));
        std::fprintf(to, "speed:      %.0f frames per second packed, %.0f by trees, %.0f unpacked\n",
                     double(run.frames) / trial.packing, double(run.frames) / compression.packingByTrees,
                     double(run.frames) / trial.unpacking);
    }
}

}  // namespace

std::string streamName(const StreamTrial& stream) {
    if (stream.width == 1) return "c0";
    std::string name = "c";
    name += std::to_string(stream.first + 1);
    return name + " c" + std::to_string(stream.first + 2);
}

int Run::codewords() const {
    int sum = 0;
    for (const Speaker& speaker : speakers) sum += speaker.codebook.size();
    return sum;
}

Tally tally(const Run& run) {
    Tally result(namesOf(run));
    for (const Outcome& outcome : run.outcomes) {
        if (outcome.spoken) result.count(*outcome.spoken, outcome.verdict.best);
    }
    return result;
}

std::vector<std::vector<double>> distortions(const Run& run) {
    const std::size_t count = run.speakers.size();
    std::vector<std::vector<double>> matrix(count);
    std::vector<long long> frames(count, 0);
    for (const Outcome& outcome : run.outcomes) {
        if (!outcome.spoken) continue;
        std::vector<double>& row = matrix[*outcome.spoken];
        row.resize(count, 0.0);
        for (std::size_t i = 0; i < count; ++i) row[i] += outcome.verdict.distortion[i] * outcome.frames();
        frames[*outcome.spoken] += outcome.frames();
    }
    for (std::size_t i = 0; i < count; ++i) {
        for (double& value : matrix[i]) value /= static_cast<double>(frames[i]);
    }
    return matrix;
}

void printOne(std::FILE* to, const Run& run, const Outcome& outcome) {
    const int second = outcome.verdict.bestBut(outcome.verdict.best);
    std::fprintf(to, "%s: %s; %s is %.3f times as far\n", outcome.path.c_str(), nameOf(run, outcome.verdict.best),
                 nameOf(run, second), outcome.verdict.ratio(second, outcome.verdict.best));
}

void print(std::FILE* to, const Run& run) {
    std::fprintf(to, "recordings: %zu recognised, %d unusable, %lld frames\n", run.outcomes.size(), run.unusable,
                 run.frames);
    const Tally counts = tally(run);
    if (counts.known > 0) {
        std::fprintf(to, "accuracy:   %.2f %% (%d of %d)\n", counts.accuracy(), counts.right, counts.known);
        printConfusion(to, counts, "speaker");
        printDistortions(to, run);
    }
    for (const Outcome& outcome : run.outcomes) {
        if (!outcome.wrong()) continue;
        std::fprintf(to, "wrong: %s: spoken by %s, recognised %s, who is nearer by a factor of %.3f\n",
                     outcome.path.c_str(), nameOf(run, *outcome.spoken), nameOf(run, outcome.verdict.best),
                     outcome.lead());
    }
    if (run.outcomes.empty()) return;
    if (run.seconds.work() > 0.0) {
        std::fprintf(to, "speed:      %.0f frames per second (front end %.0f ms, codebooks %.0f ms)\n",
                     double(run.frames) / run.seconds.work(), 1e3 * run.seconds.frontEnd, 1e3 * run.seconds.scoring);
        std::fprintf(to, "speed:      real-time factor %.5f (%.2f s of work for %.2f s of speech)\n",
                     run.seconds.work() / run.seconds.audio, run.seconds.work(), run.seconds.audio);
    }
    if (run.comparison) printComparison(to, *run.comparison, run.frames);
    if (run.compression) printCompression(to, *run.compression, run);
}

}  // namespace digits
