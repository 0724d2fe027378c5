// Waveform processing beside plain loops: one frame, and frames behind one another.
#include <cmath>

#include "features/common.h"
#include "plain/waveform.h"

namespace {

using namespace bench::features;

constexpr int frameLen = 200;

// Decaying pulses of a slowly changing period, with some noise.
template <class T>
std::shared_ptr<T[]> voice(std::size_t len) {
    auto x = signal<T>(len, -100, 100);
    int sincePulse = 0, period = 60;
    for (std::size_t n = 0; n < len; ++n, ++sincePulse) {
        if (sincePulse == period) {
            sincePulse = 0;
            period = 30 + static_cast<int>(n / 977 % 45);
        }
        x[n] =
            static_cast<T>(static_cast<double>(x[n]) + 5000 * std::exp(-sincePulse / 8.0) * std::cos(0.9 * sincePulse));
    }
    return x;
}

template <class T>
void addFrames(const char* name, const char* size, int frames, VornStatus (*process)(const T*, T*)) {
    const auto len = static_cast<std::size_t>(frames) * frameLen;
    auto src = voice<T>(len), dst = bench::buffer<T>(len);
    const auto each = [=](auto run) {
        return [=] {
            for (int k = 0; k < frames; ++k) run(src.get() + k * frameLen, dst.get() + k * frameLen);
        };
    };
    compare(name, size, static_cast<std::int64_t>(len), dst,
            {{bench::ours, each([=](const T* x, T* y) { process(x, y); })},
             {"plain", each([](const T* x, T* y) { plain::processWaveform(x, y); })}});
}

template <class T>
void addAll(const char* name, VornStatus (*process)(const T*, T*)) {
    addFrames<T>(name, "frame", 1, process);
    addFrames<T>(name, "100 frames", 100, process);
    addFrames<T>(name, "10000 frames", 10000, process);
}

const bench::Family waveforms([] {
    addAll<Vorn32f>("vornsWaveProcessing_Aurora_32f", vornsWaveProcessing_Aurora_32f);
    addAll<Vorn16s>("vornsWaveProcessing_Aurora_16s", vornsWaveProcessing_Aurora_16s);
});

}  // namespace
