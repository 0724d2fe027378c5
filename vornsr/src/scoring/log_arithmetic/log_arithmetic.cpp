// Log-domain arithmetic: log-add, log-sum and log-subtract in float and in fixed point.
#include "frame/checks.h"
#include "scoring/log_arithmetic/kernels.h"
#include "vornsr/scoring.h"

using namespace vorn;

namespace {

// Log-subtract writes nothing unless every element has a logarithm of the difference.
VornStatus minuendLeads(int paramErr) { return require(paramErr == 0, vornStsRangeErr); }

}  // namespace

VornStatus vornsLogAdd_64f(const Vorn64f* src, Vorn64f* srcDst, int len, int hint) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(src, srcDst));
    // A hint that is not known computes nothing and is no error.
    if (hint < 0 || hint > 2) return vornStsNoErr;
    vornsLogAddVec_64f_M7(src, srcDst, len);
    return vornStsNoErr;
}

VornStatus vornsLogAdd_32f(const Vorn32f* src, Vorn32f* srcDst, int len) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(src, srcDst));
    vornsLogAddVec_32f_M7_sp(src, srcDst, len);
    return vornStsNoErr;
}

VornStatus vornsLogAdd_32s_Sfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(src, srcDst));
    logAddFixed(src, srcDst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogAdd_16s_Sfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(src, srcDst));
    logAddFixed(src, srcDst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogSum_64f(const Vorn64f* src, Vorn64f* dst, int len) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(src, dst));
    dst[0] = src[0];
    if (len > 1) vornsLogSum_64f_M7(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsLogSum_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(src, dst));
    dst[0] = src[0];
    if (len > 1) vornsLogSum_32f_M7(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsLogSum_32s_Sfs(const Vorn32s* src, Vorn32s* dst, int len, int scaleFactor) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(src, dst));
    dst[0] = src[0];
    if (len > 1) logSumFixed(src, dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogSum_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(src, dst));
    dst[0] = src[0];
    if (len > 1) logSumFixed(src, dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogSub_64f(const Vorn64f* src, Vorn64f* srcDst, int len) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(minuendLeads(ParamErr64f(src, srcDst, len)));
    logSub(src, srcDst, len);
    return vornStsNoErr;
}

VornStatus vornsLogSub_32f(const Vorn32f* src, Vorn32f* srcDst, int len) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(minuendLeads(ParamErr32f(src, srcDst, len)));
    logSub(src, srcDst, len);
    return vornStsNoErr;
}

VornStatus vornsLogSub_32s_Sfs(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(minuendLeads(ParamErr32s(src, srcDst, len)));
    logSubFixed(src, srcDst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogSub_16s_Sfs(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(src, srcDst));
    VORN_CHECK(minuendLeads(ParamErr16s(src, srcDst, len)));
    logSubFixed(src, srcDst, len, scaleFactor);
    return vornStsNoErr;
}
