// The bit-reversal pass: element i and the element whose order bits are those of i in reverse change place.
#pragma once

#include <cstddef>
#include <cstdint>

#include "fft/core/butterflies.h"

namespace vorn::fft {

// dst may be src. Squares of elements change place as wholes: the highest bits of a place number the rows of a square,
// far apart, the lowest ones its columns, which fill one cache line, and the reversed square stands where those in
// between are reversed (Carter, Gatlin 1998). The table reverses order - 2 bits and gives twice the result. order is at
// least 8.
template <class Element>
void bitReverse(const std::int32_t* table, int order, const Element* src, Element* dst) {
    constexpr int side = 64 / sizeof(Element), sideOrder = side == 4 ? 2 : side == 8 ? 3 : 4;
    static_assert(side == 1 << sideOrder);
    const std::ptrdiff_t step = std::ptrdiff_t{1} << (order - sideOrder);
    const auto reversedFrom = [&](std::ptrdiff_t square, Element(&to)[side][side]) {
        for (int row = 0; row < side; ++row) {
            for (int column = 0; column < side; ++column) {
                to[bitReversed(column, side)][bitReversed(row, side)] = src[row * step + square * side + column];
            }
        }
    };
    const auto store = [&](std::ptrdiff_t square, const Element(&from)[side][side]) {
        for (int row = 0; row < side; ++row) {
            for (int column = 0; column < side; ++column) dst[row * step + square * side + column] = from[row][column];
        }
    };
    for (std::ptrdiff_t square = 0; square < step / side; ++square) {
        const std::ptrdiff_t partner = table[square] >> (2 * sideOrder - 1);
        if (partner < square) continue;
        Element here[side][side], there[side][side];
        reversedFrom(square, here);
        if (partner != square) {
            reversedFrom(partner, there);
            store(square, there);
        }
        store(partner, here);
    }
}

}  // namespace vorn::fft
