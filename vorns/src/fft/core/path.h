// What decides the path that a complex transform takes, whatever the layout of its values.
#pragma once

#include <cstdint>

#include "fft/core/complex.h"
#include "fft/core/reversal.h"
#include "fft/core/transform.h"

namespace vorn::fft {

// Calls run with the factor of normalisation: what a direct transform does to its first sums, and how a longer one
// wraps the layout that its last stage writes.
template <class T, class Run>
VORN_INLINE void withFactor(const FloatSpec<T>& spec, Direction direction, Run run) {
    const T factor = spec.normFactor;
    if ((direction == Direction::Forward ? spec.normFwd : spec.normInv) != 0) {
        run(TimesFactor<T>{factor}, [factor](auto layout) { return Scaled<decltype(layout), T>{layout, factor}; });
    } else {
        run(AsIs{}, [](auto layout) { return layout; });
    }
}

// Whether the widest vectors at p lie in one cache line each.
template <class T>
bool liesWell(const T* p) {
    return reinterpret_cast<std::uintptr_t>(p) % sizeof(Wide<T>) == 0;
}

}  // namespace vorn::fft
