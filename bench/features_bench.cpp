// Feature extraction beside plain loops and, for the DCT lifter's matrix product, OpenBLAS and Eigen.
#include <cmath>
#include <random>
#include <string>
#include <vector>

#ifdef VORNSR_HAVE_OPENBLAS
#include <cblas.h>
#endif
#ifdef VORNSR_HAVE_EIGEN
#include <Eigen/Dense>
#endif

#include "plain/features.h"
#include "support/bench.h"
#include "vornsr.h"

namespace {

template <class T>
std::shared_ptr<T[]> signal(std::size_t len, double low, double high) {
    auto block = bench::buffer<T>(len);
    std::mt19937 generator(static_cast<unsigned>(len));
    std::uniform_real_distribution<double> uniform(low, high);
    for (std::size_t i = 0; i < len; ++i) block[i] = static_cast<T>(uniform(generator));
    return block;
}

template <class T, auto compensate>
void addOffset(const std::string& name, int len) {
    auto src = signal<T>(static_cast<std::size_t>(len), -3000, 3000),
         dst = bench::buffer<T>(static_cast<std::size_t>(len));
    auto last = bench::buffer<T>(1);
    bench::add(name, std::to_string(len), bench::ours, len, [=] {
        compensate(src.get(), dst.get(), len, last.get(), T(0), 0.98f);
        bench::keep(dst.get());
    });
    bench::add(name, std::to_string(len), "plain", len, [=] {
        plain::compensateOffset(src.get(), dst.get(), len, last.get(), T(0), 0.98f);
        bench::keep(dst.get());
    });
}

void addDeltas(int width, int height) {
    const std::size_t len = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    auto src = signal<float>(len, -10, 10), dst = bench::buffer<float>(3 * len);
    const std::string size = std::to_string(width) + "x" + std::to_string(height);
    const auto items = static_cast<std::int64_t>(len);
    const int whole = vornDeltaFirst | vornDeltaLast;
    const auto compare = [&](const std::string& name, const std::string& peer, auto call) {
        bench::add(name, size, peer, items, [=] {
            call();
            bench::keep(dst.get());
        });
    };
    compare("vornsDelta_Win2_32f_D2", bench::ours,
            [=] { vornsDelta_Win2_32f_D2(src.get(), width, dst.get(), 2 * width, height, 0.1f, whole); });
    compare("vornsDelta_Win2_32f_D2", "plain",
            [=] { plain::delta2(src.get(), width, dst.get(), 2 * width, height, 0.1f); });
    compare("vornsDeltaDelta_Win2_32f_D2", bench::ours,
            [=] { vornsDeltaDelta_Win2_32f_D2(src.get(), width, dst.get(), 3 * width, height, 0.1f, 0.1f, whole); });
    compare("vornsDeltaDelta_Win2_32f_D2", "plain",
            [=] { plain::deltaDelta2(src.get(), width, dst.get(), 3 * width, height, 0.1f, 0.1f); });
}

void addLifter(int lenDCT, int lenCep) {
    VornDCTLifterState_32f* made = nullptr;
    vornsDCTLifterInitAlloc_32f(&made, lenDCT, lenCep, 22, 1.0f);
    std::shared_ptr<VornDCTLifterState_32f> state(made, vornsDCTLifterFree_32f);
    // The peers get a table of their own, of the same size.
    const int stride = (lenDCT + 7) / 8 * 8;
    auto src = signal<float>(static_cast<std::size_t>(lenDCT), 0, 20),
         weight = signal<float>(static_cast<std::size_t>(lenCep), 1, 12);
    auto table = signal<float>(static_cast<std::size_t>(lenCep) * static_cast<std::size_t>(stride), -1, 1);
    auto dst = bench::buffer<float>(static_cast<std::size_t>(lenCep));
    const std::string name = "vornsDCTLifter_32f", size = std::to_string(lenDCT) + "x" + std::to_string(lenCep);
    const std::int64_t items = std::int64_t{lenDCT} * lenCep;
    bench::add(name, size, bench::ours, items, [=] {
        vornsDCTLifter_32f(src.get(), dst.get(), state.get());
        bench::keep(dst.get());
    });
    bench::add(name, size, "plain", items, [=] {
        plain::dctLifter(src.get(), dst.get(), table.get(), stride, weight.get(), lenDCT, lenCep);
        bench::keep(dst.get());
    });
#ifdef VORNSR_HAVE_OPENBLAS
    bench::add(name, size, "openblas", items, [=] {
        cblas_sgemv(CblasRowMajor, CblasNoTrans, lenCep, lenDCT, 1.0f, table.get(), stride, src.get(), 1, 0.0f,
                    dst.get(), 1);
        for (int i = 0; i < lenCep; ++i) dst[i] *= weight[i];
        bench::keep(dst.get());
    });
#endif
#ifdef VORNSR_HAVE_EIGEN
    bench::add(name, size, "eigen", items, [=] {
        using Rows = Eigen::Matrix<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;
        const Eigen::Map<const Rows, 0, Eigen::OuterStride<>> rows(table.get(), lenCep, lenDCT,
                                                                   Eigen::OuterStride<>(stride));
        const Eigen::Map<const Eigen::VectorXf> x(src.get(), lenDCT), w(weight.get(), lenCep);
        Eigen::Map<Eigen::VectorXf> y(dst.get(), lenCep);
        y.noalias() = rows * x;
        y.array() *= w.array();
        bench::keep(dst.get());
    });
#endif
}

// Centres and weights of a straight mel bank, for the plain loops.
struct Triangles {
    std::vector<int> center;
    std::vector<float> rises, falls;
    std::vector<int> rises14, falls14;
    int stride;
};
Triangles triangles(int N, int nFilter) {
    Triangles t{{}, {}, {}, {}, {}, N / 2 + 2};
    const double high = std::log(1.0 + 4000.0 / 700.0), low = std::log(1.0 + 64.0 / 700.0);
    for (int i = 0; i <= nFilter + 1; ++i) {
        const double hertz = 700.0 * (std::exp(low + i * (high - low) / (nFilter + 1)) - 1.0);
        t.center.push_back(static_cast<int>(std::lround(hertz * N / 8000.0)));
    }
    t.rises.resize(static_cast<std::size_t>(nFilter) * static_cast<std::size_t>(t.stride), 0.5f);
    t.falls = t.rises;
    t.rises14.resize(t.rises.size(), 8192);
    t.falls14 = t.rises14;
    return t;
}

void addFilterBank(int N, int nFilter) {
    const auto peer = std::make_shared<Triangles>(triangles(N, nFilter));
    VornFBankState_32f* single = nullptr;
    VornFBankState_16s* fixed = nullptr;
    int order;
    vornsMelFBankInitAlloc_32f(&single, &order, N, 8000, 64, 4000, nFilter, 1127, 700, vornFBankWeightFreq);
    vornsMelFBankInitAlloc_16s(&fixed, &order, N, 8000, 64, 4000, nFilter, 1127, 700, vornFBankWeightFreq);
    std::shared_ptr<VornFBankState_32f> bank(single, vornsFBankFree_32f);
    std::shared_ptr<VornFBankState_16s> bank16(fixed, vornsFBankFree_16s);
    const auto bins = static_cast<std::size_t>(N / 2 + 1), filters = static_cast<std::size_t>(nFilter);
    auto src = signal<float>(bins, 0, 1000), dst = bench::buffer<float>(filters);
    auto src16 = signal<Vorn16s>(bins, 0, 1000), dst16 = bench::buffer<Vorn16s>(filters);
    const std::string size = std::to_string(N) + "x" + std::to_string(nFilter);
    bench::add("vornsEvalFBank_32f", size, bench::ours, N / 2 + 1, [=] {
        vornsEvalFBank_32f(src.get(), dst.get(), bank.get());
        bench::keep(dst.get());
    });
    bench::add("vornsEvalFBank_32f", size, "plain", N / 2 + 1, [=] {
        plain::filterBank(src.get(), dst.get(), peer->center.data(), peer->rises.data(), peer->falls.data(),
                          peer->stride, nFilter);
        bench::keep(dst.get());
    });
    bench::add("vornsEvalFBank_16s_Sfs", size, bench::ours, N / 2 + 1, [=] {
        vornsEvalFBank_16s_Sfs(src16.get(), dst16.get(), bank16.get(), 0);
        bench::keep(dst16.get());
    });
    bench::add("vornsEvalFBank_16s_Sfs", size, "plain", N / 2 + 1, [=] {
        plain::filterBank(src16.get(), dst16.get(), peer->center.data(), peer->rises14.data(), peer->falls14.data(),
                          peer->stride, nFilter, 14);
        bench::keep(dst16.get());
    });
}

const bench::Family features([] {
    for (int len : {200, 4000, 2000000}) {
        addOffset<Vorn32f, vornsCompensateOffset_32f>("vornsCompensateOffset_32f", len);
        addOffset<Vorn16s, vornsCompensateOffset_16s>("vornsCompensateOffset_16s", len);
    }
    for (int width : {13, 39}) {
        for (int height : {10, 100, 1000, 100000}) addDeltas(width, height);
    }
    addLifter(23, 12);
    addLifter(26, 13);
    addLifter(40, 20);
    addLifter(128, 64);
    for (int N : {256, 512, 2048}) addFilterBank(N, N == 256 ? 23 : 40);
});

}  // namespace
