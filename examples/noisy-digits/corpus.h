// Recordings whose words are known, as samples.
#pragma once

#include <filesystem>
#include <vector>

#include "vornsr.h"

namespace digits {

struct Recording {
    std::filesystem::path path;
    int word;
    std::vector<Vorn16s> samples;
};

// The recordings of a directory, and how many were refused. Those are complained about, each by its name; the others
// are still read.
struct Corpus {
    std::vector<Recording> recordings;
    int unusable = 0;
};

Corpus readCorpus(const std::filesystem::path& directory, const char* what);

// The samples of a file, at the rate of the front ends. Throws InputError, also when there are too few for a word.
std::vector<Vorn16s> readRecording(const std::filesystem::path& path);

}  // namespace digits
