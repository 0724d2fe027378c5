// Filter banks of noise reduction beside plain loops.
#include <vector>

#include "features/common.h"
#include "plain/aurora_bank.h"

namespace {

using namespace bench::features;

const std::vector<int> lowEdges = {0,  0,  1,  2,  3,  4,  5,  7,  8,  10, 12, 14, 16, 18,
                                   20, 23, 26, 29, 32, 36, 39, 44, 48, 53, 58, 64, 64, 64};
const std::vector<int> highEdges = {1, 8, 19, 37, 64};

template <class Weight, class State>
void addBank(const std::string& band, const std::string& form, const std::vector<int>& edges, int filters,
             VornStatus (*getSize)(int*), VornStatus (*init)(Vorn8u*), VornStatus (*initAlloc)(State**),
             VornStatus (*release)(State*)) {
    int size = 0;
    getSize(&size);
    auto block = bench::buffer<Vorn8u>(static_cast<std::size_t>(size));
    auto peer = std::make_shared<plain::TriangleBank<Weight>>();
    const int count = static_cast<int>(edges.size());
    const bool unitArea = filters == 25;
    compare("vornsMelFBankInit" + band + "_Aurora" + form, std::to_string(filters), filters, block,
            {{bench::ours, [=] { init(block.get()); }}, {"plain", [=] {
                                                             plain::triangleBank(*peer, edges.data(), count, filters,
                                                                                 unitArea);
                                                             bench::keep(peer.get());
                                                         }}});
    compare("vornsMelFBankInitAlloc" + band + "_Aurora" + form, std::to_string(filters), filters, block,
            {{bench::ours,
              [=] {
                  State* bank = nullptr;
                  initAlloc(&bank);
                  bench::keep(bank);
                  release(bank);
              }},
             {"plain", [=] {
                  const auto bank = std::make_unique<plain::TriangleBank<Weight>>();
                  plain::triangleBank(*bank, edges.data(), count, filters, unitArea);
                  bench::keep(bank.get());
              }}});
}

const bench::Family banks([] {
    addBank<float, VornFBankState_32f>("Low", "_32f", lowEdges, 25, vornsMelFBankGetSizeLow_Aurora_32f,
                                       vornsMelFBankInitLow_Aurora_32f, vornsMelFBankInitAllocLow_Aurora_32f,
                                       vornsFBankFree_32f);
    addBank<int, VornFBankState_16s>("Low", "_16s", lowEdges, 25, vornsMelFBankGetSizeLow_Aurora_16s,
                                     vornsMelFBankInitLow_Aurora_16s, vornsMelFBankInitAllocLow_Aurora_16s,
                                     vornsFBankFree_16s);
    addBank<float, VornFBankState_32f>("High", "_32f", highEdges, 3, vornsMelFBankGetSizeHigh_Aurora_32f,
                                       vornsMelFBankInitHigh_Aurora_32f, vornsMelFBankInitAllocHigh_Aurora_32f,
                                       vornsFBankFree_32f);
    addBank<int, VornFBankState_16s>("High", "_16s", highEdges, 3, vornsMelFBankGetSizeHigh_Aurora_16s,
                                     vornsMelFBankInitHigh_Aurora_16s, vornsMelFBankInitAllocHigh_Aurora_16s,
                                     vornsFBankFree_16s);
});

}  // namespace
