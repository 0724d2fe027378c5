// Starts a test program, and makes sure that it tests the library it was told to test, on a processor that can run it.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "vornsr/frame.h"

namespace {

bool processorRuns(const std::string& processor) {
    if (processor == "x86-64-v4") {
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
               __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl") &&
               __builtin_cpu_supports("avx512cd");
    }
    if (processor == "x86-64-v3") {
        return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi2") && __builtin_cpu_supports("fma");
    }
    return true;
}

// Before the initialisers of any test: those of the programs that are compiled for a processor need it.
__attribute__((constructor(101))) void skipWhatThisProcessorCannotRun() {
    __builtin_cpu_init();
    const char* processor = std::getenv("VORNSR_PROCESSOR");
    if (processor != nullptr && !processorRuns(processor)) {
        std::printf("skipped: this processor cannot run the %s build\n", processor);
        std::fflush(stdout);
        std::_Exit(77);  // what the test driver counts as a skip
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (const char* wanted = std::getenv("VORNSR_TEST_LIBRARY")) {
        Dl_info loaded;
        char actual[PATH_MAX], expected[PATH_MAX];
        if (dladdr(reinterpret_cast<const void*>(vornsrGetLibVersion()), &loaded) == 0 ||
            realpath(loaded.dli_fname, actual) == nullptr || realpath(wanted, expected) == nullptr ||
            std::strcmp(actual, expected) != 0) {
            std::fprintf(stderr, "wrong library: %s instead of %s\n", loaded.dli_fname, wanted);
            return 1;
        }
    }
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
