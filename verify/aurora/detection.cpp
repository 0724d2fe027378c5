// Voice activity detection.
#include <algorithm>
#include <cstring>
#include <iterator>
#include <vector>

#include "families.h"

namespace verify {
namespace {

// A stream of frames in noise, with louder stretches, and the flush at its end: every decision, and the record's
// numbers, between which there are no gaps but one byte.
template <auto init, auto decision, auto flush, class Tracker, class T>
void stream(Source& source, Digest& digest, bool anyBits, int frames) {
    unsigned char record[64] = {};
    auto* state = reinterpret_cast<VornsVADState*>(record);
    const auto add = [&](int result) {
        digest.add(result);
        Tracker trackers[6];
        std::memcpy(trackers, record + 8, sizeof trackers);
        digest.bytes(record, 8);
        for (Tracker tracker : trackers) digest.add(tracker);
        digest.bytes(record + 32, 27);
        digest.bytes(record + 60, 4);
    };
    digest.add(init(state));
    for (int n = 0; n < frames; ++n) {
        const double loud = n / 40 % 3 == 1 ? 40.0 : 10.0;
        std::vector<T> bands(25), spectrum(64);
        if (anyBits) {
            bands = source.patterns<T>(25);
            spectrum = source.patterns<T>(64);
        } else {
            for (T& x : bands) x = static_cast<T>(source.uniform(0.0, loud));
            for (T& x : spectrum) x = static_cast<T>(source.uniform(0.0, loud));
        }
        int result = 0;
        digest.add(decision(bands.data(), spectrum.data(), static_cast<int>(source.bits() % 6), &result, state));
        add(result);
    }
    for (int n = 0; n < 15; ++n) {
        int result = 0;
        digest.add(flush(&result, state));
        add(result);
    }
}

template <auto init, auto decision, auto flush, class Tracker, class T>
void streams(Source& source, Digest& digest) {
    for (int frames : {5, 30, 600}) stream<init, decision, flush, Tracker, T>(source, digest, false, frames);
    for (int life = 0; life < 20; ++life) stream<init, decision, flush, Tracker, T>(source, digest, true, 40);
}

template <auto getSize>
void bufferSize(Source&, Digest& digest) {
    int size = 0;
    digest.add(getSize(&size));
    digest.add(size);
}

template <auto init>
void initialised(Source&, Digest& digest) {
    unsigned char record[64] = {};
    digest.add(init(reinterpret_cast<VornsVADState*>(record)));
    digest.bytes(record, sizeof record);
}

constexpr auto streamsOfSingles =
    streams<vornsVADInit_Aurora_32f, vornsVADDecision_Aurora_32f, vornsVADFlush_Aurora_32f, Vorn32f, Vorn32f>;
constexpr auto streamsOfShorts =
    streams<vornsVADInit_Aurora_16s, vornsVADDecision_Aurora_16s, vornsVADFlush_Aurora_16s, Vorn32s, Vorn16s>;

const Workload workloads[] = {
    {"vornsVADGetBufSize_Aurora_32f", bufferSize<vornsVADGetBufSize_Aurora_32f>},
    {"vornsVADGetBufSize_Aurora_16s", bufferSize<vornsVADGetBufSize_Aurora_16s>},
    {"vornsVADInit_Aurora_32f", initialised<vornsVADInit_Aurora_32f>},
    {"vornsVADInit_Aurora_16s", initialised<vornsVADInit_Aurora_16s>},
    {"vornsVADDecision_Aurora_32f", streamsOfSingles},
    {"vornsVADDecision_Aurora_16s", streamsOfShorts},
    {"vornsVADFlush_Aurora_32f", streamsOfSingles},
    {"vornsVADFlush_Aurora_16s", streamsOfShorts},
};

}  // namespace

Family detectionWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
