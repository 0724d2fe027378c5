/* The vector layer: move, set, convert, reductions, elementary functions. */
#ifndef VORNSR_SIGNAL_H
#define VORNSR_SIGNAL_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup move Move, set, conjugate
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
 * Large blocks: a fill that is at least as large as one core's part of the last-level cache, and never one below 512 KiB,
 * is written past the cache; copies and moves leave that choice to the C library.
 * @{
 */
VornStatus vornsCopy_8u(const Vorn8u* src, Vorn8u* dst, int len);
VornStatus vornsMove_8u(const Vorn8u* src, Vorn8u* dst, int len);
VornStatus vornsZero_8u(Vorn8u* dst, int len);
VornStatus vornsSet_8u(Vorn8u val, Vorn8u* dst, int len);
VornStatus vornsCopy_16s(const Vorn16s* src, Vorn16s* dst, int len);
VornStatus vornsMove_16s(const Vorn16s* src, Vorn16s* dst, int len);
VornStatus vornsZero_16s(Vorn16s* dst, int len);
VornStatus vornsSet_16s(Vorn16s val, Vorn16s* dst, int len);
VornStatus vornsCopy_16sc(const Vorn16sc* src, Vorn16sc* dst, int len);
VornStatus vornsMove_16sc(const Vorn16sc* src, Vorn16sc* dst, int len);
VornStatus vornsZero_16sc(Vorn16sc* dst, int len);
VornStatus vornsSet_16sc(Vorn16sc val, Vorn16sc* dst, int len);
VornStatus vornsCopy_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsMove_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsZero_32f(Vorn32f* dst, int len);
VornStatus vornsSet_32f(Vorn32f val, Vorn32f* dst, int len);
VornStatus vornsCopy_32fc(const Vorn32fc* src, Vorn32fc* dst, int len);
VornStatus vornsMove_32fc(const Vorn32fc* src, Vorn32fc* dst, int len);
VornStatus vornsZero_32fc(Vorn32fc* dst, int len);
VornStatus vornsSet_32fc(Vorn32fc val, Vorn32fc* dst, int len);
VornStatus vornsCopy_64f(const Vorn64f* src, Vorn64f* dst, int len);
VornStatus vornsMove_64f(const Vorn64f* src, Vorn64f* dst, int len);
VornStatus vornsZero_64f(Vorn64f* dst, int len);
VornStatus vornsSet_64f(Vorn64f val, Vorn64f* dst, int len);
VornStatus vornsCopy_64fc(const Vorn64fc* src, Vorn64fc* dst, int len);
VornStatus vornsMove_64fc(const Vorn64fc* src, Vorn64fc* dst, int len);
VornStatus vornsZero_64fc(Vorn64fc* dst, int len);
VornStatus vornsSet_64fc(Vorn64fc val, Vorn64fc* dst, int len);
VornStatus vornsCopy_32s(const Vorn32s* src, Vorn32s* dst, int len);
VornStatus vornsMove_32s(const Vorn32s* src, Vorn32s* dst, int len);
VornStatus vornsZero_32s(Vorn32s* dst, int len);
VornStatus vornsSet_32s(Vorn32s val, Vorn32s* dst, int len);
VornStatus vornsCopy_32sc(const Vorn32sc* src, Vorn32sc* dst, int len);
VornStatus vornsMove_32sc(const Vorn32sc* src, Vorn32sc* dst, int len);
VornStatus vornsZero_32sc(Vorn32sc* dst, int len);
VornStatus vornsSet_32sc(Vorn32sc val, Vorn32sc* dst, int len);
VornStatus vornsCopy_64s(const Vorn64s* src, Vorn64s* dst, int len);
VornStatus vornsMove_64s(const Vorn64s* src, Vorn64s* dst, int len);
VornStatus vornsZero_64s(Vorn64s* dst, int len);
VornStatus vornsSet_64s(Vorn64s val, Vorn64s* dst, int len);
VornStatus vornsCopy_64sc(const Vorn64sc* src, Vorn64sc* dst, int len);
VornStatus vornsMove_64sc(const Vorn64sc* src, Vorn64sc* dst, int len);
VornStatus vornsZero_64sc(Vorn64sc* dst, int len);
VornStatus vornsSet_64sc(Vorn64sc val, Vorn64sc* dst, int len);
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

/**
 * @defgroup convert Conversions
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
 * @defgroup reductions Reductions and elementary functions
 * @{
 */
VornStatus vornsSum_32f(const Vorn32f* src, int len, Vorn32f* sum, int hint);
VornStatus vornsLn_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsLn_32f_I(Vorn32f* srcDst, int len);
VornStatus vornsSumLn_32f(const Vorn32f* src, int len, Vorn32f* sum);
VornStatus vornsMagnitude_32fc(const Vorn32fc* src, Vorn32f* dst, int len);
VornStatus vornsMagnitude_32sc_Sfs(const Vorn32sc* src, Vorn32s* dst, int len, int scaleFactor);
/** @} */

VORN_END_DECLS

#endif
