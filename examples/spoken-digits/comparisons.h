// The sections of the report that set one way of recognition beside another.
#pragma once

#include <string>

#include "recogniser.h"

namespace digits {

// Mixtures and templates; the picture shows recording number `shown`. Empty when the run has no templates.
std::string methodsSection(const Run& run, const Recogniser& recogniser, int shown);

// How much work the shortlists save, at which loss. Empty when the run has none.
std::string selectionSection(const Run& run);

}  // namespace digits
