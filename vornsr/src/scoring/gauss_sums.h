// Gaussian scores: the sum S = sum over j of (x[j] - m[j])^2 x v[j] in the float arithmetics, negated as the scores
// need it, of four rows at once. How many rows advance together changes no bit; the lanes of a row and their order do.
#pragma once

#include <cstddef>
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

// The terms of one vector of columns, from column j on, in four rows.
template <class V>
struct FourTerms {
    V row[4];
};
template <class Terms, class V, class Rows>
VORN_INLINE FourTerms<V> fourTerms(const Rows& rows, std::ptrdiff_t j) {
    const auto row = [&](int r) __attribute__((always_inline)) {
        return Terms::template of<V, Rows::frameIsShared>(rows.src[r] + j, rows.mean[r] + j, rows.var[r] + j);
    };
    return {{row(0), row(1), row(2), row(3)}};
}
// Block b of every row: what one column group adds to the lanes.
template <int block, class V>
VORN_INLINE auto tileOf(const FourTerms<V>& terms) {
    return rowsOf<block>(terms.row[0], terms.row[1], terms.row[2], terms.row[3]);
}
template <class V, class Tile, int... block>
VORN_INLINE void subtractBlocks(Tile& sums, const FourTerms<V>& terms, std::integer_sequence<int, block...>) {
    ((sums = sums - tileOf<block>(terms)), ...);
}

// Subtracts the columns from j on, one 16-byte block of a row after the other, as far as whole vectors V reach.
template <class Terms, class V, class Rows, class Tile>
VORN_INLINE std::ptrdiff_t subtractVectors(const Rows& rows, std::ptrdiff_t j, std::ptrdiff_t len, Tile& sums) {
    constexpr std::ptrdiff_t columns = Terms::template columns<V>;
    constexpr int blocks = V::lanes / Tile::Block::lanes;
#pragma GCC unroll 2
    for (; j + columns <= len; j += columns) {
        subtractBlocks(sums, fourTerms<Terms, V>(rows, j), std::make_integer_sequence<int, blocks>());
    }
    return j;
}

// Subtracts all whole groups of columns; returns the first column behind them.
template <class Terms, class... V, class Rows, class Tile>
VORN_INLINE std::ptrdiff_t subtractGroups(Widths<V...>, const Rows& rows, std::ptrdiff_t len, Tile& sums) {
    std::ptrdiff_t j = 0;
    ((j = subtractVectors<Terms, V>(rows, j, len, sums)), ...);
    return j;
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
        f32x4x4 lanes{};
        const std::ptrdiff_t left = len - subtractGroups<Terms>(SingleWidths{}, rows, len, lanes);
        f32x4 sums = sumNeighbours(lanes);
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

}  // namespace vorn
