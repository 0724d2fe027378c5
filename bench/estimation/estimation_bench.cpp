// Column statistics and the constant of a Gaussian beside plain loops and Eigen.
#include <random>
#include <string>

#ifdef VORNSR_HAVE_EIGEN
#include <Eigen/Dense>
#endif

#include "plain/features.h"
#include "support/bench.h"
#include "vornsr.h"

namespace {

std::shared_ptr<float[]> frames(std::size_t len) {
    auto block = bench::buffer<float>(len);
    std::mt19937 generator(static_cast<unsigned>(len));
    std::uniform_real_distribution<float> uniform(-10, 10);
    for (std::size_t i = 0; i < len; ++i) block[i] = uniform(generator);
    return block;
}

void addMeanVar(int width, std::size_t bytes, const std::string& place) {
    const int height = static_cast<int>(bytes / sizeof(float)) / width;
    const std::size_t len = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    auto src = frames(len), weight = frames(static_cast<std::size_t>(height));
    auto mean = bench::buffer<float>(static_cast<std::size_t>(width)),
         var = bench::buffer<float>(static_cast<std::size_t>(width));
    const std::string size = std::to_string(width) + " " + place;
    const auto items = static_cast<std::int64_t>(len);
    const auto compare = [&](const std::string& name, const std::string& peer, auto call) {
        bench::add(name, size, peer, items, [=] {
            call();
            bench::keep(mean.get());
            bench::keep(var.get());
        });
    };
    const std::string plain = "vornsMeanVarColumn_32f_D2", weighted = "vornsWeightedMeanVarColumn_32f_D2";
    compare(plain, bench::ours,
            [=] { vornsMeanVarColumn_32f_D2(src.get(), height, width, mean.get(), var.get(), width); });
    compare(plain, "plain", [=] { plain::meanVarColumn(src.get(), height, width, mean.get(), var.get(), width); });
#ifdef VORNSR_HAVE_EIGEN
    compare(plain, "eigen", [=] {
        using Matrix = Eigen::Map<const Eigen::Matrix<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>>;
        const Matrix x(src.get(), height, width);
        Eigen::Map<Eigen::RowVectorXf> m(mean.get(), width), v(var.get(), width);
        m = x.colwise().mean();
        v = (x.colwise().squaredNorm().array() - static_cast<float>(height) * m.array().square()) /
            static_cast<float>(height - 1);
    });
#endif
    compare(weighted, bench::ours, [=] {
        vornsWeightedMeanVarColumn_32f_D2(src.get(), width, weight.get(), height, mean.get(), var.get(), width);
    });
    compare(weighted, "plain", [=] {
        plain::weightedMeanVarColumn(src.get(), width, weight.get(), height, mean.get(), var.get(), width);
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
    for (int width : {13, 39, 64, 256}) {
        addMeanVar(width, bench::inL1, "L1");
        addMeanVar(width, bench::inLastLevel, "last level");
    }
    addMeanVar(39, bench::inMemory / 4, "memory");
});

}  // namespace
