// Offset compensation: the exported functions and the kernel that keeps its name.
#include <cstdint>

#include "features/offset_kernels.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "vornsr/features.h"

using namespace vorn;

VORN_KERNEL void ownvornsCompensateOffset_16s_M7(const Vorn16s* src, Vorn16s* dst, std::int64_t len, Vorn16s srcLast,
                                                 Vorn16s dstLast, Vorn16s q) {
    compensateOffset(src, dst, len, srcLast, dstLast, Q12Step{q});
}

VornStatus vornsCompensateOffset_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f* pSrcLast, Vorn32f dstLast,
                                     Vorn32f val) {
    VORN_CHECK(notNull(src, dst, pSrcLast));
    VORN_CHECK(positive(len));
    const Vorn32f first = src[0];
    const Vorn32f last = src[len - 1];
    const Vorn32f y = firstOffsetOutput(first, *pSrcLast, dstLast, val);
    dst[0] = y;
    compensateOffset(src + 1, dst + 1, len - 1, first, y, SingleStep{val});
    *pSrcLast = last;
    return vornStsNoErr;
}

VornStatus vornsCompensateOffset_16s(const Vorn16s* src, Vorn16s* dst, int len, Vorn16s* pSrcLast, Vorn16s dstLast,
                                     Vorn32f val) {
    VORN_CHECK(notNull(src, dst, pSrcLast));
    VORN_CHECK(positive(len));
    const Vorn16s first = src[0];
    const Vorn16s last = src[len - 1];
    const Vorn16s y = firstOffsetOutput(first, *pSrcLast, dstLast, val);
    dst[0] = y;
    if (val >= -1.0f && val <= 1.0f) {
        ownvornsCompensateOffset_16s_M7(src + 1, dst + 1, len - 1, first, y, static_cast<Vorn16s>(val * 4096.0f));
    } else {
        compensateOffset(src + 1, dst + 1, len - 1, first, y, RoundedStep{val});
    }
    *pSrcLast = last;
    return vornStsNoErr;
}
