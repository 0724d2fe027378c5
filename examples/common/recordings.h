// Finds recordings, and takes them from file to features.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "front_end.h"

namespace digits {

// The recordings of a directory in the order of their names. Throws InputError when there are none.
std::vector<std::filesystem::path> recordingsIn(const std::filesystem::path& directory);

// The recordings that the user named, and whether each by itself or by its directory.
struct Task {
    std::filesystem::path path;
    bool byItself;
};

// Complains about a directory that has none, and then tells that they are not complete.
std::vector<Task> tasksOf(const std::vector<std::filesystem::path>& inputs, bool& complete);

// The digit and the speaker that the name {digit}_{speaker}_{index}.wav tells, if it is of this form.
std::optional<int> spokenDigit(const std::filesystem::path& path);
std::string speaker(const std::filesystem::path& path);

// Throws InputError when the samples are too few for minFrames frames.
Analysis analyse(const FrontEnd& frontEnd, const std::filesystem::path& path, const std::vector<Vorn16s>& samples,
                 int minFrames);

struct Labelled {
    std::filesystem::path path;
    int word;
    Analysis analysis;
};

// The recordings of a directory whose words are known, and how many were refused. Those are complained about, each by
// its name; the others are still read. Each has at least minFrames frames.
struct LabelledSet {
    std::vector<Labelled> recordings;
    int unusable = 0;
};
LabelledSet readLabelled(const FrontEnd& frontEnd, const std::filesystem::path& directory, int minFrames,
                         const char* what);

}  // namespace digits
