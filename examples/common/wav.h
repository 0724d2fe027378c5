// Reads a recording: 16-bit mono WAV at one of several rates, and nothing else.
#pragma once

#include <filesystem>
#include <vector>

#include "vornsr.h"

namespace digits {

// The samples of the file, brought to the rate. Throws InputError with a message for the user.
std::vector<Vorn16s> readWav(const std::filesystem::path& path, int sampleRate);

}  // namespace digits
