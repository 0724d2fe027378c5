// Values mapped linearly into a range, clipped outside it. What differs between the forms: the elements of source and
// result, and whether smallest and largest value are told or found.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "frame/checks.h"
#include "frame/rounding.h"
#include "loops/elementwise.h"
#include "simd/block.h"
#include "simd/simd.h"
#include "vornsr/signal.h"
#include "vornsr/types.h"

namespace vorn::reductions {

// From lo to hi onto 0 to range. All in single.
struct Mapping {
    Vorn32f hi, lo, k;
    // Integers come as singles before they are subtracted, so that no difference overflows.
    template <class Bound, class Range>
    Mapping(Bound least, Bound most, Range range, Vorn32f lower, Vorn32f upper) {
        const Vorn32f min = static_cast<Vorn32f>(least), w = static_cast<Vorn32f>(most) - min;
        hi = upper * w + min;
        lo = min + lower * w;
        k = static_cast<Vorn32f>(range) / (upper * w - lower * w);
    }
};

// The same in registers. A minimum or maximum with a not-a-number is its second operand: an element that is none counts
// as hi, and what stands at lo or below gives a positive zero.
struct MappingLanes {
    f32xN hi, lo, k;
    VORN_INLINE explicit MappingLanes(const Mapping& m)
        : hi(splat<f32xN>(m.hi)), lo(splat<f32xN>(m.lo)), k(splat<f32xN>(m.k)) {}
    VORN_INLINE f32xN operator()(f32xN x) const { return maxOf(minOf(x, hi) - lo, splat<f32xN>(0)) * k; }
    VORN_INLINE f32xN operator()(i32xN x) const { return (*this)(toFloat(x)); }
};

// What a product becomes. To integers it is rounded in the mode that the caller of the kernel has set; one that 32 bits
// do not hold, and a not-a-number, is -2147483648 before it is saturated.
VORN_INLINE f32xN inResult(const f32xN (&x)[1], Vorn32f*) { return x[0]; }
VORN_INLINE i16xN inResult(const f32xN (&x)[2], Vorn16s*) { return narrowSat(roundToInt(x[0]), roundToInt(x[1])); }
VORN_INLINE i8xN inResult(const f32xN (&x)[4], Vorn8u*) {
    return narrowSatU8(roundToInt(x[0]), roundToInt(x[1]), roundToInt(x[2]), roundToInt(x[3]));
}

template <class Source, class Result>
struct MappingLoop {
    using ResultLane = SignedLane<Result>;
    static constexpr std::int64_t step = Wide<ResultLane>::lanes;
    static constexpr bool unrolled = std::is_same_v<Result, Vorn32f>;
    static constexpr int registers = static_cast<int>(step / f32xN::lanes);
    MappingLanes map;
    const Source* src;
    Result* dst;

    VORN_INLINE auto of(const Source* p) const {
        f32xN x[registers];
        if constexpr (std::is_same_v<Source, Vorn32f>) {
            for (int r = 0; r < registers; ++r) x[r] = map(load<f32xN>(p + r * f32xN::lanes));
        } else {
            for (int r = 0; r < registers; r += 2) {
                const auto [low, high] = loadWidenedTwo<i32xN>(p + r * f32xN::lanes);
                x[r] = map(low);
                x[r + 1] = map(high);
            }
        }
        return inResult(x, static_cast<Result*>(nullptr));
    }
    VORN_INLINE auto at(std::int64_t i) const { return of(src + i); }
    template <class V>
    VORN_INLINE void put(std::int64_t i, V x) const {
        store(reinterpret_cast<ResultLane*>(dst + i), x);
    }
    template <class V>
    VORN_INLINE void putPastCache(std::int64_t i, V x) const {
        storeStream(reinterpret_cast<ResultLane*>(dst + i), x);
    }
    VORN_INLINE void fetch(std::int64_t i) const {
        constexpr std::int64_t line = 64 / static_cast<int>(sizeof(Source));
        for (std::int64_t e = 0; e < step; e += line) fetchAhead(src + i + e);
    }
    VORN_INLINE void part(std::int64_t n) const {
        alignas(f32xN) Block<Source, step> from;
        alignas(f32xN) Block<Result, step> to;
        fillBlock<step>(src, n, from);
        store(reinterpret_cast<ResultLane*>(to), of(from));
        emptyBlock<step>(to, dst, n);
    }
    Result* result() const { return dst; }
};

template <class Source, class Result, class Bound, class Range>
VORN_NOINLINE void mapValues(const Source* src, Result* dst, std::ptrdiff_t len, Bound min, Bound max, Range range,
                             Vorn32f lower, Vorn32f upper) {
    const Mapping mapping(min, max, range, lower, upper);
    forEachStep(len, MappingLoop<Source, Result>{MappingLanes(mapping), src, dst});
}

// Singles follow the caller's rounding mode; all that makes an integer is rounded to nearest.
template <class Source, class Bound, class Range>
void mapInMode(const Source* src, Vorn32f* dst, std::ptrdiff_t len, Bound min, Bound max, Range range, Vorn32f lower,
               Vorn32f upper) {
    mapValues(src, dst, len, min, max, range, lower, upper);
}
template <class Source, class Result, class Bound, class Range>
void mapInMode(const Source* src, Result* dst, std::ptrdiff_t len, Bound min, Bound max, Range range, Vorn32f lower,
               Vorn32f upper) {
    const RoundingGuard nearest(Rounding::Nearest);
    mapValues(src, dst, len, min, max, range, lower, upper);
}

// Zeros and a warning where there is no range to map from.
template <class Source, class Result, class Bound, class Range>
VornStatus mapInRange(const Source* src, Result* dst, std::ptrdiff_t len, Bound min, Bound max, Range range,
                      Vorn32f lower, Vorn32f upper) {
    if (max == min) {
        std::fill_n(dst, len, Result(0));
        return vornStsZeroRange;
    }
    mapInMode(src, dst, len, min, max, range, lower, upper);
    return vornStsNoErr;
}

// Smallest and largest value, by the library's own search.
inline void findExtremes(const Vorn16s* src, int len, int& min, int& max) {
    Vorn16s least, most;
    vornsMinMax_16s(src, len, &least, &most);
    min = least, max = most;
}
// A not-a-number in front would never be replaced there. It is passed over, as the search does behind a number; where
// there is none but not-a-numbers, so are the extremes.
inline void findExtremes(const Vorn32f* src, int len, Vorn32f& min, Vorn32f& max) {
    int first = 0;
    while (first < len - 1 && std::isnan(src[first])) ++first;
    vornsMinMax_32f(src + first, len - first, &min, &max);
}

template <class Source, class Result, class Range>
VornStatus mapInOwnRange(const Source* src, Result* dst, int len, Range range, Vorn32f lower, Vorn32f upper) {
    std::conditional_t<std::is_integral_v<Source>, int, Vorn32f> min, max;
    findExtremes(src, len, min, max);
    return mapInRange(src, dst, len, min, max, range, lower, upper);
}

// The checks of values. What is not a number is told by none of these comparisons: only as a fraction is it an error.
constexpr VornStatus fractionsHold(Vorn32f lower, Vorn32f upper) {
    return require(lower >= 0 && lower < upper && upper <= 1, vornStsBadArgErr);
}
template <class Range>
constexpr VornStatus notNegative(Range range) {
    return require(!(range < 0), vornStsBadArgErr);
}
template <class Bound>
constexpr VornStatus boundsHold(Bound min, Bound max) {
    return require(!(min > max), vornStsBadArgErr);
}

}  // namespace vorn::reductions
