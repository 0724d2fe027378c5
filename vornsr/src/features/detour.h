// The detour of fixed-point forms that have no arithmetic of their own: integers to singles, one call on singles, the
// results to integers. Between the forms differ the factor on the way in and the rule of the store.
#pragma once

#include <climits>
#include <cstddef>

#include "move/convert_kernels.h"
#include "vornsr/types.h"

namespace vorn {

// The opposite scale factor; that of the smallest integer is the largest.
constexpr int oppositeScale(int scale) { return scale == INT_MIN ? INT_MAX : -scale; }

// src times factor, in single.
void toSingles(const Vorn16s* src, Vorn32f* dst, std::ptrdiff_t len, Vorn32f factor);

// The rules of the store: singles y, which a scale factor multiplies by 2^-scale, to 16-bit integers.

// As conversions do: rounded to the nearest integer, or truncated, and saturated.
struct NearestStore {
    int scale;
    void operator()(const Vorn32f* y, Vorn16s* dst, std::ptrdiff_t len) const {
        convert(y, dst, len, vornRndNear, scale);
    }
};
struct TruncatedStore {
    int scale;
    void operator()(const Vorn32f* y, Vorn16s* dst, std::ptrdiff_t len) const {
        convert(y, dst, len, vornRndZero, scale);
    }
};

// The product in single, one half with its sign added, in single, truncated; the low 16 bits of the integer, so that
// what leaves 16 bits wraps. 0 for what leaves 32 bits and for not-a-numbers.
struct WrappedStore {
    int scale;
    void operator()(const Vorn32f* y, Vorn16s* dst, std::ptrdiff_t len) const;
};

// The product in single, rounded to the nearest integer of 32 bits, saturated. What leaves 32 bits, on either side, and
// not-a-numbers give -32768.
struct PackedStore {
    int scale;
    void operator()(const Vorn32f* y, Vorn16s* dst, std::ptrdiff_t len) const;
};

}  // namespace vorn
