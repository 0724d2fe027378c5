// Reductions and elementary functions beside plain loops and, where they have the like, VOLK, OpenBLAS, Eigen and
// SLEEF. One member stands for all that run through the same kernel. Floating-point sums of the peers add in orders of
// their own, in as many lanes as they like; ours are fixed, and Sum_32f/fast and DotProd_32f have them stated lane by
// lane.
#include "plain/reductions.h"

#include <complex>
#include <cstdint>
#include <random>
#include <string>

#include "support/bench.h"
#include "vornsr.h"

#ifdef VORNSR_HAVE_SLEEF
#include <immintrin.h>
#include <sleef.h>
#endif
#ifdef VORNSR_HAVE_VOLK
#include <volk/volk.h>
#endif
#ifdef VORNSR_HAVE_OPENBLAS
#include <cblas.h>
#endif
#ifdef VORNSR_HAVE_EIGEN
#include <Eigen/Core>
#endif

namespace {

// Far from every cache but the largest shared ones, and short enough for sweeps over many members.
constexpr std::size_t inMemory = std::size_t{128} << 20, gap = 4096;
struct Size {
    const char* name;
    std::size_t elements, bytes;  // a fixed length, or the bytes of all vectors together
};
constexpr Size sizes[] = {
    {"7", 7, 0}, {"39", 39, 0}, {"L1", 0, bench::inL1}, {"LLC", 0, bench::inLastLevel}, {"memory", 0, inMemory}};

// One block of sources for all types: whatever it is read as, the numbers are positive, random and of ordinary size,
// singles from 1/2 to 2.
const std::byte* sources() {
    static const auto block = [] {
        constexpr std::size_t words = (inMemory + gap) / sizeof(std::uint32_t);
        auto made = bench::buffer<std::uint32_t>(words);
        std::minstd_rand generator(1);
        for (std::size_t i = 0; i < words; ++i) {
            made[i] = 0x3F000001u | (static_cast<std::uint32_t>(generator()) & 0x00FF7F7Fu);
        }
        return made;
    }();
    return reinterpret_cast<const std::byte*>(block.get());
}
std::byte* results() {
    static const auto block = bench::buffer<std::byte>(inMemory + gap);
    return block.get();
}

// What a call reads and writes: vectors, or one result at the end.
enum class Shape { reduceOne, reduceTwo, mapOne, mapTwo };
using enum Shape;

template <class A, class B, class R>
struct Peer {
    const char* name;
    void (*call)(const A* x, const B* y, R* z, int n);
};

template <class A, class B, class R>
void addTwo(const std::string& function, Shape shape, std::vector<Peer<A, B, R>> peers) {
    const bool two = shape == reduceTwo || shape == mapTwo, maps = shape == mapOne || shape == mapTwo;
    for (const Size& size : sizes) {
        const std::size_t perElement = sizeof(A) + (two ? sizeof(B) : 0) + (maps ? sizeof(R) : 0);
        const std::size_t len = size.elements != 0 ? size.elements : size.bytes / perElement;
        const std::size_t second = two ? (len * sizeof(A) + 63) / 64 * 64 : 0;
        for (const Peer<A, B, R>& peer : peers) {
            bench::add(function, size.name, peer.name, static_cast<std::int64_t>(len), [=] {
                auto* dst = reinterpret_cast<R*>(results());
                peer.call(reinterpret_cast<const A*>(sources()), reinterpret_cast<const B*>(sources() + second), dst,
                          static_cast<int>(len));
                bench::keep(dst);
            });
        }
    }
}
template <class A, class R>
void add(const std::string& function, Shape shape, std::vector<Peer<A, A, R>> peers) {
    addTwo<A, A, R>(function, shape, std::move(peers));
}

// In the calls x and y are the sources, z the result and n the length.
#define PEER(name, ...)                                                                               \
    {                                                                                                 \
        name, [](auto* x, [[maybe_unused]] auto* y, [[maybe_unused]] auto* z, int n) { __VA_ARGS__; } \
    }
#define OURS(...) PEER(bench::ours, __VA_ARGS__)
#define PLAIN(...) PEER("plain", __VA_ARGS__)
#ifdef VORNSR_HAVE_VOLK
#define VOLK(...) , PEER("volk", __VA_ARGS__)
#else
#define VOLK(...)
#endif
#ifdef VORNSR_HAVE_OPENBLAS
#define OPENBLAS(...) , PEER("openblas", __VA_ARGS__)
#else
#define OPENBLAS(...)
#endif
#ifdef VORNSR_HAVE_EIGEN
#define EIGEN(...) , PEER("eigen", __VA_ARGS__)
template <class T>
struct Standard {
    using type = T;
};
template <>
struct Standard<Vorn32fc> {
    using type = std::complex<float>;
};
template <>
struct Standard<Vorn64fc> {
    using type = std::complex<double>;
};
template <class T>
using Column = Eigen::Array<typename Standard<T>::type, Eigen::Dynamic, 1>;
template <class T>
auto array(const T* x, int n) {
    return Eigen::Map<const Column<T>>(reinterpret_cast<const typename Standard<T>::type*>(x), n);
}
template <class T>
auto array(T* x, int n) {
    return Eigen::Map<Column<T>>(reinterpret_cast<typename Standard<T>::type*>(x), n);
}
template <class T>
auto dot(const T* x, const T* y, int n) {
    return (array(x, n) * array(y, n)).sum();
}
template <class T>
void put(T* z, std::complex<decltype(T::re)> x) {
    *z = {x.real(), x.imag()};
}
#else
#define EIGEN(...)
#endif
#ifdef VORNSR_HAVE_VOLK
unsigned count(int n) { return static_cast<unsigned>(n); }
lv_32fc_t* volkComplex(Vorn32fc* z) { return reinterpret_cast<lv_32fc_t*>(z); }
const lv_32fc_t* volkComplex(const Vorn32fc* z) { return reinterpret_cast<const lv_32fc_t*>(z); }
const lv_16sc_t* volkComplex(const Vorn16sc* z) { return reinterpret_cast<const lv_16sc_t*>(z); }
#endif

void addSums() {
    add<Vorn32f, Vorn32f>("Sum_32f/fast", reduceOne,
                          {OURS(vornsSum_32f(x, n, z, 1)),
                           PLAIN(plain::sum<float>(x, z, n)) VOLK(volk_32f_accumulator_s32f(z, x, count(n)))
                               EIGEN(*z = array(x, n).sum())});
    add<Vorn32f, Vorn32f>(
        "Sum_32f/accurate", reduceOne,
        {OURS(vornsSum_32f(x, n, z, 2)),
         PLAIN(plain::sum<double>(x, z, n)) EIGEN(*z = static_cast<float>(array(x, n).template cast<double>().sum()))});
    add<Vorn64f, Vorn64f>(
        "Sum_64f", reduceOne,
        {OURS(vornsSum_64f(x, n, z)), PLAIN(plain::sum<double>(x, z, n)) EIGEN(*z = array(x, n).sum())});
    add<Vorn32fc, Vorn32fc>("Sum_32fc/fast", reduceOne,
                            {OURS(vornsSum_32fc(x, n, z, 1)),
                             PLAIN(plain::sumComplex<float>(x, z, n)) VOLK(volk_32fc_accumulator_s32fc(
                                 volkComplex(z), volkComplex(x), count(n))) EIGEN(put(z, array(x, n).sum()))});
    add<Vorn32fc, Vorn32fc>("Sum_32fc/accurate", reduceOne,
                            {OURS(vornsSum_32fc(x, n, z, 2)), PLAIN(plain::sumComplex<double>(x, z, n))});
    add<Vorn64fc, Vorn64fc>(
        "Sum_64fc", reduceOne,
        {OURS(vornsSum_64fc(x, n, z)), PLAIN(plain::sumComplex<double>(x, z, n)) EIGEN(put(z, array(x, n).sum()))});
    add<Vorn16s, Vorn32s>("Sum_16s32s_Sfs", reduceOne,
                          {OURS(vornsSum_16s32s_Sfs(x, n, z, 4)), PLAIN(plain::sum<std::int64_t>(x, z, n))});
    add<Vorn16sc, Vorn32sc>("Sum_16sc32sc_Sfs", reduceOne,
                            {OURS(vornsSum_16sc32sc_Sfs(x, n, z, 4)), PLAIN(plain::sumComplex<std::int64_t>(x, z, n))});
    add<Vorn32s, Vorn32s>("Sum_32s_Sfs", reduceOne,
                          {OURS(vornsSum_32s_Sfs(x, n, z, 4)), PLAIN(plain::sum<std::int64_t>(x, z, n))});
}

void addDotProducts() {
    add<Vorn32f, Vorn32f>("DotProd_32f", reduceTwo,
                          {OURS(vornsDotProd_32f(x, y, n, z)),
                           PLAIN(plain::dot<float>(x, y, z, n)) VOLK(volk_32f_x2_dot_prod_32f(z, x, y, count(n)))
                               OPENBLAS(*z = cblas_sdot(n, x, 1, y, 1)) EIGEN(*z = dot(x, y, n))});
    add<Vorn64f, Vorn64f>(
        "DotProd_64f", reduceTwo,
        {OURS(vornsDotProd_64f(x, y, n, z)),
         PLAIN(plain::dot<double>(x, y, z, n)) OPENBLAS(*z = cblas_ddot(n, x, 1, y, 1)) EIGEN(*z = dot(x, y, n))});
    add<Vorn32f, Vorn64f>("DotProd_32f64f", reduceTwo,
                          {OURS(vornsDotProd_32f64f(x, y, n, z)),
                           PLAIN(plain::dot<double>(x, y, z, n)) OPENBLAS(*z = cblas_dsdot(n, x, 1, y, 1))});
    add<Vorn32fc, Vorn32fc>("DotProd_32fc", reduceTwo,
                            {OURS(vornsDotProd_32fc(x, y, n, z)),
                             PLAIN(plain::dotComplex<float>(x, y, z, n)) VOLK(
                                 volk_32fc_x2_dot_prod_32fc(volkComplex(z), volkComplex(x), volkComplex(y), count(n)))
                                 OPENBLAS(cblas_cdotu_sub(n, x, 1, y, 1, z)) EIGEN(put(z, dot(x, y, n)))});
    add<Vorn64fc, Vorn64fc>("DotProd_64fc", reduceTwo,
                            {OURS(vornsDotProd_64fc(x, y, n, z)),
                             PLAIN(plain::dotComplex<double>(x, y, z, n)) OPENBLAS(cblas_zdotu_sub(n, x, 1, y, 1, z))
                                 EIGEN(put(z, dot(x, y, n)))});
    add<Vorn32fc, Vorn64fc>("DotProd_32fc64fc", reduceTwo,
                            {OURS(vornsDotProd_32fc64fc(x, y, n, z)), PLAIN(plain::dotComplex<double>(x, y, z, n))});
    addTwo<Vorn32f, Vorn32fc, Vorn32fc>(
        "DotProd_32f32fc", reduceTwo,
        {OURS(vornsDotProd_32f32fc(x, y, n, z)),
         PLAIN(plain::dotRealComplex<float>(x, y, z, n))
             VOLK(volk_32fc_32f_dot_prod_32fc(volkComplex(z), volkComplex(y), x, count(n)))});
    addTwo<Vorn64f, Vorn64fc, Vorn64fc>(
        "DotProd_64f64fc", reduceTwo,
        {OURS(vornsDotProd_64f64fc(x, y, n, z)), PLAIN(plain::dotRealComplex<double>(x, y, z, n))});
    addTwo<Vorn32f, Vorn32fc, Vorn64fc>(
        "DotProd_32f32fc64fc", reduceTwo,
        {OURS(vornsDotProd_32f32fc64fc(x, y, n, z)), PLAIN(plain::dotRealComplex<double>(x, y, z, n))});
    add<Vorn16s, Vorn64s>("DotProd_16s64s", reduceTwo,
                          {OURS(vornsDotProd_16s64s(x, y, n, z)), PLAIN(plain::dot<std::int64_t>(x, y, z, n))});
    add<Vorn16sc, Vorn64sc>(
        "DotProd_16sc64sc", reduceTwo,
        {OURS(vornsDotProd_16sc64sc(x, y, n, z)), PLAIN(plain::dotComplex<std::int64_t>(x, y, z, n))});
    addTwo<Vorn16s, Vorn16sc, Vorn64sc>(
        "DotProd_16s16sc64sc", reduceTwo,
        {OURS(vornsDotProd_16s16sc64sc(x, y, n, z)), PLAIN(plain::dotRealComplex<std::int64_t>(x, y, z, n))});
    add<Vorn32s, Vorn32s>("DotProd_32s_Sfs", reduceTwo,
                          {OURS(vornsDotProd_32s_Sfs(x, y, n, z, 40)), PLAIN(plain::dot<double>(x, y, z, n))});
    add<Vorn32sc, Vorn32sc>(
        "DotProd_32sc_Sfs", reduceTwo,
        {OURS(vornsDotProd_32sc_Sfs(x, y, n, z, 40)), PLAIN(plain::dotComplex<double>(x, y, z, n))});
    addTwo<Vorn32s, Vorn32sc, Vorn32sc>(
        "DotProd_32s32sc_Sfs", reduceTwo,
        {OURS(vornsDotProd_32s32sc_Sfs(x, y, n, z, 40)), PLAIN(plain::dotRealComplex<double>(x, y, z, n))});
    addTwo<Vorn16s, Vorn32s, Vorn32s>(
        "DotProd_16s32s32s_Sfs", reduceTwo,
        {OURS(vornsDotProd_16s32s32s_Sfs(x, y, n, z, 40)), PLAIN(plain::dot<double>(x, y, z, n))});
}

template <class T>
void addMinMax(const char* name, Peer<T, T, T> ours) {
    add<T, T>(name, reduceOne,
              {ours, PLAIN(plain::minMax(x, z, z + 1, n))
                         EIGEN(z[0] = array(x, n).minCoeff(), z[1] = array(x, n).maxCoeff())});
}

void addExtrema() {
    add<Vorn16s, Vorn16s>("Max_16s", reduceOne,
                          {OURS(vornsMax_16s(x, n, z)), PLAIN(plain::max(x, z, n)) EIGEN(*z = array(x, n).maxCoeff())});
    add<Vorn16s, Vorn16s>("Min_16s", reduceOne,
                          {OURS(vornsMin_16s(x, n, z)), PLAIN(plain::min(x, z, n)) EIGEN(*z = array(x, n).minCoeff())});
    add<Vorn32f, Vorn32f>("Max_32f", reduceOne,
                          {OURS(vornsMax_32f(x, n, z)), PLAIN(plain::max(x, z, n)) EIGEN(*z = array(x, n).maxCoeff())});
    add<Vorn64f, Vorn64f>("Max_64f", reduceOne,
                          {OURS(vornsMax_64f(x, n, z)), PLAIN(plain::max(x, z, n)) EIGEN(*z = array(x, n).maxCoeff())});
    addMinMax<Vorn8u>("MinMax_8u", OURS(vornsMinMax_8u(x, n, z, z + 1)));
    addMinMax<Vorn16u>("MinMax_16u", OURS(vornsMinMax_16u(x, n, z, z + 1)));
    addMinMax<Vorn16s>("MinMax_16s", OURS(vornsMinMax_16s(x, n, z, z + 1)));
    addMinMax<Vorn32u>("MinMax_32u", OURS(vornsMinMax_32u(x, n, z, z + 1)));
    addMinMax<Vorn32s>("MinMax_32s", OURS(vornsMinMax_32s(x, n, z, z + 1)));
    addMinMax<Vorn32f>("MinMax_32f", OURS(vornsMinMax_32f(x, n, z, z + 1)));
    addMinMax<Vorn64f>("MinMax_64f", OURS(vornsMinMax_64f(x, n, z, z + 1)));
    add<Vorn16s, Vorn16s>("MaxIndx_16s", reduceOne,
                          {OURS(vornsMaxIndx_16s(x, n, z, reinterpret_cast<int*>(z + 2))),
                           PLAIN(plain::maxIndex(x, z, reinterpret_cast<int*>(z + 2), n))
                               EIGEN(*z = array(x, n).maxCoeff(reinterpret_cast<int*>(z + 2)))});
    // VOLK's finds the index and not the value.
    add<Vorn32f, Vorn32f>("MaxIndx_32f", reduceOne,
                          {OURS(vornsMaxIndx_32f(x, n, z, reinterpret_cast<int*>(z + 1))),
                           PLAIN(plain::maxIndex(x, z, reinterpret_cast<int*>(z + 1), n))
                               VOLK(volk_32f_index_max_32u(reinterpret_cast<std::uint32_t*>(z + 1), x, count(n)))
                                   EIGEN(*z = array(x, n).maxCoeff(reinterpret_cast<int*>(z + 1)))});
    add<Vorn64f, Vorn64f>("MaxIndx_64f", reduceOne,
                          {OURS(vornsMaxIndx_64f(x, n, z, reinterpret_cast<int*>(z + 1))),
                           PLAIN(plain::maxIndex(x, z, reinterpret_cast<int*>(z + 1), n))
                               EIGEN(*z = array(x, n).maxCoeff(reinterpret_cast<int*>(z + 1)))});
    add<Vorn16s, Vorn16s>("MaxEvery_16s_I", mapOne,
                          {OURS(vornsMaxEvery_16s_I(x, z, n)),
                           PLAIN(plain::maxEvery(x, z, n)) EIGEN(array(z, n) = array(z, n).max(array(x, n)))});
    add<Vorn32s, Vorn32s>("MaxEvery_32s_I", mapOne,
                          {OURS(vornsMaxEvery_32s_I(x, z, n)),
                           PLAIN(plain::maxEvery(x, z, n)) EIGEN(array(z, n) = array(z, n).max(array(x, n)))});
    add<Vorn32f, Vorn32f>("MaxEvery_32f_I", mapOne,
                          {OURS(vornsMaxEvery_32f_I(x, z, n)),
                           PLAIN(plain::maxEvery(x, z, n)) VOLK(volk_32f_x2_max_32f(z, x, z, count(n)))
                               EIGEN(array(z, n) = array(z, n).max(array(x, n)))});
}

#ifdef VORNSR_HAVE_SLEEF
// Whole registers, past the end of the vectors where these end before.
void sleefLn4(const float* x, const float*, float* y, int n) {
    for (int i = 0; i < n; i += 4) _mm_storeu_ps(y + i, Sleef_cinz_logf4_u10sse2(_mm_loadu_ps(x + i)));
}
#ifdef __AVX2__
void sleefLn8(const float* x, const float*, float* y, int n) {
    for (int i = 0; i < n; i += 8) _mm256_storeu_ps(y + i, Sleef_finz_logf8_u10avx2(_mm256_loadu_ps(x + i)));
}
void sleefLn4(const double* x, const double*, double* y, int n) {
    for (int i = 0; i < n; i += 4) _mm256_storeu_pd(y + i, Sleef_finz_logd4_u10avx2(_mm256_loadu_pd(x + i)));
}
#endif
#ifdef __AVX512F__
void sleefLn16(const float* x, const float*, float* y, int n) {
    for (int i = 0; i < n; i += 16) _mm512_storeu_ps(y + i, Sleef_finz_logf16_u10avx512f(_mm512_loadu_ps(x + i)));
}
void sleefLn8(const double* x, const double*, double* y, int n) {
    for (int i = 0; i < n; i += 8) _mm512_storeu_pd(y + i, Sleef_finz_logd8_u10avx512f(_mm512_loadu_pd(x + i)));
}
#endif
#endif

void addLogarithms() {
    // VOLK has the logarithm to base 2 only, within 2^-20 or so.
    std::vector<Peer<Vorn32f, Vorn32f, Vorn32f>> single = {
        OURS(vornsLn_32f(x, z, n)),
        PLAIN(plain::ln(x, z, n)) VOLK(volk_32f_log2_32f(z, x, count(n))) EIGEN(array(z, n) = array(x, n).log())};
    std::vector<Peer<Vorn64f, Vorn64f, Vorn64f>> wide = {
        OURS(vornsLn_64f(x, z, n)), PLAIN(plain::ln(x, z, n)) EIGEN(array(z, n) = array(x, n).log())};
#ifdef VORNSR_HAVE_SLEEF
    single.push_back({"sleef4", sleefLn4});
#ifdef __AVX2__
    single.push_back({"sleef8", sleefLn8});
    wide.push_back({"sleef4", sleefLn4});
#endif
#ifdef __AVX512F__
    single.push_back({"sleef16", sleefLn16});
    wide.push_back({"sleef8", sleefLn8});
#endif
#endif
    add<Vorn32f, Vorn32f>("Ln_32f", mapOne, std::move(single));
    add<Vorn64f, Vorn64f>("Ln_64f", mapOne, std::move(wide));
    add<Vorn64f, Vorn32f>("Ln_64f32f", mapOne, {OURS(vornsLn_64f32f(x, z, n)), PLAIN(plain::ln(x, z, n))});
    add<Vorn32s, Vorn32s>("Ln_32s_Sfs/0", mapOne,
                          {OURS(vornsLn_32s_Sfs(x, z, n, 0)), PLAIN(plain::lnScaled(x, z, n, 0))});
    add<Vorn32s, Vorn32s>("Ln_32s_Sfs/-10", mapOne,
                          {OURS(vornsLn_32s_Sfs(x, z, n, -10)), PLAIN(plain::lnScaled(x, z, n, -10))});
    add<Vorn32f, Vorn32f>(
        "SumLn_32f", reduceOne,
        {OURS(vornsSumLn_32f(x, n, z)), PLAIN(plain::sumLn(x, z, n)) EIGEN(*z = array(x, n).log().sum())});
    add<Vorn64f, Vorn64f>(
        "SumLn_64f", reduceOne,
        {OURS(vornsSumLn_64f(x, n, z)), PLAIN(plain::sumLn(x, z, n)) EIGEN(*z = array(x, n).log().sum())});
    add<Vorn16s, Vorn32f>("SumLn_16s32f", reduceOne, {OURS(vornsSumLn_16s32f(x, n, z)), PLAIN(plain::sumLn(x, z, n))});
}

void addRoots() {
    add<Vorn32f, Vorn32f>("Sqrt_32f", mapOne,
                          {OURS(vornsSqrt_32f(x, z, n)), PLAIN(plain::root(x, z, n)) VOLK(volk_32f_sqrt_32f(
                                                             z, x, count(n))) EIGEN(array(z, n) = array(x, n).sqrt())});
    add<Vorn64f, Vorn64f>(
        "Sqrt_64f", mapOne,
        {OURS(vornsSqrt_64f(x, z, n)), PLAIN(plain::root(x, z, n)) EIGEN(array(z, n) = array(x, n).sqrt())});
    add<Vorn32fc, Vorn32fc>(
        "Sqrt_32fc", mapOne,
        {OURS(vornsSqrt_32fc(x, z, n)), PLAIN(plain::rootComplex(x, z, n)) EIGEN(array(z, n) = array(x, n).sqrt())});
    add<Vorn64fc, Vorn64fc>(
        "Sqrt_64fc", mapOne,
        {OURS(vornsSqrt_64fc(x, z, n)), PLAIN(plain::rootComplex(x, z, n)) EIGEN(array(z, n) = array(x, n).sqrt())});
    add<Vorn8u, Vorn8u>("Sqrt_8u_Sfs/-3", mapOne,
                        {OURS(vornsSqrt_8u_Sfs(x, z, n, -3)), PLAIN(plain::rootScaled<float>(x, z, n, -3))});
    add<Vorn16u, Vorn16u>("Sqrt_16u_Sfs/-3", mapOne,
                          {OURS(vornsSqrt_16u_Sfs(x, z, n, -3)), PLAIN(plain::rootScaled<float>(x, z, n, -3))});
    add<Vorn16s, Vorn16s>("Sqrt_16s_Sfs/-3", mapOne,
                          {OURS(vornsSqrt_16s_Sfs(x, z, n, -3)), PLAIN(plain::rootScaled<float>(x, z, n, -3))});
    // Results above 2048 need double.
    add<Vorn16s, Vorn16s>("Sqrt_16s_Sfs/-6", mapOne,
                          {OURS(vornsSqrt_16s_Sfs(x, z, n, -6)), PLAIN(plain::rootScaled<float>(x, z, n, -6))});
    add<Vorn16sc, Vorn16sc>("Sqrt_16sc_Sfs/-3", mapOne,
                            {OURS(vornsSqrt_16sc_Sfs(x, z, n, -3)), PLAIN(plain::rootComplexScaled(x, z, n, -3))});
    add<Vorn32s, Vorn16s>("Sqrt_32s16s_Sfs/2", mapOne,
                          {OURS(vornsSqrt_32s16s_Sfs(x, z, n, 2)), PLAIN(plain::rootScaled<double>(x, z, n, 2))});
    // The plain double roots are not correctly rounded, ours are.
    add<Vorn64s, Vorn64s>("Sqrt_64s_Sfs/0", mapOne,
                          {OURS(vornsSqrt_64s_Sfs(x, z, n, 0)), PLAIN(plain::rootScaled<double>(x, z, n, 0))});
    add<Vorn64s, Vorn16s>("Sqrt_64s16s_Sfs/16", mapOne,
                          {OURS(vornsSqrt_64s16s_Sfs(x, z, n, 16)), PLAIN(plain::rootScaled<double>(x, z, n, 16))});
}

void addMagnitudes() {
    add<Vorn32fc, Vorn32f>(
        "Magnitude_32fc", mapOne,
        {OURS(vornsMagnitude_32fc(x, z, n)),
         PLAIN(plain::magnitude<float>(x, z, n)) VOLK(volk_32fc_magnitude_32f(z, volkComplex(x), count(n)))});
    add<Vorn64fc, Vorn64f>("Magnitude_64fc", mapOne,
                           {OURS(vornsMagnitude_64fc(x, z, n)), PLAIN(plain::magnitude<double>(x, z, n))});
    add<Vorn32f, Vorn32f>("Magnitude_32f", mapTwo,
                          {OURS(vornsMagnitude_32f(x, y, z, n)),
                           PLAIN(plain::magnitude<float>(x, y, z, n))
                               EIGEN(array(z, n) = (array(x, n).square() + array(y, n).square()).sqrt())});
    add<Vorn64f, Vorn64f>("Magnitude_64f", mapTwo,
                          {OURS(vornsMagnitude_64f(x, y, z, n)),
                           PLAIN(plain::magnitude<double>(x, y, z, n))
                               EIGEN(array(z, n) = (array(x, n).square() + array(y, n).square()).sqrt())});
    add<Vorn16sc, Vorn32f>("Magnitude_16sc32f", mapOne,
                           {OURS(vornsMagnitude_16sc32f(x, z, n)),
                            PLAIN(plain::magnitude<float>(x, z, n))
                                VOLK(volk_16ic_s32f_magnitude_32f(z, volkComplex(x), 1.0f, count(n)))});
    add<Vorn16s, Vorn32f>("Magnitude_16s32f", mapTwo,
                          {OURS(vornsMagnitude_16s32f(x, y, z, n)), PLAIN(plain::magnitude<float>(x, y, z, n))});
    // VOLK's scales by a constant of its own and truncates.
    add<Vorn16sc, Vorn16s>(
        "Magnitude_16sc_Sfs/1", mapOne,
        {OURS(vornsMagnitude_16sc_Sfs(x, z, n, 1)),
         PLAIN(plain::magnitudeScaled(x, z, n, 1)) VOLK(volk_16ic_magnitude_16i(z, volkComplex(x), count(n)))});
    add<Vorn16s, Vorn16s>("Magnitude_16s_Sfs/1", mapTwo,
                          {OURS(vornsMagnitude_16s_Sfs(x, y, z, n, 1)), PLAIN(plain::magnitudeScaled(x, y, z, n, 1))});
    add<Vorn32sc, Vorn32s>("Magnitude_32sc_Sfs/1", mapOne,
                           {OURS(vornsMagnitude_32sc_Sfs(x, z, n, 1)), PLAIN(plain::magnitudeScaled(x, z, n, 1))});
}

template <class T>
void addAbsolute(const char* name, Peer<T, T, T> ours) {
    add<T, T>(name, mapOne, {ours, PLAIN(plain::absolute(x, z, n)) EIGEN(array(z, n) = array(x, n).abs())});
}

const bench::Family reductions([] {
#ifdef VORNSR_HAVE_OPENBLAS
    openblas_set_num_threads(1);
#endif
    addSums();
    addDotProducts();
    addExtrema();
    addLogarithms();
    addRoots();
    addMagnitudes();
    addAbsolute<Vorn16s>("Abs_16s", OURS(vornsAbs_16s(x, z, n)));
    addAbsolute<Vorn32s>("Abs_32s", OURS(vornsAbs_32s(x, z, n)));
    addAbsolute<Vorn32f>("Abs_32f", OURS(vornsAbs_32f(x, z, n)));
    addAbsolute<Vorn64f>("Abs_64f", OURS(vornsAbs_64f(x, z, n)));
});

}  // namespace
