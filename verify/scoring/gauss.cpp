// Gaussian scores and mixtures.
#include <iterator>
#include <tuple>

#include "families.h"

namespace verify {
namespace {

const int columns[] = {1, 3, 4, 7, 8, 13, 26, 39, 40, 70};
const int heights[] = {1, 2, 3, 8, 101};
const int scaleFactors[] = {0, 9, 15, 20, -1, -12};

// How the members of the families differ in their arguments.
struct Shape {
    bool list = false;         // D2L
    bool gaussians = false;    // one frame, many Gaussians
    bool identity = false;     // no var
    bool scaled = false;       // a scale factor
    bool separateVal = false;  // many Gaussians: val is an array of its own
    bool oneResult = false;    // a mixture
};

template <class T>
struct Matrix {
    Matrix(std::vector<T> values, int height, int step_) : block(std::move(values)), step(step_) {
        for (int r = 0; r < height; ++r) rows.push_back(block.data() + static_cast<std::ptrdiff_t>(r) * step);
    }
    std::vector<T> block;
    std::vector<const T*> rows;
    int step;
};

template <Shape shape, class T>
auto layoutOf(const Matrix<T>& m) {
    if constexpr (shape.list) {
        return m.rows.data();
    } else {
        return m.block.data();
    }
}
template <bool present, class X>
auto only(X x) {
    if constexpr (present) {
        return std::make_tuple(x);
    } else {
        return std::tuple<>();
    }
}

template <Shape shape, auto function, class T, class Val, class Out>
void callOnce(Digest& digest, const Matrix<T>& many, const Matrix<T>& manyVar, const std::vector<T>& one,
              const std::vector<T>& oneVar, const std::vector<Val>& val, std::vector<Out> out, int scaleFactor) {
    const int len = static_cast<int>(one.size()), height = static_cast<int>(many.rows.size());
    const T *shared = one.data(), *sharedVar = oneVar.data();
    const Val* vals = val.data();
    const auto rows = std::make_tuple(layoutOf<shape>(many));
    const auto rowVars = only<!shape.identity>(layoutOf<shape>(manyVar));
    const auto step = only<!shape.list>(many.step);
    const auto last = only<shape.scaled>(scaleFactor);
    VornStatus status;
    if constexpr (shape.oneResult) {
        status = std::apply(function, std::tuple_cat(std::make_tuple(shared), rows, rowVars, std::make_tuple(height),
                                                     step, std::make_tuple(len, vals, out.data()), last));
        out.resize(1);
    } else if constexpr (shape.gaussians) {
        status = std::apply(
            function, std::tuple_cat(rows, rowVars, step, std::make_tuple(shared, len), only<shape.separateVal>(vals),
                                     std::make_tuple(out.data(), height), last));
    } else {
        status =
            std::apply(function, std::tuple_cat(rows, step, std::make_tuple(shared), only<!shape.identity>(sharedVar),
                                                std::make_tuple(len, out.data(), height, vals[0]), last));
    }
    digest.add(status);
    digest.add(out);
}

// Ordinary features and inverse variances, then any bit pattern; more scale factors in short calls.
template <Shape shape, class T, class Val, class Out, auto function>
void scores(Source& source, Digest& digest) {
    int turn = 0;
    const auto run = [&](int len, int height, bool ordinary) {
        const auto values = [&](std::size_t n, double low, double high) {
            return ordinary ? source.values<T>(n, low, high) : source.patterns<T>(n);
        };
        const int step = len + height % 3;
        const std::size_t size = static_cast<std::size_t>(step) * height;
        const Matrix<T> many(values(size, -5, 5), height, step), manyVar(values(size, 0.01, 4), height, step);
        const std::vector<T> one = values(len, -5, 5), oneVar = values(len, 0.01, 4);
        const std::vector<Val> val = ordinary ? source.values<Val>(height, -90, 9) : source.patterns<Val>(height);
        const std::vector<Out> old = ordinary ? source.values<Out>(height, -200, 0) : source.patterns<Out>(height);
        callOnce<shape, function>(digest, many, manyVar, one, oneVar, val, old,
                                  scaleFactors[turn++ % std::size(scaleFactors)]);
    };
    for (int len : columns) {
        for (int height : heights) run(len, height, true);
        for (std::size_t i = 0; i < std::size(scaleFactors); ++i) run(len, 5, i % 2 == 0);
    }
    run(5, 1001, true);
}

const Workload workloads[] = {
    {"vornsLogGauss_32f_D2", scores<Shape{}, Vorn32f, Vorn32f, Vorn32f, vornsLogGauss_32f_D2>},
    {"vornsLogGauss_32f_D2L", scores<Shape{.list = true}, Vorn32f, Vorn32f, Vorn32f, vornsLogGauss_32f_D2L>},
    {"vornsLogGauss_64f_D2", scores<Shape{}, Vorn64f, Vorn64f, Vorn64f, vornsLogGauss_64f_D2>},
    {"vornsLogGauss_64f_D2L", scores<Shape{.list = true}, Vorn64f, Vorn64f, Vorn64f, vornsLogGauss_64f_D2L>},
    {"vornsLogGauss_IdVar_32f_D2",
     scores<Shape{.identity = true}, Vorn32f, Vorn32f, Vorn32f, vornsLogGauss_IdVar_32f_D2>},
    {"vornsLogGauss_IdVar_32f_D2L",
     scores<Shape{.list = true, .identity = true}, Vorn32f, Vorn32f, Vorn32f, vornsLogGauss_IdVar_32f_D2L>},
    {"vornsLogGauss_IdVar_64f_D2",
     scores<Shape{.identity = true}, Vorn64f, Vorn64f, Vorn64f, vornsLogGauss_IdVar_64f_D2>},
    {"vornsLogGauss_IdVar_64f_D2L",
     scores<Shape{.list = true, .identity = true}, Vorn64f, Vorn64f, Vorn64f, vornsLogGauss_IdVar_64f_D2L>},
    {"vornsLogGauss_16s32s_D2Sfs",
     scores<Shape{.scaled = true}, Vorn16s, Vorn32s, Vorn32s, vornsLogGauss_16s32s_D2Sfs>},
    {"vornsLogGauss_16s32s_D2LSfs",
     scores<Shape{.list = true, .scaled = true}, Vorn16s, Vorn32s, Vorn32s, vornsLogGauss_16s32s_D2LSfs>},
    {"vornsLogGauss_Scaled_16s32f_D2",
     scores<Shape{.scaled = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_Scaled_16s32f_D2>},
    {"vornsLogGauss_Scaled_16s32f_D2L",
     scores<Shape{.list = true, .scaled = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_Scaled_16s32f_D2L>},
    {"vornsLogGauss_IdVar_16s32s_D2Sfs",
     scores<Shape{.identity = true, .scaled = true}, Vorn16s, Vorn32s, Vorn32s, vornsLogGauss_IdVar_16s32s_D2Sfs>},
    {"vornsLogGauss_IdVar_16s32s_D2LSfs", scores<Shape{.list = true, .identity = true, .scaled = true}, Vorn16s,
                                                 Vorn32s, Vorn32s, vornsLogGauss_IdVar_16s32s_D2LSfs>},
    {"vornsLogGauss_IdVarScaled_16s32f_D2",
     scores<Shape{.identity = true, .scaled = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_IdVarScaled_16s32f_D2>},
    {"vornsLogGauss_IdVarScaled_16s32f_D2L", scores<Shape{.list = true, .identity = true, .scaled = true}, Vorn16s,
                                                    Vorn32f, Vorn32f, vornsLogGauss_IdVarScaled_16s32f_D2L>},
    {"vornsLogGauss_Low_16s32s_D2Sfs",
     scores<Shape{.scaled = true}, Vorn16s, Vorn32s, Vorn32s, vornsLogGauss_Low_16s32s_D2Sfs>},
    {"vornsLogGauss_Low_16s32s_D2LSfs",
     scores<Shape{.list = true, .scaled = true}, Vorn16s, Vorn32s, Vorn32s, vornsLogGauss_Low_16s32s_D2LSfs>},
    {"vornsLogGauss_LowScaled_16s32f_D2",
     scores<Shape{.scaled = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_LowScaled_16s32f_D2>},
    {"vornsLogGauss_LowScaled_16s32f_D2L",
     scores<Shape{.list = true, .scaled = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_LowScaled_16s32f_D2L>},
    {"vornsLogGauss_IdVarLow_16s32s_D2Sfs",
     scores<Shape{.identity = true, .scaled = true}, Vorn16s, Vorn32s, Vorn32s, vornsLogGauss_IdVarLow_16s32s_D2Sfs>},
    {"vornsLogGauss_IdVarLow_16s32s_D2LSfs", scores<Shape{.list = true, .identity = true, .scaled = true}, Vorn16s,
                                                    Vorn32s, Vorn32s, vornsLogGauss_IdVarLow_16s32s_D2LSfs>},
    {"vornsLogGauss_IdVarLowScaled_16s32f_D2", scores<Shape{.identity = true, .scaled = true}, Vorn16s, Vorn32f,
                                                      Vorn32f, vornsLogGauss_IdVarLowScaled_16s32f_D2>},
    {"vornsLogGauss_IdVarLowScaled_16s32f_D2L", scores<Shape{.list = true, .identity = true, .scaled = true}, Vorn16s,
                                                       Vorn32f, Vorn32f, vornsLogGauss_IdVarLowScaled_16s32f_D2L>},
    {"vornsLogGauss_Low_16s32f_D2", scores<Shape{}, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_Low_16s32f_D2>},
    {"vornsLogGauss_Low_16s32f_D2L",
     scores<Shape{.list = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_Low_16s32f_D2L>},
    {"vornsLogGauss_IdVarLow_16s32f_D2",
     scores<Shape{.identity = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_IdVarLow_16s32f_D2>},
    {"vornsLogGauss_IdVarLow_16s32f_D2L",
     scores<Shape{.list = true, .identity = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGauss_IdVarLow_16s32f_D2L>},
    {"vornsLogGaussMultiMix_32f_D2",
     scores<Shape{.gaussians = true}, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMultiMix_32f_D2>},
    {"vornsLogGaussMultiMix_32f_D2L",
     scores<Shape{.list = true, .gaussians = true}, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMultiMix_32f_D2L>},
    {"vornsLogGaussMultiMix_64f_D2",
     scores<Shape{.gaussians = true}, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMultiMix_64f_D2>},
    {"vornsLogGaussMultiMix_64f_D2L",
     scores<Shape{.list = true, .gaussians = true}, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMultiMix_64f_D2L>},
    {"vornsLogGaussMultiMix_16s32s_D2Sfs",
     scores<Shape{.gaussians = true, .scaled = true}, Vorn16s, Vorn32s, Vorn32s, vornsLogGaussMultiMix_16s32s_D2Sfs>},
    {"vornsLogGaussMultiMix_16s32s_D2LSfs", scores<Shape{.list = true, .gaussians = true, .scaled = true}, Vorn16s,
                                                   Vorn32s, Vorn32s, vornsLogGaussMultiMix_16s32s_D2LSfs>},
    {"vornsLogGaussMultiMix_Scaled_16s32f_D2", scores<Shape{.gaussians = true, .scaled = true}, Vorn16s, Vorn32f,
                                                      Vorn32f, vornsLogGaussMultiMix_Scaled_16s32f_D2>},
    {"vornsLogGaussMultiMix_Scaled_16s32f_D2L", scores<Shape{.list = true, .gaussians = true, .scaled = true}, Vorn16s,
                                                       Vorn32f, Vorn32f, vornsLogGaussMultiMix_Scaled_16s32f_D2L>},
    {"vornsLogGaussMultiMix_Low_16s32s_D2Sfs", scores<Shape{.gaussians = true, .scaled = true}, Vorn16s, Vorn32s,
                                                      Vorn32s, vornsLogGaussMultiMix_Low_16s32s_D2Sfs>},
    {"vornsLogGaussMultiMix_Low_16s32s_D2LSfs", scores<Shape{.list = true, .gaussians = true, .scaled = true}, Vorn16s,
                                                       Vorn32s, Vorn32s, vornsLogGaussMultiMix_Low_16s32s_D2LSfs>},
    {"vornsLogGaussMultiMix_LowScaled_16s32f_D2", scores<Shape{.gaussians = true, .scaled = true}, Vorn16s, Vorn32f,
                                                         Vorn32f, vornsLogGaussMultiMix_LowScaled_16s32f_D2>},
    {"vornsLogGaussMultiMix_LowScaled_16s32f_D2L",
     scores<Shape{.list = true, .gaussians = true, .scaled = true}, Vorn16s, Vorn32f, Vorn32f,
            vornsLogGaussMultiMix_LowScaled_16s32f_D2L>},
    {"vornsLogGaussMultiMix_Low_16s32f_D2",
     scores<Shape{.gaussians = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMultiMix_Low_16s32f_D2>},
    {"vornsLogGaussMultiMix_Low_16s32f_D2L",
     scores<Shape{.list = true, .gaussians = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMultiMix_Low_16s32f_D2L>},
    {"vornsLogGaussMax_32f_D2", scores<Shape{}, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMax_32f_D2>},
    {"vornsLogGaussMax_32f_D2L", scores<Shape{.list = true}, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMax_32f_D2L>},
    {"vornsLogGaussMax_64f_D2", scores<Shape{}, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMax_64f_D2>},
    {"vornsLogGaussMax_64f_D2L", scores<Shape{.list = true}, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMax_64f_D2L>},
    {"vornsLogGaussMax_Scaled_16s32f_D2",
     scores<Shape{.scaled = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMax_Scaled_16s32f_D2>},
    {"vornsLogGaussMax_Scaled_16s32f_D2L",
     scores<Shape{.list = true, .scaled = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMax_Scaled_16s32f_D2L>},
    {"vornsLogGaussMax_16s32s_D2Sfs",
     scores<Shape{.scaled = true}, Vorn16s, Vorn32s, Vorn32s, vornsLogGaussMax_16s32s_D2Sfs>},
    {"vornsLogGaussMax_16s32s_D2LSfs",
     scores<Shape{.list = true, .scaled = true}, Vorn16s, Vorn32s, Vorn32s, vornsLogGaussMax_16s32s_D2LSfs>},
    {"vornsLogGaussMax_IdVar_32f_D2",
     scores<Shape{.identity = true}, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMax_IdVar_32f_D2>},
    {"vornsLogGaussMax_IdVar_32f_D2L",
     scores<Shape{.list = true, .identity = true}, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMax_IdVar_32f_D2L>},
    {"vornsLogGaussMax_IdVar_64f_D2",
     scores<Shape{.identity = true}, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMax_IdVar_64f_D2>},
    {"vornsLogGaussMax_IdVar_64f_D2L",
     scores<Shape{.list = true, .identity = true}, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMax_IdVar_64f_D2L>},
    {"vornsLogGaussMax_IdVarScaled_16s32f_D2", scores<Shape{.identity = true, .scaled = true}, Vorn16s, Vorn32f,
                                                      Vorn32f, vornsLogGaussMax_IdVarScaled_16s32f_D2>},
    {"vornsLogGaussMax_IdVarScaled_16s32f_D2L", scores<Shape{.list = true, .identity = true, .scaled = true}, Vorn16s,
                                                       Vorn32f, Vorn32f, vornsLogGaussMax_IdVarScaled_16s32f_D2L>},
    {"vornsLogGaussMax_IdVar_16s32s_D2Sfs",
     scores<Shape{.identity = true, .scaled = true}, Vorn16s, Vorn32s, Vorn32s, vornsLogGaussMax_IdVar_16s32s_D2Sfs>},
    {"vornsLogGaussMax_IdVar_16s32s_D2LSfs", scores<Shape{.list = true, .identity = true, .scaled = true}, Vorn16s,
                                                    Vorn32s, Vorn32s, vornsLogGaussMax_IdVar_16s32s_D2LSfs>},
    {"vornsLogGaussMax_LowScaled_16s32f_D2",
     scores<Shape{.scaled = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMax_LowScaled_16s32f_D2>},
    {"vornsLogGaussMax_LowScaled_16s32f_D2L",
     scores<Shape{.list = true, .scaled = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMax_LowScaled_16s32f_D2L>},
    {"vornsLogGaussMax_Low_16s32s_D2Sfs",
     scores<Shape{.scaled = true}, Vorn16s, Vorn32s, Vorn32s, vornsLogGaussMax_Low_16s32s_D2Sfs>},
    {"vornsLogGaussMax_Low_16s32s_D2LSfs",
     scores<Shape{.list = true, .scaled = true}, Vorn16s, Vorn32s, Vorn32s, vornsLogGaussMax_Low_16s32s_D2LSfs>},
    {"vornsLogGaussMax_IdVarLow_16s32s_D2Sfs", scores<Shape{.identity = true, .scaled = true}, Vorn16s, Vorn32s,
                                                      Vorn32s, vornsLogGaussMax_IdVarLow_16s32s_D2Sfs>},
    {"vornsLogGaussMax_IdVarLow_16s32s_D2LSfs", scores<Shape{.list = true, .identity = true, .scaled = true}, Vorn16s,
                                                       Vorn32s, Vorn32s, vornsLogGaussMax_IdVarLow_16s32s_D2LSfs>},
    {"vornsLogGaussMax_IdVarLowScaled_16s32f_D2", scores<Shape{.identity = true, .scaled = true}, Vorn16s, Vorn32f,
                                                         Vorn32f, vornsLogGaussMax_IdVarLowScaled_16s32f_D2>},
    {"vornsLogGaussMax_IdVarLowScaled_16s32f_D2L",
     scores<Shape{.list = true, .identity = true, .scaled = true}, Vorn16s, Vorn32f, Vorn32f,
            vornsLogGaussMax_IdVarLowScaled_16s32f_D2L>},
    {"vornsLogGaussMaxMultiMix_32f_D2",
     scores<Shape{.gaussians = true, .separateVal = true}, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussMaxMultiMix_32f_D2>},
    {"vornsLogGaussMaxMultiMix_32f_D2L", scores<Shape{.list = true, .gaussians = true, .separateVal = true}, Vorn32f,
                                                Vorn32f, Vorn32f, vornsLogGaussMaxMultiMix_32f_D2L>},
    {"vornsLogGaussMaxMultiMix_64f_D2",
     scores<Shape{.gaussians = true, .separateVal = true}, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussMaxMultiMix_64f_D2>},
    {"vornsLogGaussMaxMultiMix_64f_D2L", scores<Shape{.list = true, .gaussians = true, .separateVal = true}, Vorn64f,
                                                Vorn64f, Vorn64f, vornsLogGaussMaxMultiMix_64f_D2L>},
    {"vornsLogGaussMaxMultiMix_Scaled_16s32f_D2",
     scores<Shape{.gaussians = true, .scaled = true, .separateVal = true}, Vorn16s, Vorn32f, Vorn32f,
            vornsLogGaussMaxMultiMix_Scaled_16s32f_D2>},
    {"vornsLogGaussMaxMultiMix_Scaled_16s32f_D2L",
     scores<Shape{.list = true, .gaussians = true, .scaled = true, .separateVal = true}, Vorn16s, Vorn32f, Vorn32f,
            vornsLogGaussMaxMultiMix_Scaled_16s32f_D2L>},
    {"vornsLogGaussMaxMultiMix_16s32s_D2Sfs", scores<Shape{.gaussians = true, .scaled = true, .separateVal = true},
                                                     Vorn16s, Vorn32s, Vorn32s, vornsLogGaussMaxMultiMix_16s32s_D2Sfs>},
    {"vornsLogGaussMaxMultiMix_16s32s_D2LSfs",
     scores<Shape{.list = true, .gaussians = true, .scaled = true, .separateVal = true}, Vorn16s, Vorn32s, Vorn32s,
            vornsLogGaussMaxMultiMix_16s32s_D2LSfs>},
    {"vornsLogGaussMaxMultiMix_LowScaled_16s32f_D2",
     scores<Shape{.gaussians = true, .scaled = true, .separateVal = true}, Vorn16s, Vorn32f, Vorn32f,
            vornsLogGaussMaxMultiMix_LowScaled_16s32f_D2>},
    {"vornsLogGaussMaxMultiMix_LowScaled_16s32f_D2L",
     scores<Shape{.list = true, .gaussians = true, .scaled = true, .separateVal = true}, Vorn16s, Vorn32f, Vorn32f,
            vornsLogGaussMaxMultiMix_LowScaled_16s32f_D2L>},
    {"vornsLogGaussMaxMultiMix_Low_16s32s_D2Sfs",
     scores<Shape{.gaussians = true, .scaled = true, .separateVal = true}, Vorn16s, Vorn32s, Vorn32s,
            vornsLogGaussMaxMultiMix_Low_16s32s_D2Sfs>},
    {"vornsLogGaussMaxMultiMix_Low_16s32s_D2LSfs",
     scores<Shape{.list = true, .gaussians = true, .scaled = true, .separateVal = true}, Vorn16s, Vorn32s, Vorn32s,
            vornsLogGaussMaxMultiMix_Low_16s32s_D2LSfs>},
    {"vornsLogGaussAdd_32f_D2", scores<Shape{}, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussAdd_32f_D2>},
    {"vornsLogGaussAdd_32f_D2L", scores<Shape{.list = true}, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussAdd_32f_D2L>},
    {"vornsLogGaussAdd_64f_D2", scores<Shape{}, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussAdd_64f_D2>},
    {"vornsLogGaussAdd_64f_D2L", scores<Shape{.list = true}, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussAdd_64f_D2L>},
    {"vornsLogGaussAdd_Scaled_16s32f_D2",
     scores<Shape{.scaled = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussAdd_Scaled_16s32f_D2>},
    {"vornsLogGaussAdd_Scaled_16s32f_D2L",
     scores<Shape{.list = true, .scaled = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussAdd_Scaled_16s32f_D2L>},
    {"vornsLogGaussAdd_IdVar_32f_D2",
     scores<Shape{.identity = true}, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussAdd_IdVar_32f_D2>},
    {"vornsLogGaussAdd_IdVar_32f_D2L",
     scores<Shape{.list = true, .identity = true}, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussAdd_IdVar_32f_D2L>},
    {"vornsLogGaussAdd_IdVar_64f_D2",
     scores<Shape{.identity = true}, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussAdd_IdVar_64f_D2>},
    {"vornsLogGaussAdd_IdVar_64f_D2L",
     scores<Shape{.list = true, .identity = true}, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussAdd_IdVar_64f_D2L>},
    {"vornsLogGaussAdd_IdVarScaled_16s32f_D2", scores<Shape{.identity = true, .scaled = true}, Vorn16s, Vorn32f,
                                                      Vorn32f, vornsLogGaussAdd_IdVarScaled_16s32f_D2>},
    {"vornsLogGaussAdd_IdVarScaled_16s32f_D2L", scores<Shape{.list = true, .identity = true, .scaled = true}, Vorn16s,
                                                       Vorn32f, Vorn32f, vornsLogGaussAdd_IdVarScaled_16s32f_D2L>},
    {"vornsLogGaussAdd_LowScaled_16s32f_D2",
     scores<Shape{.scaled = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussAdd_LowScaled_16s32f_D2>},
    {"vornsLogGaussAdd_LowScaled_16s32f_D2L",
     scores<Shape{.list = true, .scaled = true}, Vorn16s, Vorn32f, Vorn32f, vornsLogGaussAdd_LowScaled_16s32f_D2L>},
    {"vornsLogGaussAdd_IdVarLowScaled_16s32f_D2", scores<Shape{.identity = true, .scaled = true}, Vorn16s, Vorn32f,
                                                         Vorn32f, vornsLogGaussAdd_IdVarLowScaled_16s32f_D2>},
    {"vornsLogGaussAdd_IdVarLowScaled_16s32f_D2L",
     scores<Shape{.list = true, .identity = true, .scaled = true}, Vorn16s, Vorn32f, Vorn32f,
            vornsLogGaussAdd_IdVarLowScaled_16s32f_D2L>},
    {"vornsLogGaussAddMultiMix_32f_D2",
     scores<Shape{.gaussians = true, .separateVal = true}, Vorn32f, Vorn32f, Vorn32f, vornsLogGaussAddMultiMix_32f_D2>},
    {"vornsLogGaussAddMultiMix_32f_D2L", scores<Shape{.list = true, .gaussians = true, .separateVal = true}, Vorn32f,
                                                Vorn32f, Vorn32f, vornsLogGaussAddMultiMix_32f_D2L>},
    {"vornsLogGaussAddMultiMix_64f_D2",
     scores<Shape{.gaussians = true, .separateVal = true}, Vorn64f, Vorn64f, Vorn64f, vornsLogGaussAddMultiMix_64f_D2>},
    {"vornsLogGaussAddMultiMix_64f_D2L", scores<Shape{.list = true, .gaussians = true, .separateVal = true}, Vorn64f,
                                                Vorn64f, Vorn64f, vornsLogGaussAddMultiMix_64f_D2L>},
    {"vornsLogGaussAddMultiMix_Scaled_16s32f_D2",
     scores<Shape{.gaussians = true, .scaled = true, .separateVal = true}, Vorn16s, Vorn32f, Vorn32f,
            vornsLogGaussAddMultiMix_Scaled_16s32f_D2>},
    {"vornsLogGaussAddMultiMix_Scaled_16s32f_D2L",
     scores<Shape{.list = true, .gaussians = true, .scaled = true, .separateVal = true}, Vorn16s, Vorn32f, Vorn32f,
            vornsLogGaussAddMultiMix_Scaled_16s32f_D2L>},
    {"vornsLogGaussAddMultiMix_LowScaled_16s32f_D2",
     scores<Shape{.gaussians = true, .scaled = true, .separateVal = true}, Vorn16s, Vorn32f, Vorn32f,
            vornsLogGaussAddMultiMix_LowScaled_16s32f_D2>},
    {"vornsLogGaussAddMultiMix_LowScaled_16s32f_D2L",
     scores<Shape{.list = true, .gaussians = true, .scaled = true, .separateVal = true}, Vorn16s, Vorn32f, Vorn32f,
            vornsLogGaussAddMultiMix_LowScaled_16s32f_D2L>},
    {"vornsLogGaussMixture_32f_D2", scores<Shape{.gaussians = true, .separateVal = true, .oneResult = true}, Vorn32f,
                                           Vorn32f, Vorn32f, vornsLogGaussMixture_32f_D2>},
    {"vornsLogGaussMixture_32f_D2L",
     scores<Shape{.list = true, .gaussians = true, .separateVal = true, .oneResult = true}, Vorn32f, Vorn32f, Vorn32f,
            vornsLogGaussMixture_32f_D2L>},
    {"vornsLogGaussMixture_64f_D2", scores<Shape{.gaussians = true, .separateVal = true, .oneResult = true}, Vorn64f,
                                           Vorn64f, Vorn64f, vornsLogGaussMixture_64f_D2>},
    {"vornsLogGaussMixture_64f_D2L",
     scores<Shape{.list = true, .gaussians = true, .separateVal = true, .oneResult = true}, Vorn64f, Vorn64f, Vorn64f,
            vornsLogGaussMixture_64f_D2L>},
    {"vornsLogGaussMixture_Scaled_16s32f_D2",
     scores<Shape{.gaussians = true, .scaled = true, .separateVal = true, .oneResult = true}, Vorn16s, Vorn32f, Vorn32f,
            vornsLogGaussMixture_Scaled_16s32f_D2>},
    {"vornsLogGaussMixture_Scaled_16s32f_D2L",
     scores<Shape{.list = true, .gaussians = true, .scaled = true, .separateVal = true, .oneResult = true}, Vorn16s,
            Vorn32f, Vorn32f, vornsLogGaussMixture_Scaled_16s32f_D2L>},
    {"vornsLogGaussMixture_LowScaled_16s32f_D2",
     scores<Shape{.gaussians = true, .scaled = true, .separateVal = true, .oneResult = true}, Vorn16s, Vorn32f, Vorn32f,
            vornsLogGaussMixture_LowScaled_16s32f_D2>},
    {"vornsLogGaussMixture_LowScaled_16s32f_D2L",
     scores<Shape{.list = true, .gaussians = true, .scaled = true, .separateVal = true, .oneResult = true}, Vorn16s,
            Vorn32f, Vorn32f, vornsLogGaussMixture_LowScaled_16s32f_D2L>},
    {"vornsLogGaussMixture_IdVar_32f_D2",
     scores<Shape{.gaussians = true, .identity = true, .separateVal = true, .oneResult = true}, Vorn32f, Vorn32f,
            Vorn32f, vornsLogGaussMixture_IdVar_32f_D2>},
    {"vornsLogGaussMixture_IdVar_32f_D2L",
     scores<Shape{.list = true, .gaussians = true, .identity = true, .separateVal = true, .oneResult = true}, Vorn32f,
            Vorn32f, Vorn32f, vornsLogGaussMixture_IdVar_32f_D2L>},
    {"vornsLogGaussMixture_IdVar_64f_D2",
     scores<Shape{.gaussians = true, .identity = true, .separateVal = true, .oneResult = true}, Vorn64f, Vorn64f,
            Vorn64f, vornsLogGaussMixture_IdVar_64f_D2>},
    {"vornsLogGaussMixture_IdVar_64f_D2L",
     scores<Shape{.list = true, .gaussians = true, .identity = true, .separateVal = true, .oneResult = true}, Vorn64f,
            Vorn64f, Vorn64f, vornsLogGaussMixture_IdVar_64f_D2L>},
    {"vornsLogGaussMixture_IdVarScaled_16s32f_D2",
     scores<Shape{.gaussians = true, .identity = true, .scaled = true, .separateVal = true, .oneResult = true}, Vorn16s,
            Vorn32f, Vorn32f, vornsLogGaussMixture_IdVarScaled_16s32f_D2>},
    {"vornsLogGaussMixture_IdVarScaled_16s32f_D2L",
     scores<
         Shape{
             .list = true, .gaussians = true, .identity = true, .scaled = true, .separateVal = true, .oneResult = true},
         Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMixture_IdVarScaled_16s32f_D2L>},
    {"vornsLogGaussMixture_IdVarLowScaled_16s32f_D2",
     scores<Shape{.gaussians = true, .identity = true, .scaled = true, .separateVal = true, .oneResult = true}, Vorn16s,
            Vorn32f, Vorn32f, vornsLogGaussMixture_IdVarLowScaled_16s32f_D2>},
    {"vornsLogGaussMixture_IdVarLowScaled_16s32f_D2L",
     scores<
         Shape{
             .list = true, .gaussians = true, .identity = true, .scaled = true, .separateVal = true, .oneResult = true},
         Vorn16s, Vorn32f, Vorn32f, vornsLogGaussMixture_IdVarLowScaled_16s32f_D2L>},
};

}  // namespace

Family gaussianWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
