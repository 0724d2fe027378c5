// Makes a case from decisions.
#pragma once

#include "caller.h"
#include "case.h"
#include "decisions.h"

namespace fuzz {

class Planner {
public:
    // The library answers what sizes functions report.
    Planner(const Table& table, Callers& callers, const Library& library)
        : table_(table), callers_(callers), library_(library) {}

    // False if no arguments were found that keep the rules and are not too large.
    bool plan(int function, Decisions& decisions, Case& made);

    const Table& table() const { return table_; }
    Callers& callers() { return callers_; }
    const Library& library() const { return library_; }

private:
    bool attempt(int function, int sizeClass, Decisions& decisions, Case& made);

    const Table& table_;
    Callers& callers_;
    const Library& library_;
};

}  // namespace fuzz
