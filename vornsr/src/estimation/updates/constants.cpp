// The constants of Gaussians, and of output probabilities: the exported functions and the kernels that keep their
// names.
#include <cstdint>

#include "arithmetic/compute.h"
#include "estimation/updates/constant.h"
#include "frame/align.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/wrap.h"
#include "vornsr/estimation.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

// a - b/2
template <class T>
struct LessHalf : Operation<Wide<T>::lanes, true> {
    using V = Wide<T>;
    VORN_INLINE V operator()(V a, V b) const { return a - splat<V>(T(0.5)) * b; }
};
// Half of an integer is rounded down.
template <>
struct LessHalf<Vorn32s> : Operation<i32xN::lanes, true> {
    VORN_INLINE i32xN operator()(i32xN a, i32xN b) const { return a - shiftRight<1>(b); }
};

template <class T>
void lessHalf(const T* src, const T* constant, T* dst, std::int64_t len) {
    compute<LessHalf<T>>(elements(src), elements(constant), dst, len);
}

// In integers, the halves of the elements behind the last whole group of two, or of four where a vector stands off a
// 16-byte address, are rounded up: the address chooses the rounding of up to three last elements.
template <class... Vector>
int elementsRoundedDown(int len, const Vector*... vector) {
    const bool aligned = (... && isAligned(vector, 16));
    return aligned ? len / 2 * 2 : len / 4 * 4;
}
void lessHalf(const Vorn32s* src, const Vorn32s* constant, Vorn32s* dst, int len, int roundedDown) {
    if (roundedDown > 0) lessHalf(src, constant, dst, roundedDown);
    for (int i = roundedDown; i < len; ++i) dst[i] = wrapSub(src[i], wrapAdd(constant[i], 1) >> 1);
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
    lessHalf(src, srcDstGConst, srcDstGConst, len);
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
    lessHalf(src, srcGConst, dst, len, elementsRoundedDown(len, src, srcGConst, dst));
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
