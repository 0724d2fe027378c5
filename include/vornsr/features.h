/* Feature extraction: filter banks, cepstra, deltas, frame conditioning, linear prediction, resampling. */
#ifndef VORNSR_FEATURES_H
#define VORNSR_FEATURES_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_filter_banks Mel filter banks
 * @brief Band energies of a magnitude spectrum, or of a frame of samples, under triangular weights that are spaced
 * along the mel scale mel(f) = melMul ln(1 + f / melDiv) (Stevens, Volkmann and Newman 1937; Davis and Mermelstein
 * 1980).
 *
 * Shapes. N is the smallest power of two that is at least fftLen and at least 2; *pOrder receives its order. A bank has
 * nFilter filters between nFilter + 2 bins c[0] to c[nFilter + 1]: filter k (from 0) rises from bin c[k] to its centre
 * c[k+1] and falls to c[k+2]. src holds the bins 0 to N/2 or, with `vornFBankSamples`, N samples of which evaluation
 * makes the magnitude spectrum (not the powers) itself. dst holds nFilter values. Frequencies are in hertz.
 *
 * Centres. low = melMul ln(lowFreq/melDiv + 1), high likewise, each rounded to single;
 * m[i] = i (high - low) / (nFilter + 1) + low and c[i] = (exp(m[i]/melMul) - 1) ((N / sampleFreq) melDiv), in single
 * but for logarithm, exponential and the subtraction of one, which are in double. `vornFBankWeightFreq` rounds c to the
 * nearest bin, `vornFBankWeightMel` truncates.
 *
 * Weights. `vornFBankWeightFreq`: straight lines in bin number, (j - c[k] + 1) / (c[k+1] - c[k] + 1) up to 1 at the
 * centre, then (c[k+2] - j + 1) / (c[k+2] - c[k+1] + 1). `vornFBankWeightMel`: along the mel scale, (mel(j) - m[k]) /
 * (m[k+1] - m[k]), with 0 at the left edge, and (m[k+2] - mel(j)) / (m[k+2] - m[k+1]), where mel(j) = melMul ln(j
 * (sampleFreq/N) / melDiv + 1), in single but for the logarithm; with truncated centres a weight at an edge can leave 0
 * to 1 slightly. The `16s` forms hold weights in Q14: the quotient of the part times 16384, truncated.
 *
 * Evaluation, `32f`. dst[k] = the sum over the filter of weight times value, in single. The bins are walked once. The
 * bin of the left edge comes first; then each stretch between two neighbouring c takes eight bins a round in two
 * accumulators of four lanes while more than eight are left, and what remains bin by bin in lane 0 of the first
 * accumulator. At the end the accumulators are added, the upper two lanes onto the lower two, and these two. Where c[0]
 * and c[1] are equal the first filter rises on that one bin. Behind c[1] the bin-by-bin loop runs once at least: where
 * two c are equal there it takes the bin behind them, with the next element of the row (0 unless it was set), and the
 * filters behind run one bin late up to the next stretch of two bins or more. Give a bank enough bins for its filters.
 *
 * Evaluation, `16s` and `16s32s`. The products wrap at 32 bits, their sum is exact; it is shifted right by
 * scale + 14, arithmetically and without rounding (left if that is negative; the count is taken modulo 64), and
 * saturated. With `vornFBankSamples` the spectrum is that of `vornsFFTFwd_RToCCS_16s32s_Sfs` and
 * `vornsMagnitude_32sc_Sfs` with scale factor -3 each, and the shift is 6 more.
 *
 * Bits are the same on every processor, whatever the alignment. Bins outside 0 to N/2, which only odd arguments give,
 * are neither read nor weighted.
 *
 * Contexts. `GetSize` reports the bytes that `Init` needs, at any address; such a bank goes with its memory.
 * `InitAlloc` allocates a bank, `Free` releases it. If memory is short the status is `vornStsMemAllocErr`, nothing
 * stays allocated and the bank's pointer is null. Evaluation only reads the bank, so threads may share it, but with
 * `vornFBankSamples` it works in the bank's memory: then a bank serves one thread at a time.
 *
 * Checks, in this order. `GetSize`: null; size (fftLen or nFilter below 1); flags (`vornStsMelFlagErr`); size (more
 * than an int can say). `Init`, `InitAlloc`: null; size (fftLen, nFilter, sampleFreq or lowFreq not above 0); lowFreq
 * above highFreq or highFreq above half of sampleFreq (`vornStsMelFreqErr`); flags; size (as before). *pOrder is
 * written before anything is allocated. Evaluation: null, the bank's own pointer to its centres included; a bank that
 * is not ready (`vornStsNotInitErr`). `Free`: null.
 * @{
 */

/** A filter bank with weights in single. */
typedef struct VornFBankState_32f VornFBankState_32f;
/** A filter bank with weights in Q14. */
typedef struct VornFBankState_16s VornFBankState_16s;
/** A filter bank with weights in Q30, made in integer arithmetic. */
typedef struct VornFBankState_32s VornFBankState_32s;

/** Flags of a filter bank: one of the first two, and the third if wanted. */
enum {
    vornFBankWeightMel = 1,  /**< centres truncated to bins, weights along the mel scale */
    vornFBankWeightFreq = 2, /**< centres rounded to the nearest bin, weights straight lines in bin number */
    vornFBankSamples = 4     /**< evaluation takes a frame of samples */
};

VornStatus vornsMelFBankGetSize_32f(int fftLen, int nFilter, int flags, int* pSize);
VornStatus vornsMelFBankGetSize_16s(int fftLen, int nFilter, int flags, int* pSize);
VornStatus vornsMelFBankGetSize_32s(int fftLen, int nFilter, int flags, int* pSize);
VornStatus vornsMelFBankInit_32f(VornFBankState_32f* pFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                 Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv,
                                 int flags);
VornStatus vornsMelFBankInit_16s(VornFBankState_16s* pFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                 Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv,
                                 int flags);
VornStatus vornsMelFBankInit_32s(VornFBankState_32s* pFBank, int* pOrder, int fftLen, int sampleFreq, int lowFreq,
                                 int highFreq, int nFilter, int melMul, int melDiv, int flags);
VornStatus vornsMelFBankInitAlloc_32f(VornFBankState_32f** ppFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                      Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv,
                                      int flags);
VornStatus vornsMelFBankInitAlloc_16s(VornFBankState_16s** ppFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                      Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f melMul, Vorn32f melDiv,
                                      int flags);
VornStatus vornsMelLinFBankInitAlloc_32f(VornFBankState_32f** ppFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                         Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f highLinFreq,
                                         int nLinear, Vorn32f melMul, Vorn32f melDiv, int flags);
VornStatus vornsMelLinFBankInitAlloc_16s(VornFBankState_16s** ppFBank, int* pOrder, int fftLen, Vorn32f sampleFreq,
                                         Vorn32f lowFreq, Vorn32f highFreq, int nFilter, Vorn32f highLinFreq,
                                         int nLinear, Vorn32f melMul, Vorn32f melDiv, int flags);
VornStatus vornsEmptyFBankInitAlloc_32f(VornFBankState_32f** ppFBank, int* pOrder, int fftLen, int nFilter, int flags);
VornStatus vornsEmptyFBankInitAlloc_16s(VornFBankState_16s** ppFBank, int* pOrder, int fftLen, int nFilter, int flags);
VornStatus vornsFBankFree_32f(VornFBankState_32f* pFBank);
VornStatus vornsFBankFree_16s(VornFBankState_16s* pFBank);
VornStatus vornsEvalFBank_32f(const Vorn32f* src, Vorn32f* dst, const VornFBankState_32f* pFBank);
VornStatus vornsEvalFBank_16s_Sfs(const Vorn16s* src, Vorn16s* dst, const VornFBankState_16s* pFBank, int scale);
VornStatus vornsEvalFBank_16s32s_Sfs(const Vorn16s* src, Vorn32s* dst, const VornFBankState_16s* pFBank, int scale);
VornStatus vornsEvalFBank_32s_Sfs(const Vorn32s* src, Vorn32s* dst, const VornFBankState_32s* pFBank, int scale);
VornStatus vornsFBankGetCenters_32f(const VornFBankState_32f* pFBank, Vorn32s* pCenters);
VornStatus vornsFBankGetCenters_16s(const VornFBankState_16s* pFBank, Vorn32s* pCenters);
VornStatus vornsFBankSetCenters_32f(VornFBankState_32f* pFBank, const Vorn32s* pCenters);
VornStatus vornsFBankSetCenters_16s(VornFBankState_16s* pFBank, const Vorn32s* pCenters);
VornStatus vornsFBankGetCoeffs_32f(const VornFBankState_32f* pFBank, int filterIdx, Vorn32f* pCoeffs);
VornStatus vornsFBankGetCoeffs_16s(const VornFBankState_16s* pFBank, int filterIdx, Vorn32f* pCoeffs);
VornStatus vornsFBankSetCoeffs_32f(VornFBankState_32f* pFBank, int filterIdx, const Vorn32f* pCoeffs);
VornStatus vornsFBankSetCoeffs_16s(VornFBankState_16s* pFBank, int filterIdx, const Vorn32f* pCoeffs);
VornStatus vornsLinearToMel_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f melMul, Vorn32f melDiv);
VornStatus vornsMelToLinear_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f melMul, Vorn32f melDiv);
VornStatus vornsCopyWithPadding_32f(const Vorn32f* src, int srcLen, Vorn32f* dst, int dstLen);
VornStatus vornsCopyWithPadding_16s(const Vorn16s* src, int srcLen, Vorn16s* dst, int dstLen);
/** @} */

/**
 * @defgroup vornsr_dct_lifter DCT lifter
 * @brief Cepstral coefficients of a vector of log filter bank energies: a cosine transform of type II without
 * normalisation, with a weight on each output (Davis and Mermelstein 1980; the raised sine lifter: Juang, Rabiner and
 * Wilpon 1987).
 *
 * With x the lenDCT inputs: dst[i-1] = lifter[i] times the sum over j from 1 to lenDCT of x[j-1] cos[i][j-1], for i
 * from 1 to lenCep; no factor such as the root of 2/lenDCT. The `_C0` forms put coefficient zero last: dst[lenCep] =
 * lifter[0] times the sum of x. dst has lenCep elements, one more with coefficient zero. lenCep is at most lenDCT.
 *
 * Table. cos[i][j-1] = cos((j - 0.5) (i pi) / lenDCT) in double, rounded to single; row 0 is all ones.
 * lifter[i] = w val in single, with w = sin(i pi / L) (L 0.5) + 1.0 in double, rounded to single, and L = nLifter. i is
 * not limited by L: beyond it the sine and with it the weight go negative. The `_C0` forms take val0 for lifter[0].
 *
 * Exactness. The table is what the double formula gives with the library's own sine and cosine, rounded once: the same
 * bits on every processor. Each sum is in single: rows 1 to lenCep in rounds of four with one accumulator of four lanes
 * a row (lane l takes the elements l, l + 4, ...), added as (lane 0 + lane 1) + (lane 2 + lane 3); the rows that are
 * left, and coefficient zero, with two accumulators for the first and the last four of each eight elements, which are
 * added lane by lane first. Alignment changes nothing.
 *
 * Contexts. `InitAlloc` allocates one, `Free` releases it; between them it is only read and may be shared by threads.
 * If memory is short the status is `vornStsMemAllocErr`, nothing stays allocated and *ppState is null. src and dst must
 * not overlap.
 *
 * Checks, in this order. `InitAlloc`: null, size (lenDCT, lenCep or nLifter below 1, lenDCT below lenCep). The
 * transform and `Free`: null.
 * @{
 */

/** The cosines and weights of a DCT lifter. */
typedef struct VornDCTLifterState_32f VornDCTLifterState_32f;
/** The same for integers. */
typedef struct VornDCTLifterState_16s VornDCTLifterState_16s;

VornStatus vornsDCTLifterGetSize_32f(int lenDCT, int lenCep, int* pSize);
VornStatus vornsDCTLifterGetSize_C0_32f(int lenDCT, int lenCep, int* pSize);
VornStatus vornsDCTLifterGetSize_Mul_32f(int lenDCT, int lenCep, int* pSize);
VornStatus vornsDCTLifterGetSize_MulC0_32f(int lenDCT, int lenCep, int* pSize);
VornStatus vornsDCTLifterGetSize_16s(int lenDCT, int lenCep, int* pSize);
VornStatus vornsDCTLifterGetSize_C0_16s(int lenDCT, int lenCep, int* pSize);
VornStatus vornsDCTLifterGetSize_Mul_16s(int lenDCT, int lenCep, int* pSize);
VornStatus vornsDCTLifterGetSize_MulC0_16s(int lenDCT, int lenCep, int* pSize);
VornStatus vornsDCTLifterInit_32f(VornDCTLifterState_32f* pState, int lenDCT, int lenCep, int nLifter, Vorn32f val);
VornStatus vornsDCTLifterInit_C0_32f(VornDCTLifterState_32f* pState, int lenDCT, int lenCep, int nLifter, Vorn32f val,
                                     Vorn32f val0);
VornStatus vornsDCTLifterInit_Mul_32f(VornDCTLifterState_32f* pState, int lenDCT, const Vorn32f* pLifter, int lenCep);
VornStatus vornsDCTLifterInit_MulC0_32f(VornDCTLifterState_32f* pState, int lenDCT, const Vorn32f* pLifter, int lenCep);
VornStatus vornsDCTLifterInit_16s(VornDCTLifterState_16s* pState, int lenDCT, int lenCep, int nLifter, Vorn32f val);
VornStatus vornsDCTLifterInit_C0_16s(VornDCTLifterState_16s* pState, int lenDCT, int lenCep, int nLifter, Vorn32f val,
                                     Vorn32f val0);
VornStatus vornsDCTLifterInit_Mul_16s(VornDCTLifterState_16s* pState, int lenDCT, const Vorn32f* pLifter, int lenCep);
VornStatus vornsDCTLifterInit_MulC0_16s(VornDCTLifterState_16s* pState, int lenDCT, const Vorn32s* pLifter, int lenCep);
VornStatus vornsDCTLifterInitAlloc_32f(VornDCTLifterState_32f** ppState, int lenDCT, int lenCep, int nLifter,
                                       Vorn32f val);
VornStatus vornsDCTLifterInitAlloc_C0_32f(VornDCTLifterState_32f** ppState, int lenDCT, int lenCep, int nLifter,
                                          Vorn32f val, Vorn32f val0);
VornStatus vornsDCTLifterInitAlloc_Mul_32f(VornDCTLifterState_32f** ppState, int lenDCT, const Vorn32f* pLifter,
                                           int lenCep);
VornStatus vornsDCTLifterInitAlloc_MulC0_32f(VornDCTLifterState_32f** ppState, int lenDCT, const Vorn32f* pLifter,
                                             int lenCep);
VornStatus vornsDCTLifterInitAlloc_16s(VornDCTLifterState_16s** ppState, int lenDCT, int lenCep, int nLifter,
                                       Vorn32f val);
VornStatus vornsDCTLifterInitAlloc_C0_16s(VornDCTLifterState_16s** ppState, int lenDCT, int lenCep, int nLifter,
                                          Vorn32f val, Vorn32f val0);
VornStatus vornsDCTLifterInitAlloc_Mul_16s(VornDCTLifterState_16s** ppState, int lenDCT, const Vorn32f* pLifter,
                                           int lenCep);
VornStatus vornsDCTLifterInitAlloc_MulC0_16s(VornDCTLifterState_16s** ppState, int lenDCT, const Vorn32f* pLifter,
                                             int lenCep);
VornStatus vornsDCTLifterFree_32f(VornDCTLifterState_32f* pState);
VornStatus vornsDCTLifterFree_16s(VornDCTLifterState_16s* pState);
VornStatus vornsDCTLifter_32f(const Vorn32f* src, Vorn32f* dst, const VornDCTLifterState_32f* pState);
VornStatus vornsDCTLifter_16s_Sfs(const Vorn16s* src, Vorn16s* dst, const VornDCTLifterState_16s* pState, int scale);
VornStatus vornsDCTLifter_32s16s_Sfs(const Vorn32s* src, Vorn16s* dst, const VornDCTLifterState_16s* pState, int scale);
/** @} */

/**
 * @defgroup vornsr_deltas Deltas and accelerations
 * @brief First and second differences of feature vectors along time: for utterances that arrive in blocks, and in place
 * for a matrix that is there.
 *
 * **Streaming forms**, `vornsDelta*` and `vornsDeltaDelta*`. src holds height new frames of width columns, packed. A
 * row of dst is dstStep elements apart from the next and holds, side by side, the frame (columns 0 to width - 1), its
 * delta (from width) and, in the `DeltaDelta` forms, its acceleration (from 2 width).
 *
 * Formula, for an utterance x(0) to x(T-1), with x(t) read as x(0) before it and as x(T-1) behind it, in this order:
 * - `Win1`: delta(t) = (x(t+1) - x(t-1)) val.
 * - `Win2`: with a = x(t+1) - x(t-1) and b = x(t+2) - x(t-2): delta(t) = ((a + b) + b) val.
 *
 * The acceleration is the same operator on the deltas, with val2 (and val1 for the deltas); the deltas likewise repeat
 * beyond both ends. In the `Mul` forms each column has factors of its own: the frame is stored as x pVal[c] for column
 * c and all differences are taken of what is stored; pVal[width + c] stands for val, pVal[2 width + c] for val2.
 *
 * Blocks. mode is 0 or a sum of `vornDeltaFirst` (this block starts the utterance) and `vornDeltaLast` (this block ends
 * it); its other bits are ignored. A first call writes frame 0 to row 0 of dst. Any other call expects dst to point L
 * rows back: rows 0 to L-1 hold the last L rows of the call before, with all that it wrote there, and the new frames
 * go to row L and on. So behind a first call the caller advances dst by height - L rows, behind any later call by
 * height rows:
 *
 * @code
 * const int L = 4;
 * Vorn32f* dst = out;
 * for (int i = 0; i < n; ++i) {
 *     int mode = i == 0 ? vornDeltaFirst : 0;
 *     vornsDelta_Win2_32f_D2(src[i], width, dst, step, height[i], val, mode);
 *     dst += (i == 0 ? height[i] - L : height[i]) * step;
 * }
 * vornsDelta_Win2_32f_D2(src[0], width, dst, step, 0, val, vornDeltaLast);
 * @endcode
 *
 * The last call has no frames (src is not read, but must not be null). Where the last block is known to be the last,
 * give that call `vornDeltaLast` instead; both flags together make one call of a whole utterance. With frames up to
 * row r written, deltas stand complete up to row r - 1 (`Win2`: r - 2) and accelerations up to row r - 2 (r - 4); what
 * is not complete has not been written. L, which is the least height of a first call too:
 *
 * | | `Win1` | `Win2` |
 * |---|---|---|
 * | `vornsDelta*`, `vornsDeltaMul*` | 2 | 4 |
 * | `vornsDeltaDelta*`, `vornsDeltaDeltaMul*` | 3 | 6 |
 *
 * **Form in place**, `vornsEvalDelta*`. Rows of srcDst are frames, step elements apart: their features stand in columns
 * offset to offset + width - 1, and the deltas go to the width columns behind them. With W = winSize, in row r:
 * - W to height - W - 1: the sum over k = 1 to W of k (x(r+k) - x(r-k)).
 * - 0 to W - 1: the sum of k (x(r+k) - x(0)): row 0 stands on the left for every k, not only where r - k lies before
 *   the matrix. From W = 2 on this is not the repetition of the streaming forms.
 * - height - W to height - 1: likewise the sum of k (x(height-1) - x(r-k)).
 *
 * The terms are added in the order of k, and the sum is multiplied by val, in the `Mul` forms by pVal[width + c]; the
 * first width entries of pVal are not read.
 *
 * **16 bits** (`Sfs`). A product is formed and wraps in 32 bits, and so do the sums before it; it is shifted right by
 * scale without rounding (downward), for a negative scale left by -scale, losing what leaves the 32 bits; then it is
 * saturated. The count is taken modulo 32: 33 shifts like 1, -32 like 0. The frames of the `Mul` forms are such results
 * as well. Accelerations read deltas as they are stored. Each difference is
 * - whole, in 32 bits, in `vornsDelta_Win1`, `vornsDelta_Win2` and `vornsDeltaDelta_Win1`: from -30000 to 30000 it is
 *   60000;
 * - wrapped to 16 bits, there to -5536, in `vornsDeltaDelta_Win2`, all `Mul` forms and `vornsEvalDelta*`.
 *
 * Exactness. Singles: each result is the formula with its roundings, in the caller's rounding mode; infinities and
 * not-a-numbers follow the arithmetic. Any cut into blocks gives the same bits as one call; width and alignment change
 * nothing. There is no state beside the rows of dst: leave the last L of them as they are between calls. src and dst
 * must not overlap.
 *
 * Checks, in this order. Streaming: null; size (width below 1, height negative, height 0 without `vornDeltaLast`);
 * stride (dstStep below 2 width, 3 width with acceleration); size (`vornDeltaFirst` with height below L). In place:
 * null; size (height, width or winSize below 1, offset negative, height below 2 winSize); stride (step below
 * offset + 2 width).
 * @{
 */

/** Bits of the mode of a streaming call. */
enum {
    vornDeltaFirst = 1, /**< nothing comes before this block */
    vornDeltaLast = 2   /**< nothing comes behind this block: finish the pending rows */
};

VornStatus vornsEvalDelta_32f_D2(Vorn32f* srcDst, int height, int step, int width, int offset, int winSize,
                                 Vorn32f val);
VornStatus vornsEvalDelta_16s_D2Sfs(Vorn16s* srcDst, int height, int step, int width, int offset, int winSize,
                                    Vorn16s val, int scale);
VornStatus vornsEvalDeltaMul_32f_D2(Vorn32f* srcDst, int height, int step, const Vorn32f* pVal, int width, int offset,
                                    int winSize);
VornStatus vornsEvalDeltaMul_16s_D2Sfs(Vorn16s* srcDst, int height, int step, const Vorn16s* pVal, int width,
                                       int offset, int winSize, int scale);
VornStatus vornsDelta_Win1_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height, Vorn32f val,
                                  int mode);
VornStatus vornsDelta_Win2_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height, Vorn32f val,
                                  int mode);
VornStatus vornsDelta_Win1_16s_D2Sfs(const Vorn16s* src, int width, Vorn16s* dst, int dstStep, int height, Vorn16s val,
                                     int mode, int scale);
VornStatus vornsDelta_Win2_16s_D2Sfs(const Vorn16s* src, int width, Vorn16s* dst, int dstStep, int height, Vorn16s val,
                                     int mode, int scale);
VornStatus vornsDeltaDelta_Win1_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height,
                                       Vorn32f val1, Vorn32f val2, int mode);
VornStatus vornsDeltaDelta_Win2_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height,
                                       Vorn32f val1, Vorn32f val2, int mode);
VornStatus vornsDeltaDelta_Win1_16s_D2Sfs(const Vorn16s* src, int width, Vorn16s* dst, int dstStep, int height,
                                          Vorn16s val1, Vorn16s val2, int mode, int scale);
VornStatus vornsDeltaDelta_Win2_16s_D2Sfs(const Vorn16s* src, int width, Vorn16s* dst, int dstStep, int height,
                                          Vorn16s val1, Vorn16s val2, int mode, int scale);
VornStatus vornsDeltaMul_Win1_32f_D2(const Vorn32f* src, const Vorn32f* pVal, int width, Vorn32f* dst, int dstStep,
                                     int height, int mode);
VornStatus vornsDeltaMul_Win2_32f_D2(const Vorn32f* src, const Vorn32f* pVal, int width, Vorn32f* dst, int dstStep,
                                     int height, int mode);
VornStatus vornsDeltaDeltaMul_Win1_32f_D2(const Vorn32f* src, const Vorn32f* pVal, int width, Vorn32f* dst, int dstStep,
                                          int height, int mode);
VornStatus vornsDeltaDeltaMul_Win2_32f_D2(const Vorn32f* src, const Vorn32f* pVal, int width, Vorn32f* dst, int dstStep,
                                          int height, int mode);
VornStatus vornsDeltaMul_Win1_16s_D2Sfs(const Vorn16s* src, const Vorn16s* pVal, int width, Vorn16s* dst, int dstStep,
                                        int height, int mode, int scale);
VornStatus vornsDeltaMul_Win2_16s_D2Sfs(const Vorn16s* src, const Vorn16s* pVal, int width, Vorn16s* dst, int dstStep,
                                        int height, int mode, int scale);
VornStatus vornsDeltaDeltaMul_Win1_16s_D2Sfs(const Vorn16s* src, const Vorn16s* pVal, int width, Vorn16s* dst,
                                             int dstStep, int height, int mode, int scale);
VornStatus vornsDeltaDeltaMul_Win2_16s_D2Sfs(const Vorn16s* src, const Vorn16s* pVal, int width, Vorn16s* dst,
                                             int dstStep, int height, int mode, int scale);
/** @} */

/**
 * @defgroup vornsr_column_copies Copies of columns
 * @brief Frames moved into wider rows, and columns chosen by a list of indices.
 *
 * Elements are copied bit for bit.
 * - `vornsCopyColumn_32f_D2`, `_16s_D2`: src holds height rows of width elements, packed; they go to rows of dst that
 *   stand dstStep elements apart. What lies between the rows of dst is not touched.
 * - `vornsCopyColumn_Indirect_*`: column j of each of the height rows of dst takes column pIndex[j] of the same row of
 *   src, for j from 0 to dstLen - 1. Columns may be taken in any order, more than once or not at all. In the `D2` forms
 *   rows are srcStep and dstStep elements apart, in the `D2L` forms each has a pointer.
 *
 * Indices are tested while the first row is copied, in the order of j: one outside of 0 to srcLen - 1 ends the call
 * with `vornStsSizeErr`, the elements before it written and nothing else. src, dst and pIndex must not overlap.
 *
 * Checks, in this order. `vornsCopyColumn_32f_D2`, `_16s_D2`: null; size (height, width below 1); stride (dstStep below
 * width). `Indirect_*_D2`: null; srcLen below 1 (size); srcStep below srcLen (stride); dstLen below 1 (size); dstStep
 * below dstLen (stride); height below 1 (size); an index (size). `Indirect_*_D2L`: null; size (srcLen, dstLen, height
 * below 1); an index (size).
 * @{
 */
VornStatus vornsCopyColumn_32f_D2(const Vorn32f* src, int width, Vorn32f* dst, int dstStep, int height);
VornStatus vornsCopyColumn_16s_D2(const Vorn16s* src, int width, Vorn16s* dst, int dstStep, int height);
VornStatus vornsCopyColumn_Indirect_32f_D2(const Vorn32f* src, int srcLen, int srcStep, Vorn32f* dst,
                                           const Vorn32s* pIndex, int dstLen, int dstStep, int height);
VornStatus vornsCopyColumn_Indirect_64f_D2(const Vorn64f* src, int srcLen, int srcStep, Vorn64f* dst,
                                           const Vorn32s* pIndex, int dstLen, int dstStep, int height);
VornStatus vornsCopyColumn_Indirect_16s_D2(const Vorn16s* src, int srcLen, int srcStep, Vorn16s* dst,
                                           const Vorn32s* pIndex, int dstLen, int dstStep, int height);
VornStatus vornsCopyColumn_Indirect_32f_D2L(const Vorn32f* const* ppSrc, int srcLen, Vorn32f* const* ppDst,
                                            const Vorn32s* pIndex, int dstLen, int height);
VornStatus vornsCopyColumn_Indirect_64f_D2L(const Vorn64f* const* ppSrc, int srcLen, Vorn64f* const* ppDst,
                                            const Vorn32s* pIndex, int dstLen, int height);
VornStatus vornsCopyColumn_Indirect_16s_D2L(const Vorn16s* const* ppSrc, int srcLen, Vorn16s* const* ppDst,
                                            const Vorn32s* pIndex, int dstLen, int height);
/** @} */

/**
 * @defgroup vornsr_conditioning Frame conditioning
 * @brief Small steps on the samples of a frame and on the energies of an utterance. No state but what the caller hands
 * in.
 *
 * **Offset compensation.** `vornsCompensateOffset*` removes a constant offset by the first-order filter
 * y(n) = x(n) - x(n-1) + val y(n-1), val just below one. *pSrcLast carries x(-1) in and x(len-1) out; dstLast is y(-1),
 * which the caller takes from the end of the block before, so that blocks make one signal. dst may be src.
 * - `32f`, `32f_I`: y(0) = (dstLast val + x(0)) - x(-1), then y(n) = (x(n) - x(n-1)) + val y(n-1), in single, in this
 *   order. The first sample of a block is thus formed in another order: at a border between blocks last bits may
 *   differ.
 * - `16s`: y(0) is the same single, truncated toward zero and saturated (not-a-number gives 0). The rest depends on
 *   val. Within -1.0 to 1.0: q = val 4096 truncated; y(n) = ((y(n-1) q) >> 12) + d, saturated, with d = x(n) - x(n-1)
 *   saturated by itself, both to 16 bits; the arithmetic shift truncates downward. Other val: y(n) = (x(n) -
 *   x(n-1)) + y(n-1) val in single, one half with the sign of the value added, truncated, saturated.
 * - `16s_I`: y(0) likewise, the rest always in single.
 * - `Q15_16s`, `Q15_16s_I`: y(n) = (y(n-1) val + (x(n) - x(n-1)) 32768) / 32768 in 64 bits, truncated toward zero and
 *   saturated, from n = 0 on; val in Q15.
 *
 * **Sign changes.** *pRes receives, over n from 1 to len - 1:
 * - `vornsSignChangeRate_16s`, `_32f`: how many products x(n-1) x(n) are below zero. A zero is no change; in `32f` a
 *   product that underflows is none and one that is not a number is one.
 * - `vornsSignChangeRateXor_32f`: how many sign bits differ; those of +0.0 and -0.0 do.
 * - `vornsSignChangeRate_Count0_*`: half the sum of |sgn(x(n)) - sgn(x(n-1))|, a step onto zero and one off it
 *   counting one half each; the `16s` form drops a last half. Not-a-number has the sign -1.
 *
 * Counts are exact; those of `32f` are rounded to single above 2^24.
 *
 * **Energy normalisation.** The height log energies x stand step elements apart. With m the largest of them (from
 * -3.4028235e38 or -32768 up; in the `RT` forms m is maxE, for when the utterance is not over) and
 * floor = m - minDb 0.230259, each becomes top - (m - max(x, floor)) val, in single; top is 1.0 in the `32f` forms. A
 * not-a-number takes the floor. The `16s` forms truncate toward zero and saturate.
 *
 * **Mean removal.** `vornsZeroMean_16s`: m2 = (2 sum) / len truncated, the sum wrapped at 32 bits. d = 2 x - m2, moved
 * one away from zero unless it is zero; x becomes d >> 1, limited to -32767 (not -32768) and 32767.
 *
 * Alignment changes nothing. Checks, in this order: null; size (len, step, height below 1; len above 65535 in the `Q15`
 * forms); `vornStsBadArgErr` for a negative val of the `Q15` forms. `vornsZeroMean_16s` tests size before null.
 * @{
 */
VornStatus vornsCompensateOffset_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f* pSrcLast, Vorn32f dstLast,
                                     Vorn32f val);
VornStatus vornsCompensateOffset_32f_I(Vorn32f* srcDst, int len, Vorn32f* pSrcLast, Vorn32f dstLast, Vorn32f val);
VornStatus vornsCompensateOffset_16s(const Vorn16s* src, Vorn16s* dst, int len, Vorn16s* pSrcLast, Vorn16s dstLast,
                                     Vorn32f val);
VornStatus vornsCompensateOffset_16s_I(Vorn16s* srcDst, int len, Vorn16s* pSrcLast, Vorn16s dstLast, Vorn32f val);
VornStatus vornsCompensateOffsetQ15_16s(const Vorn16s* src, Vorn16s* dst, int len, Vorn16s* pSrcLast, Vorn16s dstLast,
                                        Vorn16s val);
VornStatus vornsCompensateOffsetQ15_16s_I(Vorn16s* srcDst, int len, Vorn16s* pSrcLast, Vorn16s dstLast, Vorn16s val);
VornStatus vornsSignChangeRate_16s(const Vorn16s* src, int len, Vorn32s* pRes);
VornStatus vornsSignChangeRate_32f(const Vorn32f* src, int len, Vorn32f* pRes);
VornStatus vornsSignChangeRateXor_32f(const Vorn32f* src, int len, int* pRes);
VornStatus vornsSignChangeRate_Count0_16s(const Vorn16s* src, int len, Vorn32s* pRes);
VornStatus vornsSignChangeRate_Count0_32f(const Vorn32f* src, int len, Vorn32f* pRes);
VornStatus vornsNormEnergy_32f(Vorn32f* srcDst, int step, int height, Vorn32f minDb, Vorn32f val);
VornStatus vornsNormEnergy_16s(Vorn16s* srcDst, int step, int height, Vorn16s minDb, Vorn16s top, Vorn32f val);
VornStatus vornsNormEnergy_RT_32f(Vorn32f* srcDst, int step, int height, Vorn32f minDb, Vorn32f maxE, Vorn32f val);
VornStatus vornsNormEnergy_RT_16s(Vorn16s* srcDst, int step, int height, Vorn16s minDb, Vorn16s maxE, Vorn16s top,
                                  Vorn32f val);
VornStatus vornsZeroMean_16s(Vorn16s* srcDst, int len);
/** @} */

/**
 * @defgroup vornsr_linear_prediction Linear prediction
 * @brief Prediction coefficients and reflection coefficients of a frame or of its autocorrelation.
 * @{
 */
VornStatus vornsDurbin_32f(const Vorn32f* src, Vorn32f* dst, int order, Vorn32f* pErr);
VornStatus vornsDurbin_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int order, Vorn32f* pErr, int scale);
VornStatus vornsSchur_32f(const Vorn32f* src, Vorn32f* dst, int order, Vorn32f* pErr);
VornStatus vornsSchur_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int order, Vorn32f* pErr, int scale);
VornStatus vornsLinearPrediction_Auto_32f(const Vorn32f* src, int len, Vorn32f* dst, int order);
VornStatus vornsLinearPrediction_Auto_16s_Sfs(const Vorn16s* src, int len, Vorn16s* dst, int order, int scale);
VornStatus vornsLinearPredictionNeg_Auto_32f(const Vorn32f* src, int len, Vorn32f* dst, int order);
VornStatus vornsLinearPredictionNeg_Auto_16s_Sfs(const Vorn16s* src, int len, Vorn16s* dst, int order, int scale);
VornStatus vornsLinearPrediction_Cov_32f(const Vorn32f* src, int len, Vorn32f* dst, int order);
VornStatus vornsLinearPrediction_Cov_16s_Sfs(const Vorn16s* src, int len, Vorn16s* dst, int order, int scale);
/** @} */

/**
 * @defgroup vornsr_prediction_conversions Representations of a prediction filter
 * @brief Prediction coefficients as cepstrum, reflection coefficients, line spectral frequencies and spectrum envelope,
 * and back.
 * @{
 */
VornStatus vornsLPToCepstrum_32f(const Vorn32f* src, Vorn32f* dst, int n);
VornStatus vornsCepstrumToLP_32f(const Vorn32f* src, Vorn32f* dst, int n);
VornStatus vornsLPToReflection_32f(const Vorn32f* src, Vorn32f* dst, int n);
VornStatus vornsReflectionToLP_32f(const Vorn32f* src, Vorn32f* dst, int n);
VornStatus vornsLPToCepstrum_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int n, int scale);
VornStatus vornsCepstrumToLP_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int n, int scale);
VornStatus vornsLPToReflection_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int n, int scale);
VornStatus vornsReflectionToLP_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int n, int scale);
VornStatus vornsLPToLSP_32f(const Vorn32f* src, Vorn32f* dst, int order, int* pNRoots, int nGrid, int nDiv);
VornStatus vornsLPToLSP_16s_Sfs(const Vorn16s* src, int scaleIn, Vorn16s* dst, int order, int* pNRoots, int nGrid,
                                int nDiv, int scaleOut);
VornStatus vornsLSPToLP_32f(const Vorn32f* src, Vorn32f* dst, int order);
VornStatus vornsLSPToLP_16s_Sfs(const Vorn16s* src, int scaleIn, Vorn16s* dst, int order, int scaleOut);
VornStatus vornsLPToSpectrum_32f(const Vorn32f* src, int len, Vorn32f* dst, int order, Vorn32f val);
VornStatus vornsLPToSpectrum_16s_Sfs(const Vorn16s* src, int len, Vorn16s* dst, int order, int val, int scale);
/** @} */

/**
 * @defgroup vornsr_reflection_features Features of reflection coefficients
 * @brief Area ratios, their logarithms and running products, and spectral tilts.
 * @{
 */
VornStatus vornsReflectionToAR_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsReflectionToAR_16s_Sfs(const Vorn16s* src, int scaleIn, Vorn16s* dst, int len, int scaleOut);
VornStatus vornsReflectionToTrueAR_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsReflectionToTrueAR_16s_Sfs(const Vorn16s* src, int scaleIn, Vorn16s* dst, int len, int scaleOut);
VornStatus vornsReflectionToLAR_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f val);
VornStatus vornsReflectionToLAR_16s_Sfs(const Vorn16s* src, int scaleIn, Vorn16s* dst, int len, int scaleOut,
                                        Vorn32f val);
VornStatus vornsReflectionToTilt_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len);
VornStatus vornsReflectionToTilt_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scale);
VornStatus vornsReflectionToAbsTilt_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len);
VornStatus vornsReflectionToAbsTilt_16s_Sfs(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, int scale);
/** @} */

/**
 * @defgroup vornsr_resampling Resampling
 * @brief Changes of the sampling rate by a windowed sinc, at any factor or at a rational one.
 * @{
 */

/** A filter read at any position: the factor may be any positive number and may change between calls. */
typedef struct VornResampleState_32f VornResampleState_32f;
/** The same for 16-bit samples. */
typedef struct VornResampleState_16s VornResampleState_16s;
/** A filter for each phase of a rational ratio. */
typedef struct VornResampleFixedState_32f VornResampleFixedState_32f;
/** The same for 16-bit samples. */
typedef struct VornResampleFixedState_16s VornResampleFixedState_16s;

VornStatus vornsResamplePolyphaseInitAlloc_32f(VornResampleState_32f** ppState, int nStep, int hint, Vorn32f window,
                                               Vorn32f rollf, Vorn32f alpha);
VornStatus vornsResamplePolyphase_32f(const VornResampleState_32f* pState, const Vorn32f* src, int len, Vorn32f* dst,
                                      Vorn64f factor, Vorn32f norm, Vorn64f* pTime, int* pOutLen);
VornStatus vornsResamplePolyphaseFree_32f(VornResampleState_32f* pState);
VornStatus vornsResamplePolyphaseFixedGetSize_32f(int inRate, int outRate, int len, int* pSize, int* pLen,
                                                  int* pHeight);
VornStatus vornsResamplePolyphaseFixedInit_32f(VornResampleFixedState_32f* pState, int inRate, int outRate, int len,
                                               int hint);
VornStatus vornsResamplePolyphaseFixedInitAlloc_32f(VornResampleFixedState_32f** ppState, int inRate, int outRate,
                                                    int len, int hint, Vorn32f rollf, Vorn32f alpha);
VornStatus vornsResamplePolyphaseFixed_32f(const VornResampleFixedState_32f* pState, const Vorn32f* src, int len,
                                           Vorn32f* dst, Vorn32f norm, Vorn64f* pTime, int* pOutLen);
VornStatus vornsResamplePolyphaseFixedFree_32f(VornResampleFixedState_32f* pState);
VornStatus vornsResamplePolyphaseGetFixedFilter_32f(const VornResampleFixedState_32f* pState, Vorn32f* pDst, int step,
                                                    int height);
VornStatus vornsResamplePolyphaseSetFixedFilter_32f(VornResampleFixedState_32f* pState, const Vorn32f* pSrc, int step,
                                                    int height);
VornStatus vornsResamplePolyphaseInitAlloc_16s(VornResampleState_16s** ppState, int nStep, int hint, Vorn32f window,
                                               Vorn32f rollf, Vorn32f alpha);
VornStatus vornsResamplePolyphase_16s(const VornResampleState_16s* pState, const Vorn16s* src, int len, Vorn16s* dst,
                                      Vorn64f factor, Vorn32f norm, Vorn64f* pTime, int* pOutLen);
VornStatus vornsResamplePolyphaseFree_16s(VornResampleState_16s* pState);
VornStatus vornsResamplePolyphaseFixedGetSize_16s(int inRate, int outRate, int len, int* pSize, int* pLen,
                                                  int* pHeight);
VornStatus vornsResamplePolyphaseFixedInit_16s(VornResampleFixedState_16s* pState, int inRate, int outRate, int len,
                                               int hint);
VornStatus vornsResamplePolyphaseFixedInitAlloc_16s(VornResampleFixedState_16s** ppState, int inRate, int outRate,
                                                    int len, int hint, Vorn32f rollf, Vorn32f alpha);
VornStatus vornsResamplePolyphaseFixed_16s(const VornResampleFixedState_16s* pState, const Vorn16s* src, int len,
                                           Vorn16s* dst, Vorn32f norm, Vorn64f* pTime, int* pOutLen);
VornStatus vornsResamplePolyphaseFixedFree_16s(VornResampleFixedState_16s* pState);
VornStatus vornsResamplePolyphaseGetFixedFilter_16s(const VornResampleFixedState_16s* pState, Vorn16s* pDst, int step,
                                                    int height);
VornStatus vornsResamplePolyphaseSetFixedFilter_16s(VornResampleFixedState_16s* pState, const Vorn16s* pSrc, int step,
                                                    int height);
/** @} */

VORN_END_DECLS

#endif
