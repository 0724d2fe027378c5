// The scores of the model by kind of arithmetic; each takes one row of a problem.
#pragma once

#include "scoring/gauss/sweep.h"

namespace gauss {

using Float = Place<float, float>;
using Double = Place<double, double>;
using Short = Place<Vorn16s, float>;
using Integer = Place<Vorn16s, Vorn32s>;

inline float doubledVal(const Float& p) { return 0.5f * (2 * p.val + model::negatedSum(p.row)); }
inline float halvedSum(const Float& p) { return p.val + 0.5f * model::negatedSum(p.row); }
inline double halvedSum(const Double& p) { return p.val + 0.5 * model::negatedSum(p.row); }
inline double tallSum(const Double& p) {
    return p.height < 1000 ? halvedSum(p) : 0.5 * (2 * p.val + model::negatedSumInOrder(p.row));
}
inline float scaled(const Short& p) {
    return model::negatedSum(p.row) * model::scaleSingle(p.scaleFactor + 1L) + p.val;
}
inline float lowScaled(const Short& p) {
    if (p.scaleFactor < 0) return scaled(p);
    return static_cast<float>(model::lowTotal(p.row, p.scaleFactor, p.lastOdd)) + p.val;
}
inline float identityLowScaled(const Short& p) {
    return model::scaledDown(model::negatedSumInPasses(p.row), p.scaleFactor + 1L) + p.val;
}
inline float integerInFloat(const Integer& p) {
    return model::scaledDown(model::negatedSum(p.row), p.scaleFactor + 1L) + static_cast<float>(p.val);
}
inline Vorn32s integerTruncated(const Integer& p) { return model::toInt(integerInFloat(p)); }
inline Vorn32s integerOddRounded(const Integer& p) {
    return p.lastOdd ? model::clampedAndRounded(integerInFloat(p)) : integerTruncated(p);
}
inline Vorn32s lowTotal(const Integer& p) {
    return model::wrapped(std::int64_t{model::lowTotal(p.row, p.scaleFactor, p.lastOdd)} + p.val);
}
inline Vorn32s lowInteger(const Integer& p) { return p.scaleFactor < 0 ? integerTruncated(p) : lowTotal(p); }
// Of many Gaussians a last odd one truncates first.
inline Vorn32s lowIntegerOfGaussians(const Integer& p) {
    if (p.scaleFactor < 0 && p.lastOdd) {
        const float sum = model::scaledDown(model::negatedSum(p.row), p.scaleFactor + 1L);
        return model::wrapped(std::int64_t{model::toInt(sum)} + p.val);
    }
    return lowInteger(p);
}

// A member whose scores replace what was there.
template <Shape shape, class T, class Val, class Out, class D2, class D2L, class Score>
void scores(const char* name, D2 d2, D2L d2l, Score score) {
    sweep<shape, T, Val, Out>(name, d2, d2l,
                              [=](const auto& p, const auto&, auto) { return scoresOf<shape>(p, score); });
}
#define SCORES(shape, T, Val, Out, stem, d2, d2l, score) \
    scores<shape, T, Val, Out>(#stem, stem##d2, stem##d2l, [](const auto& place) { return score(place); })

}  // namespace gauss
