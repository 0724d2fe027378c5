// Element-wise arithmetic as its exported functions call it: an operation, two operands, a result.
#pragma once

#include <algorithm>
#include <cstdint>

#include "arithmetic/ops.h"
#include "frame/rounding.h"
#include "frame/scale.h"
#include "loops/operands.h"
#include "move/move_kernels.h"

namespace vorn {

// A complex vector as the vector of its parts, for operations that treat each part by itself.
template <class T>
VORN_INLINE auto parts(const T* p) {
    return Elements<Lane<T>>{lanesAt(p)};
}
VORN_INLINE std::int64_t twice(int len) { return 2 * std::int64_t{len}; }

// A real constant as a complex one of equal parts, so that one loop over parts serves both.
VORN_INLINE Constant<Vorn16sc> constantOfParts(Vorn16s val) { return {{val, val}}; }
VORN_INLINE Constant<Vorn32sc> constantOfParts(Vorn32s val) { return {{val, val}}; }
VORN_INLINE Constant<Vorn32fc> constantOfParts(Vorn32f val) { return {{val, val}}; }
VORN_INLINE Constant<Vorn64fc> constantOfParts(Vorn64f val) { return {{val, val}}; }

template <class T>
void zeroElements(T* dst, std::int64_t len) {
    ownsSet_8u_M7(0, reinterpret_cast<Vorn8u*>(dst), len * static_cast<std::int64_t>(sizeof(T)));
}
template <class T>
void copyElements(const T* src, T* dst, std::int64_t len) {
    if (src == dst) return;
    ownsMove_8u_M7(reinterpret_cast<const Vorn8u*>(src), reinterpret_cast<Vorn8u*>(dst),
                   len * static_cast<std::int64_t>(sizeof(T)));
}

// The functions that do the work take small results, and the others are cut into pieces for them or, past the cache,
// for their like: what it takes to find out about the cache would cost a small one as much as its work.
enum class Route { inCache, pastCache };

// inCache(a, b, dst, n) or pastCache(a, b, dst, n) on the pieces of a result that is not small.
template <class A, class B, class D, class InCache, class PastCache>
VORN_INLINE void piecewise(A a, B b, D* dst, std::int64_t len, const InCache& inCache, const PastCache& pastCache) {
    inPieces<periodOf<A, B, D>>(
        dst, len, [&](std::int64_t i, std::int64_t n) { inCache(a.from(i), b.from(i), dst + i, n); },
        [&](std::int64_t i, std::int64_t n) { pastCache(a.from(i), b.from(i), dst + i, n); });
}

template <Route route, class Op, class A, class B, class D>
VORN_INLINE void forElementsOn(const Op& op, A a, B b, D* dst, std::int64_t len) {
    if constexpr (route == Route::pastCache) {
        forElementsPastCache(op, a, b, dst, len);
    } else {
        forElements(op, a, b, dst, len);
    }
}

template <class Op, class A, class B, class D>
void computeLong(A a, B b, D* dst, std::int64_t len);
template <class Op, class A, class B, class D>
void computeScaledLong(A a, B b, D* dst, std::int64_t len, int sf);
template <class Op, class A, class B, class D>
void computeWithLong(const Op& op, A a, B b, D* dst, std::int64_t len);

// dst[i] = Op(a[i], b[i])
template <class Op, Route route = Route::inCache, class A, class B, class D>
VORN_NOINLINE void compute(A a, B b, D* dst, std::int64_t len) {
    if (route == Route::inCache && !isSmall<D>(len)) return computeLong<Op>(a, b, dst, len);
    forElementsOn<route>(Op{}, a, b, dst, len);
}
template <class Op, class A, class B, class D>
VORN_NOINLINE void computeLong(A a, B b, D* dst, std::int64_t len) {
    piecewise(
        a, b, dst, len, [](auto... piece) { compute<Op>(piece...); },
        [](auto... piece) { compute<Op, Route::pastCache>(piece...); });
}

// dst[i] = Op(a[i], b[i]) times 2^-sf, rounded and saturated. Where the result is zero throughout, no operand is read.
template <class Op, Route route = Route::inCache, class A, class B, class D>
VORN_NOINLINE void computeScaled(A a, B b, D* dst, std::int64_t len, int sf) {
    if (route == Route::inCache && !isSmall<D>(len)) return computeScaledLong<Op>(a, b, dst, len, sf);
    withScale<Op::exactBits>(
        sf, Op::limits, [=](auto scale) { forElementsOn<route>(Scaled<Op, decltype(scale)>(scale), a, b, dst, len); },
        [=] { zeroElements(dst, len); });
}
template <class Op, class A, class B, class D>
VORN_NOINLINE void computeScaledLong(A a, B b, D* dst, std::int64_t len, int sf) {
    piecewise(
        a, b, dst, len, [sf](auto... piece) { computeScaled<Op>(piece..., sf); },
        [sf](auto... piece) { computeScaled<Op, Route::pastCache>(piece..., sf); });
}

// The same as compute for an operation with a factor of its own.
template <Route route = Route::inCache, class Op, class A, class B, class D>
VORN_NOINLINE void computeWith(const Op& op, A a, B b, D* dst, std::int64_t len) {
    if (route == Route::inCache && !isSmall<D>(len)) return computeWithLong(op, a, b, dst, len);
    const Op own = op;
    forElementsOn<route>(own, a, b, dst, len);
}
template <class Op, class A, class B, class D>
VORN_NOINLINE void computeWithLong(const Op& op, A a, B b, D* dst, std::int64_t len) {
    piecewise(
        a, b, dst, len, [&op](auto... piece) { computeWith(op, piece...); },
        [&op](auto... piece) { computeWith<Route::pastCache>(op, piece...); });
}

// The product of 32-bit integers rounds in nearest mode, whatever the caller's.
template <class B>
void multiply32s(Elements<Vorn32s> a, B b, Vorn32s* dst, std::int64_t len, int sf) {
    if (sf > limitsOfProducts32s.upper) return zeroElements(dst, len);
    const RoundingGuard nearest(Rounding::Nearest);
    if (sf == 0) {
        computeWith(Product32s<false>(1), a, b, dst, len);
    } else {
        // One place beyond the lower limit every product but 0 saturates.
        const double scale = GetScale_32s64f(std::max(sf, limitsOfProducts32s.lower - 1));
        computeWith(Product32s<true>(scale), a, b, dst, len);
    }
}

// dst[i] = a[i] val. A val of 1 copies, and one of 0 gives zeros whatever a holds, infinities and not-a-numbers too.
VORN_INLINE void multiplyByConstant(const Vorn32f* a, Vorn32f val, Vorn32f* dst, std::int64_t len) {
    if (val == 1) {
        copyElements(a, dst, len);
    } else if (val == 0) {
        zeroElements(dst, len);
    } else {
        compute<InFloat<Vorn32f, Times>>(elements(a), constant(val), dst, len);
    }
}

}  // namespace vorn
