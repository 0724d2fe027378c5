// The Gaussian kernel exp(-x^2): the exported functions.
#include <cstddef>

#include "elementary/elementary.h"
#include "elementary/lanes.h"
#include "frame/checks.h"
#include "frame/rounding.h"
#include "simd/block.h"
#include "vornsr/linalg.h"

namespace vorn {
namespace {

// exp64 of numbers that are not above zero, or none: the lanes that are none or give denormal numbers one by one.
VORN_NOINLINE void expOfLanes(const double* exponent, double* result) {
    constexpr double moderate = -708.0;
    for (int k = 0; k < f64xN::lanes; ++k) {
        if (!(exponent[k] > moderate)) result[k] = exp64(exponent[k]);
    }
}
VORN_INLINE f64xN expOfNegative(f64xN exponent) {
    const f64xN moderate = splat<f64xN>(-708.0), vanishing = splat<f64xN>(-746.0);
    f64xN result = expOfModerate(maxOf(moderate, exponent));
    if (all(exponent > moderate)) [[likely]]
        return result;
    result = select(exponent > moderate, result, splat<f64xN>(0.0));
    if (all((exponent > moderate) | (exponent < vanishing))) return result;
    alignas(f64xN) double from[f64xN::lanes], to[f64xN::lanes];
    store(from, exponent);
    store(to, result);
    expOfLanes(from, to);
    return load<f64xN>(to);
}

// Below -104 the exponential is less than half of the least single.
VORN_INLINE f32xN expNegSqrOf(f32xN x) {
    const f32xN exponent = -(x * x);
    const f32xN limited = maxOf(splat<f32xN>(-128.0f), exponent);
    const f32xN result = narrow(expOfModerate(widenLow(limited)), expOfModerate(widenHigh(limited)));
    return select(unordered(exponent, exponent), exponent, result);
}
VORN_INLINE f64xN expNegSqrOf(f64xN x) { return expOfNegative(-(x * x)); }

// The rounding mode is to nearest.
template <class Source, class Result>
VORN_NOINLINE void expNegSqrInNearest(const Source* src, Result* dst, std::ptrdiff_t len) {
    using V = Wide<Result>;
    forBlocks<V::lanes>(
        src, dst, len, [](const Source* from, Result* to) __attribute__((always_inline)) {
            if constexpr (sizeof(Source) == sizeof(Result)) {
                store(to, expNegSqrOf(load<V>(from)));
            } else {
                store(to, expNegSqrOf(loadWidened<V>(from)));
            }
        });
}

template <class Source, class Result>
void expNegSqr(const Source* src, Result* dst, int len) {
    const RoundingGuard nearest(Rounding::Nearest);
    expNegSqrInNearest(src, dst, len);
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsExpNegSqr_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    expNegSqr(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsExpNegSqr_32f64f(const Vorn32f* src, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    expNegSqr(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsExpNegSqr_64f(const Vorn64f* src, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    expNegSqr(src, dst, len);
    return vornStsNoErr;
}

VornStatus vornsExpNegSqr_32f_I(Vorn32f* srcDst, int len) { return vornsExpNegSqr_32f(srcDst, srcDst, len); }

VornStatus vornsExpNegSqr_64f_I(Vorn64f* srcDst, int len) { return vornsExpNegSqr_64f(srcDst, srcDst, len); }
