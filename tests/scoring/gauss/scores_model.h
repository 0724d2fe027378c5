// The scores of the model by kind of arithmetic; each takes one row of a problem.
#pragma once

#include "scoring/gauss/sweep.h"

namespace gauss {

using Single = Place<float, float>;
using Double = Place<double, double>;
using Short = Place<Vorn16s, float>;
using Integer = Place<Vorn16s, Vorn32s>;

inline float doubledVal(const Single& p) { return 0.5f * (2 * p.val + model::negatedSum(p.row)); }
inline float halvedSum(const Single& p) { return p.val + 0.5f * model::negatedSum(p.row); }
inline double halvedSum(const Double& p) { return p.val + 0.5 * model::negatedSum(p.row); }
inline double tallSum(const Double& p) {
    return p.height < 1000 ? halvedSum(p) : 0.5 * (2 * p.val + model::negatedSumInOrder(p.row));
}
inline float scaled(const Short& p) { return model::negatedSum(p.row) * model::scaleSingle(p.scaleFactor + 1) + p.val; }
inline float lowScaled(const Short& p) {
    if (p.scaleFactor < 0) return scaled(p);
    return static_cast<float>(model::lowTotal(p.row, p.scaleFactor, p.lastOdd)) + p.val;
}
inline float identityLowScaled(const Short& p) {
    return model::scaledByPower(model::negatedSumInPasses(p.row), p.scaleFactor) + p.val;
}
inline float integerInSingle(const Integer& p) {
    return model::scaledByPower(model::negatedSum(p.row), p.scaleFactor) + static_cast<float>(p.val);
}
inline Vorn32s integerTruncated(const Integer& p) { return model::truncated(integerInSingle(p)); }
inline Vorn32s integerOddRounded(const Integer& p) {
    return p.lastOdd ? model::clampedAndRounded(integerInSingle(p)) : integerTruncated(p);
}
inline Vorn32s lowTotal(const Integer& p) {
    return model::wrapped(std::int64_t{model::lowTotal(p.row, p.scaleFactor, p.lastOdd)} + p.val);
}
inline Vorn32s lowInteger(const Integer& p) { return p.scaleFactor < 0 ? integerTruncated(p) : lowTotal(p); }
// Of many Gaussians a last odd one truncates first.
inline Vorn32s lowIntegerOfGaussians(const Integer& p) {
    if (p.scaleFactor < 0 && p.lastOdd) {
        const float sum = model::scaledByPower(model::negatedSum(p.row), p.scaleFactor);
        return model::wrapped(std::int64_t{model::truncated(sum)} + p.val);
    }
    return lowInteger(p);
}

}  // namespace gauss
