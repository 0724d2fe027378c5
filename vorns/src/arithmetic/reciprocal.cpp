// Reciprocals, for the families that divide by a vector.
#include <bit>
#include <cstddef>
#include <cstdint>

#include "frame/kernel.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn {
namespace {

constexpr std::int32_t defaultNan = static_cast<std::int32_t>(0xFFC00000);

// A zero or an infinity: what makes the refinement of an estimate invalid.
VORN_INLINE mask32x4 isInvalid(f32x4 x) {
    return (x == splat<f32x4>(0.0f)) | (absOf(x) == splat<f32x4>(std::bit_cast<float>(0x7F800000)));
}
VORN_INLINE f32x4 reciprocal(f32x4 x, bool anyInvalid) {
    const f32x4 signedInfinity = (x & splat<f32x4>(-0.0f)) | splat<f32x4>(std::bit_cast<float>(0x7F800000));
    const f32x4 quotient = splat<f32x4>(1.0f) / x;
    if (!anyInvalid) return quotient;
    return select(isInvalid(x) | (bitsOf(quotient) == splat<i32x4>(defaultNan)), signedInfinity, quotient);
}

}  // namespace
}  // namespace vorn

using namespace vorn;

// dst = 1/src, a true division. If any element is a zero or an infinity, the status becomes vornStsDivByZero, and these
// elements, and any whose result is the default not-a-number, give an infinity with the sign of their source.
VORN_KERNEL void vornsReciprocal_32f_M7(const Vorn32f* src, Vorn32f* dst, std::int64_t len, VornStatus* status) {
    bool anyInvalid = false;
    for (std::int64_t i = 0; i < len && !anyInvalid; i += 4) {
        const std::int64_t n = len - i < 4 ? len - i : 4;
        anyInvalid = (laneBits(isInvalid(loadFirst<f32x4>(src + i, n))) & ((1u << n) - 1u)) != 0;
    }
    if (anyInvalid) *status = vornStsDivByZero;
    for (std::int64_t i = 0; i < len; i += 4) {
        const std::int64_t n = len - i < 4 ? len - i : 4;
        storeFirst(dst + i, reciprocal(loadFirst<f32x4>(src + i, n), anyInvalid), n);
    }
}
