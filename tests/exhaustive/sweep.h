// Sweeps over all 2^32 single-precision numbers, in slices of neighbouring bit patterns that threads share.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

namespace test {

inline constexpr std::uint64_t sliceLength = std::uint64_t{1} << 24;
inline constexpr std::size_t slices = (std::uint64_t{1} << 32) / sliceLength;

// Runs run(slice) for every slice.
template <class Run>
void eachSlice(const Run& run) {
    std::vector<std::thread> threads;
    const unsigned count = std::max(2u, std::thread::hardware_concurrency());
    for (unsigned t = 0; t < count; ++t) {
        threads.emplace_back([&run, t, count] {
            for (std::size_t slice = t; slice < slices; slice += count) run(slice);
        });
    }
    for (std::thread& thread : threads) thread.join();
}

// Why this run of the tests leaves the sweeps out; null where it does not.
inline const char* whyNotSweep() {
#ifdef VORNSR_SANITIZED
    return "four thousand million calls are too many under a sanitizer";
#endif
    const char* guard = std::getenv("VORNSR_GUARD");
    if (guard != nullptr && std::string(guard) == "before") return "no guarded buffers here: one run is enough";
    return nullptr;
}

// Whether this run measures accuracies. The digest of all results shows that every other build has the same ones.
inline bool measuresAccuracy() {
    const char* processor = std::getenv("VORNSR_PROCESSOR");
    const char* compiler = std::getenv("VORNSR_COMPILER");
    return (processor == nullptr || std::string(processor) == "m7") &&
           (compiler == nullptr || std::string(compiler) == "GNU");
}

}  // namespace test
