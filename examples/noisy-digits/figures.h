// The pictures of the report.
#pragma once

#include <string>
#include <vector>

#include "evaluation.h"
#include "specimen.h"

namespace digits {

// Accuracy over the level, a panel for each noise, of the recognisers with that training.
std::string accuracyFigure(const std::vector<Result>& results, Training training);

// Spectrograms of a recording: noisy, cleaned by either method, clean.
std::string spectrogramFigure(const Specimen& specimen, const Insight& insight);

// The noise and its estimates over time, at some frequencies.
std::string floorFigure(const Specimen& specimen, const Insight& insight);

// The noisy wave with the detector's decisions, and the pitch before and after cleaning.
std::string decisionFigure(const Specimen& specimen, const Insight& insight);

}  // namespace digits
