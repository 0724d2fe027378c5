#include "sides.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

#include "cepstrum.h"
#include "checked.h"
#include "reduction_parts.h"

namespace digits {
namespace {

constexpr int kCompared = 12;  // recordings in each noise
constexpr int kSnr = 5;        // decibels
constexpr Vorn32f kGain = 1 << 14, kQ15 = 1 << 15, kCepstrumUnit = 64.0f, kDetectorUnit = 64.0f;
constexpr double kQ31 = 2147483648.0;
constexpr int kDetectorShift = 8;   // from gains in Q14 to those in Q6 that the detector takes
constexpr int kMagnitudeShift = 4;  // spectra are taken at a sixteenth of their size
constexpr int kNoiseFraction = 8;   // bits behind the point of the noise in 32 bits
constexpr int kLspeFrame = 320, kShortest = 20, kLongest = 140;  // samples; periods from 57 to 400 Hz
constexpr int kWholeStream = 3;

class Difference {
public:
    Difference(const char* inSingle, const char* inIntegers) : inSingle_(inSingle), inIntegers_(inIntegers) {}

    // Values in single beside integers, of which `unit` make 1.
    template <typename Single, typename Integers>
    void add(const Single& single, const Integers& integers, double unit) {
        for (std::size_t i = 0; i < std::size(single); ++i) {
            const double exact = double(single[i]), off = double(integers[i]) / unit - exact;
            squares_ += exact * exact;
            offSquares_ += off * off;
            most_ = std::max(most_, std::abs(off));
            ++values_;
        }
    }

    void addDecision(int single, int integers) {
        counts_ = true;
        ++values_;
        differing_ += single != integers;
    }

    Side side() const {
        if (counts_) return {inSingle_, inIntegers_, values_, 100.0 * double(differing_) / double(values_), 0.0, true};
        const double usual = std::sqrt(offSquares_ / squares_), most = most_ / std::sqrt(squares_ / double(values_));
        return {inSingle_, inIntegers_, values_, 100.0 * usual, 100.0 * most, false};
    }

private:
    std::string inSingle_, inIntegers_;
    long long values_ = 0, differing_ = 0;
    double squares_ = 0.0, offSquares_ = 0.0, most_ = 0.0;
    bool counts_ = false;
};

template <std::size_t count, typename Integer>
std::array<Vorn32f, count> inSingle(const std::array<Integer, count>& integers, double unit) {
    std::array<Vorn32f, count> single{};
    for (std::size_t i = 0; i < count; ++i) single[i] = static_cast<Vorn32f>(double(integers[i]) / unit);
    return single;
}

template <typename Integer>
Integer toNearest(double value) {
    return static_cast<Integer>(std::lrint(value));
}

using Bins16 = std::array<Vorn16s, kSmoothBins>;

class Comparison {
public:
    Comparison() {
        VornFBankState_32f* single = nullptr;
        DIGITS_CALL(vornsMelFBankInitAllocLow_Aurora_32f, &single);
        bankSingle_.reset(single);
        VornFBankState_16s* fixed = nullptr;
        DIGITS_CALL(vornsMelFBankInitAllocLow_Aurora_16s, &fixed);
        bankFixed_.reset(fixed);
        window_ = hannWindow();
        for (const Vorn32f weight : responseOfBands(single)) {
            response_.push_back(toNearest<Vorn16s>(double(weight) * double(kQ15)));
        }
    }

    void add(const Mixed& mixed) {
        addNoiseReduction(mixed.samples);
        addFeatures(mixed.samples);
        addSuppression(mixed.samples);
        addPeriods(mixed.samples);
    }

    std::vector<Side> sides() const {
        std::vector<Side> sides;
        for (const Difference* difference :
             {&spectrum64_, &spectrum32_, &spectrum16_, &update32_, &update16_, &design_, &bands_, &filter_, &waveform_,
              &detector_, &equaliser_, &deltas_, &tracker_, &wiener_, &malah_, &periods_, &periodicity_}) {
            sides.push_back(difference->side());
        }
        return sides;
    }

private:
    // A packed spectrum in whole numbers, a sixteenth of its size.
    std::array<Vorn32s, kFftLength> spectrumOf(const Vorn16s* samples) {
        std::vector<Vorn32f> frame(kFftLength, 0.0f);
        for (int n = 0; n < kFrameLength; ++n) frame[n] = window_[n] * static_cast<Vorn32f>(samples[n]);
        transform_.forward(frame);
        std::array<Vorn32s, kFftLength> spectrum{};
        DIGITS_CALL(vornsConvert_32f32s_Sfs, frame.data(), spectrum.data(), kFftLength, vornRndNear, kMagnitudeShift);
        // Half the sampling rate: its square is made in 32 bits.
        spectrum[1] = std::clamp(spectrum[1], -46340, 46340);
        return spectrum;
    }

    void addSpectra(const std::array<Vorn32s, kFftLength>& spectrum, std::array<Vorn64s, kSmoothBins>& power) {
        const auto exact = inSingle(spectrum, 1.0);
        std::array<Vorn32f, kSmoothBins> single{};
        DIGITS_CALL(vornsSmoothedPowerSpectrumAurora_32f, exact.data(), single.data(), kFftLength);
        DIGITS_CALL(vornsSmoothedPowerSpectrumAurora_32s64s_Sfs, spectrum.data(), power.data(), kFftLength, 0);
        spectrum64_.add(single, power, 1.0);

        constexpr int kShift = 8;
        std::array<Vorn32s, kSmoothBins> power32{};
        DIGITS_CALL(vornsSmoothedPowerSpectrumAurora_32s_Sfs, spectrum.data(), power32.data(), kFftLength, kShift);
        spectrum32_.add(single, power32, 1.0 / (1 << kShift));

        // Powers in 16 bits need small numbers: the spectrum is brought down until its largest square fits.
        int shift = 0;
        const auto largest = [&] {
            Vorn32s most = 0;
            for (const Vorn32s value : spectrum) most = std::max(most, std::abs(value) >> shift);
            return most;
        };
        while (largest() > 120) ++shift;
        std::array<Vorn16s, kFftLength> small{};
        for (int k = 0; k < kFftLength; ++k) small[k] = static_cast<Vorn16s>(spectrum[k] >> shift);
        std::array<Vorn16s, kSmoothBins> power16{};
        const auto exactSmall = inSingle(small, 1.0);
        DIGITS_CALL(vornsSmoothedPowerSpectrumAurora_32f, exactSmall.data(), single.data(), kFftLength);
        DIGITS_CALL(vornsSmoothedPowerSpectrumAurora_16s, small.data(), power16.data(), kFftLength);
        spectrum16_.add(single, power16, 1.0);
    }

    void addNoiseReduction(const std::vector<Vorn16s>& samples) {
        std::array<Vorn32s, kSmoothBins> noise32{};
        Bins16 denoised{}, noise{};
        DetectorPair detectors;
        for (std::size_t at = 0; at + kFrameLength <= samples.size(); at += kFrameStep) {
            std::array<Vorn64s, kSmoothBins> power{};
            addSpectra(spectrumOf(samples.data() + at), power);
            Bins16 magnitude{};
            DIGITS_CALL(vornsSqrt_64s16s_Sfs, power.data(), magnitude.data(), kSmoothBins, 0);

            std::array<Vorn32s, kSmoothBins> fine{};
            for (int k = 0; k < kSmoothBins; ++k) fine[k] = magnitude[k] << kNoiseFraction;
            if (at == 0) noise32 = fine;
            addUpdates(fine, magnitude, noise32);
            for (int k = 0; k < kSmoothBins; ++k) {
                noise32[k] = std::max(noise32[k], 1 << kNoiseFraction);
                noise[k] = static_cast<Vorn16s>(std::min(noise32[k] >> kNoiseFraction, 32767));
            }
            addDesign(magnitude, noise, denoised, samples.data() + at, detectors);
        }
        for (int i = 0; i < kDecisionDelay; ++i) detectors.flush(detector_);
    }

    void addUpdates(const std::array<Vorn32s, kSmoothBins>& fine, const Bins16& coarse,
                    std::array<Vorn32s, kSmoothBins>& noise) {
        std::array<Vorn32f, kSmoothBins> single{};
        const auto exactNoise = inSingle(noise, 1.0), exactFine = inSingle(fine, 1.0);
        Bins16 coarseNoise{}, coarseUpdated{};
        for (int k = 0; k < kSmoothBins; ++k) {
            coarseNoise[k] = static_cast<Vorn16s>(std::min(noise[k] >> kNoiseFraction, 32767));
        }
        const auto exactCoarse = inSingle(coarse, 1.0), exactCoarseNoise = inSingle(coarseNoise, 1.0);
        std::array<Vorn32s, kSmoothBins> updated{};
        DIGITS_CALL(vornsNoiseSpectrumUpdate_Aurora_32f, exactFine.data(), exactNoise.data(), single.data(),
                    kSmoothBins);
        DIGITS_CALL(vornsNoiseSpectrumUpdate_Aurora_32s_Sfs, fine.data(), noise.data(), updated.data(), kSmoothBins, 0);
        update32_.add(single, updated, 1.0);
        DIGITS_CALL(vornsNoiseSpectrumUpdate_Aurora_32f, exactCoarse.data(), exactCoarseNoise.data(), single.data(),
                    kSmoothBins);
        DIGITS_CALL(vornsNoiseSpectrumUpdate_Aurora_16s_Sfs, coarse.data(), coarseNoise.data(), coarseUpdated.data(),
                    kSmoothBins, 0);
        update16_.add(single, coarseUpdated, 1.0);
        noise = updated;
    }

    // Two detectors, one of each form, on the same gains.
    class DetectorPair {
    public:
        DetectorPair() {
            int size = 0;
            DIGITS_CALL(vornsVADGetBufSize_Aurora_32f, &size);
            single_.resize(static_cast<std::size_t>(size));
            DIGITS_CALL(vornsVADGetBufSize_Aurora_16s, &size);
            fixed_.resize(static_cast<std::size_t>(size));
            DIGITS_CALL(vornsVADInit_Aurora_32f, state(single_));
            DIGITS_CALL(vornsVADInit_Aurora_16s, state(fixed_));
        }

        void decide(std::array<Vorn16s, kBands> bands, Bins16 gain, Difference& difference) {
            for (Vorn16s& band : bands) band = static_cast<Vorn16s>(band >> kDetectorShift);
            for (Vorn16s& value : gain) value = static_cast<Vorn16s>(value >> kDetectorShift);
            const auto exactBands = inSingle(bands, double(kDetectorUnit));
            const auto exactGain = inSingle(gain, double(kDetectorUnit));
            int one = 0, other = 0;
            DIGITS_CALL(vornsVADDecision_Aurora_32f, exactBands.data(), exactGain.data(), 0, &one, state(single_));
            DIGITS_CALL(vornsVADDecision_Aurora_16s, bands.data(), gain.data(), 0, &other, state(fixed_));
            difference.addDecision(one, other);
        }

        void flush(Difference& difference) {
            int one = 0, other = 0;
            DIGITS_CALL(vornsVADFlush_Aurora_32f, &one, state(single_));
            DIGITS_CALL(vornsVADFlush_Aurora_16s, &other, state(fixed_));
            difference.addDecision(one, other);
        }

    private:
        static VornsVADState* state(std::vector<Vorn8u>& memory) {
            return reinterpret_cast<VornsVADState*>(memory.data());
        }

        std::vector<Vorn8u> single_, fixed_;
    };

    void addDesign(const Bins16& magnitude, const Bins16& noise, Bins16& denoised, const Vorn16s* samples,
                   DetectorPair& detectors) {
        const auto exactMagnitude = inSingle(magnitude, 1.0), exactNoise = inSingle(noise, 1.0),
                   exactDenoised = inSingle(denoised, 1.0);
        std::array<Vorn32f, kSmoothBins> gainSingle{};
        Bins16 gain{};
        DIGITS_CALL(vornsWienerFilterDesign_Aurora_32f, exactMagnitude.data(), exactNoise.data(), exactDenoised.data(),
                    gainSingle.data(), kSmoothBins);
        DIGITS_CALL(vornsWienerFilterDesign_Aurora_16s, magnitude.data(), noise.data(), denoised.data(), gain.data(),
                    kSmoothBins);
        design_.add(gainSingle, gain, double(kGain));
        DIGITS_CALL(vornsMul_16s_Sfs, gain.data(), magnitude.data(), denoised.data(), kSmoothBins, 14);

        const auto exactGain = inSingle(gain, double(kGain));
        std::array<Vorn32f, kBands> bandsSingle{};
        std::array<Vorn16s, kBands> bands{};
        DIGITS_CALL(vornsEvalFBank_32f, exactGain.data(), bandsSingle.data(), bankSingle_.get());
        DIGITS_CALL(vornsEvalFBank_16s_Sfs, gain.data(), bands.data(), bankFixed_.get(), 0);
        bands_.add(bandsSingle, bands, double(kGain));
        detectors.decide(bands, gain, detector_);

        std::array<Vorn16s, kResponse> response{};
        for (int n = 0; n < kResponse; ++n) {
            DIGITS_CALL(vornsDotProd_16s_Sfs, bands.data(), response_.data() + n * kBands, kBands, &response[n], 15);
        }
        std::array<Vorn16s, kTaps> taps{};
        DIGITS_CALL(vornsTabsCalculation_Aurora_16s, response.data(), taps.data());
        std::array<Vorn16s, kFrameStep> filtered{};
        std::array<Vorn32f, kFrameStep> filteredSingle{};
        std::array<Vorn32f, kFrameLength> exactSamples{};
        const auto exactTaps = inSingle(taps, double(kGain));
        DIGITS_CALL(vornsConvert_16s32f, samples, exactSamples.data(), kFrameLength);
        DIGITS_CALL(vornsResidualFilter_Aurora_32f, exactSamples.data(), filteredSingle.data(), exactTaps.data());
        DIGITS_CALL(vornsResidualFilter_Aurora_16s_Sfs, samples, filtered.data(), taps.data(), 14);
        filter_.add(filteredSingle, filtered, 1.0);
    }

    void addFeatures(const std::vector<Vorn16s>& samples) {
        const int frames = framesIn(samples.size());
        std::vector<Vorn16s> rows(static_cast<std::size_t>(frames) * kRobustStatic);
        std::array<Vorn16s, kCepstra> reference{}, bias{};
        std::array<Vorn32f, kFrameLength> exact{}, processedSingle{};
        std::array<Vorn16s, kFrameLength> processed{};
        std::vector<Vorn32f> cepstrum(kRobustStatic);
        for (int t = 0; t < frames; ++t) {
            const Vorn16s* frame = samples.data() + t * kFrameStep;
            DIGITS_CALL(vornsConvert_16s32f, frame, exact.data(), kFrameLength);
            DIGITS_CALL(vornsWaveProcessing_Aurora_32f, exact.data(), processedSingle.data());
            DIGITS_CALL(vornsWaveProcessing_Aurora_16s, frame, processed.data());
            waveform_.add(processedSingle, processed, 1.0);

            cepstrum_.of(processedSingle.data(), transform_, cepstrum.data());
            Vorn16s* row = rows.data() + t * kRobustStatic;
            DIGITS_CALL(vornsConvert_32f16s_Sfs, cepstrum.data(), row, kRobustStatic, vornRndNear, -6);
            std::array<Vorn16s, kCepstra> before{};
            std::copy(row, row + kCepstra, before.begin());
            auto equalised = inSingle(before, double(kCepstrumUnit));
            auto exactBias = inSingle(bias, double(kCepstrumUnit));
            const auto exactReference = inSingle(reference, double(kCepstrumUnit));
            const int energy = row[kRobustStatic - 1];
            DIGITS_CALL(vornsBlindEqualization_Aurora_32f, exactReference.data(), equalised.data(), exactBias.data(),
                        kCepstra, static_cast<Vorn32f>(energy) / kCepstrumUnit);
            DIGITS_CALL(vornsBlindEqualization_Aurora_16s, reference.data(), row, bias.data(), kCepstra, energy);
            equaliser_.add(equalised, std::span(row, kCepstra), double(kCepstrumUnit));
            equaliser_.add(exactBias, bias, double(kCepstrumUnit));
        }

        std::vector<Vorn32f> exactRows(rows.size()), single(static_cast<std::size_t>(frames) * kRowStep);
        std::vector<Vorn16s> fixed(single.size());
        DIGITS_CALL(vornsConvert_16s32f, rows.data(), exactRows.data(), static_cast<int>(rows.size()));
        DIGITS_CALL(vornsDeltaDelta_Aurora_32f_D2, exactRows.data(), single.data(), kRowStep, frames, kWholeStream);
        DIGITS_CALL(vornsDeltaDelta_Aurora_16s_D2Sfs, rows.data(), fixed.data(), kRowStep, frames, kWholeStream, 0);
        deltas_.add(single, fixed, 1.0);
    }

    void addSuppression(const std::vector<Vorn16s>& samples) {
        int size = 0;
        DIGITS_CALL(vornsGetSizeMCRA_32f, kFftLength, &size);
        std::vector<Vorn8u> memorySingle(static_cast<std::size_t>(size));
        DIGITS_CALL(vornsGetSizeMCRA_32s, kFftLength, &size);
        std::vector<Vorn8u> memoryFixed(static_cast<std::size_t>(size));
        auto* single = reinterpret_cast<VornsMCRAState*>(memorySingle.data());
        auto* fixed = reinterpret_cast<VornsMCRAState*>(memoryFixed.data());
        DIGITS_CALL(vornsAltInitMCRA_32f, kSampleRate, kFftLength, kFrameStep, single);
        DIGITS_CALL(vornsAltInitMCRA_32s, kSampleRate, kFftLength, kFrameStep, fixed);

        std::array<Vorn32f, kBins> noiseSingle{};
        std::array<Vorn32s, kBins> noiseFixed{}, power{};
        for (std::size_t at = 0; at + kFrameLength <= samples.size(); at += kFrameStep) {
            const auto spectrum = spectrumOf(samples.data() + at);
            for (int k = 0; k < kBins; ++k) {
                const double re = k == 0 ? spectrum[0] : k == kBins - 1 ? spectrum[1] : spectrum[2 * k];
                const double im = k == 0 || k == kBins - 1 ? 0.0 : spectrum[2 * k + 1];
                power[k] = toNearest<Vorn32s>(std::min((re * re + im * im) / 16.0, 2147483647.0));
            }
            const auto exact = inSingle(power, 1.0);
            DIGITS_CALL(vornsUpdateNoisePSDMCRA_32f_I, exact.data(), single, noiseSingle.data());
            DIGITS_CALL(vornsUpdateNoisePSDMCRA_32s_I, power.data(), fixed, noiseFixed.data());
            tracker_.add(noiseSingle, noiseFixed, 1.0);
            addGains(power, noiseFixed);
        }
    }

    void addGains(const std::array<Vorn32s, kBins>& power, const std::array<Vorn32s, kBins>& noise) {
        std::array<Vorn32s, kBins> prior{}, posterior{}, wiener{}, malah{};
        for (int k = 0; k < kBins; ++k) {
            const double ratio = std::clamp(double(power[k]) / std::max(double(noise[k]), 1.0), 0.01, 1000.0);
            posterior[k] = toNearest<Vorn32s>(ratio * double(kQ15));
            prior[k] = toNearest<Vorn32s>(std::max(ratio - 1.0, 0.01) * double(kQ15));
        }
        const auto exactPrior = inSingle(prior, double(kQ15)), exactPosterior = inSingle(posterior, double(kQ15));
        std::array<Vorn32f, kBins> wienerSingle{}, malahSingle{};
        DIGITS_CALL(vornsFilterUpdateWiener_32f, exactPrior.data(), wienerSingle.data(), kBins);
        DIGITS_CALL(vornsFilterUpdateWiener_32s, prior.data(), wiener.data(), kBins);
        wiener_.add(wienerSingle, wiener, kQ31);
        for (int k = 0; k < kBins; ++k)
            wiener[k] = toNearest<Vorn32s>(std::min(double(wienerSingle[k]) * kQ31, kQ31 - 1));
        DIGITS_CALL(vornsFilterUpdateEMNS_32f, wienerSingle.data(), exactPosterior.data(), malahSingle.data(), kBins);
        DIGITS_CALL(vornsFilterUpdateEMNS_32s, wiener.data(), posterior.data(), malah.data(), kBins);
        for (Vorn32f& gain : malahSingle) gain = std::min(gain, 1.0f);  // where the integers end
        malah_.add(malahSingle, malah, kQ31);
    }

    void addPeriods(const std::vector<Vorn16s>& samples) {
        std::array<Vorn32f, kLspeFrame> exact{};
        for (std::size_t at = 0; at + kLspeFrame <= samples.size(); at += kFrameStep) {
            DIGITS_CALL(vornsConvert_16s32f, samples.data() + at, exact.data(), kLspeFrame);
            std::array<Vorn32f, 1> periodicity{};
            std::array<Vorn16s, 1> fixedPeriodicity{};
            int period = 0, fixedPeriod = 0;
            DIGITS_CALL(vornsPeriodicityLSPE_32f, exact.data(), kLspeFrame, periodicity.data(), &period, kLongest,
                        kShortest);
            DIGITS_CALL(vornsPeriodicityLSPE_16s, samples.data() + at, kLspeFrame, fixedPeriodicity.data(),
                        &fixedPeriod, kLongest, kShortest);
            periods_.addDecision(period, fixedPeriod);
            periodicity_.add(periodicity, fixedPeriodicity, double(kQ15));
        }
    }

    Transform transform_;
    Cepstrum cepstrum_{kLeastInSingle};
    std::unique_ptr<VornFBankState_32f, VornStatus (*)(VornFBankState_32f*)> bankSingle_{nullptr, vornsFBankFree_32f};
    std::unique_ptr<VornFBankState_16s, VornStatus (*)(VornFBankState_16s*)> bankFixed_{nullptr, vornsFBankFree_16s};
    std::vector<Vorn32f> window_;
    std::vector<Vorn16s> response_;

    Difference spectrum64_{"vornsSmoothedPowerSpectrumAurora_32f", "vornsSmoothedPowerSpectrumAurora_32s64s_Sfs"};
    Difference spectrum32_{"vornsSmoothedPowerSpectrumAurora_32f", "vornsSmoothedPowerSpectrumAurora_32s_Sfs"};
    Difference spectrum16_{"vornsSmoothedPowerSpectrumAurora_32f", "vornsSmoothedPowerSpectrumAurora_16s"};
    Difference update32_{"vornsNoiseSpectrumUpdate_Aurora_32f", "vornsNoiseSpectrumUpdate_Aurora_32s_Sfs"};
    Difference update16_{"vornsNoiseSpectrumUpdate_Aurora_32f", "vornsNoiseSpectrumUpdate_Aurora_16s_Sfs"};
    Difference design_{"vornsWienerFilterDesign_Aurora_32f", "vornsWienerFilterDesign_Aurora_16s"};
    Difference bands_{"vornsEvalFBank_32f", "vornsEvalFBank_16s_Sfs"};
    Difference filter_{"vornsResidualFilter_Aurora_32f", "vornsResidualFilter_Aurora_16s_Sfs"};
    Difference waveform_{"vornsWaveProcessing_Aurora_32f", "vornsWaveProcessing_Aurora_16s"};
    Difference detector_{"vornsVADDecision_Aurora_32f", "vornsVADDecision_Aurora_16s"};
    Difference equaliser_{"vornsBlindEqualization_Aurora_32f", "vornsBlindEqualization_Aurora_16s"};
    Difference deltas_{"vornsDeltaDelta_Aurora_32f_D2", "vornsDeltaDelta_Aurora_16s_D2Sfs"};
    Difference tracker_{"vornsUpdateNoisePSDMCRA_32f_I", "vornsUpdateNoisePSDMCRA_32s_I"};
    Difference wiener_{"vornsFilterUpdateWiener_32f", "vornsFilterUpdateWiener_32s"};
    Difference malah_{"vornsFilterUpdateEMNS_32f", "vornsFilterUpdateEMNS_32s"};
    Difference periods_{"vornsPeriodicityLSPE_32f (period)", "vornsPeriodicityLSPE_16s"};
    Difference periodicity_{"vornsPeriodicityLSPE_32f", "vornsPeriodicityLSPE_16s"};
};

}  // namespace

std::vector<Side> compareSides(const Experiment& experiment) {
    const NoiseMaker maker = noiseMaker(experiment);
    Comparison comparison;
    const std::size_t recordings = experiment.test.recordings.size(),
                      step = std::max<std::size_t>(recordings / kCompared, 1);
    for (std::size_t i = 0; i < recordings; i += step) {
        for (const Noise noise : kNoises) {
            comparison.add(mixed(experiment.test.recordings[i].samples, noise, kSnr, maker,
                                 testDraw(experiment, static_cast<int>(i), noise)));
        }
    }
    return comparison.sides();
}

}  // namespace digits
