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
 * product of two of them, so that from about 1e154 on, and below about 1e-162, it overflows or vanishes; and a column or
 * row whose magnitudes add up to less than 2^-1024, but not to zero, has no finite reciprocal. Then the result means
 * nothing or is `vornStsSvdNoConvergeErr`. Scale such a matrix first; a power of two costs no accuracy.
 *
 * A matrix with an infinity or a not-a-number gives `vornStsSvdNoConvergeErr` after a few rounds, whatever nIter; with
 * width 1, where nothing iterates, it gives not-a-numbers.
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

/* ---- Row and column reductions --------------------------------------------------------------------------------- */

/* ---- Curves and small tools ------------------------------------------------------------------------------------ */

VORN_END_DECLS

#endif
