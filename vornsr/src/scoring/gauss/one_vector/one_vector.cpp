// Gaussian scores of one vector: diagonal covariances, as inverse variances, as variances, or all ones.
#include <algorithm>
#include <climits>

#include "frame/checks.h"
#include "frame/memory.h"
#include "frame/opaque.h"
#include "frame/scale.h"
#include "frame/wrap.h"
#include "scoring/gauss/one_vector/scores.h"
#include "vornsr/scoring.h"
#include "vornsr/signal.h"

using namespace vorn;

namespace {

// inverse[j] = 1 / var[j] in single; the status is the warning if a variance is zero.
template <class T>
VornStatus invert(const T* var, Vorn32f* inverse, std::ptrdiff_t len) {
    const f32x4 one = splat<f32x4>(1.0f), zero = splat<f32x4>(0.0f);
    bool zeroMet = false;
    std::ptrdiff_t j = 0;
    for (; j + 8 <= len; j += 8) {
        const EightFloats v = floatsOf(var + j);
        zeroMet |= any((v.low == zero) | (v.high == zero));
        store(inverse + j, one / v.low);
        store(inverse + j + 4, one / v.high);
    }
    for (; j < len; ++j) {
        zeroMet |= var[j] == 0;
        inverse[j] = 1.0f / static_cast<Vorn32f>(var[j]);
    }
    return zeroMet ? vornStsDivByZero : vornStsNoErr;
}

}  // namespace

// ---- Inverse variances.

VornStatus vornsLogGaussSingle_32f(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                   Vorn32f* result, Vorn32f val) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    *result = floatScore(src, mean, var, len, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_64f(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                   Vorn64f* result, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    *result = lessHalf(val, doubleSum(src, mean, var, len));
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_32f64f(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                      Vorn64f* result, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    *result = lessHalf(val, doubleSum(src, mean, var, len));
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_Scaled_16s32f(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                             Vorn32f* result, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    *result = fixedScore(src, mean, var, len, val, scaleOfHalf(scaleFactor));
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                          Vorn32s* result, Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    *result = roundedScore(src, mean, var, len, val, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_LowScaled_16s32f(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                                Vorn32f* result, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    *result = lowScore(src, mean, var, len, val, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_Low_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                              Vorn32s* result, Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    *result = lowScore(src, mean, var, len, val, scaleFactor);
    return vornStsNoErr;
}

// ---- The identity covariance.

VornStatus vornsLogGaussSingle_IdVar_32f(const Vorn32f* src, const Vorn32f* mean, int len, Vorn32f* result,
                                         Vorn32f val) {
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len));
    *result = floatScore(src, mean, UnitVar(), len, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_IdVar_64f(const Vorn64f* src, const Vorn64f* mean, int len, Vorn64f* result,
                                         Vorn64f val) {
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len));
    // Above 54 columns the address of the mean no longer counts.
    if (len > 54) {
        *result = pairedDoubleScore(src, mean, UnitVar(), len, val);
    } else {
        *result = lessHalf(val, doubleSum(src, mean, UnitVar(), len));
    }
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_IdVar_32f64f(const Vorn32f* src, const Vorn32f* mean, int len, Vorn64f* result,
                                            Vorn64f val) {
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len));
    *result = lessHalf(val, doubleSum(src, mean, UnitVar(), len));
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_IdVarScaled_16s32f(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32f* result,
                                                  Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len));
    *result = fixedScore(src, mean, UnitVar(), len, val, scaleOfHalf(scaleFactor));
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_IdVar_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32s* result,
                                                Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len));
    *result = roundedScore(src, mean, UnitVar(), len, val, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_IdVarLowScaled_16s32f(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32f* result,
                                                     Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len));
    *result = lowScore(src, mean, UnitVar(), len, val, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_IdVarLow_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean, int len, Vorn32s* result,
                                                   Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, result));
    VORN_CHECK(positive(len));
    *result = lowScore(src, mean, UnitVar(), len, val, scaleFactor);
    return vornStsNoErr;
}

// ---- Variances.

VornStatus vornsLogGaussSingle_DirectVar_32f(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                             Vorn32f* result, Vorn32f val) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    const Scratch<Vorn32f> inverse(std::int64_t{len} + 32);
    if (!inverse) return vornStsMemAllocErr;
    const VornStatus status = invert(var, inverse.get(), len);
    *result = floatScore(src, mean, inverse.get(), len, val);
    return status;
}

VornStatus vornsLogGaussSingle_DirectVar_64f(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                             Vorn64f* result, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    *result = dividedDoubleScore(src, mean, var, len, val);
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_DirectVar_32f64f(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                                Vorn64f* result, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    Vorn64f sum = 0.0;
    for (std::ptrdiff_t j = 0; j < len; ++j) {
        // A zero variance ends the call with the result unwritten: in this form only.
        if (var[j] == 0.0f) return vornStsDivByZero;
        const Vorn64f d = Vorn64f{src[j]} - Vorn64f{mean[j]};
        sum += (d * d) / Vorn64f{var[j]};
    }
    *result = lessHalf(val, sum);
    return vornStsNoErr;
}

VornStatus vornsLogGaussSingle_DirectVarScaled_16s32f(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var,
                                                      int len, Vorn32f* result, Vorn32f val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    const Scratch<Vorn32f> inverse(2 * std::int64_t{len} + 16);
    if (!inverse) return vornStsMemAllocErr;
    const Vorn32f scale = GetScale_32s32f(scaleFactor);
    const VornStatus status = invert(var, inverse.get(), len);
    *result = fixedScore(src, mean, inverse.get(), len, val, scale);
    return status;
}

VornStatus vornsLogGaussSingle_DirectVar_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var,
                                                    int len, Vorn32s* result, Vorn32s val, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    const Scratch<Vorn32f> scratch(5 * std::int64_t{len} + 80);
    if (!scratch) return vornStsMemAllocErr;
    const std::ptrdiff_t array = (std::ptrdiff_t{len} + 15) & ~std::ptrdiff_t{15};
    Vorn32f* const x = scratch.get();
    Vorn32f* const m = x + array;
    Vorn32f* const inverse = m + array;
    vornsConvert_16s32f(src, x, len);
    vornsConvert_16s32f(mean, m, len);
    const VornStatus status = invert(var, inverse, len);
    const Vorn32f sum = floatSum<Added>(x, m, inverse, len);
    Vorn32s term;
    vornsConvert_32f32s_Sfs(&sum, &term, 1, vornRndNear, std::min(scaleFactor, INT_MAX - 1) + 1);
    *result = saturate<Vorn32s>(std::int64_t{val} - term);
    return status;
}
