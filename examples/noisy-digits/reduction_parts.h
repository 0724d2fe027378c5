// What both forms of the noise reduction, that in single precision and that in integers, decide between their steps.
#pragma once

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "checked.h"
#include "reduction.h"

namespace digits {

inline constexpr int kAhead = (kFrameLength - kFrameStep) / 2;  // a block lies in the middle of its frame
inline constexpr int kReach = kTaps / 2;                        // samples that a filter looks to either side of a block
inline constexpr int kResponse = 10;                            // values from which the taps are laid out
inline constexpr int kFirstFrames = 10;      // in which the second stage averages the noise before it follows it
inline constexpr int kSlowestAverage = 100;  // frames that the first stage's average of the noise settles to

// Tells, from the energy of a block, whether someone speaks: the first stage learns the noise while nobody does.
class EnergyDetector {
public:
    // A pause shorter than the hang-over of a word is none.
    bool speaks(const Vorn32f* block);

    // Blocks of speech that have come one after another.
    int run() const { return run_; }

private:
    Vorn32f mean_ = 0.0f;
    int frame_ = 0, run_ = 0, hangOver_ = 0;
};

// How much of its gain the second stage takes, from a tenth where there is speech to eight tenths where there is none.
class Aggression {
public:
    // From the sums of the magnitudes that are left and of those of the noise.
    Vorn32f next(Vorn32f speech, Vorn32f noise);

private:
    std::array<Vorn32f, 3> speeches_{1.0f, 1.0f, 1.0f}, noises_{1.0f, 1.0f, 1.0f};
    Vorn32f low_ = 0.0f, share_ = 0.8f;
    int frame_ = 0;
};

// A Hann window whose ends lie half a sample outside.
std::vector<Vorn32f> hannWindow();

// kResponse rows of kBands weights: the inverse cosine transform along the mel scale, under a Hann window over the
// taps.
//
// The taps are laid out so that all but the last stand in pairs about a middle between two samples: value 0 and 1 half
// a sample to either side of it, value k > 1 k - 1/2 samples away. So the response is taken at those places, and the
// filter's delay is half a sample at every frequency.
std::vector<Vorn32f> responseOfBands(const VornFBankState_32f* bank);

// A wave with zeros at both ends, so that frames and filters may reach beyond it.
template <typename Sample>
struct Padded {
    explicit Padded(std::span<const Sample> wave)
        : blocks((static_cast<int>(wave.size()) + kFrameStep - 1) / kFrameStep), samples(kFrameLength, Sample{}) {
        samples.insert(samples.end(), wave.begin(), wave.end());
        samples.resize(static_cast<std::size_t>(blocks) * kFrameStep + 2 * kFrameLength, Sample{});
    }

    const Sample* block(int t) const { return samples.data() + kFrameLength + t * kFrameStep; }
    Sample* block(int t) { return samples.data() + kFrameLength + t * kFrameStep; }
    const Sample* frame(int t) const { return block(t) - kAhead; }

    int blocks;
    std::vector<Sample> samples;
};

// The forms of the library's detector, which decides about a frame when it has seen six more.
inline constexpr int kDecisionDelay = 6;

// For each frame whether it is speech, from the decisions of the frames and of kDecisionDelay calls behind them. The
// first few frames, which have no decision, are taken for silence.
std::vector<bool> speechOf(const std::vector<int>& decisions);

}  // namespace digits
