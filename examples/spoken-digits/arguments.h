// What the user asked for on the command line.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "command_line.h"
#include "quantise.h"

namespace digits {

extern const char* const kHelp;

enum class Method { kMixtures, kTemplates, kBoth };

struct Arguments {
    std::string command;
    std::vector<std::filesystem::path> inputs;
    std::string model, report, show, output, templates, shortlists, large;
    int gaussians = 0;
    Method method = Method::kMixtures;
    std::vector<Arithmetic> rivals;  // the arithmetics that are compared with float
};

// Throws UsageError when a word is unknown, a value is missing or wrong, or the words do not go together.
Arguments parse(const std::vector<std::string>& words);

}  // namespace digits
