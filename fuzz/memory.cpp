// Mapping pages and placing elements in them.
#include "memory.h"

#include <sys/mman.h>

#include <cstring>
#include <new>

namespace fuzz {
namespace {

constexpr std::size_t page = 4096;
constexpr std::size_t wide = std::size_t{1} << 32;

std::byte* reserved(std::size_t bytes) {
    void* map = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (map == MAP_FAILED) throw std::bad_alloc();
    return static_cast<std::byte*>(map);
}

}  // namespace

void fillPattern(std::byte* at, std::size_t bytes) { std::memset(at, pattern, bytes); }

bool isPattern(const std::byte* at, std::size_t bytes) {
    if (bytes == 0) return true;
    return at[0] == std::byte{pattern} && std::memcmp(at, at + 1, bytes - 1) == 0;
}

bool Placed::surroundingsUntouched() const {
    return isPattern(from, data - from) && isPattern(data + bytes, to - (data + bytes));
}

Arena::~Arena() {
    for (const Slot& slot : slots_) munmap(slot.begin - page, slot.end - slot.begin + 2 * page);
    if (nowhere_ != nullptr) munmap(nowhere_, wide);
}

Arena::Slot& Arena::slot(std::size_t at) {
    while (slots_.size() <= at) {
        std::byte* begin = reserved(slotBytes + 2 * page) + page;
        if (mprotect(begin, slotBytes, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
        slots_.push_back({begin, begin + slotBytes});
    }
    return slots_[at];
}

Placed Arena::place(std::size_t bytes, Side side, std::size_t distance) {
    const Slot& slot = this->slot(used_++);
    Placed placed;
    placed.bytes = bytes;
    if (side == Side::behind) {
        placed.data = slot.end - distance - bytes;
        placed.from = placed.data - margin;
        placed.to = slot.end;
    } else {
        placed.data = slot.begin + distance;
        placed.from = slot.begin;
        placed.to = placed.data + bytes + margin;
    }
    fillPattern(placed.from, placed.data - placed.from);
    fillPattern(placed.data + bytes, placed.to - (placed.data + bytes));
    return placed;
}

std::byte* Arena::nowhere() {
    if (nowhere_ == nullptr) nowhere_ = reserved(wide);
    return nowhere_ + wide / 2;
}

}  // namespace fuzz
