// Column statistics.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

struct Shape {
    int height, width, step;
};
const Shape shapes[] = {{2, 1, 1}, {3, 5, 7}, {17, 13, 13}, {40, 39, 40}, {100, 64, 64}, {57, 130, 131}};

// Ordinary frames, then any bit patterns.
template <class Statistics>
void columns(Source& source, Digest& digest, Statistics statistics) {
    for (const Shape& shape : shapes) {
        const std::size_t size = static_cast<std::size_t>(shape.height) * shape.step;
        for (bool hard : {false, true}) {
            const auto src = hard ? source.patterns<Vorn32f>(size) : source.values<Vorn32f>(size);
            const auto weight =
                hard ? source.patterns<Vorn32f>(shape.height) : source.values<Vorn32f>(shape.height, 0.0, 0.1);
            std::vector<Vorn32f> mean(shape.width), var(shape.width);
            digest.add(statistics(src.data(), weight.data(), shape, mean.data(), var.data()));
            digest.add(mean);
            digest.add(var);
        }
    }
}

const Workload workloads[] = {
    {"vornsMeanVarColumn_32f_D2",
     [](Source& source, Digest& digest) {
         columns(source, digest,
                 [](const Vorn32f* src, const Vorn32f*, const Shape& shape, Vorn32f* mean, Vorn32f* var) {
                     return vornsMeanVarColumn_32f_D2(src, shape.height, shape.step, mean, var, shape.width);
                 });
     }},
    {"vornsWeightedMeanVarColumn_32f_D2",
     [](Source& source, Digest& digest) {
         columns(source, digest,
                 [](const Vorn32f* src, const Vorn32f* weight, const Shape& shape, Vorn32f* mean, Vorn32f* var) {
                     return vornsWeightedMeanVarColumn_32f_D2(src, shape.step, weight, shape.height, mean, var,
                                                              shape.width);
                 });
     }},
};

}  // namespace

Family columnWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
