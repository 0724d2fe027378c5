// Prediction and reflection coefficients: the recursions and the exported functions.
#include "features/prediction/step.h"

#include <algorithm>

#include "features/prediction/through_singles.h"
#include "frame/checks.h"
#include "simd/neighbours.h"
#include "simd/simd.h"
#include "vornsr/features.h"

namespace vorn::conversion {
namespace {

// A step needs the coefficients in their order and from the last to the first. Both rows are carried along, as in a
// lattice of the forward and the backward predictor: what one register of the one and one of the other give is a
// register of each next row, so that nothing is ever reversed, nor loaded across two stores.
struct Lattice {
    Vorn32f *forward, *backward;
    Lattice(Vorn32f* scratch, std::ptrdiff_t n) : forward(scratch), backward(scratch + stepRow(n)) {}
    // The registers of n coefficients, zeros.
    void clear(std::ptrdiff_t n) const {
        for (std::ptrdiff_t i = 0; i < n; i += 4) {
            store(forward + i, splat<f32x4>(0));
            store(backward + i, splat<f32x4>(0));
        }
    }
};

constexpr std::int32_t laneNumbers[4] = {0, 1, 2, 3};

}  // namespace

std::ptrdiff_t stepDown(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t n, Vorn32f* scratch) {
    const Lattice w(scratch, n);
    w.clear(n);
    for (std::ptrdiff_t i = 0; i < n; ++i) w.forward[i] = src[i];
    for (std::ptrdiff_t i = 0; i < n - 1; ++i) w.backward[i] = src[n - 2 - i];
    Vorn32f last = src[n - 1];
    for (std::ptrdiff_t m = n - 1;; --m) {
        const Vorn32f k = 0.0f - last, d = 1.0f / (1.0f - k * k);
        if (k == 1.0f || k == -1.0f || k != k) return m + 1;
        dst[m] = k;
        if (m == 0) return 0;
        const f32x4 ks = splat<f32x4>(k), ds = splat<f32x4>(d);
        const auto step = [=](std::ptrdiff_t i) __attribute__((always_inline)) {
            const f32x4 f = load<f32x4>(w.forward + i), b = load<f32x4>(w.backward + i);
            store(w.forward + i, (b * ks + f) * ds);
            return (f * ks + b) * ds;
        };
        // The new row from the last to the first; its first one, w[m-1], is the next k, and leaves the row.
        f32x4 backward = step(0);
        last = firstLane(backward);
        for (std::ptrdiff_t i = 4; i < m; i += 4) {
            const f32x4 next = step(i);
            store(w.backward + i - 4, fromSecond(backward, next));
            backward = next;
        }
        store(w.backward + (m - 1) / 4 * 4, fromSecond(backward, backward));
    }
}

void stepUp(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t n, Vorn32f* scratch) {
    const Lattice w(scratch, n);
    w.clear(n);
    for (std::ptrdiff_t m = 0; m < n; ++m) {
        const f32x4 k = splat<f32x4>(src[m]), joining = splat<f32x4>(0) - k;
        f32x4 before = joining;
        const std::ptrdiff_t end = m / 4 * 4;
        const auto step = [&](std::ptrdiff_t i) __attribute__((always_inline)) {
            const f32x4 f = load<f32x4>(w.forward + i), b = load<f32x4>(w.backward + i), next = b - f * k;
            store(w.backward + i, fromLast(before, next));
            before = next;
            return f - b * k;
        };
        for (std::ptrdiff_t i = 0; i < end; i += 4) store(w.forward + i, step(i));
        const mask32x4 joins = load<i32x4>(laneNumbers) == splat<i32x4>(static_cast<std::int32_t>(m - end));
        store(w.forward + end, select(joins, joining, step(end)));
    }
    std::copy_n(w.forward, n, dst);
}

}  // namespace vorn::conversion

using namespace vorn;

namespace {

using conversion::stepOnStack;
using conversion::stepRow;
using StepScratch = ShortScratch<Vorn32f, stepOnStack>;

}  // namespace

VornStatus vornsLPToReflection_32f(const Vorn32f* src, Vorn32f* dst, int n) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(n));
    const StepScratch scratch(2 * stepRow(n));
    if (!scratch) return vornStsMemAllocErr;
    return require(conversion::stepDown(src, dst, n, scratch.get()) == 0, vornStsUnstableErr);
}

VornStatus vornsReflectionToLP_32f(const Vorn32f* src, Vorn32f* dst, int n) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(n));
    const StepScratch scratch(2 * stepRow(n));
    if (!scratch) return vornStsMemAllocErr;
    conversion::stepUp(src, dst, n, scratch.get());
    return vornStsNoErr;
}

// An unstable filter is no error here: what the recursion has reached is stored, and the rest of dst left alone.
VornStatus vornsLPToReflection_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int n, int scale) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(n));
    const StepScratch scratch(2 * stepRow(n));
    if (!scratch) return vornStsMemAllocErr;
    return conversion::throughSingles(
        src, dst, n, oppositeScale(scale), WrappedStore{scale},
        [&](const Vorn32f* x, Vorn32f* y, std::ptrdiff_t) { return conversion::stepDown(x, y, n, scratch.get()); });
}

VornStatus vornsReflectionToLP_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int n, int scale) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(n));
    const StepScratch scratch(2 * stepRow(n));
    if (!scratch) return vornStsMemAllocErr;
    return conversion::throughSingles(src, dst, n, oppositeScale(scale), PackedStore{scale},
                                      [&](const Vorn32f* x, Vorn32f* y, std::ptrdiff_t) {
                                          conversion::stepUp(x, y, n, scratch.get());
                                          return std::ptrdiff_t{0};
                                      });
}
