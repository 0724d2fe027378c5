// Deleting, zeroing and halving decisions.
#include "shrink.h"

#include <algorithm>
#include <chrono>

namespace fuzz {
namespace {

constexpr int mostTries = 3000;
constexpr std::chrono::seconds longest{3};

using Bytes = std::vector<std::uint8_t>;

class Shrinker {
public:
    Shrinker(Engine& engine, int function, Bytes bytes, const Finding& finding)
        : engine_(engine), function_(function), bytes_(std::move(bytes)), finding_(finding) {}

    Bytes shrunk() {
        // A call that does not end is not made often.
        tries_ = finding_.wrong == Wrong::hang ? mostTries - 8 : 0;
        for (bool better = true; better && !over();) {
            better = false;
            for (std::size_t span = std::max<std::size_t>(bytes_.size() / 2, 1);; span /= 2) {
                for (std::size_t at = 0; at < bytes_.size() && !over(); at += span) {
                    better = deleted(at, span) || better;
                    better = zeroed(at, span) || better;
                }
                if (span <= 1) break;
            }
            for (std::size_t at = 0; at < bytes_.size() && !over(); ++at) better = smaller(at) || better;
        }
        while (!bytes_.empty() && bytes_.back() == 0) bytes_.pop_back();
        return bytes_;
    }

private:
    bool over() const { return tries_ >= mostTries || std::chrono::steady_clock::now() - begin_ > longest; }

    bool accept(const Bytes& candidate) {
        if (over() || candidate == bytes_) return false;
        ++tries_;
        Decisions decisions;
        decisions.replay(candidate);
        const Outcome outcome = engine_.check(function_, decisions);
        if (!outcome.finding.sameKind(finding_)) return false;
        Bytes used = decisions.used();
        used.resize(std::min(used.size(), candidate.size()));
        bytes_ = used;
        return true;
    }

    bool deleted(std::size_t at, std::size_t span) {
        if (at >= bytes_.size()) return false;
        Bytes candidate = bytes_;
        candidate.erase(candidate.begin() + at, candidate.begin() + std::min(at + span, candidate.size()));
        return accept(candidate);
    }

    bool zeroed(std::size_t at, std::size_t span) {
        if (at >= bytes_.size()) return false;
        Bytes candidate = bytes_;
        std::fill(candidate.begin() + at, candidate.begin() + std::min(at + span, candidate.size()), 0);
        return accept(candidate);
    }

    bool smaller(std::size_t at) {
        bool better = false;
        for (bool again = true; again && at < bytes_.size() && bytes_[at] != 0;) {
            Bytes candidate = bytes_;
            candidate[at] /= 2;
            again = accept(candidate);
            better = better || again;
        }
        if (at < bytes_.size() && bytes_[at] != 0) {
            Bytes candidate = bytes_;
            --candidate[at];
            better = accept(candidate) || better;
        }
        return better;
    }

    Engine& engine_;
    int function_;
    Bytes bytes_;
    const Finding& finding_;
    int tries_ = 0;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

}  // namespace

Bytes shrink(Engine& engine, int function, Bytes bytes, const Finding& finding) {
    return Shrinker(engine, function, std::move(bytes), finding).shrunk();
}

}  // namespace fuzz
