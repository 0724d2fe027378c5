// The commands: evaluate, demo, mix, clean.
#include <array>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "arguments.h"
#include "contenders.h"
#include "input_error.h"
#include "progress.h"
#include "recordings.h"
#include "report.h"
#include "sides.h"
#include "stopwatch.h"
#include "tables.h"
#include "train.h"
#include "wav.h"
#include "wave_file.h"

namespace digits {
namespace {

namespace fs = std::filesystem;

constexpr int kDone = 0, kSomeFailed = 1, kWrongUse = 2;  // exit codes
constexpr std::size_t kQuickTrain = 3, kQuickTest = 4;    // one recording in so many
constexpr std::size_t kHeldOutShare = 5;                  // one training recording in so many

// Every so manieth recording: the names are sorted, so all words and speakers are among them.
std::vector<Recording> takeEvery(std::size_t share, std::vector<Recording>& recordings) {
    std::vector<Recording> taken, left;
    for (std::size_t i = 0; i < recordings.size(); ++i) {
        (i % share == 0 ? taken : left).push_back(std::move(recordings[i]));
    }
    recordings = std::move(left);
    return taken;
}

void needEnough(const fs::path& directory, const Corpus& train) {
    std::array<std::size_t, kWords> counts{};
    for (const Recording& recording : train.recordings) ++counts[static_cast<std::size_t>(recording.word)];
    for (int digit = 0; digit < kWords; ++digit) {
        if (counts[static_cast<std::size_t>(digit)] < kLeastRecordings) {
            throw InputError(directory, std::string("has too few usable recordings of the word ") + wordOf(digit));
        }
    }
}

Experiment experimentOf(const Arguments& arguments) {
    const fs::path train = arguments.inputs[0] / "train", test = arguments.inputs[0] / "test";
    Experiment experiment;
    experiment.train = readCorpus(train, "reading to train");
    if (arguments.heldOut) {
        experiment.test.recordings = takeEvery(kHeldOutShare, experiment.train.recordings);
    } else {
        experiment.test = readCorpus(test, "reading to test");
    }
    experiment.seed = arguments.seed;
    experiment.threads = arguments.threads;
    if (arguments.quick) {
        experiment.train.recordings = takeEvery(kQuickTrain, experiment.train.recordings);
        experiment.test.recordings = takeEvery(kQuickTest, experiment.test.recordings);
        experiment.trainings = {Training::kClean};
        experiment.conditions = quickConditions();
    }
    needEnough(train, experiment.train);
    if (experiment.test.recordings.empty()) throw InputError(test, "holds too few usable recordings");
    return experiment;
}

std::vector<Result> run(const Experiment& experiment, const std::vector<Contender>& contenders, const char* what) {
    std::vector<Result> results;
    Progress progress(what, static_cast<int>(contenders.size()) * evaluationSteps(experiment));
    for (const Contender& contender : contenders) {
        for (Result& result : evaluate(experiment, contender, [&] { progress.step(); })) {
            results.push_back(std::move(result));
        }
    }
    return results;
}

// The recording of the pictures: the one that was asked for, or one in the middle of the test recordings.
Recording shownRecording(const Experiment& experiment, const fs::path& path) {
    if (!path.empty()) return {path, spokenDigit(path).value_or(0), readRecording(path)};
    return experiment.test.recordings[experiment.test.recordings.size() / 2];
}

int evaluate(const Arguments& arguments, const Experiment& experiment, const fs::path& report,
             const Specimen& specimen) {
    Stopwatch watch;
    const std::vector<Mixed> training = cleanTraining(experiment);
    Experiment cleanOnly = experiment;
    cleanOnly.trainings = {Training::kClean};
    std::erase_if(cleanOnly.conditions, [](const Condition& condition) { return !countsInMean(condition); });
    Findings findings{run(experiment, contenders(training), "recognising"), {}, compareSides(experiment)};
    for (const Result& result : findings.results) {
        if (result.name == "two-stage" && result.training == Training::kClean) findings.ablations = {result};
    }
    findings.ablations.front().name = "all steps";
    for (Result& result : run(cleanOnly, ablations(training), "leaving steps out")) {
        findings.ablations.push_back(std::move(result));
    }

    const int unusable = experiment.train.unusable + experiment.test.unusable;
    std::printf("recordings: %zu to train, %zu to test, %d unusable; seed %llu\n\n", experiment.train.recordings.size(),
                experiment.test.recordings.size(), unusable, static_cast<unsigned long long>(arguments.seed));
    printTables(stdout, findings.results);
    printAblations(stdout, findings.ablations);
    printSides(stdout, findings.sides);
    printSummary(stdout, findings.results);
    if (!report.empty()) {
        writeReport(report, experiment, findings, specimen);
        std::printf("report:     %s\n", report.c_str());
    }
    std::printf("speed:      %.1f s on %d threads\n", watch.lap(), experiment.threads);
    return unusable == 0 ? kDone : kSomeFailed;
}

// Before the work of minutes, not behind it.
void needWritable(const fs::path& path) {
    if (!path.empty() && !std::ofstream(path, std::ios::app)) throw InputError(path, "cannot be written");
}

int runEvaluation(const Arguments& arguments) {
    needWritable(arguments.report);
    const Experiment experiment = experimentOf(arguments);
    const Recording shown = shownRecording(experiment, arguments.show);
    return evaluate(arguments, experiment, arguments.report,
                    specimenOf(experiment, shown, arguments.noise, arguments.snr));
}

int runDemo(const Arguments& arguments) {
    std::error_code error;
    fs::create_directories(arguments.output, error);
    if (error) throw InputError(arguments.output, "cannot be made (" + error.message() + ")");
    const Experiment experiment = experimentOf(arguments);
    const Specimen specimen = specimenOf(experiment, shownRecording(experiment, {}), arguments.noise, arguments.snr);
    writeWav(arguments.output / "clean.wav", specimen.clean.samples);
    writeWav(arguments.output / "noisy.wav", specimen.noisy.samples);
    for (const Method method : kMethods) {
        writeWav(arguments.output / (std::string("cleaned-") + nameOf(method) + ".wav"),
                 cleaned(specimen.noisy.samples, method));
    }
    return evaluate(arguments, experiment, arguments.output / "report.html", specimen);
}

int runMixing(const Arguments& arguments) {
    std::vector<std::vector<Vorn16s>> voices;
    if (!arguments.voices.empty()) {
        for (const fs::path& path : recordingsIn(arguments.voices)) voices.push_back(readRecording(path));
    }
    const std::vector<Vorn16s> samples = readRecording(arguments.inputs[0]);
    writeWav(arguments.inputs[1],
             mixed(samples, arguments.noise, arguments.snr, NoiseMaker(voices), Random(arguments.seed)).samples);
    return kDone;
}

int runCleaning(const Arguments& arguments) {
    const std::vector<Vorn16s> samples = readRecording(arguments.inputs[0]);
    writeWav(arguments.inputs[1], cleaned(samples, arguments.method));
    return kDone;
}

int run(const std::vector<std::string>& words) {
    if (!words.empty() && (words[0] == "--help" || words[0] == "-h" || words[0] == "help")) {
        std::fputs(kHelp, stdout);
        return kDone;
    }
    const Arguments arguments = parse(words);
    if (arguments.command == "evaluate") return runEvaluation(arguments);
    if (arguments.command == "demo") return runDemo(arguments);
    if (arguments.command == "mix") return runMixing(arguments);
    return runCleaning(arguments);
}

}  // namespace
}  // namespace digits

int main(int argc, char** argv) {
    try {
        return digits::run({argv + 1, argv + argc});
    } catch (const digits::UsageError& error) {
        digits::complain(error);
        std::fputs("Try: noisy-digits --help\n", stderr);
        return digits::kWrongUse;
    } catch (const std::exception& error) {
        digits::complain(error);
        return digits::kSomeFailed;
    }
}
