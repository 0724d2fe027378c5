// Under a sanitizer the process dies of what it finds; the line that makes the case again is printed then.
#pragma once

#include "engine.h"

namespace fuzz {

void printCaseAtDeath(const Engine& engine);

}  // namespace fuzz
