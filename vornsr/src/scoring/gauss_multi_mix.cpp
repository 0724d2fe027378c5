// One feature vector against many Gaussians: vornsLogGaussMultiMix*.
#include "frame/checks.h"
#include "scoring/gauss_scores.h"
#include "vornsr/scoring.h"

using namespace vorn;

VornStatus vornsLogGaussMultiMix_32f_D2(const Vorn32f* mean, const Vorn32f* var, int step, const Vorn32f* src, int len,
                                        Vorn32f* srcDst, int height) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, srcDst));
    VORN_CHECK(positive(len, height));
    multiMix(src, Rows(mean, step), Rows(var, step), len, srcDst, height);
    return vornStsNoErr;
}
