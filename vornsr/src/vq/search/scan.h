// The scan of all words.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "frame/rounding.h"
#include "simd/simd.h"
#include "vq/codebook/panels.h"
#include "vq/codebook/state.h"
#include "vq/search/distances.h"
#include "vq/search/rows.h"

namespace vorn::vq {

// One query.
template <class T>
Found scanWords(const VornCdbkState& book, const Query& query) {
    constexpr std::ptrdiff_t blockWords = 64;
    Vorn32f distance[blockWords];
    Found found;
    const T* words = static_cast<const T*>(book.words);
    for (std::ptrdiff_t first = 0; first < book.cdbkSize; first += blockWords) {
        const std::ptrdiff_t count = std::min<std::ptrdiff_t>(blockWords, book.cdbkSize - first);
        distancesOfWords(query, words + first * book.rowStep, book.rowStep, count, distance);
        for (std::ptrdiff_t k = 0; k < count; ++k) {
            // No distance is negative, so only one that is smaller can be below by the tolerance.
            if (distance[k] < found.distance) found.meet(static_cast<int>(first + k), distance[k]);
        }
    }
    return found;
}

// A panel of queries at once, one a lane, which all meet one word after the other. Vectors of more elements would need
// more memory than a call should take from the stack.
constexpr int widestPanel = 64;

template <class T>
class QueryPanel {
public:
    explicit QueryPanel(const VornCdbkState& book, const Vorn32f* weight) : book_(book), weight_(weight) {}

    // count up to panelLanes.
    template <class Put>
    void search(const T* src, std::ptrdiff_t step, std::ptrdiff_t count, std::ptrdiff_t firstRow, const Put& put) {
        const int width = book_.vecLen;
        for (std::ptrdiff_t lane = 0; lane < panelLanes; ++lane) {
            const T* vector = src + std::min(lane, count - 1) * step;
            for (int i = 0; i < width; ++i) panel_[i * std::ptrdiff_t{panelLanes} + lane] = vector[i];
        }
        std::fill_n(best_, panelLanes, farthest);
        std::fill_n(index_, panelLanes, -1);
        if (weight_ == nullptr) {
            meetWords<false>();
        } else {
            meetWords<true>();
        }
        for (std::ptrdiff_t lane = 0; lane < count; ++lane) put(firstRow + lane, Found{index_[lane], best_[lane]});
    }

private:
    template <bool weighted>
    VORN_NOINLINE void meetWords() {
        const AsSingles<T> word(book_.vecLen);
        constexpr int lanes = f32xN::lanes;
        f32xN best[4];
        i32xN index[4];
        for (int k = 0; k < 4; ++k) {
            best[k] = load<f32xN>(best_ + k * lanes);
            index[k] = load<i32xN>(index_ + k * lanes);
        }
        const T* words = static_cast<const T*>(book_.words);
        for (int j = 0; j < book_.cdbkSize; ++j, words += book_.rowStep) {
            f32xN s[4];
            sumSquares<weighted>(panel_, word.of(words, book_.vecLen), weight_, book_.vecLen, s[0], s[1], s[2], s[3]);
            if (any((s[0] < best[0]) | (s[1] < best[1]) | (s[2] < best[2]) | (s[3] < best[3]))) {
                for (int k = 0; k < 4; ++k) takeBelow(s[k], splat<i32xN>(j), best[k], index[k]);
            }
        }
        for (int k = 0; k < 4; ++k) {
            store(best_ + k * lanes, best[k]);
            store(index_ + k * lanes, index[k]);
        }
    }

    const VornCdbkState& book_;
    const Vorn32f* weight_;
    alignas(64) Vorn32f panel_[panelLanes * widestPanel];
    alignas(64) Vorn32f best_[panelLanes];
    alignas(64) std::int32_t index_[panelLanes];
};

}  // namespace vorn::vq
