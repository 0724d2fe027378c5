// Parts of a register: what a vector that ends before a register does has of it.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "simd/simd.h"

namespace vorn {

// Whether the processor loads and stores single lanes of this width by itself.
template <class Element>
inline constexpr bool hasMaskedLanes = i8xN::lanes == 64 || (i8xN::lanes == 32 && sizeof(Element) >= 4);

#if defined(VORN_SIMD_AVX2)
// For a function that takes a whole register: GCC does not clear the upper halves behind it, and its callers may end
// with the call.
inline void clearUpperHalves() { _mm256_zeroupper(); }
#endif

// The first bytes of a register with zeros behind them, and their store; from none to all. For lanes without masks.
i8xN loadBytes(const void* p, std::int64_t count);
void storeBytes(void* p, i8xN x, std::int64_t count);

// The same for n lanes. No other memory is touched.
template <class V>
VORN_INLINE V loadPart(const typename V::Element* p, std::int64_t n) {
    if constexpr (hasMaskedLanes<typename V::Element>) {
        return loadFirst<V>(p, n);
    } else {
        return std::bit_cast<V>(loadBytes(p, n * static_cast<std::int64_t>(sizeof *p)));
    }
}
template <class V>
VORN_INLINE void storePart(typename V::Element* p, V x, std::int64_t n) {
    if constexpr (hasMaskedLanes<typename V::Element>) {
        storeFirst(p, x, n);
    } else {
        storeBytes(p, std::bit_cast<i8xN>(x), n * static_cast<std::int64_t>(sizeof *p));
    }
}

// No bit, then all bits, for as many bytes as a register has.
struct NothingThenAll {
    std::uint8_t bytes[2 * sizeof(i8xN)] = {};
    constexpr NothingThenAll() {
        for (std::size_t i = sizeof(i8xN); i < sizeof bytes; ++i) bytes[i] = 0xFF;
    }
};
inline constexpr NothingThenAll nothingThenAll;

// x, zero from lane n on, with rest in those lanes.
template <class V>
VORN_INLINE V withRest(V x, std::int64_t n, typename V::Element rest) {
    const std::uint8_t* behind = nothingThenAll.bytes + sizeof(V) - n * static_cast<std::int64_t>(sizeof rest);
    return x | (splat<V>(rest) & load<V>(reinterpret_cast<const typename V::Element*>(behind)));
}

}  // namespace vorn
