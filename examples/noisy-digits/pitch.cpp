#include "pitch.h"

#include "checked.h"
#include "front_end.h"

namespace digits {
namespace {

constexpr int kShortest = 20, kLongest = 140;  // samples: 400 to 57 Hz
constexpr Vorn32f kClear = 0.4f;               // least periodicity of a voice

// The period to a part of a sample: where between two lags the frame is most like the wave behind it.
double refined(const Vorn16s* frame, int period) {
    const int length = kPitchFrame - period - 1;
    for (int longer = period + 1; longer >= period; --longer) {
        Vorn32f part = -1.0f, likeness = 0.0f;
        // From the lag `longer` down to the one before it.
        const Vorn16s* later = frame + longer;
        const VornStatus status = vornsCrossCorrCoeffInterpolation_16s32f(later, frame, length - 1, &part, &likeness);
        if (status == vornStsNoErr && part >= 0.0f && part < 1.0f) return longer - double(part);
    }
    return period;
}

}  // namespace

std::vector<double> pitchTrack(std::span<const Vorn16s> samples) {
    std::vector<double> track;
    std::vector<Vorn32f> frame(kPitchFrame);
    for (std::size_t at = 0; at + kPitchFrame <= samples.size(); at += kFrameStep) {
        DIGITS_CALL(vornsConvert_16s32f, samples.data() + at, frame.data(), kPitchFrame);
        Vorn32f periodicity = 0.0f;
        int period = 0;
        DIGITS_CALL(vornsPeriodicityLSPE_32f, frame.data(), kPitchFrame, &periodicity, &period, kLongest, kShortest);
        const bool voiced = period > 0 && periodicity >= kClear;
        track.push_back(voiced ? kSampleRate / refined(samples.data() + at, period) : 0.0);
    }
    return track;
}

}  // namespace digits
