/* Fourier transforms of power-of-two length. */
#ifndef VORNSR_FFT_H
#define VORNSR_FFT_H

#include "types.h"

VORN_BEGIN_DECLS

typedef struct VornsFFTSpec VornsFFTSpec;
typedef struct VornsFFTFixedSpec VornsFFTFixedSpec;

/**
 * @defgroup fft_contexts Transform contexts
 * @brief Tables and factors for the transforms of N = 2^order values: how large, how made, how released.
 *
 * X[k] = s * sum over n of x[n] * exp(-2 pi i n k / N) forward, x[n] = s * sum over k of X[k] * exp(+2 pi i n k / N)
 * inverse. order is 0 to 30. flag chooses s: 1 divides by N forward, 2 divides by N inverse, 4 divides by the root of N
 * both ways, 8 leaves both at 1. hint is kept and changes nothing.
 *
 * Each form has five functions. GetSize reports three sizes in bytes (in 32 bits: from about order 28 on the true ones
 * do not fit, and wrap). InitAlloc makes a context in the library's memory; Init makes it in specMem, with initBuf as
 * scratch that the caller may discard afterwards (not needed below order 4). Neither block needs alignment, and neither
 * may move while the context lives. Free ends it: an InitAlloc context gives its memory back, an Init context is only
 * marked, and every later call on it returns vornStsContextMatchErr. GetBufSize gives the size of the work buffer that a
 * transform takes.
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
VornStatus vornsFFTGetSize_R_32f(int order, int flag, int hint, int* specSize, int* initBufSize, int* workBufSize);
VornStatus vornsFFTGetSize_R_16s32s(int order, int flag, int hint, int* specSize, int* initBufSize, int* workBufSize);
VornStatus vornsFFTInitAlloc_R_32f(VornsFFTSpec** ctxOut, int order, int flag, int hint);
VornStatus vornsFFTInitAlloc_R_16s32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint);
VornStatus vornsFFTInit_R_32f(VornsFFTSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf);
VornStatus vornsFFTInit_R_16s32s(VornsFFTFixedSpec** ctxOut, int order, int flag, int hint, Vorn8u* specMem, Vorn8u* initBuf);
VornStatus vornsFFTFree_R_32f(VornsFFTSpec* ctx);
VornStatus vornsFFTFree_R_16s32s(VornsFFTFixedSpec* ctx);
VornStatus vornsFFTGetBufSize_R_32f(const VornsFFTSpec* ctx, int* size);
VornStatus vornsFFTGetBufSize_R_16s32s(const VornsFFTFixedSpec* ctx, int* size);
/** @} */

/**
 * @defgroup real_transforms Transforms of real data
 * @brief From N = 2^order real values to their conjugate-symmetric spectrum.
 *
 * CCS layout: Xr[0], 0, Xr[1], Xi[1], ..., Xr[N/2], 0, in all N + 2 values; for N = 1 two values, Xr[0] and 0.
 *
 * src holds N values, dst the whole layout; they may be the same array (the `_I` members), which then needs the room of
 * the layout, but must not overlap otherwise. buffer is a work buffer of the size that GetBufSize gives, at any address,
 * or null: the call then allocates and frees its own.
 *
 * Fixed point: the 16-bit input is converted to singles, transformed in single precision with the normalisation of the
 * context, multiplied by 2^-scaleFactor and rounded to the nearest 32-bit integer, ties to even, saturated (by the rule
 * of vornsConvert_32f32s_Sfs). Saturation comes before the values are put into the layout, so the two zeros stay zero.
 *
 * Checks: ctx null (vornStsNullPtrErr), form of ctx (vornStsContextMatchErr), src or dst null (vornStsNullPtrErr), work
 * buffer (vornStsMemAllocErr); nothing is written on failure.
 *
 * Accuracy: the root mean square of the error is at most 0.7 * sqrt(order) * 2^-24 of that of the spectrum (measured: at
 * most 0.63). The order of all operations is fixed: a call gives the same bits in every build, at every address, in place
 * or not. Infinities and not-a-numbers spread to the bins by the arithmetic.
 *
 * Decimation in time with radices 4 and 8 over a half-length complex transform (Cooley, Tukey 1965; Sorensen, Jones,
 * Heideman, Burrus 1987).
 * @{
 */
VornStatus vornsFFTFwd_RToCCS_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToCCS_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToCCS_16s32s_Sfs(const Vorn16s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer);
/** @} */

VORN_END_DECLS

#endif
