/* Vector quantisation: codebooks, their search, and vectors formed from indices. */
#ifndef VORNSR_VQ_H
#define VORNSR_VQ_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_codebooks Codebooks
 * @brief Codewords for vectors of one length, with the structure that makes the nearest codeword quick to find.
 *
 * `vornsCdbkInitAlloc_L2_*(ppCdbk, src, width, step, height, nCluster, hint)` and
 * `vornsCdbkInitAlloc_WgtL2_*(ppCdbk, src, weights, width, step, height, nCluster, hint)` make a codebook of nCluster
 * words out of height training vectors of width elements, step elements apart, in memory of its own, and store it at
 * *ppCdbk. `vornsCdbkFree_*(pCdbk)` gives it back. Nothing is read behind a vector's width elements.
 * - hint 1: each training vector is a word, all of them, whatever nCluster. Words of one or two elements get a grid of
 *   search lists where it pays.
 * - hint 2: a tree of clusters, of which the one with the largest radius is split next;
 * - hint 3: the same, and the one with the most vectors of those that have a radius is split next.
 *
 * `vornsGetCdbkSize_*(pCdbk, pSize)` stores the number of words, `vornsGetCodebook_*(pCdbk, dst, dstStep)` copies them
 * to rows of dst, dstStep elements apart.
 *
 * `vornsCdbkInit_L2_*(pCdbk, src, width, step, height, nCluster, hint)` puts the vectors as they are, with weights of
 * one and without a grid, into a block of the caller's, of so many bytes as `vornsCdbkGetSize_*(width, step, height,
 * nCluster, hint, pSize)` stores: with s = width for the widths 1, 2 and 4, otherwise step rounded up to a multiple of
 * 8, these are 4 (nCluster + width + nCluster s) + 176 (32f) or 2 width + 4 nCluster + 2 nCluster s + 208 (16s). The
 * block may start at any address, must not move, and must not be given to `vornsCdbkFree_*`. nCluster must equal
 * height.
 *
 * Distance: the sum over the elements of (a - b)^2 times the weight, in singles, one term after the other from 0 on;
 * 16-bit elements are widened first. All decisions go through a tolerance, so that rounding alone decides nothing: a
 * candidate replaces the best so far only if 1.000001 times its distance, in double, is below the best's, the best
 * starting at 3.4028235e38; so the first of near-equals stays. An infinite distance and a not-a-number never qualify.
 *
 * The tree (Linde, Buzo, Gray, IEEE Trans. Communications 28, 1980). The first cluster has all vectors, and their mean
 * as its centre; distances from it that rounding explains (up to 1.000001e-6 times its largest element) count as 0. A
 * cluster's radius is twice its farthest vector's distance. A cluster is split in two: the half of its vectors
 * (rounded down) closest to its centre make a new cluster. Then rounds of k-means follow over all the clusters so far:
 * each centre is the mean of its vectors, summed in their order; each vector goes to the nearest centre, save that no
 * cluster loses its last one. A split ends when the total of the distances (a single, in vector order) changes by at
 * most 0.0001 of itself, or with the twentieth round. Two new clusters with one centre (a distance of at most 1e-6,
 * exactly 0 in 16s) are parted: the one centre moves by s hundredths of half its way to a vector of theirs, s = 1, 2
 * and so on up to 1000, until the vectors' distances from the two centres differ (relatively by 1e-6 a vector, at all
 * in 16s); a vector that has been reached (nearer than 1e-5, exactly 0 in 16s) gives way to the next. Word i is the
 * centre of cluster i as the last round found it, clusters in the order of their making.
 * - 32f: sums in singles, times the reciprocal of the count, as `vornsDivC_32f_I` divides.
 * - 16s: sums and quotients in doubles. The first centre is rounded to singles and then to the nearest integer, the
 *   others at once, ties to even, in every rounding mode. A centre that is moved, or that stands for an inner node, is
 *   truncated towards zero, and saturates.
 *
 * Of n words (n at least 3) each leaf knows its t nearest ones, t = 4 up to 16 words and the smallest t with 2^t at
 * least n above; inner nodes have the mean of their children, weighted by the vectors that each had when it was split
 * or at the end.
 *
 * Grids. For words of one element: the range of the words, times 1.1, is divided into equal cells; each lists the words
 * in it and the nearest one on either side. For more than ten words of two elements: rectangles, each with the words
 * that are nearer to some point of it than any word can be to all of it; a ring around them serves what lies outside.
 * Cells are added, from 4 (by 4) on, as long as that makes the mean list shorter by more than a twentieth. A grid is
 * kept if a list then has no more than height / 10 words (of one element: twice height / cells at most height / 5, and
 * no empty cell). A few values that many words share, and values far from zero beside their range, make none.
 *
 * Time and memory. Growing a tree compares all vectors with all clusters, at most twenty times a split: at most
 * 10 height nCluster^2 distances of width terms each; mostly the rounds settle sooner. 100,000 vectors of 13 elements
 * to 1,024 words took 143 s on one core with registers of sixteen singles, and 16 MiB in all. While it grows,
 * the vectors stand once more in memory as singles, with 20 to 28 bytes a vector beside them (16s: and 12 bytes an
 * element of a word); afterwards a codebook has its words, a centre an inner node, and some 150 + 8 t bytes a word. The
 * search for a grid over 10,000 words took 5 ms (one element) and half a second (two). Every pass ends on any data,
 * infinities and not-a-numbers included.
 *
 * Statuses. `vornStsCdbkSizeReduced`, a warning: the codebook is complete, but has another number of words than was
 * asked for: hint 1 with nCluster below height, or no cluster with a radius was left to split. `vornStsBadArgErr`: two
 * clusters of one centre could not be parted, or all vectors of a cluster are infinitely far from its centre.
 * `vornStsSizeErr`: a cluster of one vector was to be split. `vornStsMemAllocErr`: memory is short, or height rows of
 * words have more elements than an int can say. After an error nothing is stored and all memory is given back.
 *
 * Checks, in this order.
 * - `vornsCdbkGetSize_*`, `vornsCdbkInit_L2_*`: hint 2 or 3 `vornStsCdbkFlagErr`; null; size (width, step, height,
 *   nCluster at least 1, width at most step, nCluster at most 16383 and equal to height; a size beyond an int).
 * - `vornsCdbkInitAlloc_WgtL2_*`: null (src, weights); size (width, step, height, nCluster at least 1, width at most
 *   step, nCluster at most 16383 and at most height); `vornStsBadArgErr` for a weight below zero (zero and a
 *   not-a-number are taken); memory; `vornStsCdbkFlagErr` for any other hint. `vornsCdbkInitAlloc_L2_*` tests width
 *   first of all, and takes memory for width ones before the rest. ppCdbk is not tested.
 * - `vornsGetCdbkSize_*`, `vornsGetCodebook_*`: null; dstStep below 1 or the width of a word `vornStsSizeErr`.
 * - `vornsCdbkFree_*`: null, also for a context without words; a context of another hint `vornStsCdbkModeErr`, and
 *   nothing is freed.
 *
 * Any alignment of the vectors gives the same bits. Calls on separate codebooks may run at once; so may calls that only
 * read one codebook, which those that sort its words do not: they write distances into it.
 * @{
 */

/** A codebook: codewords of singles or of 16-bit integers, and a grid or a tree over them. */
typedef struct VornCdbkState VornCdbkState;

VornStatus vornsCdbkGetSize_32f(int width, int step, int height, int nCluster, int hint, int* pSize);
VornStatus vornsCdbkInit_L2_32f(VornCdbkState* pCdbk, const Vorn32f* src, int width, int step, int height, int nCluster,
                                int hint);
VornStatus vornsCdbkInitAlloc_L2_32f(VornCdbkState** ppCdbk, const Vorn32f* src, int width, int step, int height,
                                     int nCluster, int hint);
VornStatus vornsCdbkInitAlloc_WgtL2_32f(VornCdbkState** ppCdbk, const Vorn32f* src, const Vorn32f* weights, int width,
                                        int step, int height, int nCluster, int hint);
VornStatus vornsCdbkFree_32f(VornCdbkState* pCdbk);
VornStatus vornsGetCdbkSize_32f(const VornCdbkState* pCdbk, int* pSize);
VornStatus vornsGetCodebook_32f(const VornCdbkState* pCdbk, Vorn32f* dst, int dstStep);
VornStatus vornsCdbkGetSize_16s(int width, int step, int height, int nCluster, int hint, int* pSize);
VornStatus vornsCdbkInit_L2_16s(VornCdbkState* pCdbk, const Vorn16s* src, int width, int step, int height, int nCluster,
                                int hint);
VornStatus vornsCdbkInitAlloc_L2_16s(VornCdbkState** ppCdbk, const Vorn16s* src, int width, int step, int height,
                                     int nCluster, int hint);
VornStatus vornsCdbkInitAlloc_WgtL2_16s(VornCdbkState** ppCdbk, const Vorn16s* src, const Vorn16s* weights, int width,
                                        int step, int height, int nCluster, int hint);
VornStatus vornsCdbkFree_16s(VornCdbkState* pCdbk);
VornStatus vornsGetCdbkSize_16s(const VornCdbkState* pCdbk, int* pSize);
VornStatus vornsGetCodebook_16s(const VornCdbkState* pCdbk, Vorn16s* dst, int dstStep);
/** @} */

/**
 * @defgroup vornsr_quantisation Quantisation of vectors
 * @brief The nearest codeword of each vector, by one codebook or by one for each part of the vector, and the nearest
 * ones of a vector in order (Linde, Buzo and Gray 1980; split vector quantisation: Paliwal and Atal 1993).
 *
 * Distances are squared and weighted, D = the sum over i of ((x[i] - word[i]) (x[i] - word[i])) w[i], in single and in
 * the order of the elements, with the weights w of the codebook; 16-bit elements become singles first. A word takes the
 * place of the best so far only if its D times 1.000001 (in double) is below, the best starting at 3.4028235e38: the
 * first of near-equals stays. Where no word qualifies (not-a-numbers, infinite distances, a cell of a grid without
 * candidates) the index is -1 and D counts as 3.4028235e38. Distances that are handed out are roots of D, taken in
 * double and rounded to single; in the `16s32s` forms times 2^-scaleFactor, as `vornsConvert_32f32s_Sfs` does in mode
 * `vornRndNear`.
 *
 * **Blocks.** `vornsVQ_*(src, srcStep, dstIndex, height, pCdbk)` and `vornsVQDist_*` with dstDist as well: the word of
 * each row of src. What is searched follows from the codebook:
 * - hint 1: all words in rising index or, where the codebook has a grid, those that the cell of the vector lists. A
 *   quotient below the grid, or not a number, takes the entry before the first cell, one beyond it that behind the
 *   last; in the `16s` forms 0.001 is added to a quotient. Where its cells hold all words, a grid names
 *   every one that can be the nearest. Where all values have one sign it may end before the last words: then vectors at
 *   its border and beyond may get another word than by the scan;
 * - hints 2 and 3: from the root, the grandchildren decide on the way: left if one of the left two is nearer (times
 *   1.000001) than both right ones, else right; a child without children stands for both of its places. Behind it the
 *   walk: the first near leaf of the present one that is clearly nearer (times 1.000001, and not within 0.0001 of it)
 *   becomes the present one, until there is none. It may end at a word that is near, but not the nearest;
 *   docs/numerics.md says how often. If the weights are not all 1, the scores of `vornsLogGauss_32f_D2L` or
 *   `vornsLogGauss_16s32s_D2LSfs` (the first leaf's: of the functions for one frame) with inverse variances w take the
 *   place of distances, with the rules turned round: larger is nearer; the way is left if both right scores, times
 *   1.000001, are below one of the left ones. The scale factor of the integer scores is the whole part of
 *   log2(vector length), plus 1. The distance that is handed out is D of the word.
 *
 * **Streams.** `vornsSplitVQ_*(src, srcStep, dst, dstStep, height, ppCdbks, nStream)`: the parts of a row, one behind
 * the other, each as long as the vectors of its codebook; dst[r dstStep + s] receives the low bits of the index of
 * stream s. In the `1u` forms each index has as many bits as the largest of its codebook needs, the most significant
 * one first; bit 0 is the top bit of the first byte, row r begins at bit r dstBitStep, streams follow without a gap and
 * all other bits of the dstBitStep height bits, rounded up to bytes, become 0. `vornsFormVectorVQ_*` is the way back.
 *
 * **In order.** `vornsVQSingle_Sort_*`, `vornsVQDistSingle_Sort_*`: the count nearest words of one vector, all words
 * being scanned whatever the hint: ascending in D; those within a relative 1e-06 of the one before count as equal to it
 * and follow in rising index, with its distance; none twice. Infinite distances never qualify: -1.
 * `vornsVQSingle_Thresh_*`, `vornsVQDistSingle_Thresh_*`: the words in this order as long as D is at most
 * ((d d) val) val times 1.000001 (in single in the `16s` forms, otherwise that product in double), where d is the root
 * that `vornsVQDist_*` finds; *pCount receives how many. dstIndex and dstDist need room for all words.
 * `vornsVQDistSingle_Thresh_16s32s_Sfs` keeps of these only the words whose scaled distance is at most the scaled d
 * times val, truncated. All of them work in the codebook's own room for distances: one thread at a time. The blocks and
 * streams only read the codebook.
 *
 * A codebook must be of the elements' type. One of a hint that is none of the three is passed over, save by `Sort`:
 * nothing is written for it, the status is `vornStsNoErr`, and *pCount is 0; 0, too, for a val that is not a number.
 *
 * Checks, in this order. Blocks: null; size (srcStep or height below 1, srcStep below the vector length: a size error
 * here). Streams: null; size (a step, height or nStream below 1); size (nStream above dstStep, not in the `1u` forms);
 * null for a codebook; size (the vectors of a row longer than srcStep); in the `1u` forms, size (the indices of a row
 * longer than dstBitStep). `Sort`: null; size (count below 1 or above the number of words). `Thresh`: null;
 * `vornStsBadArgErr` for val below 1. Then `vornStsMemAllocErr`, of 16-bit vectors of more than 128 elements alone.
 * @{
 */
VornStatus vornsVQ_32f(const Vorn32f* src, int srcStep, Vorn32s* dstIndex, int height, const VornCdbkState* pCdbk);
VornStatus vornsVQ_16s(const Vorn16s* src, int srcStep, Vorn32s* dstIndex, int height, const VornCdbkState* pCdbk);
VornStatus vornsVQDist_32f(const Vorn32f* src, int srcStep, Vorn32s* dstIndex, Vorn32f* dstDist, int height,
                           const VornCdbkState* pCdbk);
VornStatus vornsVQDist_16s32s_Sfs(const Vorn16s* src, int srcStep, Vorn32s* dstIndex, Vorn32s* dstDist, int height,
                                  const VornCdbkState* pCdbk, int scaleFactor);
VornStatus vornsSplitVQ_32f16s(const Vorn32f* src, int srcStep, Vorn16s* dst, int dstStep, int height,
                               const VornCdbkState* const* ppCdbks, int nStream);
VornStatus vornsSplitVQ_32f8u(const Vorn32f* src, int srcStep, Vorn8u* dst, int dstStep, int height,
                              const VornCdbkState* const* ppCdbks, int nStream);
VornStatus vornsSplitVQ_16s16s(const Vorn16s* src, int srcStep, Vorn16s* dst, int dstStep, int height,
                               const VornCdbkState* const* ppCdbks, int nStream);
VornStatus vornsSplitVQ_16s8u(const Vorn16s* src, int srcStep, Vorn8u* dst, int dstStep, int height,
                              const VornCdbkState* const* ppCdbks, int nStream);
VornStatus vornsSplitVQ_32f1u(const Vorn32f* src, int srcStep, Vorn8u* dst, int dstBitStep, int height,
                              const VornCdbkState* const* ppCdbks, int nStream);
VornStatus vornsSplitVQ_16s1u(const Vorn16s* src, int srcStep, Vorn8u* dst, int dstBitStep, int height,
                              const VornCdbkState* const* ppCdbks, int nStream);
VornStatus vornsVQSingle_Sort_32f(const Vorn32f* src, Vorn32s* dstIndex, VornCdbkState* pCdbk, int count);
VornStatus vornsVQSingle_Sort_16s(const Vorn16s* src, Vorn32s* dstIndex, VornCdbkState* pCdbk, int count);
VornStatus vornsVQDistSingle_Sort_32f(const Vorn32f* src, Vorn32s* dstIndex, Vorn32f* dstDist, VornCdbkState* pCdbk,
                                      int count);
VornStatus vornsVQDistSingle_Sort_16s32s_Sfs(const Vorn16s* src, Vorn32s* dstIndex, Vorn32s* dstDist,
                                             VornCdbkState* pCdbk, int count, int scaleFactor);
VornStatus vornsVQSingle_Thresh_32f(const Vorn32f* src, Vorn32s* dstIndex, VornCdbkState* pCdbk, int* pCount,
                                    Vorn32f val);
VornStatus vornsVQSingle_Thresh_16s(const Vorn16s* src, Vorn32s* dstIndex, VornCdbkState* pCdbk, int* pCount,
                                    Vorn32f val);
VornStatus vornsVQDistSingle_Thresh_32f(const Vorn32f* src, Vorn32s* dstIndex, Vorn32f* dstDist, VornCdbkState* pCdbk,
                                        int* pCount, Vorn32f val);
VornStatus vornsVQDistSingle_Thresh_16s32s_Sfs(const Vorn16s* src, Vorn32s* dstIndex, Vorn32s* dstDist,
                                               VornCdbkState* pCdbk, int* pCount, int scaleFactor, Vorn32f val);
/** @} */

/**
 * @defgroup vornsr_forming Vectors from indices
 * @brief The way back from indices to vectors: rows put together from the words of codebooks or from entries of tables
 * (split vector quantisation: Paliwal and Atal 1993).
 *
 * In the names, the first code is the type of the indices (`8u`, `16s`, or `1u`: a stream of bits) and the second that
 * of the elements.
 *
 * **From codebooks.** `vornsFormVectorVQ_*(src, srcStep, dst, dstStep, height, ppCdbks, nStream)` undoes
 * `vornsSplitVQ_*`: row r of dst is, for the streams s = 0 to nStream - 1 side by side, the word of ppCdbks[s] whose
 * index stands at src[r srcStep + s]. Rows of dst begin dstStep elements apart. In the `1u` forms the index of stream s
 * has as many bits as the largest index of its codebook needs, the most significant one first; bit 0 of the stream is
 * the top bit of its first byte, row r begins at bit r srcBitStep, and the streams follow without a gap. Every codebook
 * must be one of the elements' type. An index that its codebook does not have is no error and forms zeros.
 *
 * **From tables.** `vornsFormVector_2i_*` and `_4i_*(srcIndex, tables, sizes, dst, len)`: pieces of two, of four
 * elements, dst[2g + j] = tables[g][2 srcIndex[g] + j] for g below len/2 (likewise with 4). What of len fills no piece
 * is left out: it is neither checked nor written. `vornsFormVector_*(srcIndex, tables, sizes, lens, strides, nStream,
 * dst)`: lens[s] elements from tables[s] + srcIndex[s] strides[s], for one stream s behind the other. An index must not
 * be negative and must be below sizes[g]; `vornsFormVector_2i_16s32f` alone also takes an index of sizes[g], so that
 * its tables must have an entry more. Every index is checked before anything is stored.
 *
 * Copies of bits; alignment changes nothing. src and dst must not overlap.
 *
 * Checks, in this order. From codebooks: null; size (nStream, a step or height below 1); size (nStream above srcStep,
 * not in the `1u` forms); stream by stream, null for a codebook and, in the `8u` forms, size for one of more than 256
 * words; size (the words of a row longer than dstStep); in the `1u` forms, size (the indices of a row longer than
 * srcBitStep). From tables: null; size (len or nStream below 1); size (lens[s] or strides[s] below 1, an index out of
 * range).
 * @{
 */
VornStatus vornsFormVectorVQ_16s32f(const Vorn16s* src, int srcStep, Vorn32f* dst, int dstStep, int height,
                                    const VornCdbkState* const* ppCdbks, int nStream);
VornStatus vornsFormVectorVQ_8u32f(const Vorn8u* src, int srcStep, Vorn32f* dst, int dstStep, int height,
                                   const VornCdbkState* const* ppCdbks, int nStream);
VornStatus vornsFormVectorVQ_16s16s(const Vorn16s* src, int srcStep, Vorn16s* dst, int dstStep, int height,
                                    const VornCdbkState* const* ppCdbks, int nStream);
VornStatus vornsFormVectorVQ_8u16s(const Vorn8u* src, int srcStep, Vorn16s* dst, int dstStep, int height,
                                   const VornCdbkState* const* ppCdbks, int nStream);
VornStatus vornsFormVectorVQ_1u32f(const Vorn8u* src, int srcBitStep, Vorn32f* dst, int dstStep, int height,
                                   const VornCdbkState* const* ppCdbks, int nStream);
VornStatus vornsFormVectorVQ_1u16s(const Vorn8u* src, int srcBitStep, Vorn16s* dst, int dstStep, int height,
                                   const VornCdbkState* const* ppCdbks, int nStream);
VornStatus vornsFormVector_2i_8u16s(const Vorn8u* srcIndex, const Vorn16s* const* tables, const int* sizes,
                                    Vorn16s* dst, int len);
VornStatus vornsFormVector_2i_16s16s(const Vorn16s* srcIndex, const Vorn16s* const* tables, const int* sizes,
                                     Vorn16s* dst, int len);
VornStatus vornsFormVector_2i_8u32f(const Vorn8u* srcIndex, const Vorn32f* const* tables, const int* sizes,
                                    Vorn32f* dst, int len);
VornStatus vornsFormVector_2i_16s32f(const Vorn16s* srcIndex, const Vorn32f* const* tables, const int* sizes,
                                     Vorn32f* dst, int len);
VornStatus vornsFormVector_4i_8u16s(const Vorn8u* srcIndex, const Vorn16s* const* tables, const int* sizes,
                                    Vorn16s* dst, int len);
VornStatus vornsFormVector_4i_16s16s(const Vorn16s* srcIndex, const Vorn16s* const* tables, const int* sizes,
                                     Vorn16s* dst, int len);
VornStatus vornsFormVector_4i_8u32f(const Vorn8u* srcIndex, const Vorn32f* const* tables, const int* sizes,
                                    Vorn32f* dst, int len);
VornStatus vornsFormVector_4i_16s32f(const Vorn16s* srcIndex, const Vorn32f* const* tables, const int* sizes,
                                     Vorn32f* dst, int len);
VornStatus vornsFormVector_8u16s(const Vorn8u* srcIndex, const Vorn16s* const* tables, const int* sizes,
                                 const int* lens, const int* strides, int nStream, Vorn16s* dst);
VornStatus vornsFormVector_16s16s(const Vorn16s* srcIndex, const Vorn16s* const* tables, const int* sizes,
                                  const int* lens, const int* strides, int nStream, Vorn16s* dst);
VornStatus vornsFormVector_8u32f(const Vorn8u* srcIndex, const Vorn32f* const* tables, const int* sizes,
                                 const int* lens, const int* strides, int nStream, Vorn32f* dst);
VornStatus vornsFormVector_16s32f(const Vorn16s* srcIndex, const Vorn32f* const* tables, const int* sizes,
                                  const int* lens, const int* strides, int nStream, Vorn32f* dst);
/** @} */

VORN_END_DECLS

#endif
