// One run of a case.
#include "run.h"

#include <immintrin.h>

#include <algorithm>
#include <cstring>

#include "allocation.h"
#include "trap.h"

namespace fuzz {
namespace {

constexpr std::size_t zeroedBytes = 4096;
constexpr unsigned exceptionFlags = 0x3F;

bool allAre(const std::byte* at, std::size_t bytes, unsigned char value) {
    return bytes == 0 || (at[0] == std::byte{value} && std::memcmp(at, at + 1, bytes - 1) == 0);
}

}  // namespace

Finding Runner::run(const Case& made, const Library& library, const Layout& layout, Results& results,
                    const Results* expected, Wrong otherwise) {
    case_ = &made;
    layout_ = layout;
    results_ = &results;
    expected_ = expected;
    expectedAt_ = 0;
    otherwise_ = otherwise;
    keep_ = otherwise != Wrong::builds && layout.failAllocation == 0;
    finding_ = Finding();
    results.side = layout.side;
    results.statuses.clear();
    results.bytes.clear();
    results.calls = results.beforeTarget = results.targetAllocations = 0;
    lasting_.clear();
    lastingPlaced_.clear();
    contexts_.assign(made.contexts.size(), Live());
    if (placed_.size() < made.blocks.size()) placed_.resize(made.blocks.size());
    allocation::reset(layout.failAllocation);

    bool stop = false;
    for (const Call& one : made.calls) {
        if (stop && !releases(one)) continue;
        const auto address = library.address(one.function);
        if (address == nullptr) continue;
        function_ = &table_.at(one.function);
        placeArguments(one);
        void* returned = nullptr;
        int status = 0;
        const unsigned usual = _mm_getcsr();
        const unsigned mode = (usual & ~_MM_ROUND_MASK) | made.rounding << roundingShift;
        const int liveBefore = allocation::live;
        const unsigned madeBefore = allocation::made;
        const bool failedBefore = allocation::failed();
        allocation::watching = true;
        _mm_setcsr(mode);
        const int signal =
            trap::guarded([&] { status = callers_.call(one.function, address, values_.data(), &returned); });
        const unsigned left = _mm_getcsr();
        _mm_setcsr(usual);
        allocation::watching = false;
        ++results.calls;
        finding_.function = one.function;
        if (signal != 0) {
            wrong(signal == trap::hang ? Wrong::hang : Wrong::crash, -1, trap::nameOf(signal));
            return finding_;
        }
        if (((mode ^ left) & ~exceptionFlags) != 0) {
            wrong(Wrong::mode, -1, "control bits of the vector unit");
            return finding_;
        }
        const unsigned taken = allocation::made - madeBefore;
        if (taken != 0 && !function_->memory) {
            wrong(Wrong::allocates, -1, std::to_string(taken) + " blocks");
            return finding_;
        }
        bool success = function_->result == Result::pointer ? returned != nullptr : status >= 0;
        const bool failedNow = allocation::failed() && !failedBefore;
        if (&one == &made.calls[made.target]) {
            results.targetStatus = success ? status : std::min(status, -1);
            results.beforeTarget = madeBefore;
            results.targetAllocations = taken;
        }
        results.statuses.push_back(status);
        if (failedNow) {
            if (success && !function_->shortage) {
                wrong(Wrong::allocationIgnored, -1,
                      "allocation " + std::to_string(layout.failAllocation) + " of the case failed, status " +
                          std::to_string(status));
                return finding_;
            }
            success = false;
        } else if (one.broken) {
            if (success && function_->result != Result::nothing) {
                wrong(Wrong::accepted, -1, table_.statusName(status));
                return finding_;
            }
        } else if (!success && !function_->mayGive(status)) {
            wrong(Wrong::refused, -1, function_->result == Result::pointer ? "null" : table_.statusName(status));
            return finding_;
        }
        if (expected_ != nullptr && (results.statuses.size() > expected_->statuses.size() ||
                                     expected_->statuses[results.statuses.size() - 1] != status)) {
            const std::size_t n = results.statuses.size() - 1;
            wrong(otherwise_, -1,
                  table_.statusName(status) + " and " +
                      (n < expected_->statuses.size() ? table_.statusName(expected_->statuses[n]) : "no call"));
            return finding_;
        }
        if (!checkArguments(one, status, success)) return finding_;
        if (allocation::counted && allocation::live != liveBefore &&
            !(success && (makesAny(*function_) || releases(one))) &&
            !(one.makes >= 0 && contexts_[one.makes].pointer != nullptr)) {
            wrong(Wrong::leak, -1, std::to_string(allocation::live - liveBefore) + " blocks more than before the call");
            return finding_;
        }
        if (!checkMade(one, success && !one.broken, returned)) return finding_;
        if (failedNow || (!success && !one.broken && makesAny(*function_))) stop = true;
    }
    results.allocations = allocation::made;
    for (const Placed& placed : lastingPlaced_) {
        if (!placed.surroundingsUntouched()) {
            finding_.function = made.function;
            wrong(Wrong::outside, -1, "around the memory of a context");
            return finding_;
        }
    }
    if (allocation::counted && allocation::live != 0) {
        finding_.function = made.function;
        wrong(Wrong::leak, -1, std::to_string(allocation::live) + " blocks at the end");
        return finding_;
    }
    return Finding();
}

bool Runner::wrong(Wrong what, int argument, std::string detail) {
    finding_.wrong = what;
    finding_.argument = argument;
    finding_.detail = std::move(detail);
    return false;
}

bool Runner::makesAny(const Function& function) const {
    return function.makesBlock || std::any_of(function.arguments.begin(), function.arguments.end(),
                                              [](const Argument& argument) { return argument.makes(); });
}

// Does the call release a context that lives?
bool Runner::releases(const Call& call) const {
    const Function& function = table_.at(call.function);
    if (call.broken) return false;
    for (std::size_t i = 0; i < call.values.size(); ++i) {
        const Argument& argument = function.arguments[i];
        if (argument.role != Role::context || argument.verb != Verb::release || call.values[i].contexts == 0) continue;
        if (contexts_[case_->contextLists[call.values[i].firstContext]].pointer != nullptr) return true;
    }
    return false;
}

// In place: the argument that shares this one's memory.
int Runner::partnerOf(const Call& call, int i) const {
    if (!layout_.inPlace) return -1;
    for (std::size_t other = 0; other < call.values.size(); ++other) {
        if (call.values[other].same == i) return static_cast<int>(other);
    }
    return -1;
}

void Runner::placeArguments(const Call& call) {
    const std::size_t count = call.values.size();
    arena_.clear();
    pointers_.assign(count, nullptr);
    values_.resize(count);
    cells_.assign(count, Placed());
    for (std::size_t a = 0; a < count; ++a) {
        const int i = static_cast<int>(a);
        const Value& value = call.values[a];
        values_[a] = &pointers_[a];
        if (function_->arguments[a].role == Role::number) {
            values_[a] = const_cast<std::byte*>(value.number.data());
        } else if (value.nowhere) {
            pointers_[a] = arena_.nowhere();
        } else if (!value.null) {
            if (function_->arguments[a].role == Role::context) {
                placeContext(call, i);
            } else if (!layout_.inPlace || value.same < 0) {
                placeArray(call, i);
            }
        }
    }
    if (!layout_.inPlace) return;
    // In place: behind all others, whose memory they take.
    for (std::size_t a = 0; a < count; ++a) {
        const Value& value = call.values[a];
        if (value.same < 0) continue;
        const Value& theirs = call.values[value.same];
        for (std::size_t b = 0; b < value.blocks; ++b) {
            Placed& mine = placed_[value.firstBlock + b];
            mine = placed_[theirs.firstBlock + b];
            mine.bytes = case_->blocks[value.firstBlock + b].bytes;
        }
        pointers_[a] = pointers_[value.same];
    }
}

// What stands in a block before the call.
void Runner::write(const Call& call, int i, std::size_t b, std::byte* at) const {
    const Value& value = call.values[i];
    const Block& block = case_->blocks[value.firstBlock + b];
    if (block.bytes == 0) return;
    if (value.hasImage) {
        std::memcpy(at, case_->data.data() + block.image, block.bytes);
        return;
    }
    const unsigned char fill = fills[static_cast<int>(layout_.side)];
    if (value.stepBytes <= value.widthBytes) {
        std::memset(at, fill, block.bytes);
        return;
    }
    fillPattern(at, block.bytes);
    for (std::size_t row = 0; row < value.height; ++row)
        std::memset(at + row * value.stepBytes, fill, value.widthBytes);
}

void Runner::placeArray(const Call& call, int i) {
    const Value& value = call.values[i];
    const int partner = partnerOf(call, i);
    Arena& arena = value.lasting ? lasting_ : arena_;
    const std::size_t distance = value.distance[static_cast<int>(layout_.side)];
    rows_.clear();
    for (std::size_t b = 0; b < value.blocks; ++b) {
        std::size_t bytes = case_->blocks[value.firstBlock + b].bytes;
        if (partner >= 0) bytes = std::max(bytes, case_->blocks[call.values[partner].firstBlock + b].bytes);
        Placed& placed = placed_[value.firstBlock + b];
        placed = arena.place(bytes, layout_.side, distance);
        if (partner >= 0) write(call, partner, b, placed.data);
        write(call, i, b, placed.data);
        if (value.lasting) lastingPlaced_.push_back(placed);
        rows_.push_back(static_cast<int>(b) == value.nullRow ? nullptr : placed.data);
    }
    if (function_->arguments[i].shape == Shape::list) {
        pointers_[i] = placePointers(rows_, value, i);
    } else {
        pointers_[i] = rows_[0];
    }
}

void* Runner::placePointers(std::vector<void*>& pointers, const Value&, int i) {
    const std::size_t bytes = pointers.size() * sizeof(void*);
    cells_[i] = arena_.place(bytes, layout_.side, 0);
    if (bytes != 0) std::memcpy(cells_[i].data, pointers.data(), bytes);
    return cells_[i].data;
}

void Runner::placeContext(const Call& call, int i) {
    const Argument& argument = function_->arguments[i];
    const Value& value = call.values[i];
    const unsigned char fill = fills[static_cast<int>(layout_.side)];
    if (argument.verb == Verb::make) {
        cells_[i] = arena_.place(sizeof(void*), layout_.side, 0);
        std::memset(cells_[i].data, fill, sizeof(void*));
        pointers_[i] = cells_[i].data;
    } else if (argument.verb == Verb::init) {
        cells_[i] = lasting_.place(value.bytes, layout_.side, value.distance[static_cast<int>(layout_.side)]);
        std::memset(cells_[i].data, fill, value.bytes);
        lastingPlaced_.push_back(cells_[i]);
        pointers_[i] = cells_[i].data;
    } else if (value.zeroed) {
        const Placed zeros = arena_.place(zeroedBytes, layout_.side, 0);
        std::memset(zeros.data, 0, zeroedBytes);
        pointers_[i] = zeros.data;
    } else if (argument.count.present()) {
        rows_.clear();
        for (std::size_t n = 0; n < value.contexts; ++n) {
            rows_.push_back(contexts_[case_->contextLists[value.firstContext + n]].pointer);
        }
        pointers_[i] = placePointers(rows_, value, i);
    } else {
        pointers_[i] = contexts_[case_->contextLists[value.firstContext]].pointer;
    }
}

bool Runner::checkArguments(const Call& call, int status, bool success) {
    for (std::size_t a = 0; a < call.values.size(); ++a) {
        const int i = static_cast<int>(a);
        const Argument& argument = function_->arguments[a];
        const Value& value = call.values[a];
        if (argument.role == Role::number || value.null || value.nowhere) continue;
        if (cells_[a].data != nullptr && !cells_[a].surroundingsUntouched()) {
            return wrong(Wrong::outside, i, "around its pointers or its memory");
        }
        if (argument.role == Role::array) {
            if (!checkArray(call, i, success ? status : std::min(status, -1))) return false;
        } else if (argument.makes() && !success && !leftAlone(call, i, status)) {
            return wrong(Wrong::onError, i, table_.statusName(status));
        }
    }
    return true;
}

// A context that was not made: its place is as it was. Where memory was short its pointer may be null, and those that
// leave something to be released say so.
bool Runner::leftAlone(const Call& call, int i, int status) {
    if (allAre(cells_[i].data, cells_[i].bytes, fills[static_cast<int>(layout_.side)])) return true;
    const bool partial = function_->mayGiveAfterWriting(status);
    if (function_->arguments[i].verb == Verb::init) return partial;
    void* pointer;
    std::memcpy(&pointer, cells_[i].data, sizeof pointer);
    if (partial && pointer != nullptr && call.makes >= 0) contexts_[call.makes].pointer = pointer;
    return partial || (allocation::failed() && pointer == nullptr);
}

bool Runner::checkArray(const Call& call, int i, int status) {
    const Argument& argument = function_->arguments[i];
    const Value& value = call.values[i];
    const bool shares = layout_.inPlace && value.same >= 0;
    const int partner = partnerOf(call, i);
    if (argument.shape == Shape::list && !shares) {
        for (std::size_t b = 0; b < value.blocks; ++b) {
            void* row;
            std::memcpy(&row, cells_[i].data + b * sizeof row, sizeof row);
            if (row != (static_cast<int>(b) == value.nullRow ? nullptr : placed_[value.firstBlock + b].data)) {
                return wrong(Wrong::input, i, "its pointers");
            }
        }
    }
    for (std::size_t b = 0; b < value.blocks; ++b) {
        const Placed& placed = placed_[value.firstBlock + b];
        const Block& block = case_->blocks[value.firstBlock + b];
        if (!shares && !placed.surroundingsUntouched()) return wrong(Wrong::outside, i, "row " + std::to_string(b));
        if (argument.direction == Direction::work) continue;
        if (argument.direction == Direction::in) {
            // In place, what lies behind the output must be as it was.
            const std::size_t from =
                partner < 0 || status < 0
                    ? 0
                    : std::min(block.bytes, case_->blocks[call.values[partner].firstBlock + b].bytes);
            if (status < 0 && partner >= 0 && function_->mayGiveAfterWriting(status)) continue;
            if (std::memcmp(placed.data + from, case_->data.data() + block.image + from, block.bytes - from) != 0) {
                return wrong(status < 0 && partner >= 0 ? Wrong::onError : Wrong::input, i, "row " + std::to_string(b));
            }
            continue;
        }
        if (value.stepBytes > value.widthBytes) {
            for (std::size_t row = 0; row + 1 < value.height; ++row) {
                if (!isPattern(placed.data + row * value.stepBytes + value.widthBytes,
                               value.stepBytes - value.widthBytes)) {
                    return wrong(Wrong::between, i, "behind row " + std::to_string(row));
                }
            }
        }
        if (status < 0) {
            if (!shares && !function_->mayGiveAfterWriting(status) && !checkInitial(call, i, b)) return false;
            continue;
        }
        if (!compare(call, i, b, status)) return false;
    }
    return true;
}

// After an error an output is as it was.
bool Runner::checkInitial(const Call& call, int i, std::size_t b) {
    const Value& value = call.values[i];
    const Block& block = case_->blocks[value.firstBlock + b];
    std::vector<std::byte> initial(block.bytes);
    write(call, i, b, initial.data());
    const std::byte* now = placed_[value.firstBlock + b].data;
    if (std::equal(initial.begin(), initial.end(), now)) return true;
    finding_.firstByte = std::mismatch(initial.begin(), initial.end(), now).first - initial.begin();
    finding_.expected = initial;
    finding_.actual.assign(now, now + block.bytes);
    return wrong(Wrong::onError, i, table_.statusName(results_->statuses.back()));
}

// Keeps an output, and holds it against the expected one.
bool Runner::compare(const Call& call, int i, std::size_t b, int status) {
    const Value& value = call.values[i];
    const Placed& placed = placed_[value.firstBlock + b];
    const std::size_t bytes = placed.bytes;
    if (keep_) results_->bytes.insert(results_->bytes.end(), placed.data, placed.data + bytes);
    if (expected_ == nullptr) return true;
    if (expectedAt_ + bytes > expected_->bytes.size()) return wrong(otherwise_, i, "another number of outputs");
    const std::byte* theirs = expected_->bytes.data() + expectedAt_;
    expectedAt_ += bytes;
    if (bytes == 0 || std::memcmp(theirs, placed.data, bytes) == 0) return true;

    const Element& element = function_->arguments[i].element;
    const auto isFill = [&](const std::byte* at, Side side) {
        return allAre(at, element.bytes(), fills[static_cast<int>(side)]);
    };
    const std::size_t width = value.stepBytes > value.widthBytes ? value.widthBytes : bytes;
    const std::size_t rows = width == bytes ? 1 : value.height;
    for (std::size_t row = 0; row < rows; ++row) {
        for (std::size_t at = row * value.stepBytes; at < row * value.stepBytes + width; at += element.part) {
            if (sameParts(element, theirs + at, placed.data + at)) continue;
            const std::size_t start = at - (at - row * value.stepBytes) % element.bytes();
            const bool leftBoth = !value.hasImage && isFill(theirs + start, expected_->side) &&
                                  (isFill(placed.data + start, layout_.side) || (layout_.inPlace && value.same >= 0));
            if (leftBoth && status > 0) continue;  // warnings after which nothing is computed
            finding_.firstByte = at;
            finding_.expected.assign(theirs, theirs + bytes);
            finding_.actual.assign(placed.data, placed.data + bytes);
            std::string detail = "element " + std::to_string((at - row * value.stepBytes) / element.bytes());
            if (rows > 1) detail += " of row " + std::to_string(row);
            if (function_->arguments[i].shape == Shape::list) detail += " of row " + std::to_string(b);
            detail += ": " + textOf(element, placed.data + start) + ", not " + textOf(element, theirs + start);
            return wrong(leftBoth && !layout_.inPlace ? Wrong::unwritten : otherwise_, i, detail);
        }
    }
    return true;
}

// Keeps the contexts that a call made, and forgets those that it released.
bool Runner::checkMade(const Call& call, bool success, void* returned) {
    if (!success) return true;
    if (call.makes >= 0 && function_->makesBlock) {
        contexts_[call.makes].pointer = returned;
        std::memset(returned, pattern, call.blockBytes);
        return true;
    }
    for (std::size_t a = 0; a < call.values.size(); ++a) {
        const Argument& argument = function_->arguments[a];
        const Value& value = call.values[a];
        if (argument.role != Role::context || value.null || value.nowhere) continue;
        if (argument.verb == Verb::release && value.contexts != 0) {
            contexts_[case_->contextLists[value.firstContext]].pointer = nullptr;
        } else if (argument.verb == Verb::init) {
            contexts_[call.makes].pointer = cells_[a].data;
        } else if (argument.verb == Verb::make) {
            std::byte* pointer;
            std::memcpy(&pointer, cells_[a].data, sizeof pointer);
            bool bad =
                pointer == nullptr || allAre(cells_[a].data, sizeof pointer, fills[static_cast<int>(layout_.side)]);
            if (argument.memory >= 0 && call.values[argument.memory].blocks != 0) {
                const Placed& memory = placed_[call.values[argument.memory].firstBlock];
                bad = bad || pointer < memory.data || pointer > memory.data + memory.bytes;
            }
            if (bad) return wrong(Wrong::noContext, static_cast<int>(a), "the pointer that was stored");
            contexts_[call.makes].pointer = pointer;
        }
    }
    return true;
}

}  // namespace fuzz
