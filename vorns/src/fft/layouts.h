// How complex data lies in memory. A layout loads and stores a vector of neighbouring values, splits them into columns,
// and gives the layout of what follows an offset; the transform is written once over these.
#pragma once

#include <cstddef>

#include "fft/butterflies.h"
#include "simd.h"

namespace vorn::fft {

enum class Parts { RealFirst, ImaginaryFirst };

// Pairs. With the imaginary parts first, the forward transform is the inverse one: both ends of it exchange the parts.
template <class T, Parts parts = Parts::RealFirst>
struct Interleaved {
    T* data;

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
            storePairs(data + 2 * i, z.re, z.im);
        }
    }
    // One value each of lanes columns, count values a column, column after column from the first on; values come in
    // bit-reversed order.
    template <class V, int count>
    VORN_INLINE void loadReversedColumns(std::ptrdiff_t first, Complex<V> (&points)[count]) const {
        constexpr int run = 16 / sizeof(T);
        const T* from[V::lanes];
        for (int lane = 0; lane < V::lanes; ++lane) from[lane] = data + 2 * (first + lane * count);
        for (int i = 0; i < 2 * count; i += run) {
            V v[run];
            loadColumns(from, i, v);
            for (int n = 0; n < run; n += 2) {
                points[bitReversed((i + n) / 2, count)] = ordered(Complex<V>{v[n], v[n + 1]});
            }
        }
    }
    VORN_INLINE Interleaved from(std::ptrdiff_t offset) const { return {data + 2 * offset}; }

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
    VORN_INLINE void loadReversedColumns(std::ptrdiff_t first, Complex<V> (&points)[count]) const {
        constexpr int run = 16 / sizeof(T);
        const T *fromRe[V::lanes], *fromIm[V::lanes];
        for (int lane = 0; lane < V::lanes; ++lane) {
            fromRe[lane] = re + first + lane * count;
            fromIm[lane] = im + first + lane * count;
        }
        for (int i = 0; i < count; i += run) {
            V real[run], imaginary[run];
            loadColumns(fromRe, i, real);
            loadColumns(fromIm, i, imaginary);
            for (int n = 0; n < run; ++n) points[bitReversed(i + n, count)] = {real[n], imaginary[n]};
        }
    }
    // Column i of the points goes to the values from position[i] on.
    template <class V, int count>
    VORN_INLINE void storeColumns(const std::ptrdiff_t (&position)[V::lanes], const Complex<V> (&points)[count]) const {
        constexpr int run = 16 / sizeof(T);
        T *toRe[V::lanes], *toIm[V::lanes];
        for (int lane = 0; lane < V::lanes; ++lane) {
            toRe[lane] = re + position[lane];
            toIm[lane] = im + position[lane];
        }
        for (int i = 0; i < count; i += run) {
            V real[run], imaginary[run];
            for (int n = 0; n < run; ++n) real[n] = points[i + n].re, imaginary[n] = points[i + n].im;
            vorn::storeColumns(toRe, i, real);
            vorn::storeColumns(toIm, i, imaginary);
        }
    }
    VORN_INLINE Split from(std::ptrdiff_t offset) const { return {re + offset, im + offset}; }
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
    template <class V, int count>
    VORN_INLINE void storeColumns(const std::ptrdiff_t (&position)[V::lanes], const Complex<V> (&points)[count]) const {
        static_assert(count % lanes == 0);
        constexpr int run = 16 / sizeof(T);
        T* to[V::lanes];
        for (int lane = 0; lane < V::lanes; ++lane) to[lane] = data + 2 * position[lane];
        for (int i = 0; i < count; i += run) {
            V real[run], imaginary[run];
            for (int n = 0; n < run; ++n) real[n] = points[i + n].re, imaginary[n] = points[i + n].im;
            const int offset = i / lanes * (2 * lanes) + i % lanes;
            vorn::storeColumns(to, offset, real);
            vorn::storeColumns(to, offset + lanes, imaginary);
        }
    }
    VORN_INLINE Blocks from(std::ptrdiff_t offset) const { return {data + 2 * offset}; }
};

template <class T>
using WideBlocks = Blocks<T, Wide<T>::lanes>;

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

private:
    VORN_INLINE std::ptrdiff_t place(std::ptrdiff_t i) const {
        return ((i >> width) << rowOrder) + (i & ((std::ptrdiff_t{1} << width) - 1));
    }
};

}  // namespace vorn::fft
