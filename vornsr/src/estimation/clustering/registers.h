// Walks vectors register by register: a formula over elements with any number of operands and results.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/align.h"
#include "loops/stripes.h"
#include "simd/divide.h"
#include "simd/simd.h"

namespace vorn::clustering {

template <class V>
struct WholeRegister {
    using Element = typename V::Element;
    using Value = V;
    VORN_INLINE V load(const Element* p) const { return vorn::load<V>(p); }
    VORN_INLINE void store(Element* p, V x) const { vorn::store(p, x); }
    VORN_INLINE static V all(Element x) { return splat<V>(x); }
};

// Calls body(lanes, i) with the lanes from element i on: a register of them, or what is left behind the last whole
// register, at once or one by one. A body that loads its elements before it stores may work in place.
template <class T, class Body>
VORN_INLINE void overRegisters(std::ptrdiff_t len, Body body) {
    using V = Wide<T>;
    std::ptrdiff_t i = 0;
    for (; i + V::lanes <= len; i += V::lanes) body(WholeRegister<V>(), i);
    if constexpr (sizeof(V) > 16) {
        if (i < len) body(PartStripe<V>(len - i), i);
    } else {
        for (; i < len; ++i) body(SingleStripe<T>(), i);
    }
}

// The root of a register or of one element.
template <class V>
VORN_INLINE V rootOf(V x) {
    return sqrtOf(x);
}
VORN_INLINE float rootOf(float x) { return firstLane(sqrtOf(splat<f32x4>(x))); }
VORN_INLINE double rootOf(double x) { return firstLane(sqrtOf(splat<f64x2>(x))); }

template <class... Vector>
bool allAligned(const Vector*... vector) {
    return (... && isAligned(vector, 16));
}

}  // namespace vorn::clustering
