// Gaussian scores beside the plain loops, Eigen, and BLAS used as toolkits use it: with the products of the model and
// the squares of the frame made beforehand, val - S / 2 = c + x^2 . (-v / 2) + x . (m v).
#include <algorithm>
#include <random>
#include <string>

#include "plain/gaussian.h"
#include "support/bench.h"
#include "vornsr.h"

#if defined(VORNSR_HAVE_EIGEN)
#include <Eigen/Core>
#endif
#if defined(VORNSR_HAVE_OPENBLAS)
#include <cblas.h>
#endif

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
template <class T>
double amplitude() {
    return std::is_integral_v<T> ? 3000 : 10;
}

// height rows of len columns against one vector.
template <class T, class Val>
struct Data {
    Data(int len_, int height_)
        : len(len_),
          height(height_),
          mean(random<T>(size(), -amplitude<T>(), amplitude<T>())),
          var(random<T>(size(), std::is_integral_v<T> ? 1 : 0.1, std::is_integral_v<T> ? 20 : 2)),
          one(random<T>(static_cast<std::size_t>(len), -amplitude<T>(), amplitude<T>())),
          val(random<Val>(static_cast<std::size_t>(height), -100, -50)) {}
    std::size_t size() const { return static_cast<std::size_t>(len) * static_cast<std::size_t>(height); }
    std::string text() const { return std::to_string(len) + "x" + std::to_string(height); }

    int len, height;
    std::shared_ptr<T[]> mean, var, one;
    std::shared_ptr<Val[]> val;
};

template <class T, class Val, class Call>
void add(const char* name, const Data<T, Val>& d, const char* peer, Call call) {
    bench::add(name, d.text(), peer, d.height, [=] {
        call(d);
        bench::keep(d.val.get());
    });
}

template <class T, class Val, class Ours, class Plain, class Baseline>
void multiMix(const char* name, int len, int height, Ours ours, Plain plain, Baseline baseline) {
    const Data<T, Val> data(len, height);
    add(name, data, bench::ours, ours);
    add(name, data, "plain",
        [=](auto& d) { plain(d.mean.get(), d.var.get(), d.len, d.one.get(), d.len, d.val.get(), d.height); });
    add(name, data, "plain-baseline",
        [=](auto& d) { baseline(d.mean.get(), d.var.get(), d.len, d.one.get(), d.len, d.val.get(), d.height); });
}

#if defined(VORNSR_HAVE_EIGEN)
using Rows = Eigen::Map<Eigen::Array<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>>;
using Vector = Eigen::Map<Eigen::Array<float, 1, Eigen::Dynamic>>;

void eigenMultiMix(const Data<float, float>& d) {
    const Rows mean(d.mean.get(), d.height, d.len), var(d.var.get(), d.height, d.len);
    const Vector one(d.one.get(), d.len);
    Eigen::Map<Eigen::ArrayXf> val(d.val.get(), d.height);
    for (int g = 0; g < d.height; ++g) val[g] -= 0.5f * ((one - mean.row(g)).square() * var.row(g)).sum();
}
#endif

#if defined(VORNSR_HAVE_OPENBLAS)
// Two matrix-vector products; squares holds x^2 of the frame.
void blasMultiMix(const Data<float, float>& d, float* squares) {
    for (int j = 0; j < d.len; ++j) squares[j] = d.one[j] * d.one[j];
    cblas_sgemv(CblasRowMajor, CblasNoTrans, d.height, d.len, -0.5f, d.var.get(), d.len, squares, 1, 1.0f, d.val.get(),
                1);
    cblas_sgemv(CblasRowMajor, CblasNoTrans, d.height, d.len, 1.0f, d.mean.get(), d.len, d.one.get(), 1, 1.0f,
                d.val.get(), 1);
}
#endif

void addSingle(int len, int height) {
    const char* name = "vornsLogGaussMultiMix_32f_D2";
    multiMix<float, float>(
        name, len, height,
        [](auto& d) {
            vornsLogGaussMultiMix_32f_D2(d.mean.get(), d.var.get(), d.len, d.one.get(), d.len, d.val.get(), d.height);
        },
        [](auto... a) { plain::multiMix(a...); }, [](auto... a) { plain_baseline::multiMix(a...); });
    const Data<float, float> data(len, height);
#if defined(VORNSR_HAVE_EIGEN)
    add(name, data, "eigen", eigenMultiMix);
#endif
#if defined(VORNSR_HAVE_OPENBLAS)
    auto squares = bench::buffer<float>(static_cast<std::size_t>(len));
    add(name, data, "openblas-2gemv", [=](auto& d) { blasMultiMix(d, squares.get()); });
#endif
}

void addDouble(int len, int height) {
    multiMix<double, double>(
        "vornsLogGaussMultiMix_64f_D2", len, height,
        [](auto& d) {
            vornsLogGaussMultiMix_64f_D2(d.mean.get(), d.var.get(), d.len, d.one.get(), d.len, d.val.get(), d.height);
        },
        [](auto... a) { plain::multiMix(a...); }, [](auto... a) { plain_baseline::multiMix(a...); });
}

void addScaled(int len, int height) {
    multiMix<Vorn16s, Vorn32f>(
        "vornsLogGaussMultiMix_Scaled_16s32f_D2", len, height,
        [](auto& d) {
            vornsLogGaussMultiMix_Scaled_16s32f_D2(d.mean.get(), d.var.get(), d.len, d.one.get(), d.len, d.val.get(),
                                                   d.height, 4);
        },
        [](auto... a) { plain::multiMix(a...); }, [](auto... a) { plain_baseline::multiMix(a...); });
}

void addLow(int len, int height) {
    multiMix<Vorn16s, Vorn32s>(
        "vornsLogGaussMultiMix_Low_16s32s_D2Sfs", len, height,
        [](auto& d) {
            vornsLogGaussMultiMix_Low_16s32s_D2Sfs(d.mean.get(), d.var.get(), d.len, d.one.get(), d.len, d.val.get(),
                                                   d.height, 0);
        },
        [](auto... a) { plain::multiMixLow(a...); }, [](auto... a) { plain_baseline::multiMixLow(a...); });
}

void addFrames(int len, int height) {
    const char* name = "vornsLogGauss_32f_D2";
    const Data<float, float> data(len, height);
    add(name, data, bench::ours, [](auto& d) {
        vornsLogGauss_32f_D2(d.mean.get(), d.len, d.one.get(), d.var.get(), d.len, d.val.get(), d.height, -50.0f);
    });
    add(name, data, "plain", [](auto& d) {
        plain::frames(d.mean.get(), d.len, d.one.get(), d.var.get(), d.len, d.val.get(), d.height, -50.0f);
    });
    add(name, data, "plain-baseline", [](auto& d) {
        plain_baseline::frames(d.mean.get(), d.len, d.one.get(), d.var.get(), d.len, d.val.get(), d.height, -50.0f);
    });
}

void addFolds(int len, int height) {
    const Data<float, float> data(len, height);
    auto result = bench::buffer<float>(1);
    add("vornsLogGaussMixture_32f_D2", data, bench::ours, [=](auto& d) {
        vornsLogGaussMixture_32f_D2(d.one.get(), d.mean.get(), d.var.get(), d.height, d.len, d.len, d.val.get(),
                                    result.get());
    });
    add("vornsLogGaussMixture_32f_D2", data, "scores-only", [=](auto& d) {
        vornsLogGaussMultiMix_32f_D2(d.mean.get(), d.var.get(), d.len, d.one.get(), d.len, d.val.get(), d.height);
    });
    add("vornsLogGaussMixture_32f_D2", data, "plain", [=](auto& d) {
        result[0] = plain::mixture(d.one.get(), d.mean.get(), d.var.get(), d.height, d.len, d.len, d.val.get());
    });
    add("vornsLogGaussMax_32f_D2", data, bench::ours, [](auto& d) {
        vornsLogGaussMax_32f_D2(d.mean.get(), d.len, d.one.get(), d.var.get(), d.len, d.val.get(), d.height, -50.0f);
    });
    add("vornsLogGaussMax_32f_D2", data, "plain",
        [scores = bench::buffer<float>(static_cast<std::size_t>(height))](auto& d) {
            plain::frames(d.mean.get(), d.len, d.one.get(), d.var.get(), d.len, scores.get(), d.height, -50.0f);
            for (int i = 0; i < d.height; ++i) d.val[i] = std::max(d.val[i], scores[i]);
        });
}

const bench::Family gaussians([] {
    for (int len : {13, 26, 39, 40}) {
        for (int height : {8, 128, 1024, 8192, 65536}) {
            addSingle(len, height);
            addDouble(len, height);
            addScaled(len, height);
            addLow(len, height);
        }
        for (int height : {1, 100, 1000}) {
            addFrames(len, height);
            addFolds(len, height);
        }
    }
});

}  // namespace
