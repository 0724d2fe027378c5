// One recording for the pictures: clean, in noise, and what becomes of it.
#pragma once

#include <string>
#include <vector>

#include "evaluation.h"

namespace digits {

struct Specimen {
    std::string name, conditions;  // its file, and the noise that it stands in
    Mixed clean, noisy;
};

Specimen specimenOf(const Experiment& experiment, const Recording& recording, Noise noise, int snr);

// What the noise reduction and the tracker know of a specimen, beside what is true.
struct Insight {
    explicit Insight(const Specimen& specimen);

    std::vector<Vorn16s> reduced, suppressed;  // by the two stages; by tracking and the rule of Ephraim and Malah
    std::vector<bool> speech;                  // of each block of kFrameStep samples

    // Powers in decibels for a sample, by frequency: of the noisy wave, of the noise in it, and both estimates.
    struct Floor {
        int hertz;
        std::vector<double> noisy, noise, learnt;  // a value for each block
        std::vector<double> tracked;               // a value for each step of the suppression
    };
    std::vector<Floor> floors;

    // Hertz for each frame, or 0 where there is no clear period.
    struct Pitch {
        std::vector<double> clean, noisy, reduced;
    } pitch;
};

}  // namespace digits
