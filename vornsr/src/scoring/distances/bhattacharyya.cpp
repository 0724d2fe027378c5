// Bhattacharyya distances: vornsBhatDist*, and their kernels.
#include "scoring/distances/bhattacharyya.h"

#include "frame/checks.h"
#include "frame/kernel.h"
#include "frame/memory.h"
#include "scoring/distances/kernels.h"
#include "vornsr/frame.h"
#include "vornsr/scoring.h"
#include "vornsr/signal.h"

using namespace vorn;

// ---- Kernels.

// 1 if the first group that decides has a negative value, 2 if it has a zero, 0 if there is none.
VORN_KERNEL int vornsBhatDistCmp_32f_M7(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2,
                                        const Vorn32f* var2, Vorn64s len) {
    return bhattacharyya::firstFault({mean1, var1, mean2, var2}, len);
}
VORN_KERNEL_ALIAS(vornsBhatDistCmp_32f_M7_Al, vornsBhatDistCmp_32f_M7);

// K, and the terms whose logarithms are summed: one a column in single, one for every four columns in double.
VORN_KERNEL void vornsBhatDist_32f_M7(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2,
                                      const Vorn32f* var2, Vorn64s len, Vorn32f* terms, Vorn32f* k) {
    *k = bhattacharyya::formTerms<bhattacharyya::RatioTerm>({mean1, var1, mean2, var2}, len, terms);
}
VORN_KERNEL_ALIAS(vornsBhatDist_32f_M7_Al, vornsBhatDist_32f_M7);

VORN_KERNEL void vornsBhatDistSLog_32f_M7(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2,
                                          const Vorn32f* var2, Vorn64s len, Vorn32f* terms, Vorn32f* k) {
    *k = bhattacharyya::formTerms<bhattacharyya::SumTerm>({mean1, var1, mean2, var2}, len, terms);
}
VORN_KERNEL_ALIAS(vornsBhatDistSLog_32f_M7_Al, vornsBhatDistSLog_32f_M7);

VORN_KERNEL void vornsBhatDist_32f64f_M7(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2,
                                         const Vorn32f* var2, Vorn64s len, Vorn64f* products, Vorn64f* k) {
    *k = bhattacharyya::formTerms<bhattacharyya::RatioTerm>({mean1, var1, mean2, var2}, len, products);
}
VORN_KERNEL_ALIAS(vornsBhatDist_32f64f_M7_Al, vornsBhatDist_32f64f_M7);

VORN_KERNEL void vornsBhatDistSLog_32f64f_M7(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2,
                                             const Vorn32f* var2, Vorn64s len, Vorn64f* products, Vorn64f* k) {
    *k = bhattacharyya::formTerms<bhattacharyya::SumTerm>({mean1, var1, mean2, var2}, len, products);
}
VORN_KERNEL_ALIAS(vornsBhatDistSLog_32f64f_M7_Al, vornsBhatDistSLog_32f64f_M7);

namespace vorn::bhattacharyya {
namespace {

inline VornStatus sumLn(const Vorn32f* terms, int count, Vorn32f* sum) { return vornsSumLn_32f(terms, count, sum); }
inline VornStatus sumLn(const Vorn64f* terms, int count, Vorn64f* sum) { return vornsSumLn_64f(terms, count, sum); }

template <class T>
using Kernel = void(const Vorn32f*, const Vorn32f*, const Vorn32f*, const Vorn32f*, Vorn64s, T*, T*);

template <class T, class Distance>
VornStatus warningOrDistance(const TwoGaussians& g, int len, T* result, Kernel<T>* kernel, const Distance& distance) {
    switch (vornsBhatDistCmp_32f_M7(g.mean1, g.var1, g.mean2, g.var2, len)) {
        case negativeFault:
            *result = vornConstantOfNAN_32f;
            return vornStsLnNegArg;
        case zeroFault:
            *result = vornConstantOfINF_32f;
            return vornStsLnZeroArg;
    }
    const Scratch<T> terms(std::is_same_v<T, Vorn64f> ? len / 4 + 1 : len);
    if (!terms) return vornStsMemAllocErr;
    T k, l;
    kernel(g.mean1, g.var1, g.mean2, g.var2, len, terms.get(), &k);
    // All terms are positive. An infinite one, or one that is not a number, makes the sum a not-a-number.
    sumLn(terms.get(), static_cast<int>(termCount(terms.get(), len)), &l);
    *result = static_cast<T>(distance(l, k, len));
    return vornStsNoErr;
}

}  // namespace
}  // namespace vorn::bhattacharyya

VornStatus vornsBhatDist_32f(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                             int len, Vorn32f* result) {
    VORN_CHECK(notNull(mean1, var1, mean2, var2, result));
    VORN_CHECK(positive(len));
    return bhattacharyya::warningOrDistance({mean1, var1, mean2, var2}, len, result, vornsBhatDist_32f_M7,
                                            bhattacharyya::WholeDistance());
}

VornStatus vornsBhatDist_32f64f(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                                int len, Vorn64f* result) {
    VORN_CHECK(notNull(mean1, var1, mean2, var2, result));
    VORN_CHECK(positive(len));
    return bhattacharyya::warningOrDistance({mean1, var1, mean2, var2}, len, result, vornsBhatDist_32f64f_M7,
                                            bhattacharyya::WholeDistance());
}

VornStatus vornsBhatDistSLog_32f(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2, const Vorn32f* var2,
                                 int len, Vorn32f* result, Vorn32f sumLog1, Vorn32f sumLog2) {
    VORN_CHECK(notNull(mean1, var1, mean2, var2, result));
    VORN_CHECK(positive(len));
    return bhattacharyya::warningOrDistance({mean1, var1, mean2, var2}, len, result, vornsBhatDistSLog_32f_M7,
                                            bhattacharyya::DistanceFromSums{sumLog1, sumLog2});
}

VornStatus vornsBhatDistSLog_32f64f(const Vorn32f* mean1, const Vorn32f* var1, const Vorn32f* mean2,
                                    const Vorn32f* var2, int len, Vorn64f* result, Vorn32f sumLog1, Vorn32f sumLog2) {
    VORN_CHECK(notNull(mean1, var1, mean2, var2, result));
    VORN_CHECK(positive(len));
    return bhattacharyya::warningOrDistance({mean1, var1, mean2, var2}, len, result, vornsBhatDistSLog_32f64f_M7,
                                            bhattacharyya::DistanceFromSums{sumLog1, sumLog2});
}
