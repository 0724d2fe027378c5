// Writes one self-contained page about a run: numbers, tables and pictures.
#pragma once

#include <filesystem>

#include "evaluation.h"

namespace digits {

// The run must hold at least one outcome. Throws InputError when the page cannot be written.
void writeReport(const std::filesystem::path& path, const Run& run);

}  // namespace digits
