// Copies of columns: the exported functions.
#include "features/delta/copies_kernels.h"
#include "frame/checks.h"
#include "vornsr/features.h"

using namespace vorn;

namespace vorn::delta {
namespace {

template <class T>
VornStatus checkedCopy(const T* src, int width, T* dst, int dstStep, int height) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(dstStep, width));
    copyRows(src, width, dst, dstStep, height);
    return vornStsNoErr;
}

// Each side's length comes before its stride, and the height last.
template <class T>
VornStatus checkedPick(const T* src, int srcLen, int srcStep, T* dst, const Vorn32s* pIndex, int dstLen, int dstStep,
                       int height) {
    VORN_CHECK(notNull(src, dst, pIndex));
    VORN_CHECK(positive(srcLen));
    VORN_CHECK(strideHolds(srcStep, srcLen));
    VORN_CHECK(positive(dstLen));
    VORN_CHECK(strideHolds(dstStep, dstLen));
    VORN_CHECK(positive(height));
    return require(pickColumns(Rows(src, srcStep), srcLen, Rows(dst, dstStep), pIndex, dstLen, height), vornStsSizeErr);
}

template <class T>
VornStatus checkedPick(const T* const* ppSrc, int srcLen, T* const* ppDst, const Vorn32s* pIndex, int dstLen,
                       int height) {
    VORN_CHECK(notNull(ppSrc, ppDst, pIndex));
    VORN_CHECK(positive(srcLen, dstLen, height));
    return require(pickColumns(Rows(ppSrc), srcLen, Rows(ppDst), pIndex, dstLen, height), vornStsSizeErr);
}

}  // namespace
}  // namespace vorn::delta

VornStatus vornsCopyColumn_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height) {
    return delta::checkedCopy(src, width, dst, dstStep, height);
}

VornStatus vornsCopyColumn_16s_D2(const Vorn16s* src, int width, Vorn16s* dst, int dstStep, int height) {
    return delta::checkedCopy(src, width, dst, dstStep, height);
}

VornStatus vornsCopyColumn_Indirect_32f_D2(const Vorn32f* src, int srcLen, int srcStep, Vorn32f* dst,
                                           const Vorn32s* pIndex, int dstLen, int dstStep, int height) {
    return delta::checkedPick(src, srcLen, srcStep, dst, pIndex, dstLen, dstStep, height);
}

VornStatus vornsCopyColumn_Indirect_64f_D2(const Vorn64f* src, int srcLen, int srcStep, Vorn64f* dst,
                                           const Vorn32s* pIndex, int dstLen, int dstStep, int height) {
    return delta::checkedPick(src, srcLen, srcStep, dst, pIndex, dstLen, dstStep, height);
}

VornStatus vornsCopyColumn_Indirect_16s_D2(const Vorn16s* src, int srcLen, int srcStep, Vorn16s* dst,
                                           const Vorn32s* pIndex, int dstLen, int dstStep, int height) {
    return delta::checkedPick(src, srcLen, srcStep, dst, pIndex, dstLen, dstStep, height);
}

VornStatus vornsCopyColumn_Indirect_32f_D2L(const Vorn32f* const* ppSrc, int srcLen, Vorn32f* const* ppDst,
                                            const Vorn32s* pIndex, int dstLen, int height) {
    return delta::checkedPick(ppSrc, srcLen, ppDst, pIndex, dstLen, height);
}

VornStatus vornsCopyColumn_Indirect_64f_D2L(const Vorn64f* const* ppSrc, int srcLen, Vorn64f* const* ppDst,
                                            const Vorn32s* pIndex, int dstLen, int height) {
    return delta::checkedPick(ppSrc, srcLen, ppDst, pIndex, dstLen, height);
}

VornStatus vornsCopyColumn_Indirect_16s_D2L(const Vorn16s* const* ppSrc, int srcLen, Vorn16s* const* ppDst,
                                            const Vorn32s* pIndex, int dstLen, int height) {
    return delta::checkedPick(ppSrc, srcLen, ppDst, pIndex, dstLen, height);
}
