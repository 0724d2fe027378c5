// Statistics of states and the likelihood of a pool of them: the exported functions.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "estimation/clustering/logarithms.h"
#include "estimation/updates/formula.h"
#include "frame/checks.h"
#include "frame/rounding.h"
#include "simd/divide.h"
#include "vornsr/estimation.h"
#include "vornsr/frame.h"

namespace vorn::clustering {
namespace {

// ---- Statistics of one state: occ times the mean and the mean square. Two groupings of the square, which round
// differently on purpose; scaledMean is occ times the mean.

// From inverse variances.
template <class V>
struct SumTimesOcc {
    static constexpr bool light = false;
    static VORN_INLINE V square(V mean, V inverseVar, V, V occ) {
        return (divided(splat<V>(1), inverseVar) + mean * mean) * occ;
    }
};
template <class V>
struct TermsTimesOcc {
    static constexpr bool light = false;
    static VORN_INLINE V square(V mean, V inverseVar, V scaledMean, V occ) {
        if constexpr (sizeof(typename V::Element) == sizeof(Vorn32f)) {
            return divided(splat<V>(1), inverseVar) * occ + scaledMean * mean;
        } else {
            return scaledMean * mean + divided(occ, inverseVar);
        }
    }
};
// From variances.
template <class V>
struct DirectSumTimesOcc {
    static constexpr bool light = true;
    static VORN_INLINE V square(V mean, V var, V, V occ) { return (mean * mean + var) * occ; }
};

template <template <class> class Grouping, class T>
struct Statistics {
    using Element = T;
    using V = Wide<T>;
    static constexpr bool light = Grouping<V>::light;
    struct Results {
        V sum, sqr;
    };
    const T *mean, *var;
    T *sum, *sqr;
    V occ;

    template <class Lanes>
    VORN_INLINE Results at(Lanes lanes, std::int64_t i) const {
        const V m = lanes.load(mean + i), scaledMean = m * occ;
        return {scaledMean, Grouping<V>::square(m, lanes.load(var + i), scaledMean, occ)};
    }
    template <class Lanes>
    VORN_INLINE void put(Lanes lanes, std::int64_t i, const Results& results) const {
        lanes.store(sum + i, results.sum);
        lanes.store(sqr + i, results.sqr);
    }
    T* result() const { return sum; }
};
template <template <class> class Grouping, class T>
VORN_NOINLINE void statistics(const T* srcMean, const T* srcVar, T* dstSum, T* dstSqr, std::int64_t len, T occ) {
    forElementsInCache(len, Statistics<Grouping, T>{srcMean, srcVar, dstSum, dstSqr, splat<Wide<T>>(occ)});
}

// The length and the addresses choose the grouping.
template <class T>
void statisticsOfInverse(const T* srcMean, const T* srcVar, T* dstSum, T* dstSqr, int len, T occ) {
    if (len >= 8 && allAligned(srcMean, srcVar, dstSum, dstSqr)) {
        statistics<TermsTimesOcc>(srcMean, srcVar, dstSum, dstSqr, len, occ);
    } else {
        statistics<SumTimesOcc>(srcMean, srcVar, dstSum, dstSqr, len, occ);
    }
}

// ---- The likelihood of a pool.

constexpr double noLikelihood = -10000000000.0;  // of an empty pool
constexpr double lnTwoPi = 1.8378770664093456;

// occ^2 times the variance of an element.
template <class T>
struct ScaledVariances {
    const T *sum, *sqr;
    double occ;
    template <class V>
    VORN_INLINE V at(std::ptrdiff_t i) const {
        const V s = doublesAt<V>(sum + i), q = doublesAt<V>(sqr + i);
        return q * allLanes<V>(occ) - s * s;
    }
};

// Adds the logarithms of a run's numbers that have one, up to a negative one; zeros and not-a-numbers are remembered.
VORN_NOINLINE bool addGoodLogarithms(const double* x, std::ptrdiff_t n, double* sum, bool* anyZero) {
    for (std::ptrdiff_t k = 0; k < n; ++k) {
        switch (kindOf(x[k])) {
            case Argument::good:
                *sum += log64(x[k]);
                break;
            case Argument::zero:
                *anyZero = true;
                break;
            case Argument::negative:
                return false;
        }
    }
    return true;
}

template <class T>
VORN_NOINLINE VornStatus sumLogarithms(const ScaledVariances<T>& variances, std::ptrdiff_t len, double* result) {
    double sum = 0.0;
    bool anyZero = false;
    for (std::ptrdiff_t i = 0; i < len; i += runLength) {
        const std::ptrdiff_t n = std::min(runLength, len - i);
        ShortRun run;
        fillRun(variances, i, n, run.begin());
        if (takeLogarithms(run, n)) [[likely]] {
            for (std::ptrdiff_t k = 0; k < n; ++k) sum += run[k];
        } else if (!addGoodLogarithms(run.begin(), n, &sum, &anyZero)) {
            return vornStsLnNegArg;
        }
    }
    *result = sum;
    return anyZero ? vornStsLnZeroArg : vornStsNoErr;
}

template <class T>
VornStatus likelihood(const T* srcSum, const T* srcSqr, int len, double* dst, double occ) {
    VORN_CHECK(require(occ >= 0, vornStsNegOccErr));
    *dst = noLikelihood;
    if (occ == 0) return vornStsZeroOcc;
    const double lnOcc = log64(occ);
    const double constant = static_cast<double>(len) * (((lnOcc - 1.0) - lnTwoPi) + lnOcc);
    double sum = 0.0;
    const VornStatus status = sumLogarithms(ScaledVariances<T>{srcSum, srcSqr, occ}, len, &sum);
    switch (status) {
        case vornStsLnNegArg:
            *dst = vornConstantOfNAN_64f;
            break;
        case vornStsLnZeroArg:
            *dst = vornConstantOfINF_NEG_64f;
            break;
        default:
            *dst = (occ * 0.5) * (constant - sum);
            break;
    }
    return status;
}

}  // namespace
}  // namespace vorn::clustering

using namespace vorn;
using namespace vorn::clustering;

VornStatus vornsDcsClustLAccumulate_32f(const Vorn32f* srcMean, const Vorn32f* srcVar, Vorn32f* dstSum, Vorn32f* dstSqr,
                                        int len, Vorn32f occ) {
    VORN_CHECK(notNull(srcMean, srcVar, dstSum, dstSqr));
    VORN_CHECK(positive(len));
    statisticsOfInverse(srcMean, srcVar, dstSum, dstSqr, len, occ);
    return vornStsNoErr;
}

VornStatus vornsDcsClustLAccumulate_64f(const Vorn64f* srcMean, const Vorn64f* srcVar, Vorn64f* dstSum, Vorn64f* dstSqr,
                                        int len, Vorn64f occ) {
    VORN_CHECK(notNull(srcMean, srcVar, dstSum, dstSqr));
    VORN_CHECK(positive(len));
    statisticsOfInverse(srcMean, srcVar, dstSum, dstSqr, len, occ);
    return vornStsNoErr;
}

VornStatus vornsDcsClustLAccumulate_DirectVar_32f(const Vorn32f* srcMean, const Vorn32f* srcVar, Vorn32f* dstSum,
                                                  Vorn32f* dstSqr, int len, Vorn32f occ) {
    VORN_CHECK(notNull(srcMean, srcVar, dstSum, dstSqr));
    VORN_CHECK(positive(len));
    statistics<DirectSumTimesOcc>(srcMean, srcVar, dstSum, dstSqr, len, occ);
    return vornStsNoErr;
}

VornStatus vornsDcsClustLAccumulate_DirectVar_64f(const Vorn64f* srcMean, const Vorn64f* srcVar, Vorn64f* dstSum,
                                                  Vorn64f* dstSqr, int len, Vorn64f occ) {
    VORN_CHECK(notNull(srcMean, srcVar, dstSum, dstSqr));
    VORN_CHECK(positive(len));
    statistics<DirectSumTimesOcc>(srcMean, srcVar, dstSum, dstSqr, len, occ);
    return vornStsNoErr;
}

VornStatus vornsDcsClustLCompute_32f64f(const Vorn32f* srcSum, const Vorn32f* srcSqr, int len, Vorn64f* dst,
                                        Vorn32f occ) {
    VORN_CHECK(notNull(srcSum, srcSqr, dst));
    VORN_CHECK(positive(len));
    return likelihood(srcSum, srcSqr, len, dst, static_cast<double>(occ));
}

VornStatus vornsDcsClustLCompute_64f(const Vorn64f* srcSum, const Vorn64f* srcSqr, int len, Vorn64f* dst, Vorn64f occ) {
    VORN_CHECK(notNull(srcSum, srcSqr, dst));
    VORN_CHECK(positive(len));
    return likelihood(srcSum, srcSqr, len, dst, occ);
}
