// Curves and small tools beside plain loops over the C library, Eigen and the standard library's selection.
#include "plain/curves.h"

#include <cstring>

#include "support/vectors.h"
#include "vornsr.h"

namespace {

using namespace bench::vectors;

// What is computed in place starts from a copy, here and in the plain loop.
template <class T>
T* copied(const T* x, T* z, int n) {
    std::memcpy(z, x, sizeof(T) * static_cast<std::size_t>(n));
    return z;
}

// The constants of each function; what remains of the parameters is in an order that the rows know.
VornStatus recSqrt(const Vorn32f* x, Vorn32f* z, int n) { return vornsRecSqrt_32f(copied(x, z, n), n, 1.0f); }
VornStatus recSqrtFixed(const Vorn32s* x, Vorn16s* z, int n) { return vornsRecSqrt_32s16s_Sfs(x, z, n, 1000, -25); }
VornStatus unitCurveFixed(const Vorn16s* x, Vorn16s* z, int n) { return vornsUnitCurve_16s_Sfs(x, 13, z, n, -13); }
VornStatus scaleLM(const Vorn32f* x, Vorn32f* z, int n) { return vornsScaleLM_32f(x, z, n, 0.7f, 12.5f, -3.0f); }
VornStatus scaleLMFixed(const Vorn16s* x, Vorn32s* z, int n) { return vornsScaleLM_16s32s(x, z, n, -300, 25, 1000); }
VornStatus weighted(const Vorn32f* x, const Vorn32f* y, Vorn32f* z, int n) {
    return vornsWeightedSum_32f(x, y, z, n, 0.3f, 0.5f);
}
VornStatus weighted(const Vorn64f* x, const Vorn64f* y, Vorn64f* z, int n) {
    return vornsWeightedSum_64f(x, y, z, n, 0.3, 0.5);
}
VornStatus weighted(const Vorn16s* x, const Vorn16s* y, Vorn16s* z, int n) {
    return vornsWeightedSum_16s(x, y, z, n, 3, 5);
}
template <class T>
using Sum = VornStatus (*)(const T*, const T*, T*, int);
template <class T, auto nth>
VornStatus middle(const T* x, int n, T* z) {
    return nth(x, n, n / 2, z);
}

const bench::Family curves([] {
    add("SinC_32f", vornsSinC_32f, {PLAIN(plain::sinC(x, z, n)), PEER("plain sinf", plain::sinCNarrow(x, z, n))});
    add("SinC_32f64f", vornsSinC_32f64f, {PLAIN(plain::sinC(x, z, n))});
    add("SinC_64f", vornsSinC_64f, {PLAIN(plain::sinC(x, z, n)) EIGEN(array(z, n) = array(x, n).sin() / array(x, n))});
    add("ExpNegSqr_32f", vornsExpNegSqr_32f,
        {PLAIN(plain::expNegSqr(x, z, n)),
         PEER("plain expf", plain::expNegSqrNarrow(x, z, n)) EIGEN(array(z, n) = (-array(x, n).square()).exp())});
    add("ExpNegSqr_32f64f", vornsExpNegSqr_32f64f, {PLAIN(plain::expNegSqr(x, z, n))});
    add("ExpNegSqr_64f", vornsExpNegSqr_64f,
        {PLAIN(plain::expNegSqr(x, z, n)) EIGEN(array(z, n) = (-array(x, n).square()).exp())});
    add("RecSqrt_32f", recSqrt, {PLAIN(plain::recSqrt(copied(x, z, n), n, 1.0f))});
    add("RecSqrt_32s16s_Sfs", recSqrtFixed, {PLAIN(plain::recSqrt(x, z, n, 1000, 0x1p25f))});
    add("UnitCurve_32f", vornsUnitCurve_32f, {PLAIN(plain::unitCurve(x, z, n))});
    add("UnitCurve_16s_Sfs", unitCurveFixed, {PLAIN(plain::unitCurve(x, z, n, 13, -13))});
    add("Entropy_32f", vornsEntropy_32f, {PLAIN(*z = plain::entropy(x, n))});
    add("ScaleLM_32f", scaleLM, {PLAIN(plain::scaleLM(x, z, n, 0.7f, 12.5f, -3.0f))});
    add("ScaleLM_16s32s", scaleLMFixed, {PLAIN(plain::scaleLM(x, z, n, -300, 25, 1000))});
    add("WeightedSum_32f", Sum<Vorn32f>(weighted),
        {PLAIN(plain::weightedSum(x, y, z, n, 0.3f, 0.5f))
             EIGEN(array(z, n) = array(x, n) * 0.375f + array(y, n) * 0.625f)});
    add("WeightedSum_64f", Sum<Vorn64f>(weighted),
        {PLAIN(plain::weightedSum(x, y, z, n, 0.3, 0.5))
             EIGEN(array(z, n) = array(x, n) * 0.375 + array(y, n) * 0.625)});
    add("WeightedSum_16s", Sum<Vorn16s>(weighted), {PLAIN(plain::weightedSum(x, y, z, n, 3, 5))});
    add("NthMaxElement_32s", middle<Vorn32s, vornsNthMaxElement_32s>, {PEER("nth_element", plain::middle(x, n, z))});
    add("NthMaxElement_32f", middle<Vorn32f, vornsNthMaxElement_32f>, {PEER("nth_element", plain::middle(x, n, z))});
    add("NthMaxElement_64f", middle<Vorn64f, vornsNthMaxElement_64f>, {PEER("nth_element", plain::middle(x, n, z))});
});

}  // namespace
