// Accumulators and covariance-like matrices beside plain loops, Eigen and the symmetric product of OpenBLAS.
#include <random>
#include <string>
#include <type_traits>

#ifdef VORNSR_HAVE_OPENBLAS
#include <cblas.h>
#endif
#ifdef VORNSR_HAVE_EIGEN
#include <Eigen/Dense>
#endif

#include "plain/accumulate.h"
#include "support/bench.h"
#include "vornsr.h"

namespace {

template <class T>
std::shared_ptr<T[]> values(std::size_t len) {
    auto block = bench::buffer<T>(len);
    std::minstd_rand generator(static_cast<unsigned>(len + 1));
    for (std::size_t i = 0; i < len; ++i) block[i] = static_cast<T>(static_cast<int>(generator() % 2001) - 1000) / T(8);
    return block;
}

// One member beside its peers: the results are kept after each call.
template <class Result>
auto comparison(const std::string& name, const std::string& size, std::int64_t items, std::shared_ptr<Result[]> first,
                std::shared_ptr<Result[]> second) {
    return [=](const std::string& peer, auto call) {
        bench::add(name, size, peer, items, [=] {
            call();
            bench::keep(first.get());
            bench::keep(second.get());
        });
    };
}

template <class T>
void addMeanVarAcc(std::size_t len, const std::string& size) {
    constexpr bool single = std::is_same_v<T, float>;
    auto src = values<T>(len), mean = values<T>(len), meanAcc = values<T>(len), varAcc = values<T>(len);
    const int n = static_cast<int>(len);
    const auto compare = comparison(single ? "vornsMeanVarAcc_32f" : "vornsMeanVarAcc_64f", size,
                                    static_cast<std::int64_t>(len), meanAcc, varAcc);
    compare(bench::ours, [=] {
        if constexpr (single) {
            vornsMeanVarAcc_32f(src.get(), mean.get(), meanAcc.get(), varAcc.get(), n, 0.5f);
        } else {
            vornsMeanVarAcc_64f(src.get(), mean.get(), meanAcc.get(), varAcc.get(), n, 0.5);
        }
    });
    compare("plain", [=] { plain::meanVarAcc(src.get(), mean.get(), meanAcc.get(), varAcc.get(), n, T(0.5)); });
#ifdef VORNSR_HAVE_EIGEN
    using Array = Eigen::Array<T, Eigen::Dynamic, 1>;
    compare("eigen", [=] {
        const Eigen::Map<const Array> x(src.get(), n), m(mean.get(), n);
        Eigen::Map<Array>(meanAcc.get(), n) += (x - m) * T(0.5);
        Eigen::Map<Array>(varAcc.get(), n) += (x - m).square() * T(0.5);
    });
#endif
}

void addNewVar(std::size_t len, const std::string& size) {
    const int n = static_cast<int>(len);
    const auto items = static_cast<std::int64_t>(len);
    auto mean = values<float>(len), sumSq = values<float>(len), dst = values<float>(len);
    const auto mixed = comparison("vornsNewVar_32f", size, items, dst, dst);
    mixed(bench::ours, [=] { vornsNewVar_32f(mean.get(), sumSq.get(), dst.get(), n, 100, 0.01f); });
    mixed("plain", [=] { plain::newVar(mean.get(), sumSq.get(), dst.get(), n, 100, 0.01f); });
    // In place the values would run away: the count is one, and the mean nothing beside the sum.
    auto zeros = bench::buffer<float>(len);
    const auto inPlace = comparison("vornsNewVar_32f_I", size, items, dst, dst);
    inPlace(bench::ours, [=] { vornsNewVar_32f_I(zeros.get(), dst.get(), n, 1, 1); });
    inPlace("plain", [=] { plain::newVarInPlace(zeros.get(), dst.get(), n, 1, 1); });
    auto means = values<std::int32_t>(len + 1), sums = values<std::int32_t>(len + 1),
         vars = values<std::int32_t>(len + 1);
    for (const int at : {0, 1}) {
        const auto whole =
            comparison(at == 0 ? "vornsNewVar_32s_Sfs" : "vornsNewVar_32s_Sfs truncated", size, items, vars, vars);
        whole(bench::ours,
              [=] { vornsNewVar_32s_Sfs(means.get() + at, sums.get() + at, vars.get() + at, n, 1, 100, 0.01f); });
        whole("plain", [=] { plain::newVar(means.get() + at, sums.get() + at, vars.get() + at, n, 0.5f, 100, 0.01f); });
    }
}

template <class T>
void addSumMeanVar(int width, std::size_t bytes, const std::string& place) {
    constexpr bool single = std::is_same_v<T, float>;
    const int height = static_cast<int>(bytes / sizeof(T)) / width;
    const std::size_t len = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    auto src = values<T>(len);
    auto sum = values<float>(static_cast<std::size_t>(width)), sumSq = values<float>(static_cast<std::size_t>(width));
    const auto compare = comparison(single ? "vornsSumMeanVar_32f_I" : "vornsSumMeanVar_16s32f_I",
                                    std::to_string(width) + " " + place, static_cast<std::int64_t>(len), sum, sumSq);
    compare(bench::ours, [=] {
        if constexpr (single) {
            vornsSumMeanVar_32f_I(src.get(), width, height, sum.get(), sumSq.get(), width);
        } else {
            vornsSumMeanVar_16s32f_I(src.get(), width, height, sum.get(), sumSq.get(), width);
        }
    });
    compare("plain", [=] { plain::sumMeanVar(src.get(), width, height, sum.get(), sumSq.get(), width); });
    if constexpr (single) {
        // How fast the elements can be read at all.
        compare("read", [=] { vornsSum_32f(src.get(), static_cast<int>(len), sum.get(), 0); });
#ifdef VORNSR_HAVE_EIGEN
        compare("eigen", [=] {
            using Matrix = Eigen::Map<const Eigen::Matrix<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>>;
            const Matrix x(src.get(), height, width);
            Eigen::Map<Eigen::RowVectorXf>(sum.get(), width) += x.colwise().sum();
            Eigen::Map<Eigen::RowVectorXf>(sumSq.get(), width) += x.colwise().squaredNorm();
        });
#endif
    }
}

// The widths of features, and rows by which the step makes whole groups of four: frame by frame, if they are many.
template <class T>
void addCovariance(int width, int step, int height, double val) {
    constexpr bool single = std::is_same_v<T, float>;
    auto src = values<T>(static_cast<std::size_t>(step) * static_cast<std::size_t>(height));
    auto mean = values<T>(static_cast<std::size_t>(width));
    const auto square = static_cast<std::size_t>(step) * static_cast<std::size_t>(step);
    auto dst = bench::buffer<double>(square), sums = bench::buffer<double>(square);
    auto deviations = bench::buffer<double>(static_cast<std::size_t>(width));
    const std::string name = single ? "vornsAccCovarianceMatrix_32f64f_D2" : "vornsAccCovarianceMatrix_16s64f_D2";
    const std::string size = std::to_string(width) + " of " + std::to_string(step) + ", " + std::to_string(height) +
                             (val == 1 ? " val 1" : "");
    const auto compare = comparison(name, size, std::int64_t{height} * width * (width + 1) / 2, dst, sums);
    compare(bench::ours, [=] {
        if constexpr (single) {
            vornsAccCovarianceMatrix_32f64f_D2(src.get(), step, height, mean.get(), dst.get(), width, step, val);
        } else {
            vornsAccCovarianceMatrix_16s64f_D2(src.get(), step, height, mean.get(), dst.get(), width, step, val);
        }
    });
    compare("plain", [=] {
        plain::accCovariance(src.get(), step, height, mean.get(), dst.get(), width, val, sums.get(), deviations.get());
    });
#ifdef VORNSR_HAVE_OPENBLAS
    // The usual covariance, with each column's own mean, in any order and with fused operations; with and without the
    // widened deviations that it reads.
    auto centred = bench::buffer<double>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    const auto product = [=] {
        cblas_dsyrk(CblasRowMajor, CblasUpper, CblasTrans, width, height, val, centred.get(), width, 1.0, dst.get(),
                    step);
    };
    openblas_set_num_threads(1);
    plain::centred(src.get(), step, height, mean.get(), centred.get(), width);
    compare("openblas", [=] {
        plain::centred(src.get(), step, height, mean.get(), centred.get(), width);
        product();
    });
    compare("openblas product", product);
#endif
}

const bench::Family accumulate([] {
    for (const std::size_t len : {7, 39}) {
        addMeanVarAcc<float>(len, std::to_string(len));
        addMeanVarAcc<double>(len, std::to_string(len));
        addNewVar(len, std::to_string(len));
    }
    for (const auto& [place, bytes] :
         {std::pair{"L1", bench::inL1}, {"last level", bench::inLastLevel}, {"memory", bench::inMemory / 8}}) {
        addMeanVarAcc<float>(bytes / 16, place);
        addMeanVarAcc<double>(bytes / 32, place);
        addNewVar(bytes / 12, place);
        for (int width : {3, 13, 39, 64, 256}) {
            addSumMeanVar<float>(width, bytes, place);
            addSumMeanVar<std::int16_t>(width, bytes, place);
        }
    }
    for (int height : {1, 10, 100, 1000, 100000}) {
        addCovariance<float>(39, 39, height, 0.3);
        addCovariance<std::int16_t>(39, 39, height, 0.3);
    }
    for (const auto& [width, step] : {std::pair{13, 13}, {39, 40}, {64, 65}, {64, 64}}) {
        addCovariance<float>(width, step, 100000, 0.3);
        addCovariance<std::int16_t>(width, step, 100000, 0.3);
    }
    addCovariance<float>(39, 40, 100000, 1);
    addCovariance<float>(200, 201, 2000, 0.3);
});

}  // namespace
