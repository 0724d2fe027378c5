// Plain loops of absolute values.
#pragma once

#include <cmath>
#include <cstdlib>
#include <limits>
#include <type_traits>

#include "vornsr/types.h"

namespace plain {

template <class T>
void absolute(const T* __restrict src, T* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) {
        if constexpr (std::is_integral_v<T>) {
            dst[i] = src[i] == std::numeric_limits<T>::min() ? std::numeric_limits<T>::max()
                                                             : static_cast<T>(std::abs(src[i]));
        } else {
            dst[i] = std::fabs(src[i]);
        }
    }
}

}  // namespace plain
