// Linear prediction of a frame: the exported functions of the autocorrelation and of the covariance method.
#include <cstddef>
#include <cstdint>

#include "features/detour.h"
#include "features/prediction/covariance.h"
#include "features/prediction/recursion.h"
#include "frame/checks.h"
#include "frame/memory.h"
#include "move/convert_kernels.h"
#include "vornsr/features.h"
#include "vornsr/fft.h"
#include "vornsr/signal.h"

namespace vorn::prediction {
namespace {

VornStatus checkAnalysis(const void* src, int len, const void* dst, int order) {
    VORN_CHECK(notNull(dst, src));
    VORN_CHECK(positive(len, order));
    return require(order <= len, vornStsSizeErr);
}

// Up to 63 elements on the stack.
using ShortSingles = ShortScratch<Vorn32f, 63>;

VornStatus errorFilter(const Vorn32f* src, int len, Vorn32f* dst, int order) {
    const ShortSingles r(std::int64_t{order} + 1);
    if (!r) return vornStsMemAllocErr;
    VORN_CHECK(vornsAutoCorr_32f(src, len, r.get(), order + 1));
    Vorn32f error;
    return durbin(r.get(), dst, order, &error);
}

// 0.0 minus each element, which makes the predictor of an error filter.
void negate(Vorn32f* a, int order) { vornsSubCRev_32f_I(0.0f, a, order); }

VornStatus predictor(const Vorn32f* src, int len, Vorn32f* dst, int order) {
    VORN_CHECK(errorFilter(src, len, dst, order));
    negate(dst, order);
    return vornStsNoErr;
}

// The 16-bit form of an analysis. Nothing of a failing frame is stored.
template <class Singles, class Analyse>
VornStatus analyseFixed(const Vorn16s* src, int len, Vorn16s* dst, int order, int scale, Analyse analyse) {
    const Singles frame(len), result(order);
    if (!frame || !result) return vornStsMemAllocErr;
    convert(src, frame.get(), len);
    VORN_CHECK(analyse(frame.get(), len, result.get(), order));
    NearestStore{scale}(result.get(), dst, order);
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::prediction

using namespace vorn;

VornStatus vornsLinearPrediction_Auto_32f(const Vorn32f* src, int len, Vorn32f* dst, int order) {
    VORN_CHECK(prediction::checkAnalysis(src, len, dst, order));
    return prediction::errorFilter(src, len, dst, order);
}

VornStatus vornsLinearPrediction_Auto_16s_Sfs(const Vorn16s* src, int len, Vorn16s* dst, int order, int scale) {
    VORN_CHECK(prediction::checkAnalysis(src, len, dst, order));
    return prediction::analyseFixed<prediction::ShortSingles>(src, len, dst, order, scale, prediction::errorFilter);
}

// Negates what the recursion leaves of a failing frame as well, and the elements behind it, which it does not reach.
VornStatus vornsLinearPredictionNeg_Auto_32f(const Vorn32f* src, int len, Vorn32f* dst, int order) {
    VORN_CHECK(prediction::checkAnalysis(src, len, dst, order));
    const VornStatus status = prediction::errorFilter(src, len, dst, order);
    if (status == vornStsNoErr || status == vornStsDurbinErr) prediction::negate(dst, order);
    return status;
}

VornStatus vornsLinearPredictionNeg_Auto_16s_Sfs(const Vorn16s* src, int len, Vorn16s* dst, int order, int scale) {
    VORN_CHECK(prediction::checkAnalysis(src, len, dst, order));
    return prediction::analyseFixed<prediction::ShortSingles>(src, len, dst, order, scale, prediction::predictor);
}

VornStatus vornsLinearPrediction_Cov_32f(const Vorn32f* src, int len, Vorn32f* dst, int order) {
    VORN_CHECK(prediction::checkAnalysis(src, len, dst, order));
    return prediction::covariance(src, len, dst, order);
}

VornStatus vornsLinearPrediction_Cov_16s_Sfs(const Vorn16s* src, int len, Vorn16s* dst, int order, int scale) {
    VORN_CHECK(prediction::checkAnalysis(src, len, dst, order));
    return prediction::analyseFixed<Scratch<Vorn32f>>(src, len, dst, order, scale, prediction::covariance);
}
