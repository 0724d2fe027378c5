// Gaussian scores and mixtures.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

const int columns[] = {1, 3, 4, 7, 8, 13, 26, 39, 40, 70};
const int heights[] = {1, 2, 3, 8, 101};
const int scaleFactors[] = {0, 9, 15, 20, -1, -12};

struct Matrix {
    Matrix(Array values, int height, int step) : block(std::move(values)) {
        for (int r = 0; r < height; ++r)
            rows.push_back(block.at(static_cast<std::size_t>(r) * static_cast<std::size_t>(step)));
    }
    Array block;
    std::vector<const void*> rows;
};

// Ordinary features and inverse variances, then any bit pattern; more scale factors in short calls.
void scores(const calls::Function& function, Source& source, Digest& digest) {
    int turn = 0;
    const Element element = function.element(Role::src1);
    const Element outElement = function.element(function.has(Role::result) ? Role::result : Role::dst);
    const auto run = [&](int len, int height, bool ordinary) {
        const auto draw = [&](Element drawn, int n, double low, double high) {
            return ordinary ? source.values(drawn, static_cast<std::size_t>(n), low, high)
                            : source.patterns(drawn, static_cast<std::size_t>(n));
        };
        const int step = len + height % 3, size = step * height;
        const Matrix many(draw(element, size, -5, 5), height, step),
            manyVar(draw(element, size, 0.01, 4), height, step);
        const Array one = draw(element, len, -5, 5), oneVar = draw(element, len, 0.01, 4);
        const Array vals = draw(outElement, height, -90, 9);
        Array out = draw(outElement, height, -200, 0);
        calls::Arguments arguments;
        arguments[Role::rows] = many.block.data(), arguments[Role::rowVars] = manyVar.block.data();
        arguments[Role::rowList] = many.rows.data(), arguments[Role::rowVarList] = manyVar.rows.data();
        arguments[Role::src1] = one.data(), arguments[Role::var] = oneVar.data();
        arguments[Role::vals] = arguments[Role::val] = vals.data();
        arguments[Role::dst] = arguments[Role::result] = out.data();
        arguments[Role::len] = len, arguments[Role::height] = height, arguments[Role::step] = step;
        arguments[Role::scaleFactor] = scaleFactors[turn++ % std::size(scaleFactors)];
        digest.add(function(arguments));
        if (function.has(Role::result)) out.resize(1);
        digest.add(out);
    };
    for (int len : columns) {
        for (int height : heights) run(len, height, true);
        for (std::size_t i = 0; i < std::size(scaleFactors); ++i) run(len, 5, i % 2 == 0);
    }
    run(5, 1001, true);
}
Workload workload(const calls::Function& function) {
    return {function.name(), [=](Source& source, Digest& digest) { scores(function, source, digest); }};
}

#define ROW(function) workload({VORN_NAMED(function), calls::scoreShapes})

// clang-format off
const Workload workloads[] = {
    ROW(vornsLogGauss_32f_D2),
    ROW(vornsLogGauss_32f_D2L),
    ROW(vornsLogGauss_64f_D2),
    ROW(vornsLogGauss_64f_D2L),
    ROW(vornsLogGauss_IdVar_32f_D2),
    ROW(vornsLogGauss_IdVar_32f_D2L),
    ROW(vornsLogGauss_IdVar_64f_D2),
    ROW(vornsLogGauss_IdVar_64f_D2L),
    ROW(vornsLogGauss_16s32s_D2Sfs),
    ROW(vornsLogGauss_16s32s_D2LSfs),
    ROW(vornsLogGauss_Scaled_16s32f_D2),
    ROW(vornsLogGauss_Scaled_16s32f_D2L),
    ROW(vornsLogGauss_IdVar_16s32s_D2Sfs),
    ROW(vornsLogGauss_IdVar_16s32s_D2LSfs),
    ROW(vornsLogGauss_IdVarScaled_16s32f_D2),
    ROW(vornsLogGauss_IdVarScaled_16s32f_D2L),
    ROW(vornsLogGauss_Low_16s32s_D2Sfs),
    ROW(vornsLogGauss_Low_16s32s_D2LSfs),
    ROW(vornsLogGauss_LowScaled_16s32f_D2),
    ROW(vornsLogGauss_LowScaled_16s32f_D2L),
    ROW(vornsLogGauss_IdVarLow_16s32s_D2Sfs),
    ROW(vornsLogGauss_IdVarLow_16s32s_D2LSfs),
    ROW(vornsLogGauss_IdVarLowScaled_16s32f_D2),
    ROW(vornsLogGauss_IdVarLowScaled_16s32f_D2L),
    ROW(vornsLogGauss_Low_16s32f_D2),
    ROW(vornsLogGauss_Low_16s32f_D2L),
    ROW(vornsLogGauss_IdVarLow_16s32f_D2),
    ROW(vornsLogGauss_IdVarLow_16s32f_D2L),
    ROW(vornsLogGaussMultiMix_32f_D2),
    ROW(vornsLogGaussMultiMix_32f_D2L),
    ROW(vornsLogGaussMultiMix_64f_D2),
    ROW(vornsLogGaussMultiMix_64f_D2L),
    ROW(vornsLogGaussMultiMix_16s32s_D2Sfs),
    ROW(vornsLogGaussMultiMix_16s32s_D2LSfs),
    ROW(vornsLogGaussMultiMix_Scaled_16s32f_D2),
    ROW(vornsLogGaussMultiMix_Scaled_16s32f_D2L),
    ROW(vornsLogGaussMultiMix_Low_16s32s_D2Sfs),
    ROW(vornsLogGaussMultiMix_Low_16s32s_D2LSfs),
    ROW(vornsLogGaussMultiMix_LowScaled_16s32f_D2),
    ROW(vornsLogGaussMultiMix_LowScaled_16s32f_D2L),
    ROW(vornsLogGaussMultiMix_Low_16s32f_D2),
    ROW(vornsLogGaussMultiMix_Low_16s32f_D2L),
    ROW(vornsLogGaussMax_32f_D2),
    ROW(vornsLogGaussMax_32f_D2L),
    ROW(vornsLogGaussMax_64f_D2),
    ROW(vornsLogGaussMax_64f_D2L),
    ROW(vornsLogGaussMax_Scaled_16s32f_D2),
    ROW(vornsLogGaussMax_Scaled_16s32f_D2L),
    ROW(vornsLogGaussMax_16s32s_D2Sfs),
    ROW(vornsLogGaussMax_16s32s_D2LSfs),
    ROW(vornsLogGaussMax_IdVar_32f_D2),
    ROW(vornsLogGaussMax_IdVar_32f_D2L),
    ROW(vornsLogGaussMax_IdVar_64f_D2),
    ROW(vornsLogGaussMax_IdVar_64f_D2L),
    ROW(vornsLogGaussMax_IdVarScaled_16s32f_D2),
    ROW(vornsLogGaussMax_IdVarScaled_16s32f_D2L),
    ROW(vornsLogGaussMax_IdVar_16s32s_D2Sfs),
    ROW(vornsLogGaussMax_IdVar_16s32s_D2LSfs),
    ROW(vornsLogGaussMax_LowScaled_16s32f_D2),
    ROW(vornsLogGaussMax_LowScaled_16s32f_D2L),
    ROW(vornsLogGaussMax_Low_16s32s_D2Sfs),
    ROW(vornsLogGaussMax_Low_16s32s_D2LSfs),
    ROW(vornsLogGaussMax_IdVarLow_16s32s_D2Sfs),
    ROW(vornsLogGaussMax_IdVarLow_16s32s_D2LSfs),
    ROW(vornsLogGaussMax_IdVarLowScaled_16s32f_D2),
    ROW(vornsLogGaussMax_IdVarLowScaled_16s32f_D2L),
    ROW(vornsLogGaussMaxMultiMix_32f_D2),
    ROW(vornsLogGaussMaxMultiMix_32f_D2L),
    ROW(vornsLogGaussMaxMultiMix_64f_D2),
    ROW(vornsLogGaussMaxMultiMix_64f_D2L),
    ROW(vornsLogGaussMaxMultiMix_Scaled_16s32f_D2),
    ROW(vornsLogGaussMaxMultiMix_Scaled_16s32f_D2L),
    ROW(vornsLogGaussMaxMultiMix_16s32s_D2Sfs),
    ROW(vornsLogGaussMaxMultiMix_16s32s_D2LSfs),
    ROW(vornsLogGaussMaxMultiMix_LowScaled_16s32f_D2),
    ROW(vornsLogGaussMaxMultiMix_LowScaled_16s32f_D2L),
    ROW(vornsLogGaussMaxMultiMix_Low_16s32s_D2Sfs),
    ROW(vornsLogGaussMaxMultiMix_Low_16s32s_D2LSfs),
    ROW(vornsLogGaussAdd_32f_D2),
    ROW(vornsLogGaussAdd_32f_D2L),
    ROW(vornsLogGaussAdd_64f_D2),
    ROW(vornsLogGaussAdd_64f_D2L),
    ROW(vornsLogGaussAdd_Scaled_16s32f_D2),
    ROW(vornsLogGaussAdd_Scaled_16s32f_D2L),
    ROW(vornsLogGaussAdd_IdVar_32f_D2),
    ROW(vornsLogGaussAdd_IdVar_32f_D2L),
    ROW(vornsLogGaussAdd_IdVar_64f_D2),
    ROW(vornsLogGaussAdd_IdVar_64f_D2L),
    ROW(vornsLogGaussAdd_IdVarScaled_16s32f_D2),
    ROW(vornsLogGaussAdd_IdVarScaled_16s32f_D2L),
    ROW(vornsLogGaussAdd_LowScaled_16s32f_D2),
    ROW(vornsLogGaussAdd_LowScaled_16s32f_D2L),
    ROW(vornsLogGaussAdd_IdVarLowScaled_16s32f_D2),
    ROW(vornsLogGaussAdd_IdVarLowScaled_16s32f_D2L),
    ROW(vornsLogGaussAddMultiMix_32f_D2),
    ROW(vornsLogGaussAddMultiMix_32f_D2L),
    ROW(vornsLogGaussAddMultiMix_64f_D2),
    ROW(vornsLogGaussAddMultiMix_64f_D2L),
    ROW(vornsLogGaussAddMultiMix_Scaled_16s32f_D2),
    ROW(vornsLogGaussAddMultiMix_Scaled_16s32f_D2L),
    ROW(vornsLogGaussAddMultiMix_LowScaled_16s32f_D2),
    ROW(vornsLogGaussAddMultiMix_LowScaled_16s32f_D2L),
    ROW(vornsLogGaussMixture_32f_D2),
    ROW(vornsLogGaussMixture_32f_D2L),
    ROW(vornsLogGaussMixture_64f_D2),
    ROW(vornsLogGaussMixture_64f_D2L),
    ROW(vornsLogGaussMixture_Scaled_16s32f_D2),
    ROW(vornsLogGaussMixture_Scaled_16s32f_D2L),
    ROW(vornsLogGaussMixture_LowScaled_16s32f_D2),
    ROW(vornsLogGaussMixture_LowScaled_16s32f_D2L),
    ROW(vornsLogGaussMixture_IdVar_32f_D2),
    ROW(vornsLogGaussMixture_IdVar_32f_D2L),
    ROW(vornsLogGaussMixture_IdVar_64f_D2),
    ROW(vornsLogGaussMixture_IdVar_64f_D2L),
    ROW(vornsLogGaussMixture_IdVarScaled_16s32f_D2),
    ROW(vornsLogGaussMixture_IdVarScaled_16s32f_D2L),
    ROW(vornsLogGaussMixture_IdVarLowScaled_16s32f_D2),
    ROW(vornsLogGaussMixture_IdVarLowScaled_16s32f_D2L),
};
// clang-format on

}  // namespace

Family gaussianWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
