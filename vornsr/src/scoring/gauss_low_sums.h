// Gaussian scores at low precision: -S / 2 x 2^-scaleFactor of four rows of 16-bit data.
#pragma once

#include <cstddef>
#include <cstdint>

#include "scoring/gauss_low_parts.h"
#include "scoring/gauss_sums.h"

namespace vorn {

// The sums of the two halves over columns, negated.
template <class I>
struct NegatedHalves {
    I high = splat<I>(0), low = splat<I>(0);

    template <class Shorts>
    VORN_INLINE void subtract(Shorts d, Shorts var) {
        const auto terms = lowTerms(d, var);
        high = high - terms.high;
        low = low - terms.low;
    }
};

// 32-bit lanes for pairs of 16-bit ones.
template <class Shorts>
using PairLanes = decltype(mulAddPairs(Shorts{}, Shorts{}));

// The rows of a pair: the parts are summed over all columns and shifted once, lane by lane.
struct LowSums {
    template <class Src, class Mean, class Var>
    static VORN_INLINE i32x4 negated(const Pairing<Src, Mean, Var>& rows, std::ptrdiff_t len, const LowShifts& shift) {
        NegatedHalves<i32x4> sums[4];
        const std::ptrdiff_t left = len - subtractGroups(ShortWidths{}, rows, len, sums);
        if (left > 0) {
            for (int r = 0; r < 4; ++r) {
                NegatedHalves<i32x4> rest;
                rest.subtract(differenceOfRest(rows.src[r], rows.mean[r], len), loadRest(rows.var[r], len));
                const RestPasses high = RestPasses::of(rest.high, left), low = RestPasses::of(rest.low, left);
                for (int k = 0; k < 3; ++k) {
                    sums[r].high = sums[r].high + high.pass[k];
                    sums[r].low = sums[r].low + low.pass[k];
                }
            }
        }
        const auto total = [&](int r) __attribute__((always_inline)) { return shift(sums[r].high, sums[r].low); };
        return sumLanes(total(0), total(1), total(2), total(3));
    }

private:
    // Adds the whole groups of eight columns to the sums; returns the first column behind them.
    template <class... V, class Rows>
    static VORN_INLINE std::ptrdiff_t subtractGroups(Widths<V...>, const Rows& rows, std::ptrdiff_t len,
                                                     NegatedHalves<i32x4> (&sums)[4]) {
        std::ptrdiff_t j = 0;
        ((j = subtractVectors<V>(rows, j, len, sums)), ...);
        return j;
    }
    template <class V, class Rows>
    static VORN_INLINE std::ptrdiff_t subtractVectors(const Rows& rows, std::ptrdiff_t j, std::ptrdiff_t len,
                                                      NegatedHalves<i32x4> (&sums)[4]) {
        if (j + V::lanes > len) return j;
        NegatedHalves<PairLanes<V>> r0, r1, r2, r3;
        const auto subtract = [&](NegatedHalves<PairLanes<V>> & sum, int r) __attribute__((always_inline)) {
            sum.subtract(subSat(load<V>(rows.src[r] + j), load<V>(rows.mean[r] + j)), lowWeights<V>(rows.var[r] + j));
        };
        for (; j + V::lanes <= len; j += V::lanes) subtract(r0, 0), subtract(r1, 1), subtract(r2, 2), subtract(r3, 3);
        const auto fold = [&](const NegatedHalves<PairLanes<V>>& sum, int r) __attribute__((always_inline)) {
            sums[r].high = sums[r].high + foldedToFour(sum.high);
            sums[r].low = sums[r].low + foldedToFour(sum.low);
        };
        fold(r0, 0), fold(r1, 1), fold(r2, 2), fold(r3, 3);
        return j;
    }
};

// A last odd row: the parts of each group and of each pass are shifted before they are added, so the truncation of the
// shifts falls differently than in the rows of a pair. Kept so on purpose.
struct LowOddSum {
    template <class Src, class Mean, class Var>
    static Vorn32s negated(const Pairing<Src, Mean, Var>& rows, int r, std::ptrdiff_t len, const LowShifts& shift) {
        i32x4 total = splat<i32x4>(0);
        const std::ptrdiff_t left = len - addGroups(ShortWidths{}, rows, r, len, shift, total);
        if (left > 0) {
            NegatedHalves<i32x4> rest;
            rest.subtract(differenceOfRest(rows.src[r], rows.mean[r], len), loadRest(rows.var[r], len));
            const RestPasses high = RestPasses::of(rest.high, left), low = RestPasses::of(rest.low, left);
            for (int k = 0; k < 3; ++k) total = total + shift(high.pass[k], low.pass[k]);
        }
        return sumLanes(total);
    }

private:
    template <class... V, class Rows>
    static VORN_INLINE std::ptrdiff_t addGroups(Widths<V...>, const Rows& rows, int r, std::ptrdiff_t len,
                                                const LowShifts& shift, i32x4& total) {
        std::ptrdiff_t j = 0;
        ((j = addVectors<V>(rows, r, j, len, shift, total)), ...);
        return j;
    }
    template <class V, class Rows>
    static VORN_INLINE std::ptrdiff_t addVectors(const Rows& rows, int r, std::ptrdiff_t j, std::ptrdiff_t len,
                                                 const LowShifts& shift, i32x4& total) {
        auto lanes = splat<PairLanes<V>>(0);
        for (; j + V::lanes <= len; j += V::lanes) {
            NegatedHalves<PairLanes<V>> group;
            group.subtract(subSat(load<V>(rows.src[r] + j), load<V>(rows.mean[r] + j)), lowWeights<V>(rows.var[r] + j));
            lanes = lanes + shift(group.high, group.low);
        }
        total = total + foldedToFour(lanes);
        return j;
    }
};

}  // namespace vorn
