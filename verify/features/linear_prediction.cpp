// Linear prediction.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

// Orders on both sides of every change of scratch and of code.
constexpr int orders[] = {1, 2, 3, 4, 5, 8, 10, 12, 13, 16, 17, 20, 33, 63, 64, 100};
constexpr int scales[] = {-15, -12, -8, 0, 2};

// r(0) above what the others can be together, below it, and of any bits.
template <class T>
std::vector<T> autocorrelations(Source& source, int order, int turn) {
    const auto count = static_cast<std::size_t>(order) + 1;
    if (turn == 2) return source.patterns<T>(count);
    auto r = source.values<T>(count);
    for (T& x : r) x = static_cast<T>(turn == 0 ? x / (4 * order + 4) : x / 4);
    r[0] = static_cast<T>(turn == 0 ? 20000 : 9000);
    if constexpr (std::is_integral_v<T>) {
        if (turn == 0) r[0] = 32767;
    }
    return r;
}

// recursion(src, dst, order, pErr, scale)
template <class T, class Recursion>
void recursions(Source& source, Digest& digest, Recursion recursion) {
    for (int order : orders) {
        for (int turn = 0; turn < 3; ++turn) {
            for (int scale : scales) {
                const auto src = autocorrelations<T>(source, order, turn);
                std::vector<T> dst(order, T(3));
                Vorn32f error = -1;
                digest.add(recursion(src.data(), dst.data(), order, &error, scale));
                digest.add(dst);
                digest.add(error);
            }
        }
    }
}
template <auto recursion>
void onSingles(Source& source, Digest& digest) {
    recursions<Vorn32f>(source, digest, [](const Vorn32f* src, Vorn32f* dst, int order, Vorn32f* pErr, int) {
        return recursion(src, dst, order, pErr);
    });
}
template <auto recursion>
void onShorts(Source& source, Digest& digest) {
    recursions<Vorn16s>(source, digest, recursion);
}

// Frames through one resonance, and of any bits. The result has elements before the call, which some failures negate.
template <class T, class Analyse>
void analyses(Source& source, Digest& digest, Analyse analyse) {
    for (int len : {1, 2, 5, 12, 40, 63, 64, 100, 240, 400, 1001}) {
        for (int order : orders) {
            if (order > len) continue;
            for (bool any : {false, true}) {
                auto src = any ? source.patterns<T>(len) : source.values<T>(len);
                if (!any) {
                    for (int n = 2; n < len; ++n) {
                        src[n] = static_cast<T>((src[n] / 8) + (src[n - 1] - src[n - 1] / 8) - src[n - 2] / 2);
                    }
                }
                std::vector<T> dst(order, T(3));
                digest.add(analyse(src.data(), len, dst.data(), order));
                digest.add(dst);
            }
        }
    }
}
template <auto analyse>
void ofSingles(Source& source, Digest& digest) {
    analyses<Vorn32f>(source, digest, analyse);
}
template <auto analyse>
void ofShorts(Source& source, Digest& digest) {
    for (int scale : scales) {
        analyses<Vorn16s>(source, digest, [=](const Vorn16s* src, int len, Vorn16s* dst, int order) {
            return analyse(src, len, dst, order, scale);
        });
    }
}

const Workload workloads[] = {
    {"vornsDurbin_32f", onSingles<vornsDurbin_32f>},
    {"vornsDurbin_16s_Sfs", onShorts<vornsDurbin_16s_Sfs>},
    {"vornsSchur_32f", onSingles<vornsSchur_32f>},
    {"vornsSchur_16s_Sfs", onShorts<vornsSchur_16s_Sfs>},
    {"vornsLinearPrediction_Auto_32f", ofSingles<vornsLinearPrediction_Auto_32f>},
    {"vornsLinearPrediction_Auto_16s_Sfs", ofShorts<vornsLinearPrediction_Auto_16s_Sfs>},
    {"vornsLinearPredictionNeg_Auto_32f", ofSingles<vornsLinearPredictionNeg_Auto_32f>},
    {"vornsLinearPredictionNeg_Auto_16s_Sfs", ofShorts<vornsLinearPredictionNeg_Auto_16s_Sfs>},
    {"vornsLinearPrediction_Cov_32f", ofSingles<vornsLinearPrediction_Cov_32f>},
    {"vornsLinearPrediction_Cov_16s_Sfs", ofShorts<vornsLinearPrediction_Cov_16s_Sfs>},
};

}  // namespace

Family linearPredictionWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
