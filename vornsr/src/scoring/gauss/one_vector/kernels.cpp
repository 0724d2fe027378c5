// Gaussian scores of one vector: the kernels under their names.
#include "scoring/gauss/one_vector/kernels.h"

#include "frame/kernel.h"
#include "scoring/gauss/one_vector/scores.h"

using namespace vorn;

VORN_KERNEL void vornsLGaussSingle_32f_M7(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                          Vorn32f* result, const Vorn32f* val) {
    *result = floatScore(src, mean, var, len, *val);
}

VORN_KERNEL void vornsLGaussSingle_IdVar_32f_M7(const Vorn32f* src, const Vorn32f* mean, int len, Vorn32f* result,
                                                const Vorn32f* val) {
    *result = floatScore(src, mean, UnitVar(), len, *val);
}

VORN_KERNEL void ownvornsLogGaussSingle_IdVar_64f_W7(const Vorn64f* src, const Vorn64f* mean, int len, Vorn64f* result,
                                                     const Vorn64f* val) {
    *result = pairedDoubleScore(src, mean, UnitVar(), len, *val);
}

VORN_KERNEL void ownvornsLogGaussSingle_DirectVar_64f_W7(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var,
                                                         int len, Vorn64f* result, const Vorn64f* val) {
    *result = dividedDoubleScore(src, mean, var, len, *val);
}

VORN_KERNEL void vornsLGaussSingle_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                             Vorn32f* result, const Vorn32f* val, const Vorn32f* scale) {
    *result = fixedScore(src, mean, var, len, *val, *scale);
}

VORN_KERNEL void vornsLGaussSingle_IdVar_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32f* result,
                                                   const Vorn32f* val, const Vorn32f* scale) {
    *result = fixedScore(src, mean, UnitVar(), len, *val, *scale);
}

VORN_KERNEL void vornsLGaussSingle_DirectVarScaled_16s32f_M7(const Vorn16s* src, const Vorn16s* mean,
                                                             const Vorn32f* inverse, int len, Vorn32f* result,
                                                             const Vorn32f* val, const Vorn32f* scale) {
    *result = fixedScore(src, mean, inverse, len, *val, *scale);
}

VORN_KERNEL void vornsLGaussSingle_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                                 Vorn32s* result, Vorn32s val, int scaleFactor) {
    *result = roundedScore(src, mean, var, len, val, scaleFactor);
}

VORN_KERNEL void vornsLGaussSingle_IdVar_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, int len,
                                                       Vorn32s* result, Vorn32s val, int scaleFactor) {
    *result = roundedScore(src, mean, UnitVar(), len, val, scaleFactor);
}

VORN_KERNEL void vornsLGaussSingleLow_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                                Vorn32f* result, const Vorn32f* val, int scaleFactor) {
    *result = lowScore(src, mean, var, len, *val, scaleFactor);
}

VORN_KERNEL void vornsLGaussSingleLow_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var,
                                                    int len, Vorn32s* result, Vorn32s val, int scaleFactor) {
    *result = lowScore(src, mean, var, len, val, scaleFactor);
}

VORN_KERNEL void vornsLGaussSingleLow_IdVar_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, int len,
                                                          Vorn32s* result, Vorn32s val, int scaleFactor) {
    *result = lowScore(src, mean, UnitVar(), len, val, scaleFactor);
}

VORN_KERNEL void vornsLGaussSingle_IdVarLow_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32f* result,
                                                      const Vorn32f* val, int scaleFactor) {
    *result = lowScore(src, mean, UnitVar(), len, *val, scaleFactor);
}

VORN_KERNEL_ALIAS(vornsLGaussSingle_32f_M7_Al, vornsLGaussSingle_32f_M7);
VORN_KERNEL_ALIAS(vornsLGaussSingle_IdVar_32f_M7_Al, vornsLGaussSingle_IdVar_32f_M7);
VORN_KERNEL_ALIAS(ownvornsLogGaussSingle_IdVar_64f_W7Al, ownvornsLogGaussSingle_IdVar_64f_W7);
VORN_KERNEL_ALIAS(ownvornsLogGaussSingle_DirectVar_64f_W7Al, ownvornsLogGaussSingle_DirectVar_64f_W7);
VORN_KERNEL_ALIAS(vornsLGaussSingle_16s32f_M7_Al, vornsLGaussSingle_16s32f_M7);
VORN_KERNEL_ALIAS(vornsLGaussSingle_IdVar_16s32f_M7_Al, vornsLGaussSingle_IdVar_16s32f_M7);
VORN_KERNEL_ALIAS(vornsLGaussSingle_DirectVarScaled_16s32f_M7_Al, vornsLGaussSingle_DirectVarScaled_16s32f_M7);
VORN_KERNEL_ALIAS(vornsLGaussSingle_16s32s_Sfs_M7_Al, vornsLGaussSingle_16s32s_Sfs_M7);
VORN_KERNEL_ALIAS(vornsLGaussSingle_IdVar_16s32s_Sfs_M7_Al, vornsLGaussSingle_IdVar_16s32s_Sfs_M7);
VORN_KERNEL_ALIAS(vornsLGaussSingleLow_16s32f_M7_Al, vornsLGaussSingleLow_16s32f_M7);
VORN_KERNEL_ALIAS(vornsLGaussSingleLow_16s32s_Sfs_M7_Al, vornsLGaussSingleLow_16s32s_Sfs_M7);
VORN_KERNEL_ALIAS(vornsLGaussSingleLow_IdVar_16s32s_Sfs_M7_Al, vornsLGaussSingleLow_IdVar_16s32s_Sfs_M7);
VORN_KERNEL_ALIAS(vornsLGaussSingle_IdVarLow_16s32f_M7_Al, vornsLGaussSingle_IdVarLow_16s32f_M7);
