// One feature vector against many Gaussians: vornsLogGaussMultiMix*.
#include "frame/checks.h"
#include "frame/kernel.h"
#include "scoring/gauss/many_rows/scores.h"
#include "vornsr/scoring.h"

using namespace vorn;

VORN_KERNEL void vornsLogGaussMultiMix_Low_16s32f_D2L_M7(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                         const Vorn16s* src, Vorn64s len, Vorn32f* srcDst,
                                                         Vorn64s height, int scaleFactor) {
    LowScaledScores{len, scaleFactor}(gaussians(src, Rows(mean), Rows(var)), height, ValOfRow{srcDst}, Store{srcDst});
}
VORN_KERNEL_ALIAS(vornsLogGaussMultiMix_Low_16s32f_D2L_M7_Al, vornsLogGaussMultiMix_Low_16s32f_D2L_M7);

VornStatus vornsLogGaussMultiMix_32f_D2(const Vorn32f* mean, const Vorn32f* var, int step, const Vorn32f* src, int len,
                                        Vorn32f* srcDst, int height) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, srcDst));
    VORN_CHECK(positive(len, height));
    FloatScores{len}(gaussians(src, Rows(mean, step), Rows(var, step)), height, ValOfRow{srcDst}, Store{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMultiMix_32f_D2L(const Vorn32f* const* mean, const Vorn32f* const* var, const Vorn32f* src,
                                         int len, Vorn32f* srcDst, int height) {
    VORN_CHECK(notNull(mean, var, src, srcDst));
    VORN_CHECK(positive(len, height));
    FloatScores{len}(gaussians(src, Rows(mean), Rows(var)), height, ValOfRow{srcDst}, Store{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMultiMix_64f_D2(const Vorn64f* mean, const Vorn64f* var, int step, const Vorn64f* src, int len,
                                        Vorn64f* srcDst, int height) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, srcDst));
    VORN_CHECK(positive(len, height));
    TallDoubleScores{len}(gaussians(src, Rows(mean, step), Rows(var, step)), height, ValOfRow{srcDst}, Store{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMultiMix_64f_D2L(const Vorn64f* const* mean, const Vorn64f* const* var, const Vorn64f* src,
                                         int len, Vorn64f* srcDst, int height) {
    VORN_CHECK(notNull(mean, var, src, srcDst));
    VORN_CHECK(positive(len, height));
    TallDoubleScores{len}(gaussians(src, Rows(mean), Rows(var)), height, ValOfRow{srcDst}, Store{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMultiMix_16s32s_D2Sfs(const Vorn16s* mean, const Vorn16s* var, int step, const Vorn16s* src,
                                              int len, Vorn32s* srcDst, int height, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, srcDst));
    VORN_CHECK(positive(len, height));
    IntegerScores{len, scaleFactor}(gaussians(src, Rows(mean, step), Rows(var, step)), height, ValOfRow{srcDst},
                                    StoreOddRowRounded{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMultiMix_16s32s_D2LSfs(const Vorn16s* const* mean, const Vorn16s* const* var,
                                               const Vorn16s* src, int len, Vorn32s* srcDst, int height,
                                               int scaleFactor) {
    VORN_CHECK(notNull(mean, var, src, srcDst));
    VORN_CHECK(positive(len, height));
    IntegerScores{len, scaleFactor}(gaussians(src, Rows(mean), Rows(var)), height, ValOfRow{srcDst}, Store{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMultiMix_Scaled_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step, const Vorn16s* src,
                                                  int len, Vorn32f* srcDst, int height, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, srcDst));
    VORN_CHECK(positive(len, height));
    ScaledScores{len, scaleFactor}(gaussians(src, Rows(mean, step), Rows(var, step)), height, ValOfRow{srcDst},
                                   Store{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMultiMix_Scaled_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                   const Vorn16s* src, int len, Vorn32f* srcDst, int height,
                                                   int scaleFactor) {
    VORN_CHECK(notNull(mean, var, src, srcDst));
    VORN_CHECK(positive(len, height));
    ScaledScores{len, scaleFactor}(gaussians(src, Rows(mean), Rows(var)), height, ValOfRow{srcDst}, Store{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMultiMix_Low_16s32s_D2Sfs(const Vorn16s* mean, const Vorn16s* var, int step, const Vorn16s* src,
                                                  int len, Vorn32s* srcDst, int height, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, srcDst));
    VORN_CHECK(positive(len, height));
    LowIntegerScores{len, scaleFactor}(gaussians(src, Rows(mean, step), Rows(var, step)), height, ValOfRow{srcDst},
                                       Store{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMultiMix_Low_16s32s_D2LSfs(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                   const Vorn16s* src, int len, Vorn32s* srcDst, int height,
                                                   int scaleFactor) {
    VORN_CHECK(notNull(mean, var, src, srcDst));
    VORN_CHECK(positive(len, height));
    LowIntegerScores{len, scaleFactor}(gaussians(src, Rows(mean), Rows(var)), height, ValOfRow{srcDst}, Store{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMultiMix_LowScaled_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step,
                                                     const Vorn16s* src, int len, Vorn32f* srcDst, int height,
                                                     int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, srcDst));
    VORN_CHECK(positive(len, height));
    LowScaledScores{len, scaleFactor}(gaussians(src, Rows(mean, step), Rows(var, step)), height, ValOfRow{srcDst},
                                      Store{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMultiMix_LowScaled_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                      const Vorn16s* src, int len, Vorn32f* srcDst, int height,
                                                      int scaleFactor) {
    VORN_CHECK(notNull(mean, var, src, srcDst));
    VORN_CHECK(positive(len, height));
    LowScaledScores{len, scaleFactor}(gaussians(src, Rows(mean), Rows(var)), height, ValOfRow{srcDst}, Store{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMultiMix_Low_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step, const Vorn16s* src,
                                               int len, Vorn32f* srcDst, int height) {
    return vornsLogGaussMultiMix_LowScaled_16s32f_D2(mean, var, step, src, len, srcDst, height, 0);
}

VornStatus vornsLogGaussMultiMix_Low_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                const Vorn16s* src, int len, Vorn32f* srcDst, int height) {
    return vornsLogGaussMultiMix_LowScaled_16s32f_D2L(mean, var, src, len, srcDst, height, 0);
}
