// Codewords and frames in one plane.
#pragma once

#include <optional>
#include <string>

#include "evaluation.h"
#include "plane.h"

namespace digits {

// The plane in which all frames of the run vary most.
std::optional<Plane> planeOfFrames(const Run& run);

// One panel a speaker: how densely the frames lie, and on them the speaker's codewords.
std::string codewordFigure(const Run& run, const Plane& plane);

}  // namespace digits
