// The sixteen lanes of dot products: element i is added in lane i mod 16.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "simd/fold.h"
#include "simd/simd.h"

namespace vorn {

// Sixteen numbers in vectors of the build's width, in the type of the sum.
template <class Sum>
struct Sixteen {
    using V = Wide<Sum>;
    static constexpr int parts = 16 / V::lanes;
    V part[parts];

    // Not a loop: the compiler would make a call of it, and keep the sums in memory.
    static VORN_INLINE Sixteen zero() {
        return []<int... k>(std::integer_sequence<int, k...>)->Sixteen {
            return {{(static_cast<void>(k), splat<V>(0))...}};
        }
        (std::make_integer_sequence<int, parts>());
    }
    // Lane j takes j + 8, j + 4, j + 2, j + 1 in turn.
    VORN_INLINE Sum folded() const { return sumOfLanes(joined<1>(0)); }

private:
    // The parts k, k + stride, ...; of them, each of the first half takes the one that lies half their number behind.
    template <int stride>
    VORN_INLINE V joined(int k) const {
        if constexpr (stride == parts) {
            return part[k];
        } else {
            return joined<2 * stride>(k) + joined<2 * stride>(k + stride);
        }
    }
};

template <class Sum, class Element>
VORN_INLINE Sixteen<Sum> load16(const Element* src) {
    using V = Wide<Sum>;
    Sixteen<Sum> x;
    for (int k = 0; k < Sixteen<Sum>::parts; ++k) {
        if constexpr (std::is_same_v<Sum, Element>) {
            x.part[k] = load<V>(src + k * V::lanes);
        } else {
            x.part[k] = loadWidened<V>(src + k * V::lanes);
        }
    }
    return x;
}

template <class Sum>
VORN_INLINE void addProduct(Sixteen<Sum>& sum, const Sixteen<Sum>& a, const Sixteen<Sum>& b) {
    for (int k = 0; k < Sixteen<Sum>::parts; ++k) sum.part[k] = sum.part[k] + a.part[k] * b.part[k];
}

}  // namespace vorn
