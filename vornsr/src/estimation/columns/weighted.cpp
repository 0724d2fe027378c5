// Weighted column statistics: the exported functions and the kernels that keep their names.
#include <cstdint>

#include "estimation/columns/floats.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/rows.h"
#include "vornsr/estimation.h"

using namespace vorn;

VORN_KERNEL void vornsWeightedMeanColumn_32f_D2_M7(const Vorn32f* src, std::int64_t srcStep, const Vorn32f* weight,
                                                   std::int64_t height, Vorn32f* dstMean, std::int64_t width) {
    columns::weightedMeanColumns(AnyRows(Rows(src, srcStep)), weight, height, dstMean, width);
}
VORN_KERNEL_ALIAS(vornsWeightedMeanColumn_32f_D2_M7_Al, vornsWeightedMeanColumn_32f_D2_M7);

VORN_KERNEL void vornsWeightedMeanColumn_32f_D2L_M7(const Vorn32f* const* src, const Vorn32f* weight,
                                                    std::int64_t height, Vorn32f* dstMean, std::int64_t width) {
    columns::weightedMeanColumns(AnyRows(Rows(src)), weight, height, dstMean, width);
}
VORN_KERNEL_ALIAS(vornsWeightedMeanColumn_32f_D2L_M7_Al, vornsWeightedMeanColumn_32f_D2L_M7);

VORN_KERNEL void vornsWeightedVarColumn_32f_D2_M7(const Vorn32f* src, std::int64_t srcStep, const Vorn32f* weight,
                                                  std::int64_t height, const Vorn32f* mean, Vorn32f* dstVar,
                                                  std::int64_t width) {
    columns::weightedVarColumns(AnyRows(Rows(src, srcStep)), weight, height, mean, dstVar, width);
}
VORN_KERNEL_ALIAS(vornsWeightedVarColumn_32f_D2_M7_Al, vornsWeightedVarColumn_32f_D2_M7);

VORN_KERNEL void vornsWeightedVarColumn_32f_D2L_M7(const Vorn32f* const* src, const Vorn32f* weight,
                                                   std::int64_t height, const Vorn32f* mean, Vorn32f* dstVar,
                                                   std::int64_t width) {
    columns::weightedVarColumns(AnyRows(Rows(src)), weight, height, mean, dstVar, width);
}
VORN_KERNEL_ALIAS(vornsWeightedVarColumn_32f_D2L_M7_Al, vornsWeightedVarColumn_32f_D2L_M7);

VORN_KERNEL void vornsWeightedMeanVarColumn_32f_D2_M7(const Vorn32f* src, std::int64_t srcStep, const Vorn32f* weight,
                                                      std::int64_t height, Vorn32f* dstMean, Vorn32f* dstVar,
                                                      std::int64_t width) {
    columns::weightedMeanVarColumns(AnyRows(Rows(src, srcStep)), weight, height, dstMean, dstVar, width);
}
VORN_KERNEL_ALIAS(vornsWeightedMeanVarColumn_32f_D2_M7_Al, vornsWeightedMeanVarColumn_32f_D2_M7);

VORN_KERNEL void vornsWeightedMeanVarColumn_32f_D2L_M7(const Vorn32f* const* src, const Vorn32f* weight,
                                                       std::int64_t height, Vorn32f* dstMean, Vorn32f* dstVar,
                                                       std::int64_t width) {
    columns::weightedMeanVarColumns(AnyRows(Rows(src)), weight, height, dstMean, dstVar, width);
}
VORN_KERNEL_ALIAS(vornsWeightedMeanVarColumn_32f_D2L_M7_Al, vornsWeightedMeanVarColumn_32f_D2L_M7);

VORN_KERNEL void vornsWeightedMeanColumn_64f_D2_M7(const Vorn64f* src, std::int64_t srcStep, const Vorn64f* weight,
                                                   std::int64_t height, Vorn64f* dstMean, std::int64_t width) {
    columns::weightedMeanColumns(AnyRows(Rows(src, srcStep)), weight, height, dstMean, width);
}
VORN_KERNEL_ALIAS(vornsWeightedMeanColumn_64f_D2_M7_Al, vornsWeightedMeanColumn_64f_D2_M7);

VORN_KERNEL void vornsWeightedMeanColumn_64f_D2L_M7(const Vorn64f* const* src, const Vorn64f* weight,
                                                    std::int64_t height, Vorn64f* dstMean, std::int64_t width) {
    columns::weightedMeanColumns(AnyRows(Rows(src)), weight, height, dstMean, width);
}
VORN_KERNEL_ALIAS(vornsWeightedMeanColumn_64f_D2L_M7_Al, vornsWeightedMeanColumn_64f_D2L_M7);

VORN_KERNEL void vornsWeightedVarColumn_64f_D2_M7(const Vorn64f* src, std::int64_t srcStep, const Vorn64f* weight,
                                                  std::int64_t height, const Vorn64f* mean, Vorn64f* dstVar,
                                                  std::int64_t width) {
    columns::weightedVarColumns(AnyRows(Rows(src, srcStep)), weight, height, mean, dstVar, width);
}
VORN_KERNEL_ALIAS(vornsWeightedVarColumn_64f_D2_M7_Al, vornsWeightedVarColumn_64f_D2_M7);

VORN_KERNEL void vornsWeightedVarColumn_64f_D2L_M7(const Vorn64f* const* src, const Vorn64f* weight,
                                                   std::int64_t height, const Vorn64f* mean, Vorn64f* dstVar,
                                                   std::int64_t width) {
    columns::weightedVarColumns(AnyRows(Rows(src)), weight, height, mean, dstVar, width);
}
VORN_KERNEL_ALIAS(vornsWeightedVarColumn_64f_D2L_M7_Al, vornsWeightedVarColumn_64f_D2L_M7);

VORN_KERNEL void vornsWeightedMeanVarColumn_64f_D2_M7(const Vorn64f* src, std::int64_t srcStep, const Vorn64f* weight,
                                                      std::int64_t height, Vorn64f* dstMean, Vorn64f* dstVar,
                                                      std::int64_t width) {
    columns::weightedMeanVarColumns(AnyRows(Rows(src, srcStep)), weight, height, dstMean, dstVar, width);
}
VORN_KERNEL_ALIAS(vornsWeightedMeanVarColumn_64f_D2_M7_Al, vornsWeightedMeanVarColumn_64f_D2_M7);

VORN_KERNEL void vornsWeightedMeanVarColumn_64f_D2L_M7(const Vorn64f* const* src, const Vorn64f* weight,
                                                       std::int64_t height, Vorn64f* dstMean, Vorn64f* dstVar,
                                                       std::int64_t width) {
    columns::weightedMeanVarColumns(AnyRows(Rows(src)), weight, height, dstMean, dstVar, width);
}
VORN_KERNEL_ALIAS(vornsWeightedMeanVarColumn_64f_D2L_M7_Al, vornsWeightedMeanVarColumn_64f_D2L_M7);

VornStatus vornsWeightedMeanColumn_32f_D2(const Vorn32f* src, int srcStep, const Vorn32f* weight, int height,
                                          Vorn32f* dstMean, int width) {
    VORN_CHECK(notNull(src, weight, dstMean));
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(positive(height, width));
    vornsWeightedMeanColumn_32f_D2_M7(src, srcStep, weight, height, dstMean, width);
    return vornStsNoErr;
}

VornStatus vornsWeightedMeanColumn_32f_D2L(const Vorn32f* const* src, const Vorn32f* weight, int height,
                                           Vorn32f* dstMean, int width) {
    VORN_CHECK(notNull(src, weight, dstMean));
    VORN_CHECK(positive(height, width));
    vornsWeightedMeanColumn_32f_D2L_M7(src, weight, height, dstMean, width);
    return vornStsNoErr;
}

VornStatus vornsWeightedVarColumn_32f_D2(const Vorn32f* src, int srcStep, const Vorn32f* weight, int height,
                                         const Vorn32f* mean, Vorn32f* dstVar, int width) {
    VORN_CHECK(notNull(src, weight, mean, dstVar));
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(positive(height, width));
    vornsWeightedVarColumn_32f_D2_M7(src, srcStep, weight, height, mean, dstVar, width);
    return vornStsNoErr;
}

VornStatus vornsWeightedVarColumn_32f_D2L(const Vorn32f* const* src, const Vorn32f* weight, int height,
                                          const Vorn32f* mean, Vorn32f* dstVar, int width) {
    VORN_CHECK(notNull(src, weight, mean, dstVar));
    VORN_CHECK(positive(height, width));
    vornsWeightedVarColumn_32f_D2L_M7(src, weight, height, mean, dstVar, width);
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

VornStatus vornsWeightedMeanVarColumn_32f_D2L(const Vorn32f* const* src, const Vorn32f* weight, int height,
                                              Vorn32f* dstMean, Vorn32f* dstVar, int width) {
    VORN_CHECK(notNull(src, weight, dstMean, dstVar));
    VORN_CHECK(positive(height, width));
    vornsWeightedMeanVarColumn_32f_D2L_M7(src, weight, height, dstMean, dstVar, width);
    return vornStsNoErr;
}

VornStatus vornsWeightedMeanColumn_64f_D2(const Vorn64f* src, int srcStep, const Vorn64f* weight, int height,
                                          Vorn64f* dstMean, int width) {
    VORN_CHECK(notNull(src, weight, dstMean));
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(positive(height, width));
    vornsWeightedMeanColumn_64f_D2_M7(src, srcStep, weight, height, dstMean, width);
    return vornStsNoErr;
}

VornStatus vornsWeightedMeanColumn_64f_D2L(const Vorn64f* const* src, const Vorn64f* weight, int height,
                                           Vorn64f* dstMean, int width) {
    VORN_CHECK(notNull(src, weight, dstMean));
    VORN_CHECK(positive(height, width));
    vornsWeightedMeanColumn_64f_D2L_M7(src, weight, height, dstMean, width);
    return vornStsNoErr;
}

VornStatus vornsWeightedVarColumn_64f_D2(const Vorn64f* src, int srcStep, const Vorn64f* weight, int height,
                                         const Vorn64f* mean, Vorn64f* dstVar, int width) {
    VORN_CHECK(notNull(src, weight, mean, dstVar));
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(positive(height, width));
    vornsWeightedVarColumn_64f_D2_M7(src, srcStep, weight, height, mean, dstVar, width);
    return vornStsNoErr;
}

VornStatus vornsWeightedVarColumn_64f_D2L(const Vorn64f* const* src, const Vorn64f* weight, int height,
                                          const Vorn64f* mean, Vorn64f* dstVar, int width) {
    VORN_CHECK(notNull(src, weight, mean, dstVar));
    VORN_CHECK(positive(height, width));
    vornsWeightedVarColumn_64f_D2L_M7(src, weight, height, mean, dstVar, width);
    return vornStsNoErr;
}

VornStatus vornsWeightedMeanVarColumn_64f_D2(const Vorn64f* src, int srcStep, const Vorn64f* weight, int height,
                                             Vorn64f* dstMean, Vorn64f* dstVar, int width) {
    VORN_CHECK(notNull(src, weight, dstMean, dstVar));
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(positive(height, width));
    vornsWeightedMeanVarColumn_64f_D2_M7(src, srcStep, weight, height, dstMean, dstVar, width);
    return vornStsNoErr;
}

VornStatus vornsWeightedMeanVarColumn_64f_D2L(const Vorn64f* const* src, const Vorn64f* weight, int height,
                                              Vorn64f* dstMean, Vorn64f* dstVar, int width) {
    VORN_CHECK(notNull(src, weight, dstMean, dstVar));
    VORN_CHECK(positive(height, width));
    vornsWeightedMeanVarColumn_64f_D2L_M7(src, weight, height, dstMean, dstVar, width);
    return vornStsNoErr;
}
