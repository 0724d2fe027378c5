// vornsr-fuzz: calls every function of the built libraries with random arguments.
#include <cstdio>
#include <exception>
#include <stdexcept>

#include "built.h"
#include "death.h"
#include "engine.h"
#include "options.h"
#include "session.h"
#include "trap.h"

int main(int argc, char** argv) {
    fuzz::Options options;
    if (!fuzz::read(argc, argv, options)) return 2;
    if (options.help) {
        fuzz::printHelp(stdout);
        return 0;
    }
    if (options.table.empty()) options.table = fuzz::builtTable();
    if (options.libraries.empty() && options.builds.empty()) options.builds.push_back(fuzz::builtFolder());
    try {
        for (const std::string& build : options.builds) {
            const std::vector<std::string> libraries = fuzz::librariesOf(build);
            if (libraries.empty()) throw std::runtime_error("no library in " + build);
            options.libraries.insert(options.libraries.end(), libraries.begin(), libraries.end());
        }
        fuzz::Engine engine(options.table, options.libraries);
        fuzz::printCaseAtDeath(engine);
        fuzz::trap::install(options.patience);
        fuzz::Session session(engine, options);
        return options.replay.empty() ? session.run() : session.replay(options.replay);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vornsr-fuzz: %s\n", error.what());
        return 2;
    }
}
