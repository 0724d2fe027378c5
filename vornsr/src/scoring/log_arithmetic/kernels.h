// Log-domain arithmetic: the kernels, and the scalar log-adds in double that the other scores use.
#pragma once

#include <cstddef>

#include "scoring/log_arithmetic/tables.h"
#include "simd/simd.h"
#include "vornsr/types.h"

VORN_BEGIN_DECLS

// srcDst[i] = ln(exp(src[i]) + exp(srcDst[i])), not a number where either is none. Groups of four (two in double) count
// a difference exactly on a split of the polynomials to the lower interval, the elements behind the last group to the
// upper one.
void vornsLogAddVec_32f_M7_sp(const Vorn32f* src, Vorn32f* srcDst, int len);
void vornsLogAddVec_64f_M7(const Vorn64f* src, Vorn64f* srcDst, int len);

// dst[0] = ln of the sum of exp(src[i]), not a number if an element is none; from eight elements on (five in double) in
// four (two) running sums.
void vornsLogSum_32f_M7(const Vorn32f* src, Vorn32f* dst, int len);
void vornsLogSum_64f_M7(const Vorn64f* src, Vorn64f* dst, int len);

VORN_END_DECLS

namespace vorn {

// The running sums of a log-sum whose elements are still being made. Each step waits for the one before it and leaves
// the processor idle; taken between the scores of a mixture, the steps cost next to nothing.
template <class V>
struct LogSumSoFar {
    V sums;
    std::ptrdiff_t taken = 0;
};
// Takes some of the len elements at src, of which the first `made` are there.
void advance(LogSumSoFar<f32x4>& sum, const Vorn32f* src, std::ptrdiff_t made, std::ptrdiff_t len);
void advance(LogSumSoFar<f64x2>& sum, const Vorn64f* src, std::ptrdiff_t made, std::ptrdiff_t len);
// Takes the rest; the log-sum of all len elements, with the bits of vornsLogSum_*_M7.
Vorn32f finish(LogSumSoFar<f32x4>& sum, const Vorn32f* src, std::ptrdiff_t len);
Vorn64f finish(LogSumSoFar<f64x2>& sum, const Vorn64f* src, std::ptrdiff_t len);

// f(d) = slope x t + constant by the tables of the single forms, in double.
struct LogAddTerm {
    double t, slope, constant;
};

inline LogAddTerm logAddTerm(double d) {
    const double *p1, *p2, *p3, *p;
    GetLogAddConst_F(&p1, &p2, &p3);
    double t;
    if (d > -2.55) {
        t = d, p = p1;
    } else if (d > -6.8) {
        t = d + 2.55, p = p2;
    } else {
        t = d + 6.8, p = p3;
    }
    double slope = p[0];
    for (int k = 1; k < termsFloat - 1; ++k) slope = slope * t + p[k];
    return {t, slope, p[termsFloat - 1]};
}

// The log-add of the short fixed-point sums: the constant joins m before the product does. What is not a number gives
// none; the difference of two infinities drops the smaller term.
inline double logAddConstantFirst(double a, double b) {
    if (__builtin_isunordered(a, b)) return a + b;
    const double m = a > b ? a : b;
    const double d = -__builtin_fabs(a - b);
    if (!(d >= LogLimits<float>::minExpWide)) return m > LogLimits<float>::zero ? m : LogLimits<float>::zero;
    const LogAddTerm f = logAddTerm(d);
    return (m + f.constant) + f.t * f.slope;
}

// The scalar log-add of the mixtures: the constant comes last, and the sum is rounded once. The difference is taken in
// single; where it is not a number, the result is none.
inline Vorn32f logAddConstantLast(Vorn32f score, Vorn32f old) {
    const bool scoreLeads = !(score < old);
    const double m = scoreLeads ? score : old;
    const Vorn32f difference = scoreLeads ? old - score : score - old;
    const double d = difference;
    if (d < LogLimits<float>::minExpWide)
        return static_cast<Vorn32f>(m > LogLimits<float>::zero ? m : LogLimits<float>::zero);
    const LogAddTerm f = logAddTerm(d);
    return static_cast<Vorn32f>((m + f.slope * f.t) + f.constant);
}

// 1 if the logarithm of the difference exp(src[i]) - exp(srcDst[i]) does not exist for some i: srcDst[i] - src[i],
// formed in the element type, is at or above zero. Vorn32s wraps; Vorn16s is subtracted as int.
int ParamErr64f(const Vorn64f* src, const Vorn64f* srcDst, int len);
int ParamErr32f(const Vorn32f* src, const Vorn32f* srcDst, int len);
int ParamErr32s(const Vorn32s* src, const Vorn32s* srcDst, int len);
int ParamErr16s(const Vorn16s* src, const Vorn16s* srcDst, int len);

// The fixed-point forms: the integer x stands for x x 2^-scaleFactor.
void logAddFixed(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor);
void logAddFixed(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor);
void logSumFixed(const Vorn32s* src, Vorn32s* dst, int len, int scaleFactor);
void logSumFixed(const Vorn16s* src, Vorn16s* dst, int len, int scaleFactor);

// srcDst[i] = ln(exp(src[i]) - exp(srcDst[i])), in double; not a number where either is none.
void logSub(const Vorn64f* src, Vorn64f* srcDst, int len);
void logSub(const Vorn32f* src, Vorn32f* srcDst, int len);
void logSubFixed(const Vorn32s* src, Vorn32s* srcDst, int len, int scaleFactor);
void logSubFixed(const Vorn16s* src, Vorn16s* srcDst, int len, int scaleFactor);

}  // namespace vorn
