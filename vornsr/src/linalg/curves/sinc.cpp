// The sinc function: the exported functions.
#include <cstddef>

#include "frame/checks.h"
#include "frame/rounding.h"
#include "linalg/curves/sine.h"
#include "simd/block.h"
#include "vornsr/linalg.h"

namespace vorn {
namespace {

template <class V>
VORN_INLINE V overAngle(V sine, V x) {
    const V one = splat<V>(1);
    const auto isZero = x == splat<V>(0);  // 0/0 would leave a flag behind, which the rounding guard has to take away
    return select(isZero, one, sine) / select(isZero, one, x);
}

// The sine is rounded to single before it is divided.
VORN_INLINE f32xN sinCOf(f32xN x) {
    const f64xN low = widenLow(x), high = widenHigh(x);
    const f32xN sine = narrow(sineOfSingle(low), sineOfSingle(high));
    const auto reached = absOf(x) <= splat<f32xN>(static_cast<float>(largestReduced));
    if (all(reached)) [[likely]]
        return overAngle(sine, x);
    const unsigned far = ~laneBits(reached);
    return overAngle(narrow(withSinesOfLanes(widenLow(sine), low, far),
                            withSinesOfLanes(widenHigh(sine), high, far >> f64xN::lanes)),
                     x);
}
VORN_INLINE f64xN sinCOf(f64xN x) { return overAngle(sineOf(x), x); }

// The rounding mode is to nearest.
template <class Source, class Result>
VORN_NOINLINE void sinCInNearest(const Source* src, Result* dst, std::ptrdiff_t len) {
    using V = Wide<Result>;
    forBlocks<V::lanes>(
        src, dst, len, [](const Source* from, Result* to) __attribute__((always_inline)) {
            if constexpr (sizeof(Source) == sizeof(Result)) {
                store(to, sinCOf(load<V>(from)));
            } else {
                store(to, sinCOf(loadWidened<V>(from)));
            }
        });
}

template <class Source, class Result>
void sinC(const Source* src, Result* dst, int len) {
    const RoundingGuard nearest(Rounding::Nearest);
    sinCInNearest(src, dst, len);
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsSinC_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    sinC(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSinC_32f64f(const Vorn32f* src, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    sinC(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSinC_64f(const Vorn64f* src, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    sinC(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsSinC_32f_I(Vorn32f* srcDst, int len) { return vornsSinC_32f(srcDst, srcDst, len); }

VornStatus vornsSinC_64f_I(Vorn64f* srcDst, int len) { return vornsSinC_64f(srcDst, srcDst, len); }
