// The command line.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace fuzz {

struct Options {
    std::vector<std::string> libraries, builds;
    std::string table;
    double seconds = 0;  // 0: until it is interrupted, or the cases are made
    std::uint64_t cases = 0;
    std::uint64_t seed = 0;
    double patience = 5;
    std::vector<std::string> functions, except;  // globs
    std::string replay;
    bool show = false, list = false, allocations = false, quiet = false, help = false;

    bool chosen(const std::string& function) const;
};

// False, with the reason on stderr, if it cannot be understood.
bool read(int argc, char** argv, Options& options);
void printHelp(std::FILE* out);

}  // namespace fuzz
