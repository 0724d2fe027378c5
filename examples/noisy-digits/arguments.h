// What the user asked for on the command line.
#pragma once

#include <cstdint>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "cleaner.h"
#include "noise.h"

namespace digits {

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

extern const char* const kHelp;

struct Arguments {
    std::string command;
    std::vector<std::filesystem::path> inputs;
    std::filesystem::path report, output, show, voices;
    bool quick = false, heldOut = false;
    int threads = 1;
    std::uint64_t seed = 1;
    int snr = 5;  // decibels
    Noise noise = Noise::kWhite;
    Method method = Method::kTwoStage;
};

// Throws UsageError when a word is unknown, a value is missing or wrong, or the words do not go together.
Arguments parse(const std::vector<std::string>& words);

}  // namespace digits
