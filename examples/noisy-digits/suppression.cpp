#include "suppression.h"

#include <algorithm>

#include "checked.h"
#include "cosine.h"

namespace digits {
namespace {

constexpr Vorn32f kMemory = 0.98f;  // share of the last frame in the a-priori ratio
constexpr Vorn32f kLeastPrior = 0.01f, kLeastPosterior = 0.01f, kMostPosterior = 1000.0f;  // power ratios
constexpr Vorn32f kLeastNoise = 1e-3f;  // power; keeps digital silence off the division

// Half a turn of a sine: its square, shifted by half its length, adds up to 1.
std::vector<Vorn32f> sineWindow() {
    std::vector<Vorn32f> window(kFftLength);
    for (int n = 0; n < kFftLength; ++n) {
        window[n] = static_cast<Vorn32f>(cosineOfTurns((n + 0.5) / (2.0 * kFftLength) - 0.25));
    }
    return window;
}

class Tracker {
public:
    Tracker() {
        int size = 0;
        DIGITS_CALL(vornsGetSizeMCRA_32f, kFftLength, &size);
        memory_.resize(static_cast<std::size_t>(size));
        DIGITS_CALL(vornsInitMCRA_32f, kSampleRate, kFftLength, state());
    }

    // The power of the noise, from that of the next frame.
    const std::vector<Vorn32f>& follow(const Vorn32f* power) {
        DIGITS_CALL(vornsUpdateNoisePSDMCRA_32f_I, power, state(), noise_.data());
        return noise_;
    }

private:
    VornsMCRAState* state() { return reinterpret_cast<VornsMCRAState*>(memory_.data()); }

    std::vector<Vorn8u> memory_;
    std::vector<Vorn32f> noise_ = std::vector<Vorn32f>(kBins);
};

// The wave with its own mirror image in front and behind, so that the first and the last frame are as loud as others.
std::vector<Vorn32f> mirrored(std::span<const Vorn32f> wave) {
    const std::size_t length = wave.size();
    const std::size_t steps = (length + kSuppressionStep - 1) / kSuppressionStep;
    std::vector<Vorn32f> longer((steps + 2) * kSuppressionStep);
    for (std::size_t n = 0; n < longer.size(); ++n) {
        const std::size_t place = n < kSuppressionStep ? kSuppressionStep - 1 - n : n - kSuppressionStep;
        longer[n] =
            wave[std::min(place < length ? place : 2 * length - 1 - std::min(place, 2 * length - 1), length - 1)];
    }
    return longer;
}

}  // namespace

Suppression::Suppression(GainRule rule) : rule_(rule), window_(sineWindow()) {}

std::vector<Vorn32f> Suppression::gains(const Vorn32f* noisy, const Vorn32f* noise,
                                        std::vector<Vorn32f>& speech) const {
    std::vector<Vorn32f> posterior(kBins), prior(kBins), gain(kBins);
    for (int k = 0; k < kBins; ++k) {
        const Vorn32f power = std::max(noise[k], kLeastNoise);
        posterior[k] = std::clamp(noisy[k] / power, kLeastPosterior, kMostPosterior);
        const Vorn32f now = std::max(posterior[k] - 1.0f, 0.0f);
        prior[k] = std::max(kMemory * (speech[k] / power) + (1.0f - kMemory) * now, kLeastPrior);
    }
    DIGITS_CALL(vornsFilterUpdateWiener_32f, prior.data(), gain.data(), kBins);
    if (rule_ == GainRule::kEphraimMalah) {
        const std::vector<Vorn32f> wiener = gain;
        DIGITS_CALL(vornsFilterUpdateEMNS_32f, wiener.data(), posterior.data(), gain.data(), kBins);
    }
    for (int k = 0; k < kBins; ++k) {
        gain[k] = std::min(gain[k], 1.0f);
        speech[k] = gain[k] * gain[k] * noisy[k];
    }
    return gain;
}

Suppressed Suppression::suppress(std::span<const Vorn32f> wave) const {
    const std::vector<Vorn32f> longer = mirrored(wave);
    std::vector<Vorn32f> sum(longer.size(), 0.0f), frame(kFftLength), speech(kBins, 0.0f);
    Transform transform = transform_;
    Tracker tracker;
    Suppressed result;
    for (std::size_t at = 0; at + kFftLength <= longer.size(); at += kSuppressionStep) {
        DIGITS_CALL(vornsMul_32f, longer.data() + at, window_.data(), frame.data(), kFftLength);
        transform.forward(frame);
        std::vector<Vorn32f> power(kBins);
        powersOf(frame, power.data());
        const std::vector<Vorn32f>& noise = tracker.follow(power.data());
        const std::vector<Vorn32f> gain = gains(power.data(), noise.data(), speech);
        frame[0] *= gain[0];
        frame[1] *= gain[kBins - 1];
        for (int k = 1; k < kBins - 1; ++k) frame[2 * k] *= gain[k], frame[2 * k + 1] *= gain[k];
        transform.backward(frame);
        for (int n = 0; n < kFftLength; ++n) sum[at + n] += window_[n] * frame[n];
        result.noise.insert(result.noise.end(), noise.begin(), noise.end());
        result.noisy.insert(result.noisy.end(), power.begin(), power.end());
    }
    result.wave.assign(sum.begin() + kSuppressionStep,
                       sum.begin() + kSuppressionStep + static_cast<std::ptrdiff_t>(wave.size()));
    return result;
}

std::vector<Vorn32f> waveOf(std::span<const Vorn16s> samples) {
    std::vector<Vorn32f> wave(samples.size());
    DIGITS_CALL(vornsConvert_16s32f, samples.data(), wave.data(), static_cast<int>(samples.size()));
    return wave;
}

std::vector<Vorn16s> samplesOf(std::span<const Vorn32f> wave) {
    std::vector<Vorn16s> samples(wave.size());
    DIGITS_CALL(vornsConvert_32f16s_Sfs, wave.data(), samples.data(), static_cast<int>(wave.size()), vornRndNear, 0);
    return samples;
}

}  // namespace digits
