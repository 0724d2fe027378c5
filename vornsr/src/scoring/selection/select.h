// Selection of Gaussians: the score of a mixture over the Gaussians that a table selects for each frame.
#pragma once

#include <algorithm>
#include <cstddef>

#include "frame/checks.h"
#include "frame/memory.h"
#include "frame/rows.h"
#include "scoring/gauss/forms.h"
#include "scoring/gauss/one_vector/scores.h"
#include "scoring/gauss/rows.h"
#include "scoring/log_arithmetic/kernels.h"
#include "scoring/selection/bits.h"
#include "vornsr/types.h"

namespace vorn {

// The score of frame f under Gaussian g, as that of one vector. Var: rows, or UnitVar.
template <class Var>
struct SelectedFloatScore {
    AnyRows<const Vorn32f> src, mean;
    Var var;
    int len;
    Vorn32f operator()(std::ptrdiff_t f, std::ptrdiff_t g, Vorn32f val) const {
        return floatScore(src[f], mean[g], var[g], len, val);
    }
};
template <class Var>
struct SelectedFixedScore {
    AnyRows<const Vorn16s> src, mean;
    Var var;
    int len;
    Vorn32f scale;
    Vorn32f operator()(std::ptrdiff_t f, std::ptrdiff_t g, Vorn32f val) const {
        return fixedScore(src[f], mean[g], var[g], len, val, scale);
    }
};

// Scores that wait to be log-added to the results of their frames. Up to three pairs count as elements behind the last
// group of a log-add, as a pair by itself does.
class WaitingScores {
public:
    explicit WaitingScores(Vorn32f* result) : result_(result) {}
    VORN_INLINE void put(std::ptrdiff_t frame, Vorn32f score) {
        frame_[count_] = frame;
        score_[count_] = score;
        if (++count_ == most) add();
    }
    void add() {
        Vorn32f sum[most];
        for (int k = 0; k < count_; ++k) sum[k] = result_[frame_[k]];
        vornsLogAddVec_32f_M7_sp(score_, sum, count_);
        for (int k = 0; k < count_; ++k) result_[frame_[k]] = sum[k];
        count_ = 0;
    }

private:
    static constexpr int most = 3;
    Vorn32f* result_;
    std::ptrdiff_t frame_[most];
    Vorn32f score_[most];
    int count_ = 0;
};

// Gaussian by Gaussian, so that one stays in the cache while all frames that select it pass.
template <class Score>
VornStatus selectedMixture(const Score& score, const Vorn32f* val, const Vorn8u* sign, int width, Vorn32f* result,
                           int frames, Vorn32f floor) {
    // 16 bits wide: after 65536 selections a frame counts as one without any. Kept so on purpose.
    const Scratch<Vorn16u> selections(frames);
    if (!selections) return vornStsMemAllocErr;
    std::fill_n(selections.get(), frames, Vorn16u{0});

    const std::ptrdiff_t rowBytes = bytesOfBits(width);
    for (int g = 0; g < width; ++g) {
        const Vorn8u* byte = sign + g / 8;
        const int bit = 128 >> (g % 8);
        WaitingScores waiting(result);
        for (int f = 0; f < frames; ++f, byte += rowBytes) {
            if ((*byte & bit) == 0) continue;
            const Vorn32f here = score(f, g, val[g]);
            if (selections[f] == 0) {
                result[f] = here;
            } else {
                waiting.put(f, here);
            }
            selections[f] = static_cast<Vorn16u>(selections[f] + 1);
        }
        waiting.add();
    }
    for (int f = 0; f < frames; ++f) {
        if (selections[f] == 0) result[f] = floor;
    }
    return vornStsNoErr;
}

// No row pointer is null.
template <class T>
VornStatus rowsNotNull(const T* const* rows, int height) {
    for (int r = 0; r < height; ++r) VORN_CHECK(notNull(rows[r]));
    return vornStsNoErr;
}

}  // namespace vorn
