/* Linear algebra: singular values, matrix-vector products, row and column reductions, curves. */
#ifndef VORNSR_LINALG_H
#define VORNSR_LINALG_H

#include "types.h"

VORN_BEGIN_DECLS

/* ---- Singular values ------------------------------------------------------------------------------------------- */

/* ---- Matrix-vector products ------------------------------------------------------------------------------------ */

/**
 * @defgroup vornsr_matrix_products Matrix-vector products
 * @brief A matrix times a vector, and a vector times a matrix.
 *
 * The matrix has height rows of width columns; i runs over rows, j over columns. `D2`: row i begins at src + i srcStep.
 * `D2L`: src[i] points to row i; rows may repeat and overlap. Both layouts give the same bits, at any address.
 * - `vornsMatVecMul_*`: dst[i] = sum over j of src[i][j] srcVec[j]; srcVec has width elements, dst height.
 * - `vornsVecMatMul_*`: dst[j] = sum over i of srcVec[i] src[i][j]; srcVec has height elements, dst width.
 *
 * `16s32s` takes a 16-bit matrix and vector to 32-bit results; the others have one type. A scale factor sf stands for a
 * factor 2^-sf, and any int will do. The two directions round differently on the same data:
 *
 * - `vornsMatVecMul_32f`: in single, in the caller's rounding mode. A row is summed in four lanes that begin at zero:
 *   lane k takes the columns k, k + 4, k + 8 and so on as far as there are whole groups of four. The sum (lane 0 + lane
 *   1) + (lane 2 + lane 3) is joined by the columns left over, one after the other.
 * - `vornsVecMatMul_32f`: in single, in the caller's rounding mode. A column begins at zero and takes the rows in
 *   order.
 * - `vornsMatVecMul_16s`, `16s32s`: the sum is exact. It is shifted in 64 bits, right by sf (which rounds down) or left
 *   by -sf; the count is taken modulo 64, so 64 shifts nothing, and bits that leave at the top are lost. Then it
 *   saturates.
 * - `vornsMatVecMul_32s`: elements, products and sum in double, in two lanes as above: the even and the odd columns,
 *   lane 0 + lane 1, then a last column without partner. Times 2^-sf (infinite from -1024 down, 0 from 1075 on),
 *   rounded to nearest, ties to even, without a clamp: a value out of range, and zero times infinity, give -2147483648.
 * - `vornsVecMatMul_16s`, `16s32s`, `32s`: products and sums in double, a column beginning at zero and taking the rows
 *   in order. Times 2^-sf (as above; zero times infinity is 0), clamped to the range of the result, rounded to nearest,
 *   ties to even. Sums of 16-bit products are exact up to 8388608 rows at least.
 *
 * The caller's rounding mode does not matter to the integer forms. Infinities and not-a-numbers pass through the float
 * forms. Against the exact sum of n products, the error of a `32f` result is below 6e-8 n times the sum of their
 * magnitudes while no sum overflows and no product is denormal, n being width or height, up to 100000, in nearest mode.
 *
 * Overlap. dst must not overlap what is read.
 *
 * Checks, in this order: null (src, srcVec, dst); size (height or width below 1); in the `D2` forms stride (srcStep
 * below width). There are no warnings. No memory is allocated; `vornsVecMatMul_*` take up to 34 kilobytes of stack.
 * @{
 */
VornStatus vornsMatVecMul_32f_D2(const Vorn32f* src, int srcStep, const Vorn32f* srcVec, int width, Vorn32f* dst,
                                 int height);
VornStatus vornsMatVecMul_32f_D2L(const Vorn32f* const* src, const Vorn32f* srcVec, int width, Vorn32f* dst,
                                  int height);
VornStatus vornsMatVecMul_16s_D2Sfs(const Vorn16s* src, int srcStep, const Vorn16s* srcVec, int width, Vorn16s* dst,
                                    int height, int scaleFactor);
VornStatus vornsMatVecMul_16s_D2LSfs(const Vorn16s* const* src, const Vorn16s* srcVec, int width, Vorn16s* dst,
                                     int height, int scaleFactor);
VornStatus vornsMatVecMul_16s32s_D2Sfs(const Vorn16s* src, int srcStep, const Vorn16s* srcVec, int width, Vorn32s* dst,
                                       int height, int scaleFactor);
VornStatus vornsMatVecMul_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* srcVec, int width, Vorn32s* dst,
                                        int height, int scaleFactor);
VornStatus vornsMatVecMul_32s_D2Sfs(const Vorn32s* src, int srcStep, const Vorn32s* srcVec, int width, Vorn32s* dst,
                                    int height, int scaleFactor);
VornStatus vornsMatVecMul_32s_D2LSfs(const Vorn32s* const* src, const Vorn32s* srcVec, int width, Vorn32s* dst,
                                     int height, int scaleFactor);
VornStatus vornsVecMatMul_32f_D2(const Vorn32f* srcVec, const Vorn32f* src, int srcStep, int height, Vorn32f* dst,
                                 int width);
VornStatus vornsVecMatMul_32f_D2L(const Vorn32f* srcVec, const Vorn32f* const* src, int height, Vorn32f* dst,
                                  int width);
VornStatus vornsVecMatMul_16s_D2Sfs(const Vorn16s* srcVec, const Vorn16s* src, int srcStep, int height, Vorn16s* dst,
                                    int width, int scaleFactor);
VornStatus vornsVecMatMul_16s_D2LSfs(const Vorn16s* srcVec, const Vorn16s* const* src, int height, Vorn16s* dst,
                                     int width, int scaleFactor);
VornStatus vornsVecMatMul_16s32s_D2Sfs(const Vorn16s* srcVec, const Vorn16s* src, int srcStep, int height,
                                       Vorn32s* dst, int width, int scaleFactor);
VornStatus vornsVecMatMul_16s32s_D2LSfs(const Vorn16s* srcVec, const Vorn16s* const* src, int height, Vorn32s* dst,
                                        int width, int scaleFactor);
VornStatus vornsVecMatMul_32s_D2Sfs(const Vorn32s* srcVec, const Vorn32s* src, int srcStep, int height, Vorn32s* dst,
                                    int width, int scaleFactor);
VornStatus vornsVecMatMul_32s_D2LSfs(const Vorn32s* srcVec, const Vorn32s* const* src, int height, Vorn32s* dst,
                                     int width, int scaleFactor);
/** @} */

/* ---- Row and column reductions --------------------------------------------------------------------------------- */

/* ---- Curves and small tools ------------------------------------------------------------------------------------ */

VORN_END_DECLS

#endif
