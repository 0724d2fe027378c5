// Plain loops of element-wise arithmetic: an operation on wide numbers, and how its result is stored. Integer results
// are ours bit for bit, save that the quotients go through double precision.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "vornsr/types.h"

namespace plain {

// The operations, of real numbers, complex ones, a real by a complex one, and of what else knows the operator.
template <class V>
concept Complex = requires(V x) {
    x.re;
};

struct Sum {
    template <class V, class W>
    auto operator()(const V& a, const W& b) const {
        if constexpr (Complex<V>) {
            return V{a.re + b.re, a.im + b.im};
        } else {
            return a + b;
        }
    }
};
struct Difference {
    template <class V, class W>
    auto operator()(const V& a, const W& b) const {
        if constexpr (Complex<V>) {
            return V{a.re - b.re, a.im - b.im};
        } else {
            return a - b;
        }
    }
};
struct Product {
    template <class V, class W>
    auto operator()(const V& a, const W& b) const {
        if constexpr (Complex<V>) {
            return V{a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
        } else if constexpr (Complex<W>) {
            return W{a * b.re, a * b.im};
        } else {
            return a * b;
        }
    }
};
struct Quotient {
    template <class V, class W>
    auto operator()(const V& a, const W& b) const {
        if constexpr (Complex<V>) {
            const auto square = b.re * b.re + b.im * b.im;
            return V{(a.re * b.re + a.im * b.im) / square, (a.im * b.re - a.re * b.im) / square};
        } else {
            return a / b;
        }
    }
};
template <class Op>
struct Reversed {
    template <class V, class W>
    auto operator()(const V& a, const W& b) const {
        return Op{}(b, a);
    }
};

// Element i of a vector, or one value for all elements.
template <class T>
T element(const T* p, std::size_t i) {
    return p[i];
}
template <class T>
T element(T val, std::size_t) {
    return val;
}

// What holds the exact sum, difference or product of two elements; complex numbers of 16 and 32 bits in 64.
template <class D>
using Real =
    std::conditional_t<std::is_floating_point_v<D>, D, std::conditional_t<sizeof(D) == 4, std::int64_t, std::int32_t>>;
struct Wide {
    std::int64_t re, im;
};
template <class D, class T>
auto wide(T x) {
    if constexpr (!Complex<D>) {
        return static_cast<Real<D>>(x);
    } else if constexpr (!Complex<T>) {
        return std::int64_t{x};
    } else if constexpr (std::is_integral_v<decltype(x.re)>) {
        return Wide{x.re, x.im};
    } else {
        return x;
    }
}

template <class D, class W>
D saturated(W x) {
    if constexpr (std::is_integral_v<D>) {
        x = std::clamp<W>(x, std::numeric_limits<D>::min(), std::numeric_limits<D>::max());
    }
    return static_cast<D>(x);
}

// dst[i] = op(a[i], b[i]), saturated. a or b may be a single value.
template <class Op, class A, class B, class D>
__attribute__((noinline)) void each(Op op, A a, B b, D* __restrict dst, std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) {
        const auto x = op(wide<D>(element(a, i)), wide<D>(element(b, i)));
        if constexpr (Complex<D>) {
            dst[i] = x;
        } else {
            dst[i] = saturated<D>(x);
        }
    }
}

// The same in place.
template <class Op, class T>
__attribute__((noinline)) void each(Op op, T* srcDst, T val, std::size_t len) {
    for (std::size_t i = 0; i < len; ++i) srcDst[i] = op(srcDst[i], val);
}

// The same times 2^-sf, rounded to nearest, ties to even: a loop for each kind of scale factor.
template <class Op, class A, class B, class D, class Scale>
void eachScaled(Op op, A a, B b, D* __restrict dst, std::size_t len, Scale scale) {
    for (std::size_t i = 0; i < len; ++i) {
        const auto x = op(wide<D>(element(a, i)), wide<D>(element(b, i)));
        if constexpr (Complex<D>) {
            using P = decltype(D::re);
            dst[i] = {saturated<P>(scale(x.re)), saturated<P>(scale(x.im))};
        } else {
            dst[i] = saturated<D>(scale(x));
        }
    }
}
template <class Op, class A, class B, class D>
__attribute__((noinline)) void eachScaled(Op op, A a, B b, D* __restrict dst, std::size_t len, int sf) {
    if (sf >= 64) {
        std::fill_n(dst, len, D{});
    } else if (sf > 0) {
        eachScaled(op, a, b, dst, len,
                   [sf](auto s) { return (s + ((decltype(s){1} << (sf - 1)) - 1) + ((s >> sf) & 1)) >> sf; });
    } else if (sf == 0) {
        eachScaled(op, a, b, dst, len, [](auto s) { return s; });
    } else {
        // Values of 16 and 32 bits saturate before they could leave the wide type.
        constexpr auto most = std::int64_t{1} << 31;
        eachScaled(op, a, b, dst, len, [sf](auto s) {
            using W = decltype(s);
            return std::clamp<W>(s, sizeof s == 4 ? -65536 : -most, sizeof s == 4 ? 65536 : most) * (W{1} << -sf);
        });
    }
}

// a / b times 2^-sf in double precision, rounded to nearest.
template <class A, class B, class D>
__attribute__((noinline)) void quotients(A a, B b, D* __restrict dst, std::size_t len, int sf) {
    const double factor = std::ldexp(1.0, -sf);
    auto divisor = [](double x) { return x == 0 ? 0x1p-100 : x; };
    for (std::size_t i = 0; i < len; ++i) {
        const auto dividend = element(a, i);
        const auto by = element(b, i);
        if constexpr (Complex<D>) {
            using P = decltype(D::re);
            const double re = by.re, im = by.im, square = divisor(re * re + im * im);
            dst[i] = {saturated<P>(std::nearbyint((dividend.re * re + dividend.im * im) * factor / square)),
                      saturated<P>(std::nearbyint((dividend.im * re - dividend.re * im) * factor / square))};
        } else {
            dst[i] = saturated<D>(std::nearbyint(dividend * factor / divisor(by)));
        }
    }
}

// a times val times 2^-sf, rounded to 16 bits.
inline __attribute__((noinline)) void multiplyToShort(const Vorn32f* __restrict a, Vorn32f val, Vorn16s* __restrict dst,
                                                      std::size_t len, int sf) {
    const float factor = std::ldexp(1.0f, -sf);
    for (std::size_t i = 0; i < len; ++i) dst[i] = saturated<Vorn16s>(std::nearbyint(a[i] * val * factor));
}

}  // namespace plain
