// Directories and names of recordings.
#include "recordings.h"

#include <algorithm>
#include <cctype>

#include "input_error.h"
#include "progress.h"
#include "wav.h"

namespace digits {
namespace {

namespace fs = std::filesystem;

bool isWav(const fs::path& path) {
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".wav";
}

}  // namespace

std::vector<fs::path> recordingsIn(const fs::path& directory) {
    std::error_code error;
    if (!fs::exists(directory, error)) throw InputError(directory, "there is no such directory");
    if (!fs::is_directory(directory, error)) throw InputError(directory, "is not a directory");
    fs::directory_iterator entries(directory, error);
    if (error) throw InputError(directory, "cannot be read (" + error.message() + ")");

    std::vector<fs::path> paths;
    for (const fs::directory_entry& entry : entries) {
        if (isWav(entry.path())) paths.push_back(entry.path());
    }
    if (paths.empty()) throw InputError(directory, "holds no recordings (files named *.wav)");
    std::sort(paths.begin(), paths.end());
    return paths;
}

std::vector<Task> tasksOf(const std::vector<fs::path>& inputs, bool& complete) {
    std::vector<Task> tasks;
    for (const fs::path& input : inputs) {
        std::error_code ignored;
        if (!fs::is_directory(input, ignored)) {
            tasks.push_back({input, true});
            continue;
        }
        try {
            for (const fs::path& path : recordingsIn(input)) tasks.push_back({path, false});
        } catch (const InputError& error) {
            complain(error);
            complete = false;
        }
    }
    return tasks;
}

std::optional<int> spokenDigit(const fs::path& path) {
    const std::string name = path.filename().string();
    if (name.size() < 2 || name[0] < '0' || name[0] > '9' || name[1] != '_') return std::nullopt;
    return name[0] - '0';
}

std::string speaker(const fs::path& path) {
    const std::string name = path.stem().string();
    const std::size_t begin = name.find('_'), end = name.rfind('_');
    return spokenDigit(path) && end > begin ? name.substr(begin + 1, end - begin - 1) : std::string();
}

Analysis analyse(const FrontEnd& frontEnd, const fs::path& path, const std::vector<Vorn16s>& samples, int minFrames) {
    const std::size_t needed = kFrameLength + (std::max(minFrames, kMinFrames) - 1) * std::size_t{kFrameStep};
    if (samples.size() < needed) {
        throw InputError(path, "is too short: " + std::to_string(samples.size()) + " samples at " +
                                   std::to_string(kSampleRate / 1000) + " kHz, where a word needs " +
                                   std::to_string(needed));
    }
    return frontEnd.analyse(samples);
}

LabelledSet readLabelled(const FrontEnd& frontEnd, const fs::path& directory, int minFrames, const char* what) {
    const std::vector<fs::path> paths = recordingsIn(directory);
    LabelledSet set;
    Progress progress(what, static_cast<int>(paths.size()));
    for (const fs::path& path : paths) {
        try {
            const std::optional<int> digit = spokenDigit(path);
            if (!digit) throw InputError(path, "has a name that does not begin with a digit and an underscore");
            set.recordings.push_back({path, *digit, analyse(frontEnd, path, readWav(path, kSampleRate), minFrames)});
        } catch (const InputError& error) {
            progress.interrupt();
            complain(error);
            ++set.unusable;
        }
        progress.step();
    }
    return set;
}

}  // namespace digits
