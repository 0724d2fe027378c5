// Waveform processing.
#include <cmath>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

constexpr int frameLen = 200;

template <class T, auto process>
void frame(Digest& digest, const std::vector<T>& src) {
    std::vector<T> dst(frameLen);
    digest.add(process(src.data(), dst.data()));
    digest.add(dst);
}

// Noise, pulses at many distances, a level (which shows every weight), and any numbers, in half of the frames small
// enough for their energies to be ordinary.
template <class T, auto process>
void frames(Source& source, Digest& digest) {
    for (int turn = 0; turn < 20; ++turn) frame<T, process>(digest, source.values<T>(frameLen));
    for (int period = 20; period < 100; ++period) {
        std::vector<T> src(frameLen, static_cast<T>(10));
        for (int n = static_cast<int>(source.uniform(0, 40)); n < frameLen; n += period) src[n] = static_cast<T>(999);
        frame<T, process>(digest, src);
    }
    frame<T, process>(digest, std::vector<T>(frameLen, static_cast<T>(-77)));
    for (int turn = 0; turn < 20; ++turn) {
        auto src = source.patterns<T>(frameLen);
        for (T& x : src) {
            if (turn % 2 == 0 && !(std::abs(static_cast<double>(x)) < 1e18)) x = static_cast<T>(1);
        }
        frame<T, process>(digest, src);
    }
}

const Workload workloads[] = {
    {"vornsWaveProcessing_Aurora_32f", frames<Vorn32f, vornsWaveProcessing_Aurora_32f>},
    {"vornsWaveProcessing_Aurora_16s", frames<Vorn16s, vornsWaveProcessing_Aurora_16s>},
};

}  // namespace

Family waveformWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
