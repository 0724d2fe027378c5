// Cases and findings in words.
#pragma once

#include <cstdio>
#include <string>

#include "engine.h"

namespace fuzz {

// NAME:HEX, which makes the case again.
std::string replayOf(const Table& table, int function, const std::vector<std::uint8_t>& bytes);
// One line.
std::string lineOf(const Table& table, const Finding& finding);
// The calls of a case with their arguments and data.
void show(std::FILE* out, const Table& table, const Case& made);
// Both results, where they differ.
void show(std::FILE* out, const Table& table, const Finding& finding);

}  // namespace fuzz
