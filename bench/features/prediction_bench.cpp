// Linear prediction beside plain loops and Eigen. Neither codec2 nor speexdsp has it in its public headers.
#ifdef VORNSR_HAVE_EIGEN
#include <Eigen/Dense>
#endif

#include <cmath>

#include "features/common.h"
#include "plain/prediction.h"

namespace {

using namespace bench::features;

#ifdef VORNSR_HAVE_EIGEN
namespace eigen {

using Vector = Eigen::Map<Eigen::VectorXf>;
using Source = Eigen::Map<const Eigen::VectorXf>;

bool durbin(const float* r, float* dst, int order, float* error) {
    const Source lags(r, order + 1);
    Vector a(dst, order);
    float energy = lags[0];
    Eigen::VectorXf before(order);
    for (int i = 0; i < order; ++i) {
        const float k = (lags[i + 1] + lags.segment(1, i).reverse().dot(a.head(i))) / energy;
        energy *= 1 - k * k;
        if (!(energy > 0)) return false;
        before.head(i) = a.head(i);
        a.head(i) -= k * before.head(i).reverse();
        a[i] = -k;
    }
    *error = energy;
    return true;
}

void schur(const float* r, float* dst, int order, float* error) {
    Eigen::VectorXf g = Source(r + 1, order), h = Source(r, order), before(order);
    for (int i = 0; i < order; ++i) {
        const float k = dst[i] = -g[i] / h[i];
        const int rest = order - 1 - i;
        before.head(rest) = g.segment(i, rest);
        g.tail(rest) += k * h.tail(rest);
        h.tail(rest) = (h.segment(i, rest) + k * before.head(rest)).eval();
    }
    *error = g[order - 1] * dst[order - 1] + h[order - 1];
}

bool predictFromAutocorrelation(const float* x, int len, float* dst, int order) {
    const Source frame(x, len);
    Eigen::VectorXf r(order + 1);
    for (int k = 0; k <= order; ++k) r[k] = frame.head(len - k).dot(frame.tail(len - k));
    float error;
    return durbin(r.data(), dst, order, &error);
}

// The products over the samples that all lags have, in double, factored by Eigen.
void predictFromCovariance(const float* x, int len, float* dst, int order) {
    const Eigen::VectorXd frame = Source(x, len).cast<double>();
    const Eigen::Map<const Eigen::MatrixXd, 0, Eigen::OuterStride<1>> lagged(frame.data(), len - order, order + 1,
                                                                             Eigen::OuterStride<1>());
    const Eigen::MatrixXd products = lagged.transpose() * lagged;
    Vector(dst, order) =
        products.topLeftCorner(order, order).ldlt().solve(products.topRightCorner(order, 1)).cast<float>().reverse();
}

}  // namespace eigen
#endif

// A frame of noise through a resonance.
template <class T>
std::shared_ptr<T[]> frame(std::size_t len) {
    const auto noise = signal<float>(len, -1000, 1000);
    auto x = bench::buffer<T>(len);
    float last = 0, before = 0;
    for (std::size_t n = 0; n < len; ++n) {
        const float y = noise[n] + 1.5f * last - 0.7f * before;
        before = last;
        last = y;
        x[n] = static_cast<T>(y);
    }
    return x;
}

// r(k) of a decaying oscillation: 30000 at lag 0.
template <class T>
std::shared_ptr<T[]> lags(int order) {
    auto r = bench::buffer<T>(static_cast<std::size_t>(order) + 1);
    for (int k = 0; k <= order; ++k) r[k] = static_cast<T>(30000 * std::pow(0.93, k) * std::cos(0.4 * k));
    return r;
}

constexpr int scale = -12;

void addRecursions(int order) {
    const auto r = lags<float>(order), a = bench::buffer<float>(static_cast<std::size_t>(order)),
               error = bench::buffer<float>(1);
    const auto r16 = lags<Vorn16s>(order), a16 = bench::buffer<Vorn16s>(static_cast<std::size_t>(order));
    const std::string size = "order " + std::to_string(order);
    compare("vornsDurbin_32f", size, order, a,
            {{bench::ours, [=] { vornsDurbin_32f(r.get(), a.get(), order, error.get()); }},
#ifdef VORNSR_HAVE_EIGEN
             {"eigen", [=] { eigen::durbin(r.get(), a.get(), order, error.get()); }},
#endif
             {"plain", [=] { plain::durbin(r.get(), a.get(), order, error.get()); }}});
    compare("vornsSchur_32f", size, order, a,
            {{bench::ours, [=] { vornsSchur_32f(r.get(), a.get(), order, error.get()); }},
#ifdef VORNSR_HAVE_EIGEN
             {"eigen", [=] { eigen::schur(r.get(), a.get(), order, error.get()); }},
#endif
             {"plain", [=] { plain::schur(r.get(), a.get(), order, error.get()); }}});
    compare("vornsDurbin_16s_Sfs", size, order, a16,
            {{bench::ours, [=] { vornsDurbin_16s_Sfs(r16.get(), a16.get(), order, error.get(), scale); }},
             {"plain", [=] { plain::durbin(r16.get(), a16.get(), order, error.get(), scale); }}});
    compare("vornsSchur_16s_Sfs", size, order, a16,
            {{bench::ours, [=] { vornsSchur_16s_Sfs(r16.get(), a16.get(), order, error.get(), scale); }},
             {"plain", [=] { plain::schur(r16.get(), a16.get(), order, error.get(), scale); }}});
}

void addAnalyses(int len, int order) {
    const auto x = frame<float>(static_cast<std::size_t>(len)),
               a = bench::buffer<float>(static_cast<std::size_t>(order));
    const auto x16 = frame<Vorn16s>(static_cast<std::size_t>(len));
    const auto a16 = bench::buffer<Vorn16s>(static_cast<std::size_t>(order));
    const std::string size = std::to_string(len) + ", order " + std::to_string(order);
    compare("vornsLinearPrediction_Auto_32f", size, len, a,
            {{bench::ours, [=] { vornsLinearPrediction_Auto_32f(x.get(), len, a.get(), order); }},
#ifdef VORNSR_HAVE_EIGEN
             {"eigen", [=] { eigen::predictFromAutocorrelation(x.get(), len, a.get(), order); }},
#endif
             {"plain", [=] { plain::predictFromAutocorrelation(x.get(), len, a.get(), order); }}});
    compare("vornsLinearPrediction_Cov_32f", size, len, a,
            {{bench::ours, [=] { vornsLinearPrediction_Cov_32f(x.get(), len, a.get(), order); }},
#ifdef VORNSR_HAVE_EIGEN
             {"eigen", [=] { eigen::predictFromCovariance(x.get(), len, a.get(), order); }},
#endif
             {"plain", [=] { plain::predictFromCovariance(x.get(), len, a.get(), order); }}});
    compare("vornsLinearPrediction_Auto_16s_Sfs", size, len, a16,
            {{bench::ours, [=] { vornsLinearPrediction_Auto_16s_Sfs(x16.get(), len, a16.get(), order, scale); }},
             {"plain", [=] { plain::predictFromAutocorrelation(x16.get(), len, a16.get(), order, scale); }}});
    compare("vornsLinearPrediction_Cov_16s_Sfs", size, len, a16,
            {{bench::ours, [=] { vornsLinearPrediction_Cov_16s_Sfs(x16.get(), len, a16.get(), order, scale); }},
             {"plain", [=] { plain::predictFromCovariance(x16.get(), len, a16.get(), order, scale); }}});
}

const bench::Family predictions([] {
    for (int order : {1, 4, 8, 10, 12, 13, 16, 20, 50, 200}) addRecursions(order);
    for (int order : {8, 10, 12, 16, 24}) addAnalyses(400, order);
    for (int len : {80, 240, 4000, 1000000, 8000000}) addAnalyses(len, 12);
});

}  // namespace
