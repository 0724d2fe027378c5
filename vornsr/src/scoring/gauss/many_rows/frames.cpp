// Many feature vectors against one Gaussian: vornsLogGauss*.
#include "frame/checks.h"
#include "frame/kernel.h"
#include "scoring/gauss/many_rows/scores.h"
#include "vornsr/scoring.h"

using namespace vorn;

VORN_KERNEL void vornsLogGauss_32f_D2_M7(const Vorn32f* src, Vorn64s step, const Vorn32f* mean, const Vorn32f* var,
                                         Vorn64s len, Vorn32f* result, Vorn64s height, const Vorn32f* val) {
    FloatScores{len}(frames(Rows(src, step), mean, var), height, OneVal{*val}, Store{result});
}
VORN_KERNEL_ALIAS(vornsLogGauss_32f_D2_M7_Al, vornsLogGauss_32f_D2_M7);

VORN_KERNEL void vornsLogGauss_32f_D2L_M7(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var,
                                          Vorn64s len, Vorn32f* result, Vorn64s height, const Vorn32f* val) {
    FloatScores{len}(frames(Rows(src), mean, var), height, OneVal{*val}, Store{result});
}
VORN_KERNEL_ALIAS(vornsLogGauss_32f_D2L_M7_Al, vornsLogGauss_32f_D2L_M7);

VORN_KERNEL void vornsLGauss_64f_D2_M7(const Vorn64f* src, Vorn64s step, const Vorn64f* mean, const Vorn64f* var,
                                       Vorn64s len, Vorn64f* result, Vorn64s height, const Vorn64f* val) {
    DoubleScores{len}(frames(Rows(src, step), mean, var), height, OneVal{*val}, Store{result});
}
VORN_KERNEL_ALIAS(vornsLGauss_64f_D2_M7_Al, vornsLGauss_64f_D2_M7);

VORN_KERNEL void vornsLGauss_64f_D2L_M7(const Vorn64f* const* src, const Vorn64f* mean, const Vorn64f* var, Vorn64s len,
                                        Vorn64f* result, Vorn64s height, const Vorn64f* val) {
    DoubleScores{len}(frames(Rows(src), mean, var), height, OneVal{*val}, Store{result});
}
VORN_KERNEL_ALIAS(vornsLGauss_64f_D2L_M7_Al, vornsLGauss_64f_D2L_M7);

VORN_KERNEL void vornsLGauss_16s32s_D2_M7(const Vorn16s* src, Vorn64s step, const Vorn16s* mean, const Vorn16s* var,
                                          Vorn64s len, Vorn32s* result, Vorn64s height, const Vorn32s* val,
                                          int scaleFactor) {
    IntegerScores{len, scaleFactor}(frames(Rows(src, step), mean, var), height, OneVal{*val},
                                    StoreOddRowRounded{result});
}
VORN_KERNEL_ALIAS(vornsLGauss_16s32s_D2_M7_Al, vornsLGauss_16s32s_D2_M7);

VORN_KERNEL void vornsLGauss_16s32s_D2L_M7(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                           Vorn64s len, Vorn32s* result, Vorn64s height, const Vorn32s* val,
                                           int scaleFactor) {
    IntegerScores{len, scaleFactor}(frames(Rows(src), mean, var), height, OneVal{*val}, StoreOddRowRounded{result});
}
VORN_KERNEL_ALIAS(vornsLGauss_16s32s_D2L_M7_Al, vornsLGauss_16s32s_D2L_M7);

// scale is 2^-(scaleFactor + 1).
VORN_KERNEL void vornsLGauss_16s32f_M7(const Vorn16s* src, Vorn64s step, const Vorn16s* mean, const Vorn16s* var,
                                       Vorn64s len, Vorn32f* result, Vorn64s height, const Vorn32f* val,
                                       const Vorn32f* scale) {
    scoreRows<ShortSums>(frames(Rows(src, step), mean, var), len, height,
                         End{OneVal{*val}, ScaledSum(*scale), Store{result}});
}
VORN_KERNEL_ALIAS(vornsLGauss_16s32f_M7_Al, vornsLGauss_16s32f_M7);

VORN_KERNEL void vornsLGauss_16s32f_D2L_M7(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                           Vorn64s len, Vorn32f* result, Vorn64s height, const Vorn32f* val,
                                           const Vorn32f* scale) {
    scoreRows<ShortSums>(frames(Rows(src), mean, var), len, height,
                         End{OneVal{*val}, ScaledSum(*scale), Store{result}});
}
VORN_KERNEL_ALIAS(vornsLGauss_16s32f_D2L_M7_Al, vornsLGauss_16s32f_D2L_M7);

VornStatus vornsLogGauss_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, const Vorn32f* var, int len,
                                Vorn32f* result, int height, Vorn32f val) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    FloatScores{len}(frames(Rows(src, step), mean, var), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                 Vorn32f* result, int height, Vorn32f val) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    FloatScores{len}(frames(Rows(src), mean, var), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, const Vorn64f* var, int len,
                                Vorn64f* result, int height, Vorn64f val) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    DoubleScores{len}(frames(Rows(src, step), mean, var), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                 Vorn64f* result, int height, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    DoubleScores{len}(frames(Rows(src), mean, var), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_IdVar_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, int len, Vorn32f* result,
                                      int height, Vorn32f val) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len, height));
    FloatScores{len}(frames(Rows(src, step), mean, UnitVar{}), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_IdVar_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, int len, Vorn32f* result,
                                       int height, Vorn32f val) {
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len, height));
    FloatScores{len}(frames(Rows(src), mean, UnitVar{}), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_IdVar_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, int len, Vorn64f* result,
                                      int height, Vorn64f val) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len, height));
    DoubleScores{len}(frames(Rows(src, step), mean, UnitVar{}), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_IdVar_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, int len, Vorn64f* result,
                                       int height, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len, height));
    DoubleScores{len}(frames(Rows(src), mean, UnitVar{}), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var, int len,
                                      Vorn32s* result, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    IntegerScores{len, scaleFactor}(frames(Rows(src, step), mean, var), height, OneVal{val},
                                    StoreOddRowRounded{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                       Vorn32s* result, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    IntegerScores{len, scaleFactor}(frames(Rows(src), mean, var), height, OneVal{val}, StoreOddRowRounded{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_Scaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                          int len, Vorn32f* result, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    ScaledScores{len, scaleFactor}(frames(Rows(src, step), mean, var), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_Scaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                           Vorn32f* result, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    ScaledScores{len, scaleFactor}(frames(Rows(src), mean, var), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_IdVar_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, int len, Vorn32s* result,
                                            int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len, height));
    IntegerScores{len, scaleFactor}(frames(Rows(src, step), mean, UnitVar{}), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_IdVar_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, int len, Vorn32s* result,
                                             int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len, height));
    IntegerScores{len, scaleFactor}(frames(Rows(src), mean, UnitVar{}), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_IdVarScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                               Vorn32f* result, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len, height));
    ScaledScores{len, scaleFactor}(frames(Rows(src, step), mean, UnitVar{}), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_IdVarScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                Vorn32f* result, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len, height));
    ScaledScores{len, scaleFactor}(frames(Rows(src), mean, UnitVar{}), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_Low_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                          int len, Vorn32s* result, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    LowIntegerScores{len, scaleFactor}(frames(Rows(src, step), mean, var), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_Low_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                           Vorn32s* result, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    LowIntegerScores{len, scaleFactor}(frames(Rows(src), mean, var), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_LowScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                             int len, Vorn32f* result, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    LowScaledScores{len, scaleFactor}(frames(Rows(src, step), mean, var), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_LowScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                              int len, Vorn32f* result, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    LowScaledScores{len, scaleFactor}(frames(Rows(src), mean, var), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_IdVarLow_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                               Vorn32s* result, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len, height));
    LowIntegerScores{len, scaleFactor}(frames(Rows(src, step), mean, UnitVar{}), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_IdVarLow_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                Vorn32s* result, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len, height));
    LowIntegerScores{len, scaleFactor}(frames(Rows(src), mean, UnitVar{}), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_IdVarLowScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                                  Vorn32f* result, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len, height));
    LowScaledScores{len, scaleFactor}(frames(Rows(src, step), mean, UnitVar{}), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_IdVarLowScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                   Vorn32f* result, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len, height));
    LowScaledScores{len, scaleFactor}(frames(Rows(src), mean, UnitVar{}), height, OneVal{val}, Store{result});
    return vornStsNoErr;
}

VornStatus vornsLogGauss_Low_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var, int len,
                                       Vorn32f* result, int height, Vorn32f val) {
    return vornsLogGauss_LowScaled_16s32f_D2(src, step, mean, var, len, result, height, val, 0);
}

VornStatus vornsLogGauss_Low_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                        Vorn32f* result, int height, Vorn32f val) {
    return vornsLogGauss_LowScaled_16s32f_D2L(src, mean, var, len, result, height, val, 0);
}

VornStatus vornsLogGauss_IdVarLow_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len, Vorn32f* result,
                                            int height, Vorn32f val) {
    return vornsLogGauss_IdVarLowScaled_16s32f_D2(src, step, mean, len, result, height, val, 0);
}

VornStatus vornsLogGauss_IdVarLow_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len, Vorn32f* result,
                                             int height, Vorn32f val) {
    return vornsLogGauss_IdVarLowScaled_16s32f_D2L(src, mean, len, result, height, val, 0);
}
