// The noise-robust front end: noise reduction, waveform processing, cepstra, equalisation, deltas, frames dropped.
#pragma once

#include <array>
#include <memory>
#include <span>
#include <vector>

#include "corpus.h"
#include "evaluation.h"
#include "reduction.h"

namespace digits {

// The steps that can be left out, to see what they are worth.
struct RobustSteps {
    ReductionSteps reduction;
    bool waveform = true;
    bool equalised = true;
    bool dropped = true;
};

// Cepstrum 1 to 12 that speech has on average.
using Reference = std::array<Vorn32f, kCepstra>;

class RobustFrontEnd {
public:
    explicit RobustFrontEnd(RobustSteps steps = {});

    // The equaliser leads the cepstra to the mean over the frames of words in these recordings, without noise.
    void learnReference(const std::vector<Mixed>& recordings);

    Utterance analyse(const Mixed& mixed) const;

    // The noise reduction alone, with the offset taken away.
    Reduced reduce(std::span<const Vorn16s> samples) const;

private:
    using Bank = std::unique_ptr<VornFBankState_32f, VornStatus (*)(VornFBankState_32f*)>;
    using Cosine = std::unique_ptr<VornDCTLifterState_32f, VornStatus (*)(VornDCTLifterState_32f*)>;

    // Rows of kRobustStatic values: cepstrum 1 to 12, cepstrum 0, the logarithm of the energy.
    std::vector<Vorn32f> cepstra(std::span<const Vorn32f> wave) const;

    RobustSteps steps_;
    NoiseReduction reduction_;
    Transform transform_;
    Bank bank_{nullptr, vornsFBankFree_32f};
    Cosine cosine_{nullptr, vornsDCTLifterFree_32f};
    std::vector<Vorn32f> window_;
    Reference reference_{};
};

}  // namespace digits
