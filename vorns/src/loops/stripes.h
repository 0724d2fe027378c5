// Walks the columns of a matrix in stripes: a formula over columns is written once, for any width and every build.
#pragma once

#include <algorithm>
#include <cstddef>
#include <utility>

#include "simd/part.h"
#include "simd/simd.h"

namespace vorn {

// Some vectors as one value.
template <class V, int count>
struct Pack {
    V part[count];
};

template <class V, int count, class Operation>
VORN_INLINE Pack<V, count> zip(const Pack<V, count>& a, const Pack<V, count>& b, Operation operation) {
    return [&]<int... i>(std::integer_sequence<int, i...>) __attribute__((always_inline))->Pack<V, count> {
        return {{operation(a.part[i], b.part[i])...}};
    }
    (std::make_integer_sequence<int, count>());
}

template <class V, int count>
VORN_INLINE Pack<V, count> operator+(const Pack<V, count>& a, const Pack<V, count>& b) {
    return zip(a, b, [](V x, V y) { return x + y; });
}
template <class V, int count>
VORN_INLINE Pack<V, count> operator-(const Pack<V, count>& a, const Pack<V, count>& b) {
    return zip(a, b, [](V x, V y) { return x - y; });
}
template <class V, int count>
VORN_INLINE Pack<V, count> operator*(const Pack<V, count>& a, const Pack<V, count>& b) {
    return zip(a, b, [](V x, V y) { return x * y; });
}

// A stripe of whole vectors, side by side but for the last one, which may begin early so as to end at the last column.
template <class V, int count>
class VectorStripe {
public:
    using Element = typename V::Element;
    using Value = Pack<V, count>;
    explicit VectorStripe(std::ptrdiff_t last) : last_(last) {}

    VORN_INLINE Value load(const Element* p) const {
        return [&]<int... i>(std::integer_sequence<int, i...>) __attribute__((always_inline))->Value {
            return {{vorn::load<V>(p + offset(i))...}};
        }
        (std::make_integer_sequence<int, count>());
    }
    VORN_INLINE void store(Element* p, const Value& x) const {
        [&]<int... i>(std::integer_sequence<int, i...>) __attribute__((always_inline)) {
            (vorn::store(p + offset(i), x.part[i]), ...);
        }
        (std::make_integer_sequence<int, count>());
    }
    VORN_INLINE static Value all(Element x) {
        return [&]<int... i>(std::integer_sequence<int, i...>) __attribute__((always_inline))->Value {
            return {{(static_cast<void>(i), splat<V>(x))...}};
        }
        (std::make_integer_sequence<int, count>());
    }

private:
    VORN_INLINE std::ptrdiff_t offset(int i) const { return i == count - 1 ? last_ : std::ptrdiff_t{i} * V::lanes; }
    std::ptrdiff_t last_;
};

// One whole vector.
template <class V>
class WholeStripe {
public:
    using Element = typename V::Element;
    using Value = V;
    VORN_INLINE Value load(const Element* p) const { return vorn::load<V>(p); }
    VORN_INLINE void store(Element* p, Value x) const { vorn::store(p, x); }
    VORN_INLINE static Value all(Element x) { return splat<V>(x); }
};

// The first lanes of one vector.
template <class V>
class PartStripe {
public:
    using Element = typename V::Element;
    using Value = V;
    explicit PartStripe(std::ptrdiff_t columns) : columns_(columns) {}
    VORN_INLINE Value load(const Element* p) const { return loadFirst<V>(p, columns_); }
    VORN_INLINE void store(Element* p, Value x) const { storeFirst(p, x, columns_); }
    VORN_INLINE static Value all(Element x) { return splat<V>(x); }

private:
    std::ptrdiff_t columns_;
};

// One column.
template <class T>
class SingleStripe {
public:
    using Element = T;
    using Value = T;
    VORN_INLINE Value load(const T* p) const { return *p; }
    VORN_INLINE void store(T* p, Value x) const { *p = x; }
    VORN_INLINE static Value all(T x) { return x; }
};

// A vector type of half as many lanes for rows that do not fill V, if such rows gain from it.
template <class V>
struct NarrowerOf {
    using type = V;
};
#if defined(VORN_SIMD_AVX512)
template <>
struct NarrowerOf<f32x16> {
    using type = f32x8;
};
#endif
#if defined(VORN_SIMD_AVX2)
template <>
struct NarrowerOf<i16x16> {
    using type = i16x8;
};
#endif

// Calls body(stripe, column) for fewer columns than V has lanes.
template <class V, class Body>
VORN_INLINE void overPart(std::ptrdiff_t width, Body body) {
    using T = typename V::Element;
    if constexpr (V::lanes * sizeof(T) > 16) {
        body(PartStripe<V>(width), 0);
    } else {
        for (std::ptrdiff_t column = 0; column < width; ++column) body(SingleStripe<T>(), column);
    }
}

// Calls body(stripe, column) for stripes of the vectors V that cover the columns 0 to width - 1. Inside one stripe a
// column may stand twice: the body loads everything of its stripe before it stores. Different stripes share no column.
template <class V, class Body>
VORN_INLINE void overStripesOf(std::ptrdiff_t width, Body body) {
    using Narrower = typename NarrowerOf<V>::type;
    constexpr std::ptrdiff_t lanes = V::lanes;
    if (width < lanes) {
        if constexpr (Narrower::lanes < V::lanes) {
            overStripesOf<Narrower>(width, body);
        } else {
            overPart<V>(width, body);
        }
        return;
    }
    std::ptrdiff_t column = 0;
    std::ptrdiff_t vectors = (width + lanes - 1) / lanes;
    // Whole stripes while two vectors or more stay behind them: nothing to decide, which is what counts in short
    // bodies.
    for (; vectors >= 6; column += 4 * lanes, vectors -= 4) body(VectorStripe<V, 4>(3 * lanes), column);
    while (vectors > 0) {
        // Never leave one vector alone behind others: it could not begin early inside its own stripe.
        const std::ptrdiff_t count = vectors == 5 ? 3 : std::min<std::ptrdiff_t>(vectors, 4);
        const std::ptrdiff_t last = std::min((count - 1) * lanes, width - column - lanes);
        switch (count) {
            case 4:
                body(VectorStripe<V, 4>(last), column);
                break;
            case 3:
                body(VectorStripe<V, 3>(last), column);
                break;
            case 2:
                body(VectorStripe<V, 2>(last), column);
                break;
            default:
                body(VectorStripe<V, 1>(last), column);
                break;
        }
        column += count * lanes;
        vectors -= count;
    }
}

// The same with the widest vectors of the build.
template <class T, class Body>
VORN_INLINE void overStripes(std::ptrdiff_t width, Body body) {
    overStripesOf<Wide<T>>(width, body);
}

// The same with stripes of one vector, for bodies that hold much of a stripe at once. Here the last stripe may begin
// early and share columns with the one before it: a second run over a column must leave the same result.
template <class V, class Body>
VORN_INLINE void overVectorsOf(std::ptrdiff_t width, Body body) {
    using Narrower = typename NarrowerOf<V>::type;
    constexpr std::ptrdiff_t lanes = V::lanes;
    if (width < lanes) {
        if constexpr (Narrower::lanes < V::lanes && !hasMaskedLanes<typename V::Element>) {
            overVectorsOf<Narrower>(width, body);
        } else {
            overPart<V>(width, body);
        }
        return;
    }
    std::ptrdiff_t column = 0;
    for (; column + lanes <= width; column += lanes) body(WholeStripe<V>(), column);
    if (column < width) body(WholeStripe<V>(), width - lanes);
}

// The same with the widest vectors of the build.
template <class T, class Body>
VORN_INLINE void overVectors(std::ptrdiff_t width, Body body) {
    overVectorsOf<Wide<T>>(width, body);
}

}  // namespace vorn
