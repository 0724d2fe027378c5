// Singles to 16-bit integers, as offset compensation and energy normalisation store them.
#pragma once

#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn {

// Truncation to 16 bits that saturates; not a number gives 0, the low half of the processor's integer for it. Lanes
// hold it with its sign.
template <class V>
VORN_INLINE auto truncLimited(V y) {
    return truncToInt(maxOf(splat<V>(-32768), minOf(splat<V>(32767), y)));  // a not-a-number stays one
}
VORN_INLINE Vorn16s truncSat16(float y) { return static_cast<Vorn16s>(firstLane(truncLimited(splat<f32x4>(y)))); }
VORN_INLINE i32xN truncSat16(f32xN y) { return shiftRight<16>(shiftLeft<16>(truncLimited(y))); }

}  // namespace vorn
