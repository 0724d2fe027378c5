// Sums over rows that calls continue: the exported functions and the kernels that keep their names.
#include <algorithm>
#include <cstdint>

#include "estimation/columns/walk.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/rows.h"
#include "move/convert_kernels.h"
#include "vornsr/estimation.h"

namespace vorn::accumulate {
namespace {

// sum[j] += x[0][j] + x[1][j], squares[j] += x[0][j]^2 + x[1][j]^2, and so on; an odd last row alone.
template <class Source>
void addRowPairs(RowBlock<const Source> rows, std::int64_t height, Vorn32f* sum, Vorn32f* squares, std::int64_t width) {
    columns::addRows<columns::InPairs, columns::SquaresInPairs>(AnyRows(rows), height, 0, width, columns::NoWeights(),
                                                                {sum, squares});
}
template <class Source>
void sumRowPairs(RowBlock<const Source> rows, std::int64_t height, Vorn32f* sum, Vorn32f* squares, std::int64_t width) {
    columns::sumRows<columns::InPairs, columns::SquaresInPairs>(AnyRows(rows), height, width, columns::NoWeights(),
                                                                {sum, squares});
}

// Sums of integers are singles while rows are added; the conversions go from one to the other in their place.
Vorn32f* inPlaceOf(Vorn32s* sums) { return reinterpret_cast<Vorn32f*>(sums); }
void toIntegers(Vorn32s* sums, int width, int scaleFactor) {
    convert(inPlaceOf(sums), sums, width, vornRndNear, scaleFactor);
}

}  // namespace
}  // namespace vorn::accumulate

using namespace vorn;

VORN_KERNEL void vornsSumMeanVar_32f_D2_M7(const Vorn32f* src, std::int64_t srcStep, std::int64_t height,
                                           Vorn32f* dstSum, Vorn32f* dstSumSq, std::int64_t width) {
    accumulate::sumRowPairs(Rows(src, srcStep), height, dstSum, dstSumSq, width);
}
VORN_KERNEL_ALIAS(vornsSumMeanVar_32f_D2_M7_Al, vornsSumMeanVar_32f_D2_M7);

VORN_KERNEL void vornsSumMeanVar_32f_D2_M7_I(const Vorn32f* src, std::int64_t srcStep, std::int64_t height,
                                             Vorn32f* dstSum, Vorn32f* dstSumSq, std::int64_t width) {
    accumulate::addRowPairs(Rows(src, srcStep), height, dstSum, dstSumSq, width);
}
VORN_KERNEL_ALIAS(vornsSumMeanVar_32f_D2_M7_Al_I, vornsSumMeanVar_32f_D2_M7_I);

VORN_KERNEL void vornsSumMeanVar_16s32f_D2_M7(const Vorn16s* src, std::int64_t srcStep, std::int64_t height,
                                              Vorn32f* dstSum, Vorn32f* dstSumSq, std::int64_t width) {
    accumulate::sumRowPairs(Rows(src, srcStep), height, dstSum, dstSumSq, width);
}
VORN_KERNEL_ALIAS(vornsSumMeanVar_16s32f_D2_M7_Al, vornsSumMeanVar_16s32f_D2_M7);

VORN_KERNEL void vornsSumMeanVar_16s32f_D2_M7_I(const Vorn16s* src, std::int64_t srcStep, std::int64_t height,
                                                Vorn32f* dstSum, Vorn32f* dstSumSq, std::int64_t width) {
    accumulate::addRowPairs(Rows(src, srcStep), height, dstSum, dstSumSq, width);
}
VORN_KERNEL_ALIAS(vornsSumMeanVar_16s32f_D2_M7_Al_I, vornsSumMeanVar_16s32f_D2_M7_I);

// Takes sums as integers and leaves them as singles.
VORN_KERNEL void vornsSumMeanVar_16s32s_D2_M7_I(const Vorn16s* src, std::int64_t srcStep, std::int64_t height,
                                                Vorn32s* dstSum, Vorn32s* dstSumSq, std::int64_t width) {
    Vorn32f *sum = accumulate::inPlaceOf(dstSum), *squares = accumulate::inPlaceOf(dstSumSq);
    convert(dstSum, sum, width);
    convert(dstSumSq, squares, width);
    vornsSumMeanVar_16s32f_D2_M7_I(src, srcStep, height, sum, squares, width);
}
VORN_KERNEL_ALIAS(vornsSumMeanVar_16s32s_D2_M7_Al_I, vornsSumMeanVar_16s32s_D2_M7_I);

VornStatus vornsSumMeanVar_32f(const Vorn32f* src, int srcStep, int height, Vorn32f* dstSum, Vorn32f* dstSumSq,
                               int width) {
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(notNull(src, dstSum, dstSumSq));
    VORN_CHECK(positive(height, width));
    vornsSumMeanVar_32f_D2_M7(src, srcStep, height, dstSum, dstSumSq, width);
    return vornStsNoErr;
}

VornStatus vornsSumMeanVar_32f_I(const Vorn32f* src, int srcStep, int height, Vorn32f* dstSum, Vorn32f* dstSumSq,
                                 int width) {
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(notNull(src, dstSum, dstSumSq));
    VORN_CHECK(positive(height, width));
    vornsSumMeanVar_32f_D2_M7_I(src, srcStep, height, dstSum, dstSumSq, width);
    return vornStsNoErr;
}

VornStatus vornsSumMeanVar_16s32f(const Vorn16s* src, int srcStep, int height, Vorn32f* dstSum, Vorn32f* dstSumSq,
                                  int width) {
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(notNull(src, dstSum, dstSumSq));
    VORN_CHECK(positive(height, width));
    vornsSumMeanVar_16s32f_D2_M7(src, srcStep, height, dstSum, dstSumSq, width);
    return vornStsNoErr;
}

VornStatus vornsSumMeanVar_16s32f_I(const Vorn16s* src, int srcStep, int height, Vorn32f* dstSum, Vorn32f* dstSumSq,
                                    int width) {
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(notNull(src, dstSum, dstSumSq));
    VORN_CHECK(positive(height, width));
    vornsSumMeanVar_16s32f_D2_M7_I(src, srcStep, height, dstSum, dstSumSq, width);
    return vornStsNoErr;
}

VornStatus vornsSumMeanVar_16s32s_Sfs(const Vorn16s* src, int srcStep, int height, Vorn32s* dstSum, Vorn32s* dstSumSq,
                                      int width, int scaleFactor) {
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(notNull(src, dstSum, dstSumSq));
    VORN_CHECK(positive(height, width));
    vornsSumMeanVar_16s32f_D2_M7(src, srcStep, height, accumulate::inPlaceOf(dstSum), accumulate::inPlaceOf(dstSumSq),
                                 width);
    accumulate::toIntegers(dstSum, width, scaleFactor);
    accumulate::toIntegers(dstSumSq, width, scaleFactor);
    return vornStsNoErr;
}

// The sums that come in are not scaled up first: a scale factor other than 0 scales the whole of them at every call.
VornStatus vornsSumMeanVar_16s32s_ISfs(const Vorn16s* src, int srcStep, int height, Vorn32s* dstSum, Vorn32s* dstSumSq,
                                       int width, int scaleFactor) {
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(notNull(src, dstSum, dstSumSq));
    VORN_CHECK(positive(height, width));
    vornsSumMeanVar_16s32s_D2_M7_I(src, srcStep, height, dstSum, dstSumSq, width);
    accumulate::toIntegers(dstSum, width, scaleFactor);
    accumulate::toIntegers(dstSumSq, width, scaleFactor);
    return vornStsNoErr;
}
