// The last words of a process that a sanitizer ends.
#include "death.h"

#include <cstdio>

#include "report.h"

#ifdef VORNSR_SANITIZED
extern "C" void __sanitizer_set_death_callback(void (*callback)());
#endif

namespace fuzz {
namespace {

[[maybe_unused]] const Engine* dying = nullptr;

[[maybe_unused]] void printCase() {
    if (dying == nullptr || dying->deciding() == nullptr) return;
    std::fprintf(stderr, "  vornsr-fuzz --replay %s\n",
                 replayOf(dying->table(), dying->function(), dying->deciding()->used()).c_str());
}

}  // namespace

void printCaseAtDeath([[maybe_unused]] const Engine& engine) {
#ifdef VORNSR_SANITIZED
    dying = &engine;
    __sanitizer_set_death_callback(printCase);
#endif
}

}  // namespace fuzz
