// Column statistics: the exported functions and the kernels that keep their names.
#include <cstdint>

#include "estimation/columns/kernels.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/rows.h"
#include "vornsr/estimation.h"

using namespace vorn;

VORN_KERNEL void vornsGaussBuildMeanCovVector_D2_M7(const Vorn32f* src, std::int64_t height, std::int64_t srcStep,
                                                    Vorn32f* dstMean, Vorn32f* dstVar, std::int64_t width) {
    meanVarColumns(Rows(src, srcStep), height, dstMean, dstVar, width);
}
VORN_KERNEL_ALIAS(vornsGaussBuildMeanCovVector_D2_M7_Al, vornsGaussBuildMeanCovVector_D2_M7);

VORN_KERNEL void vornsWeightedMeanVarColumn_32f_D2_M7(const Vorn32f* src, std::int64_t srcStep, const Vorn32f* weight,
                                                      std::int64_t height, Vorn32f* dstMean, Vorn32f* dstVar,
                                                      std::int64_t width) {
    weightedMeanVarColumns(Rows(src, srcStep), weight, height, dstMean, dstVar, width);
}
VORN_KERNEL_ALIAS(vornsWeightedMeanVarColumn_32f_D2_M7_Al, vornsWeightedMeanVarColumn_32f_D2_M7);

VornStatus vornsMeanVarColumn_32f_D2(const Vorn32f* src, int height, int srcStep, Vorn32f* dstMean, Vorn32f* dstVar,
                                     int width) {
    VORN_CHECK(notNull(src, dstMean, dstVar));
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(2, height));
    VORN_CHECK(strideHolds(srcStep, width));
    vornsGaussBuildMeanCovVector_D2_M7(src, height, srcStep, dstMean, dstVar, width);
    return vornStsNoErr;
}

VornStatus vornsWeightedMeanVarColumn_32f_D2(const Vorn32f* src, int srcStep, const Vorn32f* weight, int height,
                                             Vorn32f* dstMean, Vorn32f* dstVar, int width) {
    VORN_CHECK(notNull(src, weight, dstMean, dstVar));
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(positive(height, width));
    vornsWeightedMeanVarColumn_32f_D2_M7(src, srcStep, weight, height, dstMean, dstVar, width);
    return vornStsNoErr;
}
