// What was built beside this program.
#pragma once

#include <string>
#include <vector>

namespace fuzz {

std::string builtTable();
// The builds that this processor can run.
std::vector<std::string> builtLibraries();

}  // namespace fuzz
