/* Acoustic scoring: log-domain arithmetic, Gaussian and mixture scores, selection, distances, time warping. */
#ifndef VORNSR_SCORING_H
#define VORNSR_SCORING_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_logarithm_domain Log-domain arithmetic
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
 * Accuracy: f differs from the true logarithm by at most 1.6e-7 in single and 6e-14 in double, beside the rounding
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
 * What is not a number never becomes a logarithm: log-add gives a not-a-number where either operand is one, log-sum if
 * any element is one, log-subtract where either operand is one, which is no range error. Integers are always numbers,
 * save that a zero times an infinite power of two is none: log-add and log-sum store -2147483648 for it, in 16 bits
 * -32768 (log-add) and the low half of -2147483648, which is 0 (log-sum).
 *
 * Infinities take the comparisons as they fall. Two equal ones give a not-a-number in log-add and log-sum, but count as
 * far apart in log-subtract and in the integer log-sums of two to six elements, as does a zero difference of integers
 * times an infinite power of two in log-subtract.
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
 * @defgroup vornsr_single_frame Single-frame Gaussian scores
 * @brief The log density of one feature vector under one Gaussian.
 *
 *     result = val - S / 2,  S = sum over j of (src[j] - mean[j])^2 * v[j]
 *
 * src, mean and var are vectors of len elements; val is the caller's constant: the logarithm of the Gaussian's
 * normalisation and of any weight. var holds inverse variances. `IdVar`: all variances are 1. `DirectVar`: var holds
 * the variances themselves. `BlockDVar`: S = d' A d with d = src - mean and A a block-diagonal matrix held in a
 * context. result is one element; it is written once, at the end.
 *
 * Units of the 16-bit forms: scaleFactor sf makes S / 2 count as S / 2 * 2^-sf. `Sfs` results are integers, `Scaled`
 * results singles. sf may be any int; a power of two beyond the singles is an infinity or zero.
 *
 * Checks, in this order: a null pointer `vornStsNullPtrErr`; len below 1, or other than the context's length,
 * `vornStsSizeErr`; scratch memory not obtained `vornStsMemAllocErr` (`DirectVar_32f` and the 16-bit `DirectVar` forms
 * always need some, `BlockDVar` from 112 elements on). After an error nothing has been written. Warning: a zero among
 * the variances gives `vornStsDivByZero`; the score is complete, with an infinite (or, where src equals mean, not a
 * number) term. vornsLogGaussSingle_DirectVar_32f64f then leaves result unwritten, and
 * vornsLogGaussSingle_DirectVar_64f gives no warning.
 *
 * Exact orders. Every operation is rounded by itself; all builds give the same bits.
 *  - `32f`: -S in two accumulators of four lanes: of each 16 columns the first 8 to the one, the next 8 to the other;
 *    then 8 more to the first, the last 1 to 7 to its lane 0; both added, (0 + 1) + (2 + 3); 0.5 * (-S + 2 val).
 *    `DirectVar_32f` rounds 1 / var to single first.
 *  - `64f`, `32f64f` (in double): up to 8 columns in order. Above that, of each 8 columns 0, 1, 4, 5 go to one pair of
 *    lanes and 2, 3, 6, 7 to another; pair + pair, lane + lane, the rest in order; val - S * 0.5. Here an address
 *    counts, that of var (of mean in `IdVar`): on an odd element of a 16-byte block (8-byte in `32f64f`) the first
 *    column is taken alone and opens lane 0; off the element's own size everything goes in order. `IdVar_64f` above 54
 *    columns does not look at it. `DirectVar_64f` divides, in two lanes, a last odd column to lane 0;
 *    `DirectVar_32f64f` in order.
 *  - 16 bits, `Scaled` and `Sfs`: differences of groups of eight saturate to 16 bits, those of the last 1 to 7 columns
 *    are exact and do not. Squares and products are singles; a group is summed whole, lanes 0 to 3 + 4 to 7, then
 *    (0 + 2) + (1 + 3), and joins the running sum. `Scaled`: val - S * 2^-(sf + 1). `Sfs`: val - (S / 2) * 2^-sf
 *    rounded in the current mode; out of range on either side gives -2147483648. `IdVarScaled`: S is an exact integer,
 *    all differences saturate. `DirectVarScaled`: val - (S * 0.5) * 2^-sf, 1 / var in single. `DirectVar_16s32s_Sfs`:
 *    S as in `32f` over singles, S * 2^-(sf + 1) rounded to nearest and saturated, then subtracted from val and
 *    saturated.
 *  - `Low`: integers only, wrapping in 32 bits. Of each square the high 16 bits and the low 16 bits without the last
 *    one are multiplied by v and summed apart; at the end of the groups of eight, and again for a remainder of four,
 *    of two and of one, high << (15 - sf) and low >> sf are added (above sf 15: high >> (sf - 15) and low >> 15).
 *    Differences saturate, but for the last single one of `IdVarLow`, which wraps. A negative sf leaves the integers:
 *    S as in the forms above, val - S * 2^-(sf + 1), truncated in `Sfs`. `IdVarLow_16s32s_Sfs` stays in integers for
 *    every sf; `IdVarLowScaled` works in single over sums of two squares (two squares of -32768 wrap).
 *  - `BlockDVar`: each matrix row times its block's d in lanes (four; two in double), columns in order; lane by lane
 *    d[r] times that joins the lanes of S; upper pair to lower pair, lane 1 to lane 0. The end is val - S * 0.5, in
 *    double but for the 16-bit forms. `32f64f` widens the lanes of a row's product before they join. In 16 bits d
 *    saturates in groups of four and more and wraps in the last 1 to 3 columns; `Scaled`: val - (S * 0.5) * 2^-sf;
 *    `Sfs`: the lanes times 2^-sf, val - S * 0.5 truncated and saturated, where exactly 2147483648 gives -2147483648.
 *
 * Contexts. vornsBlockDMatrixInitAlloc copies a matrix: blockSizes[b] rows and columns for each of numBlocks blocks,
 * and rows, one pointer for each row of each block in order, to as many elements as its block has. Checks: a null
 * pointer `vornStsNullPtrErr`; numBlocks or a block size below 1 `vornStsSizeErr`; `vornStsMemAllocErr`. The context is
 * never changed afterwards and may be shared by threads; the caller's matrix need not outlive the call.
 * vornsBlockDMatrixFree releases it, whichever of the three made it; null gives `vornStsNullPtrErr`.
 *
 * Infinities and not-a-numbers go through the formulas. No alignment is required. Thread-safe.
 * @{
 */
/** A block-diagonal matrix of singles. */
typedef struct VornBlockDMatrix_32f VornBlockDMatrix_32f;
/** A block-diagonal matrix of doubles. */
typedef struct VornBlockDMatrix_64f VornBlockDMatrix_64f;
/** A block-diagonal matrix of 16-bit integers. */
typedef struct VornBlockDMatrix_16s VornBlockDMatrix_16s;

VornStatus vornsLogGaussSingle_32f(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                   Vorn32f* result, Vorn32f val);
VornStatus vornsLogGaussSingle_64f(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                   Vorn64f* result, Vorn64f val);
VornStatus vornsLogGaussSingle_32f64f(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                      Vorn64f* result, Vorn64f val);
VornStatus vornsLogGaussSingle_Scaled_16s32f(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                             Vorn32f* result, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussSingle_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                          Vorn32s* result, Vorn32s val, int scaleFactor);
VornStatus vornsLogGaussSingle_LowScaled_16s32f(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                                Vorn32f* result, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussSingle_Low_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                              Vorn32s* result, Vorn32s val, int scaleFactor);
VornStatus vornsLogGaussSingle_IdVar_32f(const Vorn32f* src, const Vorn32f* mean, int len, Vorn32f* result,
                                         Vorn32f val);
VornStatus vornsLogGaussSingle_IdVar_64f(const Vorn64f* src, const Vorn64f* mean, int len, Vorn64f* result,
                                         Vorn64f val);
VornStatus vornsLogGaussSingle_IdVar_32f64f(const Vorn32f* src, const Vorn32f* mean, int len, Vorn64f* result,
                                            Vorn64f val);
VornStatus vornsLogGaussSingle_IdVarScaled_16s32f(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32f* result,
                                                  Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussSingle_IdVar_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32s* result,
                                                Vorn32s val, int scaleFactor);
VornStatus vornsLogGaussSingle_IdVarLowScaled_16s32f(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32f* result,
                                                     Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussSingle_IdVarLow_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32s* result,
                                                   Vorn32s val, int scaleFactor);
VornStatus vornsLogGaussSingle_DirectVar_32f(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                             Vorn32f* result, Vorn32f val);
VornStatus vornsLogGaussSingle_DirectVar_64f(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                             Vorn64f* result, Vorn64f val);
VornStatus vornsLogGaussSingle_DirectVar_32f64f(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                                Vorn64f* result, Vorn64f val);
VornStatus vornsLogGaussSingle_DirectVarScaled_16s32f(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var,
                                                      int len, Vorn32f* result, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussSingle_DirectVar_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var,
                                                    int len, Vorn32s* result, Vorn32s val, int scaleFactor);
VornStatus vornsLogGaussSingle_BlockDVar_32f(const Vorn32f* src, const Vorn32f* mean,
                                             const VornBlockDMatrix_32f* context, int len, Vorn32f* result,
                                             Vorn32f val);
VornStatus vornsLogGaussSingle_BlockDVar_64f(const Vorn64f* src, const Vorn64f* mean,
                                             const VornBlockDMatrix_64f* context, int len, Vorn64f* result,
                                             Vorn64f val);
VornStatus vornsLogGaussSingle_BlockDVar_32f64f(const Vorn32f* src, const Vorn32f* mean,
                                                const VornBlockDMatrix_32f* context, int len, Vorn64f* result,
                                                Vorn64f val);
VornStatus vornsLogGaussSingle_BlockDVarScaled_16s32f(const Vorn16s* src, const Vorn16s* mean,
                                                      const VornBlockDMatrix_16s* context, int len, Vorn32f* result,
                                                      Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussSingle_BlockDVar_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean,
                                                    const VornBlockDMatrix_16s* context, int len, Vorn32s* result,
                                                    Vorn32s val, int scaleFactor);
VornStatus vornsBlockDMatrixInitAlloc_32f(VornBlockDMatrix_32f** result, const Vorn32f* const* rows,
                                          const int* blockSizes, int numBlocks);
VornStatus vornsBlockDMatrixInitAlloc_64f(VornBlockDMatrix_64f** result, const Vorn64f* const* rows,
                                          const int* blockSizes, int numBlocks);
VornStatus vornsBlockDMatrixInitAlloc_16s(VornBlockDMatrix_16s** result, const Vorn16s* const* rows,
                                          const int* blockSizes, int numBlocks);
VornStatus vornsBlockDMatrixFree_32f(VornBlockDMatrix_32f* context);
VornStatus vornsBlockDMatrixFree_64f(VornBlockDMatrix_64f* context);
VornStatus vornsBlockDMatrixFree_16s(VornBlockDMatrix_16s* context);
/** @} */

/**
 * @defgroup vornsr_multi_frame Multi-frame Gaussian scores
 * @brief The log density of many frames under one Gaussian, or of one frame under many Gaussians.
 *
 * Formula: score = val - S / 2, S = sum over j of (x[j] - m[j])^2 * v[j], with the feature vector x, the mean m and the
 * inverse variances v (the argument var), each of len elements. In the `IdVar` forms every v[j] is 1 and there is no
 * var. val is the caller's: the logarithm of the normalisation constant and of any weight. Gaussians with diagonal
 * covariance in speech recognition: Rabiner (1989).
 *
 *  - vornsLogGauss: height frames, the rows of src, against one Gaussian; result holds height scores.
 *  - vornsLogGaussMultiMix: one frame, src, against height Gaussians, the rows of mean and var; srcDst holds the val of
 *    each Gaussian on entry and its score on return, so a second call on the same array subtracts S / 2 again.
 *
 * `D2`: the rows lie step elements apart in one block; `D2L`: an array of row pointers, rows may repeat. Results must
 * not overlap the other arrays. Addresses need no alignment and change no bit.
 *
 * Checks, in this order: (`D2`) step below len `vornStsStrideErr`, even if a pointer is null; a null pointer
 * `vornStsNullPtrErr`; len or height below 1 `vornStsSizeErr`. After an error nothing has been written. There are no
 * warnings and no allocation. Thread-safe: no state. All builds give the same bits; they are those of the caller's
 * rounding mode, which comes back as it was. Infinities and not-a-numbers go through the formulas.
 *
 * Arithmetics, by name, each with its exact order. Every operation is rounded; -S is what accumulates, from zero.
 *
 *  - `32f`: one accumulator of four lanes a row; column j goes to lane j mod 4 as (x - m)^2 * v; then
 *    (lane 0 + lane 1) + (lane 2 + lane 3), and the last len mod 4 columns one by one. vornsLogGauss ends with
 *    0.5 * (2 * val - S), vornsLogGaussMultiMix with val + 0.5 * (-S).
 *  - `64f`: two lanes, column j to lane j mod 2; lane 0 + lane 1, then a last odd column; val + 0.5 * (-S).
 *    vornsLogGaussMultiMix_64f with height of 1000 and more: plain column order, 0.5 * (2 * val - S).
 *  - `Scaled_16s32f`: 16-bit data whose score counts in units of 2^-scaleFactor. In whole groups of eight columns the
 *    difference saturates to 16 bits, is squared in single and multiplied by v in single; column j goes to lane j
 *    mod 4. With `IdVar` the squares of two neighbours are added in 32 bits (two squares of -32768 wrap) and pair p of
 *    a group goes to lane p. The last len mod 8 columns do NOT saturate and go to lane 0 one by one. Then
 *    (lane 0 + lane 2) + (lane 1 + lane 3); val + (-S) * 2^-(scaleFactor + 1).
 *  - `16s32s..Sfs`: the same sum; divided by 2^(scaleFactor + 1), or multiplied by 2^-(scaleFactor + 1) where that
 *    exponent is not negative; val is added in single. The score is truncated toward zero without a clamp: out of
 *    range gives -2147483648. Only a last odd row (height odd) is clamped and rounded (by default to nearest even)
 *    instead, in vornsLogGauss_16s32s_D2Sfs, vornsLogGauss_16s32s_D2LSfs and vornsLogGaussMultiMix_16s32s_D2Sfs; the
 *    other forms truncate it as well.
 *  - `Low`, low precision: no float in the inner loop. The difference saturates; its square is split into its high
 *    16 bits and its low 16 bits halved (the lowest bit is lost); both are multiplied by v, and pairs of neighbours are
 *    summed in four 32-bit lanes that wrap: columns in groups of eight, then a pass of four (lanes 0 and 1), of two and
 *    of one (lane 0). At the end the high sums are shifted left by 15 - scaleFactor, the low ones right by scaleFactor,
 *    arithmetically; above 15 the high sums right by scaleFactor - 15 and the low ones right by 15. A last odd row is
 *    shifted after every group and pass instead, so it truncates differently. The lanes are added and val is added:
 *    as integers that wrap (`16s32s`), or after conversion to single (`16s32f`). `Low_16s32f` is `LowScaled_16s32f`
 *    with scaleFactor 0.
 *    A negative scaleFactor takes the sums of the other 16-bit forms, and the integer score is truncated;
 *    vornsLogGaussMultiMix_Low_16s32s truncates a last odd row before it adds val as an integer.
 *    `IdVarLow_16s32s` stays in integers: both sums are shifted left, by 15 - scaleFactor and by -scaleFactor.
 *    `IdVarLowScaled_16s32f` and `IdVarLow_16s32f` work in single: as `IdVarScaled`, with the last columns in saturated
 *    passes of four, two and one; the end is that of `16s32s`, left in single.
 *
 * scaleFactor may be any int: beyond the exponents of a single the power of two is an infinity or zero.
 *
 * @{
 */

/**
 * @defgroup vornsr_many_frames Many frames, one Gaussian
 * @brief For each frame, row i of src, under one Gaussian: result[i] = val - S / 2.
 *
 * The arithmetics by type code with their exact orders, D2 and D2L, the order of the checks and what is promised for
 * every form: @ref vornsr_multi_frame.
 * @{
 */
VornStatus vornsLogGauss_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, const Vorn32f* var, int len,
                                Vorn32f* result, int height, Vorn32f val);
VornStatus vornsLogGauss_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                 Vorn32f* result, int height, Vorn32f val);
VornStatus vornsLogGauss_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, const Vorn64f* var, int len,
                                Vorn64f* result, int height, Vorn64f val);
VornStatus vornsLogGauss_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                 Vorn64f* result, int height, Vorn64f val);
VornStatus vornsLogGauss_IdVar_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, int len, Vorn32f* result,
                                      int height, Vorn32f val);
VornStatus vornsLogGauss_IdVar_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, int len, Vorn32f* result,
                                       int height, Vorn32f val);
VornStatus vornsLogGauss_IdVar_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, int len, Vorn64f* result,
                                      int height, Vorn64f val);
VornStatus vornsLogGauss_IdVar_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, int len, Vorn64f* result,
                                       int height, Vorn64f val);
VornStatus vornsLogGauss_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var, int len,
                                      Vorn32s* result, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGauss_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                       Vorn32s* result, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGauss_Scaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                          int len, Vorn32f* result, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGauss_Scaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                           Vorn32f* result, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGauss_IdVar_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, int len, Vorn32s* result,
                                            int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGauss_IdVar_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, int len, Vorn32s* result,
                                             int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGauss_IdVarScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                               Vorn32f* result, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGauss_IdVarScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                Vorn32f* result, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGauss_Low_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                          int len, Vorn32s* result, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGauss_Low_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                           Vorn32s* result, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGauss_LowScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                             int len, Vorn32f* result, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGauss_LowScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                              int len, Vorn32f* result, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGauss_IdVarLow_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                               Vorn32s* result, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGauss_IdVarLow_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                Vorn32s* result, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGauss_IdVarLowScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                                  Vorn32f* result, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGauss_IdVarLowScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                   Vorn32f* result, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGauss_Low_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var, int len,
                                       Vorn32f* result, int height, Vorn32f val);
VornStatus vornsLogGauss_Low_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                        Vorn32f* result, int height, Vorn32f val);
VornStatus vornsLogGauss_IdVarLow_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len, Vorn32f* result,
                                            int height, Vorn32f val);
VornStatus vornsLogGauss_IdVarLow_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len, Vorn32f* result,
                                             int height, Vorn32f val);
/** @} */

/**
 * @defgroup vornsr_many_gaussians One frame, many Gaussians
 * @brief For one frame under each Gaussian, row i of mean and var: srcDst[i] = srcDst[i] - S / 2.
 *
 * srcDst holds the val of each Gaussian on entry and its score on return. The arithmetics by type code with their
 * exact orders, D2 and D2L, the order of the checks and what is promised for every form: @ref vornsr_multi_frame.
 * @{
 */
VornStatus vornsLogGaussMultiMix_32f_D2(const Vorn32f* mean, const Vorn32f* var, int step, const Vorn32f* src, int len,
                                        Vorn32f* srcDst, int height);
VornStatus vornsLogGaussMultiMix_32f_D2L(const Vorn32f* const* mean, const Vorn32f* const* var, const Vorn32f* src,
                                         int len, Vorn32f* srcDst, int height);
VornStatus vornsLogGaussMultiMix_64f_D2(const Vorn64f* mean, const Vorn64f* var, int step, const Vorn64f* src, int len,
                                        Vorn64f* srcDst, int height);
VornStatus vornsLogGaussMultiMix_64f_D2L(const Vorn64f* const* mean, const Vorn64f* const* var, const Vorn64f* src,
                                         int len, Vorn64f* srcDst, int height);
VornStatus vornsLogGaussMultiMix_16s32s_D2Sfs(const Vorn16s* mean, const Vorn16s* var, int step, const Vorn16s* src,
                                              int len, Vorn32s* srcDst, int height, int scaleFactor);
VornStatus vornsLogGaussMultiMix_16s32s_D2LSfs(const Vorn16s* const* mean, const Vorn16s* const* var,
                                               const Vorn16s* src, int len, Vorn32s* srcDst, int height,
                                               int scaleFactor);
VornStatus vornsLogGaussMultiMix_Scaled_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step, const Vorn16s* src,
                                                  int len, Vorn32f* srcDst, int height, int scaleFactor);
VornStatus vornsLogGaussMultiMix_Scaled_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                   const Vorn16s* src, int len, Vorn32f* srcDst, int height,
                                                   int scaleFactor);
VornStatus vornsLogGaussMultiMix_Low_16s32s_D2Sfs(const Vorn16s* mean, const Vorn16s* var, int step, const Vorn16s* src,
                                                  int len, Vorn32s* srcDst, int height, int scaleFactor);
VornStatus vornsLogGaussMultiMix_Low_16s32s_D2LSfs(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                   const Vorn16s* src, int len, Vorn32s* srcDst, int height,
                                                   int scaleFactor);
VornStatus vornsLogGaussMultiMix_LowScaled_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step,
                                                     const Vorn16s* src, int len, Vorn32f* srcDst, int height,
                                                     int scaleFactor);
VornStatus vornsLogGaussMultiMix_LowScaled_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                      const Vorn16s* src, int len, Vorn32f* srcDst, int height,
                                                      int scaleFactor);
VornStatus vornsLogGaussMultiMix_Low_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step, const Vorn16s* src,
                                               int len, Vorn32f* srcDst, int height);
VornStatus vornsLogGaussMultiMix_Low_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                const Vorn16s* src, int len, Vorn32f* srcDst, int height);
/** @} */

/** @} */

/**
 * @defgroup vornsr_mixtures Mixtures
 * @brief Gaussian scores folded as they are made: the best so far, the log-sum with what is there, the score of a
 * mixture.
 *
 * With score(i) that of group multi_frame for row i in the same arithmetic, bit for bit unless said otherwise:
 *
 *     vornsLogGaussMax, vornsLogGaussMaxMultiMix:  srcDst[i] = max(srcDst[i], score(i))
 *     vornsLogGaussAdd, vornsLogGaussAddMultiMix:  srcDst[i] = ln(exp(srcDst[i]) + exp(score(i)))
 *     vornsLogGaussMixture:                        result    = ln of the sum over i of exp(score(i))
 *
 * vornsLogGaussMax and vornsLogGaussAdd take height frames, the rows of src, and one Gaussian with its val. The others
 * take one frame, src, and height Gaussians, the rows of mean and var, with a val each. `D2`, `D2L`, `IdVar` and the
 * arithmetics are those of group multi_frame. Results must not overlap the other arrays.
 *
 * Checks of the `D2` forms, in this order:
 *  - stride, pointers, sizes: vornsLogGaussMax, vornsLogGaussAdd, their MultiMix forms, and vornsLogGaussMixture of
 *    16-bit data;
 *  - pointers, stride, sizes: vornsLogGaussMixture_32f_D2, _64f_D2, _IdVar_32f_D2, _IdVar_64f_D2;
 *  - pointers, sizes, stride: vornsLogGaussMaxMultiMix_Scaled_16s32f_D2, _LowScaled_16s32f_D2.
 *
 * `D2L` forms: pointers, sizes. Step below len is `vornStsStrideErr`, a null pointer `vornStsNullPtrErr`, len or height
 * below 1 `vornStsSizeErr`. After an error nothing has been written. There are no warnings and no allocation.
 * Thread-safe: no state. All builds give the same bits.
 *
 * Maximum: an old value stays unless the score is greater; so it stays beside a score that is not a number, and one
 * that is not a number stays for good.
 *  - vornsLogGaussMax_IdVar_64f and vornsLogGaussMaxMultiMix_64f with height of 1000 and more: plain column order,
 *    0.5 * (2 * val - S).
 *  - `16s32s..Sfs`: all arithmetic truncates toward zero, whatever the caller's rounding mode, which comes back at the
 *    end; only the val of many frames is converted to single in the caller's mode. The score,
 *    val + (-S) * 2^-(scaleFactor + 1), is clamped to 32 bits, the old value is converted to single, and the maximum is
 *    taken in single and truncated: an old value of more than 24 bits changes even where it stays. A zero sum times an
 *    infinite power of two is no number; it is clamped to 2147483648, which stores -2147483648.
 *  - `Low_16s32s..Sfs` compares integers and keeps an old value exactly; with a negative scaleFactor it works in
 *    single, rounded to nearest whatever the caller's mode. `IdVarLow_16s32s..Sfs` always compares integers.
 *
 * Log-add and mixture: with a score, a val or an old value that is not a number the result is not a number either.
 *
 * Log-add: the floors and polynomials of vornsLogAdd (group logarithm_domain). Frames are taken in runs of 128,
 * Gaussians in runs of 100, and each run is log-added as one vector. vornsLogGaussAdd_32f_D2 and _IdVar_32f_D2 with len
 * below 4 log-add one by one with the polynomials in double, (m + f1 * d) + f0, rounded to single once.
 * vornsLogGaussAddMultiMix_64f with height of 1000 and more scores in plain column order, 0.5 * (2 * val - S), and
 * counts a difference exactly on a split to the lower interval throughout.
 *
 * Mixture: Gaussians are summed in runs of 100; each run is one vornsLogSum, in whose front stands the value of the
 * runs before. A log-sum is not associative, so the runs are part of the result. The `IdVar` forms score each Gaussian
 * as vornsLogGaussSingle_IdVar does; vornsLogGaussMixture_IdVar_32f_D2 scores with 0.5 * (2 * val - S) in four lanes
 * and log-adds in the order of the Gaussians, without runs, as vornsLogGaussAdd_32f_D2 does below len 4.
 *
 * @{
 */

/**
 * @defgroup vornsr_maxima_over_frames Maxima over frames
 * @brief Over frames, the rows of src, under one Gaussian: srcDst[i] = max(srcDst[i], score(i)).
 *
 * The comparison, the integer forms and the order of the checks: @ref vornsr_mixtures. The scores:
 * @ref vornsr_multi_frame.
 * @{
 */
VornStatus vornsLogGaussMax_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, const Vorn32f* var, int len,
                                   Vorn32f* srcDst, int height, Vorn32f val);
VornStatus vornsLogGaussMax_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                    Vorn32f* srcDst, int height, Vorn32f val);
VornStatus vornsLogGaussMax_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, const Vorn64f* var, int len,
                                   Vorn64f* srcDst, int height, Vorn64f val);
VornStatus vornsLogGaussMax_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                    Vorn64f* srcDst, int height, Vorn64f val);
VornStatus vornsLogGaussMax_Scaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                             int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussMax_Scaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                              int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussMax_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var, int len,
                                         Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGaussMax_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                          Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGaussMax_IdVar_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, int len, Vorn32f* srcDst,
                                         int height, Vorn32f val);
VornStatus vornsLogGaussMax_IdVar_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, int len, Vorn32f* srcDst,
                                          int height, Vorn32f val);
VornStatus vornsLogGaussMax_IdVar_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, int len, Vorn64f* srcDst,
                                         int height, Vorn64f val);
VornStatus vornsLogGaussMax_IdVar_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, int len, Vorn64f* srcDst,
                                          int height, Vorn64f val);
VornStatus vornsLogGaussMax_IdVarScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                                  Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussMax_IdVarScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                   Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussMax_IdVar_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                               Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGaussMax_IdVar_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGaussMax_LowScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                                int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussMax_LowScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                                 int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussMax_Low_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                             int len, Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGaussMax_Low_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                              int len, Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGaussMax_IdVarLow_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                                  Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGaussMax_IdVarLow_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                   Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor);
VornStatus vornsLogGaussMax_IdVarLowScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                                     Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussMax_IdVarLowScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                      Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_maxima_over_gaussians Maxima over Gaussians
 * @brief Over Gaussians, the rows of mean and var, for one frame: srcDst[i] = max(srcDst[i], score(i)).
 *
 * The comparison, the integer forms and the order of the checks: @ref vornsr_mixtures. The scores:
 * @ref vornsr_multi_frame.
 * @{
 */
VornStatus vornsLogGaussMaxMultiMix_32f_D2(const Vorn32f* mean, const Vorn32f* var, int step, const Vorn32f* src,
                                           int len, const Vorn32f* val, Vorn32f* srcDst, int height);
VornStatus vornsLogGaussMaxMultiMix_32f_D2L(const Vorn32f* const* mean, const Vorn32f* const* var, const Vorn32f* src,
                                            int len, const Vorn32f* val, Vorn32f* srcDst, int height);
VornStatus vornsLogGaussMaxMultiMix_64f_D2(const Vorn64f* mean, const Vorn64f* var, int step, const Vorn64f* src,
                                           int len, const Vorn64f* val, Vorn64f* srcDst, int height);
VornStatus vornsLogGaussMaxMultiMix_64f_D2L(const Vorn64f* const* mean, const Vorn64f* const* var, const Vorn64f* src,
                                            int len, const Vorn64f* val, Vorn64f* srcDst, int height);
VornStatus vornsLogGaussMaxMultiMix_Scaled_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step,
                                                     const Vorn16s* src, int len, const Vorn32f* val, Vorn32f* srcDst,
                                                     int height, int scaleFactor);
VornStatus vornsLogGaussMaxMultiMix_Scaled_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                      const Vorn16s* src, int len, const Vorn32f* val, Vorn32f* srcDst,
                                                      int height, int scaleFactor);
VornStatus vornsLogGaussMaxMultiMix_16s32s_D2Sfs(const Vorn16s* mean, const Vorn16s* var, int step, const Vorn16s* src,
                                                 int len, const Vorn32s* val, Vorn32s* srcDst, int height,
                                                 int scaleFactor);
VornStatus vornsLogGaussMaxMultiMix_16s32s_D2LSfs(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                  const Vorn16s* src, int len, const Vorn32s* val, Vorn32s* srcDst,
                                                  int height, int scaleFactor);
VornStatus vornsLogGaussMaxMultiMix_LowScaled_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step,
                                                        const Vorn16s* src, int len, const Vorn32f* val,
                                                        Vorn32f* srcDst, int height, int scaleFactor);
VornStatus vornsLogGaussMaxMultiMix_LowScaled_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                         const Vorn16s* src, int len, const Vorn32f* val,
                                                         Vorn32f* srcDst, int height, int scaleFactor);
VornStatus vornsLogGaussMaxMultiMix_Low_16s32s_D2Sfs(const Vorn16s* mean, const Vorn16s* var, int step,
                                                     const Vorn16s* src, int len, const Vorn32s* val, Vorn32s* srcDst,
                                                     int height, int scaleFactor);
VornStatus vornsLogGaussMaxMultiMix_Low_16s32s_D2LSfs(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                      const Vorn16s* src, int len, const Vorn32s* val, Vorn32s* srcDst,
                                                      int height, int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_added_scores Log-added scores
 * @brief Over frames, or in the `MultiMix` forms over Gaussians: srcDst[i] = ln(exp(srcDst[i]) + exp(score(i))).
 *
 * The log-add with its runs, and the order of the checks: @ref vornsr_mixtures. The scores: @ref vornsr_multi_frame.
 * @{
 */
VornStatus vornsLogGaussAdd_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, const Vorn32f* var, int len,
                                   Vorn32f* srcDst, int height, Vorn32f val);
VornStatus vornsLogGaussAdd_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                    Vorn32f* srcDst, int height, Vorn32f val);
VornStatus vornsLogGaussAdd_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, const Vorn64f* var, int len,
                                   Vorn64f* srcDst, int height, Vorn64f val);
VornStatus vornsLogGaussAdd_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                    Vorn64f* srcDst, int height, Vorn64f val);
VornStatus vornsLogGaussAdd_Scaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                             int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussAdd_Scaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                              int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussAdd_IdVar_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, int len, Vorn32f* srcDst,
                                         int height, Vorn32f val);
VornStatus vornsLogGaussAdd_IdVar_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, int len, Vorn32f* srcDst,
                                          int height, Vorn32f val);
VornStatus vornsLogGaussAdd_IdVar_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, int len, Vorn64f* srcDst,
                                         int height, Vorn64f val);
VornStatus vornsLogGaussAdd_IdVar_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, int len, Vorn64f* srcDst,
                                          int height, Vorn64f val);
VornStatus vornsLogGaussAdd_IdVarScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                                  Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussAdd_IdVarScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                   Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussAdd_LowScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                                int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussAdd_LowScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                                 int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussAdd_IdVarLowScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                                     Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussAdd_IdVarLowScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                      Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor);
VornStatus vornsLogGaussAddMultiMix_32f_D2(const Vorn32f* mean, const Vorn32f* var, int step, const Vorn32f* src,
                                           int len, const Vorn32f* val, Vorn32f* srcDst, int height);
VornStatus vornsLogGaussAddMultiMix_32f_D2L(const Vorn32f* const* mean, const Vorn32f* const* var, const Vorn32f* src,
                                            int len, const Vorn32f* val, Vorn32f* srcDst, int height);
VornStatus vornsLogGaussAddMultiMix_64f_D2(const Vorn64f* mean, const Vorn64f* var, int step, const Vorn64f* src,
                                           int len, const Vorn64f* val, Vorn64f* srcDst, int height);
VornStatus vornsLogGaussAddMultiMix_64f_D2L(const Vorn64f* const* mean, const Vorn64f* const* var, const Vorn64f* src,
                                            int len, const Vorn64f* val, Vorn64f* srcDst, int height);
VornStatus vornsLogGaussAddMultiMix_Scaled_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step,
                                                     const Vorn16s* src, int len, const Vorn32f* val, Vorn32f* srcDst,
                                                     int height, int scaleFactor);
VornStatus vornsLogGaussAddMultiMix_Scaled_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                      const Vorn16s* src, int len, const Vorn32f* val, Vorn32f* srcDst,
                                                      int height, int scaleFactor);
VornStatus vornsLogGaussAddMultiMix_LowScaled_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step,
                                                        const Vorn16s* src, int len, const Vorn32f* val,
                                                        Vorn32f* srcDst, int height, int scaleFactor);
VornStatus vornsLogGaussAddMultiMix_LowScaled_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                         const Vorn16s* src, int len, const Vorn32f* val,
                                                         Vorn32f* srcDst, int height, int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_mixture_scores The score of a mixture
 * @brief For one frame: result = ln of the sum over the Gaussians of exp(score(i)).
 *
 * The runs in which Gaussians are summed, which are part of the result, and the order of the checks:
 * @ref vornsr_mixtures. The scores: @ref vornsr_multi_frame.
 * @{
 */
VornStatus vornsLogGaussMixture_32f_D2(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int height,
                                       int step, int len, const Vorn32f* val, Vorn32f* result);
VornStatus vornsLogGaussMixture_32f_D2L(const Vorn32f* src, const Vorn32f* const* mean, const Vorn32f* const* var,
                                        int height, int len, const Vorn32f* val, Vorn32f* result);
VornStatus vornsLogGaussMixture_64f_D2(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var, int height,
                                       int step, int len, const Vorn64f* val, Vorn64f* result);
VornStatus vornsLogGaussMixture_64f_D2L(const Vorn64f* src, const Vorn64f* const* mean, const Vorn64f* const* var,
                                        int height, int len, const Vorn64f* val, Vorn64f* result);
VornStatus vornsLogGaussMixture_Scaled_16s32f_D2(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var,
                                                 int height, int step, int len, const Vorn32f* val, Vorn32f* result,
                                                 int scaleFactor);
VornStatus vornsLogGaussMixture_Scaled_16s32f_D2L(const Vorn16s* src, const Vorn16s* const* mean,
                                                  const Vorn16s* const* var, int height, int len, const Vorn32f* val,
                                                  Vorn32f* result, int scaleFactor);
VornStatus vornsLogGaussMixture_LowScaled_16s32f_D2(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var,
                                                    int height, int step, int len, const Vorn32f* val, Vorn32f* result,
                                                    int scaleFactor);
VornStatus vornsLogGaussMixture_LowScaled_16s32f_D2L(const Vorn16s* src, const Vorn16s* const* mean,
                                                     const Vorn16s* const* var, int height, int len, const Vorn32f* val,
                                                     Vorn32f* result, int scaleFactor);
VornStatus vornsLogGaussMixture_IdVar_32f_D2(const Vorn32f* src, const Vorn32f* mean, int height, int step, int len,
                                             const Vorn32f* val, Vorn32f* result);
VornStatus vornsLogGaussMixture_IdVar_32f_D2L(const Vorn32f* src, const Vorn32f* const* mean, int height, int len,
                                              const Vorn32f* val, Vorn32f* result);
VornStatus vornsLogGaussMixture_IdVar_64f_D2(const Vorn64f* src, const Vorn64f* mean, int height, int step, int len,
                                             const Vorn64f* val, Vorn64f* result);
VornStatus vornsLogGaussMixture_IdVar_64f_D2L(const Vorn64f* src, const Vorn64f* const* mean, int height, int len,
                                              const Vorn64f* val, Vorn64f* result);
VornStatus vornsLogGaussMixture_IdVarScaled_16s32f_D2(const Vorn16s* src, const Vorn16s* mean, int height, int step,
                                                      int len, const Vorn32f* val, Vorn32f* result, int scaleFactor);
VornStatus vornsLogGaussMixture_IdVarScaled_16s32f_D2L(const Vorn16s* src, const Vorn16s* const* mean, int height,
                                                       int len, const Vorn32f* val, Vorn32f* result, int scaleFactor);
VornStatus vornsLogGaussMixture_IdVarLowScaled_16s32f_D2(const Vorn16s* src, const Vorn16s* mean, int height, int step,
                                                         int len, const Vorn32f* val, Vorn32f* result, int scaleFactor);
VornStatus vornsLogGaussMixture_IdVarLowScaled_16s32f_D2L(const Vorn16s* src, const Vorn16s* const* mean, int height,
                                                          int len, const Vorn32f* val, Vorn32f* result,
                                                          int scaleFactor);
/** @} */

/** @} */

/**
 * @defgroup vornsr_selection Selection of Gaussians
 * @brief Shortlists, tables of one bit a Gaussian, and mixtures scored over the selected ones.
 *
 * A large mixture is scored in part: a coarse quantiser maps each frame to a few codewords, a shortlist says which
 * Gaussians matter near a codeword, a sign table joins the shortlists of a frame's codewords, and the mixture is scored
 * over the Gaussians that the table selects.
 *
 * Bits. The first bit of a row is the most significant one of its first byte: bit p stands in byte p / 8 under the mask
 * 128 >> (p % 8). A shortlist is an array of rows, one a codeword, of step bytes each; its field is the width bits from
 * bit number start on. A sign table is one block of frames rows of (width + 7) / 8 bytes: bit g of row f says that
 * Gaussian g is selected for frame f. Bits of its last byte behind the width are 0 when built and ignored when used.
 *
 * vornsFillShortlist toggles bits (it does not clear the rows, and an index that comes twice cancels):
 *
 *     Row, RowVar:        for each row r, count (counts[r]) indices i: bit start + i of rows[r]
 *     Column, ColumnVar:  for each c below width, count (counts[c]) indices i: bit start + c of rows[i]
 *
 * Indices stand one list behind the other. vornsBuildSignTable_8u1u: bit b of table row f is set if bit start + b of
 * rows[i] is set for any i of the frame's count indices; the table need not be cleared, and no byte outside the rows'
 * step bytes is read. vornsBuildSignTable_Var_8u1u differs in two ways, kept so on purpose: the counts[f] indices of
 * every frame are taken from the beginning of the array, and any hit sets the first bit of the table's row, whatever
 * its place; the other bits stay 0.
 *
 * Checks of both, in this order: a null pointer `vornStsNullPtrErr`; a count, numRows, step, width or frames below 1
 * or start below 0 `vornStsSizeErr`; step below (start + width + 7) / 8 `vornStsStrideErr`; any index below 0, or not
 * below what it counts (width in Row and RowVar, numRows elsewhere), `vornStsBadArgErr`. All indices are tested before
 * anything is written. An entry of counts below 1 is `vornStsSizeErr`: before the stride in vornsFillShortlist, behind
 * it in vornsBuildSignTable_Var_8u1u. The rows' pointers themselves are not tested.
 *
 * vornsLogGaussMixture_Select, for each frame f (row f of src):
 *
 *     result[f] = ln of the sum of exp(score(f, g)) over the selected Gaussians g; floor where none is selected
 *
 * score(f, g) is that of the one-vector function (@ref vornsr_single_frame) of the same variant with row g of mean and
 * of var and with val[g]; scaleFactor and its units are those of the `Scaled` forms there. mean, var and val have width
 * entries, result has frames. The scores of a frame are folded in rising g, each by a log-add of one pair as
 * vornsLogAdd_32f makes it (@ref vornsr_logarithm_domain); a single selected Gaussian gives its score as it is. The
 * number of selections is kept in 16 bits: after 65536 of them a frame counts as one without any. All builds give the
 * same bits.
 *
 * In the D2 forms src, mean and var are blocks whose rows start step elements apart. Checks, in this order: a null
 * pointer `vornStsNullPtrErr`; len, width or frames below 1 `vornStsSizeErr`; D2: step below len `vornStsStrideErr`;
 * D2L: a null row of src, mean or var, selected or not, `vornStsNullPtrErr`; memory for the counters of the frames not
 * obtained `vornStsMemAllocErr`. After an error nothing has been written. result must not overlap any input. There are
 * no warnings.
 *
 * Literature: selection of Gaussians by vector quantisation, Bocchieri (1993).
 * @{
 */
VornStatus vornsFillShortlist_Row_1u(const Vorn32s* indices, int width, int count, Vorn8u* const* rows, int numRows,
                                     int step, int start);
VornStatus vornsFillShortlist_RowVar_1u(const Vorn32s* indices, const Vorn32s* counts, int width, Vorn8u* const* rows,
                                        int numRows, int step, int start);
VornStatus vornsFillShortlist_Column_1u(const Vorn32s* indices, int count, Vorn8u* const* rows, int numRows, int step,
                                        int start, int width);
VornStatus vornsFillShortlist_ColumnVar_1u(const Vorn32s* indices, const Vorn32s* counts, Vorn8u* const* rows,
                                           int numRows, int step, int start, int width);
VornStatus vornsBuildSignTable_8u1u(const Vorn32s* indices, int count, const Vorn8u* const* rows, int numRows, int step,
                                    int start, Vorn8u* sign, int frames, int width);
VornStatus vornsBuildSignTable_Var_8u1u(const Vorn32s* indices, const Vorn32s* counts, const Vorn8u* const* rows,
                                        int numRows, int step, int start, Vorn8u* sign, int frames, int width);
VornStatus vornsLogGaussMixture_Select_32f_D2(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int step,
                                              int len, const Vorn32f* val, const Vorn8u* sign, int width,
                                              Vorn32f* result, int frames, Vorn32f floor);
VornStatus vornsLogGaussMixture_Select_32f_D2L(const Vorn32f* const* src, const Vorn32f* const* mean,
                                               const Vorn32f* const* var, int len, const Vorn32f* val,
                                               const Vorn8u* sign, int width, Vorn32f* result, int frames,
                                               Vorn32f floor);
VornStatus vornsLogGaussMixture_SelectIdVar_32f_D2(const Vorn32f* src, const Vorn32f* mean, int step, int len,
                                                   const Vorn32f* val, const Vorn8u* sign, int width, Vorn32f* result,
                                                   int frames, Vorn32f floor);
VornStatus vornsLogGaussMixture_SelectIdVar_32f_D2L(const Vorn32f* const* src, const Vorn32f* const* mean, int len,
                                                    const Vorn32f* val, const Vorn8u* sign, int width, Vorn32f* result,
                                                    int frames, Vorn32f floor);
VornStatus vornsLogGaussMixture_SelectScaled_16s32f_D2(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var,
                                                       int step, int len, const Vorn32f* val, const Vorn8u* sign,
                                                       int width, Vorn32f* result, int frames, Vorn32f floor,
                                                       int scaleFactor);
VornStatus vornsLogGaussMixture_SelectScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* const* mean,
                                                        const Vorn16s* const* var, int len, const Vorn32f* val,
                                                        const Vorn8u* sign, int width, Vorn32f* result, int frames,
                                                        Vorn32f floor, int scaleFactor);
VornStatus vornsLogGaussMixture_SelectIdVarScaled_16s32f_D2(const Vorn16s* src, const Vorn16s* mean, int step, int len,
                                                            const Vorn32f* val, const Vorn8u* sign, int width,
                                                            Vorn32f* result, int frames, Vorn32f floor,
                                                            int scaleFactor);
VornStatus vornsLogGaussMixture_SelectIdVarScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* const* mean,
                                                             int len, const Vorn32f* val, const Vorn8u* sign, int width,
                                                             Vorn32f* result, int frames, Vorn32f floor,
                                                             int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_distances Distances
 * @brief Mahalanobis distances of vectors from Gaussians, Bhattacharyya distances of two Gaussians.
 *
 * Vectors have len elements; Gaussians have diagonal covariances. Results must not overlap the other arrays. No
 * alignment is required. Thread-safe: no state. All builds give the same bits; they are those of the caller's rounding
 * mode, which comes back as it was. After an error nothing has been written.
 *
 * Mahalanobis distance, without root and without factor 1/2: D = sum over j of (x[j] - m[j])^2 * v[j], var holds the
 * inverse variances v. It is the S of @ref vornsr_single_frame and @ref vornsr_multi_frame, summed from +0 with its own
 * sign, so that a vector at the mean has the distance +0 (for finite v that are not below zero).
 *
 *  - vornsMahDistSingle: one vector, src, from one Gaussian.
 *  - vornsMahDist: height vectors, the rows of src, from one Gaussian; result holds height distances.
 *  - vornsMahDistMultiMix: one vector, src, from height Gaussians, the rows of mean and var.
 *
 * `D2`: the rows lie step elements apart in one block; `D2L`: an array of row pointers, rows may repeat. Checks, in
 * this order: (`D2`) step below len `vornStsStrideErr`, even if a pointer is null; a null pointer `vornStsNullPtrErr`;
 * len or height below 1 `vornStsSizeErr`. There are no warnings and no allocation. Infinities and not-a-numbers go
 * through the formula.
 *
 * Exact orders. The square comes first, then the product with v; every operation is rounded by itself.
 *  - vornsMahDistSingle_32f and _16s32f (whose elements become singles; no difference saturates) look at the addresses:
 *     - src, mean and var all on 16 bytes: the sum of vornsLogGaussSingle_32f, which has two accumulators of four
 *       lanes;
 *     - else, from 11 elements on and with mean and var on multiples of their element's size: the elements in front of
 *       the mean's next 16-byte address, in order, open lane 0 of the first accumulator; of each 8 elements then four
 *       go to the first accumulator and four to the second; both added, (0 + 1) + (2 + 3), the rest in order;
 *     - else in order.
 *  - vornsMahDistSingle_64f and _32f64f (in double): the sum of vornsLogGaussSingle_64f, for which the address of var
 *    counts.
 *  - vornsMahDistSingle_16s32s_Sfs: the sum is an exact integer (modulo 2^64, which up to 65538 elements cannot reach);
 *    then D * 2^-scaleFactor for any int, without rounding: a right shift drops bits, which rounds towards minus
 *    infinity, and a left shift loses none. The result saturates.
 *  - Rows: the sums of vornsLogGauss_32f_D2 and vornsLogGauss_64f_D2 whatever the height: column j goes to lane j mod 4
 *    (in double j mod 2); (lane 0 + lane 1) + (lane 2 + lane 3) or lane 0 + lane 1; the columns behind whole groups
 *    one by one.
 *
 * Bhattacharyya distance of (mean1, var1) and (mean2, var2); here var1 and var2 are variances:
 *
 *     D = K / 4 + (L / 2 - len * 1.386294 / 2) / 2,    K = sum of (mean1[j] - mean2[j])^2 / (var1[j] + var2[j])
 *                                                      L = sum of ln((var1[j] + var2[j])^2 / (var1[j] * var2[j]))
 *
 * with 1.386294 for ln 4, so that equal Gaussians are about, not exactly, 0 apart. `SLog` is for callers with many
 * pairs, who keep the sums of the logarithms of each Gaussian's variances:
 *
 *     D = (L' - len * 0.693147) / 2 - (sumLog1 + sumLog2) / 4 + K / 4,    L' = sum of ln(var1[j] + var2[j])
 *
 * Every mean and every variance has to be above zero: the arrays are scanned in groups of four columns, then column by
 * column, means and variances alike, and the first group with a fault decides. Checks, in this order: a null pointer
 * `vornStsNullPtrErr`; len below 1 `vornStsSizeErr`; then the warnings: a value below zero in that group
 * `vornStsLnNegArg` with a not-a-number for the result, otherwise a zero `vornStsLnZeroArg` with +infinity; then
 * scratch memory (len singles, or len / 4 + 1 doubles) not obtained `vornStsMemAllocErr`. Not-a-numbers pass the scan.
 * They, and infinite terms, give a not-a-number and `vornStsNoErr`.
 *
 *  - `32f`: K in four lanes, the last len mod 4 columns to lane 0, (0 + 1) + (2 + 3). The terms of L are
 *    (2 + r) + 1 / r with r = var2 / var1, in single, those of L' var1 + var2; vornsSumLn_32f sums their logarithms.
 *    Singles are L / 2, K / 4 and (sumLog1 + sumLog2) / 4 (L' itself is widened); all other steps are in double, and D
 *    is rounded once more.
 *  - `32f64f`: all in double after widening, but for (sumLog1 + sumLog2) / 4, a single. K in four lanes,
 *    (0 + 2) + (1 + 3), then the last len mod 4 columns in order. The terms of L are the ratios, those of L' the sums.
 *    Four columns share a product, (0 * 2) * (1 * 3), which the last len mod 4 join one by one; vornsSumLn_64f sums
 *    their logarithms. A product of extreme ratios beyond the doubles is infinite.
 *
 * Literature: Mahalanobis (1936); Bhattacharyya (1943).
 * @{
 */
VornStatus vornsMahDistSingle_32f(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                  Vorn32f* result);
VornStatus vornsMahDistSingle_64f(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                  Vorn64f* result);
VornStatus vornsMahDistSingle_32f64f(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                     Vorn64f* result);
VornStatus vornsMahDistSingle_16s32f(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                     Vorn32f* result);
VornStatus vornsMahDistSingle_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                         Vorn32s* result, int scaleFactor);
VornStatus vornsMahDist_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, const Vorn32f* var, int len,
                               Vorn32f* result, int height);
VornStatus vornsMahDist_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, const Vorn64f* var, int len,
                               Vorn64f* result, int height);
VornStatus vornsMahDist_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                Vorn32f* result, int height);
VornStatus vornsMahDist_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                Vorn64f* result, int height);
VornStatus vornsMahDistMultiMix_32f_D2(const Vorn32f* mean, const Vorn32f* var, int step, const Vorn32f* src, int len,
                                       Vorn32f* result, int height);
VornStatus vornsMahDistMultiMix_64f_D2(const Vorn64f* mean, const Vorn64f* var, int step, const Vorn64f* src, int len,
                                       Vorn64f* result, int height);
VornStatus vornsMahDistMultiMix_32f_D2L(const Vorn32f* const* mean, const Vorn32f* const* var, const Vorn32f* src,
                                        int len, Vorn32f* result, int height);
VornStatus vornsMahDistMultiMix_64f_D2L(const Vorn64f* const* mean, const Vorn64f* const* var, const Vorn64f* src,
                                        int len, Vorn64f* result, int height);
VornStatus vornsBhatDist_32f(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                             int len, Vorn32f* result);
VornStatus vornsBhatDist_32f64f(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                                int len, Vorn64f* result);
VornStatus vornsBhatDistSLog_32f(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                                 int len, Vorn32f* result, Vorn32f sumLog1, Vorn32f sumLog2);
VornStatus vornsBhatDistSLog_32f64f(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2,
                                    const Vorn32f* var2, int len, Vorn64f* result, Vorn32f sumLog1, Vorn32f sumLog2);
/** @} */

/**
 * @defgroup vornsr_indexed_rows Sums of indexed rows
 * @brief Chosen rows of a matrix added to a constant.
 *
 * For each column j from 0 to len - 1: dst[j] = weight + sum over i from 0 to rows - 1 of
 * src[(ind[i] + addInd[i]) * step + offset + j]. src has height rows, step elements apart; a row may be chosen more
 * than once. ind[i] may be below zero where addInd[i] brings the row number back into the matrix. Each column's sum
 * begins with weight and takes the rows in their order, in single. dst must not overlap the other arrays.
 *
 * Checks, in this order: a null pointer `vornStsNullPtrErr`; rows, height or len below 1 or offset below 0
 * `vornStsSizeErr`; step below offset + len `vornStsStrideErr`; any row number below 0 or not below height
 * `vornStsSizeErr`. After an error nothing has been written. There are no warnings and no allocation. Infinities and
 * not-a-numbers go through the sums.
 *
 * No alignment is required, and none changes a bit. All builds give the same bits; they are those of the caller's
 * rounding mode. Thread-safe: no state.
 * @{
 */
VornStatus vornsAddNRows_32f_D2(const Vorn32f* src, int height, int offset, int step, const Vorn32s* ind,
                                const Vorn16u* addInd, int rows, Vorn32f* dst, int len, Vorn32f weight);
/** @} */

/**
 * @defgroup vornsr_warping Dynamic time warping
 * @brief The cost of the best alignment of two sequences of vectors.
 *
 * The sequences have height1 and height2 rows of width elements. The one with more rows is called long, with N rows,
 * the other short, with M rows; at equal heights src1 is long. A path takes every row of long in turn and moves by
 * none, one or two rows of short from one to the next:
 *
 *     cost(0, j) = distance(0, j)
 *     cost(i, j) = distance(i, j) + min(cost(i - 1, j), cost(i - 1, j - 1), cost(i - 1, j - 2))
 *     result     = the least cost(N - 1, j)
 *
 * So a path may begin and end at several rows of short, and swapping sequences of unequal heights changes nothing.
 *
 * Distance: Euclidean, the root of the sum over the columns of (long - short)^2. Differences and squares are singles.
 * Up to 13 columns they are summed in single, in groups of four columns, (0 + 1) + (2 + 3) each, the groups in order;
 * the columns that the last group lacks count as zeros. Above 13 columns the squares are summed in double in order of
 * the columns, and the root is taken in double and rounded to single. Costs are singles. All builds give the same
 * bits.
 *
 * Band: d = delta, or M - 1 where delta is not below M. In the first row j runs from 0 to d. In row i, j stays
 *  - at or below 2 i + d while 3 i is below 2 M - N, then at or below M + d + floor((i - N - 1) / 2); at most M - 1;
 *  - at or above i / 2 - d, and from 3 i above 2 (2 N - M) - 2 on at or above M - d + 2 (i - N) + 1; at least 0:
 * a parallelogram of slopes 2 and 1/2, widened by d. A negative delta leaves no path.
 *
 * Beam: behind each row but the first, the columns at the two ends of what is left of it are dropped as long as their
 * cost is above the row's least cost + beam + 1.1920929e-07; the least one stays. A beam below 0 or not a number counts
 * as 0. Work is in proportion to the columns that band and beam leave.
 *
 * The result is 3.4028235e38, the largest single, where no path exists: where the sequences are too different for the
 * band, and where both have one row, which is no path at all. A least cost that reaches it, or infinity, ends the
 * search and is the result. For data with not-a-numbers no result is promised; the call ends and memory is safe.
 *
 * In the integer forms elements and beam are converted to single, and the result is converted as by
 * vornsConvert_32f32s_Sfs with vornRndNear and scaleFactor: times 2^-scaleFactor, rounded to nearest in every rounding
 * mode of the caller, saturated. No path gives 2147483647 unless the scale factor makes it smaller.
 *
 * Checks, in this order: src1, src2 or result null `vornStsNullPtrErr`; height1, height2 or width below 1, or in the D2
 * forms a step below width, `vornStsSizeErr`. The row pointers of the D2L forms are not tested. Both sequences of a D2
 * form have the same step.
 *
 * Memory. Costs and band count as 2 x (M + 8 rounded down to a multiple of 4) + 2 x (N rounded up to one) words: up to
 * 512 of them a float form takes no memory, and above that one block. D2 takes another for row pointers where the
 * sequences have more than 256 rows together. The integer forms always take some. What is not obtained is
 * `vornStsMemAllocErr`, save that vornsDTW_L2_32f_D2 returns `vornStsNoErr` where it misses the block of the words,
 * which is kept so on purpose. Either way result is untouched and nothing is lost.
 *
 * Literature: Sakoe and Chiba (1978); slope constraints, Itakura (1975).
 * @{
 */
VornStatus vornsDTW_L2_32f_D2L(const Vorn32f* const* src1, int height1, const Vorn32f* const* src2, int height2,
                               int width, Vorn32f* result, int delta, Vorn32f beam);
VornStatus vornsDTW_L2_32f_D2(const Vorn32f* src1, int height1, const Vorn32f* src2, int height2, int width, int step,
                              Vorn32f* result, int delta, Vorn32f beam);
VornStatus vornsDTW_L2_8u32s_D2LSfs(const Vorn8u* const* src1, int height1, const Vorn8u* const* src2, int height2,
                                    int width, Vorn32s* result, int delta, Vorn32s beam, int scaleFactor);
VornStatus vornsDTW_L2_8u32s_D2Sfs(const Vorn8u* src1, int height1, const Vorn8u* src2, int height2, int width,
                                   int step, Vorn32s* result, int delta, Vorn32s beam, int scaleFactor);
VornStatus vornsDTW_L2Low_16s32s_D2LSfs(const Vorn16s* const* src1, int height1, const Vorn16s* const* src2,
                                        int height2, int width, Vorn32s* result, int delta, Vorn32s beam,
                                        int scaleFactor);
VornStatus vornsDTW_L2Low_16s32s_D2Sfs(const Vorn16s* src1, int height1, const Vorn16s* src2, int height2, int width,
                                       int step, Vorn32s* result, int delta, Vorn32s beam, int scaleFactor);
/** @} */

VORN_END_DECLS

#endif
