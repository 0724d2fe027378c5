#include "features/detour.h"

#include <algorithm>

#include "frame/rounding.h"
#include "frame/scale.h"
#include "simd/part.h"
#include "simd/simd.h"

namespace vorn {
namespace {

// Calls each(i, n) for the n elements from i on of every register, n being all lanes but in the last one.
template <class Each>
VORN_INLINE void overRegisters(std::ptrdiff_t len, Each each) {
    for (std::ptrdiff_t i = 0; i < len; i += f32xN::lanes) each(i, std::min<std::ptrdiff_t>(len - i, f32xN::lanes));
}

template <class V>
VORN_INLINE V loadSome(const typename V::Element* p, std::ptrdiff_t n) {
    return n == V::lanes ? load<V>(p) : loadPart<V>(p, n);
}

// Integers of 32 bits saturated to 16; there are enough lanes for two registers of them.
VORN_INLINE void storeShorts(Vorn16s* dst, i32xN x, std::ptrdiff_t n) { storePart(dst, narrowSat(x, x), n); }

VORN_NOINLINE void storePacked(const Vorn32f* y, Vorn16s* dst, std::ptrdiff_t len, Vorn32f factor) {
    overRegisters(
        len, [=](std::ptrdiff_t i, std::ptrdiff_t n) __attribute__((always_inline)) {
            storeShorts(dst + i, roundToInt(loadSome<f32xN>(y + i, n) * splat<f32xN>(factor)), n);
        });
}

}  // namespace

void toSingles(const Vorn16s* src, Vorn32f* dst, std::ptrdiff_t len, Vorn32f factor) {
    overRegisters(
        len, [=](std::ptrdiff_t i, std::ptrdiff_t n) __attribute__((always_inline)) {
            const f32xN x = toFloat(widenLow(loadPart<i16xN>(src + i, n))) * splat<f32xN>(factor);
            storePart(dst + i, x, n);
        });
}

void WrappedStore::operator()(const Vorn32f* y, Vorn16s* dst, std::ptrdiff_t len) const {
    const f32xN factor = splat<f32xN>(GetScale_32s32f(scale)), zero = splat<f32xN>(0);
    overRegisters(
        len, [=](std::ptrdiff_t i, std::ptrdiff_t n) __attribute__((always_inline)) {
            const f32xN scaled = loadSome<f32xN>(y + i, n) * factor;
            const f32xN half = select(scaled >= zero, splat<f32xN>(0.5f), splat<f32xN>(-0.5f));
            storeShorts(dst + i, shiftRight<16>(shiftLeft<16>(truncToInt(scaled + half))), n);
        });
}

void PackedStore::operator()(const Vorn32f* y, Vorn16s* dst, std::ptrdiff_t len) const {
    const RoundingGuard nearest(Rounding::Nearest);
    storePacked(y, dst, len, GetScale_32s32f(scale));
}

}  // namespace vorn
