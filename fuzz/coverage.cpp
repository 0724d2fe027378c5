// vornsr-fuzz-coverage: the same engine, with the decisions of libFuzzer, which is led by the coverage of the library.
// The first two bytes choose the function. A finding is printed as vornsr-fuzz prints it, and ends the process. Another
// table and another library can be named in the environment: VORNSR_FUZZ_TABLE and VORNSR_FUZZ_LIBRARY.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>

#include "built.h"
#include "engine.h"
#include "report.h"

namespace {

// Single inputs are being run again, as libFuzzer keeps them: each is told as vornsr-fuzz would know it.
bool announced = false;

fuzz::Engine& engine() {
    static fuzz::Engine* made = nullptr;
    if (made == nullptr) {
        try {
            const char* table = std::getenv("VORNSR_FUZZ_TABLE");
            const char* library = std::getenv("VORNSR_FUZZ_LIBRARY");
            made = new fuzz::Engine(
                table != nullptr ? table : fuzz::builtTable(),
                library != nullptr ? std::vector<std::string>{library} : fuzz::librariesOf(fuzz::builtFolder()));
        } catch (const std::exception& error) {
            std::fprintf(stderr, "vornsr-fuzz-coverage: %s\n", error.what());
            std::exit(2);
        }
    }
    return *made;
}

}  // namespace

// The library is loaded here, so that its counters are known before the first case.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    engine();
    for (int i = 1; i < *argc; ++i) {
        const char* argument = (*argv)[i];
        announced = announced || (argument[0] != '-' && std::filesystem::is_regular_file(argument));
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Engine& tested = engine();
    const std::size_t chosen = size < 2 ? 0 : data[0] | data[1] << 8;
    const int function = static_cast<int>(chosen % tested.table().functions().size());
    fuzz::Decisions decisions;
    decisions.replay(size < 2 ? std::vector<std::uint8_t>() : std::vector<std::uint8_t>(data + 2, data + size));
    const auto replay = [&](const std::vector<std::uint8_t>& bytes) {
        std::fprintf(stderr, "  vornsr-fuzz --replay %s\n", fuzz::replayOf(tested.table(), function, bytes).c_str());
    };
    if (announced && size >= 2) replay({data + 2, data + size});
    const fuzz::Outcome outcome = tested.check(function, decisions);
    if (outcome.finding) {
        std::fprintf(stderr, "%s\n", fuzz::lineOf(tested.table(), outcome.finding).c_str());
        fuzz::show(stderr, tested.table(), tested.lastCase());
        fuzz::show(stderr, tested.table(), outcome.finding);
        replay(decisions.used());
        std::abort();
    }
    return 0;
}
