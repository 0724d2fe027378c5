// The page about an evaluation.
#pragma once

#include <filesystem>
#include <vector>

#include "evaluation.h"
#include "sides.h"
#include "specimen.h"

namespace digits {

struct Findings {
    std::vector<Result> results;    // a contender for each training after the other; the plain one first
    std::vector<Result> ablations;  // the whole front end first, then without one step at a time
    std::vector<Side> sides;
};

// Throws InputError when the page cannot be written.
void writeReport(const std::filesystem::path& path, const Experiment& experiment, const Findings& findings,
                 const Specimen& specimen);

}  // namespace digits
