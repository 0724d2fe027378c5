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

namespace vorn::selection {

// The score of frame f under Gaussian g, as that of one vector. Var: rows, or UnitVar.
template <class Var>
struct FloatScore {
    AnyRows<const Vorn32f> src, mean;
    Var var;
    int len;
    Vorn32f operator()(std::ptrdiff_t f, std::ptrdiff_t g, Vorn32f val) const {
        return floatScore(src[f], mean[g], var[g], len, val);
    }
};
template <class Var>
struct FixedScore {
    AnyRows<const Vorn16s> src, mean;
    Var var;
    int len;
    Vorn32f scale;
    Vorn32f operator()(std::ptrdiff_t f, std::ptrdiff_t g, Vorn32f val) const {
        return fixedScore(src[f], mean[g], var[g], len, val, scale);
    }
};

// Scores that wait to be log-added to the results of their frames, many pairs at a time. Each counts as a pair by
// itself.
class WaitingScores {
public:
    explicit WaitingScores(Vorn32f* result) : result_(result) {}
    VORN_INLINE void put(int frame, Vorn32f score) {
        frame_[count_] = frame;
        score_[count_] = score;
        if (++count_ == most) add();
    }
    void add() {
        Vorn32f sum[most];
        for (int k = 0; k < count_; ++k) sum[k] = result_[frame_[k]];
        vornsLogAddVec_32f_M7_sp(score_, sum, count_);
        for (int k = 0; k < count_; ++k) {
            Vorn32f& result = result_[frame_[k]];
            if (isOnSplit(score_[k], result)) {
                vornsLogAddVec_32f_M7_sp(&score_[k], &result, 1);
            } else {
                result = sum[k];
            }
        }
        count_ = 0;
    }

private:
    static constexpr int most = 64;

    // The one difference at which a log-add takes a pair of a group otherwise than a pair by itself.
    static bool isOnSplit(Vorn32f a, Vorn32f b) {
        const Vorn32f d = a < b ? a - b : b - a;
        return (d == LogLimits<float>::upperSplit) | (d == LogLimits<float>::lowerSplit);
    }

    Vorn32f* result_;
    int count_ = 0;
    int frame_[most];
    Vorn32f score_[most];
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

}  // namespace vorn::selection
