// The least-squares estimate of a period (Friedman 1977): how much of the energy the mean period takes, less what it
// would take of noise.
#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "frame/checks.h"
#include "frame/rounding.h"
#include "frame/wrap.h"
#include "noise/pitch/excess.h"
#include "noise/pitch/reciprocals.h"
#include "simd/block.h"
#include "simd/fold.h"
#include "simd/pairs.h"
#include "simd/simd.h"
#include "vornsr/noise.h"
#include "vornsr/signal.h"

namespace vorn::pitch {
namespace {

constexpr int longestFrame = 1024;

// The samples, with zeros behind them: a tooth may fall behind the end, where it changes nothing.
template <class T>
using Padded = T[2 * longestFrame + Wide<T>::lanes];

struct FirstLanes {
    std::int32_t index[i32xN::lanes] = {};
    constexpr FirstLanes() {
        for (int k = 0; k < i32xN::lanes; ++k) index[k] = k;
    }
};
constexpr FirstLanes firstLanes;

// The combs of a period: those of the phases below `longer` have `periods` + 1 teeth, the others one less.
struct Combs {
    int p, periods, longer;
    Combs(int period, int len) : p(period), periods((len - 1) / period), longer((len - 1) % period + 1) {}

    // Of the phases from j on, a lane each.
    static VORN_INLINE i32xN phases(std::ptrdiff_t j) {
        return load<i32xN>(firstLanes.index) + splat<i32xN>(static_cast<std::int32_t>(j));
    }
    template <class V, class Table>
    VORN_INLINE V weights(const Table& table, std::ptrdiff_t j) const {
        return select(splat<i32xN>(longer) > phases(j), splat<V>(table[periods + 1]), splat<V>(table[periods]));
    }
    VORN_INLINE auto exist(std::ptrdiff_t j) const { return splat<i32xN>(p) > phases(j); }
};

// Sums over phases are in their order, phase by phase, so a period alone would wait for each addition. Several periods
// go together: a row of terms each, the one of A and the one of B side by side, for some phases at a time.
constexpr int together = 8, phasesAtOnce = 64;

struct Terms {
    alignas(64) Vorn32f row[together][2 * phasesAtOnce];
};

VORN_INLINE void fillRow(const Vorn32f* x, const Combs& combs, std::ptrdiff_t begin, std::ptrdiff_t count,
                         Vorn32f* row) {
    for (std::ptrdiff_t k = 0; k < count; k += f32xN::lanes) {
        const std::ptrdiff_t j = begin + k;
        f32xN a = splat<f32xN>(0.0f), b = a;
        if (j < combs.p) {
            f32xN s = load<f32xN>(x + j), q = s * s;
            for (int m = 1; m <= combs.periods; ++m) {
                const f32xN next = load<f32xN>(x + j + m * combs.p);
                s = s + next;
                q = q + next * next;
            }
            s = s * combs.weights<f32xN>(oneOverRoot, j);
            a = s * s;
            b = q * combs.weights<f32xN>(oneOver, j);
            if (j + f32xN::lanes > combs.p) {
                a = select(combs.exist(j), a, splat<f32xN>(0.0f));
                b = select(combs.exist(j), b, splat<f32xN>(0.0f));
            }
        }
        storePairs(row + 2 * k, a, b);
    }
}

struct Estimate_32f {
    Vorn32f a, b;
};
// Of the periods from `first` on, `count` of them.
VORN_NOINLINE void estimates(const Vorn32f* x, int len, int first, int count, Estimate_32f* estimate) {
    f32x4 sum[together];
    for (f32x4& s : sum) s = splat<f32x4>(0.0f);
    Terms terms = {};
    const int last = first + count - 1;
    for (int begin = 0; begin < last; begin += phasesAtOnce) {
        const int width = std::min(last - begin, phasesAtOnce);
        for (int g = 0; g < count; ++g) fillRow(x, Combs(first + g, len), begin, width, terms.row[g]);
        for (int j = 0; j < width; ++j) {
            for (int g = 0; g < together; ++g) sum[g] = sum[g] + loadFirst<f32x4, 2>(terms.row[g] + 2 * j);
        }
    }
    for (int g = 0; g < count; ++g) {
        Vorn32f lane[4];
        store(lane, sum[g]);
        estimate[g] = {lane[0], lane[1]};
    }
}

struct Estimate_16s {
    std::int32_t a, b;
};
// Integers wrap, whatever their order. `square` holds the squares shifted right by the scale; of it, A takes one half
// in each factor.
struct Scale {
    int first, second;
    explicit Scale(int scale) : first(scale >> 1), second(scale - first) {}
};
VORN_INLINE i64xN oddLanes(i32xN x) { return shiftRightLogical<32>(std::bit_cast<i64xN>(x)); }
VORN_INLINE std::int32_t lowSum(i64xN lanes) { return sumOfLanes(std::bit_cast<i32xN>(shiftLeft<32>(lanes))); }
VORN_NOINLINE Estimate_16s estimateOf(const Vorn32s* x, const Vorn32s* square, const Combs& combs, Scale scale) {
    i64xN sumA = splat<i64xN>(0), sumB = sumA;
    const i32xN none = splat<i32xN>(0);
    for (std::ptrdiff_t j = 0; j < combs.p; j += i32xN::lanes) {
        i32xN s = load<i32xN>(x + j), q = load<i32xN>(square + j);
        for (int m = 1; m <= combs.periods; ++m) {
            s = s + load<i32xN>(x + j + m * combs.p);
            q = q + load<i32xN>(square + j + m * combs.p);
        }
        if (j + i32xN::lanes > combs.p) {
            s = select(combs.exist(j), s, none);
            q = select(combs.exist(j), q, none);
        }
        const i32xN rootWeight = combs.weights<i32xN>(oneOverRootQ30, j), weight = combs.weights<i32xN>(oneOverQ30, j);
        const auto addA = [&](i64xN v) __attribute__((always_inline)) {
            const i64xN one = shiftRight(v, 30 + scale.first), two = shiftRight(v, 30 + scale.second);
            sumA = sumA + mulEven(std::bit_cast<i32xN>(one), std::bit_cast<i32xN>(two));
        };
        const auto addB = [&](i64xN v) __attribute__((always_inline)) { sumB = sumB + shiftRightLogical<30>(v); };
        const i32xN oddS = std::bit_cast<i32xN>(oddLanes(s)), oddQ = std::bit_cast<i32xN>(oddLanes(q));
        const i32xN oddRoot = std::bit_cast<i32xN>(oddLanes(rootWeight)),
                    oddWeight = std::bit_cast<i32xN>(oddLanes(weight));
        addA(mulEven(s, rootWeight));
        addA(mulEven(oddS, oddRoot));
        addB(mulEven(q, weight));
        addB(mulEven(oddQ, oddWeight));
    }
    return {lowSum(sumA), lowSum(sumB)};
}

VornStatus periodsFit(int minPeriod, int maxPeriod) {
    return require(minPeriod >= 6 && maxPeriod > minPeriod, vornStsRangeErr);
}
VornStatus frameFits(int len, int minPeriod, int maxPeriod) {
    return require(len > maxPeriod && len <= longestFrame && len <= std::int64_t{mostTeeth} * minPeriod,
                   vornStsLengthLimitErr);
}

}  // namespace
}  // namespace vorn::pitch

using namespace vorn;

VornStatus vornsPeriodicityLSPE_32f(const Vorn32f* src, int len, Vorn32f* periodicity, int* period, int maxPeriod,
                                    int minPeriod) {
    VORN_CHECK(notNull(src, periodicity, period));
    VORN_CHECK(pitch::periodsFit(minPeriod, maxPeriod));
    VORN_CHECK(pitch::frameFits(len, minPeriod, maxPeriod));
    Vorn32f energy;
    VORN_CHECK(vornsDotProd_32f(src, src, len, &energy));
    alignas(64) pitch::Padded<Vorn32f> x;
    std::copy_n(src, len, x);
    std::fill_n(x + len, maxPeriod + f32xN::lanes, 0.0f);
    Vorn32f best = 0;
    int bestPeriod = 0;
    for (int first = minPeriod; first <= maxPeriod; first += pitch::together) {
        const int count = std::min(maxPeriod - first + 1, pitch::together);
        pitch::Estimate_32f estimate[pitch::together];
        pitch::estimates(x, len, first, count, estimate);
        for (int g = 0; g < count; ++g) {
            const Vorn32f num = estimate[g].a - estimate[g].b, den = energy - estimate[g].b;
            if (den > 0 && num > 0 && num / den > best) {
                best = num / den;
                bestPeriod = first + g;
            }
        }
    }
    *periodicity = best;
    *period = bestPeriod;
    return vornStsNoErr;
}

VornStatus vornsPeriodicityLSPE_16s(const Vorn16s* src, int len, Vorn16s* periodicity, int* period, int maxPeriod,
                                    int minPeriod) {
    VORN_CHECK(notNull(src, periodicity, period));
    VORN_CHECK(pitch::periodsFit(minPeriod, maxPeriod));
    VORN_CHECK(pitch::frameFits(len, minPeriod, maxPeriod));
    alignas(64) pitch::Padded<Vorn32s> x, square;
    std::uint64_t energy = 0;
    for (int i = 0; i < len; ++i) {
        x[i] = src[i];
        square[i] = x[i] * x[i];
        energy += static_cast<std::uint32_t>(square[i]);
    }
    const int scale = pitch::excessBits(energy, 31);
    energy >>= scale;
    for (int i = 0; i < len; ++i) square[i] >>= scale;
    std::fill_n(x + len, maxPeriod + i32xN::lanes, 0);
    std::fill_n(square + len, maxPeriod + i32xN::lanes, 0);
    std::int64_t best = 0;
    int bestPeriod = 0;
    for (int p = minPeriod; p <= maxPeriod; ++p) {
        const pitch::Estimate_16s estimate = pitch::estimateOf(x, square, pitch::Combs(p, len), pitch::Scale(scale));
        const std::int32_t num = wrapSub(estimate.a, estimate.b);
        const std::int32_t den = wrapSub(static_cast<std::int32_t>(energy), estimate.b);
        if (num < 1 || den < 1) continue;
        const std::int64_t ratio = std::min<std::int64_t>(std::int64_t{num} * 32768 / den, 32767);
        if (ratio > best) {
            best = ratio;
            bestPeriod = p;
        }
    }
    *periodicity = static_cast<Vorn16s>(best);
    *period = bestPeriod;
    return vornStsNoErr;
}
