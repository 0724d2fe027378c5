// The best score so far: vornsLogGaussMax* (many frames) and vornsLogGaussMaxMultiMix* (many Gaussians).
#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/rounding.h"
#include "scoring/gauss/many_rows/scores.h"
#include "vornsr/scoring.h"

namespace vorn {
namespace {

template <class Vectors, class Val>
VORN_NOINLINE void maxInCurrentMode(const Vectors& vectors, std::ptrdiff_t len, std::ptrdiff_t height, Val val,
                                    Vorn32s* srcDst, Vorn32f scale) {
    scoreRows<ShortSums>(vectors, len, height, End{val, ScaledSum(scale), MaxOfClamped{srcDst}});
}

// The integer maximum of 16-bit data truncates in all of its arithmetic, the conversion of old values and of vals by
// row included: each loses the bits beyond its 24th toward zero.
template <class Vectors, class Val>
VORN_NOINLINE void maxTruncating(const Vectors& vectors, std::ptrdiff_t len, std::ptrdiff_t height, Val val,
                                 Vorn32s* srcDst, int scaleFactor) {
    const Vorn32f scale = scaleOfHalf(scaleFactor);
    const RoundingGuard guard(Rounding::TowardZero);
    maxInCurrentMode(vectors, len, height, val, srcDst, scale);
}

template <class Vectors, class Val>
VORN_NOINLINE void lowMaxInCurrentMode(const Vectors& vectors, std::ptrdiff_t len, std::ptrdiff_t height, Val val,
                                       Vorn32s* srcDst, int scaleFactor) {
    LowIntegerScores{len, scaleFactor}(vectors, height, val, Max{srcDst});
}

// The integer maximum at low precision: with a negative scale factor it works in single, and to nearest whatever the
// caller's mode.
template <class Vectors, class Val>
void lowMax(const Vectors& vectors, std::ptrdiff_t len, std::ptrdiff_t height, Val val, Vorn32s* srcDst,
            int scaleFactor) {
    if (scaleFactor >= 0) return lowMaxInCurrentMode(vectors, len, height, val, srcDst, scaleFactor);
    const RoundingGuard nearest(Rounding::Nearest);
    lowMaxInCurrentMode(vectors, len, height, val, srcDst, scaleFactor);
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VORN_KERNEL void vornsLGaussMax_32f_D2L_M7(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var,
                                           Vorn64s len, Vorn32f* srcDst, Vorn64s height, const Vorn32f* val) {
    FloatScores{len}(frames(Rows(src), mean, var), height, OneVal{*val}, Max{srcDst});
}
VORN_KERNEL_ALIAS(vornsLGaussMax_32f_D2L_M7_Al, vornsLGaussMax_32f_D2L_M7);

VornStatus vornsLogGaussMax_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, const Vorn32f* var, int len,
                                   Vorn32f* srcDst, int height, Vorn32f val) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    FloatScores{len}(frames(Rows(src, step), mean, var), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                    Vorn32f* srcDst, int height, Vorn32f val) {
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    FloatScores{len}(frames(Rows(src), mean, var), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, const Vorn64f* var, int len,
                                   Vorn64f* srcDst, int height, Vorn64f val) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    DoubleScores{len}(frames(Rows(src, step), mean, var), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                    Vorn64f* srcDst, int height, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    DoubleScores{len}(frames(Rows(src), mean, var), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_Scaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                             int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    ScaledScores{len, scaleFactor}(frames(Rows(src, step), mean, var), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_Scaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                              int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    ScaledScores{len, scaleFactor}(frames(Rows(src), mean, var), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var, int len,
                                         Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    maxTruncating(frames(Rows(src, step), mean, var), len, height, OneVal{static_cast<Vorn32f>(val)}, srcDst,
                  scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                          Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    maxTruncating(frames(Rows(src), mean, var), len, height, OneVal{static_cast<Vorn32f>(val)}, srcDst, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_IdVar_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, int len, Vorn32f* srcDst,
                                         int height, Vorn32f val) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    FloatScores{len}(frames(Rows(src, step), mean, UnitVar{}), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_IdVar_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, int len, Vorn32f* srcDst,
                                          int height, Vorn32f val) {
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    FloatScores{len}(frames(Rows(src), mean, UnitVar{}), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_IdVar_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, int len, Vorn64f* srcDst,
                                         int height, Vorn64f val) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    TallDoubleScores{len}(frames(Rows(src, step), mean, UnitVar{}), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_IdVar_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, int len, Vorn64f* srcDst,
                                          int height, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    TallDoubleScores{len}(frames(Rows(src), mean, UnitVar{}), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_IdVarScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                                  Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    ScaledScores{len, scaleFactor}(frames(Rows(src, step), mean, UnitVar{}), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_IdVarScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                   Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    ScaledScores{len, scaleFactor}(frames(Rows(src), mean, UnitVar{}), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_IdVar_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                               Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    maxTruncating(frames(Rows(src, step), mean, UnitVar{}), len, height, OneVal{static_cast<Vorn32f>(val)}, srcDst,
                  scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_IdVar_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    maxTruncating(frames(Rows(src), mean, UnitVar{}), len, height, OneVal{static_cast<Vorn32f>(val)}, srcDst,
                  scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_LowScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                                int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    LowScaledScores{len, scaleFactor}(frames(Rows(src, step), mean, var), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_LowScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                                 int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    LowScaledScores{len, scaleFactor}(frames(Rows(src), mean, var), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_Low_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                             int len, Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    lowMax(frames(Rows(src, step), mean, var), len, height, OneVal{val}, srcDst, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_Low_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                              int len, Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    lowMax(frames(Rows(src), mean, var), len, height, OneVal{val}, srcDst, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_IdVarLow_16s32s_D2Sfs(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                                  Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    LowIntegerScores{len, scaleFactor}(frames(Rows(src, step), mean, UnitVar{}), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_IdVarLow_16s32s_D2LSfs(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                   Vorn32s* srcDst, int height, Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    LowIntegerScores{len, scaleFactor}(frames(Rows(src), mean, UnitVar{}), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_IdVarLowScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                                     Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    LowScaledScores{len, scaleFactor}(frames(Rows(src, step), mean, UnitVar{}), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMax_IdVarLowScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                      Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    LowScaledScores{len, scaleFactor}(frames(Rows(src), mean, UnitVar{}), height, OneVal{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMaxMultiMix_32f_D2(const Vorn32f* mean, const Vorn32f* var, int step, const Vorn32f* src,
                                           int len, const Vorn32f* val, Vorn32f* srcDst, int height) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    FloatScores{len}(gaussians(src, Rows(mean, step), Rows(var, step)), height, ValOfRow{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMaxMultiMix_32f_D2L(const Vorn32f* const* mean, const Vorn32f* const* var, const Vorn32f* src,
                                            int len, const Vorn32f* val, Vorn32f* srcDst, int height) {
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    FloatScores{len}(gaussians(src, Rows(mean), Rows(var)), height, ValOfRow{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMaxMultiMix_64f_D2(const Vorn64f* mean, const Vorn64f* var, int step, const Vorn64f* src,
                                           int len, const Vorn64f* val, Vorn64f* srcDst, int height) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    TallDoubleScores{len}(gaussians(src, Rows(mean, step), Rows(var, step)), height, ValOfRow{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMaxMultiMix_64f_D2L(const Vorn64f* const* mean, const Vorn64f* const* var, const Vorn64f* src,
                                            int len, const Vorn64f* val, Vorn64f* srcDst, int height) {
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    TallDoubleScores{len}(gaussians(src, Rows(mean), Rows(var)), height, ValOfRow{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMaxMultiMix_Scaled_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step,
                                                     const Vorn16s* src, int len, const Vorn32f* val, Vorn32f* srcDst,
                                                     int height, int scaleFactor) {
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    VORN_CHECK(strideHolds(step, len));
    ScaledScores{len, scaleFactor}(gaussians(src, Rows(mean, step), Rows(var, step)), height, ValOfRow{val},
                                   Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMaxMultiMix_Scaled_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                      const Vorn16s* src, int len, const Vorn32f* val, Vorn32f* srcDst,
                                                      int height, int scaleFactor) {
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    ScaledScores{len, scaleFactor}(gaussians(src, Rows(mean), Rows(var)), height, ValOfRow{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMaxMultiMix_16s32s_D2Sfs(const Vorn16s* mean, const Vorn16s* var, int step, const Vorn16s* src,
                                                 int len, const Vorn32s* val, Vorn32s* srcDst, int height,
                                                 int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    maxTruncating(gaussians(src, Rows(mean, step), Rows(var, step)), len, height, ValOfRow{val}, srcDst, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMaxMultiMix_16s32s_D2LSfs(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                  const Vorn16s* src, int len, const Vorn32s* val, Vorn32s* srcDst,
                                                  int height, int scaleFactor) {
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    maxTruncating(gaussians(src, Rows(mean), Rows(var)), len, height, ValOfRow{val}, srcDst, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMaxMultiMix_LowScaled_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step,
                                                        const Vorn16s* src, int len, const Vorn32f* val,
                                                        Vorn32f* srcDst, int height, int scaleFactor) {
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    VORN_CHECK(strideHolds(step, len));
    LowScaledScores{len, scaleFactor}(gaussians(src, Rows(mean, step), Rows(var, step)), height, ValOfRow{val},
                                      Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMaxMultiMix_LowScaled_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                         const Vorn16s* src, int len, const Vorn32f* val,
                                                         Vorn32f* srcDst, int height, int scaleFactor) {
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    LowScaledScores{len, scaleFactor}(gaussians(src, Rows(mean), Rows(var)), height, ValOfRow{val}, Max{srcDst});
    return vornStsNoErr;
}

VornStatus vornsLogGaussMaxMultiMix_Low_16s32s_D2Sfs(const Vorn16s* mean, const Vorn16s* var, int step,
                                                     const Vorn16s* src, int len, const Vorn32s* val, Vorn32s* srcDst,
                                                     int height, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    lowMax(gaussians(src, Rows(mean, step), Rows(var, step)), len, height, ValOfRow{val}, srcDst, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMaxMultiMix_Low_16s32s_D2LSfs(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                      const Vorn16s* src, int len, const Vorn32s* val, Vorn32s* srcDst,
                                                      int height, int scaleFactor) {
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    lowMax(gaussians(src, Rows(mean), Rows(var)), len, height, ValOfRow{val}, srcDst, scaleFactor);
    return vornStsNoErr;
}
