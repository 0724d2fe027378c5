// Noise reduction but for its filter banks: the exported functions.
#include <cstdint>

#include "aurora/noise_reduction/impulse_response.h"
#include "aurora/noise_reduction/noise_update.h"
#include "aurora/noise_reduction/smoothing.h"
#include "aurora/noise_reduction/wiener.h"
#include "frame/checks.h"
#include "frame/rounding.h"
#include "frame/scale.h"
#include "vornsr/aurora.h"

namespace vorn::noise_reduction {
namespace {

constexpr VornStatus wholeQuads(int len) { return require(len > 0 && len % 4 == 0, vornStsSizeErr); }

// dst[i] = op(in[i], noise[i])
template <class Op, class T>
VORN_NOINLINE void updateElements(const Op& given, const T* in, const T* noise, T* dst, std::int64_t len) {
    const Op op = given;
    forEachStep(len, elementKernel(op, elements(in), elements(noise), dst));
}
template <class Op, class T>
VORN_INLINE void updateNoise(Rounding mode, const Op& op, const T* in, const T* noise, T* dst, int len) {
    const RoundingGuard guard(mode);
    updateElements(op, in, noise, dst, len);
}

template <class Op, class T>
VORN_NOINLINE void designGain(const T* in, const T* noise, const T* den, T* dst, std::int64_t len) {
    const Op op;
    forEachStep(len, elementKernel(op, elements(in), NoiseAndDenoisedElements<T>{{noise}, {den}}, dst));
}

}  // namespace
}  // namespace vorn::noise_reduction

using namespace vorn;

VornStatus vornsSmoothedPowerSpectrumAurora_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(noise_reduction::wholeQuads(len));
    noise_reduction::smoothedPower(noise_reduction::SmoothedSingles{}, src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSmoothedPowerSpectrumAurora_16s(const Vorn16s* src, Vorn16s* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(noise_reduction::wholeQuads(len));
    noise_reduction::smoothedPower(noise_reduction::SmoothedShorts{}, src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSmoothedPowerSpectrumAurora_32s_Sfs(const Vorn32s* src, Vorn32s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(noise_reduction::wholeQuads(len));
    const noise_reduction::Shift64 shift(scaleFactor);
    noise_reduction::smoothedPower(noise_reduction::SmoothedIntegers<Vorn32s>{shift}, src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSmoothedPowerSpectrumAurora_32s64s_Sfs(const Vorn32s* src, Vorn64s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(noise_reduction::wholeQuads(len));
    const noise_reduction::Shift64 shift(scaleFactor);
    noise_reduction::smoothedPower(noise_reduction::SmoothedIntegers<Vorn64s>{shift}, src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsNoiseSpectrumUpdate_Aurora_32f(const Vorn32f* in, const Vorn32f* noise, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(in, noise, dst));
    VORN_CHECK(positive(len));
    noise_reduction::updateNoise(Rounding::TowardZero, noise_reduction::UpdateOfSingles(), in, noise, dst, len);
    return vornStsNoErr;
}

VornStatus vornsNoiseSpectrumUpdate_Aurora_16s_Sfs(const Vorn16s* in, const Vorn16s* noise, Vorn16s* dst, int len,
                                                   int scaleFactor) {
    VORN_CHECK(notNull(in, noise, dst));
    VORN_CHECK(positive(len));
    const noise_reduction::UpdateOfShorts update(GetScale_32s32f(scaleFactor));
    noise_reduction::updateNoise(Rounding::Nearest, update, in, noise, dst, len);
    return vornStsNoErr;
}

VornStatus vornsNoiseSpectrumUpdate_Aurora_32s_Sfs(const Vorn32s* in, const Vorn32s* noise, Vorn32s* dst, int len,
                                                   int scaleFactor) {
    VORN_CHECK(notNull(in, noise, dst));
    VORN_CHECK(positive(len));
    const noise_reduction::UpdateOfLongs update(GetScale_32s32f(scaleFactor));
    noise_reduction::updateNoise(Rounding::Nearest, update, in, noise, dst, len);
    return vornStsNoErr;
}

VornStatus vornsWienerFilterDesign_Aurora_32f(const Vorn32f* in, const Vorn32f* noise, const Vorn32f* den, Vorn32f* dst,
                                              int len) {
    VORN_CHECK(notNull(in, noise, den, dst));
    VORN_CHECK(positive(len));
    noise_reduction::designGain<noise_reduction::SingleGain>(in, noise, den, dst, len);
    return vornStsNoErr;
}

VornStatus vornsWienerFilterDesign_Aurora_16s(const Vorn16s* in, const Vorn16s* noise, const Vorn16s* den, Vorn16s* dst,
                                              int len) {
    VORN_CHECK(notNull(in, noise, den, dst));
    VORN_CHECK(positive(len));
    noise_reduction::designGain<noise_reduction::ShortGain>(in, noise, den, dst, len);
    return vornStsNoErr;
}

VornStatus vornsTabsCalculation_Aurora_32f(const Vorn32f* src, Vorn32f* dst) {
    VORN_CHECK(notNull(src, dst));
    noise_reduction::spreadTaps(src, dst);
    return vornStsNoErr;
}

VornStatus vornsTabsCalculation_Aurora_16s(const Vorn16s* src, Vorn16s* dst) {
    VORN_CHECK(notNull(src, dst));
    noise_reduction::spreadTaps(src, dst);
    return vornStsNoErr;
}

VornStatus vornsResidualFilter_Aurora_32f(const Vorn32f* src, Vorn32f* dst, const Vorn32f* taps) {
    VORN_CHECK(notNull(src, dst, taps));
    noise_reduction::filterFrame(src, taps, dst);
    return vornStsNoErr;
}

VornStatus vornsResidualFilter_Aurora_16s_Sfs(const Vorn16s* src, Vorn16s* dst, const Vorn16s* taps, int scaleFactor) {
    VORN_CHECK(notNull(src, dst, taps));
    noise_reduction::filterFrame(src, taps, dst, noise_reduction::Shift64(scaleFactor));
    return vornStsNoErr;
}
