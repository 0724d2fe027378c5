#include "features/resampling/design.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "elementary/elementary.h"

namespace vorn::resampling {

double bessel(double x) {
    double sum = 1, term = 1, k = 1;
    do {
        const double t = x * 0.5 / k;
        term = term * t * t;
        k = k + 1;
        sum = sum + term;
        if (!(sum <= std::numeric_limits<double>::max())) return sum;  // the series would not end
    } while (!(term < 1e-21 * sum));
    return sum;
}

WindowedSinc::WindowedSinc(std::int64_t perSample, std::int64_t points, double cutOff, double alpha)
    : cutOff_(cutOff),
      alpha_(alpha),
      angle_(3.141592653589793 / static_cast<double>(perSample)),
      window_(1 / bessel(alpha)),
      stepOfWindow_(1 / static_cast<double>(points - 1)),
      gain_(1) {
    double sum = 0;
    for (std::int64_t i = perSample; i < points; i += perSample) sum = sum + plain(i);
    gain_ = 1 / (2 * sum + plain(0));
}

// The centre is not windowed.
double WindowedSinc::plain(std::int64_t i) const {
    if (i == 0) return cutOff_;
    const auto n = static_cast<double>(i);
    const double sinc = sin64(cutOff_ * angle_ * n) / (n * angle_);
    const double u = n * stepOfWindow_;
    return bessel(std::sqrt(std::max(1 - u * u, 0.0)) * alpha_) * window_ * sinc;
}

}  // namespace vorn::resampling
