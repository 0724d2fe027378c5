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

// The functions that do the work take small results first, and hand the others to their like: what it takes to find out
// about the cache would cost a small one as much as its work.

// dst[i] = Op(a[i], b[i])
template <class Op, Extent extent = Extent::small, class A, class B, class D>
VORN_NOINLINE void compute(A a, B b, D* dst, std::int64_t len) {
    if (extent == Extent::small && !isSmall<D>(len)) return compute<Op, Extent::any>(a, b, dst, len);
    forElements<extent>(Op{}, a, b, dst, len);
}

// dst[i] = Op(a[i], b[i]) times 2^-sf, rounded and saturated. Where the result is zero throughout, no operand is read.
template <class Op, Extent extent = Extent::small, class A, class B, class D>
VORN_NOINLINE void computeScaled(A a, B b, D* dst, std::int64_t len, int sf) {
    if (extent == Extent::small && !isSmall<D>(len)) return computeScaled<Op, Extent::any>(a, b, dst, len, sf);
    withScale<Op::exactBits>(
        sf, Op::limits, [=](auto scale) { forElements<extent>(Scaled<Op, decltype(scale)>(scale), a, b, dst, len); },
        [=] { zeroElements(dst, len); });
}

// The same for an operation with a factor of its own.
template <Extent extent = Extent::small, class Op, class A, class B, class D>
VORN_NOINLINE void computeWith(const Op& op, A a, B b, D* dst, std::int64_t len) {
    if (extent == Extent::small && !isSmall<D>(len)) return computeWith<Extent::any>(op, a, b, dst, len);
    const Op own = op;
    forElements<extent>(own, a, b, dst, len);
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
