// Decides the arguments of one call, and plans the calls that make the contexts it needs.
#pragma once

#include <memory>

#include "planner.h"
#include "rehearsal.h"

namespace fuzz {

class CallPlanner final : public Scope {
public:
    CallPlanner(Planner& planner, Case& made, Decisions& decisions, int sizeClass, int depth)
        : planner_(planner),
          table_(planner.table()),
          case_(made),
          decisions_(decisions),
          sizeClass_(sizeClass),
          depth_(depth) {}

    // Chooses the rules of the function that this call is to break; false if it has none that it tests.
    bool breakRules(const Function& function);
    // The call, with this context at that argument (-1: all are made).
    bool plan(int function, int argument, int context);
    // A call that uses the context, preferably of that function.
    bool planUse(int context, int preferred);
    // Its release, if it can be and has not been.
    bool planRelease(int context);

    double number(int argument) const override;
    double element(int argument, double index) const override;
    double total(int argument) const override;
    double field(int argument, double index, int name) const override;
    double reported(int function, int output, const std::vector<Given>& given) const override;

private:
    enum class Break : std::uint8_t { none, null, number, content, row, form };
    struct Rule {
        int argument;
        Break how;
    };

    const Argument& argument(int i) const { return function_->arguments[i]; }
    bool choose(int i);
    bool chooseNumber(int i);
    bool chooseArray(int i);
    bool chooseContext(int i);
    bool addBlock(Value& value, double elements, const Element& element);
    bool fillImage(int i);
    void breakContent(int i);
    void chooseSame(int i);
    void chooseDistance(Value& value, const Element& element);
    // A context of one of the forms, made by a call of its own and used a little; -1 if none can be made.
    int makeContext(const std::vector<int>& forms, bool ready, bool releasable);
    bool madeContext(int i);
    bool sizeIsBroken(int i) const { return argument(i).sizeNeeds & brokenArguments_; }
    bool isBroken(int i, Break how) const;

    Planner& planner_;
    const Table& table_;
    Case& case_;
    Decisions& decisions_;
    int sizeClass_;
    int depth_;

    const Function* function_ = nullptr;
    int given_ = -1, givenContext_ = -1;
    Call call_;
    std::vector<Rule> rules_;
    std::uint64_t brokenArguments_ = 0;
    std::uint64_t memories_ = 0;  // arrays that a context is made in
    std::vector<double> numbers_;
    mutable std::unique_ptr<Rehearsal> rehearsal_;
    mutable bool unknown_ = false;  // an expression could not be evaluated
};

}  // namespace fuzz
