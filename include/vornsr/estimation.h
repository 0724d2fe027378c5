/* Model estimation: column statistics, accumulators, parameter updates, clustering of Gaussians. */
#ifndef VORNSR_ESTIMATION_H
#define VORNSR_ESTIMATION_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_column_statistics Column statistics
 * @brief Mean and variance of each column of a matrix: the parameters of a diagonal Gaussian from a block of frames.
 *
 * src is a matrix of height rows (frames) by width columns (features): in `D2` forms one block whose rows begin srcStep
 * elements apart, in `D2L` forms an array of height row pointers (rows may repeat or overlap). i runs over rows, j over
 * columns; h is height. Means and variances have one element a column.
 *
 * Singles. r = 1/h and s = 1/(h - 1) are divided in double and rounded to single once; -h is one single. All steps are
 * in single, in the order written.
 * - `vornsMeanColumn_32f_*`: mean[j] = (sum of x[i][j]) r. The sum starts at zero and takes two rows at a time, acc +
 *   (x[i][j] + x[i + 1][j]), an odd last row alone.
 * - `vornsVarColumn_32f_*`: var[j] = ((-h) mean[j]^2 + sum of x[i][j]^2) s. The sum starts from the term of the mean
 *   and takes the squares in row order. The mean is the caller's and is taken as it is.
 * - `vornsMeanVarColumn_32f_*`: mean[j] = (sum of x[i][j]) r and var[j] = (sum of x[i][j]^2 + (-h) mean[j]^2) s, with
 *   the stored mean. Both sums start at zero and take the rows in their order.
 *
 * 16-bit integers to 16 bits. Here r and s are divided in single. The scale factor belongs to the variance alone.
 * - Of a block, and of a list whose rows all begin on a multiple of 16 bytes: the sums are those of singles, of x in
 *   pairs of rows, of x^2 (rounded to single) in row order from zero; var[j] = (sum of x^2 + (-h) mean[j]^2) s with the
 *   term of the mean last. `vornsMeanVarColumn_*` takes its mean in it before that is rounded. Both results are
 *   converted as `vornsConvert_32f16s_Sfs` does in mode `vornRndNear`, the mean with scale factor 0, the variance with
 *   scaleFactor. These calls allocate once.
 * - Of any other list the alignment of the rows shows in the result: it is truncated. `vornsMeanColumn_*`: the exact
 *   sum, rounded to single, times r, truncated. `vornsVarColumn_*`: the exact sum of x^2 less h mean[j]^2, rounded to
 *   single, times s. `vornsMeanVarColumn_*`: m = the exact sum, rounded to single, times r; mean[j] is m limited to
 *   -32768..32767 and truncated; the variance is (sum of x^2 - (m m) h) s, with the sum of x^2 in single and in row
 *   order. A variance is truncated to 64 bits, shifted right by scaleFactor or left by its negative (in 64 bits; counts
 *   are taken modulo 64, and bits that leave at the top are lost), then saturated. These calls do not allocate.
 *
 * 16-bit integers to wider results, `16s32s` and `16s16s32s`. Both sums are doubles that take the elements and their
 * squares in row order; mean[j] = (sum of x) r and var[j] = (sum of x^2 - (m m) h) v, with m the mean before it is
 * rounded. In `D2` forms r and 1/(h - 1) are divided in double; in `D2L` forms in single, so that the layout shows in
 * the last digits. v is 1/(h - 1), in `16s32s` times 2^-scaleFactor (plus infinity for scale factors up to -1024, 0
 * from 1075 on). Both results are rounded to nearest, ties to even. In `16s32s` they are limited to 32 bits; a variance
 * of zero times an infinite v is not a number and gives 2147483647. In `16s16s32s` both are within their types for any
 * data.
 *
 * Rounding modes. Roundings to integers are to nearest, or towards zero, as stated, whatever the caller's mode; the
 * steps in floats are in the caller's mode.
 *
 * Accuracy, to nearest, up to 100000 rows and short of underflow. A mean in single is within 6e-8 (h + 4) times the
 * mean of the magnitudes of its column; a variance in single, of its own mean or a correctly rounded one, within 1.8e-7
 * (h + 4) times (sum of x^2) / (h - 1). The one-pass form cancels: where the mean is large beside the deviation, a
 * variance may come out zero or negative. There are no floors and no warnings; infinities and not-a-numbers pass
 * through.
 *
 * Overlap. The results must not overlap src, mean or one another.
 *
 * Checks, in this order: `vornsMeanColumn_*_D2` and `vornsVarColumn_*_D2*`: stride (srcStep below width), null, size;
 * `vornsMeanVarColumn_*_D2*`: null, size, stride; `D2L` forms: null, size. height is at least 1 for means, 2 for
 * variances, and width at least 1. The allocation comes last: `vornStsMemAllocErr`, with nothing written.
 * @{
 */
VornStatus vornsMeanColumn_32f_D2(const Vorn32f* src, int height, int srcStep, Vorn32f* dstMean, int width);
VornStatus vornsMeanColumn_32f_D2L(const Vorn32f* const* src, int height, Vorn32f* dstMean, int width);
VornStatus vornsMeanColumn_16s_D2(const Vorn16s* src, int height, int srcStep, Vorn16s* dstMean, int width);
VornStatus vornsMeanColumn_16s_D2L(const Vorn16s* const* src, int height, Vorn16s* dstMean, int width);
VornStatus vornsVarColumn_32f_D2(const Vorn32f* src, int height, int srcStep, const Vorn32f* mean, Vorn32f* dstVar,
                                 int width);
VornStatus vornsVarColumn_32f_D2L(const Vorn32f* const* src, int height, const Vorn32f* mean, Vorn32f* dstVar,
                                  int width);
VornStatus vornsVarColumn_16s_D2Sfs(const Vorn16s* src, int height, int srcStep, const Vorn16s* mean, Vorn16s* dstVar,
                                    int width, int scaleFactor);
VornStatus vornsVarColumn_16s_D2LSfs(const Vorn16s* const* src, int height, const Vorn16s* mean, Vorn16s* dstVar,
                                     int width, int scaleFactor);
VornStatus vornsMeanVarColumn_32f_D2(const Vorn32f* src, int height, int srcStep, Vorn32f* dstMean, Vorn32f* dstVar,
                                     int width);
VornStatus vornsMeanVarColumn_32f_D2L(const Vorn32f* const* src, int height, Vorn32f* dstMean, Vorn32f* dstVar,
                                      int width);
VornStatus vornsMeanVarColumn_16s_D2Sfs(const Vorn16s* src, int height, int srcStep, Vorn16s* dstMean, Vorn16s* dstVar,
                                        int width, int scaleFactor);
VornStatus vornsMeanVarColumn_16s_D2LSfs(const Vorn16s* const* src, int height, Vorn16s* dstMean, Vorn16s* dstVar,
                                         int width, int scaleFactor);
VornStatus vornsMeanVarColumn_16s32s_D2Sfs(const Vorn16s* src, int height, int srcStep, Vorn32s* dstMean,
                                           Vorn32s* dstVar, int width, int scaleFactor);
VornStatus vornsMeanVarColumn_16s32s_D2LSfs(const Vorn16s* const* src, int height, Vorn32s* dstMean, Vorn32s* dstVar,
                                            int width, int scaleFactor);
VornStatus vornsMeanVarColumn_16s16s32s_D2(const Vorn16s* src, int height, int srcStep, Vorn16s* dstMean,
                                           Vorn32s* dstVar, int width);
VornStatus vornsMeanVarColumn_16s16s32s_D2L(const Vorn16s* const* src, int height, Vorn16s* dstMean, Vorn32s* dstVar,
                                            int width);
/** @} */

/**
 * @defgroup vornsr_weighted_columns Weighted column statistics
 * @brief Means and variances of columns with a weight a row.
 *
 * src is a matrix of height rows by width columns, in one block with rows srcStep apart (`D2`) or as a list of rows
 * (`D2L`); w is weight, with one element a row. (srcStep stands behind src here, and height behind weight.)
 * - `vornsWeightedMeanColumn_*`: mean[j] = sum of w[i] x[i][j]
 * - `vornsWeightedVarColumn_*`: var[j] = sum of w[i] (x[i][j] x[i][j]) - mean[j]^2, of the caller's mean
 * - `vornsWeightedMeanVarColumn_*`: both, the mean being the one just computed
 *
 * The weights are taken as given and nothing divides by their sum: pass weights that sum to one for a true mean. With
 * others the mean is not normalised, and the formula of the variance is applied to it all the same.
 *
 * Exactness. `32f` computes in single, `64f` in double, in the order written and in the caller's rounding mode; each
 * sum starts at zero and takes the rows in their order. The bits depend on nothing else: alignment, layout and srcStep
 * change none. There are no floors and no warnings; infinities and not-a-numbers pass through.
 *
 * Overlap. The results must not overlap src, weight, mean or one another.
 *
 * Checks, in this order: null, stride (srcStep below width; `D2` forms), size (height and width at least 1).
 * @{
 */
VornStatus vornsWeightedMeanColumn_32f_D2(const Vorn32f* src, int srcStep, const Vorn32f* weight, int height,
                                          Vorn32f* dstMean, int width);
VornStatus vornsWeightedMeanColumn_32f_D2L(const Vorn32f* const* src, const Vorn32f* weight, int height,
                                           Vorn32f* dstMean, int width);
VornStatus vornsWeightedVarColumn_32f_D2(const Vorn32f* src, int srcStep, const Vorn32f* weight, int height,
                                         const Vorn32f* mean, Vorn32f* dstVar, int width);
VornStatus vornsWeightedVarColumn_32f_D2L(const Vorn32f* const* src, const Vorn32f* weight, int height,
                                          const Vorn32f* mean, Vorn32f* dstVar, int width);
VornStatus vornsWeightedMeanVarColumn_32f_D2(const Vorn32f* src, int srcStep, const Vorn32f* weight, int height,
                                             Vorn32f* dstMean, Vorn32f* dstVar, int width);
VornStatus vornsWeightedMeanVarColumn_32f_D2L(const Vorn32f* const* src, const Vorn32f* weight, int height,
                                              Vorn32f* dstMean, Vorn32f* dstVar, int width);
VornStatus vornsWeightedMeanColumn_64f_D2(const Vorn64f* src, int srcStep, const Vorn64f* weight, int height,
                                          Vorn64f* dstMean, int width);
VornStatus vornsWeightedMeanColumn_64f_D2L(const Vorn64f* const* src, const Vorn64f* weight, int height,
                                           Vorn64f* dstMean, int width);
VornStatus vornsWeightedVarColumn_64f_D2(const Vorn64f* src, int srcStep, const Vorn64f* weight, int height,
                                         const Vorn64f* mean, Vorn64f* dstVar, int width);
VornStatus vornsWeightedVarColumn_64f_D2L(const Vorn64f* const* src, const Vorn64f* weight, int height,
                                          const Vorn64f* mean, Vorn64f* dstVar, int width);
VornStatus vornsWeightedMeanVarColumn_64f_D2(const Vorn64f* src, int srcStep, const Vorn64f* weight, int height,
                                             Vorn64f* dstMean, Vorn64f* dstVar, int width);
VornStatus vornsWeightedMeanVarColumn_64f_D2L(const Vorn64f* const* src, const Vorn64f* weight, int height,
                                              Vorn64f* dstMean, Vorn64f* dstVar, int width);
/** @} */

/**
 * @defgroup vornsr_updates Parameter updates
 * @brief New parameters of a Gaussian or a mixture from what a pass over the data has summed.
 *
 * All vectors have len elements; the type in the name is that of every vector and scalar. A pass leaves for each
 * Gaussian a sum of observations, a sum of their squares and an occupation, which is the sum of the weights with which
 * the observations were counted.
 *
 * `vornsUpdateMean_*`: srcDstMean[i] += src[i] / occ. The destination is added to: clear it for a new mean.
 *
 * `vornsUpdateVar_*`: m = srcMeanAcc[i] / meanOcc and v = srcVarAcc[i] / varOcc - m m. dstVar[i] = v where v is above
 * srcVarFloor[i], and that floor everywhere else, a v that is not a number included.
 *
 * `vornsUpdateWeight_*`: w = src[i] r with r = 1 / occ. dstWeight[i] = w where w is above floor, and floor everywhere
 * else, a w that is not a number included. dstSum[0] is the sum of the stored weights; nothing is divided by it.
 *
 * `vornsUpdateGConst_*`, `vornsUpdateGConst_DirectVar_*`: the constant of a diagonal Gaussian of len dimensions. With
 * c = len 1.8378770664093 (the logarithm of two pi, to the digits that the library stores) formed in double, in the
 * `32f` forms rounded to single, and s = the sum of the logarithms of src as `vornsSumLn_32f` or `vornsSumLn_64f` gives
 * it: dst[0] = c - s of inverse variances src, and c + s of variances src in the `DirectVar` forms. The accuracy is
 * that of the sum of logarithms.
 *
 * `vornsOutProbPreCalc_*`: dst[i] = src[i] - srcGConst[i] / 2, the part of an output probability that no frame changes,
 * such as the logarithm of a weight less half the constant of its Gaussian. In the `_I` forms the result replaces
 * srcDstGConst. In the `32s` forms half of an integer is rounded down (shifted right) in the elements up to the last
 * multiple of 2 where all vectors stand on 16-byte addresses, up to the last multiple of 4 where one does not, and
 * rounded up ((x + 1) shifted right) in the one to three elements behind; sums wrap at 32 bits.
 *
 * Exactness. One rounding an operation, in the precision of the name and the caller's rounding mode: the `32f` forms of
 * mean, variance and weight multiply by reciprocals that are divided once a call, the `64f` forms of mean and variance
 * divide each element. dstSum has four lanes in single and two in double, to which the elements of whole groups of as
 * many are added in their order from zero; then (lane 0 + lane 1) + (lane 2 + lane 3), or lane 0 + lane 1; then the
 * elements behind, in their order. But for `vornsOutProbPreCalc_32s` and its `_I` form no address changes a result.
 *
 * Overlap. A result may be one of the operands; apart from that, vectors must not overlap, nor dstSum a vector.
 *
 * Checks, in this order: null (every pointer, dstSum and dst included), size (len at least 1), and for mean, variance
 * and weight the occupations: `vornStsNegOccErr` where one is below zero or not a number, then `vornStsZeroOcc` where
 * one is not above the smallest normal number of its type (1.17549435e-38 in single, 2.2250738585072014e-308 in
 * double). That warning leaves all results untouched like an error: the old parameters stay in place.
 *
 * Warnings with results: `vornStsBelowFloor` where no variance, or no weight, is above its floor;
 * `vornsUpdateWeight_64f` gives it for len 1 only, whatever longer vectors hold. `vornStsLnZeroArg` with dst[0] = plus
 * infinity, or `vornStsLnNegArg` with dst[0] = not-a-number, of the constants where src has a zero or a negative
 * element (the first bad element in the run that the sum of logarithms reports decides).
 * @{
 */
VornStatus vornsUpdateMean_32f(const Vorn32f* src, Vorn32f* srcDstMean, int len, Vorn32f occ);
VornStatus vornsUpdateVar_32f(const Vorn32f* srcMeanAcc, const Vorn32f* srcVarAcc, const Vorn32f* srcVarFloor,
                              Vorn32f* dstVar, int len, Vorn32f meanOcc, Vorn32f varOcc);
VornStatus vornsUpdateWeight_32f(const Vorn32f* src, Vorn32f* dstWeight, int len, Vorn32f* dstSum, Vorn32f occ,
                                 Vorn32f floor);
VornStatus vornsUpdateGConst_32f(const Vorn32f* src, int len, Vorn32f* dst);
VornStatus vornsUpdateGConst_DirectVar_32f(const Vorn32f* src, int len, Vorn32f* dst);
VornStatus vornsUpdateMean_64f(const Vorn64f* src, Vorn64f* srcDstMean, int len, Vorn64f occ);
VornStatus vornsUpdateVar_64f(const Vorn64f* srcMeanAcc, const Vorn64f* srcVarAcc, const Vorn64f* srcVarFloor,
                              Vorn64f* dstVar, int len, Vorn64f meanOcc, Vorn64f varOcc);
VornStatus vornsUpdateWeight_64f(const Vorn64f* src, Vorn64f* dstWeight, int len, Vorn64f* dstSum, Vorn64f occ,
                                 Vorn64f floor);
VornStatus vornsUpdateGConst_64f(const Vorn64f* src, int len, Vorn64f* dst);
VornStatus vornsUpdateGConst_DirectVar_64f(const Vorn64f* src, int len, Vorn64f* dst);
VornStatus vornsOutProbPreCalc_32f(const Vorn32f* src, const Vorn32f* srcGConst, Vorn32f* dst, int len);
VornStatus vornsOutProbPreCalc_32f_I(const Vorn32f* src, Vorn32f* srcDstGConst, int len);
VornStatus vornsOutProbPreCalc_64f(const Vorn64f* src, const Vorn64f* srcGConst, Vorn64f* dst, int len);
VornStatus vornsOutProbPreCalc_64f_I(const Vorn64f* src, Vorn64f* srcDstGConst, int len);
VornStatus vornsOutProbPreCalc_32s(const Vorn32s* src, const Vorn32s* srcGConst, Vorn32s* dst, int len);
VornStatus vornsOutProbPreCalc_32s_I(const Vorn32s* src, Vorn32s* srcDstGConst, int len);
/** @} */

/**
 * @defgroup vornsr_accumulators Accumulators
 * @brief Sums that split the estimate of a diagonal Gaussian over several calls, and variances from them.
 *
 * **One observation, weighted.** `vornsMeanVarAcc_*`: for each element d = src[i] - srcMean[i], t = d val;
 * dstMeanAcc[i] += t, dstVarAcc[i] += d t. val is normally the occupation of the frame. The accumulators are not
 * cleared. All steps in the type of the name, in this order.
 *
 * **Sums over rows.** `vornsSumMeanVar_*`: dstSum[j] = sum of x[i][j], dstSumSq[j] = sum of x[i][j]^2 over the height
 * rows of src, row r beginning at src + r srcStep. They are raw sums: nothing is divided. The sums are singles and take
 * the rows in pairs, sum + (x[i] + x[i+1]) and sum + (x[i]^2 + x[i+1]^2), an odd last row alone; calls with an even
 * number of rows, one after the other, give the bits of one call.
 * - `32f`, `16s32f`: begin at zero and overwrite. 16-bit integers are widened to single before they are squared: a
 *   square of more than 24 bits rounds.
 * - `32f_I`, `16s32f_I`: begin at what stands in dstSum and dstSumSq.
 * - `16s32s_Sfs`: the sums of `16s32f`, converted as `vornsConvert_32f32s_Sfs` does in mode vornRndNear, times
 *   2^-scaleFactor, saturated.
 * - `16s32s_ISfs`: the integers that stand in dstSum and dstSumSq are converted to single (above 2^24 they round), the
 *   rows are added, and the sums converted back in the same way. They are not scaled up first: a scale factor other
 *   than 0 scales the whole running sum at every call.
 *
 * **Variances.** `vornsNewVar_*`: dst[i] = (sumSq[i] - mean[i]^2 val1) val2, val1 normally the count and val2 1/(count
 * - 1). In the in-place forms srcDstVar holds the sums of squares before and the variances after.
 * - `32f`: the mean is squared in single precision; the rest is in double, and rounded to single once. With val2 = 1
 *   the error is at most 6.1e-8 (mean^2 |val1| + |dst|), also where the difference cancels.
 * - `32f_I`: all steps in single, so that the two forms round differently.
 * - `32s_Sfs`, `32s_ISfs`: the integers are converted to single, and the formula is that of `32f_I`. The addresses
 *   choose the rest, on purpose. Both sources on multiples of 16 bytes: converted as `vornsConvert_32f32s_Sfs` does in
 *   mode vornRndNear, times 2^-scaleFactor, saturated. At other addresses: the result times 2^-scaleFactor, truncated
 *   toward zero; what no 32-bit integer holds, too large, too small or not a number, becomes -2147483648. The powers of
 *   two are singles, infinite from -128 down and 0 from 150 up.
 *
 * Exactness. The bits are those of the steps above in the caller's rounding mode (the conversions to integers: to
 * nearest whatever the mode, or truncated), and depend on nothing else: alignment and srcStep matter in the two integer
 * forms of the variance alone. There are no floors and no warnings: overflow, negative variances, infinities and
 * not-a-numbers pass through.
 *
 * Overlap. dstVar may be srcMean or srcSumSq. Apart from that the results must not overlap the sources or one another.
 *
 * Checks, in this order: `vornsMeanVarAcc_*`, `vornsNewVar_*`: null, size (len at least 1). `vornsSumMeanVar_*`: stride
 * (srcStep below width), null, size (height and width at least 1).
 * @{
 */
VornStatus vornsMeanVarAcc_32f(const Vorn32f* src, const Vorn32f* srcMean, Vorn32f* dstMeanAcc, Vorn32f* dstVarAcc,
                               int len, Vorn32f val);
VornStatus vornsMeanVarAcc_64f(const Vorn64f* src, const Vorn64f* srcMean, Vorn64f* dstMeanAcc, Vorn64f* dstVarAcc,
                               int len, Vorn64f val);
VornStatus vornsSumMeanVar_32f(const Vorn32f* src, int srcStep, int height, Vorn32f* dstSum, Vorn32f* dstSumSq,
                               int width);
VornStatus vornsSumMeanVar_32f_I(const Vorn32f* src, int srcStep, int height, Vorn32f* dstSum, Vorn32f* dstSumSq,
                                 int width);
VornStatus vornsSumMeanVar_16s32f(const Vorn16s* src, int srcStep, int height, Vorn32f* dstSum, Vorn32f* dstSumSq,
                                  int width);
VornStatus vornsSumMeanVar_16s32f_I(const Vorn16s* src, int srcStep, int height, Vorn32f* dstSum, Vorn32f* dstSumSq,
                                    int width);
VornStatus vornsSumMeanVar_16s32s_Sfs(const Vorn16s* src, int srcStep, int height, Vorn32s* dstSum, Vorn32s* dstSumSq,
                                      int width, int scaleFactor);
VornStatus vornsSumMeanVar_16s32s_ISfs(const Vorn16s* src, int srcStep, int height, Vorn32s* dstSum, Vorn32s* dstSumSq,
                                       int width, int scaleFactor);
VornStatus vornsNewVar_32f(const Vorn32f* srcMean, const Vorn32f* srcSumSq, Vorn32f* dstVar, int len, Vorn32f val1,
                           Vorn32f val2);
VornStatus vornsNewVar_32f_I(const Vorn32f* srcMean, Vorn32f* srcDstVar, int len, Vorn32f val1, Vorn32f val2);
VornStatus vornsNewVar_32s_Sfs(const Vorn32s* srcMean, const Vorn32s* srcSumSq, Vorn32s* dstVar, int len,
                               int scaleFactor, Vorn32f val1, Vorn32f val2);
VornStatus vornsNewVar_32s_ISfs(const Vorn32s* srcMean, Vorn32s* srcDstVar, int len, int scaleFactor, Vorn32f val1,
                                Vorn32f val2);
/** @} */

/**
 * @defgroup vornsr_covariance Covariance-like matrices
 * @brief A full matrix of products of deviations, added to over calls.
 *
 * `vornsAccCovarianceMatrix_*`: for i from 0 to width - 1 and j from i to width - 1
 *
 *     dst[i][j] += val * sum over frames f of (x[f][i] - mean[j]) (x[f][j] - mean[j])
 *
 * and then dst[j][i] = dst[i][j], so that the matrix is symmetric afterwards whatever its lower triangle held. Both
 * differences use the mean of the larger index j: mean[i] is met on the diagonal alone. With means other than the
 * frames' own this is not the covariance around mean; where mean is that of all frames that will have been added with
 * equal val, the sums agree with it but for rounding.
 *
 * src has height rows (frames) of width features; dst has width rows of width. `D2`: one block each, rows srcStep and
 * dstStep elements apart. `D2L`: an array of row pointers each. val is the weight of all frames of the call. Nothing is
 * divided.
 *
 * Exactness. There are two ways to the sum, both in the order of the frames.
 * - As a rule all steps are in double: elements are widened, the sum begins at zero and takes the products one by one;
 *   when it is complete it is multiplied by val and added to dst.
 * - Large calls add frame by frame: dst += val (e d), with dst in double. In `32f64f` both differences e and d are
 *   rounded to single. In `16s64f` row i, from its diagonal on, is cut into groups of four columns: there both
 *   differences saturate at -32768 and 32767; in the up to three columns behind the last whole group they do not.
 *   A call is large if src, mean and dst stand on multiples of 16 bytes (`D2L`: every row of src and of dst, and mean),
 *   srcStep and dstStep are multiples of 4 elements (`D2`), and the product of srcStep and height (`D2`) or of height
 *   and width (`D2L`), taken at 32 bits with a sign, is at least
 *
 *   | form | `D2` | `D2L` |
 *   |---|---|---|
 *   | `32f64f` | 140000 | 134000 |
 *   | `16s64f` | 270000 | 260000 |
 *
 * The results of the two ways differ in their last bits, and for 16-bit data that leaves its range around the mean
 * visibly. Nothing else has an influence on the bits, but the caller's rounding mode.
 *
 * dst must not overlap the other arrays. Rows of src may repeat or overlap. There are no warnings: infinities and
 * not-a-numbers pass through. The functions allocate nothing; they take some 50 KB of stack.
 *
 * Checks, in this order: null; size (height and width at least 1); in `D2` stride (srcStep or dstStep below width). The
 * row pointers themselves are not tested.
 * @{
 */
VornStatus vornsAccCovarianceMatrix_32f64f_D2(const Vorn32f* src, int srcStep, int height, const Vorn32f* mean,
                                              Vorn64f* dst, int width, int dstStep, Vorn64f val);
VornStatus vornsAccCovarianceMatrix_32f64f_D2L(const Vorn32f* const* src, int height, const Vorn32f* mean,
                                               Vorn64f* const* dst, int width, Vorn64f val);
VornStatus vornsAccCovarianceMatrix_16s64f_D2(const Vorn16s* src, int srcStep, int height, const Vorn16s* mean,
                                              Vorn64f* dst, int width, int dstStep, Vorn64f val);
VornStatus vornsAccCovarianceMatrix_16s64f_D2L(const Vorn16s* const* src, int height, const Vorn16s* mean,
                                               Vorn64f* const* dst, int width, Vorn64f val);
/** @} */

/**
 * @defgroup vornsr_clustering Gaussian clustering
 * @brief Likelihoods of pooled states, merging, distance and splitting of Gaussians.
 *
 * What likelihood-based clustering of states and the growing of mixtures need (Odell, The use of context in large
 * vocabulary speech recognition, 1995; Young et al., tree-based state tying, 1994). A diagonal Gaussian is a mean
 * vector and a variance vector of len elements each, and a constant; the type in the name is that of vectors and
 * scalars.
 *
 * `vornsDcsClustLAccumulate_*`: what a state of occupation occ brings to a pool: dstSum[i] = srcMean[i] occ and
 * dstSqr[i] = (1 / srcVar[i] + srcMean[i]^2) occ of inverse variances srcVar, or (srcMean[i]^2 + srcVar[i]) occ of
 * variances in the `DirectVar` forms. The results are overwritten: the caller adds up the states of a pool.
 *
 * `vornsDcsClustLCompute_*`: the log likelihood of a pool's occ = N frames under the one Gaussian that fits them best,
 * from the totals S = srcSum and Q = srcSqr: dst[0] = N/2 (len (2 ln N - 1 - ln 2 pi) - sum of ln(N Q[i] - S[i]^2)),
 * all in double: c = ln N, b = len (((c - 1) - 1.8378770664093456) + c), dst[0] = (N 0.5) (b - sum). The `32f64f` form
 * widens its singles first. N = 0 gives the warning `vornStsZeroOcc` and dst[0] = -10000000000.0.
 *
 * `vornsGaussianMerge_*`: both Gaussians as one. With W = wgt1 + wgt2,
 *
 *     dstMean[i] = (wgt1 srcMean1[i] + wgt2 srcMean2[i]) / W
 *     dstVar[i] = ((srcMean1[i]^2 + srcVar1[i]) wgt1 + (srcMean2[i]^2 + srcVar2[i]) wgt2) / W - dstMean[i]^2
 *     dstGConst[0] = len 1.8378770664093 - sum of ln dstVar[i]
 *
 * The constant has this sign on purpose: it is what `vornsUpdateGConst_*` makes of variances.
 *
 * `vornsGaussianDist_*`: the likelihood that such a merge gives up, dst[0] = (wgt1 gconst1 + wgt2 gconst2) -
 * W (len 1.8378770664093 - sum of ln v[i]) with the variances v of the merge. The constants have the sign of dstGConst.
 *
 * `vornsGaussianSplit_*`: two copies, val standard deviations off: d = val sqrt(srcVar[i]), dstMean[i] = srcDstMean[i]
 * - d, srcDstMean[i] += d, dstVar[i] = srcVar[i]. There is no floor: a negative variance gives not-a-numbers in both
 * means and `vornStsNoErr`.
 *
 * Exactness. One rounding an operation, in the order written and the precision of the name, with these rules:
 *
 * - `vornsDcsClustLAccumulate_32f` and `_64f` form dstSqr[i] in another grouping where len is at least 8 and all four
 *   vectors stand on 16-byte addresses: (1 / v) occ + (occ m) m in single, (occ m) m + occ / v in double.
 * - Sums of logarithms take the elements one by one in their order, each logarithm in double and within 0.502 units in
 *   its last place; `vornsGaussianMerge_64f`, and `vornsGaussianDist_32f` from len 13 and `_64f` from len 11 on, take
 *   the sum that `vornsSumLn_64f` gives.
 * - `vornsGaussianMerge_32f` is in single but for the logarithms and their sum, and rounds dstGConst once.
 *   `vornsGaussianDist_32f` adds the weights, and the weighted constants, in single; all else is in double, and dst is
 *   rounded once.
 * - `vornsGaussianSplit_32f` forms d in single where all four vectors stand on 16-byte addresses, otherwise in double
 *   and rounds it: the last place of a mean may differ.
 *
 * Accuracy, where nothing over- or underflows. u is 2^-24 in single and 2^-53 in double.
 *
 * - `vornsDcsClustLCompute_*` is within 1.2e-16 N len (K + (len / 2 + 2) M + 3 |2 ln N| + 9) of the formula; M is the
 *   largest |ln(N Q[i] - S[i]^2)| and K the largest N Q[i] / (N Q[i] - S[i]^2), which is what a mean that is large
 *   beside the deviation costs.
 * - With weights above zero a merge's mean is within 4.1 u (wgt1 |mean1| + wgt2 |mean2|) / W of the formula, and its
 *   variance within 16.1 u ((mean1^2 + var1) wgt1 + (mean2^2 + var2) wgt2) / W.
 *
 * No function allocates memory.
 *
 * Overlap. dstMean and dstVar of a merge may be the mean and the variance of either Gaussian, dstVar of a split may be
 * srcVar; apart from that results must overlap nothing.
 *
 * Checks, in this order: `vornsDcsClustLAccumulate_*`, `vornsDcsClustLCompute_*` and `vornsGaussianSplit_64f`: null,
 * size (len at least 1); `vornsGaussianMerge_*`, `vornsGaussianDist_*` and `vornsGaussianSplit_32f`: size, null. Then
 * `vornsDcsClustLCompute_*`: `vornStsNegOccErr`, dst untouched, where occ is below zero or not a number. Weights are
 * not checked.
 *
 * Warnings. `vornsDcsClustLCompute_*`: where some N Q[i] - S[i]^2 is negative, `vornStsLnNegArg` and dst[0] =
 * not-a-number; otherwise, where one is zero or not a number, `vornStsLnZeroArg` and dst[0] = minus infinity. The
 * others: the first variance of the merge that is zero gives `vornStsLnZeroArg` and plus infinity in dst or dstGConst,
 * the first negative one `vornStsLnNegArg` and not-a-number, whichever comes first (in its run of 512, where
 * `vornsSumLn_64f` sums). `vornsGaussianMerge_32f` stops there: the means and variances up to this element are stored,
 * later ones are not. A variance that is not a number counts as zero; where `vornsSumLn_64f` sums it gives not-a-number
 * and `vornStsNoErr`, and so does an infinite one.
 * @{
 */
VornStatus vornsDcsClustLAccumulate_32f(const Vorn32f* srcMean, const Vorn32f* srcVar, Vorn32f* dstSum, Vorn32f* dstSqr,
                                        int len, Vorn32f occ);
VornStatus vornsDcsClustLAccumulate_DirectVar_32f(const Vorn32f* srcMean, const Vorn32f* srcVar, Vorn32f* dstSum,
                                                  Vorn32f* dstSqr, int len, Vorn32f occ);
VornStatus vornsDcsClustLAccumulate_64f(const Vorn64f* srcMean, const Vorn64f* srcVar, Vorn64f* dstSum, Vorn64f* dstSqr,
                                        int len, Vorn64f occ);
VornStatus vornsDcsClustLAccumulate_DirectVar_64f(const Vorn64f* srcMean, const Vorn64f* srcVar, Vorn64f* dstSum,
                                                  Vorn64f* dstSqr, int len, Vorn64f occ);
VornStatus vornsDcsClustLCompute_32f64f(const Vorn32f* srcSum, const Vorn32f* srcSqr, int len, Vorn64f* dst,
                                        Vorn32f occ);
VornStatus vornsDcsClustLCompute_64f(const Vorn64f* srcSum, const Vorn64f* srcSqr, int len, Vorn64f* dst, Vorn64f occ);
VornStatus vornsGaussianDist_32f(const Vorn32f* srcMean1, const Vorn32f* srcVar1, const Vorn32f* srcMean2,
                                 const Vorn32f* srcVar2, int len, Vorn32f* dst, Vorn32f wgt1, Vorn32f gconst1,
                                 Vorn32f wgt2, Vorn32f gconst2);
VornStatus vornsGaussianMerge_32f(const Vorn32f* srcMean1, const Vorn32f* srcVar1, const Vorn32f* srcMean2,
                                  const Vorn32f* srcVar2, Vorn32f* dstMean, Vorn32f* dstVar, int len,
                                  Vorn32f* dstGConst, Vorn32f wgt1, Vorn32f wgt2);
VornStatus vornsGaussianSplit_32f(Vorn32f* srcDstMean, const Vorn32f* srcVar, Vorn32f* dstMean, Vorn32f* dstVar,
                                  int len, Vorn32f val);
VornStatus vornsGaussianDist_64f(const Vorn64f* srcMean1, const Vorn64f* srcVar1, const Vorn64f* srcMean2,
                                 const Vorn64f* srcVar2, int len, Vorn64f* dst, Vorn64f wgt1, Vorn64f gconst1,
                                 Vorn64f wgt2, Vorn64f gconst2);
VornStatus vornsGaussianMerge_64f(const Vorn64f* srcMean1, const Vorn64f* srcVar1, const Vorn64f* srcMean2,
                                  const Vorn64f* srcVar2, Vorn64f* dstMean, Vorn64f* dstVar, int len,
                                  Vorn64f* dstGConst, Vorn64f wgt1, Vorn64f wgt2);
VornStatus vornsGaussianSplit_64f(Vorn64f* srcDstMean, const Vorn64f* srcVar, Vorn64f* dstMean, Vorn64f* dstVar,
                                  int len, Vorn64f val);
/** @} */

VORN_END_DECLS

#endif
