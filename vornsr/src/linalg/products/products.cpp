// Products of a matrix with a vector: the exported functions.
#include "frame/checks.h"
#include "frame/rounding.h"
#include "linalg/products/left_hand.h"
#include "linalg/products/right_hand.h"
#include "vornsr/linalg.h"

namespace vorn {
namespace {

// Whatever passes through floating point on its way to an integer is rounded to nearest, whatever the caller's mode.

void matVecMulRounded(AnyRows<const Vorn32s> rows, const Vorn32s* vec, int width, Vorn32s* dst, int height,
                      int scaleFactor) {
    const RoundingGuard guard(Rounding::Nearest);
    matVecMul<RowSums_32s>(rows, vec, width, dst, height, RoundedSum{GetScale_32s64f(scaleFactor)});
}

void vecMatMulRounded(const Vorn32s* vec, AnyRows<const Vorn32s> rows, int height, Vorn32s* dst, int width,
                      int scaleFactor) {
    const RoundingGuard guard(Rounding::Nearest);
    vecMatMul<DoubleColumns<Vorn32s>>(vec, rows, height, dst, width, ClampedColumns<Vorn32s>(scaleFactor));
}

template <class Result>
void vecMatMulRounded(const Vorn16s* vec, AnyRows<const Vorn16s> rows, int height, Result* dst, int width,
                      int scaleFactor) {
    const RoundingGuard guard(Rounding::Nearest);
    const ClampedColumns<Result> scaled(scaleFactor);
    if (height <= exactRows) {
        vecMatMul<ShortColumns>(vec, rows, height, dst, width, scaled);
    } else {
        vecMatMul<DoubleColumns<Vorn16s>>(vec, rows, height, dst, width, scaled);
    }
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsMatVecMul_32f_D2(const Vorn32f* src, int srcStep, const Vorn32f* srcVec, int width, Vorn32f* dst,
                                 int height) {
    VORN_CHECK(notNull(src, srcVec, dst));
    VORN_CHECK(positive(width, height));
    VORN_CHECK(strideHolds(srcStep, width));
    matVecMul<RowSums_32f>(Rows(src, srcStep), srcVec, width, dst, height, SumAsItIs());
    return vornStsNoErr;
}

VornStatus vornsMatVecMul_32f_D2L(const Vorn32f* const* src, const Vorn32f* srcVec, int width, Vorn32f* dst,
                                  int height) {
    VORN_CHECK(notNull(src, srcVec, dst));
    VORN_CHECK(positive(width, height));
    matVecMul<RowSums_32f>(Rows(src), srcVec, width, dst, height, SumAsItIs());
    return vornStsNoErr;
}

VornStatus vornsMatVecMul_16s_D2Sfs(const Vorn16s* src, int srcStep, const Vorn16s* srcVec, int width, Vorn16s* dst,
                                    int height, int scaleFactor) {
    VORN_CHECK(notNull(src, srcVec, dst));
    VORN_CHECK(positive(width, height));
    VORN_CHECK(strideHolds(srcStep, width));
    matVecMul<RowSums_16s>(Rows(src, srcStep), srcVec, width, dst, height, ShiftedSum<Vorn16s>(scaleFactor));
    return vornStsNoErr;
}

VornStatus vornsMatVecMul_16s_D2LSfs(const Vorn16s* const* src, const Vorn16s* srcVec, int width, Vorn16s* dst,
                                     int height, int scaleFactor) {
    VORN_CHECK(notNull(src, srcVec, dst));
    VORN_CHECK(positive(width, height));
    matVecMul<RowSums_16s>(Rows(src), srcVec, width, dst, height, ShiftedSum<Vorn16s>(scaleFactor));
    return vornStsNoErr;
}

VornStatus vornsMatVecMul_16s32s_D2Sfs(const Vorn16s* src, int srcStep, const Vorn16s* srcVec, int width, Vorn32s* dst,
                                       int height, int scaleFactor) {
    VORN_CHECK(notNull(src, srcVec, dst));
    VORN_CHECK(positive(width, height));
    VORN_CHECK(strideHolds(srcStep, width));
    matVecMul<RowSums_16s>(Rows(src, srcStep), srcVec, width, dst, height, ShiftedSum<Vorn32s>(scaleFactor));
    return vornStsNoErr;
}

VornStatus vornsMatVecMul_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* srcVec, int width, Vorn32s* dst,
                                        int height, int scaleFactor) {
    VORN_CHECK(notNull(src, srcVec, dst));
    VORN_CHECK(positive(width, height));
    matVecMul<RowSums_16s>(Rows(src), srcVec, width, dst, height, ShiftedSum<Vorn32s>(scaleFactor));
    return vornStsNoErr;
}

VornStatus vornsMatVecMul_32s_D2Sfs(const Vorn32s* src, int srcStep, const Vorn32s* srcVec, int width, Vorn32s* dst,
                                    int height, int scaleFactor) {
    VORN_CHECK(notNull(src, srcVec, dst));
    VORN_CHECK(positive(width, height));
    VORN_CHECK(strideHolds(srcStep, width));
    matVecMulRounded(Rows(src, srcStep), srcVec, width, dst, height, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMatVecMul_32s_D2LSfs(const Vorn32s* const* src, const Vorn32s* srcVec, int width, Vorn32s* dst,
                                     int height, int scaleFactor) {
    VORN_CHECK(notNull(src, srcVec, dst));
    VORN_CHECK(positive(width, height));
    matVecMulRounded(Rows(src), srcVec, width, dst, height, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsVecMatMul_32f_D2(const Vorn32f* srcVec, const Vorn32f* src, int srcStep, int height, Vorn32f* dst,
                                 int width) {
    VORN_CHECK(notNull(srcVec, src, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    vecMatMul<SingleColumns>(srcVec, Rows(src, srcStep), height, dst, width, ColumnsAsTheyAre());
    return vornStsNoErr;
}

VornStatus vornsVecMatMul_32f_D2L(const Vorn32f* srcVec, const Vorn32f* const* src, int height, Vorn32f* dst,
                                  int width) {
    VORN_CHECK(notNull(srcVec, src, dst));
    VORN_CHECK(positive(height, width));
    vecMatMul<SingleColumns>(srcVec, Rows(src), height, dst, width, ColumnsAsTheyAre());
    return vornStsNoErr;
}

VornStatus vornsVecMatMul_16s_D2Sfs(const Vorn16s* srcVec, const Vorn16s* src, int srcStep, int height, Vorn16s* dst,
                                    int width, int scaleFactor) {
    VORN_CHECK(notNull(srcVec, src, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    vecMatMulRounded(srcVec, Rows(src, srcStep), height, dst, width, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsVecMatMul_16s_D2LSfs(const Vorn16s* srcVec, const Vorn16s* const* src, int height, Vorn16s* dst,
                                     int width, int scaleFactor) {
    VORN_CHECK(notNull(srcVec, src, dst));
    VORN_CHECK(positive(height, width));
    vecMatMulRounded(srcVec, Rows(src), height, dst, width, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsVecMatMul_16s32s_D2Sfs(const Vorn16s* srcVec, const Vorn16s* src, int srcStep, int height, Vorn32s* dst,
                                       int width, int scaleFactor) {
    VORN_CHECK(notNull(srcVec, src, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    vecMatMulRounded(srcVec, Rows(src, srcStep), height, dst, width, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsVecMatMul_16s32s_D2LSfs(const Vorn16s* srcVec, const Vorn16s* const* src, int height, Vorn32s* dst,
                                        int width, int scaleFactor) {
    VORN_CHECK(notNull(srcVec, src, dst));
    VORN_CHECK(positive(height, width));
    vecMatMulRounded(srcVec, Rows(src), height, dst, width, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsVecMatMul_32s_D2Sfs(const Vorn32s* srcVec, const Vorn32s* src, int srcStep, int height, Vorn32s* dst,
                                    int width, int scaleFactor) {
    VORN_CHECK(notNull(srcVec, src, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    vecMatMulRounded(srcVec, Rows(src, srcStep), height, dst, width, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsVecMatMul_32s_D2LSfs(const Vorn32s* srcVec, const Vorn32s* const* src, int height, Vorn32s* dst,
                                     int width, int scaleFactor) {
    VORN_CHECK(notNull(srcVec, src, dst));
    VORN_CHECK(positive(height, width));
    vecMatMulRounded(srcVec, Rows(src), height, dst, width, scaleFactor);
    return vornStsNoErr;
}
