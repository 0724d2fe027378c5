// Evaluation of filter banks: band energies of a spectrum under the triangular weights.
#pragma once

#include <algorithm>
#include <cstddef>

#include "features/filter_bank.h"
#include "frame/wrap.h"
#include "simd.h"

namespace vorn {

// The sum of one filter in single. Rounds of eight bins go into two accumulators of four lanes, single bins into lane 0
// of the first one.
class FilterSum {
public:
    VORN_INLINE void addEight(const Vorn32f* weight, f32x4 low, f32x4 high) {
        low_ = low_ + load<f32x4>(weight) * low;
        high_ = high_ + load<f32x4>(weight + 4) * high;
    }
    VORN_INLINE void addOne(Vorn32f weight, Vorn32f value) { low_ = addFirst(low_, weight * value); }
    VORN_INLINE Vorn32f total() const { return sumHalves(low_ + high_); }

private:
    f32x4 low_ = splat<f32x4>(0), high_ = splat<f32x4>(0);
};

// Walks the bins of a bank once, from its left edge on: each bin feeds the falling side of one filter and the rising
// side of the next. Bins outside the spectrum are passed over without being read.
class BinWalk {
public:
    BinWalk(const Vorn32f* spectrum, std::ptrdiff_t firstBin, std::ptrdiff_t lastBin)
        : spectrum_(spectrum), bin_(std::max<std::ptrdiff_t>(firstBin, 0)), lastBin_(lastBin) {}

    // The first element of a rising row belongs to the last bin of the stretch before it.
    VORN_INLINE void start(FilterSum& rising, const Vorn32f* rise) const {
        if (bin_ <= lastBin_) rising.addOne(rise[0], spectrum_[bin_]);
    }

    // The bins behind the current one up to the edge. Eight a round while more than eight are left, then single ones,
    // and one at least: an empty stretch takes the bin behind it, and all that follows then runs one bin late.
    template <bool falls, bool rises>
    VORN_INLINE void stretch(FilterSum& falling, const Vorn32f* fall, FilterSum& rising, const Vorn32f* rise,
                             std::ptrdiff_t edge) {
        const std::ptrdiff_t end = std::min(edge, lastBin_);
        ++rise;
        for (; end - bin_ > 8; bin_ += 8, fall += 8, rise += 8) {
            const f32x4 low = load<f32x4>(spectrum_ + bin_ + 1), high = load<f32x4>(spectrum_ + bin_ + 5);
            if constexpr (falls) falling.addEight(fall, low, high);
            if constexpr (rises) rising.addEight(rise, low, high);
        }
        do {
            if (++bin_ > lastBin_) return;
            if constexpr (falls) falling.addOne(*fall++, spectrum_[bin_]);
            if constexpr (rises) rising.addOne(*rise++, spectrum_[bin_]);
        } while (bin_ < end);
    }

private:
    const Vorn32f* spectrum_;
    std::ptrdiff_t bin_;  // the last bin that was taken
    std::ptrdiff_t lastBin_;
};

inline void evalFilters(const Vorn32f* spectrum, Vorn32f* dst, const VornFBankState_32f& bank) {
    const Vorn32s* edge = bank.pCenters;
    BinWalk walk(spectrum, edge[0], bank.fftLen / 2);
    FilterSum falling, rising;
    walk.start(rising, bank.ppRise[0]);
    walk.stretch<false, true>(falling, bank.ppFall[0], rising, bank.ppRise[0], edge[1]);
    for (int k = 0; k < bank.nFilter; ++k) {
        falling = rising;
        rising = FilterSum();
        if (k + 1 < bank.nFilter) {
            walk.start(rising, bank.ppRise[k + 1]);
            walk.stretch<true, true>(falling, bank.ppFall[k], rising, bank.ppRise[k + 1], edge[k + 2]);
        } else {
            walk.stretch<true, false>(falling, bank.ppFall[k], rising, bank.ppRise[k], edge[k + 2]);
        }
        dst[k] = falling.total();
    }
}

// The part of a row of weights that lies on the bins first, first + 1, ... up to last, in the spectrum and in the row.
template <class Value>
std::int64_t sideSum(const Value* spectrum, const Vorn32s* weight, std::int64_t first, std::int64_t last,
                     std::int64_t lastBin, std::int64_t capacity) {
    const std::int64_t end = std::min({last, lastBin, first + capacity - 1});
    std::int64_t sum = 0;
    for (std::int64_t bin = std::max<std::int64_t>(first, 0); bin <= end; ++bin) {
        sum += wrapMul(std::int32_t{spectrum[bin]}, weight[bin - first]);
    }
    return sum;
}

// Each product wraps at 32 bits; the sums are exact. The shift truncates, to the left it drops what passes 64 bits.
template <class Value, class Result>
void evalFilters(const Value* spectrum, Result* dst, const VornFBankState_16s& bank, int shift) {
    const BankShape shape{bank.fftLen, bank.fftOrder, bank.nFilter};
    const std::int64_t lastBin = shape.lastBin();
    for (int k = 0; k < bank.nFilter; ++k) {
        const std::int64_t left = bank.pCenters[k], middle = bank.pCenters[k + 1], right = bank.pCenters[k + 2];
        const std::int64_t sum = sideSum(spectrum, bank.ppRise[k], left, middle, lastBin, shape.riseCapacity()) +
                                 sideSum(spectrum, bank.ppFall[k], middle + 1, right, lastBin, shape.fallCapacity());
        dst[k] = saturate<Result>(shift >= 0 ? shiftRight64(sum, shift) : shiftLeft64(sum, -shift));
    }
}

}  // namespace vorn
