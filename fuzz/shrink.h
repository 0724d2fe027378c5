// Makes the decisions of a finding fewer and smaller while it stays.
#pragma once

#include "engine.h"

namespace fuzz {

std::vector<std::uint8_t> shrink(Engine& engine, int function, std::vector<std::uint8_t> bytes, const Finding& finding);

}  // namespace fuzz
