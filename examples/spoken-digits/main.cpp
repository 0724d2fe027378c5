// The command line: train, recognise, demo.
#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "evaluation.h"
#include "input_error.h"
#include "progress.h"
#include "recordings.h"
#include "report.h"
#include "train.h"
#include "wav.h"

namespace digits {
namespace {

namespace fs = std::filesystem;

constexpr int kDone = 0, kSomeFailed = 1, kWrongUse = 2;  // exit codes

constexpr const char* kHelp =
    "spoken-digits: recognises the spoken digits zero to nine\n"
    "\n"
    "  spoken-digits train DIR --model FILE [--gaussians N]\n"
    "      Makes one word model a digit from the recordings in DIR and writes them to FILE. Each of its states is a\n"
    "      mixture of N Gaussians, 6 if not told otherwise.\n"
    "  spoken-digits recognise DIR-OR-WAV... --model FILE [--report HTML] [--show WAV]\n"
    "                [--arithmetic float|scaled|low|all]\n"
    "      Recognises recordings, prints accuracy, confusion matrix and speed, and writes a report with pictures.\n"
    "      A recording that is named by itself gets a line of its own. --show chooses the recording of the pictures.\n"
    "      --arithmetic recognises once more with 16-bit scores, and compares accuracy and speed with those in float.\n"
    "  spoken-digits demo DATA --output DIR\n"
    "      Trains on DATA/train, recognises DATA/test, and writes DIR/digits.model and DIR/report.html,\n"
    "      with all arithmetics compared.\n"
    "  spoken-digits --help\n"
    "\n"
    "Recordings are mono 16-bit WAV files of 8000 samples a second. A name like 7_anna_3.wav tells the spoken digit.\n"
    "Exit status: 0 all done, 1 some file could not be used (the others are still done), 2 wrong use.\n";

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Arguments {
    std::vector<fs::path> inputs;
    std::string model, report, show, output, arithmetic, gaussians;
};

Arguments parse(const std::vector<std::string>& words) {
    Arguments arguments;
    for (std::size_t i = 1; i < words.size(); ++i) {
        const std::string& word = words[i];
        std::string* value = word == "--model"        ? &arguments.model
                             : word == "--report"     ? &arguments.report
                             : word == "--show"       ? &arguments.show
                             : word == "--output"     ? &arguments.output
                             : word == "--arithmetic" ? &arguments.arithmetic
                             : word == "--gaussians"  ? &arguments.gaussians
                                                      : nullptr;
        if (!value) {
            if (word.starts_with("--")) throw UsageError("there is no option " + word);
            arguments.inputs.emplace_back(word);
        } else if (++i < words.size()) {
            *value = words[i];
        } else {
            throw UsageError(word + " needs a value");
        }
    }
    return arguments;
}

void need(bool condition, const char* message) {
    if (!condition) throw UsageError(message);
}

// What is compared with float.
std::vector<Arithmetic> rivalsOfFloat(const std::string& name) {
    if (name.empty() || name == "float") return {};
    if (name == "scaled") return {Arithmetic::kScaled};
    if (name == "low") return {Arithmetic::kLow};
    if (name == "all") return {Arithmetic::kScaled, Arithmetic::kLow};
    throw UsageError("there is no arithmetic " + name + ": it is float, scaled, low or all");
}

int gaussiansOf(const std::string& text) {
    if (text.empty()) return kGaussians;
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || value < 1 || value > kMostGaussians) {
        throw UsageError("--gaussians takes a number from 1 to " + std::to_string(kMostGaussians));
    }
    return value;
}

class Stopwatch {
public:
    // Seconds since the last lap, or since the start.
    double lap() {
        const auto now = std::chrono::steady_clock::now();
        const std::chrono::duration<double> past = now - since_;
        since_ = now;
        return past.count();
    }

private:
    std::chrono::steady_clock::time_point since_ = std::chrono::steady_clock::now();
};

int runTraining(const fs::path& directory, const fs::path& modelPath, int gaussians) {
    Stopwatch watch;
    LabelledSet set = readLabelled(FrontEnd(), directory, kStates, "reading");
    const std::size_t used = set.recordings.size();
    TrainingSet recordings;
    for (Labelled& each : set.recordings) recordings[each.word].push_back(std::move(each.analysis));
    for (int digit = 0; digit < kWords; ++digit) {
        if (recordings[digit].size() < kLeastRecordings) {
            throw InputError(directory, std::string("has too few usable recordings of the word ") + wordOf(digit));
        }
    }

    const double reading = watch.lap();
    Models models;
    {
        Progress progress("training", trainingSteps(gaussians));
        models = train(recordings, gaussians, [&] { progress.step(); });
    }
    save(models, modelPath);
    std::printf("recordings: %zu used, %d unusable\n", used, set.unusable);
    std::printf("model:      %d words, %d states a word, %d Gaussians a state, %d features: %s\n", kWords,
                models.states(), models.gaussians(), kFeatures, modelPath.c_str());
    std::printf("speed:      %.2f s reading and front end, %.2f s training\n", reading, watch.lap());
    return set.unusable == 0 ? kDone : kSomeFailed;
}

// The recordings that are to be recognised. Those that are named by themselves get a line of their own.
struct Task {
    fs::path path;
    bool byItself;
};

std::vector<Task> tasksOf(const std::vector<fs::path>& inputs, bool& complete) {
    std::vector<Task> tasks;
    for (const fs::path& input : inputs) {
        std::error_code ignored;
        if (!fs::is_directory(input, ignored)) {
            tasks.push_back({input, true});
            continue;
        }
        try {
            for (const fs::path& path : recordingsIn(input)) tasks.push_back({path, false});
        } catch (const InputError& error) {
            complain(error);
            complete = false;
        }
    }
    return tasks;
}

// The last recording of the run once more, in each of the other arithmetics.
void compare(const std::vector<QuantisedModels>& rivals, const Analysis& analysis, double secondsInFloat, Run& run) {
    if (rivals.empty()) return;
    Outcome outcome = run.outcomes.back();
    run.trials[0].add(outcome, secondsInFloat);
    for (std::size_t i = 0; i < rivals.size(); ++i) {
        Stopwatch watch;
        outcome.decision = decide(rivals[i], analysis);
        run.trials[i + 1].add(outcome, watch.lap());
    }
}

void recogniseOne(const FrontEnd& frontEnd, const Models& models, const std::vector<QuantisedModels>& rivals,
                  const fs::path& path, Run& run) {
    Stopwatch watch;
    const std::vector<Vorn16s> samples = readWav(path, kSampleRate);
    run.seconds.reading += watch.lap();
    const Analysis analysis = analyse(frontEnd, path, samples, models.states());
    run.seconds.frontEnd += watch.lap();
    run.outcomes.push_back({path, spokenDigit(path), analysis.frames, decide(models, analysis)});
    const double scoring = watch.lap();
    run.outcomes.back().mean = meanFrame(analysis);
    watch.lap();  // for a picture only
    run.seconds.scoring += scoring;
    compare(rivals, analysis, scoring, run);
    run.seconds.audio += static_cast<double>(samples.size()) / kSampleRate;
}

int runRecognition(const std::vector<fs::path>& inputs, const fs::path& modelPath, const fs::path& reportPath,
                   const fs::path& show, const std::vector<Arithmetic>& others) {
    const Models models = load(modelPath);
    bool complete = true;
    const std::vector<Task> tasks = tasksOf(inputs, complete);
    const FrontEnd frontEnd;
    Run run;
    std::vector<QuantisedModels> rivals;
    if (!others.empty()) run.trials.push_back({Arithmetic::kFloat});
    for (const Arithmetic arithmetic : others) {
        rivals.emplace_back(models, arithmetic);
        run.trials.push_back({arithmetic});
    }
    std::vector<std::size_t> byItself;
    {
        Progress progress("recognising", static_cast<int>(tasks.size()));
        for (const Task& task : tasks) {
            try {
                recogniseOne(frontEnd, models, rivals, task.path, run);
                if (task.byItself) byItself.push_back(run.outcomes.size() - 1);
            } catch (const InputError& error) {
                progress.interrupt();
                complain(error);
                ++run.unusable;
            }
            progress.step();
        }
    }
    for (const std::size_t i : byItself) {
        const Outcome& outcome = run.outcomes[i];
        std::printf("%s: %s, ahead of %s by %.3f a frame\n", outcome.path.c_str(), wordOf(outcome.decision.best),
                    wordOf(outcome.decision.secondBest()),
                    double(outcome.decision.leadOver(outcome.decision.secondBest())));
    }
    print(stdout, run);
    if (!reportPath.empty() && !run.outcomes.empty()) {
        writeReport(reportPath, run, models, frontEnd, show);
        std::printf("report:     %s\n", reportPath.c_str());
    }
    return complete && run.unusable == 0 && !run.outcomes.empty() ? kDone : kSomeFailed;
}

int runDemo(const fs::path& data, const fs::path& output) {
    std::error_code error;
    fs::create_directories(output, error);
    if (error) throw InputError(output, "cannot be made (" + error.message() + ")");
    const fs::path model = output / "digits.model";
    const int trained = runTraining(data / "train", model, kGaussians);
    const int recognised = runRecognition({data / "test"}, model, output / "report.html", {}, rivalsOfFloat("all"));
    return std::max(trained, recognised);
}

int run(const std::vector<std::string>& words) {
    if (words.empty()) throw UsageError("a command is needed");
    const std::string& command = words[0];
    if (command == "--help" || command == "-h" || command == "help") {
        std::fputs(kHelp, stdout);
        return kDone;
    }
    const Arguments arguments = parse(words);
    if (command == "train") {
        need(arguments.inputs.size() == 1, "train needs one directory of recordings");
        need(!arguments.model.empty(), "train needs --model FILE");
        need(arguments.report.empty() && arguments.show.empty() && arguments.output.empty() &&
                 arguments.arithmetic.empty(),
             "train takes no option but --model and --gaussians");
        return runTraining(arguments.inputs[0], arguments.model, gaussiansOf(arguments.gaussians));
    }
    if (command == "recognise") {
        need(!arguments.inputs.empty(), "recognise needs recordings or directories of them");
        need(!arguments.model.empty(), "recognise needs --model FILE");
        need(arguments.output.empty(), "recognise takes --report FILE, not --output");
        need(arguments.gaussians.empty(), "--gaussians is for train");
        need(arguments.show.empty() || !arguments.report.empty(), "--show chooses a picture of --report FILE");
        return runRecognition(arguments.inputs, arguments.model, arguments.report, arguments.show,
                              rivalsOfFloat(arguments.arithmetic));
    }
    if (command == "demo") {
        need(arguments.inputs.size() == 1, "demo needs one directory that holds train and test");
        need(!arguments.output.empty(), "demo needs --output DIR");
        need(arguments.model.empty() && arguments.report.empty() && arguments.show.empty() &&
                 arguments.arithmetic.empty() && arguments.gaussians.empty(),
             "demo takes no option but --output");
        return runDemo(arguments.inputs[0], arguments.output);
    }
    throw UsageError("there is no command " + command);
}

}  // namespace
}  // namespace digits

int main(int argc, char** argv) {
    try {
        return digits::run({argv + 1, argv + argc});
    } catch (const digits::UsageError& error) {
        digits::complain(error);
        std::fputs("Try: spoken-digits --help\n", stderr);
        return digits::kWrongUse;
    } catch (const std::exception& error) {
        digits::complain(error);
        return digits::kSomeFailed;
    }
}
