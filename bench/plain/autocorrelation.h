// The plain loop beside autocorrelation.
#pragma once

#include <algorithm>

#include "vornsr/types.h"

namespace plain {

inline void autoCorrelation(const Vorn32f* src, int srcLen, Vorn32f* dst, int lags) {
    std::fill(dst, dst + lags, 0.0f);
    for (int n = 0; n < srcLen; ++n) {
        const int count = std::min(lags, srcLen - n);
        for (int k = 0; k < count; ++k) dst[k] += src[n] * src[n + k];
    }
}

}  // namespace plain
