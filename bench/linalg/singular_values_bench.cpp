// Singular values beside the plain loops in the same order of operations, Eigen, and LAPACK on one thread. The peers
// are free in their order; LAPACK and the block forms of Eigen take other algorithms for all but the smallest matrices.
#include <algorithm>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#ifdef VORNSR_HAVE_EIGEN
#include <Eigen/SVD>
#endif
#ifdef VORNSR_HAVE_OPENBLAS
#include <cblas.h>
#endif

#include "plain/singular_values.h"
#include "support/bench.h"
#include "tests/support/recorded_frames.h"
#include "vornsr.h"

#ifdef VORNSR_HAVE_OPENBLAS
extern "C" {
void dgesvd_(const char* jobu, const char* jobvt, const int* m, const int* n, double* a, const int* lda, double* s,
             double* u, const int* ldu, double* vt, const int* ldvt, double* work, const int* lwork, int* info);
void dgesdd_(const char* jobz, const int* m, const int* n, double* a, const int* lda, double* s, double* u,
             const int* ldu, double* vt, const int* ldvt, double* work, const int* lwork, int* iwork, int* info);
}
#endif

namespace {

using Matrix = std::shared_ptr<double[]>;
enum class Kind { Random, Frames };

// Random, or log spectra of recorded speech.
Matrix matrixOf(Kind kind, int height, int width) {
    const auto size = static_cast<std::size_t>(height) * static_cast<std::size_t>(width);
    auto a = bench::buffer<double>(size);
    if (kind == Kind::Frames) {
        const auto frames = test::recordedFrames(VORNSR_RECORDINGS "/test", 50, width);
        if (frames.height < height) throw std::runtime_error("the recordings of the example are missing");
        std::copy_n(frames.rows.begin(), size, a.get());
        return a;
    }
    std::mt19937 generator(static_cast<unsigned>(size));
    std::uniform_real_distribution<double> uniform(-1, 1);
    for (std::size_t i = 0; i < size; ++i) a[i] = uniform(generator);
    return a;
}

void addDecomposition(Kind kind, int height, int width) {
    const auto m = static_cast<std::size_t>(height), n = static_cast<std::size_t>(width), least = std::min(m, n);
    const auto src = matrixOf(kind, height, width);
    auto u = bench::buffer<double>(m * n), v = bench::buffer<double>(n * n), w = bench::buffer<double>(n);
    const std::string size =
        std::to_string(height) + "x" + std::to_string(width) + (kind == Kind::Frames ? " frames" : "");
    const auto compare = [&](const std::string& peer, auto call) {
        bench::add("vornsSVDSort_64f_D2", size, peer, static_cast<std::int64_t>(m * n), [=] {
            call();
            bench::keep(u.get());
            bench::keep(v.get());
            bench::keep(w.get());
        });
    };
    compare(bench::ours, [=] { vornsSVDSort_64f_D2(src.get(), u.get(), height, w.get(), v.get(), width, width, 30); });
    compare("plain", [=] { plain::singularValues(src.get(), u.get(), height, w.get(), v.get(), width, 30, true); });
    bench::add("vornsSVD_64f_D2", size, bench::ours, static_cast<std::int64_t>(m * n), [=] {
        vornsSVD_64f_D2(src.get(), u.get(), height, w.get(), v.get(), width, width, 30);
        bench::keep(u.get());
    });
    bench::add("vornsSVD_64f_D2", size, "plain", static_cast<std::int64_t>(m * n), [=] {
        plain::singularValues(src.get(), u.get(), height, w.get(), v.get(), width, 30, false);
        bench::keep(u.get());
    });
#ifdef VORNSR_HAVE_EIGEN
    using RowMajor = Eigen::Map<const Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>>;
    const auto eigen = [=](auto& svd) {
        svd.compute(RowMajor(src.get(), height, width), Eigen::ComputeThinU | Eigen::ComputeThinV);
        bench::keep(svd.matrixU().data());
        bench::keep(svd.matrixV().data());
    };
    if (m * n * least <= 4000000) {
        compare("eigen-jacobi", [=, svd = std::make_shared<Eigen::JacobiSVD<Eigen::MatrixXd>>()] { eigen(*svd); });
    }
    compare("eigen-bdc", [=, svd = std::make_shared<Eigen::BDCSVD<Eigen::MatrixXd>>()] { eigen(*svd); });
#endif
#ifdef VORNSR_HAVE_OPENBLAS
    openblas_set_num_threads(1);
    // Column by column, as LAPACK has it; it destroys its argument.
    auto columns = bench::buffer<double>(m * n), a = bench::buffer<double>(m * n);
    for (std::size_t r = 0; r < m; ++r) {
        for (std::size_t c = 0; c < n; ++c) columns[c * m + r] = src[r * n + c];
    }
    const int thin = static_cast<int>(least);
    auto work = std::make_shared<std::vector<double>>(1);
    auto integers = std::make_shared<std::vector<int>>(8 * least);
    const auto gesvd = [=](int room) {
        int info;
        std::copy_n(columns.get(), m * n, a.get());
        dgesvd_("S", "S", &height, &width, a.get(), &height, w.get(), u.get(), &height, v.get(), &thin, work->data(),
                &room, &info);
    };
    const auto gesdd = [=](int room) {
        int info;
        std::copy_n(columns.get(), m * n, a.get());
        dgesdd_("S", &height, &width, a.get(), &height, w.get(), u.get(), &height, v.get(), &thin, work->data(), &room,
                integers->data(), &info);
    };
    gesvd(-1);
    const auto forGesvd = static_cast<std::size_t>((*work)[0]);
    gesdd(-1);
    work->resize(std::max(forGesvd, static_cast<std::size_t>((*work)[0])));
    compare("lapack", [=] { gesvd(static_cast<int>(work->size())); });
    compare("lapack-dc", [=] { gesdd(static_cast<int>(work->size())); });
#endif
}

// The rows are used one after the other, as in a decomposition.
void addOperations(int height, int width, const std::string& place) {
    const auto m = static_cast<std::size_t>(height), n = static_cast<std::size_t>(width);
    auto block = matrixOf(Kind::Random, height, width);
    auto rows = std::make_shared<std::vector<double*>>();
    for (std::size_t r = 0; r < m; ++r) rows->push_back(block.get() + r * n);
    auto result = bench::buffer<double>(1);
    double* const* const x = rows->data();
    const auto compare = [&](const std::string& name, auto own, auto plain) {
        const auto run = [=](auto call) {
            return [=, keep = block, keepRows = rows] {
                call();
                bench::keep(result.get());
            };
        };
        bench::add(name, place, bench::ours, height, run(own));
        bench::add(name, place, "plain", height, run(plain));
    };
    compare(
        "vornsSumColumnAbs_64f_D2L", [=] { vornsSumColumnAbs_64f_D2L(x, width, height, result.get(), 1, 0); },
        [=] { result[0] = plain::sumColumnAbs(x, height, 1); });
    compare(
        "vornsSumColumnSqr_64f_D2L", [=] { vornsSumColumnSqr_64f_D2L(x, width, height, result.get(), 1, 0, 1.0); },
        [=] { result[0] = plain::sumColumnSqr(x, height, 1, 1.0); });
    compare(
        "vornsDotProdColumn_64f_D2L", [=] { vornsDotProdColumn_64f_D2L(x, width, height, result.get(), 1, 2, 0); },
        [=] { result[0] = plain::dotProdColumn(x, height, 1, 2); });
    compare(
        "vornsAddMulColumn_64f_D2L", [=] { vornsAddMulColumn_64f_D2L(x, width, height, 1, 2, 0, 1e-9); },
        [=] { plain::addMulColumn(x, height, 1, 2, 1e-9); });
    compare(
        "vornsMulColumn_64f_D2L", [=] { vornsMulColumn_64f_D2L(x, width, height, 1, 0, -1.0); },
        [=] { plain::mulColumn(x, height, 1, -1.0); });
    compare(
        "vornsQRTransColumn_64f_D2L", [=] { vornsQRTransColumn_64f_D2L(x, width, height, 1, 2, 0.6, 0.8); },
        [=] { plain::rotateColumns(x, height, 1, 2, 0.6, 0.8); });
    const int len = static_cast<int>(m * n / 2);
    double* const a = block.get();
    compare(
        "vornsSumRowAbs_64f", [=] { vornsSumRowAbs_64f(a, len, result.get()); },
        [=] { result[0] = plain::sumRowAbs(a, len); });
    compare(
        "vornsSumRowSqr_64f", [=] { vornsSumRowSqr_64f(a, len, result.get(), 1.0); },
        [=] { result[0] = plain::sumRowSqr(a, len, 1.0); });
    compare(
        "vornsAddMulRow_64f", [=] { vornsAddMulRow_64f(a, a + len, len, 1e-9); },
        [=] { plain::addMulRow(a, a + len, len, 1e-9); });
}

const bench::Family singularValues([] {
    for (int n : {3, 13, 39, 64, 128, 300}) addDecomposition(Kind::Random, n, n);
    addDecomposition(Kind::Random, 300, 39);
    addDecomposition(Kind::Random, 39, 300);
    addDecomposition(Kind::Frames, 98, 39);
    addDecomposition(Kind::Frames, 1500, 39);
    addOperations(13, 13, "13x13");
    addOperations(50, 39, "L1");
    addOperations(25000, 39, "last level");
    addOperations(1000000, 39, "memory");
});

}  // namespace
