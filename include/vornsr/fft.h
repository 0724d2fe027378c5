/* Fourier transforms of power-of-two length. */
#ifndef VORNSR_FFT_H
#define VORNSR_FFT_H

#include "types.h"

VORN_BEGIN_DECLS

typedef struct VornsFFTSpec VornsFFTSpec;
typedef struct VornsFFTFixedSpec VornsFFTFixedSpec;

/**
 * @defgroup fft_contexts Transform contexts
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
 * @{
 */
VornStatus vornsFFTFwd_RToCCS_32f(const Vorn32f* src, Vorn32f* dst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToCCS_32f_I(Vorn32f* srcDst, const VornsFFTSpec* ctx, Vorn8u* buffer);
VornStatus vornsFFTFwd_RToCCS_16s32s_Sfs(const Vorn16s* src, Vorn32s* dst, const VornsFFTFixedSpec* ctx, int scaleFactor, Vorn8u* buffer);
/** @} */

VORN_END_DECLS

#endif
