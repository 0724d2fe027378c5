/* Acoustic scoring: log-domain arithmetic, Gaussian and mixture scores. */
#ifndef VORNSR_SCORING_H
#define VORNSR_SCORING_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup logarithm_domain Log-domain arithmetic
 * @brief Sums and differences of likelihoods that are kept as natural logarithms.
 *
 * Formulas, element by element over two arrays of len elements:
 *
 *     vornsLogAdd:  srcDst[i] = ln(exp(src[i]) + exp(srcDst[i]))
 *     vornsLogSub:  srcDst[i] = ln(exp(src[i]) - exp(srcDst[i]))
 *     vornsLogSum:  dst[0]    = ln of the sum of exp(src[i]) over the vector
 *
 * Values are natural logarithms of likelihoods. In the integer forms (`Sfs`) the integer x stands for
 * x * 2^-scaleFactor; scaleFactor may be any int, and beyond the exponents of the type the power of two is an infinity
 * or zero. src and srcDst may be the same array; otherwise they must not overlap. dst may be src.
 *
 * Checks, in this order: len below 1 `vornStsSizeErr`; a null pointer `vornStsNullPtrErr`; in vornsLogSub any element
 * with srcDst[i] - src[i] at or above zero `vornStsRangeErr`. That difference is formed in the element type: Vorn32s
 * wraps in 32 bits, Vorn16s is subtracted as int. After an error nothing has been written. There are no warnings.
 *
 * The hint of vornsLogAdd_64f selects nothing: 0, 1 and 2 compute; with any other value the call returns
 * `vornStsNoErr` and leaves the data as they were.
 *
 * Log-add of a pair a (from src, or the running sum) and b: m = max(a, b), d = min(a, b) - m.
 *  - d below -15.319587707519531 (single) or -23.0258509299405 (double): the smaller term is dropped. The result is m,
 *    or the floor where m lies below its limit: max(m, -4500000) in single; -1.0e10 for m below -9.0e9 in double.
 *    Only here is there a floor.
 *  - otherwise m + f(d), where f approximates ln(1 + exp(d)) by one of three polynomials (degree 10 in single, split at
 *    -2.55 and -6.8; degree 21 in double, split at -3.5 and -9). In single a Horner chain; in double the even and the
 *    odd powers apart, (m + even) + odd. These polynomials are the definition: every build gives the same bits.
 *  - a d exactly on a split belongs to the lower interval within the groups of four (double: two) elements from the
 *    start of the arrays, and to the upper interval in the elements behind the last whole group.
 *
 * Accuracy: f differs from the true logarithm by at most 1.6e-7 in single and 4.1e-14 in double, beside the rounding
 * of the sum itself.
 *
 * Order of the sums. Single: below 8 elements one after the other; from 8 on four running sums, each taking every
 * fourth element of the whole groups, then lanes 2 and 3 into 0 and 1, lane 1 into 0, and the last len mod 4 elements
 * in order. Double: up to 4 elements in order, above that two running sums likewise. A single element is copied.
 *
 * Integer forms of log-add: both operands are converted to single and multiplied by 2^-scaleFactor, log-added in
 * single, multiplied by 2^scaleFactor, truncated toward zero and saturated. Integer forms of log-sum: one element is
 * copied unscaled; two to six are summed in double with the polynomials of the single form, rounded to single after
 * each step; seven and more in runs of 128 singles, the sum of a run standing in front of the next. The result is
 * divided by 2^-scaleFactor, truncated toward zero and saturated; a sum of seven or more elements that comes out as
 * exactly 2147483648 becomes -2147483648.
 *
 * Log-subtract works in double, one element at a time: with d = srcDst[i] - src[i] (in the element type, for integers
 * as singles times 2^-scaleFactor) at or above the limit of log-add, src[i] + ln(1 - exp(d)), or the floor (-4500000 in
 * all forms but the double one, -1.0e10 there) where 1 - exp(d) is not above 1.0057e-37 (double form: 2.45e-308);
 * below the limit src[i], not under the floor. In the integer forms the logarithm is added to the integer without being
 * scaled back and the floor is an integer value; the sum is clamped to 32 bits and truncated toward zero, and
 * vornsLogSub_16s_Sfs stores its low 16 bits.
 *
 * Infinities and not-a-numbers take the comparisons as they fall. Log-add: a not-a-number in b gives one, a
 * not-a-number in a counts as equal to b; two equal infinities give a not-a-number. Log-subtract: a difference that is
 * not a number is no error and counts as far apart.
 *
 * Literature: addition in the logarithmic domain, Kingsbury and Rayner (1971).
 * @{
 */
VornStatus vornsLogAdd_64f(const Vorn64f* src, Vorn64f* srcDst, int len, int hint);
VornStatus vornsLogAdd_32f(const Vorn32f* src, Vorn32f* srcDst, int len);
VornStatus vornsLogAdd_32s_Sfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor);
VornStatus vornsLogAdd_16s_Sfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsLogSum_64f(const Vorn64f* src, Vorn64f* dst, int len);
VornStatus vornsLogSum_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsLogSum_32s_Sfs(const Vorn32s* src, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsLogSum_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsLogSub_64f(const Vorn64f* src, Vorn64f* srcDst, int len);
VornStatus vornsLogSub_32f(const Vorn32f* src, Vorn32f* srcDst, int len);
VornStatus vornsLogSub_32s_Sfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor);
VornStatus vornsLogSub_16s_Sfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor);
/** @} */

/**
 * @defgroup multi_frame Multi-frame Gaussian scores
 * @brief The log density of many frames under one Gaussian, or of one frame under many Gaussians.
 *
 * Formula: score = val - S / 2, S = sum over j of (x[j] - m[j])^2 * v[j], with the feature vector x, the mean m and the
 * inverse variances v, each of len elements. val is the caller's: the logarithm of the normalisation constant and of
 * any weight.
 *
 * vornsLogGaussMultiMix scores one frame, src, against height Gaussians, the rows of mean and var. srcDst holds the
 * val of each Gaussian on entry and its score on return, so a second call on the same array subtracts S / 2 again.
 * `D2`: rows of mean and var lie step elements apart. srcDst must not overlap the other arrays.
 *
 * Checks, in this order: step below len `vornStsStrideErr` (even if a pointer is null); a null pointer
 * `vornStsNullPtrErr`; len or height below 1 `vornStsSizeErr`. After an error nothing has been written. There are no
 * warnings, no allocation, and no demands on alignment.
 *
 * Exact order in single: one accumulator of four lanes a row starts at zero and holds -S; column j is subtracted from
 * lane j mod 4, as (x - m)^2 * v with each operation rounded; then (lane 0 + lane 1) + (lane 2 + lane 3), and the last
 * len mod 4 columns are subtracted one by one. Rows of less than four columns are subtracted in column order.
 *
 * Final form: vornsLogGaussMultiMix srcDst[g] + 0.5 * (-S).
 *
 * Infinities and not-a-numbers go through the formula. All builds give the same bits. Thread-safe: no state.
 *
 * @{
 */
VornStatus vornsLogGaussMultiMix_32f_D2(const Vorn32f* mean, const Vorn32f* var, int step, const Vorn32f* src, int len, Vorn32f* srcDst, int height);
/** @} */

/**
 * @defgroup mixtures Mixtures
 * @brief Gaussian scores folded as they are made: into the one score of a mixture.
 *
 * vornsLogGaussMixture: result = log-sum over g of (val[g] - S(g) / 2), one frame, src, against height Gaussians, the
 * rows of mean and var; val[g] is the logarithm of the weight and the normalisation constant of Gaussian g. The scores
 * are those of vornsLogGaussMultiMix (group multi_frame), bit for bit; the log-sum, with its floors, is vornsLogSum
 * (group logarithm_domain). result must not overlap the other arrays.
 *
 * The Gaussians are summed in runs of 100: each run is one log-sum, in whose front stands the value of the runs
 * before. A log-sum is not associative, so the runs are part of the result.
 *
 * Checks, in this order: a null pointer `vornStsNullPtrErr`; step below len `vornStsStrideErr`; height or len below 1
 * `vornStsSizeErr`. After an error nothing has been written. There are no warnings and no allocation. All builds give
 * the same bits. Thread-safe: no state.
 *
 * @{
 */
VornStatus vornsLogGaussMixture_32f_D2(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int height, int step, int len, const Vorn32f* val, Vorn32f* result);
/** @} */

VORN_END_DECLS

#endif
