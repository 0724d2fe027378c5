// How much suppressors of noise gain: a table of segmental signal-to-noise ratios, ours beside a peer's, no times.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <vector>

#include "noise/noisy_speech.h"
#include "noise/suppressor.h"

#ifdef VORNSR_HAVE_SPEEXDSP
#include <speex/speex_preprocess.h>
#endif

namespace {

using Wave = std::vector<float>;
constexpr int hop = bench::Suppressor::hop;

// The mean over frames with speech of the ratio in decibels, each between -10 and 35, at the delay that serves best.
double segmentalRatio(const Wave& clean, const Wave& processed) {
    constexpr std::size_t frame = 160;
    double best = -100;
    for (std::size_t delay = 0; delay <= 512; ++delay) {
        double sum = 0;
        int count = 0;
        for (std::size_t begin = 0; begin + frame + delay <= clean.size(); begin += frame) {
            double speech = 0, rest = 1e-9;
            for (std::size_t i = begin; i < begin + frame; ++i) {
                const double d = double{processed[i + delay]} - clean[i];
                speech += double{clean[i]} * clean[i];
                rest += d * d;
            }
            if (speech < frame * 100.0 * 100.0) continue;
            sum += std::clamp(10 * std::log10(speech / rest), -10.0, 35.0);
            ++count;
        }
        best = std::max(best, sum / std::max(count, 1));
    }
    return best;
}

Wave ours(const Wave& noisy, bench::GainRule rule) {
    bench::Suppressor suppressor(bench::noisySampleRate, rule);
    Wave out(noisy.size());
    for (std::size_t i = 0; i + hop <= noisy.size(); i += hop) suppressor.run(&noisy[i], &out[i]);
    return out;
}

#ifdef VORNSR_HAVE_SPEEXDSP
Wave speex(const Wave& noisy) {
    const std::shared_ptr<SpeexPreprocessState> state(speex_preprocess_state_init(hop, bench::noisySampleRate),
                                                      speex_preprocess_state_destroy);
    Wave out(noisy.size());
    std::vector<spx_int16_t> samples(hop);
    for (std::size_t i = 0; i + hop <= noisy.size(); i += hop) {
        for (std::size_t k = 0; k < hop; ++k) {
            samples[k] = static_cast<spx_int16_t>(std::lrint(std::clamp(noisy[i + k], -32768.0f, 32767.0f)));
        }
        speex_preprocess_run(state.get(), samples.data());
        std::copy(samples.begin(), samples.end(), out.begin() + static_cast<std::ptrdiff_t>(i));
    }
    return out;
}
#endif

}  // namespace

int main() {
    const Wave clean = bench::speech(VORNSR_RECORDINGS "/test", 60);
    if (clean.size() < bench::noisySampleRate) {
        std::fprintf(stderr, "recordings not found in %s\n", VORNSR_RECORDINGS);
        return 1;
    }
    std::printf("segmental ratio in dB        noisy   Wiener  Ephraim-Malah  speexdsp\n");
    for (int decibels : {20, 15, 10, 5, 0, -5}) {
        const Wave noisy = bench::withNoise(clean, decibels);
        std::printf("white noise at %3d dB       %6.2f   %6.2f         %6.2f", decibels, segmentalRatio(clean, noisy),
                    segmentalRatio(clean, ours(noisy, bench::GainRule::wiener)),
                    segmentalRatio(clean, ours(noisy, bench::GainRule::ephraimMalah)));
#ifdef VORNSR_HAVE_SPEEXDSP
        std::printf("    %6.2f", segmentalRatio(clean, speex(noisy)));
#endif
        std::printf("\n");
    }
}
