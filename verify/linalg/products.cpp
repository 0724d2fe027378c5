// Matrix-vector products.
#include <algorithm>
#include <iterator>

#include "families.h"

namespace verify {
namespace {

struct Shape {
    int height, width, step;
};
const Shape shapes[] = {{1, 1, 1},    {2, 3, 5},      {5, 7, 7},     {13, 13, 13},    {8, 16, 16},    {39, 39, 40},
                        {64, 64, 65}, {57, 130, 131}, {300, 33, 33}, {9, 1100, 1101}, {520, 260, 260}};
const int scaleFactors[] = {0, 1, 17, 33, 48, -3, 64, -62, 1075, -1024};

// The rows of a block, also in the order of a list.
template <class T>
struct Matrix {
    Shape shape;
    const T* src;
    const T* const* rows;
    const T* vec;
};

// Ordinary numbers, then any bit patterns, with one scale factor after the other.
template <class T, class R, class Multiply>
void multiply(Source& source, Digest& digest, Multiply product) {
    std::size_t turn = 0;
    for (const Shape& shape : shapes) {
        const std::size_t size = static_cast<std::size_t>(shape.height) * shape.step;
        const std::size_t most = static_cast<std::size_t>(std::max(shape.height, shape.width));
        for (bool any : {false, true}) {
            const auto src = any ? source.patterns<T>(size) : source.values<T>(size);
            const auto vec = any ? source.patterns<T>(most) : source.values<T>(most);
            std::vector<const T*> rows;
            for (int i = 0; i < shape.height; ++i) {
                rows.push_back(&src[static_cast<std::size_t>(i * 7 % shape.height) * shape.step]);
            }
            std::vector<R> dst(most);
            digest.add(product(Matrix<T>{shape, src.data(), rows.data(), vec.data()}, dst.data(),
                               scaleFactors[turn++ % std::size(scaleFactors)]));
            digest.add(dst);
        }
    }
}

template <class T, class R>
struct Product {
    static Workload of(const char* name, VornStatus (*function)(const T*, int, const T*, int, R*, int)) {
        return row(name, [=](const Matrix<T>& m, R* dst, int) {
            return function(m.src, m.shape.step, m.vec, m.shape.width, dst, m.shape.height);
        });
    }
    static Workload of(const char* name, VornStatus (*function)(const T* const*, const T*, int, R*, int)) {
        return row(name, [=](const Matrix<T>& m, R* dst, int) {
            return function(m.rows, m.vec, m.shape.width, dst, m.shape.height);
        });
    }
    static Workload of(const char* name, VornStatus (*function)(const T*, int, const T*, int, R*, int, int)) {
        return row(name, [=](const Matrix<T>& m, R* dst, int sf) {
            return function(m.src, m.shape.step, m.vec, m.shape.width, dst, m.shape.height, sf);
        });
    }
    static Workload of(const char* name, VornStatus (*function)(const T* const*, const T*, int, R*, int, int)) {
        return row(name, [=](const Matrix<T>& m, R* dst, int sf) {
            return function(m.rows, m.vec, m.shape.width, dst, m.shape.height, sf);
        });
    }
    static Workload of(const char* name, VornStatus (*function)(const T*, const T*, int, int, R*, int)) {
        return row(name, [=](const Matrix<T>& m, R* dst, int) {
            return function(m.vec, m.src, m.shape.step, m.shape.height, dst, m.shape.width);
        });
    }
    static Workload of(const char* name, VornStatus (*function)(const T*, const T* const*, int, R*, int)) {
        return row(name, [=](const Matrix<T>& m, R* dst, int) {
            return function(m.vec, m.rows, m.shape.height, dst, m.shape.width);
        });
    }
    static Workload of(const char* name, VornStatus (*function)(const T*, const T*, int, int, R*, int, int)) {
        return row(name, [=](const Matrix<T>& m, R* dst, int sf) {
            return function(m.vec, m.src, m.shape.step, m.shape.height, dst, m.shape.width, sf);
        });
    }
    static Workload of(const char* name, VornStatus (*function)(const T*, const T* const*, int, R*, int, int)) {
        return row(name, [=](const Matrix<T>& m, R* dst, int sf) {
            return function(m.vec, m.rows, m.shape.height, dst, m.shape.width, sf);
        });
    }

private:
    template <class Multiply>
    static Workload row(const char* name, Multiply product) {
        return {name, [=](Source& source, Digest& digest) { multiply<T, R>(source, digest, product); }};
    }
};

using Singles = Product<Vorn32f, Vorn32f>;
using Shorts = Product<Vorn16s, Vorn16s>;
using ShortsToInts = Product<Vorn16s, Vorn32s>;
using Ints = Product<Vorn32s, Vorn32s>;

const Workload workloads[] = {
    Singles::of(VORN_NAMED(vornsMatVecMul_32f_D2)),
    Singles::of(VORN_NAMED(vornsMatVecMul_32f_D2L)),
    Shorts::of(VORN_NAMED(vornsMatVecMul_16s_D2Sfs)),
    Shorts::of(VORN_NAMED(vornsMatVecMul_16s_D2LSfs)),
    ShortsToInts::of(VORN_NAMED(vornsMatVecMul_16s32s_D2Sfs)),
    ShortsToInts::of(VORN_NAMED(vornsMatVecMul_16s32s_D2LSfs)),
    Ints::of(VORN_NAMED(vornsMatVecMul_32s_D2Sfs)),
    Ints::of(VORN_NAMED(vornsMatVecMul_32s_D2LSfs)),
    Singles::of(VORN_NAMED(vornsVecMatMul_32f_D2)),
    Singles::of(VORN_NAMED(vornsVecMatMul_32f_D2L)),
    Shorts::of(VORN_NAMED(vornsVecMatMul_16s_D2Sfs)),
    Shorts::of(VORN_NAMED(vornsVecMatMul_16s_D2LSfs)),
    ShortsToInts::of(VORN_NAMED(vornsVecMatMul_16s32s_D2Sfs)),
    ShortsToInts::of(VORN_NAMED(vornsVecMatMul_16s32s_D2LSfs)),
    Ints::of(VORN_NAMED(vornsVecMatMul_32s_D2Sfs)),
    Ints::of(VORN_NAMED(vornsVecMatMul_32s_D2LSfs)),
};

}  // namespace

Family productWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
