// Counts over the steps from one sample to the next.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "simd/count.h"
#include "vornsr/types.h"

namespace vorn {

// Each rule says what one step counts: added to the counts of lanes, and of a single step.

struct NegativeProduct_16s {
    static VORN_INLINE i32xN add(i32xN counts, i16xN before, i16xN now) {
        return counts + mulAddPairs(shiftRightLogical<15>(mulHigh(before, now)), splat<i16xN>(1));
    }
    static int count(Vorn16s before, Vorn16s now) { return std::int32_t{before} * now < 0; }
};

// Not at or above zero: a product that underflows to zero is none, one that is not a number is a change.
struct NegativeProduct_32f {
    static VORN_INLINE i32xN add(i32xN counts, f32xN before, f32xN now) {
        return countWhere(counts, notAtLeast(before * now, splat<f32xN>(0)));
    }
    static int count(Vorn32f before, Vorn32f now) { return !(before * now >= 0); }
};

// The sign bits alone: the two zeros differ.
struct DifferentSignBits {
    static VORN_INLINE i32xN add(i32xN counts, f32xN before, f32xN now) {
        return counts - shiftRight<31>(bitsOf(before) ^ bitsOf(now));
    }
    static int count(Vorn32f before, Vorn32f now) { return std::signbit(before) != std::signbit(now); }
};

// The distance between the signs 1, 0 and -1: 2 for a change, 1 for a step onto zero or off it. In lanes it is how many
// of the two limits are crossed, the one between -1 and 0 and the one between 0 and 1.
struct SignDistance_16s {
    static VORN_INLINE i32xN add(i32xN counts, i16xN before, i16xN now) {
        const i16xN zero = splat<i16xN>(0);
        const i16xN negative = shiftRightLogical<15>(before ^ now);
        return counts + mulAddPairs(countWhere(negative, (before > zero) ^ (now > zero)), splat<i16xN>(1));
    }
    static int count(Vorn16s before, Vorn16s now) { return std::abs(sign(now) - sign(before)); }

private:
    static int sign(Vorn16s x) { return (x > 0) - (x < 0); }
};

// The same; not a number has the sign -1.
struct SignDistance_32f {
    static VORN_INLINE i32xN add(i32xN counts, f32xN before, f32xN now) {
        const f32xN zero = splat<f32xN>(0);
        counts = countWhere(counts, (before > zero) ^ (now > zero));
        return countWhere(counts, (before >= zero) ^ (now >= zero));
    }
    static int count(Vorn32f before, Vorn32f now) { return std::abs(sign(now) - sign(before)); }

private:
    static int sign(Vorn32f x) { return x > 0 ? 1 : x == 0 ? 0 : -1; }
};

template <class Rule, class T>
std::int64_t countSteps(const T* src, std::ptrdiff_t len) {
    using V = Wide<T>;
    i32xN lanes = splat<i32xN>(0);
    std::ptrdiff_t n = 1;
#pragma GCC unroll 4
    for (; n + V::lanes <= len; n += V::lanes) lanes = Rule::add(lanes, load<V>(src + n - 1), load<V>(src + n));
    std::int32_t lane[i32xN::lanes];
    store(lane, lanes);
    std::int64_t total = 0;
    for (std::int32_t x : lane) total += x;
    for (; n < len; ++n) total += Rule::count(src[n - 1], src[n]);
    return total;
}

}  // namespace vorn
