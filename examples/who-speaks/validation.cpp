#include "validation.h"

#include <algorithm>
#include <limits>
#include <map>
#include <string>

#include "speakers.h"

namespace digits {
namespace {

// The part that each recording belongs to.
std::vector<int> partsOf(const std::vector<Labelled>& recordings) {
    std::map<std::string, int> seen;
    std::vector<int> parts;
    for (const Labelled& each : recordings) parts.push_back(seen[speaker(each.path)]++ % kParts);
    return parts;
}

std::vector<Labelled> allBut(const std::vector<Labelled>& recordings, const std::vector<int>& parts, int part) {
    std::vector<Labelled> rest;
    for (std::size_t i = 0; i < recordings.size(); ++i) {
        if (parts[i] != part) rest.push_back(recordings[i]);
    }
    return rest;
}

}  // namespace

std::vector<int> sizesToTry(const std::vector<Labelled>& recordings) {
    const std::vector<int> parts = partsOf(recordings);
    const std::size_t speakers = voiceFrames(recordings).size();
    std::size_t fewest = std::numeric_limits<std::size_t>::max();
    for (int part = 0; part < kParts; ++part) {
        const VoiceFrames frames = voiceFrames(allBut(recordings, parts, part));
        if (frames.size() < speakers) return {};
        for (const auto& [name, rows] : frames) {
            fewest = std::min(fewest, rows.size() / kRowStep);
        }
    }
    std::vector<int> sizes;
    for (const int size : {4, 8, 16, 32, 64, 128}) {
        if (static_cast<std::size_t>(size) <= fewest) sizes.push_back(size);
    }
    return sizes;
}

std::vector<ValidatedSize> validate(const std::vector<Labelled>& recordings, const std::vector<int>& sizes,
                                    const std::function<void()>& step) {
    const std::vector<int> parts = partsOf(recordings);
    std::vector<ValidatedSize> results;
    for (const int size : sizes) results.push_back({size});
    for (int part = 0; part < kParts; ++part) {
        const VoiceFrames frames = voiceFrames(allBut(recordings, parts, part));
        for (ValidatedSize& result : results) {
            const Speakers speakers = trainSpeakers(frames, result.codewords, [] {});
            for (std::size_t i = 0; i < recordings.size(); ++i) {
                if (parts[i] != part) continue;
                const Analysis& analysis = recordings[i].analysis;
                const Verdict verdict = judge(speakers, {analysis.features.data(), analysis.frames});
                ++result.known;
                result.right += indexOf(speakers, speaker(recordings[i].path)) == verdict.best;
            }
            step();
        }
    }
    return results;
}

int bestOf(const std::vector<ValidatedSize>& sizes) {
    return std::max_element(sizes.begin(), sizes.end(),
                            [](const ValidatedSize& a, const ValidatedSize& b) { return a.right < b.right; })
        ->codewords;
}

}  // namespace digits
