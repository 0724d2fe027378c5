// Linear prediction by the library, and the choice of one frame for a picture.
#include "prediction.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "checked.h"

namespace digits {
namespace {

constexpr int kLineGrid = 512;  // cosines, evenly spaced, between which roots are looked for
constexpr int kLineSteps = 10;  // halvings of what lies between two of them
constexpr Vorn32f kMostReflection = 0.9999f;
constexpr Vorn32f kLeastPeriodicity = 0.5f;
constexpr int kShortestPitch = kSampleRate / 400, kLongestPitch = kSampleRate / 75;  // samples

// Autocorrelations of the weighted samples, from 0 to the longest pitch.
std::vector<Vorn32f> correlations(const std::vector<Vorn32f>& samples) {
    std::vector<Vorn32f> result(kLongestPitch + 1);
    DIGITS_CALL(vornsAutoCorr_32f, samples.data(), kFrameLength, result.data(), kLongestPitch + 1);
    return result;
}

// The highest peak of the autocorrelation at lags of a voice, with the window's own share taken out.
//
// P. Boersma, "Accurate short-term analysis of the fundamental frequency and the harmonics-to-noise ratio of a sampled
// sound", 1993.
Vorn32f periodicity(const std::vector<Vorn32f>& ofFrame, const std::vector<Vorn32f>& ofWindow) {
    Vorn32f most = 0.0f;
    for (int lag = kShortestPitch; lag <= kLongestPitch; ++lag) {
        most = std::max(most, ofFrame[lag] / ofFrame[0] / (ofWindow[lag] / ofWindow[0]));
    }
    return most;
}

std::optional<Coefficients> linesOf(const Coefficients& filter) {
    Coefficients lines;
    int found = 0;
    if (DIGITS_WARNS(vornStsNoRootErr, vornsLPToLSP_32f, filter.data(), lines.data(), kPredictionOrder, &found,
                     kLineGrid, kLineSteps)) {
        return std::nullopt;
    }
    return lines;
}

void fillAreas(PredictedFrame& frame) {
    Coefficients reflections, logAreas;
    if (DIGITS_WARNS(vornStsUnstableErr, vornsLPToReflection_32f, frame.filter.data(), reflections.data(),
                     kPredictionOrder)) {
        return;
    }
    Vorn32f left = 1.0f;
    for (const Vorn32f k : reflections) {
        if (!(std::abs(k) < 1.0f)) return;
        left *= 1.0f - k * k;
    }
    DIGITS_CALL(vornsReflectionToLAR_32f, reflections.data(), logAreas.data(), kPredictionOrder, kMostReflection);
    frame.logAreas = logAreas;
    frame.error = frame.energy * left;
}

}  // namespace

bool PredictedFrame::voiced() const { return periodicity >= kLeastPeriodicity; }

Prediction predict(const FrontEnd& frontEnd, std::span<const Vorn16s> samples) {
    const std::vector<Vorn32f> wave = FrontEnd::centred(samples);
    const std::vector<Vorn32f> ofWindow = correlations(frontEnd.window());
    std::vector<Vorn32f> weighted(kFrameLength);
    Prediction prediction(static_cast<std::size_t>(framesIn(samples.size())));
    for (std::size_t t = 0; t < prediction.size(); ++t) {
        DIGITS_CALL(vornsMul_32f, wave.data() + t * kFrameStep, frontEnd.window().data(), weighted.data(),
                    kFrameLength);
        PredictedFrame frame;
        if (DIGITS_WARNS(vornStsDurbinErr, vornsLinearPrediction_Auto_32f, weighted.data(), kFrameLength,
                         frame.filter.data(), kPredictionOrder)) {
            continue;
        }
        const std::vector<Vorn32f> ofFrame = correlations(weighted);
        frame.energy = ofFrame[0];
        frame.periodicity = periodicity(ofFrame, ofWindow);
        frame.lines = linesOf(frame.filter);
        fillAreas(frame);
        prediction[t] = frame;
    }
    return prediction;
}

std::optional<int> loudestFrame(const Prediction& prediction) {
    std::optional<int> best;
    const auto rank = [&](int t) { return std::pair(prediction[t]->voiced(), prediction[t]->energy); };
    for (int t = 0; t < static_cast<int>(prediction.size()); ++t) {
        if (prediction[t] && prediction[t]->logAreas && (!best || rank(t) > rank(*best))) best = t;
    }
    return best;
}

std::vector<Vorn32f> envelope(const PredictedFrame& frame) {
    // The library puts the coefficients behind a zero. With the filter's first one, which is 1, among them, the whole
    // filter is a sample late, which no magnitude shows.
    std::array<Vorn32f, kPredictionOrder + 1> filter;
    filter[0] = 1.0f;
    std::copy(frame.filter.begin(), frame.filter.end(), filter.begin() + 1);
    std::vector<Vorn32f> magnitudes(kEnvelopeBins);
    DIGITS_WARNS(vornStsDivByZero, vornsLPToSpectrum_32f, filter.data(), static_cast<int>(filter.size()),
                 magnitudes.data(), kEnvelopeOrder, 0.0f);  // a resonance without any loss has an infinite peak
    DIGITS_CALL(vornsMulC_32f_I, std::sqrt(frame.error), magnitudes.data(), kEnvelopeBins);
    return magnitudes;
}

double lineFrequency(Vorn32f cosine) {
    return std::acos(std::clamp(double(cosine), -1.0, 1.0)) / (2.0 * std::numbers::pi) * kSampleRate;
}

}  // namespace digits
