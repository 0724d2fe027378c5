// Gaussian scores of one vector, and block-diagonal contexts.
#include <algorithm>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

const int scaleFactors[] = {-20, -3, -1, 0, 4, 15, 16, 28, 40};

// The score of a function, val being 3/2 or 15.
void addScore(Digest& digest, const calls::Function& function, calls::Arguments arguments, int len) {
    Array val(function.element(Role::val), 1), result(function.element(Role::result), 1);
    val.eachPart([]<class R>(R& x) { x = std::is_integral_v<R> ? R(15) : R(1.5); });
    arguments[Role::val] = val.data(), arguments[Role::result] = result.data(), arguments[Role::len] = len;
    digest.add(function(arguments));
    digest.add(result);
}
calls::Arguments vectors(const Array& src, const Array& mean, const Array& var) {
    calls::Arguments arguments;
    arguments[Role::src1] = src.data(), arguments[Role::src2] = mean.data(), arguments[Role::var] = var.data();
    return arguments;
}

// Ordinary data, and floats of any bit pattern. The variances are above zero.
void floats(const calls::Function& function, Source& source, Digest& digest) {
    const Element element = function.element(Role::src1);
    for (int len : lengths) {
        const auto n = static_cast<std::size_t>(len);
        const Array src = source.values(element, n, -20.0, 20.0), mean = source.values(element, n, -20.0, 20.0),
                    var = source.values(element, n, 0.01, 4.0);
        addScore(digest, function, vectors(src, mean, var), len);
        addScore(digest, function, vectors(source.patterns(element, n), mean, var), len);
    }
}

// Small values, and values over the whole range.
void fixed(const calls::Function& function, Source& source, Digest& digest) {
    for (int len : lengths) {
        const auto n = static_cast<std::size_t>(len);
        for (int scaleFactor : scaleFactors) {
            for (int shift : {9, 0}) {
                Array src = source.values(Element::s16, n), mean = source.values(Element::s16, n),
                      var = source.values(Element::s16, n);
                src.eachPart([&]<class T>(T& x) { x = static_cast<T>(std::int64_t(x) >> shift); });
                mean.eachPart([&]<class T>(T& x) { x = static_cast<T>(std::int64_t(x) >> shift); });
                var.eachPart([&]<class T>(T& x) { x = static_cast<T>((std::int64_t(x) >> shift) | 1); });
                calls::Arguments arguments = vectors(src, mean, var);
                arguments[Role::scaleFactor] = scaleFactor;
                addScore(digest, function, arguments, len);
            }
        }
    }
}

template <class T>
struct Matrix {
    std::vector<int> sizes;
    std::vector<T> elements;
    std::vector<const T*> rows;
};

// Blocks of 1, 2, 3, ... columns until len is used up.
template <class T>
Matrix<T> growingBlocks(Source& source, int len) {
    Matrix<T> matrix;
    std::size_t elements = 0;
    for (int left = len, size = 1; left > 0; ++size) {
        matrix.sizes.push_back(std::min(size, left));
        left -= matrix.sizes.back();
        elements += static_cast<std::size_t>(matrix.sizes.back()) * static_cast<std::size_t>(matrix.sizes.back());
    }
    matrix.elements = source.values<T>(elements, -2.0, 2.0);
    const T* row = matrix.elements.data();
    for (int size : matrix.sizes) {
        for (int r = 0; r < size; ++r, row += size) matrix.rows.push_back(row);
    }
    return matrix;
}

template <class T, class Context>
void blocks(const calls::Function& function, Source& source, Digest& digest,
            VornStatus (*init)(Context**, const T* const*, const int*, int), VornStatus (*release)(Context*)) {
    for (int len : lengths) {
        if (len > 1000) continue;
        const Matrix<T> matrix = growingBlocks<T>(source, len);
        Context* context = nullptr;
        digest.add(init(&context, matrix.rows.data(), matrix.sizes.data(), static_cast<int>(matrix.sizes.size())));
        const auto n = static_cast<std::size_t>(len);
        const Array src = source.values(calls::elementOf<T>, n, -9.0, 9.0),
                    mean = source.values(calls::elementOf<T>, n, -9.0, 9.0);
        calls::Arguments arguments = vectors(src, mean, src);
        arguments[Role::context] = context;
        arguments[Role::scaleFactor] = 6;
        addScore(digest, function, arguments, len);
        digest.add(release(context));
    }
}

// name: a function that makes or frees contexts, which this score tells; or the score's own.
Workload workload(const char* name, const calls::Function& function) {
    return {name, [=](Source& source, Digest& digest) {
                const Element element = function.element(Role::src1);
                if (!function.has(Role::context)) {
                    element == Element::s16 ? fixed(function, source, digest) : floats(function, source, digest);
                } else if (element == Element::f32) {
                    blocks(function, source, digest, vornsBlockDMatrixInitAlloc_32f, vornsBlockDMatrixFree_32f);
                } else if (element == Element::f64) {
                    blocks(function, source, digest, vornsBlockDMatrixInitAlloc_64f, vornsBlockDMatrixFree_64f);
                } else {
                    blocks(function, source, digest, vornsBlockDMatrixInitAlloc_16s, vornsBlockDMatrixFree_16s);
                }
            }};
}

#define SCORE(function) workload(#function, {VORN_NAMED(function), calls::scoreShapes})
#define CONTEXT(name, function) workload(#name, {VORN_NAMED(function), calls::scoreShapes})

// clang-format off
const Workload workloads[] = {
    SCORE(vornsLogGaussSingle_32f),
    SCORE(vornsLogGaussSingle_64f),
    SCORE(vornsLogGaussSingle_32f64f),
    SCORE(vornsLogGaussSingle_Scaled_16s32f),
    SCORE(vornsLogGaussSingle_16s32s_Sfs),
    SCORE(vornsLogGaussSingle_LowScaled_16s32f),
    SCORE(vornsLogGaussSingle_Low_16s32s_Sfs),
    SCORE(vornsLogGaussSingle_IdVar_32f),
    SCORE(vornsLogGaussSingle_IdVar_64f),
    SCORE(vornsLogGaussSingle_IdVar_32f64f),
    SCORE(vornsLogGaussSingle_IdVarScaled_16s32f),
    SCORE(vornsLogGaussSingle_IdVar_16s32s_Sfs),
    SCORE(vornsLogGaussSingle_IdVarLowScaled_16s32f),
    SCORE(vornsLogGaussSingle_IdVarLow_16s32s_Sfs),
    SCORE(vornsLogGaussSingle_DirectVar_32f),
    SCORE(vornsLogGaussSingle_DirectVar_64f),
    SCORE(vornsLogGaussSingle_DirectVar_32f64f),
    SCORE(vornsLogGaussSingle_DirectVarScaled_16s32f),
    SCORE(vornsLogGaussSingle_DirectVar_16s32s_Sfs),
    SCORE(vornsLogGaussSingle_BlockDVar_32f),
    SCORE(vornsLogGaussSingle_BlockDVar_64f),
    SCORE(vornsLogGaussSingle_BlockDVar_32f64f),
    SCORE(vornsLogGaussSingle_BlockDVarScaled_16s32f),
    SCORE(vornsLogGaussSingle_BlockDVar_16s32s_Sfs),
    CONTEXT(vornsBlockDMatrixInitAlloc_32f, vornsLogGaussSingle_BlockDVar_32f),
    CONTEXT(vornsBlockDMatrixInitAlloc_64f, vornsLogGaussSingle_BlockDVar_64f),
    CONTEXT(vornsBlockDMatrixInitAlloc_16s, vornsLogGaussSingle_BlockDVarScaled_16s32f),
    CONTEXT(vornsBlockDMatrixFree_32f, vornsLogGaussSingle_BlockDVar_32f),
    CONTEXT(vornsBlockDMatrixFree_64f, vornsLogGaussSingle_BlockDVar_64f),
    CONTEXT(vornsBlockDMatrixFree_16s, vornsLogGaussSingle_BlockDVarScaled_16s32f),
};
// clang-format on

}  // namespace

Family gaussSingleWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
