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
    deciding_ = &decisions;
    outcome.planned = planner_->plan(function, decisions, case_);
    if (outcome.planned) {
        outcome.broken = case_.broken;
        outcome.finding = runAll(outcome);
    }
    if (!outcome.finding) deciding_ = nullptr;
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

// Do results of the case depend on addresses, as some functions say?
bool Engine::addressesCount() const {
    return std::any_of(case_.calls.begin(), case_.calls.end(),
                       [&](const Call& call) { return table_.at(call.function).address; });
}

// The first library first, in each layout; then the others, which have to give the same in the same layout.
Finding Engine::runAll(Outcome& outcome) {
    const Layout layouts[] = {
        {Side::behind}, {Side::before}, {case_.failAllocation % 2 == 0 ? Side::behind : Side::before, true}};
    const Wrong differs[] = {Wrong::nothing, Wrong::alignment, Wrong::inPlace};
    const std::size_t count = case_.inPlace ? 3 : 2;
    const bool addresses = addressesCount();
    for (std::size_t layout = 0; layout < count; ++layout) {
        const Results* expected = layout == 0 || addresses ? nullptr : &first_[0];
        if (Finding finding = run(0, layouts[layout], first_[layout], expected, differs[layout], outcome))
            return finding;
        outcome.success = first_[0].targetStatus >= 0;
    }
    for (std::size_t library = 1; library < libraries_.size(); ++library) {
        for (std::size_t layout = 0; layout < count; ++layout) {
            if (Finding finding = run(library, layouts[layout], other_, &first_[layout], Wrong::builds, outcome))
                return finding;
        }
    }
    return failAllocations(outcome, first_[0].allocations);
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
        const unsigned before = first_[0].beforeTarget;
        outcome.failed += n > before && n <= before + first_[0].targetAllocations;
    }
    return Finding();
}

}  // namespace fuzz
