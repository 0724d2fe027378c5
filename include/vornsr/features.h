/* Feature extraction: filter banks, cepstra, deltas, frame conditioning. */
#ifndef VORNSR_FEATURES_H
#define VORNSR_FEATURES_H

#include "types.h"

VORN_BEGIN_DECLS

typedef struct VornFBankState_32f VornFBankState_32f;
typedef struct VornFBankState_16s VornFBankState_16s;
typedef struct VornDCTLifterState_32f VornDCTLifterState_32f;

/**
 * @defgroup filter_banks Mel filter banks
 * @{
 */
VornStatus vornsMelFBankGetSize_32f(int fftLen, int nFilter, int flags, int* pSize);
VornStatus vornsMelFBankGetSize_16s(int fftLen, int nFilter, int flags, int* pSize);
VornStatus vornsMelFBankInit_32f(VornFBankState_32f* pFBank, int* pOrder, int fftLen, Vorn32f sampleFreq, Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv, int flags);
VornStatus vornsMelFBankInit_16s(VornFBankState_16s* pFBank, int* pOrder, int fftLen, Vorn32f sampleFreq, Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv, int flags);
VornStatus vornsMelFBankInitAlloc_32f(VornFBankState_32f** ppFBank, int* pOrder, int fftLen, Vorn32f sampleFreq, Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv, int flags);
VornStatus vornsMelFBankInitAlloc_16s(VornFBankState_16s** ppFBank, int* pOrder, int fftLen, Vorn32f sampleFreq, Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv, int flags);
VornStatus vornsFBankFree_32f(VornFBankState_32f* pFBank);
VornStatus vornsFBankFree_16s(VornFBankState_16s* pFBank);
VornStatus vornsEvalFBank_32f(const Vorn32f* src, Vorn32f* dst, const VornFBankState_32f* pFBank);
VornStatus vornsEvalFBank_16s_Sfs(const Vorn16s* src, Vorn16s* dst, const VornFBankState_16s* pFBank, int scale);
VornStatus vornsEvalFBank_16s32s_Sfs(const Vorn16s* src, Vorn32s* dst, const VornFBankState_16s* pFBank, int scale);
/** @} */

/**
 * @defgroup dct_lifter DCT lifter
 * @{
 */
VornStatus vornsDCTLifterInitAlloc_32f(VornDCTLifterState_32f** ppState, int lenDCT, int lenCep, int nLifter, Vorn32f val);
VornStatus vornsDCTLifterInitAlloc_C0_32f(VornDCTLifterState_32f** ppState, int lenDCT, int lenCep, int nLifter, Vorn32f val, Vorn32f val0);
VornStatus vornsDCTLifterFree_32f(VornDCTLifterState_32f* pState);
VornStatus vornsDCTLifter_32f(const Vorn32f* src, Vorn32f* dst, const VornDCTLifterState_32f* pState);
/** @} */

/**
 * @defgroup deltas Deltas and accelerations
 * @{
 */
VornStatus vornsDelta_Win2_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height, Vorn32f val, int mode);
VornStatus vornsDeltaDelta_Win2_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height, Vorn32f val1, Vorn32f val2, int mode);
/** @} */

/**
 * @defgroup conditioning Frame conditioning
 * @{
 */
VornStatus vornsCompensateOffset_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f* pSrcLast, Vorn32f dstLast, Vorn32f val);
VornStatus vornsCompensateOffset_16s(const Vorn16s* src, Vorn16s* dst, int len, Vorn16s* pSrcLast, Vorn16s dstLast, Vorn32f val);
/** @} */

VORN_END_DECLS

#endif
