// Rows of a matrix added to sums of its columns: the one walk that all column statistics take.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "frame/rows.h"
#include "loops/cache.h"
#include "simd/fold.h"
#include "simd/simd.h"
#include "simd/tile.h"
#include "vornsr/types.h"

namespace vorn::columns {

// ---- Vectors of neighbouring columns. A single T is the vector of one lane.

template <class V>
constexpr std::ptrdiff_t lanesOf() {
    if constexpr (std::is_arithmetic_v<V>) {
        return 1;
    } else {
        return V::lanes;
    }
}
template <class V>
using HalfOf = decltype(lowHalf(std::declval<V>()));

// The elements as they stand, or 16-bit integers as floats, which is exact.
template <class V, class Source>
VORN_INLINE V loadAs(const Source* p) {
    if constexpr (std::is_arithmetic_v<V>) {
        return static_cast<V>(*p);
    } else if constexpr (std::is_same_v<typename V::Element, Source>) {
        return load<V>(p);
    } else if constexpr (std::is_same_v<typename V::Element, Vorn32f>) {
        return toFloat(loadWidened<decltype(bitsOf(V()))>(p));
    } else {
        return loadWidened<V>(p);
    }
}
template <class V, class T>
VORN_INLINE void storeAs(T* p, V x) {
    if constexpr (std::is_arithmetic_v<V>) {
        *p = x;
    } else {
        store(p, x);
    }
}
template <class V, class T>
VORN_INLINE V splatAs(T x) {
    if constexpr (std::is_arithmetic_v<V>) {
        return x;
    } else {
        return splat<V>(x);
    }
}

// Vectors side by side from a column on, but for the last one, which may begin early so as to end at the last column.
template <class Vector, int vectors>
struct Group {
    using V = Vector;
    static constexpr int count = vectors;
    std::ptrdiff_t first, last;
    VORN_INLINE std::ptrdiff_t at(int k) const {
        return k == count - 1 ? last : first + std::ptrdiff_t{k} * lanesOf<V>();
    }
};

// Calls use(group) for columns that at most `most` narrower vectors hold.
template <class V, int most, class Use>
VORN_INLINE void inFewVectors(std::ptrdiff_t width, const Use& use) {
    const std::ptrdiff_t last = width - lanesOf<V>();
    if (last < 0) {
        if constexpr (sizeof(V) > 16) {
            return inFewVectors<HalfOf<V>, 2>(width, use);
        } else if constexpr (lanesOf<V>() > 1) {
            return inFewVectors<typename V::Element, static_cast<int>(V::lanes) - 1>(width, use);
        }
    }
    if (last == 0) return use(Group<V, 1>{0, last});
    if constexpr (most > 1) {
        if (last <= lanesOf<V>()) return use(Group<V, 2>{0, last});
    }
    if constexpr (most > 2) use(Group<V, 3>{0, last});
}

// Calls use(group) for groups of the build's vectors that cover all columns. None but the last one's last vector begins
// early, and that inside its own group: no two groups share a column.
constexpr int groupVectors = 4;
template <class V, class Use>
VORN_INLINE void overGroups(std::ptrdiff_t width, const Use& use) {
    constexpr std::ptrdiff_t lanes = lanesOf<V>();
    if (width < lanes) return inFewVectors<V, 1>(width, use);
    std::ptrdiff_t column = 0;
    for (std::ptrdiff_t vectors = (width + lanes - 1) / lanes; vectors > 0;) {
        const std::ptrdiff_t end = width - lanes;
        // One vector alone behind others could not begin early.
        const std::ptrdiff_t count = vectors == groupVectors + 1 ? 3 : std::min<std::ptrdiff_t>(vectors, groupVectors);
        switch (count) {
            case 4:
                use(Group<V, 4>{column, std::min(column + 3 * lanes, end)});
                break;
            case 3:
                use(Group<V, 3>{column, std::min(column + 2 * lanes, end)});
                break;
            case 2:
                use(Group<V, 2>{column, std::min(column + lanes, end)});
                break;
            default:
                use(Group<V, 1>{column, end});
                break;
        }
        column += count * lanes;
        vectors -= count;
    }
}

// ---- Reading ahead. Some rows that cross all columns at once are no order in which the processor would see the next
// ones coming: in a large matrix each asks for the row that stands as far behind it as they are many. (In a list of
// rows as well, as if they stood one step apart: that may be wrong, but does no harm.)

constexpr std::ptrdiff_t cachedBytes = 1 << 20;  // what a second-level cache holds anyway

template <class Source>
bool isLarge(const Source*, std::ptrdiff_t height, std::ptrdiff_t width) {
    return height > cachedBytes / (width * static_cast<std::ptrdiff_t>(sizeof(Source)));
}
// In bytes, of rows a step apart.
template <class Source>
VORN_INLINE std::uintptr_t farAhead(const Source* first, const Source* second, int rows) {
    return (reinterpret_cast<std::uintptr_t>(second) - reinterpret_cast<std::uintptr_t>(first)) *
           static_cast<std::uintptr_t>(rows);
}
// Once for every line of the cache.
template <int count, class Source>
VORN_INLINE void fetchRows(const Source* const (&x)[count], std::ptrdiff_t column, std::uintptr_t ahead) {
    if (column % (64 / static_cast<int>(sizeof(Source))) != 0) return;
    for (int r = 0; r < count; ++r) {
        fetchAhead<0>(reinterpret_cast<const char*>(reinterpret_cast<std::uintptr_t>(x[r] + column) + ahead));
    }
}

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
        constexpr std::ptrdiff_t groupColumns = groupVectors * lanesOf<V>();
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
                    width_, [&](auto group) __attribute__((always_inline)) { addToGroup(group, rows, row, end); });
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
        const std::ptrdiff_t end = width_ - lanesOf<V>();
        const Sums<V> last = sumsAt(end);
        const std::uintptr_t ahead = farAhead(x[0], x[1], rowsAtOnce);
        for (std::ptrdiff_t column = 0; column < end; column += lanesOf<V>()) {
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
