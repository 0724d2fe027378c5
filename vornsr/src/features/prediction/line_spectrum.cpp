// Line spectral frequencies: the way back to coefficients, and the exported functions.
#include "features/prediction/line_spectrum.h"

#include <bit>

#include "features/detour.h"
#include "features/prediction/through_singles.h"
#include "frame/checks.h"
#include "frame/opaque.h"
#include "frame/scale.h"
#include "simd/neighbours.h"
#include "simd/simd.h"
#include "vornsr/features.h"

namespace vorn::conversion {
namespace {

// The products of the factors 1 - 2 x z + z^2 over the lines x of P and of Q, of which the first half of the
// coefficients says all, as pairs of one of P and one of Q, two pairs a register. A new factor makes of each
// coefficient the sum of three: the one itself, g times the one below it, and the one below that.
void expand(const Vorn32f* x, std::ptrdiff_t order, Vorn32f* pairs) {
    const std::ptrdiff_t nP = degreeOfP(order);
    const f32x4 minusTwo = splat<f32x4>(opaque(-2.0f));
    const Vorn32f noBits = 0, allBits = std::bit_cast<Vorn32f>(~0u);
    const Vorn32f lowPair[4] = {allBits, allBits, noBits, noBits}, ofP[4] = {allBits, noBits, allBits, noBits};
    const auto only = [](const Vorn32f* bits) __attribute__((always_inline)) {
        return bitsOf(load<f32x4>(bits)) == splat<i32x4>(-1);
    };
    store(pairs, fromThird(splat<f32x4>(1), minusTwo * (order > 1 ? loadFirst<f32x4, 2>(x) : loadFirst<f32x4, 1>(x))));
    for (std::ptrdiff_t m = 2; m <= nP; ++m) {
        const bool lastOfP = 2 * m > order;  // an odd order has one line more in P, and Q stays as it is
        const Vorn32f* lines = x + 2 * m - 2;
        const f32x4 once = minusTwo * (lastOfP ? loadFirst<f32x4, 1>(lines) : loadFirst<f32x4, 2>(lines));
        const f32x4 onSecond = fromThird(splat<f32x4>(0), once), g = fromThird(onSecond, once);
        const auto put = [&](std::ptrdiff_t at, f32x4 old, f32x4 now) __attribute__((always_inline)) {
            store(pairs + at, lastOfP ? select(only(ofP), now, old) : now);
        };
        // The register of coefficient m, which had none before: twice the one below the next comes in its place.
        std::ptrdiff_t at = m / 2 * 4;
        f32x4 old = m % 2 == 0 ? splat<f32x4>(0) : load<f32x4>(pairs + at), below = load<f32x4>(pairs + at - 4);
        const f32x4 product = g * fromThird(below, old), inner = product + old + below,
                    outer = product + (below + below);
        put(at, old, m % 2 == 0 ? outer : select(only(lowPair), inner, outer));
        for (at -= 4; at > 0; at -= 4) {
            old = below;
            below = load<f32x4>(pairs + at - 4);
            put(at, old, g * fromThird(below, old) + old + below);
        }
        put(0, below, below + onSecond);
    }
}

}  // namespace

void coefficientsFromLines(const Vorn32f* x, Vorn32f* dst, std::ptrdiff_t order, Vorn32f* pairs) {
    const std::ptrdiff_t nP = degreeOfP(order), nQ = degreeOfQ(order);
    expand(x, order, pairs);
    const auto p = [=](std::ptrdiff_t i) { return pairs[2 * i]; };
    const auto q = [=](std::ptrdiff_t i) { return pairs[2 * i + 1]; };
    if (nP == nQ) {
        for (std::ptrdiff_t i = 1; i <= nP; ++i) {
            const Vorn32f sum = p(i) + p(i - 1), difference = q(i) - q(i - 1);
            dst[i - 1] = (sum + difference) * 0.5f;
            dst[order - i] = (sum - difference) * 0.5f;
        }
        return;
    }
    const Vorn32f s = opaque(-0.5f);
    dst[order - 1] = (p(1) - q(1)) * s;
    dst[0] = (p(1) + q(1)) * s;
    for (std::ptrdiff_t i = 2; i <= nQ; ++i) {
        dst[i - 1] = (p(i) + q(i) - q(i - 2)) * s;
        dst[order - i] = (i == 2 ? p(2) + 1.0f - q(2) : p(i) - q(i) + q(i - 2)) * s;
    }
    dst[nP - 1] = p(nP) * s;
}

}  // namespace vorn::conversion

using namespace vorn;
using namespace vorn::conversion;

namespace {

VornStatus searchable(const void* src, const void* dst, const int* pNRoots, int order, int nGrid, int nDiv) {
    VORN_CHECK(notNull(src, dst, pNRoots));
    VORN_CHECK(positive(nGrid, nDiv, order));
    return require(order <= nGrid, vornStsSizeErr);
}

VornStatus findLines(const Vorn32f* src, Vorn32f* dst, int order, int* pNRoots, int nGrid, int nDiv) {
    const LineScratch polynomials(lineScratch(order));
    if (!polynomials) return vornStsMemAllocErr;
    *pNRoots = linesFromCoefficients(src, dst, order, nGrid, nDiv, polynomials.get());
    return require(*pNRoots == order, vornStsNoRootErr);
}

// Neighbours may be equal.
template <class T>
bool descend(const T* x, std::ptrdiff_t n) {
    for (std::ptrdiff_t i = 0; i + 1 < n; ++i) {
        if (x[i] < x[i + 1]) return false;
    }
    return true;
}

}  // namespace

VornStatus vornsLPToLSP_32f(const Vorn32f* src, Vorn32f* dst, int order, int* pNRoots, int nGrid, int nDiv) {
    VORN_CHECK(searchable(src, dst, pNRoots, order, nGrid, nDiv));
    return findLines(src, dst, order, pNRoots, nGrid, nDiv);
}

VornStatus vornsLPToLSP_16s_Sfs(const Vorn16s* src, int scaleIn, Vorn16s* dst, int order, int* pNRoots, int nGrid,
                                int nDiv, int scaleOut) {
    VORN_CHECK(searchable(src, dst, pNRoots, order, nGrid, nDiv));
    *pNRoots = 0;
    const ShortScratch<Vorn32f, fewCoefficients> x(order);
    if (!x) return vornStsMemAllocErr;
    toSingles(src, x.get(), order, GetScale_32s32f(scaleIn));
    const VornStatus status = findLines(x.get(), x.get(), order, pNRoots, nGrid, nDiv);
    WrappedStore{scaleOut}(x.get(), dst, *pNRoots);
    return status;
}

VornStatus vornsLSPToLP_32f(const Vorn32f* src, Vorn32f* dst, int order) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(order));
    VORN_CHECK(require(!(src[0] >= 1.0f), vornStsLspOrderErr));
    VORN_CHECK(require(descend(src, order), vornStsLspOrderErr));
    VORN_CHECK(require(src[order - 1] > -1.0f, vornStsLspOrderErr));
    const CoefficientScratch pairs(coefficientScratch(order));
    if (!pairs) return vornStsMemAllocErr;
    coefficientsFromLines(src, dst, order, pairs.get());
    return vornStsNoErr;
}

// Here the limits belong to the range, and singles that round to them are not looked at again.
VornStatus vornsLSPToLP_16s_Sfs(const Vorn16s* src, int scaleIn, Vorn16s* dst, int order, int scaleOut) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(order));
    const Vorn32f one = GetScale_32s32f(oppositeScale(scaleIn));
    VORN_CHECK(require(!(static_cast<Vorn32f>(src[0]) > one), vornStsLspOrderErr));
    VORN_CHECK(require(descend(src, order), vornStsLspOrderErr));
    VORN_CHECK(require(!(static_cast<Vorn32f>(src[order - 1]) < -one), vornStsLspOrderErr));
    const CoefficientScratch pairs(coefficientScratch(order));
    if (!pairs) return vornStsMemAllocErr;
    return throughSingles(src, dst, order, scaleIn, NearestStore{scaleOut},
                          [&](const Vorn32f* x, Vorn32f* y, std::ptrdiff_t) {
                              coefficientsFromLines(x, y, order, pairs.get());
                              return std::ptrdiff_t{0};
                          });
}
