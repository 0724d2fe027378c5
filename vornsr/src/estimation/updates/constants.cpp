// The constants of Gaussians, and of output probabilities: the exported functions and the kernels that keep their
// names.
#include <cstdint>

#include "estimation/updates/constant.h"
#include "estimation/updates/formula.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/rounding.h"
#include "frame/wrap.h"
#include "simd/pairs.h"
#include "vornsr/estimation.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

// dst = src - constant / 2; half of an integer is rounded down.
template <class T>
struct LessHalf {
    using Element = T;
    using V = Wide<T>;
    static constexpr bool light = true;
    const T *src, *constant;
    T* dst;

    template <class Lanes>
    VORN_INLINE V at(Lanes lanes, std::int64_t i) const {
        return lanes.load(src + i) - halfOf(lanes.load(constant + i));
    }
    template <class Lanes>
    VORN_INLINE void put(Lanes lanes, std::int64_t i, V x) const {
        lanes.store(dst + i, x);
    }
    T* result() const { return dst; }

private:
    // In its register the half stays as it is: a compiler that knows no rounding mode but the nearest may subtract a
    // product by adding one with -0.5, which rounds the other way where half of a denormal number is rounded.
    static VORN_INLINE i32xN halfOf(i32xN x) { return shiftRight<1>(x); }
    static VORN_INLINE f32xN halfOf(f32xN x) { return inRegister(splat<f32xN>(0.5f) * x); }
    static VORN_INLINE f64xN halfOf(f64xN x) { return inRegister(splat<f64xN>(0.5) * x); }
};
template <class T>
VORN_INLINE void lessHalf(const T* src, const T* constant, T* dst, std::int64_t len) {
    forElementsOf(len, LessHalf<T>{src, constant, dst});
}

// In integers, the halves of the elements behind the last whole group of two, or of four where a vector stands off a
// 16-byte address, are rounded up: the address chooses the rounding of up to three last elements.
VORN_INLINE void lessHalfByPosition(const Vorn32s* src, const Vorn32s* constant, Vorn32s* dst, int len, bool aligned) {
    const int group = aligned ? 2 : 4, grouped = len / group * group;
    if (grouped > 0) lessHalf(src, constant, dst, grouped);
    for (std::int64_t i = grouped, end = i + 3; i < end; ++i) {
        if (i < len) dst[i] = wrapSub(src[i], wrapAdd(constant[i], 1) >> 1);
    }
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsUpdateGConst_32f(const Vorn32f* src, int len, Vorn32f* dst) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    Vorn32f logarithms = 0;
    const VornStatus status = vornsSumLn_32f(src, len, &logarithms);
    return gaussianConstant(logTwoPi<Vorn32f>(len) - logarithms, status, dst);
}

VornStatus vornsUpdateGConst_64f(const Vorn64f* src, int len, Vorn64f* dst) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    Vorn64f logarithms = 0;
    const VornStatus status = vornsSumLn_64f(src, len, &logarithms);
    return gaussianConstant(logTwoPi<Vorn64f>(len) - logarithms, status, dst);
}

VornStatus vornsUpdateGConst_DirectVar_32f(const Vorn32f* src, int len, Vorn32f* dst) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    Vorn32f logarithms = 0;
    const VornStatus status = vornsSumLn_32f(src, len, &logarithms);
    return gaussianConstant(logTwoPi<Vorn32f>(len) + logarithms, status, dst);
}

VornStatus vornsUpdateGConst_DirectVar_64f(const Vorn64f* src, int len, Vorn64f* dst) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    Vorn64f logarithms = 0;
    const VornStatus status = vornsSumLn_64f(src, len, &logarithms);
    return gaussianConstant(logTwoPi<Vorn64f>(len) + logarithms, status, dst);
}

// dst[i] = src[i] - srcGConst[i] / 2
VORN_KERNEL void vornsOutProbPreCalc_32f_M7(const Vorn32f* src, const Vorn32f* srcGConst, Vorn32f* dst,
                                            std::int64_t len) {
    lessHalf(src, srcGConst, dst, len);
}
VORN_KERNEL void vornsOutProbPreCalc_32f_I_M7(const Vorn32f* src, Vorn32f* srcDstGConst, std::int64_t len) {
    lessHalf<Vorn32f>(src, srcDstGConst, srcDstGConst, len);
}
VORN_KERNEL_ALIAS(vornsOutProbPreCalc_32f_I_M7_Al, vornsOutProbPreCalc_32f_I_M7);

VornStatus vornsOutProbPreCalc_32f(const Vorn32f* src, const Vorn32f* srcGConst, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, srcGConst, dst));
    VORN_CHECK(positive(len));
    lessHalf(src, srcGConst, dst, len);
    return vornStsNoErr;
}

VornStatus vornsOutProbPreCalc_64f(const Vorn64f* src, const Vorn64f* srcGConst, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, srcGConst, dst));
    VORN_CHECK(positive(len));
    lessHalf(src, srcGConst, dst, len);
    return vornStsNoErr;
}

VornStatus vornsOutProbPreCalc_32s(const Vorn32s* src, const Vorn32s* srcGConst, Vorn32s* dst, int len) {
    VORN_CHECK(notNull(src, srcGConst, dst));
    VORN_CHECK(positive(len));
    lessHalfByPosition(src, srcGConst, dst, len, allAligned(src, srcGConst, dst));
    return vornStsNoErr;
}

VornStatus vornsOutProbPreCalc_32f_I(const Vorn32f* src, Vorn32f* srcDstGConst, int len) {
    return vornsOutProbPreCalc_32f(src, srcDstGConst, srcDstGConst, len);
}

VornStatus vornsOutProbPreCalc_64f_I(const Vorn64f* src, Vorn64f* srcDstGConst, int len) {
    return vornsOutProbPreCalc_64f(src, srcDstGConst, srcDstGConst, len);
}

VornStatus vornsOutProbPreCalc_32s_I(const Vorn32s* src, Vorn32s* srcDstGConst, int len) {
    return vornsOutProbPreCalc_32s(src, srcDstGConst, srcDstGConst, len);
}
