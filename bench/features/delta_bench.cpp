// Deltas beside plain loops.

#include "features/common.h"

namespace {

using namespace bench::features;

void addDeltas(int width, int height) {
    const std::size_t len = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    auto src = signal<float>(len, -10, 10), dst = bench::buffer<float>(3 * len);
    const std::string size = std::to_string(width) + "x" + std::to_string(height);
    const auto items = static_cast<std::int64_t>(len);
    const int whole = vornDeltaFirst | vornDeltaLast;
    compare(
        "vornsDelta_Win2_32f_D2", size, items, dst,
        {{bench::ours, [=] { vornsDelta_Win2_32f_D2(src.get(), width, dst.get(), 2 * width, height, 0.1f, whole); }},
         {"plain", [=] { plain::delta2(src.get(), width, dst.get(), 2 * width, height, 0.1f); }}});
    compare("vornsDeltaDelta_Win2_32f_D2", size, items, dst,
            {{bench::ours,
              [=] { vornsDeltaDelta_Win2_32f_D2(src.get(), width, dst.get(), 3 * width, height, 0.1f, 0.1f, whole); }},
             {"plain", [=] { plain::deltaDelta2(src.get(), width, dst.get(), 3 * width, height, 0.1f, 0.1f); }}});
}

const bench::Family deltas([] {
    for (int width : {13, 39}) {
        for (int height : {10, 100, 1000, 100000}) addDeltas(width, height);
    }
});

}  // namespace
