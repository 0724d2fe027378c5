// Between hertz and mel, in double.
#include <cstddef>

#include "elementary/elementary.h"
#include "elementary/lanes.h"
#include "frame/checks.h"
#include "frame/rounding.h"
#include "simd/block.h"
#include "vornsr/features.h"

using namespace vorn;

namespace vorn::bank {
namespace {

// Each lane by itself.
template <double (*function)(double)>
VORN_NOINLINE void ofLanes(double* x) {
    for (int k = 0; k < f64xN::lanes; ++k) x[k] = function(x[k]);
}
template <double (*function)(double)>
VORN_INLINE f64xN ofAny(f64xN x) {
    alignas(f64xN) double lanes[f64xN::lanes];
    store(lanes, x);
    ofLanes<function>(lanes);
    return load<f64xN>(lanes);
}

// mul ln(x / div + 1) and div (exp(x / mul) - 1), the divisions as products with the reciprocal.
struct LinearToMel {
    double mul, perDiv;
    LinearToMel(double melMul, double melDiv) : mul(melMul), perDiv(1.0 / melDiv) {}
    VORN_INLINE f64xN operator()(f64xN x) const {
        const f64xN argument = x * splat<f64xN>(perDiv) + splat<f64xN>(1.0);
        const auto ordinary = (argument >= splat<f64xN>(0x1p-1022)) & (argument < splat<f64xN>(0x1p1000));
        return splat<f64xN>(mul) * (all(ordinary) ? logOfNormal(argument) : ofAny<log64>(argument));
    }
};
struct MelToLinear {
    double div, perMul;
    MelToLinear(double melMul, double melDiv) : div(melDiv), perMul(1.0 / melMul) {}
    VORN_INLINE f64xN operator()(f64xN x) const {
        const f64xN argument = x * splat<f64xN>(perMul);
        const bool moderate = all(absOf(argument) < splat<f64xN>(708.0));
        const f64xN ratio = moderate ? expOfModerate(argument) : ofAny<exp64>(argument);
        return splat<f64xN>(div) * (ratio - splat<f64xN>(1.0));
    }
};

template <class Conversion>
VORN_NOINLINE void convertScale(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t len, const Conversion& conversion) {
    forBlocks<f32xN::lanes>(
        src, dst, len, [&](const Vorn32f* from, Vorn32f* to) __attribute__((always_inline)) {
            const f32xN x = load<f32xN>(from);
            store(to, narrow(conversion(widenLow(x)), conversion(widenHigh(x))));
        });
}

template <class Conversion>
VornStatus convertScale(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f melMul, Vorn32f melDiv) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(require(len > 0 && melMul > 0 && melDiv > 0, vornStsSizeErr));
    convertScale(src, dst, len, Conversion(melMul, melDiv));
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::bank

VornStatus vornsLinearToMel_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f melMul, Vorn32f melDiv) {
    return bank::convertScale<bank::LinearToMel>(src, dst, len, melMul, melDiv);
}

VornStatus vornsMelToLinear_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f melMul, Vorn32f melDiv) {
    return bank::convertScale<bank::MelToLinear>(src, dst, len, melMul, melDiv);
}
