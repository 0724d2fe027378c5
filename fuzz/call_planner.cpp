// The choice of each argument in its turn.
#include "call_planner.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "data.h"
#include "memory.h"

namespace fuzz {
namespace {

// Data of one case, and rows of one list: more would take too long.
constexpr std::size_t largestCase = std::size_t{96} << 10;
constexpr double mostRows = 400;
constexpr double mostElements = 1e9;  // sizes of broken arguments may be anything
constexpr int deepest = 3;
#ifdef VORNSR_SANITIZED
constexpr bool alignedOnly = true;  // to the size of a component: the sanitizer takes anything else for a mistake
#else
constexpr bool alignedOnly = false;
#endif

std::uint64_t bit(int argument) { return std::uint64_t{1} << argument; }

bool breakable(const Range& range) { return !range.any && !range.pieces.empty(); }

constexpr double noNumber = 0;  // what is reported of a context that could not be made

}  // namespace

bool CallPlanner::breakRules(const Function& function) {
    std::vector<Rule> all;
    for (std::size_t a = 0; a < function.arguments.size(); ++a) {
        const Argument& argument = function.arguments[a];
        const int i = static_cast<int>(a);
        if (argument.role == Role::number) {
            if (argument.tested && breakable(argument.range)) all.push_back({i, Break::number});
            continue;
        }
        if (argument.tested && !argument.nullable) all.push_back({i, Break::null});
        if (argument.role == Role::array) {
            if (argument.hasContent && argument.contentTested) all.push_back({i, Break::content});
            if (argument.noNull) all.push_back({i, Break::row});
        } else if (argument.formTested && !argument.makes() && !argument.count.present()) {
            all.push_back({i, Break::form});
        }
    }
    if (all.empty()) return false;
    const unsigned count = decisions_.rarely(3) ? 2 + decisions_.below(2) : 1;
    for (unsigned n = 0; n < count; ++n) {
        const Rule& rule = all[decisions_.below(static_cast<unsigned>(all.size()))];
        if (brokenArguments_ & bit(rule.argument)) continue;
        rules_.push_back(rule);
        brokenArguments_ |= bit(rule.argument);
    }
    return true;
}

bool CallPlanner::isBroken(int i, Break how) const {
    return std::any_of(rules_.begin(), rules_.end(),
                       [&](const Rule& rule) { return rule.argument == i && rule.how == how; });
}

bool CallPlanner::plan(int function, int argument, int context) {
    function_ = &table_.at(function);
    given_ = argument;
    givenContext_ = context;
    call_ = Call();
    call_.function = function;
    call_.broken = !rules_.empty();
    call_.values.resize(function_->arguments.size());
    if (planner_.library().address(function) == nullptr) return false;
    for (const Argument& one : function_->arguments) {
        if (one.memory >= 0) memories_ |= bit(one.memory);
    }
    for (const int i : function_->order) {
        if (!choose(i) || unknown_) return false;
    }
    // Which arrays coincide can be told when all are known.
    for (std::size_t i = 0; i < function_->arguments.size(); ++i) chooseSame(static_cast<int>(i));
    for (std::size_t i = 0; i < function_->arguments.size(); ++i) {
        if (this->argument(static_cast<int>(i)).makes() && !call_.broken && !madeContext(static_cast<int>(i)))
            return false;
    }
    if (function_->makesBlock && !call_.broken) {
        const double count = function_->blockCount.value(*this);
        if (unknown_ || count * static_cast<double>(function_->blockElement.bytes()) > static_cast<double>(largestCase))
            return false;
        call_.blockBytes = static_cast<std::size_t>(count) * function_->blockElement.bytes();
        call_.makes = static_cast<int>(case_.contexts.size());
        Context made;
        made.form = function_->blockForm;
        made.releasable = true;
        case_.contexts.push_back(made);
    }
    case_.calls.push_back(std::move(call_));
    return true;
}

bool CallPlanner::choose(int i) {
    call_.values[i].broken = brokenArguments_ & bit(i);
    if (isBroken(i, Break::null)) {
        call_.values[i].null = true;
        return true;
    }
    switch (argument(i).role) {
        case Role::number:
            return chooseNumber(i);
        case Role::array:
            return chooseArray(i);
        case Role::context:
            return chooseContext(i);
    }
    return false;
}

bool CallPlanner::chooseNumber(int i) {
    const Argument& argument = this->argument(i);
    const Element& element = argument.element;
    Value& value = call_.values[i];
    double chosen = 0;
    if (argument.range.any) {
        for (unsigned part = 0; part < element.parts; ++part) {
            if (element.isFloat()) {
                chosen = chooseFloat(element, decisions_);
            } else if (argument.size) {
                chosen = fuzz::chooseNumber(argument, {0, highest(element)}, sizeClass_, numbers_, decisions_);
            } else {
                chosen =
                    fuzz::chooseNumber(argument, {lowest(element), highest(element)}, sizeClass_, numbers_, decisions_);
            }
            setPart(element, value.number.data() + part * element.part, chosen);
        }
    } else {
        std::vector<Bounds> bounds = boundsOf(argument.range, element, *this);
        // A not-a-number that is allowed can hide from the call what is wrong with another number.
        if (call_.broken && !isBroken(i, Break::number)) {
            bounds.erase(std::remove_if(bounds.begin(), bounds.end(), [](const Bounds& one) { return one.notNumber; }),
                         bounds.end());
        }
        if (unknown_) return false;
        if (isBroken(i, Break::number)) {
            if (unclear(argument.range, *this) || !chooseOutside(element, bounds, decisions_, chosen)) return false;
        } else if (bounds.empty()) {
            // Behind a broken number there may be nothing left to choose from; the call is refused for that one.
            if (!call_.broken || !argument.tested) return false;
        } else {
            const Bounds& piece = bounds[decisions_.below(static_cast<unsigned>(bounds.size()))];
            chosen = fuzz::chooseNumber(argument, piece, sizeClass_, numbers_, decisions_);
        }
        for (unsigned part = 0; part < element.parts; ++part)
            setPart(element, value.number.data() + part * element.part, chosen);
    }
    value.asDouble = chosen;
    if (!element.isFloat()) numbers_.push_back(chosen);
    return true;
}

void CallPlanner::chooseDistance(Value& value, const Element& element) {
    // Mostly right at the unmapped page behind; half the time a little away from the one before, for other alignments.
    const auto distance = [&] {
        const unsigned bytes = decisions_.below(Arena::margin);
        return static_cast<std::uint8_t>(bytes % element.part != 0 && (alignedOnly || decisions_.below(8) != 7)
                                             ? bytes - bytes % element.part
                                             : bytes);
    };
    value.distance[0] = decisions_.rarely(4) ? distance() : 0;
    value.distance[1] = decisions_.rarely(2) ? distance() : 0;
}

bool CallPlanner::addBlock(Value& value, double elements, const Element& element) {
    elements = elements > 0 ? std::floor(elements) : 0;
    const double bytes = elements * static_cast<double>(element.bytes());
    if (bytes > static_cast<double>(std::min(largestCase, Arena::largestBlock))) return false;
    if (case_.data.size() + static_cast<std::size_t>(bytes) > largestCase) return false;
    Block block;
    block.bytes = static_cast<std::size_t>(bytes);
    block.image = case_.data.size();
    case_.data.resize(case_.data.size() + block.bytes, std::byte{pattern});
    case_.blocks.push_back(block);
    ++value.blocks;
    return true;
}

bool CallPlanner::chooseArray(int i) {
    const Argument& argument = this->argument(i);
    Value& value = call_.values[i];
    if (argument.nullable && decisions_.rarely(8)) {
        value.null = true;
        return true;
    }
    if (sizeIsBroken(i)) {
        value.nowhere = true;
        return true;
    }
    chooseDistance(value, argument.element);
    value.lasting = memories_ & bit(i);
    value.firstBlock = case_.blocks.size();
    const auto bytesOf = [&](double elements) {
        return static_cast<std::size_t>(std::min(std::max(0.0, elements), mostElements)) * argument.element.bytes();
    };
    if (argument.shape == Shape::list) {
        const double height = argument.height.value(*this);
        if (unknown_ || height > mostRows) return false;
        for (double row = 0; row < height; ++row) {
            if (!addBlock(value, argument.width.value(*this, row), argument.element)) return false;
        }
        if (isBroken(i, Break::row)) {
            if (value.blocks == 0) return false;
            value.nullRow = static_cast<int>(decisions_.below(static_cast<unsigned>(value.blocks)));
        }
    } else {
        double elements = argument.width.value(*this);
        value.widthBytes = bytesOf(elements);
        value.stepBytes = value.widthBytes;
        if (argument.shape == Shape::rows) {
            const double height = std::max(0.0, argument.height.value(*this)), step = argument.step.value(*this);
            if (height > 1e6 || step < elements) return false;
            value.height = static_cast<std::size_t>(height);
            value.stepBytes = bytesOf(step);
            elements = height < 1 ? 0 : (height - 1) * step + elements;
        }
        if (unknown_ || !addBlock(value, elements, argument.element)) return false;
    }
    if (unknown_) return false;
    if (argument.direction == Direction::in || argument.direction == Direction::inout) {
        if (!fillImage(i)) return false;
        if (isBroken(i, Break::content)) breakContent(i);
    }
    return true;
}

bool CallPlanner::fillImage(int i) {
    const Argument& argument = this->argument(i);
    const Element& element = argument.element;
    Value& value = call_.values[i];
    value.hasImage = true;
    const unsigned style = decisions_.below(styles);
    std::uint64_t seed = decisions_.below(65536);
    for (std::size_t b = 0; b < value.blocks; ++b) {
        const Block& block = case_.blocks[value.firstBlock + b];
        std::byte* at = case_.data.data() + block.image;
        if (argument.hasContent && (!argument.content.any || argument.order != Order::none)) {
            // Content rules are of flat arrays; a gap between rows would hold what is never looked at.
            const auto boundsAt = [&](std::size_t n) {
                if (argument.content.any) return std::vector<Bounds>{{lowest(element), highest(element)}};
                return boundsOf(argument.content, element, *this, static_cast<double>(n));
            };
            if (!fillContent(element, at, block.bytes / element.part, boundsAt, argument.order, style, seed))
                return false;
        } else if (value.stepBytes == value.widthBytes || argument.shape == Shape::list) {
            fillData(element, at, block.bytes / element.part, style, seed);
        } else {
            for (std::size_t row = 0; row < value.height; ++row) {
                fillData(element, at + row * value.stepBytes, value.widthBytes / element.part, style, seed + row);
            }
        }
        seed += 0x10001;
    }
    return !unknown_;
}

// One element is put outside the range of its place, or out of order with the one before it.
void CallPlanner::breakContent(int i) {
    const Argument& argument = this->argument(i);
    const Element& element = argument.element;
    const Value& value = call_.values[i];
    if (value.blocks == 0) return;
    const Block& block = case_.blocks[value.firstBlock];
    const std::size_t count = block.bytes / element.part;
    if (count == 0) {
        unknown_ = true;
        return;
    }
    std::byte* at = case_.data.data() + block.image;
    const std::size_t n = decisions_.below(static_cast<unsigned>(count));
    double chosen = 0;
    if (argument.order != Order::none && n > 0 && decisions_.below(2)) {
        const double before = partAt(element, at + (n - 1) * element.part);
        const double against = argument.order == Order::falling ? 1 : -1;
        chosen = argument.order == Order::strict && decisions_.below(2) ? before : before + against;
        if (chosen < lowest(element) || chosen > highest(element)) unknown_ = true;
    } else if (argument.content.any ||
               !chooseOutside(element, boundsOf(argument.content, element, *this, static_cast<double>(n)), decisions_,
                              chosen)) {
        unknown_ = true;
    }
    setPart(element, at + n * element.part, chosen);
}

void CallPlanner::chooseSame(int i) {
    const Argument& argument = this->argument(i);
    Value& value = call_.values[i];
    if (argument.same.empty() || call_.broken || value.null || value.nowhere) return;
    const unsigned chosen = decisions_.below(2 * static_cast<unsigned>(argument.same.size()));
    if (chosen < argument.same.size()) return;
    const int other = argument.same[chosen - argument.same.size()];
    const Value& theirs = call_.values[other];
    if (theirs.null || theirs.nowhere || theirs.blocks != value.blocks) return;
    if (this->argument(other).shape != argument.shape) return;
    if (argument.shape == Shape::rows && (theirs.stepBytes != value.stepBytes || theirs.widthBytes != value.widthBytes))
        return;
    for (const Value& one : call_.values) {
        if (one.same == other) return;
    }
    value.same = other;
    case_.inPlace = true;
    if (!value.hasImage) return;
    // What is both read and written starts as what it is the same as.
    for (std::size_t b = 0; b < value.blocks; ++b) {
        const Block& mine = case_.blocks[value.firstBlock + b];
        const Block& source = case_.blocks[theirs.firstBlock + b];
        std::memcpy(case_.data.data() + mine.image, case_.data.data() + source.image,
                    std::min(mine.bytes, source.bytes));
    }
}

bool CallPlanner::chooseContext(int i) {
    const Argument& argument = this->argument(i);
    Value& value = call_.values[i];
    if (argument.nullable && i != given_ && decisions_.rarely(8)) {
        value.null = true;
        return true;
    }
    if (sizeIsBroken(i)) {
        value.nowhere = true;
        return true;
    }
    if (argument.makes()) {
        chooseDistance(value, {Kind::natural, 1, 1});
        if (argument.verb == Verb::init) {
            const double bytes = argument.bytes.value(*this);
            if (unknown_ || !(bytes >= 0) || bytes > static_cast<double>(Arena::largestBlock)) return false;
            value.bytes = static_cast<std::size_t>(bytes);
        } else {
            value.distance = {};
        }
        return true;
    }
    double count = 1;
    if (argument.count.present()) {
        count = argument.count.value(*this);
        if (unknown_ || count > 32) return false;
    }
    const bool release = argument.verb == Verb::release;
    if (isBroken(i, Break::form)) {
        value.zeroed = true;
        // The context of another form, if there is one, or a block of zeros.
        std::vector<int> others;
        for (int form = 0; form < table_.forms(); ++form) {
            const bool mine = std::find(argument.forms.begin(), argument.forms.end(), form) != argument.forms.end();
            const auto ofType = [&](const Place& place) {
                return place.argument >= 0 && table_.at(place.function).arguments[place.argument].type == argument.type;
            };
            const auto& makers = table_.makers(form);
            if (!mine && std::any_of(makers.begin(), makers.end(), ofType)) others.push_back(form);
        }
        if (others.empty() || decisions_.below(2) == 0) return true;
        const int context = makeContext(others, false, false);
        if (context < 0) return false;
        value.zeroed = false;
        value.firstContext = case_.contextLists.size();
        value.contexts = 1;
        case_.contextLists.push_back(context);
        return true;
    }
    std::vector<int> chosen;
    for (double n = 0; n < count; ++n) {
        int context = -1;
        if (i == given_) {
            context = givenContext_;
        } else if (!chosen.empty() && decisions_.below(2)) {
            context = chosen[decisions_.below(static_cast<unsigned>(chosen.size()))];
        } else {
            context = makeContext(argument.forms, argument.verb == Verb::ready, release);
        }
        if (context < 0) return false;
        chosen.push_back(context);
        if (release && !call_.broken) case_.contexts[context].released = true;
        if (argument.verb == Verb::set && !call_.broken) case_.contexts[context].ready = true;
    }
    value.firstContext = case_.contextLists.size();
    value.contexts = chosen.size();
    case_.contextLists.insert(case_.contextLists.end(), chosen.begin(), chosen.end());
    return true;
}

int CallPlanner::makeContext(const std::vector<int>& forms, bool ready, bool releasable) {
    if (depth_ >= deepest || forms.empty()) return -1;
    const int form = forms[decisions_.below(static_cast<unsigned>(forms.size()))];
    std::vector<Place> makers = table_.makers(form);
    if (releasable) {
        makers.erase(std::remove_if(makers.begin(), makers.end(),
                                    [&](const Place& place) {
                                        if (place.argument < 0) return false;
                                        const Argument& maker = table_.at(place.function).arguments[place.argument];
                                        return maker.verb == Verb::init || maker.memory >= 0;
                                    }),
                     makers.end());
    }
    if (makers.empty()) return -1;
    const Place& place = makers[decisions_.below(static_cast<unsigned>(makers.size()))];
    CallPlanner maker(planner_, case_, decisions_, sizeClass_, depth_ + 1);
    if (!maker.plan(place.function, -1, -1)) return -1;
    const int context = case_.calls.back().makes;
    if (context < 0) return -1;
    if (ready && !case_.contexts[context].ready) {
        const std::vector<Place>& setters = table_.setters(form);
        if (setters.empty()) return -1;
        const Place& setter = setters[decisions_.below(static_cast<unsigned>(setters.size()))];
        CallPlanner set(planner_, case_, decisions_, sizeClass_, depth_ + 1);
        if (!set.plan(setter.function, setter.argument, context)) return -1;
    }
    for (unsigned uses = decisions_.below(3); uses > 0; --uses) {
        CallPlanner use(planner_, case_, decisions_, sizeClass_, depth_ + 1);
        if (!use.planUse(context, call_.function)) return -1;
    }
    return context;
}

// What later expressions ask of the context that this call makes.
bool CallPlanner::madeContext(int i) {
    const Argument& argument = this->argument(i);
    if (call_.values[i].null) return true;
    Context made;
    made.form = argument.forms.front();
    made.ready = !function_->unset;
    made.releasable = argument.verb == Verb::make && argument.memory < 0;
    for (const auto& [name, expression] : argument.fields) made.fields.emplace_back(name, expression.value(*this));
    rehearsal_.reset();
    if (unknown_) return false;
    call_.makes = static_cast<int>(case_.contexts.size());
    case_.contexts.push_back(std::move(made));
    return true;
}

bool CallPlanner::planUse(int context, int preferred) {
    const Context& used = case_.contexts[context];
    if (used.released) return true;
    const std::vector<Place>& users = table_.users(used.form);
    if (users.empty()) return true;
    const Place* place = nullptr;
    if (decisions_.below(2) == 0) {
        for (const Place& one : users) {
            if (one.function == preferred) place = &one;
        }
    }
    if (place == nullptr) place = &users[decisions_.below(static_cast<unsigned>(users.size()))];
    const Argument& argument = table_.at(place->function).arguments[place->argument];
    if (argument.verb == Verb::ready && !used.ready) return true;
    return plan(place->function, place->argument, context);
}

bool CallPlanner::planRelease(int context) {
    const Context& released = case_.contexts[context];
    if (released.released || !released.releasable) return true;
    const std::vector<Place>& releasers = table_.releasers(released.form);
    if (releasers.empty()) return true;
    const Place& place = releasers[decisions_.below(static_cast<unsigned>(releasers.size()))];
    return plan(place.function, place.argument, context);
}

double CallPlanner::number(int argument) const { return call_.values[argument].asDouble; }

double CallPlanner::element(int argument, double index) const {
    const Value& value = call_.values[argument];
    const Element& element = this->argument(argument).element;
    if (!value.hasImage || value.blocks == 0 || index < 0) return 0;
    const Block& block = case_.blocks[value.firstBlock];
    const std::size_t at = static_cast<std::size_t>(index) * element.bytes();
    return at + element.bytes() > block.bytes ? 0 : partAt(element, case_.data.data() + block.image + at);
}

double CallPlanner::total(int argument) const {
    const Value& value = call_.values[argument];
    const Element& element = this->argument(argument).element;
    if (!value.hasImage || value.blocks == 0) return 0;
    const Block& block = case_.blocks[value.firstBlock];
    double sum = 0;
    for (std::size_t at = 0; at < block.bytes; at += element.bytes())
        sum += partAt(element, case_.data.data() + block.image + at);
    return sum;
}

double CallPlanner::field(int argument, double index, int name) const {
    const Value& value = call_.values[argument];
    if (index < 0 || index >= static_cast<double>(value.contexts)) return 0;
    const Context& context = case_.contexts[case_.contextLists[value.firstContext + static_cast<std::size_t>(index)]];
    for (const auto& [field, number] : context.fields) {
        if (field == name) return number;
    }
    unknown_ = true;
    return 0;
}

double CallPlanner::reported(int function, int output, const std::vector<Given>& given) const {
    const Function& reporter = table_.at(function);
    const std::size_t count = reporter.arguments.size();
    std::vector<std::array<std::byte, 16>> numbers(count);
    std::vector<int> outputs(count);
    std::vector<void*> pointers(count), values(count);
    for (std::size_t i = 0; i < count; ++i) {
        pointers[i] = &outputs[i];
        values[i] = reporter.arguments[i].role == Role::number ? static_cast<void*>(numbers[i].data()) : &pointers[i];
    }
    for (const Given& one : given) {
        if (one.passed >= 0) {
            const Value& value = call_.values[one.passed];
            if (this->argument(one.passed).makes()) {
                if (!rehearsal_) rehearsal_ = std::make_unique<Rehearsal>(planner_, case_, call_, one.passed);
                pointers[one.argument] = rehearsal_->context();
                if (rehearsal_->context() == nullptr) return noNumber;
                continue;
            }
            if (value.blocks == 0) {
                unknown_ = true;
                return 0;
            }
            pointers[one.argument] = case_.data.data() + case_.blocks[value.firstBlock].image;
        } else {
            setPart(reporter.arguments[one.argument].element, numbers[one.argument].data(), one.value);
        }
    }
    void* unused = nullptr;
    const auto address = planner_.library().address(function);
    if (address == nullptr || planner_.callers().call(function, address, values.data(), &unused) < 0) {
        unknown_ = true;
        return 0;
    }
    return outputs[output];
}

}  // namespace fuzz
