/* The vector layer: move, set, convert, reductions, elementary functions. */
#ifndef VORNSR_SIGNAL_H
#define VORNSR_SIGNAL_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_move Move, set, conjugate
 * @brief Block operations on all eleven element types, and complex conjugation.
 *
 * Formulas, for n from 0 to len - 1:
 * - `vornsCopy_*`: dst[n] = src[n]. src and dst must not overlap.
 * - `vornsMove_*`: the same for any overlap; dst equal to src changes nothing.
 * - `vornsZero_*`: every byte of dst becomes 0.
 * - `vornsSet_*`: dst[n] = val; a complex val is passed whole, by value.
 * - `vornsConj_*`: dst[n] = conj(src[n]); the `I` forms in place, and dst may be src in the others.
 * - `vornsConjFlip_*`: dst[n] = conj(src[len - 1 - n]). src and dst must not overlap.
 *
 * Shapes and units: len counts elements (a complex value is one element). len times the size of an element is a byte
 * count that must fit into a signed 32-bit integer; this is not checked.
 *
 * Checks: a null pointer gives `vornStsNullPtrErr`, then len below 1 gives `vornStsSizeErr`. There are no warnings.
 *
 * Exactness: all of them move bit patterns and do no floating-point arithmetic. The sign of a zero and the payload of a
 * not-a-number are kept, a signalling one stays as it is and raises no flag. The conjugate of 32fc and 64fc inverts the
 * sign bit of the imaginary part and nothing else. The conjugate of 16sc negates it with saturation: -32768 becomes
 * 32767, every other value is exact.
 *
 * Large blocks: a fill that is at least as large as one core's part of the last-level cache, and never one below 512
 * KiB, is written past the cache; copies and moves leave that choice to the C library.
 * @{
 */

/**
 * @defgroup vornsr_copy Copies and moves
 * @brief A block of elements from one place to another: dst[n] = src[n].
 *
 * `vornsCopy_*(src, dst, len)`: src and dst must not overlap. `vornsMove_*(src, dst, len)`: the same for any overlap;
 * dst equal to src changes nothing.
 *
 * Checks, in this order: null, size (len below 1). Bit patterns are moved as they are. What all block operations
 * share: @ref vornsr_move.
 * @{
 */
VornStatus vornsCopy_8u(const Vorn8u* src, Vorn8u* dst, int len);
VornStatus vornsMove_8u(const Vorn8u* src, Vorn8u* dst, int len);
VornStatus vornsCopy_16s(const Vorn16s* src, Vorn16s* dst, int len);
VornStatus vornsMove_16s(const Vorn16s* src, Vorn16s* dst, int len);
VornStatus vornsCopy_16sc(const Vorn16sc* src, Vorn16sc* dst, int len);
VornStatus vornsMove_16sc(const Vorn16sc* src, Vorn16sc* dst, int len);
VornStatus vornsCopy_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsMove_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsCopy_32fc(const Vorn32fc* src, Vorn32fc* dst, int len);
VornStatus vornsMove_32fc(const Vorn32fc* src, Vorn32fc* dst, int len);
VornStatus vornsCopy_64f(const Vorn64f* src, Vorn64f* dst, int len);
VornStatus vornsMove_64f(const Vorn64f* src, Vorn64f* dst, int len);
VornStatus vornsCopy_64fc(const Vorn64fc* src, Vorn64fc* dst, int len);
VornStatus vornsMove_64fc(const Vorn64fc* src, Vorn64fc* dst, int len);
VornStatus vornsCopy_32s(const Vorn32s* src, Vorn32s* dst, int len);
VornStatus vornsMove_32s(const Vorn32s* src, Vorn32s* dst, int len);
VornStatus vornsCopy_32sc(const Vorn32sc* src, Vorn32sc* dst, int len);
VornStatus vornsMove_32sc(const Vorn32sc* src, Vorn32sc* dst, int len);
VornStatus vornsCopy_64s(const Vorn64s* src, Vorn64s* dst, int len);
VornStatus vornsMove_64s(const Vorn64s* src, Vorn64s* dst, int len);
VornStatus vornsCopy_64sc(const Vorn64sc* src, Vorn64sc* dst, int len);
VornStatus vornsMove_64sc(const Vorn64sc* src, Vorn64sc* dst, int len);
/** @} */

/**
 * @defgroup vornsr_fill Zeros and fills
 * @brief One value for every element of a block: dst[n] = 0 or dst[n] = val.
 *
 * `vornsZero_*(dst, len)`: every byte of dst becomes 0. `vornsSet_*(val, dst, len)`: dst[n] = val; a complex val is
 * passed whole, by value.
 *
 * Checks, in this order: null, size (len below 1). What all block operations share, and what happens to large blocks:
 * @ref vornsr_move.
 * @{
 */
VornStatus vornsZero_8u(Vorn8u* dst, int len);
VornStatus vornsSet_8u(Vorn8u val, Vorn8u* dst, int len);
VornStatus vornsZero_16s(Vorn16s* dst, int len);
VornStatus vornsSet_16s(Vorn16s val, Vorn16s* dst, int len);
VornStatus vornsZero_16sc(Vorn16sc* dst, int len);
VornStatus vornsSet_16sc(Vorn16sc val, Vorn16sc* dst, int len);
VornStatus vornsZero_32f(Vorn32f* dst, int len);
VornStatus vornsSet_32f(Vorn32f val, Vorn32f* dst, int len);
VornStatus vornsZero_32fc(Vorn32fc* dst, int len);
VornStatus vornsSet_32fc(Vorn32fc val, Vorn32fc* dst, int len);
VornStatus vornsZero_64f(Vorn64f* dst, int len);
VornStatus vornsSet_64f(Vorn64f val, Vorn64f* dst, int len);
VornStatus vornsZero_64fc(Vorn64fc* dst, int len);
VornStatus vornsSet_64fc(Vorn64fc val, Vorn64fc* dst, int len);
VornStatus vornsZero_32s(Vorn32s* dst, int len);
VornStatus vornsSet_32s(Vorn32s val, Vorn32s* dst, int len);
VornStatus vornsZero_32sc(Vorn32sc* dst, int len);
VornStatus vornsSet_32sc(Vorn32sc val, Vorn32sc* dst, int len);
VornStatus vornsZero_64s(Vorn64s* dst, int len);
VornStatus vornsSet_64s(Vorn64s val, Vorn64s* dst, int len);
VornStatus vornsZero_64sc(Vorn64sc* dst, int len);
VornStatus vornsSet_64sc(Vorn64sc val, Vorn64sc* dst, int len);
/** @} */

/**
 * @defgroup vornsr_conjugate Complex conjugates
 * @brief Conjugates in order or from the end: dst[n] = conj(src[n]) or conj(src[len - 1 - n]).
 *
 * `vornsConj_*`: dst[n] = conj(src[n]); the `I` forms in place, and dst may be src in the others. `vornsConjFlip_*`:
 * dst[n] = conj(src[len - 1 - n]); src and dst must not overlap.
 *
 * Checks, in this order: null, size (len below 1). Floats lose or gain the sign of the imaginary part and nothing
 * else; in 16sc -32768 becomes 32767. What all block operations share: @ref vornsr_move.
 * @{
 */
VornStatus vornsConj_64fc_I(Vorn64fc* srcDst, int len);
VornStatus vornsConj_64fc(const Vorn64fc* src, Vorn64fc* dst, int len);
VornStatus vornsConjFlip_64fc(const Vorn64fc* src, Vorn64fc* dst, int len);
VornStatus vornsConj_32fc_I(Vorn32fc* srcDst, int len);
VornStatus vornsConj_32fc(const Vorn32fc* src, Vorn32fc* dst, int len);
VornStatus vornsConjFlip_32fc(const Vorn32fc* src, Vorn32fc* dst, int len);
VornStatus vornsConj_16sc_I(Vorn16sc* srcDst, int len);
VornStatus vornsConj_16sc(const Vorn16sc* src, Vorn16sc* dst, int len);
VornStatus vornsConjFlip_16sc(const Vorn16sc* src, Vorn16sc* dst, int len);
/** @} */

/** @} */

/**
 * @defgroup vornsr_convert Conversions
 * @brief Between the element types, with stated rounding, saturation and scale.
 *
 * `vornsConvert_<from><to>(src, dst, len, ...)` converts len elements of src to dst. src and dst must not overlap, save
 * that between types of one size dst may start where src does. Checks, in this order: a null pointer
 * (`vornStsNullPtrErr`), len below 1 (`vornStsSizeErr`). There is no other check and no warning: saturation, rounding
 * and not-a-numbers are part of the result. Alignment never changes a result. Every rule below holds element by element
 * and bit for bit, on every processor.
 *
 * A scale factor multiplies by 2^-scale. `rndMode` is never checked. The forms from float to integer take `vornRndZero`
 * for itself and everything else as `vornRndNear`; `16f16s`, `16s16f` and `32f16f` take `vornRndNear` for itself and
 * everything else as `vornRndZero`. Near is to nearest, ties to even; zero truncates.
 *
 * Plain forms. `8s16s`, `16s32s`, `8s32f`, `8u32f`, `16s32f`, `16u32f`, `32s64f`, `32f64f` keep every value. `32s32f`
 * rounds in the caller's rounding mode. `32s16s` saturates. `64f32f` clamps to -3.402823466e+38 to 3.402823466e+38
 * (these two doubles; a not-a-number becomes the upper one) and rounds in the caller's mode, so that it never gives an
 * infinity.
 *
 * Integer to float with a scale factor, `16s32f_Sfs`, `32s32f_Sfs`, `16s64f_Sfs`, `32s64f_Sfs`: scale is limited to
 * -112..126, -96..126, -1008..1022 and -992..1022, which keeps every result finite and every factor normal. Only
 * `32s32f_Sfs` rounds, and only as `32s32f` does.
 *
 * `32s16s_Sfs`: scale is limited to -15..31; the exact value times 2^-scale, rounded to nearest with ties to even,
 * saturated.
 *
 * Float to integer, `32f8s_Sfs`, `32f8u_Sfs`, `32f16s_Sfs`, `32f16u_Sfs`, `32f32s_Sfs`, `64f32s_Sfs`: the element times
 * 2^-scale, rounded by rndMode, saturated to the range of the destination. The factor is a single, also for doubles: it
 * is 0 from scale 150 up and +infinity from scale -128 down, and 0 times infinity is a not-a-number. A not-a-number
 * gives the largest integer in `8s`, `8u`, `16s` and `64f32s`, and 0 in `16u`; in `32f32s` it gives the largest integer
 * if its sign bit is clear and the smallest if it is set (it is set in a product of 0 and infinity). The caller's
 * rounding mode does not matter and is the same afterwards, and an element out of range leaves no invalid-operation
 * flag behind.
 *
 * Halves (1 sign bit, 5 exponent bits with bias 15, 10 mantissa bits). The caller's rounding mode does not matter and
 * is the same afterwards.
 * - `16f32f` is exact; infinities stay, and a not-a-number keeps its mantissa in the top bits.
 * - `16s16f` rounds by rndMode. Every integer is in range.
 * - `32f16f` rounds by rndMode: near gives an infinity from 65520 on, zero from 65536 on. In near mode values below
 *   2^-14 are first rounded to a multiple of 2^-37 and then to a multiple of 2^-24, both to nearest even. A
 *   not-a-number keeps its sign and gives 7FFF (hexadecimal) in near mode; in zero mode it becomes quiet and keeps its
 *   top mantissa bits.
 * - `16f16s_Sfs`: the value times 2^-scale, rounded by rndMode, saturated. Below scale -14, of all infinities and
 *   not-a-numbers only +infinity gives 32767, the others -32768; from scale -14 on they go by their sign bit. From
 *   scale -14 to 16 a subnormal half with mantissa m counts as 2^(-15-scale) x (1 + m/1024), not as its true value, and
 *   so does zero, which gives 0 all the same. Above scale 16 every finite half gives 0.
 *
 * `16s32s`, `32s16s`, `32f64f` and `16s64f_Sfs` write past the cache when source and destination together are larger
 * than 2 MiB.
 * @{
 */
VornStatus vornsConvert_8s16s(const Vorn8s* src, Vorn16s* dst, int len);
VornStatus vornsConvert_16s32s(const Vorn16s* src, Vorn32s* dst, int len);
VornStatus vornsConvert_8s32f(const Vorn8s* src, Vorn32f* dst, int len);
VornStatus vornsConvert_8u32f(const Vorn8u* src, Vorn32f* dst, int len);
VornStatus vornsConvert_16s32f(const Vorn16s* src, Vorn32f* dst, int len);
VornStatus vornsConvert_16u32f(const Vorn16u* src, Vorn32f* dst, int len);
VornStatus vornsConvert_32s64f(const Vorn32s* src, Vorn64f* dst, int len);
VornStatus vornsConvert_32f64f(const Vorn32f* src, Vorn64f* dst, int len);
VornStatus vornsConvert_32s32f(const Vorn32s* src, Vorn32f* dst, int len);
VornStatus vornsConvert_32s16s(const Vorn32s* src, Vorn16s* dst, int len);
VornStatus vornsConvert_64f32f(const Vorn64f* src, Vorn32f* dst, int len);
VornStatus vornsConvert_16s32f_Sfs(const Vorn16s* src, Vorn32f* dst, int len, int scale);
VornStatus vornsConvert_16s64f_Sfs(const Vorn16s* src, Vorn64f* dst, int len, int scale);
VornStatus vornsConvert_32s32f_Sfs(const Vorn32s* src, Vorn32f* dst, int len, int scale);
VornStatus vornsConvert_32s64f_Sfs(const Vorn32s* src, Vorn64f* dst, int len, int scale);
VornStatus vornsConvert_32s16s_Sfs(const Vorn32s* src, Vorn16s* dst, int len, int scale);
VornStatus vornsConvert_32f8s_Sfs(const Vorn32f* src, Vorn8s* dst, int len, VornRoundMode rndMode, int scale);
VornStatus vornsConvert_32f8u_Sfs(const Vorn32f* src, Vorn8u* dst, int len, VornRoundMode rndMode, int scale);
VornStatus vornsConvert_32f16s_Sfs(const Vorn32f* src, Vorn16s* dst, int len, VornRoundMode rndMode, int scale);
VornStatus vornsConvert_32f16u_Sfs(const Vorn32f* src, Vorn16u* dst, int len, VornRoundMode rndMode, int scale);
VornStatus vornsConvert_32f32s_Sfs(const Vorn32f* src, Vorn32s* dst, int len, VornRoundMode rndMode, int scale);
VornStatus vornsConvert_64f32s_Sfs(const Vorn64f* src, Vorn32s* dst, int len, VornRoundMode rndMode, int scale);
VornStatus vornsConvert_16f16s_Sfs(const Vorn16f* src, Vorn16s* dst, int len, VornRoundMode rndMode, int scale);
VornStatus vornsConvert_16s16f(const Vorn16s* src, Vorn16f* dst, int len, VornRoundMode rndMode);
VornStatus vornsConvert_32f16f(const Vorn32f* src, Vorn16f* dst, int len, VornRoundMode rndMode);
VornStatus vornsConvert_16f32f(const Vorn16f* src, Vorn32f* dst, int len);
/** @} */

/**
 * @defgroup vornsr_arithmetic Element-wise arithmetic
 * @brief Sums, differences, products and quotients of two vectors, or of a vector and a constant.
 *
 * Formulas, for each element. The subtraction and the division of two vectors take their first operand from src2; in
 * the in-place forms src has the role of src1 and srcDst that of src2.
 * - `vornsAdd_*`: src1 + src2; `vornsAddC_*`: src + val
 * - `vornsSub_*`: src2 - src1; `vornsSubC_*`: src - val; `vornsSubCRev_*`: val - src
 * - `vornsMul_*`: src1 src2; `vornsMulC_*`: src val
 * - `vornsDiv_*`: src2 / src1; `vornsDivC_*`: src / val; `vornsDivCRev_*`: val / src
 *
 * Shapes: len elements each; a complex val is passed whole, by value. In a mixed form the two type codes are those of
 * the operands and the result; `vornsMul_32s32sc_*` multiplies a real by a complex vector, `vornsDiv_32s16s_Sfs`
 * divides 32-bit by 16-bit integers and gives 16 bits. The result may be one of the operands whose elements have its
 * size; other overlap is not allowed.
 *
 * Checks: a null pointer gives `vornStsNullPtrErr`, then len below 1 `vornStsSizeErr`, then in `vornsDivC_*` a zero val
 * (both parts of a complex one) `vornStsDivByZeroErr`, with nothing written.
 *
 * Integer results are the exact value times 2^-scaleFactor (times 1 where there is no scale factor), rounded to nearest
 * with ties to even and saturated: bit for bit, for every scale factor. Nothing wraps. The result does not depend on
 * the processor's rounding mode, and the mode stays as it is. From these limits on no arithmetic is needed: above the
 * upper one every result is 0 and no operand is read, and below the lower one every value but 0 saturates. Quotients by
 * a constant are 0 unread above scale factor 8 in 8u, above 15 in 16s and 16sc.
 * - sums and differences, 8u: upper 9, lower -7
 * - sums and differences, 16s and 16sc: upper 16, lower -15
 * - sums and differences, 32s and 32sc: upper 32, lower -30
 * - products 16s: upper 30, lower -15
 * - products 16u16s: upper 31, lower -14
 * - products 16s32s: upper 30, lower -30
 * - products 32s: upper 62, lower -31
 *
 * Mixed forms without a scale factor: 8u16u is exact. 16s32f converts both operands to single first: sums and
 * differences are exact, and products round where they need more than 24 bits. `vornsMulC_32f16s_Sfs` rounds (src val)
 * 2^-scaleFactor, computed in single precision, to nearest even and saturates; a not-a-number gives 32767.
 * `vornsMulC_Low_32f16s` is the same with scale factor 0.
 *
 * Float results are those of the IEEE operation in the current rounding mode. A complex product is
 * (re1 re2 - im1 im2, re1 im2 + im1 re2) with every product and every sum rounded by itself.
 * @{
 */

/**
 * @defgroup vornsr_add Sums of two vectors
 * @brief Element by element, dst = src1 + src2 or srcDst = src + srcDst.
 *
 * Types, shapes, overlap, scale factors and rounding: @ref vornsr_arithmetic. Checks, in this order: null, size. There
 * are no warnings.
 * @{
 */
VornStatus vornsAdd_8u_Sfs(const Vorn8u* src1, const Vorn8u* src2, Vorn8u* dst, int len, int scaleFactor);
VornStatus vornsAdd_8u_ISfs(const Vorn8u* src, Vorn8u* srcDst, int len, int scaleFactor);
VornStatus vornsAdd_8u16u(const Vorn8u* src1, const Vorn8u* src2, Vorn16u* dst, int len);
VornStatus vornsAdd_16u(const Vorn16u* src1, const Vorn16u* src2, Vorn16u* dst, int len);
VornStatus vornsAdd_16s(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len);
VornStatus vornsAdd_16s_I(const Vorn16s* src, Vorn16s* srcDst, int len);
VornStatus vornsAdd_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsAdd_16s_ISfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsAdd_16s32f(const Vorn16s* src1, const Vorn16s* src2, Vorn32f* dst, int len);
VornStatus vornsAdd_16s32s_I(const Vorn16s* src, Vorn32s* srcDst, int len);
VornStatus vornsAdd_16sc_Sfs(const Vorn16sc* src1, const Vorn16sc* src2, Vorn16sc* dst, int len, int scaleFactor);
VornStatus vornsAdd_16sc_ISfs(const Vorn16sc* src, Vorn16sc* srcDst, int len, int scaleFactor);
VornStatus vornsAdd_32u(const Vorn32u* src1, const Vorn32u* src2, Vorn32u* dst, int len);
VornStatus vornsAdd_32s_Sfs(const Vorn32s* src1, const Vorn32s* src2, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsAdd_32s_ISfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor);
VornStatus vornsAdd_32sc_Sfs(const Vorn32sc* src1, const Vorn32sc* src2, Vorn32sc* dst, int len, int scaleFactor);
VornStatus vornsAdd_32sc_ISfs(const Vorn32sc* src, Vorn32sc* srcDst, int len, int scaleFactor);
VornStatus vornsAdd_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len);
VornStatus vornsAdd_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len);
VornStatus vornsAdd_32fc(const Vorn32fc* src1, const Vorn32fc* src2, Vorn32fc* dst, int len);
VornStatus vornsAdd_32fc_I(const Vorn32fc* src, Vorn32fc* srcDst, int len);
VornStatus vornsAdd_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len);
VornStatus vornsAdd_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len);
VornStatus vornsAdd_64fc(const Vorn64fc* src1, const Vorn64fc* src2, Vorn64fc* dst, int len);
VornStatus vornsAdd_64fc_I(const Vorn64fc* src, Vorn64fc* srcDst, int len);
/** @} */

/**
 * @defgroup vornsr_add_constant Sums with a constant
 * @brief Element by element, dst = src + val or srcDst = srcDst + val.
 *
 * Types, shapes, overlap, scale factors and rounding: @ref vornsr_arithmetic. Checks, in this order: null, size. There
 * are no warnings. A val of zero copies in `vornsAddC_32f`, see @ref vornsr_multiply_constant.
 * @{
 */
VornStatus vornsAddC_8u_Sfs(const Vorn8u* src, Vorn8u val, Vorn8u* dst, int len, int scaleFactor);
VornStatus vornsAddC_8u_ISfs(Vorn8u val, Vorn8u* srcDst, int len, int scaleFactor);
VornStatus vornsAddC_16s_I(Vorn16s val, Vorn16s* srcDst, int len);
VornStatus vornsAddC_16s_Sfs(const Vorn16s* src, Vorn16s val, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsAddC_16s_ISfs(Vorn16s val, Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsAddC_16sc_Sfs(const Vorn16sc* src, Vorn16sc val, Vorn16sc* dst, int len, int scaleFactor);
VornStatus vornsAddC_16sc_ISfs(Vorn16sc val, Vorn16sc* srcDst, int len, int scaleFactor);
VornStatus vornsAddC_32s_Sfs(const Vorn32s* src, Vorn32s val, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsAddC_32s_ISfs(Vorn32s val, Vorn32s* srcDst, int len, int scaleFactor);
VornStatus vornsAddC_32sc_Sfs(const Vorn32sc* src, Vorn32sc val, Vorn32sc* dst, int len, int scaleFactor);
VornStatus vornsAddC_32sc_ISfs(Vorn32sc val, Vorn32sc* srcDst, int len, int scaleFactor);
VornStatus vornsAddC_32f(const Vorn32f* src, Vorn32f val, Vorn32f* dst, int len);
VornStatus vornsAddC_32f_I(Vorn32f val, Vorn32f* srcDst, int len);
VornStatus vornsAddC_32fc(const Vorn32fc* src, Vorn32fc val, Vorn32fc* dst, int len);
VornStatus vornsAddC_32fc_I(Vorn32fc val, Vorn32fc* srcDst, int len);
VornStatus vornsAddC_64f(const Vorn64f* src, Vorn64f val, Vorn64f* dst, int len);
VornStatus vornsAddC_64f_I(Vorn64f val, Vorn64f* srcDst, int len);
VornStatus vornsAddC_64fc(const Vorn64fc* src, Vorn64fc val, Vorn64fc* dst, int len);
VornStatus vornsAddC_64fc_I(Vorn64fc val, Vorn64fc* srcDst, int len);
/** @} */

/**
 * @defgroup vornsr_subtract Differences of two vectors
 * @brief Element by element, dst = src2 - src1 or srcDst = srcDst - src: the first operand is the second argument.
 *
 * Types, shapes, overlap, scale factors and rounding: @ref vornsr_arithmetic. Checks, in this order: null, size. There
 * are no warnings.
 * @{
 */
VornStatus vornsSub_8u_Sfs(const Vorn8u* src1, const Vorn8u* src2, Vorn8u* dst, int len, int scaleFactor);
VornStatus vornsSub_8u_ISfs(const Vorn8u* src, Vorn8u* srcDst, int len, int scaleFactor);
VornStatus vornsSub_16s(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len);
VornStatus vornsSub_16s_I(const Vorn16s* src, Vorn16s* srcDst, int len);
VornStatus vornsSub_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsSub_16s_ISfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsSub_16s32f(const Vorn16s* src1, const Vorn16s* src2, Vorn32f* dst, int len);
VornStatus vornsSub_16sc_Sfs(const Vorn16sc* src1, const Vorn16sc* src2, Vorn16sc* dst, int len, int scaleFactor);
VornStatus vornsSub_16sc_ISfs(const Vorn16sc* src, Vorn16sc* srcDst, int len, int scaleFactor);
VornStatus vornsSub_32s_Sfs(const Vorn32s* src1, const Vorn32s* src2, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsSub_32s_ISfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor);
VornStatus vornsSub_32sc_Sfs(const Vorn32sc* src1, const Vorn32sc* src2, Vorn32sc* dst, int len, int scaleFactor);
VornStatus vornsSub_32sc_ISfs(const Vorn32sc* src, Vorn32sc* srcDst, int len, int scaleFactor);
VornStatus vornsSub_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len);
VornStatus vornsSub_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len);
VornStatus vornsSub_32fc(const Vorn32fc* src1, const Vorn32fc* src2, Vorn32fc* dst, int len);
VornStatus vornsSub_32fc_I(const Vorn32fc* src, Vorn32fc* srcDst, int len);
VornStatus vornsSub_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len);
VornStatus vornsSub_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len);
VornStatus vornsSub_64fc(const Vorn64fc* src1, const Vorn64fc* src2, Vorn64fc* dst, int len);
VornStatus vornsSub_64fc_I(const Vorn64fc* src, Vorn64fc* srcDst, int len);
/** @} */

/**
 * @defgroup vornsr_subtract_constant Differences with a constant
 * @brief Element by element, dst = src - val, and in the `Rev` forms dst = val - src; in place likewise.
 *
 * Types, shapes, overlap, scale factors and rounding: @ref vornsr_arithmetic. Checks, in this order: null, size. There
 * are no warnings. A val of zero copies in `vornsSubC_32f`, see @ref vornsr_multiply_constant.
 * @{
 */
VornStatus vornsSubC_8u_Sfs(const Vorn8u* src, Vorn8u val, Vorn8u* dst, int len, int scaleFactor);
VornStatus vornsSubC_8u_ISfs(Vorn8u val, Vorn8u* srcDst, int len, int scaleFactor);
VornStatus vornsSubC_16s_I(Vorn16s val, Vorn16s* srcDst, int len);
VornStatus vornsSubC_16s_Sfs(const Vorn16s* src, Vorn16s val, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsSubC_16s_ISfs(Vorn16s val, Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsSubC_16sc_Sfs(const Vorn16sc* src, Vorn16sc val, Vorn16sc* dst, int len, int scaleFactor);
VornStatus vornsSubC_16sc_ISfs(Vorn16sc val, Vorn16sc* srcDst, int len, int scaleFactor);
VornStatus vornsSubC_32s_Sfs(const Vorn32s* src, Vorn32s val, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsSubC_32s_ISfs(Vorn32s val, Vorn32s* srcDst, int len, int scaleFactor);
VornStatus vornsSubC_32sc_Sfs(const Vorn32sc* src, Vorn32sc val, Vorn32sc* dst, int len, int scaleFactor);
VornStatus vornsSubC_32sc_ISfs(Vorn32sc val, Vorn32sc* srcDst, int len, int scaleFactor);
VornStatus vornsSubC_32f(const Vorn32f* src, Vorn32f val, Vorn32f* dst, int len);
VornStatus vornsSubC_32f_I(Vorn32f val, Vorn32f* srcDst, int len);
VornStatus vornsSubC_32fc(const Vorn32fc* src, Vorn32fc val, Vorn32fc* dst, int len);
VornStatus vornsSubC_32fc_I(Vorn32fc val, Vorn32fc* srcDst, int len);
VornStatus vornsSubC_64f(const Vorn64f* src, Vorn64f val, Vorn64f* dst, int len);
VornStatus vornsSubC_64f_I(Vorn64f val, Vorn64f* srcDst, int len);
VornStatus vornsSubC_64fc(const Vorn64fc* src, Vorn64fc val, Vorn64fc* dst, int len);
VornStatus vornsSubC_64fc_I(Vorn64fc val, Vorn64fc* srcDst, int len);
VornStatus vornsSubCRev_8u_Sfs(const Vorn8u* src, Vorn8u val, Vorn8u* dst, int len, int scaleFactor);
VornStatus vornsSubCRev_8u_ISfs(Vorn8u val, Vorn8u* srcDst, int len, int scaleFactor);
VornStatus vornsSubCRev_16s_Sfs(const Vorn16s* src, Vorn16s val, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsSubCRev_16s_ISfs(Vorn16s val, Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsSubCRev_16sc_Sfs(const Vorn16sc* src, Vorn16sc val, Vorn16sc* dst, int len, int scaleFactor);
VornStatus vornsSubCRev_16sc_ISfs(Vorn16sc val, Vorn16sc* srcDst, int len, int scaleFactor);
VornStatus vornsSubCRev_32s_Sfs(const Vorn32s* src, Vorn32s val, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsSubCRev_32s_ISfs(Vorn32s val, Vorn32s* srcDst, int len, int scaleFactor);
VornStatus vornsSubCRev_32sc_Sfs(const Vorn32sc* src, Vorn32sc val, Vorn32sc* dst, int len, int scaleFactor);
VornStatus vornsSubCRev_32sc_ISfs(Vorn32sc val, Vorn32sc* srcDst, int len, int scaleFactor);
VornStatus vornsSubCRev_32f(const Vorn32f* src, Vorn32f val, Vorn32f* dst, int len);
VornStatus vornsSubCRev_32f_I(Vorn32f val, Vorn32f* srcDst, int len);
VornStatus vornsSubCRev_32fc(const Vorn32fc* src, Vorn32fc val, Vorn32fc* dst, int len);
VornStatus vornsSubCRev_32fc_I(Vorn32fc val, Vorn32fc* srcDst, int len);
VornStatus vornsSubCRev_64f(const Vorn64f* src, Vorn64f val, Vorn64f* dst, int len);
VornStatus vornsSubCRev_64f_I(Vorn64f val, Vorn64f* srcDst, int len);
VornStatus vornsSubCRev_64fc(const Vorn64fc* src, Vorn64fc val, Vorn64fc* dst, int len);
VornStatus vornsSubCRev_64fc_I(Vorn64fc val, Vorn64fc* srcDst, int len);
/** @} */

/**
 * @defgroup vornsr_multiply Products of two vectors
 * @brief Element by element, dst = src1 src2 or srcDst = src srcDst.
 *
 * The one exception to exactness: `vornsMul_32s_*` and `vornsMulC_32s_*` multiply in double precision, so a product
 * above 2^53 is rounded to 53 bits before it is scaled and rounded.
 *
 * Types, shapes, overlap, scale factors and rounding: @ref vornsr_arithmetic. Checks, in this order: null, size. There
 * are no warnings.
 * @{
 */
VornStatus vornsMul_8u_Sfs(const Vorn8u* src1, const Vorn8u* src2, Vorn8u* dst, int len, int scaleFactor);
VornStatus vornsMul_8u_ISfs(const Vorn8u* src, Vorn8u* srcDst, int len, int scaleFactor);
VornStatus vornsMul_8u16u(const Vorn8u* src1, const Vorn8u* src2, Vorn16u* dst, int len);
VornStatus vornsMul_16s(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len);
VornStatus vornsMul_16s_I(const Vorn16s* src, Vorn16s* srcDst, int len);
VornStatus vornsMul_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsMul_16s_ISfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsMul_16s32f(const Vorn16s* src1, const Vorn16s* src2, Vorn32f* dst, int len);
VornStatus vornsMul_16s32s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsMul_16u16s_Sfs(const Vorn16u* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsMul_16sc_Sfs(const Vorn16sc* src1, const Vorn16sc* src2, Vorn16sc* dst, int len, int scaleFactor);
VornStatus vornsMul_16sc_ISfs(const Vorn16sc* src, Vorn16sc* srcDst, int len, int scaleFactor);
VornStatus vornsMul_32s_Sfs(const Vorn32s* src1, const Vorn32s* src2, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsMul_32s_ISfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor);
VornStatus vornsMul_32sc_Sfs(const Vorn32sc* src1, const Vorn32sc* src2, Vorn32sc* dst, int len, int scaleFactor);
VornStatus vornsMul_32sc_ISfs(const Vorn32sc* src, Vorn32sc* srcDst, int len, int scaleFactor);
VornStatus vornsMul_32s32sc_Sfs(const Vorn32s* src1, const Vorn32sc* src2, Vorn32sc* dst, int len, int scaleFactor);
VornStatus vornsMul_32s32sc_ISfs(const Vorn32s* src, Vorn32sc* srcDst, int len, int scaleFactor);
VornStatus vornsMul_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len);
VornStatus vornsMul_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len);
VornStatus vornsMul_32fc(const Vorn32fc* src1, const Vorn32fc* src2, Vorn32fc* dst, int len);
VornStatus vornsMul_32fc_I(const Vorn32fc* src, Vorn32fc* srcDst, int len);
VornStatus vornsMul_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len);
VornStatus vornsMul_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len);
VornStatus vornsMul_64fc(const Vorn64fc* src1, const Vorn64fc* src2, Vorn64fc* dst, int len);
VornStatus vornsMul_64fc_I(const Vorn64fc* src, Vorn64fc* srcDst, int len);
/** @} */

/**
 * @defgroup vornsr_multiply_constant Products with a constant
 * @brief Element by element, dst = src val or srcDst = srcDst val.
 *
 * Constants with a short cut, which decides about special values: `vornsAddC_32f` and `vornsSubC_32f` with a zero val
 * copy (a negative zero stays, a signalling value is not touched). `vornsMulC_32f` with a val of 1 copies, and with a
 * zero val gives zeros whatever src holds. `vornsDivC_32f` is `vornsMulC_32f` by the single 1 / val: at most one
 * rounding away from the quotient for |val| from 2^-126 to 2^126; above, 1 / val is denormal and coarse, and below
 * 2^-128 it is infinite. The in-place forms do the same. No other type has a short cut that shows.
 *
 * Types, shapes, overlap, scale factors and rounding: @ref vornsr_arithmetic. Checks, in this order: null, size. There
 * are no warnings. 32-bit integers are multiplied in double, see @ref vornsr_multiply.
 * @{
 */
VornStatus vornsMulC_8u_Sfs(const Vorn8u* src, Vorn8u val, Vorn8u* dst, int len, int scaleFactor);
VornStatus vornsMulC_8u_ISfs(Vorn8u val, Vorn8u* srcDst, int len, int scaleFactor);
VornStatus vornsMulC_16s_I(Vorn16s val, Vorn16s* srcDst, int len);
VornStatus vornsMulC_16s_Sfs(const Vorn16s* src, Vorn16s val, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsMulC_16s_ISfs(Vorn16s val, Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsMulC_16sc_Sfs(const Vorn16sc* src, Vorn16sc val, Vorn16sc* dst, int len, int scaleFactor);
VornStatus vornsMulC_16sc_ISfs(Vorn16sc val, Vorn16sc* srcDst, int len, int scaleFactor);
VornStatus vornsMulC_32s_Sfs(const Vorn32s* src, Vorn32s val, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsMulC_32s_ISfs(Vorn32s val, Vorn32s* srcDst, int len, int scaleFactor);
VornStatus vornsMulC_32sc_Sfs(const Vorn32sc* src, Vorn32sc val, Vorn32sc* dst, int len, int scaleFactor);
VornStatus vornsMulC_32sc_ISfs(Vorn32sc val, Vorn32sc* srcDst, int len, int scaleFactor);
VornStatus vornsMulC_32f(const Vorn32f* src, Vorn32f val, Vorn32f* dst, int len);
VornStatus vornsMulC_32f_I(Vorn32f val, Vorn32f* srcDst, int len);
VornStatus vornsMulC_32fc(const Vorn32fc* src, Vorn32fc val, Vorn32fc* dst, int len);
VornStatus vornsMulC_32fc_I(Vorn32fc val, Vorn32fc* srcDst, int len);
VornStatus vornsMulC_64f(const Vorn64f* src, Vorn64f val, Vorn64f* dst, int len);
VornStatus vornsMulC_64f_I(Vorn64f val, Vorn64f* srcDst, int len);
VornStatus vornsMulC_64fc(const Vorn64fc* src, Vorn64fc val, Vorn64fc* dst, int len);
VornStatus vornsMulC_64fc_I(Vorn64fc val, Vorn64fc* srcDst, int len);
VornStatus vornsMulC_32f16s_Sfs(const Vorn32f* src, Vorn32f val, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsMulC_Low_32f16s(const Vorn32f* src, Vorn32f val, Vorn16s* dst, int len);
/** @} */

/**
 * @defgroup vornsr_divide Quotients of two vectors
 * @brief Element by element, dst = src2 / src1 or srcDst = srcDst / src: the dividend is the second argument.
 *
 * Complex quotients of finite numbers come out wherever the element can hold them, however large or small the operands
 * are: in 32fc within 0.501 units in the last place of each part, in 64fc within 1.63 units in the last place of the
 * larger part (in nearest mode). A divisor or val with imaginary part 0 divides each part as a real number, infinities
 * too; otherwise an infinite part makes each part an infinity or a not-a-number. The same operands give the same bits
 * in every form and at every place of a vector.
 *
 * Warning: a zero divisor met in `vornsDiv_*` and `vornsDivCRev_*` gives `vornStsDivByZero`, with the whole vector
 * computed. A float element takes the infinity or not-a-number of the division, an integer one the largest value for a
 * positive dividend, the smallest for a negative one and 0 for 0, under every scale factor. By a complex zero each part
 * is divided like a real number, in the float forms by the real part with its sign.
 *
 * Types, shapes, overlap, scale factors and rounding: @ref vornsr_arithmetic. Checks, in this order: null, size.
 * @{
 */
VornStatus vornsDiv_8u_Sfs(const Vorn8u* src1, const Vorn8u* src2, Vorn8u* dst, int len, int scaleFactor);
VornStatus vornsDiv_8u_ISfs(const Vorn8u* src, Vorn8u* srcDst, int len, int scaleFactor);
VornStatus vornsDiv_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsDiv_16s_ISfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsDiv_16sc_Sfs(const Vorn16sc* src1, const Vorn16sc* src2, Vorn16sc* dst, int len, int scaleFactor);
VornStatus vornsDiv_16sc_ISfs(const Vorn16sc* src, Vorn16sc* srcDst, int len, int scaleFactor);
VornStatus vornsDiv_32s_Sfs(const Vorn32s* src1, const Vorn32s* src2, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsDiv_32s_ISfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor);
VornStatus vornsDiv_32s16s_Sfs(const Vorn16s* src1, const Vorn32s* src2, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsDiv_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len);
VornStatus vornsDiv_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len);
VornStatus vornsDiv_32fc(const Vorn32fc* src1, const Vorn32fc* src2, Vorn32fc* dst, int len);
VornStatus vornsDiv_32fc_I(const Vorn32fc* src, Vorn32fc* srcDst, int len);
VornStatus vornsDiv_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len);
VornStatus vornsDiv_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len);
VornStatus vornsDiv_64fc(const Vorn64fc* src1, const Vorn64fc* src2, Vorn64fc* dst, int len);
VornStatus vornsDiv_64fc_I(const Vorn64fc* src, Vorn64fc* srcDst, int len);
/** @} */

/**
 * @defgroup vornsr_divide_constant Quotients with a constant
 * @brief Element by element, dst = src / val, and in the `Rev` forms dst = val / src; in place likewise.
 *
 * Types, shapes, overlap, scale factors and rounding: @ref vornsr_arithmetic. Checks, in this order: null, size, and
 * in `vornsDivC_*` a zero val (both parts of a complex one), which gives `vornStsDivByZeroErr` with nothing written.
 * The complex quotient, and the warning and the replacement values of the `Rev` forms: @ref vornsr_divide.
 * `vornsDivC_32f` multiplies by the single 1 / val, see @ref vornsr_multiply_constant.
 * @{
 */
VornStatus vornsDivC_8u_Sfs(const Vorn8u* src, Vorn8u val, Vorn8u* dst, int len, int scaleFactor);
VornStatus vornsDivC_8u_ISfs(Vorn8u val, Vorn8u* srcDst, int len, int scaleFactor);
VornStatus vornsDivC_16s_Sfs(const Vorn16s* src, Vorn16s val, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsDivC_16s_ISfs(Vorn16s val, Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsDivC_16sc_Sfs(const Vorn16sc* src, Vorn16sc val, Vorn16sc* dst, int len, int scaleFactor);
VornStatus vornsDivC_16sc_ISfs(Vorn16sc val, Vorn16sc* srcDst, int len, int scaleFactor);
VornStatus vornsDivC_32f(const Vorn32f* src, Vorn32f val, Vorn32f* dst, int len);
VornStatus vornsDivC_32f_I(Vorn32f val, Vorn32f* srcDst, int len);
VornStatus vornsDivC_32fc(const Vorn32fc* src, Vorn32fc val, Vorn32fc* dst, int len);
VornStatus vornsDivC_32fc_I(Vorn32fc val, Vorn32fc* srcDst, int len);
VornStatus vornsDivC_64f(const Vorn64f* src, Vorn64f val, Vorn64f* dst, int len);
VornStatus vornsDivC_64f_I(Vorn64f val, Vorn64f* srcDst, int len);
VornStatus vornsDivC_64fc(const Vorn64fc* src, Vorn64fc val, Vorn64fc* dst, int len);
VornStatus vornsDivC_64fc_I(Vorn64fc val, Vorn64fc* srcDst, int len);
VornStatus vornsDivCRev_16u(const Vorn16u* src, Vorn16u val, Vorn16u* dst, int len);
VornStatus vornsDivCRev_16u_I(Vorn16u val, Vorn16u* srcDst, int len);
VornStatus vornsDivCRev_32f(const Vorn32f* src, Vorn32f val, Vorn32f* dst, int len);
VornStatus vornsDivCRev_32f_I(Vorn32f val, Vorn32f* srcDst, int len);
/** @} */

/** @} */

/**
 * @defgroup vornsr_reductions Reductions and elementary functions
 * @brief Sums, dot products, extrema, logarithms, roots, magnitudes and absolute values of vectors.
 *
 * All of these check pointers first (`vornStsNullPtrErr`), then len below 1 (`vornStsSizeErr`), and write nothing
 * on failure. Any address will do. dst must be a source of the same shape or not overlap it. Results are the same
 * bits on every processor. A scale factor sf multiplies the exact result by 2^-sf, rounds to nearest (ties to
 * even) and saturates; where a range is stated, sf is clamped to it.
 * Roundings are told for the default rounding mode. In another mode of the caller's, what passes through floating
 * point follows that mode where it is not exact; the mode stays as it is.
 * @{
 */

/**
 * @defgroup vornsr_sums Sums
 * @brief The sum of the elements of a vector.
 *
 * `vornsSum_*(src, len, sum, ...)`.
 * - `32f`, `32fc`: hint 1 takes two four-lane sums in single over the numbers j and j + 4 of each eight; they are
 *   added, the lanes fold as (0 + 1) + (2 + 3) (complex: 0 + 2 and 1 + 3), and the last numbers are added in order.
 *   Any other hint: number j of each eight is added in double to sum j; they fold as ((0 + 2) + (4 + 6)) + ((1 + 3) +
 *   (5 + 7)) (complex: the two halves of that), the last numbers are added in order, and the total is rounded to
 *   single once.
 * - `64f`, `64fc`: sixteen lanes in double that fold in halves, then the last numbers in order.
 * - Integers sum exactly. `16s32s_Sfs`, `16sc32sc_Sfs` multiply by a double made from exponent bits alone (0 from
 *   sf 1023 on, infinity down from -1024; 0 times infinity gives 0); `16s_Sfs`, `16sc_Sfs` saturate that result to 16
 *   bits.
 * - `32s_Sfs`: sf within -31 to 63.
 *
 * Overlap, addresses, rounding modes: @ref vornsr_reductions. Checks, in this order: null, size. There are no
 * warnings.
 * @{
 */
VornStatus vornsSum_32f(const Vorn32f* src, int len, Vorn32f* sum, int hint);
VornStatus vornsSum_64f(const Vorn64f* src, int len, Vorn64f* sum);
VornStatus vornsSum_32fc(const Vorn32fc* src, int len, Vorn32fc* sum, int hint);
VornStatus vornsSum_64fc(const Vorn64fc* src, int len, Vorn64fc* sum);
VornStatus vornsSum_16s_Sfs(const Vorn16s* src, int len, Vorn16s* sum, int scaleFactor);
VornStatus vornsSum_16s32s_Sfs(const Vorn16s* src, int len, Vorn32s* sum, int scaleFactor);
VornStatus vornsSum_16sc_Sfs(const Vorn16sc* src, int len, Vorn16sc* sum, int scaleFactor);
VornStatus vornsSum_16sc32sc_Sfs(const Vorn16sc* src, int len, Vorn32sc* sum, int scaleFactor);
VornStatus vornsSum_32s_Sfs(const Vorn32s* src, int len, Vorn32s* sum, int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_dot_products Dot products
 * @brief The sum of the products of two vectors.
 *
 * `vornsDotProd_*(src1, src2, len, dp, ...)`: the sum of src1[i] src2[i], without conjugation.
 * - `32f` accumulates in single: below 16 elements in two lanes over pairs, the odd last element in the first; from 16
 *   on in four four-lane sums over sixteen elements a step, the rest as before in the first lanes of the first sum;
 *   the sums fold as (0 + 1) + (2 + 3), then the lanes likewise.
 * - The other float forms keep sixteen lanes in the precision of the result (lane j takes elements j, j + 16, ...) and
 *   fold them in halves; a complex product is re = rr - ii, im = ri + ir.
 * - 16-bit operands accumulate exactly in 64 bits; `16s32f` and its kin round that once; sf is within -15 to 31 for
 *   16-bit results and -31 to 31 for 32-bit ones.
 * - 32-bit operands run in double with sf within -31 to 93.
 *
 * Overlap, addresses, rounding modes: @ref vornsr_reductions. Checks, in this order: null, size. There are no
 * warnings.
 * @{
 */
VornStatus vornsDotProd_32f(const Vorn32f* src1, const Vorn32f* src2, int len, Vorn32f* dp);
VornStatus vornsDotProd_32fc(const Vorn32fc* src1, const Vorn32fc* src2, int len, Vorn32fc* dp);
VornStatus vornsDotProd_32f32fc(const Vorn32f* src1, const Vorn32fc* src2, int len, Vorn32fc* dp);
VornStatus vornsDotProd_64f(const Vorn64f* src1, const Vorn64f* src2, int len, Vorn64f* dp);
VornStatus vornsDotProd_64fc(const Vorn64fc* src1, const Vorn64fc* src2, int len, Vorn64fc* dp);
VornStatus vornsDotProd_64f64fc(const Vorn64f* src1, const Vorn64fc* src2, int len, Vorn64fc* dp);
VornStatus vornsDotProd_32f64f(const Vorn32f* src1, const Vorn32f* src2, int len, Vorn64f* dp);
VornStatus vornsDotProd_32fc64fc(const Vorn32fc* src1, const Vorn32fc* src2, int len, Vorn64fc* dp);
VornStatus vornsDotProd_32f32fc64fc(const Vorn32f* src1, const Vorn32fc* src2, int len, Vorn64fc* dp);
VornStatus vornsDotProd_16s32f(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn32f* dp);
VornStatus vornsDotProd_16sc32fc(const Vorn16sc* src1, const Vorn16sc* src2, int len, Vorn32fc* dp);
VornStatus vornsDotProd_16s16sc32fc(const Vorn16s* src1, const Vorn16sc* src2, int len, Vorn32fc* dp);
VornStatus vornsDotProd_16s64s(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn64s* dp);
VornStatus vornsDotProd_16sc64sc(const Vorn16sc* src1, const Vorn16sc* src2, int len, Vorn64sc* dp);
VornStatus vornsDotProd_16s16sc64sc(const Vorn16s* src1, const Vorn16sc* src2, int len, Vorn64sc* dp);
VornStatus vornsDotProd_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn16s* dp, int scaleFactor);
VornStatus vornsDotProd_16sc_Sfs(const Vorn16sc* src1, const Vorn16sc* src2, int len, Vorn16sc* dp, int scaleFactor);
VornStatus vornsDotProd_16s16sc_Sfs(const Vorn16s* src1, const Vorn16sc* src2, int len, Vorn16sc* dp, int scaleFactor);
VornStatus vornsDotProd_16s32s_Sfs(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn32s* dp, int scaleFactor);
VornStatus vornsDotProd_16sc32sc_Sfs(const Vorn16sc* src1, const Vorn16sc* src2, int len, Vorn32sc* dp,
                                     int scaleFactor);
VornStatus vornsDotProd_16s16sc32sc_Sfs(const Vorn16s* src1, const Vorn16sc* src2, int len, Vorn32sc* dp,
                                        int scaleFactor);
VornStatus vornsDotProd_32s_Sfs(const Vorn32s* src1, const Vorn32s* src2, int len, Vorn32s* dp, int scaleFactor);
VornStatus vornsDotProd_32sc_Sfs(const Vorn32sc* src1, const Vorn32sc* src2, int len, Vorn32sc* dp, int scaleFactor);
VornStatus vornsDotProd_32s32sc_Sfs(const Vorn32s* src1, const Vorn32sc* src2, int len, Vorn32sc* dp, int scaleFactor);
VornStatus vornsDotProd_16s32s32s_Sfs(const Vorn16s* src1, const Vorn32s* src2, int len, Vorn32s* dp, int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_extrema Extrema
 * @brief The smallest and the largest element of a vector, and where it stands.
 *
 * `vornsMax_*`, `vornsMin_*`, `vornsMinMax_*`, `vornsMaxIndx_*`, `vornsMinIndx_*`: what a scan finds that keeps its
 * first element until a strictly better one comes: of equal elements (zeros of both signs too) the first, of which the
 * index is given. A not-a-number is never better, and in front is never replaced. index may be null.
 *
 * Overlap, addresses, rounding modes: @ref vornsr_reductions. Checks, in this order: null, size. There are no
 * warnings.
 * @{
 */
VornStatus vornsMax_16s(const Vorn16s* src, int len, Vorn16s* result);
VornStatus vornsMax_32f(const Vorn32f* src, int len, Vorn32f* result);
VornStatus vornsMax_64f(const Vorn64f* src, int len, Vorn64f* result);
VornStatus vornsMin_16s(const Vorn16s* src, int len, Vorn16s* result);
VornStatus vornsMin_32f(const Vorn32f* src, int len, Vorn32f* result);
VornStatus vornsMin_64f(const Vorn64f* src, int len, Vorn64f* result);
VornStatus vornsMinMax_8u(const Vorn8u* src, int len, Vorn8u* min, Vorn8u* max);
VornStatus vornsMinMax_16u(const Vorn16u* src, int len, Vorn16u* min, Vorn16u* max);
VornStatus vornsMinMax_16s(const Vorn16s* src, int len, Vorn16s* min, Vorn16s* max);
VornStatus vornsMinMax_32u(const Vorn32u* src, int len, Vorn32u* min, Vorn32u* max);
VornStatus vornsMinMax_32s(const Vorn32s* src, int len, Vorn32s* min, Vorn32s* max);
VornStatus vornsMinMax_32f(const Vorn32f* src, int len, Vorn32f* min, Vorn32f* max);
VornStatus vornsMinMax_64f(const Vorn64f* src, int len, Vorn64f* min, Vorn64f* max);
VornStatus vornsMaxIndx_16s(const Vorn16s* src, int len, Vorn16s* result, int* index);
VornStatus vornsMaxIndx_32f(const Vorn32f* src, int len, Vorn32f* result, int* index);
VornStatus vornsMaxIndx_64f(const Vorn64f* src, int len, Vorn64f* result, int* index);
VornStatus vornsMinIndx_16s(const Vorn16s* src, int len, Vorn16s* result, int* index);
VornStatus vornsMinIndx_32f(const Vorn32f* src, int len, Vorn32f* result, int* index);
VornStatus vornsMinIndx_64f(const Vorn64f* src, int len, Vorn64f* result, int* index);
/** @} */

/**
 * @defgroup vornsr_elementwise_extrema Element-wise extrema
 * @brief The smaller or the larger one of each pair of elements, in place.
 *
 * `vornsMaxEvery_*_I`, `vornsMinEvery_*_I` replace an element of srcDst where that of src is strictly better.
 *
 * Of two equal ones, zeros of both signs too, the one in srcDst stays, and so it does beside a not-a-number, or where
 * it is one.
 *
 * Overlap, addresses, rounding modes: @ref vornsr_reductions. Checks, in this order: null, size. There are no
 * warnings.
 * @{
 */
VornStatus vornsMaxEvery_16s_I(const Vorn16s* src, Vorn16s* srcDst, int len);
VornStatus vornsMaxEvery_32s_I(const Vorn32s* src, Vorn32s* srcDst, int len);
VornStatus vornsMaxEvery_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len);
VornStatus vornsMinEvery_16s_I(const Vorn16s* src, Vorn16s* srcDst, int len);
VornStatus vornsMinEvery_32s_I(const Vorn32s* src, Vorn32s* srcDst, int len);
VornStatus vornsMinEvery_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len);
/** @} */

/**
 * @defgroup vornsr_logarithms Natural logarithms
 * @brief The natural logarithm of each element.
 *
 * `vornsLn_*(src, dst, len)`, `_I` in place.
 * - In single the result is within 0.84 units in the last place of the true logarithm for every argument, denormals
 *   included (tested over all of them; all but one in a thousand are correctly rounded); in double within 0.95 units;
 *   `64f32f` is the double result rounded once. ln 1 is 0.
 * - Replacement values: a zero of either sign gives negative infinity; a negative number the not-a-number FFC00000 (in
 *   double FFF8000000000000); an infinity of either sign or a not-a-number passes through unchanged and counts as no
 *   bad element. The vector is always completed.
 * - The first bad element decides the status: `vornStsLnZeroArg` for a zero, `vornStsLnNegArg` for a negative number.
 * - `32s_Sfs` with sf at or above 0: ln x rounded to the nearest integer, shifted right by sf modulo 32; below 0: the
 *   single logarithm times 2^-sf, rounded and saturated. Elements below 1 give -2147483648.
 *
 * Method: the argument as a power of two times 1 + f, ln 2 in two parts, and a series in the square of f / (2 + f)
 * (Cody and Waite 1980), fitted for the least largest error (Remez 1934).
 *
 * Overlap, addresses, rounding modes: @ref vornsr_reductions. Checks, in this order: null, size.
 * @{
 */
VornStatus vornsLn_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsLn_32f_I(Vorn32f* srcDst, int len);
VornStatus vornsLn_64f(const Vorn64f* src, Vorn64f* dst, int len);
VornStatus vornsLn_64f_I(Vorn64f* srcDst, int len);
VornStatus vornsLn_64f32f(const Vorn64f* src, Vorn32f* dst, int len);
VornStatus vornsLn_32s_Sfs(const Vorn32s* src, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsLn_32s_ISfs(Vorn32s* srcDst, int len, int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_sums_of_logarithms Sums of logarithms
 * @brief The sum of the natural logarithms of the elements: the logarithm of their product.
 *
 * `vornsSumLn_*(src, len, sum)` at the cost of one logarithm for each run of 512 elements. Each element is 2^e m with
 * m in [1, 2). In each eight of a run, m of elements j and j + 4 are multiplied in the precision of the elements
 * (16-bit integers: single), then in double onto lane j; the lanes multiply as (0 x 2) x (1 x 3), and the run's last
 * len mod 8 mantissas onto that in order. The run gives ln(product) + (sum of e) ln 2; runs add up in double. For
 * singles each pair adds an error of up to 2^-24 to the sum. A bad element ends the call and decides: a zero stores
 * *positive* infinity (`vornStsLnZeroArg`), a negative number a not-a-number (`vornStsLnNegArg`), an infinity or a
 * not-a-number stores a not-a-number with `vornStsNoErr`.
 *
 * Overlap, addresses, rounding modes: @ref vornsr_reductions. Checks, in this order: null, size.
 * @{
 */
VornStatus vornsSumLn_32f(const Vorn32f* src, int len, Vorn32f* sum);
VornStatus vornsSumLn_64f(const Vorn64f* src, int len, Vorn64f* sum);
VornStatus vornsSumLn_32f64f(const Vorn32f* src, int len, Vorn64f* sum);
VornStatus vornsSumLn_16s32f(const Vorn16s* src, int len, Vorn32f* sum);
/** @} */

/**
 * @defgroup vornsr_roots Square roots
 * @brief The square root of each element.
 *
 * `vornsSqrt_*`.
 * - Floats: correctly rounded; a negative element gives a not-a-number and `vornStsSqrtNegArg`, the rest is completed.
 * - Integers: correctly rounded at every sf (only `64s16s` gives 0 from 17 on, where its largest roots would still
 *   round to more); a negative element gives 0 and the same warning.
 * - Complex: the principal root, each part within 0.501 units in its last place (`64fc` within 0.751 where the part
 *   itself is denormal), nothing overflowing or vanishing inside, no warning; `16sc_Sfs` through double.
 *
 * Overlap, addresses, rounding modes: @ref vornsr_reductions. Checks, in this order: null, size.
 * @{
 */
VornStatus vornsSqrt_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsSqrt_32f_I(Vorn32f* srcDst, int len);
VornStatus vornsSqrt_64f(const Vorn64f* src, Vorn64f* dst, int len);
VornStatus vornsSqrt_64f_I(Vorn64f* srcDst, int len);
VornStatus vornsSqrt_32fc(const Vorn32fc* src, Vorn32fc* dst, int len);
VornStatus vornsSqrt_32fc_I(Vorn32fc* srcDst, int len);
VornStatus vornsSqrt_64fc(const Vorn64fc* src, Vorn64fc* dst, int len);
VornStatus vornsSqrt_64fc_I(Vorn64fc* srcDst, int len);
VornStatus vornsSqrt_8u_Sfs(const Vorn8u* src, Vorn8u* dst, int len, int scaleFactor);
VornStatus vornsSqrt_8u_ISfs(Vorn8u* srcDst, int len, int scaleFactor);
VornStatus vornsSqrt_16u_Sfs(const Vorn16u* src, Vorn16u* dst, int len, int scaleFactor);
VornStatus vornsSqrt_16u_ISfs(Vorn16u* srcDst, int len, int scaleFactor);
VornStatus vornsSqrt_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsSqrt_16s_ISfs(Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsSqrt_16sc_Sfs(const Vorn16sc* src, Vorn16sc* dst, int len, int scaleFactor);
VornStatus vornsSqrt_16sc_ISfs(Vorn16sc* srcDst, int len, int scaleFactor);
VornStatus vornsSqrt_64s_Sfs(const Vorn64s* src, Vorn64s* dst, int len, int scaleFactor);
VornStatus vornsSqrt_64s_ISfs(Vorn64s* srcDst, int len, int scaleFactor);
VornStatus vornsSqrt_32s16s_Sfs(const Vorn32s* src, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsSqrt_64s16s_Sfs(const Vorn64s* src, Vorn16s* dst, int len, int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_magnitudes Magnitudes
 * @brief The magnitude of each complex number, as pairs or as two vectors of parts.
 *
 * sqrt(re^2 + im^2).
 * - Floats: squares, sum and root in the type of the parts, each correctly rounded; squares may overflow to infinity
 *   or vanish.
 * - 16-bit parts: the exact sum of squares, rounded to single once and its root in single, or (`_Sfs`) correctly
 *   rounded at every sf.
 * - `vornsMagnitude_32sc_Sfs`: squares, sum and root in double; zero gives 0 at every scale factor.
 *
 * Overlap, addresses, rounding modes: @ref vornsr_reductions. Checks, in this order: null, size. There are no
 * warnings.
 * @{
 */
VornStatus vornsMagnitude_32fc(const Vorn32fc* src, Vorn32f* dst, int len);
VornStatus vornsMagnitude_64fc(const Vorn64fc* src, Vorn64f* dst, int len);
VornStatus vornsMagnitude_16sc32f(const Vorn16sc* src, Vorn32f* dst, int len);
VornStatus vornsMagnitude_16sc_Sfs(const Vorn16sc* src, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsMagnitude_32sc_Sfs(const Vorn32sc* src, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsMagnitude_32f(const Vorn32f* re, const Vorn32f* im, Vorn32f* dst, int len);
VornStatus vornsMagnitude_64f(const Vorn64f* re, const Vorn64f* im, Vorn64f* dst, int len);
VornStatus vornsMagnitude_16s32f(const Vorn16s* re, const Vorn16s* im, Vorn32f* dst, int len);
VornStatus vornsMagnitude_16s_Sfs(const Vorn16s* re, const Vorn16s* im, Vorn16s* dst, int len, int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_absolute_values Absolute values
 * @brief Each element without its sign.
 *
 * Floats lose their sign bit; -32768 gives 32767, and -2147483648 gives 2147483647.
 *
 * Overlap, addresses, rounding modes: @ref vornsr_reductions. Checks, in this order: null, size. There are no
 * warnings.
 * @{
 */
VornStatus vornsAbs_16s(const Vorn16s* src, Vorn16s* dst, int len);
VornStatus vornsAbs_16s_I(Vorn16s* srcDst, int len);
VornStatus vornsAbs_32s(const Vorn32s* src, Vorn32s* dst, int len);
VornStatus vornsAbs_32s_I(Vorn32s* srcDst, int len);
VornStatus vornsAbs_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsAbs_32f_I(Vorn32f* srcDst, int len);
VornStatus vornsAbs_64f(const Vorn64f* src, Vorn64f* dst, int len);
VornStatus vornsAbs_64f_I(Vorn64f* srcDst, int len);
/** @} */

/** @} */

VORN_END_DECLS

#endif
