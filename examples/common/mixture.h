// A mixture of diagonal Gaussians in training: how it is estimated, how it grows, and how it becomes a state's.
#pragma once

#include <vector>

#include "frames.h"
#include "model.h"

namespace digits {

class Mixture {
public:
    // One Gaussian: mean and variance of the frames, but no variance below its floor.
    Mixture(const Frames& frames, const std::vector<Vorn32f>& floor);

    int size() const { return static_cast<int>(weight_.size()); }

    // Splits the heaviest Gaussian in two until there are as many as that.
    void grow(int gaussians);

    // One sweep of expectation and maximisation: how much each Gaussian answers for each frame, and new weights, means
    // and variances from these shares. A Gaussian that answers for no frame keeps its mean and variance.
    //
    // A. P. Dempster, N. M. Laird, D. B. Rubin, "Maximum likelihood from incomplete data via the EM algorithm", 1977.
    void sweep(const Frames& frames, const std::vector<Vorn32f>& floor);

    // The form that scoring takes; the ways on from the state are left alone.
    void store(State& state) const;

private:
    Vorn32f* mean(int g) { return mean_.data() + static_cast<std::ptrdiff_t>(g) * kRowStep; }
    Vorn32f* variance(int g) { return variance_.data() + static_cast<std::ptrdiff_t>(g) * kRowStep; }

    std::vector<Vorn32f> mean_, variance_;  // a row of kRowStep elements for each Gaussian
    std::vector<Vorn32f> weight_;
};

}  // namespace digits
