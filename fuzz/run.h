// Makes the calls of a case with one library, in memory that is laid out for this run, and looks at what they left.
#pragma once

#include <cstddef>
#include <vector>

#include "caller.h"
#include "case.h"
#include "finding.h"
#include "memory.h"

namespace fuzz {

// What the calls of a run gave.
struct Results {
    Side side = Side::behind;
    std::vector<int> statuses;
    std::vector<std::byte> bytes;  // of the outputs, one behind the other
    unsigned allocations = 0;                            // of the run
    unsigned beforeTarget = 0, targetAllocations = 0;    // before and in the call that the case is about
    unsigned calls = 0;
    int targetStatus = 0;
};

struct Layout {
    Side side = Side::behind;
    bool inPlace = false;
    unsigned failAllocation = 0;  // the n-th of the run; 0: none
};

class Runner {
public:
    Runner(const Table& table, Callers& callers) : table_(table), callers_(callers) {}

    // What is wrong, if anything is. With expected results, others are wrong in the way that is given.
    Finding run(const Case& made, const Library& library, const Layout& layout, Results& results,
                const Results* expected, Wrong otherwise);

private:
    struct Live {
        void* pointer = nullptr;
        std::byte* memory = nullptr;  // of the caller's, if it is in such
        std::size_t bytes = 0;
    };

    bool wrong(Wrong what, int argument, std::string detail);
    bool call(const Call& call, bool& stop);
    void placeArguments(const Call& call);
    void placeArray(const Call& call, int i);
    void placeContext(const Call& call, int i);
    void* placePointers(std::vector<void*>& pointers, const Value& value, int i);
    void write(const Call& call, int i, std::size_t block, std::byte* at) const;
    bool checkArguments(const Call& call, int status, bool success);
    bool leftAlone(const Call& call, int i, int status);
    bool checkArray(const Call& call, int i, int status);
    bool checkInitial(const Call& call, int i, std::size_t b);
    bool compare(const Call& call, int i, std::size_t b, int status);
    bool checkMade(const Call& call, bool success, void* returned);
    bool releases(const Call& call) const;
    bool makesAny(const Function& function) const;
    int partnerOf(const Call& call, int i) const;

    const Table& table_;
    Callers& callers_;
    Arena arena_, lasting_;
    std::vector<Placed> placed_;         // by block of the case
    std::vector<Placed> cells_;          // by argument: pointers to rows, to contexts, and memory of contexts
    std::vector<Placed> lastingPlaced_;  // of the case
    std::vector<Live> contexts_;
    std::vector<void*> pointers_, values_, rows_;

    const Case* case_ = nullptr;
    const Function* function_ = nullptr;
    Layout layout_;
    Results* results_ = nullptr;
    const Results* expected_ = nullptr;
    std::size_t expectedAt_ = 0;
    Wrong otherwise_ = Wrong::nothing;
    bool keep_ = false;  // the outputs: others are held against them
    Finding finding_;
};

}  // namespace fuzz
