// What came of a run over recordings: the decisions, the counts, and the text about them.
#pragma once

#include <array>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <vector>

#include "components.h"
#include "decode.h"
#include "tally.h"
#include "templates.h"

namespace digits {

struct Outcome {
    std::filesystem::path path;
    std::optional<int> spoken;  // the word that the file's name tells
    int frames = 0;
    Decision decision;
    MeanFrame mean{};

    bool wrong() const { return spoken && *spoken != decision.best; }

    // The word that the recognised one is measured against: the spoken one when it lost, or else the second best.
    int rival() const { return wrong() ? *spoken : decision.secondBest(); }
    Vorn32f lead() const { return decision.leadOver(rival()); }

    // The lead seen from the true word: negative when it lost.
    Vorn32f margin() const { return wrong() ? -lead() : lead(); }
};

struct Seconds {
    double audio = 0.0;
    double reading = 0.0;
    double frontEnd = 0.0;
    double scoring = 0.0;

    double work() const { return frontEnd + scoring; }
};

// What came of the same recordings in one of several ways that are compared.
struct Measured {
    int known = 0, right = 0;
    Vorn32f closest = 0.0f;  // the least margin of those whose word is known
    double seconds = 0.0;    // from features to words

    void add(const Outcome& outcome, double duration);
    double accuracy() const { return known > 0 ? 100.0 * right / known : 0.0; }
};

// In one of the arithmetics.
struct Trial : Measured {
    explicit Trial(Arithmetic of) : arithmetic(of) {}
    Arithmetic arithmetic;
};

// With the Gaussians of shortlists.
struct SelectionTrial : Measured {
    explicit SelectionTrial(int of) : length(of) {}
    int length;                       // of the lists
    long long computed = 0, all = 0;  // Gaussians that were scored, and how many there are, over frames and states

    double share() const { return all > 0 ? 100.0 * double(computed) / double(all) : 0.0; }
};

struct SelectionRun {
    int codewords;
    std::vector<SelectionTrial> trials;  // the first one without lists
};

// The same recordings by templates.
struct TemplateRun {
    struct Outcome {
        std::filesystem::path path;
        std::optional<int> spoken;
        Match match;

        bool wrong() const { return spoken && spoken != match.best; }
    };

    explicit TemplateRun(const Templates& all) : templates(all) {}

    const Templates& templates;
    std::vector<Outcome> outcomes;
    double seconds = 0.0;  // from features to words
};

struct Run {
    int recognised = 0;
    int unusable = 0;  // recordings that were refused
    long long frames = 0;
    Seconds seconds;
    int gaussians = 0;              // of all words together
    std::vector<Outcome> outcomes;  // by mixtures; none where there are only templates
    std::vector<Trial> trials;      // none, or two and more, of which the first is float
    std::optional<TemplateRun> byTemplates;
    std::optional<SelectionRun> selection;

    bool hasMixtures() const { return gaussians > 0; }
};

Tally tally(const std::vector<Outcome>& outcomes);
Tally tally(const std::vector<TemplateRun::Outcome>& outcomes);

// What one recording was recognised as, by mixtures if they were used.
void printOne(std::FILE* to, const Run& run, int i);

void print(std::FILE* to, const Run& run);

}  // namespace digits
