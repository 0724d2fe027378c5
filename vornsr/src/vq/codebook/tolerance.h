// Comparisons of distances. All decisions between words, clusters and cells go through a tolerance, so that distances
// that differ by their rounding alone count as equal. The products are formed in double; every comparison is false for
// a not-a-number, save clearlyLess.
#pragma once

#include <cmath>

#include "vornsr/types.h"

namespace vorn::vq {

inline constexpr Vorn64f tolerance = 1.000001;
inline constexpr Vorn64f equality = 0.0001;
inline constexpr Vorn32f farthest = 3.4028235e38f;  // the best distance before any candidate

// A candidate takes the place of the best so far: the first of near-equals keeps it.
inline bool isBelow(Vorn32f candidate, Vorn32f best) { return candidate * tolerance < best; }

inline bool clearlyGreater(Vorn32f a, Vorn32f b) { return a > b * tolerance; }

// Not at least: holds where either is not a number.
inline bool clearlyLess(Vorn32f a, Vorn32f b) { return !(a * tolerance >= b); }

// The difference is small beside the larger of the two (of scores below zero: beside the one nearer to zero).
inline bool nearlyEqual(Vorn32f a, Vorn32f b) {
    return std::fabs(static_cast<Vorn64f>(a) - b) <= equality * std::fabs(static_cast<Vorn64f>(a > b ? a : b));
}

}  // namespace vorn::vq
