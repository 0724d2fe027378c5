// One feature vector against a mixture of Gaussians, one number: vornsLogGaussMixture*.
#include "frame/checks.h"
#include "scoring/gauss_runs.h"
#include "scoring/gauss_scores.h"
#include "vornsr/scoring.h"

namespace vorn {
namespace {

template <class T, class Means, class Vars>
T mixture(const T* src, Means mean, Vars var, int height, int len, const T* val) {
    return logSumOfRuns(val, height, [&](std::ptrdiff_t first, std::ptrdiff_t count, T* scores) {
        multiMix(src, mean.from(first), var.from(first), len, scores, count);
    });
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsLogGaussMixture_32f_D2(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int height,
                                       int step, int len, const Vorn32f* val, Vorn32f* result) {
    VORN_CHECK(notNull(src, mean, var, val, result));
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(positive(height, len));
    *result = mixture(src, Rows(mean, step), Rows(var, step), height, len, val);
    return vornStsNoErr;
}
