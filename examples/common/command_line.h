// The words of a command line: a command, what it works on, and options with a value each.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace digits {

inline constexpr int kDone = 0, kSomeFailed = 1, kWrongUse = 2;  // exit codes

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Throws UsageError with the message unless the condition holds.
void need(bool condition, const std::string& message);

// What each command takes.
struct Command {
    const char* name;
    std::vector<std::string> options;
};

struct CommandLine {
    std::string command;
    std::vector<std::filesystem::path> inputs;
    std::map<std::string, std::string> options;  // those that were given

    // Empty for an option that was not given.
    std::string option(const std::string& name) const;

    // The whole number that an option was given, or else `otherwise`.
    int number(const std::string& name, int otherwise, int least, int most) const;
};

// Throws UsageError when a word is unknown or a value is missing.
CommandLine parseWords(const std::vector<Command>& commands, const std::vector<std::string>& words);

// The whole of a main(): the help, the exit code that `run` returns, and a complaint where it throws.
int runProgram(int argc, char** argv, const char* help,
               const std::function<int(const std::vector<std::string>& words)>& run);

}  // namespace digits
