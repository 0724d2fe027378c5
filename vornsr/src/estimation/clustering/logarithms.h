// Sums of natural logarithms, one addition an element in their order, and what to do about elements that have none.
#pragma once

#include <cstddef>
#include <type_traits>

#include "elementary/elementary.h"
#include "elementary/lanes.h"
#include "elementary/logarithm_kernels.h"
#include "simd/simd.h"

namespace vorn::clustering {

// What a logarithm can be taken of, and what it cannot. Not a number counts as a zero.
enum class Argument { good, zero, negative };
inline Argument kindOf(double x) { return x > 0 ? Argument::good : x < 0 ? Argument::negative : Argument::zero; }

// A constant, and elements as doubles, for a register or for one element.
template <class V, class T>
VORN_INLINE V allLanes(T x) {
    if constexpr (std::is_arithmetic_v<V>) {
        return x;
    } else {
        return splat<V>(x);
    }
}
template <class V, class T>
VORN_INLINE V doublesAt(const T* p) {
    if constexpr (std::is_arithmetic_v<V>) {
        return static_cast<V>(*p);
    } else if constexpr (sizeof(T) == sizeof(double)) {
        return load<V>(p);
    } else {
        return loadWidened<V>(p);
    }
}

// Calls make.operator()<V>(i), which gives the numbers from element i on, and lays the n from `begin` on down at x. In
// front of x there is room for a register: the last one may begin early, with elements that x holds no more.
template <class Make>
VORN_INLINE void fillRun(const Make& make, std::ptrdiff_t begin, std::ptrdiff_t n, double* x) {
    constexpr std::ptrdiff_t lanes = f64xN::lanes;
    std::ptrdiff_t k = 0;
    for (; k + lanes <= n; k += lanes) store(x + k, make.template at<f64xN>(begin + k));
    if (k == n) return;
    if (begin + n >= lanes) {
        store(x + (n - lanes), make.template at<f64xN>(begin + n - lanes));
    } else {
        for (; k < n; ++k) x[k] = make.template at<double>(begin + k);
    }
}

// Some numbers on their way to their logarithms.
template <std::ptrdiff_t length>
class Run {
public:
    double* begin() { return room_ + f64xN::lanes; }
    double operator[](std::ptrdiff_t i) const { return room_[f64xN::lanes + i]; }

private:
    alignas(f64xN) double room_[f64xN::lanes + length];
};

// So many logarithms are taken at a time, each as log64 gives it. Each addition to a sum waits for the one before it,
// while the next logarithms are made.
constexpr std::ptrdiff_t runLength = 16;
using ShortRun = Run<runLength>;

// Whether the first n numbers of a run are all normal and positive; then they become their logarithms.
VORN_INLINE bool takeLogarithms(ShortRun& run, std::ptrdiff_t n) {
    double* x = run.begin();
    for (std::ptrdiff_t k = n; k < runLength; ++k) x[k] = 1.0;
    auto good = isNormalPositive(load<f64xN>(x));
    for (std::ptrdiff_t k = f64xN::lanes; k < runLength; k += f64xN::lanes) {
        good = good & isNormalPositive(load<f64xN>(x + k));
    }
    if (!all(good)) return false;
    for (std::ptrdiff_t k = 0; k < n; k += f64xN::lanes) store(x + k, logOfNormal(load<f64xN>(x + k)));
    return true;
}

}  // namespace vorn::clustering
