// Gaussian scores of one vector beside plain loops and, for the floats, a linear algebra library of templates.
#include <random>

#include "plain/gauss_single.h"
#include "support/bench.h"
#include "vornsr.h"

#if defined(VORNSR_HAVE_EIGEN)
#include <Eigen/Core>
#endif

namespace {

using bench::buffer;
using bench::keep;
using bench::ours;

// Feature vectors of recognisers, and one that fills the first-level cache.
const int lengths[] = {13, 39, 64, 120, 1024};
constexpr int blockLength = 39;

template <class T>
struct Vectors {
    explicit Vectors(int n) : len(n), x(buffer<T>(n)), m(buffer<T>(n)), v(buffer<T>(n)) {
        std::minstd_rand generator(5);
        std::uniform_real_distribution<double> feature(-90.0, 90.0), variance(1.0, 60.0);
        for (int j = 0; j < n; ++j) {
            x[j] = static_cast<T>(feature(generator));
            m[j] = static_cast<T>(feature(generator));
            v[j] = static_cast<T>(variance(generator));
        }
    }
    int len;
    std::shared_ptr<T[]> x, m, v;
};

// call(x, m, v, len, result) for ours, and the peer's value of call(x, m, v, len).
template <class T, class R, class Ours, class Plain>
void addScore(const char* function, Ours callOurs, Plain callPlain) {
    for (int len : lengths) {
        const Vectors<T> data(len);
        bench::add(function, std::to_string(len), ours, len, [=] {
            R result;
            callOurs(data.x.get(), data.m.get(), data.v.get(), data.len, &result);
            keep(&result);
        });
        bench::add(function, std::to_string(len), "plain", len, [=] {
            R result = callPlain(data.x.get(), data.m.get(), data.v.get(), data.len);
            keep(&result);
        });
    }
}

#if defined(VORNSR_HAVE_EIGEN)
template <class T>
void addEigen(const char* function, const char* identity) {
    for (int len : lengths) {
        const Vectors<T> data(len);
        using Array = Eigen::Map<const Eigen::Array<T, Eigen::Dynamic, 1>>;
        bench::add(function, std::to_string(len), "eigen", len, [=] {
            const Array x(data.x.get(), data.len), m(data.m.get(), data.len), v(data.v.get(), data.len);
            T result = T(1) - T(0.5) * ((x - m).square() * v).sum();
            keep(&result);
        });
        bench::add(identity, std::to_string(len), "eigen", len, [=] {
            const Array x(data.x.get(), data.len), m(data.m.get(), data.len);
            T result = T(1) - T(0.5) * (x - m).square().sum();
            keep(&result);
        });
    }
}
#endif

// One block of all columns: the most work that a length can give.
template <class T, class R, class Matrix, class Init, class Ours, class Plain>
void addBlock(const char* function, Init init, Ours callOurs, Plain callPlain) {
    const Vectors<T> data(blockLength), elements(blockLength * blockLength);
    auto rows = buffer<const T*>(blockLength);
    for (int r = 0; r < blockLength; ++r) rows[r] = elements.v.get() + r * blockLength;
    Matrix* matrix = nullptr;
    init(&matrix, rows.get(), &blockLength, 1);
    bench::add(function, std::to_string(blockLength), ours, blockLength * blockLength, [=, keepRows = elements] {
        R result;
        callOurs(data.x.get(), data.m.get(), matrix, blockLength, &result);
        keep(&result);
    });
    bench::add(function, std::to_string(blockLength), "plain", blockLength * blockLength, [=, keepRows = elements] {
        R result = callPlain(data.x.get(), data.m.get(), rows.get(), blockLength);
        keep(&result);
    });
}

const bench::Family family([] {
    addScore<float, float>(
        "LogGaussSingle_32f",
        [](auto* x, auto* m, auto* v, int n, auto* r) { vornsLogGaussSingle_32f(x, m, v, n, r, 1.0f); },
        [](auto* x, auto* m, auto* v, int n) { return plain::gaussScore(x, m, v, n, 1.0f); });
    addScore<double, double>(
        "LogGaussSingle_64f",
        [](auto* x, auto* m, auto* v, int n, auto* r) { vornsLogGaussSingle_64f(x, m, v, n, r, 1.0); },
        [](auto* x, auto* m, auto* v, int n) { return plain::gaussScore(x, m, v, n, 1.0); });
    addScore<float, double>(
        "LogGaussSingle_32f64f",
        [](auto* x, auto* m, auto* v, int n, auto* r) { vornsLogGaussSingle_32f64f(x, m, v, n, r, 1.0); },
        [](auto* x, auto* m, auto* v, int n) { return plain::gaussScoreWidened(x, m, v, n, 1.0); });
    addScore<float, float>(
        "LogGaussSingle_IdVar_32f",
        [](auto* x, auto* m, auto*, int n, auto* r) { vornsLogGaussSingle_IdVar_32f(x, m, n, r, 1.0f); },
        [](auto* x, auto* m, auto*, int n) { return plain::gaussScoreIdentity(x, m, n, 1.0f); });
    addScore<double, double>(
        "LogGaussSingle_IdVar_64f",
        [](auto* x, auto* m, auto*, int n, auto* r) { vornsLogGaussSingle_IdVar_64f(x, m, n, r, 1.0); },
        [](auto* x, auto* m, auto*, int n) { return plain::gaussScoreIdentity(x, m, n, 1.0); });
    addScore<float, float>(
        "LogGaussSingle_DirectVar_32f",
        [](auto* x, auto* m, auto* v, int n, auto* r) { vornsLogGaussSingle_DirectVar_32f(x, m, v, n, r, 1.0f); },
        [](auto* x, auto* m, auto* v, int n) { return plain::gaussScoreDivided(x, m, v, n, 1.0f); });
    addScore<double, double>(
        "LogGaussSingle_DirectVar_64f",
        [](auto* x, auto* m, auto* v, int n, auto* r) { vornsLogGaussSingle_DirectVar_64f(x, m, v, n, r, 1.0); },
        [](auto* x, auto* m, auto* v, int n) { return plain::gaussScoreDivided(x, m, v, n, 1.0); });
    addScore<Vorn16s, float>(
        "LogGaussSingle_Scaled_16s32f",
        [](auto* x, auto* m, auto* v, int n, auto* r) { vornsLogGaussSingle_Scaled_16s32f(x, m, v, n, r, 1.0f, 7); },
        [](auto* x, auto* m, auto* v, int n) { return plain::gaussScore(x, m, v, n, 1.0f, 0x1p-8f); });
    addScore<Vorn16s, Vorn32s>(
        "LogGaussSingle_16s32s_Sfs",
        [](auto* x, auto* m, auto* v, int n, auto* r) { vornsLogGaussSingle_16s32s_Sfs(x, m, v, n, r, 1, 7); },
        [](auto* x, auto* m, auto* v, int n) {
            return static_cast<Vorn32s>(plain::gaussScore(x, m, v, n, 1.0f, 0x1p-8f));
        });
    addScore<Vorn16s, float>(
        "LogGaussSingle_IdVarScaled_16s32f",
        [](auto* x, auto* m, auto*, int n, auto* r) { vornsLogGaussSingle_IdVarScaled_16s32f(x, m, n, r, 1.0f, 7); },
        [](auto* x, auto* m, auto*, int n) { return plain::gaussScoreIdentity(x, m, n, 1.0f, 0x1p-8f); });
    addScore<Vorn16s, Vorn32s>(
        "LogGaussSingle_Low_16s32s_Sfs",
        [](auto* x, auto* m, auto* v, int n, auto* r) { vornsLogGaussSingle_Low_16s32s_Sfs(x, m, v, n, r, 1, 7); },
        [](auto* x, auto* m, auto* v, int n) { return plain::gaussScoreLow(x, m, v, n, 1, 7); });
    addScore<Vorn16s, Vorn32s>(
        "LogGaussSingle_IdVarLow_16s32s_Sfs",
        [](auto* x, auto* m, auto*, int n, auto* r) { vornsLogGaussSingle_IdVarLow_16s32s_Sfs(x, m, n, r, 1, 7); },
        [](auto* x, auto* m, auto*, int n) { return plain::gaussScoreLowIdentity(x, m, n, 1, 7); });
    addScore<Vorn16s, float>(
        "LogGaussSingle_IdVarLowScaled_16s32f",
        [](auto* x, auto* m, auto*, int n, auto* r) { vornsLogGaussSingle_IdVarLowScaled_16s32f(x, m, n, r, 1.0f, 7); },
        [](auto* x, auto* m, auto*, int n) { return plain::gaussScoreIdentity(x, m, n, 1.0f, 0x1p-8f); });
    addScore<Vorn16s, float>(
        "LogGaussSingle_DirectVarScaled_16s32f",
        [](auto* x, auto* m, auto* v, int n, auto* r) {
            vornsLogGaussSingle_DirectVarScaled_16s32f(x, m, v, n, r, 1.0f, 7);
        },
        [](auto* x, auto* m, auto* v, int n) { return plain::gaussScoreDivided(x, m, v, n, 1.0f, 0x1p-8f); });
#if defined(VORNSR_HAVE_EIGEN)
    addEigen<float>("LogGaussSingle_32f", "LogGaussSingle_IdVar_32f");
    addEigen<double>("LogGaussSingle_64f", "LogGaussSingle_IdVar_64f");
#endif
    addBlock<float, float, VornBlockDMatrix_32f>(
        "LogGaussSingle_BlockDVar_32f", vornsBlockDMatrixInitAlloc_32f,
        [](auto* x, auto* m, auto* c, int n, auto* r) { vornsLogGaussSingle_BlockDVar_32f(x, m, c, n, r, 1.0f); },
        [](auto* x, auto* m, auto* rows, int n) { return plain::gaussScoreBlock(x, m, rows, n, 1.0f); });
    addBlock<double, double, VornBlockDMatrix_64f>(
        "LogGaussSingle_BlockDVar_64f", vornsBlockDMatrixInitAlloc_64f,
        [](auto* x, auto* m, auto* c, int n, auto* r) { vornsLogGaussSingle_BlockDVar_64f(x, m, c, n, r, 1.0); },
        [](auto* x, auto* m, auto* rows, int n) { return plain::gaussScoreBlock(x, m, rows, n, 1.0); });
    addBlock<Vorn16s, float, VornBlockDMatrix_16s>(
        "LogGaussSingle_BlockDVarScaled_16s32f", vornsBlockDMatrixInitAlloc_16s,
        [](auto* x, auto* m, auto* c, int n, auto* r) {
            vornsLogGaussSingle_BlockDVarScaled_16s32f(x, m, c, n, r, 1.0f, 7);
        },
        [](auto* x, auto* m, auto* rows, int n) { return plain::gaussScoreBlock(x, m, rows, n, 1.0f, 0x1p-7f); });
});

}  // namespace
