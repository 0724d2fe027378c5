// The front ends that are compared.
#pragma once

#include <string>
#include <vector>

#include "evaluation.h"
#include "robust.h"

namespace digits {

// The clean training recordings in their stretches, from which the robust front ends learn their reference.
std::vector<Mixed> cleanTraining(const Experiment& experiment);

// The plain front end first, with which the others are compared.
std::vector<Contender> contenders(const std::vector<Mixed>& training);

// The robust front end without one step at a time.
std::vector<Contender> ablations(const std::vector<Mixed>& training);

}  // namespace digits
