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
 * @defgroup vornsr_equalisation Equalisation and coding of the high band
 * @brief Blind equalisation of cepstra, and the energies of a high band told by those of the low one.
 * @{
 */
VornStatus vornsBlindEqualization_Aurora_32f(const Vorn32f* ref, Vorn32f* srcDst, Vorn32f* bias, int len,
                                             Vorn32f energy);
VornStatus vornsBlindEqualization_Aurora_16s(const Vorn16s* ref, Vorn16s* srcDst, Vorn16s* bias, int len, int energy);
VornStatus vornsHighBandCoding_Aurora_32f(const Vorn32f* highBands, const Vorn32f* lowSpec, const Vorn32f* highSpec,
                                          Vorn32f* dst);
VornStatus vornsHighBandCoding_Aurora_32s_Sfs(const Vorn32s* highBands, const Vorn32s* lowSpec, const Vorn32s* highSpec,
                                              Vorn32s* dst, int scaleFactor);
/** @} */

/**
 * @defgroup vornsr_aurora_deltas Band splitting and deltas of the noise-robust front-end
 * @brief A signal in two bands of half its rate; velocities and accelerations of cepstra over nine frames.
 *
 * **Two bands**, `vornsLowHighFilter*`. A prototype of T = tapsLen taps makes a low band and, modulated, a high band,
 * and every second value of both is kept. For n from 0 to len / 2 - 1 (of an odd len the last sample begins no output):
 * - dstLow[n] = sum over k from 0 to T - 1 of src[2n + k] taps[k];
 * - dstHigh[n] = the same sum with signs that alternate in k: - first for even n, + first for odd n.
 *
 * So the high band is the low band of src[m] (-1)^m, with the sign of every even output changed, and lies reversed: a
 * tone just below half the rate of src comes out near 0. src holds 2 (len / 2) + T - 2 samples, which for an even len
 * is len + T - 2: the caller keeps the last T - 2 of a block in front of the next. No other sample is read. A half-band
 * prototype (Mintzer 1982; with odd T every second tap but the middle one is zero) splits at a quarter of the rate.
 *
 * `32f`: in singles, in the caller's rounding mode, and in one order whatever the length and the addresses. With E(n)
 * the sum of the products of even k and O(n) that of odd k, each begun at 0 and added in the order of k:
 * - dstLow[n] = E + O;
 * - dstHigh[n] = O - E for even n, E - O for odd n.
 *
 * Infinities and not-a-numbers reach those outputs whose window has them.
 *
 * `16s_Sfs`: the sums are exact, in 64 bits. A scaleFactor above 0 shifts them to the right, without rounding
 * (downward); otherwise they are shifted to the left by -scaleFactor, and what leaves the 64 bits is lost. The count is
 * taken modulo 64: 65 shifts like 1, 64 and -64 like 0. Then they are saturated. At most 512 taps whose magnitudes add
 * up to 65535 or less are the fastest.
 *
 * dstLow, dstHigh, src and taps must not overlap. Checks, in this order: null (src, taps); size (tapsLen below 1); null
 * (dstLow, dstHigh); size (len below 1). A len of 1 passes, and nothing is written.
 *
 * **Deltas**, `vornsDeltaDelta*`: velocity and acceleration of the front-end's feature vectors (ETSI ES 202 050) over
 * nine frames, for utterances that arrive in blocks. src holds height new frames of 14 numbers, packed: cepstral
 * coefficients 1 to 12, then coefficient 0, then the logarithm of the energy. A row of dst is dstWidth elements apart
 * from the next and holds, side by side, 13 features, their 13 velocities and their 13 accelerations; what it holds
 * beyond column 38 is left alone. Features 0 to 11 are the coefficients 1 to 12; feature 12 is
 * (src[12] 0.6) / 23 + src[13] 0.4, with the roundings of single in this order.
 *
 * With x(t) read as x(0) before the utterance and as its last frame behind it, velocity and acceleration of frame t are
 * the sums over o = -4 to 4, in this order, of w(o) x(t + o):
 *
 * | o | -4 | -3 | -2 | -1 | 0 | 1 | 2 | 3 | 4 |
 * |---|---|---|---|---|---|---|---|---|---|
 * | velocity | -1 | -0.75 | -0.5 | -0.25 | -0.0 | 0.25 | 0.5 | 0.75 | 1 |
 * | acceleration | 1 | 0.25 | -0.285714 | -0.607143 | -0.714286 | -0.607143 | -0.285714 | 0.25 | 1 |
 *
 * A rise of r a frame has the velocity 15 r, and r t^2 the acceleration 33 r, nearly. Nothing is left out: the -0.0
 * makes an infinite x(t) a velocity that is not a number. In the `Mul` forms val holds 39 factors: feature c is stored
 * times val[c], and all sums are taken of what is stored; a velocity is multiplied by val[13 + c] behind its sum, an
 * acceleration by val[26 + c].
 *
 * Blocks. mode is 0 or a sum of `vornDeltaFirst` (this block starts the utterance) and `vornDeltaLast` (this block ends
 * it); its other bits are ignored. A first call writes frame 0 to row 0 of dst; it needs 8 frames. Any other call
 * expects dst to point 8 rows back: rows 0 to 7 hold the last 8 rows of the call before, whose features it reads, and
 * the new frames go to row 8 and on. So behind a first call the caller advances dst by height - 8 rows, behind any
 * later call by height rows. With frames up to row r written, velocities and accelerations stand complete up to row
 * r - 4, from the last call on up to r; what is not complete has not been written. A last call may have no frames: src
 * is then not read, but must not be null. Both flags together make one call of a whole utterance. Any cut into blocks
 * gives the same bits as one call. There is no state beside the rows of dst.
 *
 * `32f_D2`: singles, in the caller's rounding mode; infinities and not-a-numbers follow the arithmetic.
 *
 * `16s_D2Sfs`: whole numbers, each shifted to the right without rounding (downward) and then saturated. The count is
 * scaleFactor, for velocities scaleFactor + 2, taken modulo 32 (so -1 shifts by 31):
 * - features 0 to 11: src, in the `Mul` form src val[c]; feature 12: the single above, in the `Mul` form times val[12]
 *   in single, towards zero to an integer before the shift;
 * - velocity: the sum with the weights -4 to 4, in the `Mul` form times val[13 + c]; exact;
 * - acceleration: the features as singles, the sum above in single, in the `Mul` form times val[26 + c] in single,
 *   towards zero to an integer before the shift. A single that 32 bits cannot hold becomes -2147483648.
 *
 * src, val and dst must not overlap. Checks, in this order: null; size (height negative, or 0 without `vornDeltaLast`);
 * stride (dstWidth below 39); size (`vornDeltaFirst` with height below 8).
 * @{
 */
VornStatus vornsLowHighFilter_Aurora_32f(const Vorn32f* src, Vorn32f* dstLow, Vorn32f* dstHigh, int len,
                                         const Vorn32f* taps, int tapsLen);
VornStatus vornsLowHighFilter_Aurora_16s_Sfs(const Vorn16s* src, Vorn16s* dstLow, Vorn16s* dstHigh, int len,
                                             const Vorn16s* taps, int tapsLen, int scaleFactor);
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
