// Sums of vectors. A complex vector is summed as one of twice the length whose lanes fold to two.
#include <cstddef>
#include <cstdint>

#include "frame/checks.h"
#include "scaled_result.h"
#include "simd.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

constexpr int hintFast = 1;

// Real numbers fold to one sum, complex ones to the sums of the parts.
struct RealSum {
    static constexpr int components = 1;
    static void fold(f32x4 lanes, Vorn32f* sum) { sum[0] = sumNeighbours(lanes); }
    static void fold(f64x2 lanes, Vorn64f* sum) { sum[0] = sumLanes(lanes); }
};
struct ComplexSum {
    static constexpr int components = 2;
    static void fold(f32x4 lanes, Vorn32f* sum) {
        Vorn32f lane[4];
        store(lane, lanes);
        sum[0] = lane[0] + lane[2];
        sum[1] = lane[1] + lane[3];
    }
    static void fold(f64x2 lanes, Vorn64f* sum) { store(sum, lanes); }
};

template <class Kind, class Sum, class Element>
void addRest(const Element* src, std::ptrdiff_t i, std::ptrdiff_t len, Sum* sum) {
    for (; i < len; ++i) sum[i % Kind::components] += src[i];
}

// Two four-lane sums in single, eight singles a step. What remains is added to the folded lanes in order.
template <class Kind>
void sumInSingle(const Vorn32f* src, std::ptrdiff_t len, Vorn32f* sum) {
    f32x4 first = splat<f32x4>(0.0f), second = first;
    std::ptrdiff_t i = 0;
    for (; i + 8 <= len; i += 8) {
        first = first + load<f32x4>(src + i);
        second = second + load<f32x4>(src + i + 4);
    }
    Kind::fold(first + second, sum);
    addRest<Kind>(src, i, len, sum);
}

// Four two-lane sums in double, eight elements a step, and one rounding to single at the end.
template <class Kind>
void sumInDouble(const Vorn32f* src, std::ptrdiff_t len, Vorn32f* sum) {
    f64x2 lanes[4] = {splat<f64x2>(0.0), splat<f64x2>(0.0), splat<f64x2>(0.0), splat<f64x2>(0.0)};
    std::ptrdiff_t i = 0;
    for (; i + 8 <= len; i += 8) {
        const f32x4 low = load<f32x4>(src + i), high = load<f32x4>(src + i + 4);
        lanes[0] = lanes[0] + widenLow(low);
        lanes[1] = lanes[1] + widenHigh(low);
        lanes[2] = lanes[2] + widenLow(high);
        lanes[3] = lanes[3] + widenHigh(high);
    }
    Vorn64f total[2];
    Kind::fold((lanes[0] + lanes[1]) + (lanes[2] + lanes[3]), total);
    addRest<Kind>(src, i, len, total);
    for (int c = 0; c < Kind::components; ++c) sum[c] = static_cast<Vorn32f>(total[c]);
}

// Sixteen lanes, in vectors of the build's width; lane j takes element j of each sixteen. They fold in halves.
template <class Kind>
void sumOfDoubles(const Vorn64f* src, std::ptrdiff_t len, Vorn64f* sum) {
    constexpr int lanes = 16, parts = lanes / f64xN::lanes;
    f64xN part[parts];
    for (f64xN& v : part) v = splat<f64xN>(0.0);
    std::ptrdiff_t i = 0;
    for (; i + lanes <= len; i += lanes) {
        for (int k = 0; k < parts; ++k) part[k] = part[k] + load<f64xN>(src + i + k * f64xN::lanes);
    }
    Vorn64f lane[lanes];
    for (int k = 0; k < parts; ++k) store(lane + k * f64xN::lanes, part[k]);
    for (int half = lanes / 2; half >= Kind::components; half /= 2) {
        for (int k = 0; k < half; ++k) lane[k] += lane[k + half];
    }
    for (int c = 0; c < Kind::components; ++c) sum[c] = lane[c];
    addRest<Kind>(src, i, len, sum);
}

template <class Kind>
void sumOfSingles(const Vorn32f* src, std::ptrdiff_t len, Vorn32f* sum, int hint) {
    if (hint == hintFast) {
        sumInSingle<Kind>(src, len, sum);
    } else {
        sumInDouble<Kind>(src, len, sum);
    }
}

// Exact sums of 16-bit numbers. 32-bit lanes take one or two elements of each vector and are emptied in time.
constexpr std::ptrdiff_t flushAfter = 65536;

std::int64_t sumOfLanes(i32xN lanes) {
    std::int32_t lane[i32xN::lanes];
    store(lane, lanes);
    std::int64_t sum = 0;
    for (std::int32_t x : lane) sum += x;
    return sum;
}

void exactSum(const Vorn16s* src, std::ptrdiff_t len, std::int64_t& sum) {
    sum = 0;
    std::ptrdiff_t i = 0;
    while (i + i16xN::lanes <= len) {
        const std::ptrdiff_t stop = std::min(len, i + flushAfter);
        i32xN pairs = splat<i32xN>(0);
        for (; i + i16xN::lanes <= stop; i += i16xN::lanes) {
            pairs = pairs + mulAddPairs(load<i16xN>(src + i), splat<i16xN>(1));
        }
        sum += sumOfLanes(pairs);
    }
    for (; i < len; ++i) sum += src[i];
}

void exactSum(const Vorn16sc* src, std::ptrdiff_t len, std::int64_t& re, std::int64_t& im) {
    const Vorn16s* numbers = &src->re;
    const std::ptrdiff_t count = 2 * len;
    re = im = 0;
    std::ptrdiff_t i = 0;
    while (i + i16xN::lanes <= count) {
        const std::ptrdiff_t stop = std::min(count, i + flushAfter);
        i32xN first = splat<i32xN>(0), second = first;
        for (; i + i16xN::lanes <= stop; i += i16xN::lanes) {
            const i32xN both = intsOf(load<i16xN>(numbers + i));
            first = first + shiftRight<16>(shiftLeft<16>(both));
            second = second + shiftRight<16>(both);
        }
        re += sumOfLanes(first);
        im += sumOfLanes(second);
    }
    for (; i < count; i += 2) {
        re += numbers[i];
        im += numbers[i + 1];
    }
}

// 32-bit numbers: lanes that wrap, and the exact sums of the upper halves. Without what the upper halves account for,
// the wrapped sum is that of the lower ones, which 32 bits hold for 32768 numbers.
std::int64_t exactSum(const Vorn32s* src, std::ptrdiff_t len) {
    constexpr std::ptrdiff_t vectorsAtOnce = 16384;
    std::int64_t sum = 0;
    std::ptrdiff_t i = 0;
    while (i + i32xN::lanes <= len) {
        const std::ptrdiff_t stop = std::min(len, i + vectorsAtOnce * i32xN::lanes);
        i32xN wrapped[2] = {splat<i32xN>(0), splat<i32xN>(0)}, high[2] = {splat<i32xN>(0), splat<i32xN>(0)};
        const auto add = [&](int k) {
            const i32xN x = load<i32xN>(src + i + k * i32xN::lanes);
            wrapped[k] = wrapped[k] + x;
            high[k] = high[k] + shiftRight<16>(x);
        };
        for (; i + 2 * i32xN::lanes <= stop; i += 2 * i32xN::lanes) {
            add(0);
            add(1);
        }
        if (i + i32xN::lanes <= stop) {
            add(0);
            i += i32xN::lanes;
        }
        const i32xN upper = high[0] + high[1];
        sum += sumOfLanes(upper) * 65536 + sumOfLanes((wrapped[0] + wrapped[1]) - shiftLeft<16>(upper));
    }
    for (; i < len; ++i) sum += src[i];
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
    std::int64_t exact;
    exactSum(src, len, exact);
    *sum = scaled32(exact, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsSum_16s_Sfs(const Vorn16s* src, int len, Vorn16s* sum, int scaleFactor) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    std::int64_t exact;
    exactSum(src, len, exact);
    *sum = saturate<Vorn16s>(scaled32(exact, scaleFactor));
    return vornStsNoErr;
}

VornStatus vornsSum_16sc32sc_Sfs(const Vorn16sc* src, int len, Vorn32sc* sum, int scaleFactor) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    std::int64_t re, im;
    exactSum(src, len, re, im);
    *sum = {scaled32(re, scaleFactor), scaled32(im, scaleFactor)};
    return vornStsNoErr;
}

VornStatus vornsSum_16sc_Sfs(const Vorn16sc* src, int len, Vorn16sc* sum, int scaleFactor) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    std::int64_t re, im;
    exactSum(src, len, re, im);
    *sum = {saturate<Vorn16s>(scaled32(re, scaleFactor)), saturate<Vorn16s>(scaled32(im, scaleFactor))};
    return vornStsNoErr;
}

VornStatus vornsSum_32s_Sfs(const Vorn32s* src, int len, Vorn32s* sum, int scaleFactor) {
    VORN_CHECK(notNull(src, sum));
    VORN_CHECK(positive(len));
    *sum = scaledSum<Vorn32s>(exactSum(src, len), scaleFactor, -31, 63);
    return vornStsNoErr;
}
