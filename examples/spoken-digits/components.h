// Recordings as points of a plane: the principal components of their mean frames.
#pragma once

#include <array>
#include <optional>
#include <vector>

#include "front_end.h"
#include "plane.h"

namespace digits {

inline constexpr int kHalves = 2;
inline constexpr int kMeanFrame = kHalves * kCepstra;  // cepstra 1 to 12 of the first half, then of the second

using MeanFrame = std::array<Vorn32f, kMeanFrame>;

// The mean frames of a recording's first and second half, side by side.
MeanFrame meanFrame(const Analysis& analysis);

// The plane in which they vary most.
std::optional<Plane> principalPlane(const std::vector<MeanFrame>& recordings);

}  // namespace digits
