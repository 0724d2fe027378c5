// Logarithms, roots and magnitudes beside plain loops and, where they have the like, VOLK, Eigen and SLEEF.
#include "plain/elementary.h"

#include "support/vectors.h"
#include "vornsr.h"

#ifdef VORNSR_HAVE_SLEEF
#include <immintrin.h>
#include <sleef.h>
#endif

namespace {

using namespace bench::vectors;

#ifdef VORNSR_HAVE_SLEEF
// Whole registers, past the end of the vectors where these end before.
void sleefSingle4(const float* x, const float*, float* y, int n) {
    for (int i = 0; i < n; i += 4) _mm_storeu_ps(y + i, Sleef_cinz_logf4_u10sse2(_mm_loadu_ps(x + i)));
}
#ifdef __AVX2__
void sleefSingle8(const float* x, const float*, float* y, int n) {
    for (int i = 0; i < n; i += 8) _mm256_storeu_ps(y + i, Sleef_finz_logf8_u10avx2(_mm256_loadu_ps(x + i)));
}
void sleefDouble4(const double* x, const double*, double* y, int n) {
    for (int i = 0; i < n; i += 4) _mm256_storeu_pd(y + i, Sleef_finz_logd4_u10avx2(_mm256_loadu_pd(x + i)));
}
#endif
#ifdef __AVX512F__
void sleefSingle16(const float* x, const float*, float* y, int n) {
    for (int i = 0; i < n; i += 16) _mm512_storeu_ps(y + i, Sleef_finz_logf16_u10avx512f(_mm512_loadu_ps(x + i)));
}
void sleefDouble8(const double* x, const double*, double* y, int n) {
    for (int i = 0; i < n; i += 8) _mm512_storeu_pd(y + i, Sleef_finz_logd8_u10avx512f(_mm512_loadu_pd(x + i)));
}
#endif
#endif

void addLogarithms() {
    // VOLK has the logarithm to base 2 only, within 2^-20 or so.
    Peers<Vorn32f, Vorn32f, Vorn32f> single = {PLAIN(plain::ln(x, z, n)) VOLK(volk_32f_log2_32f(z, x, count(n)))
                                                   EIGEN(array(z, n) = array(x, n).log())};
    Peers<Vorn64f, Vorn64f, Vorn64f> wide = {PLAIN(plain::ln(x, z, n)) EIGEN(array(z, n) = array(x, n).log())};
#ifdef VORNSR_HAVE_SLEEF
    single.push_back({"sleef4", sleefSingle4});
#ifdef __AVX2__
    single.push_back({"sleef8", sleefSingle8});
    wide.push_back({"sleef4", sleefDouble4});
#endif
#ifdef __AVX512F__
    single.push_back({"sleef16", sleefSingle16});
    wide.push_back({"sleef8", sleefDouble8});
#endif
#endif
    add("Ln_32f", vornsLn_32f, single);
    add("Ln_64f", vornsLn_64f, wide);
    add("Ln_64f32f", vornsLn_64f32f, {PLAIN(plain::ln(x, z, n))});
    add("Ln_32s_Sfs/0", vornsLn_32s_Sfs, {PLAIN(plain::lnScaled(x, z, n, 0))}, 0);
    add("Ln_32s_Sfs/-10", vornsLn_32s_Sfs, {PLAIN(plain::lnScaled(x, z, n, -10))}, -10);
}

void addRoots() {
    add("Sqrt_32f", vornsSqrt_32f,
        {PLAIN(plain::root(x, z, n)) VOLK(volk_32f_sqrt_32f(z, x, count(n))) EIGEN(array(z, n) = array(x, n).sqrt())});
    add("Sqrt_64f", vornsSqrt_64f, {PLAIN(plain::root(x, z, n)) EIGEN(array(z, n) = array(x, n).sqrt())});
    add("Sqrt_32fc", vornsSqrt_32fc, {PLAIN(plain::rootComplex(x, z, n)) EIGEN(array(z, n) = array(x, n).sqrt())});
    add("Sqrt_64fc", vornsSqrt_64fc, {PLAIN(plain::rootComplex(x, z, n)) EIGEN(array(z, n) = array(x, n).sqrt())});
    add("Sqrt_8u_Sfs/-3", vornsSqrt_8u_Sfs, {PLAIN(plain::rootScaled<float>(x, z, n, -3))}, -3);
    add("Sqrt_16u_Sfs/-3", vornsSqrt_16u_Sfs, {PLAIN(plain::rootScaled<float>(x, z, n, -3))}, -3);
    add("Sqrt_16s_Sfs/-3", vornsSqrt_16s_Sfs, {PLAIN(plain::rootScaled<float>(x, z, n, -3))}, -3);
    // Results above 2048 need double.
    add("Sqrt_16s_Sfs/-6", vornsSqrt_16s_Sfs, {PLAIN(plain::rootScaled<float>(x, z, n, -6))}, -6);
    add("Sqrt_16sc_Sfs/-3", vornsSqrt_16sc_Sfs, {PLAIN(plain::rootComplexScaled(x, z, n, -3))}, -3);
    add("Sqrt_32s16s_Sfs/2", vornsSqrt_32s16s_Sfs, {PLAIN(plain::rootScaled<double>(x, z, n, 2))}, 2);
    // The plain double roots are not correctly rounded, ours are.
    add("Sqrt_64s_Sfs/0", vornsSqrt_64s_Sfs, {PLAIN(plain::rootScaled<double>(x, z, n, 0))}, 0);
    add("Sqrt_64s16s_Sfs/16", vornsSqrt_64s16s_Sfs, {PLAIN(plain::rootScaled<double>(x, z, n, 16))}, 16);
}

void addMagnitudes() {
    add("Magnitude_32fc", vornsMagnitude_32fc,
        {PLAIN(plain::magnitude<float>(x, z, n)) VOLK(volk_32fc_magnitude_32f(z, volkComplex(x), count(n)))});
    add("Magnitude_64fc", vornsMagnitude_64fc, {PLAIN(plain::magnitude<double>(x, z, n))});
    add("Magnitude_32f", vornsMagnitude_32f,
        {PLAIN(plain::magnitude<float>(x, y, z, n))
             EIGEN(array(z, n) = (array(x, n).square() + array(y, n).square()).sqrt())});
    add("Magnitude_64f", vornsMagnitude_64f,
        {PLAIN(plain::magnitude<double>(x, y, z, n))
             EIGEN(array(z, n) = (array(x, n).square() + array(y, n).square()).sqrt())});
    add("Magnitude_16sc32f", vornsMagnitude_16sc32f,
        {PLAIN(plain::magnitude<float>(x, z, n))
             VOLK(volk_16ic_s32f_magnitude_32f(z, volkComplex(x), 1.0f, count(n)))});
    add("Magnitude_16s32f", vornsMagnitude_16s32f, {PLAIN(plain::magnitude<float>(x, y, z, n))});
    // VOLK's scales by a constant of its own and truncates.
    add("Magnitude_16sc_Sfs/1", vornsMagnitude_16sc_Sfs,
        {PLAIN(plain::magnitudeScaled(x, z, n, 1)) VOLK(volk_16ic_magnitude_16i(z, volkComplex(x), count(n)))}, 1);
    add("Magnitude_16s_Sfs/1", vornsMagnitude_16s_Sfs, {PLAIN(plain::magnitudeScaled(x, y, z, n, 1))}, 1);
    add("Magnitude_32sc_Sfs/1", vornsMagnitude_32sc_Sfs, {PLAIN(plain::magnitudeScaled(x, z, n, 1))}, 1);
}

const bench::Family elementary([] {
    addLogarithms();
    addRoots();
    addMagnitudes();
});

}  // namespace
