// Natural logarithms of vectors.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "elementary/logarithm_kernels.h"
#include "frame/checks.h"
#include "frame/rounding.h"
#include "frame/scale.h"
#include "simd/block.h"
#include "simd/part.h"
#include "vornsr/signal.h"

namespace vorn {
namespace {

// Whole vectors from i on, up to one that holds anything but normal positive numbers; returns where it stopped. A
// function of its own, so that its constants stay in registers.
template <class Element>
VORN_NOINLINE std::ptrdiff_t lnOfNormals(const Element* src, Element* dst, std::ptrdiff_t i, std::ptrdiff_t len) {
    using V = Wide<Element>;
    for (; i + V::lanes <= len; i += V::lanes) {
        const V x = load<V>(src + i);
        if (!all(isNormalPositive(x))) [[unlikely]]
            break;
        store(dst + i, lnOfSeparated(separate(x)));
    }
    return i;
}

template <class V>
VORN_INLINE V lnOf(V x, LnCode& code) {
    return all(isNormalPositive(x)) ? lnOfSeparated(separate(x)) : lnOfAny(x, code);
}

// dst may be src. Returns the code of the first bad element. A last vector that ends with the elements is read before
// they are written over; what it repeats changes no code.
template <class Element>
LnCode lnVector(const Element* src, Element* dst, std::ptrdiff_t len) {
    using V = Wide<Element>;
    LnCode code = lnGood;
    if (len < V::lanes) {
        storePart(dst, lnOf(withRest(loadPart<V>(src, len), len, Element(1)), code), len);
        return code;
    }
    const V end = load<V>(src + len - V::lanes);
    std::ptrdiff_t i = lnOfNormals(src, dst, 0, len);
    while (i + V::lanes <= len) {
        store(dst + i, lnOfAny(load<V>(src + i), code));
        i = lnOfNormals(src, dst, i + V::lanes, len);
    }
    if (i < len) store(dst + len - V::lanes, lnOf(end, code));
    return code;
}

VornStatus lnStatus(LnCode code) {
    return code == lnGood ? vornStsNoErr : code == lnZero ? vornStsLnZeroArg : vornStsLnNegArg;
}

constexpr std::ptrdiff_t runLength = 256;

// Logarithms in double, rounded to single once.
VornStatus lnNarrowed(const Vorn64f* src, Vorn32f* dst, std::ptrdiff_t len) {
    LnCode code = lnGood;
    for (std::ptrdiff_t i = 0; i < len; i += runLength) {
        const std::ptrdiff_t n = std::min(runLength, len - i);
        Vorn64f run[runLength];
        const LnCode ofRun = lnVector(src + i, run, n);
        if (code == lnGood) code = ofRun;
        for (std::ptrdiff_t j = 0; j < n; ++j) dst[i + j] = static_cast<Vorn32f>(run[j]);
    }
    return lnStatus(code);
}

constexpr std::int32_t badResult = std::numeric_limits<std::int32_t>::min();

LnCode firstBad(const Vorn32s* src) {
    for (int i = 0; i < i32xN::lanes; ++i) {
        if (src[i] < 1) return src[i] == 0 ? lnZero : lnNegative;
    }
    return lnGood;
}

// ln x rounded to the nearest integer needs no logarithm: it is the number of thresholds that x has passed.
constexpr std::int32_t lastWithLn[] = {1,       4,       12,       33,       90,        244,       665,
                                       1808,    4914,    13359,    36315,    98715,     268337,    729416,
                                       1982759, 5389698, 14650719, 39824784, 108254987, 294267566, 799902177};

VORN_INLINE i32xN roundedLn(i32xN x, int shift) {
    i32xN passed = splat<i32xN>(0);
    for (std::int32_t last : lastWithLn) {
        passed = passed + select(x > splat<i32xN>(last), splat<i32xN>(1), splat<i32xN>(0));
    }
    return select(splat<i32xN>(1) > x, splat<i32xN>(badResult), shiftRightLogical(passed, shift));
}

// The logarithm in single times 2^-scaleFactor, rounded to nearest and saturated. The scale stays finite, so that ln 1
// stays 0.
VORN_INLINE i32xN scaledLn(i32xN x, f32xN scale) {
    const f32xN scaled = lnOfSeparated(separate(toFloat(maxOf(x, splat<i32xN>(1))))) * scale;
    const i32xN rounded = select(scaled >= splat<f32xN>(2147483648.0f),
                                 splat<i32xN>(std::numeric_limits<std::int32_t>::max()), roundToInt(scaled));
    return select(splat<i32xN>(1) > x, splat<i32xN>(badResult), rounded);
}

// Returns the code of the first element below 1; behind the elements stand ones.
template <class Step>
LnCode lnIntegers(const Vorn32s* src, Vorn32s* dst, std::ptrdiff_t len, Step step) {
    LnCode code = lnGood;
    const auto stepAt = [&](const Vorn32s* from, Vorn32s* to) {
        const i32xN x = load<i32xN>(from);
        if (code == lnGood && any(splat<i32xN>(1) > x)) [[unlikely]]
            code = firstBad(from);
        store(to, step(x));
    };
    forBlocks<i32xN::lanes>(src, dst, len, stepAt, Vorn32s{1});
    return code;
}

VornStatus lnScaled(const Vorn32s* src, Vorn32s* dst, std::ptrdiff_t len, int scaleFactor) {
    if (scaleFactor >= 0) {
        const int shift = scaleFactor & 31;
        return lnStatus(lnIntegers(src, dst, len, [shift](i32xN x) { return roundedLn(x, shift); }));
    }
    const Vorn32f scale = GetScale_32s32f(std::max(scaleFactor, -127));
    return lnStatus(lnIntegers(src, dst, len, [scale](i32xN x) { return scaledLn(x, splat<f32xN>(scale)); }));
}

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsLn_32f(const Vorn32f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return lnStatus(lnVector(src, dst, len));
}

VornStatus vornsLn_32f_I(Vorn32f* srcDst, int len) { return vornsLn_32f(srcDst, srcDst, len); }

VornStatus vornsLn_64f(const Vorn64f* src, Vorn64f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return lnStatus(lnVector(src, dst, len));
}

VornStatus vornsLn_64f_I(Vorn64f* srcDst, int len) { return vornsLn_64f(srcDst, srcDst, len); }

VornStatus vornsLn_64f32f(const Vorn64f* src, Vorn32f* dst, int len) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return lnNarrowed(src, dst, len);
}

VornStatus vornsLn_32s_Sfs(const Vorn32s* src, Vorn32s* dst, int len, int scaleFactor) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    return lnScaled(src, dst, len, scaleFactor);
}

VornStatus vornsLn_32s_ISfs(Vorn32s* srcDst, int len, int scaleFactor) {
    return vornsLn_32s_Sfs(srcDst, srcDst, len, scaleFactor);
}
