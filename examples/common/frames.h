// Frames of many recordings taken together, and what the library's accumulators sum over them.
#pragma once

#include <vector>

#include "front_end.h"

namespace digits {

// Frames that lie one after another in a recording.
struct Stretch {
    const Vorn32f* rows;  // of kRowStep elements
    int height;

    const Vorn32f* row(int t) const { return rows + static_cast<std::ptrdiff_t>(t) * kRowStep; }
};

using Frames = std::vector<Stretch>;

int heightOf(const Frames& frames);

// The sum and the sum of squares of each feature.
struct FeatureSums {
    explicit FeatureSums(const Frames& frames);

    std::vector<Vorn32f> sum, squares;
    Vorn32f height;
};

// The mean and the variance of each feature, over two frames or more.
struct Moments {
    explicit Moments(const Frames& frames);

    std::vector<Vorn32f> mean, variance;
};

}  // namespace digits
