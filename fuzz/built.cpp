// The paths that the build put in, and where libraries stand in a build folder.
#include "built.h"

#include <filesystem>

namespace fuzz {
namespace {

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

std::string builtFolder() { return VORNSR_FUZZ_BUILD; }

std::vector<std::string> librariesOf(const std::string& folder) {
    std::vector<std::string> libraries;
    for (const char* processor : {"m7", "x86-64-v3", "x86-64-v4"}) {
        const std::string path = folder + "/lib/" + processor + "/libvornsrm7.so.5.1";
        if (processorRuns(processor) && std::filesystem::exists(path)) libraries.push_back(path);
    }
    return libraries;
}

}  // namespace fuzz
