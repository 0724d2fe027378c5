// The picture of what shortlists save and lose.
#pragma once

#include <string>

#include "evaluation.h"

namespace digits {

// Accuracy and speed over the share of Gaussians that is scored. The run must have recordings whose words are known.
std::string selectionFigure(const SelectionRun& run);

}  // namespace digits
