// Files with a checksum at their end, which tells a damaged one.
#pragma once

#include <filesystem>
#include <string>

namespace digits {

// Writes the bytes and their checksum. Throws InputError when that cannot be done.
void writeSealed(const std::filesystem::path& path, std::string bytes);

// All bytes of a file, the checksum among them. Throws InputError when there are none to be had.
std::string readModelFile(const std::filesystem::path& path);

inline constexpr std::size_t kSealSize = 8;  // bytes of the checksum

// Throws InputError when the file has another number of bytes than these and a checksum, or another checksum.
void checkSize(const std::filesystem::path& path, const std::string& bytes, std::size_t unsealed);
void checkSeal(const std::filesystem::path& path, const std::string& bytes);

}  // namespace digits
