// Gaussian scores: the sum S = sum over j of (x[j] - m[j])^2 x v[j] in the float arithmetics, negated as the scores
// need it or as it is for distances, of four rows at once or of one (in lane 0; the other lanes are of no account). How
// many rows advance together changes no bit; the lanes of a row and their order do.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "frame/rounding.h"
#include "scoring/gauss/rows.h"
#include "scoring/gauss/terms.h"
#include "simd/tile.h"
#include "vornsr/types.h"

namespace vorn {

// What each of four rows yields.
template <class V>
struct FourTerms {
    V row[4];
};
template <class Function>
VORN_INLINE auto forFourRows(const Function& of) {
    return FourTerms<decltype(of(0))>{{of(0), of(1), of(2), of(3)}};
}
template <class Terms, class V, class Rows>
VORN_INLINE auto fourTerms(const Rows& rows, std::ptrdiff_t j) {
    return forFourRows([&](int r) __attribute__((always_inline)) {
        return Terms::template of<V>(rows.src[r] + j, rows.mean[r] + j, rows.var[r] + j);
    });
}
// The term of one column, a lane a row.
VORN_INLINE f32x4 columnOf(const FourRows<Vorn32f>& rows, std::ptrdiff_t j) {
    return lanesOf(rows[0][j], rows[1][j], rows[2][j], rows[3][j]);
}
VORN_INLINE f32x4 columnOf(const Shared<Vorn32f>& row, std::ptrdiff_t j) { return splat<f32x4>(row[0][j]); }
template <class Rows>
VORN_INLINE f32x4 columnTerm(const Rows& rows, std::ptrdiff_t j) {
    const f32x4 d = columnOf(rows.src, j) - columnOf(rows.mean, j);
    if constexpr (isUnit<decltype(rows.var)>) {
        return d * d;
    } else {
        return d * d * columnOf(rows.var, j);
    }
}
// 16-byte block b of every row.
template <int block, class V>
VORN_INLINE auto tileOf(const FourTerms<V>& terms) {
    return rowsOf<block>(terms.row[0], terms.row[1], terms.row[2], terms.row[3]);
}

// How the columns join a sum: each lane of a block keeps to its lane of the sum,
template <class Tile, class Sign = Subtracted>
struct InLanes {
    static constexpr int blockLanes = Tile::Block::lanes;
    Tile sums{};
    VORN_INLINE void join(const Tile& terms) { sums = Sign()(sums, terms); }
};
// or every column goes to the one sum of its row, in order.
struct InColumnOrder {
    static constexpr int blockLanes = 2;
    Four<Vorn64f> sums = splat<Four<Vorn64f>>(0);
    VORN_INLINE void join(const f64x2x4& terms) {
        Four<Vorn64f> column[2];
        columnsOf(terms, column);
        sums = sums - column[0];
        sums = sums - column[1];
    }
};

template <class V, class Accumulator, int... block>
VORN_INLINE void joinBlocks(Accumulator& acc, const FourTerms<V>& terms, std::integer_sequence<int, block...>) {
    (acc.join(tileOf<block>(terms)), ...);
}

// Joins the columns from j on, one 16-byte block of a row after the other, as far as whole vectors V reach.
template <class Terms, class V, class Rows, class Accumulator>
VORN_INLINE std::ptrdiff_t joinVectors(const Rows& rows, std::ptrdiff_t j, std::ptrdiff_t len, Accumulator& acc) {
    constexpr std::ptrdiff_t columns = Terms::template columns<V>;
#pragma GCC unroll 2
    for (; j + columns <= len; j += columns) {
        const auto terms = fourTerms<Terms, V>(rows, j);
        constexpr int blocks = std::remove_cvref_t<decltype(terms.row[0])>::lanes / Accumulator::blockLanes;
        joinBlocks(acc, terms, std::make_integer_sequence<int, blocks>());
    }
    return j;
}

// Joins all whole groups of columns; returns how many columns are left behind them.
template <class Terms, class... V, class Rows, class Accumulator>
VORN_INLINE std::ptrdiff_t joinGroups(Widths<V...>, const Rows& rows, std::ptrdiff_t len, Accumulator& acc) {
    std::ptrdiff_t j = 0;
    ((j = joinVectors<Terms, V>(rows, j, len, acc)), ...);
    return len - j;
}

// The same for one row: all whole groups V of columns,
template <class Terms, class V, class Row, class Join>
VORN_INLINE std::ptrdiff_t joinGroupsOfOne(const Row& row, std::ptrdiff_t len, const Join& join) {
    std::ptrdiff_t j = 0;
    for (; j + V::lanes <= len; j += V::lanes) {
        join(Terms::template of<V>(row.src[0] + j, row.mean[0] + j, row.var[0] + j));
    }
    return len - j;
}
// and the last `left` columns, one after the other.
template <class Terms, class Sign = Subtracted, class Row>
VORN_INLINE auto joinColumns(typename Terms::Result sum, const Row& row, std::ptrdiff_t len, std::ptrdiff_t left) {
    for (std::ptrdiff_t j = len - left; j < len; ++j) {
        sum = Sign()(sum, Terms::column(row.src[0] + j, row.mean[0] + j, row.var[0] + j));
    }
    return sum;
}

// S or -S in single: one accumulator of four lanes a row, (lane 0 + lane 1) + (lane 2 + lane 3), then the last len mod
// 4 columns one by one.
template <class Sign>
struct SignedFloatSums {
    using Terms = FloatTerms<Vorn32f>;
    static constexpr std::ptrdiff_t group = 4;

    template <class Rows>
    static VORN_INLINE f32x4 ofFour(const Rows& rows, std::ptrdiff_t len) {
        constexpr Sign join;
        InLanes<f32x4x4, Sign> lanes;
        const std::ptrdiff_t left = joinGroups<Terms>(SingleWidths{}, rows, len, lanes);
        f32x4 sums = sumNeighbours(lanes.sums);
        if (left == 1) return join(sums, columnTerm(rows, len - 1));
        if (left > 1) {
            f32x4 column[4];
            columnsOf(tileOf<0>(fourTerms<Terms, f32x4>(rows, len - 4)), column);
            if (left > 2) sums = join(sums, column[1]);
            sums = join(sums, column[2]);
            sums = join(sums, column[3]);
        }
        return sums;
    }
    template <class Row>
    static VORN_NOINLINE f32x4 ofOne(const Row& row, std::ptrdiff_t len) {
        f32x4 lanes = splat<f32x4>(0);
        const std::ptrdiff_t left =
            joinGroupsOfOne<Terms, f32x4>(row, len, [&](f32x4 terms) { lanes = Sign()(lanes, terms); });
        return splat<f32x4>(joinColumns<Terms, Sign>(sumNeighbours(lanes), row, len, left));
    }
};
using FloatSums = SignedFloatSums<Subtracted>;

// A last odd column, in double.
template <class Rows>
VORN_INLINE Four<Vorn64f> lastColumn(const Rows& rows, std::ptrdiff_t len) {
    Four<Vorn64f> column[2];
    columnsOf(tileOf<0>(fourTerms<FloatTerms<Vorn64f>, f64x2>(rows, len - 2)), column);
    return column[1];
}

// S or -S in double: one accumulator of two lanes a row, lane 0 + lane 1, then a last odd column.
template <class Sign>
struct SignedDoubleSums {
    using Terms = FloatTerms<Vorn64f>;
    static constexpr std::ptrdiff_t group = 2;

    template <class Rows>
    static VORN_INLINE Four<Vorn64f> ofFour(const Rows& rows, std::ptrdiff_t len) {
        InLanes<f64x2x4, Sign> lanes;
        const std::ptrdiff_t left = joinGroups<Terms>(DoubleWidths{}, rows, len, lanes);
        const Four<Vorn64f> sums = sumLanes(lanes.sums);
        return left > 0 ? Sign()(sums, lastColumn(rows, len)) : sums;
    }
    template <class Row>
    static VORN_NOINLINE Four<Vorn64f> ofOne(const Row& row, std::ptrdiff_t len) {
        f64x2 lanes = splat<f64x2>(0);
        const std::ptrdiff_t left =
            joinGroupsOfOne<Terms, f64x2>(row, len, [&](f64x2 terms) { lanes = Sign()(lanes, terms); });
        return firstOnly(joinColumns<Terms, Sign>(sumLanes(lanes), row, len, left));
    }
};
using DoubleSums = SignedDoubleSums<Subtracted>;

// -S in double in plain column order.
struct DoubleSumsInOrder {
    using Terms = FloatTerms<Vorn64f>;
    static constexpr std::ptrdiff_t group = 2;

    template <class Rows>
    static VORN_INLINE Four<Vorn64f> ofFour(const Rows& rows, std::ptrdiff_t len) {
        InColumnOrder acc;
        const std::ptrdiff_t left = joinGroups<Terms>(DoubleWidths{}, rows, len, acc);
        return left > 0 ? acc.sums - lastColumn(rows, len) : acc.sums;
    }
    template <class Row>
    static VORN_NOINLINE Four<Vorn64f> ofOne(const Row& row, std::ptrdiff_t len) {
        return firstOnly(joinColumns<Terms>(0, row, len, len));
    }
};

// Which terms the groups of eight columns of 16-bit data have.
template <class Var>
struct ShortGroups {
    using Terms = ShortTerms;
    using Widths = ShortToSingleWidths;
};
template <>
struct ShortGroups<UnitVar> {
    using Terms = ShortPairTerms;
    using Widths = ShortWidths;
};

// (lane 0 + lane 2) + (lane 1 + lane 3) of each row, from a sum of terms back to units of 1.
template <class Terms>
VORN_INLINE f32x4 totals(const f32x4 (&lane)[4]) {
    const f32x4 sums = (lane[0] + lane[2]) + (lane[1] + lane[3]);
    return Terms::unit == 1 ? sums : sums * splat<f32x4>(Terms::unit);
}

// The terms of a group of eight columns that one row subtracts.
VORN_INLINE void subtractInFours(f32x4& lanes, f32x8of8 terms) {
    lanes = lanes - lowHalf(terms);
    lanes = lanes - highHalf(terms);
}
VORN_INLINE void subtractInFours(f32x4& lanes, f32x4 terms) { lanes = lanes - terms; }

// -S of 16-bit data in single: four lanes a row over groups of eight columns, the last len mod 8 columns one by one to
// lane 0, then (lane 0 + lane 2) + (lane 1 + lane 3).
struct ShortSums {
    static constexpr std::ptrdiff_t group = 8;

    template <class Src, class Mean, class Var>
    static VORN_INLINE f32x4 ofFour(const Pairing<Src, Mean, Var>& rows, std::ptrdiff_t len) {
        using Terms = typename ShortGroups<Var>::Terms;
        InLanes<f32x4x4> acc;
        const std::ptrdiff_t left = joinGroups<Terms>(typename ShortGroups<Var>::Widths{}, rows, len, acc);
        f32x4 lane[4];
        columnsOf(acc.sums, lane);
        if (left > 0) {
            const auto last = fourTerms<ExactShortTerms, i16x8>(rows, len - 8);
            f32x4 column[4];
            if (left > 4) {
                columnsOf(tileOf<0>(last), column);
                if (left > 6) lane[0] = lane[0] - column[1];
                if (left > 5) lane[0] = lane[0] - column[2];
                lane[0] = lane[0] - column[3];
            }
            columnsOf(tileOf<1>(last), column);
            if (left > 3) lane[0] = lane[0] - column[0];
            if (left > 2) lane[0] = lane[0] - column[1];
            if (left > 1) lane[0] = lane[0] - column[2];
            lane[0] = lane[0] - column[3];
        }
        return totals<Terms>(lane);
    }
    template <class Src, class Mean, class Var>
    static VORN_NOINLINE f32x4 ofOne(const Pairing<Src, Mean, Var>& row, std::ptrdiff_t len) {
        using Terms = typename ShortGroups<Var>::Terms;
        if (len < 8) return splat<f32x4>(joinColumns<ExactShortTerms>(0, row, len, len));
        f32x4 lanes = splat<f32x4>(0);
        const std::ptrdiff_t left =
            joinGroupsOfOne<Terms, i16x8>(row, len, [&](auto terms) { subtractInFours(lanes, terms); });
        if (left > 0) {
            const auto terms =
                ExactShortTerms::of<i16x8>(row.src[0] + len - 8, row.mean[0] + len - 8, row.var[0] + (len - 8));
            Vorn32f term[8];
            store(term, lowHalf(terms)), store(term + 4, highHalf(terms));
            lanes = withFirst(lanes, joinLast<Subtracted>(firstLane(lanes), term, left));
        }
        return splat<f32x4>(sumHalves(lanes) * Terms::unit);
    }
};

// Calls of(left) with the number of columns behind the last group of eight as one that the compiler knows; of(0) where
// there are none.
template <class Function>
VORN_INLINE auto withColumnsLeft(std::ptrdiff_t len, const Function& of) {
    switch (len % 8) {
        case 1:
            return of(std::integral_constant<int, 1>());
        case 2:
            return of(std::integral_constant<int, 2>());
        case 3:
            return of(std::integral_constant<int, 3>());
        case 4:
            return of(std::integral_constant<int, 4>());
        case 5:
            return of(std::integral_constant<int, 5>());
        case 6:
            return of(std::integral_constant<int, 6>());
        case 7:
            return of(std::integral_constant<int, 7>());
        default:
            return of(std::integral_constant<int, 0>());
    }
}

// The columns behind the last group of eight, zeros behind them: of rows that have a whole group, and of shorter ones.
template <int left>
struct BehindGroups {
    std::ptrdiff_t len;
    VORN_INLINE i16x8 operator()(const Vorn16s* row) const { return dropFirst<8 - left>(load<i16x8>(row + len - 8)); }
};
template <int left>
struct ShortRow {
    VORN_INLINE i16x8 operator()(const Vorn16s* row) const { return loadFirst<i16x8>(row, left); }
};
// of(take) with the one of them that rows of this length need.
template <int left, class Function>
VORN_INLINE auto takingColumnsLeft(std::ptrdiff_t len, const Function& of) {
    return len < 8 ? of(ShortRow<left>()) : of(BehindGroups<left>{len});
}

// The passes of four, two and one columns in which the low-precision kinds take what is left behind the groups of
// eight. pairs holds the sums of neighbouring columns; a pass has its columns in the first lanes.
struct RestPasses {
    i32x4 pass[3];

    template <int left>
    static VORN_INLINE RestPasses of(i32x4 pairs) {
        alignas(16) static constexpr std::int32_t firstLane[4] = {-1, 0, 0, 0}, firstTwo[4] = {-1, -1, 0, 0};
        const i32x4 one = load<i32x4>(firstLane);
        if constexpr (left >= 4) {
            return {{pairs & load<i32x4>(firstTwo), dropFirst<2>(pairs) & one, dropFirst<3>(pairs)}};
        } else {
            return {{pairs & one, dropFirst<1>(pairs) & one, splat<i32x4>(0)}};
        }
    }
};

// -S of 16-bit data with the identity covariance at low precision: as ShortSums, but the last len mod 8 columns come in
// passes of four, two and one, whose differences saturate.
struct ShortPassSums {
    static constexpr std::ptrdiff_t group = 8;

    template <class Rows>
    static VORN_INLINE f32x4 ofFour(const Rows& rows, std::ptrdiff_t len) {
        InLanes<f32x4x4> acc;
        joinGroups<ShortPairTerms>(ShortWidths{}, rows, len, acc);
        withColumnsLeft(
            len, [&](auto left) __attribute__((always_inline)) {
                if constexpr (left > 0) {
                    const auto rest = forFourRows([&](int r) __attribute__((always_inline)) {
                        return passes<left>(rows.src[r], rows.mean[r], len);
                    });
                    for (int k = 0; k < 3; ++k) {
                        acc.join(rowsOf<0>(toFloat(rest.row[0].pass[k]), toFloat(rest.row[1].pass[k]),
                                           toFloat(rest.row[2].pass[k]), toFloat(rest.row[3].pass[k])));
                    }
                }
            });
        f32x4 lane[4];
        columnsOf(acc.sums, lane);
        return totals<ShortPairTerms>(lane);
    }
    template <class Row>
    static VORN_NOINLINE f32x4 ofOne(const Row& row, std::ptrdiff_t len) {
        f32x4 lanes = splat<f32x4>(0);
        joinGroupsOfOne<ShortPairTerms, i16x8>(row, len, [&](f32x4 terms) { lanes = lanes - terms; });
        withColumnsLeft(
            len, [&](auto left) __attribute__((always_inline)) {
                if constexpr (left > 0) {
                    for (const i32x4 pass : passes<left>(row.src[0], row.mean[0], len).pass)
                        lanes = lanes - toFloat(pass);
                }
            });
        return splat<f32x4>(sumHalves(lanes));
    }

private:
    template <int left>
    static VORN_INLINE RestPasses passes(const Vorn16s* x, const Vorn16s* mean, std::ptrdiff_t len) {
        const i16x8 d = takingColumnsLeft<left>(
            len, [&](const auto& take) __attribute__((always_inline)) { return subSat(take(x), take(mean)); });
        return RestPasses::of<left>(mulAddPairs(d, d));
    }
};

}  // namespace vorn
