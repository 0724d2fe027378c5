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

/**
 * @defgroup vornsr_curves Scalar curves
 * @brief sin(x)/x, exp(-x^2), the reciprocal root with a ceiling and a smooth step, element by element. dst may be src.
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
