// Distances and the sum of indexed rows beside plain loops and, where it has the formula, a linear algebra library of
// templates; the distances of many vectors also beside the scores that have the same sums.
#include <algorithm>
#include <map>
#include <random>
#include <string>
#include <tuple>
#include <utility>

#include "plain/distances.h"
#include "support/bench.h"
#include "vornsr.h"

#if defined(VORNSR_HAVE_EIGEN)
#include <Eigen/Core>
#endif

namespace {

using bench::buffer;
using bench::keep;
using bench::ours;

// Numbers in [low, high). Benchmarks of one size share them.
template <class T>
std::shared_ptr<T[]> random(std::size_t len, double low, double high) {
    static std::map<std::tuple<std::size_t, double, double>, std::shared_ptr<T[]>> all;
    auto& block = all[{len, low, high}];
    if (block == nullptr) {
        block = buffer<T>(len);
        auto state = static_cast<std::uint64_t>(static_cast<double>(len) + 1024 * (low + high));
        for (std::size_t i = 0; i < len; ++i) {
            state = state * 6364136223846793005u + 1442695040888963407u;
            block[i] = static_cast<T>(low + (high - low) * 0x1p-32 * static_cast<double>(state >> 32));
        }
    }
    return block;
}

// Feature vectors of recognisers, and what fills the first-level cache, the last-level cache and more. A kind
// "-apart" has the vectors on addresses that are no multiple of 16.
struct Size {
    const char* name;
    int elements;
    std::size_t bytes;
};
const Size sizes[] = {{"13", 13, 0},
                      {"39", 39, 0},
                      {"120", 120, 0},
                      {"L1", 0, bench::inL1},
                      {"LLC", 0, bench::inLastLevel},
                      {"memory", 0, std::size_t{128} << 20}};
int elementsOf(const Size& size, std::size_t perElement) {
    return size.elements != 0 ? size.elements : static_cast<int>(size.bytes / perElement);
}

// call(x, m, v, len) for ours and for each peer.
template <class T, class Ours, class... Peers>
void addSingle(const char* name, Ours callOurs, std::pair<const char*, Peers>... peers) {
    for (const Size& size : sizes) {
        const int len = elementsOf(size, 3 * sizeof(T));
        const auto n = static_cast<std::size_t>(len) + 1;
        const auto x = random<T>(n, -90, 90), m = random<T>(n, -80, 70), v = random<T>(n, 1, 60);
        for (int apart : {0, 1}) {
            const std::string kind = std::string(size.name) + (apart ? "-apart" : "");
            bench::add(name, kind, ours, len, [=] {
                auto result = callOurs(x.get() + apart, m.get() + apart, v.get() + apart, len);
                keep(&result);
            });
            (bench::add(name, kind, peers.first, len,
                        [=, call = peers.second] {
                            auto result = call(x.get() + apart, m.get() + apart, v.get() + apart, len);
                            keep(&result);
                        }),
             ...);
        }
    }
}
template <class T, class R>
auto exported(VornStatus (*function)(const T*, const T*, const T*, int, R*)) {
    return [=](const T* x, const T* m, const T* v, int len) {
        R result;
        function(x, m, v, len, &result);
        return result;
    };
}
template <class Call>
std::pair<const char*, Call> peer(const char* name, Call call) {
    return {name, call};
}
#define PLAIN_SINGLE(...) peer("plain", [](auto* x, auto* m, auto* v, int n) { return __VA_ARGS__; })

#if defined(VORNSR_HAVE_EIGEN)
const auto eigen = [](auto* x, auto* m, auto* v, int n) {
    using T = std::remove_cvref_t<decltype(*x)>;
    using Array = Eigen::Map<const Eigen::Array<T, Eigen::Dynamic, 1>>;
    return T(((Array(x, n) - Array(m, n)).square() * Array(v, n)).sum());
};
#define EIGEN_SINGLE , peer("eigen", eigen)
#else
#define EIGEN_SINGLE
#endif

// Rows of len columns; scores: the function with the same sums and a constant beside.
template <class T>
struct Matrix {
    int len, height;
    std::shared_ptr<T[]> rows, vars, one, dst;
};
template <class T, class... Peers>
void addMany(const char* name, std::pair<const char*, Peers>... peers) {
    for (int len : {13, 26, 39, 40}) {
        for (int height : {1, 8, 128, 1024, 65536}) {
            const auto n = static_cast<std::size_t>(len) * static_cast<std::size_t>(height);
            const Matrix<T> data{len,
                                 height,
                                 random<T>(n, -10, 10),
                                 random<T>(n, 0.1, 2),
                                 random<T>(static_cast<std::size_t>(len), -10, 10),
                                 buffer<T>(static_cast<std::size_t>(height))};
            (bench::add(name, std::to_string(len) + "x" + std::to_string(height), peers.first, height,
                        [=, call = peers.second] {
                            call(data.rows.get(), data.vars.get(), data.one.get(), data.len, data.dst.get(),
                                 data.height);
                            keep(data.dst.get());
                        }),
             ...);
        }
    }
}
#define CALL(name, ...) \
    peer(name, [](auto* rows, [[maybe_unused]] auto* vars, auto* one, int len, auto* dst, int height) { __VA_ARGS__; })

// call(mean1, var1, mean2, var2, len)
template <class Ours, class Plain>
void addGaussians(const char* name, Ours callOurs, Plain callPlain) {
    for (const Size& size : sizes) {
        const int len = elementsOf(size, 4 * sizeof(float));
        const auto n = static_cast<std::size_t>(len);
        const auto mean1 = random<float>(n, 0.1, 20), mean2 = random<float>(n, 1, 21), var1 = random<float>(n, 0.1, 4),
                   var2 = random<float>(n, 0.2, 5);
        bench::add(name, size.name, ours, len, [=] {
            auto result = callOurs(mean1.get(), var1.get(), mean2.get(), var2.get(), len);
            keep(&result);
        });
        bench::add(name, size.name, "plain", len, [=] {
            auto result = callPlain(mean1.get(), var1.get(), mean2.get(), var2.get(), len);
            keep(&result);
        });
    }
}
#define GAUSSIANS(R, function, ...)                                                  \
    [](auto* mean1, auto* var1, auto* mean2, auto* var2, int len) {                  \
        R result;                                                                    \
        function(mean1, var1, mean2, var2, len, &result __VA_OPT__(, ) __VA_ARGS__); \
        return result;                                                               \
    }
#define PLAIN_GAUSSIANS(function, ...)                                             \
    [](auto* mean1, auto* var1, auto* mean2, auto* var2, int len) {                \
        return function(mean1, var1, mean2, var2, len __VA_OPT__(, ) __VA_ARGS__); \
    }

// Some rows of matrices that fill a first-level cache, a last-level cache, and more.
void addIndexedRows() {
    for (int len : {1, 4, 13, 39, 64, 256, 2048}) {
        for (int rows : {1, 4, 12, 50}) {
            for (const std::size_t bytes : {bench::inL1, bench::inLastLevel, std::size_t{128} << 20}) {
                const int height = static_cast<int>(bytes / sizeof(float) / static_cast<std::size_t>(len));
                if (height < 8) continue;
                const auto src = random<float>(bytes / sizeof(float), -1, 1);
                // Runs of calls that visit the whole matrix.
                const int runs = std::max(1, std::min(height / rows, 4096));
                auto ind = buffer<Vorn32s>(static_cast<std::size_t>(runs) * static_cast<std::size_t>(rows));
                auto addInd = buffer<Vorn16u>(static_cast<std::size_t>(runs) * static_cast<std::size_t>(rows));
                std::minstd_rand generator(7);
                for (int i = 0; i < runs * rows; ++i) {
                    const int number = static_cast<int>(generator() % static_cast<unsigned>(height));
                    addInd[i] = static_cast<Vorn16u>(std::min(number, i % 1000));
                    ind[i] = number - addInd[i];
                }
                const auto dst = buffer<float>(static_cast<std::size_t>(len));
                const std::string size = std::to_string(len) + "x" + std::to_string(rows) +
                                         (bytes == bench::inL1          ? "L1"
                                          : bytes == bench::inLastLevel ? "LLC"
                                                                        : "memory");
                auto next = std::make_shared<int>(0);
                const auto run = [=](const auto& call) {
                    const int first = *next * rows;
                    *next = *next + 1 < runs ? *next + 1 : 0;
                    call(ind.get() + first, addInd.get() + first);
                    keep(dst.get());
                };
                bench::add("AddNRows_32f_D2", size, ours, len * rows, [=] {
                    run([&](auto* i, auto* a) {
                        vornsAddNRows_32f_D2(src.get(), height, 0, len, i, a, rows, dst.get(), len, 0.5f);
                    });
                });
                bench::add("AddNRows_32f_D2", size, "plain", len * rows, [=] {
                    run([&](auto* i, auto* a) { plain::addRows(src.get(), len, i, a, rows, dst.get(), len, 0.5f); });
                });
            }
        }
    }
}

const bench::Family family([] {
    addSingle<float>("MahDistSingle_32f", exported(vornsMahDistSingle_32f),
                     PLAIN_SINGLE(plain::mahalanobis(x, m, v, n)) EIGEN_SINGLE);
    addSingle<double>("MahDistSingle_64f", exported(vornsMahDistSingle_64f),
                      PLAIN_SINGLE(plain::mahalanobis(x, m, v, n)) EIGEN_SINGLE);
    addSingle<float>("MahDistSingle_32f64f", exported(vornsMahDistSingle_32f64f),
                     PLAIN_SINGLE(plain::mahalanobisWidened(x, m, v, n)));
    addSingle<Vorn16s>("MahDistSingle_16s32f", exported(vornsMahDistSingle_16s32f),
                       PLAIN_SINGLE(plain::mahalanobis(x, m, v, n)));
    addSingle<Vorn16s>(
        "MahDistSingle_16s32s_Sfs",
        [](auto* x, auto* m, auto* v, int n) {
            Vorn32s result;
            vornsMahDistSingle_16s32s_Sfs(x, m, v, n, &result, 7);
            return result;
        },
        PLAIN_SINGLE(plain::mahalanobis(x, m, v, n, 7)));
    addMany<float>("MahDist_32f_D2", CALL(ours, vornsMahDist_32f_D2(rows, len, one, vars, len, dst, height)),
                   CALL("plain", plain::mahalanobisOfFrames(rows, len, one, vars, len, dst, height)),
                   CALL("score", vornsLogGauss_32f_D2(rows, len, one, vars, len, dst, height, -50)));
    addMany<double>("MahDist_64f_D2", CALL(ours, vornsMahDist_64f_D2(rows, len, one, vars, len, dst, height)),
                    CALL("plain", plain::mahalanobisOfFrames(rows, len, one, vars, len, dst, height)),
                    CALL("score", vornsLogGauss_64f_D2(rows, len, one, vars, len, dst, height, -50)));
    addMany<float>("MahDistMultiMix_32f_D2",
                   CALL(ours, vornsMahDistMultiMix_32f_D2(rows, vars, len, one, len, dst, height)),
                   CALL("plain", plain::mahalanobisOfGaussians(rows, vars, len, one, len, dst, height)),
                   CALL("score", vornsLogGaussMultiMix_32f_D2(rows, vars, len, one, len, dst, height)));
    addMany<double>("MahDistMultiMix_64f_D2",
                    CALL(ours, vornsMahDistMultiMix_64f_D2(rows, vars, len, one, len, dst, height)),
                    CALL("plain", plain::mahalanobisOfGaussians(rows, vars, len, one, len, dst, height)),
                    CALL("score", vornsLogGaussMultiMix_64f_D2(rows, vars, len, one, len, dst, height)));
    addGaussians("BhatDist_32f", GAUSSIANS(Vorn32f, vornsBhatDist_32f), PLAIN_GAUSSIANS(plain::bhattacharyya));
    addGaussians("BhatDist_32f64f", GAUSSIANS(Vorn64f, vornsBhatDist_32f64f),
                 PLAIN_GAUSSIANS(plain::bhattacharyyaWidened));
    addGaussians("BhatDistSLog_32f", GAUSSIANS(Vorn32f, vornsBhatDistSLog_32f, 3.0f, 4.0f),
                 PLAIN_GAUSSIANS(plain::bhattacharyyaOfSums, 7.0f));
    addGaussians("BhatDistSLog_32f64f", GAUSSIANS(Vorn64f, vornsBhatDistSLog_32f64f, 3.0f, 4.0f),
                 PLAIN_GAUSSIANS(plain::bhattacharyyaOfSumsWidened, 7.0f));
    addIndexedRows();
});

}  // namespace
