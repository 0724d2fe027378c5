// A coarse map of the features: a few codewords, each for the frames that are nearest to it.
#pragma once

#include <vector>

#include "frames.h"

namespace digits {

class Codebook {
public:
    // Doubles the codewords by splitting until there are as many as that, a power of two, with a few sweeps of k-means
    // each time. A codeword to which no frame is nearest stays where it is.
    //
    // Y. Linde, A. Buzo, R. M. Gray, "An algorithm for vector quantizer design", 1980.
    Codebook(const Frames& frames, int codewords);

    int size() const { return static_cast<int>(mean_.size()) / kRowStep; }

    // The mean and the variance of the frames of a codeword.
    const Vorn32f* mean(int codeword) const { return mean_.data() + static_cast<std::ptrdiff_t>(codeword) * kRowStep; }
    const Vorn32f* variance(int codeword) const {
        return variance_.data() + static_cast<std::ptrdiff_t>(codeword) * kRowStep;
    }

    // The numbers of the given count of codewords that are nearest to a frame, nearest first.
    void nearest(const Vorn32f* frame, int count, Vorn32s* numbers) const;

private:
    void split();
    void sweep(const Frames& frames);

    std::vector<Vorn32f> mean_, variance_;  // a row of kRowStep elements for each codeword
    std::vector<Vorn32f> spread_;           // the variance of all frames,
    std::vector<Vorn32f> weight_;           // and its inverse, once for each codeword
};

}  // namespace digits
