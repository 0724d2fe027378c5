// Square roots.
#include <iterator>

#include "families.h"
#include "vectors.h"

namespace verify {
namespace {

// clang-format off
const Workload workloads[] = {
    VECTORS(vornsSqrt_32f),
    VECTORS(vornsSqrt_32f_I),
    VECTORS(vornsSqrt_64f),
    VECTORS(vornsSqrt_64f_I),
    VECTORS(vornsSqrt_32fc),
    VECTORS(vornsSqrt_32fc_I),
    VECTORS(vornsSqrt_64fc),
    VECTORS(vornsSqrt_64fc_I),
    VECTORS(vornsSqrt_8u_Sfs),
    VECTORS(vornsSqrt_8u_ISfs),
    VECTORS(vornsSqrt_16u_Sfs),
    VECTORS(vornsSqrt_16u_ISfs),
    VECTORS(vornsSqrt_16s_Sfs),
    VECTORS(vornsSqrt_16s_ISfs),
    VECTORS(vornsSqrt_16sc_Sfs),
    VECTORS(vornsSqrt_16sc_ISfs),
    VECTORS(vornsSqrt_64s_Sfs),
    VECTORS(vornsSqrt_64s_ISfs),
    VECTORS(vornsSqrt_32s16s_Sfs),
    VECTORS(vornsSqrt_64s16s_Sfs),
};
// clang-format on

}  // namespace

Family squareRootWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
