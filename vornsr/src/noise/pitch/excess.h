// How far a sum is shifted so that it fits.
#pragma once

#include <bit>
#include <cstdint>

namespace vorn::pitch {

// By how many bits x is longer than so many; 0 if it is not.
constexpr int excessBits(std::uint64_t x, int bits) {
    const int width = static_cast<int>(std::bit_width(x));
    return width > bits ? width - bits : 0;
}

}  // namespace vorn::pitch
