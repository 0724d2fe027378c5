/* Noise and pitch: tracking of noise, suppression gains, periodicity and pitch. */
#ifndef VORNSR_NOISE_H
#define VORNSR_NOISE_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_noise_tracking Noise tracking
 * @brief The power spectrum of the noise in a signal, tracked while there is speech: recursive averages that are
 * controlled by minima (MCRA; Cohen and Berdugo 2002).
 *
 * A tracker takes the power spectrum of one frame after the other and updates the noise, a spectrum that the caller
 * owns. Per bin it keeps a smoothed power, its running minimum over a window of about a second, and the probability
 * that speech is present: where the smoothed power is far above its minimum the noise is held, elsewhere it follows.
 *
 * Shapes. in and noise hold fftLen / 2 + 1 powers (the integer half; fftLen may be any number from 8 to 8192), below
 * H = fftLen / 2. They do not overlap, or are one array. `32f` takes singles; `32s` takes integers from 0 on, in any
 * scale. Of negative integers the formulas below hold as well.
 *
 * The record of a tracker stands in memory of the caller, at any address, with nothing to release: `GetSize` reports
 * 16 H + 104 bytes. It begins with the 32-bit integers sampleFreq, fftLen, halfBits (the significant bits of H), hop,
 * minWindow, frameIdx and firstFrame, then alphaD, alphaP, alphaS and delta, in singles or in Q31 (delta in Q15), then,
 * from byte 48, the addresses of four arrays of H + 1 elements: presence, smoothed, minimum and tempMinimum. The arrays
 * stand in this order from byte 88 on, so a copy of the block still works in the arrays of the first one. `Init` writes
 * the record and leaves the arrays to the first update. Nothing tells a tracker of one form from that of the other.
 *
 * Parameters. sampleFreq is in hertz, 8000 to 48000; the frame advance hop in samples, 1 to H with `AltInit`, H with
 * `Init`. With x = hop 125 / sampleFreq, the advance in stretches of 8 ms, in single:
 * - `32f`: alphaD = 0.7^x, alphaS = 0.8^x, alphaP = 0.2^x (bases in double, powers within 1.02 units in the last place
 *   of a double, rounded to single: the nearest single at every rate and advance), delta = 5. minWindow = 125 q
 *   truncated, in single, with q = sampleFreq 0.008 / hop in single; `Init` divides by 2^(halfBits - 1) instead, which
 *   is not hop unless H is a power of two, and rounds q from double.
 * - `32s`, without any float: x in Q15, truncated. E(g) = 1 + t + t^2/2 + t^3/6 of t = x g in Q15, each product
 *   shifted down arithmetically, and then shifted left by 16, in 32 bits: alphaD = E(ln 0.7), alphaS = E(ln 0.8), and
 *   alphaP = E(ln(0.2)/8) to the eighth, by three squares. These are near the powers up to x = 1; an advance beyond
 *   x = 4.4, which is 35 ms, makes alphaD negative, and such a tracker is of no use. delta = 5. minWindow =
 *   (125 q + 125) >> 15 with q in Q15, truncated.
 *
 * First update: smoothed, minimum, tempMinimum and noise take a copy of in, presence is 0. Every later one, with
 * y = in[k]:
 * - smoothed = smoothed alphaS + (1 - alphaS) y;
 * - minimum = min(smoothed, minimum), tempMinimum = min(smoothed, tempMinimum); but once frameIdx has reached
 *   minWindow, minimum = min(smoothed, tempMinimum), tempMinimum = smoothed, and frameIdx restarts from 0;
 * - presence = alphaP presence, and 1 - alphaP more if smoothed is above minimum delta;
 * - a = alphaD + (1 - alphaD) presence;
 * - noise = a noise + (1 - a) y.
 *
 * Every update then adds 1 to frameIdx, so that windows have minWindow frames.
 *
 * What is exact. `32f`: the formulas in single, operation by operation as they are written, in the caller's rounding
 * mode. min(a, b) is a where a is below b, else b. A not-a-number spoils its bin for good. `32s`: 1 stands for
 * 2^31 - 1. smoothed is formed in 64-bit integers and shifted right by 31, arithmetically, of which the low 32 bits are
 * kept. The rest is in double: minimum delta is limited to 2^31 - 1, presence is rounded after it has weighed the
 * noise, and both are rounded to the nearest integer, ties to even, whatever the caller's mode; what 32 bits do not
 * hold becomes -2^31. The parameters do not depend on the caller's mode either. Bits are the same on every processor.
 *
 * A constant spectrum is its own noise: within rounding in singles, exactly in integers up to 5 x 10^8. Steps of the
 * noise, up or down, are followed within two windows.
 *
 * Checks, in this order. `GetSize`: null; fftLen outside 8 to 8192 (`vornStsSizeErr`). `Init`: null; sampleFreq
 * (`vornStsRangeErr`); fftLen (`vornStsSizeErr`). `AltInit`: null; sampleFreq, or hop outside 1 to fftLen / 2
 * (`vornStsRangeErr`); fftLen. Update: null. After an error nothing is written. A tracker serves one stream, and one
 * thread at a time.
 * @{
 */
/** What a noise tracker keeps between frames. */
typedef struct VornsMCRAState VornsMCRAState;

VornStatus vornsGetSizeMCRA_32f(int fftLen, int* size);
VornStatus vornsInitMCRA_32f(int sampleFreq, int fftLen, VornsMCRAState* state);
VornStatus vornsAltInitMCRA_32f(int sampleFreq, int fftLen, int hop, VornsMCRAState* state);
VornStatus vornsUpdateNoisePSDMCRA_32f_I(const Vorn32f* in, VornsMCRAState* state, Vorn32f* noise);
VornStatus vornsGetSizeMCRA_32s(int fftLen, int* size);
VornStatus vornsInitMCRA_32s(int sampleFreq, int fftLen, VornsMCRAState* state);
VornStatus vornsAltInitMCRA_32s(int sampleFreq, int fftLen, int hop, VornsMCRAState* state);
VornStatus vornsUpdateNoisePSDMCRA_32s_I(const Vorn32s* in, VornsMCRAState* state, Vorn32s* noise);
/** @} */

/**
 * @defgroup vornsr_suppression Noise suppression gains
 * @brief Gains of spectra from signal-to-noise ratios, element by element: by the rule of Wiener, and by the minimum
 * mean-square error rule of Ephraim and Malah (1984).
 *
 * All take vectors of 1 to 65535 elements. dst may be any of the sources; other overlaps are not promised. No memory is
 * allocated, so nothing else can fail. Bits are the same on every processor, whatever the alignment.
 *
 * `vornsFilterUpdateWiener_32f`: dst = x / (1 + x) of the a-priori ratio x, sum and quotient in single. A negative x
 * counts as 0 and gives the status `vornStsBadArgErr`; dst is complete all the same. -0 is not negative and stays -0;
 * an infinite x gives a not-a-number, as a not-a-number does, both without a status.
 *
 * `vornsFilterUpdateWiener_32s`: x in Q15, gain in Q31, 2^31 x / (1 + x) rounded down, after x is rounded down to a
 * step: multiples of 1/16 below 4, of 4 below 64, of 64 below 512, and 512. From 1024 on the gain is 2^31 - 1. Negative
 * x as above.
 *
 * `vornsFilterUpdateEMNS_*`: dst = W f(v), where wiener holds W = xi / (1 + xi), postSNR the a-posteriori ratio gamma,
 * v = W gamma, and
 *
 *     f(v) = (sqrt(pi)/2) exp(-v/2) ((1 + v) I0(v/2) + v I1(v/2)) / sqrt(v)
 *
 * with the modified Bessel functions I0 and I1. f is taken from a table over X, v in Q22, truncated:
 * - up to X = 128 it is D[X]: f(X/2^22) rounded to the nearest integer (1815, 1283, 1048, ... 160), with
 *   D[0] = 2^31 - 1;
 * - above, it is (P0 + y) / 2^22 with a parabola y over each octave of X from m = 2^(i+7), d = X - m:
 *   y = ((((P2 d) >> 13) - P1) d) >> (i + 5), in integers wide enough for every step. For v from 2^-15 to 100 this is
 *   within 0.007 f of f, the truncation of v included.
 *
 * `32f`: W from 0 to 1 and gamma from the single 3.05176e-05 (just above 2^-15) to 32768; another value, and a
 * not-a-number, anywhere gives `vornStsRangeErr`, and nothing is written. gamma is limited to the singles 3.1e-05 and
 * 100. X is the single product gamma W times 2^22; dst = W D[X], or the single (P0 + y) times W, rounded to single,
 * divided by 2^22. The roundings of these are in the caller's mode. W = 0 gives 0 of its sign.
 *
 * `32s`: W in Q31 from 0 on, gamma in Q15 from 1 to 2^30, other values as above. gamma is limited to 100;
 * X = (gamma W) >> 24. dst in Q31 is W D[X], or (W (P0 + y)) >> 22, not above 2^31 - 1: gains above 1 saturate.
 *
 * Checks, in this order: null; len outside 1 to 65535 (`vornStsLengthLimitErr`); for `EMNS` the values.
 * @{
 */
VornStatus vornsFilterUpdateWiener_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsFilterUpdateEMNS_32f(const Vorn32f* wiener, const Vorn32f* postSNR, Vorn32f* dst, int len);
VornStatus vornsFilterUpdateWiener_32s(const Vorn32s* src, Vorn32s* dst, int len);
VornStatus vornsFilterUpdateEMNS_32s(const Vorn32s* wiener, const Vorn32s* postSNR, Vorn32s* dst, int len);
/** @} */

/**
 * @defgroup vornsr_periodicity Periodicity and pitch
 * @brief Periods, peaks, pitch marks and correlations of lags.
 *
 * No call allocates memory or keeps anything. Sources and results must not overlap. Not-a-numbers in results come
 * without a stated sign. Where single or double precision is named, additions and products are rounded one by one in
 * the caller's rounding mode and in the stated order.
 *
 * **Periodicity** `vornsPeriodicity_*`: how much of the mass of a signal that is never negative stands on the best
 * comb, of at most six samples one period apart. T = the sum of src (in `32f`: `vornsSum_32f` with hint 1; in `32s`:
 * exact). For each period p from minPeriod to maxPeriod and each phase j from 0 to p - 1, both ascending: s = src[j] +
 * src[j + p] + ..., n samples, as many as lie below len but no more than 6; a = s times 1/n. The first comb with the
 * largest a above 0 wins: `*period` = p, `*periodicity` = s/T. If T is 0, infinite or not a number, or no comb has any
 * mass, both are 0. 1/n has the digits 1, 0.5, 0.333333, 0.25, 0.2, 0.166666: of combs with equal means those of one,
 * two, four and five samples beat those of three and six. In `32s16s`, 1/n is floor(2^30 / n), a the floor of s
 * floor(2^30 / n) / 2^30; the sum is halved as often as it takes T to be at most 0x7FFFFFFF, with T, and `*periodicity`
 * = s 2^15 / T, truncated, at most 32767.
 * Checks: null pointers (`vornStsNullPtrErr`); minPeriod below 1 or maxPeriod not above it (`vornStsRangeErr`); len at
 * most maxPeriod or above 4096 (`vornStsLengthLimitErr`); a sample below 0 (`vornStsRangeErr`).
 *
 * **Least-squares periodicity** `vornsPeriodicityLSPE_*`: the share of the energy that the best periodic signal
 * explains, corrected for what it would explain of noise (Wise, Caprio, Parks 1976; Friedman 1977). E = the energy
 * (`vornsDotProd_32f` of src with itself). For each period p, over the phases j from 0 to p - 1 in their order, of the
 * n samples src[j], src[j + p], ... with the sum s and the sum of squares q: A grows by (s/sqrt(n))^2, B by q/n.
 * `*periodicity` is the largest (A - B)/(E - B) above 0 of those with both parts above 0, `*period` the first period
 * that has it; both 0 if there is none. 1/n and 1/sqrt(n) have six digits, more or less, so
 * that a signal of one period alone gives nearly 1, on either side. In `16s` the energy is exact and
 * shifted right by c bits until it is at most 0x7FFFFFFF; q adds the squares shifted right by c; with v = s times
 * floor(2^30/sqrt(n)), A grows by (v >> (30 + c/2)) (v >> (30 + c - c/2)) and B by q floor(2^30/n) >> 30, both wrapping
 * in 32 bits; `*periodicity` is in units of 2^-15, truncated, at most 32767.
 * Checks: null pointers; minPeriod below 6 or maxPeriod not above it (`vornStsRangeErr`); len at most maxPeriod, above
 * 1024 or above 16 minPeriod (`vornStsLengthLimitErr`).
 *
 * **Peaks** `vornsFindPeaks_*`: dst[i] is 1 at peaks and 0 elsewhere. The signal is src or, with movingAvgSize m above
 * 0, the mean of src from i - m to i + m, fewer at the ends (`32f`: the sum from the first to the last sample and the
 * quotient in double, which is kept; `32s`: exact, truncated to an integer). A peak has searchSize steps up before it
 * and as many down behind it, or all there are; equal neighbours are no step, so a flat top is no peak. A single value
 * is a peak; with m at least len - 1 there is none (but of a single value); where all steps but the last one fall, the
 * last value is a peak if searchSize is 1 and src, not its mean, rises there. At a not-a-number the signal goes on as
 * it came: down behind a fall, save the one that the signal begins with, and otherwise up.
 * Checks: null pointers; len outside 1 to 65535 (`vornStsLengthLimitErr`); searchSize outside 1 to 127 or movingAvgSize
 * outside 0 to 127 (`vornStsSizeErr`).
 *
 * **Pitch marks to frequencies** `vornsPitchmarkToF0Cand_*`: dst[i] = 1/(src[i] - src[i - 1]), where src[-1] counts as
 * 0; a true division in single. A zero difference gives +infinity and the warning `vornStsDivByZero` (6); an infinite
 * one gives zero, and a not-a-number stays. `16s_Sfs`: 2^-scaleFactor over the difference, rounded to single, clamped
 * to 16 bits, and rounded to the nearest integer, ties to even, whatever the caller's rounding mode; zero differences
 * give 0 and the warning. With the warning the invalid and the denormal flag of the processor are clear.
 * Checks: null pointers; len below 1 (`vornStsSizeErr`).
 *
 * **Correlation coefficients** `vornsCrossCorrCoeff*_16s32f`: src1 . src2 / (sqrt(src1 . src1) sqrt(src2 . src2)),
 * where the dot products are exact, rounded once to single, the quotient is in double, and the result single; 0 where
 * the product of the two energies is not above 2^-126. `Partial`: `energy` stands for src1 . src1; a negative one gives
 * a not-a-number, one that is not a number 0.
 * Checks: null pointers; len below 1 (`vornStsSizeErr`); `Partial`: an energy of 0 (`vornStsRangeErr`).
 *
 * `Decim`: the coefficients of the end of src1 with the beginning of src2, at overlaps of minLen + i dec samples, i
 * from 0 to (maxLen - minLen)/dec, of which every dec-th is taken; dst has room for all. With D = maxLen - minLen,
 * dst[i] is that of src1[D - i dec + k] with src2[k], k = 0, dec, ... below minLen + i dec. src1 and src2 are read
 * below maxLen only. The sums are in single, of products rounded to single: the product over ascending k; the energies
 * over ascending k at i = 0, and then one square more for each i, src1[D - i dec] and the next sample of src2.
 * Checks: null pointers; minLen or dec below 1, maxLen below minLen (`vornStsSizeErr`).
 *
 * `Interpolation`: the point between src2[n] and src2[n + 1] at which the correlation with src1[n] is the largest; src2
 * has len + 1 samples. With a = src2[n], b = src2[n + 1], c = src1[n], and sums of products in double, in order: f =
 * (bc aa - ac ab)/((bb - ab) ac + (aa - ab) bc), `*frac` = f. If f is below 0, at least 1 or not a number, this is all,
 * and `*coeff` keeps what it holds; the status is `vornStsNoErr`. Otherwise `*coeff` is the coefficient of c with (1 -
 * f) a + f b, or ac where its divisor is 0. A zero divisor of f gives `*frac` = 0, `*coeff` = ac and the warning
 * `vornStsDivByZero`.
 * Checks: null pointers; len below 1 (`vornStsSizeErr`).
 * @{
 */
VornStatus vornsPeriodicity_32f(const Vorn32f* src, int len, Vorn32f* periodicity, int* period, int maxPeriod,
                                int minPeriod);
VornStatus vornsPeriodicity_32s16s(const Vorn32s* src, int len, Vorn16s* periodicity, int* period, int maxPeriod,
                                   int minPeriod);
VornStatus vornsPeriodicityLSPE_32f(const Vorn32f* src, int len, Vorn32f* periodicity, int* period, int maxPeriod,
                                    int minPeriod);
VornStatus vornsPeriodicityLSPE_16s(const Vorn16s* src, int len, Vorn16s* periodicity, int* period, int maxPeriod,
                                    int minPeriod);
VornStatus vornsFindPeaks_32f8u(const Vorn32f* src, Vorn8u* dst, int len, int searchSize, int movingAvgSize);
VornStatus vornsFindPeaks_32s8u(const Vorn32s* src, Vorn8u* dst, int len, int searchSize, int movingAvgSize);
VornStatus vornsPitchmarkToF0Cand_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsPitchmarkToF0Cand_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsCrossCorrCoeff_16s32f(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn32f* dst);
VornStatus vornsCrossCorrCoeffPartial_16s32f(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn32f* dst,
                                             Vorn32f energy);
VornStatus vornsCrossCorrCoeffDecim_16s32f(const Vorn16s* src1, const Vorn16s* src2, int maxLen, int minLen,
                                           Vorn32f* dst, int dec);
VornStatus vornsCrossCorrCoeffInterpolation_16s32f(const Vorn16s* src1, const Vorn16s* src2, int len, Vorn32f* frac,
                                                   Vorn32f* coeff);
/** @} */

VORN_END_DECLS

#endif
