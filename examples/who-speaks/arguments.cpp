// The command line: its help, its words, and which of them go together.
#include "arguments.h"

#include "speakers.h"

namespace digits {
namespace {

const std::vector<Command>& commands() {
    static const std::vector<Command> kCommands{
        {"train", {"--model", "--codewords"}},
        {"recognise", {"--model", "--report", "--compare", "--compress"}},
        {"demo", {"--output"}},
    };
    return kCommands;
}

}  // namespace

const char* const kHelp =
    "who-speaks: recognises speakers by codebooks of their cepstra, and compresses cepstra\n"
    "\n"
    "  who-speaks train DIR --model FILE [--codewords N|choose]\n"
    "      Makes one codebook a speaker from the recordings in DIR and writes them to FILE. Each has N codewords, 128 "
    "if\n"
    "      not told otherwise; choose tries several sizes by cross-validation on DIR and takes the best one.\n"
    "  who-speaks recognise DIR-OR-WAV... --model FILE [--report HTML] [--compare DIR] [--compress DIR]\n"
    "      Recognises who speaks, prints accuracy, confusion matrix, distortions and speed, and writes a report with\n"
    "      pictures. A recording that is named by itself gets a line of its own.\n"
    "      --compare recognises once more by codebooks made from the recordings in DIR: by trees beside all words, in\n"
    "      16 bits beside float, and by codebooks of other sizes.\n"
    "      --compress quantises the cepstra by split codebooks made from the recordings in DIR, at several sizes, and\n"
    "      tells the bits a second, and how many digits and speakers are still recognised from what arrives.\n"
    "  who-speaks demo DATA --output DIR\n"
    "      Trains on DATA/train, recognises DATA/test with all comparisons, and writes DIR/speakers.model and\n"
    "      DIR/report.html.\n"
    "  who-speaks --help\n"
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
    arguments.compare = line.option("--compare");
    arguments.compress = line.option("--compress");
    arguments.output = line.option("--output");
    if (line.option("--codewords") != "choose") {
        arguments.codewords = line.number("--codewords", kCodewords, kLeastCodewords, kMostCodewords);
    }
    if (arguments.command == "train") {
        need(arguments.inputs.size() == 1, "train needs one directory of recordings");
        need(!arguments.model.empty(), "train needs --model FILE");
    } else if (arguments.command == "recognise") {
        need(!arguments.inputs.empty(), "recognise needs recordings or directories of them");
        need(!arguments.model.empty(), "recognise needs --model FILE");
    } else {
        need(arguments.inputs.size() == 1, "demo needs one directory that holds train and test");
        need(!arguments.output.empty(), "demo needs --output DIR");
    }
    return arguments;
}

}  // namespace digits
