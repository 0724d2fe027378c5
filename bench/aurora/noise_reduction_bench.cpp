// Noise reduction beside plain loops, which take quotients of single precision and round to nearest.
#include "plain/noise_reduction.h"

#include <functional>
#include <memory>
#include <random>
#include <string>

#include "support/bench.h"
#include "vornsr.h"

namespace {

// Powers: none is negative.
template <class T>
std::shared_ptr<T[]> powers(std::size_t len, double high) {
    auto block = bench::buffer<T>(len);
    std::mt19937 generator(static_cast<unsigned>(len));
    std::uniform_real_distribution<double> uniform(0, high);
    for (std::size_t i = 0; i < len; ++i) block[i] = static_cast<T>(uniform(generator));
    return block;
}

template <class Ours, class Plain, class T>
void compare(const std::string& name, const std::string& size, int items, const std::shared_ptr<T[]>& result,
             const Ours& ours, const Plain& plain) {
    bench::add(name, size, bench::ours, items, [=] { ours(), bench::keep(result.get()); });
    bench::add(name, size, "plain", items, [=] { plain(), bench::keep(result.get()); });
}

// A frame's bins, or all vectors together so many bytes.
struct Size {
    const char* name;
    int elements;
    std::size_t bytes;
    int of(std::size_t bytesAnElement) const {
        return bytes == 0 ? elements : static_cast<int>(bytes / bytesAnElement) / 4 * 4;
    }
};
constexpr Size sizes[] = {{"65", 65, 0},
                          {"129", 129, 0},
                          {"L1", 0, bench::inL1},
                          {"last level", 0, bench::inLastLevel},
                          {"memory", 0, std::size_t{128} << 20}};

template <class T, class Result, class Ours, class Plain>
void addSmoothing(const std::string& name, double high, const Ours& ours, const Plain& plain) {
    for (const Size& size : sizes) {
        const int len = size.bytes == 0 ? 4 * (size.elements - 1) : size.of(sizeof(T) + sizeof(Result) / 4);
        const auto src = powers<T>(static_cast<std::size_t>(len), high);
        const auto dst = bench::buffer<Result>(static_cast<std::size_t>(len) / 4 + 1);
        compare(
            name, size.name, len, dst, [=] { ours(src.get(), dst.get(), len); },
            [=] { plain(src.get(), dst.get(), len); });
    }
}

template <class T, class Ours, class Plain>
void addUpdate(const std::string& name, double high, const Ours& ours, const Plain& plain) {
    for (const Size& size : sizes) {
        const int len = size.of(3 * sizeof(T));
        const auto in = powers<T>(static_cast<std::size_t>(len), high),
                   noise = powers<T>(static_cast<std::size_t>(len) + 1, high);
        const auto dst = bench::buffer<T>(static_cast<std::size_t>(len));
        compare(
            name, size.name, len, dst, [=] { ours(in.get(), noise.get(), dst.get(), len); },
            [=] { plain(in.get(), noise.get(), dst.get(), len); });
    }
}

template <class T, class Ours, class Plain>
void addGain(const std::string& name, double high, const Ours& ours, const Plain& plain) {
    for (const Size& size : sizes) {
        const int len = size.of(4 * sizeof(T));
        const auto in = powers<T>(static_cast<std::size_t>(len), high),
                   noise = powers<T>(static_cast<std::size_t>(len) + 1, high / 10),
                   den = powers<T>(static_cast<std::size_t>(len) + 2, high);
        const auto dst = bench::buffer<T>(static_cast<std::size_t>(len));
        compare(
            name, size.name, len, dst, [=] { ours(in.get(), noise.get(), den.get(), dst.get(), len); },
            [=] { plain(in.get(), noise.get(), den.get(), dst.get(), len); });
    }
}

void addSpectra() {
    addSmoothing<Vorn32f, Vorn32f>("vornsSmoothedPowerSpectrumAurora_32f", 1000, vornsSmoothedPowerSpectrumAurora_32f,
                                   [](auto* src, auto* dst, int len) { plain::smoothedPower(src, dst, len); });
    addSmoothing<Vorn16s, Vorn16s>("vornsSmoothedPowerSpectrumAurora_16s", 200, vornsSmoothedPowerSpectrumAurora_16s,
                                   [](auto* src, auto* dst, int len) { plain::smoothedPower(src, dst, len); });
    addSmoothing<Vorn32s, Vorn32s>(
        "vornsSmoothedPowerSpectrumAurora_32s_Sfs", 1e9,
        [](auto* src, auto* dst, int len) { vornsSmoothedPowerSpectrumAurora_32s_Sfs(src, dst, len, 32); },
        [](auto* src, auto* dst, int len) { plain::smoothedPower(src, dst, len, 32); });
    addSmoothing<Vorn32s, Vorn64s>(
        "vornsSmoothedPowerSpectrumAurora_32s64s_Sfs", 1e9,
        [](auto* src, auto* dst, int len) { vornsSmoothedPowerSpectrumAurora_32s64s_Sfs(src, dst, len, 2); },
        [](auto* src, auto* dst, int len) { plain::smoothedPower(src, reinterpret_cast<std::int64_t*>(dst), len, 2); });
}

void addUpdates() {
    addUpdate<Vorn32f>("vornsNoiseSpectrumUpdate_Aurora_32f", 1e6, vornsNoiseSpectrumUpdate_Aurora_32f,
                       [](auto* in, auto* noise, auto* dst, int len) { plain::noiseUpdate(in, noise, dst, len); });
    const auto plainScaled = [](auto* in, auto* noise, auto* dst, int len) {
        plain::noiseUpdate(in, noise, dst, len, 1);
    };
    addUpdate<Vorn16s>(
        "vornsNoiseSpectrumUpdate_Aurora_16s_Sfs", 16000,
        [](auto* in, auto* noise, auto* dst, int len) {
            vornsNoiseSpectrumUpdate_Aurora_16s_Sfs(in, noise, dst, len, 1);
        },
        plainScaled);
    addUpdate<Vorn32s>(
        "vornsNoiseSpectrumUpdate_Aurora_32s_Sfs", 1e9,
        [](auto* in, auto* noise, auto* dst, int len) {
            vornsNoiseSpectrumUpdate_Aurora_32s_Sfs(in, noise, dst, len, 1);
        },
        plainScaled);
}

void addGains() {
    const auto plainGain = [](auto* in, auto* noise, auto* den, auto* dst, int len) {
        plain::wienerGain(in, noise, den, dst, len);
    };
    addGain<Vorn32f>("vornsWienerFilterDesign_Aurora_32f", 1e6, vornsWienerFilterDesign_Aurora_32f, plainGain);
    addGain<Vorn16s>("vornsWienerFilterDesign_Aurora_16s", 5000, vornsWienerFilterDesign_Aurora_16s, plainGain);
}

template <class T, class Spread, class Filter, class PlainFilter>
void addResponse(const std::string& type, const std::string& filterType, double high, const Spread& spread,
                 const Filter& filter, const PlainFilter& plainFilter) {
    const auto src = powers<T>(96, high), taps = powers<T>(17, high), dst = bench::buffer<T>(80);
    compare(
        "vornsTabsCalculation_Aurora_" + type, "17", 17, dst, [=] { spread(src.get(), dst.get()); },
        [=] { plain::spreadTaps(src.get(), dst.get()); });
    compare(
        "vornsResidualFilter_Aurora_" + filterType, "80", 80, dst, [=] { filter(src.get(), dst.get(), taps.get()); },
        [=] { plainFilter(src.get(), dst.get(), taps.get()); });
}

void addResponses() {
    addResponse<Vorn32f>("32f", "32f", 1, vornsTabsCalculation_Aurora_32f, vornsResidualFilter_Aurora_32f,
                         [](auto* src, auto* dst, auto* taps) { plain::residualFilter(src, dst, taps); });
    // Taps up to 3000 take one product a pair, taps up to 30000 two.
    for (double high : {3000.0, 30000.0}) {
        addResponse<Vorn16s>(
            high < 4000 ? "16s" : "16s (again)", high < 4000 ? "16s_Sfs" : "16s_Sfs, loud", high,
            vornsTabsCalculation_Aurora_16s,
            [](auto* src, auto* dst, auto* taps) { vornsResidualFilter_Aurora_16s_Sfs(src, dst, taps, 16); },
            [](auto* src, auto* dst, auto* taps) { plain::residualFilter(src, dst, taps, 16); });
    }
}

const bench::Family spectra(addSpectra), updates(addUpdates), gains(addGains), responses(addResponses);

}  // namespace
