// Gaussian scores and mixtures.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

const int columns[] = {1, 2, 3, 4, 5, 7, 8, 12, 13, 16, 26, 31, 39, 40, 70};
const int heights[] = {1, 2, 3, 5, 8, 101, 130};

// One frame, many Gaussians: ordinary features and inverse variances, then any bit pattern.
template <class T, class Call>
void manyGaussians(Source& source, Call call) {
    for (int len : columns) {
        for (int height : heights) {
            const int step = len + height % 3;
            const std::size_t size = static_cast<std::size_t>(step) * height;
            const std::vector<T> src = source.values<T>(len, -20, 20), mean = source.values<T>(size, -20, 20),
                                 var = source.values<T>(size, 0.01, 4);
            call(src.data(), mean.data(), var.data(), step, len, height, source.values<T>(height, -200, 50));
        }
        const std::vector<T> src = source.patterns<T>(len), mean = source.patterns<T>(5 * len),
                             var = source.patterns<T>(5 * len);
        call(src.data(), mean.data(), var.data(), len, len, 5, source.patterns<T>(5));
    }
}

const Workload workloads[] = {
    {"vornsLogGaussMultiMix_32f_D2",
     [](Source& source, Digest& digest) {
         manyGaussians<Vorn32f>(source, [&](auto* src, auto* mean, auto* var, int step, int len, int height, auto val) {
             digest.add(vornsLogGaussMultiMix_32f_D2(mean, var, step, src, len, val.data(), height));
             digest.add(val);
         });
     }},
    {"vornsLogGaussMixture_32f_D2",
     [](Source& source, Digest& digest) {
         manyGaussians<Vorn32f>(source, [&](auto* src, auto* mean, auto* var, int step, int len, int height, auto val) {
             Vorn32f result = 0;
             digest.add(vornsLogGaussMixture_32f_D2(src, mean, var, height, step, len, val.data(), &result));
             digest.add(result);
         });
     }},
};

}  // namespace

Family gaussianWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
