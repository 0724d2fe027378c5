// Gaussian scores of one vector: each kernel is a sum and what becomes of it.
#include "scoring/gauss_single_kernels.h"

#include "frame/kernel.h"
#include "frame/scale.h"
#include "scoring/gauss_single_sums.h"

using namespace vorn;

namespace {

// x x 2^-k by a power of at least 1: for a positive k a division.
float scaledDown(float x, std::int64_t k) { return k > 0 ? x / powerOfTwo_32f(k) : x * powerOfTwo_32f(-k); }

// In the current rounding mode; out of range, on either side, -2147483648.
Vorn32s rounded(float x) { return firstLane(roundToInt(splat<f32x4>(x))); }
Vorn32s truncated(float x) { return firstLane(truncToInt(splat<f32x4>(x))); }

float fromDoubledVal(float negatedSum, float val) { return 0.5f * (negatedSum + (val + val)); }

Vorn32s roundedScore(float sum, Vorn32s val, int scaleFactor) {
    return rounded(static_cast<float>(val) - scaledDown(sum * 0.5f, scaleFactor));
}

// Low precision with a negative scale factor leaves the integers: val - S x 2^-(scaleFactor + 1).
float lowScoreInSingle(float sum, float val, int scaleFactor) {
    return val - sum * powerOfTwo_32f(-(std::int64_t{scaleFactor} + 1));
}

}  // namespace

VORN_KERNEL void vornsLGaussSingle_32f_M7(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                          Vorn32f* result, const Vorn32f* val) {
    *result = fromDoubledVal(singleSum<Subtracted>(src, mean, var, len), *val);
}

VORN_KERNEL void vornsLGaussSingle_IdVar_32f_M7(const Vorn32f* src, const Vorn32f* mean, int len, Vorn32f* result,
                                                const Vorn32f* val) {
    *result = fromDoubledVal(singleSum<Subtracted>(src, mean, UnitVar(), len), *val);
}

VORN_KERNEL void ownvornsLogGaussSingle_IdVar_64f_W7(const Vorn64f* src, const Vorn64f* mean, int len, Vorn64f* result,
                                                     const Vorn64f* val) {
    *result = *val - pairedDoubleSum(0.0, src, mean, UnitVar(), 0, len) * 0.5;
}

VORN_KERNEL void ownvornsLogGaussSingle_DirectVar_64f_W7(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var,
                                                         int len, Vorn64f* result, const Vorn64f* val) {
    *result = *val - 0.5 * dividedDoubleSum(src, mean, var, len);
}

VORN_KERNEL void vornsLGaussSingle_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                             Vorn32f* result, const Vorn32f* val, const Vorn32f* scale) {
    *result = *val - fixedSum(src, mean, var, len) * *scale;
}

VORN_KERNEL void vornsLGaussSingle_IdVar_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32f* result,
                                                   const Vorn32f* val, const Vorn32f* scale) {
    *result = *val - static_cast<float>(exactSquares(src, mean, len)) * *scale;
}

VORN_KERNEL void vornsLGaussSingle_DirectVarScaled_16s32f_M7(const Vorn16s* src, const Vorn16s* mean,
                                                             const Vorn32f* inverse, int len, Vorn32f* result,
                                                             const Vorn32f* val, const Vorn32f* scale) {
    *result = *val - (fixedSum(src, mean, inverse, len) * 0.5f) * *scale;
}

VORN_KERNEL void vornsLGaussSingle_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                                 Vorn32s* result, Vorn32s val, int scaleFactor) {
    *result = roundedScore(fixedSum(src, mean, var, len), val, scaleFactor);
}

VORN_KERNEL void vornsLGaussSingle_IdVar_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, int len,
                                                       Vorn32s* result, Vorn32s val, int scaleFactor) {
    *result = roundedScore(fixedSum(src, mean, UnitVar(), len), val, scaleFactor);
}

VORN_KERNEL void vornsLGaussSingleLow_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                                Vorn32f* result, const Vorn32f* val, int scaleFactor) {
    *result = scaleFactor < 0 ? lowScoreInSingle(fixedSum(src, mean, var, len), *val, scaleFactor)
                              : static_cast<float>(negatedLowScore(src, mean, var, len, scaleFactor)) + *val;
}

VORN_KERNEL void vornsLGaussSingleLow_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var,
                                                    int len, Vorn32s* result, Vorn32s val, int scaleFactor) {
    *result = scaleFactor < 0
                  ? truncated(lowScoreInSingle(fixedSum(src, mean, var, len), static_cast<float>(val), scaleFactor))
                  : wrapAdd(negatedLowScore(src, mean, var, len, scaleFactor), val);
}

VORN_KERNEL void vornsLGaussSingleLow_IdVar_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, int len,
                                                          Vorn32s* result, Vorn32s val, int scaleFactor) {
    *result = wrapAdd(negatedLowScore(src, mean, UnitVar(), len, scaleFactor), val);
}

VORN_KERNEL void vornsLGaussSingle_IdVarLow_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32f* result,
                                                      const Vorn32f* val, int scaleFactor) {
    *result = *val + scaledDown(negatedPairSquares(src, mean, len), std::int64_t{scaleFactor} + 1);
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
