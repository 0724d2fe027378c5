// Energy normalisation and mean removal: the exported functions.
#include "features/conditioning/energy_kernels.h"
#include "frame/checks.h"
#include "vornsr/features.h"

using namespace vorn;

VornStatus vornsNormEnergy_32f(Vorn32f* srcDst, int step, int height, Vorn32f minDb, Vorn32f val) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(step, height));
    const Vorn32f maxE = largest(srcDst, step, height, -3.4028235e38f);
    return vornsNormEnergy_RT_32f(srcDst, step, height, minDb, maxE, val);
}

VornStatus vornsNormEnergy_16s(Vorn16s* srcDst, int step, int height, Vorn16s minDb, Vorn16s top, Vorn32f val) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(step, height));
    const Vorn16s maxE = largest<Vorn16s>(srcDst, step, height, -32768);
    return vornsNormEnergy_RT_16s(srcDst, step, height, minDb, maxE, top, val);
}

VornStatus vornsNormEnergy_RT_32f(Vorn32f* srcDst, int step, int height, Vorn32f minDb, Vorn32f maxE, Vorn32f val) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(step, height));
    normEnergy(srcDst, step, height, NormalisedEnergy(maxE, minDb, 1.0f, val));
    return vornStsNoErr;
}

VornStatus vornsNormEnergy_RT_16s(Vorn16s* srcDst, int step, int height, Vorn16s minDb, Vorn16s maxE, Vorn16s top,
                                  Vorn32f val) {
    VORN_CHECK(notNull(srcDst));
    VORN_CHECK(positive(step, height));
    normEnergy(srcDst, step, height, NormalisedEnergy(maxE, minDb, top, val));
    return vornStsNoErr;
}

VornStatus vornsZeroMean_16s(Vorn16s* srcDst, int len) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(srcDst));
    subtractHalf(srcDst, len, static_cast<std::int32_t>(2 * std::int64_t{wrappedSum(srcDst, len)} / len));
    return vornStsNoErr;
}
