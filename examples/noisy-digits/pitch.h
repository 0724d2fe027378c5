// The pitch of a voice over time.
#pragma once

#include <span>
#include <vector>

#include "vornsr.h"

namespace digits {

inline constexpr int kPitchFrame = 320;  // samples: two periods of a deep voice and more

// Hertz for each kFrameStep samples, from the frame that begins there; 0 where no period explains the frame.
std::vector<double> pitchTrack(std::span<const Vorn16s> samples);

}  // namespace digits
