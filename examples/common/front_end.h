// From samples to feature vectors: one object that owns the contexts of the library that the road of a frame needs.
#pragma once

#include <memory>
#include <span>
#include <vector>

#include "vornsr.h"

namespace digits {

inline constexpr int kSampleRate = 8000;  // hertz
inline constexpr int kFrameLength = 200;  // samples: 25 ms
inline constexpr int kFrameStep = 80;     // samples: 10 ms
inline constexpr int kFftOrder = 8;
inline constexpr int kFftLength = 1 << kFftOrder;
inline constexpr int kBins = kFftLength / 2 + 1;
inline constexpr int kFilters = 24;
inline constexpr float kLowFrequency = 100.0f;  // hertz, edges of the filter bank
inline constexpr float kHighFrequency = 4000.0f;
inline constexpr int kCepstra = 12;
inline constexpr int kStatic = kCepstra + 1;   // cepstra 1 to 12, then coefficient zero
inline constexpr int kFeatures = 3 * kStatic;  // statics, deltas, accelerations
inline constexpr int kRowStep = 40;            // elements from frame to frame: whole vectors of four
inline constexpr int kMinFrames = 6;           // what the accelerations need
inline constexpr int kMinSamples = kFrameLength + (kMinFrames - 1) * kFrameStep;

// How many frames there are in so many samples, of which there are enough for one.
constexpr int framesIn(std::size_t samples) { return 1 + (static_cast<int>(samples) - kFrameLength) / kFrameStep; }

// Everything that becomes of one recording. Matrices are row-major, one row a frame.
struct Analysis {
    int frames = 0;
    std::vector<Vorn32f> magnitudes;  // kBins a frame
    std::vector<Vorn32f> energies;    // kFilters a frame: logarithms of the filter bank
    std::vector<Vorn32f> features;    // kRowStep a frame, of which kFeatures are used

    const Vorn32f* row(int frame) const { return features.data() + static_cast<std::ptrdiff_t>(frame) * kRowStep; }
};

class FrontEnd {
public:
    FrontEnd();

    // Needs at least kMinSamples samples.
    Analysis analyse(std::span<const Vorn16s> samples) const;

    // The first step of it: the samples without their constant offset.
    static std::vector<Vorn32f> centred(std::span<const Vorn16s> samples);

    // The middle of it: kStatic cepstra a frame, with the loudness still in coefficient zero. Each frame stands for
    // itself here, so that they can be sent one by one.
    std::vector<Vorn32f> cepstra(const Analysis& analysis) const;

    // The last steps of it: the features of frames whose cepstra these are.
    static std::vector<Vorn32f> features(std::vector<Vorn32f> cepstra);

    // kFrameLength weights.
    const std::vector<Vorn32f>& window() const { return window_; }

private:
    using Transform = std::unique_ptr<VornsFFTSpec, VornStatus (*)(VornsFFTSpec*)>;
    using Bank = std::unique_ptr<VornFBankState_32f, VornStatus (*)(VornFBankState_32f*)>;
    using Lifter = std::unique_ptr<VornDCTLifterState_32f, VornStatus (*)(VornDCTLifterState_32f*)>;

    void energiesOfFrames(const std::vector<Vorn32f>& wave, Analysis& analysis) const;

    Transform transform_{nullptr, vornsFFTFree_R_32f};
    Bank bank_{nullptr, vornsFBankFree_32f};
    Lifter lifter_{nullptr, vornsDCTLifterFree_32f};
    std::vector<Vorn32f> window_;
};

}  // namespace digits
