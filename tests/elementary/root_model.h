// Correctly rounded roots of integers, in integers.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace model {

__extension__ using int128 = __int128;

// The root of x 2^(-2 sf) to nearest, ties to even, in integers: 4 x against (2 r + 1)^2.
template <class Result>
Result rootOf(std::int64_t x, int sf) {
    if (x <= 0) return 0;
    const auto compare = [&](int128 twice) {  // the sign of sqrt(x) 2^(1-sf) - twice
        if (sf > 0) {
            const int128 t = twice << sf;
            return t > (int128{1} << 60) ? -1 : (4 * int128{x} > t * t) - (4 * int128{x} < t * t);
        }
        const int shift = 2 - 2 * sf;
        if (shift > 62) return 1;
        const int128 scaledX = int128{x} << shift;
        return (scaledX > twice * twice) - (scaledX < twice * twice);
    };
    const auto limit = static_cast<std::int64_t>(std::numeric_limits<Result>::max());
    std::int64_t low = 0, high = std::min<std::int64_t>(limit, (std::int64_t{1} << 33));
    while (low < high) {  // the largest r with sqrt >= r - 1/2
        const std::int64_t middle = low + (high - low + 1) / 2;
        const int sign = compare(2 * int128{middle} - 1);
        if (sign > 0 || (sign == 0 && middle % 2 == 0)) {
            low = middle;
        } else {
            high = middle - 1;
        }
    }
    return static_cast<Result>(low);
}

}  // namespace model
