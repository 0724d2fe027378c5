// Tests of addresses, for the few places where alignment changes a result or pays in speed.
#pragma once

#include <cstddef>
#include <cstdint>

#include "vornsr/types.h"

namespace vorn {

template <class T>
inline bool isAligned(const T* pointer, std::uintptr_t bytes) {
    return (reinterpret_cast<std::uintptr_t>(pointer) & (bytes - 1)) == 0;
}

// 0 when every one of the height row pointers is 16-byte aligned (also when height is below 1), 1 otherwise.
template <class T>
inline int RowMatrAlErr(const T* const* rows, int height) {
    for (int row = 0; row < height; ++row) {
        if (!isAligned(rows[row], 16)) return 1;
    }
    return 0;
}

constexpr std::int64_t roundUp(std::int64_t n, std::int64_t multiple) {
    return (n + multiple - 1) / multiple * multiple;
}

// The first address at or behind the pointer that is a multiple of bytes (a power of two).
template <class T>
inline T* alignedUp(T* pointer, std::uintptr_t bytes) {
    const auto address = reinterpret_cast<std::uintptr_t>(pointer);
    return reinterpret_cast<T*>((address + bytes - 1) & ~(bytes - 1));
}

}  // namespace vorn
