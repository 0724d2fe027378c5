/* Model estimation: column statistics, accumulators, parameter updates, clustering of Gaussians. */
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
 * @brief Sums that split the estimate of a Gaussian over several calls.
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
