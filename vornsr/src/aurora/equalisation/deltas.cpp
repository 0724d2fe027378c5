// Velocities and accelerations of cepstra over nine frames: the exported functions.
#include "aurora/equalisation/deltas.h"

#include "frame/checks.h"
#include "vornsr/aurora.h"

using namespace vorn;

namespace vorn::aurora_delta {
namespace {

// What stands behind the null check: the other checks, in their order, and the work.
template <class Arithmetic>
VornStatus checkedDeltas(const Call<typename Arithmetic::Element>& call) {
    const int height = static_cast<int>(call.height);
    VORN_CHECK(atLeast(call.mode & vornDeltaLast ? 0 : 1, height));
    VORN_CHECK(strideHolds(static_cast<int>(call.step), 3 * columns));
    VORN_CHECK(atLeast(call.mode & vornDeltaFirst ? static_cast<int>(lookback) : 0, height));
    deltas<Arithmetic>(call);
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::aurora_delta

VornStatus vornsDeltaDelta_Aurora_32f_D2(const Vorn32f* src, Vorn32f* dst, int dstWidth, int height, int mode) {
    VORN_CHECK(notNull(src, dst));
    return aurora_delta::checkedDeltas<aurora_delta::Singles<false>>({src, nullptr, dst, dstWidth, height, mode, 0});
}

VornStatus vornsDeltaDeltaMul_Aurora_32f_D2(const Vorn32f* src, const Vorn32f* val, Vorn32f* dst, int dstWidth,
                                            int height, int mode) {
    VORN_CHECK(notNull(src, val, dst));
    return aurora_delta::checkedDeltas<aurora_delta::Singles<true>>({src, val, dst, dstWidth, height, mode, 0});
}

VornStatus vornsDeltaDelta_Aurora_16s_D2Sfs(const Vorn16s* src, Vorn16s* dst, int dstWidth, int height, int mode,
                                            int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    return aurora_delta::checkedDeltas<aurora_delta::Shorts<false>>(
        {src, nullptr, dst, dstWidth, height, mode, scaleFactor});
}

VornStatus vornsDeltaDeltaMul_Aurora_16s_D2Sfs(const Vorn16s* src, const Vorn16s* val, Vorn16s* dst, int dstWidth,
                                               int height, int mode, int scaleFactor) {
    VORN_CHECK(notNull(src, val, dst));
    return aurora_delta::checkedDeltas<aurora_delta::Shorts<true>>(
        {src, val, dst, dstWidth, height, mode, scaleFactor});
}
