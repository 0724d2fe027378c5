#include "command_line.h"

#include <errno.h>

#include <algorithm>
#include <charconv>
#include <cstdio>

#include "progress.h"

namespace digits {
namespace {

std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + names[i];
    }
    return text;
}

const Command& commandNamed(const std::vector<Command>& commands, const std::string& name) {
    for (const Command& command : commands) {
        if (command.name == name) return command;
    }
    throw UsageError("there is no command " + name);
}

bool known(const std::vector<Command>& commands, const std::string& option) {
    return std::any_of(commands.begin(), commands.end(), [&](const Command& command) {
        return std::find(command.options.begin(), command.options.end(), option) != command.options.end();
    });
}

}  // namespace

void need(bool condition, const std::string& message) {
    if (!condition) throw UsageError(message);
}

std::string CommandLine::option(const std::string& name) const {
    const auto found = options.find(name);
    return found == options.end() ? std::string() : found->second;
}

int CommandLine::number(const std::string& name, int otherwise, int least, int most) const {
    const std::string text = option(name);
    if (text.empty()) return otherwise;
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    need(error == std::errc() && end == text.data() + text.size() && value >= least && value <= most,
         name + " takes a number from " + std::to_string(least) + " to " + std::to_string(most));
    return value;
}

CommandLine parseWords(const std::vector<Command>& commands, const std::vector<std::string>& words) {
    need(!words.empty(), "a command is needed");
    const Command& command = commandNamed(commands, words[0]);
    CommandLine line;
    line.command = command.name;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (!word.starts_with("--")) {
            line.inputs.emplace_back(word);
            continue;
        }
        need(known(commands, word), "there is no option " + word);
        need(++i < words.size(), word + " needs a value");
        line.options[word] = words[i];
    }
    for (const auto& option : line.options) {
        need(std::find(command.options.begin(), command.options.end(), option.first) != command.options.end(),
             line.command + " takes no option but " + listed(command.options));
    }
    return line;
}

int runProgram(int argc, char** argv, const char* help,
               const std::function<int(const std::vector<std::string>&)>& run) {
    try {
        const std::vector<std::string> words(argv + 1, argv + argc);
        if (!words.empty() && (words[0] == "--help" || words[0] == "-h" || words[0] == "help")) {
            std::fputs(help, stdout);
            return kDone;
        }
        return run(words);
    } catch (const UsageError& error) {
        complain(error);
        std::fprintf(stderr, "Try: %s --help\n", program_invocation_short_name);
        return kWrongUse;
    } catch (const std::exception& error) {
        complain(error);
        return kSomeFailed;
    }
}

}  // namespace digits
