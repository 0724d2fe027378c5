// What the user asked for on the command line.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "command_line.h"

namespace digits {

extern const char* const kHelp;

struct Arguments {
    std::string command;
    std::vector<std::filesystem::path> inputs;
    std::string model, report, compare, compress, output;
    int codewords = 0;  // 0: to be chosen by cross-validation
};

// Throws UsageError when a word is unknown, a value is missing or wrong, or the words do not go together.
Arguments parse(const std::vector<std::string>& words);

}  // namespace digits
