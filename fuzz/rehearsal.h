// Makes the context of a planned call beforehand, for what only the context itself can tell of its sizes.
#pragma once

#include "planner.h"

namespace fuzz {

class Rehearsal {
public:
    Rehearsal(Planner& planner, const Case& made, const Call& call, int argument);
    ~Rehearsal();
    Rehearsal(const Rehearsal&) = delete;
    Rehearsal& operator=(const Rehearsal&) = delete;

    void* context() const { return context_; }  // null if the call refused

private:
    Planner& planner_;
    int form_;
    bool releasable_;
    void* context_ = nullptr;
    std::vector<std::vector<std::byte>> memory_;
};

}  // namespace fuzz
