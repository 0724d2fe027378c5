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
//
// Nor need the chain start from far away. Of n distances some two neighbours in size, between the least m and m times
// tolerance^(n + 1), lie farther apart than the tolerance, or none is above. Whatever is met of those above that gap
// gives way to the first one below it, and never comes back: the pick is that of the chain over those below the gap.
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
        if (!isBelow(minimum(1), farthest)) return -1;
        unsigned picked = 0;
        for (Vorn32f limit = firstLimit(); minimum(1) <= limit; limit = limitBelow(minimum(picked))) {
            picked = 1;
            while (picked < leaves_) picked = 2 * picked + (minimum(2 * picked) <= limit ? 0 : 1);
        }
        minimum(picked) = farthest;
        for (unsigned node = picked / 2; node > 0; node /= 2) join(node);
        return static_cast<int>(picked - leaves_);
    }

private:
    // The largest single that is below a best, so that singles need no tolerance: 0 is below all others.
    static Vorn32f limitBelow(Vorn32f best) {
        if (!(best > 0)) return -1;
        auto limit = static_cast<Vorn32f>(best / tolerance);
        while (!isBelow(limit, best)) limit = neighbour(limit, -1);
        while (isBelow(neighbour(limit, 1), best)) limit = neighbour(limit, 1);
        return limit;
    }
    static Vorn32f neighbour(Vorn32f x, int by) { return std::bit_cast<Vorn32f>(std::bit_cast<std::int32_t>(x) + by); }

    // (1 + 1e-6)^n is at most 1 + 2e-6 n as long as that is at most 3.
    Vorn32f firstLimit() const {
        const Vorn32f least = memory_[1];
        const Vorn64f spread = 2e-06 * (leaves_ + 3.0);
        const Vorn64f limit = least * (1 + spread);
        return spread <= 2 && least > 0 && limit < farthest ? limitBelow(static_cast<Vorn32f>(limit))
                                                            : limitBelow(farthest);
    }

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
