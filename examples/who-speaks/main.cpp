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
#include "recordings.h"
#include "report.h"
#include "stopwatch.h"
#include "validation.h"
#include "wav.h"

namespace digits {
namespace {

namespace fs = std::filesystem;

// The recordings of a directory whose speakers and words are known; those of no use are complained about.
LabelledSet readSpeakers(const FrontEnd& frontEnd, const fs::path& directory, const char* what) {
    LabelledSet all = readLabelled(frontEnd, directory, kStates, what), set;
    set.unusable = all.unusable;
    for (Labelled& each : all.recordings) {
        const std::string name = speaker(each.path);
        if (name.empty()) {
            complain(InputError(each.path, "has a name that tells no speaker between two underscores"));
        } else if (name.size() > kLongestName) {
            complain(
                InputError(each.path, "has a speaker's name of more than " + std::to_string(kLongestName) + " bytes"));
        } else {
            set.recordings.push_back(std::move(each));
            continue;
        }
        ++set.unusable;
    }
    return set;
}

void needFrames(const fs::path& directory, const VoiceFrames& frames, int codewords) {
    if (frames.size() < 2) throw InputError(directory, "has usable recordings of fewer than two speakers");
    for (const auto& [name, rows] : frames) {
        const std::size_t height = rows.size() / kRowStep;
        if (height < static_cast<std::size_t>(codewords)) {
            throw InputError(directory, "has only " + std::to_string(height) + " frames of the speaker " + name +
                                            " for " + std::to_string(codewords) + " codewords");
        }
    }
}

int chosenCodewords(const fs::path& directory, const std::vector<Labelled>& recordings) {
    const std::vector<int> sizes = sizesToTry(recordings);
    if (sizes.empty()) throw InputError(directory, "has too few recordings of some speaker for cross-validation");
    std::vector<ValidatedSize> results;
    {
        Progress progress("cross-validating", kParts * static_cast<int>(sizes.size()));
        results = validate(recordings, sizes, [&] { progress.step(); });
    }
    std::printf("cross-validation in %d parts: codewords of a speaker, and what is right\n", kParts);
    for (const ValidatedSize& result : results) {
        std::printf("  %5d  %6.2f %% (%d of %d)\n", result.codewords, result.accuracy(), result.right, result.known);
    }
    return bestOf(results);
}

int runTraining(const fs::path& directory, const fs::path& modelPath, int codewords) {
    Stopwatch watch;
    const LabelledSet set = readSpeakers(FrontEnd(), directory, "reading");
    const double reading = watch.lap();
    const VoiceFrames frames = voiceFrames(set.recordings);
    needFrames(directory, frames, std::max(codewords, kLeastCodewords));
    if (codewords == 0) codewords = chosenCodewords(directory, set.recordings);
    const double choosing = watch.lap();
    Speakers speakers;
    {
        Progress progress("training", static_cast<int>(frames.size()));
        speakers = trainSpeakers(frames, codewords, [&] { progress.step(); });
    }
    saveSpeakers(speakers, modelPath);
    std::printf("recordings: %zu used, %d unusable\n", set.recordings.size(), set.unusable);
    for (const Speaker& speaker : speakers) {
        const std::vector<Vorn32f>& rows = frames.at(speaker.name);
        const Stretch all{rows.data(), static_cast<int>(rows.size()) / kRowStep};
        std::printf("speaker:    %-8s  %d codewords of %d frames, distortion %.2f\n", speaker.name.c_str(),
                    speaker.codebook.size(), all.height,
                    sumOfSquares(speaker.codebook.nearest(all).distance) / all.height);
    }
    std::printf("model:      %zu speakers, codewords of %d cepstra: %s\n", speakers.size(), kVoiceFeatures,
                modelPath.c_str());
    std::printf("speed:      %.2f s reading and front end, %.2f s choosing, %.2f s training\n", reading, choosing,
                watch.lap());
    return set.unusable == 0 ? kDone : kSomeFailed;
}

// Adds one recording to the run. Throws InputError when it cannot be used.
void add(const FrontEnd& frontEnd, const fs::path& path, Run& run) {
    const std::vector<Vorn16s> samples = readWav(path, kSampleRate);
    Stopwatch watch;
    Analysis analysis = analyse(frontEnd, path, samples, kStates);
    run.seconds.frontEnd += watch.lap();
    Verdict verdict = judge(run.speakers, {analysis.features.data(), analysis.frames});
    run.seconds.scoring += watch.lap();
    run.seconds.audio += static_cast<double>(samples.size()) / kSampleRate;
    run.frames += analysis.frames;
    analysis.magnitudes.clear();  // by far the most of it, and of no more use
    analysis.magnitudes.shrink_to_fit();
    run.outcomes.push_back({path, indexOf(run.speakers, speaker(path)), std::move(analysis), std::move(verdict)});
}

// Whether all recordings for it could be used.
bool runComparison(const FrontEnd& frontEnd, const fs::path& directory, Run& run) {
    const LabelledSet training = readSpeakers(frontEnd, directory, "reading for the comparison");
    int codewords = 0;
    for (const Speaker& each : run.speakers) codewords = std::max(codewords, each.codebook.size());
    codewords = std::max(codewords, kLeastCodewords);
    const VoiceFrames frames = voiceFrames(training.recordings);
    needFrames(directory, frames, codewords);
    std::vector<Heard> heard;
    for (const Outcome& outcome : run.outcomes) heard.push_back({&outcome.analysis, speaker(outcome.path)});
    Progress progress("comparing", comparisonSteps(codewords));
    run.comparison = compare(frames, heard, codewords, [&] { progress.step(); });
    return training.unusable == 0;
}

bool runCompression(const FrontEnd& frontEnd, const fs::path& directory, Run& run) {
    const LabelledSet training = readLabelled(frontEnd, directory, kStates, "reading for the compression");
    std::vector<std::size_t> recordings(kWords, 0);
    std::size_t frames = 0;
    for (const Labelled& each : training.recordings) {
        ++recordings[each.word];
        frames += static_cast<std::size_t>(each.analysis.frames);
    }
    for (int digit = 0; digit < kWords; ++digit) {
        if (recordings[digit] < kLeastRecordings) {
            throw InputError(directory, std::string("has too few usable recordings of the word ") + wordOf(digit));
        }
    }
    if (frames < kLeastFramesOfSplit) {
        throw InputError(directory, "has only " + std::to_string(frames) + " frames, where split codebooks need " +
                                        std::to_string(kLeastFramesOfSplit));
    }
    std::vector<Spoken> spoken;
    for (const Outcome& outcome : run.outcomes) {
        spoken.push_back({&outcome.analysis, spokenDigit(outcome.path), outcome.spoken});
    }
    Progress progress("compressing", compressionSteps());
    run.compression = compress(frontEnd, training.recordings, spoken, run.speakers, [&] { progress.step(); });
    return training.unusable == 0;
}

int runRecognition(const Arguments& arguments) {
    const FrontEnd frontEnd;
    const Speakers speakers = loadSpeakers(arguments.model);
    bool complete = true;
    const std::vector<Task> tasks = tasksOf(arguments.inputs, complete);
    Run run(speakers);
    std::vector<std::size_t> byItself;
    {
        Progress progress("recognising", static_cast<int>(tasks.size()));
        for (const Task& task : tasks) {
            try {
                add(frontEnd, task.path, run);
                if (task.byItself) byItself.push_back(run.outcomes.size() - 1);
            } catch (const InputError& error) {
                progress.interrupt();
                complain(error);
                ++run.unusable;
            }
            progress.step();
        }
    }
    if (!run.outcomes.empty()) {
        if (!arguments.compare.empty()) complete = runComparison(frontEnd, arguments.compare, run) && complete;
        if (!arguments.compress.empty()) complete = runCompression(frontEnd, arguments.compress, run) && complete;
    }
    for (const std::size_t i : byItself) printOne(stdout, run, run.outcomes[i]);
    print(stdout, run);
    if (!arguments.report.empty() && !run.outcomes.empty()) {
        writeReport(arguments.report, run);
        std::printf("report:     %s\n", arguments.report.c_str());
    }
    return complete && run.unusable == 0 && !run.outcomes.empty() ? kDone : kSomeFailed;
}

int runDemo(const fs::path& data, const fs::path& output) {
    std::error_code error;
    fs::create_directories(output, error);
    if (error) throw InputError(output, "cannot be made (" + error.message() + ")");
    const fs::path train = data / "train", model = output / "speakers.model";
    const int trained = runTraining(train, model, kCodewords);
    return std::max(trained, runRecognition(parse({"recognise", data / "test", "--model", model, "--report",
                                                   output / "report.html", "--compare", train, "--compress", train})));
}

int run(const std::vector<std::string>& words) {
    const Arguments arguments = parse(words);
    if (arguments.command == "train") return runTraining(arguments.inputs[0], arguments.model, arguments.codewords);
    if (arguments.command == "recognise") return runRecognition(arguments);
    return runDemo(arguments.inputs[0], arguments.output);
}

}  // namespace
}  // namespace digits

int main(int argc, char** argv) { return digits::runProgram(argc, argv, digits::kHelp, digits::run); }
