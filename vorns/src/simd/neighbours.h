// Two registers as neighbours in a run of elements: the run seen one element further on, or one before. Where the
// elements were stored a moment ago this beats a load across two of the stores, which has to wait for both.
#pragma once

#include "simd/simd.h"

namespace vorn {

// Four lanes of a and then b: from the second, the third, the last lane of a on.
VORN_INLINE f32x4 fromSecond(f32x4 a, f32x4 b) {
    const __m128 first = _mm_move_ss(a.v, b.v);
    return {_mm_shuffle_ps(first, first, _MM_SHUFFLE(0, 3, 2, 1))};
}
VORN_INLINE f32x4 fromThird(f32x4 a, f32x4 b) {
    return {_mm_castpd_ps(_mm_shuffle_pd(_mm_castps_pd(a.v), _mm_castps_pd(b.v), 1))};
}
VORN_INLINE f32x4 fromLast(f32x4 a, f32x4 b) {
    const __m128 turned = _mm_shuffle_ps(b.v, b.v, _MM_SHUFFLE(2, 1, 0, 3));
    return {_mm_move_ss(turned, _mm_shuffle_ps(a.v, a.v, _MM_SHUFFLE(3, 3, 3, 3)))};
}

}  // namespace vorn
