// The cosine by plain arithmetic in double, with the same bits under every run-time library.
#pragma once

#include <cmath>

namespace digits {

// cos(2 pi turns), by its series about the nearest whole turn.
inline double cosineOfTurns(double turns) {
    constexpr double kTurn = 6.283185307179586;
    const double angle = (turns - std::nearbyint(turns)) * kTurn, square = angle * angle;
    double sum = 0.0;
    for (int n = 30; n > 0; n -= 2) sum = (1.0 - sum) * square / (n * (n - 1.0));
    return 1.0 - sum;
}

}  // namespace digits
