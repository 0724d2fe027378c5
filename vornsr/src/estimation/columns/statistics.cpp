// Column statistics: the exported functions and the kernels that keep their names.
#include <cstdint>

#include "estimation/columns/floats.h"
#include "estimation/columns/integers.h"
#include "frame/align.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/memory.h"
#include "frame/rows.h"
#include "move/convert_kernels.h"
#include "vornsr/estimation.h"

using namespace vorn;

// ---- Singles.

VORN_KERNEL void vornsMeanCol_32f_D2_M7(const Vorn32f* src, std::int64_t height, std::int64_t srcStep, Vorn32f* dstMean,
                                        std::int64_t width) {
    columns::meanColumns(Rows(src, srcStep), height, dstMean, width);
}
VORN_KERNEL_ALIAS(vornsMeanCol_32f_D2_M7_Al, vornsMeanCol_32f_D2_M7);

VORN_KERNEL void vornsGaussBuildMeanVector_D2L_M7_Al(const Vorn32f* const* src, std::int64_t height, Vorn32f* dstMean,
                                                     std::int64_t width) {
    columns::meanColumns(Rows(src), height, dstMean, width);
}

VORN_KERNEL void vornsGaussBuildDiagCovVector_D2_M7(const Vorn32f* src, std::int64_t height, std::int64_t srcStep,
                                                    const Vorn32f* mean, Vorn32f* dstVar, std::int64_t width) {
    columns::varColumnsTermFirst(Rows(src, srcStep), height, mean, dstVar, width);
}
VORN_KERNEL_ALIAS(vornsGaussBuildDiagCovVector_D2_M7_Al, vornsGaussBuildDiagCovVector_D2_M7);

VORN_KERNEL void vornsGaussBuildDiagCovVector_D2L_M7_Al(const Vorn32f* const* src, std::int64_t height,
                                                        const Vorn32f* mean, Vorn32f* dstVar, std::int64_t width) {
    columns::varColumnsTermFirst(Rows(src), height, mean, dstVar, width);
}

VORN_KERNEL void vornsGaussBuildMeanCovVector_D2_M7(const Vorn32f* src, std::int64_t height, std::int64_t srcStep,
                                                    Vorn32f* dstMean, Vorn32f* dstVar, std::int64_t width) {
    columns::meanVarColumns<columns::InRowOrder>(AnyRows(Rows(src, srcStep)), height,
                                                 columns::reciprocalByDouble(height),
                                                 columns::reciprocalByDouble(height - 1), dstMean, dstVar, width);
}
VORN_KERNEL_ALIAS(vornsGaussBuildMeanCovVector_D2_M7_Al, vornsGaussBuildMeanCovVector_D2_M7);

VORN_KERNEL void vornsGaussBuildMeanCovVector_D2L_M7_Al(const Vorn32f* const* src, std::int64_t height,
                                                        Vorn32f* dstMean, Vorn32f* dstVar, std::int64_t width) {
    columns::meanVarColumns<columns::InRowOrder>(AnyRows(Rows(src)), height, columns::reciprocalByDouble(height),
                                                 columns::reciprocalByDouble(height - 1), dstMean, dstVar, width);
}

VornStatus vornsMeanColumn_32f_D2(const Vorn32f* src, int height, int srcStep, Vorn32f* dstMean, int width) {
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(notNull(src, dstMean));
    VORN_CHECK(positive(height, width));
    vornsMeanCol_32f_D2_M7(src, height, srcStep, dstMean, width);
    return vornStsNoErr;
}

VornStatus vornsMeanColumn_32f_D2L(const Vorn32f* const* src, int height, Vorn32f* dstMean, int width) {
    VORN_CHECK(notNull(src, dstMean));
    VORN_CHECK(positive(height, width));
    vornsGaussBuildMeanVector_D2L_M7_Al(src, height, dstMean, width);
    return vornStsNoErr;
}

VornStatus vornsVarColumn_32f_D2(const Vorn32f* src, int height, int srcStep, const Vorn32f* mean, Vorn32f* dstVar,
                                 int width) {
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(notNull(src, mean, dstVar));
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(2, height));
    vornsGaussBuildDiagCovVector_D2_M7(src, height, srcStep, mean, dstVar, width);
    return vornStsNoErr;
}

VornStatus vornsVarColumn_32f_D2L(const Vorn32f* const* src, int height, const Vorn32f* mean, Vorn32f* dstVar,
                                  int width) {
    VORN_CHECK(notNull(src, mean, dstVar));
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(2, height));
    vornsGaussBuildDiagCovVector_D2L_M7_Al(src, height, mean, dstVar, width);
    return vornStsNoErr;
}

VornStatus vornsMeanVarColumn_32f_D2(const Vorn32f* src, int height, int srcStep, Vorn32f* dstMean, Vorn32f* dstVar,
                                     int width) {
    VORN_CHECK(notNull(src, dstMean, dstVar));
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(2, height));
    VORN_CHECK(strideHolds(srcStep, width));
    vornsGaussBuildMeanCovVector_D2_M7(src, height, srcStep, dstMean, dstVar, width);
    return vornStsNoErr;
}

VornStatus vornsMeanVarColumn_32f_D2L(const Vorn32f* const* src, int height, Vorn32f* dstMean, Vorn32f* dstVar,
                                      int width) {
    VORN_CHECK(notNull(src, dstMean, dstVar));
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(2, height));
    vornsGaussBuildMeanCovVector_D2L_M7_Al(src, height, dstMean, dstVar, width);
    return vornStsNoErr;
}

// ---- 16-bit integers to 16 bits. One block of rows, and a list of rows that all begin on 16 bytes, are summed in
// single and rounded; any other list is summed in integers and truncated.

VORN_KERNEL void vornsMeanColumn_16s_D2_M7(const Vorn16s* src, std::int64_t height, std::int64_t srcStep, Vorn32f* mean,
                                           std::int64_t width) {
    columns::roundedMeanColumns(Rows(src, srcStep), height, mean, width);
}
VORN_KERNEL_ALIAS(vornsMeanColumn_16s_D2_M7_Al, vornsMeanColumn_16s_D2_M7);

VORN_KERNEL void vornsMeanColumn_16s_D2L_M7_Al(const Vorn16s* const* src, std::int64_t height, Vorn32f* mean,
                                               std::int64_t width) {
    columns::roundedMeanColumns(Rows(src), height, mean, width);
}

VORN_KERNEL void vornsVarColumn_16s_D2_M7(const Vorn16s* src, std::int64_t height, std::int64_t srcStep,
                                          const Vorn16s* mean, Vorn32f* var, std::int64_t width) {
    columns::varColumnsTermLast(Rows(src, srcStep), height, mean, var, width);
}
VORN_KERNEL_ALIAS(vornsVarColumn_16s_D2_M7_Al, vornsVarColumn_16s_D2_M7);

VORN_KERNEL void vornsVarColumn_16s_D2L_M7_Al(const Vorn16s* const* src, std::int64_t height, const Vorn16s* mean,
                                              Vorn32f* var, std::int64_t width) {
    columns::varColumnsTermLast(Rows(src), height, mean, var, width);
}

// Of a mean in single. The functions for mean and variance make both in one pass instead, with the same bits.
VORN_KERNEL void vornsVarColumn_16s32f_D2_M7(const Vorn16s* src, std::int64_t height, std::int64_t srcStep,
                                             const Vorn32f* mean, Vorn32f* var, std::int64_t width) {
    columns::varColumnsTermLast(Rows(src, srcStep), height, mean, var, width);
}
VORN_KERNEL_ALIAS(vornsVarColumn_16s32f_D2_M7_Al, vornsVarColumn_16s32f_D2_M7);

VORN_KERNEL void vornsVarColumn_16s32f_D2L_M7_Al(const Vorn16s* const* src, std::int64_t height, const Vorn32f* mean,
                                                 Vorn32f* var, std::int64_t width) {
    columns::varColumnsTermLast(Rows(src), height, mean, var, width);
}

namespace vorn::columns {
namespace {

// What follows the sums in single: an allocation, and the conversion with its rounding to nearest.

template <class Kernel>
VornStatus roundedMean(Vorn16s* dstMean, int width, const Kernel& kernel) {
    const Scratch<Vorn32f> mean(std::int64_t{width} + 8);
    if (!mean) return vornStsMemAllocErr;
    kernel(mean.get());
    convert(mean.get(), dstMean, width, vornRndNear, 0);
    return vornStsNoErr;
}
template <class Kernel>
VornStatus roundedVar(Vorn16s* dstVar, int width, int scaleFactor, const Kernel& kernel) {
    const Scratch<Vorn32f> var(std::int64_t{width} + 8);
    if (!var) return vornStsMemAllocErr;
    kernel(var.get());
    convert(var.get(), dstVar, width, vornRndNear, scaleFactor);
    return vornStsNoErr;
}
VornStatus roundedMeanVar(AnyRows<const Vorn16s> rows, int height, Vorn16s* dstMean, Vorn16s* dstVar, int width,
                          int scaleFactor) {
    const Scratch<Vorn32f> mean(2 * std::int64_t{width} + 16);
    if (!mean) return vornStsMemAllocErr;
    Vorn32f* const var = mean.get() + width + 8;
    meanVarColumns<InPairs>(rows, height, reciprocalInSingle(height), reciprocalInSingle(height - 1), mean.get(), var,
                            width);
    convert(mean.get(), dstMean, width, vornRndNear, 0);
    convert(var, dstVar, width, vornRndNear, scaleFactor);
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::columns

VornStatus vornsMeanColumn_16s_D2(const Vorn16s* src, int height, int srcStep, Vorn16s* dstMean, int width) {
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(notNull(src, dstMean));
    VORN_CHECK(positive(height, width));
    return columns::roundedMean(dstMean, width,
                                [=](Vorn32f* mean) { vornsMeanColumn_16s_D2_M7(src, height, srcStep, mean, width); });
}

VornStatus vornsMeanColumn_16s_D2L(const Vorn16s* const* src, int height, Vorn16s* dstMean, int width) {
    VORN_CHECK(notNull(src, dstMean));
    VORN_CHECK(positive(height, width));
    if (RowMatrAlErr(src, height) == 0) {
        return columns::roundedMean(dstMean, width,
                                    [=](Vorn32f* mean) { vornsMeanColumn_16s_D2L_M7_Al(src, height, mean, width); });
    }
    columns::truncatedMeanColumns(Rows(src), height, dstMean, width);
    return vornStsNoErr;
}

VornStatus vornsVarColumn_16s_D2Sfs(const Vorn16s* src, int height, int srcStep, const Vorn16s* mean, Vorn16s* dstVar,
                                    int width, int scaleFactor) {
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(notNull(src, mean, dstVar));
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(2, height));
    return columns::roundedVar(dstVar, width, scaleFactor,
                               [=](Vorn32f* var) { vornsVarColumn_16s_D2_M7(src, height, srcStep, mean, var, width); });
}

VornStatus vornsVarColumn_16s_D2LSfs(const Vorn16s* const* src, int height, const Vorn16s* mean, Vorn16s* dstVar,
                                     int width, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, dstVar));
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(2, height));
    if (RowMatrAlErr(src, height) == 0) {
        return columns::roundedVar(dstVar, width, scaleFactor,
                                   [=](Vorn32f* var) { vornsVarColumn_16s_D2L_M7_Al(src, height, mean, var, width); });
    }
    columns::truncatedVarColumns(Rows(src), height, mean, dstVar, width, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMeanVarColumn_16s_D2Sfs(const Vorn16s* src, int height, int srcStep, Vorn16s* dstMean, Vorn16s* dstVar,
                                        int width, int scaleFactor) {
    VORN_CHECK(notNull(src, dstMean, dstVar));
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(2, height));
    VORN_CHECK(strideHolds(srcStep, width));
    return columns::roundedMeanVar(Rows(src, srcStep), height, dstMean, dstVar, width, scaleFactor);
}

VornStatus vornsMeanVarColumn_16s_D2LSfs(const Vorn16s* const* src, int height, Vorn16s* dstMean, Vorn16s* dstVar,
                                         int width, int scaleFactor) {
    VORN_CHECK(notNull(src, dstMean, dstVar));
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(2, height));
    if (RowMatrAlErr(src, height) == 0) {
        return columns::roundedMeanVar(Rows(src), height, dstMean, dstVar, width, scaleFactor);
    }
    columns::truncatedMeanVarColumns(Rows(src), height, dstMean, dstVar, width, scaleFactor);
    return vornStsNoErr;
}

// ---- 16-bit integers to wider results.

VORN_KERNEL void vornsMeanVarColumn_16s32s_D2Sfs_M7(const Vorn16s* src, std::int64_t height, std::int64_t srcStep,
                                                    Vorn32s* dstMean, Vorn32s* dstVar, std::int64_t width,
                                                    int scaleFactor) {
    columns::meanVarColumns_16s32s(Rows(src, srcStep), height, dstMean, dstVar, width, scaleFactor);
}

VORN_KERNEL void vornsMeanVarColumn_16s32s_D2LSfs_M7(const Vorn16s* const* src, std::int64_t height, Vorn32s* dstMean,
                                                     Vorn32s* dstVar, std::int64_t width, int scaleFactor) {
    columns::meanVarColumns_16s32s(Rows(src), height, dstMean, dstVar, width, scaleFactor);
}

VORN_KERNEL void vornsMeanVarColumn_16s16s32s_D2_M7(const Vorn16s* src, std::int64_t height, std::int64_t srcStep,
                                                    Vorn16s* dstMean, Vorn32s* dstVar, std::int64_t width) {
    columns::meanVarColumns_16s16s32s(Rows(src, srcStep), height, dstMean, dstVar, width);
}

VORN_KERNEL void vornsMeanVarColumn_16s16s32s_D2L_M7(const Vorn16s* const* src, std::int64_t height, Vorn16s* dstMean,
                                                     Vorn32s* dstVar, std::int64_t width) {
    columns::meanVarColumns_16s16s32s(Rows(src), height, dstMean, dstVar, width);
}

VornStatus vornsMeanVarColumn_16s32s_D2Sfs(const Vorn16s* src, int height, int srcStep, Vorn32s* dstMean,
                                           Vorn32s* dstVar, int width, int scaleFactor) {
    VORN_CHECK(notNull(src, dstMean, dstVar));
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(2, height));
    VORN_CHECK(strideHolds(srcStep, width));
    vornsMeanVarColumn_16s32s_D2Sfs_M7(src, height, srcStep, dstMean, dstVar, width, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMeanVarColumn_16s32s_D2LSfs(const Vorn16s* const* src, int height, Vorn32s* dstMean, Vorn32s* dstVar,
                                            int width, int scaleFactor) {
    VORN_CHECK(notNull(src, dstMean, dstVar));
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(2, height));
    vornsMeanVarColumn_16s32s_D2LSfs_M7(src, height, dstMean, dstVar, width, scaleFactor);
    return vornStsNoErr;
}

VornStatus vornsMeanVarColumn_16s16s32s_D2(const Vorn16s* src, int height, int srcStep, Vorn16s* dstMean,
                                           Vorn32s* dstVar, int width) {
    VORN_CHECK(notNull(src, dstMean, dstVar));
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(2, height));
    VORN_CHECK(strideHolds(srcStep, width));
    vornsMeanVarColumn_16s16s32s_D2_M7(src, height, srcStep, dstMean, dstVar, width);
    return vornStsNoErr;
}

VornStatus vornsMeanVarColumn_16s16s32s_D2L(const Vorn16s* const* src, int height, Vorn16s* dstMean, Vorn32s* dstVar,
                                            int width) {
    VORN_CHECK(notNull(src, dstMean, dstVar));
    VORN_CHECK(positive(width));
    VORN_CHECK(atLeast(2, height));
    vornsMeanVarColumn_16s16s32s_D2L_M7(src, height, dstMean, dstVar, width);
    return vornStsNoErr;
}
