// The operations on single columns and rows, and the kernels of the row operations.
#include <cstdint>

#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/rows.h"
#include "linalg/svd/columns.h"
#include "vornsr/linalg.h"

using namespace vorn;

namespace vorn::svd {
namespace {

constexpr VornStatus inside(int index, int count) { return require(index >= 0 && index < count, vornStsSizeErr); }

template <class T>
auto columnOf(T* const* rows, int column) {
    return Column{Rows(rows), column};
}

}  // namespace
}  // namespace vorn::svd

VORN_KERNEL void vornsRowSumAbs_64f_M7_Al(const Vorn64f* src, std::int64_t len, Vorn64f* dst) {
    *dst = svd::sumOfMagnitudes(src, 0, len);
}

VORN_KERNEL void vornsRowSumSqr_64f_M7(Vorn64f* srcDst, std::int64_t len, Vorn64f* dst, Vorn64f val) {
    *dst = svd::scaleAndSumSquares(srcDst, 0, len, val);
}
VORN_KERNEL_ALIAS(vornsRowSumSqr_64f_M7_Al, vornsRowSumSqr_64f_M7);

VORN_KERNEL void vornsRowAddMul_64f_M7(const Vorn64f* src, Vorn64f* srcDst, std::int64_t len, Vorn64f val) {
    svd::addMultiple(src, srcDst, len, val);
}
VORN_KERNEL_ALIAS(vornsRowAddMul_64f_M7_Al, vornsRowAddMul_64f_M7);

VornStatus vornsSumColumnAbs_64f_D2L(const Vorn64f* const* src, int width, int height, Vorn64f* dst, int col, int row) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(width, height));
    VORN_CHECK(svd::inside(col, width));
    VORN_CHECK(svd::inside(row, height));
    *dst = svd::sumOfMagnitudes(svd::columnOf(src, col), row, height);
    return vornStsNoErr;
}

VornStatus vornsSumColumnSqr_64f_D2L(Vorn64f* const* srcDst, int width, int height, Vorn64f* dst, int col, int row,
                                     Vorn64f val) {
    VORN_CHECK(notNull(srcDst, dst));
    VORN_CHECK(positive(width, height));
    VORN_CHECK(svd::inside(col, width));
    VORN_CHECK(svd::inside(row, height));
    *dst = svd::scaleAndSumSquares(svd::columnOf(srcDst, col), row, height, val);
    return vornStsNoErr;
}

VornStatus vornsSumRowAbs_64f(const Vorn64f* src, int len, Vorn64f* dst) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    vornsRowSumAbs_64f_M7_Al(src, len, dst);
    return vornStsNoErr;
}

VornStatus vornsSumRowSqr_64f(Vorn64f* srcDst, int len, Vorn64f* dst, Vorn64f val) {
    VORN_CHECK(notNull(srcDst, dst));
    VORN_CHECK(positive(len));
    vornsRowSumSqr_64f_M7(srcDst, len, dst, val);
    return vornStsNoErr;
}

VornStatus vornsDotProdColumn_64f_D2L(const Vorn64f* const* src, int width, int height, Vorn64f* dst, int col1,
                                      int col2, int row) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(width, height));
    VORN_CHECK(svd::inside(col1, width));
    VORN_CHECK(svd::inside(col2, width));
    VORN_CHECK(svd::inside(row, height));
    *dst = svd::sumOfProducts(svd::columnOf(src, col1), svd::columnOf(src, col2), row, height);
    return vornStsNoErr;
}

VornStatus vornsAddMulColumn_64f_D2L(Vorn64f* const* srcDst, int width, int height, int col1, int col2, int row,
                                     Vorn64f val) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(width, height));
    VORN_CHECK(svd::inside(col1, width));
    VORN_CHECK(svd::inside(col2, width));
    VORN_CHECK(svd::inside(row, height));
    svd::addMultiple(svd::columnOf(srcDst, col1), svd::columnOf(srcDst, col2), row, height, val);
    return vornStsNoErr;
}

VornStatus vornsMulColumn_64f_D2L(Vorn64f* const* srcDst, int width, int height, int col, int row, Vorn64f val) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(width, height));
    VORN_CHECK(svd::inside(col, width));
    VORN_CHECK(svd::inside(row, height));
    svd::scale(svd::columnOf(srcDst, col), row, height, val);
    return vornStsNoErr;
}

VornStatus vornsQRTransColumn_64f_D2L(Vorn64f* const* srcDst, int width, int height, int col1, int col2, Vorn64f c,
                                      Vorn64f s) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(width, height));
    VORN_CHECK(svd::inside(col1, width));
    VORN_CHECK(svd::inside(col2, width));
    svd::rotate(svd::columnOf(srcDst, col2), svd::columnOf(srcDst, col1), height, c, s);
    return vornStsNoErr;
}

VornStatus vornsAddMulRow_64f(const Vorn64f* src, Vorn64f* srcDst, int len, Vorn64f val) {
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(positive(len));
    vornsRowAddMul_64f_M7(src, srcDst, len, val);
    return vornStsNoErr;
}
