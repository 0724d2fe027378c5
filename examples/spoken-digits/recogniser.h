// Everything that recognises: the front end, the word models and their rivals, all on the same recordings.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "evaluation.h"
#include "quantise.h"
#include "selection.h"
#include "templates.h"

namespace digits {

struct Recogniser {
    FrontEnd frontEnd;
    std::optional<Models> models;         // none: recognition by templates only
    std::vector<QuantisedModels> rivals;  // of the models, in other arithmetics
    std::optional<Templates> templates;
    std::optional<Selection> selection;

    Recogniser() = default;
    Recogniser(const Recogniser&) = delete;  // the rivals look at the models
    Recogniser& operator=(const Recogniser&) = delete;

    // The frames that a recording must have.
    int leastFrames() const;

    // A run without recordings.
    Run begin() const;

    // Adds one recording to the run. Throws InputError when it cannot be used.
    void add(const std::filesystem::path& path, Run& run) const;
};

}  // namespace digits
