// Offset compensation: the exported functions and the kernel that keeps its name.
#include <cstdint>

#include "features/conditioning/offset_kernels.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "vornsr/features.h"

using namespace vorn;

VORN_KERNEL void ownvornsCompensateOffset_16s_M7(const Vorn16s* src, Vorn16s* dst, std::int64_t len, Vorn16s srcLast,
                                                 Vorn16s dstLast, Vorn16s q) {
    compensateOffset(src, dst, len, srcLast, dstLast, Q12Step{q});
}

namespace {

// The filter from its first output on; *srcLast moves on to the last sample.
template <class T, class Step>
void filterBlock(const T* src, T* dst, int len, T* srcLast, Vorn32f val, T dstLast, Step step) {
    const T first = src[0];
    const T last = src[len - 1];
    dst[0] = firstOffsetOutput(first, *srcLast, dstLast, val);
    compensateOffset(src + 1, dst + 1, len - 1, first, dst[0], step);
    *srcLast = last;
}

}  // namespace

VornStatus vornsCompensateOffset_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f* pSrcLast, Vorn32f dstLast,
                                     Vorn32f val) {
    VORN_CHECK(notNull(src, dst, pSrcLast));
    VORN_CHECK(positive(len));
    filterBlock(src, dst, len, pSrcLast, val, dstLast, SingleStep{val});
    return vornStsNoErr;
}

VornStatus vornsCompensateOffset_32f_I(Vorn32f* srcDst, int len, Vorn32f* pSrcLast, Vorn32f dstLast, Vorn32f val) {
    return vornsCompensateOffset_32f(srcDst, srcDst, len, pSrcLast, dstLast, val);
}

VornStatus vornsCompensateOffset_16s(const Vorn16s* src, Vorn16s* dst, int len, Vorn16s* pSrcLast, Vorn16s dstLast,
                                     Vorn32f val) {
    VORN_CHECK(notNull(src, dst, pSrcLast));
    VORN_CHECK(positive(len));
    if (val >= -1.0f && val <= 1.0f) {
        filterBlock(src, dst, len, pSrcLast, val, dstLast, Q12Step{static_cast<Vorn16s>(val * 4096.0f)});
    } else {
        filterBlock(src, dst, len, pSrcLast, val, dstLast, RoundedStep{val});
    }
    return vornStsNoErr;
}

// No integer path here, whatever the factor.
VornStatus vornsCompensateOffset_16s_I(Vorn16s* srcDst, int len, Vorn16s* pSrcLast, Vorn16s dstLast, Vorn32f val) {
    VORN_CHECK(notNull(srcDst, pSrcLast));
    VORN_CHECK(positive(len));
    filterBlock(srcDst, srcDst, len, pSrcLast, val, dstLast, RoundedStep{val});
    return vornStsNoErr;
}

// Here the first output follows the rule of the others.
VornStatus vornsCompensateOffsetQ15_16s(const Vorn16s* src, Vorn16s* dst, int len, Vorn16s* pSrcLast, Vorn16s dstLast,
                                        Vorn16s val) {
    VORN_CHECK(notNull(src, dst, pSrcLast));
    VORN_CHECK(positive(len));
    VORN_CHECK(require(len <= 65535, vornStsSizeErr));
    VORN_CHECK(require(val >= 0, vornStsBadArgErr));
    const Vorn16s last = src[len - 1];
    compensateOffset(src, dst, len, *pSrcLast, dstLast, Q15Step{val});
    *pSrcLast = last;
    return vornStsNoErr;
}

VornStatus vornsCompensateOffsetQ15_16s_I(Vorn16s* srcDst, int len, Vorn16s* pSrcLast, Vorn16s dstLast, Vorn16s val) {
    return vornsCompensateOffsetQ15_16s(srcDst, srcDst, len, pSrcLast, dstLast, val);
}
