#include "reduction.h"

#include <algorithm>
#include <array>

#include "checked.h"
#include "reduction_parts.h"

namespace digits {
namespace {

constexpr Vorn32f kLeastMagnitude = 4.5399930e-5f;  // exp(-10): keeps digital silence off the divisions

using Spectrum = std::array<Vorn32f, kSmoothBins>;
using Bands = std::array<Vorn32f, kBands>;

}  // namespace

// One stage on its way through a recording.
class Stage {
public:
    Stage(const NoiseReduction& reduction, bool first)
        : reduction_(reduction), transform_(reduction.transform_), first_(first), frame_(kFftLength) {}

    // Designs the filter for the frame of kFrameLength samples.
    void design(const Vorn32f* samples, bool speaks) {
        ++count_;
        spectrumOf(samples);
        updateNoise(speaks);
        DIGITS_CALL(vornsWienerFilterDesign_Aurora_32f, mean_.data(), noise_.data(), denoised_.data(), gain_.data(),
                    kSmoothBins);
        DIGITS_CALL(vornsMul_32f, gain_.data(), magnitude_.data(), denoised_.data(), kSmoothBins);
        DIGITS_CALL(vornsEvalFBank_32f, gain_.data(), bands_.data(), reduction_.bank_.get());
        Bands applied = bands_;
        if (!first_ && reduction_.steps_.gradual) {
            Vorn32f speech = 0.0f, noise = 0.0f;
            DIGITS_CALL(vornsSum_32f, denoised_.data(), kSmoothBins, &speech, 2);
            DIGITS_CALL(vornsSum_32f, noise_.data(), kSmoothBins, &noise, 2);
            const Vorn32f share = aggression_.next(speech, noise);
            for (Vorn32f& band : applied) band = (1.0f - share) + share * band;
        }
        std::array<Vorn32f, kResponse> response{};
        for (int n = 0; n < kResponse; ++n) {
            DIGITS_CALL(vornsDotProd_32f, applied.data(), reduction_.response_.data() + n * kBands, kBands,
                        &response[n]);
        }
        DIGITS_CALL(vornsTabsCalculation_Aurora_32f, response.data(), taps_.data());
    }

    // Filters a block. The two stages look half a sample back and half a sample ahead, so that nothing is delayed.
    void filter(const Vorn32f* block, Vorn32f* dst) const {
        DIGITS_CALL(vornsResidualFilter_Aurora_32f, block - kReach + (first_ ? 0 : 1), dst, taps_.data());
    }

    const Bands& bands() const { return bands_; }
    const Spectrum& gain() const { return gain_; }
    const Spectrum& noise() const { return noise_; }
    const Spectrum& noisy() const { return mean_; }

private:
    // Magnitudes of this frame, and the root of the mean power of it and the one before.
    void spectrumOf(const Vorn32f* samples) {
        std::fill(frame_.begin() + kFrameLength, frame_.end(), 0.0f);
        DIGITS_CALL(vornsMul_32f, samples, reduction_.window_.data(), frame_.data(), kFrameLength);
        transform_.forward(frame_);
        Spectrum power{};
        DIGITS_CALL(vornsSmoothedPowerSpectrumAurora_32f, frame_.data(), power.data(), kFftLength);
        if (count_ == 1) before_ = power;
        for (int k = 0; k < kSmoothBins; ++k) mean_[k] = 0.5f * (before_[k] + power[k]);
        DIGITS_CALL(vornsSqrt_32f_I, mean_.data(), kSmoothBins);
        DIGITS_CALL(vornsSqrt_32f, power.data(), magnitude_.data(), kSmoothBins);
        before_ = power;
    }

    void updateNoise(bool speaks) {
        if (first_ ? !speaks : count_ <= kFirstFrames) {
            const Vorn32f keep = 1.0f - 1.0f / static_cast<Vorn32f>(std::min(count_, kSlowestAverage));
            for (int k = 0; k < kSmoothBins; ++k) noise_[k] = keep * noise_[k] + (1.0f - keep) * mean_[k];
        } else if (!first_) {
            DIGITS_CALL(vornsNoiseSpectrumUpdate_Aurora_32f, mean_.data(), noise_.data(), noise_.data(), kSmoothBins);
        }
        for (Vorn32f& noise : noise_) noise = std::max(noise, kLeastMagnitude);
    }

    const NoiseReduction& reduction_;
    Transform transform_;
    const bool first_;
    int count_ = 0;
    Aggression aggression_;
    std::vector<Vorn32f> frame_;
    Spectrum before_{}, mean_{}, magnitude_{}, noise_{}, denoised_{}, gain_{};
    Bands bands_{};
    std::array<Vorn32f, kTaps> taps_{};
};

namespace {

class Detector {
public:
    Detector() {
        int size = 0;
        DIGITS_CALL(vornsVADGetBufSize_Aurora_32f, &size);
        memory_.resize(static_cast<std::size_t>(size));
        DIGITS_CALL(vornsVADInit_Aurora_32f, state());
    }

    void add(const Bands& bands, const Spectrum& gain, int activity) {
        int result = 0;
        DIGITS_CALL(vornsVADDecision_Aurora_32f, bands.data(), gain.data(), activity, &result, state());
        decisions_.push_back(result);
    }

    std::vector<bool> finish() {
        for (int i = 0; i < kDecisionDelay; ++i) {
            int result = 0;
            DIGITS_CALL(vornsVADFlush_Aurora_32f, &result, state());
            decisions_.push_back(result);
        }
        return speechOf(decisions_);
    }

private:
    VornsVADState* state() { return reinterpret_cast<VornsVADState*>(memory_.data()); }

    std::vector<Vorn8u> memory_;
    std::vector<int> decisions_;
};

}  // namespace

NoiseReduction::NoiseReduction(ReductionSteps steps) : steps_(steps), window_(hannWindow()) {
    VornFBankState_32f* bank = nullptr;
    DIGITS_CALL(vornsMelFBankInitAllocLow_Aurora_32f, &bank);
    bank_.reset(bank);
    response_ = responseOfBands(bank);
}

Reduced NoiseReduction::reduce(std::span<const Vorn32f> wave) const {
    Padded<Vorn32f> noisy(wave), cleaner(wave), cleanest(wave);
    Reduced result;
    Stage first(*this, true);
    EnergyDetector energy;
    Detector detector;
    for (int t = 0; t < noisy.blocks; ++t) {
        const bool speaks = energy.speaks(noisy.block(t));
        first.design(noisy.frame(t), speaks);
        if (steps_.first) first.filter(noisy.block(t), cleaner.block(t));
        detector.add(first.bands(), first.gain(), energy.run());
        result.noise.insert(result.noise.end(), first.noise().begin(), first.noise().end());
        result.noisy.insert(result.noisy.end(), first.noisy().begin(), first.noisy().end());
    }
    result.speech = detector.finish();

    Stage second(*this, false);
    cleanest.samples = cleaner.samples;
    for (int t = 0; steps_.second && t < noisy.blocks; ++t) {
        second.design(cleaner.frame(t), false);
        second.filter(cleaner.block(t), cleanest.block(t));
    }
    result.wave.assign(cleanest.block(0), cleanest.block(0) + wave.size());
    return result;
}

}  // namespace digits
