// The picture of time warping: a recording laid on templates, frame against frame.
#pragma once

#include <string>
#include <vector>

#include "warp.h"

namespace digits {

struct Warping {
    std::string title;
    WarpTrace trace;  // the recording first, then the template
};

// One panel beside the other, in one range of colours: the recording from left to right, the template upward. The
// colours of cells that no road may enter, or none that the beam
// has left, are dimmed.
std::string warpFigure(const std::vector<Warping>& panels);

}  // namespace digits
