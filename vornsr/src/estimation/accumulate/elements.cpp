// Accumulators and variances element by element: the exported functions and the kernels that keep their names.
#include "estimation/accumulate/elements.h"

#include "frame/align.h"
#include "frame/checks.h"
#include "frame/kernel.h"
#include "vornsr/estimation.h"

using namespace vorn;

VORN_KERNEL void sMahAcc_32f_M7(const Vorn32f* src, const Vorn32f* srcMean, Vorn32f* dstMeanAcc, Vorn32f* dstVarAcc,
                                std::int64_t len, Vorn32f val) {
    accumulate::addDeviations(src, srcMean, dstMeanAcc, dstVarAcc, len, val);
}

VORN_KERNEL void sMeanVarAcc_64f_M7(const Vorn64f* src, const Vorn64f* srcMean, Vorn64f* dstMeanAcc, Vorn64f* dstVarAcc,
                                    std::int64_t len, Vorn64f val) {
    accumulate::addDeviations(src, srcMean, dstMeanAcc, dstVarAcc, len, val);
}
VORN_KERNEL_ALIAS(sMeanVarAcc_64f_M7_Al, sMeanVarAcc_64f_M7);

// In single precision what vornsNewVar_32f does in part in double.
VORN_KERNEL void vornsNewVar_32f_M7(const Vorn32f* srcMean, const Vorn32f* srcSumSq, Vorn32f* dstVar, std::int64_t len,
                                    Vorn32f val1, Vorn32f val2) {
    accumulate::variances(accumulate::SingleVariance(val1, val2), srcMean, srcSumSq, dstVar, len);
}
VORN_KERNEL_ALIAS(vornsNewVar_32f_M7_Al, vornsNewVar_32f_M7);

VORN_KERNEL void vornsNewVar_32f_I_M7(const Vorn32f* srcMean, Vorn32f* srcDstVar, std::int64_t len, Vorn32f val1,
                                      Vorn32f val2) {
    accumulate::variances(accumulate::SingleVariance(val1, val2), srcMean, srcDstVar, srcDstVar, len);
}
VORN_KERNEL_ALIAS(vornsNewVar_32f_I_M7_Al, vornsNewVar_32f_I_M7);

VORN_KERNEL void vornsNewVar_32s_Sfs_M7_Al(const Vorn32s* srcMean, const Vorn32s* srcSumSq, Vorn32s* dstVar,
                                           std::int64_t len, int scaleFactor, Vorn32f val1, Vorn32f val2) {
    accumulate::roundedVariances(srcMean, srcSumSq, dstVar, len, scaleFactor, val1, val2);
}

VORN_KERNEL void vornsNewVar_32s_ISfs_M7_Al(const Vorn32s* srcMean, Vorn32s* srcDstVar, std::int64_t len,
                                            int scaleFactor, Vorn32f val1, Vorn32f val2) {
    vornsNewVar_32s_Sfs_M7_Al(srcMean, srcDstVar, srcDstVar, len, scaleFactor, val1, val2);
}

VornStatus vornsMeanVarAcc_32f(const Vorn32f* src, const Vorn32f* srcMean, Vorn32f* dstMeanAcc, Vorn32f* dstVarAcc,
                               int len, Vorn32f val) {
    VORN_CHECK(notNull(src, srcMean, dstMeanAcc, dstVarAcc));
    VORN_CHECK(positive(len));
    sMahAcc_32f_M7(src, srcMean, dstMeanAcc, dstVarAcc, len, val);
    return vornStsNoErr;
}

VornStatus vornsMeanVarAcc_64f(const Vorn64f* src, const Vorn64f* srcMean, Vorn64f* dstMeanAcc, Vorn64f* dstVarAcc,
                               int len, Vorn64f val) {
    VORN_CHECK(notNull(src, srcMean, dstMeanAcc, dstVarAcc));
    VORN_CHECK(positive(len));
    sMeanVarAcc_64f_M7(src, srcMean, dstMeanAcc, dstVarAcc, len, val);
    return vornStsNoErr;
}

VornStatus vornsNewVar_32f(const Vorn32f* srcMean, const Vorn32f* srcSumSq, Vorn32f* dstVar, int len, Vorn32f val1,
                           Vorn32f val2) {
    VORN_CHECK(notNull(srcMean, srcSumSq, dstVar));
    VORN_CHECK(positive(len));
    accumulate::variances(accumulate::MixedVariance(val1, val2), srcMean, srcSumSq, dstVar, len);
    return vornStsNoErr;
}

// Rounds otherwise than vornsNewVar_32f.
VornStatus vornsNewVar_32f_I(const Vorn32f* srcMean, Vorn32f* srcDstVar, int len, Vorn32f val1, Vorn32f val2) {
    VORN_CHECK(notNull(srcMean, srcDstVar));
    VORN_CHECK(positive(len));
    vornsNewVar_32f_I_M7(srcMean, srcDstVar, len, val1, val2);
    return vornStsNoErr;
}

// The address chooses the rounding: nearest where both sources are aligned, toward zero elsewhere.
VornStatus vornsNewVar_32s_Sfs(const Vorn32s* srcMean, const Vorn32s* srcSumSq, Vorn32s* dstVar, int len,
                               int scaleFactor, Vorn32f val1, Vorn32f val2) {
    VORN_CHECK(notNull(srcMean, srcSumSq, dstVar));
    VORN_CHECK(positive(len));
    if (isAligned(srcMean, 16) && isAligned(srcSumSq, 16)) {
        vornsNewVar_32s_Sfs_M7_Al(srcMean, srcSumSq, dstVar, len, scaleFactor, val1, val2);
    } else {
        accumulate::variances(accumulate::TruncatedVariance(val1, val2, scaleFactor), srcMean, srcSumSq, dstVar, len);
    }
    return vornStsNoErr;
}

VornStatus vornsNewVar_32s_ISfs(const Vorn32s* srcMean, Vorn32s* srcDstVar, int len, int scaleFactor, Vorn32f val1,
                                Vorn32f val2) {
    return vornsNewVar_32s_Sfs(srcMean, srcDstVar, srcDstVar, len, scaleFactor, val1, val2);
}
