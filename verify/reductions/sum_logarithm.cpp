// Sums of logarithms.
#include <iterator>

#include "families.h"
#include "vectors.h"

namespace verify {
namespace {

// clang-format off
const Workload workloads[] = {
    VECTORS(vornsSumLn_32f, 0, 1e4),
    VECTORS(vornsSumLn_64f, 0, 1e4),
    VECTORS(vornsSumLn_32f64f, 0, 1e4),
    VECTORS(vornsSumLn_16s32f, 0, 1e4),
};
// clang-format on

}  // namespace

Family sumLogarithmWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
