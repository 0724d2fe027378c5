// Noise reduction.
#include <climits>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

constexpr int scales[] = {0,  1,  8,   15,  31,  35,  63,   64,   127,     150,
                          -1, -8, -15, -28, -29, -34, -127, -128, INT_MAX, INT_MIN};

// Powers, or any bits.
template <class T>
std::vector<T> spectrum(Source& source, int len, bool hard) {
    return hard ? source.patterns<T>(len) : source.values<T>(len, 0.0, 1000.0);
}

// call(src, dst, len, scaleFactor)
template <class T, class Result, class Call>
Workload smoothing(const char* name, Call call) {
    return {name, [=](Source& source, Digest& digest) {
                for (int quads : lengths) {
                    for (int scale : scales) {
                        if (quads > 100 && scale % 31 != 0) continue;
                        const auto src = spectrum<T>(source, 4 * quads, quads % 2 != 0);
                        std::vector<Result> dst(quads + 1);
                        digest.add(call(src.data(), dst.data(), 4 * quads, scale));
                        digest.add(dst);
                    }
                }
            }};
}

// call(in, noise, den, dst, len, scaleFactor)
template <class T, class Call>
Workload onSpectra(const char* name, Call call) {
    return {name, [=](Source& source, Digest& digest) {
                for (int len : lengths) {
                    for (int scale : scales) {
                        if (len > 100 && scale % 31 != 0) continue;
                        const auto in = spectrum<T>(source, len, len % 2 != 0),
                                   noise = spectrum<T>(source, len, len % 3 == 0),
                                   den = spectrum<T>(source, len, len % 5 == 0);
                        std::vector<T> dst(len);
                        digest.add(call(in.data(), noise.data(), den.data(), dst.data(), len, scale));
                        digest.add(dst);
                    }
                }
            }};
}

// What only moves: the bits themselves.
template <auto spread, class T>
void response(Source& source, Digest& digest) {
    for (int turn = 0; turn < 20; ++turn) {
        const auto src = source.patterns<T>(10);
        std::vector<T> dst(17);
        digest.add(spread(src.data(), dst.data()));
        digest.bytes(dst.data(), dst.size() * sizeof(T));
    }
}

// Taps whose sum is small, and any.
void filteredShorts(Source& source, Digest& digest) {
    for (int scale : scales) {
        for (int turn = 0; turn < 10; ++turn) {
            const auto src = source.values<Vorn16s>(96);
            auto taps = source.values<Vorn16s>(17);
            if (turn % 2 != 0) {
                for (Vorn16s& tap : taps) tap = static_cast<Vorn16s>(tap / 16);
            }
            std::vector<Vorn16s> dst(80);
            digest.add(vornsResidualFilter_Aurora_16s_Sfs(src.data(), dst.data(), taps.data(), scale));
            digest.add(dst);
        }
    }
}
void filteredSingles(Source& source, Digest& digest) {
    for (int turn = 0; turn < 40; ++turn) {
        const bool hard = turn % 4 == 0;
        const auto src = hard ? source.patterns<Vorn32f>(96) : source.values<Vorn32f>(96);
        const auto taps = source.values<Vorn32f>(17, -1.0, 1.0);
        std::vector<Vorn32f> dst(80);
        digest.add(vornsResidualFilter_Aurora_32f(src.data(), dst.data(), taps.data()));
        digest.add(dst);
    }
}

const Workload workloads[] = {
    smoothing<Vorn32f, Vorn32f>(
        "vornsSmoothedPowerSpectrumAurora_32f",
        [](auto* src, auto* dst, int len, int) { return vornsSmoothedPowerSpectrumAurora_32f(src, dst, len); }),
    smoothing<Vorn16s, Vorn16s>(
        "vornsSmoothedPowerSpectrumAurora_16s",
        [](auto* src, auto* dst, int len, int) { return vornsSmoothedPowerSpectrumAurora_16s(src, dst, len); }),
    smoothing<Vorn32s, Vorn32s>("vornsSmoothedPowerSpectrumAurora_32s_Sfs", vornsSmoothedPowerSpectrumAurora_32s_Sfs),
    smoothing<Vorn32s, Vorn64s>("vornsSmoothedPowerSpectrumAurora_32s64s_Sfs",
                                vornsSmoothedPowerSpectrumAurora_32s64s_Sfs),
    onSpectra<Vorn32f>("vornsNoiseSpectrumUpdate_Aurora_32f",
                       [](auto* in, auto* noise, auto*, auto* dst, int len, int) {
                           return vornsNoiseSpectrumUpdate_Aurora_32f(in, noise, dst, len);
                       }),
    onSpectra<Vorn16s>("vornsNoiseSpectrumUpdate_Aurora_16s_Sfs",
                       [](auto* in, auto* noise, auto*, auto* dst, int len, int scale) {
                           return vornsNoiseSpectrumUpdate_Aurora_16s_Sfs(in, noise, dst, len, scale);
                       }),
    onSpectra<Vorn32s>("vornsNoiseSpectrumUpdate_Aurora_32s_Sfs",
                       [](auto* in, auto* noise, auto*, auto* dst, int len, int scale) {
                           return vornsNoiseSpectrumUpdate_Aurora_32s_Sfs(in, noise, dst, len, scale);
                       }),
    onSpectra<Vorn32f>("vornsWienerFilterDesign_Aurora_32f",
                       [](auto* in, auto* noise, auto* den, auto* dst, int len, int) {
                           return vornsWienerFilterDesign_Aurora_32f(in, noise, den, dst, len);
                       }),
    onSpectra<Vorn16s>("vornsWienerFilterDesign_Aurora_16s",
                       [](auto* in, auto* noise, auto* den, auto* dst, int len, int) {
                           return vornsWienerFilterDesign_Aurora_16s(in, noise, den, dst, len);
                       }),
    {"vornsTabsCalculation_Aurora_32f", response<vornsTabsCalculation_Aurora_32f, Vorn32f>},
    {"vornsTabsCalculation_Aurora_16s", response<vornsTabsCalculation_Aurora_16s, Vorn16s>},
    {"vornsResidualFilter_Aurora_32f", filteredSingles},
    {"vornsResidualFilter_Aurora_16s_Sfs", filteredShorts},
};

}  // namespace

Family noiseReductionWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
