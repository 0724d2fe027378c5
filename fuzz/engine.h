// Makes a case and holds every build, alignment and place against the first run of it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "decisions.h"
#include "planner.h"
#include "run.h"

namespace fuzz {

// What became of one case.
struct Outcome {
    bool planned = false;  // false: no arguments were found
    bool broken = false;
    bool success = false;  // the call that the case is about succeeded
    unsigned calls = 0;
    Finding finding;
};

class Engine {
public:
    // Throws std::runtime_error if the table or a library cannot be read, or they do not fit.
    Engine(const std::string& table, const std::vector<std::string>& libraries);

    Outcome check(int function, Decisions& decisions);
    // Lets each allocation of a valid case fail, whatever was decided.
    void failEachAllocation(bool each) { failEach_ = each; }

    const Table& table() const { return table_; }
    const std::vector<std::unique_ptr<Library>>& libraries() const { return libraries_; }
    const Case& lastCase() const { return case_; }
    // Names the function that is under test: for the death of the process.
    const std::string& current() const { return current_; }

private:
    Finding runAll(Outcome& outcome);
    bool addressesCount() const;
    Finding failAllocations(Outcome& outcome, unsigned allocations);
    Finding run(std::size_t library, const Layout& layout, Results& results, const Results* expected, Wrong otherwise,
                Outcome& outcome);

    Table table_;
    Callers callers_;
    std::vector<std::unique_ptr<Library>> libraries_;
    std::unique_ptr<Planner> planner_;
    std::unique_ptr<Runner> runner_;
    Case case_;
    Results first_[3], other_;  // of the first library, by layout
    std::string current_;
    bool failEach_ = false;
};

}  // namespace fuzz
