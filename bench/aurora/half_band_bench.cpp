// The split into two bands beside plain loops.
#include "plain/half_band.h"

#include "features/common.h"

namespace {

using namespace bench::features;

// Taps of a filter, and taps of any size, whose sums need 64 bits.
void addSize(int len, int tapsLen) {
    const std::string size = std::to_string(len) + "x" + std::to_string(tapsLen);
    const auto samples = static_cast<std::size_t>(len + tapsLen), outputs = static_cast<std::size_t>(len / 2);
    {
        auto src = signal<Vorn32f>(samples, -1000, 1000),
             taps = signal<Vorn32f>(static_cast<std::size_t>(tapsLen), -1, 1);
        auto low = bench::buffer<Vorn32f>(outputs), high = bench::buffer<Vorn32f>(outputs);
        compare("vornsLowHighFilter_Aurora_32f", size, len, low,
                {{bench::ours,
                  [=] { vornsLowHighFilter_Aurora_32f(src.get(), low.get(), high.get(), len, taps.get(), tapsLen); }},
                 {"plain", [=] { plain::splitBands(src.get(), low.get(), high.get(), len, taps.get(), tapsLen); }},
                 {"plain by taps",
                  [=] { plain::splitBandsByTaps(src.get(), low.get(), high.get(), len, taps.get(), tapsLen); }}});
    }
    for (bool any : {false, true}) {
        const double most = any ? 32767 : 60000.0 / tapsLen;
        auto src = signal<Vorn16s>(samples, -32768, 32767);
        auto taps =
            signal<Vorn16s>(static_cast<std::size_t>(tapsLen), -std::min(most, 32767.0), std::min(most, 32767.0));
        auto low = bench::buffer<Vorn16s>(outputs), high = bench::buffer<Vorn16s>(outputs);
        compare(
            "vornsLowHighFilter_Aurora_16s_Sfs", size + (any ? "any" : ""), len, low,
            {{bench::ours,
              [=] {
                  vornsLowHighFilter_Aurora_16s_Sfs(src.get(), low.get(), high.get(), len, taps.get(), tapsLen, 15);
              }},
             {"plain", [=] { plain::splitBands(src.get(), low.get(), high.get(), len, taps.get(), tapsLen, 15); }}});
    }
}

const bench::Family bands([] {
    for (int len : {10, 80, 160, 200}) {
        for (int tapsLen : {1, 2, 4, 10, 24, 118, 128}) addSize(len, tapsLen);
    }
    for (int tapsLen : {2, 10, 118}) {
        addSize(3000, tapsLen);
        addSize(1 << 20, tapsLen);
    }
    addSize(1 << 26, 10);
});

}  // namespace
