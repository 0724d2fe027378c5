// Mahalanobis distances: the sums of the Gaussian scores by themselves, vornsMahDist*, and their kernels.
#include "frame/checks.h"
#include "frame/kernel.h"
#include "scoring/distances/kernels.h"
#include "scoring/distances/sums.h"
#include "scoring/gauss/many_rows/scores.h"
#include "vornsr/scoring.h"

using namespace vorn;

namespace vorn::mahalanobis {
namespace {

// What becomes of the sums of many rows: they are the distances.
template <class T>
struct StoreSums {
    T* result;
    template <class Where>
    VORN_INLINE void operator()(Where at, Four<T> sums) const {
        storeAt(at, result, sums);
    }
};

template <class Vectors>
void ofRows(const Vectors& vectors, std::ptrdiff_t len, Vorn32f* result, std::ptrdiff_t height) {
    scoreRows<SignedFloatSums<Added>>(vectors, len, height, StoreSums<Vorn32f>{result});
}
template <class Vectors>
void ofRows(const Vectors& vectors, std::ptrdiff_t len, Vorn64f* result, std::ptrdiff_t height) {
    scoreRows<SignedDoubleSums<Added>>(vectors, len, height, StoreSums<Vorn64f>{result});
}

}  // namespace
}  // namespace vorn::mahalanobis

// ---- Kernels. The single ones sum as for aligned vectors, wherever these stand.

VORN_KERNEL void sMahDistSingle_32f_M7(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, Vorn64s len,
                                       Vorn32f* result) {
    *result = floatSum<Added>(src, mean, var, len);
}
VORN_KERNEL_ALIAS(sMahDistSingle_32f_M7_Al, sMahDistSingle_32f_M7);

VORN_KERNEL void sMahDistSingle_64f_M7(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var, Vorn64s len,
                                       Vorn64f* result) {
    *result = mahalanobis::alignedDoubleSum(src, mean, var, len);
}
VORN_KERNEL_ALIAS(sMahDistSingle_64f_M7_Al, sMahDistSingle_64f_M7);

VORN_KERNEL void vornsMahDistSingle_16s32f_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, Vorn64s len,
                                              Vorn32f* result) {
    *result = floatSum<Added>(src, mean, var, len);
}

VORN_KERNEL void vornsMahDistSingle_16s32s_Sfs_M7(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var,
                                                  Vorn64s len, Vorn32s* result, int scaleFactor) {
    *result = mahalanobis::scaledAndSaturated(mahalanobis::exactSum(src, mean, var, len), scaleFactor);
}

VORN_KERNEL void sMahDist_32f_D2_M7(const Vorn32f* src, Vorn64s step, const Vorn32f* mean, const Vorn32f* var,
                                    Vorn64s len, Vorn32f* result, Vorn64s height) {
    mahalanobis::ofRows(frames(Rows(src, step), mean, var), len, result, height);
}
VORN_KERNEL_ALIAS(sMahDist_32f_D2_M7_Al, sMahDist_32f_D2_M7);

VORN_KERNEL void sMahDist_32f_D2L_M7(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var, Vorn64s len,
                                     Vorn32f* result, Vorn64s height) {
    mahalanobis::ofRows(frames(Rows(src), mean, var), len, result, height);
}
VORN_KERNEL_ALIAS(sMahDist_32f_D2L_M7_Al, sMahDist_32f_D2L_M7);

VORN_KERNEL void sMahDist_64f_D2_M7(const Vorn64f* src, Vorn64s step, const Vorn64f* mean, const Vorn64f* var,
                                    Vorn64s len, Vorn64f* result, Vorn64s height) {
    mahalanobis::ofRows(frames(Rows(src, step), mean, var), len, result, height);
}
VORN_KERNEL_ALIAS(sMahDist_64f_D2_M7_Al, sMahDist_64f_D2_M7);

VORN_KERNEL void sMahDist_64f_D2L_M7(const Vorn64f* const* src, const Vorn64f* mean, const Vorn64f* var, Vorn64s len,
                                     Vorn64f* result, Vorn64s height) {
    mahalanobis::ofRows(frames(Rows(src), mean, var), len, result, height);
}
VORN_KERNEL_ALIAS(sMahDist_64f_D2L_M7_Al, sMahDist_64f_D2L_M7);

VORN_KERNEL void sMahDist2_32f_D2_M7(const Vorn32f* mean, const Vorn32f* var, Vorn64s step, const Vorn32f* src,
                                     Vorn64s len, Vorn32f* result, Vorn64s height) {
    mahalanobis::ofRows(gaussians(src, Rows(mean, step), Rows(var, step)), len, result, height);
}
VORN_KERNEL_ALIAS(sMahDist2_32f_D2_M7_Al, sMahDist2_32f_D2_M7);

VORN_KERNEL void sMahDist2_32f_D2L_M7(const Vorn32f* const* mean, const Vorn32f* const* var, const Vorn32f* src,
                                      Vorn64s len, Vorn32f* result, Vorn64s height) {
    mahalanobis::ofRows(gaussians(src, Rows(mean), Rows(var)), len, result, height);
}
VORN_KERNEL_ALIAS(sMahDist2_32f_D2L_M7_Al, sMahDist2_32f_D2L_M7);

VORN_KERNEL void sMahDist2_64f_D2_M7(const Vorn64f* mean, const Vorn64f* var, Vorn64s step, const Vorn64f* src,
                                     Vorn64s len, Vorn64f* result, Vorn64s height) {
    mahalanobis::ofRows(gaussians(src, Rows(mean, step), Rows(var, step)), len, result, height);
}
VORN_KERNEL_ALIAS(sMahDist2_64f_D2_M7_Al, sMahDist2_64f_D2_M7);

VORN_KERNEL void sMahDist2_64f_D2L_M7(const Vorn64f* const* mean, const Vorn64f* const* var, const Vorn64f* src,
                                      Vorn64s len, Vorn64f* result, Vorn64s height) {
    mahalanobis::ofRows(gaussians(src, Rows(mean), Rows(var)), len, result, height);
}
VORN_KERNEL_ALIAS(sMahDist2_64f_D2L_M7_Al, sMahDist2_64f_D2L_M7);

// ---- One vector.

VornStatus vornsMahDistSingle_32f(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                  Vorn32f* result) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    *result = mahalanobis::singleSum(src, mean, var, len);
    return vornStsNoErr;
}

VornStatus vornsMahDistSingle_64f(const Vorn64f* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                  Vorn64f* result) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    *result = doubleSum(src, mean, var, len);
    return vornStsNoErr;
}

VornStatus vornsMahDistSingle_32f64f(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                     Vorn64f* result) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    *result = doubleSum(src, mean, var, len);
    return vornStsNoErr;
}

VornStatus vornsMahDistSingle_16s32f(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                     Vorn32f* result) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    *result = mahalanobis::singleSum(src, mean, var, len);
    return vornStsNoErr;
}

VornStatus vornsMahDistSingle_16s32s_Sfs(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len,
                                         Vorn32s* result, int scaleFactor) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len));
    vornsMahDistSingle_16s32s_Sfs_M7(src, mean, var, len, result, scaleFactor);
    return vornStsNoErr;
}

// ---- Many vectors, one Gaussian.

VornStatus vornsMahDist_32f_D2(const Vorn32f* src, int step, const Vorn32f* mean, const Vorn32f* var, int len,
                               Vorn32f* result, int height) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    sMahDist_32f_D2_M7(src, step, mean, var, len, result, height);
    return vornStsNoErr;
}

VornStatus vornsMahDist_64f_D2(const Vorn64f* src, int step, const Vorn64f* mean, const Vorn64f* var, int len,
                               Vorn64f* result, int height) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    sMahDist_64f_D2_M7(src, step, mean, var, len, result, height);
    return vornStsNoErr;
}

VornStatus vornsMahDist_32f_D2L(const Vorn32f* const* src, const Vorn32f* mean, const Vorn32f* var, int len,
                                Vorn32f* result, int height) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    sMahDist_32f_D2L_M7(src, mean, var, len, result, height);
    return vornStsNoErr;
}

VornStatus vornsMahDist_64f_D2L(const Vorn64f* const* src, const Vorn64f* mean, const Vorn64f* var, int len,
                                Vorn64f* result, int height) {
    VORN_CHECK(notNull(src, mean, var, result));
    VORN_CHECK(positive(len, height));
    sMahDist_64f_D2L_M7(src, mean, var, len, result, height);
    return vornStsNoErr;
}

// ---- One vector, many Gaussians.

VornStatus vornsMahDistMultiMix_32f_D2(const Vorn32f* mean, const Vorn32f* var, int step, const Vorn32f* src, int len,
                                       Vorn32f* result, int height) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, result));
    VORN_CHECK(positive(len, height));
    sMahDist2_32f_D2_M7(mean, var, step, src, len, result, height);
    return vornStsNoErr;
}

VornStatus vornsMahDistMultiMix_64f_D2(const Vorn64f* mean, const Vorn64f* var, int step, const Vorn64f* src, int len,
                                       Vorn64f* result, int height) {
    VORN_CHECK(strideHolds(step, len));
    VORN_CHECK(notNull(mean, var, src, result));
    VORN_CHECK(positive(len, height));
    sMahDist2_64f_D2_M7(mean, var, step, src, len, result, height);
    return vornStsNoErr;
}

VornStatus vornsMahDistMultiMix_32f_D2L(const Vorn32f* const* mean, const Vorn32f* const* var, const Vorn32f* src,
                                        int len, Vorn32f* result, int height) {
    VORN_CHECK(notNull(mean, var, src, result));
    VORN_CHECK(positive(len, height));
    sMahDist2_32f_D2L_M7(mean, var, src, len, result, height);
    return vornStsNoErr;
}

VornStatus vornsMahDistMultiMix_64f_D2L(const Vorn64f* const* mean, const Vorn64f* const* var, const Vorn64f* src,
                                        int len, Vorn64f* result, int height) {
    VORN_CHECK(notNull(mean, var, src, result));
    VORN_CHECK(positive(len, height));
    sMahDist2_64f_D2L_M7(mean, var, src, len, result, height);
    return vornStsNoErr;
}
