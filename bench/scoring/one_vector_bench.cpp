// Gaussian scores of one vector beside plain loops and, for the floats, a linear algebra library of templates.
#include <random>

#include "calls/signature.h"
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

// Our score; val is 1 and the scale factor, where there is one, 7.
template <class... P>
using Score = calls::Signature<calls::scoreShapes, P...>;
template <class... P, class T, class R>
void score(VornStatus (*function)(P...), const T* x, const T* m, const void* v, int len, R* result) {
    using calls::Role;
    Score<P...>::call(function, [&]<Role role, class Argument>() -> Argument {
        if constexpr (role == Role::src1) {
            return x;
        } else if constexpr (role == Role::src2) {
            return m;
        } else if constexpr (role == Role::var || role == Role::context) {
            return static_cast<Argument>(v);
        } else if constexpr (role == Role::result) {
            return result;
        } else {
            return role == Role::len ? len : role == Role::val ? 1 : 7;
        }
    });
    keep(result);
}

// The peer's value is that of call(x, m, v, len).
template <class... P, class Plain>
void addScore(const char* name, VornStatus (*function)(P...), Plain callPlain) {
    using calls::Role;
    using T = typename Score<P...>::template Pointee<void, Role::src1>;
    using R = typename Score<P...>::template Pointee<void, Role::result>;
    for (int len : lengths) {
        const Vectors<T> data(len);
        bench::add(name, std::to_string(len), ours, len, [=] {
            R result;
            score(function, data.x.get(), data.m.get(), data.v.get(), data.len, &result);
        });
        bench::add(name, std::to_string(len), "plain", len, [=] {
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
template <class Matrix, class T, class... P, class Plain>
void addBlock(const char* name, VornStatus (*init)(Matrix**, const T* const*, const int*, int),
              VornStatus (*function)(P...), Plain callPlain) {
    using R = typename Score<P...>::template Pointee<void, calls::Role::result>;
    const Vectors<T> data(blockLength), elements(blockLength * blockLength);
    auto rows = buffer<const T*>(blockLength);
    for (int r = 0; r < blockLength; ++r) rows[r] = elements.v.get() + r * blockLength;
    Matrix* matrix = nullptr;
    init(&matrix, rows.get(), &blockLength, 1);
    bench::add(name, std::to_string(blockLength), ours, blockLength * blockLength, [=, keepRows = elements] {
        R result;
        score(function, data.x.get(), data.m.get(), matrix, blockLength, &result);
    });
    bench::add(name, std::to_string(blockLength), "plain", blockLength * blockLength, [=, keepRows = elements] {
        R result = callPlain(data.x.get(), data.m.get(), rows.get(), blockLength);
        keep(&result);
    });
}

const bench::Family family([] {
    addScore("LogGaussSingle_32f", vornsLogGaussSingle_32f,
             [](auto* x, auto* m, auto* v, int n) { return plain::gaussScore(x, m, v, n, 1.0f); });
    addScore("LogGaussSingle_64f", vornsLogGaussSingle_64f,
             [](auto* x, auto* m, auto* v, int n) { return plain::gaussScore(x, m, v, n, 1.0); });
    addScore("LogGaussSingle_32f64f", vornsLogGaussSingle_32f64f,
             [](auto* x, auto* m, auto* v, int n) { return plain::gaussScoreWidened(x, m, v, n, 1.0); });
    addScore("LogGaussSingle_IdVar_32f", vornsLogGaussSingle_IdVar_32f,
             [](auto* x, auto* m, auto*, int n) { return plain::gaussScoreIdentity(x, m, n, 1.0f); });
    addScore("LogGaussSingle_IdVar_64f", vornsLogGaussSingle_IdVar_64f,
             [](auto* x, auto* m, auto*, int n) { return plain::gaussScoreIdentity(x, m, n, 1.0); });
    addScore("LogGaussSingle_DirectVar_32f", vornsLogGaussSingle_DirectVar_32f,
             [](auto* x, auto* m, auto* v, int n) { return plain::gaussScoreDivided(x, m, v, n, 1.0f); });
    addScore("LogGaussSingle_DirectVar_64f", vornsLogGaussSingle_DirectVar_64f,
             [](auto* x, auto* m, auto* v, int n) { return plain::gaussScoreDivided(x, m, v, n, 1.0); });
    addScore("LogGaussSingle_Scaled_16s32f", vornsLogGaussSingle_Scaled_16s32f,
             [](auto* x, auto* m, auto* v, int n) { return plain::gaussScore(x, m, v, n, 1.0f, 0x1p-8f); });
    addScore("LogGaussSingle_16s32s_Sfs", vornsLogGaussSingle_16s32s_Sfs, [](auto* x, auto* m, auto* v, int n) {
        return static_cast<Vorn32s>(plain::gaussScore(x, m, v, n, 1.0f, 0x1p-8f));
    });
    addScore("LogGaussSingle_IdVarScaled_16s32f", vornsLogGaussSingle_IdVarScaled_16s32f,
             [](auto* x, auto* m, auto*, int n) { return plain::gaussScoreIdentity(x, m, n, 1.0f, 0x1p-8f); });
    addScore("LogGaussSingle_Low_16s32s_Sfs", vornsLogGaussSingle_Low_16s32s_Sfs,
             [](auto* x, auto* m, auto* v, int n) { return plain::gaussScoreLow(x, m, v, n, 1, 7); });
    addScore("LogGaussSingle_IdVarLow_16s32s_Sfs", vornsLogGaussSingle_IdVarLow_16s32s_Sfs,
             [](auto* x, auto* m, auto*, int n) { return plain::gaussScoreLowIdentity(x, m, n, 1, 7); });
    addScore("LogGaussSingle_IdVarLowScaled_16s32f", vornsLogGaussSingle_IdVarLowScaled_16s32f,
             [](auto* x, auto* m, auto*, int n) { return plain::gaussScoreIdentity(x, m, n, 1.0f, 0x1p-8f); });
    addScore("LogGaussSingle_DirectVarScaled_16s32f", vornsLogGaussSingle_DirectVarScaled_16s32f,
             [](auto* x, auto* m, auto* v, int n) { return plain::gaussScoreDivided(x, m, v, n, 1.0f, 0x1p-8f); });
#if defined(VORNSR_HAVE_EIGEN)
    addEigen<float>("LogGaussSingle_32f", "LogGaussSingle_IdVar_32f");
    addEigen<double>("LogGaussSingle_64f", "LogGaussSingle_IdVar_64f");
#endif
    addBlock("LogGaussSingle_BlockDVar_32f", vornsBlockDMatrixInitAlloc_32f, vornsLogGaussSingle_BlockDVar_32f,
             [](auto* x, auto* m, auto* rows, int n) { return plain::gaussScoreBlock(x, m, rows, n, 1.0f); });
    addBlock("LogGaussSingle_BlockDVar_64f", vornsBlockDMatrixInitAlloc_64f, vornsLogGaussSingle_BlockDVar_64f,
             [](auto* x, auto* m, auto* rows, int n) { return plain::gaussScoreBlock(x, m, rows, n, 1.0); });
    addBlock("LogGaussSingle_BlockDVarScaled_16s32f", vornsBlockDMatrixInitAlloc_16s,
             vornsLogGaussSingle_BlockDVarScaled_16s32f,
             [](auto* x, auto* m, auto* rows, int n) { return plain::gaussScoreBlock(x, m, rows, n, 1.0f, 0x1p-7f); });
});

}  // namespace
