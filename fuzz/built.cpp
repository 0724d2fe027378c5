// The paths that the build put in.
#include "built.h"

namespace fuzz {
namespace {

struct Built {
    const char* processor;
    const char* path;
};

bool processorRuns(const std::string& processor) {
    __builtin_cpu_init();
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

}  // namespace

std::string builtTable() { return VORNSR_FUZZ_TABLE; }

std::vector<std::string> builtLibraries() {
    static constexpr Built all[] = {VORNSR_FUZZ_LIBRARIES};
    std::vector<std::string> libraries;
    for (const Built& one : all) {
        if (processorRuns(one.processor)) libraries.push_back(one.path);
    }
    return libraries;
}

}  // namespace fuzz
