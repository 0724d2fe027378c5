// Scalar curves and small tools, element by element. Intermediate singles stand in variables of their own, opaque to
// the compiler where the caller's rounding mode counts.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

namespace model {

inline float curveRoot(float x) {
    volatile float root = std::sqrt(x);
    volatile float reciprocal = 1.0f / root;
    return reciprocal;
}
inline float recSqrt(float x, float val) { return val < x ? curveRoot(x) : val; }

// An integer as a single, in the rounding mode of this moment.
inline float curveSingle(std::int32_t x) {
    volatile std::int32_t opaque = x;
    volatile float single = static_cast<float>(opaque);
    return single;
}

// 2^-sf as a single: infinite and 0 where a single has no such number.
inline float curveScale(int sf) { return sf <= -128 ? INFINITY : sf >= 150 ? 0.0f : std::ldexp(1.0f, -sf); }

// At least val keeps the root; limited, truncated; exactly 2^31 becomes -2^31.
template <class R>
R recSqrtTruncated(std::int32_t x, std::int32_t val, int sf) {
    const float single = curveSingle(x), ceiling = curveSingle(val);
    volatile float scaled = (single >= ceiling ? curveRoot(single) : ceiling) * curveScale(sf);
    if (sizeof(R) == 2) return static_cast<R>(std::min(scaled + 0.0f, 32767.0f));
    return scaled >= 2147483648.0f ? std::numeric_limits<R>::min() : static_cast<R>(scaled);
}
// Above val keeps the root; rounded to nearest even, saturated.
inline std::int32_t recSqrtRounded(std::int32_t x, std::int32_t val, int sf) {
    volatile float scaled = recSqrt(curveSingle(x), curveSingle(val)) * curveScale(sf);
    if (scaled >= 2147483648.0f) return INT32_MAX;
    const auto whole = static_cast<std::int64_t>(scaled);
    const double part = static_cast<double>(scaled) - static_cast<double>(whole);
    return static_cast<std::int32_t>(whole + (part > 0.5 || (part == 0.5 && whole % 2 != 0) ? 1 : 0));
}

inline float unitCurve(float x) {
    if (x < 0) return 0;
    volatile float square = x * x;
    if (x < 1) return square;
    if (!(x < 2)) return 2;
    volatile float rising = 4 * x;
    volatile float difference = rising - square;
    volatile float result = difference - 2;
    return result;
}
inline std::int16_t unitCurve(std::int16_t x, int srcQ, int sf) {
    if (srcQ < 0 || srcQ >= 15) return 0;
    const std::int64_t one = std::int64_t{1} << srcQ, two = 2 * one;
    const std::int64_t v = x <= 0    ? 0
                           : x < one ? std::int64_t{x} * x
                           : x < two ? two * one - (two - x) * (two - x)
                                     : two * one;
    const std::int64_t t = std::int64_t{sf} + 2 * srcQ;
    const auto bits = static_cast<std::uint32_t>(v);
    const auto shifted = t >= 1 ? static_cast<std::int32_t>(bits >> (t % 32))  // v has no sign bit
                                : static_cast<std::int32_t>(bits << (-t % 32));
    return shifted > 32767 ? 32767 : static_cast<std::int16_t>(static_cast<std::uint16_t>(shifted));
}

// The running sum; false at an element that has no logarithm.
inline bool addEntropyTerm(float x, float& sum) {
    if (!(x >= 0)) return false;
    const auto ln = static_cast<float>(std::log(static_cast<double>(x)));
    volatile float term = x * ln;
    volatile float next = sum + term;
    sum = next;
    return true;
}
// Not a number where an element is negative or none.
inline float entropy(const std::vector<float>& x) {
    float sum = 0;
    for (float element : x) {
        if (element != 0 && !addEntropyTerm(element, sum)) return NAN;
    }
    volatile float result = sum / 0.6931472f;
    return result;
}
// False where an element is negative.
inline bool entropy(const std::vector<std::int16_t>& x, int srcScale, int dstScale, std::int32_t& result) {
    float sum = 0;
    for (std::int16_t element : x) {
        if (element < 0) return false;
        if (element == 0) continue;
        volatile float scaled = static_cast<float>(element) * curveScale(srcScale);
        if (scaled == 0) {
            sum = NAN;
        } else {
            addEntropyTerm(scaled, sum);
        }
    }
    volatile float scaled = sum * curveScale(dstScale);
    volatile float bits = scaled / 0.6931472f;
    result = std::isnan(bits) || bits <= -2147483648.0f ? INT32_MIN
             : bits >= 2147483648.0f                    ? INT32_MAX
                                                        : static_cast<std::int32_t>(bits);
    return true;
}

inline float scaleLM(float x, float floor, float mul, float add) {
    volatile float product = (x > floor ? x : floor) * mul;
    volatile float sum = product + add;
    return sum;
}
inline std::int32_t scaleLM(std::int16_t x, std::int16_t floor, std::int16_t mul, std::int32_t add) {
    const std::int64_t sum = std::int64_t{std::max(x, floor)} * mul + add;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(sum));
}

template <class T>
T sumOfTwo(T a, T factor1, T b, T factor2) {
    volatile T first = a * factor1, second = b * factor2;
    volatile T sum = first + second;
    return sum;
}
// half: the first weight counts in the sum of weights alone. True where the weights cancel each other.
template <class T>
bool weightedSum(T a, T b, T weight1, T weight2, bool half, T& result) {
    volatile T s = weight1 + weight2;
    if (s == 0) {
        const T t = sumOfTwo(a, weight1, b, weight2);
        result = t > 0 ? std::numeric_limits<T>::infinity() : t < 0 ? -std::numeric_limits<T>::infinity() : T(NAN);
        return true;
    }
    volatile T r = T(1) / s;
    volatile T first = half ? r : weight1 * r, second = weight2 * r;
    result = sumOfTwo<T>(a, first, b, second);
    return false;
}
inline bool weightedSum(std::int16_t a, std::int16_t b, std::int16_t weight1, std::int16_t weight2, bool half,
                        std::int16_t& result) {
    const int s = weight1 + weight2;
    if (s == 0) {
        const std::int64_t t = std::int64_t{a} * weight1 + std::int64_t{b} * weight2;
        result = t > 0 ? 32767 : t < 0 ? -32768 : 0;
        return true;
    }
    volatile float r = 1.0f / static_cast<float>(s);
    volatile float first = half ? r : static_cast<float>(weight1) * r, second = static_cast<float>(weight2) * r;
    const float sum = sumOfTwo<float>(a, first, b, second);
    result = static_cast<std::int16_t>(std::min(std::max(sum, -32768.0f), 32767.0f));
    return false;
}

template <class T>
T nthMax(std::vector<T> x, int n) {
    std::sort(x.begin(), x.end(), std::greater<T>());
    return x[static_cast<std::size_t>(n)];
}

}  // namespace model
