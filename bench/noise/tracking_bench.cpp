// Noise tracking beside plain loops.
#include "plain/tracking.h"

#include <cstring>
#include <memory>
#include <random>
#include <string>

#include "support/bench.h"
#include "vornsr.h"

namespace {

// Frames of noise in a ring, every fourth ten times as loud: so often that no presence falls to denormal numbers.
template <class T>
std::shared_ptr<T[]> frames(int count, int bins) {
    auto block = bench::buffer<T>(static_cast<std::size_t>(count) * static_cast<std::size_t>(bins));
    std::mt19937 generator(1);
    std::exponential_distribution<double> power(1e-6);
    for (int i = 0; i < count * bins; ++i) block[i] = static_cast<T>(power(generator) * (i / bins % 4 == 3 ? 10 : 1));
    return block;
}

template <class T, class Init, class Update>
void add(const std::string& name, Init init, Update update) {
    constexpr int count = 16;
    for (int fftLen : {256, 512, 8192}) {
        const int bins = fftLen / 2 + 1;
        const auto power = frames<T>(count, bins);
        const auto block = bench::buffer<unsigned char>(static_cast<std::size_t>(16 * (fftLen / 2) + 104));
        const auto ourNoise = bench::buffer<T>(static_cast<std::size_t>(bins)),
                   plainNoise = bench::buffer<T>(static_cast<std::size_t>(bins)),
                   plainBlock = bench::buffer<T>(static_cast<std::size_t>(4 * bins + 22));
        auto* state = reinterpret_cast<VornsMCRAState*>(block.get());
        init(fftLen > 1000 ? 48000 : 16000, fftLen, state);
        update(power.get(), state, ourNoise.get());
        const auto at = std::make_shared<int>(0);
        const auto next = [=] { return power.get() + (*at = (*at + 1) % count) * bins; };
        bench::add(name, std::to_string(fftLen), bench::ours, bins, [=] {
            update(next(), reinterpret_cast<VornsMCRAState*>(block.get()), ourNoise.get());
            bench::keep(ourNoise.get());
        });
        T* const arrays = plainBlock.get() + 22;  // where ours stand behind the record
        const auto plainState = std::make_shared<plain::Tracker<T>>();
        const auto field = [&](int index) { return reinterpret_cast<const int*>(block.get())[index]; };
        *plainState = {bins, field(4), 1, {}, {}, {}, {}, arrays, arrays + bins, arrays + 2 * bins, arrays + 3 * bins};
        std::memcpy(&plainState->alphaD, block.get() + 28, 16);
        for (int k = 0; k < bins; ++k) {
            plainState->smoothed[k] = plainState->minimum[k] = plainState->tempMinimum[k] = plainNoise[k] = power[k];
        }
        bench::add(name, std::to_string(fftLen), "plain", bins, [=] {
            (void)plainBlock;
            plain::trackNoise(*plainState, next(), plainNoise.get());
            bench::keep(plainNoise.get());
        });
    }
}

const bench::Family tracking([] {
    add<Vorn32f>("vornsUpdateNoisePSDMCRA_32f_I", vornsInitMCRA_32f, vornsUpdateNoisePSDMCRA_32f_I);
    add<Vorn32s>("vornsUpdateNoisePSDMCRA_32s_I", vornsInitMCRA_32s, vornsUpdateNoisePSDMCRA_32s_I);
});

}  // namespace
