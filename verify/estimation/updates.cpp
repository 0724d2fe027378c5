// Parameter updates.
#include <iterator>

#include "families.h"
#include "vectors.h"

namespace verify {
namespace {

// Ordinary values in one turn, any bit patterns in the other.
template <class T>
std::vector<T> drawn(Source& source, int len, bool hard, double low, double high) {
    return hard ? source.patterns<T>(len) : source.values<T>(len, low, high);
}

template <auto constant, class T>
void constants(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (bool hard : {false, true}) {
            const auto src = drawn<T>(source, len, hard, 0.001, 100.0);
            T dst = 0;
            digest.add(constant(src.data(), len, &dst));
            digest.add(dst);
        }
    }
}

constexpr double occupations[] = {17.25, 1e-3, 0.0, -1.0};

template <auto update, class T>
void means(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (double occ : occupations) {
            for (bool hard : {false, true}) {
                const auto src = drawn<T>(source, len, hard, -100.0, 100.0);
                auto mean = drawn<T>(source, len, hard, -10.0, 10.0);
                digest.add(update(src.data(), mean.data(), len, static_cast<T>(occ)));
                digest.add(mean);
            }
        }
    }
}

// Floors above all, some and none of the variances.
template <auto update, class T>
void variances(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (double occ : occupations) {
            for (double highest : {100.0, 2.0, -100.0}) {
                const bool hard = highest < 0;
                const auto mean = drawn<T>(source, len, hard, -10.0, 10.0),
                           var = drawn<T>(source, len, hard, 0.0, 40.0),
                           floor = drawn<T>(source, len, hard, highest / 2, highest);
                std::vector<T> dst(mean.size());
                digest.add(update(mean.data(), var.data(), floor.data(), dst.data(), len, static_cast<T>(occ),
                                  static_cast<T>(occ > 0 ? 13.5 : occ)));
                digest.add(dst);
            }
        }
    }
}

template <auto update, class T>
void weights(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (double occ : occupations) {
            for (double floor : {1e9, 0.5, -1e9}) {
                const auto src = drawn<T>(source, len, floor < 0, 0.0, 20.0);
                std::vector<T> dst(src.size());
                T sum = 0;
                digest.add(update(src.data(), dst.data(), len, &sum, static_cast<T>(occ), static_cast<T>(floor)));
                digest.add(dst);
                digest.add(sum);
            }
        }
    }
}

// The first element of a block stands on 16 bytes, the second does not.
template <bool inPlace>
void integers(Source& source, Digest& digest) {
    for (int len : lengths) {
        for (int shift : {0, 1}) {
            auto src = source.patterns<Vorn32s>(len + 1), constant = source.patterns<Vorn32s>(len + 1);
            std::vector<Vorn32s> dst(src.size());
            if (inPlace) {
                digest.add(vornsOutProbPreCalc_32s_I(src.data() + shift, constant.data(), len));
                digest.add(constant);
            } else {
                digest.add(vornsOutProbPreCalc_32s(src.data(), constant.data() + shift, dst.data(), len));
                digest.add(dst);
            }
        }
    }
}

// clang-format off
const Workload workloads[] = {
    {"vornsUpdateGConst_DirectVar_32f", constants<vornsUpdateGConst_DirectVar_32f, Vorn32f>},
    {"vornsUpdateGConst_DirectVar_64f", constants<vornsUpdateGConst_DirectVar_64f, Vorn64f>},
    {"vornsUpdateGConst_32f", constants<vornsUpdateGConst_32f, Vorn32f>},
    {"vornsUpdateGConst_64f", constants<vornsUpdateGConst_64f, Vorn64f>},
    {"vornsUpdateMean_32f", means<vornsUpdateMean_32f, Vorn32f>},
    {"vornsUpdateMean_64f", means<vornsUpdateMean_64f, Vorn64f>},
    {"vornsUpdateVar_32f", variances<vornsUpdateVar_32f, Vorn32f>},
    {"vornsUpdateVar_64f", variances<vornsUpdateVar_64f, Vorn64f>},
    {"vornsUpdateWeight_32f", weights<vornsUpdateWeight_32f, Vorn32f>},
    {"vornsUpdateWeight_64f", weights<vornsUpdateWeight_64f, Vorn64f>},
    VECTORS(vornsOutProbPreCalc_32f),
    VECTORS(vornsOutProbPreCalc_64f),
    VECTORS(vornsOutProbPreCalc_32f_I),
    VECTORS(vornsOutProbPreCalc_64f_I),
    {"vornsOutProbPreCalc_32s", integers<false>},
    {"vornsOutProbPreCalc_32s_I", integers<true>},
};
// clang-format on

}  // namespace

Family updateWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
