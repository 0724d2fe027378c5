// Column statistics and the constant of a Gaussian beside plain loops and Eigen.
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#ifdef VORNSR_HAVE_EIGEN
#include <Eigen/Dense>
#endif

#include "plain/column_statistics.h"
#include "plain/features.h"
#include "support/bench.h"
#include "vornsr.h"

namespace {

constexpr std::size_t most = bench::inMemory / 4;

// One block of frames a type for all benchmarks, made when the first of them runs.
template <class T>
const T* frames() {
    static const auto block = [] {
        constexpr std::size_t len = most / sizeof(T) + 1;
        auto made = bench::buffer<T>(len);
        std::minstd_rand generator(1);
        constexpr double reach = std::is_integral_v<T> ? 30000 : 10;
        for (std::size_t i = 0; i < len; ++i) {
            made[i] = static_cast<T>(static_cast<double>(generator()) * (2 * reach / 2147483647.0) - reach);
        }
        return made;
    }();
    return block.get();
}

// A matrix and what its statistics need. The rows of the list stand one element off the alignment.
template <class S, class M, class V = M>
struct Data {
    int height, width;
    const S *src, *weight;
    const M* givenMean;
    std::vector<const S*> offRows;
    std::vector<M> meanValues;
    std::vector<V> varValues;
    M* mean;
    V* var;

    Data(int height_, int width_)
        : height(height_),
          width(width_),
          src(frames<S>()),
          weight(frames<S>()),
          givenMean(frames<M>()),
          meanValues(static_cast<std::size_t>(width)),
          varValues(static_cast<std::size_t>(width)),
          mean(meanValues.data()),
          var(varValues.data()) {
        for (std::ptrdiff_t i = 0; i < height; ++i) offRows.push_back(src + i * width + 1);
    }
};
template <class S, class M, class V = M>
struct Problem {
    int height, width;
    std::shared_ptr<std::unique_ptr<Data<S, M, V>>> data = std::make_shared<std::unique_ptr<Data<S, M, V>>>();

    Problem(int width_, std::size_t bytes) : height(static_cast<int>(bytes / sizeof(S)) / width_), width(width_) {}
    void add(const std::string& name, const std::string& place, const std::string& peer,
             void (*call)(const Data<S, M, V>&)) const {
        bench::add(name, std::to_string(width) + " " + place, peer, std::int64_t{height} * width, [*this, call] {
            if (*data == nullptr) *data = std::make_unique<Data<S, M, V>>(height, width);
            call(**data);
            bench::keep((*data)->mean);
            bench::keep((*data)->var);
        });
    }
};

#define OURS(function, ...) d.add(#function, place, bench::ours, [](const auto& a) { function(__VA_ARGS__); })
#define PLAIN(function, loop, ...) d.add(#function, place, "plain", [](const auto& a) { plain::loop(__VA_ARGS__); })
#ifdef VORNSR_HAVE_EIGEN
template <class T>
using Matrix = Eigen::Map<const Eigen::Matrix<T, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>>;
template <class T>
using RowVector = Eigen::Map<Eigen::Matrix<T, 1, Eigen::Dynamic>>;
template <class T>
using ConstRowVector = Eigen::Map<const Eigen::Matrix<T, 1, Eigen::Dynamic>>;
template <class T>
Matrix<T> matrix(const Data<T, T>& a) {
    return Matrix<T>(a.src, a.height, a.width);
}
template <class T>
auto weights(const Data<T, T>& a) {
    return Eigen::Map<const Eigen::Matrix<T, Eigen::Dynamic, 1>>(a.weight, a.height);
}
#define EIGEN(function, ...)                                                  \
    d.add(#function, place, "eigen", [](const auto& a) {                      \
        using E = std::remove_cvref_t<decltype(a.src[0])>;                    \
        const auto x = matrix<E>(a);                                          \
        [[maybe_unused]] RowVector<E> m(a.mean, a.width), v(a.var, a.width);  \
        [[maybe_unused]] const ConstRowVector<E> given(a.givenMean, a.width); \
        [[maybe_unused]] const E h = static_cast<E>(a.height);                \
        __VA_ARGS__;                                                          \
    })
#else
#define EIGEN(...)
#endif

void addSingles(int width, std::size_t bytes, const std::string& place) {
    const Problem<float, float> d(width, bytes);
    OURS(vornsMeanColumn_32f_D2, a.src, a.height, a.width, a.mean, a.width);
    PLAIN(vornsMeanColumn_32f_D2, meanColumn, a.src, a.height, a.width, a.mean, a.width);
    EIGEN(vornsMeanColumn_32f_D2, m = x.colwise().mean());
    OURS(vornsVarColumn_32f_D2, a.src, a.height, a.width, a.givenMean, a.var, a.width);
    PLAIN(vornsVarColumn_32f_D2, varColumn, a.src, a.height, a.width, a.givenMean, a.var, a.width);
    EIGEN(vornsVarColumn_32f_D2, v = (x.colwise().squaredNorm().array() - h * given.array().square()) / (h - 1));
    OURS(vornsMeanVarColumn_32f_D2, a.src, a.height, a.width, a.mean, a.var, a.width);
    PLAIN(vornsMeanVarColumn_32f_D2, meanVarColumn, a.src, a.height, a.width, a.mean, a.var, a.width);
    EIGEN(vornsMeanVarColumn_32f_D2, m = x.colwise().mean();
          v = (x.colwise().squaredNorm().array() - h * m.array().square()) / (h - 1));
}

#define ADD_WEIGHTED(code)                                                                                           \
    OURS(vornsWeightedMeanColumn_##code##_D2, a.src, a.width, a.weight, a.height, a.mean, a.width);                  \
    PLAIN(vornsWeightedMeanColumn_##code##_D2, weightedMeanColumn, a.src, a.width, a.weight, a.height, a.mean,       \
          a.width);                                                                                                  \
    EIGEN(vornsWeightedMeanColumn_##code##_D2, m.noalias() = weights<E>(a).transpose() * x);                         \
    OURS(vornsWeightedVarColumn_##code##_D2, a.src, a.width, a.weight, a.height, a.givenMean, a.var, a.width);       \
    PLAIN(vornsWeightedVarColumn_##code##_D2, weightedVarColumn, a.src, a.width, a.weight, a.height, a.givenMean,    \
          a.var, a.width);                                                                                           \
    OURS(vornsWeightedMeanVarColumn_##code##_D2, a.src, a.width, a.weight, a.height, a.mean, a.var, a.width);        \
    PLAIN(vornsWeightedMeanVarColumn_##code##_D2, weightedMeanVarColumn, a.src, a.width, a.weight, a.height, a.mean, \
          a.var, a.width)

template <class T>
void addWeighted(int width, std::size_t bytes, const std::string& place) {
    const Problem<T, T> d(width, bytes);
    if constexpr (std::is_same_v<T, float>) {
        ADD_WEIGHTED(32f);
    } else {
        ADD_WEIGHTED(64f);
    }
}

void addShorts(int width, std::size_t bytes, const std::string& place) {
    {
        const Problem<Vorn16s, Vorn16s> d(width, bytes);
        OURS(vornsMeanColumn_16s_D2, a.src, a.height, a.width, a.mean, a.width);
        PLAIN(vornsMeanColumn_16s_D2, meanColumn, a.src, a.height, a.width, a.mean, a.width);
        OURS(vornsVarColumn_16s_D2Sfs, a.src, a.height, a.width, a.givenMean, a.var, a.width, 0);
        PLAIN(vornsVarColumn_16s_D2Sfs, varColumn, a.src, a.height, a.width, a.givenMean, a.var, a.width);
        OURS(vornsMeanVarColumn_16s_D2Sfs, a.src, a.height, a.width, a.mean, a.var, a.width, 0);
        PLAIN(vornsMeanVarColumn_16s_D2Sfs, meanVarColumn, a.src, a.height, a.width, a.mean, a.var, a.width);
        OURS(vornsMeanColumn_16s_D2L, a.offRows.data(), a.height, a.mean, a.width);
        PLAIN(vornsMeanColumn_16s_D2L, meanColumnExact, a.src + 1, a.height, a.width, a.mean, a.width);
        OURS(vornsVarColumn_16s_D2LSfs, a.offRows.data(), a.height, a.givenMean, a.var, a.width, 0);
        PLAIN(vornsVarColumn_16s_D2LSfs, varColumnExact, a.src + 1, a.height, a.width, a.givenMean, a.var, a.width);
        OURS(vornsMeanVarColumn_16s_D2LSfs, a.offRows.data(), a.height, a.mean, a.var, a.width, 0);
        PLAIN(vornsMeanVarColumn_16s_D2LSfs, meanVarColumnExact, a.src + 1, a.height, a.width, a.mean, a.var, a.width);
    }
    {
        const Problem<Vorn16s, Vorn32s> d(width, bytes);
        OURS(vornsMeanVarColumn_16s32s_D2Sfs, a.src, a.height, a.width, a.mean, a.var, a.width, 0);
        PLAIN(vornsMeanVarColumn_16s32s_D2Sfs, meanVarColumn, a.src, a.height, a.width, a.mean, a.var, a.width);
    }
    {
        const Problem<Vorn16s, Vorn16s, Vorn32s> d(width, bytes);
        OURS(vornsMeanVarColumn_16s16s32s_D2, a.src, a.height, a.width, a.mean, a.var, a.width);
        PLAIN(vornsMeanVarColumn_16s16s32s_D2, meanVarColumn, a.src, a.height, a.width, a.mean, a.var, a.width);
    }
}

// What memory and caches give at all: one sum over as many bytes.
void addReading(std::size_t bytes, const std::string& place) {
    const int len = static_cast<int>(bytes / sizeof(float));
    auto sum = bench::buffer<float>(1);
    bench::add("vornsSum_32f", place, bench::ours, len, [=] {
        vornsSum_32f(frames<float>(), len, sum.get(), 0);
        bench::keep(sum.get());
    });
}

void addGaussConstant(int len) {
    auto var = bench::buffer<float>(static_cast<std::size_t>(len)), dst = bench::buffer<float>(1);
    for (int i = 0; i < len; ++i) var[i] = 0.01f + static_cast<float>(i % 100);
    const std::string name = "vornsUpdateGConst_DirectVar_32f", size = std::to_string(len);
    bench::add(name, size, bench::ours, len, [=] {
        vornsUpdateGConst_DirectVar_32f(var.get(), len, dst.get());
        bench::keep(dst.get());
    });
    bench::add(name, size, "plain", len, [=] {
        dst[0] = plain::gaussConstant(var.get(), len);
        bench::keep(dst.get());
    });
}

const bench::Family estimation([] {
    for (int len : {13, 39, 1000}) addGaussConstant(len);
    struct Place {
        const char* name;
        std::size_t bytes;
        std::vector<int> widths;
    };
    for (const auto& [name, bytes, widths] :
         {Place{"L1", bench::inL1, {13, 39, 64, 256}}, Place{"last level", bench::inLastLevel, {13, 39, 64, 256}},
          Place{"memory", most, {39, 256}}}) {
        for (int width : widths) {
            addSingles(width, bytes, name);
            addWeighted<float>(width, bytes, name);
            addWeighted<double>(width, bytes, name);
            addShorts(width, bytes, name);
        }
        addReading(bytes, name);
    }
});

}  // namespace
