// Gaussian scores at low precision: -S / 2 x 2^-scaleFactor of 16-bit data, of four rows at once or of one (in lane 0;
// the other lanes are of no account).
#pragma once

#include <cstddef>
#include <cstdint>

#include "scoring/gauss/low_parts.h"
#include "scoring/gauss/many_rows/sums.h"

namespace vorn {

// ---- The 16-bit columns of rows as parts: take(p) yields the eight columns of the row at p.

template <class Rows, class Take>
VORN_INLINE Rows partsOf(const Shared<Vorn16s>& row, const Take& take) {
    const i16x8 columns = take(row[0]);
    Rows all;
    forParts<Rows::count>([&](auto p) __attribute__((always_inline)) {
        all.part[p] = inEachBlock<typename Rows::Vector>(columns);
    });
    return all;
}
template <class Rows, class Take>
VORN_INLINE Rows partsOf(const FourRows<Vorn16s>& rows, const Take& take) {
    return fourShortRows(take(rows[0]), take(rows[1]), take(rows[2]), take(rows[3]));
}
template <class Rows, class Take>
VORN_INLINE Rows partsOf(UnitVar, const Take&) {
    Rows ones;
    forParts<Rows::count>([&](auto p)
                              __attribute__((always_inline)) { ones.part[p] = splat<typename Rows::Vector>(1); });
    return ones;
}

// The sums of the two halves over columns, negated; a 32-bit lane for a pair of 16-bit columns.
template <class Rows>
struct NegatedHalves {
    using Pairs = decltype(mulAddPairs(typename Rows::Vector{}, typename Rows::Vector{}));
    Parts<Pairs, Rows::count> high, low;

    VORN_INLINE NegatedHalves() {
        forParts<Rows::count>([&](auto p)
                                  __attribute__((always_inline)) { high.part[p] = low.part[p] = splat<Pairs>(0); });
    }
    template <class Vectors, class Take>
    VORN_INLINE void subtract(const Vectors& vectors, const Take& take) {
        const Rows x = partsOf<Rows>(vectors.src, take), mean = partsOf<Rows>(vectors.mean, take),
                   var = partsOf<Rows>(vectors.var, take);
        forParts<Rows::count>([&](auto p) __attribute__((always_inline)) {
            const auto terms = lowTerms(subSat(x.part[p], mean.part[p]), var.part[p]);
            high.part[p] = high.part[p] - terms.high;
            low.part[p] = low.part[p] - terms.low;
        });
    }
};

// The columns from j on.
struct ColumnsFrom {
    std::ptrdiff_t j;
    VORN_INLINE i16x8 operator()(const Vorn16s* row) const { return load<i16x8>(row + j); }
};

// The rows of a pair: the halves are summed over all columns and shifted once, lane by lane. What is left behind the
// groups of eight goes to the lanes as passes of four, two and one columns bring it there: lane 1 gets the third and
// fourth column of a pass of four, lane 0 all others.
struct LowSums {
    static constexpr std::ptrdiff_t group = 8;

    template <class Rows>
    static VORN_NOINLINE i32x4 ofFour(const Rows& rows, std::ptrdiff_t len, const LowShifts& shift) {
        return negated<FourShortRows>(rows, len, shift);
    }
    template <class Row>
    static VORN_NOINLINE i32x4 ofOne(const Row& row, std::ptrdiff_t len, const LowShifts& shift) {
        return negated<OneShortRow>(row, len, shift);
    }

private:
    template <class Rows, class Vectors>
    static VORN_INLINE i32x4 negated(const Vectors& vectors, std::ptrdiff_t len, const LowShifts& shift) {
        NegatedHalves<Rows> sums;
        for (std::ptrdiff_t j = 0; j + 8 <= len; j += 8) sums.subtract(vectors, ColumnsFrom{j});
        return withColumnsLeft(
            len, [&](auto left) __attribute__((always_inline)) {
                NegatedHalves<Rows> rest;
                if constexpr (left > 0) {
                    takingColumnsLeft<left>(
                        len, [&](const auto& take) __attribute__((always_inline)) { rest.subtract(vectors, take); });
                }
                return totals<left>(sums.high, rest.high, shift.high) + totals<left>(sums.low, rest.low, shift.low);
            });
    }

    // The total of each row.
    template <int left, class Sums>
    static VORN_INLINE i32x4 totals(const Sums& sums, const Sums& rest, Shift shift) {
        // A shift to the left gives the same in any order, and the rest may stay in any lane.
        if (shift.right == 0) return shiftLeft(addedUp<Ungathered>(sums, rest, shift), shift.left);
        return addedUp<Gathered<left>>(sums, rest, shift);
    }

    // How the lanes of two rows and of their rests meet: every two neighbours of the result belong to one row.
    struct Ungathered {
        template <class I>
        static VORN_INLINE I pair(I a, I b, I restA, I restB, Shift) {
            a = a + restA, b = b + restB;
            return firstTwoOf(a, b) + lastTwoOf(a, b);
        }
    };
    template <int left>
    struct Gathered {
        template <class I>
        static VORN_INLINE I pair(I a, I b, I restA, I restB, Shift shift) {
            const I first = firstTwoOf(a, b), last = lastTwoOf(a, b);
            if constexpr (left == 0) {
                return shift(first) + shift(last);
            } else if constexpr (left < 4) {
                return shift(first + evenSums(firstTwoOf(restA, restB))) + shift(last);
            } else if constexpr (left == 4) {
                return shift(first + firstTwoOf(restA, restB)) + shift(last);
            } else {
                return shift(first + firstTwoOf(restA, restB) + evenSums(lastTwoOf(restA, restB))) + shift(last);
            }
        }
        // Each two neighbours in the lane of the first.
        template <class I>
        static VORN_INLINE I evenSums(I a) {
            return evenLanes(a + neighboursExchanged(a));
        }
    };

    template <class Lanes>
    static VORN_INLINE i32x4 addedUp(const Parts<i32x4, 1>& sums, const Parts<i32x4, 1>& rest, Shift shift) {
        const i32x4 none = splat<i32x4>(0);
        const i32x4 row = Lanes::pair(sums.part[0], none, rest.part[0], none, shift);
        return sumNeighbours(row, row);
    }
    template <class Lanes>
    static VORN_INLINE i32x4 addedUp(const Parts<i32x4, 4>& sums, const Parts<i32x4, 4>& rest, Shift shift) {
        return sumNeighbours(Lanes::pair(sums.part[0], sums.part[1], rest.part[0], rest.part[1], shift),
                             Lanes::pair(sums.part[2], sums.part[3], rest.part[2], rest.part[3], shift));
    }
    template <class Lanes, class I>
    static VORN_INLINE i32x4 addedUp(const Parts<I, 2>& sums, const Parts<I, 2>& rest, Shift shift) {
        const I rows = Lanes::pair(sums.part[0], sums.part[1], rest.part[0], rest.part[1], shift);
        return sumNeighbours(lowHalf(rows), highHalf(rows));
    }
};

// A last odd row: the halves of each group and of each pass are shifted before they are added, so the truncation of the
// shifts falls differently than in the rows of a pair. Kept so on purpose.
struct LowOddSum {
    template <class Row>
    static VORN_NOINLINE i32x4 ofOne(const Row& row, std::ptrdiff_t len, const LowShifts& shift) {
        i32x4 total = splat<i32x4>(0);
        const auto halvesOf = [&](const auto& take) __attribute__((always_inline)) {
            NegatedHalves<OneShortRow> halves;
            halves.subtract(row, take);
            return halves;
        };
        for (std::ptrdiff_t j = 0; j + 8 <= len; j += 8) {
            const auto group = halvesOf(ColumnsFrom{j});
            total = total + shift(group.high.part[0], group.low.part[0]);
        }
        withColumnsLeft(
            len, [&](auto left) __attribute__((always_inline)) {
                if constexpr (left > 0) {
                    const auto rest = takingColumnsLeft<left>(len, halvesOf);
                    const RestPasses high = RestPasses::of<left>(rest.high.part[0]);
                    const RestPasses low = RestPasses::of<left>(rest.low.part[0]);
                    for (int k = 0; k < 3; ++k) total = total + shift(high.pass[k], low.pass[k]);
                }
            });
        return splat<i32x4>(sumLanes(total));
    }
};

}  // namespace vorn
