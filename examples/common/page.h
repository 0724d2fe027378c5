// A page: HTML with its style sheet and its pictures inside, readable in light and in dark, on screen and on paper.
#pragma once

#include <filesystem>
#include <string>

namespace digits {

// A number that stands out, and what it means.
std::string tile(const std::string& value, const std::string& meaning);

// A player of a WAV file, with the file inside.
std::string player(const std::filesystem::path& path);

// Title and footer are text, lead and body HTML. Throws InputError when the file cannot be written.
void writePage(const std::filesystem::path& path, const std::string& title, const std::string& lead,
               const std::string& body, const std::string& footer);

}  // namespace digits
