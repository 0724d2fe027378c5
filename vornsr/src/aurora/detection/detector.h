// A frame of the voice activity detector, once for all families: three measures, the trackers that follow them, and the
// flags that go on to the hang-over.
#pragma once

#include <cstdint>

#include "aurora/detection/families.h"
#include "aurora/detection/hangover.h"
#include "vornsr/aurora.h"

namespace vorn::detection {

// The caller's record, at any address.
template <class Tracker>
struct __attribute__((packed)) Detector {
    Vorn16s flagBands = 0, flagLow = 0, flagVar = 0, onsetSeen = 0;
    Tracker bandMean = 0, lowTrack = 0, bandTrack = 0, varTrack = 0, lowPrev = 0, lowLast = 0;
    Hangover hangover;
};
inline constexpr int recordBytes = 64;

template <class Family>
Detector<typename Family::Tracker>& recordAt(VornsVADState* state) {
    using Record = Detector<typename Family::Tracker>;
    static_assert(sizeof(Record) == recordBytes && alignof(Record) == 1);
    return *reinterpret_cast<Record*>(state);
}

// In frames up to this one maxima build up; the trackers of later ones only follow.
inline constexpr int lastOfStart = 14;

// The larger of the two; what is not a number does not enter a tracker, and leaves it at the next number.
template <class Tracker, class Measure>
Tracker risen(Tracker tracker, Measure x) {
    return x > tracker || tracker != tracker ? static_cast<Tracker>(x) : tracker;
}

template <class Tracker, class Measure, class Ratio>
Tracker followed(Tracker tracker, Measure x, const Rules<Ratio>& rules) {
    if (x < rules.upper.of(tracker) && x > rules.lower.of(tracker)) {
        tracker = static_cast<Tracker>(rules.kept.of(tracker) + rules.taken.of(x));
    }
    const Measure low = rules.low.of(tracker);
    if (x < low || (rules.lowIsIncluded && x == low)) {
        tracker = static_cast<Tracker>(rules.keptLow.of(tracker) + rules.takenLow.of(x));
    }
    return tracker;
}

template <class Family>
class Frame {
public:
    using Tracker = typename Family::Tracker;
    using Measure = typename Family::Measure;

    explicit Frame(Detector<Tracker>& detector) : detector_(detector) { detector_.hangover.countFrame(); }

    VornVADDecision decide(const typename Family::Element* bands, const typename Family::Element* spectrum,
                           int activity) {
        constexpr int activeEnough = 5;
        followVariance(Family::varianceOf(spectrum));
        followEnergy(Family::energyOf(bands));
        followLow(Family::lowOf(bands, detector_.lowPrev));
        return detector_.hangover.decide(detector_.flagBands != 0 || detector_.flagLow != 0 || detector_.flagVar != 0 ||
                                         activity >= activeEnough);
    }

private:
    void followVariance(Measure variance) {
        Tracker tracker = detector_.varTrack;
        if (count() <= lastOfStart) tracker = risen(tracker, variance);
        tracker = followed(tracker, variance, Family::varianceRules);
        detector_.varTrack = tracker;
        detector_.flagVar = variance > Family::varianceRules.flag.of(tracker);
    }

    // An energy well above the mean of the first frames is an onset, and ends the build-up.
    void followEnergy(Measure energy) {
        Tracker tracker = detector_.bandTrack;
        if (count() == 1) tracker = static_cast<Tracker>(energy);
        if (count() >= 1 && count() <= lastOfStart) {
            const Measure mean = Family::meanOf(count(), detector_.bandMean, energy);
            detector_.bandMean = static_cast<Tracker>(mean);
            if (Family::isOnset(energy, mean)) detector_.onsetSeen = 1;
            if (detector_.onsetSeen == 0) tracker = risen(tracker, energy);
        }
        tracker = followed(tracker, energy, Family::energyRules);
        detector_.bandTrack = tracker;
        detector_.flagBands = energy > Family::energyRules.flag.of(tracker);
    }

    void followLow(LowBand<Measure, Tracker> low) {
        detector_.lowPrev = detector_.lowLast = low.current;
        Tracker tracker = detector_.lowTrack;
        if (count() <= lastOfStart) tracker = risen(tracker, low.smoothed);
        tracker = followed(tracker, low.smoothed, Family::lowRules);
        detector_.lowTrack = tracker;
        detector_.flagLow = low.smoothed > Family::lowRules.flag.of(tracker);
    }

    int count() const { return detector_.hangover.frameCount; }

    Detector<Tracker>& detector_;
};

}  // namespace vorn::detection
