// The DCT lifter beside plain loops and, for its matrix product, OpenBLAS and Eigen.
#ifdef VORNSR_HAVE_OPENBLAS
#include <cblas.h>
#endif
#ifdef VORNSR_HAVE_EIGEN
#include <Eigen/Dense>
#endif

#include "features/common.h"
#include "plain/lifter.h"

namespace {

using namespace bench::features;

// Making a context and giving it back, beside making the table only.
void addLifterContext(int lenDCT, int lenCep) {
    const int stride = (lenDCT + 7) / 8 * 8;
    auto rows = bench::buffer<float>(static_cast<std::size_t>(lenCep + 1) * static_cast<std::size_t>(stride)),
         weight = bench::buffer<float>(static_cast<std::size_t>(lenCep + 1));
    const std::string size = std::to_string(lenDCT) + "x" + std::to_string(lenCep);
    const Call plain{"plain", [=] { plain::cosines(rows.get(), stride, weight.get(), lenDCT, lenCep, 22, 1.0f); }};
    const auto made = [=](auto make) {
        return Call{bench::ours, [=] {
                        VornDCTLifterState_32f* state = nullptr;
                        make(&state);
                        vornsDCTLifterFree_32f(state);
                    }};
    };
    compare("vornsDCTLifterInitAlloc_32f", size, std::int64_t{lenDCT} * lenCep, rows,
            {made([=](auto** state) { vornsDCTLifterInitAlloc_32f(state, lenDCT, lenCep, 22, 1.0f); }), plain});
    compare(
        "vornsDCTLifterInitAlloc_C0_32f", size, std::int64_t{lenDCT} * lenCep, rows,
        {made([=](auto** state) { vornsDCTLifterInitAlloc_C0_32f(state, lenDCT, lenCep, 22, 1.0f, 2.0f); }), plain});
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

// The integer forms beside loops that convert, multiply and round.
template <class Element, class Transform>
void addIntegerLifter(const std::string& name, Transform transform, int lenDCT, int lenCep, int scale) {
    VornDCTLifterState_16s* made = nullptr;
    vornsDCTLifterInitAlloc_16s(&made, lenDCT, lenCep, 22, 1.0f);
    const std::shared_ptr<VornDCTLifterState_16s> state(made, vornsDCTLifterFree_16s);
    const int stride = (lenDCT + 7) / 8 * 8;
    const auto src = signal<Element>(static_cast<std::size_t>(lenDCT), 0, 20000);
    const auto weight = signal<float>(static_cast<std::size_t>(lenCep), 1, 12);
    const auto table = signal<float>(static_cast<std::size_t>(lenCep) * static_cast<std::size_t>(stride), -1, 1);
    const auto dst = bench::buffer<std::int16_t>(static_cast<std::size_t>(lenCep));
    compare(name, std::to_string(lenDCT) + "x" + std::to_string(lenCep), std::int64_t{lenDCT} * lenCep, dst,
            {{bench::ours, [=] { transform(src.get(), dst.get(), state.get(), scale); }},
             {"plain", [=] {
                  plain::dctLifter(src.get(), dst.get(), table.get(), stride, weight.get(), lenDCT, lenCep, scale);
              }}});
}

const bench::Family lifters([] {
    const int shapes[][2] = {{23, 12}, {26, 13}, {40, 20}, {64, 32}, {128, 64}};
    for (const auto& [lenDCT, lenCep] : shapes) {
        addLifter(lenDCT, lenCep);
        addIntegerLifter<Vorn16s>("vornsDCTLifter_16s_Sfs", vornsDCTLifter_16s_Sfs, lenDCT, lenCep, 6);
        addIntegerLifter<Vorn32s>("vornsDCTLifter_32s16s_Sfs", vornsDCTLifter_32s16s_Sfs, lenDCT, lenCep, 6);
    }
    addLifterContext(26, 13);
});

}  // namespace
