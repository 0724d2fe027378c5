// A case: the calls that are made one after the other, with every argument decided, before any of them is made. The
// memory that they get, and where it lies, is that of each run.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "table.h"

namespace fuzz {

// So many bytes of one array: all of it, or one row of a list.
struct Block {
    std::size_t bytes = 0;
    std::size_t image = 0;  // what stands in it before the call, among the data of the case
};

// One argument of one call.
struct Value {
    bool null = false;
    bool nowhere = false;  // nothing may be touched: its size stands on what is broken
    bool broken = false;

    std::array<std::byte, 16> number{};
    double asDouble = 0;

    // Arrays. Those by rows have gaps: so many rows, so far apart, of so many bytes.
    std::size_t firstBlock = 0, blocks = 0;
    std::size_t height = 1, stepBytes = 0, widthBytes = 0;
    bool hasImage = false;
    bool lasting = false;  // the memory of a context
    int same = -1;         // in place: the argument whose memory it is
    int nullRow = -1;
    std::array<std::uint8_t, 2> distance{};  // from the unmapped page, by its side, in bytes

    // Contexts.
    std::size_t firstContext = 0, contexts = 0;
    std::size_t bytes = 0;  // of the caller's memory
    bool zeroed = false;    // broken: a block of zeros in its place
};

struct Call {
    int function = 0;
    std::vector<Value> values;
    bool broken = false;
    std::size_t blockBytes = 0;  // of the block that it returns
    int makes = -1;              // the context
};

struct Context {
    int form = 0;
    std::vector<std::pair<int, double>> fields;
    bool ready = true;
    bool releasable = false;  // in memory of its own
    bool released = false;
};

struct Case {
    int function = 0;
    bool broken = false;
    bool inPlace = false;         // some call of it can be made in place
    unsigned rounding = 0;        // the caller's mode: nearest, down, up, to zero
    unsigned failAllocation = 0;  // 0: none; else each one, or one of these if there are many
    std::vector<Call> calls;
    std::size_t target = 0;  // of the calls
    std::vector<Block> blocks;
    std::vector<Context> contexts;
    std::vector<int> contextLists;
    std::vector<std::byte> data;

    void clear();
};

inline constexpr unsigned roundingShift = 13;  // where the caller's mode stands among the control bits

// The fill of what is only written: another one on either side, so that what is not written shows. (As floats -1.0e5
// and 0.0115.)
inline constexpr unsigned char fills[2] = {0xC7, 0x3C};

}  // namespace fuzz
