// The order of a case: what the call needs is made, used a few times, given to the call, used again and released.
#include "planner.h"

#include <algorithm>
#include <cmath>

#include "call_planner.h"
#include "numbers.h"

namespace fuzz {

void Case::clear() {
    broken = inPlace = false;
    rounding = failAllocation = 0;
    calls.clear();
    target = 0;
    blocks.clear();
    contexts.clear();
    contextLists.clear();
    data.clear();
}

bool Planner::plan(int function, Decisions& decisions, Case& made) {
    made.function = function;
    int sizeClass = static_cast<int>(decisions.below(sizeClasses));
    for (int tries = 0; tries < 6; ++tries) {
        made.clear();
        if (attempt(function, sizeClass, decisions, made)) return true;
        sizeClass = std::max(0, sizeClass - 2);
    }
    return false;
}

bool Planner::attempt(int function, int sizeClass, Decisions& decisions, Case& made) {
    const Function& target = table_.at(function);
    made.broken = decisions.rarely(4);
    made.rounding = decisions.rarely(8) ? 1 + decisions.below(3) : 0;
    made.failAllocation = decisions.rarely(6) ? 1 + decisions.below(255) : 0;
    CallPlanner planner(*this, made, decisions, sizeClass, 0);
    if (made.broken && !planner.breakRules(target)) made.broken = false;
    if (!planner.plan(function, -1, -1)) return false;
    made.target = made.calls.size() - 1;

    // The contexts of the call live on, save if it was refused or has released them.
    if (!made.broken) {
        const std::size_t contexts = made.contexts.size();
        for (std::size_t context = 0; context < contexts; ++context) {
            for (unsigned more = decisions.below(3); more > 0; --more) {
                CallPlanner use(*this, made, decisions, sizeClass, 1);
                if (!use.planUse(static_cast<int>(context), function)) return false;
            }
        }
    }
    for (std::size_t context = 0; context < made.contexts.size(); ++context) {
        CallPlanner release(*this, made, decisions, sizeClass, 1);
        if (!release.planRelease(static_cast<int>(context))) return false;
    }
    return true;
}

}  // namespace fuzz
