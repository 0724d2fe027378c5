// Words in the order of their distances.
#pragma once

#include <cmath>
#include <cstddef>

#include "simd/simd.h"
#include "vq/codebook/tolerance.h"
#include "vq/search/distances.h"

namespace vorn::vq {

// Hands out the indices of distances rank by rank, ascending; those of near-equal distances in rising order, none
// twice. The distances keep still meanwhile.
class Ranking {
public:
    Ranking(const Vorn32f* distance, int count) : distance_(distance), count_(count) {}

    // Index -1 where no distance qualifies any more. An infinite one never does.
    Found next() {
        Found found;
        for (int j = 0; j < count_; ++j) {
            j = nextToLookAt(j, found.distance);
            if (j == count_) break;
            const Vorn32f d = distance_[j];
            if (!(d <= farthest)) continue;
            if (isBelow(d, found.distance) && isBelow(last_.distance, d)) found = {j, d};
            if (j > last_.index && nearLast(d)) {
                found = {j, last_.distance};
                break;  // nothing is below it that was not handed out
            }
        }
        last_ = found;
        return found;
    }

private:
    // A narrower tolerance than that between clusters.
    bool nearLast(Vorn32f d) const {
        const Vorn64f difference = static_cast<Vorn64f>(d) - last_.distance;
        return std::fabs(difference) <=
               1e-06 * std::fabs(static_cast<Vorn64f>(d > last_.distance ? d : last_.distance));
    }

    // From j on, the first distance that may be taken: every one that the rules take is below the best or about as
    // large as the last one.
    int nextToLookAt(int j, Vorn32f best) const {
        const f32xN bests = splat<f32xN>(best), last = splat<f32xN>(last_.distance);
        for (; j + f32xN::lanes <= count_; j += f32xN::lanes) {
            const f32xN d = load<f32xN>(distance_ + j);
            const auto near = absOf(d - last) <= maxOf(d, last) * splat<f32xN>(2e-06f);
            if (any(((d < bests) & (d >= last)) | near)) break;
        }
        return j;
    }

    const Vorn32f* distance_;
    int count_;
    Found last_ = {-1, 0.0f};
};

}  // namespace vorn::vq
