// What was built beside this program.
#pragma once

#include <string>
#include <vector>

namespace fuzz {

std::string builtTable();
// The folder of this build.
std::string builtFolder();
// The libraries of a build folder that this processor can run.
std::vector<std::string> librariesOf(const std::string& folder);

}  // namespace fuzz
