// Autocorrelation.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

constexpr int frames[][2] = {{1, 4}, {7, 6}, {100, 13}, {160, 160}, {400, 31}, {512, 400}, {1000, 855}, {1000, 1010}};

template <auto correlate, class T>
void autoCorrelation(Source& source, Digest& digest) {
    for (const auto& [srcLen, dstLen] : frames) {
        const auto src = source.values<T>(static_cast<std::size_t>(srcLen));
        std::vector<T> dst(static_cast<std::size_t>(dstLen));
        digest.add(correlate(src.data(), srcLen, dst.data(), dstLen));
        digest.add(dst);
    }
}

template <auto correlate>
void fixedAutoCorrelation(Source& source, Digest& digest) {
    for (const auto& [srcLen, dstLen] : frames) {
        const auto src = source.values<Vorn16s>(static_cast<std::size_t>(srcLen));
        for (int scale : {0, 20, 30}) {
            std::vector<Vorn16s> dst(static_cast<std::size_t>(dstLen));
            digest.add(correlate(src.data(), srcLen, dst.data(), dstLen, scale));
            digest.add(dst);
        }
    }
}

const Workload workloads[] = {
    {"vornsAutoCorr_32f", autoCorrelation<vornsAutoCorr_32f, Vorn32f>},
    {"vornsAutoCorr_64f", autoCorrelation<vornsAutoCorr_64f, Vorn64f>},
    {"vornsAutoCorr_32fc", autoCorrelation<vornsAutoCorr_32fc, Vorn32fc>},
    {"vornsAutoCorr_64fc", autoCorrelation<vornsAutoCorr_64fc, Vorn64fc>},
    {"vornsAutoCorr_16s_Sfs", fixedAutoCorrelation<vornsAutoCorr_16s_Sfs>},
    {"vornsAutoCorr_NormA_32f", autoCorrelation<vornsAutoCorr_NormA_32f, Vorn32f>},
    {"vornsAutoCorr_NormA_64f", autoCorrelation<vornsAutoCorr_NormA_64f, Vorn64f>},
    {"vornsAutoCorr_NormA_32fc", autoCorrelation<vornsAutoCorr_NormA_32fc, Vorn32fc>},
    {"vornsAutoCorr_NormA_64fc", autoCorrelation<vornsAutoCorr_NormA_64fc, Vorn64fc>},
    {"vornsAutoCorr_NormA_16s_Sfs", fixedAutoCorrelation<vornsAutoCorr_NormA_16s_Sfs>},
    {"vornsAutoCorr_NormB_32f", autoCorrelation<vornsAutoCorr_NormB_32f, Vorn32f>},
    {"vornsAutoCorr_NormB_64f", autoCorrelation<vornsAutoCorr_NormB_64f, Vorn64f>},
    {"vornsAutoCorr_NormB_32fc", autoCorrelation<vornsAutoCorr_NormB_32fc, Vorn32fc>},
    {"vornsAutoCorr_NormB_64fc", autoCorrelation<vornsAutoCorr_NormB_64fc, Vorn64fc>},
    {"vornsAutoCorr_NormB_16s_Sfs", fixedAutoCorrelation<vornsAutoCorr_NormB_16s_Sfs>},
};

}  // namespace

Family autocorrelationWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
