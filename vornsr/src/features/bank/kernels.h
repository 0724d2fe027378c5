// Evaluation of filter banks: band energies of a spectrum under the triangular weights.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "features/bank/filter_bank.h"
#include "frame/wrap.h"
#include "simd/exact_sum.h"
#include "simd/simd.h"

namespace vorn {

// The sum of one filter in single. Rounds of eight bins go into two accumulators of four lanes, single bins into lane 0
// of the first one, which is kept apart between the rounds.
class FilterSum {
public:
    VORN_INLINE void beginRounds() { low_ = withFirst(low_, first_); }
    VORN_INLINE void addEight(const Vorn32f* weight, f32x4 low, f32x4 high) {
        low_ = low_ + load<f32x4>(weight) * low;
        high_ = high_ + load<f32x4>(weight + 4) * high;
    }
    VORN_INLINE void endRounds() { first_ = firstLane(low_); }
    VORN_INLINE void addOne(Vorn32f weight, Vorn32f value) { first_ += weight * value; }
    VORN_INLINE Vorn32f total() const { return sumHalves(withFirst(low_, first_) + high_); }

private:
    f32x4 low_ = splat<f32x4>(0), high_ = splat<f32x4>(0);
    Vorn32f first_ = 0;
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

    // The rising side of the first filter: the bins of the left edge and of the centre, and those between. One bin
    // where the two are the same.
    VORN_INLINE void first(FilterSum& rising, const Vorn32f* rise, std::ptrdiff_t centre) {
        start(rising, rise);
        FilterSum none;
        if (centre > bin_) stretch<false, true>(none, rise, rising, rise, centre);
    }

    // The bins behind the current one up to the edge. Eight a round while more than eight are left, then single ones,
    // and one at least: an empty stretch takes the bin behind it, and what follows runs one bin late up to the next
    // stretch of two bins or more.
    template <bool falls, bool rises>
    VORN_INLINE void stretch(FilterSum& falling, const Vorn32f* fall, FilterSum& rising, const Vorn32f* rise,
                             std::ptrdiff_t edge) {
        const std::ptrdiff_t end = std::min(edge, lastBin_);
        ++rise;
        if (end - bin_ > 8) {
            if constexpr (falls) falling.beginRounds();
            if constexpr (rises) rising.beginRounds();
            for (; end - bin_ > 8; bin_ += 8, fall += 8, rise += 8) {
                const f32x4 low = load<f32x4>(spectrum_ + bin_ + 1), high = load<f32x4>(spectrum_ + bin_ + 5);
                if constexpr (falls) falling.addEight(fall, low, high);
                if constexpr (rises) rising.addEight(rise, low, high);
            }
            if constexpr (falls) falling.endRounds();
            if constexpr (rises) rising.endRounds();
        }
        const std::ptrdiff_t count = std::max<std::ptrdiff_t>(end - bin_, 1);
        bin_ += count;
        if (bin_ > lastBin_) return;
        // Counted from the end of the stretch, so that each case runs on into the next bin.
        const auto single = [&](int before) {
            const Vorn32f value = spectrum_[bin_ - before];
            if constexpr (falls) falling.addOne(fall[count - 1 - before], value);
            if constexpr (rises) rising.addOne(rise[count - 1 - before], value);
        };
        switch (count) {
            case 8:
                single(7);
                [[fallthrough]];
            case 7:
                single(6);
                [[fallthrough]];
            case 6:
                single(5);
                [[fallthrough]];
            case 5:
                single(4);
                [[fallthrough]];
            case 4:
                single(3);
                [[fallthrough]];
            case 3:
                single(2);
                [[fallthrough]];
            case 2:
                single(1);
                [[fallthrough]];
            default:
                single(0);
        }
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
    walk.first(rising, bank.ppRise[0], edge[1]);
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

// How values and weights make the terms of a sum in 64 bits, which wraps: one, and four a step.
struct WrappedProducts {
    using Sum = ProductSum;
    static VORN_INLINE std::int64_t one(std::int32_t value, std::int32_t weight) { return wrapMul(value, weight); }
};
struct ShiftedProducts {
    using Sum = ShiftedProductSum;
    static VORN_INLINE std::int64_t one(std::int32_t value, std::int32_t weight) {
        return (std::int64_t{value} * weight) >> 8;
    }
};

// The part of a row of weights that lies on the bins first, first + 1, ... up to last, in the spectrum and in the row.
template <class Products, class Value>
std::int64_t sideSum(const Value* spectrum, const Vorn32s* weight, std::int64_t first, std::int64_t last,
                     std::int64_t lastBin, std::int64_t capacity) {
    const std::int64_t end = std::min({last, lastBin, first + capacity - 1});
    std::int64_t sum = 0;
    for (std::int64_t bin = std::max<std::int64_t>(first, 0); bin <= end; ++bin) {
        sum = wrapAdd(sum, Products::one(spectrum[bin], weight[bin - first]));
    }
    return sum;
}

// Four bins of a spectrum in 32 bits.
VORN_INLINE i32x4 loadFour(const Vorn16s* p) { return loadWidened<i32x4>(p); }
VORN_INLINE i32x4 loadFour(const Vorn32s* p) { return load<i32x4>(p); }

// The two sums a stretch of bins between neighbouring edges feeds.
struct SideSums {
    std::int64_t falling, rising;
};

// Adds the bins in rounds of eight and says how many it took: none if a weight is too large for a short product.
template <bool falls, bool rises>
VORN_INLINE std::int64_t addShortRounds(const Vorn16s* x, const Vorn32s* fall, const Vorn32s* rise, std::int64_t count,
                                        SideSums& sums) {
    const std::int64_t whole = count & ~std::int64_t{7};
    if (whole == 0) return 0;
    ShortProductSum falling, rising;
    for (std::int64_t i = 0; i < whole; i += 8) {
        const i16x8 value = load<i16x8>(x + i);
        if constexpr (falls) falling.add(value, ShortProductSum::weights(fall + i));
        if constexpr (rises) rising.add(value, ShortProductSum::weights(rise + i));
    }
    if (!falling.fit() || !rising.fit()) return 0;
    if constexpr (falls) sums.falling += falling.total();
    if constexpr (rises) sums.rising += rising.total();
    return whole;
}

// The bins behind first, up to last, on a falling and a rising row, and first itself on the rising one.
template <class Products, bool falls, bool rises, class Value, class Shape>
VORN_INLINE SideSums stretchSums(const Value* spectrum, const Vorn32s* fall, const Vorn32s* rise, std::int64_t first,
                                 std::int64_t last, const Shape& shape) {
    SideSums sums{0, 0};
    const std::int64_t count = std::min(last, shape.lastBin()) - first;
    if (first < 0 || count >= shape.riseCapacity()) {
        if constexpr (falls)
            sums.falling = sideSum<Products>(spectrum, fall, first + 1, last, shape.lastBin(), shape.fallCapacity());
        if constexpr (rises)
            sums.rising = sideSum<Products>(spectrum, rise, first, last, shape.lastBin(), shape.riseCapacity());
        return sums;
    }
    if (count < 0) return sums;
    const Value* x = spectrum + first;
    if constexpr (rises) sums.rising = Products::one(x[0], rise[0]);
    ++x;
    ++rise;
    const std::int64_t whole = count & ~std::int64_t{3};
    std::int64_t done = 0;
    if constexpr (std::is_same_v<Value, Vorn16s>) done = addShortRounds<falls, rises>(x, fall, rise, count, sums);
    if (done < whole) {
        typename Products::Sum falling, rising;
        for (std::int64_t i = done; i < whole; i += 4) {
            const i32x4 value = loadFour(x + i);
            if constexpr (falls) falling.add(value, load<i32x4>(fall + i));
            if constexpr (rises) rising.add(value, load<i32x4>(rise + i));
        }
        if constexpr (falls) sums.falling = wrapAdd(sums.falling, falling.total());
        if constexpr (rises) sums.rising = wrapAdd(sums.rising, rising.total());
    }
    const auto single = [&](std::int64_t i) {
        if constexpr (falls) sums.falling = wrapAdd(sums.falling, Products::one(x[i], fall[i]));
        if constexpr (rises) sums.rising = wrapAdd(sums.rising, Products::one(x[i], rise[i]));
    };
    switch (count - whole) {
        case 3:
            single(whole + 2);
            [[fallthrough]];
        case 2:
            single(whole + 1);
            [[fallthrough]];
        case 1:
            single(whole);
    }
    return sums;
}

// The sum of each filter k goes to store(k, sum). Each stretch of bins between two edges is walked once.
template <class Products, class Value, class State, class Shape, class Store>
VORN_INLINE void sumFilters(const Value* spectrum, const State& bank, const Shape& shape, const Store& store) {
    const Vorn32s* edge = bank.pCenters;
    std::int64_t rising =
        stretchSums<Products, false, true>(spectrum, bank.ppFall[0], bank.ppRise[0], edge[0], edge[1], shape).rising;
    for (int k = 0; k < bank.nFilter; ++k) {
        const bool last = k + 1 == bank.nFilter;
        const SideSums sums = last ? stretchSums<Products, true, false>(spectrum, bank.ppFall[k], bank.ppRise[k],
                                                                        edge[k + 1], edge[k + 2], shape)
                                   : stretchSums<Products, true, true>(spectrum, bank.ppFall[k], bank.ppRise[k + 1],
                                                                       edge[k + 1], edge[k + 2], shape);
        store(k, wrapAdd(rising, sums.falling));
        rising = sums.rising;
    }
}

// Each product wraps at 32 bits; the sums are exact. The shift truncates, to the left it drops what passes 64 bits.
template <class Value, class Result>
void evalFilters(const Value* spectrum, Result* dst, const VornFBankState_16s& bank, int shift) {
    const BankShape shape{bank.fftLen, bank.fftOrder, bank.nFilter};
    sumFilters<WrappedProducts>(spectrum, bank, shape, [=](int k, std::int64_t sum) {
        dst[k] = saturate<Result>(shift >= 0 ? shiftRight64(sum, shift) : shiftLeft64(sum, wrapSub(0, shift)));
    });
}

// A sum times 2^-scale without its last 22 bits, the first of them rounded up; limited from above alone.
constexpr Vorn32s withoutFraction(std::int64_t sum, int scale) {
    constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max(), highest = INT32_MAX;
    if (scale >= 0) {
        sum >>= scale;
    } else {
        sum = sum < (std::int64_t{1} << (63 + scale)) ? shiftLeft64(sum, -scale) : largest;
    }
    return static_cast<Vorn32s>(std::min((sum >> 22) + ((sum >> 21) & 1), highest));
}

inline void evalFilters(const Vorn32s* spectrum, Vorn32s* dst, const VornFBankState_32s& bank, int scale) {
    sumFilters<ShiftedProducts>(spectrum, bank, IntegerBankShape{bank.nBins, bank.nFilter},
                                [=](int k, std::int64_t sum) { dst[k] = withoutFraction(sum, scale); });
}

}  // namespace vorn
