// The results as the program prints them.
#pragma once

#include <cstdio>
#include <vector>

#include "evaluation.h"
#include "sides.h"

namespace digits {

// One table a result; the first result of the same training is what the others are compared with.
void printTables(std::FILE* file, const std::vector<Result>& results);

// What is left when the robust front end goes without a step; the first result is that of all steps.
void printAblations(std::FILE* file, const std::vector<Result>& results);

void printSides(std::FILE* file, const std::vector<Side>& sides);

// The means of the levels down to kLowestOfMean, of all contenders.
void printSummary(std::FILE* file, const std::vector<Result>& results);

}  // namespace digits
