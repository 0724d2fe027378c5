// Band splitting and deltas of the noise-robust front-end.
#include <iterator>
#include <type_traits>

#include "families.h"

namespace verify {
namespace {

// Lengths of both parities, and more taps than enter the sums together.
template <class T, class Call>
void bands(Source& source, Digest& digest, Call call) {
    for (int len : lengths) {
        for (int tapsLen : {1, 2, 7, 24, 118, 530}) {
            if (len > 1000 && tapsLen > 24) continue;
            const auto samples = static_cast<std::size_t>(len + tapsLen);
            const auto src = len % 5 == 0 ? source.patterns<T>(samples) : source.values<T>(samples);
            auto taps = source.values<T>(static_cast<std::size_t>(tapsLen), -1, 1);
            // Taps of a filter in two of three turns.
            if constexpr (std::is_same_v<T, Vorn16s>) {
                if (len % 3 != 0) {
                    for (T& tap : taps) tap = static_cast<T>(tap / tapsLen);
                }
            }
            std::vector<T> low(static_cast<std::size_t>(len)), high(low.size());
            digest.add(call(src.data(), low.data(), high.data(), len, taps.data(), tapsLen, len % 7 * 5 - 3));
            digest.add(low);
            digest.add(high);
        }
    }
}

// One utterance in blocks of 9 frames, and its end in a call of its own; and one that is longer in one call.
template <class T, class Call>
void deltas(Source& source, Digest& digest, Call call) {
    for (int scaleFactor : {0, 1, 5, -2}) {
        for (bool hard : {false, true}) {
            const int frames = 45, dstWidth = 39 + scaleFactor % 3 * 2 + 4;
            const auto src =
                hard ? source.patterns<T>(std::size_t{14} * frames) : source.values<T>(std::size_t{14} * frames);
            const auto val = source.values<T>(39, -2, 2);
            std::vector<T> dst(static_cast<std::size_t>(frames) * dstWidth);
            for (int row = 0; row <= frames; row += 9) {
                const int mode = row == 0 ? vornDeltaFirst : row == frames ? vornDeltaLast : 0;
                T* at = dst.data() + static_cast<std::ptrdiff_t>(row == 0 ? 0 : row - 8) * dstWidth;
                const T* block = src.data() + static_cast<std::ptrdiff_t>(row == frames ? 0 : row) * 14;
                digest.add(call(block, val.data(), at, dstWidth, row == frames ? 0 : 9, mode, scaleFactor));
            }
            digest.add(dst);
        }
    }
    const auto src = source.values<T>(14 * 700), val = source.values<T>(39, -2, 2);
    std::vector<T> dst(39 * 700);
    digest.add(call(src.data(), val.data(), dst.data(), 39, 700, vornDeltaFirst | vornDeltaLast, 2));
    digest.add(dst);
}

const Workload workloads[] = {
    {"vornsLowHighFilter_Aurora_32f",
     [](Source& source, Digest& digest) {
         bands<Vorn32f>(source, digest,
                        [](const Vorn32f* src, Vorn32f* low, Vorn32f* high, int len, const Vorn32f* taps, int tapsLen,
                           int) { return vornsLowHighFilter_Aurora_32f(src, low, high, len, taps, tapsLen); });
     }},
    {"vornsLowHighFilter_Aurora_16s_Sfs",
     [](Source& source, Digest& digest) { bands<Vorn16s>(source, digest, vornsLowHighFilter_Aurora_16s_Sfs); }},
    {"vornsDeltaDelta_Aurora_32f_D2",
     [](Source& source, Digest& digest) {
         deltas<Vorn32f>(source, digest,
                         [](const Vorn32f* src, const Vorn32f*, Vorn32f* dst, int dstWidth, int height, int mode, int) {
                             return vornsDeltaDelta_Aurora_32f_D2(src, dst, dstWidth, height, mode);
                         });
     }},
    {"vornsDeltaDeltaMul_Aurora_32f_D2",
     [](Source& source, Digest& digest) {
         deltas<Vorn32f>(source, digest,
                         [](const Vorn32f* src, const Vorn32f* val, Vorn32f* dst, int dstWidth, int height, int mode,
                            int) { return vornsDeltaDeltaMul_Aurora_32f_D2(src, val, dst, dstWidth, height, mode); });
     }},
    {"vornsDeltaDelta_Aurora_16s_D2Sfs",
     [](Source& source, Digest& digest) {
         deltas<Vorn16s>(
             source, digest,
             [](const Vorn16s* src, const Vorn16s*, Vorn16s* dst, int dstWidth, int height, int mode, int scaleFactor) {
                 return vornsDeltaDelta_Aurora_16s_D2Sfs(src, dst, dstWidth, height, mode, scaleFactor);
             });
     }},
    {"vornsDeltaDeltaMul_Aurora_16s_D2Sfs",
     [](Source& source, Digest& digest) { deltas<Vorn16s>(source, digest, vornsDeltaDeltaMul_Aurora_16s_D2Sfs); }},
};

}  // namespace

Family auroraDeltaWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
