// The noise-robust front end: noise reduction, waveform processing, cepstra, equalisation, deltas, frames dropped; in
// single precision, and in 16 and 32 bits.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "cepstrum.h"
#include "evaluation.h"
#include "fixed_reduction.h"
#include "reduction.h"

namespace digits {

// The steps that can be left out, to see what they are worth.
struct RobustSteps {
    ReductionSteps reduction{};
    bool waveform = true;
    bool equalised = true;
    bool dropped = true;
};

// Cepstrum 1 to 12 that words have on average.
using Reference = std::array<Vorn32f, kCepstra>;

class RobustFrontEnd {
public:
    explicit RobustFrontEnd(RobustSteps steps = {});

    // The equaliser leads the cepstra to the mean over the frames of the words in these recordings.
    void learnReference(const std::vector<Mixed>& recordings);
    const Reference& reference() const { return reference_; }

    Utterance analyse(const Mixed& mixed) const;

    // The noise reduction, and the offset taken away.
    Reduced reduce(std::span<const Vorn16s> samples) const;

    // Rows of kRobustStatic values, not yet equalised.
    std::vector<Vorn32f> cepstra(std::span<const Vorn32f> wave) const;

private:
    RobustSteps steps_;
    NoiseReduction reduction_;
    Transform transform_;
    Cepstrum cepstrum_{kLeastInSingle};
    Reference reference_{};
};

// The same with the library's fixed-point functions; only the cepstrum of a frame is made in single precision.
class FixedFrontEnd {
public:
    explicit FixedFrontEnd(const Reference& reference);

    Utterance analyse(const Mixed& mixed) const;
    FixedReduced reduce(std::span<const Vorn16s> samples) const;

private:
    FixedReduction reduction_;
    Transform transform_;
    Cepstrum cepstrum_{kLeastInIntegers};
    std::array<Vorn16s, kCepstra> reference_{};
};

}  // namespace digits
