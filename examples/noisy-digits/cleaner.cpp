#include "cleaner.h"

#include "robust.h"
#include "suppression.h"

namespace digits {

const char* nameOf(Method method) {
    static constexpr const char* kNames[] = {"two-stage", "fixed", "wiener", "ephraim-malah"};
    return kNames[static_cast<int>(method)];
}

std::vector<Vorn16s> cleaned(std::span<const Vorn16s> samples, Method method) {
    switch (method) {
        case Method::kTwoStage:
            return samplesOf(RobustFrontEnd().reduce(samples).wave);
        case Method::kFixed:
            return FixedFrontEnd(Reference{}).reduce(samples).wave;
        case Method::kWiener:
            return samplesOf(Suppression(GainRule::kWiener).suppress(waveOf(samples)).wave);
        default:
            return samplesOf(Suppression(GainRule::kEphraimMalah).suppress(waveOf(samples)).wave);
    }
}

}  // namespace digits
