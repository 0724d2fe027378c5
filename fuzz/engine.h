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
    unsigned failed = 0;  // allocations of the call that the case is about which were made to fail
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
    // What is being checked, for the last words of a process that dies of it; null in between.
    const Decisions* deciding() const { return deciding_; }
    int function() const { return case_.function; }

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
    const Decisions* deciding_ = nullptr;
    bool failEach_ = false;
};

}  // namespace fuzz
