// Noise suppression by spectral gains: the noise is tracked all the time, and each frame is weighed by what stands out
// of it. The frames overlap and add up to a wave again.
//
// I. Cohen, B. Berdugo, "Noise estimation by minima controlled recursive averaging for robust speech enhancement",
// 2002; Y. Ephraim, D. Malah, "Speech enhancement using a minimum mean-square error short-time spectral amplitude
// estimator", 1984, also for the a-priori signal-to-noise ratio by decision.
#pragma once

#include <span>
#include <vector>

#include "evaluation.h"
#include "transform.h"

namespace digits {

enum class GainRule { kWiener, kEphraimMalah };

inline constexpr int kSuppressionStep = kFftLength / 2;

struct Suppressed {
    std::vector<Vorn32f> wave;   // as long as the recording
    std::vector<Vorn32f> noise;  // tracked power: kBins a frame, a frame every kSuppressionStep samples
    std::vector<Vorn32f> noisy;  // the power itself
};

class Suppression {
public:
    explicit Suppression(GainRule rule);

    Suppressed suppress(std::span<const Vorn32f> wave) const;

private:
    // From the power of a frame and of its noise; `speech` is the power that the last frame was left with, and becomes
    // that of this one.
    std::vector<Vorn32f> gains(const Vorn32f* noisy, const Vorn32f* noise, std::vector<Vorn32f>& speech) const;

    GainRule rule_;
    Transform transform_;
    std::vector<Vorn32f> window_;
};

std::vector<Vorn32f> waveOf(std::span<const Vorn16s> samples);
std::vector<Vorn16s> samplesOf(std::span<const Vorn32f> wave);

}  // namespace digits
