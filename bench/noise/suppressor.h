// A suppressor of noise as a caller would build it, by overlapping frames: transform, tracked noise, the a priori ratio
// that follows its own decisions (Ephraim and Malah 1984), a gain, and back.
#pragma once

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

#include "vornsr.h"

namespace bench {

enum class GainRule { wiener, ephraimMalah };

class Suppressor {
public:
    static constexpr int order = 8, length = 1 << order, hop = length / 2, bins = hop + 1;

    Suppressor(int sampleRate, GainRule rule) : rule_(rule) {
        VornsFFTSpec* transform = nullptr;
        vornsFFTInitAlloc_R_32f(&transform, order, 2, 2);  // the inverse divides
        transform_.reset(transform);
        int bytes = 0;
        vornsGetSizeMCRA_32f(length, &bytes);
        tracker_.resize(static_cast<std::size_t>(bytes + 7) / 8);
        vornsAltInitMCRA_32f(sampleRate, length, hop, tracker());
        for (int i = 0; i < length; ++i) {
            window_[i] = static_cast<float>(std::sin(std::numbers::pi * (i + 0.5) / length));
        }
        std::fill_n(clean_, bins, 0.0f);
        std::fill_n(past_, hop, 0.0f);
        std::fill_n(sum_, hop, 0.0f);
    }

    // A frame of hop samples; what comes out is a frame late.
    void run(const float* src, float* dst) {
        std::copy_n(past_, hop, frame_);
        std::copy_n(src, hop, frame_ + hop);
        std::copy_n(src, hop, past_);
        vornsMul_32f_I(window_, frame_, length);
        vornsFFTFwd_RToCCS_32f(frame_, spectrum_, transform_.get(), nullptr);
        auto* complex = reinterpret_cast<Vorn32fc*>(spectrum_);
        for (int k = 0; k < bins; ++k) power_[k] = complex[k].re * complex[k].re + complex[k].im * complex[k].im;
        vornsUpdateNoisePSDMCRA_32f_I(power_, tracker(), noise_);
        for (int k = 0; k < bins; ++k) {
            const float noise = std::max(noise_[k], 1e-3f);
            after_[k] = std::clamp(power_[k] / noise, 1e-4f, 3e4f);
            before_[k] = 0.98f * clean_[k] / noise + 0.02f * std::max(after_[k] - 1, 0.0f);
            before_[k] = std::max(before_[k], 0.003f);  // some 25 dB at most are taken away
        }
        vornsFilterUpdateWiener_32f(before_, gain_, bins);
        if (rule_ == GainRule::ephraimMalah) {
            vornsFilterUpdateEMNS_32f(gain_, after_, gain_, bins);
            for (float& g : gain_) g = std::min(g, 1.0f);
        }
        for (int k = 0; k < bins; ++k) {
            clean_[k] = gain_[k] * gain_[k] * power_[k];
            complex[k].re *= gain_[k];
            complex[k].im *= gain_[k];
        }
        vornsFFTInv_CCSToR_32f(spectrum_, frame_, transform_.get(), nullptr);
        vornsMul_32f_I(window_, frame_, length);
        for (int i = 0; i < hop; ++i) dst[i] = sum_[i] + frame_[i];
        std::copy_n(frame_ + hop, hop, sum_);
    }

private:
    struct Free {
        void operator()(VornsFFTSpec* transform) const { vornsFFTFree_R_32f(transform); }
    };
    VornsMCRAState* tracker() { return reinterpret_cast<VornsMCRAState*>(tracker_.data()); }

    GainRule rule_;
    std::unique_ptr<VornsFFTSpec, Free> transform_;
    std::vector<double> tracker_;
    float window_[length], frame_[length], past_[hop], sum_[hop];
    float spectrum_[length + 2], power_[bins], noise_[bins], after_[bins], before_[bins], gain_[bins], clean_[bins];
};

}  // namespace bench
