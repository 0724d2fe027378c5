/* Acoustic scoring: log-domain arithmetic, Gaussian and mixture scores. */
#ifndef VORNSR_SCORING_H
#define VORNSR_SCORING_H

#include "types.h"

VORN_BEGIN_DECLS

/**
 * @defgroup logarithm_domain Log-domain arithmetic
 * @{
 */
VornStatus vornsLogAdd_64f(const Vorn64f* src, Vorn64f* srcDst, int len, int hint);
VornStatus vornsLogAdd_32f(const Vorn32f* src, Vorn32f* srcDst, int len);
VornStatus vornsLogAdd_32s_Sfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor);
VornStatus vornsLogAdd_16s_Sfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor);
VornStatus vornsLogSum_64f(const Vorn64f* src, Vorn64f* dst, int len);
VornStatus vornsLogSum_32f(const Vorn32f* src, Vorn32f* dst, int len);
VornStatus vornsLogSum_32s_Sfs(const Vorn32s* src, Vorn32s* dst, int len, int scaleFactor);
VornStatus vornsLogSum_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int len, int scaleFactor);
VornStatus vornsLogSub_64f(const Vorn64f* src, Vorn64f* srcDst, int len);
VornStatus vornsLogSub_32f(const Vorn32f* src, Vorn32f* srcDst, int len);
VornStatus vornsLogSub_32s_Sfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor);
VornStatus vornsLogSub_16s_Sfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor);
/** @} */

/**
 * @defgroup multi_frame Multi-frame Gaussian scores
 * @{
 */
VornStatus vornsLogGaussMultiMix_32f_D2(const Vorn32f* mean, const Vorn32f* var, int step, const Vorn32f* src, int len, Vorn32f* srcDst, int height);
/** @} */

/**
 * @defgroup mixtures Mixtures
 * @{
 */
VornStatus vornsLogGaussMixture_32f_D2(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int height, int step, int len, const Vorn32f* val, Vorn32f* result);
/** @} */

VORN_END_DECLS

#endif
