// Gaussian scores: what becomes of a sum. An end takes the sums of up to four rows at once, makes the scores and folds
// them into the caller's array; it is put together from the val of a row, the final form and the fold.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "frame/scale.h"
#include "simd_tile.h"
#include "vornsr/types.h"

namespace vorn {

// The first count elements of four, or all of them.
template <class T>
VORN_INLINE Four<T> loadUpTo4(const T* p, std::ptrdiff_t count) {
    return count == 4 ? load<Four<T>>(p) : loadFirst<Four<T>>(p, count);
}
template <class T>
VORN_INLINE void storeUpTo4(T* p, Four<T> a, std::ptrdiff_t count) {
    count == 4 ? store(p, a) : storeFirst(p, a, count);
}

VORN_INLINE f32x4 single(f32x4 a) { return a; }
VORN_INLINE f32x4 single(i32x4 a) { return toFloat(a); }

// Where the val of a row comes from.
template <class T>
struct OneVal {
    T val;
    OneVal from(std::ptrdiff_t) const { return *this; }
    VORN_INLINE Four<T> four(std::ptrdiff_t, std::ptrdiff_t) const { return splat<Four<T>>(val); }
};
template <class T>
OneVal(T) -> OneVal<T>;

template <class T>
struct ValOfRow {
    const T* val;
    ValOfRow from(std::ptrdiff_t row) const { return {val + row}; }
    VORN_INLINE Four<T> four(std::ptrdiff_t row, std::ptrdiff_t count) const { return loadUpTo4(val + row, count); }
};
template <class T>
ValOfRow(const T*) -> ValOfRow<T>;
template <class T>
ValOfRow(T*) -> ValOfRow<T>;

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

// scaleFactor + 1: the exponent that takes the factor 1/2 in.
constexpr int withHalf(int scaleFactor) { return std::clamp(scaleFactor, -1000, 1000) + 1; }

// val + (-S) x 2^-(scaleFactor + 1), the power of two in single.
class ScaledSum {
public:
    explicit ScaledSum(int scaleFactor) : scale_(GetScale_32s32f(withHalf(scaleFactor))) {}
    explicit ScaledSum(Vorn32f scale) : scale_(scale) {}
    template <class V>
    VORN_INLINE f32x4 operator()(f32x4 negatedSum, V val) const {
        return negatedSum * splat<f32x4>(scale_) + single(val);
    }

private:
    Vorn32f scale_;
};

// The same by a power of two that is never below one: a positive exponent divides by it. Where it is infinite, a
// quotient is 0 that a product with 2^-exponent would still hold as a denormal.
class PowerOfTwoSum {
public:
    explicit PowerOfTwoSum(int scaleFactor)
        : divides_(withHalf(scaleFactor) > 0), power_(GetScale_32s32f(-std::abs(withHalf(scaleFactor)))) {}
    VORN_INLINE f32x4 scaled(f32x4 negatedSum) const {
        const f32x4 power = splat<f32x4>(power_);
        return divides_ ? negatedSum / power : negatedSum * power;
    }
    template <class V>
    VORN_INLINE f32x4 operator()(f32x4 negatedSum, V val) const {
        return scaled(negatedSum) + single(val);
    }

private:
    bool divides_;
    Vorn32f power_;
};

// The total of a low-precision sum, which is -S / 2 already: as an integer that wraps, or in single.
struct TotalAndVal {
    VORN_INLINE i32x4 operator()(i32x4 total, i32x4 val) const { return total + val; }
    VORN_INLINE f32x4 operator()(i32x4 total, f32x4 val) const { return toFloat(total) + val; }
};

// The range of a 32-bit integer in single; its upper border is out of range and converts to -2147483648.
VORN_INLINE f32x4 clampToInt(f32x4 a) {
    return maxOf(minOf(a, splat<f32x4>(2147483648.0f)), splat<f32x4>(-2147483648.0f));
}

// The folds.

// The score replaces what was there; a single is truncated to an integer.
template <class T>
struct Store {
    T* result;
    VORN_INLINE void put(std::ptrdiff_t row, std::ptrdiff_t count, Four<T> score) const {
        storeUpTo4(result + row, score, count);
    }
    VORN_INLINE void put(std::ptrdiff_t row, std::ptrdiff_t count,
                         f32x4 score) const requires std::is_same_v<T, Vorn32s> {
        put(row, count, truncToInt(score));
    }
};
template <class T>
Store(T*) -> Store<T>;

// As Store for integers, save that a last odd row is clamped and rounded where the rows of a pair are truncated: the
// parity of a row decides its rounding. Kept so on purpose.
struct StoreOddRowRounded {
    Vorn32s* result;
    VORN_INLINE void put(std::ptrdiff_t row, std::ptrdiff_t count, f32x4 score) const {
        storeUpTo4(result + row, truncToInt(score), count);
        if (count % 2 != 0) {
            Vorn32s rounded[4];
            store(rounded, roundToInt(clampToInt(score)));
            result[row + count - 1] = rounded[count - 1];
        }
    }
};

// The old value stays unless the score is greater.
template <class T>
struct Max {
    T* srcDst;
    VORN_INLINE void put(std::ptrdiff_t row, std::ptrdiff_t count, Four<T> score) const {
        const Four<T> old = loadUpTo4(srcDst + row, count);
        if constexpr (std::is_same_v<T, Vorn32s>) {
            storeUpTo4(srcDst + row, select(score > old, score, old), count);
        } else {
            storeUpTo4(srcDst + row, maxOf(score, old), count);
        }
    }
    // Of integers in single: an old value of more than 24 bits comes back rounded, even where it stays.
    VORN_INLINE void put(std::ptrdiff_t row, std::ptrdiff_t count,
                         f32x4 score) const requires std::is_same_v<T, Vorn32s> {
        const f32x4 old = toFloat(loadUpTo4(srcDst + row, count));
        storeUpTo4(srcDst + row, truncToInt(maxOf(score, old)), count);
    }
};
template <class T>
Max(T*) -> Max<T>;

// The maximum in single of a score clamped to the range of the integers.
struct MaxOfClamped {
    Vorn32s* srcDst;
    VORN_INLINE void put(std::ptrdiff_t row, std::ptrdiff_t count, f32x4 score) const {
        Max<Vorn32s>{srcDst}.put(row, count, clampToInt(score));
    }
};

template <class Val, class Form, class Fold>
struct End {
    Val val;
    Form form;
    Fold fold;

    template <class Sum>
    VORN_INLINE void operator()(std::ptrdiff_t row, std::ptrdiff_t count, Sum negatedSum) const {
        fold.put(row, count, form(negatedSum, val.four(row, count)));
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

    VORN_INLINE void operator()(std::ptrdiff_t row, std::ptrdiff_t count, f32x4 negatedSum) const {
        const i32x4 vals = val.four(row, count);
        fold.put(row, count, form(negatedSum, vals));
        if (count % 2 != 0) {
            Vorn32s last[4];
            store(last, truncToInt(form.scaled(negatedSum)) + vals);
            fold.result[row + count - 1] = last[count - 1];
        }
    }
};

}  // namespace vorn
