// Case after case: which function is next, how large, what was found, and the table at the end.
#pragma once

#include <chrono>
#include <map>
#include <set>
#include <utility>

#include "engine.h"
#include "options.h"

namespace fuzz {

class Session {
public:
    Session(Engine& engine, const Options& options);
    // The exit status.
    int run();
    int replay(const std::string& line);

private:
    struct Record {
        std::uint64_t cases = 0, unplanned = 0, successes = 0, errors = 0;  // errors: of broken arguments
        std::uint64_t failures = 0;                                         // of its allocations, that were made to
        double microseconds = 0;                                            // a case, of late
        unsigned largest = 0;                                               // size class
    };

    void oneCase(int function);
    void found(int function, const std::vector<std::uint8_t>& bytes, const Finding& finding);
    void progress();
    int summary();

    Engine& engine_;
    const Options& options_;
    std::vector<int> functions_;
    std::set<int> done_;  // functions that did not end once, or whose allocations have failed often enough
    std::vector<Record> records_;
    std::set<std::pair<int, Wrong>> found_;
    double longCase_ = 0;
    std::uint64_t cases_ = 0, calls_ = 0, random_ = 0;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
    bool terminal_ = false;
};

}  // namespace fuzz
