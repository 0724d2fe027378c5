// Reductions and elementary functions beside plain loops, SLEEF, VOLK and Eigen.
#include "plain/reductions.h"

#include <limits>
#include <random>
#include <string>
#include <type_traits>

#include "support/bench.h"
#include "vornsr.h"

#ifdef VORNSR_HAVE_SLEEF
#include <immintrin.h>
#include <sleef.h>
#endif
#ifdef VORNSR_HAVE_VOLK
#include <volk/volk.h>
#endif
#ifdef VORNSR_HAVE_EIGEN
// GCC 12 takes the deliberately undefined operands of some 512-bit intrinsics for a fault (its bug 105593).
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <Eigen/Core>
#pragma GCC diagnostic pop
#endif

namespace {

struct Size {
    const char* name;
    std::size_t bytes;  // of all vectors together
};
constexpr Size sizes[] = {{"39", 0}, {"L1", bench::inL1}, {"LLC", bench::inLastLevel}, {"memory", bench::inMemory}};

// Ordinary values: positive floats up to 1000, integers over their range.
template <class T>
void fill(T* block, std::size_t len) {
    std::minstd_rand generator(1);
    for (std::size_t i = 0; i < len; ++i) {
        const auto x = static_cast<double>(generator()) / 2147483647.0;
        if constexpr (std::is_floating_point_v<T>) {
            block[i] = static_cast<T>(1e-3 + 1e3 * x);
        } else {
            using L = std::numeric_limits<T>;
            const auto low = static_cast<double>(L::min()), high = static_cast<double>(L::max());
            block[i] = static_cast<T>((low + (high - low) * x) * 0.999);
        }
    }
}

// Two blocks of numbers of each type, made by the first benchmark that needs them.
template <class Number, int which>
const Number* numbers() {
    static const auto block = [] {
        constexpr std::size_t len = bench::inMemory / sizeof(Number);
        auto made = bench::buffer<Number>(len);
        fill(made.get(), len);
        return made;
    }();
    return block.get();
}
std::byte* results() {
    static const auto block = bench::buffer<std::byte>(bench::inMemory);
    return block.get();
}

template <class T, class = void>
struct NumberOf {
    using type = T;
};
template <class T>
struct NumberOf<T, std::void_t<decltype(T::re)>> {
    using type = decltype(T::re);
};

// The vectors that a call moves.
enum class Shape { oneToScalar, twoToScalar, oneToVector, twoToVector };

template <class T, class Result>
struct Peer {
    const char* name;
    void (*call)(const T* src1, const T* src2, Result* dst, int len);
};

template <class T, class Result>
void add(const std::string& function, Shape shape, std::vector<Peer<T, Result>> peers) {
    const std::size_t sources = shape == Shape::oneToScalar || shape == Shape::oneToVector ? 1 : 2;
    const std::size_t stored = shape == Shape::oneToVector || shape == Shape::twoToVector ? sizeof(Result) : 0;
    for (const Size& size : sizes) {
        const std::size_t len = size.bytes == 0 ? 39 : size.bytes / (sources * sizeof(T) + stored);
        for (const Peer<T, Result>& peer : peers) {
            bench::add(function, size.name, peer.name, static_cast<std::int64_t>(len), [=] {
                using Number = typename NumberOf<T>::type;
                auto* dst = reinterpret_cast<Result*>(results());
                peer.call(reinterpret_cast<const T*>(numbers<Number, 0>()),
                          reinterpret_cast<const T*>(numbers<Number, 1>()), dst, static_cast<int>(len));
                bench::keep(dst);
            });
        }
    }
}

void addLogarithms() {
    add<float, float>(
        "vornsLn_32f", Shape::oneToVector,
        {
            {bench::ours, [](auto* x, auto*, auto* y, int n) { vornsLn_32f(x, y, n); }},
            {"plain", [](auto* x, auto*, auto* y, int n) { plain::ln(x, y, n); }},
#ifdef VORNSR_HAVE_EIGEN
            {"eigen", [](auto* x, auto*, auto* y,
                         int n) { Eigen::Map<Eigen::ArrayXf>(y, n) = Eigen::Map<const Eigen::ArrayXf>(x, n).log(); }},
#endif
#ifdef VORNSR_HAVE_SLEEF
            {"sleef4",
             [](auto* x, auto*, auto* y, int n) {
                 for (int i = 0; i + 4 <= n; i += 4) {
                     _mm_storeu_ps(y + i, Sleef_cinz_logf4_u10sse2(_mm_loadu_ps(x + i)));
                 }
             }},
#ifdef __AVX2__
            {"sleef8",
             [](auto* x, auto*, auto* y, int n) {
                 for (int i = 0; i + 8 <= n; i += 8) {
                     _mm256_storeu_ps(y + i, Sleef_finz_logf8_u10avx2(_mm256_loadu_ps(x + i)));
                 }
             }},
#endif
#ifdef __AVX512F__
            {"sleef16",
             [](auto* x, auto*, auto* y, int n) {
                 for (int i = 0; i + 16 <= n; i += 16) {
                     _mm512_storeu_ps(y + i, Sleef_finz_logf16_u10avx512f(_mm512_loadu_ps(x + i)));
                 }
             }},
#endif
#endif
        });
    add<float, float>(
        "vornsSumLn_32f", Shape::oneToScalar,
        {
            {bench::ours, [](auto* x, auto*, auto* y, int n) { vornsSumLn_32f(x, n, y); }},
            {"plain", [](auto* x, auto*, auto* y, int n) { *y = plain::sumLn(x, n); }},
#ifdef VORNSR_HAVE_EIGEN
            {"eigen", [](auto* x, auto*, auto* y, int n) { *y = Eigen::Map<const Eigen::ArrayXf>(x, n).log().sum(); }},
#endif
        });
}

void addSums() {
    add<float, float>(
        "vornsSum_32f/fast", Shape::oneToScalar,
        {
            {bench::ours, [](auto* x, auto*, auto* y, int n) { vornsSum_32f(x, n, y, 1); }},
            {"plain", [](auto* x, auto*, auto* y, int n) { *y = plain::sum(x, n); }},
#ifdef VORNSR_HAVE_VOLK
            {"volk", [](auto* x, auto*, auto* y, int n) { volk_32f_accumulator_s32f(y, x, static_cast<unsigned>(n)); }},
#endif
#ifdef VORNSR_HAVE_EIGEN
            {"eigen", [](auto* x, auto*, auto* y, int n) { *y = Eigen::Map<const Eigen::ArrayXf>(x, n).sum(); }},
#endif
        });
    add<float, float>("vornsSum_32f/accurate", Shape::oneToScalar,
                      {
                          {bench::ours, [](auto* x, auto*, auto* y, int n) { vornsSum_32f(x, n, y, 2); }},
                          {"plain", [](auto* x, auto*, auto* y, int n) { *y = plain::sumInDouble(x, n); }},
#ifdef VORNSR_HAVE_EIGEN
                          {"eigen",
                           [](auto* x, auto*, auto* y, int n) {
                               *y = static_cast<float>(Eigen::Map<const Eigen::ArrayXf>(x, n).cast<double>().sum());
                           }},
#endif
                      });
}

void addMagnitudes() {
    add<Vorn32fc, float>("vornsMagnitude_32fc", Shape::oneToVector,
                         {
                             {bench::ours, [](auto* z, auto*, auto* y, int n) { vornsMagnitude_32fc(z, y, n); }},
                             {"plain", [](auto* z, auto*, auto* y, int n) { plain::magnitude(z, y, n); }},
#ifdef VORNSR_HAVE_VOLK
                             {"volk",
                              [](auto* z, auto*, auto* y, int n) {
                                  volk_32fc_magnitude_32f(y, reinterpret_cast<const lv_32fc_t*>(z),
                                                          static_cast<unsigned>(n));
                              }},
#endif
                         });
    add<Vorn32sc, Vorn32s>("vornsMagnitude_32sc_Sfs", Shape::oneToVector,
                           {{bench::ours, [](auto* z, auto*, auto* y, int n) { vornsMagnitude_32sc_Sfs(z, y, n, 1); }},
                            {"plain", [](auto* z, auto*, auto* y, int n) { plain::magnitude(z, y, n, 1); }}});
}

const bench::Family reductions([] {
    addLogarithms();
    addSums();
    addMagnitudes();
});

}  // namespace
