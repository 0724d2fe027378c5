// Writes one self-contained page about a run: numbers, tables, and pictures of two recordings.
#pragma once

#include <filesystem>

#include "recogniser.h"

namespace digits {

// `show` chooses the first of the two recordings, by path or by name; when it is empty, the decision of median margin
// is shown. The run must hold at least one outcome by mixtures. Throws InputError when the page cannot be written or
// `show` is not in the run.
void writeReport(const std::filesystem::path& path, const Run& run, const Recogniser& recogniser,
                 const std::filesystem::path& show);

}  // namespace digits
