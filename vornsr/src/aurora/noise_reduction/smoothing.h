// Power spectra of packed transforms, smoothed to half their resolution: each value is half the sum of four squares.
#pragma once

#include <bit>
#include <cstdint>

#include "aurora/noise_reduction/lanes.h"
#include "frame/wrap.h"
#include "loops/elementwise.h"
#include "simd/block.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::noise_reduction {

// Each form is a policy:
//   step             how many values one step makes, of four times as many elements
//   smooth(p)        these values, from the elements from p on
//   firstOf, lastOf  the two ends, which have fewer squares
//   inLanes          or else the build makes the values one by one, by valueOf(p)

// The sums of neighbours in the lanes of two registers.
template <class V>
VORN_INLINE V sumsOfNeighbours(V low, V high) {
    alignas(V) typename V::Element run[2 * V::lanes];
    store(run, low);
    store(run + V::lanes, high);
    V even, odd;
    loadPairs(run, even, odd);
    return even + odd;
}
VORN_INLINE i64xN sumsOfNeighbours(i64xN low, i64xN high) {
    alignas(f64xN) double run[2 * f64xN::lanes];
    store(run, floatOf(low));
    store(run + f64xN::lanes, floatOf(high));
    f64xN even, odd;
    loadPairs(run, even, odd);
    return bitsOf(even) + bitsOf(odd);
}

struct SmoothedSingles {
    using Source = Vorn32f;
    using Result = Vorn32f;
    static constexpr bool inLanes = true;
    static constexpr std::int64_t step = f32xN::lanes;

    static VORN_INLINE f32xN sumsOfTwoSquares(const Vorn32f* p) {
        f32xN even, odd;
        loadPairs(p, even, odd);
        return even * even + odd * odd;
    }
    VORN_INLINE f32xN smooth(const Vorn32f* p) const {
        const f32xN low = sumsOfTwoSquares(p), high = sumsOfTwoSquares(p + 2 * f32xN::lanes);
        return splat<f32xN>(0.5f) * sumsOfNeighbours(low, high);
    }
    Vorn32f firstOf(Vorn32f a, Vorn32f b, Vorn32f c) const { return 0.5f * (a * a + b * b + c * c); }
    Vorn32f lastOf(Vorn32f a) const { return a * a; }
};

struct SmoothedShorts {
    using Source = Vorn16s;
    using Result = Vorn16s;
    static constexpr bool inLanes = true;
    static constexpr std::int64_t step = i16xN::lanes;

    // Each square of two neighbours halved and rounded down, and the halves added. An odd square is one above a
    // multiple of four, an even one is such a multiple: the last two bits of the sum count what the halves drop. The
    // sum is at most 2^31, so it is read without a sign.
    static VORN_INLINE i32xN sumsOfTwoHalves(const Vorn16s* p) {
        const i16xN x = load<i16xN>(p);
        return shiftRightLogical<1>(mulAddPairs(x, x) & splat<i32xN>(~3));
    }
    // Sums of two saturate first, which leaves a sum of four that saturates one that does.
    static VORN_INLINE i32xN sumsOfFourHalves(const Vorn16s* p) {
        return mulAddPairs(narrowSat(sumsOfTwoHalves(p), sumsOfTwoHalves(p + i16xN::lanes)), splat<i16xN>(1));
    }
    VORN_INLINE i16xN smooth(const Vorn16s* p) const {
        return narrowSat(sumsOfFourHalves(p), sumsOfFourHalves(p + 2 * i16xN::lanes));
    }
    Vorn16s firstOf(std::int32_t a, std::int32_t b, std::int32_t c) const {
        return saturate<Vorn16s>((a * a >> 1) + (b * b >> 1) + (c * c >> 1));
    }
    Vorn16s lastOf(std::int32_t a) const { return saturate<Vorn16s>(a * a); }
};

// How sums of 64 bits are stored: saturated to 32 bits, or as they are.
VORN_INLINE i32xN storedAs(i64xN low, i64xN high, Vorn32s) {
    alignas(i64xN) Vorn32s run[2 * i32xN::lanes];
    store(run, std::bit_cast<i32xN>(saturateTo32(low)));
    store(run + i32xN::lanes, std::bit_cast<i32xN>(saturateTo32(high)));
    i32xN lower, upper;
    loadPairs(run, lower, upper);
    return lower;
}
VORN_INLINE Halves<i64xN> storedAs(i64xN low, i64xN high, Vorn64s) { return {low, high}; }

template <class Stored, class Shift>
struct SmoothedIntegers {
    using Source = Vorn32s;
    using Result = Stored;
    static constexpr std::int64_t step = i32xN::lanes;
    // The baseline has no product of 32-bit lanes with a sign: one by one it is faster there.
    static constexpr bool inLanes = i64xN::lanes > 2;
    Shift shift;

    static VORN_INLINE i64xN sumsOfTwoHalves(const Vorn32s* p) {
        const i32xN x = load<i32xN>(p), odd = oddLanes(x);
        return shiftRightLogical<1>(mulEven(x, x)) + shiftRightLogical<1>(mulEven(odd, odd));
    }
    // The sum of four is at most 2^63, and there alone its sign is set: 2^63 - 1 stands for it.
    static VORN_INLINE i64xN sumsOfFourHalves(const Vorn32s* p) {
        const i64xN sum = sumsOfNeighbours(sumsOfTwoHalves(p), sumsOfTwoHalves(p + i32xN::lanes));
        return sum - shiftRightLogical<63>(sum);
    }
    VORN_INLINE auto smooth(const Vorn32s* p) const {
        return storedAs(shift(sumsOfFourHalves(p)), shift(sumsOfFourHalves(p + 2 * i32xN::lanes)), Stored());
    }
    Stored valueOf(const Vorn32s* p) const {
        std::uint64_t sum = 0;
        for (int i = 0; i < 4; ++i) sum += static_cast<std::uint64_t>(std::int64_t{p[i]} * p[i]) >> 1;
        return saturate<Stored>(shift(static_cast<std::int64_t>(sum - (sum >> 63))));
    }
    Stored firstOf(std::int64_t a, std::int64_t b, std::int64_t c) const {
        return saturate<Stored>(shift((a * a >> 1) + (b * b >> 1) + (c * c >> 1)));
    }
    // This square wraps at 32 bits, and is not halved.
    Stored lastOf(Vorn32s a) const { return saturate<Stored>(shift(std::int64_t{wrapMul(a, a)})); }
};

VORN_INLINE void putLanes(Vorn32f* p, f32xN x) { store(p, x); }
VORN_INLINE void putLanes(Vorn16s* p, i16xN x) { store(p, x); }
VORN_INLINE void putLanes(Vorn32s* p, i32xN x) { store(p, x); }
VORN_INLINE void putLanes(Vorn64s* p, Halves<i64xN> x) {
    store(reinterpret_cast<std::int64_t*>(p), x.low);
    store(reinterpret_cast<std::int64_t*>(p) + i64xN::lanes, x.high);
}
VORN_INLINE void putLanesPastCache(Vorn32f* p, f32xN x) { storeStream(p, x); }
VORN_INLINE void putLanesPastCache(Vorn16s* p, i16xN x) { storeStream(p, x); }
VORN_INLINE void putLanesPastCache(Vorn32s* p, i32xN x) { storeStream(p, x); }
VORN_INLINE void putLanesPastCache(Vorn64s* p, Halves<i64xN> x) {
    storeStream(reinterpret_cast<std::int64_t*>(p), x.low);
    storeStream(reinterpret_cast<std::int64_t*>(p) + i64xN::lanes, x.high);
}

// The values between the two ends. A value stands in front of its elements: dst may be what they are read from.
template <class Form>
struct SmoothingLoop {
    static constexpr std::int64_t step = Form::step;
    static constexpr bool unrolled = false;
    const Form& form;
    const typename Form::Source* src;
    typename Form::Result* dst;

    VORN_INLINE auto at(std::int64_t i) const { return form.smooth(src + 4 * i); }
    template <class V>
    VORN_INLINE void put(std::int64_t i, V x) const {
        putLanes(dst + i, x);
    }
    template <class V>
    VORN_INLINE void putPastCache(std::int64_t i, V x) const {
        putLanesPastCache(dst + i, x);
    }
    VORN_INLINE void fetch(std::int64_t i) const {
        constexpr std::int64_t line = 64 / static_cast<int>(sizeof(*src));
        for (std::int64_t e = 0; e < 4 * step; e += line) fetchAhead(src + 4 * i + e);
    }
    VORN_INLINE void part(std::int64_t n) const {
        if (n <= 0) return;
        alignas(f32xN) Block<typename Form::Source, 4 * step> from;
        alignas(f32xN) Block<typename Form::Result, step> to;
        fillBlock<4 * step>(src, 4 * n, from);
        putLanes(to, form.smooth(from));
        emptyBlock<step>(to, dst, n);
    }
    auto* result() const { return dst; }
};

// dst has len / 4 + 1 values. The first has no square of src[1], which is the last.
template <class Form>
VORN_NOINLINE void smoothedPower(const Form& given, const typename Form::Source* src, typename Form::Result* dst,
                                 std::int64_t len) {
    const Form form = given;
    const std::int64_t last = len / 4;
    const auto first = form.firstOf(src[0], src[2], src[3]), top = form.lastOf(src[1]);
    if constexpr (Form::inLanes) {
        forEachStep(last - 1, SmoothingLoop<Form>{form, src + 4, dst + 1});
    } else {
        for (std::int64_t k = 1; k < last; ++k) dst[k] = form.valueOf(src + 4 * k);
    }
    dst[0] = first;
    dst[last] = top;
}

}  // namespace vorn::noise_reduction
