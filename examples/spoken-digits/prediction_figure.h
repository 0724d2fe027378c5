// The section of the report on linear prediction.
#pragma once

#include <string>

#include "figures.h"

namespace digits {

// Pictures of the recording's envelope, line spectral frequencies and log area ratios, each with what is to be seen.
std::string predictionSection(const Specimen& specimen, const FrontEnd& frontEnd);

}  // namespace digits
