// Rows of a matrix added to sums of its columns: the one walk that all column statistics take.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "frame/rows.h"
#include "loops/columns.h"
#include "simd/simd.h"
#include "simd/tile.h"
#include "vornsr/types.h"

namespace vorn::columns {

// ---- Terms: what a row x, or two neighbouring ones, add to a sum of their columns. w is the weight of the row.

struct InRowOrder {
    template <class V, class Weight>
    static VORN_INLINE V plus(V sum, V x, Weight) {
        return sum + x;
    }
};
// Two rows are added to one another first. Pairs begin at an even row.
struct InPairs : InRowOrder {
    template <class V>
    static VORN_INLINE V plusTwo(V sum, V first, V second) {
        return sum + (first + second);
    }
};
struct Squares {
    template <class V, class Weight>
    static VORN_INLINE V plus(V sum, V x, Weight) {
        return sum + x * x;
    }
};
struct SquaresInPairs : Squares {
    template <class V>
    static VORN_INLINE V plusTwo(V sum, V first, V second) {
        return sum + (first * first + second * second);
    }
};
struct Weighted {
    template <class V>
    static VORN_INLINE V plus(V sum, V x, V w) {
        return sum + w * x;
    }
};
struct WeightedSquares {
    template <class V>
    static VORN_INLINE V plus(V sum, V x, V w) {
        return sum + w * (x * x);
    }
};

template <class Term, class V, class Weight>
VORN_INLINE V plusTwoRows(V sum, V first, Weight firstWeight, V second, Weight secondWeight) {
    if constexpr (requires { Term::plusTwo(sum, first, second); }) {
        return Term::plusTwo(sum, first, second);
    } else {
        return Term::plus(Term::plus(sum, first, firstWeight), second, secondWeight);
    }
}

struct NoWeights {
    struct None {};
    template <class V>
    VORN_INLINE None of(std::ptrdiff_t) const {
        return {};
    }
};
template <class T>
struct Weights {
    const T* weight;
    template <class V>
    VORN_INLINE V of(std::ptrdiff_t row) const {
        return splatAs<V>(weight[row]);
    }
};

// ---- The walk. Each term has a sum of its own a column, to which the rows are added in their order.

template <class T, class Source, class WeightsOf, class... Terms>
class Walk {
public:
    static constexpr int count = sizeof...(Terms);
    using V = Wide<T>;

    // From this column of the rows on.
    Walk(AnyRows<const Source> rows, std::ptrdiff_t first, std::ptrdiff_t width, WeightsOf weights, T* const* sums)
        : rows_(rows), first_(first), width_(width), weights_(weights) {
        std::copy_n(sums, count, sums_);
    }

    void add(std::ptrdiff_t height) const {
        constexpr std::ptrdiff_t groupColumns = groupVectors * V::lanes;
        std::ptrdiff_t row = 0;
        // Of wide matrices, and of those of some width that no cache holds, some rows at once cross all columns.
        const bool large = isLarge(rows_[0], height, width_);
        constexpr std::ptrdiff_t wide = 256 / sizeof(T);
        if (width_ > wide || (large && width_ > groupColumns)) {
            for (; row + rowsAtOnce <= height; row += rowsAtOnce) addAcross(row, large);
        }
        // The others stay in the first-level cache in blocks of rows, while one group of columns after the other walks
        // down them.
        constexpr std::ptrdiff_t blockBytes = 8 << 10;
        const std::ptrdiff_t rowBytes = width_ * static_cast<std::ptrdiff_t>(sizeof(Source));
        const std::ptrdiff_t blockRows =
            width_ <= groupColumns ? height : std::max<std::ptrdiff_t>(rowsAtOnce, blockBytes / rowBytes / 2 * 2);
        // Two rows are soon added, too soon for a question about their layout: it is a type here.
        rows_.as([&](auto rows) __attribute__((always_inline)) {
            for (; row < height; row += blockRows) {
                const std::ptrdiff_t end = std::min(height, row + blockRows);
                overGroups<V>(
                    width_, [&](auto group) __attribute__((always_inline)) { addToGroup(group, rows, row, end); },
                    [&]() __attribute__((always_inline)) { addToFew(rows, row, end); });
            }
        });
    }

private:
    template <class Lanes>
    struct Sums {
        Lanes sum[count];
    };
    template <class Lanes>
    static VORN_INLINE Sums<Lanes> loadSums(T* const (&sums)[count], std::ptrdiff_t column) {
        Sums<Lanes> s;
        for (int i = 0; i < count; ++i) s.sum[i] = loadAs<Lanes>(sums[i] + column);
        return s;
    }
    template <class Lanes>
    static VORN_INLINE void storeSums(T* const (&sums)[count], std::ptrdiff_t column, const Sums<Lanes>& s) {
        for (int i = 0; i < count; ++i) storeAs(sums[i] + column, s.sum[i]);
    }
    template <class Lanes, class Weight>
    static VORN_INLINE void plusRow(Sums<Lanes>& s, Lanes x, Weight w) {
        int i = 0;
        ((s.sum[i] = Terms::plus(s.sum[i], x, w), ++i), ...);
    }
    template <class Lanes, class Weight>
    static VORN_INLINE void plusTwo(Sums<Lanes>& s, Lanes x, Weight w, Lanes next, Weight nextWeight) {
        int i = 0;
        ((s.sum[i] = plusTwoRows<Terms>(s.sum[i], x, w, next, nextWeight), ++i), ...);
    }

    template <class InGroup, class RowsOf>
    VORN_INLINE void addToGroup(InGroup group, RowsOf rows, std::ptrdiff_t row, std::ptrdiff_t end) const {
        using Lanes = typename InGroup::V;
        Sums<Lanes> sums[InGroup::count];
        for (int k = 0; k < InGroup::count; ++k) sums[k] = loadSums<Lanes>(sums_, group.at(k));
        for (; row + 2 <= end; row += 2) {
            const Source *x = rows[row] + first_, *next = rows[row + 1] + first_;
            const auto w = weights_.template of<Lanes>(row), nextWeight = weights_.template of<Lanes>(row + 1);
            for (int k = 0; k < InGroup::count; ++k) {
                plusTwo(sums[k], loadAs<Lanes>(x + group.at(k)), w, loadAs<Lanes>(next + group.at(k)), nextWeight);
            }
        }
        if (row < end) {
            const Source* x = rows[row] + first_;
            const auto w = weights_.template of<Lanes>(row);
            for (int k = 0; k < InGroup::count; ++k) plusRow(sums[k], loadAs<Lanes>(x + group.at(k)), w);
        }
        for (int k = 0; k < InGroup::count; ++k) storeSums(sums_, group.at(k), sums[k]);
    }

    template <int columns>
    struct FewColumns {
        using V = T;
        static constexpr int count = columns;
        static std::ptrdiff_t at(int k) { return k; }
    };
    template <class RowsOf>
    VORN_INLINE void addToFew(RowsOf rows, std::ptrdiff_t row, std::ptrdiff_t end) const {
        if constexpr (sizeof(T) == 4) {  // of doubles the narrowest vector has two
            if (width_ == 3) return addToGroup(FewColumns<3>(), rows, row, end);
            if (width_ == 2) return addToGroup(FewColumns<2>(), rows, row, end);
        }
        addToGroup(FewColumns<1>(), rows, row, end);
    }

    static constexpr int rowsAtOnce = 8;
    VORN_INLINE void addAcross(std::ptrdiff_t row, bool fetches) const {
        const Source* x[rowsAtOnce];
        decltype(weights_.template of<V>(row)) w[rowsAtOnce];
        for (int r = 0; r < rowsAtOnce; ++r) {
            x[r] = keepApart(rows_[row + r] + first_);
            w[r] = weights_.template of<V>(row + r);
        }
        T* into[count];  // for all that the compiler knows, a store to the sums could change what stands in memory
        for (int i = 0; i < count; ++i) into[i] = sums_[i];
        const auto sumsAt = [&](std::ptrdiff_t column) __attribute__((always_inline)) {
            Sums<V> s = loadSums<V>(into, column);
            for (int r = 0; r < rowsAtOnce; r += 2) {
                plusTwo(s, loadAs<V>(x[r] + column), w[r], loadAs<V>(x[r + 1] + column), w[r + 1]);
            }
            return s;
        };
        // The last vector may begin early: it is computed before its columns are stored.
        const std::ptrdiff_t end = width_ - V::lanes;
        const Sums<V> last = sumsAt(end);
        const std::uintptr_t ahead = farAhead(x[0], x[1], rowsAtOnce);
        for (std::ptrdiff_t column = 0; column < end; column += V::lanes) {
            if (fetches) fetchRows(x, column, ahead);
            storeSums(into, column, sumsAt(column));
        }
        storeSums(into, end, last);
    }

    AnyRows<const Source> rows_;
    std::ptrdiff_t first_, width_;
    WeightsOf weights_;
    T* sums_[count];
};

// sums[i][j] += what the term i makes of the column first + j of each row.
template <class... Terms, class T, class Source, class WeightsOf>
void addRows(AnyRows<const Source> rows, std::ptrdiff_t height, std::ptrdiff_t first, std::ptrdiff_t width,
             WeightsOf weights, T* const (&sums)[sizeof...(Terms)]) {
    Walk<T, Source, WeightsOf, Terms...>(rows, first, width, weights, sums).add(height);
}
template <class... Terms, class T, class Source, class WeightsOf>
void sumRows(AnyRows<const Source> rows, std::ptrdiff_t height, std::ptrdiff_t width, WeightsOf weights,
             T* const (&sums)[sizeof...(Terms)]) {
    for (T* sum : sums) std::fill_n(sum, width, T(0));
    addRows<Terms...>(rows, height, 0, width, weights, sums);
}

}  // namespace vorn::columns
