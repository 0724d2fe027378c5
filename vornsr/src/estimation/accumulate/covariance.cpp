// Covariance-like matrices: the exported functions and the kernels that keep their names.
#include "estimation/accumulate/covariance.h"

#include "frame/align.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/wrap.h"
#include "vornsr/estimation.h"

namespace vorn::accumulate {
namespace {

// From so many elements on, if addresses and steps allow it, frames are added one by one. The number of elements is a
// product that wraps at 32 bits.
constexpr int largeSingleBlock = 140000, largeSingleList = 134000;
constexpr int largeIntegerBlock = 270000, largeIntegerList = 260000;

template <class Source>
bool byFrame(const Source* src, int srcStep, int height, const Source* mean, const Vorn64f* dst, int dstStep,
             int large) {
    return wrapMul(srcStep, height) >= large && srcStep % 4 == 0 && dstStep % 4 == 0 && isAligned(src, 16) &&
           isAligned(mean, 16) && isAligned(dst, 16);
}
template <class Source>
bool byFrame(const Source* const* src, int height, const Source* mean, const Vorn64f* const* dst, int width,
             int large) {
    return wrapMul(height, width) >= large && isAligned(mean, 16) && RowMatrAlErr(src, height) == 0 &&
           RowMatrAlErr(dst, width) == 0;
}

}  // namespace
}  // namespace vorn::accumulate

using namespace vorn;

VORN_KERNEL void vornsAccCovarianceMatrix_32f64f_D2_M7(const Vorn32f* src, std::int64_t srcStep, std::int64_t height,
                                                       const Vorn32f* mean, Vorn64f* dst, std::int64_t width,
                                                       std::int64_t dstStep, Vorn64f val) {
    accumulate::addCovarianceByFrame(Rows(src, srcStep), height, mean, Rows(dst, dstStep), width, val);
}

VORN_KERNEL void vornsAccCovarianceMatrix_32f64f_D2L_M7(const Vorn32f* const* src, std::int64_t height,
                                                        const Vorn32f* mean, Vorn64f* const* dst, std::int64_t width,
                                                        Vorn64f val) {
    accumulate::addCovarianceByFrame(Rows(src), height, mean, Rows(dst), width, val);
}

VORN_KERNEL void vornsAccCovarianceMatrix_16s64f_D2_M7(const Vorn16s* src, std::int64_t srcStep, std::int64_t height,
                                                       const Vorn16s* mean, Vorn64f* dst, std::int64_t width,
                                                       std::int64_t dstStep, Vorn64f val) {
    accumulate::addCovarianceByFrame(Rows(src, srcStep), height, mean, Rows(dst, dstStep), width, val);
}

VORN_KERNEL void vornsAccCovarianceMatrix_16s64f_D2L_M7(const Vorn16s* const* src, std::int64_t height,
                                                        const Vorn16s* mean, Vorn64f* const* dst, std::int64_t width,
                                                        Vorn64f val) {
    accumulate::addCovarianceByFrame(Rows(src), height, mean, Rows(dst), width, val);
}

VornStatus vornsAccCovarianceMatrix_32f64f_D2(const Vorn32f* src, int srcStep, int height, const Vorn32f* mean,
                                              Vorn64f* dst, int width, int dstStep, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(strideHolds(dstStep, width));
    if (accumulate::byFrame(src, srcStep, height, mean, dst, dstStep, accumulate::largeSingleBlock)) {
        vornsAccCovarianceMatrix_32f64f_D2_M7(src, srcStep, height, mean, dst, width, dstStep, val);
    } else {
        accumulate::addCovariance<Vorn32f>(Rows(src, srcStep), height, mean, Rows(dst, dstStep), width, val);
    }
    return vornStsNoErr;
}

VornStatus vornsAccCovarianceMatrix_32f64f_D2L(const Vorn32f* const* src, int height, const Vorn32f* mean,
                                               Vorn64f* const* dst, int width, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, dst));
    VORN_CHECK(positive(height, width));
    if (accumulate::byFrame(src, height, mean, dst, width, accumulate::largeSingleList)) {
        vornsAccCovarianceMatrix_32f64f_D2L_M7(src, height, mean, dst, width, val);
    } else {
        accumulate::addCovariance<Vorn32f>(Rows(src), height, mean, Rows(dst), width, val);
    }
    return vornStsNoErr;
}

VornStatus vornsAccCovarianceMatrix_16s64f_D2(const Vorn16s* src, int srcStep, int height, const Vorn16s* mean,
                                              Vorn64f* dst, int width, int dstStep, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, dst));
    VORN_CHECK(positive(height, width));
    VORN_CHECK(strideHolds(srcStep, width));
    VORN_CHECK(strideHolds(dstStep, width));
    if (accumulate::byFrame(src, srcStep, height, mean, dst, dstStep, accumulate::largeIntegerBlock)) {
        vornsAccCovarianceMatrix_16s64f_D2_M7(src, srcStep, height, mean, dst, width, dstStep, val);
    } else {
        accumulate::addCovariance<Vorn16s>(Rows(src, srcStep), height, mean, Rows(dst, dstStep), width, val);
    }
    return vornStsNoErr;
}

VornStatus vornsAccCovarianceMatrix_16s64f_D2L(const Vorn16s* const* src, int height, const Vorn16s* mean,
                                               Vorn64f* const* dst, int width, Vorn64f val) {
    VORN_CHECK(notNull(src, mean, dst));
    VORN_CHECK(positive(height, width));
    if (accumulate::byFrame(src, height, mean, dst, width, accumulate::largeIntegerList)) {
        vornsAccCovarianceMatrix_16s64f_D2L_M7(src, height, mean, dst, width, val);
    } else {
        accumulate::addCovariance<Vorn16s>(Rows(src), height, mean, Rows(dst), width, val);
    }
    return vornStsNoErr;
}
