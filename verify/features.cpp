// Feature extraction.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

// A signal in blocks, the last sample and output carried over; the factors reach both paths of the 16-bit form.
template <auto compensate, class T>
void offset(Source& source, Digest& digest) {
    for (Vorn32f val : {0.999f, 0.5f, -1.0f, 0.0f, 1.25f, -2.0f}) {
        T last = 0, out = 0;
        for (int len : lengths) {
            const auto src = len % 2 ? source.values<T>(len) : source.patterns<T>(len);
            std::vector<T> dst(len);
            digest.add(compensate(src.data(), dst.data(), len, &last, out, val));
            digest.add(dst);
            digest.add(last);
            out = dst.back();
        }
    }
}

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
    {"vornsCompensateOffset_32f", offset<vornsCompensateOffset_32f, Vorn32f>},
    {"vornsCompensateOffset_16s", offset<vornsCompensateOffset_16s, Vorn16s>},
};

}  // namespace

Family featureWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
