// Recognition without models: a recording is laid on template recordings by time warping, and the nearest one wins.
#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <vector>

#include "model.h"
#include "recordings.h"
#include "warp.h"

namespace digits {

struct Template {
    std::filesystem::path path;
    int word;
    Sequence sequence;
};

// What a recording is like: the nearest template of each word.
struct Match {
    std::array<Vorn32f, kWords> distance;  // a frame; kNoRoad where no template could be laid on the recording
    std::array<int, kWords> nearest{};     // number of the template
    std::optional<int> best;               // word; none where no template of any word could be laid on it

    // The best word but this one, if any template of another could be laid on the recording.
    std::optional<int> bestBut(int word) const;
};

class Templates {
public:
    // One template for each speaker and word of the directory: of their recordings the most central one, whose warped
    // distances from the others have the least sum. Ties go to the first name. Throws InputError when a word has none.
    Templates(const FrontEnd& frontEnd, const std::filesystem::path& directory);

    int unusable() const { return unusable_; }
    const std::vector<Template>& all() const { return templates_; }
    long long frames() const;

    Sequence sequence(const Analysis& recording) const { return (*spread_)(recording); }
    Match match(const Analysis& recording) const;

private:
    int unusable_ = 0;
    std::optional<Spread> spread_;
    std::vector<Template> templates_;
};

}  // namespace digits
