// Sums, dot products and extrema.
#include <iterator>

#include "families.h"
#include "vectors.h"

namespace verify {
namespace {

// clang-format off
const Workload workloads[] = {
    VECTORS(vornsSum_32f),
    VECTORS(vornsSum_64f),
    VECTORS(vornsSum_32fc),
    VECTORS(vornsSum_64fc),
    VECTORS(vornsSum_16s_Sfs),
    VECTORS(vornsSum_16s32s_Sfs),
    VECTORS(vornsSum_16sc_Sfs),
    VECTORS(vornsSum_16sc32sc_Sfs),
    VECTORS(vornsSum_32s_Sfs),
    VECTORS(vornsDotProd_32f),
    VECTORS(vornsDotProd_32fc),
    VECTORS(vornsDotProd_32f32fc),
    VECTORS(vornsDotProd_64f),
    VECTORS(vornsDotProd_64fc),
    VECTORS(vornsDotProd_64f64fc),
    VECTORS(vornsDotProd_32f64f),
    VECTORS(vornsDotProd_32fc64fc),
    VECTORS(vornsDotProd_32f32fc64fc),
    VECTORS(vornsDotProd_16s32f),
    VECTORS(vornsDotProd_16sc32fc),
    VECTORS(vornsDotProd_16s16sc32fc),
    VECTORS(vornsDotProd_16s64s),
    VECTORS(vornsDotProd_16sc64sc),
    VECTORS(vornsDotProd_16s16sc64sc),
    VECTORS(vornsDotProd_16s_Sfs),
    VECTORS(vornsDotProd_16sc_Sfs),
    VECTORS(vornsDotProd_16s16sc_Sfs),
    VECTORS(vornsDotProd_16s32s_Sfs),
    VECTORS(vornsDotProd_16sc32sc_Sfs),
    VECTORS(vornsDotProd_16s16sc32sc_Sfs),
    VECTORS(vornsDotProd_32s_Sfs),
    VECTORS(vornsDotProd_32sc_Sfs),
    VECTORS(vornsDotProd_32s32sc_Sfs),
    VECTORS(vornsDotProd_16s32s32s_Sfs),
    VECTORS(vornsMax_16s),
    VECTORS(vornsMax_32f),
    VECTORS(vornsMax_64f),
    VECTORS(vornsMin_16s),
    VECTORS(vornsMin_32f),
    VECTORS(vornsMin_64f),
    VECTORS(vornsMinMax_8u),
    VECTORS(vornsMinMax_16u),
    VECTORS(vornsMinMax_16s),
    VECTORS(vornsMinMax_32u),
    VECTORS(vornsMinMax_32s),
    VECTORS(vornsMinMax_32f),
    VECTORS(vornsMinMax_64f),
    VECTORS(vornsMaxIndx_16s),
    VECTORS(vornsMaxIndx_32f),
    VECTORS(vornsMaxIndx_64f),
    VECTORS(vornsMinIndx_16s),
    VECTORS(vornsMinIndx_32f),
    VECTORS(vornsMinIndx_64f),
    VECTORS(vornsMaxEvery_16s_I),
    VECTORS(vornsMaxEvery_32s_I),
    VECTORS(vornsMaxEvery_32f_I),
    VECTORS(vornsMinEvery_16s_I),
    VECTORS(vornsMinEvery_32s_I),
    VECTORS(vornsMinEvery_32f_I),
};
// clang-format on

}  // namespace

Family reductionWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
