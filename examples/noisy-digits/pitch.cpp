#include "pitch.h"

#include <algorithm>

#include "checked.h"
#include "front_end.h"

namespace digits {
namespace {

constexpr int kShortest = 20, kLongest = 140;  // samples: 400 to 57 Hz
constexpr Vorn32f kClear = 0.4f;               // least periodicity of a voice
constexpr Vorn32f kNearly = 0.85f;             // of the best periodicity

struct Periodic {
    Vorn32f periodicity = 0.0f;
    int period = 0;
};

Periodic periodOf(const std::vector<Vorn32f>& frame, int longest) {
    Periodic found;
    DIGITS_CALL(vornsPeriodicityLSPE_32f, frame.data(), kPitchFrame, &found.periodicity, &found.period, longest,
                kShortest);
    return found;
}

// Twice a period explains a frame as well as the period itself, so the shortest one counts that explains it nearly as
// well as the best.
Periodic shortestPeriod(const std::vector<Vorn32f>& frame) {
    Periodic best = periodOf(frame, kLongest);
    for (int longest = best.period * 2 / 3; longest > kShortest; longest = best.period * 2 / 3) {
        const Periodic shorter = periodOf(frame, longest);
        if (shorter.periodicity < kNearly * best.periodicity) break;
        best.period = shorter.period;
    }
    return best;
}

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

// Each value becomes the middle one of the voiced frames that are at most two away: single frames that are an octave
// off go with the others.
std::vector<double> smoothed(const std::vector<double>& track) {
    constexpr int kReach = 2;
    std::vector<double> result(track.size(), 0.0);
    const int frames = static_cast<int>(track.size());
    for (int t = 0; t < frames; ++t) {
        if (track[t] == 0.0) continue;
        std::vector<double> near;
        for (int i = std::max(t - kReach, 0); i <= std::min(t + kReach, frames - 1); ++i) {
            if (track[i] > 0.0) near.push_back(track[i]);
        }
        std::sort(near.begin(), near.end());
        result[t] = near[near.size() / 2];
    }
    return result;
}

}  // namespace

std::vector<double> pitchTrack(std::span<const Vorn16s> samples) {
    std::vector<double> track;
    std::vector<Vorn32f> frame(kPitchFrame);
    for (std::size_t at = 0; at + kPitchFrame <= samples.size(); at += kFrameStep) {
        DIGITS_CALL(vornsConvert_16s32f, samples.data() + at, frame.data(), kPitchFrame);
        const auto [periodicity, period] = shortestPeriod(frame);
        const bool voiced = period > 0 && periodicity >= kClear;
        track.push_back(voiced ? kSampleRate / refined(samples.data() + at, period) : 0.0);
    }
    return smoothed(track);
}

}  // namespace digits
