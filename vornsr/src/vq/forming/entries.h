// Vectors put together from entries of tables, one table and one index for each piece.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::vq {

// Which indices name an entry of a table of so many.

struct BelowSize {
    template <class I>
    static VORN_INLINE auto refused(I index, I size) {
        return !(size > index);
    }
};
// The index behind the last entry passes too. It is one function's alone, and stays: its tables have an entry more.
struct UpToSize {
    template <class I>
    static VORN_INLINE auto refused(I index, I size) {
        return index > size;
    }
};

template <class Rule, class Index>
VORN_INLINE bool names(Index index, int size) {
    return index >= 0 && !Rule::refused(int{index}, size);
}

// Whether all indices name entries: the number of them that a register holds at once, then one by one.
template <class Rule, class Index>
bool allName(const Index* index, const int* sizes, std::ptrdiff_t count) {
    std::ptrdiff_t g = 0;
    if (count >= i32xN::lanes) {
        const i32xN zero = splat<i32xN>(0);
        auto refused = zero > zero;
        for (; g + i32xN::lanes <= count; g += i32xN::lanes) {
            const i32xN i = loadWidened<i32xN>(index + g);
            refused = refused | Rule::refused(i, load<i32xN>(sizes + g)) | (zero > i);
        }
        if (any(refused)) return false;
    }
    for (; g < count; ++g) {
        if (!names<Rule>(index[g], sizes[g])) return false;
    }
    return true;
}

// Pieces of `piece` elements. False, and nothing stored, if an index names no entry.
template <int piece, class Rule, class Index, class T>
bool formPieces(const Index* index, const T* const* tables, const int* sizes, T* dst, std::ptrdiff_t count) {
    if (!allName<Rule>(index, sizes, count)) return false;
    for (std::ptrdiff_t g = 0; g < count; ++g) {
        std::memcpy(dst + piece * g, tables[g] + std::ptrdiff_t{piece} * index[g], piece * sizeof(T));
    }
    return true;
}

}  // namespace vorn::vq
