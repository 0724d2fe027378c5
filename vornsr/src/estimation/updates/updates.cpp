// New means, variances and weights from sums over the data: the exported functions and the kernels that keep their
// names.
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "estimation/updates/formula.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/rounding.h"
#include "simd/divide.h"
#include "vornsr/estimation.h"

namespace vorn {
namespace {

// ---- Occupations

// Not a number counts as negative.
template <class... T>
VornStatus notNegative(T... occupation) {
    return require((... && (occupation >= 0)), vornStsNegOccErr);
}
// A denormal occupation is none: its reciprocal may be infinite.
template <class... T>
VornStatus occupied(T... occupation) {
    return require((... && (std::fabs(occupation) > std::numeric_limits<T>::min())), vornStsZeroOcc);
}

// What turns sums over the data into averages: one reciprocal for all in single, a division each in double.
template <class T>
struct Average;
template <>
struct Average<Vorn32f> {
    static constexpr bool light = true;
    f32xN reciprocal;
    explicit Average(float r) : reciprocal(splat<f32xN>(r)) {}
    VORN_INLINE f32xN operator()(f32xN sum) const { return sum * reciprocal; }
};
template <>
struct Average<Vorn64f> {
    static constexpr bool light = false;
    f64xN occupation;
    explicit Average(double occ) : occupation(splat<f64xN>(occ)) {}
    VORN_INLINE f64xN operator()(f64xN sum) const { return divided(sum, occupation); }
};

// ---- Means

template <class T>
struct AddedAverages {
    using Element = T;
    using V = Wide<T>;
    static constexpr bool light = Average<T>::light;
    const T* sum;
    T* mean;
    Average<T> average;

    template <class Lanes>
    VORN_INLINE V at(Lanes lanes, std::int64_t i) const {
        return lanes.load(mean + i) + average(lanes.load(sum + i));
    }
    template <class Lanes>
    VORN_INLINE void put(Lanes lanes, std::int64_t i, V x) const {
        lanes.store(mean + i, x);
    }
    T* result() const { return mean; }
};

template <class T>
VORN_INLINE void addAverages(const T* src, T* srcDstMean, std::int64_t len, T scale) {
    forElementsOf(len, AddedAverages<T>{src, srcDstMean, Average<T>(scale)});
}

// ---- Variances

// A variance that is not above its floor, or not a number, is replaced by the floor. Behind the last element both are
// 0, so that none of them is above it.
template <class T>
struct FlooredVariances {
    using Element = T;
    using V = Wide<T>;
    static constexpr bool light = Average<T>::light;
    const T *meanAcc, *varAcc, *floor;
    T* dst;
    Average<T> ofMeans, ofSquares;
    mutable decltype(V() > V()) aboveFloor = splat<V>(0) > splat<V>(0);

    template <class Lanes>
    VORN_INLINE V at(Lanes lanes, std::int64_t i) const {
        const V m = ofMeans(lanes.load(meanAcc + i)), least = lanes.load(floor + i);
        const V v = ofSquares(lanes.load(varAcc + i)) - m * m;
        aboveFloor = aboveFloor | (v > least);
        return maxOf(v, least);
    }
    template <class Lanes>
    VORN_INLINE void put(Lanes lanes, std::int64_t i, V x) const {
        lanes.store(dst + i, x);
    }
    T* result() const { return dst; }
};

// vornStsBelowFloor where no variance is above its floor.
template <class T>
VORN_NOINLINE VornStatus flooredVariances(const T* meanAcc, const T* varAcc, const T* floor, T* dst, std::int64_t len,
                                          T meanScale, T varScale) {
    const FlooredVariances<T> variances{meanAcc, varAcc, floor, dst, Average<T>(meanScale), Average<T>(varScale)};
    const FormulaKernel<FlooredVariances<T>> kernel{variances};
    forEachStep(len, kernel);
    return any(variances.aboveFloor) ? vornStsNoErr : vornStsBelowFloor;
}

// ---- Weights

// Four lanes in single, two in double, to which a wider register adds its elements in their order.
template <class T>
using SumLanes = std::conditional_t<sizeof(T) == 4, f32x4, f64x2>;

template <class Sum, class V>
VORN_INLINE Sum addedInOrder(Sum sum, V x) {
    if constexpr (Sum::lanes == V::lanes) {
        return sum + x;
    } else {
        return addedInOrder(addedInOrder(sum, lowHalf(x)), highHalf(x));
    }
}
VORN_INLINE float sumOfWeights(f32x4 lanes) { return sumNeighbours(lanes); }
VORN_INLINE double sumOfWeights(f64x2 lanes) { return sumLanes(lanes); }

// What the weights are computed in: at most 32 bytes, since additions to the sum, which wait for one another, are
// slower beside registers of 64.
#if defined(VORN_SIMD_AVX512)
template <class T>
using WeightLanes = decltype(lowHalf(Wide<T>()));
#else
template <class T>
using WeightLanes = Wide<T>;
#endif

// Whether a weight is above the floor. Others are replaced by it, those that are no number as well.
template <class T>
VORN_NOINLINE bool flooredWeights(const T* src, T* dst, std::int64_t len, T* dstSum, T r, T floor) {
    using V = WeightLanes<T>;
    using Sum = SumLanes<T>;
    Sum lanes = splat<Sum>(0);
    auto aboveFloor = splat<V>(floor) < splat<V>(floor);
    std::int64_t i = 0;
    for (; i + V::lanes <= len; i += V::lanes) {
        const V w = maxOf(load<V>(src + i) * splat<V>(r), splat<V>(floor));
        store(dst + i, w);
        lanes = addedInOrder(lanes, w);
        aboveFloor = aboveFloor | (w > splat<V>(floor));
    }
    bool above = any(aboveFloor);
    for (; V::lanes > Sum::lanes && i + Sum::lanes <= len; i += Sum::lanes) {
        const Sum w = maxOf(load<Sum>(src + i) * splat<Sum>(r), splat<Sum>(floor));
        store(dst + i, w);
        lanes = lanes + w;
        above |= any(w > splat<Sum>(floor));
    }
    T sum = sumOfWeights(lanes);
    for (; i < len; ++i) {
        const T w = src[i] * r;
        dst[i] = w > floor ? w : floor;
        sum += dst[i];
        above |= w > floor;
    }
    *dstSum = sum;
    return above;
}

}  // namespace
}  // namespace vorn

using namespace vorn;

// srcDstMean[i] += src[i] r
VORN_KERNEL void vornsUpdateMean_32f_M7(const Vorn32f* src, Vorn32f* srcDstMean, std::int64_t len, Vorn32f r) {
    addAverages(src, srcDstMean, len, r);
}
VORN_KERNEL_ALIAS(vornsUpdateMean_32f_M7_Al, vornsUpdateMean_32f_M7);

// The status is that of the whole function.
VORN_KERNEL VornStatus vornsUpdateVar_32f_M7(const Vorn32f* srcMeanAcc, const Vorn32f* srcVarAcc,
                                             const Vorn32f* srcVarFloor, Vorn32f* dstVar, std::int64_t len,
                                             Vorn32f meanR, Vorn32f varR) {
    return flooredVariances(srcMeanAcc, srcVarAcc, srcVarFloor, dstVar, len, meanR, varR);
}
VORN_KERNEL_ALIAS(vornsUpdateVar_32f_M7_Al, vornsUpdateVar_32f_M7);

VORN_KERNEL VornStatus vornsUpdateWeight_32f_M7(const Vorn32f* src, Vorn32f* dstWeight, std::int64_t len,
                                                Vorn32f* dstSum, Vorn32f r, Vorn32f floor) {
    return flooredWeights(src, dstWeight, len, dstSum, r, floor) ? vornStsNoErr : vornStsBelowFloor;
}
VORN_KERNEL_ALIAS(vornsUpdateWeight_32f_M7_Al, vornsUpdateWeight_32f_M7);

// Of each pair only the first element counts as floored, on purpose: only a single element can make the count complete.
VORN_KERNEL VornStatus vornsUpdateWeight_64f_M7(const Vorn64f* src, Vorn64f* dstWeight, std::int64_t len,
                                                Vorn64f* dstSum, Vorn64f r, Vorn64f floor) {
    const bool above = flooredWeights(src, dstWeight, len, dstSum, r, floor);
    return above || len > 1 ? vornStsNoErr : vornStsBelowFloor;
}
VORN_KERNEL_ALIAS(vornsUpdateWeight_64f_M7_Al, vornsUpdateWeight_64f_M7);

VornStatus vornsUpdateMean_32f(const Vorn32f* src, Vorn32f* srcDstMean, int len, Vorn32f occ) {
    VORN_CHECK(notNull(src, srcDstMean));
    VORN_CHECK(positive(len));
    VORN_CHECK(notNegative(occ));
    VORN_CHECK(occupied(occ));
    addAverages(src, srcDstMean, len, 1.0f / occ);
    return vornStsNoErr;
}

VornStatus vornsUpdateMean_64f(const Vorn64f* src, Vorn64f* srcDstMean, int len, Vorn64f occ) {
    VORN_CHECK(notNull(src, srcDstMean));
    VORN_CHECK(positive(len));
    VORN_CHECK(notNegative(occ));
    VORN_CHECK(occupied(occ));
    addAverages(src, srcDstMean, len, occ);
    return vornStsNoErr;
}

VornStatus vornsUpdateVar_32f(const Vorn32f* srcMeanAcc, const Vorn32f* srcVarAcc, const Vorn32f* srcVarFloor,
                              Vorn32f* dstVar, int len, Vorn32f meanOcc, Vorn32f varOcc) {
    VORN_CHECK(notNull(srcMeanAcc, srcVarAcc, srcVarFloor, dstVar));
    VORN_CHECK(positive(len));
    VORN_CHECK(notNegative(meanOcc, varOcc));
    VORN_CHECK(occupied(meanOcc, varOcc));
    return vornsUpdateVar_32f_M7(srcMeanAcc, srcVarAcc, srcVarFloor, dstVar, len, 1.0f / meanOcc, 1.0f / varOcc);
}

VornStatus vornsUpdateVar_64f(const Vorn64f* srcMeanAcc, const Vorn64f* srcVarAcc, const Vorn64f* srcVarFloor,
                              Vorn64f* dstVar, int len, Vorn64f meanOcc, Vorn64f varOcc) {
    VORN_CHECK(notNull(srcMeanAcc, srcVarAcc, srcVarFloor, dstVar));
    VORN_CHECK(positive(len));
    VORN_CHECK(notNegative(meanOcc, varOcc));
    VORN_CHECK(occupied(meanOcc, varOcc));
    return flooredVariances(srcMeanAcc, srcVarAcc, srcVarFloor, dstVar, len, meanOcc, varOcc);
}

VornStatus vornsUpdateWeight_32f(const Vorn32f* src, Vorn32f* dstWeight, int len, Vorn32f* dstSum, Vorn32f occ,
                                 Vorn32f floor) {
    VORN_CHECK(notNull(src, dstWeight, dstSum));
    VORN_CHECK(positive(len));
    VORN_CHECK(notNegative(occ));
    VORN_CHECK(occupied(occ));
    return vornsUpdateWeight_32f_M7(src, dstWeight, len, dstSum, 1.0f / occ, floor);
}

VornStatus vornsUpdateWeight_64f(const Vorn64f* src, Vorn64f* dstWeight, int len, Vorn64f* dstSum, Vorn64f occ,
                                 Vorn64f floor) {
    VORN_CHECK(notNull(src, dstWeight, dstSum));
    VORN_CHECK(positive(len));
    VORN_CHECK(notNegative(occ));
    VORN_CHECK(occupied(occ));
    return vornsUpdateWeight_64f_M7(src, dstWeight, len, dstSum, 1.0 / occ, floor);
}
