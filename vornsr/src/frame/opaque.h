// Values that the compiler must not know.
#pragma once

#include <type_traits>

namespace vorn {

// The same value, of which the compiler knows nothing. What it may make of a - 0.5 b, of a + (-h) b or of 0 - x by
// knowing the constant, its mirror image, is the same to nearest alone; in the caller's directed modes signs count.
// Integers have no such signs, and stay as they are.
template <class Number>
inline __attribute__((always_inline)) Number opaque(Number value) {
    if constexpr (std::is_floating_point_v<Number>) asm("" : "+x"(value));
    return value;
}

// val - sum / 2.
template <class Float>
inline __attribute__((always_inline)) Float lessHalf(Float val, Float sum) {
    return val - opaque(sum * Float(0.5));
}

}  // namespace vorn
