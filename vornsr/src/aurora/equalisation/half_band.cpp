// The split of a signal into two bands: the exported functions.
#include "aurora/equalisation/half_band.h"

#include "frame/checks.h"
#include "vornsr/aurora.h"

using namespace vorn;

VornStatus vornsLowHighFilter_Aurora_32f(const Vorn32f* src, Vorn32f* dstLow, Vorn32f* dstHigh, int len,
                                         const Vorn32f* taps, int tapsLen) {
    VORN_CHECK(notNull(src, taps));
    VORN_CHECK(positive(tapsLen));
    VORN_CHECK(notNull(dstLow, dstHigh));
    VORN_CHECK(positive(len));
    if (half_band::areFew(len / 2, tapsLen)) {
        half_band::splitFew<Vorn32f>(src, len / 2, taps, tapsLen, dstLow, dstHigh, [](Vorn32f sum) { return sum; });
        return vornStsNoErr;
    }
    half_band::overBlocks(src, len, [=](const Vorn32f* from, std::ptrdiff_t outputs, std::ptrdiff_t at) {
        half_band::splitBlock(from, outputs, taps, tapsLen, dstLow + at, dstHigh + at);
    });
    return vornStsNoErr;
}

VornStatus vornsLowHighFilter_Aurora_16s_Sfs(const Vorn16s* src, Vorn16s* dstLow, Vorn16s* dstHigh, int len,
                                             const Vorn16s* taps, int tapsLen, int scaleFactor) {
    VORN_CHECK(notNull(src, taps));
    VORN_CHECK(positive(tapsLen));
    VORN_CHECK(notNull(dstLow, dstHigh));
    VORN_CHECK(positive(len));
    const bool fits =
        scaleFactor >= 0 && tapsLen <= half_band::Taps<half_band::Shorts>::most && half_band::fitIn32(taps, tapsLen);
    if (half_band::areFew(len / 2, tapsLen, !fits)) {
        half_band::splitFew<std::int64_t>(src, len / 2, taps, tapsLen, dstLow, dstHigh,
                                          [=](std::int64_t sum) { return half_band::scaled(sum, scaleFactor); });
        return vornStsNoErr;
    }
    const auto splitBlock = fits ? half_band::splitBlock32 : half_band::splitBlock64;
    half_band::overBlocks(src, len, [=](const Vorn16s* from, std::ptrdiff_t outputs, std::ptrdiff_t at) {
        splitBlock(from, outputs, taps, tapsLen, scaleFactor, dstLow + at, dstHigh + at);
    });
    return vornStsNoErr;
}
