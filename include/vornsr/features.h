/* Feature extraction: filter banks, cepstra, deltas, frame conditioning, linear prediction, resampling. */
#ifndef VORNSR_FEATURES_H
#define VORNSR_FEATURES_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_filter_banks Mel filter banks
 * @brief Band energies of a magnitude spectrum, or of a frame of samples, under triangular weights that are spaced
 * along the mel scale mel(f) = melMul ln(1 + f / melDiv) (Stevens, Volkmann and Newman 1937; Davis and Mermelstein
 * 1980); banks spaced in hertz below a frequency, banks that the caller fills, banks in integers; and the scale itself.
 *
 * Shapes. N is the smallest power of two that is at least fftLen and at least 2; *pOrder receives its order. A bank has
 * nFilter filters between nFilter + 2 bins c[0] to c[nFilter + 1]: filter k (from 0) rises from bin c[k] to its centre
 * c[k+1] and falls to c[k+2]. src holds the bins 0 to N/2 or, with `vornFBankSamples`, N samples of which evaluation
 * makes the magnitude spectrum (not the powers) itself. dst holds nFilter values. Frequencies are in hertz. Other ways
 * to make a bank, those of noise-robust front-ends among them, give the same record: what follows holds for any.
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
 * Mixed banks, `MelLin`: the first nLinear centres are spaced in hertz, F[i] = i (highLinFreq - lowFreq) / nLinear +
 * lowFreq, the edges from c[nLinear] on in mel between highLinFreq and highFreq, nFilter - nLinear + 1 steps as above.
 * Where nLinear is nFilter all edges are spaced in hertz, with nFilter + 1 for nLinear in the formula and highLinFreq
 * at the right edge. The bins of F are F (N / sampleFreq), in single. `vornFBankWeightFreq`: straight lines everywhere.
 * `vornFBankWeightMel`: with M(f) = ln(f / melDiv + 1), rounded to single, times melMul, filters below nLinear (from 1;
 * all if nLinear is nFilter) weigh bin j on the rising side, left edge included, by (mel(j) - M(F[k-1])) / (M(F[k]) -
 * M(F[k-1])) and on the falling one by (M(F[k+1]) - mel(j)) / (M(F[k+1]) - M(F[k])), mel, numerator and quotient in
 * double, and the quotient is rounded to single. Filter nLinear rises in the same way; on its falling side a mel value
 * is taken from a bin number: (c[k+1] - mel(j)), rounded to single, over c[k+1] - c[k]. This is how these banks are; on
 * usual scales it leaves nothing of that side. Filters above nLinear are straight lines. Weights below 0 become 0; a
 * not-a-number, which only edges at one frequency give, stays one. The `16s` forms multiply each numerator by 16384
 * and truncate the quotient (what no integer holds, and not-a-numbers, give 0); straight lines are integer quotients.
 *
 * Empty banks hold zeros for weights and no centres: they are evaluated once `SetCenters` has given them some. Of flags
 * only `vornFBankSamples` is looked at: the transform is made, but the bank always takes spectra.
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
 * scale + 14 (which wraps at 32 bits), arithmetically and without rounding (left if that is negative; the count is
 * taken modulo 64), and saturated. With `vornFBankSamples` the spectrum is that of `vornsFFTFwd_RToCCS_16s32s_Sfs` and
 * `vornsMagnitude_32sc_Sfs` with scale factor -3 each, and the shift is 6 more.
 *
 * Integer banks, `32s`: straight lines, weights in Q30, melMul and melDiv in Q15, other arguments in hertz; fftLen from
 * 32 to 8192, flags `vornFBankWeightFreq`. Centres are those of the mel scale, rounded, from a logarithm found bit by
 * bit and an exponential of factors 1 + 2^-n and 1 - 2^-n (Q22, no float anywhere); exp(m/melMul) is limited to 512, so
 * that a scale whose melDiv is below 1/511 of highFreq ends early. There is no status for centres behind N/2; a
 * side that rises from bin 0 holds N/2 weights and its last bin, if that is N/2, counts nothing. Evaluation shifts each
 * 64-bit product right by 8, arithmetically, and adds in 64 bits, which wraps; the sum is shifted right by scale
 * (left if negative; a sum of 2^(63+scale) or more becomes 2^63 - 1 then), and dst is this shifted right by 22, with
 * the first bit that drops out rounded up, not above 2^31 - 1; below, the low 32 bits remain.
 *
 * Access. `GetCenters` and `SetCenters` copy the nFilter + 2 edges if c[0] is not negative, c[0] to c[nFilter] do not
 * fall (nothing is asked of them where nFilter is 1) and the last edge is at most N/2; Set makes a bank ready. Where
 * the last edge stands beside c[nFilter] is not asked. `GetCoeffs` and `SetCoeffs` copy the weights of filter filterIdx
 * (from 1), with c counted around it: c[f] - c[f-1] + 1 of the rising side, c[f+1] - c[f] of the falling one behind
 * them, none where that is negative, and no more than N/2 + 1 and N/2. `16s`: Get gives weights times 2^-14, rounded to
 * single; Set takes 16384 times the single, truncated, and -2^31 for what no integer holds and for not-a-numbers.
 * `GetCoeffs` takes nFilter + 1 as well, where a rising side without meaning is read and no falling one.
 *
 * `vornsLinearToMel_32f`: dst = melMul ln(src (1/melDiv) + 1), `vornsMelToLinear_32f`: dst = melDiv (exp(src
 * (1/melMul)) - 1), in double, the reciprocal once, rounded to single; dst may be src. For src from 0 on they are
 * within 0.501 ulp + 3.4e-16 melMul and 0.501 ulp + 1.2e-16 melDiv of the exact value. Special values follow the
 * formula: -infinity at src = -melDiv, not a number below; there are no warnings.
 *
 * `vornsCopyWithPadding_*`: srcLen elements, bit by bit, and zeros behind them up to dstLen; src and dst may overlap.
 *
 * Bits are the same on every processor, whatever the alignment. Bins outside 0 to N/2, which only odd arguments give,
 * are neither read nor weighted.
 *
 * Contexts. `GetSize` reports the bytes that `Init` needs, at any address; such a bank goes with its memory.
 * `InitAlloc` allocates a bank, `Free` releases it. If memory is short the status is `vornStsMemAllocErr`, nothing
 * stays allocated and the bank's pointer is null; only of an empty bank whose record could be had the pointer is set,
 * for `Free` and nothing else. Evaluation only reads the bank, so threads may share it, but with `vornFBankSamples` it
 * works in the bank's memory: then a bank serves one thread at a time.
 *
 * Checks, in this order. `GetSize`: null; size (fftLen or nFilter below 1); flags (`vornStsMelFlagErr`); size (more
 * than an int can say). `Init`, `InitAlloc`: null; size (fftLen, nFilter, sampleFreq or lowFreq not above 0); lowFreq
 * above highFreq or highFreq above half of sampleFreq (`vornStsMelFreqErr`); flags; size (as before). *pOrder is
 * written before anything is allocated. `MelLin`: no null check; size (the same and nLinear not above 0, nLinear above
 * nFilter); lowFreq, highLinFreq, highFreq, half of sampleFreq not in this order (`vornStsMelFreqErr`); flags; size.
 * `Empty`: no null check; size. `32s`, GetSize: null; size (nFilter, fftLen); flags; size (nFilter above N/2). `32s`,
 * Init: null; size (nFilter or highFreq below 1, fftLen); flags; size (sampleFreq outside 1 to 48000, lowFreq below 0);
 * highFreq not above lowFreq or above 24000 (`vornStsMelFreqErr`); melDiv outside 524289 to 268435455, melMul outside
 * 524289 to 1073741823 (`vornStsBadArgErr`); size (nFilter above N/2 + 1: one filter more than GetSize takes).
 * Evaluation: null, the bank's own pointer to its centres included; a bank that is not ready (`vornStsNotInitErr`);
 * `32s`: null; scale outside -31 to 31 (`vornStsBadArgErr`). Access to centres: null; for Get a bank that is not ready;
 * centres that are not allowed (`vornStsNotInitErr`). Access to weights: null; not ready; size (filterIdx below 1 or
 * above nFilter, for Get above nFilter + 1). Scale: null; size (len, melMul or melDiv not above 0). Padding: null; size
 * (a length below 1, dstLen below srcLen). `Free`: null.
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
 * from 1 to lenCep; no factor such as the root of 2/lenDCT. The `_C0` and `_MulC0` forms put coefficient zero last:
 * dst[lenCep] = lifter[0] times the sum of x. dst has lenCep elements, one more with coefficient zero. lenCep is at
 * most lenDCT. The integer forms take each input as a single, which rounds 32-bit integers in the caller's mode, and
 * make each coefficient an integer as `vornsConvert_32f16s_Sfs` does: times 2^-scale, rounded to nearest, saturated.
 *
 * Table. cos[i][j-1] = cos((j - 0.5) (i pi) / lenDCT) in double, rounded to single; row 0 is all ones.
 *
 * Weights. The raised sine: lifter[i] = w val in single, with w = sin(i pi / L) (L 0.5) + 1.0 in double, rounded to
 * single, and L = nLifter. i is not limited by L: beyond it the sine and with it the weight go negative. The `_C0`
 * forms take val0 for lifter[0]. The `_Mul` forms have the caller's lenCep weights: lifter[i] = pLifter[i-1]; in the
 * `_MulC0` forms coefficient zero shares the weight of the last one, lifter[0] = pLifter[lenCep-1]. The weights are
 * singles, with one exception: those of `vornsDCTLifterInit_MulC0_16s` are 32-bit integers, which it rounds to singles.
 * Its allocating twin takes singles.
 *
 * Contexts. `GetSize` tells the bytes of a block in which `Init` makes a context: with E = lenDCT rounded up to a
 * multiple of 8, 4 ((lenCep + 1) E + 7) + 12 lenCep + 108 for `_32f` and 4 ((lenCep + 1) E + 7) + 16 lenCep + 152 for
 * `_16s`, and 8 lenCep + 144 + (lenCep + 1) (4 lenDCT + 40) for `_MulC0_16s`. The block may begin at any address; the
 * context stands at its start, belongs to that address, needs no release, and must not go to `Free`. `InitAlloc`
 * allocates a context, `Free` releases it. If memory is short the status is `vornStsMemAllocErr`, nothing stays
 * allocated and *ppState is null. Contexts are the same in every rounding mode.
 *
 * Threads. A context is only read and may be shared, but for those of `_16s`: each call writes its sums there, so one
 * serves one thread at a time.
 *
 * Exactness. The table is what the double formula gives with the library's own sine and cosine, rounded once: the same
 * bits on every processor. Each sum is in single: rows 1 to lenCep in rounds of four with one accumulator of four lanes
 * a row (lane l takes the elements l, l + 4, ...), added as (lane 0 + lane 1) + (lane 2 + lane 3); the rows that are
 * left, and coefficient zero, with two accumulators for the first and the last four of each eight elements, which are
 * added lane by lane first. Alignment changes nothing. src and dst must not overlap.
 *
 * Checks, in this order. `GetSize`: null, size (lenDCT or lenCep below 1, lenDCT below lenCep; also a size that an int
 * cannot hold, and in `_MulC0_16s` lenDCT above 8192). `Init` and `InitAlloc`: null (pState or ppState, pLifter), size
 * (lenDCT, lenCep or nLifter below 1, lenDCT below lenCep; in `Init` also a context whose bytes an int cannot hold).
 * The transforms and `Free`: null.
 * @{
 */

/** The cosines and weights of a DCT lifter. */
typedef struct VornDCTLifterState_32f VornDCTLifterState_32f;
/** The same for integers, with room for the coefficients as singles. */
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
 *   the matrix. From W = 3 on this is not the repetition of the streaming forms.
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
 *
 * With p = order, dst[0..p-1] receives
 * - from `vornsDurbin` and `vornsLinearPrediction_Auto` the error filter 1 + a(1) z^-1 + ... + a(p) z^-p, a(k) in
 *   dst[k-1]: the prediction of x(n) is minus the sum of a(k) x(n-k);
 * - from `vornsLinearPredictionNeg_Auto` and `vornsLinearPrediction_Cov` the predictor: the sum of dst[k-1] x(n-k);
 * - from `vornsSchur` the reflection coefficients k(1..p), k(i) being the last coefficient of the error filter of
 *   order i.
 *
 * **Durbin's recursion** (Levinson 1947; Durbin 1960) on autocorrelations src = r(0..p), p + 1 of them. E = r(0). For
 * i from 1 to p: acc = r(i), then plus r(i-j) a(j) for j = 1, 2 ... i-1, in this order; k = acc / E; E becomes E (1 -
 * k k); a(j) becomes a(j) - a(i-j) k for all j below i at once; a(i) = 0 - k. *pErr receives E, the energy of the
 * prediction error, which does not grow with the order. Where E is not above 0, at the start or after a round, a
 * not-a-number included, the status is `vornStsDurbinErr`: so for silence, for autocorrelations of no signal, or where
 * rounding has used up what a nearly predictable frame leaves. dst then holds the coefficients of the rounds
 * completed, which are none if the first one fails; the elements behind them and *pErr are untouched. There is no
 * other test.
 *
 * **Schur's recursion** (Schur 1917; Le Roux and Gueguen 1977) on the same src. h(1) = r(0); h(i+1) = r(i) and g(i) =
 * r(i). For i from 1 to p: k(i) = (0 - g(i)) / h(i); for all j above i at once, g(j) becomes k(i) h(j) + g(j) and h(j)
 * becomes k(i) g(j-1) + h(j-1). *pErr = g(p) k(p) + h(p). Nothing is tested: a zero h gives infinities or
 * not-a-numbers, with `vornStsNoErr`.
 *
 * **Autocorrelation method**, of len samples: `vornsAutoCorr_32f` for p + 1 lags, then Durbin's recursion, whose
 * status is returned; order may be len. `vornsLinearPredictionNeg_Auto_32f` gives 0.0 minus each of the p elements of
 * dst, after a failure of the recursion too: that negates what was completed and what the caller had behind it.
 *
 * **Covariance method.** psi(k) = the sum over t from 0 to len-k-1 of x(t) x(t+k), in single; T(i,j), j up to i, = the
 * sum over t from 0 to len-i-1 of x(t) x(t+i-j), in double, rounded to single at the end. A sum without terms is 0. T
 * is taken as L D L' with the unit lower triangle L, row by row, and the predictor a solves the system with psi:
 * - for i from 1 to p: for j from 1 to i-1, L(i,j) = (T(i,j) - the sum over m below j of w(m) P(m)) / D(j) and w(j) =
 *   L(i,j) D(j); then D(i) = T(i,i) - the sum over m below i of w(m) L(i,m). P is L below its diagonal, packed by rows
 *   from its very start: L(2,1), L(3,1), L(3,2), L(4,1) and so on, where exact factors would have row j of L. Up to
 *   order 3 these are the same; from order 4 on the factors, and with them the predictor, differ from those of T;
 * - y(i) = psi(i) - the sum over m below i of L(i,m) y(m);
 * - a(p) = y(p) / D(p); a(i) = y(i) / D(i) - the sum over m above i of L(m,i) a(m).
 *
 * In single but for T; all sums start from 0 and go by rising t or m, that of a(i) alone by falling m. Nothing is
 * tested: a zero D gives infinities, 0 / 0 not-a-numbers, with `vornStsNoErr`; so for silence.
 *
 * **16 bits.** The `16s_Sfs` forms convert src to single, work as above and store 2^-scale times the singles, rounded
 * to the nearest integer, ties to even, whatever the caller's mode, and saturated; not-a-numbers store 32767. *pErr is
 * that of the singles, without a scale. A coefficient above 1 keeps a fraction only with a negative scale, -12 for
 * instance. On `vornStsDurbinErr` nothing is stored, also not by the Neg form.
 *
 * Exactness. Every operation is rounded by itself, in single where nothing else is said, in the caller's mode, and the
 * bits are the same on every processor. The filter that `vornsDurbin_32f` finds of the autocorrelations of a signal, up
 * to order 32, satisfies each normal equation, r(i) plus the sum of r(|i-j|) a(j) = 0, to 6e-8 p r(0) (1 + the sum of
 * |a(j)|).
 *
 * dst may overlap src. Scratch is taken from memory by the Durbin forms from order 64 on, by the Schur forms from order
 * 1024, by the Auto forms from order 63 and their 16-bit forms from len 64 on, by the Cov forms always.
 *
 * Checks, in this order. `vornsDurbin`, `vornsSchur`: src or dst null (`vornStsNullPtrErr`); order below 1
 * (`vornStsSizeErr`); pErr null. `vornsLinearPrediction`: src or dst null; len or order below 1 or order above len
 * (`vornStsSizeErr`). Then `vornStsMemAllocErr` where memory is short, or an int cannot count the scratch; dst is
 * untouched.
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
 *
 * A filter of order n is given by a(1) to a(n) of the error filter 1 + a(1) z^-1 + ... + a(n) z^-n, as
 * @ref vornsr_linear_prediction makes them; element i of an array holds coefficient i + 1. Line spectra of odd order
 * alone take and give the predictor, -a. All arithmetic is in single, in the order that is written here, in the
 * caller's rounding mode; with it the bits of every result are fixed. Alignment changes nothing. dst may be src,
 * except in `vornsLPToCepstrum_32f` and `vornsCepstrumToLP_32f`, where they must not overlap; `vornsLPToSpectrum_*`
 * may work in place where 2^order results fit.
 *
 * **Cepstrum** (that of 1/A, without c(0); Atal 1974). For i from 0 to n - 1, dst[i] = 0 - (acc / (i + 1) + src[i]),
 * a true division, where acc is the sum, for j from 0 to i - 1 in this order, of ((i - j) src[j]) dst[i-1-j] in
 * `vornsLPToCepstrum_*`, and of ((i - j) src[i-1-j]) dst[j] in `vornsCepstrumToLP_*`: the index of the cepstrum
 * multiplies first.
 *
 * **Reflection coefficients** (Makhoul 1975), k(i) = -a(i) of the filter of order i.
 * - `vornsLPToReflection_*`: with w = src, for m from n - 1 down to 0: k = 0 - w[m] and d = 1 / (1 - k k); dst[m] =
 *   k; then all w[i] below m become (w[m-1-i] k + w[i]) d. A k of exactly 1 or -1, or not a number, ends it before
 *   dst[m] is written with `vornStsUnstableErr`: dst holds the coefficients above m, and the elements from m down are
 *   as they were. Any other magnitude above one passes.
 * - `vornsReflectionToLP_*`: with w empty, for i from 0 to n - 1: all w[j] below i become w[j] - w[i-1-j] src[i], and
 *   w[i] = 0 - src[i]; dst = w. Every filter passes.
 * There and back, coefficients below 0.5 in magnitude return within 1e-4 up to order 22.
 *
 * **Line spectral frequencies**, as cosines x of the angle, from near 1 down to near -1: roots of P and Q in turn, P
 * first (Itakura 1975; Kabal and Ramachandran 1986). With p[0] = q[0] = 1, and nP and nQ half the order, rounded up and
 * down:
 * - even order, for i from 0 to nP - 1: p[i+1] = (src[i] - p[i]) + src[order-1-i], q[i+1] = (src[i] + q[i]) -
 *   src[order-1-i];
 * - odd order: q[1] = src[order-1] - src[0], q[i] = (q[i-2] + src[order-i]) - src[i-1] for i from 2 to nQ; p[i] =
 *   (0 - src[i-1]) - src[order-i] for i from 1 to nP - 1, and p[nP] = -2 src[nP-1].
 *
 * A polynomial c[0..m] has at x the value (c[1] + x) + x for m = 1, and 0 for m = 0; else, from b2 = 1, b1 = c[1] +
 * 2x and for k from 2 to m - 1: t = 2x b1 - b2, b2 = b1, b1 = t + c[k], the value (c[m] / 2 - b2) + b1 x.
 * - `vornsLPToLSP_*` goes down a grid: with g = 2 / nGrid, points 4m to 4m + 3 are b - g, b - 2g, b - 3g, b - 4g, b
 *   being 1 + g at first and then the last point of the four before; point nGrid is -1. From xa = point 0 on, where
 *   the product of the active polynomial's values fa at xa and fb at xb, the next point, is above 0, xa goes on to
 *   xb. Otherwise (an exact zero, an underflow or a not-a-number too) a root lies in between. Behind point i it is
 *   refined, where nGrid is at least 4 and i below nGrid - 5, in half as many rounds as nDiv says, rounded up, with
 *   s = g/4, g/16, ...: of xa - s, xa - 2s, xa - 3s the first whose value times the one before it is not above 0
 *   becomes xb, the one before it (or the third) xa; elsewhere by nDiv bisections: mid = (xb + xa) / 2 becomes xb if
 *   the product of its value and fb is above 0, else xa. Then root = xb - (fb (xa - xb)) / (fa - fb) is stored, the
 *   other polynomial becomes active at xa = root, and the same next point is tried again. It ends with order roots or
 *   at the end of the grid: *pNRoots says how many there are, `vornStsNoRootErr` that there are too few (an unstable
 *   filter, or lines closer than the grid); the rest of dst is left alone. Coefficients that are not numbers give roots
 *   that are not. Time grows with nGrid; memory is taken above order 254 alone.
 * - `vornsLSPToLP_*`: P from x = src[0], src[2], ... and Q from src[1], src[3], ...: c[0] = 1, c[1] = -2 x of the
 *   first; the m-th one, with g = -2 x, makes c[m] = g c[m-1] + 2 c[m-2], c[j] = (g c[j-1] + c[j]) + c[j-2] for j
 *   from m - 1 down to 2, and c[1] = c[1] + g. Even order: for i from nP down to 1, p[i] = p[i] + p[i-1] and
 *   q[i] = q[i] - q[i-1]; dst[i-1] = (p[i] + q[i]) / 2, dst[order-i] = (p[i] - q[i]) / 2. Odd order, for i up to nQ,
 *   from the left: dst[i-1] = -(p[i] + q[i] - q[i-2]) / 2, dst[order-i] = -(p[i] - q[i] + q[i-2]) / 2, without q[i-2]
 *   where i is 1, and with it before q[i] in the second where i is 2; dst[nP-1] = -p[nP] / 2.
 * Of lines that are spread over all frequencies, up to order 20, a grid of 128 steps with 4 divisions finds each within
 * 1e-5; coefficients return from them within 1e-5 at order 10, 5e-5 at order 12 and 5e-3 at order 20.
 *
 * **Envelope.** `vornsLPToSpectrum_*` transforms N = 2^(order+1) singles, 0, src[0..len-1] and zeros
 * (`vornsFFTFwd_RToCCS_32f`, flag 8, hint 2), subtracts val from the real part of bin 0 and of no other, and gives
 * dst[i] = 1 / sqrt(re re + im im) for the first 2^order bins. A magnitude of 0 gives +infinity and the warning
 * `vornStsDivByZero`; all other quotients are those of IEEE, without a warning.
 *
 * **16-bit forms** work through these. In: x 2^scale, in the line spectra x 2^-scaleIn, in the envelope x and val as
 * they are. Out, y 2^-scale or y 2^-scaleOut is stored:
 * - `vornsLPToCepstrum_16s_Sfs`, `vornsLPToReflection_16s_Sfs`, `vornsLPToLSP_16s_Sfs`: 0.5 with the sign of y (+0.5
 *   for both zeros) added in single, truncated, the low 16 bits; 0 for what leaves 32 bits or is not a number;
 * - `vornsReflectionToLP_16s_Sfs`: rounded to nearest in any rounding mode, saturated; -32768 for what leaves 32 bits
 *   on either side or is not a number;
 * - the others: as `vornsConvert_32f16s_Sfs` with `vornRndNear`.
 *
 * Powers of two are those of singles: infinite above 2^127, 0 below 2^-149; a scale of -2147483648 counts as
 * -2147483647. `vornsLPToReflection_16s_Sfs` returns 0 for an unstable filter too, with the elements below the stop
 * left as they were. `vornsLPToLSP_16s_Sfs` clears *pNRoots behind the checks, stores the roots that were found and
 * returns the status.
 *
 * Checks, in this order: null; size (n, order, len, nGrid, nDiv below 1; order above nGrid; in the envelope order
 * below 0, len from 2^(order+1) on). Then:
 * - `vornsLSPToLP_*`: `vornStsLspOrderErr` if src[0] is 1 or above, an element below the next one, or src[order-1]
 *   not above -1; the `16s` form asks the integers, for src[0] above 2^scaleIn and src[order-1] below -(2^scaleIn):
 *   here the limits pass. Equal neighbours pass in both.
 * - `vornsLPToSpectrum_*`: `vornStsFftOrderErr` for an order above 29; later an error of the transform.
 * - `vornStsMemAllocErr`, with nothing written but *pNRoots: in `32f` forms from n = 16 on (reflection coefficients),
 *   above order 254 and above 58 (to and from lines), in the envelope at any order; in `16s` forms above 64
 *   coefficients as well. The cepstrum in `32f` takes no memory.
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
 * @brief Area ratios, their logarithms and running products, and spectral tilts, of the reflection coefficients k of a
 * linear prediction (the ratios of neighbouring sections of a tube, Wakita 1973; their logarithms, Viswanathan and
 * Makhoul 1975).
 *
 * In single precision, element by element, each operation rounded by itself in the caller's mode:
 * - `AR`: (1 - k) / (1 + k).
 * - `LAR`: k limited to -val..val with val between 0 and 1, then the same ratio, then the bits of `vornsLn_32f`. This
 *   is -2 artanh k within 3.01 x 2^-24 and 0.84 units in the last place (of the limited k, to nearest).
 * - `TrueAR`: the running product, y(n) = y(n-1) (1 - k(n)) / (k(n) + 1) from y(-1) = 1 on, the product first. From the
 *   first k of -1 on, each y is an infinity: +infinity if k is within -1 to 1 and the y before is above 0, or if k is
 *   outside and the y before is not at or above 0; -infinity otherwise. A k that is not a number counts as outside. The
 *   first k of 1 there makes its element and all behind it not-a-numbers.
 * - `Tilt`: (|a| - |b|) / (a + b), with a from src1 and b from src2: the sum in the divisor keeps the signs.
 * - `AbsTilt`: (2|a| - s) / s with s = |a| + |b|, where 2|a| may overflow.
 *
 * Integers, the `16s_Sfs` forms. k = src 2^scaleIn in `AR` and `TrueAR`, and src 2^-scaleIn, the opposite, in `LAR`;
 * the tilts take the integers as they are. The result times 2^-scaleOut, or 2^-scale, is made an integer as
 * `vornsConvert_32f16s_Sfs` does: rounded to nearest, in `LAR` truncated, and saturated, 32767 for a not-a-number.
 * Powers of two beyond the singles are 0 or +infinity, and the smallest int counts as opposite to the largest.
 *
 * Warnings. A divisor of zero (k = -1; in `Tilt` b = -a; in `AbsTilt` two zeros) gives +infinity and
 * `vornStsDivByZero`, whatever is divided; `TrueAR` has its own infinities for it and the same status. All other
 * elements are computed. An infinite k gives a not-a-number without a warning (in `LAR` it is limited), and a
 * not-a-number stays one; flags of the processor that were raised before the call mean nothing.
 *
 * dst may be a source; otherwise it must not overlap them. Nothing is allocated. Alignment changes nothing.
 *
 * Checks, in this order: null, size (len below 1), and in `LAR` val, which must be above 0 and below 1
 * (`vornStsRangeErr`).
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
 * @brief Changes of the sampling rate by a sinc under a Kaiser window (Kaiser 1974; Smith and Gossett 1984), at any
 * factor or at a rational one.
 *
 * The variable form (`vornsResamplePolyphase_*`) has one filter, sampled finely, and reads it between its points: the
 * factor, output rate by input rate, is any positive number and may change from call to call. The fixed form
 * (`vornsResamplePolyphaseFixed_*`) has a row of taps for each phase of a ratio in lowest terms; a sample is one dot
 * product. Where the ratio is known, take the fixed form: it is some ten times as fast.
 *
 * Streams. *pTime is the position of the next output in samples from src on, a fraction included; the call moves it on
 * to the first output that it does not make. A call starts at base = trunc(*pTime) and makes all outputs in front of
 * base + len. It reads in front of src and behind it:
 * - variable: src[base - W + 1] to src[base + len - 1 + W], W = ceil(L / (nStep min(factor, 1))), where the filter has
 *   L = trunc(window 0.5 nStep) + 1 points (the product in single);
 * - fixed: src[base - H] to src[base + len - 1 + H], H = 2 trunc((filter len + 3) / 4).
 *
 * dst has room for trunc(len factor) + 2 samples and lies apart from what is read. Blocks of N samples, with that many
 * samples in front of each and behind it (zeros in front of the first and behind the last):
 *
 * @code
 * double time = 0;                  // once, in front of the first block
 * int base = (int)time, made = 0;
 * if (base < N) {                   // else no output falls into this block
 *     vornsResamplePolyphaseFixed_32f(state, src, N - base, dst, 1.0f, &time, &made);
 * }
 * time -= N;                        // src moves by N samples; exact, as are all whole numbers up to the time
 * @endcode
 *
 * So cut, the fixed form gives the bits and the number of samples of one call, for hours: it takes the time to the
 * nearest phase, trunc(out (*pTime - base) + 0.5) (a time down to -0.5/out is 0), so that its outputs never gather
 * roundings (*pTime itself may gain one in each call, which would take centuries to reach half a phase). The variable
 * form adds 1/factor for each output, rounded; the outputs are those of one call bit for bit if src stays and the time
 * goes on, or if the steps are exact in both (such as 3 or 0.625). Otherwise positions differ by at most 2^-53 of the
 * largest time with each output: in blocks of a second at 44100 Hz less than 0.01 of a sample in a day.
 *
 * Design. nStep: points of the filter per input sample; the linear interpolation between them leaves images at -71 dB
 * with 32 points, -95 dB with 128 and -100 dB with 512. window: width of the filter in input samples, or in output
 * samples for factors below 1. len: the fixed form's taps, in input samples; for inRate above outRate multiply by their
 * quotient to keep the slope of the band's edge. rollf: the band's edge (-6 dB) by half the lower rate, above 0 and up
 * to 1. alpha: the window's parameter, from 1 to some 700. At 64 taps, rollf 0.92 and alpha 9 tones up to 0.8 of half
 * the lower rate keep their level within 0.0004 dB, and from 1.03 on they fall below -88.5 dB; docs/numerics.md has
 * more.
 * In double: t(0) = rollf, t(i) = sin(rollf w i) / (i w) I0(alpha sqrt(1 - u u)) / I0(alpha) with w = pi/n, u =
 * i/(L-1); all times 1 / (t(0) + 2 (t(n) + t(2n) + ...)), so that a constant keeps its value. n is nStep, or the larger
 * of the reduced rates, where L reaches just to the outermost tap. Rounding modes do not matter here.
 *
 * The hint 2 (accurate): filters in single also in the `16s` forms, products of the fixed form summed in double. Other
 * hints: `16s` filters in 16 bits (fixed: Q14, to nearest, saturated; variable: 16383 is the largest), sums of the
 * fixed `32f` form in single. The variable `32f` form only keeps it.
 *
 * Samples. norm multiplies all of them.
 * - Variable: with i = trunc(t), f = t - i, the sum of a left part over src[i - k] and a right part over src[i + 1 +
 *   k], each in double in four sums (tap k in sum k mod 4) joined as (0 + 2) + (1 + 3); times norm factor tableNorm
 *   below a factor of 1, else norm tableNorm, in double. The taps are table[q] (1 - r) + table[q+1] r in double, q + r
 *   the position in the table. Factor below 1: p = factor f nStep, on the right (1 - f) factor nStep, growing by factor
 *   nStep while p is below L - 1e-5; q = trunc(p). Otherwise q = trunc(1e-5 + nStep f), nStep (1 - f) on the right,
 *   growing by nStep while below L; r = nStep f - q.
 * - Fixed: position p of the phase s = p mod out takes 2H taps from src[trunc(p/out) + 1 - H] on, phase 0 one more in
 *   front. The dot product is that of @ref vornsDotProd_32f (of @ref vornsDotProd_32f64f where accurate), bit for bit;
 *   `16s` exact in 64 bits or, accurate, of products in single, summed in double in sixteen lanes like
 *   `vornsDotProd_32f64f` and rounded to single. Then times min(out/in, 1) filterNorm norm, in double.
 * - Results: `32f` rounded once, in the caller's mode; `16s`: above 32767.0 is 32767, below -32768.0 is -32768,
 *   otherwise 0.5 is added with the sign and the sum truncated; not-a-numbers give 0.
 *
 * Contexts. The `InitAlloc` forms allocate, `Free` releases (all four are one function). `FixedInit` makes a context in
 * a block of the caller, of the size that `FixedGetSize` reports, at any address, and leaves its rows 0 for
 * `SetFixedFilter`; its rows have pLen = 4 trunc((len + 4) / 4) elements (2H + 4 in allocated contexts), and the last
 * tap of phase 0 counts as 0 where there are but 2H. `16s` rows there are in Q14 whatever the hint. `GetFixedFilter`
 * and `SetFixedFilter` move the first min(step, row) elements of the first height rows (no more than there are); rows
 * of singles behind a `16s` form are converted, times 16384, to nearest and saturated, and back. Such a block holds
 * addresses of its own: do not copy it. A context in use is only read, so threads may share it.
 *
 * Checks, in this order: null (of a Free too); `vornStsSizeErr` for nStep, rates, len, step or height below 1, a factor
 * that is not above 0 or so large that *pTime + 1/factor is *pTime, a *pTime that is no number or from 2^53 on, a block
 * above 0x7FFFFFFE bytes; `vornStsBadArgErr` for a window below 2/nStep (in single) or of more than 0xFFFFFFE points,
 * rollf not above 0 or above 1, alpha below 1 or with an infinite I0, an allocated fixed context of 2^31 bytes;
 * `vornStsMemAllocErr`, but `vornStsNullPtrErr` for the first block of @ref vornsResamplePolyphaseInitAlloc_16s.
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
