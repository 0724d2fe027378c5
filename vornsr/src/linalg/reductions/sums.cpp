// Sums of columns and rows: the exported functions.
#include "linalg/reductions/sums.h"

#include "frame/checks.h"
#include "frame/rows.h"
#include "move/convert_kernels.h"
#include "vornsr/linalg.h"

namespace vorn::reductions {
namespace {

// Sums of 16-bit integers are singles first, which the conversion then replaces in their place.
Vorn32f* asSingles(Vorn32s* dst) { return reinterpret_cast<Vorn32f*>(dst); }
void convertInPlace(Vorn32s* dst, int len, int scaleFactor) {
    convert(asSingles(dst), dst, len, vornRndNear, scaleFactor);
}

}  // namespace
}  // namespace vorn::reductions

using namespace vorn;

VornStatus vornsSumColumn_32f_D2(const Vorn32f* src, int srcStep, int height, Vorn32f* dst, int width) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    reductions::sumColumns(Rows(src, srcStep), height, dst, width);
    return vornStsNoErr;
}

VornStatus vornsSumColumn_32f_D2L(const Vorn32f* const* src, int height, Vorn32f* dst, int width) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    reductions::sumColumns(Rows(src), height, dst, width);
    return vornStsNoErr;
}

VornStatus vornsSumColumn_64f_D2(const Vorn64f* src, int srcStep, int height, Vorn64f* dst, int width) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    reductions::sumColumns(Rows(src, srcStep), height, dst, width);
    return vornStsNoErr;
}

VornStatus vornsSumColumn_64f_D2L(const Vorn64f* const* src, int height, Vorn64f* dst, int width) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    reductions::sumColumns(Rows(src), height, dst, width);
    return vornStsNoErr;
}

VornStatus vornsSumColumn_16s32f_D2(const Vorn16s* src, int srcStep, int height, Vorn32f* dst, int width) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    reductions::sumIntegerColumns(Rows(src, srcStep), height, dst, width);
    return vornStsNoErr;
}

VornStatus vornsSumColumn_16s32f_D2L(const Vorn16s* const* src, int height, Vorn32f* dst, int width) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    reductions::sumIntegerColumns(Rows(src), height, dst, width);
    return vornStsNoErr;
}

VornStatus vornsSumColumn_16s32s_D2Sfs(const Vorn16s* src, int srcStep, int height, Vorn32s* dst, int width,
                                       int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    reductions::sumIntegerColumns(Rows(src, srcStep), height, reductions::asSingles(dst), width);
    reductions::convertInPlace(dst, width, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSumColumn_16s32s_D2LSfs(const Vorn16s* const* src, int height, Vorn32s* dst, int width,
                                        int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    reductions::sumIntegerColumns(Rows(src), height, reductions::asSingles(dst), width);
    reductions::convertInPlace(dst, width, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSumRow_32f_D2(const Vorn32f* src, int width, int srcStep, Vorn32f* dst, int height) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    reductions::sumRows(Rows(src, srcStep), width, dst, height);
    return vornStsNoErr;
}

VornStatus vornsSumRow_32f_D2L(const Vorn32f* const* src, int width, Vorn32f* dst, int height) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    reductions::sumRows(Rows(src), width, dst, height);
    return vornStsNoErr;
}

VornStatus vornsSumRow_64f_D2(const Vorn64f* src, int width, int srcStep, Vorn64f* dst, int height) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    reductions::sumRows(Rows(src, srcStep), width, dst, height);
    return vornStsNoErr;
}

VornStatus vornsSumRow_64f_D2L(const Vorn64f* const* src, int width, Vorn64f* dst, int height) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    reductions::sumRows(Rows(src), width, dst, height);
    return vornStsNoErr;
}

VornStatus vornsSumRow_16s32f_D2(const Vorn16s* src, int width, int srcStep, Vorn32f* dst, int height) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    reductions::sumRows(Rows(src, srcStep), width, dst, height);
    return vornStsNoErr;
}

VornStatus vornsSumRow_16s32f_D2L(const Vorn16s* const* src, int width, Vorn32f* dst, int height) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    reductions::sumRows(Rows(src), width, dst, height);
    return vornStsNoErr;
}

VornStatus vornsSumRow_16s32s_D2Sfs(const Vorn16s* src, int width, int srcStep, Vorn32s* dst, int height,
                                    int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    reductions::sumRows(Rows(src, srcStep), width, reductions::asSingles(dst), height);
    reductions::convertInPlace(dst, height, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSumRow_16s32s_D2LSfs(const Vorn16s* const* src, int width, Vorn32s* dst, int height, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(height, width));
    reductions::sumRows(Rows(src), width, reductions::asSingles(dst), height);
    reductions::convertInPlace(dst, height, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsAddAllRowSum_32f_D2(const Vorn32f* src, int srcStep, int height, Vorn32f* srcDst, int width) {
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    reductions::addRows(Rows(src, srcStep), height, srcDst, width);
    return vornStsNoErr;
}

VornStatus vornsAddAllRowSum_32f_D2L(const Vorn32f* const* src, int height, Vorn32f* srcDst, int width) {
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(positive(height, width));
    reductions::addRows(Rows(src), height, srcDst, width);
    return vornStsNoErr;
}
