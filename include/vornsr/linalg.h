/* Linear algebra: singular values, matrix-vector products, row and column reductions, curves. */
#ifndef VORNSR_LINALG_H
#define VORNSR_LINALG_H

#include "types.h"

VORN_BEGIN_DECLS

/* ---- Singular values ------------------------------------------------------------------------------------------- */

/* ---- Matrix-vector products ------------------------------------------------------------------------------------ */

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

VORN_END_DECLS

#endif
