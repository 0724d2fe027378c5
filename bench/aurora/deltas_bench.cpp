// Velocities and accelerations over nine frames beside plain loops.
#include "features/common.h"
#include "plain/aurora_delta.h"

namespace {

using namespace bench::features;

template <class T, class Call>
void addMember(const char* name, bool mul, int height, int mode, Call call) {
    const auto frames = static_cast<std::size_t>(height);
    auto src = signal<T>(14 * frames, -1000, 1000), val = signal<T>(39, -3, 3),
         dst = signal<T>(39 * (frames + 8), -9, 9);
    compare(name, std::to_string(height) + (mode == 0 ? "inside" : ""), 13 * height, dst,
            {{bench::ours, [=] { call(src.get(), val.get(), dst.get(), height, mode); }},
             {"plain",
              [=] { plain::auroraDeltas(src.get(), mul ? val.get() : nullptr, dst.get(), 39, height, mode, 3); }}});
}

const bench::Family deltas([] {
    constexpr int whole = vornDeltaFirst | vornDeltaLast;
    for (const auto& [height, mode] : {std::pair{1, 0},
                                       {4, 0},
                                       {10, 0},
                                       {10, whole},
                                       {100, whole},
                                       {1000, whole},
                                       {30000, whole},
                                       {1000000, whole}}) {
        addMember<Vorn32f>("vornsDeltaDelta_Aurora_32f_D2", false, height, mode,
                           [](const Vorn32f* src, const Vorn32f*, Vorn32f* dst, int height, int mode) {
                               vornsDeltaDelta_Aurora_32f_D2(src, dst, 39, height, mode);
                           });
        addMember<Vorn32f>("vornsDeltaDeltaMul_Aurora_32f_D2", true, height, mode,
                           [](const Vorn32f* src, const Vorn32f* val, Vorn32f* dst, int height, int mode) {
                               vornsDeltaDeltaMul_Aurora_32f_D2(src, val, dst, 39, height, mode);
                           });
        addMember<Vorn16s>("vornsDeltaDelta_Aurora_16s_D2Sfs", false, height, mode,
                           [](const Vorn16s* src, const Vorn16s*, Vorn16s* dst, int height, int mode) {
                               vornsDeltaDelta_Aurora_16s_D2Sfs(src, dst, 39, height, mode, 3);
                           });
        addMember<Vorn16s>("vornsDeltaDeltaMul_Aurora_16s_D2Sfs", true, height, mode,
                           [](const Vorn16s* src, const Vorn16s* val, Vorn16s* dst, int height, int mode) {
                               vornsDeltaDeltaMul_Aurora_16s_D2Sfs(src, val, dst, 39, height, mode, 3);
                           });
    }
});

}  // namespace
