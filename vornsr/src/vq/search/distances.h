// Distances of one query from several words: a word a lane, so that each sum keeps the order of the elements.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "simd/simd.h"
#include "simd/tile.h"
#include "vq/codebook/distance.h"
#include "vq/codebook/state.h"
#include "vq/codebook/tolerance.h"

namespace vorn::vq {

// A query and the weights, as singles. Null weights are all 1.
struct Query {
    const Vorn32f* x;
    const Vorn32f* weight;
    int width;
};

VORN_INLINE f32x4 fourElements(const Vorn32f* p) { return load<f32x4>(p); }
VORN_INLINE f32x4 fourElements(const Vorn16s* p) { return toFloat(loadWidened<i32x4>(p)); }

template <class T>
VORN_INLINE f32x4 oneElementOfFour(const T* const (&word)[4], std::ptrdiff_t j) {
    return lanesOf(static_cast<Vorn32f>(word[0][j]), static_cast<Vorn32f>(word[1][j]), static_cast<Vorn32f>(word[2][j]),
                   static_cast<Vorn32f>(word[3][j]));
}

// Of the query from the words of each group; groups advance together, none waits for another.
template <bool weighted, int groups, class T>
VORN_INLINE void sumGroups(const Query& query, const T* const (&word)[groups][4], f32x4 (&sum)[groups]) {
    for (f32x4& s : sum) s = splat<f32x4>(0.0f);
    const auto add = [&](int g, f32x4 elements, std::ptrdiff_t j) __attribute__((always_inline)) {
        const f32x4 x = splat<f32x4>(query.x[j]);
        if constexpr (weighted) {
            sum[g] = plusSquare(sum[g], x, elements, splat<f32x4>(query.weight[j]));
        } else {
            sum[g] = plusSquare(sum[g], x, elements);
        }
    };
    std::ptrdiff_t j = 0;
    for (; j + 4 <= query.width; j += 4) {
        for (int g = 0; g < groups; ++g) {
            Four<Vorn32f> column[4];
            columnsOf(rowsOf<0>(fourElements(word[g][0] + j), fourElements(word[g][1] + j),
                                fourElements(word[g][2] + j), fourElements(word[g][3] + j)),
                      column);
            for (int k = 0; k < 4; ++k) add(g, column[k], j + k);
        }
    }
    for (; j < query.width; ++j) {
        for (int g = 0; g < groups; ++g) add(g, oneElementOfFour(word[g], j), j);
    }
}
template <int groups, class T>
VORN_INLINE void distancesOfGroups(const Query& query, const T* const (&word)[groups][4], f32x4 (&sum)[groups]) {
    if (query.weight == nullptr) {
        sumGroups<false>(query, word, sum);
    } else {
        sumGroups<true>(query, word, sum);
    }
}

// From four words anywhere.
template <class T>
inline f32x4 fourDistances(const Query& query, const T* a, const T* b, const T* c, const T* d) {
    const T* const word[1][4] = {{a, b, c, d}};
    f32x4 sum[1];
    distancesOfGroups(query, word, sum);
    return sum[0];
}

// From count words, step elements apart. Behind the last one it takes the place of those that fill up a group.
template <class T>
void distancesOfWords(const Query& query, const T* words, std::ptrdiff_t step, std::ptrdiff_t count, Vorn32f* dst) {
    constexpr int groups = 2, atOnce = 4 * groups;
    for (std::ptrdiff_t first = 0; first < count; first += atOnce) {
        const T* word[groups][4];
        for (int k = 0; k < atOnce; ++k) {
            word[k / 4][k % 4] = keepApart(words + (first + k < count ? first + k : count - 1) * step);
        }
        f32x4 sum[groups];
        distancesOfGroups(query, word, sum);
        if (first + atOnce <= count) {
            store(dst + first, sum[0]);
            store(dst + first + 4, sum[1]);
        } else {
            Vorn32f last[atOnce];
            store(last, sum[0]);
            store(last + 4, sum[1]);
            for (std::ptrdiff_t k = 0; first + k < count; ++k) dst[first + k] = last[k];
        }
    }
}

// What a search found, and how far away it is, squared.
struct Found {
    int index = -1;
    Vorn32f distance = farthest;

    // In the units of the vectors.
    Vorn32f root() const { return static_cast<Vorn32f>(std::sqrt(static_cast<Vorn64f>(distance))); }
    // A word takes the place of the best so far only if it is below it: the first of near-equals stays.
    void meet(int candidate, Vorn32f d) {
        if (isBelow(d, distance)) *this = {candidate, d};
    }
};

}  // namespace vorn::vq
