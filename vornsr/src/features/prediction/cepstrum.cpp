// Prediction coefficients and cepstrum: the recursions and the exported functions.
#include "features/prediction/cepstrum.h"

#include "features/prediction/through_singles.h"
#include "frame/checks.h"
#include "vornsr/features.h"

namespace vorn::conversion {
namespace {

// product(weight, i, j) is term j of element i.
template <class Product>
inline std::ptrdiff_t recursion(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t n, Product product) {
    for (std::ptrdiff_t i = 0; i < n; ++i) {
        Vorn32f acc = 0;
        for (std::ptrdiff_t j = 0; j < i; ++j) acc += product(static_cast<Vorn32f>(i - j), i, j);
        dst[i] = 0.0f - (acc / static_cast<Vorn32f>(i + 1) + src[i]);
    }
    return 0;
}

}  // namespace

std::ptrdiff_t toCepstrum(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t n) {
    return recursion(src, dst, n, [=](Vorn32f weight, std::ptrdiff_t i, std::ptrdiff_t j) {
        return weight * src[j] * dst[i - 1 - j];
    });
}

std::ptrdiff_t fromCepstrum(const Vorn32f* src, Vorn32f* dst, std::ptrdiff_t n) {
    return recursion(src, dst, n, [=](Vorn32f weight, std::ptrdiff_t i, std::ptrdiff_t j) {
        return weight * src[i - 1 - j] * dst[j];
    });
}

}  // namespace vorn::conversion

using namespace vorn;

VornStatus vornsLPToCepstrum_32f(const Vorn32f* src, Vorn32f* dst, int n) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(n));
    conversion::toCepstrum(src, dst, n);
    return vornStsNoErr;
}

VornStatus vornsCepstrumToLP_32f(const Vorn32f* src, Vorn32f* dst, int n) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(n));
    conversion::fromCepstrum(src, dst, n);
    return vornStsNoErr;
}

VornStatus vornsLPToCepstrum_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int n, int scale) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(n));
    return conversion::throughSingles(src, dst, n, oppositeScale(scale), WrappedStore{scale}, conversion::toCepstrum);
}

VornStatus vornsCepstrumToLP_16s_Sfs(const Vorn16s* src, Vorn16s* dst, int n, int scale) {
    VORN_CHECK(notNull(src, dst));
    VORN_CHECK(positive(n));
    return conversion::throughSingles(src, dst, n, oppositeScale(scale), NearestStore{scale}, conversion::fromCepstrum);
}
