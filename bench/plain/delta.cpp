#include "plain/delta.h"

#include <algorithm>
#include <cstddef>
#include <type_traits>

namespace plain {
namespace {

using std::ptrdiff_t;

std::int16_t stored(int x, int scale) { return static_cast<std::int16_t>(std::clamp(x >> scale, -32768, 32767)); }
float times(float x, float f, int) { return x * f; }
std::int16_t times(int x, int f, int scale) {
    return stored(static_cast<int>(static_cast<unsigned>(x) * static_cast<unsigned>(f)), scale);
}

template <bool wraps>
float difference(float a, float b) {
    return a - b;
}
template <bool wraps>
int difference(std::int16_t a, std::int16_t b) {
    return wraps ? static_cast<std::int16_t>(a - b) : a - b;
}

// One row; the operator reads the columns at x of the rows around t.
template <int window, bool mul, bool wraps, class T>
void differencesRow(const T* x, T* __restrict out, const T* __restrict f, int width, ptrdiff_t step, int t, int height,
                    int scale) {
    const auto row = [&](int at) { return x + std::clamp(at, 0, height - 1) * step; };
    const T *x1 = row(t + 1), *x2 = row(t + 2), *y1 = row(t - 1), *y2 = row(t - 2);
    for (int c = 0; c < width; ++c) {
        const auto a = difference<wraps>(x1[c], y1[c]), b = difference<wraps>(x2[c], y2[c]);
        out[c] = times(window == 1 ? a : a + b + b, f[mul ? c : 0], scale);
    }
}

template <int window, bool acceleration, bool mul, bool wraps, class T>
void stream(const Deltas<T>& call) {
    const int width = call.width, height = call.height;
    const ptrdiff_t step = call.step;
    for (int newest = 0; newest < height + 2 * window; ++newest) {
        if (newest < height) {
            const T* __restrict in = call.src + static_cast<ptrdiff_t>(newest) * width;
            T* __restrict out = call.dst + newest * step;
            for (int c = 0; c < width; ++c) out[c] = mul ? times(in[c], call.f[c], call.scale) : in[c];
        }
        const int t = newest - window;
        if (t >= 0 && t < height) {
            differencesRow<window, mul, wraps>(call.dst, call.dst + t * step + width, call.f + width, width, step, t,
                                               height, call.scale);
        }
        if (acceleration && t >= window) {
            differencesRow<window, mul, wraps>(call.dst + width, call.dst + (t - window) * step + 2 * width,
                                               call.f + 2 * width, width, step, t - window, height, call.scale);
        }
    }
}

template <int window, bool acceleration, bool mul, class T>
void withWrapping(const Deltas<T>& call) {
    if (call.wraps) {
        stream<window, acceleration, mul, std::is_same_v<T, std::int16_t>>(call);
    } else {
        stream<window, acceleration, mul, false>(call);
    }
}
template <int window, bool acceleration, class T>
void withFactors(const Deltas<T>& call) {
    call.mul ? withWrapping<window, acceleration, true>(call) : withWrapping<window, acceleration, false>(call);
}
template <int window, class T>
void withAcceleration(const Deltas<T>& call) {
    call.acceleration ? withFactors<window, true>(call) : withFactors<window, false>(call);
}
template <class T>
void withWindow(const Deltas<T>& call) {
    call.window == 1 ? withAcceleration<1>(call) : withAcceleration<2>(call);
}

template <bool mul, class T>
void evaluate(T* matrix, int height, ptrdiff_t step, const T* __restrict f, int width, int offset, int window,
              int scale) {
    using Sum = std::conditional_t<std::is_same_v<T, float>, float, int>;
    for (int r = 0; r < height; ++r) {
        T* x = matrix + offset + r * step;
        T* __restrict out = x + width;
        const T *first = matrix + offset, *last = first + (height - 1) * step;
        for (int c = 0; c < width; ++c) {
            Sum sum = 0;
            for (int k = 1; k <= window; ++k) {
                const T right = r >= height - window ? last[c] : x[c + k * step];
                const T left = r < window ? first[c] : x[c - k * step];
                sum += static_cast<Sum>(k) * difference<true>(right, left);
            }
            out[c] = times(sum, f[mul ? c : 0], scale);
        }
    }
}

template <class T>
void copyRows(const T* src, int width, T* dst, ptrdiff_t step, int height) {
    for (int r = 0; r < height; ++r) std::copy_n(src + static_cast<ptrdiff_t>(r) * width, width, dst + r * step);
}
template <class T>
void pickRows(const T* src, ptrdiff_t srcStep, T* dst, const int* index, int len, ptrdiff_t step, int height) {
    for (int r = 0; r < height; ++r) {
        const T* from = src + r * srcStep;
        T* __restrict to = dst + r * step;
        for (int j = 0; j < len; ++j) to[j] = from[index[j]];
    }
}

}  // namespace

void deltas(const Deltas<float>& call) { withWindow(call); }
void deltas(const Deltas<std::int16_t>& call) { withWindow(call); }

void evalDelta(float* x, int height, int step, const float* f, bool mul, int width, int offset, int window, int scale) {
    (mul ? evaluate<true, float> : evaluate<false, float>)(x, height, step, f, width, offset, window, scale);
}
void evalDelta(std::int16_t* x, int height, int step, const std::int16_t* f, bool mul, int width, int offset,
               int window, int scale) {
    (mul ? evaluate<true, std::int16_t> : evaluate<false, std::int16_t>)(x, height, step, f, width, offset, window,
                                                                         scale);
}

void copyColumns(const float* src, int width, float* dst, int step, int height) {
    copyRows(src, width, dst, step, height);
}
void copyColumns(const std::int16_t* src, int width, std::int16_t* dst, int step, int height) {
    copyRows(src, width, dst, step, height);
}
void pickColumns(const float* src, int srcStep, float* dst, const int* index, int len, int step, int height) {
    pickRows(src, srcStep, dst, index, len, step, height);
}
void pickColumns(const double* src, int srcStep, double* dst, const int* index, int len, int step, int height) {
    pickRows(src, srcStep, dst, index, len, step, height);
}
void pickColumns(const std::int16_t* src, int srcStep, std::int16_t* dst, const int* index, int len, int step,
                 int height) {
    pickRows(src, srcStep, dst, index, len, step, height);
}

}  // namespace plain
