// Gaussian scores: what becomes of a sum. An end takes -S of up to four rows at once, makes the scores and folds them
// into the caller's array; it is put together from the val of a row, the final form and the fold.
#pragma once

#include <cstddef>

#include "simd_tile.h"
#include "vornsr/types.h"

namespace vorn {

// The first count elements of four, or all of them.
template <class V>
VORN_INLINE V loadUpTo4(const typename V::Element* p, std::ptrdiff_t count) {
    return count == 4 ? load<V>(p) : loadFirst<V>(p, count);
}
template <class V>
VORN_INLINE void storeUpTo4(typename V::Element* p, V a, std::ptrdiff_t count) {
    count == 4 ? store(p, a) : storeFirst(p, a, count);
}

// Where the val of a row comes from.
template <class T>
struct OneVal {
    T val;
    template <class V>
    VORN_INLINE V four(std::ptrdiff_t, std::ptrdiff_t) const {
        return splat<V>(val);
    }
};
template <class T>
struct ValOfRow {
    const T* val;
    template <class V>
    VORN_INLINE V four(std::ptrdiff_t row, std::ptrdiff_t count) const {
        return loadUpTo4<V>(val + row, count);
    }
};

// The final forms of val - S / 2. They differ in their roundings.
struct DoubledVal {  // 0.5 x (2 x val - S)
    template <class V>
    VORN_INLINE V operator()(V negatedSum, V val) const {
        return splat<V>(0.5f) * (val + val + negatedSum);
    }
};
struct HalvedSum {  // val + 0.5 x (-S)
    template <class V>
    VORN_INLINE V operator()(V negatedSum, V val) const {
        return val + splat<V>(0.5f) * negatedSum;
    }
};

// The folds.
template <class T>
struct Store {
    T* result;
    template <class V>
    VORN_INLINE void put(std::ptrdiff_t row, std::ptrdiff_t count, V score) const {
        storeUpTo4(result + row, score, count);
    }
};

template <class Val, class Form, class Fold>
struct End {
    Val val;
    Form form;
    Fold fold;

    template <class V>
    VORN_INLINE void operator()(std::ptrdiff_t row, std::ptrdiff_t count, V negatedSum) const {
        fold.put(row, count, form(negatedSum, val.template four<V>(row, count)));
    }
};
template <class Val, class Form, class Fold>
End(Val, Form, Fold) -> End<Val, Form, Fold>;

}  // namespace vorn
