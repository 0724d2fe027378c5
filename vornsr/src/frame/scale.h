// Powers of two of a scale factor sf: the value 2^-sf, exact wherever the type can hold it.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>

#include "vornsr/types.h"

namespace vorn {

// sf <= -128 gives +infinity, sf >= 150 gives 0.
constexpr Vorn32f GetScale_32s32f(int sf) {
    sf = std::clamp(sf, -128, 150);
    const std::uint32_t bits = sf <= 126  ? static_cast<std::uint32_t>(127 - sf) << 23  // normal, or infinity at -128
                               : sf < 150 ? 1u << (149 - sf)                            // denormal
                                          : 0u;
    return std::bit_cast<Vorn32f>(bits);
}

// sf <= -1024 gives +infinity, sf > 1074 gives 0.
constexpr Vorn64f GetScale_32s64f(int sf) {
    sf = std::clamp(sf, -1024, 1075);
    const std::uint64_t bits = sf <= 1022  ? static_cast<std::uint64_t>(1023 - sf) << 52
                               : sf < 1075 ? std::uint64_t{1} << (1074 - sf)
                                           : 0u;
    return std::bit_cast<Vorn64f>(bits);
}

// 2^n, infinity above the exponents of a single and 0 below its denormal numbers.
constexpr Vorn32f powerOfTwo_32f(std::int64_t n) {
    return GetScale_32s32f(static_cast<int>(std::clamp<std::int64_t>(-n, -128, 150)));
}

}  // namespace vorn
