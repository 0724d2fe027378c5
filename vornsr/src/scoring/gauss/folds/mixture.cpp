// One feature vector against a mixture of Gaussians, one number: vornsLogGaussMixture*.
#include "frame/checks.h"
#include "scoring/gauss/folds/runs.h"
#include "scoring/gauss/many_rows/scores.h"
#include "scoring/gauss/one_vector/kernels.h"
#include "vornsr/scoring.h"

namespace vorn {
namespace {

// The log-sum of one member: no runs, each score log-added by the scalar rule in the order of the Gaussians, val
// doubled in the scores.
template <class Vectors>
Vorn32f logSumInOrder(const Vectors& vectors, std::ptrdiff_t len, std::ptrdiff_t height, const Vorn32f* val) {
    Vorn32f scores[gaussiansOfRun];
    Vorn32f sum = 0;
    forRuns(height, gaussiansOfRun, [&](std::ptrdiff_t first, std::ptrdiff_t count) {
        scoreRows<FloatSums>(vectors.from(first), len, count,
                             End{ValOfRow{val + first}, DoubledVal{}, Store{scores + 0}});
        for (std::ptrdiff_t g = 0; g < count; ++g) {
            sum = first + g == 0 ? scores[0] : logAddConstantLast(scores[g], sum);
        }
    });
    return sum;
}

// With the identity covariance each Gaussian is scored by itself, by the kernels of one vector.
template <class Kernel>
struct OneByOne {
    Kernel kernel;

    template <class Vectors, class T>
    void operator()(const Vectors& vectors, std::ptrdiff_t height, ValOfRow<T> val, IntoRun<T> fold) const {
        for (std::ptrdiff_t g = 0; g < height; ++g) {
            T score;
            kernel(vectors.src[g], vectors.mean[g], val.val + g, &score);
            fold.put(RowAlone{g, false}, splat<Four<T>>(score));
        }
    }
};
template <class Kernel>
OneByOne(Kernel) -> OneByOne<Kernel>;

template <class Means>
Vorn32f identityMixture(const Vorn32f* src, Means mean, int height, int len, const Vorn32f* val) {
    const auto kernel = [len](auto* x, auto* m, auto* v, auto* score) {
        vornsLGaussSingle_IdVar_32f_M7(x, m, len, score, v);
    };
    return logSumInRuns(OneByOne{kernel}, gaussians(src, mean, UnitVar{}), height, val);
}
template <class Means>
Vorn64f identityMixture(const Vorn64f* src, Means mean, int height, int len, const Vorn64f* val) {
    const auto kernel = [len](auto* x, auto* m, auto* v, auto* score) {
        ownvornsLogGaussSingle_IdVar_64f_W7(x, m, len, score, v);
    };
    return logSumInRuns(OneByOne{kernel}, gaussians(src, mean, UnitVar{}), height, val);
}
template <class Means>
Vorn32f identityScaledMixture(const Vorn16s* src, Means mean, int height, int len, const Vorn32f* val,
                              int scaleFactor) {
    const Vorn32f scale = scaleOfHalf(scaleFactor);
    const auto kernel = [len, scale](auto* x, auto* m, auto* v, auto* score) {
        vornsLGaussSingle_IdVar_16s32f_M7(x, m, len, score, v, &scale);
    };
    return logSumInRuns(OneByOne{kernel}, gaussians(src, mean, UnitVar{}), height, val);
}
template <class Means>
Vorn32f identityLowMixture(const Vorn16s* src, Means mean, int height, int len, const Vorn32f* val, int scaleFactor) {
    const auto kernel = [len, scaleFactor](auto* x, auto* m, auto* v, auto* score) {
        vornsLGaussSingle_IdVarLow_16s32f_M7(x, m, len, score, v, scaleFactor);
    };
    return logSumInRuns(OneByOne{kernel}, gaussians(src, mean, UnitVar{}), height, val);
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsLogGaussMixture_32f_D2(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int height,
                                       int step, int len, const Vorn32f* val, Vorn32f* result) {
    VORN_CHECK(notNull(src, mean, var, val, result));
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(positive(height, len));
    *result = logSumInRuns(FloatScores{len}, gaussians(src, Rows(mean, step), Rows(var, step)), height, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_32f_D2L(const Vorn32f* src, const Vorn32f* const* mean, const Vorn32f* const* var,
                                        int height, int len, const Vorn32f* val, Vorn32f* result) {
    VORN_CHECK(notNull(src, mean, var, val, result));
    VORN_CHECK(positive(height, len));
    *result = logSumInRuns(FloatScores{len}, gaussians(src, Rows(mean), Rows(var)), height, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_64f_D2(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var, int height,
                                       int step, int len, const Vorn64f* val, Vorn64f* result) {
    VORN_CHECK(notNull(src, mean, var, val, result));
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(positive(height, len));
    *result = logSumInRuns(DoubleScores{len}, gaussians(src, Rows(mean, step), Rows(var, step)), height, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_64f_D2L(const Vorn64f* src, const Vorn64f* const* mean, const Vorn64f* const* var,
                                        int height, int len, const Vorn64f* val, Vorn64f* result) {
    VORN_CHECK(notNull(src, mean, var, val, result));
    VORN_CHECK(positive(height, len));
    *result = logSumInRuns(DoubleScores{len}, gaussians(src, Rows(mean), Rows(var)), height, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_Scaled_16s32f_D2(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var,
                                                 int height, int step, int len, const Vorn32f* val, Vorn32f* result,
                                                 int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, val, result));
    VORN_CHECK(positive(height, len));
    *result =
        logSumInRuns(ScaledScores{len, scaleFactor}, gaussians(src, Rows(mean, step), Rows(var, step)), height, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_Scaled_16s32f_D2L(const Vorn16s* src, const Vorn16s* const* mean,
                                                  const Vorn16s* const* var, int height, int len, const Vorn32f* val,
                                                  Vorn32f* result, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, val, result));
    VORN_CHECK(positive(height, len));
    *result = logSumInRuns(ScaledScores{len, scaleFactor}, gaussians(src, Rows(mean), Rows(var)), height, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_LowScaled_16s32f_D2(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var,
                                                    int height, int step, int len, const Vorn32f* val, Vorn32f* result,
                                                    int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, val, result));
    VORN_CHECK(positive(height, len));
    *result =
        logSumInRuns(LowScaledScores{len, scaleFactor}, gaussians(src, Rows(mean, step), Rows(var, step)), height, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_LowScaled_16s32f_D2L(const Vorn16s* src, const Vorn16s* const* mean,
                                                     const Vorn16s* const* var, int height, int len, const Vorn32f* val,
                                                     Vorn32f* result, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, val, result));
    VORN_CHECK(positive(height, len));
    *result = logSumInRuns(LowScaledScores{len, scaleFactor}, gaussians(src, Rows(mean), Rows(var)), height, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_IdVar_32f_D2(const Vorn32f* src, const Vorn32f* mean, int height, int step, int len,
                                             const Vorn32f* val, Vorn32f* result) {
    VORN_CHECK(notNull(src, mean, val, result));
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(positive(height, len));
    *result = logSumInOrder(gaussians(src, Rows(mean, step), UnitVar{}), len, height, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_IdVar_32f_D2L(const Vorn32f* src, const Vorn32f* const* mean, int height, int len,
                                              const Vorn32f* val, Vorn32f* result) {
    VORN_CHECK(notNull(src, mean, val, result));
    VORN_CHECK(positive(height, len));
    *result = identityMixture(src, Rows(mean), height, len, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_IdVar_64f_D2(const Vorn64f* src, const Vorn64f* mean, int height, int step, int len,
                                             const Vorn64f* val, Vorn64f* result) {
    VORN_CHECK(notNull(src, mean, val, result));
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(positive(height, len));
    *result = identityMixture(src, Rows(mean, step), height, len, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_IdVar_64f_D2L(const Vorn64f* src, const Vorn64f* const* mean, int height, int len,
                                              const Vorn64f* val, Vorn64f* result) {
    VORN_CHECK(notNull(src, mean, val, result));
    VORN_CHECK(positive(height, len));
    *result = identityMixture(src, Rows(mean), height, len, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_IdVarScaled_16s32f_D2(const Vorn16s* src, const Vorn16s* mean, int height, int step,
                                                      int len, const Vorn32f* val, Vorn32f* result, int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, val, result));
    VORN_CHECK(positive(height, len));
    *result = identityScaledMixture(src, Rows(mean, step), height, len, val, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_IdVarScaled_16s32f_D2L(const Vorn16s* src, const Vorn16s* const* mean, int height,
                                                       int len, const Vorn32f* val, Vorn32f* result, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, val, result));
    VORN_CHECK(positive(height, len));
    *result = identityScaledMixture(src, Rows(mean), height, len, val, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_IdVarLowScaled_16s32f_D2(const Vorn16s* src, const Vorn16s* mean, int height, int step,
                                                         int len, const Vorn32f* val, Vorn32f* result,
                                                         int scaleFactor) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, val, result));
    VORN_CHECK(positive(height, len));
    *result = identityLowMixture(src, Rows(mean, step), height, len, val, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussMixture_IdVarLowScaled_16s32f_D2L(const Vorn16s* src, const Vorn16s* const* mean, int height,
                                                          int len, const Vorn32f* val, Vorn32f* result,
                                                          int scaleFactor) {
    VORN_CHECK(notNull(src, mean, val, result));
    VORN_CHECK(positive(height, len));
    *result = identityLowMixture(src, Rows(mean), height, len, val, scaleFactor);
    return vornStsNoErr;
}
