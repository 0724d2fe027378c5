// Memory that a function under test cannot leave unnoticed: pages with an unmapped one on both sides, mapped once and
// used for one call after the other.
#pragma once

#include <cstddef>
#include <deque>

namespace fuzz {

enum class Side : unsigned char { behind, before };  // where the unmapped page stands

// Elements against an unmapped page, or a few bytes from it, with a pattern in front and behind.
struct Placed {
    std::byte* data = nullptr;
    std::size_t bytes = 0;
    std::byte* from = nullptr;  // the pattern reaches from here to the data, and from there
    std::byte* to = nullptr;    // to here

    bool surroundingsUntouched() const;
};

// What stands around and between elements. As a number of any type it is a plain one, which data seldom are.
inline constexpr unsigned char pattern = 0xA5;
void fillPattern(std::byte* at, std::size_t bytes);
bool isPattern(const std::byte* at, std::size_t bytes);

class Arena {
public:
    static constexpr std::size_t slotBytes = std::size_t{1} << 20;
    static constexpr std::size_t margin = 64;
    static constexpr std::size_t largestBlock = slotBytes - 2 * margin - 64;

    Arena() = default;
    ~Arena();
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;

    void clear() { used_ = 0; }
    // So many bytes, so far from the unmapped page; the pattern is written.
    Placed place(std::size_t bytes, Side side, std::size_t distance);
    // An address around which nothing can be read, far and wide.
    std::byte* nowhere();

private:
    struct Slot {
        std::byte* begin;
        std::byte* end;
    };
    Slot& slot(std::size_t at);

    std::deque<Slot> slots_;
    std::byte* nowhere_ = nullptr;
    std::size_t used_ = 0;
};

}  // namespace fuzz
