// Candidates of the fundamental frequency: the reciprocals of the distances between pitch marks.
#include <cstddef>
#include <cstdint>

#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/rounding.h"
#include "frame/scale.h"
#include "simd/block.h"
#include "simd/simd.h"
#include "vornsr/noise.h"

namespace vorn::pitch {
namespace {

// The quotients of one register, and whether a distance was zero.

struct Reciprocals {
    using Mark = Vorn32f;
    using V = f32xN;
    decltype(splat<V>(0) == splat<V>(0)) zeros = splat<V>(1) == splat<V>(0);
    VORN_INLINE V operator()(V mark, V before) {
        const V distance = mark - before, quotient = splat<V>(1.0f) / distance;
        const auto zero = distance == splat<V>(0.0f);
        zeros = zeros | zero;
        return select(zero, splat<V>(vornConstantOfINF_32f), quotient);
    }
};

struct ScaledReciprocals {
    using Mark = Vorn16s;
    using V = i16xN;
    Vorn32f scale;
    decltype(splat<f32xN>(0) == splat<f32xN>(0)) zeros = splat<f32xN>(1) == splat<f32xN>(0);
    VORN_INLINE i32xN quotient(i32xN distance) {
        const i32xN none = splat<i32xN>(0);
        const auto zero = distance == none;
        zeros = zeros | zero;
        const f32xN y = splat<f32xN>(scale) / toFloat(distance);
        const f32xN clamped = minOf(maxOf(y, splat<f32xN>(-32768.0f)), splat<f32xN>(32767.0f));
        return select(zero, none, roundToInt(clamped));
    }
    VORN_INLINE V operator()(V mark, V before) {
        const i32xN low = quotient(widenLow(mark) - widenLow(before));
        const i32xN high = quotient(widenHigh(mark) - widenHigh(before));
        return narrowSat(low, high);
    }
};

// In front of the first mark stands one at 0. src and dst must not overlap.
template <class Work>
VORN_INLINE void overMarks(const typename Work::Mark* src, typename Work::Mark* dst, std::ptrdiff_t len, Work& work,
                           VornStatus* status) {
    using V = typename Work::V;
    constexpr std::ptrdiff_t lanes = V::lanes;
    typename Work::Mark first[lanes + 1] = {};  // the mark at 0, and marks of which no two are equal, as far as needed
    const std::ptrdiff_t begin = len < lanes ? len : lanes;
    for (std::ptrdiff_t k = 0; k < lanes; ++k) {
        first[k + 1] = k < begin ? src[k] : static_cast<typename Work::Mark>(first[k] == 1 ? 2 : 1);
    }
    storePart(dst, work(load<V>(first + 1), load<V>(first)), begin);
    std::ptrdiff_t i = lanes;
    for (; i + lanes <= len; i += lanes) store(dst + i, work(load<V>(src + i), load<V>(src + i - 1)));
    if (i < len) store(dst + len - lanes, work(load<V>(src + len - lanes), load<V>(src + len - lanes - 1)));
    if (any(work.zeros)) *status = vornStsDivByZero;
}

// The call's last word on the processor's flags, which are no part of the result.
void clearFlags() {
    constexpr unsigned denormalFlag = 0x0002;
    ControlRegister::put(ControlRegister::enter(Rounding::Nearest) & ~(invalidFlag | denormalFlag));
}

}  // namespace
}  // namespace vorn::pitch

using namespace vorn;

// dst[i] = 1 / (src[i] - src[i - 1]), with 0 in front of the first mark. Where the difference is zero the result is
// +infinity, and the status becomes vornStsDivByZero.
VORN_KERNEL VORN_NOINLINE void vornsPitchmarkToF0_32f_M7(const Vorn32f* src, Vorn32f* dst, std::int64_t len,
                                                         VornStatus* status) {
    pitch::Reciprocals reciprocals;
    pitch::overMarks(src, dst, len, reciprocals, status);
}
VORN_KERNEL_ALIAS(vornsPitchmarkToF0_32f_M7_Al, vornsPitchmarkToF0_32f_M7);

// dst[i] = scale / (src[i] - src[i - 1]), rounded in the current mode and saturated. Where the difference is zero the
// result is 0, and the status becomes vornStsDivByZero.
VORN_KERNEL VORN_NOINLINE void vornsPitchmarkToF0_16s_M7(const Vorn16s* src, Vorn16s* dst, std::int64_t len,
                                                         Vorn32f scale, VornStatus* status) {
    pitch::ScaledReciprocals reciprocals{scale};
    pitch::overMarks(src, dst, len, reciprocals, status);
}
VORN_KERNEL_ALIAS(vornsPitchmarkToF0_16s_M7_Al, vornsPitchmarkToF0_16s_M7);

VornStatus vornsPitchmarkToF0Cand_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VornStatus status = vornStsNoErr;
    vornsPitchmarkToF0_32f_M7(src, dst, len, &status);
    if (status != vornStsNoErr) pitch::clearFlags();
    return status;
}

VornStatus vornsPitchmarkToF0Cand_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    VornStatus status = vornStsNoErr;
    {
        RoundingGuard guard(Rounding::Nearest);
        vornsPitchmarkToF0_16s_M7(src, dst, len, GetScale_32s32f(scaleFactor), &status);
    }
    if (status != vornStsNoErr) pitch::clearFlags();
    return status;
}
