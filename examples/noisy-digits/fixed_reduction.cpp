// Formats: magnitudes are whole numbers, a sixteenth of those in float, so that a loud voice fits into 16 bits; the
// noise has 8 bits more behind the point. Gains, bands and taps are Q14.
#include "fixed_reduction.h"

#include <algorithm>
#include <array>

#include "checked.h"
#include "reduction_parts.h"

namespace digits {
namespace {

constexpr int kFraction = 6;        // bits behind the point of a windowed sample
constexpr int kMagnitudeShift = 4;  // a sixteenth
constexpr int kNoiseFraction = 8;
constexpr int kGainBits = 14, kWindowBits = 15;
constexpr int kDetectorShift = 8;      // the detector takes gains in Q6, so that their squares and sums fit
constexpr Vorn32s kMostAlone = 46340;  // the root of what 32 bits hold
constexpr int kUnscaled = 8;           // normalisation flag of the transform: none in either direction

template <typename Element>
using Bins = std::array<Element, kSmoothBins>;
using Bands = std::array<Vorn16s, kBands>;

std::vector<Vorn16s> inBits(const std::vector<Vorn32f>& values, int bits) {
    std::vector<Vorn16s> result(values.size());
    DIGITS_CALL(vornsConvert_32f16s_Sfs, values.data(), result.data(), static_cast<int>(values.size()), vornRndNear,
                -bits);
    return result;
}

class FixedDetector {
public:
    FixedDetector() {
        int size = 0;
        DIGITS_CALL(vornsVADGetBufSize_Aurora_16s, &size);
        memory_.resize(static_cast<std::size_t>(size));
        DIGITS_CALL(vornsVADInit_Aurora_16s, state());
    }

    void add(const Bands& bands, const Bins<Vorn16s>& gain, int activity) {
        Bands smallBands{};
        Bins<Vorn16s> smallGain{};
        std::transform(bands.begin(), bands.end(), smallBands.begin(), small);
        std::transform(gain.begin(), gain.end(), smallGain.begin(), small);
        int decision = 0;
        DIGITS_CALL(vornsVADDecision_Aurora_16s, smallBands.data(), smallGain.data(), activity, &decision, state());
        decisions_.push_back(decision);
    }

    std::vector<bool> finish() {
        for (int i = 0; i < kDecisionDelay; ++i) {
            int decision = 0;
            DIGITS_CALL(vornsVADFlush_Aurora_16s, &decision, state());
            decisions_.push_back(decision);
        }
        return speechOf(decisions_);
    }

private:
    static Vorn16s small(Vorn16s gain) { return static_cast<Vorn16s>(gain >> kDetectorShift); }
    VornsVADState* state() { return reinterpret_cast<VornsVADState*>(memory_.data()); }

    std::vector<Vorn8u> memory_;
    std::vector<int> decisions_;
};

}  // namespace

class FixedStage {
public:
    FixedStage(const FixedReduction& reduction, bool first) : reduction_(reduction), first_(first), frame_(kFftLength) {
        int size = 0;
        DIGITS_CALL(vornsFFTGetBufSize_R_32s, reduction.spec_.get(), &size);
        buffer_.resize(static_cast<std::size_t>(size) + 1);
    }

    void design(const Vorn16s* samples, bool speaks) {
        ++count_;
        spectrumOf(samples);
        updateNoise(speaks);
        Bins<Vorn16s> noise{};
        for (int k = 0; k < kSmoothBins; ++k) {
            noise[k] = static_cast<Vorn16s>(std::clamp(noise_[k] >> kNoiseFraction, 1, 32767));
        }
        DIGITS_CALL(vornsWienerFilterDesign_Aurora_16s, mean_.data(), noise.data(), denoised_.data(), gain_.data(),
                    kSmoothBins);
        DIGITS_CALL(vornsMul_16s_Sfs, gain_.data(), magnitude_.data(), denoised_.data(), kSmoothBins, kGainBits);
        DIGITS_CALL(vornsEvalFBank_16s_Sfs, gain_.data(), bands_.data(), reduction_.bank_.get(), 0);
        Bands applied = bands_;
        if (!first_) {
            Vorn32s left = 0, heard = 0;
            DIGITS_CALL(vornsSum_16s32s_Sfs, denoised_.data(), kSmoothBins, &left, 0);
            DIGITS_CALL(vornsSum_16s32s_Sfs, noise.data(), kSmoothBins, &heard, 0);
            constexpr auto kScale = static_cast<Vorn32f>(1 << kMagnitudeShift);
            const Vorn32f share =
                aggression_.next(kScale * static_cast<Vorn32f>(left), kScale * static_cast<Vorn32f>(heard));
            const int one = 1 << kGainBits, part = static_cast<int>(share * static_cast<Vorn32f>(one));
            for (Vorn16s& band : applied) band = static_cast<Vorn16s>(one - part + (part * band >> kGainBits));
        }
        std::array<Vorn16s, kResponse> response{};
        for (int n = 0; n < kResponse; ++n) {
            DIGITS_CALL(vornsDotProd_16s_Sfs, applied.data(), reduction_.response_.data() + n * kBands, kBands,
                        &response[n], kWindowBits);
        }
        DIGITS_CALL(vornsTabsCalculation_Aurora_16s, response.data(), taps_.data());
    }

    void filter(const Vorn16s* block, Vorn16s* dst) const {
        DIGITS_CALL(vornsResidualFilter_Aurora_16s_Sfs, block - kReach + (first_ ? 0 : 1), dst, taps_.data(),
                    kGainBits);
    }

    const Bands& bands() const { return bands_; }
    const Bins<Vorn16s>& gain() const { return gain_; }

private:
    void spectrumOf(const Vorn16s* samples) {
        std::fill(frame_.begin() + kFrameLength, frame_.end(), 0);
        DIGITS_CALL(vornsMul_16s32s_Sfs, samples, reduction_.window_.data(), frame_.data(), kFrameLength,
                    kWindowBits - kFraction);
        DIGITS_CALL(vornsFFTFwd_RToPerm_32s_ISfs, frame_.data(), reduction_.spec_.get(), kFraction + kMagnitudeShift,
                    buffer_.data());
        // Number 1 is that of half the sampling rate, whose square is made in 32 bits.
        frame_[1] = std::clamp(frame_[1], -kMostAlone, kMostAlone);
        Bins<Vorn64s> power{};
        DIGITS_CALL(vornsSmoothedPowerSpectrumAurora_32s64s_Sfs, frame_.data(), power.data(), kFftLength, 0);
        if (count_ == 1) before_ = power;
        Bins<Vorn64s> mean{};
        for (int k = 0; k < kSmoothBins; ++k) mean[k] = (before_[k] + power[k]) >> 1;
        DIGITS_CALL(vornsSqrt_64s16s_Sfs, mean.data(), mean_.data(), kSmoothBins, 0);
        DIGITS_CALL(vornsSqrt_64s16s_Sfs, power.data(), magnitude_.data(), kSmoothBins, 0);
        before_ = power;
    }

    void updateNoise(bool speaks) {
        Bins<Vorn32s> mean{};
        for (int k = 0; k < kSmoothBins; ++k) mean[k] = mean_[k] << kNoiseFraction;
        if (first_ ? !speaks : count_ <= kFirstFrames) {
            const int frames = std::min(count_, kSlowestAverage);
            for (int k = 0; k < kSmoothBins; ++k) noise_[k] += (mean[k] - noise_[k]) / frames;
        } else if (!first_) {
            DIGITS_CALL(vornsNoiseSpectrumUpdate_Aurora_32s_Sfs, mean.data(), noise_.data(), noise_.data(), kSmoothBins,
                        0);
        }
        for (Vorn32s& noise : noise_) noise = std::max(noise, 1);
    }

    const FixedReduction& reduction_;
    const bool first_;
    int count_ = 0;
    Aggression aggression_;
    std::vector<Vorn32s> frame_;
    std::vector<Vorn8u> buffer_;
    Bins<Vorn64s> before_{};
    Bins<Vorn32s> noise_{};
    Bins<Vorn16s> mean_{}, magnitude_{}, denoised_{}, gain_{};
    Bands bands_{};
    std::array<Vorn16s, kTaps> taps_{};
};

FixedReduction::FixedReduction() : window_(inBits(hannWindow(), kWindowBits)) {
    VornsFFTFixedSpec* spec = nullptr;
    DIGITS_CALL(vornsFFTInitAlloc_R_32s, &spec, kFftOrder, kUnscaled, 0);
    spec_.reset(spec);

    VornFBankState_16s* bank = nullptr;
    DIGITS_CALL(vornsMelFBankInitAllocLow_Aurora_16s, &bank);
    bank_.reset(bank);

    VornFBankState_32f* exact = nullptr;
    DIGITS_CALL(vornsMelFBankInitAllocLow_Aurora_32f, &exact);
    const std::unique_ptr<VornFBankState_32f, VornStatus (*)(VornFBankState_32f*)> owner(exact, vornsFBankFree_32f);
    response_ = inBits(responseOfBands(exact), kWindowBits);
}

FixedReduced FixedReduction::reduce(std::span<const Vorn16s> wave) const {
    Padded<Vorn16s> noisy(wave), cleaner(wave), cleanest(wave);
    FixedReduced result;
    FixedStage first(*this, true), second(*this, false);
    EnergyDetector energy;
    FixedDetector detector;
    std::vector<Vorn32f> block(kFrameStep);
    for (int t = 0; t < noisy.blocks; ++t) {
        DIGITS_CALL(vornsConvert_16s32f, noisy.block(t), block.data(), kFrameStep);
        const bool speaks = energy.speaks(block.data());
        first.design(noisy.frame(t), speaks);
        first.filter(noisy.block(t), cleaner.block(t));
        detector.add(first.bands(), first.gain(), energy.run());
    }
    result.speech = detector.finish();
    for (int t = 0; t < noisy.blocks; ++t) {
        second.design(cleaner.frame(t), false);
        second.filter(cleaner.block(t), cleanest.block(t));
    }
    result.wave.assign(cleanest.block(0), cleanest.block(0) + wave.size());
    return result;
}

}  // namespace digits
