#include "features/cepstrum/kernels.h"

#include <algorithm>
#include <type_traits>

#include "frame/rounding.h"
#include "simd/groups.h"
#include "simd/pairs.h"
#include "simd/part.h"
#include "simd/tile.h"

namespace vorn::lifter {
namespace {

constexpr double pi = 3.141592653589793;

// Elements as singles, and the first n of a register, zeros behind them. A conversion of 32-bit integers rounds in the
// caller's mode.
template <class V>
struct Singles;
template <>
struct Singles<f32x4> {
    using Integers = i32x4;
};
#if defined(VORN_WIDE_TILES)
template <>
struct Singles<f32x8> {
    using Integers = i32x8;
};
#endif
template <class V>
VORN_INLINE V singlesAt(const Vorn32f* p) {
    return load<V>(p);
}
template <class V>
VORN_INLINE V singlesAt(const Vorn32s* p) {
    return toFloat(load<typename Singles<V>::Integers>(p));
}
template <class V>
VORN_INLINE V singlesAt(const Vorn16s* p) {
    return toFloat(loadWidened<typename Singles<V>::Integers>(p));
}
template <class V, class Element>
VORN_INLINE V firstSinglesAt(const Element* p, std::ptrdiff_t n) {
    if constexpr (std::is_same_v<Element, Vorn32f>) {
        return loadFirst<V>(p, n);
    } else {
        alignas(V) Element first[V::lanes] = {};
        for (std::ptrdiff_t i = 0; i < n; ++i) first[i] = p[i];
        return singlesAt<V>(first);
    }
}

// The input in registers of V, the last one filled up with zeros. The rows are padded and are loaded whole.
template <class V, class Element>
struct Input {
    using Vector = V;
    const Element* x;
    std::ptrdiff_t len, whole;  // whole: the elements in full registers
    V rest;

    VORN_INLINE Input(const Element* src, std::ptrdiff_t n)
        : x(src), len(n), whole(n / V::lanes * V::lanes), rest(firstSinglesAt<V>(x + whole, n - whole)) {}
    // take(x, column) for every register.
    template <class Take>
    VORN_INLINE void each(const Take& take) const {
        for (std::ptrdiff_t column = 0; column < whole; column += V::lanes) take(singlesAt<V>(x + column), column);
        if (whole < len) take(rest, whole);
    }
};

// The sums of `count` rows, which advance together; how many they are changes no bit. Where a register holds eight
// lanes, two rows share one: their products come eight columns at a time and are then exchanged by halves.
template <int count, class In>
VORN_INLINE void sumsOfRows(const In& in, const Vorn32f* const* rows, const Vorn32f* weight, Vorn32f* dst) {
    using V = typename In::Vector;
    constexpr int registers = count * f32x4::lanes / V::lanes;
    const Vorn32f* row[count];
    for (int r = 0; r < count; ++r) row[r] = keepApart(rows[r]);
    V sum[registers];
    for (int k = 0; k < registers; ++k) sum[k] = splat<V>(0);
    in.each([&](V x, std::ptrdiff_t column) __attribute__((always_inline)) {
#pragma GCC unroll 8
        for (int k = 0; k < registers; ++k) {
            if constexpr (registers == count) {
                sum[k] = sum[k] + x * load<V>(row[k] + column);
            } else {
                V groups[2] = {x * load<V>(row[k] + column), x * load<V>(row[k + registers] + column)};
                turnParts(groups);
                sum[k] = sum[k] + groups[0];
                sum[k] = sum[k] + groups[1];
            }
        }
    });
    const auto lanesOf = [&](int r) __attribute__((always_inline)) {
        if constexpr (registers == count) {
            return sum[r];
        } else {
            return r < registers ? lowHalf(sum[r]) : highHalf(sum[r - registers]);
        }
    };
#pragma GCC unroll 2
    for (int r = 0; r < count; r += 4) {
        const f32x4 sums = sumNeighbours(lanesOf(r), lanesOf(r + 1), lanesOf(r + 2), lanesOf(r + 3));
        store(dst + r, load<f32x4>(weight + r) * sums);
    }
}

// A row by itself: two accumulators, which eight lanes hold side by side.
template <class In>
VORN_INLINE Vorn32f sumOfRow(const In& in, const Vorn32f* row) {
    using V = typename In::Vector;
    if constexpr (V::lanes == 8) {
        V sum = splat<V>(0);
        in.each([&](V x, std::ptrdiff_t column)
                    __attribute__((always_inline)) { sum = sum + x * load<V>(row + column); });
        return sumNeighbours(lowHalf(sum) + highHalf(sum));
    } else {
        V next = splat<V>(0), other = splat<V>(0);
        in.each([&](V x, std::ptrdiff_t column) __attribute__((always_inline)) {
            const V sum = next + x * load<V>(row + column);
            next = other;
            other = sum;
        });
        return sumNeighbours(next + other);
    }
}

// Sines and cosines are those of nearest mode, whatever the caller's, and so is what else goes into a context.

VORN_NOINLINE void fillRaisedSine(int nLifter, Vorn32f val, Vorn32f* weight, int lenCep) {
    const Vorn32f half = static_cast<Vorn32f>(nLifter) * 0.5f;
    for (int i = 0; i <= lenCep; ++i) {
        weight[i] = static_cast<Vorn32f>(sin64(i * pi / nLifter) * half + 1.0) * val;
    }
}

// weight[0] is the last one's.
template <class Weight>
VORN_NOINLINE void fillCallers(const Weight* weights, Vorn32f* weight, int lenCep) {
    for (int i = 1; i <= lenCep; ++i) weight[i] = static_cast<Vorn32f>(weights[i - 1]);
    weight[0] = weight[lenCep];
}

VORN_NOINLINE void fillRows(Vorn32f* const* rows, std::int64_t stride, int lenDCT, int lenCep) {
    for (int i = 0; i <= lenCep; ++i) {
        for (int j = 1; j <= lenDCT; ++j) {
            const auto middle = static_cast<double>(static_cast<Vorn32f>(j) - 0.5f);
            rows[i][j - 1] = static_cast<Vorn32f>(cos64(middle * (i * pi) / lenDCT));
        }
        std::fill(rows[i] + lenDCT, rows[i] + stride, 0.0f);
    }
}

}  // namespace

void RaisedSineLifter::fill(Vorn32f* weight, int lenCep) const {
    const RoundingGuard nearest(Rounding::Nearest);
    fillRaisedSine(nLifter, val, weight, lenCep);
}

void RaisedSineLifterC0::fill(Vorn32f* weight, int lenCep) const {
    RaisedSineLifter{nLifter, val}.fill(weight, lenCep);
    weight[0] = val0;
}

template <class Weight>
void CallersLifterC0<Weight>::fill(Vorn32f* weight, int lenCep) const {
    const RoundingGuard nearest(Rounding::Nearest);
    fillCallers(weights, weight, lenCep);
}

template <class Weight>
void CallersLifter<Weight>::fill(Vorn32f* weight, int lenCep) const {
    CallersLifterC0<Weight>{weights}.fill(weight, lenCep);
    weight[0] = 0;
}

Vorn32f** cosineRows(Vorn32f* table, int lenDCT, int lenCep) {
    const std::int64_t stride = cosineStride(lenDCT);
    auto** rows = reinterpret_cast<Vorn32f**>(table + (std::int64_t{lenCep} + 1) * stride);
    for (int i = 0; i <= lenCep; ++i) rows[i] = table + i * stride;
    return rows;
}

void fillCosines(Vorn32f* const* rows, int lenDCT, int lenCep) {
    const RoundingGuard nearest(Rounding::Nearest);
    fillRows(rows, cosineStride(lenDCT), lenDCT, lenCep);
}

template <class Element>
void dctLifter(const Element* x, Vorn32f* dst, const Vorn32f* weight, const Vorn32f* const* rows, int lenDCT,
               int lenCep, bool withC0) {
    const Input<f32Pairs, Element> in(x, lenDCT);
    int i = 1;
    for (; i + 7 <= lenCep; i += 8) sumsOfRows<8>(in, rows + i, weight + i, dst + i - 1);
    if (i + 3 <= lenCep) {
        sumsOfRows<4>(in, rows + i, weight + i, dst + i - 1);
        i += 4;
    }
    for (; i <= lenCep; ++i) dst[i - 1] = weight[i] * sumOfRow(in, rows[i]);
    if (withC0) dst[lenCep] = weight[0] * sumOfRow(in, rows[0]);
}

template struct CallersLifter<Vorn32f>;
template struct CallersLifterC0<Vorn32f>;
template struct CallersLifterC0<Vorn32s>;
template void dctLifter(const Vorn32f*, Vorn32f*, const Vorn32f*, const Vorn32f* const*, int, int, bool);
template void dctLifter(const Vorn16s*, Vorn32f*, const Vorn32f*, const Vorn32f* const*, int, int, bool);
template void dctLifter(const Vorn32s*, Vorn32f*, const Vorn32f*, const Vorn32f* const*, int, int, bool);

}  // namespace vorn::lifter
