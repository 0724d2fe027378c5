// Deltas and accelerations, copies of columns.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

// One utterance in blocks of 9 frames, and its end in a call of its own.
template <int lookback, int parts, class Member>
void deltas(Source& source, Digest& digest, Member member) {
    for (int width : {1, 4, 13, 39, 70}) {
        for (bool hard : {false, true}) {
            const int frames = 45, step = parts * width + width % 3;
            const auto src = hard ? source.patterns<Vorn32f>(static_cast<std::size_t>(frames) * width)
                                  : source.values<Vorn32f>(static_cast<std::size_t>(frames) * width);
            std::vector<Vorn32f> dst(static_cast<std::size_t>(frames) * step);
            for (int row = 0; row <= frames; row += 9) {
                const int mode = row == 0 ? vornDeltaFirst : row == frames ? vornDeltaLast : 0;
                Vorn32f* at = dst.data() + static_cast<std::ptrdiff_t>(row == 0 ? 0 : row - lookback) * step;
                const Vorn32f* block =
                    row == frames ? src.data() : src.data() + static_cast<std::ptrdiff_t>(row) * width;
                digest.add(member(block, width, at, step, row == frames ? 0 : 9, mode));
            }
            digest.add(dst);
        }
    }
}

const Workload workloads[] = {
    {"vornsDelta_Win2_32f_D2",
     [](Source& source, Digest& digest) {
         deltas<4, 2>(source, digest, [](const Vorn32f* src, int width, Vorn32f* dst, int step, int height, int mode) {
             return vornsDelta_Win2_32f_D2(src, width, dst, step, height, 0.1f, mode);
         });
     }},
    {"vornsDeltaDelta_Win2_32f_D2",
     [](Source& source, Digest& digest) {
         deltas<6, 3>(source, digest, [](const Vorn32f* src, int width, Vorn32f* dst, int step, int height, int mode) {
             return vornsDeltaDelta_Win2_32f_D2(src, width, dst, step, height, 0.1f, 0.3f, mode);
         });
     }},
};

}  // namespace

Family deltaWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
