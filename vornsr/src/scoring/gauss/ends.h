// Gaussian scores: what becomes of a sum. An end takes the sums of four rows at once or that of one, makes the scores
// and folds them into the caller's array; it is put together from the val of a row, the final form and the fold.
#pragma once

#include <cstddef>
#include <type_traits>

#include "scoring/gauss/forms.h"
#include "simd/tile.h"
#include "vornsr/types.h"

namespace vorn {

// Where sums and scores belong: to the four rows from `row` on, or to that row alone. Then the other lanes are of no
// account. A last row without a partner is odd.
struct RowsFrom {
    static constexpr bool areFour = true;
    std::ptrdiff_t row;
};
struct RowAlone {
    static constexpr bool areFour = false;
    std::ptrdiff_t row;
    bool isOdd;
};

template <class Where, class T>
VORN_INLINE Four<T> loadAt(Where at, const T* p) {
    if constexpr (Where::areFour) {
        return load<Four<T>>(p + at.row);
    } else if constexpr (std::is_same_v<T, double>) {
        return firstOnly(p[at.row]);
    } else {
        return loadFirst<Four<T>, 1>(p + at.row);
    }
}
template <class Where, class T>
VORN_INLINE void storeAt(Where at, T* p, Four<T> a) {
    if constexpr (Where::areFour) {
        store(p + at.row, a);
    } else {
        p[at.row] = firstLane(a);
    }
}

// Where the val of a row comes from.
template <class T>
struct OneVal {
    T val;
    OneVal from(std::ptrdiff_t) const { return *this; }
    template <class Where>
    VORN_INLINE Four<T> at(Where) const {
        return splat<Four<T>>(val);
    }
};
template <class T>
OneVal(T) -> OneVal<T>;

template <class T>
struct ValOfRow {
    const T* val;
    ValOfRow from(std::ptrdiff_t row) const { return {val + row}; }
    template <class Where>
    VORN_INLINE Four<T> at(Where rows) const {
        return loadAt(rows, val);
    }
};
template <class T>
ValOfRow(const T*) -> ValOfRow<T>;
template <class T>
ValOfRow(T*) -> ValOfRow<T>;

// The range of a 32-bit integer in single; its upper border is out of range and converts to -2147483648.
VORN_INLINE f32x4 clampToInt(f32x4 a) {
    return maxOf(minOf(a, splat<f32x4>(2147483648.0f)), splat<f32x4>(-2147483648.0f));
}

// The folds.

// The score replaces what was there; a single is truncated to an integer.
template <class T>
struct Store {
    T* result;
    template <class Where>
    VORN_INLINE void put(Where at, Four<T> score) const {
        storeAt(at, result, score);
    }
    template <class Where>
    VORN_INLINE void put(Where at, f32x4 score) const requires std::is_same_v<T, Vorn32s> {
        put(at, truncToInt(score));
    }
};
template <class T>
Store(T*) -> Store<T>;

// As Store for integers, save that a last odd row is clamped and rounded where the rows of a pair are truncated: the
// parity of a row decides its rounding. Kept so on purpose.
struct StoreOddRowRounded {
    Vorn32s* result;
    VORN_INLINE void put(RowsFrom at, f32x4 score) const { storeAt(at, result, truncToInt(score)); }
    VORN_INLINE void put(RowAlone at, f32x4 score) const {
        storeAt(at, result, at.isOdd ? roundToInt(clampToInt(score)) : truncToInt(score));
    }
};

// The old value stays unless the score is greater.
template <class T>
struct Max {
    T* srcDst;
    template <class Where>
    VORN_INLINE void put(Where at, Four<T> score) const {
        const Four<T> old = loadAt(at, srcDst);
        if constexpr (std::is_same_v<T, Vorn32s>) {
            storeAt(at, srcDst, select(score > old, score, old));
        } else {
            storeAt(at, srcDst, maxOf(score, old));
        }
    }
    // Of integers in single: an old value of more than 24 bits comes back rounded, even where it stays.
    template <class Where>
    VORN_INLINE void put(Where at, f32x4 score) const requires std::is_same_v<T, Vorn32s> {
        const f32x4 old = toFloat(loadAt(at, srcDst));
        storeAt(at, srcDst, truncToInt(maxOf(score, old)));
    }
};
template <class T>
Max(T*) -> Max<T>;

// The maximum in single of a score clamped to the range of the integers.
struct MaxOfClamped {
    Vorn32s* srcDst;
    template <class Where>
    VORN_INLINE void put(Where at, f32x4 score) const {
        Max<Vorn32s>{srcDst}.put(at, clampToInt(score));
    }
};

template <class Val, class Form, class Fold>
struct End {
    Val val;
    Form form;
    Fold fold;

    template <class Where, class Sum>
    VORN_INLINE void operator()(Where at, Sum negatedSum) const {
        fold.put(at, form(negatedSum, val.at(at)));
    }
};
template <class Val, class Form, class Fold>
End(Val, Form, Fold) -> End<Val, Form, Fold>;

// Integer scores of many Gaussians at low precision with a negative scale factor: the rows of a pair add val in single
// and truncate, a last odd row truncates first and adds val as an integer, wrapping. Kept so on purpose.
struct OddRowAddsValLast {
    ValOfRow<Vorn32s> val;
    PowerOfTwoSum form;
    Store<Vorn32s> fold;

    VORN_INLINE void operator()(RowsFrom at, f32x4 negatedSum) const { fold.put(at, form(negatedSum, val.at(at))); }
    VORN_INLINE void operator()(RowAlone at, f32x4 negatedSum) const {
        if (at.isOdd) {
            fold.put(at, truncToInt(form.scaled(negatedSum)) + val.at(at));
        } else {
            fold.put(at, form(negatedSum, val.at(at)));
        }
    }
};

}  // namespace vorn
