// Gaussian scores of one vector: what becomes of a sum. The exported functions and the kernels of the same names share
// these.
#pragma once

#include <cstddef>

#include "frame/opaque.h"
#include "frame/wrap.h"
#include "scoring/gauss/forms.h"
#include "scoring/gauss/one_vector/sums.h"

namespace vorn {

// 0.5 x (2 x val - S).
template <class Var>
inline float floatScore(const Vorn32f* x, const Vorn32f* mean, Var var, std::ptrdiff_t len, float val) {
    return DoubledVal{}(floatSum<Subtracted>(x, mean, var, len), val);
}

// val - S x 0.5 in two pairs of lanes whatever the addresses.
template <class T, class Var>
inline double pairedDoubleScore(const T* x, const T* mean, Var var, std::ptrdiff_t len, double val) {
    return lessHalf(val, pairedDoubleSum(0.0, x, mean, var, 0, len));
}
inline double dividedDoubleScore(const Vorn64f* x, const Vorn64f* mean, const Vorn64f* var, std::ptrdiff_t len,
                                 double val) {
    return lessHalf(val, dividedDoubleSum(x, mean, var, len));
}

// val - S x scale, the scale of half a sum.
inline float fixedScore(const Vorn16s* x, const Vorn16s* mean, const Vorn16s* var, std::ptrdiff_t len, float val,
                        float scale) {
    return val - fixedSum(x, mean, var, len) * scale;
}
inline float fixedScore(const Vorn16s* x, const Vorn16s* mean, UnitVar, std::ptrdiff_t len, float val, float scale) {
    return val - static_cast<float>(exactSquares(x, mean, len)) * scale;
}
// Over the inverses of variances: val - (S x 0.5) x scale.
inline float fixedScore(const Vorn16s* x, const Vorn16s* mean, const Vorn32f* inverse, std::ptrdiff_t len, float val,
                        float scale) {
    return val - opaque(fixedSum(x, mean, inverse, len) * 0.5f) * scale;
}

// val - S / 2 x 2^-scaleFactor, rounded.
template <class Var>
inline Vorn32s roundedScore(const Vorn16s* x, const Vorn16s* mean, Var var, std::ptrdiff_t len, Vorn32s val,
                            int scaleFactor) {
    return rounded(static_cast<float>(val) - ScaledDown(scaleFactor)(fixedSum(x, mean, var, len) * 0.5f));
}

// Low precision. With variances, a negative scale factor leaves the integers.
inline float lowScoreInFloat(const Vorn16s* x, const Vorn16s* mean, const Vorn16s* var, std::ptrdiff_t len, float val,
                             int scaleFactor) {
    return val - fixedSum(x, mean, var, len) * scaleOfHalf(scaleFactor);
}
inline float lowScore(const Vorn16s* x, const Vorn16s* mean, const Vorn16s* var, std::ptrdiff_t len, float val,
                      int scaleFactor) {
    if (scaleFactor < 0) return lowScoreInFloat(x, mean, var, len, val, scaleFactor);
    return static_cast<float>(negatedLowScore(x, mean, var, len, scaleFactor)) + val;
}
inline Vorn32s lowScore(const Vorn16s* x, const Vorn16s* mean, const Vorn16s* var, std::ptrdiff_t len, Vorn32s val,
                        int scaleFactor) {
    if (scaleFactor < 0) return truncated(lowScoreInFloat(x, mean, var, len, static_cast<float>(val), scaleFactor));
    return wrapAdd(negatedLowScore(x, mean, var, len, scaleFactor), val);
}
inline float lowScore(const Vorn16s* x, const Vorn16s* mean, UnitVar, std::ptrdiff_t len, float val, int scaleFactor) {
    return PowerOfTwoSum(scaleFactor)(negatedPairSquares(x, mean, len), val);
}
inline Vorn32s lowScore(const Vorn16s* x, const Vorn16s* mean, UnitVar unit, std::ptrdiff_t len, Vorn32s val,
                        int scaleFactor) {
    return wrapAdd(negatedLowScore(x, mean, unit, len, scaleFactor), val);
}

}  // namespace vorn
