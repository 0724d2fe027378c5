// The fixed-point forms of conversions of n coefficients to n others.
#pragma once

#include <cstddef>
#include <cstdint>

#include "features/detour.h"
#include "frame/memory.h"
#include "frame/scale.h"
#include "vornsr/types.h"

namespace vorn::conversion {

// Coefficients and results of so many need no memory.
inline constexpr int fewCoefficients = 64;

// dst = store(convert(src 2^-scaleIn)), from the element on that convert returns as its first; the elements before it
// stay as they are. dst may be src.
template <class Store, class Convert>
VornStatus throughSingles(const Vorn16s* src, Vorn16s* dst, int n, int scaleIn, Store store, Convert convertSingles) {
    const ShortScratch<Vorn32f, 2 * fewCoefficients> singles(2 * std::int64_t{n});
    if (!singles) return vornStsMemAllocErr;
    Vorn32f* results = singles.get() + n;
    toSingles(src, singles.get(), n, GetScale_32s32f(scaleIn));
    const std::ptrdiff_t first = convertSingles(singles.get(), results, n);
    store(results + first, dst + first, n - first);
    return vornStsNoErr;
}

}  // namespace vorn::conversion
