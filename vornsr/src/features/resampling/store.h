// How a resampled value leaves double precision.
#pragma once

#include "vornsr/types.h"

namespace vorn::resampling {

// Rounded in the caller's mode.
inline void store(double value, Vorn32f* dst) { *dst = static_cast<Vorn32f>(value); }

// Limited, then one half with its sign added, then truncated; 0 for not-a-numbers.
inline void store(double value, Vorn16s* dst) {
    if (value > 32767.0) {
        *dst = 32767;
    } else if (value < -32768.0) {
        *dst = -32768;
    } else {
        *dst = value == value ? static_cast<Vorn16s>(static_cast<int>(value + (value < 0 ? -0.5 : 0.5))) : Vorn16s{0};
    }
}

}  // namespace vorn::resampling
