// Gaussian scores at low precision: -S / 2 x 2^-scaleFactor of 16-bit data in 32-bit integer lanes that wrap, with no
// float in the inner loop. A square is split into its high 16 bits and its low 16 bits halved (so its lowest bit is
// lost); both are multiplied by the inverse variance, and neighbours share a lane.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "scoring/gauss_sums.h"

namespace vorn {

// How the sums of the high and of the low parts meet: each is shifted left, then right (one of the counts is 0).
class LowShift {
public:
    explicit LowShift(int scaleFactor) {
        const int sf = std::clamp(scaleFactor, -64, 64);
        highLeft_ = std::max(15 - sf, 0);
        highRight_ = std::max(sf - 15, 0);
        lowLeft_ = std::max(-sf, 0);
        lowRight_ = std::clamp(sf, 0, 15);  // beyond 15 the low part follows the scale factor no further
    }
    template <class V>
    VORN_INLINE V operator()(V high, V low) const {
        return shiftRight(shiftLeft(high, highLeft_), highRight_) + shiftRight(shiftLeft(low, lowLeft_), lowRight_);
    }

private:
    int highLeft_, highRight_, lowLeft_, lowRight_;
};

// The sums over columns of high part x v and of low part x v, negated, in 32-bit lanes V.
template <class V>
struct HighLow {
    V high = splat<V>(0), low = splat<V>(0);

    template <class Shorts>
    VORN_INLINE void subtract(Shorts d, Shorts var) {
        high = high - mulAddPairs(mulHigh(d, d), var);
        low = low - mulAddPairs(shiftRightLogical<1>(mulLow(d, d)), var);
    }
};

template <class Shorts>
VORN_INLINE Shorts loadVar(const Vorn16s* var) {
    return load<Shorts>(var);
}
template <class Shorts>
VORN_INLINE Shorts loadVar(UnitVar) {
    return splat<Shorts>(1);
}

// 32-bit lanes for pairs of 16-bit ones.
template <class Shorts>
using PairLanes = decltype(mulAddPairs(Shorts{}, Shorts{}));

template <class Lanes>
VORN_INLINE i32x4 foldToFour(Lanes a) {
    if constexpr (Lanes::lanes == 4) {
        return a;
    } else {
        return foldToFour(foldHalves(a));
    }
}

// The rows of a pair: the parts are summed over all columns and shifted once, lane by lane.
struct LowSums {
    template <class Src, class Mean, class Var>
    static VORN_INLINE i32x4 negated(const Pairing<Src, Mean, Var>& rows, std::ptrdiff_t len, const LowShift& shift) {
        HighLow<i32x4> sums[4];
        const std::ptrdiff_t left = len - subtractGroups(ShortWidths{}, rows, len, sums);
        if (left > 0) {
            for (int r = 0; r < 4; ++r) {
                HighLow<i32x4> rest;
                rest.subtract(subSat(loadRest(rows.src[r], len), loadRest(rows.mean[r], len)),
                              loadRest(rows.var[r], len));
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
                                                     HighLow<i32x4> (&sums)[4]) {
        std::ptrdiff_t j = 0;
        ((j = subtractVectors<V>(rows, j, len, sums)), ...);
        return j;
    }
    template <class V, class Rows>
    static VORN_INLINE std::ptrdiff_t subtractVectors(const Rows& rows, std::ptrdiff_t j, std::ptrdiff_t len,
                                                      HighLow<i32x4> (&sums)[4]) {
        if (j + V::lanes > len) return j;
        HighLow<PairLanes<V>> r0, r1, r2, r3;
        const auto subtract = [&](HighLow<PairLanes<V>> & sum, int r) __attribute__((always_inline)) {
            sum.subtract(subSat(load<V>(rows.src[r] + j), load<V>(rows.mean[r] + j)), loadVar<V>(rows.var[r] + j));
        };
        for (; j + V::lanes <= len; j += V::lanes) subtract(r0, 0), subtract(r1, 1), subtract(r2, 2), subtract(r3, 3);
        const auto fold = [&](const HighLow<PairLanes<V>>& sum, int r) __attribute__((always_inline)) {
            sums[r].high = sums[r].high + foldToFour(sum.high);
            sums[r].low = sums[r].low + foldToFour(sum.low);
        };
        fold(r0, 0), fold(r1, 1), fold(r2, 2), fold(r3, 3);
        return j;
    }
};

// A last odd row: the parts of each group and of each pass are shifted before they are added, so the truncation of the
// shifts falls differently than in the rows of a pair. Kept so on purpose.
struct LowOddSum {
    template <class Src, class Mean, class Var>
    static Vorn32s negated(const Pairing<Src, Mean, Var>& rows, int r, std::ptrdiff_t len, const LowShift& shift) {
        i32x4 total = splat<i32x4>(0);
        const std::ptrdiff_t left = len - addGroups(ShortWidths{}, rows, r, len, shift, total);
        if (left > 0) {
            HighLow<i32x4> rest;
            rest.subtract(subSat(loadRest(rows.src[r], len), loadRest(rows.mean[r], len)), loadRest(rows.var[r], len));
            const RestPasses high = RestPasses::of(rest.high, left), low = RestPasses::of(rest.low, left);
            for (int k = 0; k < 3; ++k) total = total + shift(high.pass[k], low.pass[k]);
        }
        return sumLanes(total);
    }

private:
    template <class... V, class Rows>
    static VORN_INLINE std::ptrdiff_t addGroups(Widths<V...>, const Rows& rows, int r, std::ptrdiff_t len,
                                                const LowShift& shift, i32x4& total) {
        std::ptrdiff_t j = 0;
        ((j = addVectors<V>(rows, r, j, len, shift, total)), ...);
        return j;
    }
    template <class V, class Rows>
    static VORN_INLINE std::ptrdiff_t addVectors(const Rows& rows, int r, std::ptrdiff_t j, std::ptrdiff_t len,
                                                 const LowShift& shift, i32x4& total) {
        auto lanes = splat<PairLanes<V>>(0);
        for (; j + V::lanes <= len; j += V::lanes) {
            HighLow<PairLanes<V>> group;
            group.subtract(subSat(load<V>(rows.src[r] + j), load<V>(rows.mean[r] + j)), loadVar<V>(rows.var[r] + j));
            lanes = lanes + shift(group.high, group.low);
        }
        total = total + foldToFour(lanes);
        return j;
    }
};

}  // namespace vorn
