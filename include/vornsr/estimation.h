/* Model estimation: column statistics and parameter updates. */
#ifndef VORNSR_ESTIMATION_H
#define VORNSR_ESTIMATION_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup column_statistics Column statistics
 * @{
 */
VornStatus vornsMeanVarColumn_32f_D2(const Vorn32f* src, int height, int srcStep, Vorn32f* dstMean, Vorn32f* dstVar, int width);
VornStatus vornsWeightedMeanVarColumn_32f_D2(const Vorn32f* src, int srcStep, const Vorn32f* weight, int height, Vorn32f* dstMean, Vorn32f* dstVar, int width);
/** @} */

/**
 * @defgroup updates Parameter updates
 * @{
 */
VornStatus vornsUpdateGConst_DirectVar_32f(const Vorn32f* src, int len, Vorn32f* dst);
/** @} */

VORN_END_DECLS

#endif
