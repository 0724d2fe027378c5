// Sums of vectors. A complex vector is summed as one of twice the length whose lanes fold to two.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "frame/checks.h"
#include "reductions/scaled_result.h"
#include "simd/block.h"
#include "simd/fold.h"
#include "simd/simd.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

constexpr int hintFast = 1;

// Real numbers fold to one sum, complex ones to the sums of the parts in the first two lanes of a register. addOne adds
// the next element behind whole steps, in order.
struct RealSum {
    using Single = float;
    using Double = double;
    static constexpr int components = 1;
    static Single fold(f32x4 lanes) { return sumNeighbours(lanes); }
    template <class V>
    static Double fold(V lanes) {
        return sumOfLanes(lanes);
    }
    template <class Sum, class Element>
    static Sum addOne(Sum sum, const Element* p) {
        return sum + static_cast<Sum>(*p);
    }
    template <class Sum, class Result>
    static void put(Sum sum, Result* result) {
        *result = static_cast<Result>(sum);
    }
};
struct ComplexSum {
    using Single = f32x4;
    using Double = f64x2;
    static constexpr int components = 2;
    static Single fold(f32x4 lanes) { return lanes + upperToLower(lanes); }
    template <class V>
    static Double fold(V lanes) {
        return foldedTo<sizeof(f64x2)>(lanes, [](auto a, auto b) { return a + b; });
    }
    static Single addOne(Single sum, const Vorn32f* p) { return sum + loadFirst<f32x4, 2>(p); }
    static Double addOne(Double sum, const Vorn32f* p) { return sum + widenLow(loadFirst<f32x4, 2>(p)); }
    static Double addOne(Double sum, const Vorn64f* p) { return sum + load<f64x2>(p); }
    static void put(Single sum, Vorn32f* result) {
        Vorn32f lane[4];
        store(lane, sum);
        result[0] = lane[0];
        result[1] = lane[1];
    }
    static void put(Double sum, Vorn32f* result) { put(narrow(sum, sum), result); }
    static void put(Double sum, Vorn64f* result) { store(result, sum); }
};

template <class Kind, class Total, class Element, class Result>
VORN_INLINE void addRest(Total total, const Element* src, std::ptrdiff_t i, std::ptrdiff_t len, Result* sum) {
    for (; i < len; i += Kind::components) total = Kind::addOne(total, src + i);
    Kind::put(total, sum);
}

// Two four-lane sums in single, eight singles a step. What remains is added to the folded lanes in order.
template <class Kind>
void sumInSingle(const Vorn32f* src, std::ptrdiff_t len, Vorn32f* sum) {
    typename Kind::Single total{};
    std::ptrdiff_t i = 0;
    if (len >= 8) {
        f32x4 first = splat<f32x4>(0.0f), second = first;
        for (; i + 8 <= len; i += 8) {
            first = first + load<f32x4>(src + i);
            second = second + load<f32x4>(src + i + 4);
        }
        total = Kind::fold(first + second);
    }
    addRest<Kind>(total, src, i, len, sum);
}

// Four two-lane sums in double, eight elements a step, and one rounding to single at the end.
template <class Kind>
void sumInDouble(const Vorn32f* src, std::ptrdiff_t len, Vorn32f* sum) {
    typename Kind::Double total{};
    std::ptrdiff_t i = 0;
    if (len >= 8) {
        f64x2 lanes[4] = {splat<f64x2>(0.0), splat<f64x2>(0.0), splat<f64x2>(0.0), splat<f64x2>(0.0)};
        for (; i + 8 <= len; i += 8) {
            const f32x4 low = load<f32x4>(src + i), high = load<f32x4>(src + i + 4);
            lanes[0] = lanes[0] + widenLow(low);
            lanes[1] = lanes[1] + widenHigh(low);
            lanes[2] = lanes[2] + widenLow(high);
            lanes[3] = lanes[3] + widenHigh(high);
        }
        total = Kind::fold((lanes[0] + lanes[1]) + (lanes[2] + lanes[3]));
    }
    addRest<Kind>(total, src, i, len, sum);
}

// Sixteen lanes, in vectors of the build's width; lane j takes element j of each sixteen. They fold in halves.
template <class Kind>
void sumOfDoubles(const Vorn64f* src, std::ptrdiff_t len, Vorn64f* sum) {
    constexpr int lanes = 16, parts = lanes / f64xN::lanes;
    typename Kind::Double total{};
    std::ptrdiff_t i = 0;
    if (len >= lanes) {
        f64xN part[parts];
        for (f64xN& v : part) v = splat<f64xN>(0.0);
        for (; i + lanes <= len; i += lanes) {
            for (int k = 0; k < parts; ++k) part[k] = part[k] + load<f64xN>(src + i + k * f64xN::lanes);
        }
        for (int half = parts / 2; half > 0; half /= 2) {
            for (int k = 0; k < half; ++k) part[k] = part[k] + part[k + half];
        }
        total = Kind::fold(part[0]);
    }
    addRest<Kind>(total, src, i, len, sum);
}

template <class Kind>
void sumOfSingles(const Vorn32f* src, std::ptrdiff_t len, Vorn32f* sum, int hint) {
    if (hint == hintFast) {
        sumInSingle<Kind>(src, len, sum);
    } else {
        sumInDouble<Kind>(src, len, sum);
    }
}

// Exact sums of 16-bit numbers: 32-bit lanes that are emptied before the sum of all of them could overflow.
constexpr std::ptrdiff_t flushAfter = 65536;

template <class Add, class Flush>
VORN_INLINE void overRegisters(const Vorn16s* src, std::ptrdiff_t len, Add add, Flush flush) {
    constexpr int lanes = i16xN::lanes;
    for (std::ptrdiff_t i = 0; i < len;) {
        const std::ptrdiff_t stop = std::min(len, i + flushAfter);
        for (; i + lanes <= stop; i += lanes) add(load<i16xN>(src + i));
        if (i < stop) add(loadPart<i16xN>(src + i, stop - i));
        i = stop;
        flush();
    }
}

std::int64_t exactSum(const Vorn16s* src, std::ptrdiff_t len) {
    std::int64_t sum = 0;
    i32xN pairs = splat<i32xN>(0);
    overRegisters(
        src, len, [&](i16xN x) { pairs = pairs + mulAddPairs(x, splat<i16xN>(1)); },
        [&] {
            sum += sumOfLanes(pairs);
            pairs = splat<i32xN>(0);
        });
    return sum;
}

struct ExactComplex {
    std::int64_t re, im;
};
ExactComplex exactSum(const Vorn16sc* src, std::ptrdiff_t len) {
    ExactComplex sum = {0, 0};
    i32xN re = splat<i32xN>(0), im = re;
    overRegisters(
        &src->re, 2 * len,
        [&](i16xN x) {
            const i32xN both = intsOf(x);
            re = re + shiftRight<16>(shiftLeft<16>(both));
            im = im + shiftRight<16>(both);
        },
        [&] {
            sum.re += sumOfLanes(re);
            sum.im += sumOfLanes(im);
            re = im = splat<i32xN>(0);
        });
    return sum;
}

// 32-bit numbers: lanes that wrap, and the exact sums of the upper halves. Without what the upper halves account for,
// the wrapped sum is that of the lower ones, which 32 bits hold for 32768 numbers.
std::int64_t exactSum(const Vorn32s* src, std::ptrdiff_t len) {
    constexpr std::ptrdiff_t lanes = i32xN::lanes, vectorsAtOnce = 16384;
    std::int64_t sum = 0;
    for (std::ptrdiff_t i = 0; i < len;) {
        const std::ptrdiff_t stop = std::min(len, i + vectorsAtOnce * lanes);
        i32xN wrapped[2] = {splat<i32xN>(0), splat<i32xN>(0)}, high[2] = {splat<i32xN>(0), splat<i32xN>(0)};
        const auto add = [&](int k, i32xN x) {
            wrapped[k] = wrapped[k] + x;
            high[k] = high[k] + shiftRight<16>(x);
        };
        for (; i + 2 * lanes <= stop; i += 2 * lanes) {
            add(0, load<i32xN>(src + i));
            add(1, load<i32xN>(src + i + lanes));
        }
        for (int k = 0; k < 2; ++k) add(k, loadUpTo<i32xN>(src + i + k * lanes, stop - i - k * lanes));
        i = stop;
        const i32xN upper = high[0] + high[1];
        sum += wideSumOfLanes(upper) * 65536 + wideSumOfLanes((wrapped[0] + wrapped[1]) - shiftLeft<16>(upper));
    }
    return sum;
}

Vorn32s scaled32(std::int64_t sum, int scaleFactor) {
    return scaledSum(static_cast<double>(sum), factorOfExponentBits(scaleFactor));
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsSum_32f(const Vorn32f* src, int len, Vorn32f* sum, int hint) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    sumOfSingles<RealSum>(src, len, sum, hint);
    return vornStsNoErr;
}

VornStatus vornsSum_32fc(const Vorn32fc* src, int len, Vorn32fc* sum, int hint) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    sumOfSingles<ComplexSum>(&src->re, std::ptrdiff_t{2} * len, &sum->re, hint);
    return vornStsNoErr;
}

VornStatus vornsSum_64f(const Vorn64f* src, int len, Vorn64f* sum) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    sumOfDoubles<RealSum>(src, len, sum);
    return vornStsNoErr;
}

VornStatus vornsSum_64fc(const Vorn64fc* src, int len, Vorn64fc* sum) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    sumOfDoubles<ComplexSum>(&src->re, std::ptrdiff_t{2} * len, &sum->re);
    return vornStsNoErr;
}

VornStatus vornsSum_16s32s_Sfs(const Vorn16s* src, int len, Vorn32s* sum, int scaleFactor) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    *sum = scaled32(exactSum(src, len), scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSum_16s_Sfs(const Vorn16s* src, int len, Vorn16s* sum, int scaleFactor) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    *sum = saturate<Vorn16s>(scaled32(exactSum(src, len), scaleFactor));
    return vornStsNoErr;
}

VornStatus vornsSum_16sc32sc_Sfs(const Vorn16sc* src, int len, Vorn32sc* sum, int scaleFactor) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    const ExactComplex exact = exactSum(src, len);
    *sum = {scaled32(exact.re, scaleFactor), scaled32(exact.im, scaleFactor)};
    return vornStsNoErr;
}

VornStatus vornsSum_16sc_Sfs(const Vorn16sc* src, int len, Vorn16sc* sum, int scaleFactor) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    const ExactComplex exact = exactSum(src, len);
    *sum = {saturate<Vorn16s>(scaled32(exact.re, scaleFactor)), saturate<Vorn16s>(scaled32(exact.im, scaleFactor))};
    return vornStsNoErr;
}

VornStatus vornsSum_32s_Sfs(const Vorn32s* src, int len, Vorn32s* sum, int scaleFactor) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    *sum = scaledSum<Vorn32s>(exactSum(src, len), scaleFactor, -31, 63);
    return vornStsNoErr;
}
