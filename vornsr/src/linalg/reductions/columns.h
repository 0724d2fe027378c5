// The columns of a row as vectors side by side.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "simd/fold.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::reductions {

template <class V>
using HalfOf = decltype(lowHalf(std::declval<V>()));

// Elements as they stand, and 16-bit integers as singles.
template <class V>
VORN_INLINE V loadAs(const typename V::Element* p) {
    return load<V>(p);
}
template <class V>
VORN_INLINE V loadAs(const Vorn16s* p) requires std::is_same_v<typename V::Element, Vorn32f> {
    return toFloat(loadWidened<decltype(bitsOf(std::declval<V>()))>(p));
}

// Vectors side by side, but for the last one, which may begin early so as to end at the last column. Who changes them
// loads all of them before it stores one.
template <class Vector, int vectors>
struct ColumnGroup {
    using V = Vector;
    static constexpr int count = vectors;
    std::ptrdiff_t last;
    VORN_INLINE std::ptrdiff_t at(int k) const { return k == count - 1 ? last : std::ptrdiff_t{k} * V::lanes; }
};

// Calls ofGroup(group) if a group of at most `most` vectors V, or narrower ones, holds all columns, and ofFew() if they
// are fewer than the narrowest vectors have lanes. False if they are too many.
template <class V, int most, class OfGroup, class OfFew>
VORN_INLINE bool asOneGroup(std::ptrdiff_t width, const OfGroup& ofGroup, const OfFew& ofFew) {
    if (width < V::lanes) {
        if constexpr (sizeof(V) > 16) return asOneGroup<HalfOf<V>, 2>(width, ofGroup, ofFew);
        ofFew();
        return true;
    }
    const std::ptrdiff_t last = width - V::lanes;
    if (last == 0) {
        ofGroup(ColumnGroup<V, 1>{last});
        return true;
    }
    if (last <= V::lanes) {
        ofGroup(ColumnGroup<V, 2>{last});
        return true;
    }
    if constexpr (most > 2) {
        if (last <= 2 * V::lanes) {
            ofGroup(ColumnGroup<V, 3>{last});
            return true;
        }
        if (last <= 3 * V::lanes) {
            ofGroup(ColumnGroup<V, 4>{last});
            return true;
        }
    }
    return false;
}

}  // namespace vorn::reductions
