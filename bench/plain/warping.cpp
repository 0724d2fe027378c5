#include "plain/warping.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

namespace plain {
namespace {

constexpr Vorn32f noPath = 3.4028235e38f;

// Squares in single, summed in single up to thirteen columns and in double above.
template <class Sum, class T>
inline Vorn32f distanceIn(const T* x, const T* y, int width) {
    Sum sum = 0;
    for (int c = 0; c < width; ++c) {
        const Vorn32f d = static_cast<Vorn32f>(x[c]) - static_cast<Vorn32f>(y[c]);
        sum += static_cast<Sum>(d * d);
    }
    return static_cast<Vorn32f>(std::sqrt(sum));
}
template <class T>
inline Vorn32f distance(const T* x, const T* y, int width) {
    return width <= 13 ? distanceIn<Vorn32f>(x, y, width) : distanceIn<Vorn64f>(x, y, width);
}

template <class T>
Vorn32f warpRows(const T* longer, int n, const T* shorter, int m, int width, int d, Vorn32f beam) {
    const auto row = [=](const T* rows, int r) { return rows + static_cast<std::ptrdiff_t>(r) * width; };
    std::vector<Vorn32f> cost(m + 2, noPath), next(m + 2, noPath);
    int start = 0, end = std::min(d, m - 1) + 1;
    for (int j = 0; j < end; ++j) cost[j + 2] = distance(longer, row(shorter, j), width);
    Vorn32f best = noPath;
    for (int i = 1; i < n; ++i) {
        const int upper = std::min({2 * i + d, m + d + (i - n - 1) / 2, m - 1});
        const int lower = std::max({i / 2 - d, m - d + 2 * (i - n) + 1, 0});
        const int before = end;
        end = std::min(end + 2, upper + 1), start = std::max(start, lower);
        for (int j = before; j < end; ++j) cost[j + 2] = noPath;
        best = noPath;
        for (int j = start; j < end; ++j) {
            const Vorn32f least = std::min(std::min(cost[j + 2], cost[j + 1]), cost[j]);
            next[j + 2] = distance(row(longer, i), row(shorter, j), width) + least;
            best = std::min(best, next[j + 2]);
        }
        while (end - start > 1 && next[end + 1] > best + beam) --end;
        while (end - start > 1 && next[start + 2] > best + beam) ++start;
        next[start] = next[start + 1] = noPath;
        std::swap(cost, next);
    }
    return best;
}

template <class T>
Vorn32f warpAny(const T* src1, int height1, const T* src2, int height2, int width, int delta, Vorn32f beam) {
    return height1 < height2 ? warpRows(src2, height2, src1, height1, width, delta, beam)
                             : warpRows(src1, height1, src2, height2, width, delta, beam);
}

}  // namespace

Vorn32f warp(const Vorn32f* src1, int height1, const Vorn32f* src2, int height2, int width, int delta, Vorn32f beam) {
    return warpAny(src1, height1, src2, height2, width, delta, beam);
}
Vorn32f warp(const Vorn8u* src1, int height1, const Vorn8u* src2, int height2, int width, int delta, Vorn32f beam) {
    return warpAny(src1, height1, src2, height2, width, delta, beam);
}
Vorn32f warp(const Vorn16s* src1, int height1, const Vorn16s* src2, int height2, int width, int delta, Vorn32f beam) {
    return warpAny(src1, height1, src2, height2, width, delta, beam);
}

}  // namespace plain
