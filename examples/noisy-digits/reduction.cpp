#include "reduction.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "checked.h"
#include "cosine.h"

namespace digits {
namespace {

constexpr int kAhead = (kFrameLength - kFrameStep) / 2;  // a block lies in the middle of its frame
constexpr int kReach = kTaps / 2;                        // samples that a filter looks to either side of a block
constexpr int kResponse = 10;                            // values from which the taps are laid out
constexpr Vorn32f kLeastMagnitude = 4.5399930e-5f;       // exp(-10): keeps digital silence off the divisions

// Frames in which the second stage averages before it follows; numbers of frames count from 1.
constexpr int kFirstFrames = 10;

using Spectrum = std::array<Vorn32f, kSmoothBins>;
using Bands = std::array<Vorn32f, kBands>;

// Tells, from the energy of a block, whether someone speaks: the first stage learns the noise while nobody does.
class EnergyDetector {
public:
    // How many blocks of speech have come one after another, or 0; a pause shorter than the hang-over is no pause.
    bool speaks(const Vorn32f* block) {
        Vorn32f squares = 0.0f;
        DIGITS_CALL(vornsDotProd_32f, block, block, kFrameStep, &squares);
        Vorn32f energy = (kEnergyGuard + squares) / kEnergyGuard;
        DIGITS_CALL(vornsLn_32f_I, &energy, 1);
        energy = 0.5f + kPerLogarithm * energy;

        ++frame_;
        if (frame_ < kSettled || energy - mean_ < kUpdateBelow) {
            const bool quick = frame_ < kSettled || energy < mean_;
            const Vorn32f share = frame_ < kSettled ? 1.0f / static_cast<Vorn32f>(frame_) : quick ? 0.03f : 0.01f;
            mean_ = std::max(mean_ + share * (energy - mean_), kLeastMean);
        }
        if (frame_ <= kSilentFrames) return false;
        if (energy - mean_ > kSpeechAbove) {
            ++run_;
            return true;
        }
        if (run_ > kLongRun) hangOver_ = kHangOver;
        run_ = 0;
        return hangOver_ > 0 && hangOver_-- > 0;
    }

    int run() const { return run_; }

private:
    static constexpr Vorn32f kEnergyGuard = 64.0f;
    static constexpr Vorn32f kPerLogarithm = 23.083120f;  // 16 / ln 2: sixteen a doubling
    static constexpr Vorn32f kUpdateBelow = 20.0f, kSpeechAbove = 15.0f, kLeastMean = 80.0f;
    static constexpr int kSettled = 10, kSilentFrames = 4, kLongRun = 4, kHangOver = 15;

    Vorn32f mean_ = 0.0f;
    int frame_ = 0, run_ = 0, hangOver_ = 0;
};

// How much of the gain the second stage takes, from a tenth where there is speech to eight tenths where there is none.
class Aggression {
public:
    Vorn32f next(Vorn32f speech, Vorn32f noise) {
        ++frame_;
        // Products of the last three frames: the ratio of means that are geometric.
        speeches_ = {speeches_[1], speeches_[2], speech};
        noises_ = {noises_[1], noises_[2], noise};
        Vorn32f ratio = 1.0f;
        for (int i = 0; i < 3; ++i) ratio *= speeches_[i] / noises_[i];
        Vorn32f snr = -100.0f / 3.0f;
        if (ratio > 1e-4f) {
            DIGITS_CALL(vornsLn_32f_I, &ratio, 1);
            snr = kDecibels * ratio;
        }
        if (snr - low_ < 10.0f || frame_ < kFirstFrames) {
            const Vorn32f keep = frame_ < kFirstFrames ? 1.0f - 1.0f / static_cast<Vorn32f>(frame_)
                                 : snr < low_          ? 0.95f
                                                       : 0.99f;
            low_ = keep * low_ + (1.0f - keep) * snr;
        }
        if (speech > kAudible) share_ = snr < low_ + 3.5f ? std::min(share_ + 0.15f, 0.8f) : std::max(share_ - 0.3f, 0.1f);
        return share_;
    }

private:
    static constexpr Vorn32f kDecibels = 2.8952965f;  // 20 / (3 ln 10)
    static constexpr Vorn32f kAudible = 100.0f;

    std::array<Vorn32f, 3> speeches_{1.0f, 1.0f, 1.0f}, noises_{1.0f, 1.0f, 1.0f};
    Vorn32f low_ = 0.0f, share_ = 0.8f;
    int frame_ = 0;
};

// A Hann window whose ends lie half a sample outside.
std::vector<Vorn32f> hannWindow() {
    std::vector<Vorn32f> window(kFrameLength);
    for (int n = 0; n < kFrameLength; ++n) {
        window[n] = static_cast<Vorn32f>(0.5 - 0.5 * cosineOfTurns((n + 0.5) / kFrameLength));
    }
    return window;
}

// The middle of each band, as a part of the sampling rate: the mean of its bins under its weights.
std::array<double, kBands> middles(const VornFBankState_32f* bank) {
    std::array<double, kBands> sums{}, places{};
    for (int k = 0; k < kSmoothBins; ++k) {
        Spectrum one{};
        one[k] = 1.0f;
        Bands weights{};
        DIGITS_CALL(vornsEvalFBank_32f, one.data(), weights.data(), bank);
        for (int b = 0; b < kBands; ++b) {
            sums[b] += double(weights[b]);
            places[b] += double(weights[b]) * k;
        }
    }
    for (int b = 0; b < kBands; ++b) places[b] /= sums[b] * (2.0 * (kSmoothBins - 1));
    return places;
}

// The inverse cosine transform along the mel scale, under a Hann window over the taps.
//
// The taps are laid out so that all but the last stand in pairs about a middle between two samples: value 0 and 1 half
// a sample to either side of it, value k > 1 k - 1/2 samples away. So the response is taken at those places, and the
// filter's delay is half a sample at every frequency.
std::vector<Vorn32f> responseOfBands(const VornFBankState_32f* bank) {
    const std::array<double, kBands> middle = middles(bank);
    std::vector<Vorn32f> rows;
    for (int n = 0; n < kResponse; ++n) {
        const double place = n == 0 ? 0.5 : n - 0.5;
        const double window = 0.5 + 0.5 * cosineOfTurns(place / kTaps);
        for (int b = 0; b < kBands; ++b) {
            const double width = (b + 1 < kBands ? middle[b + 1] : middle[b]) - (b > 0 ? middle[b - 1] : middle[b]);
            rows.push_back(static_cast<Vorn32f>(window * width * cosineOfTurns(place * middle[b])));
        }
    }
    return rows;
}

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
        const auto n = static_cast<Vorn32f>(count_);
        if (first_ ? !speaks : count_ <= kFirstFrames) {
            const Vorn32f keep = count_ < 100 ? 1.0f - 1.0f / n : 0.99f;
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

// The detector decides about a frame when it has seen six more.
constexpr int kDecisionDelay = 6;

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
        results_.push_back(result);
    }

    // For each frame that was added. The first few, which have no decision, are taken for silence.
    std::vector<bool> finish() {
        std::vector<bool> speech;
        for (int i = 0; i < kDecisionDelay; ++i) {
            int result = 0;
            DIGITS_CALL(vornsVADFlush_Aurora_32f, &result, state());
            results_.push_back(result);
        }
        for (std::size_t t = kDecisionDelay; t < results_.size(); ++t) speech.push_back(results_[t] == vornVADSpeech);
        return speech;
    }

private:
    VornsVADState* state() { return reinterpret_cast<VornsVADState*>(memory_.data()); }

    std::vector<Vorn8u> memory_;
    std::vector<int> results_;
};

// The wave with zeros at both ends, so that frames and filters may reach beyond it.
struct Padded {
    explicit Padded(std::span<const Vorn32f> wave)
        : blocks((static_cast<int>(wave.size()) + kFrameStep - 1) / kFrameStep),
          samples(static_cast<std::size_t>(blocks) * kFrameStep + 2 * kFrameLength, 0.0f) {
        std::copy(wave.begin(), wave.end(), samples.begin() + kFrameLength);
    }

    const Vorn32f* block(int t) const { return samples.data() + kFrameLength + t * kFrameStep; }
    Vorn32f* block(int t) { return samples.data() + kFrameLength + t * kFrameStep; }
    const Vorn32f* frame(int t) const { return block(t) - kAhead; }

    int blocks;
    std::vector<Vorn32f> samples;
};

}  // namespace

NoiseReduction::NoiseReduction(ReductionSteps steps) : steps_(steps), window_(hannWindow()) {
    VornFBankState_32f* bank = nullptr;
    DIGITS_CALL(vornsMelFBankInitAllocLow_Aurora_32f, &bank);
    bank_.reset(bank);
    response_ = responseOfBands(bank);
}

Reduced NoiseReduction::reduce(std::span<const Vorn32f> wave) const {
    Padded noisy(wave), cleaner(wave), cleanest(wave);
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
