// Noise reduction in two stages: each is a Wiener filter that is designed anew for every 10 ms.
//
// ETSI ES 202 050, "Distributed speech recognition; advanced front-end feature extraction algorithm"; A. Agarwal,
// Y. M. Cheng, "Two-stage mel-warped Wiener filter for robust speech recognition", 1999.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "front_end.h"
#include "transform.h"

namespace digits {

inline constexpr int kSmoothBins = kFftLength / 4 + 1;  // of the smoothed power spectrum
inline constexpr int kBands = 25;                       // of the gain along the mel scale
inline constexpr int kTaps = 17;

// The steps of noise reduction that can be left out, to see what they are worth.
struct ReductionSteps {
    bool first = true, second = true;  // the two stages
    bool gradual = true;               // the second stage filters less where there is speech
};

struct Reduced {
    std::vector<Vorn32f> wave;   // as long as the recording
    std::vector<bool> speech;    // the detector's decision for each block of kFrameStep samples
    std::vector<Vorn32f> noise;  // the first stage's estimate of the noise's magnitudes: kSmoothBins a block
    std::vector<Vorn32f> noisy;  // the magnitudes themselves
};

class NoiseReduction {
public:
    explicit NoiseReduction(ReductionSteps steps = {});

    Reduced reduce(std::span<const Vorn32f> wave) const;

private:
    friend class Stage;
    using Bank = std::unique_ptr<VornFBankState_32f, VornStatus (*)(VornFBankState_32f*)>;

    ReductionSteps steps_;
    Transform transform_;
    Bank bank_{nullptr, vornsFBankFree_32f};
    std::vector<Vorn32f> window_;
    std::vector<Vorn32f> response_;  // rows of kBands weights: from the gains of the bands to the impulse response
};

}  // namespace digits
