// Repeated picks of the smallest of many distances. A candidate replaces the best so far, in rising place, only where
// it is below it by the tolerance; so a pick is a chain, and it is followed without reading every candidate.
#pragma once

#include <bit>
#include <cstdint>

#include "frame/memory.h"
#include "vq/codebook/tolerance.h"

namespace vorn::vq {

// A tree of minima. The tolerance's product does not fall where its factor rises, so a subtree holds a distance below
// the best if and only if its minimum is; and what was not below a best is not below a smaller one. So the next link of
// the chain is the first place of the whole row that is below the best.
class Tournament {
public:
    explicit Tournament(int most)
        : memory_(2 * static_cast<std::int64_t>(std::bit_ceil(static_cast<unsigned>(most)))) {}
    explicit operator bool() const { return static_cast<bool>(memory_); }

    // distance(i) for the places below count.
    template <class Distance>
    void enter(int count, const Distance& distance) {
        leaves_ = std::bit_ceil(static_cast<unsigned>(count));
        for (unsigned i = 0; i < leaves_; ++i) {
            minimum(leaves_ + i) =
                i < static_cast<unsigned>(count) ? candidate(distance(static_cast<int>(i))) : farthest;
        }
        for (unsigned node = leaves_ - 1; node > 0; --node) join(node);
    }

    // The place picked, or -1 where none qualifies. It takes no further part.
    int pick() {
        Vorn32f best = farthest;
        unsigned picked = 0;
        while (isBelow(minimum(1), best)) {
            unsigned node = 1;
            while (node < leaves_) node = isBelow(minimum(2 * node), best) ? 2 * node : 2 * node + 1;
            picked = node;
            best = minimum(node);
        }
        if (picked == 0) return -1;
        minimum(picked) = farthest;
        for (unsigned node = picked / 2; node > 0; node /= 2) join(node);
        return static_cast<int>(picked - leaves_);
    }

private:
    // What can never be picked stands at the end, not-a-numbers too.
    static Vorn32f candidate(Vorn32f x) { return x < farthest ? x : farthest; }
    Vorn32f& minimum(unsigned node) { return memory_[node]; }
    void join(unsigned node) {
        const Vorn32f left = minimum(2 * node), right = minimum(2 * node + 1);
        minimum(node) = right < left ? right : left;
    }

    unsigned leaves_ = 0;
    Scratch<Vorn32f> memory_;
};

}  // namespace vorn::vq
