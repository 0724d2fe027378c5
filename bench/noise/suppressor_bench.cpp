// A whole suppressor of noise beside a preprocessor of another library: a second of noisy speech.
#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "noise/noisy_speech.h"
#include "noise/suppressor.h"
#include "support/bench.h"

#ifdef VORNSR_HAVE_SPEEXDSP
#include <speex/speex_preprocess.h>
#endif

namespace {

constexpr int hop = bench::Suppressor::hop, frames = bench::noisySampleRate / hop;

const bench::Family suppressors([] {
    const auto clean = bench::speech(VORNSR_RECORDINGS "/test", 10);
    if (clean.size() < bench::noisySampleRate) return;
    const auto noisy = std::make_shared<const std::vector<float>>(bench::withNoise(clean, 10));
    const auto out = std::make_shared<std::vector<float>>(hop);
    const auto add = [&](const char* name, bench::GainRule rule) {
        const auto suppressor = std::make_shared<bench::Suppressor>(bench::noisySampleRate, rule);
        bench::add(name, "1 s at 8 kHz", bench::ours, frames * hop, [=] {
            for (int f = 0; f < frames; ++f) suppressor->run(noisy->data() + f * hop, out->data());
            bench::keep(out->data());
        });
#ifdef VORNSR_HAVE_SPEEXDSP
        const std::shared_ptr<SpeexPreprocessState> peer(speex_preprocess_state_init(hop, bench::noisySampleRate),
                                                         speex_preprocess_state_destroy);
        const auto samples = std::make_shared<std::vector<spx_int16_t>>(hop);
        bench::add(name, "1 s at 8 kHz", "speexdsp", frames * hop, [=] {
            for (int f = 0; f < frames; ++f) {
                for (int i = 0; i < hop; ++i) {
                    const float x = (*noisy)[static_cast<std::size_t>(f * hop + i)];
                    (*samples)[static_cast<std::size_t>(i)] =
                        static_cast<spx_int16_t>(std::lrint(std::clamp(x, -32768.0f, 32767.0f)));
                }
                speex_preprocess_run(peer.get(), samples->data());
            }
            bench::keep(samples->data());
        });
#endif
    };
    add("suppressor, Wiener", bench::GainRule::wiener);
    add("suppressor, Ephraim-Malah", bench::GainRule::ephraimMalah);
});

}  // namespace
