// Merging, distance and splitting of Gaussians: the exported functions.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "estimation/clustering/logarithms.h"
#include "estimation/updates/constant.h"
#include "estimation/updates/formula.h"
#include "frame/checks.h"
#include "frame/rounding.h"
#include "loops/operands.h"
#include "simd/divide.h"
#include "vornsr/estimation.h"
#include "vornsr/frame.h"
#include "vornsr/signal.h"

namespace vorn::clustering {
namespace {

// Two diagonal Gaussians.
template <class T>
struct Pair {
    const T *mean1, *var1, *mean2, *var2;
    T wgt1, wgt2;
    T weight() const { return wgt1 + wgt2; }  // both together, in the precision of the Gaussians
};

// Mean and variance of both together, of a register or of one element.
template <class V>
struct Pooled {
    V mean, var;
    VORN_INLINE Pooled(V mean1, V var1, V mean2, V var2, V wgt1, V wgt2, V weight)
        : mean(divided(wgt1 * mean1 + wgt2 * mean2, weight)),
          var(divided((mean1 * mean1 + var1) * wgt1 + (mean2 * mean2 + var2) * wgt2, weight) - mean * mean) {}
};

// ---- Merging

// Stores a register's elements up to the first one whose variance has no logarithm. Not a number counts as a zero.
VORN_NOINLINE VornStatus storeUpToBad(const float* mean, const float* var, std::ptrdiff_t n, float* dstMean,
                                      float* dstVar, double* constant, float* dstGConst) {
    for (std::ptrdiff_t k = 0; k < n; ++k) {
        dstMean[k] = mean[k];
        dstVar[k] = var[k];
        switch (kindOf(var[k])) {
            case Argument::good:
                *constant -= log64(var[k]);
                break;
            case Argument::zero:
                *dstGConst = vornConstantOfINF_32f;
                return vornStsLnZeroArg;
            case Argument::negative:
                *dstGConst = vornConstantOfNAN_32f;
                return vornStsLnNegArg;
        }
    }
    return vornStsNoErr;
}

// In single, element by element as far as the caller can tell: nothing behind a bad variance is written.
VORN_NOINLINE VornStatus mergeSingle(const Pair<float>& pair, float* dstMean, float* dstVar, std::ptrdiff_t len,
                                     float* dstGConst, double* sum) {
    using V = f32xN;
    const V wgt1 = splat<V>(pair.wgt1), wgt2 = splat<V>(pair.wgt2), weight = splat<V>(pair.weight());
    double constant = 0.0;
    for (std::ptrdiff_t i = 0; i < len; i += V::lanes) {
        const std::ptrdiff_t n = std::min<std::ptrdiff_t>(V::lanes, len - i);
        // Variances of 1 behind the last element, so that it is not taken for a bad one.
        const auto loaded = [=]<int rest>(const float* p) __attribute__((always_inline)) {
            return n == V::lanes ? load<V>(p + i) : partOf<V, rest>(p + i, n);
        };
        const Pooled<V> pooled(loaded.template operator()<0>(pair.mean1), loaded.template operator()<1>(pair.var1),
                               loaded.template operator()<0>(pair.mean2), loaded.template operator()<1>(pair.var2),
                               wgt1, wgt2, weight);
        if (all(isNormalPositive(pooled.var))) [[likely]] {
            if (n == V::lanes) {
                store(dstMean + i, pooled.mean);
                store(dstVar + i, pooled.var);
            } else {
                storePart(dstMean + i, pooled.mean, n);
                storePart(dstVar + i, pooled.var, n);
            }
            alignas(f64xN) double ln[V::lanes];
            store(ln, logOfNormal(widenLow(pooled.var)));
            store(ln + f64xN::lanes, logOfNormal(widenHigh(pooled.var)));
            for (std::ptrdiff_t k = 0; k < n; ++k) constant -= ln[k];
        } else {
            alignas(V) float mean[V::lanes], var[V::lanes];
            store(mean, pooled.mean);
            store(var, pooled.var);
            const VornStatus status = storeUpToBad(mean, var, n, dstMean + i, dstVar + i, &constant, dstGConst);
            if (status != vornStsNoErr) return status;
        }
    }
    *sum = constant;
    return vornStsNoErr;
}

struct MergedDoubles {
    using Element = double;
    using V = f64xN;
    static constexpr bool light = false;
    Pair<double> of;
    double *mean, *var;
    V wgt1, wgt2, weight;
    MergedDoubles(const Pair<double>& pair, double* dstMean, double* dstVar)
        : of(pair),
          mean(dstMean),
          var(dstVar),
          wgt1(splat<V>(pair.wgt1)),
          wgt2(splat<V>(pair.wgt2)),
          weight(splat<V>(pair.weight())) {}

    template <class Lanes>
    VORN_INLINE Pooled<V> at(Lanes lanes, std::int64_t i) const {
        return {lanes.load(of.mean1 + i),
                lanes.load(of.var1 + i),
                lanes.load(of.mean2 + i),
                lanes.load(of.var2 + i),
                wgt1,
                wgt2,
                weight};
    }
    template <class Lanes>
    VORN_INLINE void put(Lanes lanes, std::int64_t i, const Pooled<V>& pooled) const {
        lanes.store(mean + i, pooled.mean);
        lanes.store(var + i, pooled.var);
    }
    double* result() const { return mean; }
};
VORN_NOINLINE void mergeDouble(const Pair<double>& pair, double* dstMean, double* dstVar, std::int64_t len) {
    forElementsInCache(len, MergedDoubles(pair, dstMean, dstVar));
}

// ---- Distance

// The pooled variances alone, in double.
template <class T>
struct PooledVariances {
    Pair<T> of;
    double weight;
    template <class V>
    VORN_INLINE V at(std::ptrdiff_t i) const {
        const auto all = [](double x) __attribute__((always_inline)) { return allLanes<V>(x); };
        return Pooled<V>(doublesAt<V>(of.mean1 + i), doublesAt<V>(of.var1 + i), doublesAt<V>(of.mean2 + i),
                         doublesAt<V>(of.var2 + i), all(of.wgt1), all(of.wgt2), all(weight))
            .var;
    }
};

// Of the two lengths up to which each variance has a logarithm of its own, and bad ones are met in their order.
template <class T>
constexpr int shortLength = sizeof(T) == 4 ? 12 : 10;

// Sums of logarithms take runs of so many elements; the sum of a vector is that of its runs.
constexpr std::ptrdiff_t runOfSums = 512;

// The sum of the logarithms, or the status and what stands in the place of the distance.
template <class T>
VORN_NOINLINE VornStatus sumShort(const PooledVariances<T>& variances, std::ptrdiff_t len, double* sum) {
    static_assert(shortLength<T> <= runLength);
    ShortRun run;
    fillRun(variances, 0, len, run.begin());
    const bool taken = takeLogarithms(run, len);
    double total = 0.0;
    for (std::ptrdiff_t k = 0; k < len; ++k) {
        if (taken) {
            total += run[k];
        } else if (const Argument kind = kindOf(run[k]); kind == Argument::good) {
            total += log64(run[k]);
        } else {
            *sum = kind == Argument::zero ? vornConstantOfINF_64f : vornConstantOfNAN_64f;
            return kind == Argument::zero ? vornStsLnZeroArg : vornStsLnNegArg;
        }
    }
    *sum = total;
    return vornStsNoErr;
}
template <class T>
VORN_NOINLINE VornStatus sumLong(const PooledVariances<T>& variances, std::ptrdiff_t len, double* sum) {
    double total = 0.0;
    Run<runOfSums> run;
    for (std::ptrdiff_t i = 0; i < len; i += runOfSums) {
        const std::ptrdiff_t n = std::min(runOfSums, len - i);
        fillRun(variances, i, n, run.begin());
        double ofRun = 0.0;
        const VornStatus status = vornsSumLn_64f(run.begin(), static_cast<int>(n), &ofRun);
        if (status != vornStsNoErr) {
            *sum = ofRun;
            return status;
        }
        total += ofRun;
        if (std::isnan(ofRun)) break;  // a sum ends at a variance that is infinite or not a number
    }
    *sum = total;
    return vornStsNoErr;
}

template <class T>
VornStatus distance(const Pair<T>& pair, int len, T* dst, T gconst1, T gconst2) {
    const T constants = pair.wgt1 * gconst1 + pair.wgt2 * gconst2;
    const PooledVariances<T> variances{pair, static_cast<double>(pair.weight())};
    double sum = 0.0;
    const VornStatus status = len <= shortLength<T> ? sumShort(variances, len, &sum) : sumLong(variances, len, &sum);
    *dst = static_cast<T>(status != vornStsNoErr
                              ? sum
                              : static_cast<double>(constants) - variances.weight * (logTwoPi<double>(len) - sum));
    return status;
}

// ---- Splitting

// How far the means part: val standard deviations, in the type of the elements, or in double and rounded once.
template <class V>
struct InElementType {
    V val;
    explicit InElementType(typename V::Element x) : val(splat<V>(x)) {}
    VORN_INLINE V operator()(V var) const { return val * sqrtOf(var); }
};
struct InDouble {
    f64xN val;
    explicit InDouble(float x) : val(splat<f64xN>(x)) {}
    VORN_INLINE f32xN operator()(f32xN var) const {
        return narrow(val * sqrtOf(widenLow(var)), val * sqrtOf(widenHigh(var)));
    }
};

template <class Shift, class T>
struct HalvesOfGaussian {
    using Element = T;
    using V = Wide<T>;
    static constexpr bool light = false;
    struct Results {
        V up, down, var;
    };
    T* mean;
    const T* var;
    T *dstMean, *dstVar;
    Shift shift;

    template <class Lanes>
    VORN_INLINE Results at(Lanes lanes, std::int64_t i) const {
        const V m = lanes.load(mean + i), v = lanes.load(var + i), d = shift(v);
        return {m + d, m - d, v};
    }
    template <class Lanes>
    VORN_INLINE void put(Lanes lanes, std::int64_t i, const Results& results) const {
        lanes.store(dstMean + i, results.down);
        lanes.store(mean + i, results.up);
        lanes.store(dstVar + i, results.var);
    }
    T* result() const { return mean; }
};
template <class Shift, class T>
VORN_NOINLINE void split(T* srcDstMean, const T* srcVar, T* dstMean, T* dstVar, std::int64_t len, T val) {
    forElementsInCache(len, HalvesOfGaussian<Shift, T>{srcDstMean, srcVar, dstMean, dstVar, Shift(val)});
}

}  // namespace
}  // namespace vorn::clustering

using namespace vorn;
using namespace vorn::clustering;

VornStatus vornsGaussianMerge_32f(const Vorn32f* srcMean1, const Vorn32f* srcVar1, const Vorn32f* srcMean2,
                                  const Vorn32f* srcVar2, Vorn32f* dstMean, Vorn32f* dstVar, int len,
                                  Vorn32f* dstGConst, Vorn32f wgt1, Vorn32f wgt2) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(srcMean1, srcVar1, srcMean2, srcVar2, dstMean, dstVar, dstGConst));
    const Pair<Vorn32f> pair{srcMean1, srcVar1, srcMean2, srcVar2, wgt1, wgt2};
    double logarithms = 0.0;
    const VornStatus status = mergeSingle(pair, dstMean, dstVar, len, dstGConst, &logarithms);
    if (status == vornStsNoErr) *dstGConst = static_cast<Vorn32f>(logTwoPi<double>(len) + logarithms);
    return status;
}

VornStatus vornsGaussianMerge_64f(const Vorn64f* srcMean1, const Vorn64f* srcVar1, const Vorn64f* srcMean2,
                                  const Vorn64f* srcVar2, Vorn64f* dstMean, Vorn64f* dstVar, int len,
                                  Vorn64f* dstGConst, Vorn64f wgt1, Vorn64f wgt2) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(srcMean1, srcVar1, srcMean2, srcVar2, dstMean, dstVar, dstGConst));
    mergeDouble({srcMean1, srcVar1, srcMean2, srcVar2, wgt1, wgt2}, dstMean, dstVar, len);
    Vorn64f logarithms = 0;
    const VornStatus status = vornsSumLn_64f(dstVar, len, &logarithms);
    *dstGConst = status == vornStsNoErr ? logTwoPi<Vorn64f>(len) + (0.0 - logarithms) : logarithms;
    return status;
}

VornStatus vornsGaussianDist_32f(const Vorn32f* srcMean1, const Vorn32f* srcVar1, const Vorn32f* srcMean2,
                                 const Vorn32f* srcVar2, int len, Vorn32f* dst, Vorn32f wgt1, Vorn32f gconst1,
                                 Vorn32f wgt2, Vorn32f gconst2) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(srcMean1, srcVar1, srcMean2, srcVar2, dst));
    return distance<Vorn32f>({srcMean1, srcVar1, srcMean2, srcVar2, wgt1, wgt2}, len, dst, gconst1, gconst2);
}

VornStatus vornsGaussianDist_64f(const Vorn64f* srcMean1, const Vorn64f* srcVar1, const Vorn64f* srcMean2,
                                 const Vorn64f* srcVar2, int len, Vorn64f* dst, Vorn64f wgt1, Vorn64f gconst1,
                                 Vorn64f wgt2, Vorn64f gconst2) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(srcMean1, srcVar1, srcMean2, srcVar2, dst));
    return distance<Vorn64f>({srcMean1, srcVar1, srcMean2, srcVar2, wgt1, wgt2}, len, dst, gconst1, gconst2);
}

// The length is checked first here, and last in double.
VornStatus vornsGaussianSplit_32f(Vorn32f* srcDstMean, const Vorn32f* srcVar, Vorn32f* dstMean, Vorn32f* dstVar,
                                  int len, Vorn32f val) {
    VORN_CHECK(positive(len));
    VORN_CHECK(notNull(srcDstMean, srcVar, dstMean, dstVar));
    if (allAligned(srcDstMean, srcVar, dstMean, dstVar)) {
        split<InElementType<f32xN>>(srcDstMean, srcVar, dstMean, dstVar, len, val);
    } else {
        split<InDouble>(srcDstMean, srcVar, dstMean, dstVar, len, val);
    }
    return vornStsNoErr;
}

VornStatus vornsGaussianSplit_64f(Vorn64f* srcDstMean, const Vorn64f* srcVar, Vorn64f* dstMean, Vorn64f* dstVar,
                                  int len, Vorn64f val) {
    VORN_CHECK(notNull(srcDstMean, srcVar, dstMean, dstVar));
    VORN_CHECK(positive(len));
    split<InElementType<f64xN>>(srcDstMean, srcVar, dstMean, dstVar, len, val);
    return vornStsNoErr;
}
