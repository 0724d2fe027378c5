// Linear prediction of a recording: in each frame the filter that predicts a sample best from those before it, and
// what the filter tells.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <vector>

#include "front_end.h"

namespace digits {

inline constexpr int kPredictionOrder = 10;  // two for each of four resonances, and two for the slope
inline constexpr int kEnvelopeOrder = 8;
inline constexpr int kEnvelopeBins = 1 << kEnvelopeOrder;  // evenly spaced from 0, up to below half the rate

using Coefficients = std::array<Vorn32f, kPredictionOrder>;

struct PredictedFrame {
    Coefficients filter;                   // a(1) to a(10) of the error's filter 1 + a(1) z^-1 + ... + a(10) z^-10
    std::optional<Coefficients> lines;     // cosines of the line spectral frequencies, the lowest frequency first;
                                           // none when the search did not find them all
    std::optional<Coefficients> logAreas;  // log area ratios; none when the filter is at the edge of stability
    Vorn32f energy = 0.0f;                 // of the samples under the window
    Vorn32f error = 0.0f;                  // what the filter leaves of it; 0 without area ratios
    Vorn32f periodicity = 0.0f;            // 1 for a voice that repeats itself exactly, around 0 for noise

    bool voiced() const;
};

// One for each frame of the recording, or none for a frame in which nothing can be predicted, as in silence.
using Prediction = std::vector<std::optional<PredictedFrame>>;

Prediction predict(const FrontEnd& frontEnd, std::span<const Vorn16s> samples);

// The loudest voiced frame; without any, the loudest one. None if no frame has a stable filter.
std::optional<int> loudestFrame(const Prediction& prediction);

// The magnitudes of the frame as its filter has them, to compare with those of its transform. The frame has to have
// area ratios.
std::vector<Vorn32f> envelope(const PredictedFrame& frame);

// The frequency in hertz that belongs to the cosine.
double lineFrequency(Vorn32f cosine);

}  // namespace digits
