// The cepstrum of one frame of the robust front ends.
#pragma once

#include <memory>
#include <vector>

#include "front_end.h"
#include "transform.h"

namespace digits {

// Cepstrum 1 to 12, cepstrum 0, the logarithm of the energy.
inline constexpr int kRobustStatic = kCepstra + 2;

class Cepstrum {
public:
    Cepstrum();

    // Of kFrameLength samples; `transform` is the calling thread's own copy.
    void of(const Vorn32f* frame, Transform& transform, Vorn32f* row) const;

private:
    using Bank = std::unique_ptr<VornFBankState_32f, VornStatus (*)(VornFBankState_32f*)>;
    using Cosine = std::unique_ptr<VornDCTLifterState_32f, VornStatus (*)(VornDCTLifterState_32f*)>;

    Bank bank_{nullptr, vornsFBankFree_32f};
    Cosine cosine_{nullptr, vornsDCTLifterFree_32f};
    std::vector<Vorn32f> window_;
};

}  // namespace digits
