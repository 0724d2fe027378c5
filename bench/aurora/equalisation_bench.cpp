// Blind equalisation and the coding of a high band beside plain loops.
#include "features/common.h"
#include "plain/equalisation.h"

namespace {

using namespace bench::features;

// The values lose the bias again and again, which follows them: they swing, and stay in their range.
template <class T, class Equalise, class Energy>
void addBlind(const std::string& name, Equalise equalise, Energy energy, std::size_t len, const std::string& size) {
    const auto ref = signal<T>(len, -20, 20), x = signal<T>(len, -20, 20), bias = signal<T>(len, -20, 20);
    const int n = static_cast<int>(len);
    compare(name, size, n, x,
            {{bench::ours, [=] { equalise(ref.get(), x.get(), bias.get(), n, energy); }},
             {"plain", [=] { plain::equaliseBlindly(ref.get(), x.get(), bias.get(), n, energy); }}});
}

template <class T, class Equalise, class Energy>
void addBlind(const std::string& name, Equalise equalise, Energy energy) {
    for (std::size_t len : {12, 13, 39}) addBlind<T>(name, equalise, energy, len, std::to_string(len));
    for (auto [size, bytes] :
         {std::pair("L1", bench::inL1), {"last level", bench::inLastLevel}, {"memory", bench::inMemory / 8}}) {
        addBlind<T>(name, equalise, energy, bytes / 3 / sizeof(T), size);
    }
}

void addHighBand() {
    const auto bands = signal<float>(3, 1, 1e5), low = signal<float>(65, 1, 1e5), high = signal<float>(129, 1, 1e5),
               dst = bench::buffer<float>(3);
    compare("vornsHighBandCoding_Aurora_32f", "a frame", 1, dst,
            {{bench::ours, [=] { vornsHighBandCoding_Aurora_32f(bands.get(), low.get(), high.get(), dst.get()); }},
             {"plain", [=] { plain::codeHighBand(bands.get(), low.get(), high.get(), dst.get()); }}});
    const auto b = signal<std::int32_t>(3, 1, 1e8), l = signal<std::int32_t>(65, 1, 1e8),
               h = signal<std::int32_t>(129, 1, 1e8), q7 = bench::buffer<std::int32_t>(3);
    compare("vornsHighBandCoding_Aurora_32s_Sfs", "a frame", 1, q7,
            {{bench::ours, [=] { vornsHighBandCoding_Aurora_32s_Sfs(b.get(), l.get(), h.get(), q7.get(), -7); }},
             {"plain", [=] { plain::codeHighBand(b.get(), l.get(), h.get(), q7.get(), -7); }}});
}

const bench::Family equalisation([] {
    addBlind<float>("vornsBlindEqualization_Aurora_32f", vornsBlindEqualization_Aurora_32f, 4.0f);
    addBlind<std::int16_t>("vornsBlindEqualization_Aurora_16s", vornsBlindEqualization_Aurora_16s, 260);
    addHighBand();
});

}  // namespace
