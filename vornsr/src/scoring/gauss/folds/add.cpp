// Scores log-added to what is there: vornsLogGaussAdd* (many frames) and vornsLogGaussAddMultiMix* (many Gaussians).
#include "frame/checks.h"
#include "scoring/gauss/folds/runs.h"
#include "scoring/gauss/many_rows/scores.h"
#include "vornsr/scoring.h"

namespace vorn {
namespace {

// Rows of less than four columns are log-added one by one, by the scalar rule.
template <class Vectors>
void logAddFrames(const Vectors& vectors, std::ptrdiff_t len, std::ptrdiff_t height, Vorn32f val, Vorn32f* srcDst) {
    if (len >= 4) return logAddInRuns<framesOfRun>(FloatScores{len}, vectors, height, OneVal{val}, srcDst);
    Vorn32f scores[framesOfRun];
    forRuns(height, framesOfRun, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
        FloatScores{len}(vectors.from(first), count, OneVal{val}, Store{scores});
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            srcDst[first + i] = logAddConstantLast(scores[i], srcDst[first + i]);
        }
    });
}

// Many Gaussians in double: from a height of 1000 on the scores have another order, and a last odd one is log-added as
// those of a pair are.
template <class Vectors>
void logAddGaussians(const Vectors& vectors, std::ptrdiff_t len, std::ptrdiff_t height, const Vorn64f* val,
                     Vorn64f* srcDst) {
    if (height < tall) return logAddInRuns<gaussiansOfRun>(DoubleScores{len}, vectors, height, ValOfRow{val}, srcDst);
    const std::ptrdiff_t paired = height / 2 * 2;
    logAddInRuns<gaussiansOfRun>(InOrderDoubleScores{len}, vectors, paired, ValOfRow{val}, srcDst);
    if (paired == height) return;
    Vorn64f score[2], old[2] = {srcDst[paired], 0};
    InOrderDoubleScores{len}(vectors.from(paired), 1, ValOfRow{val + paired}, Store{score});
    score[1] = 0;
    vornsLogAddVec_64f_M7(score, old, 2);
    srcDst[paired] = old[0];
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsLogGaussAdd_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, const Vorn32f* var, int len,
                                   Vorn32f* srcDst, int height, Vorn32f val) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    logAddFrames(frames(Rows(src, step), mean, var), len, height, val, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                    Vorn32f* srcDst, int height, Vorn32f val) {
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(FloatScores{len}, frames(Rows(src), mean, var), height, OneVal{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, const Vorn64f* var, int len,
                                   Vorn64f* srcDst, int height, Vorn64f val) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(DoubleScores{len}, frames(Rows(src, step), mean, var), height, OneVal{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                    Vorn64f* srcDst, int height, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(DoubleScores{len}, frames(Rows(src), mean, var), height, OneVal{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_Scaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                             int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(ScaledScores{len, scaleFactor}, frames(Rows(src, step), mean, var), height, OneVal{val},
                              srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_Scaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                              int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(ScaledScores{len, scaleFactor}, frames(Rows(src), mean, var), height, OneVal{val},
                              srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_IdVar_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, int len, Vorn32f* srcDst,
                                         int height, Vorn32f val) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    logAddFrames(frames(Rows(src, step), mean, UnitVar{}), len, height, val, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_IdVar_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, int len, Vorn32f* srcDst,
                                          int height, Vorn32f val) {
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(FloatScores{len}, frames(Rows(src), mean, UnitVar{}), height, OneVal{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_IdVar_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, int len, Vorn64f* srcDst,
                                         int height, Vorn64f val) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(DoubleScores{len}, frames(Rows(src, step), mean, UnitVar{}), height, OneVal{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_IdVar_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, int len, Vorn64f* srcDst,
                                          int height, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(DoubleScores{len}, frames(Rows(src), mean, UnitVar{}), height, OneVal{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_IdVarScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                                  Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(ScaledScores{len, scaleFactor}, frames(Rows(src, step), mean, UnitVar{}), height,
                              OneVal{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_IdVarScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                   Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(ScaledScores{len, scaleFactor}, frames(Rows(src), mean, UnitVar{}), height, OneVal{val},
                              srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_LowScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, const Vorn16s* var,
                                                int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(LowScaledScores{len, scaleFactor}, frames(Rows(src, step), mean, var), height,
                              OneVal{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_LowScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, const Vorn16s* var,
                                                 int len, Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(LowScaledScores{len, scaleFactor}, frames(Rows(src), mean, var), height, OneVal{val},
                              srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_IdVarLowScaled_16s32f_D2(const Vorn16s* src, int step, const Vorn16s* mean, int len,
                                                     Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(LowScaledScores{len, scaleFactor}, frames(Rows(src, step), mean, UnitVar{}), height,
                              OneVal{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAdd_IdVarLowScaled_16s32f_D2L(const Vorn16s* const* src, const Vorn16s* mean, int len,
                                                      Vorn32f* srcDst, int height, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<framesOfRun>(LowScaledScores{len, scaleFactor}, frames(Rows(src), mean, UnitVar{}), height,
                              OneVal{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAddMultiMix_32f_D2(const Vorn32f* mean, const Vorn32f* var, int step, const Vorn32f* src,
                                           int len, const Vorn32f* val, Vorn32f* srcDst, int height) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<gaussiansOfRun>(FloatScores{len}, gaussians(src, Rows(mean, step), Rows(var, step)), height,
                                 ValOfRow{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAddMultiMix_32f_D2L(const Vorn32f* const* mean, const Vorn32f* const* var, const Vorn32f* src,
                                            int len, const Vorn32f* val, Vorn32f* srcDst, int height) {
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<gaussiansOfRun>(FloatScores{len}, gaussians(src, Rows(mean), Rows(var)), height, ValOfRow{val},
                                 srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAddMultiMix_64f_D2(const Vorn64f* mean, const Vorn64f* var, int step, const Vorn64f* src,
                                           int len, const Vorn64f* val, Vorn64f* srcDst, int height) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    logAddGaussians(gaussians(src, Rows(mean, step), Rows(var, step)), len, height, val, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAddMultiMix_64f_D2L(const Vorn64f* const* mean, const Vorn64f* const* var, const Vorn64f* src,
                                            int len, const Vorn64f* val, Vorn64f* srcDst, int height) {
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    logAddGaussians(gaussians(src, Rows(mean), Rows(var)), len, height, val, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAddMultiMix_Scaled_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step,
                                                     const Vorn16s* src, int len, const Vorn32f* val, Vorn32f* srcDst,
                                                     int height, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<gaussiansOfRun>(ScaledScores{len, scaleFactor}, gaussians(src, Rows(mean, step), Rows(var, step)),
                                 height, ValOfRow{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAddMultiMix_Scaled_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                      const Vorn16s* src, int len, const Vorn32f* val, Vorn32f* srcDst,
                                                      int height, int scaleFactor) {
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<gaussiansOfRun>(ScaledScores{len, scaleFactor}, gaussians(src, Rows(mean), Rows(var)), height,
                                 ValOfRow{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAddMultiMix_LowScaled_16s32f_D2(const Vorn16s* mean, const Vorn16s* var, int step,
                                                        const Vorn16s* src, int len, const Vorn32f* val,
                                                        Vorn32f* srcDst, int height, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<gaussiansOfRun>(LowScaledScores{len, scaleFactor}, gaussians(src, Rows(mean, step), Rows(var, step)),
                                 height, ValOfRow{val}, srcDst);
    return vornStsNoErr;
}

VornStatus vornsLogGaussAddMultiMix_LowScaled_16s32f_D2L(const Vorn16s* const* mean, const Vorn16s* const* var,
                                                         const Vorn16s* src, int len, const Vorn32f* val,
                                                         Vorn32f* srcDst, int height, int scaleFactor) {
    VORN_CHECK(notNull(mean, var, src, val, srcDst));
    VORN_CHECK(positive(len, height));
    logAddInRuns<gaussiansOfRun>(LowScaledScores{len, scaleFactor}, gaussians(src, Rows(mean), Rows(var)), height,
                                 ValOfRow{val}, srcDst);
    return vornStsNoErr;
}
