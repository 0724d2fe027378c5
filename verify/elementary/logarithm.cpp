// Natural logarithms.
#include <iterator>

#include "families.h"
#include "vectors.h"

namespace verify {
namespace {

// clang-format off
const Workload workloads[] = {
    VECTORS(vornsLn_32f, 0, 1e4),
    VECTORS(vornsLn_32f_I, 0, 1e4),
    VECTORS(vornsLn_64f, 0, 1e4),
    VECTORS(vornsLn_64f_I, 0, 1e4),
    VECTORS(vornsLn_64f32f, 0, 1e4),
    VECTORS(vornsLn_32s_Sfs, 0, 1e4),
    VECTORS(vornsLn_32s_ISfs, 0, 1e4),
};
// clang-format on

}  // namespace

Family logarithmWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
