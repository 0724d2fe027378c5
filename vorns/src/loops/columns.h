// The columns of a matrix as vectors side by side, and reading ahead for walks that cross some rows at once.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "loops/cache.h"
#include "simd/fold.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn {

// ---- Vectors of neighbouring columns. Where they are too few for a vector, T itself is the vector of one lane.

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
// Who changes them loads all of them before it stores one.
template <class Vector, int vectors>
struct ColumnGroup {
    using V = Vector;
    static constexpr int count = vectors;
    std::ptrdiff_t first, last;
    VORN_INLINE std::ptrdiff_t at(int k) const { return k == count - 1 ? last : first + std::ptrdiff_t{k} * V::lanes; }
};

// Calls use(group) for fewer columns than V has lanes: one or two narrower vectors, or few() for what fills none.
template <class V, class Use, class Few>
VORN_INLINE void inNarrowVectors(std::ptrdiff_t width, const Use& use, const Few& few) {
    if constexpr (sizeof(V) > 16) {
        using Half = HalfOf<V>;
        const std::ptrdiff_t last = width - Half::lanes;
        if (last > 0) return use(ColumnGroup<Half, 2>{0, last});
        if (last == 0) return use(ColumnGroup<Half, 1>{0, last});
        return inNarrowVectors<Half>(width, use, few);
    } else {
        few();
    }
}

// Calls use(group) for groups of at most four of the build's vectors, or of narrower ones, that cover all columns. None
// but the last one's last vector begins early, and that inside its own group: no two groups share a column. Columns
// that fill not even one of the narrowest vectors are few().
constexpr int groupVectors = 4;
template <class V, class Use, class Few>
VORN_INLINE void overGroups(std::ptrdiff_t width, const Use& use, const Few& few) {
    constexpr std::ptrdiff_t lanes = V::lanes;
    const std::ptrdiff_t end = width - lanes;
    if (end < 0) return inNarrowVectors<V>(width, use, few);
    std::ptrdiff_t column = 0;
    for (std::ptrdiff_t vectors = (width + lanes - 1) / lanes; vectors > 0;) {
        // One vector alone behind others could not begin early.
        const std::ptrdiff_t count = vectors == groupVectors + 1 ? 3 : std::min<std::ptrdiff_t>(vectors, groupVectors);
        switch (count) {
            case 4:
                use(ColumnGroup<V, 4>{column, std::min(column + 3 * lanes, end)});
                break;
            case 3:
                use(ColumnGroup<V, 3>{column, std::min(column + 2 * lanes, end)});
                break;
            case 2:
                use(ColumnGroup<V, 2>{column, std::min(column + lanes, end)});
                break;
            default:
                use(ColumnGroup<V, 1>{column, end});
                break;
        }
        column += count * lanes;
        vectors -= count;
    }
}

// The same if one group holds all columns; false if it does not.
template <class V, class Use, class Few>
VORN_INLINE bool asOneGroup(std::ptrdiff_t width, const Use& use, const Few& few) {
    const bool holds = width <= groupVectors * V::lanes;
    if (holds) overGroups<V>(width, use, few);
    return holds;
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

}  // namespace vorn
