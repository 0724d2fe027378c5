// What came of a run over recordings: who was recognised, the counts, and the text about them.
#pragma once

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "comparison.h"
#include "compression.h"
#include "speakers.h"
#include "tally.h"

namespace digits {

struct Outcome {
    std::filesystem::path path;
    std::optional<int> spoken;  // the speaker that the file's name tells, if the model knows that one
    Analysis analysis;
    Verdict verdict;

    int frames() const { return analysis.frames; }
    bool wrong() const { return spoken && *spoken != verdict.best; }

    // Whom the recognised speaker is measured against: the true one who lost, or else the second best.
    int rival() const { return wrong() ? *spoken : verdict.bestBut(verdict.best); }

    // How many times as far the nearest other speaker is as the true one: below 1 for a mistake.
    double margin() const { return wrong() ? 1.0 / lead() : lead(); }
    double lead() const { return verdict.ratio(rival(), verdict.best); }
};

struct Seconds {
    double audio = 0.0;
    double frontEnd = 0.0;
    double scoring = 0.0;

    double work() const { return frontEnd + scoring; }
};

struct Run {
    explicit Run(const Speakers& of) : speakers(of) {}

    const Speakers& speakers;
    std::vector<Outcome> outcomes;
    int unusable = 0;  // recordings that were refused
    long long frames = 0;
    Seconds seconds;
    std::optional<Comparison> comparison;
    std::optional<Compression> compression;

    int codewords() const;  // of all speakers together
};

Tally tally(const Run& run);

// Mean squared distance of the frames of each speaker (row) from each codebook (column). A row is empty for a speaker
// of whom there is no recording.
std::vector<std::vector<double>> distortions(const Run& run);

// "c1 c2", or "c0".
std::string streamName(const StreamTrial& stream);

void printOne(std::FILE* to, const Run& run, const Outcome& outcome);

void print(std::FILE* to, const Run& run);

}  // namespace digits
