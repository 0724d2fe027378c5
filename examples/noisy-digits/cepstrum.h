// The cepstrum of one frame of the robust front ends.
#pragma once

#include <memory>
#include <vector>

#include "front_end.h"
#include "transform.h"

namespace digits {

// Cepstrum 1 to 12, cepstrum 0, the logarithm of the energy.
inline constexpr int kRobustStatic = kCepstra + 2;

// What keeps digital silence off the logarithms.
struct Least {
    Vorn32f band, energy;
};

inline constexpr Least kLeastInSingle{4.5399930e-5f, 1.9287498e-22f};  // exp(-10), exp(-50)

// A wave of whole numbers has gaps of pure zeros where it is quiet. They take what its rounding is on average: a
// twelfth for each sample, in a band under the window and behind the pre-emphasis.
inline constexpr Least kLeastInIntegers{12.0f, kFrameLength / 12.0f};

class Cepstrum {
public:
    explicit Cepstrum(const Least& least);

    // Of kFrameLength samples; `transform` is the calling thread's own copy.
    void of(const Vorn32f* frame, Transform& transform, Vorn32f* row) const;

private:
    using Bank = std::unique_ptr<VornFBankState_32f, VornStatus (*)(VornFBankState_32f*)>;
    using Cosine = std::unique_ptr<VornDCTLifterState_32f, VornStatus (*)(VornDCTLifterState_32f*)>;

    Least least_;
    Bank bank_{nullptr, vornsFBankFree_32f};
    Cosine cosine_{nullptr, vornsDCTLifterFree_32f};
    std::vector<Vorn32f> window_;
};

}  // namespace digits
