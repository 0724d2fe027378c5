// The call in plain memory.
#include "rehearsal.h"

#include <immintrin.h>

#include <cstring>

#include "trap.h"

namespace fuzz {
namespace {

constexpr std::size_t behind = 64;

}  // namespace

Rehearsal::Rehearsal(Planner& planner, const Case& made, const Call& call, int argument) : planner_(planner) {
    const Function& function = planner.table().at(call.function);
    const Argument& maker = function.arguments[argument];
    form_ = maker.forms.front();
    releasable_ = maker.verb == Verb::make && maker.memory < 0;
    std::vector<void*> pointers(call.values.size()), values(call.values.size());
    std::vector<std::vector<void*>> lists;
    for (std::size_t i = 0; i < call.values.size(); ++i) {
        const Value& value = call.values[i];
        values[i] = &pointers[i];
        if (function.arguments[i].role == Role::number) {
            values[i] = const_cast<std::byte*>(value.number.data());
        } else if (function.arguments[i].role == Role::array) {
            lists.emplace_back();
            for (std::size_t b = 0; b < value.blocks; ++b) {
                const Block& block = made.blocks[value.firstBlock + b];
                memory_.emplace_back(block.bytes + behind);
                if (block.bytes != 0) std::memcpy(memory_.back().data(), made.data.data() + block.image, block.bytes);
                lists.back().push_back(memory_.back().data());
            }
            if (value.blocks != 0) {
                pointers[i] = function.arguments[i].shape == Shape::list ? lists.back().data() : lists.back().front();
            }
        } else if (function.arguments[i].makes()) {
            memory_.emplace_back(value.bytes + behind);
            pointers[i] = memory_.back().data();
        } else {
            return;  // contexts that a maker uses are not there yet
        }
    }
    int status = -1;
    void* unused = nullptr;
    const auto address = planner.library().address(call.function);
    const unsigned usual = _mm_getcsr();
    _mm_setcsr((usual & ~_MM_ROUND_MASK) | made.rounding << roundingShift);
    const int signal =
        trap::guarded([&] { status = planner.callers().call(call.function, address, values.data(), &unused); });
    _mm_setcsr(usual);
    if (signal != 0 || status < 0) return;
    if (maker.verb == Verb::init) {
        context_ = pointers[argument];
    } else {
        std::memcpy(&context_, pointers[argument], sizeof context_);
    }
}

Rehearsal::~Rehearsal() {
    if (context_ == nullptr || !releasable_) return;
    const std::vector<Place>& releasers = planner_.table().releasers(form_);
    if (releasers.empty()) return;
    const Place& place = releasers.front();
    if (planner_.table().at(place.function).arguments.size() != 1) return;
    void* values[] = {&context_};
    void* unused = nullptr;
    trap::guarded(
        [&] { planner_.callers().call(place.function, planner_.library().address(place.function), values, &unused); });
}

}  // namespace fuzz
