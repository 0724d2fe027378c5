// The command line: its help, its words, and which of them go together.
#include "arguments.h"

#include "train.h"

namespace digits {
namespace {

const std::vector<Command>& commands() {
    static const std::vector<Command> kCommands{
        {"train", {"--model", "--gaussians"}},
        {"recognise",
         {"--model", "--report", "--show", "--arithmetic", "--method", "--templates", "--shortlists", "--large"}},
        {"demo", {"--output"}},
    };
    return kCommands;
}

std::vector<Arithmetic> rivalsOfFloat(const std::string& name) {
    if (name.empty() || name == "float") return {};
    if (name == "scaled") return {Arithmetic::kScaled};
    if (name == "low") return {Arithmetic::kLow};
    if (name == "all") return {Arithmetic::kScaled, Arithmetic::kLow};
    throw UsageError("there is no arithmetic " + name + ": it is float, scaled, low or all");
}

Method methodOf(const std::string& name) {
    if (name.empty() || name == "mixtures") return Method::kMixtures;
    if (name == "templates") return Method::kTemplates;
    if (name == "both") return Method::kBoth;
    throw UsageError("there is no method " + name + ": it is mixtures, templates or both");
}

void checkRecognition(const Arguments& arguments, const CommandLine& line) {
    need(!arguments.inputs.empty(), "recognise needs recordings or directories of them");
    if (arguments.method == Method::kTemplates) {
        for (const char* option : {"--model", "--report", "--arithmetic", "--shortlists"}) {
            need(line.option(option).empty(), std::string(option) + " is of no use with --method templates");
        }
    } else {
        need(!arguments.model.empty(), "recognise needs --model FILE");
    }
    need(arguments.show.empty() || !arguments.report.empty(), "--show chooses a picture of --report FILE");
    need(arguments.large.empty() || !arguments.shortlists.empty(), "--large is the model of --shortlists DIR");
    if (arguments.method == Method::kMixtures) {
        need(arguments.templates.empty(), "--templates is of no use without --method templates or both");
    } else {
        need(!arguments.templates.empty(), "recognition by templates needs --templates DIR");
    }
}

}  // namespace

const char* const kHelp =
    "spoken-digits: recognises the spoken digits zero to nine\n"
    "\n"
    "  spoken-digits train DIR --model FILE [--gaussians N]\n"
    "      Makes one word model a digit from the recordings in DIR and writes them to FILE. Each of its states is a\n"
    "      mixture of N Gaussians, 6 if not told otherwise.\n"
    "  spoken-digits recognise DIR-OR-WAV... --model FILE [--report HTML] [--show WAV]\n"
    "                [--arithmetic float|scaled|low|all] [--method mixtures|templates|both] [--templates DIR]\n"
    "                [--shortlists DIR] [--large FILE]\n"
    "      Recognises recordings, prints accuracy, confusion matrix and speed, and writes a report with pictures.\n"
    "      A recording that is named by itself gets a line of its own. --show chooses the recording of the pictures.\n"
    "      --arithmetic recognises once more with 16-bit scores, and compares accuracy and speed with those in float.\n"
    "      --method templates needs no model: it compares with one recording in DIR a speaker and word, by time\n"
    "      warping. both does the one and the other, and sets them side by side.\n"
    "      --shortlists scores once more with the model of --large, or else that of --model: with all its Gaussians, "
    "and\n"
    "      with the few on shortlists of several lengths, which belong to a codebook of the frames in DIR.\n"
    "  spoken-digits demo DATA --output DIR\n"
    "      Trains a model and a large one on DATA/train, recognises DATA/test, and writes DIR/digits.model,\n"
    "      DIR/large.model and DIR/report.html, with all arithmetics, methods and shortlists compared.\n"
    "  spoken-digits --help\n"
    "\n"
    "Recordings are mono 16-bit WAV files of 8000, 11025, 16000, 22050, 32000, 44100 or 48000 samples a second, of\n"
    "which all but the first are brought to 8000. A name like 7_anna_3.wav tells the spoken digit and the speaker.\n"
    "Exit status: 0 all done, 1 some file could not be used (the others are still done), 2 wrong use.\n";

Arguments parse(const std::vector<std::string>& words) {
    const CommandLine line = parseWords(commands(), words);
    Arguments arguments;
    arguments.command = line.command;
    arguments.inputs = line.inputs;
    arguments.model = line.option("--model");
    arguments.report = line.option("--report");
    arguments.show = line.option("--show");
    arguments.output = line.option("--output");
    arguments.templates = line.option("--templates");
    arguments.shortlists = line.option("--shortlists");
    arguments.large = line.option("--large");
    arguments.gaussians = line.number("--gaussians", kGaussians, 1, kMostGaussians);
    arguments.method = methodOf(line.option("--method"));
    arguments.rivals = rivalsOfFloat(line.option("--arithmetic"));
    if (arguments.command == "train") {
        need(arguments.inputs.size() == 1, "train needs one directory of recordings");
        need(!arguments.model.empty(), "train needs --model FILE");
    } else if (arguments.command == "recognise") {
        checkRecognition(arguments, line);
    } else {
        need(arguments.inputs.size() == 1, "demo needs one directory that holds train and test");
        need(!arguments.output.empty(), "demo needs --output DIR");
    }
    return arguments;
}

}  // namespace digits
