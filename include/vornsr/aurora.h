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
 *
 * A detector is a record of 64 bytes in the caller's memory, at any address (`GetBufSize` gives 64); it needs no
 * clearing. `Init` fills it, `Decision` takes one frame, and after the last frame of a stream `Flush` takes what the
 * ring still holds. The record belongs to one stream, and a stream to one family: `32f`, or `16s`, which runs the same
 * steps in integers. After a flush the detector is used again through `Init` alone. *result is a VornVADDecision. The
 * record's fields in their order: the 16-bit flagBands, flagLow, flagVar, onsetSeen; the trackers bandMean, lowTrack,
 * bandTrack, varTrack, lowPrev, lowLast, singles or 32-bit integers; the 32-bit ringHead, ringTail, hangReload,
 * hangCount, shortHang; seven bytes of the ring, one that is unused, and the 32-bit frameCount, which is n below.
 *
 * A frame is bands[0..24], the energies or magnitudes of its bands from the lowest one on, spectrum[0..63], and
 * activity, by which the caller can force the frame to count as one with speech: 5 or more does.
 *
 * **Measures and trackers**, in single, in this order. n counts frames from 1. max(t, x) is x where x is above t, or
 * where t is not a number, else t.
 * - Variance of the spectrum: with S its sum (vornsSum_32f, hint 2) and D = vornsDotProd_32f of it with itself, v = D /
 *   64 - (S S) / 4096. While n < 15, varTrack = max(varTrack, v). If v < 1.5 varTrack and v > 0.85 varTrack: varTrack =
 *   0.8 varTrack + 0.2 v. Then, if v < 0.25 varTrack: varTrack = 0.97 varTrack + 0.03 v. flagVar is set if v > 1.65
 *   varTrack.
 * - Energy of the bands: with B their sum (hint 2), e = B B - 3. In frame 1 bandTrack = e. While n < 15, m = bandMean =
 *   (((n - 1) bandMean + e) 1.1) / n, and onsetSeen is set, for good, if e / m > 2.5; as long as it is not, bandTrack =
 *   max(bandTrack, e). If e < 1.5 bandTrack and e > 0.75 bandTrack: bandTrack = 0.8 bandTrack + 0.2 e. Then, if e is at
 *   most 0.5 bandTrack: bandTrack = 0.97 bandTrack + 0.03 e. flagBands is set if e > 1.65 bandTrack.
 * - The low bands: c = (bands[1] + bands[2] + bands[3]) / 3, l = 0.75 c + 0.25 lowPrev, then lowPrev = lowLast = c.
 *   lowTrack follows l with the borders and weights of the energy, max while n < 15. flagLow is set if l > 3.25
 *   lowTrack.
 *
 * In `16s` sums and measures are exact: v = 64 D - S S, which is 4096 times the variance, e = B B - 3, and with t =
 * bands[1] + bands[2] + bands[3] the low band is lowPrev = lowLast = 341 t (the mean in Q10) and l = ((8184 t) >> 5) +
 * ((8 lowPrev) >> 5), lowPrev from before. The factors are ratios: a x becomes (a x) >> s, for a tracker in 32 bits
 * that wrap, for a measure in 64. Comparisons have 64 bits, and a tracker takes the low 32 bits of what it is given.
 *
 * | | upper, lower border | kept, taken | low border | kept, taken there | flag | s |
 * |---|---|---|---|---|---|---|
 * | varTrack | 48, 27 | 26, 6 | below 8 | 31, v itself | 53 | 5 |
 * | bandTrack | 192, 96 | 102, 26 | at most 64 | 124, 4 | 211 | 7 |
 * | lowTrack | 48, 24, s = 5 | 102, 26 | at most 16, s = 5 | 124, 4 | 416 | 7 |
 *
 * m = (141 e + 141 ((n - 1) bandMean in 32 bits)) / n, truncated, >> 7, and onsetSeen is set if 128 e / m, truncated,
 * is above 320. A mean m of 0, which few frames reach, is no onset. Note that a low variance is added whole: the
 * tracker jumps up, to as much as 32 v. Products of a tracker with the factor of its flag wrap from |B| = 3191, from a
 * mean of 5046 in the low bands, and may from a variance of 309 on; there decisions mean little, so scale loud input
 * down.
 *
 * **Decision.** The first ten frames are `vornVADUndecided` and leave no trace in the ring. From frame 11 on, the ring
 * of the last seven frames takes a 1 for a frame with a flag or activity, else a 0; r is the longest run of ones from
 * its oldest to its newest entry. If r is at least 4, hangCount = hangReload, which begins at 23, and a frame before
 * the 36th then sets hangReload = 40. If r is at least 3, shortHang = 5, else each of the two counters falls by 1
 * unless it is 0. The frame is `vornVADNonSpeech` if both counters are 0 and r is below 3, else `vornVADSpeech`.
 *
 * **Flush.** n and the ring's head move on by one. The seventh call has walked the ring, and every seventh call after
 * it: it gives `vornVADUndecided`, as calls do while n is below 11. The other six decide: r from the new head on, h =
 * hangReload if r is at least 4 (which sets hangReload = 40 before frame 36), else hangCount; then hangCount = h - 1,
 * and shortHang = 5 or itself, less 1. The decision is that of a frame, with counters below 1 in place of 0: here they
 * fall below it. Both members do the same.
 *
 * Frames of zeros have e = -3, which is above 1.65 times -3: flagBands is set, and frames from the 13th on are speech.
 * A frame of not-a-numbers sets no flag and leaves the trackers as they were, unless it is the first one; the means of
 * the first 14 frames keep what is not a number, and there is then no onset. An infinite measure of these frames stays
 * in its tracker. n stays at 2147483647 when it is there.
 *
 * Source of the method: ETSI ES 202 050 (2007), the advanced front-end of distributed speech recognition.
 *
 * `32f` follows the caller's rounding mode, `16s` does not depend on it. result is no part of the record. The only
 * check is that of null pointers, which comes before anything is written.
 * @{
 */
/** What a detector keeps between frames: 64 bytes of the caller's, at any address. */
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
 * @defgroup vornsr_equalisation Blind equalisation and the high band
 * @brief A cepstrum's bias is taken off and followed; the energies above 4 kHz are coded by those below.
 *
 * **Blind equalisation.** `vornsBlindEqualization_Aurora_*(ref, srcDst, bias, len, energy)`, once a frame: srcDst holds
 * the len cepstral coefficients of the frame and receives them without the bias; the bias, which the caller keeps from
 * frame to frame (zeros at first), moves so that what is left tends to the reference ref. energy is the logarithm of
 * the frame's energy: loud frames move the bias, silent ones do not.
 * - `32f`: step = min(max(energy - 3.296875, 0), 1) 0.0087890625, the constants being 211/64 and 9/1024; an energy that
 *   is not a number counts as silence. c = srcDst[i] - bias[i], srcDst[i] = c, bias[i] = (c - ref[i]) step + bias[i],
 *   in single, in this order, in the caller's rounding mode.
 * - `16s`: energy in Q6, any int: w = min(max(energy - 211, 0), 64). c = srcDst[i] - bias[i]; srcDst[i] = c, saturated;
 *   bias[i] = bias[i] + (9 w (c - ref[i]) >> 16), saturated, with the c that is not. Exact but for the shift, which
 *   rounds down.
 *
 * The bits depend on no address. ref may be bias; else the three do not overlap. Checks, in this order: null, size (len
 * below 1). Method: L. Mauuary, Blind equalization in the cepstral domain (EUSIPCO 1998).
 *
 * **High band.** `vornsHighBandCoding_Aurora_*(highBands, lowSpec, highSpec, dst, ...)`: dst[0..2] tell how far the
 * spectrum of the high band stands above that of the low one, with the three energies highBands[0..2] in the place of
 * the high band's own. lowSpec has 65 values, of which those from 33 on are read, highSpec 129, of which those from 66
 * on are. With ln floored, so that ln v is -10 unless v is above exp(-10):
 * - H[0], H[1], H[2] = ln of the sums of lowSpec[33..38], [39..48], [49..64], both ends included;
 * - N[0], N[1], N[2] = ln of half the sums of highSpec[66..76], [78..96], [98..128];
 * - L[i] = ln highBands[i], D[i][j] = H[j] - L[i], and dst[i] = ((N[2] - D[i][2]) 0.7 + (N[1] - D[i][1]) 0.2) + (N[0] -
 *   D[i][0]) 0.1.
 *
 * `32f`: the first two sums are added up from left to right in single; the others are vornsSum_32f with hint 2. v is
 * compared in double; its logarithm is made in double and rounded to single once; all else is in single, in the
 * caller's rounding mode. What is not a number counts as below the floor, and an infinity has an infinite logarithm. In
 * another mode than to nearest the logarithm is less exact, and the same on every processor.
 *
 * `32s_Sfs`: sums are those of vornsSum_32s_Sfs, of lowSpec with scale factor 0, of highSpec with 3, which multiplies
 * by 1/8. Logarithms are those of vornsLn_32s_Sfs with scale factor -7, so in Q7, with -1280 for what is below 1. N
 * gets 177 more, ln 4 in Q7, for the half and the 1/8, unless it is -1280. dst[i] = (102 x0 >> 10) + (205 x1 >> 10) +
 * (717 x2 >> 10) with xj = N[j] - D[i][j], in Q7, then shifted: to the left by -(scaleFactor + 7) if scaleFactor is
 * below -7, losing bits at the top, else to the right by scaleFactor + 7, which rounds down; counts are taken modulo
 * 32. So a scaleFactor of -7 leaves Q7.
 *
 * dst may be any of the sources. There is no check but that of null pointers. Source of the method: ETSI ES 202 050
 * (2007), extension to 16 kHz.
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
 * @defgroup vornsr_aurora_deltas Bands and deltas
 * @brief The split into two bands, and deltas.
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
