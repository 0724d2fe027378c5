/* Vector quantisation: codebooks, their search, and vectors formed from indices. */
#ifndef VORNSR_VQ_H
#define VORNSR_VQ_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup vornsr_codebooks Codebooks
 * @brief Codewords for vectors of one length, with the structure that makes the nearest one quick to find.
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
 * @brief The nearest codeword of each vector, by one codebook or by several, and the nearest ones of a vector in order.
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
 * @brief Rows put together from codewords or from entries of tables.
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
