// Work on every row of a matrix, with numbers that each column has of its own: a mean, a scale, another row.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "loops/columns.h"
#include "loops/elementwise.h"
#include "simd/part.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::reductions {

// What happens to a vector x of a row. numbers(load) are those of its columns; load(p) has the elements of one array at
// these columns.

template <class T>
struct Subtracted {
    using Element = T;
    const T* row;
    template <class Load>
    VORN_INLINE auto numbers(const Load& load) const {
        return load(row);
    }
    template <class V>
    static VORN_INLINE V apply(V x, V y) requires FloatLanes<V> {
        return x - y;
    }
    template <class V>
    static VORN_INLINE V apply(V x, V y) {
        return subSat(x, y);
    }
};

struct Normalized {
    using Element = Vorn32f;
    const Vorn32f *mean, *scale;
    template <class V>
    struct Numbers {
        V mean, scale;
    };
    template <class Load>
    VORN_INLINE auto numbers(const Load& load) const {
        return Numbers<decltype(load(mean))>{load(mean), load(scale)};
    }
    template <class V>
    static VORN_INLINE V apply(V x, const Numbers<V>& y) {
        return (x - y.mean) * y.scale;
    }
};

// (x - mean) scale as x scale - mean scale: the difference has 17 bits, its product 32, and neither is ever rounded.
// Then 2^-scaleFactor: the bits that leave 32 to the left are lost, what remains is saturated to 16.
struct NormalizedIntegers {
    using Element = Vorn16s;
    const Vorn16s *mean, *scale;
    int left, right;  // one of them 0; 32 stands for all above
    NormalizedIntegers(const Vorn16s* means, const Vorn16s* scales, int scaleFactor)
        : mean(means),
          scale(scales),
          left(static_cast<int>(std::clamp<std::int64_t>(-std::int64_t{scaleFactor}, 0, 32))),
          right(std::clamp(scaleFactor, 0, 32)) {}

    template <class V>
    static VORN_INLINE auto products(V a, V b) {
        return zip(mulLow(a, b), mulHigh(a, b));
    }
    template <class V>
    struct Numbers {
        V scale;
        decltype(zip(scale, scale)) ofMean;
    };
    template <class Load>
    VORN_INLINE auto numbers(const Load& load) const {
        const auto s = load(scale);
        return Numbers<std::remove_const_t<decltype(s)>>{s, products(load(mean), s)};
    }
    template <class V>
    VORN_INLINE V apply(V x, const Numbers<V>& y) const {
        auto wide = products(x, y.scale);
        wide.low = shiftRight(shiftLeft(wide.low - y.ofMean.low, left), right);
        wide.high = shiftRight(shiftLeft(wide.high - y.ofMean.high, left), right);
        return joinSat(wide);
    }
};

// One row, as the element loop takes it.
template <class Op>
struct UpdatedRow {
    using T = typename Op::Element;
    using V = Wide<T>;
    static constexpr std::int64_t step = V::lanes;
    static constexpr bool unrolled = true;
    const Op& op;
    T* row;
    VORN_INLINE V at(std::int64_t i) const {
        return op.apply(load<V>(row + i),
                        op.numbers([&](const T* p) __attribute__((always_inline)) { return load<V>(p + i); }));
    }
    VORN_INLINE void put(std::int64_t i, V x) const { store(row + i, x); }
    T* result() const { return row; }
};

// The rows one after the other, each as a whole, so that a row that stands in a list twice is updated twice.
template <class Op, class RowsOf>
void updateRows(RowsOf rows, std::ptrdiff_t height, std::ptrdiff_t width, const Op& op) {
    using T = typename Op::Element;
    const bool done = asOneGroup<Wide<T>>(
        width,
        [&](auto group) __attribute__((always_inline)) {
            using V = typename decltype(group)::V;
            const auto numbersAt = [&](int k) __attribute__((always_inline)) {
                return op.numbers([&](const T* p) __attribute__((always_inline)) { return load<V>(p + group.at(k)); });
            };
            decltype(numbersAt(0)) numbers[group.count];
            for (int k = 0; k < group.count; ++k) numbers[k] = numbersAt(k);
            for (std::ptrdiff_t row = 0; row < height; ++row) {
                T* p = rows[row];
                V x[group.count];
                for (int k = 0; k < group.count; ++k) x[k] = op.apply(load<V>(p + group.at(k)), numbers[k]);
                for (int k = 0; k < group.count; ++k) store(p + group.at(k), x[k]);
            }
        },
        [&]() __attribute__((always_inline)) {
            using V = Wide<T>;
            const auto numbers =
                op.numbers([&](const T* p) __attribute__((always_inline)) { return loadPart<V>(p, width); });
            for (std::ptrdiff_t row = 0; row < height; ++row) {
                storePart(rows[row], op.apply(loadPart<V>(rows[row], width), numbers), width);
            }
        });
    if (done) return;
    for (std::ptrdiff_t row = 0; row < height; ++row) stepsInCache(width, UpdatedRow<Op>{op, rows[row]});
}

}  // namespace vorn::reductions
