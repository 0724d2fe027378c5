/* Linear algebra: singular values, matrix-vector products, row and column reductions, curves. */
#ifndef VORNSR_LINALG_H
#define VORNSR_LINALG_H

#include "types.h"

VORN_BEGIN_DECLS

/* ---- Singular values ------------------------------------------------------------------------------------------- */

/**
 * @defgroup vornsr_singular_values Singular values
 * @brief A real matrix as U diag(W) V^T, in double precision.
 *
 * `vornsSVD_*(src, dstU, height, dstW, dstV, width, step, nIter)`: A = U diag(W) V^T, where A is the matrix src of
 * height rows and width columns. U has the shape of A, W has width values, which are not negative, and V is width by
 * width. With height at least width the columns of U and those of V are orthonormal. With height below width A has at
 * most height singular values beside zeros; then the rows of U are orthonormal, and a column of U that belongs to a
 * zero is not a unit vector.
 * - `vornsSVDSort_*` gives the values in descending order, with the columns of U and V to match: the first of the
 *   largest that remain changes places with the one that stands at its goal. `vornsSVD_*` leaves all as it converged: a
 *   diagonal matrix keeps the order of its diagonal.
 * - `D2`: row r begins at r step in src, dstU and dstV alike. What lies between the rows is copied from src to dstU,
 *   behind the last row too, so that both have height step elements; in dstV it stays. `D2L`: arrays of row pointers,
 *   and rows of width elements.
 * - `_I`: U takes the place of A.
 *
 * Method: Golub and Reinsch, Numerische Mathematik 14 (1970). Householder reflections make A bidiagonal, each vector
 * scaled by the sum of its magnitudes before it is squared; both products of reflections are accumulated; then the
 * implicit-shift QR iteration takes the values from the last to the first. An element x beside the diagonal is
 * negligible when anorm + |x| equals anorm, the largest sum of magnitudes in a column of the bidiagonal matrix; there
 * is no other tolerance. Every step is a single operation in double precision in a fixed order: sums down a column take
 * the rows in their order, the product of two rows is that of `vornsDotProd_64f`. `D2` and `D2L` give the same bits.
 *
 * nIter is the number of rounds that one value may take, 30 is ample; its last round only looks whether the value has
 * converged. A value that has not gives `vornStsSvdNoConvergeErr`: U, W and V then hold the state so far, unsorted, and
 * e.g. nIter = 1 refuses any matrix that needs a sweep.
 *
 * Accuracy. With unit = 4.5 (height + width) 2^-53: each value of W is within unit W_max of a singular value of A, each
 * element of U diag(W) V^T within unit W_max of that of A, and each product of two of the orthonormal vectors within
 * unit of 0 or 1. A value that is small beside W_max is as exact as W_max is, not more. This holds for matrices whose
 * magnitudes are zero or at least 1e-300, the largest from 1e-145 to 1e145. The shift squares values and divides by a
 * product of two of them, so that from about 1e154 on, and below about 1e-162, it overflows or vanishes; and a column
 * or row whose magnitudes add up to less than 2^-1024, but not to zero, has no finite reciprocal. Then the result means
 * nothing or is `vornStsSvdNoConvergeErr`. Scale such a matrix first; a power of two costs no accuracy.
 *
 * A matrix with an infinity or a not-a-number gives `vornStsSvdNoConvergeErr` after a few rounds, whatever nIter; with
 * width 1, where nothing iterates, it gives not-a-numbers. Magnitudes outside the range above can take all of nIter.
 *
 * Memory. Up to width 64 the function allocates nothing (and takes up to 48 KB of the stack). Above that it allocates
 * one block of some hundred bytes a column; if that fails, `vornStsSvdNoConvergeErr` is returned with nothing written.
 *
 * Overlap. dstU may be src. Otherwise the results overlap neither src nor one another.
 *
 * Checks, in this order: null, size (height, width, nIter at least 1, and step at least width: no stride status here).
 * @{
 */
VornStatus vornsSVD_64f_D2(const Vorn64f* src, Vorn64f* dstU, int height, Vorn64f* dstW, Vorn64f* dstV, int width,
                           int step, int nIter);
VornStatus vornsSVD_64f_D2L(const Vorn64f* const* src, Vorn64f* const* dstU, int height, Vorn64f* dstW,
                            Vorn64f* const* dstV, int width, int nIter);
VornStatus vornsSVD_64f_D2_I(Vorn64f* srcDstU, int height, Vorn64f* dstW, Vorn64f* dstV, int width, int step,
                             int nIter);
VornStatus vornsSVD_64f_D2L_I(Vorn64f* const* srcDstU, int height, Vorn64f* dstW, Vorn64f* const* dstV, int width,
                              int nIter);
VornStatus vornsSVDSort_64f_D2(const Vorn64f* src, Vorn64f* dstU, int height, Vorn64f* dstW, Vorn64f* dstV, int width,
                               int step, int nIter);
VornStatus vornsSVDSort_64f_D2L(const Vorn64f* const* src, Vorn64f* const* dstU, int height, Vorn64f* dstW,
                                Vorn64f* const* dstV, int width, int nIter);
VornStatus vornsSVDSort_64f_D2_I(Vorn64f* srcDstU, int height, Vorn64f* dstW, Vorn64f* dstV, int width, int step,
                                 int nIter);
VornStatus vornsSVDSort_64f_D2L_I(Vorn64f* const* srcDstU, int height, Vorn64f* dstW, Vorn64f* const* dstV, int width,
                                  int nIter);
/** @} */

/**
 * @defgroup vornsr_column_operations Operations on single columns and rows
 * @brief What the reflections and rotations of a decomposition are made of.
 *
 * Matrices are arrays of row pointers, height rows of at least width elements; x[r][c] is element c of row r. Column
 * operations take the rows from `row` to height - 1, which QRTrans does for all rows. Rows and columns count from 0.
 * - `vornsSumColumnAbs_64f_D2L`: dst[0] = the sum of |x[r][col]|.
 * - `vornsSumColumnSqr_64f_D2L`: x[r][col] = x[r][col] val, and dst[0] = the sum of the squares of what that leaves.
 * - `vornsDotProdColumn_64f_D2L`: dst[0] = the sum of x[r][col1] x[r][col2].
 * - `vornsAddMulColumn_64f_D2L`: x[r][col2] = x[r][col2] + val x[r][col1].
 * - `vornsMulColumn_64f_D2L`: x[r][col] = x[r][col] val.
 * - `vornsQRTransColumn_64f_D2L`: with p = x[r][col2] and q = x[r][col1] as they were, x[r][col2] = c p + s q, then
 *   x[r][col1] = q c - p s. The two may be the same column.
 * - `vornsSumRowAbs_64f`, `vornsSumRowSqr_64f`, `vornsAddMulRow_64f`: the same for a vector of len elements: the sum of
 *   |src[i]|; srcDst[i] = srcDst[i] val and the sum of the squares; srcDst[i] = srcDst[i] + val src[i].
 *
 * Exactness. Every sum starts at zero and takes the rows, or the elements, in their order, in one accumulator; every
 * operation is rounded once in double. The bits depend on no address. Infinities and not-a-numbers pass through.
 *
 * Overlap. src may be srcDst; dst is written last. Rows may repeat, and are then taken as often as they stand in the
 * array.
 *
 * Checks, in this order: null, size (width, height and len at least 1, columns within 0 to width - 1, row within 0 to
 * height - 1). There are no warnings.
 * @{
 */
VornStatus vornsSumColumnAbs_64f_D2L(const Vorn64f* const* src, int width, int height, Vorn64f* dst, int col, int row);
VornStatus vornsSumColumnSqr_64f_D2L(Vorn64f* const* srcDst, int width, int height, Vorn64f* dst, int col, int row,
                                     Vorn64f val);
VornStatus vornsSumRowAbs_64f(const Vorn64f* src, int len, Vorn64f* dst);
VornStatus vornsSumRowSqr_64f(Vorn64f* srcDst, int len, Vorn64f* dst, Vorn64f val);
VornStatus vornsDotProdColumn_64f_D2L(const Vorn64f* const* src, int width, int height, Vorn64f* dst, int col1,
                                      int col2, int row);
VornStatus vornsAddMulColumn_64f_D2L(Vorn64f* const* srcDst, int width, int height, int col1, int col2, int row,
                                     Vorn64f val);
VornStatus vornsMulColumn_64f_D2L(Vorn64f* const* srcDst, int width, int height, int col, int row, Vorn64f val);
VornStatus vornsQRTransColumn_64f_D2L(Vorn64f* const* srcDst, int width, int height, int col1, int col2, Vorn64f c,
                                      Vorn64f s);
VornStatus vornsAddMulRow_64f(const Vorn64f* src, Vorn64f* srcDst, int len, Vorn64f val);
/** @} */

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

/**
 * @defgroup vornsr_row_column_sums Sums of columns and rows
 * @brief The sum of each column of a matrix, or of each row.
 *
 * src is a matrix of height rows (frames) by width columns (features). In `D2` forms row i begins at src + i srcStep,
 * which counts elements; in `D2L` forms src is an array of height row pointers, and rows may repeat or overlap.
 *
 * `vornsSumColumn_*`: dst[j] = sum over i of x[i][j], one result a column. `vornsSumRow_*`: dst[i] = sum over j of
 * x[i][j], one result a row. `vornsAddAllRowSum_*`: srcDst[j] += sum over i of x[i][j].
 *
 * Precision. `32f` adds in single and `64f` in double. `16s32f` takes each element as a single and adds in single:
 * exact while no partial sum is above 2^24 in magnitude. `16s32s` makes the very sums of `16s32f` and turns them into
 * integers as `vornsConvert_32f32s_Sfs` does, in mode vornRndNear and with scaleFactor: above 2^24 they are not exact.
 *
 * Exactness. All bits are fixed by the order of the additions, and neither layout nor addresses change them. A
 * column's sum starts at zero (that of `vornsAddAllRowSum_*` at srcDst[j]) and takes the rows in their order. A row's
 * sum has four lanes that start at zero (`64f`: two), lane l takes the elements l, l + 4, l + 8 and so on of the whole
 * groups of four (two) in order; the lanes are joined, (0 + 1) + (2 + 3) (`64f`: 0 + 1), and the elements behind the
 * last whole group are added to that one by one. Additions round in the caller's mode, the conversion of `16s32s` to
 * nearest whatever the mode. Infinities and not-a-numbers pass through; there are no warnings.
 *
 * Overlap. The result must not overlap src. Nothing is allocated.
 *
 * Checks, in this order: null; size (height and width at least 1); in `D2` forms stride (srcStep below width). Row
 * pointers are not looked at.
 * @{
 */
VornStatus vornsSumColumn_32f_D2(const Vorn32f* src, int srcStep, int height, Vorn32f* dst, int width);
VornStatus vornsSumColumn_32f_D2L(const Vorn32f* const* src, int height, Vorn32f* dst, int width);
VornStatus vornsSumColumn_64f_D2(const Vorn64f* src, int srcStep, int height, Vorn64f* dst, int width);
VornStatus vornsSumColumn_64f_D2L(const Vorn64f* const* src, int height, Vorn64f* dst, int width);
VornStatus vornsSumColumn_16s32f_D2(const Vorn16s* src, int srcStep, int height, Vorn32f* dst, int width);
VornStatus vornsSumColumn_16s32f_D2L(const Vorn16s* const* src, int height, Vorn32f* dst, int width);
VornStatus vornsSumColumn_16s32s_D2Sfs(const Vorn16s* src, int srcStep, int height, Vorn32s* dst, int width,
                                       int scaleFactor);
VornStatus vornsSumColumn_16s32s_D2LSfs(const Vorn16s* const* src, int height, Vorn32s* dst, int width,
                                        int scaleFactor);
VornStatus vornsSumRow_32f_D2(const Vorn32f* src, int width, int srcStep, Vorn32f* dst, int height);
VornStatus vornsSumRow_32f_D2L(const Vorn32f* const* src, int width, Vorn32f* dst, int height);
VornStatus vornsSumRow_64f_D2(const Vorn64f* src, int width, int srcStep, Vorn64f* dst, int height);
VornStatus vornsSumRow_64f_D2L(const Vorn64f* const* src, int width, Vorn64f* dst, int height);
VornStatus vornsSumRow_16s32f_D2(const Vorn16s* src, int width, int srcStep, Vorn32f* dst, int height);
VornStatus vornsSumRow_16s32f_D2L(const Vorn16s* const* src, int width, Vorn32f* dst, int height);
VornStatus vornsSumRow_16s32s_D2Sfs(const Vorn16s* src, int width, int srcStep, Vorn32s* dst, int height,
                                    int scaleFactor);
VornStatus vornsSumRow_16s32s_D2LSfs(const Vorn16s* const* src, int width, Vorn32s* dst, int height, int scaleFactor);
VornStatus vornsAddAllRowSum_32f_D2(const Vorn32f* src, int srcStep, int height, Vorn32f* srcDst, int width);
VornStatus vornsAddAllRowSum_32f_D2L(const Vorn32f* const* src, int height, Vorn32f* srcDst, int width);
/** @} */

/**
 * @defgroup vornsr_row_operations Rows and columns normalised
 * @brief One row subtracted from every row of a matrix; each column shifted and scaled: the mean and variance
 * normalisation of features.
 *
 * srcDst is a matrix of height rows by width columns, changed in place. In `D2` forms row i begins at srcDst + i
 * srcStep, which counts elements; in `D2L` forms srcDst is an array of height row pointers. Rows are changed one after
 * the other, each as a whole, in the order of the matrix: a row that a list names twice is changed twice.
 *
 * `vornsSubRow_*`: x[i][j] -= srcRow[j]. `16s` saturates to -32768..32767.
 *
 * `vornsNormalizeColumn_*`: x[i][j] = (x[i][j] - mean[j]) scale[j], with mean and scale of width elements. scale is a
 * factor, such as the reciprocal of the deviation: nothing is divided.
 *
 * `vornsNormalizeColumn_16s_*`: all in integers. The difference and its product with scale[j] are exact (they fit into
 * 32 bits). The product is shifted arithmetically to the right by scaleFactor, which rounds downwards, or to the left
 * by its negative, where what leaves 32 bits is lost; then it is saturated to -32768..32767. From 32 on a shift to the
 * right leaves 0 or -1, one to the left 0. Note that neither shift is that of the scale factors told in @ref
 * vornsr_types.
 *
 * Exactness. The single forms round each operation once, in the caller's mode; infinities and not-a-numbers pass
 * through. The integer forms are exact as told. Addresses and layout change no bit, and there are no warnings.
 *
 * Overlap. srcRow, mean and scale must not overlap srcDst; they may overlap one another.
 *
 * Checks, in this order: null; size (height and width at least 1); in `D2` forms stride (srcStep below width). Row
 * pointers are not looked at.
 * @{
 */
VornStatus vornsSubRow_32f_D2(const Vorn32f* srcRow, int width, Vorn32f* srcDst, int srcStep, int height);
VornStatus vornsSubRow_32f_D2L(const Vorn32f* srcRow, Vorn32f* const* srcDst, int width, int height);
VornStatus vornsSubRow_16s_D2(const Vorn16s* srcRow, int width, Vorn16s* srcDst, int srcStep, int height);
VornStatus vornsSubRow_16s_D2L(const Vorn16s* srcRow, Vorn16s* const* srcDst, int width, int height);
VornStatus vornsNormalizeColumn_32f_D2(Vorn32f* srcDst, int srcStep, int height, const Vorn32f* mean,
                                       const Vorn32f* scale, int width);
VornStatus vornsNormalizeColumn_32f_D2L(Vorn32f* const* srcDst, int height, const Vorn32f* mean, const Vorn32f* scale,
                                        int width);
VornStatus vornsNormalizeColumn_16s_D2Sfs(Vorn16s* srcDst, int srcStep, int height, const Vorn16s* mean,
                                          const Vorn16s* scale, int width, int scaleFactor);
VornStatus vornsNormalizeColumn_16s_D2LSfs(Vorn16s* const* srcDst, int height, const Vorn16s* mean,
                                           const Vorn16s* scale, int width, int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_range_mapping Values mapped into a range
 * @brief A part of the values between a minimum and a maximum is mapped linearly onto 0 to range; the rest is clipped.
 *
 * With w = max - min, hi = upper w + min, lo = min + lower w and k = range / (upper w - lower w): dst[i] = max(0,
 * min(src[i], hi) - lo) k, for len elements. So lo and all below it give 0, hi and all above it range, up to rounding.
 * lower and upper are fractions, 0 <= lower < upper <= 1.
 *
 * `vornsNormalizeInRangeMinMax_*` are told min and max. `vornsNormalizeInRange_*` find them in a first pass over src,
 * as the smallest and the largest element that is a number; where none is, both are not-a-numbers. The order of the
 * arguments differs from form to form. range, min and max are integers in the forms of 16-bit sources; in `32f16s` and
 * `32f8u` range alone is one.
 *
 * Exactness. All steps are in single precision, in the order written, with a true division; integers (src, range, min,
 * max) come as singles, rounded once, before anything is done with them. `32f` follows the caller's rounding mode. In
 * the forms with an integer result every step rounds to nearest whatever the mode, which comes back; the product is
 * rounded to an integer, ties to even, and saturated to -32768..32767 or to 0..255. A product from 2147483648 on,
 * which no 32-bit integer holds, counts as -2147483648: ask for no range near 2^31. Addresses change no bit.
 *
 * Not-a-numbers. As an element it counts as hi. As lower or upper it is an error. As range, min or max it passes the
 * checks and makes every result a not-a-number, or the smallest value of the integer type; so does an infinite w. An
 * upper w - lower w that underflows to zero makes k infinite, and k times zero a not-a-number. What is not above lo
 * gives a positive zero times k.
 *
 * Warning. Where max equals min (integers compared as such), all len results are zero and the status is
 * vornStsZeroRange.
 *
 * Overlap. dst may be src in the forms of one type (that is what `I` does); it must not overlap it otherwise. Nothing
 * is allocated.
 *
 * Checks, in this order: null; size (len at least 1); bad argument (lower below 0, lower not below upper, upper above
 * 1, range below 0, or min above max).
 * @{
 */
VornStatus vornsNormalizeInRange_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f lower, Vorn32f upper,
                                     Vorn32f range);
VornStatus vornsNormalizeInRange_32f_I(Vorn32f* srcDst, int len, Vorn32f lower, Vorn32f upper, Vorn32f range);
VornStatus vornsNormalizeInRange_16s(const Vorn16s* src, Vorn16s* dst, int len, int range, Vorn32f lower,
                                     Vorn32f upper);
VornStatus vornsNormalizeInRange_16s_I(Vorn16s* srcDst, int len, int range, Vorn32f lower, Vorn32f upper);
VornStatus vornsNormalizeInRange_16s8u(const Vorn16s* src, Vorn8u* dst, int len, int range, Vorn32f lower,
                                       Vorn32f upper);
VornStatus vornsNormalizeInRange_32f16s(const Vorn32f* src, Vorn16s* dst, int len, int range, Vorn32f lower,
                                        Vorn32f upper);
VornStatus vornsNormalizeInRange_32f8u(const Vorn32f* src, Vorn8u* dst, int len, int range, Vorn32f lower,
                                       Vorn32f upper);
VornStatus vornsNormalizeInRangeMinMax_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f min, Vorn32f max,
                                           Vorn32f lower, Vorn32f upper, Vorn32f range);
VornStatus vornsNormalizeInRangeMinMax_32f_I(Vorn32f* srcDst, int len, Vorn32f min, Vorn32f max, Vorn32f lower,
                                             Vorn32f upper, Vorn32f range);
VornStatus vornsNormalizeInRangeMinMax_16s(const Vorn16s* src, Vorn16s* dst, int len, int min, int max, int range,
                                           Vorn32f lower, Vorn32f upper);
VornStatus vornsNormalizeInRangeMinMax_16s_I(Vorn16s* srcDst, int len, int min, int max, int range, Vorn32f lower,
                                             Vorn32f upper);
VornStatus vornsNormalizeInRangeMinMax_16s8u(const Vorn16s* src, Vorn8u* dst, int len, int min, int max, int range,
                                             Vorn32f lower, Vorn32f upper);
VornStatus vornsNormalizeInRangeMinMax_32f16s(const Vorn32f* src, Vorn16s* dst, int len, int range, Vorn32f min,
                                              Vorn32f max, Vorn32f lower, Vorn32f upper);
VornStatus vornsNormalizeInRangeMinMax_32f8u(const Vorn32f* src, Vorn8u* dst, int len, int range, Vorn32f min,
                                             Vorn32f max, Vorn32f lower, Vorn32f upper);
/** @} */

/* ---- Curves and small tools ------------------------------------------------------------------------------------ */

/**
 * @defgroup vornsr_curves Scalar curves
 * @brief sin(x)/x, exp(-x^2), the reciprocal root with a ceiling and a smooth step, element by element. In the forms
 * of one type dst may be src.
 *
 * **sinc.** `vornsSinC_*`: dst[i] = sin(x)/x with x = src[i] in radians, without a factor of pi; 1.0 where x is a zero.
 * An infinity or a not-a-number gives a not-a-number.
 * - `32f`, `32f_I`: the sine is taken in double, within 0.501 ulp rounded to single, and divided in single. The
 *   quotient is within 1.501 ulp of sin(x)/x, for every single.
 * - `32f64f`, `64f`, `64f_I`: in double, within 1.75 ulp of sin(x)/x, for x of any size.
 *
 * **The Gaussian kernel.** `vornsExpNegSqr_*`: dst[i] = exp(-x^2); a not-a-number gives one, an infinity 0.
 * - `32f`, `32f_I`: the square is rounded to single, the exponential taken in double and rounded to single: within
 *   0.501 ulp of the exponential of that square.
 * - `32f64f`: x is widened before it is squared, so that the square is exact; the exponential is within 0.511 ulp.
 * - `64f`, `64f_I`: the square is rounded to double; within 0.511 ulp of the exponential of that square. (Rounding the
 *   square moves the result by up to x^2/2 ulp from exp(-x^2) itself: 13 at x = 5.)
 *
 * Results that are denormal numbers are rounded like all others; smaller ones are 0. Both families round to nearest,
 * whatever the caller's rounding mode. Their bits depend on x alone: not on the neighbours, the alignment, or the
 * build.
 *
 * **Reciprocal roots.** `vornsRecSqrt_32f`: an element x becomes 1/sqrt(x), correctly rounded root and quotient, where
 * val is less than x, and val everywhere else, in the place of a not-a-number too; an infinity gives 0. The status is
 * the warning `vornStsZeroRange` if every element was set to val; one good element is enough for none.
 * - `32s_Sfs`, `32s16s_Sfs`: x and val are converted to single, and so is the result, times 2^-scaleFactor, rounded to
 *   an integer. The address chooses how, on purpose. srcDst of `32s_Sfs` on a multiple of 16 bytes: the test is that of
 *   `32f`, and the conversion is that of `vornsConvert_32f32s_Sfs`, to nearest and saturated. At other addresses, and
 *   always in `32s16s_Sfs`: an element equal to val keeps its root, and the scaled result is limited to between
 *   -2147483648.0 and 2147483648.0 (-32768.0 and 32767.0 in 16 bits) and truncated toward zero; exactly 2147483648.0
 *   gives -2147483648.
 *
 * **The unit curve**, a smooth step from 0 to 2. `vornsUnitCurve_32f`: 0 below 0, x^2 below 1, (4 x - x^2) - 2 below 2,
 * and 2 from there on and for a not-a-number; every step is rounded once.
 * - `16s_Sfs`, `16s_ISfs`: the same of src[i] 2^-srcQ, exact in 32 bits. With q = srcQ, one = 2^q and two = 2^(q+1),
 *   the value v has 2q fraction bits: 0 for x at or below 0, x x below one, two one - (two - x)(two - x) below two, two
 *   one from there on. t = scaleFactor + 2q: from 1 on, v is shifted right by t, without rounding, else left by -t; the
 *   counts are taken modulo 32. The result is limited to 32767; there is no lower limit: where a left shift has turned
 *   v negative the low 16 bits are stored. A srcQ below 0 or above 14 zeroes the result.
 *
 * Checks, in this order: null; size (len below 1); `vornStsBadArgErr` for a val of the reciprocal roots that is not
 * above 0 (below 1 in the integer forms).
 * @{
 */
VornStatus vornsSinC_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsSinC_32f64f(const Vorn32f* src, Vorn64f* dst, int len);
VornStatus vornsSinC_64f(const Vorn64f* src, Vorn64f* dst, int len);
VornStatus vornsSinC_32f_I(Vorn32f* srcDst, int len);
VornStatus vornsSinC_64f_I(Vorn64f* srcDst, int len);
VornStatus vornsExpNegSqr_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsExpNegSqr_32f64f(const Vorn32f* src, Vorn64f* dst, int len);
VornStatus vornsExpNegSqr_64f(const Vorn64f* src, Vorn64f* dst, int len);
VornStatus vornsExpNegSqr_32f_I(Vorn32f* srcDst, int len);
VornStatus vornsExpNegSqr_64f_I(Vorn64f* srcDst, int len);
VornStatus vornsRecSqrt_32f(Vorn32f* srcDst, int len, Vorn32f val);
VornStatus vornsRecSqrt_32s_Sfs(Vorn32s* srcDst, int len, Vorn32s val, int scaleFactor);
VornStatus vornsRecSqrt_32s16s_Sfs(const Vorn32s* src, Vorn16s* dst, int len, Vorn32s val, int scaleFactor);
VornStatus vornsUnitCurve_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsUnitCurve_32f_I(Vorn32f* srcDst, int len);
VornStatus vornsUnitCurve_16s_Sfs(const Vorn16s* src, int srcQ, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsUnitCurve_16s_ISfs(Vorn16s* srcDst, int srcQ, int len, int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_small_tools Entropy, weighted sums, the n-th largest
 * @brief What scoring and normalisation need beside the big families: one number of a vector, or one pass over one or
 * two.
 *
 * **Entropy.** `vornsEntropy_32f`: *dst = the sum of x ln x over the positive elements, over 0.6931472 in single. The
 * sign is not changed: this is minus the entropy in bits of a distribution. Each logarithm is taken in double and
 * rounded to single; products and the one running sum, in the order of the elements, are single. Zeros of either sign
 * add nothing, an infinity makes the sum infinite. If an element is negative or not a number, *dst is a not-a-number
 * and the status the warning `vornStsLnNegArg`.
 * - `16s32s_Sfs`: the same of x 2^-srcScale; the sum is multiplied by 2^-dstScale, then divided. At or above
 *   2147483648.0 the result is 2147483647, at or below -2147483648.0 it is -2147483648, between them truncated toward
 *   zero. With a negative element the status is `vornStsLnNegArg` and *dst is left alone. The powers of two are
 *   singles, infinite from -128 down and 0 from 150 up; what they make not a number gives -2147483648.
 *
 * **Language-model scores.** `vornsScaleLM_32f`: dst[i] = max(src[i], floor) mul + add in single; a not-a-number takes
 * the floor. `16s32s`: the same with an exact product, and a sum that wraps at 32 bits. dst of `32f` may be src.
 *
 * **Weighted sums.** With s = weight1 + weight2 and r = 1/s, `vornsWeightedSum_*`: dst[i] = src1[i] (weight1 r) +
 * src2[i] (weight2 r), rounded after each step. `vornsWeightedSumHalf_*`: dst[i] = src1[i] r + src2[i] (weight2 r): the
 * first weight counts in s alone. That is its meaning and no slip. The `16s` forms add the weights exactly, work in
 * single and store the result limited to 16 bits and truncated toward zero. dst may be one of the sources. If s is zero
 * the status is the warning `vornStsDivByZero`, and dst[i] has the sign of t = src1[i] weight1 + src2[i] weight2: plus
 * infinity above 0, minus infinity below, else a not-a-number; 32767, -32768 and 0 in `16s`.
 *
 * **The n-th largest.** `vornsNthMaxElement_*`: *dst = the element at index n of src in descending order; n = 0 is the
 * largest. src is copied and stays as it is. The time grows with len alone, whatever the order of the elements. Among
 * not-a-numbers one of the elements is given. `vornStsMemAllocErr` if memory for the copy is short.
 *
 * Alignment changes nothing. Checks, in this order: null; size (len below 1); `vornStsBadArgErr` for an n below 0 or
 * not below len.
 * @{
 */
VornStatus vornsEntropy_32f(const Vorn32f* src, int len, Vorn32f* dst);
VornStatus vornsEntropy_16s32s_Sfs(const Vorn16s* src, int srcScale, int len, Vorn32s* dst, int dstScale);
VornStatus vornsScaleLM_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f floor, Vorn32f mul, Vorn32f add);
VornStatus vornsScaleLM_16s32s(const Vorn16s* src, Vorn32s* dst, int len, Vorn16s floor, Vorn16s mul, Vorn32s add);
VornStatus vornsWeightedSum_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len, Vorn32f weight1,
                                Vorn32f weight2);
VornStatus vornsWeightedSum_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len, Vorn64f weight1,
                                Vorn64f weight2);
VornStatus vornsWeightedSum_16s(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, Vorn16s weight1,
                                Vorn16s weight2);
VornStatus vornsWeightedSumHalf_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len, Vorn32f weight1,
                                    Vorn32f weight2);
VornStatus vornsWeightedSumHalf_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len, Vorn64f weight1,
                                    Vorn64f weight2);
VornStatus vornsWeightedSumHalf_16s(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, Vorn16s weight1,
                                    Vorn16s weight2);
VornStatus vornsNthMaxElement_32s(const Vorn32s* src, int len, int n, Vorn32s* dst);
VornStatus vornsNthMaxElement_32f(const Vorn32f* src, int len, int n, Vorn32f* dst);
VornStatus vornsNthMaxElement_64f(const Vorn64f* src, int len, int n, Vorn64f* dst);
/** @} */

VORN_END_DECLS

#endif
