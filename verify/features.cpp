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

struct LifterShape {
    int lenDCT, lenCep, nLifter;
};
const LifterShape lifterShapes[] = {{1, 1, 1}, {7, 7, 5}, {20, 12, 22}, {23, 12, 22}, {26, 13, 22}, {64, 30, 22}};

// Coefficients of ordinary and of hard vectors under each context.
template <class Init>
void lifter(Source& source, Digest& digest, Init init) {
    for (const LifterShape& shape : lifterShapes) {
        VornDCTLifterState_32f* state = nullptr;
        digest.add(init(&state, shape));
        for (bool hard : {false, true}) {
            const auto src =
                hard ? source.patterns<Vorn32f>(shape.lenDCT) : source.values<Vorn32f>(shape.lenDCT, -20.0, 20.0);
            std::vector<Vorn32f> dst(shape.lenCep + 1);
            digest.add(vornsDCTLifter_32f(src.data(), dst.data(), state));
            digest.add(dst);
        }
        digest.add(vornsDCTLifterFree_32f(state));
    }
}
void plainLifter(Source& source, Digest& digest) {
    lifter(source, digest, [](VornDCTLifterState_32f** state, const LifterShape& shape) {
        return vornsDCTLifterInitAlloc_32f(state, shape.lenDCT, shape.lenCep, shape.nLifter, 0.9f);
    });
}

const Workload workloads[] = {
    {"vornsDCTLifterInitAlloc_32f", plainLifter},
    {"vornsDCTLifterInitAlloc_C0_32f",
     [](Source& source, Digest& digest) {
         lifter(source, digest, [](VornDCTLifterState_32f** state, const LifterShape& shape) {
             return vornsDCTLifterInitAlloc_C0_32f(state, shape.lenDCT, shape.lenCep, shape.nLifter, 0.9f, 0.1f);
         });
     }},
    {"vornsDCTLifterFree_32f", plainLifter},
    {"vornsDCTLifter_32f", plainLifter},
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
