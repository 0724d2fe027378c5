// What a front-end makes of a minute of sound, frame by frame: the stages that keep nothing, run once. A frame has 200
// samples and begins 80 behind the one before, 6000 a minute; the last ones run into the next minute, which is the
// same.
#pragma once

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "endurance/day.h"

namespace test {

// Rows of one kind, one a frame.
template <class T>
struct FrameRows {
    int width;
    std::vector<T> values;

    explicit FrameRows(int width_) : width(width_), values(static_cast<std::size_t>(width_) * 6000) {}
    T* row(int frame) { return &values[static_cast<std::size_t>(frame) * static_cast<std::size_t>(width)]; }
    const T* row(int frame) const { return const_cast<FrameRows*>(this)->row(frame); }

    // Each value times a factor, in another type: within its numbers from least on, integers truncated.
    template <class To>
    FrameRows<To> as(double factor, double least) const {
        FrameRows<To> made(width);
        for (std::size_t i = 0; i < values.size(); ++i) {
            const auto most = static_cast<double>(std::numeric_limits<To>::max());
            made.values[i] = static_cast<To>(std::clamp(static_cast<double>(values[i]) * factor, least, most));
        }
        return made;
    }
};

struct Frames {
    static constexpr int count = 6000, length = 200, step = 80;
    static constexpr int bins = 129, smoothedBins = 65, bands = 25, cepstra = 13;

    std::vector<Vorn16s> samples;               // and a frame more
    FrameRows<Vorn32f> spectra{256};            // packed, the real bins first
    FrameRows<Vorn32f> powers{bins};            // of a 256-point spectrum, in full-scale units of 2^-30
    FrameRows<Vorn32f> smoothed{smoothedBins};  // in the same units
    FrameRows<Vorn32f> energies{bands};         // magnitudes of the bands
    FrameRows<Vorn32f> cepstrum{cepstra};       // coefficient 0 last
    std::vector<Vorn32f> logEnergy = std::vector<Vorn32f>(count);

    explicit Frames(std::vector<Vorn16s> sound) : samples(std::move(sound)) {
        samples.insert(samples.end(), samples.begin(), samples.begin() + length);
        VornsFFTSpec* transform = nullptr;
        VornFBankState_32f* bank = nullptr;
        VornDCTLifterState_32f* lifter = nullptr;
        EXPECT_EQ(vornsFFTInitAlloc_R_32f(&transform, 8, 8, 0), vornStsNoErr);
        EXPECT_EQ(vornsMelFBankInitAllocLow_Aurora_32f(&bank), vornStsNoErr);
        EXPECT_EQ(vornsDCTLifterInitAlloc_C0_32f(&lifter, bands, cepstra - 1, 22, 0.1f, 0.1f), vornStsNoErr);
        std::vector<Vorn32f> frame(256), spectrum(256), magnitude(smoothedBins), logBands(bands);
        for (int f = 0; f < count; ++f) {
            Vorn32f energy = 64.0f;
            for (int n = 0; n < length; ++n) {
                const auto x = static_cast<Vorn32f>(samples[static_cast<std::size_t>(f * step + n)]);
                energy += x * x;
                frame[static_cast<std::size_t>(n)] = x * 0x1p-15f;
            }
            logEnergy[static_cast<std::size_t>(f)] = energy / 64.0f;
            vornsFFTFwd_RToPerm_32f(frame.data(), spectrum.data(), transform, nullptr);
            std::copy(spectrum.begin(), spectrum.end(), spectra.row(f));
            Vorn32f* power = powers.row(f);
            power[0] = spectrum[0] * spectrum[0];
            power[bins - 1] = spectrum[1] * spectrum[1];
            for (std::size_t k = 1; k < bins - 1; ++k) {
                power[k] = spectrum[2 * k] * spectrum[2 * k] + spectrum[2 * k + 1] * spectrum[2 * k + 1];
            }
            vornsSmoothedPowerSpectrumAurora_32f(spectrum.data(), smoothed.row(f), 256);
            for (int k = 0; k < smoothedBins; ++k)
                magnitude[static_cast<std::size_t>(k)] = std::sqrt(smoothed.row(f)[k]);
            vornsEvalFBank_32f(magnitude.data(), energies.row(f), bank);
            for (int k = 0; k < bands; ++k) logBands[static_cast<std::size_t>(k)] = energies.row(f)[k] + 0x1p-10f;
            vornsLn_32f_I(logBands.data(), bands);
            vornsDCTLifter_32f(logBands.data(), cepstrum.row(f), lifter);
        }
        vornsLn_32f_I(logEnergy.data(), count);
        vornsFFTFree_R_32f(transform);
        vornsFBankFree_32f(bank);
        vornsDCTLifterFree_32f(lifter);
    }
};

// Made once for the tests that share it.
inline const Frames& frames() {
    static const Frames made(minuteOfSound());
    return made;
}
inline const Frames& steadyFrames() {
    static const Frames made(minuteOfSteadyNoise());
    return made;
}

}  // namespace test
