// The bit-reversal passes: element i and the element whose order bits are those of i in reverse change place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

namespace vorn::fft {

// The table reverses the bits between the highest and the lowest; together with those two, entry i places the elements
// 2i and 2i + 1 and the two that lie half the length behind them. order is at least 2.

template <class Element>
void bitReverseCopy(const std::int32_t* table, int order, const Element* src, Element* dst) {
    const std::ptrdiff_t half = std::ptrdiff_t{1} << (order - 1);
    for (std::ptrdiff_t i = 0; i < half / 2; ++i) {
        const std::ptrdiff_t to = table[i];
        dst[to] = src[2 * i];
        dst[to + half] = src[2 * i + 1];
        dst[to + 1] = src[2 * i + half];
        dst[to + half + 1] = src[2 * i + half + 1];
    }
}

template <class Element>
void bitReverse(const std::int32_t* table, int order, Element* data) {
    const std::ptrdiff_t half = std::ptrdiff_t{1} << (order - 1);
    for (std::ptrdiff_t i = 0; i < half / 2; ++i) {
        const std::ptrdiff_t here = 2 * i, to = table[i];
        if (here > to) continue;
        std::swap(data[here + 1], data[to + half]);
        if (here == to) continue;
        std::swap(data[here], data[to]);
        std::swap(data[here + half], data[to + 1]);
        std::swap(data[here + half + 1], data[to + half + 1]);
    }
}

}  // namespace vorn::fft
