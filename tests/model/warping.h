// Dynamic time warping as plain scalar code: row by row as promised, and by trying every path.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "vornsr/types.h"

namespace model {

inline constexpr float noPath = 3.4028235e38f;

// Euclidean distance of two vectors.
inline float warpingDistance(const float* x, const float* y, int width) {
    if (width > 13) {
        double sum = 0;
        for (int c = 0; c < width; ++c) {
            const float d = x[c] - y[c], square = d * d;
            sum = sum + static_cast<double>(square);
        }
        return static_cast<float>(std::sqrt(sum));
    }
    float sum = 0;
    for (int group = 0; group < width; group += 4) {
        float lane[4] = {0, 0, 0, 0};
        for (int k = 0; k < 4 && group + k < width; ++k) {
            const float d = x[group + k] - y[group + k];
            lane[k] = d * d;
        }
        const float low = lane[0] + lane[1], high = lane[2] + lane[3];
        sum = sum + (low + high);
    }
    return std::sqrt(sum);
}

// What a path through the longer sequence's rows may use of the shorter one's.
struct WarpingLimits {
    std::vector<std::int64_t> lower, upper;
};
inline WarpingLimits warpingLimits(std::int64_t n, std::int64_t m, std::int64_t d) {
    WarpingLimits limits;
    for (std::int64_t i = 0; i < n; ++i) {
        std::int64_t up = 3 * i < 2 * m - n
                              ? 2 * i + d
                              : m + d + static_cast<std::int64_t>(std::floor(static_cast<double>(i - n - 1) / 2));
        std::int64_t low = 3 * i > 2 * (2 * n - m) - 2 ? m - d + 2 * (i - n) + 1 : i / 2 - d;
        limits.upper.push_back(std::min(up, m - 1));
        limits.lower.push_back(std::max<std::int64_t>(low, 0));
    }
    return limits;
}

// src1 and src2: lists of rows. visited, if not null: how many distances were needed.
inline float warping(const float* const* src1, int height1, const float* const* src2, int height2, int width, int delta,
                     float beam, std::int64_t* visited = nullptr) {
    float best = noPath;
    const bool swapped = height1 < height2;
    const float* const* longer = swapped ? src2 : src1;
    const float* const* shorter = swapped ? src1 : src2;
    const std::int64_t n = swapped ? height2 : height1, m = swapped ? height1 : height2;
    const std::int64_t d = delta < m ? delta : m - 1;
    if (d < 0) return best;
    if (!(beam > 0)) beam = 0;
    const WarpingLimits limits = warpingLimits(n, m, d);
    std::vector<float> cost(m, noPath);
    for (std::int64_t j = 0; j <= d; ++j) cost[j] = warpingDistance(longer[0], shorter[j], width);
    std::int64_t cells = d + 1;
    std::int64_t start = 0, count = d + 1;
    if (n < 2) return best;
    beam = beam + 1.1920929e-07f;
    for (std::int64_t i = 1; i < n; ++i) {
        const std::int64_t old = count;
        count = std::min(count + 2, limits.upper[i] - start + 1);
        std::vector<float> fresh(m + old + 4, noPath);
        const auto before = [&](std::int64_t j) { return j < start || j > start + old - 1 ? noPath : cost[j]; };
        for (std::int64_t j = start; j < start + count; ++j) {
            const float local = warpingDistance(longer[i], shorter[j], width);
            fresh[j] = local + std::min(before(j), std::min(before(j - 1), before(j - 2)));
        }
        if (count > 0) cells += count;
        if (start < limits.lower[i]) {
            count = count - (limits.lower[i] - start);
            start = limits.lower[i];
        }
        if (count < 1) return noPath;
        best = fresh[start];
        for (std::int64_t j = start; j < start + count; ++j) best = std::min(best, fresh[j]);
        if (best >= noPath) break;
        const float threshold = best + beam;
        while (count > 1 && fresh[start + count - 1] > threshold) --count;
        while (count > 1 && fresh[start] > threshold) ++start, --count;
        cost = fresh;
    }
    if (visited) *visited = cells;
    return best;
}

// Every path: it begins at any column up to d, each further row moves it by no, one or two columns, and it ends
// anywhere. From the second row on it stays between two lines of slope 2 and two of slope 1/2, the one of each d above
// the first corner or the last, the other d below. No beam. Costs are added along the path.
inline float cheapestPath(const float* const* longer, int n, const float* const* shorter, int m, int width, int d) {
    float best = std::numeric_limits<float>::infinity();
    const auto inside = [&](int i, int j) {
        const int fromEnd = n - 1 - i;
        return j <= 2 * i + d && j >= i / 2 - d && j >= m - 1 - d - 2 * fromEnd && j <= m - 1 + d - (fromEnd + 1) / 2;
    };
    const auto walk = [&](const auto& self, int i, int j, float soFar) -> void {
        if (j >= m || (i > 0 && !inside(i, j))) return;
        const float distance = warpingDistance(longer[i], shorter[j], width);
        const float cost = i == 0 ? distance : soFar + distance;
        if (i == n - 1) {
            best = std::min(best, cost);
            return;
        }
        for (int move = 0; move <= 2; ++move) self(self, i + 1, j + move, cost);
    };
    for (int j = 0; j <= d; ++j) walk(walk, 0, j, 0);
    return best == std::numeric_limits<float>::infinity() ? noPath : best;
}

}  // namespace model
