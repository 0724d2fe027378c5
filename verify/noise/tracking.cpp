// Noise tracking.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

struct Setting {
    int sampleFreq, fftLen, hop;
};
constexpr Setting settings[] = {{8000, 8, 4},      {8000, 256, 80},    {16000, 57, 20},
                                {16000, 512, 160}, {44100, 1000, 441}, {48000, 8192, 4096}};

// Everything of the record but the addresses: parameters and arrays.
template <class T>
void addRecord(Digest& digest, const std::vector<unsigned char>& block, int fftLen) {
    std::vector<T> arrays(static_cast<std::size_t>(4 * (fftLen / 2 + 1)));
    std::memcpy(arrays.data(), block.data() + 88, arrays.size() * sizeof(T));
    digest.bytes(block.data(), 28);
    T parameters[4];
    std::memcpy(parameters, block.data() + 28, sizeof parameters);
    for (T x : parameters) digest.add(x);
    digest.add(arrays);
}

template <auto getSize>
void sizes(Source&, Digest& digest) {
    for (int fftLen = 6; fftLen < 8200; fftLen += fftLen < 40 ? 1 : 577) {
        int size = -1;
        digest.add(getSize(fftLen, &size));
        digest.add(size);
    }
}

template <class T, auto init>
void parameters(Source& source, Digest& digest) {
    for (int i = 0; i < 400; ++i) {
        const int fftLen = 8 + static_cast<int>(source.bits() % 8185);
        const int sampleFreq = 8000 + static_cast<int>(source.bits() % 40001);
        std::vector<unsigned char> block(static_cast<std::size_t>(16 * (fftLen / 2) + 104));
        auto* state = reinterpret_cast<VornsMCRAState*>(block.data());
        digest.add(init(sampleFreq, fftLen, 1 + static_cast<int>(source.bits() % (i % 2 ? 64u : 4096u)), state));
        addRecord<T>(digest, block, fftLen);
    }
}

// Noise that rises and falls; then anything.
template <class T, auto init, auto update>
void stream(Source& source, Digest& digest) {
    for (const Setting& s : settings) {
        const auto bins = static_cast<std::size_t>(s.fftLen / 2 + 1);
        std::vector<unsigned char> block(16 * bins + 88);
        auto* state = reinterpret_cast<VornsMCRAState*>(block.data());
        digest.add(init(s.sampleFreq, s.fftLen, s.hop, state));
        std::vector<T> noise(bins);
        const int frames = s.fftLen > 1000 ? 12 : 300;
        for (int frame = 0; frame < frames; ++frame) {
            const double level = (frame / 40) % 2 != 0 ? 1e8 : 1e5;
            const auto in = frame < frames - 4 ? source.values<double>(bins, 0.0, 2.0) : std::vector<double>();
            std::vector<T> power = in.empty() ? source.patterns<T>(bins) : std::vector<T>(bins);
            for (std::size_t k = 0; k < in.size(); ++k) power[k] = static_cast<T>(in[k] * in[k] * level);
            digest.add(update(power.data(), state, noise.data()));
            digest.add(noise);
            if (frame % 16 == 0) addRecord<T>(digest, block, s.fftLen);
        }
        addRecord<T>(digest, block, s.fftLen);
    }
}

VornStatus init_32f(int sampleFreq, int fftLen, int, VornsMCRAState* state) {
    return vornsInitMCRA_32f(sampleFreq, fftLen, state);
}
VornStatus init_32s(int sampleFreq, int fftLen, int, VornsMCRAState* state) {
    return vornsInitMCRA_32s(sampleFreq, fftLen, state);
}

const Workload workloads[] = {
    {"vornsGetSizeMCRA_32f", sizes<vornsGetSizeMCRA_32f>},
    {"vornsGetSizeMCRA_32s", sizes<vornsGetSizeMCRA_32s>},
    {"vornsInitMCRA_32f", parameters<Vorn32f, init_32f>},
    {"vornsInitMCRA_32s", parameters<Vorn32s, init_32s>},
    {"vornsAltInitMCRA_32f", parameters<Vorn32f, vornsAltInitMCRA_32f>},
    {"vornsAltInitMCRA_32s", parameters<Vorn32s, vornsAltInitMCRA_32s>},
    {"vornsUpdateNoisePSDMCRA_32f_I", stream<Vorn32f, vornsAltInitMCRA_32f, vornsUpdateNoisePSDMCRA_32f_I>},
    {"vornsUpdateNoisePSDMCRA_32s_I", stream<Vorn32s, vornsAltInitMCRA_32s, vornsUpdateNoisePSDMCRA_32s_I>},
};

}  // namespace

Family trackingWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
