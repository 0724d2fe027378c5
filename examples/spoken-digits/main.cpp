// The commands: train, recognise, demo.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "arguments.h"
#include "evaluation.h"
#include "input_error.h"
#include "progress.h"
#include "recogniser.h"
#include "recordings.h"
#include "report.h"
#include "stopwatch.h"
#include "train.h"

namespace digits {
namespace {

namespace fs = std::filesystem;

constexpr int kLargeGaussians = 16;  // of a state, in the large model of the demo

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

int runRecognition(const Arguments& arguments) {
    Recogniser recogniser;
    bool complete = true;
    if (arguments.method != Method::kTemplates) recogniser.models = load(arguments.model);
    for (const Arithmetic arithmetic : arguments.rivals) recogniser.rivals.emplace_back(*recogniser.models, arithmetic);
    if (arguments.method != Method::kMixtures) {
        recogniser.templates.emplace(recogniser.frontEnd, arguments.templates);
        complete = recogniser.templates->unusable() == 0;
    }
    if (!arguments.shortlists.empty()) {
        Models large = arguments.large.empty() ? *recogniser.models : load(arguments.large);
        recogniser.selection.emplace(recogniser.frontEnd, arguments.shortlists, std::move(large));
        complete = complete && recogniser.selection->unusable() == 0;
    }

    const std::vector<Task> tasks = tasksOf(arguments.inputs, complete);
    Run run = recogniser.begin();
    std::vector<int> byItself;
    {
        Progress progress("recognising", static_cast<int>(tasks.size()));
        for (const Task& task : tasks) {
            try {
                recogniser.add(task.path, run);
                if (task.byItself) byItself.push_back(run.recognised - 1);
            } catch (const InputError& error) {
                progress.interrupt();
                complain(error);
                ++run.unusable;
            }
            progress.step();
        }
    }
    for (const int i : byItself) printOne(stdout, run, i);
    print(stdout, run);
    if (!arguments.report.empty() && run.recognised > 0) {
        writeReport(arguments.report, run, recogniser, arguments.show);
        std::printf("report:     %s\n", arguments.report.c_str());
    }
    return complete && run.unusable == 0 && run.recognised > 0 ? kDone : kSomeFailed;
}

int runDemo(const fs::path& data, const fs::path& output) {
    std::error_code error;
    fs::create_directories(output, error);
    if (error) throw InputError(output, "cannot be made (" + error.message() + ")");
    const fs::path train = data / "train", model = output / "digits.model", large = output / "large.model";
    const int trained = std::max(runTraining(train, model, kGaussians), runTraining(train, large, kLargeGaussians));
    const int recognised = runRecognition(
        parse({"recognise", data / "test", "--model", model, "--report", output / "report.html", "--arithmetic", "all",
               "--method", "both", "--templates", train, "--shortlists", train, "--large", large}));
    return std::max(trained, recognised);
}

int run(const std::vector<std::string>& words) {
    const Arguments arguments = parse(words);
    if (arguments.command == "train") return runTraining(arguments.inputs[0], arguments.model, arguments.gaussians);
    if (arguments.command == "recognise") return runRecognition(arguments);
    return runDemo(arguments.inputs[0], arguments.output);
}

}  // namespace
}  // namespace digits

int main(int argc, char** argv) { return digits::runProgram(argc, argv, digits::kHelp, digits::run); }
