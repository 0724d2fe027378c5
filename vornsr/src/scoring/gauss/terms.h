// Gaussian scores: the term of a column, (x - m)^2 x v, in each arithmetic, and the tail that joins terms one by one.
// The square comes first. The inverse variances are an array of the data's type, singles, or UnitVar.
#pragma once

#include <cstddef>
#include <cstring>
#include <type_traits>

#include "scoring/gauss/rows.h"
#include "simd/tile.h"
#include "vornsr/types.h"

namespace vorn {

// An element at any address, whole elements apart or not.
template <class T>
VORN_INLINE T elementAt(const T* p) {
    T x;
    std::memcpy(&x, p, sizeof x);
    return x;
}

// The elements from p on in the type of the terms: singles may be widened, 16-bit data made singles.
template <class V>
VORN_INLINE V loadAs(const typename V::Element* p) {
    return load<V>(p);
}
template <class V>
VORN_INLINE V loadAs(const Vorn32f* p) requires std::is_same_v<V, f64x4> {
    return widened(load<f32x4>(p));
}
template <class V>
VORN_INLINE V loadAs(const Vorn16s* p) requires std::is_same_v<V, f32x4> {
    return toFloat(loadWidened<i32x4>(p));
}

// Square x inverse variance, of many columns and of one.
template <class V, class T>
VORN_INLINE V weighted(V square, const T* var) {
    return square * loadAs<V>(var);
}
template <class V>
VORN_INLINE V weighted(V square, UnitVar) {
    return square;
}
template <class R, class T>
VORN_INLINE R weightedColumn(R square, const T* var) {
    return square * static_cast<R>(elementAt(var));
}
template <class R>
VORN_INLINE R weightedColumn(R square, UnitVar) {
    return square;
}

// Terms of T data in R, a lane a column; singles are widened to double, and 16-bit data made singles, before they are
// subtracted.
template <class T, class R = T>
struct FloatTerms {
    using Result = R;

    template <class V>
    static constexpr std::ptrdiff_t columns = V::lanes;

    template <class V, class Var>
    static VORN_INLINE V of(const T* x, const T* mean, Var var) {
        const V d = loadAs<V>(x) - loadAs<V>(mean);
        return weighted(d * d, var);
    }
    template <class Var>
    static VORN_INLINE R column(const T* x, const T* mean, Var var) {
        const R d = static_cast<R>(elementAt(x)) - static_cast<R>(elementAt(mean));
        return weightedColumn(d * d, var);
    }
};

// Terms of 16-bit data in single, a lane a column: the difference saturates to 16 bits. Their unit is a power of two,
// and no sum of them comes near the border of the singles, so that it changes no rounding.
struct ShortTerms {
    using Result = Vorn32f;

    template <class V>
    static constexpr std::ptrdiff_t columns = V::lanes;
    static constexpr Vorn32f unit = upperUnit;

    template <class V, class Var>
    static VORN_INLINE auto of(const Vorn16s* x, const Vorn16s* mean, Var var) {
        return squares(subSat(load<V>(x), load<V>(mean))) * upperFloats(load<V>(var));
    }
};

// The same with the identity covariance: the squares of two neighbours are added as integers (two squares of -32768
// wrap) and share a lane.
struct ShortPairTerms {
    using Result = Vorn32f;

    template <class V>
    static constexpr std::ptrdiff_t columns = V::lanes;
    static constexpr Vorn32f unit = 1;

    template <class V>
    static VORN_INLINE auto of(const Vorn16s* x, const Vorn16s* mean, UnitVar) {
        return ofDifferences(subSat(load<V>(x), load<V>(mean)));
    }
    template <class V>
    static VORN_INLINE auto ofDifferences(V d) {
        return toFloat(mulAddPairs(d, d));
    }
};

// The columns behind the last group of eight: here the difference does not saturate. Kept so on purpose. Vectors are in
// the unit of the groups, a column by itself is in units of 1.
struct ExactShortTerms {
    using Result = Vorn32f;

    template <class V>
    static VORN_INLINE auto of(const Vorn16s* x, const Vorn16s* mean, const Vorn16s* var) {
        const auto d = toFloats(load<V>(x)) - toFloats(load<V>(mean));
        return d * d * upperFloats(load<V>(var));
    }
    template <class V>
    static VORN_INLINE auto of(const Vorn16s* x, const Vorn16s* mean, UnitVar) {
        const auto d = toFloats(load<V>(x)) - toFloats(load<V>(mean));
        return d * d;
    }
    template <class Var>
    static VORN_INLINE Vorn32f column(const Vorn16s* x, const Vorn16s* mean, Var var) {
        const auto d = static_cast<Vorn32f>(*x - *mean);
        return weightedColumn(d * d, var);
    }
};

// The sign that a sum is kept with: it shows in the directed rounding modes.
struct Added {
    template <class V>
    VORN_INLINE V operator()(V sum, V term) const {
        return sum + term;
    }
};
struct Subtracted {
    template <class V>
    VORN_INLINE V operator()(V sum, V term) const {
        return sum - term;
    }
};

// The terms of a vector's last eight columns, of which the last `count`, at least one, have not been summed: those join
// in order.
template <class Sign, class T>
VORN_INLINE T joinLast(T sum, const T (&term)[8], std::ptrdiff_t count) {
    constexpr Sign join;
    switch (count) {
        case 7:
            sum = join(sum, term[1]);
            [[fallthrough]];
        case 6:
            sum = join(sum, term[2]);
            [[fallthrough]];
        case 5:
            sum = join(sum, term[3]);
            [[fallthrough]];
        case 4:
            sum = join(sum, term[4]);
            [[fallthrough]];
        case 3:
            sum = join(sum, term[5]);
            [[fallthrough]];
        case 2:
            sum = join(sum, term[6]);
            [[fallthrough]];
        default:
            return join(sum, term[7]);
    }
}

}  // namespace vorn
