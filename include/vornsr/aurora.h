/* Speech in noise: noise reduction, waveform processing, voice activity detection and equalisation of a front-end of
 * distributed recognition. */
#ifndef VORNSR_AURORA_H
#define VORNSR_AURORA_H

#include "features.h"
#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_noise_reduction Noise reduction
 * @brief Steps of a two-stage Wiener filter (ETSI ES 202 050, advanced front-end of distributed recognition): smoothed
 * spectra, the estimate of the noise, the gain, the impulse response and the filter. The caller frames the signal, runs
 * the real transform and keeps what goes from frame to frame: no step has a state.
 *
 * **Smoothed power spectrum.** src is a spectrum of len values, packed as `vornsFFTFwd_RToPerm_*` gives it: src[0] is
 * the bin at zero, src[1] the one at half the sampling rate, pairs of real and imaginary parts follow. With Q = len /
 * 4, dst receives Q + 1 values, half as many as there are bins: 65 of 129. Only src[1] keeps its whole square.
 * - `32f`: dst[0] = 0.5 ((src[0]^2 + src[2]^2) + src[3]^2), dst[k] = 0.5 ((src[4k]^2 + src[4k+1]^2) + (src[4k+2]^2 +
 *   src[4k+3]^2)) for k from 1 to Q - 1, dst[Q] = src[1]^2. In single, in this order.
 * - `16s`: each square is halved and rounded down before the halves are added; dst[Q] = src[1]^2. Saturated.
 * - `32s_Sfs`, `32s64s_Sfs`: the same in 64 bits; a sum of 2^63 counts as 2^63 - 1. Sums are shifted right by
 *   scaleFactor without rounding or, below 0, to the left, where bits that leave 64 are lost; the count is taken
 *   modulo 64. Then `32s_Sfs` saturates to 32 bits. src[1]^2 wraps at 32 bits before it is shifted: 65536 gives 0.
 *
 * **Noise spectrum.** in is the spectrum of a frame, a an element of it; noise the estimate so far, b an element. Each
 * becomes b (0.9 + (0.1 a / (a + b)) (1 + b / (b + 0.1 a))): the estimate falls by a tenth at most and rises by 4 % at
 * most, so that speech does not carry it away.
 * - `32f`: in single, truncated at each step, whatever the caller's rounding mode: p = 0.1 a, r1 = 1 / (a + b), r2 = 1
 *   / (b + p), and dst = b ((b r2 + 1) (p r1) + 0.9). Exactly 0 where a + b or b + p is zero; other not-a-numbers
 *   stay. For a and b from 1e-18 to 1e18 it is within 4.5 ulp of the formula with the singles 0.1 and 0.9.
 * - `16s_Sfs`, `32s_Sfs`: in single, rounded to nearest at each step, whatever the caller's rounding mode. 0 where the
 *   integer a + b is zero (in `32s` it wraps at 32 bits) and where v = 0.1 a + b truncates to 0: so a small estimate
 *   counts as none. Else y = b r times 2^-scaleFactor with r = ((a / (a + b)) 0.1) (b / v + 1) + 0.9, whose divisor is
 *   the sum of the two singles; 2^-scaleFactor is infinite from -128 down and 0 from 150 on. y is truncated; one that
 *   is not a number gives 0. `16s` saturates. In `32s` whatever 32 bits do not hold, at either end, gives -2147483648.
 *
 * **Gain of the Wiener filter**, in two passes. den is the denoised spectrum of the frame before. max(x, c) is c
 * unless x is above c, so for a not-a-number too.
 * - `32f`, in single and in the caller's rounding mode: r = 1 / noise; eta1 = (0.98 den + 0.02 max(in - noise, 0)) r;
 *   h1 = eta1 / (eta1 + 1); eta2 = max(h1 (in r), c), where c is the single nearest to 10^(-22/20); dst = eta2 / (eta2
 *   + 1). No noise gives c / (c + 1) = 0.0736, the floor of the gain.
 * - `16s`, in 64 bits; the gain is in Q14, from 1206, its floor, to 16383. Quotients are truncated toward zero, shifts
 *   round down: inv = 16384 / noise; eta1 = ((4014 den + 82 max(in - noise, 0)) inv) >> 14, in Q12; h1 = (eta1 << 14)
 *   / (eta1 + 4096); eta2 = max(((in h1) >> 14) inv, 1301); dst = (eta2 << 7) / ((eta2 >> 7) + 128). Where noise is 0
 *   or eta1 is -4096, dst is 1206. inv is 0 for a noise above 16384 in magnitude: scale spectra so that it stays
 *   small.
 *
 * **Impulse response.** `vornsTabsCalculation_Aurora_*` moves 10 values to 17 taps, bit for bit: taps 0 to 8 are
 * src[8] to src[0], taps 9 to 16 are src[2] to src[9]. This is not symmetric: src[1] stands once, src[9] at the top
 * alone.
 *
 * **Filter.** `vornsResidualFilter_Aurora_*`: dst[n] = the sum over i from 0 to 16 of src[n + i] taps[i], for n from 0
 * to 79; src has 96 elements, dst 80, taps 17.
 * - `32f`: in single and in the caller's rounding mode, the products added in the order of i.
 * - `16s_Sfs`: the exact sum, shifted right by scaleFactor without rounding or, where it is not above 0, left by its
 *   magnitude, with bits that leave 64 lost and the count modulo 64; then saturated to 16 bits.
 *
 * dst may be any operand of its element type but taps (the filter reads a sample before it writes over it, and a
 * smoothed value stands in front of its bins); other overlaps are not allowed. Nothing depends on alignment, and
 * integer forms do not depend on the rounding mode. Nothing is allocated.
 *
 * Checks, in this order: a null pointer (`vornStsNullPtrErr`); len below 1 and, of smoothed spectra, len that is no
 * multiple of 4 (`vornStsSizeErr`).
 * @{
 */
VornStatus vornsSmoothedPowerSpectrumAurora_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsSmoothedPowerSpectrumAurora_16s(const Vorn16s* src, Vorn16s* dst, int len);
VornStatus vornsSmoothedPowerSpectrumAurora_32s_Sfs(const Vorn32s* src, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsSmoothedPowerSpectrumAurora_32s64s_Sfs(const Vorn32s* src, Vorn64s* dst, int len, int scaleFactor);
VornStatus vornsNoiseSpectrumUpdate_Aurora_32f(const Vorn32f* in, const Vorn32f* noise, Vorn32f* dst, int len);
VornStatus vornsNoiseSpectrumUpdate_Aurora_16s_Sfs(const Vorn16s* in, const Vorn16s* noise, Vorn16s* dst, int len,
                                                   int scaleFactor);
VornStatus vornsNoiseSpectrumUpdate_Aurora_32s_Sfs(const Vorn32s* in, const Vorn32s* noise, Vorn32s* dst, int len,
                                                   int scaleFactor);
VornStatus vornsWienerFilterDesign_Aurora_32f(const Vorn32f* in, const Vorn32f* noise, const Vorn32f* den, Vorn32f* dst,
                                              int len);
VornStatus vornsWienerFilterDesign_Aurora_16s(const Vorn16s* in, const Vorn16s* noise, const Vorn16s* den, Vorn16s* dst,
                                              int len);
VornStatus vornsTabsCalculation_Aurora_32f(const Vorn32f* src, Vorn32f* dst);
VornStatus vornsTabsCalculation_Aurora_16s(const Vorn16s* src, Vorn16s* dst);
VornStatus vornsResidualFilter_Aurora_32f(const Vorn32f* src, Vorn32f* dst, const Vorn32f* taps);
VornStatus vornsResidualFilter_Aurora_16s_Sfs(const Vorn16s* src, Vorn16s* dst, const Vorn16s* taps, int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_aurora_banks Filter banks of noise reduction
 * @brief Filter banks whose every value is fixed: 25 bands to 4 kHz, and 3 bands of the band above.
 * @{
 */
VornStatus vornsMelFBankGetSizeLow_Aurora_32f(int* size);
VornStatus vornsMelFBankGetSizeHigh_Aurora_32f(int* size);
VornStatus vornsMelFBankGetSizeLow_Aurora_16s(int* size);
VornStatus vornsMelFBankGetSizeHigh_Aurora_16s(int* size);
VornStatus vornsMelFBankInitLow_Aurora_32f(Vorn8u* ctxMem);
VornStatus vornsMelFBankInitHigh_Aurora_32f(Vorn8u* ctxMem);
VornStatus vornsMelFBankInitLow_Aurora_16s(Vorn8u* ctxMem);
VornStatus vornsMelFBankInitHigh_Aurora_16s(Vorn8u* ctxMem);
VornStatus vornsMelFBankInitAllocLow_Aurora_32f(VornFBankState_32f** ctxOut);
VornStatus vornsMelFBankInitAllocHigh_Aurora_32f(VornFBankState_32f** ctxOut);
VornStatus vornsMelFBankInitAllocLow_Aurora_16s(VornFBankState_16s** ctxOut);
VornStatus vornsMelFBankInitAllocHigh_Aurora_16s(VornFBankState_16s** ctxOut);
/** @} */

/**
 * @defgroup vornsr_waveform Waveform processing
 * @brief The high-energy stretch behind each pitch period is raised, the rest lowered.
 * @{
 */
VornStatus vornsWaveProcessing_Aurora_32f(const Vorn32f* src, Vorn32f* dst);
VornStatus vornsWaveProcessing_Aurora_16s(const Vorn16s* src, Vorn16s* dst);
/** @} */

/**
 * @defgroup vornsr_detection Voice activity detection
 * @brief A decision a frame, from three measures and a ring of seven frames.
 * @{
 */
/** What a detector keeps between frames. */
typedef struct VornsVADState VornsVADState;

/** What a detector decides. */
typedef enum {
    vornVADSpeech = 1,    /**< speech */
    vornVADNonSpeech = 2, /**< no speech */
    vornVADUndecided = 4  /**< no decision for this call */
} VornVADDecision;

VornStatus vornsVADGetBufSize_Aurora_32f(int* size);
VornStatus vornsVADInit_Aurora_32f(VornsVADState* state);
VornStatus vornsVADDecision_Aurora_32f(const Vorn32f* bands, const Vorn32f* spectrum, int activity, int* result,
                                       VornsVADState* state);
VornStatus vornsVADFlush_Aurora_32f(int* result, VornsVADState* state);
VornStatus vornsVADGetBufSize_Aurora_16s(int* size);
VornStatus vornsVADInit_Aurora_16s(VornsVADState* state);
VornStatus vornsVADDecision_Aurora_16s(const Vorn16s* bands, const Vorn16s* spectrum, int activity, int* result,
                                       VornsVADState* state);
VornStatus vornsVADFlush_Aurora_16s(int* result, VornsVADState* state);
/** @} */

/**
 * @defgroup vornsr_equalisation Equalisation, bands and deltas
 * @brief Blind equalisation of cepstra, the split into two bands, coding of the high one, deltas.
 * @{
 */
VornStatus vornsBlindEqualization_Aurora_32f(const Vorn32f* ref, Vorn32f* srcDst, Vorn32f* bias, int len,
                                             Vorn32f energy);
VornStatus vornsBlindEqualization_Aurora_16s(const Vorn16s* ref, Vorn16s* srcDst, Vorn16s* bias, int len, int energy);
VornStatus vornsLowHighFilter_Aurora_32f(const Vorn32f* src, Vorn32f* dstLow, Vorn32f* dstHigh, int len,
                                         const Vorn32f* taps, int tapsLen);
VornStatus vornsLowHighFilter_Aurora_16s_Sfs(const Vorn16s* src, Vorn16s* dstLow, Vorn16s* dstHigh, int len,
                                             const Vorn16s* taps, int tapsLen, int scaleFactor);
VornStatus vornsHighBandCoding_Aurora_32f(const Vorn32f* highBands, const Vorn32f* lowSpec, const Vorn32f* highSpec,
                                          Vorn32f* dst);
VornStatus vornsHighBandCoding_Aurora_32s_Sfs(const Vorn32s* highBands, const Vorn32s* lowSpec, const Vorn32s* highSpec,
                                              Vorn32s* dst, int scaleFactor);
VornStatus vornsDeltaDelta_Aurora_32f_D2(const Vorn32f* src, Vorn32f* dst, int dstWidth, int height, int mode);
VornStatus vornsDeltaDeltaMul_Aurora_32f_D2(const Vorn32f* src, const Vorn32f* val, Vorn32f* dst, int dstWidth,
                                            int height, int mode);
VornStatus vornsDeltaDelta_Aurora_16s_D2Sfs(const Vorn16s* src, Vorn16s* dst, int dstWidth, int height, int mode,
                                            int scaleFactor);
VornStatus vornsDeltaDeltaMul_Aurora_16s_D2Sfs(const Vorn16s* src, const Vorn16s* val, Vorn16s* dst, int dstWidth,
                                               int height, int mode, int scaleFactor);
/** @} */

VORN_END_DECLS

#endif
