// The pictures of the report, each as one SVG element.
#pragma once

#include <string>
#include <vector>

#include "evaluation.h"

namespace digits {

// A recording with all that the pictures show of it.
struct Specimen {
    const Outcome* outcome;
    std::vector<Vorn16s> samples;
    Analysis analysis;
};

// The wave, its spectrogram, filter bank, cepstra, deltas and accelerations over one time axis.
std::string roadFigure(const Specimen& specimen);

// The states of the best word, the score of each frame for the three best words, and how the lead grows.
std::string scoreFigure(const Specimen& specimen);

// How far each word stays behind the best one.
std::string wordsFigure(const Specimen& specimen);

// Every recording as its digit at its place in the plane of the first two principal components; and each digit's mean.
std::string planeFigure(const Run& run, const Plane& plane);

}  // namespace digits
