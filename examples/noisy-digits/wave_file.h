// WAV files that the program writes.
#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "vornsr.h"

namespace digits {

// The bytes of a mono file of 16-bit samples at the rate of the front ends.
std::string wavOf(std::span<const Vorn16s> samples);

// Throws InputError when the file cannot be written.
void writeWav(const std::filesystem::path& path, std::span<const Vorn16s> samples);

}  // namespace digits
