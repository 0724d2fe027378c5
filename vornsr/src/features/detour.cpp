#include "features/detour.h"

#include <algorithm>

#include "frame/rounding.h"
#include "frame/scale.h"
#include "simd/part.h"
#include "simd/simd.h"

namespace vorn {
namespace {

constexpr std::ptrdiff_t lanes = f32xN::lanes, shorts = i16xN::lanes;

// dst = toIntegers(y), saturated to 16 bits.
template <class ToIntegers>
VORN_INLINE void storeIntegers(const Vorn32f* y, Vorn16s* dst, std::ptrdiff_t len, const ToIntegers& toIntegers) {
    std::ptrdiff_t i = 0;
    for (; i + shorts <= len; i += shorts) {
        store(dst + i, narrowSat(toIntegers(load<f32xN>(y + i)), toIntegers(load<f32xN>(y + i + lanes))));
    }
    const std::ptrdiff_t rest = len - i;
    if (rest == 0) return;
    const f32xN low = loadPart<f32xN>(y + i, std::min(rest, lanes));
    const f32xN high = loadPart<f32xN>(y + i + std::min(rest, lanes), std::max<std::ptrdiff_t>(rest - lanes, 0));
    storePart(dst + i, narrowSat(toIntegers(low), toIntegers(high)), rest);
}

VORN_NOINLINE void storePacked(const Vorn32f* y, Vorn16s* dst, std::ptrdiff_t len, Vorn32f factor) {
    storeIntegers(
        y, dst, len, [=](f32xN x) __attribute__((always_inline)) { return roundToInt(x * splat<f32xN>(factor)); });
}

}  // namespace

void toSingles(const Vorn16s* src, Vorn32f* dst, std::ptrdiff_t len, Vorn32f factor) {
    std::ptrdiff_t i = 0;
    for (; i + lanes <= len; i += lanes) {
        store(dst + i, toFloat(loadWidened<i32xN>(src + i)) * splat<f32xN>(factor));
    }
    for (; i < len; ++i) dst[i] = static_cast<Vorn32f>(src[i]) * factor;
}

void WrappedStore::operator()(const Vorn32f* y, Vorn16s* dst, std::ptrdiff_t len) const {
    const f32xN factor = splat<f32xN>(GetScale_32s32f(scale)), zero = splat<f32xN>(0);
    storeIntegers(
        y, dst, len, [=](f32xN x) __attribute__((always_inline)) {
            const f32xN scaled = x * factor;
            const f32xN half = select(scaled >= zero, splat<f32xN>(0.5f), splat<f32xN>(-0.5f));
            return shiftRight<16>(shiftLeft<16>(truncToInt(scaled + half)));
        });
}

void PackedStore::operator()(const Vorn32f* y, Vorn16s* dst, std::ptrdiff_t len) const {
    const RoundingGuard nearest(Rounding::Nearest);
    storePacked(y, dst, len, GetScale_32s32f(scale));
}

}  // namespace vorn
