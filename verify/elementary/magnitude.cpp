// Magnitudes.
#include <iterator>

#include "families.h"
#include "vectors.h"

namespace verify {
namespace {

// clang-format off
const Workload workloads[] = {
    VECTORS(vornsMagnitude_32fc),
    VECTORS(vornsMagnitude_64fc),
    VECTORS(vornsMagnitude_16sc32f),
    VECTORS(vornsMagnitude_16sc_Sfs),
    VECTORS(vornsMagnitude_32sc_Sfs),
    VECTORS(vornsMagnitude_32f),
    VECTORS(vornsMagnitude_64f),
    VECTORS(vornsMagnitude_16s32f),
    VECTORS(vornsMagnitude_16s_Sfs),
};
// clang-format on

}  // namespace

Family magnitudeWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
