// The road of a frame: offset, window, transform, filter bank, logarithm, cepstrum, normalisation, deltas.
#include "front_end.h"

#include <algorithm>

#include "checked.h"

namespace digits {
namespace {

constexpr Vorn32f kOffsetPole = 0.98f;  // a high pass at about 26 Hz
constexpr Vorn32f kMelMul = 1127.0f;    // mel(f) = 1127 ln(1 + f / 700) (O'Shaughnessy, 1987)
constexpr Vorn32f kMelDiv = 700.0f;
constexpr int kLifter = 22;
constexpr Vorn32f kEnergyFloor = 1.0f;  // keeps digital silence off the logarithm
constexpr Vorn32f kDeltaScale = 0.1f;   // 1 / (2 (1 + 4)): the slope of a line through five frames
constexpr int kUnscaled = 8;            // normalisation flag of the transform: none in either direction

// A Hamming window. The cosine comes from the recurrence cos((n + 1) a) = 2 cos(a) cos(n a) - cos((n - 1) a), so that
// it is plain arithmetic in double and has the same bits with every run-time library.
std::vector<Vorn32f> hammingWindow() {
    constexpr double cosOfStep = 0.9995015891261738;  // cos(2 pi / 199)
    std::vector<Vorn32f> window(kFrameLength);
    double before = cosOfStep, now = 1.0;
    for (Vorn32f& weight : window) {
        weight = static_cast<Vorn32f>(0.54 - 0.46 * now);
        const double next = 2.0 * cosOfStep * now - before;
        before = now;
        now = next;
    }
    return window;
}

// Takes the mean of coefficient zero away over the whole recording, so that loudness does not count. The other means
// stay: they tell the speakers and their rooms apart, whom training and test share here.
void takeLoudnessAway(std::vector<Vorn32f>& cepstra, int frames) {
    Vorn32f mean = 0.0f, variance = 0.0f;
    DIGITS_CALL(vornsMeanVarColumn_32f_D2, cepstra.data() + kCepstra, frames, kStatic, &mean, &variance, 1);
    for (std::size_t i = kCepstra; i < cepstra.size(); i += kStatic) cepstra[i] -= mean;
}

}  // namespace

FrontEnd::FrontEnd() : window_(hammingWindow()) {
    VornsFFTSpec* transform = nullptr;
    DIGITS_CALL(vornsFFTInitAlloc_R_32f, &transform, kFftOrder, kUnscaled, 0);
    transform_.reset(transform);

    VornFBankState_32f* bank = nullptr;
    int order = 0;
    DIGITS_CALL(vornsMelFBankInitAlloc_32f, &bank, &order, kFftLength, static_cast<Vorn32f>(kSampleRate), kLowFrequency,
                kHighFrequency, kFilters, kMelMul, kMelDiv, vornFBankWeightFreq);
    bank_.reset(bank);

    VornDCTLifterState_32f* lifter = nullptr;
    DIGITS_CALL(vornsDCTLifterInitAlloc_C0_32f, &lifter, kFilters, kCepstra, kLifter, 0.3f, 0.3f);
    lifter_.reset(lifter);
}

std::vector<Vorn32f> FrontEnd::centred(std::span<const Vorn16s> samples) {
    const int length = static_cast<int>(samples.size());
    std::vector<Vorn16s> filtered(samples.size());
    Vorn16s last = samples[0];
    DIGITS_CALL(vornsCompensateOffset_16s, samples.data(), filtered.data(), length, &last, 0, kOffsetPole);
    std::vector<Vorn32f> wave(samples.size());
    DIGITS_CALL(vornsConvert_16s32f, filtered.data(), wave.data(), length);
    return wave;
}

Analysis FrontEnd::analyse(std::span<const Vorn16s> samples) const {
    Analysis analysis;
    analysis.frames = framesIn(samples.size());
    energiesOfFrames(centred(samples), analysis);
    analysis.features = features(cepstra(analysis));
    return analysis;
}

void FrontEnd::energiesOfFrames(const std::vector<Vorn32f>& wave, Analysis& analysis) const {
    const auto frames = static_cast<std::size_t>(analysis.frames);
    analysis.magnitudes.resize(frames * kBins);
    analysis.energies.resize(frames * kFilters);

    int bufferSize = 0;
    DIGITS_CALL(vornsFFTGetBufSize_R_32f, transform_.get(), &bufferSize);
    std::vector<Vorn8u> buffer(static_cast<std::size_t>(bufferSize) + 1);
    std::vector<Vorn32f> padded(kFftLength, 0.0f);
    std::vector<Vorn32fc> spectrum(kBins);
    for (std::size_t t = 0; t < frames; ++t) {
        const Vorn32f* frame = wave.data() + t * kFrameStep;
        for (int n = 0; n < kFrameLength; ++n) padded[n] = frame[n] * window_[n];

        Vorn32f* magnitudes = analysis.magnitudes.data() + t * kBins;
        Vorn32f* energies = analysis.energies.data() + t * kFilters;
        DIGITS_CALL(vornsFFTFwd_RToCCS_32f, padded.data(), &spectrum[0].re, transform_.get(), buffer.data());
        DIGITS_CALL(vornsMagnitude_32fc, spectrum.data(), magnitudes, kBins);
        DIGITS_CALL(vornsEvalFBank_32f, magnitudes, energies, bank_.get());
    }
    for (Vorn32f& energy : analysis.energies) energy = std::max(energy, kEnergyFloor);
    DIGITS_CALL(vornsLn_32f_I, analysis.energies.data(), static_cast<int>(analysis.energies.size()));
}

std::vector<Vorn32f> FrontEnd::cepstra(const Analysis& analysis) const {
    const auto frames = static_cast<std::size_t>(analysis.frames);
    std::vector<Vorn32f> cepstra(frames * kStatic);
    for (std::size_t t = 0; t < frames; ++t) {
        DIGITS_CALL(vornsDCTLifter_32f, analysis.energies.data() + t * kFilters, cepstra.data() + t * kStatic,
                    lifter_.get());
    }
    return cepstra;
}

std::vector<Vorn32f> FrontEnd::features(std::vector<Vorn32f> cepstra) {
    const int frames = static_cast<int>(cepstra.size()) / kStatic;
    takeLoudnessAway(cepstra, frames);
    std::vector<Vorn32f> features(static_cast<std::size_t>(frames) * kRowStep, 0.0f);
    DIGITS_CALL(vornsDeltaDelta_Win2_32f_D2, cepstra.data(), kStatic, features.data(), kRowStep, frames, kDeltaScale,
                kDeltaScale, vornDeltaFirst | vornDeltaLast);
    return features;
}

}  // namespace digits
