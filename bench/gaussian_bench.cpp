// Gaussian scores beside the plain loops.
#include <algorithm>
#include <random>
#include <string>

#include "plain/gaussian.h"
#include "support/bench.h"
#include "vornsr.h"

namespace {

// Numbers of the size that features and inverse variances have.
template <class T>
std::shared_ptr<T[]> random(std::size_t len, double low, double high) {
    auto block = bench::buffer<T>(len);
    std::mt19937 generator(static_cast<unsigned>(len));
    std::uniform_real_distribution<double> uniform(low, high);
    for (std::size_t i = 0; i < len; ++i) block[i] = static_cast<T>(uniform(generator));
    return block;
}

void addMultiMix32f(int len, int height) {
    const std::size_t elements = static_cast<std::size_t>(len) * static_cast<std::size_t>(height);
    auto mean = random<float>(elements, -10, 10), var = random<float>(elements, 0.1, 2);
    auto src = random<float>(static_cast<std::size_t>(len), -10, 10);
    auto val = random<float>(static_cast<std::size_t>(height), -100, -50);
    const std::string name = "vornsLogGaussMultiMix_32f_D2", size = std::to_string(len) + "x" + std::to_string(height);
    bench::add(name, size, bench::ours, height, [=] {
        vornsLogGaussMultiMix_32f_D2(mean.get(), var.get(), len, src.get(), len, val.get(), height);
        bench::keep(val.get());
    });
    bench::add(name, size, "plain", height, [=] {
        plain::multiMix(mean.get(), var.get(), len, src.get(), len, val.get(), height);
        bench::keep(val.get());
    });
    bench::add(name, size, "plain-baseline", height, [=] {
        plain_baseline::multiMix(mean.get(), var.get(), len, src.get(), len, val.get(), height);
        bench::keep(val.get());
    });
}

void addMixture32f(int len, int height) {
    const std::size_t elements = static_cast<std::size_t>(len) * static_cast<std::size_t>(height);
    auto mean = random<float>(elements, -10, 10), var = random<float>(elements, 0.1, 2);
    auto src = random<float>(static_cast<std::size_t>(len), -10, 10);
    auto val = random<float>(static_cast<std::size_t>(height), -100, -50);
    auto result = bench::buffer<float>(1);
    const std::string name = "vornsLogGaussMixture_32f_D2", size = std::to_string(len) + "x" + std::to_string(height);
    bench::add(name, size, bench::ours, height, [=] {
        vornsLogGaussMixture_32f_D2(src.get(), mean.get(), var.get(), height, len, len, val.get(), result.get());
        bench::keep(result.get());
    });
    bench::add(name, size, "scores-only", height, [=] {
        vornsLogGaussMultiMix_32f_D2(mean.get(), var.get(), len, src.get(), len, val.get(), height);
        bench::keep(val.get());
    });
    bench::add(name, size, "plain", height, [=] {
        *result.get() = plain::mixture(src.get(), mean.get(), var.get(), height, len, len, val.get());
        bench::keep(result.get());
    });
}

const bench::Family gaussians([] {
    for (int len : {13, 26, 39, 40}) {
        for (int height : {8, 128, 1024, 8192, 65536}) addMultiMix32f(len, height);
        for (int height : {8, 64, 1024}) addMixture32f(len, height);
    }
});

}  // namespace
