// Numbers of a few bits each in a stream of bytes. Bit 0 is the top bit of the first byte; a number stands with its
// most significant bit first. No byte is touched that holds none of its bits.
#pragma once

#include <cstdint>

#include "vornsr/types.h"

namespace vorn::vq {

// bits: from 0 to 32.
inline std::uint32_t readBits(const Vorn8u* stream, std::int64_t at, int bits) {
    if (bits == 0) return 0;
    const std::int64_t end = at + bits, last = (end - 1) >> 3;
    std::uint64_t window = 0;  // five bytes at most
    for (std::int64_t byte = at >> 3; byte <= last; ++byte) window = window << 8 | stream[byte];
    return static_cast<std::uint32_t>(window >> (8 * (last + 1) - end) & ((std::uint64_t{1} << bits) - 1));
}

// Joins the low bits of a value to a stream that has zeros there.
inline void joinBits(Vorn8u* stream, std::int64_t at, int bits, std::uint32_t value) {
    if (bits == 0) return;
    const std::int64_t first = at >> 3, end = at + bits;
    std::int64_t byte = (end - 1) >> 3;
    std::uint64_t window = (value & ((std::uint64_t{1} << bits) - 1)) << (8 * (byte + 1) - end);
    for (; byte >= first; --byte, window >>= 8) stream[byte] = static_cast<Vorn8u>(stream[byte] | (window & 0xFF));
}

}  // namespace vorn::vq
