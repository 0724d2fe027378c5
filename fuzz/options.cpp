// Reading the command line.
#include "options.h"

#include <fnmatch.h>

#include <algorithm>
#include <chrono>
#include <cstring>

namespace fuzz {

void printHelp(std::FILE* out) {
    std::fprintf(
        out,
        "vornsr-fuzz: calls every function with random arguments, kept and broken, and holds the builds against each "
        "other\n"
        "  --library PATH     a built library; may be given several times\n"
        "  --build FOLDER     the libraries of a build folder that this processor can run; may be given several times\n"
        "                     (default: those built beside this program)\n"
        "  --table PATH       what the functions ask for, from tools/extents.py --json (default: the one built with "
        "it)\n"
        "  --seconds N        stop after so long (default: 60, if no number of cases is given; 600 with --allocations)\n"
        "  --cases N          stop after so many cases\n"
        "  --function GLOB    only these functions; may be given several times\n"
        "  --except GLOB      not these\n"
        "  --seed N           the same cases again (default: by the clock, and printed)\n"
        "  --replay NAME:HEX  one case, as a finding printed it\n"
        "  --show             findings, or the replayed case, with arguments and data\n"
        "  --list             how often arguments are found for each function, and succeed\n"
        "  --allocations      only functions that allocate, and lets each of their allocations fail\n"
        "  --patience N       seconds after which a call counts as endless (default: 5)\n"
        "  --quiet            findings alone\n"
        "The exit status is 0 if nothing was found, 1 if something was, 2 if the options cannot be understood.\n");
}

bool Options::chosen(const std::string& function) const {
    const auto matches = [&](const std::string& glob) { return fnmatch(glob.c_str(), function.c_str(), 0) == 0; };
    if (!functions.empty() && std::none_of(functions.begin(), functions.end(), matches)) return false;
    return std::none_of(except.begin(), except.end(), matches);
}

bool read(int argc, char** argv, Options& options) {
    options.seed = static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch().count());
    bool seconds = false;
    for (int i = 1; i < argc; ++i) {
        const std::string option = argv[i];
        const auto is = [&](const char* name) { return option == name; };
        if (is("--show")) {
            options.show = true;
            continue;
        }
        if (is("--list")) {
            options.list = true;
            continue;
        }
        if (is("--allocations")) {
            options.allocations = true;
            continue;
        }
        if (is("--quiet")) {
            options.quiet = true;
            continue;
        }
        if (is("--help")) {
            options.help = true;
            continue;
        }
        if (i + 1 == argc) {
            std::fprintf(stderr, "vornsr-fuzz: %s is unknown, or lacks its value\n", argv[i]);
            return false;
        }
        const std::string value = argv[++i];
        try {
            if (is("--library")) {
                options.libraries.push_back(value);
            } else if (is("--build")) {
                options.builds.push_back(value);
            } else if (is("--table")) {
                options.table = value;
            } else if (is("--seconds")) {
                options.seconds = std::stod(value);
                seconds = true;
            } else if (is("--cases")) {
                options.cases = std::stoull(value);
            } else if (is("--function")) {
                options.functions.push_back(value);
            } else if (is("--except")) {
                options.except.push_back(value);
            } else if (is("--seed")) {
                options.seed = std::stoull(value);
            } else if (is("--replay")) {
                options.replay = value;
            } else if (is("--patience")) {
                options.patience = std::stod(value);
            } else {
                std::fprintf(stderr, "vornsr-fuzz: unknown option %s\n", option.c_str());
                return false;
            }
        } catch (const std::exception&) {
            std::fprintf(stderr, "vornsr-fuzz: %s is no number for %s\n", value.c_str(), option.c_str());
            return false;
        }
    }
    if (!seconds && options.cases == 0) options.seconds = options.allocations ? 600 : 60;
    return true;
}

}  // namespace fuzz
