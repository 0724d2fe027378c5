// The design of resampling filters: a sinc under a Kaiser window (Kaiser 1974; Smith and Gossett 1984).
#pragma once

#include <cstdint>

namespace vorn::resampling {

// The modified Bessel function of order 0 by its power series; infinite where it leaves a double.
double bessel(double x);

// One half of a symmetric filter, from its centre outwards, on a grid of `perSample` points: the points 0 to points -
// 1, of which the last carries the edge of the window. Cut off at `cutOff` of half the sampling rate, and of such gain
// that the points at whole samples of both halves add up to 1. To be made and asked in round-to-nearest mode.
class WindowedSinc {
public:
    WindowedSinc(std::int64_t perSample, std::int64_t points, double cutOff, double alpha);

    // Behind the last point the window stays at its edge.
    double at(std::int64_t i) const { return gain_ * plain(i); }

private:
    double plain(std::int64_t i) const;

    double cutOff_, alpha_, angle_, window_, stepOfWindow_, gain_;
};

}  // namespace vorn::resampling
