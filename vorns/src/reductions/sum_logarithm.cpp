// Sums of natural logarithms at the cost of one logarithm for 512 elements: ln(x y) = ln x + ln y.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "elementary/elementary.h"
#include "elementary/logarithm_kernels.h"
#include "frame/checks.h"
#include "simd/simd.h"
#include "vornsr/frame.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

constexpr std::ptrdiff_t runLength = 512;
constexpr int groupLength = 8;

// Eight elements as the numbers in which their mantissas are multiplied.
template <class Number>
struct Group;
template <>
struct Group<float> {
    f32x4 low, high;
};
template <>
struct Group<double> {
    f64x2 part[4];
};

VORN_INLINE Group<float> loadGroup(const float* src) { return {load<f32x4>(src), load<f32x4>(src + 4)}; }
VORN_INLINE Group<double> loadGroup(const double* src) {
    return {{load<f64x2>(src), load<f64x2>(src + 2), load<f64x2>(src + 4), load<f64x2>(src + 6)}};
}
VORN_INLINE Group<float> loadGroup(const Vorn16s* src) {
    const i16x8 eight = load<i16x8>(src);
    return {toFloat(widenLow(eight)), toFloat(widenHigh(eight))};
}

VORN_INLINE bool allNormalPositive(Group<float> x) { return all(isNormalPositive(x.low) & isNormalPositive(x.high)); }
VORN_INLINE bool allNormalPositive(Group<double> x) {
    return all((isNormalPositive(x.part[0]) & isNormalPositive(x.part[1])) &
               (isNormalPositive(x.part[2]) & isNormalPositive(x.part[3])));
}

// The product of mantissas in [1, 2), in four double lanes, and the sum of the biased exponents. 512 elements cannot
// overflow: each lane stays below 4^64.
struct Product {
    f64x2 first = splat<f64x2>(1.0), second = splat<f64x2>(1.0);
    i32x4 exponents32 = splat<i32x4>(0);
    i64x2 exponents64 = splat<i64x2>(0);

    // Elements i and i + 4 of a group are multiplied first, in their own precision.
    VORN_INLINE void multiply(Group<float> x) {
        const i32x4 low = bitsOf(x.low), high = bitsOf(x.high);
        const f32x4 pairs = mantissa(low) * mantissa(high);
        first = first * widenLow(pairs);
        second = second * widenHigh(pairs);
        exponents32 = exponents32 + (shiftRight<23>(low) + shiftRight<23>(high));
    }
    VORN_INLINE void multiply(Group<double> x) {
        const i64x2 bits[4] = {bitsOf(x.part[0]), bitsOf(x.part[1]), bitsOf(x.part[2]), bitsOf(x.part[3])};
        first = first * (mantissa(bits[0]) * mantissa(bits[2]));
        second = second * (mantissa(bits[1]) * mantissa(bits[3]));
        exponents64 = exponents64 + ((shiftRightLogical<52>(bits[0]) + shiftRightLogical<52>(bits[1])) +
                                     (shiftRightLogical<52>(bits[2]) + shiftRightLogical<52>(bits[3])));
    }
    // (lane 0 x lane 2) x (lane 1 x lane 3)
    double value() const {
        double lane[2];
        store(lane, first * second);
        return lane[0] * lane[1];
    }
    std::int64_t biasedExponent() const {
        std::int32_t single[4];
        std::int64_t wide[2];
        store(single, exponents32);
        store(wide, exponents64);
        return (wide[0] + wide[1]) + (single[0] + single[1] + single[2] + single[3]);
    }

private:
    static VORN_INLINE f32x4 mantissa(i32x4 bits) {
        return floatOf((bits & splat<i32x4>(0x007FFFFF)) | splat<i32x4>(0x3F800000));
    }
    static VORN_INLINE f64x2 mantissa(i64x2 bits) {
        return floatOf((bits & splat<i64x2>(0x000FFFFFFFFFFFFF)) | splat<i64x2>(0x3FF0000000000000));
    }
};

// Tells what is wrong with an element; makes a denormal a normal number and keeps count of the lost exponent.
template <class Number>
LnCode makeNormal(Number& x, std::int64_t& exponent) {
    using L = std::numeric_limits<Number>;
    if (!(std::fabs(x) <= L::max())) return lnNotFinite;
    if (x == 0) return lnZero;
    if (x < 0) return lnNegative;
    if (x < L::min()) {
        x *= static_cast<Number>(std::int64_t{1} << L::digits);
        exponent -= L::digits;
    }
    return lnGood;
}

// The sum over one run; it ends at the first bad element.
template <class Source>
LnCode sumLnOfRun(const Source* src, std::ptrdiff_t len, double& sum) {
    using Number = std::conditional_t<std::is_same_v<Source, double>, double, float>;
    constexpr std::int64_t bias = std::numeric_limits<Number>::max_exponent - 1;
    Product product;
    std::int64_t exponent = -bias * (len / groupLength * groupLength);
    std::ptrdiff_t i = 0;
    for (; i + groupLength <= len; i += groupLength) {
        auto group = loadGroup(src + i);
        if (!allNormalPositive(group)) [[unlikely]] {
            Number number[groupLength];
            for (int j = 0; j < groupLength; ++j) {
                number[j] = src[i + j];
                if (const LnCode code = makeNormal(number[j], exponent)) return code;
            }
            group = loadGroup(number);
        }
        product.multiply(group);
    }
    double mantissas = product.value();
    exponent += product.biasedExponent();
    for (; i < len; ++i) {
        Number number = src[i];
        if (const LnCode code = makeNormal(number, exponent)) return code;
        const auto bits = std::bit_cast<std::uint64_t>(static_cast<double>(number));
        mantissas *= std::bit_cast<double>((bits & 0x000FFFFFFFFFFFFF) | 0x3FF0000000000000);
        exponent += static_cast<std::int64_t>(bits >> 52) - 1023;
    }
    constexpr double ln2 = 0x1.62e42fefa39efp-1;
    sum = log64(mantissas) + static_cast<double>(exponent) * ln2;
    return lnGood;
}

// A bad element gives a constant instead of the sum: a zero positive (not negative) infinity, and an infinity or a
// not-a-number a not-a-number without a warning. These are promised.
template <class Source, class Result>
VornStatus sumLn(const Source* src, std::ptrdiff_t len, Result* result) {
    double sum = 0.0;
    for (std::ptrdiff_t i = 0; i < len; i += runLength) {
        double ofRun = 0.0;
        switch (sumLnOfRun(src + i, std::min(runLength, len - i), ofRun)) {
            case lnGood:
                break;
            case lnZero:
                *result = vornConstantOfINF_32f;
                return vornStsLnZeroArg;
            case lnNegative:
                *result = vornConstantOfNAN_32f;
                return vornStsLnNegArg;
            case lnNotFinite:
                *result = 0.0f - vornConstantOfNAN_32f;
                return vornStsNoErr;
        }
        sum += ofRun;
    }
    *result = static_cast<Result>(sum);
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsSumLn_32f(const Vorn32f* src, int len, Vorn32f* sum) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    return sumLn(src, len, sum);
}

VornStatus vornsSumLn_64f(const Vorn64f* src, int len, Vorn64f* sum) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    return sumLn(src, len, sum);
}

VornStatus vornsSumLn_32f64f(const Vorn32f* src, int len, Vorn64f* sum) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    return sumLn(src, len, sum);
}

VornStatus vornsSumLn_16s32f(const Vorn16s* src, int len, Vorn32f* sum) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    return sumLn(src, len, sum);
}
