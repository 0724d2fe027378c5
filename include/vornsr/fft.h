/* Fourier transforms of power-of-two length. */
#ifndef VORNSR_FFT_H
#define VORNSR_FFT_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_fft_contexts Transform contexts
 * @brief Tables and factors for the transforms of N = 2^order values: how large, how made, how released.
 *
 * X[k] = s * sum over n of x[n] * exp(-2 pi i n k / N) forward, x[n] = s * sum over k of X[k] * exp(+2 pi i n k / N)
 * inverse. order is 0 to 30. flag chooses s: 1 divides by N forward, 2 divides by N inverse, 4 divides by the root of N
 * both ways, 8 leaves both at 1. hint is kept and changes nothing.
 *
 * Each form has five functions. GetSize reports three sizes in bytes (in 32 bits: from order 27 or 28 on the true ones
 * do not fit, and wrap). InitAlloc makes a context in the library's memory; Init makes it in specMem, with initBuf as
 * scratch that the caller may discard afterwards (not needed below order 4). Neither block needs alignment, and neither
 * may move while the context lives. Free ends it: an InitAlloc context gives its memory back, an Init context is only
 * marked, and every later call on it returns vornStsContextMatchErr. GetBufSize gives the size of the work buffer that
 * a transform takes.
 *
 * A context belongs to one form and is refused by all others. It is only read by the transforms, so threads may share
 * it, each with its own work buffer.
 *
 * Checks. GetSize: order (vornStsFftOrderErr), null pointers (vornStsNullPtrErr); flag and hint are not looked at.
 * InitAlloc: ctxOut, order, memory (vornStsMemAllocErr), flag (vornStsFftFlagErr). Init: ctxOut, order, specMem, flag,
 * and from order 4 on initBuf. Free, GetBufSize: null pointers, then the form (vornStsContextMatchErr). On any failure
 * ctxOut is not written and nothing stays allocated.
 *
 * Exact: every table value is one of sin(2 pi i / N), i from 0 to N/4, computed in double and rounded once to the
 * precision of the form, or its negative; recombination values follow from these by one rounded expression.
 * @{
 */

/** A context of transforms in single or double. */
typedef struct VornsFFTSpec VornsFFTSpec;
/** A context of transforms in fixed point. */
typedef struct VornsFFTFixedSpec VornsFFTFixedSpec;

/**
 * @defgroup vornsr_fft_complex_contexts Contexts of complex transforms
 * @brief Sizes, making and release, for pairs (`32fc`, `64fc`, `32sc`) and for split parts (`32f`, `64f`, `32s`).
 *
 * What the five functions of each form do, what the flags mean and in what order arguments are checked:
 * @ref vornsr_fft_contexts. The transforms: @ref vornsr_complex_transforms.
 * @{
 */
VornStatus vornsFFTGetSize_C_32fc(int order, int flag, int hint, int* specSize, int* initBufSize, int* workBufSize);
VornStatus vornsFFTGetSize_C_32f(int order, int flag, int hint, int* specSize, int* initBufSize, int* workBufSize);
VornStatus vornsFFTGetSize_C_64fc(int order, int flag, int hint, int* specSize, int* initBufSize, int* workBufSize);
VornStatus vornsFFTGetSize_C_64f(int order, int flag, int hint, int* specSize, int* initBufSize, int* workBufSize);
VornStatus vornsFFTGetSize_C_32sc(int order, int flag, int hint, int* specSize, int* initBufSize, int* workBufSize);
VornStatus vornsFFTGetSize_C_32s(int order, int flag, int hint, int* specSize, int* initBufSize, int* workBufSize);
VornStatus vornsFFTInitAlloc_C_32fc(VornsFFTSpec** ctxOut, int order, int flag, int hint);
VornStatus vornsFFTInitAlloc_C_32f(VornsFFTSpec** ctxOut, int order, int flag, int hint);
VornStatus vornsFFTInitAlloc_C_64fc(VornsFFTSpec** ctxOut, int order, int flag, int hint);
VornStatus vornsFFTInitAlloc_C_64f(VornsFFTSpec** ctxOut, int order, int flag, int hint);
VornStatus vornsFFTInitAlloc_C_32sc(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint);
VornStatus vornsFFTInitAlloc_C_32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint);
VornStatus vornsFFTInit_C_32fc(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf);
VornStatus vornsFFTInit_C_32f(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf);
VornStatus vornsFFTInit_C_64fc(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf);
VornStatus vornsFFTInit_C_64f(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf);
VornStatus vornsFFTInit_C_32sc(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem,
                               Vorn8u* initBuf);
VornStatus vornsFFTInit_C_32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem,
                              Vorn8u* initBuf);
VornStatus vornsFFTFree_C_32fc(VornsFFTSpec* ctx);
VornStatus vornsFFTFree_C_32f(VornsFFTSpec* ctx);
VornStatus vornsFFTFree_C_64fc(VornsFFTSpec* ctx);
VornStatus vornsFFTFree_C_64f(VornsFFTSpec* ctx);
VornStatus vornsFFTFree_C_32sc(VornsFFTFixedSpec* ctx);
VornStatus vornsFFTFree_C_32s(VornsFFTFixedSpec* ctx);
VornStatus vornsFFTGetBufSize_C_32fc(const VornsFFTSpec* ctx, int* size);
VornStatus vornsFFTGetBufSize_C_32f(const VornsFFTSpec* ctx, int* size);
VornStatus vornsFFTGetBufSize_C_64fc(const VornsFFTSpec* ctx, int* size);
VornStatus vornsFFTGetBufSize_C_64f(const VornsFFTSpec* ctx, int* size);
VornStatus vornsFFTGetBufSize_C_32sc(const VornsFFTFixedSpec* ctx, int* size);
VornStatus vornsFFTGetBufSize_C_32s(const VornsFFTFixedSpec* ctx, int* size);
/** @} */

/**
 * @defgroup vornsr_fft_real_contexts Contexts of real transforms
 * @brief Sizes, making and release, for real data in single, double and fixed point.
 *
 * What the five functions of each form do, what the flags mean and in what order arguments are checked:
 * @ref vornsr_fft_contexts. The transforms: @ref vornsr_real_transforms.
 * @{
 */
VornStatus vornsFFTGetSize_R_32f(int order, int flag, int hint, int* specSize, int* initBufSize, int* workBufSize);
VornStatus vornsFFTGetSize_R_64f(int order, int flag, int hint, int* specSize, int* initBufSize, int* workBufSize);
VornStatus vornsFFTGetSize_R_32s(int order, int flag, int hint, int* specSize, int* initBufSize, int* workBufSize);
VornStatus vornsFFTGetSize_R_16s32s(int order, int flag, int hint, int* specSize, int* initBufSize, int* workBufSize);
VornStatus vornsFFTInitAlloc_R_32f(VornsFFTSpec** ctxOut, int order, int flag, int hint);
VornStatus vornsFFTInitAlloc_R_64f(VornsFFTSpec** ctxOut, int order, int flag, int hint);
VornStatus vornsFFTInitAlloc_R_32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint);
VornStatus vornsFFTInitAlloc_R_16s32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint);
VornStatus vornsFFTInit_R_32f(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf);
VornStatus vornsFFTInit_R_64f(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf);
VornStatus vornsFFTInit_R_32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem,
                              Vorn8u* initBuf);
VornStatus vornsFFTInit_R_16s32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem,
                                 Vorn8u* initBuf);
VornStatus vornsFFTFree_R_32f(VornsFFTSpec* ctx);
VornStatus vornsFFTFree_R_64f(VornsFFTSpec* ctx);
VornStatus vornsFFTFree_R_32s(VornsFFTFixedSpec* ctx);
VornStatus vornsFFTFree_R_16s32s(VornsFFTFixedSpec* ctx);
VornStatus vornsFFTGetBufSize_R_32f(const VornsFFTSpec* ctx, int* size);
VornStatus vornsFFTGetBufSize_R_64f(const VornsFFTSpec* ctx, int* size);
VornStatus vornsFFTGetBufSize_R_32s(const VornsFFTFixedSpec* ctx, int* size);
VornStatus vornsFFTGetBufSize_R_16s32s(const VornsFFTFixedSpec* ctx, int* size);
/** @} */

/** @} */

/**
 * @defgroup vornsr_complex_transforms Complex transforms
 * @brief Forward and inverse transforms of N = 2^order complex values.
 *
 * Values are pairs (`32fc`, `64fc`, `32sc`) or two arrays, real and imaginary parts (`32f`, `64f`, `32s`), N values
 * each. Source and destination are the same (the `_I` members) or do not overlap. buffer is a work buffer of the size
 * that GetBufSize gives, at any address, or null: the call then allocates and frees its own.
 *
 * Fixed point (`_Sfs`, `_ISfs`): the integers are converted to doubles, transformed in double with the normalisation of
 * the context, multiplied by 2^-scaleFactor, rounded to nearest, ties to even, and saturated (by the rule of
 * vornsConvert_64f32s_Sfs).
 *
 * Checks: ctx null (vornStsNullPtrErr), form of ctx (vornStsContextMatchErr), data null (vornStsNullPtrErr), work
 * buffer (vornStsMemAllocErr; also a fixed-point transform whose work area 32 bits cannot say). Nothing is written on
 * failure.
 *
 * Accuracy: the root mean square of the error is at most 0.7 * sqrt(order) units of rounding (2^-24 in single, 2^-53 in
 * double) of that of the result. The order of all operations is fixed: a call gives the same bits in every build, at
 * every address, in place or not, as pairs or split. Infinities and not-a-numbers spread by the arithmetic.
 *
 * Decimation in time with radices 4 and 8; long transforms are cut into blocks that are merged in a work area of at
 * most 256 KiB (Cooley, Tukey 1965; Bailey 1990).
 * @{
 */
VornStatus vornsFFTFwd_CToC_32fc(const Vorn32fc* src, Vorn32fc* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_CToC_32fc_I(Vorn32fc* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_CToC_64fc(const Vorn64fc* src, Vorn64fc* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_CToC_64fc_I(Vorn64fc* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_CToC_32f(const Vorn32f* srcRe, const Vorn32f* srcIm, Vorn32f* dstRe, Vorn32f* dstIm,
                                const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_CToC_32f_I(Vorn32f* srcDstRe, Vorn32f* srcDstIm, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_CToC_64f(const Vorn64f* srcRe, const Vorn64f* srcIm, Vorn64f* dstRe, Vorn64f* dstIm,
                                const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_CToC_64f_I(Vorn64f* srcDstRe, Vorn64f* srcDstIm, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_CToC_32sc_Sfs(const Vorn32sc* src, Vorn32sc* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                     Vorn8u* buffer);
VornStatus vornsFFTFwd_CToC_32sc_ISfs(Vorn32sc* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer);
VornStatus vornsFFTFwd_CToC_32s_Sfs(const Vorn32s* srcRe, const Vorn32s* srcIm, Vorn32s* dstRe, Vorn32s* dstIm,
                                    const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer);
VornStatus vornsFFTFwd_CToC_32s_ISfs(Vorn32s* srcDstRe, Vorn32s* srcDstIm, const VornsFFTFixedSpec* ctx,
                                     int scaleFactor, Vorn8u* buffer);
VornStatus vornsFFTInv_CToC_32fc(const Vorn32fc* src, Vorn32fc* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_CToC_32fc_I(Vorn32fc* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_CToC_64fc(const Vorn64fc* src, Vorn64fc* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_CToC_64fc_I(Vorn64fc* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_CToC_32f(const Vorn32f* srcRe, const Vorn32f* srcIm, Vorn32f* dstRe, Vorn32f* dstIm,
                                const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_CToC_32f_I(Vorn32f* srcDstRe, Vorn32f* srcDstIm, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_CToC_64f(const Vorn64f* srcRe, const Vorn64f* srcIm, Vorn64f* dstRe, Vorn64f* dstIm,
                                const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_CToC_64f_I(Vorn64f* srcDstRe, Vorn64f* srcDstIm, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_CToC_32sc_Sfs(const Vorn32sc* src, Vorn32sc* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                     Vorn8u* buffer);
VornStatus vornsFFTInv_CToC_32sc_ISfs(Vorn32sc* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer);
VornStatus vornsFFTInv_CToC_32s_Sfs(const Vorn32s* srcRe, const Vorn32s* srcIm, Vorn32s* dstRe, Vorn32s* dstIm,
                                    const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer);
VornStatus vornsFFTInv_CToC_32s_ISfs(Vorn32s* srcDstRe, Vorn32s* srcDstIm, const VornsFFTFixedSpec* ctx,
                                     int scaleFactor, Vorn8u* buffer);
/** @} */

/**
 * @defgroup vornsr_real_transforms Transforms of real data
 * @brief Between N = 2^order real values and their conjugate-symmetric spectrum.
 *
 * Three layouts hold the spectrum, X[0] and X[N/2] being real:
 *
 *  - CCS: Xr[0], 0, Xr[1], Xi[1], ..., Xr[N/2], 0, in all N + 2 values; for N = 1 two values, Xr[0] and 0;
 *  - Pack: Xr[0], Xr[1], Xi[1], Xr[2], ..., Xr[N/2], in all N values;
 *  - Perm: Xr[0], Xr[N/2], Xr[1], Xi[1], ..., Xi[N/2 - 1], in all N values.
 *
 * Back from CCS, the imaginary parts of X[0] and X[N/2] count as 0. They have their places all the same.
 *
 * src and dst may be the same array (the `_I` members), which then needs the room of the layout, but must not overlap
 * otherwise. buffer is a work buffer of the size that GetBufSize gives, at any address, or null: the call then
 * allocates and frees its own.
 *
 * Fixed point (`_Sfs`, `_ISfs`): the integers are converted to doubles (the mixed-width pair: to singles, which round a
 * 32-bit spectrum to 24 bits), transformed with the normalisation of the context, multiplied by 2^-scaleFactor, rounded
 * to nearest, ties to even, and saturated (by the rules of vornsConvert_64f32s_Sfs, _32f32s_Sfs and _32f16s_Sfs). Into
 * CCS, saturation comes before the values are put in their places, so its two zeros stay zero.
 *
 * Checks: ctx null (vornStsNullPtrErr), form of ctx (vornStsContextMatchErr), src or dst null (vornStsNullPtrErr), work
 * buffer (vornStsMemAllocErr; also a fixed-point transform whose work area 32 bits cannot say). Nothing is written on
 * failure.
 *
 * Accuracy: the root mean square of the error is at most 0.7 * sqrt(order) units of rounding (2^-24 in single, 2^-53 in
 * double) of that of the result. The order of all operations is fixed: a call gives the same bits in every build, at
 * every address, in place or not. Infinities and not-a-numbers spread by the arithmetic.
 *
 * A complex transform of half the length and one pass of recombination (Cooley, Lewis, Welch 1970; Sorensen, Jones,
 * Heideman, Burrus 1987).
 * @{
 */
VornStatus vornsFFTFwd_RToPerm_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToPerm_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToPerm_64f(const Vorn64f* src, Vorn64f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToPerm_64f_I(Vorn64f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToPerm_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                       Vorn8u* buffer);
VornStatus vornsFFTFwd_RToPerm_32s_ISfs(Vorn32s* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToPack_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToPack_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToPack_64f(const Vorn64f* src, Vorn64f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToPack_64f_I(Vorn64f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToPack_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                       Vorn8u* buffer);
VornStatus vornsFFTFwd_RToPack_32s_ISfs(Vorn32s* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToCCS_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToCCS_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToCCS_64f(const Vorn64f* src, Vorn64f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToCCS_64f_I(Vorn64f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToCCS_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                      Vorn8u* buffer);
VornStatus vornsFFTFwd_RToCCS_32s_ISfs(Vorn32s* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer);
VornStatus vornsFFTInv_PermToR_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_PermToR_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_PermToR_64f(const Vorn64f* src, Vorn64f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_PermToR_64f_I(Vorn64f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_PermToR_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                       Vorn8u* buffer);
VornStatus vornsFFTInv_PermToR_32s_ISfs(Vorn32s* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer);
VornStatus vornsFFTInv_PackToR_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_PackToR_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_PackToR_64f(const Vorn64f* src, Vorn64f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_PackToR_64f_I(Vorn64f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_PackToR_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                       Vorn8u* buffer);
VornStatus vornsFFTInv_PackToR_32s_ISfs(Vorn32s* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer);
VornStatus vornsFFTInv_CCSToR_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_CCSToR_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_CCSToR_64f(const Vorn64f* src, Vorn64f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_CCSToR_64f_I(Vorn64f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTInv_CCSToR_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor,
                                      Vorn8u* buffer);
VornStatus vornsFFTInv_CCSToR_32s_ISfs(Vorn32s* srcDst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToCCS_16s32s_Sfs(const Vorn16s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx,
                                         int scaleFactor, Vorn8u* buffer);
VornStatus vornsFFTInv_CCSToR_32s16s_Sfs(const Vorn32s* src, Vorn16s* dst, const VornsFFTFixedSpec* ctx,
                                         int scaleFactor, Vorn8u* buffer);
/** @} */

/**
 * @defgroup vornsr_packed_spectra Packed spectra
 * @brief Products of spectra in Pack and Perm layout, and their expansion into all complex values.
 *
 * len counts the values of the real signal; it may be odd here, and then Pack and Perm are both Xr[0] and the pairs
 * Xr[k], Xi[k] from place 1 on, without a value at half the length. Elements are checked for null (vornStsNullPtrErr),
 * then len below 1 (vornStsSizeErr). A source may be the destination.
 *
 * `MulPack`, `MulPerm`: bin by bin the product of two spectra. Floats: a pair is (ar br - ai bi, ar bi + ai br), each
 * operation rounded. 16-bit integers: exact sums (2^31 becomes 2147483647), then by scaleFactor sf: above 0 shifted
 * right by sf without rounding; below 0 saturated to 16 bits and shifted left by -sf; last saturated to 16 bits.
 *
 * `MulPackConj`: src times the conjugate of srcDst, into srcDst: a pair is (sr dr + si di, si dr - sr di).
 *
 * `ConjPack`, `ConjPerm`, `ConjCcs`: dst receives all len complex values, the upper half as dst[len - k] =
 * conj(dst[k]). Pack and Perm put 0 beside the real bins; CCS keeps what stands there, and its source is len / 2 + 1
 * pairs. In place the packed values stand at the start of srcDst, which has room for len pairs.
 * @{
 */
VornStatus vornsMulPack_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len);
VornStatus vornsMulPack_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len);
VornStatus vornsMulPack_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len);
VornStatus vornsMulPack_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len);
VornStatus vornsMulPack_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsMulPack_16s_ISfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsMulPerm_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len);
VornStatus vornsMulPerm_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len);
VornStatus vornsMulPerm_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len);
VornStatus vornsMulPerm_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len);
VornStatus vornsMulPerm_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsMulPerm_16s_ISfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsMulPackConj_32f_I(const Vorn32f* src, Vorn32f* srcDst, int len);
VornStatus vornsMulPackConj_64f_I(const Vorn64f* src, Vorn64f* srcDst, int len);
VornStatus vornsConjPack_32fc(const Vorn32f* src, Vorn32fc* dst, int len);
VornStatus vornsConjPack_32fc_I(Vorn32fc* srcDst, int len);
VornStatus vornsConjPack_64fc(const Vorn64f* src, Vorn64fc* dst, int len);
VornStatus vornsConjPack_64fc_I(Vorn64fc* srcDst, int len);
VornStatus vornsConjPack_16sc(const Vorn16s* src, Vorn16sc* dst, int len);
VornStatus vornsConjPack_16sc_I(Vorn16sc* srcDst, int len);
VornStatus vornsConjPerm_32fc(const Vorn32f* src, Vorn32fc* dst, int len);
VornStatus vornsConjPerm_32fc_I(Vorn32fc* srcDst, int len);
VornStatus vornsConjPerm_64fc(const Vorn64f* src, Vorn64fc* dst, int len);
VornStatus vornsConjPerm_64fc_I(Vorn64fc* srcDst, int len);
VornStatus vornsConjPerm_16sc(const Vorn16s* src, Vorn16sc* dst, int len);
VornStatus vornsConjPerm_16sc_I(Vorn16sc* srcDst, int len);
VornStatus vornsConjCcs_32fc(const Vorn32f* src, Vorn32fc* dst, int len);
VornStatus vornsConjCcs_32fc_I(Vorn32fc* srcDst, int len);
VornStatus vornsConjCcs_64fc(const Vorn64f* src, Vorn64fc* dst, int len);
VornStatus vornsConjCcs_64fc_I(Vorn64fc* srcDst, int len);
VornStatus vornsConjCcs_16sc(const Vorn16s* src, Vorn16sc* dst, int len);
VornStatus vornsConjCcs_16sc_I(Vorn16sc* srcDst, int len);
/** @} */

/**
 * @defgroup vornsr_autocorrelation Autocorrelation
 * @brief For each lag, dst[k] = sum over n from 0 to srcLen - 1 - k of src[n] * src[n + k], for k from 0 to dstLen - 1.
 *
 * In the complex forms the first factor is conjugated. Lags at and above srcLen are 0. `NormA` multiplies every lag by
 * the rounded 1 / srcLen, `NormB` divides lag k by srcLen - k. src and dst must not overlap.
 *
 * Checks: null pointers (vornStsNullPtrErr), srcLen or dstLen below 1 (vornStsSizeErr), memory (vornStsMemAllocErr);
 * more than a transform can hold (srcLen above 2^29 with many lags) gives vornStsFftOrderErr.
 *
 * Up to a number of lags, min(srcLen, dstLen), the sums are taken directly, each in the order of n in the precision of
 * the element, so that the result is the same in every build: below 856 lags for `32f`, `64f` and `16s`, 152 for
 * `32fc`, 368 for `64fc`. From there on the Fourier transform is used, on the smallest power of two of at least 2
 * srcLen values; its accuracy is that of the transforms. Both routes give the same bits in every build.
 *
 * 16-bit samples: the products of two neighbouring samples are summed exactly, every such sum is rounded to single and
 * added in single; the result is normalised in single, multiplied by 2^-scaleFactor, rounded to nearest, ties to even,
 * and saturated (by the rule of vornsConvert_32f16s_Sfs).
 * @{
 */
VornStatus vornsAutoCorr_32f(const Vorn32f* src, int srcLen, Vorn32f* dst, int dstLen);
VornStatus vornsAutoCorr_64f(const Vorn64f* src, int srcLen, Vorn64f* dst, int dstLen);
VornStatus vornsAutoCorr_32fc(const Vorn32fc* src, int srcLen, Vorn32fc* dst, int dstLen);
VornStatus vornsAutoCorr_64fc(const Vorn64fc* src, int srcLen, Vorn64fc* dst, int dstLen);
VornStatus vornsAutoCorr_16s_Sfs(const Vorn16s* src, int srcLen, Vorn16s* dst, int dstLen, int scaleFactor);
VornStatus vornsAutoCorr_NormA_32f(const Vorn32f* src, int srcLen, Vorn32f* dst, int dstLen);
VornStatus vornsAutoCorr_NormA_64f(const Vorn64f* src, int srcLen, Vorn64f* dst, int dstLen);
VornStatus vornsAutoCorr_NormA_32fc(const Vorn32fc* src, int srcLen, Vorn32fc* dst, int dstLen);
VornStatus vornsAutoCorr_NormA_64fc(const Vorn64fc* src, int srcLen, Vorn64fc* dst, int dstLen);
VornStatus vornsAutoCorr_NormA_16s_Sfs(const Vorn16s* src, int srcLen, Vorn16s* dst, int dstLen, int scaleFactor);
VornStatus vornsAutoCorr_NormB_32f(const Vorn32f* src, int srcLen, Vorn32f* dst, int dstLen);
VornStatus vornsAutoCorr_NormB_64f(const Vorn64f* src, int srcLen, Vorn64f* dst, int dstLen);
VornStatus vornsAutoCorr_NormB_32fc(const Vorn32fc* src, int srcLen, Vorn32fc* dst, int dstLen);
VornStatus vornsAutoCorr_NormB_64fc(const Vorn64fc* src, int srcLen, Vorn64fc* dst, int dstLen);
VornStatus vornsAutoCorr_NormB_16s_Sfs(const Vorn16s* src, int srcLen, Vorn16s* dst, int dstLen, int scaleFactor);
/** @} */

VORN_END_DECLS

#endif
