// How complex data lies in memory. A layout loads and stores a vector of neighbouring values, splits them into columns,
// and gives the layout of what follows an offset; the transform is written once over these.
#pragma once

#include <cstddef>
#include <utility>

#include "fft/core/butterflies.h"
#include "simd/groups.h"
#include "simd/simd.h"
#include "simd/tile.h"

namespace vorn::fft {

// Calls run<g>() for g from 0 to count - 1.
template <int count, class Run>
VORN_INLINE void eachGroup(Run run) {
    [&]<int... g>(std::integer_sequence<int, g...>) __attribute__((always_inline)) {
        (run.template operator()<g>(), ...);
    }
    (std::make_integer_sequence<int, count>{});
}

// Pairs. With the imaginary parts first, the forward transform is the inverse one: both ends of it exchange the parts.
template <class T, Parts parts = Parts::RealFirst>
struct Interleaved {
    T* data;

    // How a first pass loads a vector of values.
    template <class V>
    using Point = Pairs<V, parts>;
    template <class V>
    VORN_INLINE Point<V> loadPoint(std::ptrdiff_t i) const {
        return {vorn::load<V>(data + 2 * i)};
    }

    template <class V>
    VORN_INLINE Complex<V> load(std::ptrdiff_t i) const {
        Complex<V> z;
        if constexpr (ElementOf<V>::lanes == 1) {
            z = {data[2 * i], data[2 * i + 1]};
        } else {
            loadPairs(data + 2 * i, z.re, z.im);
        }
        return ordered(z);
    }
    template <class V>
    VORN_INLINE void store(std::ptrdiff_t i, Complex<V> z) const {
        z = ordered(z);
        if constexpr (ElementOf<V>::lanes == 1) {
            data[2 * i] = z.re;
            data[2 * i + 1] = z.im;
        } else {
            storePairGroups(data + 2 * i, z.re, z.im);
        }
    }
    // As many neighbouring values as x holds, in bit-reversed order, from first on and from places step values apart.
    template <class V, int count>
    VORN_INLINE void loadReversed(std::ptrdiff_t first, std::ptrdiff_t step, Point<V> (&x)[count]) const {
        constexpr int run = 16 / sizeof(T) / 2;
        for (int n = 0; n < count; n += run) {
            V v[run];
            for (int i = 0; i < run; ++i) v[i] = loadGroups<V>(data + 2 * (first + n + i * step), 2 * run * step);
            if constexpr (run == 2) transposePairs(v);
            for (int i = 0; i < run; ++i) x[bitReversed(n + i, count)] = {v[i]};
        }
    }
    VORN_INLINE Interleaved from(std::ptrdiff_t offset) const { return {data + 2 * offset}; }
    static constexpr bool linesCollide(std::ptrdiff_t) { return false; }

private:
    template <class V>
    static VORN_INLINE Complex<V> ordered(Complex<V> z) {
        if constexpr (parts == Parts::ImaginaryFirst) return {z.im, z.re};
        return z;
    }
};

// One array of real and one of imaginary parts.
template <class T>
struct Split {
    T* re;
    T* im;

    template <class V>
    using Point = Complex<V>;
    template <class V>
    VORN_INLINE Point<V> loadPoint(std::ptrdiff_t i) const {
        return load<V>(i);
    }
    template <class V>
    VORN_INLINE Complex<V> load(std::ptrdiff_t i) const {
        if constexpr (ElementOf<V>::lanes == 1) {
            return {re[i], im[i]};
        } else {
            return {vorn::load<V>(re + i), vorn::load<V>(im + i)};
        }
    }
    template <class V>
    VORN_INLINE void store(std::ptrdiff_t i, Complex<V> z) const {
        if constexpr (ElementOf<V>::lanes == 1) {
            re[i] = z.re;
            im[i] = z.im;
        } else {
            vorn::store(re + i, z.re);
            vorn::store(im + i, z.im);
        }
    }
    template <class V, int count>
    VORN_INLINE void loadReversed(std::ptrdiff_t first, std::ptrdiff_t step, Point<V> (&x)[count]) const {
        constexpr int run = 16 / sizeof(T);
        for (int n = 0; n < count; n += run) {
            V real[run], imaginary[run];
            for (int i = 0; i < run; ++i) {
                real[i] = loadGroups<V>(re + first + n + i * step, run * step);
                imaginary[i] = loadGroups<V>(im + first + n + i * step, run * step);
            }
            transposeGroups(real);
            transposeGroups(imaginary);
            for (int i = 0; i < run; ++i) x[bitReversed(n + i, count)] = {real[i], imaginary[i]};
        }
    }
    // Stores the groups of z, each to the values from offset on of its own place.
    template <class V, int groups>
    static VORN_INLINE void storeGroups(const Split (&places)[groups], int offset, Complex<V> z) {
        eachGroup<groups>([&]<int g>() __attribute__((always_inline)) {
            storeGroup<g>(places[g].re + offset, z.re);
            storeGroup<g>(places[g].im + offset, z.im);
        });
    }
    // Stores neighbouring values of one place.
    template <class V>
    static VORN_INLINE void storeWhole(const Split& place, int offset, Complex<V> z) {
        vorn::store(place.re + offset, z.re);
        vorn::store(place.im + offset, z.im);
    }
    template <class V>
    static constexpr bool takes = true;
    // Where value number offset of the block at position begins, as addresses to which the compiler adds constants.
    VORN_INLINE Split place(std::ptrdiff_t position, int offset) const {
        return {keepApart(re + position + offset), keepApart(im + position + offset)};
    }
    VORN_INLINE Split from(std::ptrdiff_t offset) const { return {re + offset, im + offset}; }
    // Whether the cache lines of values span apart, two lines each, have but a few places in the first-level cache.
    static constexpr bool linesCollide(std::ptrdiff_t span) {
        return span * static_cast<std::ptrdiff_t>(sizeof(T)) % 4096 == 0;
    }
};

// The form between stages: lanes real parts, then the lanes imaginary parts that belong to them.
template <class T, int lanes>
struct Blocks {
    T* data;

    template <class V>
    VORN_INLINE Complex<V> load(std::ptrdiff_t i) const {
        static_assert(V::lanes == lanes);
        return {vorn::load<V>(data + 2 * i), vorn::load<V>(data + 2 * i + lanes)};
    }
    template <class V>
    VORN_INLINE void store(std::ptrdiff_t i, Complex<V> z) const {
        static_assert(V::lanes == lanes);
        vorn::store(data + 2 * i, z.re);
        vorn::store(data + 2 * i + lanes, z.im);
    }
    template <class V, int groups>
    static VORN_INLINE void storeGroups(const Blocks (&places)[groups], int offset, Complex<V> z) {
        eachGroup<groups>([&]<int g>() __attribute__((always_inline)) {
            storeGroup<g>(places[g].data + numberOf(offset), z.re);
            storeGroup<g>(places[g].data + numberOf(offset) + lanes, z.im);
        });
    }
    template <class V>
    static VORN_INLINE void storeWhole(const Blocks& place, int offset, Complex<V> z) {
        vorn::store(place.data + numberOf(offset), z.re);
        vorn::store(place.data + numberOf(offset) + lanes, z.im);
    }
    // Whether a vector that is stored whole is one block.
    template <class V>
    static constexpr bool takes = V::lanes == lanes;
    VORN_INLINE Blocks place(std::ptrdiff_t position, int offset) const {
        return {keepApart(data + 2 * position + numberOf(offset))};
    }
    VORN_INLINE Blocks from(std::ptrdiff_t offset) const { return {data + 2 * offset}; }
    static constexpr bool linesCollide(std::ptrdiff_t) { return false; }

private:
    // Where the real part of a value stands.
    static constexpr int numberOf(int value) { return value / lanes * (2 * lanes) + value % lanes; }
};

template <class T>
using WideBlocks = Blocks<T, Wide<T>::lanes>;

// The layout of the values between the stages of a transform in this memory.
template <class T>
VORN_INLINE WideBlocks<T> layoutBetween(T* memory) {
    return {memory};
}
template <class T>
VORN_INLINE Split<T> layoutBetween(Split<T> arrays) {
    return arrays;
}

// Multiplies what is stored by the factor of normalisation.
template <class Layout, class T>
struct Scaled {
    Layout layout;
    T factor;

    template <class V>
    VORN_INLINE void store(std::ptrdiff_t i, Complex<V> z) const {
        const V f = constant<V>(factor);
        layout.store(i, Complex<V>{z.re * f, z.im * f});
    }
    static constexpr bool linesCollide(std::ptrdiff_t span) { return Layout::linesCollide(span); }
};

// A chunk of 2^width neighbouring columns of a matrix whose rows are 2^rowOrder apart, numbered row by row.
template <class Layout>
struct Columns {
    Layout layout;
    int width;
    int rowOrder;

    template <class V>
    VORN_INLINE Complex<V> load(std::ptrdiff_t i) const {
        return layout.template load<V>(place(i));
    }
    template <class V>
    VORN_INLINE void store(std::ptrdiff_t i, Complex<V> z) const {
        layout.store(place(i), z);
    }
    bool linesCollide(std::ptrdiff_t span) const { return Layout::linesCollide(place(span)); }

private:
    VORN_INLINE std::ptrdiff_t place(std::ptrdiff_t i) const {
        return ((i >> width) << rowOrder) + (i & ((std::ptrdiff_t{1} << width) - 1));
    }
};

}  // namespace vorn::fft
