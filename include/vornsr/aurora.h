/* Speech in noise: noise reduction, waveform processing, voice activity detection and equalisation of a front-end of
 * distributed recognition. */
#ifndef VORNSR_AURORA_H
#define VORNSR_AURORA_H

#include "features.h"
#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_noise_reduction Noise reduction
 * @brief Steps of a two-stage Wiener filter: spectra, noise estimate, gain, impulse response.
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
 * @brief Filter banks whose every value is fixed: 25 bands up to 4 kHz, and 3 bands, for spectra of 65 bins (the bands
 * of the advanced front-end of distributed recognition, ETSI ES 202 050).
 *
 * A bank of this group is a bank of @ref vornsr_filter_banks, with `vornFBankWeightFreq`, N = 128 and its centres and
 * weights in place: `vornsEvalFBank_*` evaluates it, on a spectrum of 65 bins, the accessors read and change it,
 * `vornsFBankFree_*` releases one that was allocated. It has no transform, so it takes no samples.
 *
 * Corners, in bins of 8000/128 Hz. `Low`, b[0] to b[26]: 0, 1, 2, 3, 4, 5, 7, 8, 10, 12, 14, 16, 18, 20, 23, 26, 29,
 * 32, 36, 39, 44, 48, 53, 58, 64, 64, 64. `High`, b[0] to b[4]: 1, 8, 19, 37, 64. They are equally spaced in
 * 2595 ln(1 + f/700), 24 steps from 1 to 4000 Hz or 4 steps from 80 to 4000 Hz, rounded to the nearest bin, and not
 * above 64. The centres of the bank are b, in `Low` with one more 0 in front: 0, 0, 1, 2, ...
 *
 * Weights of a triangle with left corner p, centre q and right corner r: (n - p) / (q - p) for a bin n above p and up
 * to q, 1 - (n - q) / (r - q) for one above q and below r.
 * - `Low`, filter k of 0 to 24: filter 0 is bin 0 alone, with weight 1; the others have p = b[k-1], q = b[k],
 *   r = b[k+1], and each weight is divided by the sum of the filter's weights, so that a flat spectrum keeps its level.
 *   The last filter ends at its centre, bin 64.
 * - `High`, filter k of 0 to 2: p = b[k], q = b[k+1], r = b[k+2]. Nothing is divided: a flat spectrum is multiplied by
 *   9, 14.5 and 22.5.
 *
 * `32f` weights are in single, each operation rounded to nearest; a sum takes the rising side first, bin by bin. `16s`
 * weights are in Q14: ((n - p) 2^14) / (q - p) and 2^14 - ((n - q) 2^14) / (r - q), then in `Low`
 * (w 2^14) / sum, every quotient truncated; of a flat spectrum a band is at most the level, and less by at most 11
 * parts in 2^14. Banks are the same in every rounding mode.
 *
 * Contexts. `GetSize` tells the bytes of a block in which `Init` makes a bank: 15768 and 15776 for `Low`, 3184 and 3192
 * for `High` (`32f` and `16s`). The block may begin at any address; the bank stands at its start, belongs to that
 * address, needs no release and must not go to `Free`: pass ctxMem, as a pointer to the state, to evaluation.
 * `InitAlloc` allocates a bank. If memory is short the status is `vornStsMemAllocErr`, nothing stays allocated and
 * *ctxOut is null. Evaluation only reads a bank, so threads may share it.
 *
 * Check: null.
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
 * @brief In a frame of 200 samples, 25 ms at 8 kHz, the stretch behind each pitch pulse is raised and the rest lowered
 * (SNR-dependent waveform processing, Macho and Cheng 2001; ETSI ES 202 050).
 *
 * A call takes one frame x of 200 samples and keeps nothing: src and dst have 200 elements each; dst may be src, and
 * must not overlap it otherwise.
 *
 * Energy (Kaiser 1990): e[n] = |x[n] x[n] - x[n-1] x[n+1]|, with x[-1] read as x[0] and x[200] as x[199]. Its sums
 * over nine samples: s[0] = 5 e[0] + e[1] + e[2] + e[3] + e[4], and then a running sum,
 * s[n] = (s[n-1] - e[n-5]) + e[n+4], with e[0] and e[199] repeated beyond the ends. In single each step rounds, and
 * what was rounded stays in the sums behind it: a loud burst can leave more there than a faint rest of the frame has.
 *
 * Peaks. The main one is where s is largest, at the first of equal places. From there on, until one is at 175 or
 * behind it, the next peak is the first largest sum from 25 to 79 samples further on, within the frame; and from the
 * main one back, until one is at 25 or before it, the first largest sum from 79 to 25 samples before. So peaks are 25
 * to 79 samples apart, and there are two to eight. A constant frame has its peaks at 0, 25, ..., 175.
 *
 * Weights. From a peak at c with the next one at d the samples from c - 4 on are raised, trunc(0.8 (d - c)) of them
 * (`16s`: ((d - c) 27) >> 5), as far as they lie in the frame; from the last peak as many as its distance to the one
 * before it asks for. Where such a stretch begins behind the frame's first sample, its first sample and the one before
 * it keep their value, and where it ends before the frame does, its last sample and the one behind it. All else is
 * lowered.
 *
 * | | raised | kept | lowered |
 * |---|---|---|---|
 * | `32f` | 1.2 | 1 | 0.8 |
 * | `16s` | 38/32 | 1 | 27/32 |
 *
 * dst[n] = w[n] x[n], as `vornsMul_32f` and `vornsMul_16s_Sfs` make it: the 16-bit product is rounded to nearest, ties
 * to even, and saturated.
 *
 * Exactness. `32f`: each operation of energies, sums and products rounds in the caller's mode. `16s`: energies are
 * exact, and their sums wrap at 32 bits, which amplitudes that stay above 15000 can reach. Not-a-numbers among the
 * sums are passed over in the search for the largest one, unless the first of a stretch is one, which then is the peak.
 * Bits are the same on every processor, whatever the alignment. No memory is allocated.
 *
 * Check: null.
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
