// The command line: its help, its words, and which of them go together.
#include "arguments.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <thread>

namespace digits {
namespace {

constexpr int kMostThreads = 64;
constexpr int kMostSnr = 60;

// What each command takes: how many paths, which options with a value, and which without.
struct Command {
    const char* name;
    std::size_t inputs;
    const char* inputsText;
    std::vector<std::string> options, flags;
};

const std::vector<Command>& commands() {
    static const std::vector<Command> kCommands{
        {"evaluate",
         1,
         "one directory that holds train and test",
         {"--report", "--show", "--noise", "--snr", "--seed", "--threads"},
         {"--quick", "--held-out"}},
        {"demo", 1, "one directory that holds train and test", {"--output", "--seed", "--threads"}, {"--quick"}},
        {"mix", 2, "a recording and the file to write", {"--noise", "--snr", "--voices", "--seed"}, {}},
        {"clean", 2, "a recording and the file to write", {"--method"}, {}},
    };
    return kCommands;
}

void need(bool condition, const std::string& message) {
    if (!condition) throw UsageError(message);
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == names.size() ? " and " : ", ") + names[i];
    }
    return text;
}

const Command& commandNamed(const std::string& name) {
    for (const Command& command : commands()) {
        if (command.name == name) return command;
    }
    throw UsageError("there is no command " + name);
}

// Whether any command takes a value with the option; throws when none knows it at all.
bool takesValue(const std::string& option) {
    bool isFlag = false;
    for (const Command& command : commands()) {
        if (contains(command.options, option)) return true;
        isFlag = isFlag || contains(command.flags, option);
    }
    need(isFlag, "there is no option " + option);
    return false;
}

template <typename Number>
Number numberOf(const std::string& option, const std::string& text, Number least, Number most) {
    Number value{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    need(error == std::errc() && end == text.data() + text.size() && value >= least && value <= most,
         option + " takes a number from " + std::to_string(least) + " to " + std::to_string(most));
    return value;
}

Noise noiseNamed(const std::string& name) {
    for (const Noise noise : kNoises) {
        if (name == nameOf(noise)) return noise;
    }
    throw UsageError("there is no noise " + name + ": it is white, car or babble");
}

Method methodNamed(const std::string& name) {
    for (const Method method : kMethods) {
        if (name == nameOf(method)) return method;
    }
    throw UsageError("there is no method " + name + ": it is two-stage, fixed, wiener or ephraim-malah");
}

}  // namespace

const char* const kHelp =
    "noisy-digits: recognises spoken digits in noise, and takes noise out of recordings\n"
    "\n"
    "  noisy-digits evaluate DATA [--quick] [--held-out] [--report HTML] [--show WAV] [--noise NAME] [--snr DB]\n"
    "               [--seed N] [--threads N]\n"
    "      Mixes the recordings in DATA/train and DATA/test with white noise, with that of a car and with babble, at\n"
    "      20 to -5 dB; trains on clean and on mixed recordings; prints what each front end recognises, what each\n"
    "      step of the robust one is worth, and how its fixed-point forms differ. --report writes a page with\n"
    "      pictures of one recording, which --show, --noise and --snr choose. --quick takes a third of the recordings\n"
    "      to train, a quarter of those to test, two levels and clean training. --held-out takes a fifth of the\n"
    "      training recordings in place of the test ones.\n"
    "  noisy-digits demo DATA --output DIR [--quick] [--seed N] [--threads N]\n"
    "      The same, with DIR/report.html, DIR/noisy.wav and the file cleaned by each method to listen to.\n"
    "  noisy-digits mix IN.wav OUT.wav [--noise white|car|babble] [--snr DB] [--voices DIR] [--seed N]\n"
    "      Puts a recording into noise, with 400 ms of it at both ends. Babble is made of the recordings in DIR.\n"
    "  noisy-digits clean IN.wav OUT.wav [--method two-stage|fixed|wiener|ephraim-malah]\n"
    "      Takes noise out of a recording. It should begin with a few tenths of a second of noise alone.\n"
    "  noisy-digits --help\n"
    "\n"
    "Recordings are mono 16-bit WAV files of 8000, 11025, 16000, 22050, 32000, 44100 or 48000 samples a second, of\n"
    "which all but the first are brought to 8000. A name like 7_anna_3.wav tells the spoken digit.\n"
    "Exit status: 0 all done, 1 some file could not be used (the others are still done), 2 wrong use.\n";

Arguments parse(const std::vector<std::string>& words) {
    need(!words.empty(), "a command is needed");
    const Command& command = commandNamed(words[0]);
    Arguments arguments;
    arguments.command = command.name;
    std::map<std::string, std::string> options;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::string& word = words[i];
        if (!word.starts_with("--")) {
            arguments.inputs.emplace_back(word);
            continue;
        }
        const bool valued = takesValue(word);
        need(!valued || ++i < words.size(), word + " needs a value");
        options[word] = words[i];
    }
    for (const auto& option : options) {
        std::vector<std::string> all = command.options;
        all.insert(all.end(), command.flags.begin(), command.flags.end());
        need(contains(all, option.first), arguments.command + " takes no option but " + listed(all));
    }
    need(arguments.inputs.size() == command.inputs, arguments.command + " needs " + command.inputsText);

    arguments.report = options["--report"];
    arguments.output = options["--output"];
    arguments.show = options["--show"];
    arguments.voices = options["--voices"];
    arguments.quick = !options["--quick"].empty();
    arguments.heldOut = !options["--held-out"].empty();
    arguments.threads = std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMostThreads);
    if (const std::string text = options["--threads"]; !text.empty()) {
        arguments.threads = numberOf("--threads", text, 1, kMostThreads);
    }
    if (const std::string text = options["--seed"]; !text.empty()) {
        arguments.seed = numberOf<std::uint64_t>("--seed", text, 0, 4294967295u);
    }
    if (const std::string text = options["--snr"]; !text.empty()) {
        arguments.snr = numberOf("--snr", text, -kMostSnr, kMostSnr);
    }
    if (const std::string name = options["--noise"]; !name.empty()) arguments.noise = noiseNamed(name);
    if (const std::string name = options["--method"]; !name.empty()) arguments.method = methodNamed(name);
    need(arguments.show.empty() || !arguments.report.empty(), "--show chooses a picture of --report FILE");
    if (arguments.command == "demo") need(!arguments.output.empty(), "demo needs --output DIR");
    if (arguments.command == "mix" && arguments.noise == Noise::kBabble) {
        need(!arguments.voices.empty(), "babble is made of recordings: --voices DIR");
    }
    return arguments;
}

}  // namespace digits
