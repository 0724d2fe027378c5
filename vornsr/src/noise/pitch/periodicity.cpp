// The pulse-train measure: the comb of at most six samples, one period apart, whose mean is the largest.
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "frame/checks.h"
#include "noise/pitch/excess.h"
#include "noise/pitch/reciprocals.h"
#include "simd/block.h"
#include "simd/fold.h"
#include "simd/simd.h"
#include "vornsr/noise.h"
#include "vornsr/signal.h"

namespace vorn::pitch {
namespace {

constexpr int longestSignal = 4096, mostCombTeeth = 6;

// A copy of the signal with zeros behind it, so that whole registers can be read at its end.
template <class T>
using Copy = T[longestSignal + 2 * Wide<T>::lanes];

// What the search has found. A new mean must be strictly larger, so the first of equal ones stays. test(teeth) tells of
// the sums of combs in lanes which may be better than what is there; meet() looks at one of them.

struct LargestMean_32f {
    const Vorn32f* src;
    Vorn32f mean = 0, sum = 0;
    int period = 0;

    struct Test {
        f32xN weight, mean;
        VORN_INLINE auto operator()(f32xN sums) const { return sums * weight > mean; }
    };
    VORN_INLINE Test test(int teeth) const { return {splat<f32xN>(oneOver[teeth]), splat<f32xN>(mean)}; }
    void meet(std::ptrdiff_t phase, std::ptrdiff_t p, int teeth) {
        Vorn32f s = src[phase];
        for (int m = 1; m < teeth; ++m) s += src[phase + m * p];
        const Vorn32f a = s * oneOver[teeth];
        if (!(a > mean)) return;
        mean = a;
        sum = s;
        period = static_cast<int>(p);
    }
};

// The lanes hold sums of samples shifted right by `coarser`, which fit 32 bits; the test asks whether the true sum can
// reach what a larger mean needs, and meet() forms it.
struct LargestMean_32s {
    const Vorn32s* src;
    int coarser, scale;  // scale: how far the total was shifted
    std::int64_t mean = 0, sum = 0;
    int period = 0;
    std::int32_t limit[mostCombTeeth + 1];

    LargestMean_32s(const Vorn32s* signal, int shift, int totalShift) : src(signal), coarser(shift), scale(totalShift) {
        setLimits();
    }
    struct Test {
        i32xN limit;
        VORN_INLINE auto operator()(i32xN sums) const { return sums > limit; }
    };
    VORN_INLINE Test test(int teeth) const { return {splat<i32xN>(limit[teeth])}; }
    void meet(std::ptrdiff_t phase, std::ptrdiff_t p, int teeth) {
        std::int64_t s = 0;
        for (int m = 0; m < teeth; ++m) s += src[phase + m * p];
        const std::int64_t a = (oneOverQ30[teeth] * s) >> 30;
        if (a <= mean) return;
        mean = a;
        sum = s >> scale;
        period = static_cast<int>(p);
        setLimits();
    }

private:
    void setLimits() {
        for (int n = 1; n <= mostCombTeeth; ++n) {
            const std::int64_t needed = (((mean + 1) << 30) + oneOverQ30[n] - 1) / oneOverQ30[n];
            const std::int64_t dropped = ((std::int64_t{1} << coarser) - 1) * n;
            limit[n] = static_cast<std::int32_t>((needed - dropped - 1) >> coarser);
        }
    }
};

// The combs of one period with the phases from first to end - 1, which have so many teeth each; phases stand in lanes.
template <int teeth, class T, class Best>
VORN_INLINE void overPhases(const T* x, std::ptrdiff_t p, std::ptrdiff_t first, std::ptrdiff_t end, Best& best) {
    using V = Wide<T>;
    auto test = best.test(teeth);
    for (std::ptrdiff_t j = first; j < end; j += V::lanes) {
        V sums = load<V>(x + j);
        for (int m = 1; m < teeth; ++m) sums = sums + load<V>(x + j + m * p);
        unsigned better = laneBits(test(sums));
        if (better != 0) [[unlikely]] {
            if (end - j < V::lanes) better &= (1u << (end - j)) - 1u;
            for (; better != 0; better &= better - 1) best.meet(j + std::countr_zero(better), p, teeth);
            test = best.test(teeth);
        }
    }
}
template <class T, class Best>
VORN_INLINE void overPhases(int teeth, const T* x, std::ptrdiff_t p, std::ptrdiff_t first, std::ptrdiff_t end,
                            Best& best) {
    switch (teeth) {
        case 1:
            return overPhases<1>(x, p, first, end, best);
        case 2:
            return overPhases<2>(x, p, first, end, best);
        case 3:
            return overPhases<3>(x, p, first, end, best);
        case 4:
            return overPhases<4>(x, p, first, end, best);
        case 5:
            return overPhases<5>(x, p, first, end, best);
        default:
            return overPhases<6>(x, p, first, end, best);
    }
}

template <class T, class Best>
void search(const T* x, int len, int minPeriod, int maxPeriod, Best& best) {
    for (int p = minPeriod; p <= maxPeriod; ++p) {
        const int periods = (len - 1) / p, longer = (len - 1) % p + 1;  // phases below `longer` have a tooth more
        if (periods >= mostCombTeeth) {
            overPhases(mostCombTeeth, x, p, 0, p, best);
        } else {
            overPhases(periods + 1, x, p, 0, longer, best);
            overPhases(periods, x, p, longer, p, best);
        }
    }
}

bool anyNegative(const Vorn32f* src, std::ptrdiff_t len) {
    const f32xN zero = splat<f32xN>(0.0f);
    std::ptrdiff_t i = 0;
    auto negative = zero < zero;
    for (; i + f32xN::lanes <= len; i += f32xN::lanes) negative = negative | (load<f32xN>(src + i) < zero);
    if (i < len) negative = negative | (loadPart<f32xN>(src + i, len - i) < zero);
    return any(negative);
}

template <class T, class Change>
VORN_INLINE void copy(const T* src, std::ptrdiff_t len, T* dst, Change change) {
    using V = Wide<T>;
    std::ptrdiff_t i = 0;
    for (; i + V::lanes <= len; i += V::lanes) store(dst + i, change(load<V>(src + i)));
    store(dst + i, change(i < len ? loadPart<V>(src + i, len - i) : splat<V>(0)));
    store(dst + i + V::lanes, splat<V>(0));
}

// All bits that are set in a sample, and the exact total of samples that are not negative.
struct Content {
    std::int32_t bits;
    std::int64_t total;
};
Content contentOf(const Vorn32s* src, std::ptrdiff_t len) {
    i32xN bits = splat<i32xN>(0), low = bits, high = bits;  // up to 4096 lower halves fit 32 bits
    const auto add = [&](i32xN x) __attribute__((always_inline)) {
        bits = bits | x;
        low = low + (x & splat<i32xN>(0xFFFF));
        high = high + shiftRightLogical<16>(x);
    };
    std::ptrdiff_t i = 0;
    for (; i + i32xN::lanes <= len; i += i32xN::lanes) add(load<i32xN>(src + i));
    if (i < len) add(loadPart<i32xN>(src + i, len - i));
    return {folded(bits, [](auto a, auto b) { return a | b; }), wideSumOfLanes(low) + (wideSumOfLanes(high) << 16)};
}

VornStatus periodsInOrder(int minPeriod, int maxPeriod) {
    return require(minPeriod >= 1 && maxPeriod > minPeriod, vornStsRangeErr);
}
VornStatus lengthFits(int len, int maxPeriod) {
    return require(len > maxPeriod && len <= longestSignal, vornStsLengthLimitErr);
}

}  // namespace
}  // namespace vorn::pitch

using namespace vorn;

VornStatus vornsPeriodicity_32f(const Vorn32f* src, int len, Vorn32f* periodicity, int* period, int maxPeriod,
                                int minPeriod) {
    VORN_CHECK(notNull(src, periodicity, period));
    VORN_CHECK(pitch::periodsInOrder(minPeriod, maxPeriod));
    VORN_CHECK(pitch::lengthFits(len, maxPeriod));
    VORN_CHECK(require(!pitch::anyNegative(src, len), vornStsRangeErr));
    constexpr int fast = 1;
    Vorn32f total;
    VORN_CHECK(vornsSum_32f(src, len, &total, fast));
    pitch::LargestMean_32f best{src};
    const bool measurable = total > 0 && total - total == 0;  // neither an infinity nor not a number
    if (measurable) {
        alignas(64) pitch::Copy<Vorn32f> x;
        pitch::copy(
            src, len, x, [](f32xN a) __attribute__((always_inline)) { return a; });
        pitch::search(x, len, minPeriod, maxPeriod, best);
    }
    *periodicity = measurable ? best.sum / total : 0.0f;
    *period = best.period;
    return vornStsNoErr;
}

VornStatus vornsPeriodicity_32s16s(const Vorn32s* src, int len, Vorn16s* periodicity, int* period, int maxPeriod,
                                   int minPeriod) {
    VORN_CHECK(notNull(src, periodicity, period));
    VORN_CHECK(pitch::periodsInOrder(minPeriod, maxPeriod));
    VORN_CHECK(pitch::lengthFits(len, maxPeriod));
    const pitch::Content content = pitch::contentOf(src, len);
    VORN_CHECK(require(content.bits >= 0, vornStsRangeErr));
    const int scale = pitch::excessBits(static_cast<std::uint64_t>(content.total), 31);
    const std::int64_t total = content.total >> scale;
    const int coarser = pitch::excessBits(static_cast<std::uint64_t>(content.bits), 28);
    pitch::LargestMean_32s best(src, coarser, scale);
    if (total > 0) {
        alignas(64) pitch::Copy<Vorn32s> x;
        pitch::copy(
            src, len, x, [=](i32xN a) __attribute__((always_inline)) { return shiftRight(a, coarser); });
        pitch::search(x, len, minPeriod, maxPeriod, best);
    }
    *periodicity =
        total > 0 ? static_cast<Vorn16s>(std::min<std::int64_t>(best.sum * 32768 / total, 32767)) : Vorn16s{0};
    *period = best.period;
    return vornStsNoErr;
}
