#include "corpus.h"

#include <string>

#include "front_end.h"
#include "input_error.h"
#include "progress.h"
#include "recordings.h"
#include "train.h"
#include "wav.h"

namespace digits {
namespace {

// As many frames as the model of a word has states have their middles in the word.
constexpr std::size_t kLeastSamples = kStates * kFrameStep;

}  // namespace

std::vector<Vorn16s> readRecording(const std::filesystem::path& path) {
    std::vector<Vorn16s> samples = readWav(path, kSampleRate);
    if (samples.size() < kLeastSamples) {
        throw InputError(path, "is too short: " + std::to_string(samples.size()) + " samples at " +
                                   std::to_string(kSampleRate / 1000) + " kHz, where a word needs " +
                                   std::to_string(kLeastSamples));
    }
    return samples;
}

Corpus readCorpus(const std::filesystem::path& directory, const char* what) {
    const std::vector<std::filesystem::path> paths = recordingsIn(directory);
    Corpus corpus;
    Progress progress(what, static_cast<int>(paths.size()));
    for (const std::filesystem::path& path : paths) {
        try {
            const std::optional<int> digit = spokenDigit(path);
            if (!digit) throw InputError(path, "has a name that does not begin with a digit and an underscore");
            corpus.recordings.push_back({path, *digit, readRecording(path)});
        } catch (const InputError& error) {
            progress.interrupt();
            complain(error);
            ++corpus.unusable;
        }
        progress.step();
    }
    return corpus;
}

}  // namespace digits
