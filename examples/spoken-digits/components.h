// Recordings as points of a plane: the principal components of their mean frames.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "front_end.h"

namespace digits {

inline constexpr int kHalves = 2;
inline constexpr int kMeanFrame = kHalves * kCepstra;  // cepstra 1 to 12 of the first half, then of the second

using MeanFrame = std::array<Vorn32f, kMeanFrame>;

// The mean frames of a recording's first and second half, side by side.
MeanFrame meanFrame(const Analysis& analysis);

struct Plane {
    std::vector<std::array<double, 2>> places;  // one a recording
    std::array<double, 2> shares;               // of the whole variance, along each direction
};

// The plane in which the mean frames, brought to mean 0 and deviation 1 in every element, vary most: the first two
// columns of U W, where U W V' is their singular value decomposition. None for fewer than three recordings, or where
// nothing varies.
//
// H. Hotelling, "Analysis of a complex of statistical variables into principal components", 1933.
std::optional<Plane> principalPlane(const std::vector<MeanFrame>& recordings);

}  // namespace digits
