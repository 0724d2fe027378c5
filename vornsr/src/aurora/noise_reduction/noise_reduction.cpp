// Noise reduction but for its filter banks: the exported functions.
#include <cstdint>
#include <type_traits>

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

template <class Stored>
void smoothIntegers(const Vorn32s* src, Stored* dst, int len, int scaleFactor) {
    const Shift64 shift(scaleFactor);
    if (shift.left > 0) {
        smoothedPower(SmoothedIntegers<Stored, LeftShift64>{{shift.left}}, src, dst, len);
    } else {
        smoothedPower(SmoothedIntegers<Stored, RightShift64>{{shift.right}}, src, dst, len);
    }
}

VORN_NOINLINE void updateSingles(const Vorn32f* in, const Vorn32f* noise, Vorn32f* dst, std::int64_t len) {
    forEachRegister<f32xN>(
        len, [=]<class V>(std::type_identity<V>) __attribute__((always_inline)) {
            static constexpr UpdateOfSingles<V> update;
            return elementKernel(update, RunOf<V>{in}, RunOf<V>{noise}, dst);
        });
}
template <class Update, class T>
VORN_NOINLINE void updateIntegers(Vorn32f scale, const T* in, const T* noise, T* dst, std::int64_t len) {
    const Update update(scale);
    forEachStep(len, elementKernel(update, elements(in), elements(noise), dst));
}
template <class Update, class T>
void updateScaled(const T* in, const T* noise, T* dst, int len, int scaleFactor) {
    const RoundingGuard nearest(Rounding::Nearest);
    updateIntegers<Update>(GetScale_32s32f(scaleFactor), in, noise, dst, len);
}

VORN_NOINLINE void designSingleGain(const Vorn32f* in, const Vorn32f* noise, const Vorn32f* den, Vorn32f* dst,
                                    std::int64_t len) {
    forEachRegister<f32xN>(
        len, [=]<class V>(std::type_identity<V>) __attribute__((always_inline)) {
            static constexpr SingleGain<V> gain;
            return elementKernel(gain, RunOf<V>{in}, RunOfNoiseAndDenoised<V>{{noise}, {den}}, dst);
        });
}
VORN_NOINLINE void designShortGain(const Vorn16s* in, const Vorn16s* noise, const Vorn16s* den, Vorn16s* dst,
                                   std::int64_t len) {
    const ShortGain gain;
    forEachStep(len, elementKernel(gain, elements(in), RunOfNoiseAndDenoised<i16xN>{{noise}, {den}}, dst));
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
    noise_reduction::smoothIntegers(src, dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSmoothedPowerSpectrumAurora_32s64s_Sfs(const Vorn32s* src, Vorn64s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(noise_reduction::wholeQuads(len));
    noise_reduction::smoothIntegers(src, dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsNoiseSpectrumUpdate_Aurora_32f(const Vorn32f* in, const Vorn32f* noise, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(in, noise, dst));
    VORN_CHECK(positive(len));
    const RoundingGuard truncation(Rounding::TowardZero);
    noise_reduction::updateSingles(in, noise, dst, len);
    return vornStsNoErr;
}

VornStatus vornsNoiseSpectrumUpdate_Aurora_16s_Sfs(const Vorn16s* in, const Vorn16s* noise, Vorn16s* dst, int len,
                                                   int scaleFactor) {
    VORN_CHECK(notNull(in, noise, dst));
    VORN_CHECK(positive(len));
    noise_reduction::updateScaled<noise_reduction::UpdateOfShorts>(in, noise, dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsNoiseSpectrumUpdate_Aurora_32s_Sfs(const Vorn32s* in, const Vorn32s* noise, Vorn32s* dst, int len,
                                                   int scaleFactor) {
    VORN_CHECK(notNull(in, noise, dst));
    VORN_CHECK(positive(len));
    noise_reduction::updateScaled<noise_reduction::UpdateOfLongs>(in, noise, dst, len, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsWienerFilterDesign_Aurora_32f(const Vorn32f* in, const Vorn32f* noise, const Vorn32f* den, Vorn32f* dst,
                                              int len) {
    VORN_CHECK(notNull(in, noise, den, dst));
    VORN_CHECK(positive(len));
    noise_reduction::designSingleGain(in, noise, den, dst, len);
    return vornStsNoErr;
}

VornStatus vornsWienerFilterDesign_Aurora_16s(const Vorn16s* in, const Vorn16s* noise, const Vorn16s* den, Vorn16s* dst,
                                              int len) {
    VORN_CHECK(notNull(in, noise, den, dst));
    VORN_CHECK(positive(len));
    noise_reduction::designShortGain(in, noise, den, dst, len);
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
