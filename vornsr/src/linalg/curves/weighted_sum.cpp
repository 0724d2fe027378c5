// Scaled language-model scores and weighted sums of two vectors: the exported functions and the kernels that keep their
// names.
#include <cstdint>
#include <limits>
#include <utility>

#include "arithmetic/compute.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "vornsr/linalg.h"

namespace vorn {
namespace {

// The maximum of what is not a number and the floor is the floor.
struct FlooredScore : Operation<f32xN::lanes, true> {
    f32xN floor, mul, add;
    FlooredScore(float least, float factor, float offset)
        : floor(splat<f32xN>(least)), mul(splat<f32xN>(factor)), add(splat<f32xN>(offset)) {}
    VORN_INLINE f32xN operator()(f32xN x, f32xN) const { return maxOf(x, floor) * mul + add; }
};
struct FlooredInteger : Operation<i16xN::lanes, false> {
    i16xN floor, mul;  // mul in every even lane, for the lower halves of the widened elements
    i32xN add;
    FlooredInteger(Vorn16s least, Vorn16s factor, Vorn32s offset)
        : floor(splat<i16xN>(least)), mul(shortsOf(splat<i32xN>(factor & 0xFFFF))), add(splat<i32xN>(offset)) {}
    VORN_INLINE Halves<i32xN> operator()(i16xN x, i16xN) const {
        const i16xN floored = maxOf(x, floor);
        return {product(widenLow(floored)) + add, product(widenHigh(floored)) + add};
    }

private:
    VORN_INLINE i32xN product(i32xN x) const { return mulAddPairs(shortsOf(x), mul); }
};

// a factor1 + b factor2
template <class T>
struct SumOfProducts : Operation<Wide<T>::lanes, true> {
    using V = Wide<T>;
    V factor1, factor2;
    SumOfProducts(T first, T second) : factor1(splat<V>(first)), factor2(splat<V>(second)) {}
    VORN_INLINE V operator()(V a, V b) const { return a * factor1 + b * factor2; }
};
// In single, limited to 16 bits and truncated.
template <>
struct SumOfProducts<Vorn16s> : Operation<i16xN::lanes, false> {
    f32xN factor1, factor2;
    SumOfProducts(float first, float second) : factor1(splat<f32xN>(first)), factor2(splat<f32xN>(second)) {}
    VORN_INLINE i16xN operator()(i16xN a, i16xN b) const {
        return narrowSat(sum(widenLow(a), widenLow(b)), sum(widenHigh(a), widenHigh(b)));
    }

private:
    VORN_INLINE i32xN sum(i32xN a, i32xN b) const {
        const f32xN s = toFloat(a) * factor1 + toFloat(b) * factor2;
        return truncToInt(minOf(maxOf(s, splat<f32xN>(-32768.0f)), splat<f32xN>(32767.0f)));
    }
};

// What stands in the place of a sum whose weights cancel each other: the sign of the sum that is not divided.
template <class T>
struct SignOfSum : Operation<Wide<T>::lanes, true> {
    using V = Wide<T>;
    SumOfProducts<T> undivided;
    SignOfSum(T weight1, T weight2) : undivided(weight1, weight2) {}
    VORN_INLINE V operator()(V a, V b) const {
        using L = std::numeric_limits<T>;
        const V t = undivided(a, b), zero = splat<V>(0);
        return select(t > zero, splat<V>(L::infinity()),
                      select(t < zero, splat<V>(-L::infinity()), splat<V>(L::quiet_NaN())));
    }
};
// The sum is weight1 (a - b): where weight1 is below zero the vectors change places.
struct SignOfDifference : Operation<i16xN::lanes, true> {
    VORN_INLINE i16xN operator()(i16xN a, i16xN b) const {
        return select(a > b, splat<i16xN>(32767), select(b > a, splat<i16xN>(-32768), splat<i16xN>(0)));
    }
};

template <class T>
void signsOfSums(const T* src1, const T* src2, T* dst, int len, T weight1, T weight2) {
    computeWith(SignOfSum<T>(weight1, weight2), elements(src1), elements(src2), dst, len);
}
void signsOfSums(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, Vorn16s weight1, Vorn16s) {
    if (weight1 == 0) return zeroElements(dst, len);
    if (weight1 < 0) std::swap(src1, src2);
    compute<SignOfDifference>(elements(src1), elements(src2), dst, len);
}

// How the first weight counts: over the sum of both or, in the Half forms, not at all beyond its part in that sum. The
// latter is on purpose.
struct FirstWeight {
    template <class T>
    static T factor(T weight1, T r) {
        return weight1 * r;
    }
};
struct FirstWeightInSumAlone {
    template <class T>
    static T factor(T, T r) {
        return r;
    }
};

// In integers the weights are added exactly; everything behind that is in single.
inline float sumOfWeights(float a, float b) { return a + b; }
inline double sumOfWeights(double a, double b) { return a + b; }
inline int sumOfWeights(Vorn16s a, Vorn16s b) { return a + b; }
template <class T>
struct FactorOf {
    using type = T;
};
template <>
struct FactorOf<Vorn16s> {
    using type = Vorn32f;
};

template <class First, class T>
VornStatus weightedSum(const T* src1, const T* src2, T* dst, int len, T weight1, T weight2) {
    using Factor = typename FactorOf<T>::type;
    const auto sum = sumOfWeights(weight1, weight2);
    if (sum == 0) {
        signsOfSums(src1, src2, dst, len, weight1, weight2);
        return vornStsDivByZero;
    }
    const Factor r = Factor(1) / static_cast<Factor>(sum);
    computeWith(SumOfProducts<T>(First::factor(static_cast<Factor>(weight1), r), static_cast<Factor>(weight2) * r),
                elements(src1), elements(src2), dst, len);
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn

using namespace vorn;

// dst[i] = (the larger of src[i] and floor) mul + add
VORN_KERNEL void vornsLMThreshold_32f_M7(const Vorn32f* src, Vorn32f* dst, std::int64_t len, Vorn32f floor, Vorn32f mul,
                                         Vorn32f add) {
    computeWith(FlooredScore(floor, mul, add), elements(src), constant(0.0f), dst, len);
}
VORN_KERNEL_ALIAS(vornsLMThreshold_32f_M7_Al, vornsLMThreshold_32f_M7);

// dst[i] = src1[i] factor1 + src2[i] factor2
VORN_KERNEL void vornsWeightedSum_32f_M7_Al(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, std::int64_t len,
                                            Vorn32f factor1, Vorn32f factor2) {
    computeWith(SumOfProducts<Vorn32f>(factor1, factor2), elements(src1), elements(src2), dst, len);
}

VornStatus vornsScaleLM_32f(const Vorn32f* src, Vorn32f* dst, int len, Vorn32f floor, Vorn32f mul, Vorn32f add) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    vornsLMThreshold_32f_M7(src, dst, len, floor, mul, add);
    return vornStsNoErr;
}

VornStatus vornsScaleLM_16s32s(const Vorn16s* src, Vorn32s* dst, int len, Vorn16s floor, Vorn16s mul, Vorn32s add) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    computeWith(FlooredInteger(floor, mul, add), elements(src), constant(Vorn16s{0}), dst, len);
    return vornStsNoErr;
}

VornStatus vornsWeightedSum_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len, Vorn32f weight1,
                                Vorn32f weight2) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return weightedSum<FirstWeight>(src1, src2, dst, len, weight1, weight2);
}

VornStatus vornsWeightedSum_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len, Vorn64f weight1,
                                Vorn64f weight2) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return weightedSum<FirstWeight>(src1, src2, dst, len, weight1, weight2);
}

VornStatus vornsWeightedSum_16s(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, Vorn16s weight1,
                                Vorn16s weight2) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return weightedSum<FirstWeight>(src1, src2, dst, len, weight1, weight2);
}

VornStatus vornsWeightedSumHalf_32f(const Vorn32f* src1, const Vorn32f* src2, Vorn32f* dst, int len, Vorn32f weight1,
                                    Vorn32f weight2) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return weightedSum<FirstWeightInSumAlone>(src1, src2, dst, len, weight1, weight2);
}

VornStatus vornsWeightedSumHalf_64f(const Vorn64f* src1, const Vorn64f* src2, Vorn64f* dst, int len, Vorn64f weight1,
                                    Vorn64f weight2) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return weightedSum<FirstWeightInSumAlone>(src1, src2, dst, len, weight1, weight2);
}

VornStatus vornsWeightedSumHalf_16s(const Vorn16s* src1, const Vorn16s* src2, Vorn16s* dst, int len, Vorn16s weight1,
                                    Vorn16s weight2) {
    VORN_CHECK(notNull(src1, src2, dst));
    VORN_CHECK(positive(len));
    return weightedSum<FirstWeightInSumAlone>(src1, src2, dst, len, weight1, weight2);
}
