// Entropy: the exported functions.
#include <algorithm>
#include <cstddef>
#include <limits>

#include "elementary/logarithm_kernels.h"
#include "frame/checks.h"
#include "frame/rounding.h"
#include "frame/scale.h"
#include "simd/block.h"
#include "vornsr/linalg.h"

namespace vorn {
namespace {

// x ln x; the logarithm is taken in double and rounded to single. Lanes are above zero, or 0 where a scale has made it
// of an integer, which gives no number; an infinity gives one.
VORN_INLINE f32xN timesLogarithm(f32xN x) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const f32xN ln = narrow(lnOfSeparated(separate(widenLow(x))), lnOfSeparated(separate(widenHigh(x))));
    const f32xN lowEnd = select(x == splat<f32xN>(0.0f), splat<f32xN>(-infinity), ln);
    return x * select(x == splat<f32xN>(infinity), x, lowEnd);
}

// The elements as singles, with a 1, whose term is 0, in the place of a zero; and whether all may stand under a
// logarithm.
struct Probabilities {
    using Element = Vorn32f;
    VORN_INLINE f32xN at(const Vorn32f* p, bool& good) const {
        const f32xN x = load<f32xN>(p), zero = splat<f32xN>(0.0f);
        good = all(x >= zero);
        return select(x == zero, splat<f32xN>(1.0f), x);
    }
};
struct ScaledIntegers {
    using Element = Vorn16s;
    float scale;
    VORN_INLINE f32xN at(const Vorn16s* p, bool& good) const {
        const i32xN x = loadWidened<i32xN>(p), zero = splat<i32xN>(0);
        good = !any(zero > x);
        return select(x == zero, splat<f32xN>(1.0f), toFloat(x) * splat<f32xN>(scale));
    }
};

// The terms of so many elements at a time. Each addition waits for the one before it, while the next terms are made.
constexpr std::ptrdiff_t runOfTerms = 16;

// The sum of x ln x over the positive elements, one single in their order; false where an element is negative or not a
// number.
template <class Source>
VORN_NOINLINE bool sumOfTerms(const Source& source, const typename Source::Element* src, std::ptrdiff_t len,
                              float* result) {
    alignas(f32xN) float term[runOfTerms];
    bool allGood = true;
    float sum = 0.0f;
    for (std::ptrdiff_t i = 0; i < len; i += runOfTerms) {
        const std::ptrdiff_t n = std::min(runOfTerms, len - i);
        forBlocks<f32xN::lanes>(
            src + i, term, n, [&](const typename Source::Element* from, float* to) __attribute__((always_inline)) {
                bool good;
                store(to, timesLogarithm(source.at(from, good)));
                allGood &= good;
            });
        if (!allGood) return false;
        for (std::ptrdiff_t k = 0; k < n; ++k) sum += term[k];
    }
    *result = sum;
    return true;
}

constexpr float ln2 = 0.6931472f;

}  // namespace
}  // namespace vorn

using namespace vorn;

VornStatus vornsEntropy_32f(const Vorn32f* src, int len, Vorn32f* dst) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    float sum;
    if (!sumOfTerms(Probabilities{}, src, len, &sum)) {
        *dst = std::numeric_limits<float>::quiet_NaN();
        return vornStsLnNegArg;
    }
    *dst = sum / ln2;
    return vornStsNoErr;
}

VornStatus vornsEntropy_16s32s_Sfs(const Vorn16s* src, int srcScale, int len, Vorn32s* dst, int dstScale) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(len));
    float sum;
    if (!sumOfTerms(ScaledIntegers{GetScale_32s32f(srcScale)}, src, len, &sum)) return vornStsLnNegArg;
    const float entropy = sum * GetScale_32s32f(dstScale) / ln2;
    // What is not a number is not above the lower limit.
    *dst = !(entropy > -2147483648.0f) ? std::numeric_limits<Vorn32s>::min()
           : entropy >= 2147483648.0f  ? std::numeric_limits<Vorn32s>::max()
                                       : static_cast<Vorn32s>(entropy);
    return vornStsNoErr;
}
