// vornsr-fuzz-coverage: the same engine, with the decisions of libFuzzer, which is led by the coverage of the library.
// The first two bytes choose the function. A finding is printed as vornsr-fuzz prints it, and ends the process.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "built.h"
#include "death.h"
#include "engine.h"
#include "report.h"

namespace {

fuzz::Engine& engine() {
    static fuzz::Engine* made = nullptr;
    if (made == nullptr) {
        try {
            made = new fuzz::Engine(fuzz::builtTable(), fuzz::builtLibraries());
        } catch (const std::exception& error) {
            std::fprintf(stderr, "vornsr-fuzz-coverage: %s\n", error.what());
            std::exit(2);
        }
        fuzz::printCaseAtDeath(*made);
    }
    return *made;
}

}  // namespace

// The library is loaded here, so that its counters are known before the first case.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    engine();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 3) return 0;
    fuzz::Engine& tested = engine();
    const int function = static_cast<int>((data[0] | data[1] << 8) % tested.table().functions().size());
    fuzz::Decisions decisions;
    decisions.replay({data + 2, data + size});
    const fuzz::Outcome outcome = tested.check(function, decisions);
    if (outcome.finding) {
        std::fprintf(stderr, "%s\n", fuzz::lineOf(tested.table(), outcome.finding).c_str());
        fuzz::show(stderr, tested.table(), tested.lastCase());
        fuzz::show(stderr, tested.table(), outcome.finding);
        std::abort();  // its line is printed by the sanitizer's last words
    }
    return 0;
}
