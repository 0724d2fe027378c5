// The runs of a case.
#include "engine.h"

#include <algorithm>
#include <stdexcept>

#include "allocation.h"

namespace fuzz {
namespace {

constexpr unsigned mostFailures = 8;  // of one case, if not all were asked for

}  // namespace

Engine::Engine(const std::string& table, const std::vector<std::string>& libraries) : table_(table), callers_(table_) {
    for (const std::string& path : libraries) libraries_.push_back(std::make_unique<Library>(path, table_));
    if (libraries_.empty()) throw std::runtime_error("no library");
    for (std::size_t i = 0; i < table_.functions().size(); ++i) {
        for (const auto& library : libraries_) {
            if (library->address(static_cast<int>(i)) == nullptr) {
                throw std::runtime_error(library->path() + " has no " + table_.at(static_cast<int>(i)).name);
            }
        }
    }
    planner_ = std::make_unique<Planner>(table_, callers_, *libraries_.front());
    runner_ = std::make_unique<Runner>(table_, callers_);
}

Outcome Engine::check(int function, Decisions& decisions) {
    Outcome outcome;
    outcome.planned = planner_->plan(function, decisions, case_);
    if (!outcome.planned) return outcome;
    outcome.broken = case_.broken;
    outcome.finding = runAll(outcome);
    return outcome;
}

Finding Engine::run(std::size_t library, const Layout& layout, Results& results, const Results* expected,
                    Wrong otherwise, Outcome& outcome) {
    Finding finding = runner_->run(case_, *libraries_[library], layout, results, expected, otherwise);
    outcome.calls += results.calls;
    if (finding) {
        finding.where =
            libraries_[library]->path() + (layout.side == Side::behind ? ", unmapped behind" : ", unmapped before");
        if (layout.inPlace) finding.where += ", in place";
        if (layout.failAllocation != 0)
            finding.where += ", allocation " + std::to_string(layout.failAllocation) + " fails";
    }
    return finding;
}

Finding Engine::runAll(Outcome& outcome) {
    if (Finding finding = run(0, {Side::behind}, first_, nullptr, Wrong::nothing, outcome)) return finding;
    outcome.success = first_.targetStatus >= 0;
    for (std::size_t library = 0; library < libraries_.size(); ++library) {
        if (library != 0) {
            if (Finding finding = run(library, {Side::behind}, other_, &first_, Wrong::builds, outcome)) return finding;
        }
        if (Finding finding = run(library, {Side::before}, other_, &first_, Wrong::alignment, outcome)) return finding;
        if (case_.inPlace) {
            const Layout layout = {library % 2 == 0 ? Side::behind : Side::before, true};
            if (Finding finding = run(library, layout, other_, &first_, Wrong::inPlace, outcome)) return finding;
        }
    }
    return failAllocations(outcome, first_.allocations);
}

Finding Engine::failAllocations(Outcome& outcome, unsigned allocations) {
    if (!allocation::counted || allocations == 0 || case_.broken) return Finding();
    if (!failEach_ && case_.failAllocation == 0) return Finding();
    const bool all = failEach_ || allocations <= mostFailures;
    const unsigned first = all ? 1 : 1 + case_.failAllocation % allocations;
    const unsigned last = all ? allocations : std::min(allocations, first + mostFailures - 1);
    for (unsigned n = first; n <= last; ++n) {
        const std::size_t library = n % libraries_.size();
        if (Finding finding = run(library, {Side::behind, false, n}, other_, nullptr, Wrong::nothing, outcome))
            return finding;
    }
    return Finding();
}

}  // namespace fuzz
