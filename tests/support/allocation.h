// Allocation failure on demand: the library's malloc is the test program's own.
#pragma once

namespace test {

// While it lives, the n-th call of malloc on this thread (counted from 1) returns null. With n = 0 it only counts.
class FailAllocation {
public:
    explicit FailAllocation(int n);
    ~FailAllocation();
    FailAllocation(const FailAllocation&) = delete;
    FailAllocation& operator=(const FailAllocation&) = delete;

    int calls() const;        // calls of malloc so far
    int outstanding() const;  // blocks obtained in this scope and not freed yet

    // False under sanitizers, whose allocator stands in the place of ours: skip the test then.
    static bool available();
};

}  // namespace test
