// The results as the program prints them.
#pragma once

#include <cstdio>
#include <vector>

#include "evaluation.h"

namespace digits {

// One table a result; the first result of the same training is what the others are compared with.
void printTables(std::FILE* file, const Experiment& experiment, const std::vector<Result>& results);

}  // namespace digits
