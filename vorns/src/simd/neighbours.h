// Two registers as neighbours in a run of elements: the run seen one element further on, or one before. Where the
// elements were stored a moment ago this beats a load across two of the stores, which has to wait for both.
#pragma once

#include "simd/simd.h"

namespace vorn {

// a and then b, without the first lane of a; and without the last lane of b, from the last lane of a on.
VORN_INLINE f32x4 fromSecond(f32x4 a, f32x4 b) {
    const __m128 first = _mm_move_ss(a.v, b.v);
    return {_mm_shuffle_ps(first, first, _MM_SHUFFLE(0, 3, 2, 1))};
}
VORN_INLINE f32x4 fromLast(f32x4 a, f32x4 b) {
    const __m128 turned = _mm_shuffle_ps(b.v, b.v, _MM_SHUFFLE(2, 1, 0, 3));
    return {_mm_move_ss(turned, _mm_shuffle_ps(a.v, a.v, _MM_SHUFFLE(3, 3, 3, 3)))};
}

}  // namespace vorn
