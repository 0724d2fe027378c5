// Exact integer sums and what is stored of them.
#pragma once

#include <algorithm>
#include <limits>

namespace exact {

__extension__ using int128 = __int128;

template <class Result>
Result saturated(int128 x) {
    using L = std::numeric_limits<Result>;
    return static_cast<Result>(std::clamp<int128>(x, L::min(), L::max()));
}

// x 2^-sf to nearest, ties to even, saturated.
template <class Result>
Result scaled(int128 x, int sf) {
    if (sf <= 0) return saturated<Result>(x * (int128{1} << -sf));
    const int128 floor = x >> sf, rest = x - (floor << sf), half = int128{1} << (sf - 1);
    return saturated<Result>(floor + (rest > half || (rest == half && (floor & 1) != 0)));
}

}  // namespace exact
