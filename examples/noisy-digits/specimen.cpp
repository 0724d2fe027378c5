#include "specimen.h"

#include <algorithm>
#include <cmath>

#include "pitch.h"
#include "robust.h"
#include "suppression.h"

namespace digits {
namespace {

constexpr int kShownHertz[] = {500, 1000, 2000};
constexpr double kLearntWindow = 75.0;    // sum of the squares of the window of the two stages
constexpr double kTrackedWindow = 128.0;  // and of the suppression
constexpr int kSmoothing = 10;            // blocks to either side over which the true noise is averaged

double inDecibels(double power) { return 10.0 * std::log10(std::max(power, 1e-3)); }

// One bin of rows of `width` magnitudes, as power for a sample.
std::vector<double> powersAt(const std::vector<Vorn32f>& magnitudes, int bin) {
    std::vector<double> powers;
    for (std::size_t i = static_cast<std::size_t>(bin); i < magnitudes.size(); i += kSmoothBins) {
        powers.push_back(double(magnitudes[i]) * double(magnitudes[i]) / kLearntWindow);
    }
    return powers;
}

std::vector<double> averaged(const std::vector<double>& values) {
    std::vector<double> result;
    const int count = static_cast<int>(values.size());
    for (int i = 0; i < count; ++i) {
        double sum = 0.0;
        const int begin = std::max(i - kSmoothing, 0), end = std::min(i + kSmoothing + 1, count);
        for (int k = begin; k < end; ++k) sum += values[static_cast<std::size_t>(k)];
        result.push_back(sum / (end - begin));
    }
    return result;
}

std::vector<double> inDecibels(std::vector<double> powers) {
    for (double& power : powers) power = inDecibels(power);
    return powers;
}

}  // namespace

Specimen specimenOf(const Experiment& experiment, const Recording& recording, Noise noise, int snr) {
    const NoiseMaker maker = noiseMaker(experiment);
    const Random draw = testDraw(experiment, 0, noise);
    return {recording.path.filename().string(), std::string(nameOf(noise)) + " noise at " + std::to_string(snr) + " dB",
            mixed(recording.samples, noise, std::nullopt, maker, draw),
            mixed(recording.samples, noise, snr, maker, draw)};
}

Insight::Insight(const Specimen& specimen) {
    const std::vector<Vorn32f> noisy = waveOf(specimen.noisy.samples);
    std::vector<Vorn32f> noise = noisy;
    const std::vector<Vorn32f> clean = waveOf(specimen.clean.samples);
    for (std::size_t n = 0; n < noise.size(); ++n) noise[n] -= clean[n];

    const RobustFrontEnd robust;
    const Reduced byStages = robust.reduce(specimen.noisy.samples);
    const Suppressed byTracking = Suppression(GainRule::kEphraimMalah).suppress(noisy);
    const Reduced ofNoise = NoiseReduction().reduce(noise);
    reduced = samplesOf(byStages.wave);
    suppressed = samplesOf(byTracking.wave);
    speech = byStages.speech;

    for (const int hertz : kShownHertz) {
        const int smooth = 2 * hertz * (kSmoothBins - 1) / kSampleRate, fine = 2 * hertz * (kBins - 1) / kSampleRate;
        Floor floor{hertz,
                    inDecibels(powersAt(byStages.noisy, smooth)),
                    inDecibels(averaged(powersAt(ofNoise.noisy, smooth))),
                    inDecibels(powersAt(byStages.noise, smooth)),
                    {}};
        for (std::size_t i = static_cast<std::size_t>(fine); i < byTracking.noise.size(); i += kBins) {
            floor.tracked.push_back(inDecibels(double(byTracking.noise[i]) / kTrackedWindow));
        }
        floors.push_back(std::move(floor));
    }
    pitch = {pitchTrack(specimen.clean.samples), pitchTrack(specimen.noisy.samples), pitchTrack(reduced)};
}

}  // namespace digits
