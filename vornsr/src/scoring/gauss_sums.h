// Gaussian scores: the sum S = sum over j of (x[j] - m[j])^2 x v[j] in the float arithmetics, negated as the scores
// need it, of four rows at once. How many rows advance together changes no bit; the lanes of a row and their order do.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "scoring/gauss_rows.h"
#include "simd_tile.h"
#include "vornsr/types.h"

namespace vorn {

// The term of a column: square x inverse variance.
template <class V>
VORN_INLINE V weighted(V square, const typename V::Element* var) {
    return square * load<V>(var);
}
template <class V>
VORN_INLINE V weighted(V square, UnitVar) {
    return square;
}
template <class T>
VORN_INLINE T weightedColumn(T square, const T* var) {
    return square * *var;
}
template <class T>
VORN_INLINE T weightedColumn(T square, UnitVar) {
    return square;
}

// Terms of T data, a lane a column.
template <class T>
struct FloatTerms {
    using Result = T;

    template <class V>
    static constexpr std::ptrdiff_t columns = V::lanes;

    template <class V, bool frameIsShared, class Var>
    static VORN_INLINE V of(const T* x, const T* mean, Var var) {
        const V d = frameIsShared ? load<V>(mean) - load<V>(x) : load<V>(x) - load<V>(mean);
        return weighted(d * d, var);
    }
    template <class Var>
    static VORN_INLINE T column(const T* x, const T* mean, Var var) {
        const T d = *x - *mean;
        return weightedColumn(d * d, var);
    }
};

// Terms of 16-bit data in single, a lane a column: the difference saturates to 16 bits.
struct ShortTerms {
    using Result = Vorn32f;

    template <class V>
    static constexpr std::ptrdiff_t columns = V::lanes;

    template <class V, bool, class Var>
    static VORN_INLINE auto of(const Vorn16s* x, const Vorn16s* mean, Var var) {
        const auto d = toFloats(subSat(load<V>(x), load<V>(mean)));
        return d * d * toFloats(load<V>(var));
    }
};

// The same with the identity covariance: the squares of two neighbours are added as integers (two squares of -32768
// wrap) and share a lane.
struct ShortPairTerms {
    using Result = Vorn32f;

    template <class V>
    static constexpr std::ptrdiff_t columns = V::lanes;

    template <class V, bool>
    static VORN_INLINE auto of(const Vorn16s* x, const Vorn16s* mean, UnitVar) {
        const V d = subSat(load<V>(x), load<V>(mean));
        return toFloat(mulAddPairs(d, d));
    }
};

// The columns behind the last group of eight: here the difference does not saturate. Kept so on purpose.
struct ExactShortTerms {
    using Result = Vorn32f;

    template <class V, bool>
    static VORN_INLINE auto of(const Vorn16s* x, const Vorn16s* mean, const Vorn16s* var) {
        const auto d = toFloats(load<V>(x)) - toFloats(load<V>(mean));
        return d * d * toFloats(load<V>(var));
    }
    template <class V, bool>
    static VORN_INLINE auto of(const Vorn16s* x, const Vorn16s* mean, UnitVar) {
        const auto d = toFloats(load<V>(x)) - toFloats(load<V>(mean));
        return d * d;
    }
    static VORN_INLINE Vorn32f column(const Vorn16s* x, const Vorn16s* mean, const Vorn16s* var) {
        const Vorn32f d = static_cast<Vorn32f>(*x) - static_cast<Vorn32f>(*mean);
        return d * d * static_cast<Vorn32f>(*var);
    }
    static VORN_INLINE Vorn32f column(const Vorn16s* x, const Vorn16s* mean, UnitVar) {
        const Vorn32f d = static_cast<Vorn32f>(*x) - static_cast<Vorn32f>(*mean);
        return d * d;
    }
};

// What four rows yield for the same columns, each a vector.
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
        return Terms::template of<V, Rows::frameIsShared>(rows.src[r] + j, rows.mean[r] + j, rows.var[r] + j);
    });
}
// 16-byte block b of every row.
template <int block, class V>
VORN_INLINE auto tileOf(const FourTerms<V>& terms) {
    return rowsOf<block>(terms.row[0], terms.row[1], terms.row[2], terms.row[3]);
}

// How the columns reach a sum: each lane of a block keeps to its lane of the sum,
template <class Tile>
struct InLanes {
    static constexpr int blockLanes = Tile::Block::lanes;
    Tile sums{};
    VORN_INLINE void subtract(const Tile& terms) { sums = sums - terms; }
};
// or every column goes to the one sum of its row, in order.
struct InColumnOrder {
    static constexpr int blockLanes = 2;
    Four<Vorn64f> sums = splat<Four<Vorn64f>>(0);
    VORN_INLINE void subtract(const f64x2x4& terms) {
        Four<Vorn64f> column[2];
        columnsOf(terms, column);
        sums = sums - column[0];
        sums = sums - column[1];
    }
};

template <class V, class Accumulator, int... block>
VORN_INLINE void subtractBlocks(Accumulator& acc, const FourTerms<V>& terms, std::integer_sequence<int, block...>) {
    (acc.subtract(tileOf<block>(terms)), ...);
}

// Subtracts the columns from j on, one 16-byte block of a row after the other, as far as whole vectors V reach.
template <class Terms, class V, class Rows, class Accumulator>
VORN_INLINE std::ptrdiff_t subtractVectors(const Rows& rows, std::ptrdiff_t j, std::ptrdiff_t len, Accumulator& acc) {
    constexpr std::ptrdiff_t columns = Terms::template columns<V>;
#pragma GCC unroll 2
    for (; j + columns <= len; j += columns) {
        const auto terms = fourTerms<Terms, V>(rows, j);
        constexpr int blocks = std::remove_cvref_t<decltype(terms.row[0])>::lanes / Accumulator::blockLanes;
        subtractBlocks(acc, terms, std::make_integer_sequence<int, blocks>());
    }
    return j;
}

// Subtracts all whole groups of columns; returns how many columns are left behind them.
template <class Terms, class... V, class Rows, class Accumulator>
VORN_INLINE std::ptrdiff_t subtractGroups(Widths<V...>, const Rows& rows, std::ptrdiff_t len, Accumulator& acc) {
    std::ptrdiff_t j = 0;
    ((j = subtractVectors<Terms, V>(rows, j, len, acc)), ...);
    return len - j;
}

// -S in plain column order, for rows shorter than a group.
template <class Terms, class Rows>
inline auto negatedShortSums(const Rows& rows, std::ptrdiff_t len) {
    typename Terms::Result sums[4] = {};
    for (int r = 0; r < 4; ++r) {
        for (std::ptrdiff_t j = 0; j < len; ++j) {
            sums[r] = sums[r] - Terms::column(rows.src[r] + j, rows.mean[r] + j, rows.var[r] + j);
        }
    }
    return load<Four<typename Terms::Result>>(sums);
}

// -S in single: one accumulator of four lanes a row, (lane 0 + lane 1) + (lane 2 + lane 3), then the last len mod 4
// columns one by one.
struct SingleSums {
    template <class Rows>
    static VORN_INLINE f32x4 negated(const Rows& rows, std::ptrdiff_t len) {
        using Terms = FloatTerms<Vorn32f>;
        if (len < 4) return negatedShortSums<Terms>(rows, len);
        InLanes<f32x4x4> lanes;
        const std::ptrdiff_t left = subtractGroups<Terms>(SingleWidths{}, rows, len, lanes);
        f32x4 sums = sumNeighbours(lanes.sums);
        if (left > 0) {
            f32x4 column[4];
            columnsOf(tileOf<0>(fourTerms<Terms, f32x4>(rows, len - 4)), column);
            if (left > 2) sums = sums - column[1];
            if (left > 1) sums = sums - column[2];
            sums = sums - column[3];
        }
        return sums;
    }
};

// A last odd column, in double.
template <class Rows>
VORN_INLINE Four<Vorn64f> lastColumn(const Rows& rows, std::ptrdiff_t len) {
    Four<Vorn64f> column[2];
    columnsOf(tileOf<0>(fourTerms<FloatTerms<Vorn64f>, f64x2>(rows, len - 2)), column);
    return column[1];
}

// -S in double: one accumulator of two lanes a row, lane 0 + lane 1, then a last odd column.
struct DoubleSums {
    template <class Rows>
    static VORN_INLINE Four<Vorn64f> negated(const Rows& rows, std::ptrdiff_t len) {
        using Terms = FloatTerms<Vorn64f>;
        if (len < 2) return negatedShortSums<Terms>(rows, len);
        InLanes<f64x2x4> lanes;
        const std::ptrdiff_t left = subtractGroups<Terms>(DoubleWidths{}, rows, len, lanes);
        const Four<Vorn64f> sums = sumLanes(lanes.sums);
        return left > 0 ? sums - lastColumn(rows, len) : sums;
    }
};

// -S in double in plain column order.
struct DoubleSumsInOrder {
    template <class Rows>
    static VORN_INLINE Four<Vorn64f> negated(const Rows& rows, std::ptrdiff_t len) {
        using Terms = FloatTerms<Vorn64f>;
        if (len < 2) return negatedShortSums<Terms>(rows, len);
        InColumnOrder acc;
        const std::ptrdiff_t left = subtractGroups<Terms>(DoubleWidths{}, rows, len, acc);
        return left > 0 ? acc.sums - lastColumn(rows, len) : acc.sums;
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

// -S of 16-bit data in single: four lanes a row over groups of eight columns, the last len mod 8 columns one by one to
// lane 0, then (lane 0 + lane 2) + (lane 1 + lane 3).
struct ShortSums {
    template <class Src, class Mean, class Var>
    static VORN_INLINE f32x4 negated(const Pairing<Src, Mean, Var>& rows, std::ptrdiff_t len) {
        using Groups = ShortGroups<Var>;
        if (len < 8) return negatedShortSums<ExactShortTerms>(rows, len);
        InLanes<f32x4x4> acc;
        const std::ptrdiff_t left = subtractGroups<typename Groups::Terms>(typename Groups::Widths{}, rows, len, acc);
        f32x4 lane[4];
        columnsOf(acc.sums, lane);
        if (left > 0) {
            const auto last = fourTerms<ExactShortTerms, i16x8>(rows, len - 8);
            f32x4 column[8];
            columnsOf(tileOf<0>(last), reinterpret_cast<f32x4(&)[4]>(column[0]));
            columnsOf(tileOf<1>(last), reinterpret_cast<f32x4(&)[4]>(column[4]));
            for (std::ptrdiff_t j = 8 - left; j < 8; ++j) lane[0] = lane[0] - column[j];
        }
        return (lane[0] + lane[2]) + (lane[1] + lane[3]);
    }
};

// The elements behind the last group of eight: lanes 0 to len mod 8 - 1, zeros behind them.
VORN_INLINE i16x8 loadRest(const Vorn16s* row, std::ptrdiff_t len) {
    const int left = static_cast<int>(len % 8);
    return len < 8 ? loadFirst<i16x8>(row, left) : dropFirst(load<i16x8>(row + len - 8), 8 - left);
}
VORN_INLINE i16x8 loadRest(UnitVar, std::ptrdiff_t) { return splat<i16x8>(1); }
// The saturated difference of two rows there.
VORN_INLINE i16x8 differenceOfRest(const Vorn16s* x, const Vorn16s* mean, std::ptrdiff_t len) {
    if (len < 8) return subSat(loadRest(x, len), loadRest(mean, len));
    return dropFirst(subSat(load<i16x8>(x + len - 8), load<i16x8>(mean + len - 8)), static_cast<int>(8 - len % 8));
}

// The passes of four, two and one columns in which the low-precision kinds take what is left behind the groups of
// eight. pairs holds the sums of neighbouring columns; a pass has its columns in the first lanes.
struct RestPasses {
    i32x4 pass[3];

    static VORN_INLINE RestPasses of(i32x4 pairs, std::ptrdiff_t left) {
        alignas(16) static constexpr std::int32_t firstLane[4] = {-1, 0, 0, 0}, firstTwo[4] = {-1, -1, 0, 0};
        const i32x4 one = load<i32x4>(firstLane);
        if (left >= 4) return {{pairs & load<i32x4>(firstTwo), dropFirst<2>(pairs) & one, dropFirst<3>(pairs)}};
        return {{pairs & one, dropFirst<1>(pairs) & one, splat<i32x4>(0)}};
    }
};

// -S of 16-bit data with the identity covariance at low precision: as ShortSums, but the last len mod 8 columns come in
// passes of four, two and one, whose differences saturate.
struct ShortPassSums {
    template <class Src, class Mean>
    static VORN_INLINE f32x4 negated(const Pairing<Src, Mean, UnitVar>& rows, std::ptrdiff_t len) {
        InLanes<f32x4x4> acc;
        const std::ptrdiff_t left = subtractGroups<ShortPairTerms>(ShortWidths{}, rows, len, acc);
        if (left > 0) {
            const auto rest = forFourRows([&](int r) __attribute__((always_inline)) {
                const i16x8 d = differenceOfRest(rows.src[r], rows.mean[r], len);
                return RestPasses::of(mulAddPairs(d, d), left);
            });
            for (int k = 0; k < 3; ++k) {
                acc.subtract(rowsOf<0>(toFloat(rest.row[0].pass[k]), toFloat(rest.row[1].pass[k]),
                                       toFloat(rest.row[2].pass[k]), toFloat(rest.row[3].pass[k])));
            }
        }
        f32x4 lane[4];
        columnsOf(acc.sums, lane);
        return (lane[0] + lane[2]) + (lane[1] + lane[3]);
    }
};

}  // namespace vorn
