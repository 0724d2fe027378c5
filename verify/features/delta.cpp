// Deltas and accelerations, copies of columns.
#include <algorithm>
#include <iterator>
#include <type_traits>

#include "families.h"

namespace verify {
namespace {

// How a streaming member is called: with factors of the columns, or with one or two that all share.
template <class T, auto function>
VornStatus callDeltas(const T* src, const T* factors, int width, T* dst, int step, int height, int mode, int scale) {
    const auto with = [&](auto... tail) {
        using F = decltype(function);
        if constexpr (std::is_invocable_v<F, const T*, const T*, int, T*, int, int, decltype(tail)...>) {
            return function(src, factors, width, dst, step, height, tail...);
        } else if constexpr (std::is_invocable_v<F, const T*, int, T*, int, int, T, decltype(tail)...>) {
            return function(src, width, dst, step, height, factors[0], tail...);
        } else {
            return function(src, width, dst, step, height, factors[0], factors[1], tail...);
        }
    };
    if constexpr (std::is_same_v<T, Vorn32f>) {
        return with(mode);
    } else {
        return with(mode, scale);
    }
}

// The first factors are 0.1 and 0.3.
template <class T>
std::vector<T> deltaFactors(int width, int scale) {
    std::vector<T> factors(static_cast<std::size_t>(3) * width);
    for (std::size_t i = 0; i < factors.size(); ++i) {
        if constexpr (std::is_same_v<T, Vorn32f>) {
            factors[i] = i < 2 ? (i == 0 ? 0.1f : 0.3f) : 0.25f + static_cast<float>(i % 7);
        } else {
            factors[i] = static_cast<T>((3 + static_cast<int>(i % 11)) << std::max(scale - 3, 0));
        }
    }
    return factors;
}

// One utterance in blocks of 9 frames, and its end in a call of its own.
template <class T, auto function, int lookback, int parts>
void deltas(Source& source, Digest& digest) {
    for (int width : {1, 4, 13, 39, 70}) {
        for (bool hard : {false, true}) {
            const int frames = 45, step = parts * width + width % 3, scale = width % 5 * 4;
            const auto src = hard ? source.patterns<T>(static_cast<std::size_t>(frames) * width)
                                  : source.values<T>(static_cast<std::size_t>(frames) * width);
            const auto factors = deltaFactors<T>(width, scale);
            std::vector<T> dst(static_cast<std::size_t>(frames) * step);
            for (int row = 0; row <= frames; row += 9) {
                const int mode = row == 0 ? vornDeltaFirst : row == frames ? vornDeltaLast : 0;
                T* at = dst.data() + static_cast<std::ptrdiff_t>(row == 0 ? 0 : row - lookback) * step;
                const T* block = row == frames ? src.data() : src.data() + static_cast<std::ptrdiff_t>(row) * width;
                digest.add(callDeltas<T, function>(block, factors.data(), width, at, step, row == frames ? 0 : 9, mode,
                                                   scale));
            }
            digest.add(dst);
        }
    }
}

// Windows that meet both ends, and one above 2^10.
template <class T, class Call>
void matrixDeltas(Source& source, Digest& digest, Call call) {
    for (int width : {1, 4, 13, 39, 70}) {
        for (int winSize : {1, 2, 3, 9, 1100}) {
            if (winSize > 1000 && width != 13) continue;
            const int height = 2 * winSize + 5, offset = width % 2, step = offset + 2 * width + width % 3;
            const int scale = winSize + 4;
            auto matrix = width == 4 ? source.patterns<T>(static_cast<std::size_t>(height) * step)
                                     : source.values<T>(static_cast<std::size_t>(height) * step);
            const auto factors = deltaFactors<T>(width, 8);
            digest.add(call(matrix.data(), height, step, factors.data(), width, offset, winSize, scale));
            digest.add(matrix);
        }
    }
}

// Copies are digested as bytes.
template <class T, auto function>
void columnCopies(Source& source, Digest& digest) {
    for (int width : {1, 7, 39, 64, 130}) {
        const int height = 11, step = width + width % 3;
        const auto src = source.patterns<T>(static_cast<std::size_t>(height) * width);
        std::vector<T> dst(static_cast<std::size_t>(height) * step);
        digest.add(function(src.data(), width, dst.data(), step, height));
        digest.bytes(dst.data(), dst.size() * sizeof(T));
    }
}

// A bad index in the last turn.
template <class T, auto function>
void pickedColumns(Source& source, Digest& digest) {
    for (int dstLen : {1, 7, 39, 64, 130, 5}) {
        const int srcLen = 50, height = 11;
        const auto src = source.patterns<T>(static_cast<std::size_t>(height) * srcLen);
        std::vector<T> dst(static_cast<std::size_t>(height) * dstLen);
        std::vector<Vorn32s> index(static_cast<std::size_t>(dstLen));
        for (auto& i : index) i = static_cast<Vorn32s>(source.bits() % srcLen);
        if (dstLen == 5) index[3] = srcLen;
        if constexpr (std::is_invocable_v<decltype(function), const T*, int, int, T*, const Vorn32s*, int, int, int>) {
            digest.add(function(src.data(), srcLen, srcLen, dst.data(), index.data(), dstLen, dstLen, height));
        } else {
            std::vector<const T*> from;
            std::vector<T*> to;
            for (int r = 0; r < height; ++r) {
                from.push_back(src.data() + static_cast<std::ptrdiff_t>(r) * srcLen);
                to.push_back(dst.data() + static_cast<std::ptrdiff_t>(r) * dstLen);
            }
            digest.add(function(from.data(), srcLen, to.data(), index.data(), dstLen, height));
        }
        digest.bytes(dst.data(), dst.size() * sizeof(T));
    }
}

template <class T, class... P>
T elementOf(VornStatus (*)(const T*, P...));
template <class T, class... P>
T elementOf(VornStatus (*)(const T* const*, P...));

#define DELTAS(name, lookback, parts) \
    { #name, deltas < decltype(elementOf(name)), name, lookback, parts> }
#define COPIES(name) \
    { #name, columnCopies < decltype(elementOf(name)), name> }
#define PICKS(name) \
    { #name, pickedColumns < decltype(elementOf(name)), name> }

const Workload workloads[] = {
    DELTAS(vornsDelta_Win1_32f_D2, 2, 2),
    DELTAS(vornsDelta_Win2_32f_D2, 4, 2),
    DELTAS(vornsDeltaDelta_Win1_32f_D2, 3, 3),
    DELTAS(vornsDeltaDelta_Win2_32f_D2, 6, 3),
    DELTAS(vornsDeltaMul_Win1_32f_D2, 2, 2),
    DELTAS(vornsDeltaMul_Win2_32f_D2, 4, 2),
    DELTAS(vornsDeltaDeltaMul_Win1_32f_D2, 3, 3),
    DELTAS(vornsDeltaDeltaMul_Win2_32f_D2, 6, 3),
    DELTAS(vornsDelta_Win1_16s_D2Sfs, 2, 2),
    DELTAS(vornsDelta_Win2_16s_D2Sfs, 4, 2),
    DELTAS(vornsDeltaDelta_Win1_16s_D2Sfs, 3, 3),
    DELTAS(vornsDeltaDelta_Win2_16s_D2Sfs, 6, 3),
    DELTAS(vornsDeltaMul_Win1_16s_D2Sfs, 2, 2),
    DELTAS(vornsDeltaMul_Win2_16s_D2Sfs, 4, 2),
    DELTAS(vornsDeltaDeltaMul_Win1_16s_D2Sfs, 3, 3),
    DELTAS(vornsDeltaDeltaMul_Win2_16s_D2Sfs, 6, 3),
    {"vornsEvalDelta_32f_D2",
     [](Source& source, Digest& digest) {
         matrixDeltas<Vorn32f>(
             source, digest,
             [](Vorn32f* x, int height, int step, const Vorn32f* f, int width, int offset, int winSize, int) {
                 return vornsEvalDelta_32f_D2(x, height, step, width, offset, winSize, f[0]);
             });
     }},
    {"vornsEvalDelta_16s_D2Sfs",
     [](Source& source, Digest& digest) {
         matrixDeltas<Vorn16s>(
             source, digest,
             [](Vorn16s* x, int height, int step, const Vorn16s* f, int width, int offset, int winSize, int scale) {
                 return vornsEvalDelta_16s_D2Sfs(x, height, step, width, offset, winSize, f[0], scale);
             });
     }},
    {"vornsEvalDeltaMul_32f_D2",
     [](Source& source, Digest& digest) {
         matrixDeltas<Vorn32f>(
             source, digest,
             [](Vorn32f* x, int height, int step, const Vorn32f* f, int width, int offset, int winSize, int) {
                 return vornsEvalDeltaMul_32f_D2(x, height, step, f, width, offset, winSize);
             });
     }},
    {"vornsEvalDeltaMul_16s_D2Sfs",
     [](Source& source, Digest& digest) {
         matrixDeltas<Vorn16s>(
             source, digest,
             [](Vorn16s* x, int height, int step, const Vorn16s* f, int width, int offset, int winSize, int scale) {
                 return vornsEvalDeltaMul_16s_D2Sfs(x, height, step, f, width, offset, winSize, scale);
             });
     }},
    COPIES(vornsCopyColumn_32f_D2),
    COPIES(vornsCopyColumn_16s_D2),
    PICKS(vornsCopyColumn_Indirect_32f_D2),
    PICKS(vornsCopyColumn_Indirect_64f_D2),
    PICKS(vornsCopyColumn_Indirect_16s_D2),
    PICKS(vornsCopyColumn_Indirect_32f_D2L),
    PICKS(vornsCopyColumn_Indirect_64f_D2L),
    PICKS(vornsCopyColumn_Indirect_16s_D2L),
};

}  // namespace

Family deltaWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
