// Prediction coefficients and cepstrum: the recursions and the exported functions.
#include "features/prediction/cepstrum.h"

#include <algorithm>
#include <cstdint>

#include "features/prediction/through_singles.h"
#include "frame/checks.h"
#include "simd/simd.h"
#include "vornsr/features.h"

namespace vorn::conversion {
namespace {

inline Vorn32f element(Vorn32f acc, std::ptrdiff_t i, Vorn32f src) {
    return 0.0f - (acc / static_cast<Vorn32f>(i + 1) + src);
}

// i, i + step, i + 2 step, i + 3 step
inline i32x4 indices(std::ptrdiff_t i, std::int32_t step) {
    const std::int32_t steps[4] = {0, step, 2 * step, 3 * step};
    return splat<i32x4>(static_cast<std::int32_t>(i)) + load<i32x4>(steps);
}

}  // namespace

// The first term of each sum is the element right before it, so that all sums are one chain of additions: what can be
// done is to keep the products out of it. Elements of a moment ago are loaded one by one.
std::ptrdiff_t toCepstrum(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t n) {
    constexpr std::ptrdiff_t recent = 4;
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        Vorn32f acc = 0;
        std::ptrdiff_t j = 0;
        const auto addUpTo = [&](std::ptrdiff_t end) __attribute__((always_inline)) {
            for (; j < end; ++j) acc += static_cast<Vorn32f>(i - j) * src[j] * dst[i - 1 - j];
        };
        addUpTo(std::min(i, recent));
        for (; j + 4 <= i; j += 4) {
            alignas(f32x4) Vorn32f products[4];
            store(products, toFloat(indices(i - j, -1)) * load<f32x4>(src + j) * reverse(load<f32x4>(dst + i - 4 - j)));
            for (const Vorn32f product : products) acc += product;
        }
        addUpTo(i);
        dst[i] = element(acc, i, src[i]);
    }
    return 0;
}

// Here it is the last one. So four sums take in together what lies before the first of them, in the order of the sums,
// and then each the few elements that are left. Where there are no four sums any more, the first loads would end behind
// the source: so many elements are taken in one by one.
std::ptrdiff_t fromCepstrum(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t n) {
    for (std::ptrdiff_t block = 0; block < n; block += 4) {
        const std::ptrdiff_t end = std::min(block + 4, n), behind = block + 4 - end;
        alignas(f32x4) Vorn32f acc[4] = {};
        const auto take = [&](std::ptrdiff_t i, std::ptrdiff_t j) __attribute__((always_inline)) {
            acc[i - block] += static_cast<Vorn32f>(i - j) * src[i - 1 - j] * dst[j];
        };
        std::ptrdiff_t taken = 0;
        for (; taken < std::min(behind, block); ++taken) {
            for (std::ptrdiff_t i = block; i < end; ++i) take(i, taken);
        }
        if (taken < block) {
            f32x4 sums = load<f32x4>(acc);
            i32x4 weights = indices(block - taken, 1);
            for (; taken < block; ++taken, weights = weights - splat<i32x4>(1)) {
                sums = sums + toFloat(weights) * load<f32x4>(src + block - 1 - taken) * splat<f32x4>(dst[taken]);
            }
            store(acc, sums);
        }
        for (std::ptrdiff_t i = block; i < end; ++i) {
            for (std::ptrdiff_t j = block; j < i; ++j) take(i, j);
            dst[i] = element(acc[i - block], i, src[i]);
        }
    }
    return 0;
}

}  // namespace vorn::conversion

using namespace vorn;

VornStatus vornsLPToCepstrum_32f(const Vorn32f* src, Vorn32f* dst, int n) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(n));
    conversion::toCepstrum(src, dst, n);
    return vornStsNoErr;
}

VornStatus vornsCepstrumToLP_32f(const Vorn32f* src, Vorn32f* dst, int n) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(n));
    conversion::fromCepstrum(src, dst, n);
    return vornStsNoErr;
}

VornStatus vornsLPToCepstrum_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int n, int scale) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(n));
    return conversion::throughSingles(src, dst, n, oppositeScale(scale), WrappedStore{scale}, conversion::toCepstrum);
}

VornStatus vornsCepstrumToLP_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int n, int scale) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(n));
    return conversion::throughSingles(src, dst, n, oppositeScale(scale), NearestStore{scale}, conversion::fromCepstrum);
}
