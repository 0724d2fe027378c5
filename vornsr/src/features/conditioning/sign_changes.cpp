// Rates of sign changes: the exported functions.
#include "features/conditioning/sign_changes_kernels.h"
#include "frame/checks.h"
#include "vornsr/features.h"

using namespace vorn;

VornStatus vornsSignChangeRate_16s(const Vorn16s* src, int len, Vorn32s* pRes) {
    VORN_CHECK(notNull(pRes, src));
    VORN_CHECK(positive(len));
    *pRes = static_cast<Vorn32s>(countSteps<NegativeProduct_16s>(src, len));
    return vornStsNoErr;
}

VornStatus vornsSignChangeRate_32f(const Vorn32f* src, int len, Vorn32f* pRes) {
    VORN_CHECK(notNull(pRes, src));
    VORN_CHECK(positive(len));
    *pRes = static_cast<Vorn32f>(countSteps<NegativeProduct_32f>(src, len));
    return vornStsNoErr;
}

VornStatus vornsSignChangeRateXor_32f(const Vorn32f* src, int len, int* pRes) {
    VORN_CHECK(notNull(pRes, src));
    VORN_CHECK(positive(len));
    *pRes = static_cast<int>(countSteps<DifferentSignBits>(src, len));
    return vornStsNoErr;
}

VornStatus vornsSignChangeRate_Count0_16s(const Vorn16s* src, int len, Vorn32s* pRes) {
    VORN_CHECK(notNull(pRes, src));
    VORN_CHECK(positive(len));
    *pRes = static_cast<Vorn32s>(countSteps<SignDistance_16s>(src, len) >> 1);
    return vornStsNoErr;
}

VornStatus vornsSignChangeRate_Count0_32f(const Vorn32f* src, int len, Vorn32f* pRes) {
    VORN_CHECK(notNull(pRes, src));
    VORN_CHECK(positive(len));
    *pRes = static_cast<Vorn32f>(countSteps<SignDistance_32f>(src, len)) * 0.5f;
    return vornStsNoErr;
}
