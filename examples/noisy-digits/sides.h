// How far the library's fixed-point forms are from those in single precision.
#pragma once

#include <string>
#include <vector>

#include "evaluation.h"

namespace digits {

// Two forms of a function that were given the same numbers.
struct Side {
    std::string inSingle, inIntegers;
    long long values = 0;
    // Of the differences, in per cent of the root mean square of the values in single; for decisions and periods, how
    // many per cent of them differ, in `usual`, and `most` is not told.
    double usual = 0.0, most = 0.0;
    bool counts = false;
};

// On test recordings in all noises at 5 dB, frame after frame. Where a form keeps something from frame to frame, both
// go on from what the fixed form kept; the detectors and the trackers each from their own.
std::vector<Side> compareSides(const Experiment& experiment);

}  // namespace digits
