// The neighbours of each leaf: the other leaves in ascending distance between centres, those at one distance in rising
// number.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

#include "frame/checks.h"
#include "frame/memory.h"
#include "vq/codebook/panels.h"
#include "vq/codebook/state.h"
#include "vq/codebook/tolerance.h"

namespace vorn::vq {

// How many each of so many leaves has: the bits that their number takes, at least four; none of fewer than three.
constexpr int neighboursOf(std::int64_t leaves) {
    return leaves < 3 ? 0 : std::max(4, static_cast<int>(std::bit_width(static_cast<std::uint64_t>(leaves - 1))));
}

// The list of leaf i, of its distances from all n. Where no leaf qualifies, the last one taken is repeated, or the leaf
// itself stands in a first place.
inline void listNeighbours(Cluster* const* leaves, int n, int i, const Vorn32f* distance) {
    Vorn32f last = 0;  // the distance and the number taken last
    int taken = n;
    for (int slot = 0; slot < leaves[i]->nearCount; ++slot) {
        Vorn32f best = farthest;
        int chosen = -1, above = taken;
        for (int j = 0; j < n; ++j) {
            if (j == i) continue;
            const Vorn32f d = distance[j];
            if (isBelow(last, d) && isBelow(d, best)) best = d, chosen = j;
            // As far as the last one, with a higher number: the next one, and the only one of its kind in this turn.
            if (j > above && nearlyEqual(d, last)) best = d, chosen = j, above = n;
        }
        if (chosen < 0) chosen = taken < n ? taken : i;
        leaves[i]->near[slot] = leaves[chosen];
        last = best;
        taken = chosen;
    }
}

inline VornStatus linkNeighbours(Cluster* const* leaves, int n, const Vorn32f* centres, std::ptrdiff_t step,
                                 const Vorn32f* weight, int width) {
    Panels panels(n, width);
    Scratch<Vorn32f> distance(roundUp(n, panelLanes));
    VORN_CHECK(require(panels && distance, vornStsMemAllocErr));
    panels.fill(centres, step, n);
    for (int i = 0; i < n; ++i) {
        for (int first = 0; first < n; first += panelLanes) {
            distancesOf(panels[first / panelLanes], centres + i * step, weight, width, distance.get() + first);
        }
        listNeighbours(leaves, n, i, distance.get());
    }
    return vornStsNoErr;
}

}  // namespace vorn::vq
