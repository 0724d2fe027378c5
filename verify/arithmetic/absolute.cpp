// Absolute values.
#include <iterator>

#include "families.h"
#include "vectors.h"

namespace verify {
namespace {

// clang-format off
const Workload workloads[] = {
    VECTORS(vornsAbs_16s),
    VECTORS(vornsAbs_16s_I),
    VECTORS(vornsAbs_32s),
    VECTORS(vornsAbs_32s_I),
    VECTORS(vornsAbs_32f),
    VECTORS(vornsAbs_32f_I),
    VECTORS(vornsAbs_64f),
    VECTORS(vornsAbs_64f_I),
};
// clang-format on

}  // namespace

Family absoluteWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
