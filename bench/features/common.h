// What the benchmarks of features share: signals, and the lines of a comparison.
#pragma once

#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "plain/features.h"
#include "support/bench.h"
#include "vornsr.h"

namespace bench::features {

template <class T>
std::shared_ptr<T[]> signal(std::size_t len, double low, double high) {
    auto block = bench::buffer<T>(len);
    std::mt19937 generator(static_cast<unsigned>(len));
    std::uniform_real_distribution<double> uniform(low, high);
    for (std::size_t i = 0; i < len; ++i) block[i] = static_cast<T>(uniform(generator));
    return block;
}

struct Call {
    const char* peer;
    std::function<void()> run;
};

// All calls of a line write to the one result.
template <class T>
void compare(const std::string& name, const std::string& size, std::int64_t items, const std::shared_ptr<T>& result,
             const std::vector<Call>& calls) {
    for (const Call& call : calls) {
        bench::add(name, size, call.peer, items, [=, run = call.run] {
            run();
            bench::keep(result.get());
        });
    }
}

}  // namespace bench::features
