// Products of a matrix with a vector beside plain loops, OpenBLAS and Eigen.
#include <random>
#include <string>
#include <type_traits>

#ifdef VORNSR_HAVE_OPENBLAS
#include <cblas.h>
#endif
#ifdef VORNSR_HAVE_EIGEN
#include <Eigen/Dense>
#endif

#include "plain/matrix_products.h"
#include "support/bench.h"
#include "vornsr.h"

namespace {

template <class T>
std::shared_ptr<T[]> numbers(std::size_t len) {
    auto block = bench::buffer<T>(len);
    std::minstd_rand generator(static_cast<unsigned>(len));
    for (std::size_t i = 0; i < len; ++i) {
        if constexpr (std::is_floating_point_v<T>) {
            block[i] = static_cast<T>(generator()) * T(0x1p-30) - T(1);
        } else {
            block[i] = static_cast<T>(generator());
        }
    }
    return block;
}

// Matrices from the first-level cache to memory.
struct Size {
    int height, width;
    const char* place;
};
const Size sizes[] = {{13, 13, "13x13"},     {39, 39, "39x39"},         {64, 64, "64x64"},
                      {256, 256, "256x256"}, {1024, 1024, "1024x1024"}, {8192, 2048, "8192x2048"}};

#ifdef VORNSR_HAVE_OPENBLAS
void singleThread() { openblas_set_num_threads(1); }
#endif

// Calls compare(size, x, A, y, peers...) with one set of operands a size; x has height elements, y has width.
template <class T, class R>
struct Operands {
    Size size;
    std::shared_ptr<T[]> a, x, y;
    std::shared_ptr<R[]> dst;
    std::shared_ptr<double[]> sums;

    explicit Operands(const Size& s)
        : size(s),
          a(numbers<T>(static_cast<std::size_t>(s.height) * static_cast<std::size_t>(s.width))),
          x(numbers<T>(static_cast<std::size_t>(s.height))),
          y(numbers<T>(static_cast<std::size_t>(s.width))),
          dst(bench::buffer<R>(static_cast<std::size_t>(std::max(s.height, s.width)))),
          sums(bench::buffer<double>(static_cast<std::size_t>(s.width))) {}
    template <class Call>
    void compare(const std::string& name, const std::string& peer, Call call) const {
        bench::add(name, size.place, peer, std::int64_t{size.height} * size.width, [o = *this, call] {
            call(o);
            bench::keep(o.dst.get());
        });
    }
};

using Singles = Operands<Vorn32f, Vorn32f>;
using Shorts = Operands<Vorn16s, Vorn16s>;
using ShortsToInts = Operands<Vorn16s, Vorn32s>;
using Ints = Operands<Vorn32s, Vorn32s>;

#ifdef VORNSR_HAVE_EIGEN
using Matrix = Eigen::Map<const Eigen::Matrix<float, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>>;
using Vector = Eigen::Map<const Eigen::VectorXf>;
using Result = Eigen::Map<Eigen::VectorXf>;
#endif

void addSingles(const Size& size) {
    const Singles o(size);
    const std::string right = "vornsMatVecMul_32f_D2", left = "vornsVecMatMul_32f_D2";
    o.compare(right, bench::ours, [](const Singles& p) {
        vornsMatVecMul_32f_D2(p.a.get(), p.size.width, p.y.get(), p.size.width, p.dst.get(), p.size.height);
    });
    o.compare(right, "plain", [](const Singles& p) {
        plain::matVecMul(p.a.get(), p.size.width, p.y.get(), p.size.width, p.dst.get(), p.size.height);
    });
    o.compare(left, bench::ours, [](const Singles& p) {
        vornsVecMatMul_32f_D2(p.x.get(), p.a.get(), p.size.width, p.size.height, p.dst.get(), p.size.width);
    });
    o.compare(left, "plain", [](const Singles& p) {
        plain::vecMatMul(p.x.get(), p.a.get(), p.size.width, p.size.height, p.dst.get(), p.size.width);
    });
#ifdef VORNSR_HAVE_OPENBLAS
    singleThread();
    const auto sgemv = [](const Singles& p, CBLAS_TRANSPOSE transpose, const float* vec) {
        cblas_sgemv(CblasRowMajor, transpose, p.size.height, p.size.width, 1.0f, p.a.get(), p.size.width, vec, 1, 0.0f,
                    p.dst.get(), 1);
    };
    o.compare(right, "openblas", [=](const Singles& p) { sgemv(p, CblasNoTrans, p.y.get()); });
    o.compare(left, "openblas", [=](const Singles& p) { sgemv(p, CblasTrans, p.x.get()); });
#endif
#ifdef VORNSR_HAVE_EIGEN
    o.compare(right, "eigen", [](const Singles& p) {
        Result(p.dst.get(), p.size.height).noalias() =
            Matrix(p.a.get(), p.size.height, p.size.width) * Vector(p.y.get(), p.size.width);
    });
    o.compare(left, "eigen", [](const Singles& p) {
        Result(p.dst.get(), p.size.width).noalias() =
            Matrix(p.a.get(), p.size.height, p.size.width).transpose() * Vector(p.x.get(), p.size.height);
    });
#endif
}

template <class T, class R>
using FromRight = VornStatus (*)(const T*, int, const T*, int, R*, int, int);
template <class T, class R>
using FromLeft = VornStatus (*)(const T*, const T*, int, int, R*, int, int);

template <class T, class R>
void addIntegers(const Size& size, const std::string& rightName, FromRight<T, R> right, const std::string& leftName,
                 FromLeft<T, R> left, int sf) {
    using O = Operands<T, R>;
    const O o(size);
    o.compare(rightName, bench::ours, [=](const O& p) {
        right(p.a.get(), p.size.width, p.y.get(), p.size.width, p.dst.get(), p.size.height, sf);
    });
    o.compare(rightName, "plain", [=](const O& p) {
        plain::matVecMul(p.a.get(), p.size.width, p.y.get(), p.size.width, p.dst.get(), p.size.height, sf);
    });
    o.compare(leftName, bench::ours, [=](const O& p) {
        left(p.x.get(), p.a.get(), p.size.width, p.size.height, p.dst.get(), p.size.width, sf);
    });
    o.compare(leftName, "plain", [=](const O& p) {
        plain::vecMatMul(p.x.get(), p.a.get(), p.size.width, p.size.height, p.dst.get(), p.size.width, sf,
                         p.sums.get());
    });
}

const bench::Family matrixProducts([] {
    for (const Size& size : sizes) {
        addSingles(size);
        addIntegers<Vorn16s, Vorn16s>(size, "vornsMatVecMul_16s_D2Sfs", vornsMatVecMul_16s_D2Sfs,
                                      "vornsVecMatMul_16s_D2Sfs", vornsVecMatMul_16s_D2Sfs, 20);
        addIntegers<Vorn16s, Vorn32s>(size, "vornsMatVecMul_16s32s_D2Sfs", vornsMatVecMul_16s32s_D2Sfs,
                                      "vornsVecMatMul_16s32s_D2Sfs", vornsVecMatMul_16s32s_D2Sfs, 5);
        addIntegers<Vorn32s, Vorn32s>(size, "vornsMatVecMul_32s_D2Sfs", vornsMatVecMul_32s_D2Sfs,
                                      "vornsVecMatMul_32s_D2Sfs", vornsVecMatMul_32s_D2Sfs, 40);
    }
});

}  // namespace
