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
 * most, so that speech does not carry it away. An estimate that has become 0 stays 0 (frames of zeros bring it there in
 * the end), and on the way there it is denormal, which most processors take their time for: keep it above a floor.
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
 *
 * A detector is a record of 64 bytes in the caller's memory, at any address (`GetBufSize` gives 64); it needs no
 * clearing. `Init` fills it, `Decision` takes one frame, and after the last frame of a stream `Flush` takes what the
 * ring still holds. The record belongs to one stream, and a stream to one family: `32f`, or `16s`, which runs the same
 * steps in integers. After a flush the detector is used again through `Init` alone. The trackers follow slowly upwards:
 * a quarter of a second of zeros (25 frames in `32f`, 30 in `16s`) takes them so low that all that follows is speech,
 * until the next `Init`; faint noise in the place of zeros keeps them up. *result is a VornVADDecision. The
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
 * @defgroup vornsr_aurora_deltas Band splitting and deltas of the noise-robust front-end
 * @brief A signal in two bands of half its rate; velocities and accelerations of cepstra over nine frames.
 *
 * **Two bands**, `vornsLowHighFilter*`. A prototype of T = tapsLen taps makes a low band and, modulated, a high band,
 * and every second value of both is kept. For n from 0 to len / 2 - 1 (of an odd len the last sample begins no output):
 * - dstLow[n] = sum over k from 0 to T - 1 of src[2n + k] taps[k];
 * - dstHigh[n] = the same sum with signs that alternate in k: - first for even n, + first for odd n.
 *
 * So the high band is the low band of src[m] (-1)^m, with the sign of every even output changed, and lies reversed: a
 * tone just below half the rate of src comes out near 0. src holds 2 (len / 2) + T - 2 samples (none for a len of 1),
 * which for an even len is len + T - 2: the caller keeps the last T - 2 of a block in front of the next. No other
 * sample is read. A half-band prototype (Mintzer 1982; with odd T every second tap but the middle one is zero) splits
 * at a quarter of the rate.
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
