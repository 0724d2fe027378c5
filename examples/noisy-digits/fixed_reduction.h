// The noise reduction once more, in 16 and 32 bits: the same steps by the library's fixed-point functions.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "reduction.h"

namespace digits {

struct FixedReduced {
    std::vector<Vorn16s> wave;
    std::vector<bool> speech;
};

class FixedReduction {
public:
    FixedReduction();

    FixedReduced reduce(std::span<const Vorn16s> wave) const;

private:
    friend class FixedStage;
    using Bank = std::unique_ptr<VornFBankState_16s, VornStatus (*)(VornFBankState_16s*)>;
    using Spec = std::unique_ptr<VornsFFTFixedSpec, VornStatus (*)(VornsFFTFixedSpec*)>;

    Spec spec_{nullptr, vornsFFTFree_R_32s};
    Bank bank_{nullptr, vornsFBankFree_16s};
    std::vector<Vorn16s> window_, response_;  // Q15
};

}  // namespace digits
