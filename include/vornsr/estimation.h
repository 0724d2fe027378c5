/* Model estimation: column statistics and parameter updates. */
#ifndef VORNSR_ESTIMATION_H
#define VORNSR_ESTIMATION_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_column_statistics Column statistics
 * @brief Mean and variance of each column of a matrix: the parameters of a diagonal Gaussian from a block of frames.
 *
 * src is a matrix of height rows (frames) by width columns (features), row r beginning at src + r srcStep; i runs over
 * rows, j over columns. Every result has one element a column.
 *
 * `vornsMeanVarColumn_32f_D2`: mean[j] = (sum of x[i][j]) r and
 * var[j] = (sum of x[i][j]^2 + (-h) mean[j]^2) s, with h = height held as one single, r = 1/h and s = 1/(h - 1) divided
 * in double and rounded to single once: the unbiased sample variance in its one-pass form. The mean in it is the stored
 * one.
 *
 * `vornsWeightedMeanVarColumn_32f_D2`: mean[j] = sum of w[i] x[i][j] and var[j] = sum of w[i] (x[i][j] x[i][j]) -
 * mean[j]^2. weight has height elements. The weights are taken as given and nothing divides by their sum: pass weights
 * that sum to one for a true mean.
 *
 * Exactness. All steps are in single precision, in the order written; each sum starts at zero and takes the rows in
 * their order. The bits depend on nothing else, alignment and srcStep included. The one-pass form cancels when the mean
 * is large beside the deviation: a variance may come out zero or negative. There are no floors and no warnings;
 * infinities and not-a-numbers pass through.
 *
 * Overlap. The results must not overlap src, weight or one another.
 *
 * Checks, in this order: `vornsMeanVarColumn_*_D2`: null, size (width at least 1, height at least 2), stride (srcStep
 * below width). `vornsWeightedMeanVarColumn_*_D2`: null, stride, size (both at least 1).
 * @{
 */
VornStatus vornsMeanVarColumn_32f_D2(const Vorn32f* src, int height, int srcStep, Vorn32f* dstMean, Vorn32f* dstVar,
                                     int width);
VornStatus vornsWeightedMeanVarColumn_32f_D2(const Vorn32f* src, int srcStep, const Vorn32f* weight, int height,
                                             Vorn32f* dstMean, Vorn32f* dstVar, int width);
/** @} */

/**
 * @defgroup vornsr_updates Parameter updates
 * @brief New parameters of a Gaussian from what a pass over the data has summed.
 *
 * `vornsUpdateGConst_DirectVar_32f`: the constant of a diagonal Gaussian of len dimensions, dst[0] = c + s: c = len
 * 1.8378770664093 (the logarithm of two pi, to the digits that the library stores) formed in double and rounded to
 * single, s = the sum of the logarithms of the variances src as `vornsSumLn_32f` gives it, and one addition in single.
 * The accuracy is that of `vornsSumLn_32f`.
 *
 * Warnings. The first bad element in the run that `vornsSumLn_32f` reports decides: a zero gives `vornStsLnZeroArg` and
 * dst[0] = plus infinity, a negative one `vornStsLnNegArg` and dst[0] = not-a-number.
 *
 * Checks, in this order: null, size (len at least 1).
 * @{
 */
VornStatus vornsUpdateGConst_DirectVar_32f(const Vorn32f* src, int len, Vorn32f* dst);
/** @} */

VORN_END_DECLS

#endif
