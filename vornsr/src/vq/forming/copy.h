// Copies of the few elements that make a piece of a vector.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "move/move_kernels.h"
#include "simd/short_block.h"
#include "vornsr/types.h"

namespace vorn::vq {

template <class T>
VORN_INLINE void copyElements(const T* src, T* dst, std::ptrdiff_t len) {
    if (len == 2) {  // what streams of features mostly are
        std::memcpy(dst, src, 2 * sizeof(T));
        return;
    }
    const std::int64_t bytes = len * static_cast<std::int64_t>(sizeof(T));
    const auto* from = reinterpret_cast<const Vorn8u*>(src);
    auto* to = reinterpret_cast<Vorn8u*>(dst);
    if (bytes <= shortBytes) {
        moveShort(from, to, bytes);
    } else {
        ownsMove_8u_M7(from, to, bytes);
    }
}

}  // namespace vorn::vq
