// exp(x) = 2^k exp(r) with r within half of ln 2, where a Taylor sum of nine terms is exact to single precision.
#include "exponential.h"

#include <cmath>

namespace digits {

float exponential(float x) {
    if (x < -87.0f) return 0.0f;
    const double k = std::floor(x * 1.4426950408889634 + 0.5);  // 1 / ln 2
    const double r = x - k * 0.6931471805599453;                // ln 2
    double sum = 1.0;
    for (int n = 9; n > 0; --n) sum = 1.0 + sum * r / n;
    return static_cast<float>(std::ldexp(sum, static_cast<int>(k)));
}

}  // namespace digits
