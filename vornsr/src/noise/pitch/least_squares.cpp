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
};

// Numbers that depend on the phase: one below a border, another from there on. Phases stand in lanes.
template <class V>
struct ByPhase {
    i32xN border;
    V below, above;
    VORN_INLINE ByPhase(int first, typename V::Element lower, typename V::Element upper)
        : border(splat<i32xN>(first)), below(splat<V>(lower)), above(splat<V>(upper)) {}
    VORN_INLINE V from(i32xN phases) const { return select(border > phases, below, above); }
};
VORN_INLINE i32xN phasesFrom(std::ptrdiff_t j) {
    return load<i32xN>(firstLanes.index) + splat<i32xN>(static_cast<std::int32_t>(j));
}

// Sums over phases are in their order, phase by phase, so a period alone would wait for each addition. Several periods
// go together: a row of terms each, the one of A and the one of B side by side, for some phases at a time.
constexpr int together = 8, phasesAtOnce = 64;

struct Terms {
    alignas(64) Vorn32f row[together][2 * phasesAtOnce + 2];
};

// The terms of the phases from `begin` on; those from p on are zeros.
template <int vectors>
VORN_INLINE void fill(const Vorn32f* x, const Combs& combs, const ByPhase<f32xN>& rootWeight,
                      const ByPhase<f32xN>& weight, std::ptrdiff_t begin, Vorn32f* row) {
    constexpr int lanes = f32xN::lanes;
    f32xN s[vectors], q[vectors];
    for (int v = 0; v < vectors; ++v) {
        s[v] = load<f32xN>(x + begin + v * lanes);
        q[v] = s[v] * s[v];
    }
    const Vorn32f* tooth = x + begin;
    for (int m = combs.periods; m > 0; --m) {
        tooth += combs.p;
        for (int v = 0; v < vectors; ++v) {
            const f32xN next = load<f32xN>(tooth + v * lanes);
            s[v] = s[v] + next;
            q[v] = q[v] + next * next;
        }
    }
    for (int v = 0; v < vectors; ++v) {
        const std::ptrdiff_t j = begin + v * lanes;
        const i32xN phases = phasesFrom(j);
        const f32xN mean = s[v] * rootWeight.from(phases), zero = splat<f32xN>(0.0f);
        f32xN a = mean * mean, b = q[v] * weight.from(phases);
        if (j + lanes > combs.p) {
            const auto exists = splat<i32xN>(combs.p) > phases;
            a = select(exists, a, zero);
            b = select(exists, b, zero);
        }
        storePairs(row + 2 * v * lanes, a, b);
    }
}
VORN_INLINE void fillRow(const Vorn32f* x, const Combs& combs, std::ptrdiff_t begin, std::ptrdiff_t count,
                         Vorn32f* row) {
    constexpr int lanes = f32xN::lanes;
    const ByPhase<f32xN> rootWeight(combs.longer, oneOverRoot[combs.periods + 1], oneOverRoot[combs.periods]);
    const ByPhase<f32xN> weight(combs.longer, oneOver[combs.periods + 1], oneOver[combs.periods]);
    std::ptrdiff_t k = 0;
    for (; k + 2 * lanes <= count; k += 2 * lanes) fill<2>(x, combs, rootWeight, weight, begin + k, row + 2 * k);
    for (; k < count; k += lanes) fill<1>(x, combs, rootWeight, weight, begin + k, row + 2 * k);
}

struct Estimate_32f {
    Vorn32f a, b;
};
// Of the periods from `first` on, `count` of them.
VORN_NOINLINE void estimates(const Vorn32f* x, int len, int first, int count, Estimate_32f* estimate) {
    f32x4 sum[together];  // of each period A and B; the other two lanes mean nothing
    for (f32x4& s : sum) s = splat<f32x4>(0.0f);
    Terms terms;
    for (int g = count; g < together; ++g) std::fill(terms.row[g], terms.row[g + 1], 0.0f);
    const int last = first + count - 1;
    for (int begin = 0; begin < last; begin += phasesAtOnce) {
        const int width = std::min(last - begin, phasesAtOnce);
        for (int g = 0; g < count; ++g) fillRow(x, Combs(first + g, len), begin, width, terms.row[g]);
        for (auto& row : terms.row) row[2 * width] = row[2 * width + 1] = 0;  // the other two lanes read so far
        for (int j = 0; j < width; ++j) {
            for (int g = 0; g < together; ++g) sum[g] = sum[g] + load<f32x4>(terms.row[g] + 2 * j);
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
    const ByPhase<i32xN> rootWeights(combs.longer, oneOverRootQ30[combs.periods + 1], oneOverRootQ30[combs.periods]);
    const ByPhase<i32xN> weights(combs.longer, oneOverQ30[combs.periods + 1], oneOverQ30[combs.periods]);
    for (std::ptrdiff_t j = 0; j < combs.p; j += i32xN::lanes) {
        const i32xN phases = phasesFrom(j);
        i32xN s = load<i32xN>(x + j), q = load<i32xN>(square + j);
        for (int m = 1; m <= combs.periods; ++m) {
            s = s + load<i32xN>(x + j + m * combs.p);
            q = q + load<i32xN>(square + j + m * combs.p);
        }
        if (j + i32xN::lanes > combs.p) {
            const auto exists = splat<i32xN>(combs.p) > phases;
            s = select(exists, s, none);
            q = select(exists, q, none);
        }
        const i32xN rootWeight = rootWeights.from(phases), weight = weights.from(phases);
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
