// What is wrong with a file that the user named. The run goes on with the other files.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace digits {

class InputError : public std::runtime_error {
public:
    InputError(const std::filesystem::path& path, const std::string& what)
        : std::runtime_error(path.string() + ": " + what) {}
};

}  // namespace digits
