// Suppression gains: the exported functions.
#include "frame/checks.h"
#include "noise/suppression/ephraim_malah.h"
#include "noise/suppression/wiener.h"
#include "vornsr/noise.h"

using namespace vorn;

namespace {
namespace gain_checks {
VornStatus lengthHolds(int len) { return require(len >= 1 && len <= 65535, vornStsLengthLimitErr); }
}  // namespace gain_checks
}  // namespace

VornStatus vornsFilterUpdateWiener_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(gain_checks::lengthHolds(len));
    return suppression::wienerGains<suppression::SingleWiener>(src, dst, len) ? vornStsBadArgErr : vornStsNoErr;
}

VornStatus vornsFilterUpdateWiener_32s(const Vorn32s* src, Vorn32s* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(gain_checks::lengthHolds(len));
    return suppression::wienerGains<suppression::FixedWiener>(src, dst, len) ? vornStsBadArgErr : vornStsNoErr;
}

VornStatus vornsFilterUpdateEMNS_32f(const Vorn32f* wiener, const Vorn32f* postSNR, Vorn32f* dst, int len) {
    using suppression::SingleGain;
    VORN_CHECK(notNull(wiener, postSNR, dst));
    VORN_CHECK(gain_checks::lengthHolds(len));
    VORN_CHECK(require(suppression::allAllowed<SingleGain>(wiener, postSNR, len), vornStsRangeErr));
    suppression::gains<SingleGain>(wiener, postSNR, dst, len);
    return vornStsNoErr;
}

VornStatus vornsFilterUpdateEMNS_32s(const Vorn32s* wiener, const Vorn32s* postSNR, Vorn32s* dst, int len) {
    using suppression::FixedGain;
    VORN_CHECK(notNull(wiener, postSNR, dst));
    VORN_CHECK(gain_checks::lengthHolds(len));
    VORN_CHECK(require(suppression::allAllowed<FixedGain>(wiener, postSNR, len), vornStsRangeErr));
    suppression::gains<FixedGain>(wiener, postSNR, dst, len);
    return vornStsNoErr;
}
