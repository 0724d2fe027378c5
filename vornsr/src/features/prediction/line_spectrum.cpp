// Line spectral frequencies: the way back to coefficients, and the exported functions.
#include "features/prediction/line_spectrum.h"

#include <algorithm>

#include "features/detour.h"
#include "features/prediction/through_singles.h"
#include "frame/checks.h"
#include "frame/scale.h"
#include "vornsr/features.h"

namespace vorn::conversion {
namespace {

// A factor that the compiler does not know, lest it turns signs around: in the caller's directed modes they count.
inline Vorn32f opaque(Vorn32f x) {
    asm("" : "+x"(x));
    return x;
}

// The product of the factors 1 - 2 x[2m] z + z^2, over m below degree, of which the first half of the coefficients says
// all. c has room for one more than there are.
void expand(const Vorn32f* x, std::ptrdiff_t degree, Vorn32f* c) {
    const Vorn32f minusTwo = opaque(-2.0f);
    c[0] = 1.0f;
    if (degree > 0) c[1] = minusTwo * x[0];
    for (std::ptrdiff_t m = 2; m <= degree; ++m) {
        const Vorn32f g = minusTwo * x[2 * m - 2];
        c[m] = g * c[m - 1] + 2.0f * c[m - 2];
        for (std::ptrdiff_t j = m - 1; j >= 2; --j) c[j] = g * c[j - 1] + c[j] + c[j - 2];
        c[1] = c[1] + g;
    }
}

}  // namespace

void coefficientsFromLines(const Vorn32f* x, Vorn32f* dst, std::ptrdiff_t order, Vorn32f* polynomials) {
    const std::ptrdiff_t nP = degreeOfP(order), nQ = degreeOfQ(order);
    Vorn32f *p = polynomials, *q = polynomials + nP + 1;
    q[nP] = 0.0f;
    expand(x, nP, p);
    expand(x + 1, nQ, q);
    if (nP == nQ) {
        for (std::ptrdiff_t i = nP; i >= 1; --i) {
            p[i] = p[i] + p[i - 1];
            q[i] = q[i] - q[i - 1];
        }
        for (std::ptrdiff_t i = 1; i <= nP; ++i) {
            dst[i - 1] = (p[i] + q[i]) * 0.5f;
            dst[order - i] = (p[i] - q[i]) * 0.5f;
        }
    } else {
        const Vorn32f s = opaque(-0.5f);
        dst[0] = (p[1] + q[1]) * s;
        for (std::ptrdiff_t i = 2; i < nP; ++i) dst[i - 1] = (p[i] + q[i] - q[i - 2]) * s;
        dst[nP - 1] = p[nP] * s;
        dst[order - 1] = (p[1] - q[1]) * s;
        if (order >= 4) dst[order - 2] = (p[2] + 1.0f - q[2]) * s;
        for (std::ptrdiff_t i = 3; i <= nQ; ++i) dst[order - i] = (p[i] - q[i] + q[i - 2]) * s;
    }
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
    const CoefficientScratch polynomials(coefficientScratch(order));
    if (!polynomials) return vornStsMemAllocErr;
    coefficientsFromLines(src, dst, order, polynomials.get());
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
    const CoefficientScratch polynomials(coefficientScratch(order));
    if (!polynomials) return vornStsMemAllocErr;
    return throughSingles(src, dst, order, scaleIn, NearestStore{scaleOut},
                          [&](const Vorn32f* x, Vorn32f* y, std::ptrdiff_t) {
                              coefficientsFromLines(x, y, order, polynomials.get());
                              return std::ptrdiff_t{0};
                          });
}
