// The families of the voice activity detector: what its numbers are, how its three measures are formed, and the ratios
// by which trackers follow them.
#pragma once

#include <cstdint>

#include "frame/opaque.h"
#include "frame/wrap.h"
#include "simd/fold.h"
#include "simd/simd.h"
#include "vornsr/signal.h"
#include "vornsr/types.h"

namespace vorn::detection {

// How a tracker follows its measure. Between lower and upper of the tracker: kept of the tracker + taken of the
// measure. Below low of it, or at most that where lowIsIncluded: keptLow and takenLow. Above flag of it the frame is
// flagged.
template <class Ratio>
struct Rules {
    Ratio upper, lower, kept, taken, low, keptLow, takenLow, flag;
    bool lowIsIncluded;
};

inline constexpr int numberOfBands = 25, spectrumLength = 64;
inline constexpr int accurately = 2;  // hint of the sums of singles

// What the low band gives in a frame: the measure, and what the next frame will know of it.
template <class Measure, class Tracker>
struct LowBand {
    Measure smoothed;
    Tracker current;
};

struct Singles {
    using Element = Vorn32f;
    using Tracker = Vorn32f;
    using Measure = Vorn32f;

    struct Factor {
        Vorn32f factor;
        Vorn32f of(Vorn32f x) const { return factor * x; }
    };
    static constexpr Rules<Factor> varianceRules = {{1.5f},  {0.85f}, {0.8f},  {0.2f}, {0.25f},
                                                    {0.97f}, {0.03f}, {1.65f}, false};
    static constexpr Rules<Factor> energyRules = {{1.5f},  {0.75f}, {0.8f},  {0.2f}, {0.5f},
                                                  {0.97f}, {0.03f}, {1.65f}, true};
    static constexpr Rules<Factor> lowRules = {{1.5f},  {0.75f}, {0.8f},  {0.2f}, {0.5f},
                                               {0.97f}, {0.03f}, {3.25f}, true};

    // The mean square less the squared mean.
    static Measure varianceOf(const Element* spectrum) {
        Vorn32f sum, squares;
        vornsSum_32f(spectrum, spectrumLength, &sum, accurately);
        vornsDotProd_32f(spectrum, spectrum, spectrumLength, &squares);
        // Rounded as it stands, in directed modes too: not as the mirror image that a compiler may make of it.
        return squares * (1.0f / 64) - opaque((sum * sum) * (1.0f / 4096));
    }
    static Measure energyOf(const Element* bands) {
        Vorn32f sum;
        vornsSum_32f(bands, numberOfBands, &sum, accurately);
        return sum * sum - 3.0f;
    }
    static Measure meanOf(int frame, Tracker mean, Measure energy) {
        return ((static_cast<Vorn32f>(frame - 1) * mean + energy) * 1.1f) / static_cast<Vorn32f>(frame);
    }
    static bool isOnset(Measure energy, Measure mean) { return energy / mean > 2.5f; }
    static LowBand<Measure, Tracker> lowOf(const Element* bands, Tracker before) {
        const Vorn32f current = (bands[1] + bands[2] + bands[3]) / 3.0f;
        return {0.75f * current + 0.25f * before, current};
    }
};

// Integers. Trackers are multiplied in 32 bits, which wrap; measures have 64.
struct Shorts {
    using Element = Vorn16s;
    using Tracker = Vorn32s;
    using Measure = Vorn64s;

    struct Ratio {
        std::int32_t factor;
        int shift;
        Vorn64s of(Vorn32s tracker) const { return wrapMul(factor, tracker) >> shift; }
        Vorn64s of(Vorn64s measure) const { return factor * measure >> shift; }
    };
    // A low variance is added as it is, not a 32nd of it: the tracker jumps up there. This is on purpose.
    static constexpr Ratio wholeMeasure = {1, 0};
    static constexpr Rules<Ratio> varianceRules = {{48, 5}, {27, 5},      {26, 5}, {6, 5}, {8, 5},
                                                   {31, 5}, wholeMeasure, {53, 5}, false};
    static constexpr Rules<Ratio> energyRules = {{192, 7}, {96, 7}, {102, 7}, {26, 7}, {64, 7},
                                                 {124, 7}, {4, 7},  {211, 7}, true};
    static constexpr Rules<Ratio> lowRules = {{48, 5},  {24, 5}, {102, 7}, {26, 7}, {16, 5},
                                              {124, 7}, {4, 7},  {416, 7}, true};

    // 4096 times the variance. Two squares fill 32 bits, so their halves are added up apart.
    static Measure varianceOf(const Element* spectrum) {
        i32xN sums = splat<i32xN>(0), low = sums, high = sums;
        for (int i = 0; i < spectrumLength; i += i16xN::lanes) {
            const i16xN x = load<i16xN>(spectrum + i);
            const i32xN squares = mulAddPairs(x, x);
            sums = sums + mulAddPairs(x, splat<i16xN>(1));
            low = low + (squares & splat<i32xN>(0xFFFF));
            high = high + shiftRightLogical<16>(squares);
        }
        const Vorn64s sum = sumOfLanes(sums), squares = Vorn64s{sumOfLanes(high)} * 65536 + sumOfLanes(low);
        return 64 * squares - sum * sum;
    }
    static Measure energyOf(const Element* bands) {
        i32x4 sums = splat<i32x4>(0);
        for (int i = 0; i + 8 <= numberOfBands; i += 8)
            sums = sums + mulAddPairs(load<i16x8>(bands + i), splat<i16x8>(1));
        const Vorn64s sum = Vorn64s{sumOfLanes(sums)} + bands[numberOfBands - 1];
        return sum * sum - 3;
    }
    static Measure meanOf(int frame, Tracker mean, Measure energy) {
        return (141 * energy + 141 * Vorn64s{wrapMul(frame - 1, mean)}) / frame >> 7;
    }
    // A mean of zero is no onset; it must not divide.
    static bool isOnset(Measure energy, Measure mean) { return mean != 0 && energy * 128 / mean > 320; }
    // The mean in Q10, and with it the measure.
    static LowBand<Measure, Tracker> lowOf(const Element* bands, Tracker before) {
        const std::int32_t sum = bands[1] + bands[2] + bands[3];
        return {wrapAdd(8184 * sum >> 5, wrapMul(8, before) >> 5), 341 * sum};
    }
};

}  // namespace vorn::detection
