// The templates are the centres of what each speaker said: no recording is averaged, and no chance chooses.
#include "templates.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "input_error.h"

namespace digits {
namespace {

namespace fs = std::filesystem;

constexpr Vorn32f kFarApart = 1e6f;  // stands in the sums for a pair without a road

// The number of the sequence that is nearest to all others together.
std::size_t mostCentral(const std::vector<Sequence>& sequences) {
    std::vector<Vorn32f> sum(sequences.size(), 0.0f);
    for (std::size_t i = 0; i < sequences.size(); ++i) {
        for (std::size_t k = i + 1; k < sequences.size(); ++k) {
            const Vorn32f distance = std::min(warpedDistance(sequences[i], sequences[k]), kFarApart);
            sum[i] += distance;
            sum[k] += distance;
        }
    }
    return static_cast<std::size_t>(std::min_element(sum.begin(), sum.end()) - sum.begin());
}

}  // namespace

std::optional<int> Match::bestBut(int word) const {
    std::optional<int> other;
    for (int w = 0; w < kWords; ++w) {
        if (w != word && distance[w] < kNoRoad && (!other || distance[w] < distance[*other])) other = w;
    }
    return other;
}

Templates::Templates(const FrontEnd& frontEnd, const fs::path& directory) {
    const LabelledSet set = readLabelled(frontEnd, directory, kMinFrames, "templates");
    unusable_ = set.unusable;

    Frames frames;
    std::map<std::pair<int, std::string>, std::vector<const Labelled*>> groups;
    for (const Labelled& recording : set.recordings) {
        frames.push_back({recording.analysis.features.data(), recording.analysis.frames});
        groups[{recording.word, speaker(recording.path)}].push_back(&recording);
    }
    for (int word = 0; word < kWords; ++word) {
        if (std::none_of(groups.begin(), groups.end(), [&](const auto& group) { return group.first.first == word; })) {
            throw InputError(directory, std::string("has no usable template of the word ") + wordOf(word));
        }
    }
    spread_.emplace(frames);
    for (const auto& [key, recordings] : groups) {
        std::vector<Sequence> sequences;
        for (const Labelled* recording : recordings) sequences.push_back(sequence(recording->analysis));
        const std::size_t centre = mostCentral(sequences);
        templates_.push_back({recordings[centre]->path, key.first, std::move(sequences[centre])});
    }
}

long long Templates::frames() const {
    long long sum = 0;
    for (const Template& each : templates_) sum += each.sequence.height;
    return sum;
}

Match Templates::match(const Analysis& recording) const {
    const Sequence spoken = sequence(recording);
    Match match;
    match.distance.fill(kNoRoad);
    for (std::size_t i = 0; i < templates_.size(); ++i) {
        const Vorn32f distance = warpedDistance(spoken, templates_[i].sequence);
        Vorn32f& least = match.distance[templates_[i].word];
        if (distance >= least) continue;
        least = distance;
        match.nearest[templates_[i].word] = static_cast<int>(i);
    }
    match.best = match.bestBut(-1);
    return match;
}

}  // namespace digits
