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
 * `32f`: W from 0 to 1 and gamma from the single 3.05176e-05 to 32768; another value, and a not-a-number, anywhere
 * gives `vornStsRangeErr`, and nothing is written. gamma is limited to the singles 3.1e-05 and 100. X is the single
 * product gamma W times 2^22; dst = W D[X], or the single (P0 + y) times W, rounded to single, divided by 2^22. The
 * roundings of these are in the caller's mode. W = 0 gives 0 of its sign.
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
