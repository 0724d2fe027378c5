// Singular values, and the operations on single columns and rows.
#include <iterator>

#include "families.h"

namespace verify {
namespace {

using Block = std::vector<Vorn64f>;

struct Shape {
    int height, width, step;
};
const Shape shapes[] = {{1, 1, 1}, {7, 1, 2}, {1, 7, 7}, {13, 13, 13}, {40, 39, 40}, {5, 12, 13}, {130, 67, 67}};

std::vector<Vorn64f*> rowsOf(Block& block, std::size_t count, std::size_t step) {
    std::vector<Vorn64f*> rows;
    for (std::size_t r = 0; r < count; ++r) rows.push_back(block.data() + r * step);
    return rows;
}

// decompose(src, u, w, v, shape, nIter) on ordinary matrices, on some of low rank, on any bit patterns, and cut short.
template <class Decompose>
void decompositions(Source& source, Digest& digest, Decompose decompose) {
    enum Kind { Ordinary, LowRank, Patterns, Short };
    for (const Shape& shape : shapes) {
        const auto height = static_cast<std::size_t>(shape.height), step = static_cast<std::size_t>(shape.step);
        const std::size_t size = height * step, width = static_cast<std::size_t>(shape.width);
        for (Kind kind : {Ordinary, LowRank, Patterns, Short}) {
            Block src = kind == Patterns ? source.patterns<Vorn64f>(size) : source.values<Vorn64f>(size);
            for (std::size_t i = 2 * step; i < size && kind == LowRank; ++i)
                src[i] = src[i % step] * static_cast<Vorn64f>(i / step) + src[i % step + step];
            Block u = src, v(width * step), w(width);
            digest.add(decompose(src, u, w, v, shape, kind == Short ? 3 : 30));
            digest.add(u);
            digest.add(w);
            digest.add(v);
        }
    }
}

using OfBlock = VornStatus (*)(const Vorn64f*, Vorn64f*, int, Vorn64f*, Vorn64f*, int, int, int);
using OfList = VornStatus (*)(const Vorn64f* const*, Vorn64f* const*, int, Vorn64f*, Vorn64f* const*, int, int);
using InBlock = VornStatus (*)(Vorn64f*, int, Vorn64f*, Vorn64f*, int, int, int);
using InList = VornStatus (*)(Vorn64f* const*, int, Vorn64f*, Vorn64f* const*, int, int);

auto workload(OfBlock function) {
    return [=](Source& source, Digest& digest) {
        decompositions(source, digest, [=](Block& src, Block& u, Block& w, Block& v, const Shape& shape, int nIter) {
            return function(src.data(), u.data(), shape.height, w.data(), v.data(), shape.width, shape.step, nIter);
        });
    };
}
auto workload(InBlock function) {
    return [=](Source& source, Digest& digest) {
        decompositions(source, digest, [=](Block&, Block& u, Block& w, Block& v, const Shape& shape, int nIter) {
            return function(u.data(), shape.height, w.data(), v.data(), shape.width, shape.step, nIter);
        });
    };
}
auto workload(OfList function) {
    return [=](Source& source, Digest& digest) {
        decompositions(source, digest, [=](Block& src, Block& u, Block& w, Block& v, const Shape& shape, int nIter) {
            const auto from = rowsOf(src, shape.height, shape.step), to = rowsOf(u, shape.height, shape.step);
            const auto right = rowsOf(v, shape.width, shape.step);
            return function(from.data(), to.data(), shape.height, w.data(), right.data(), shape.width, nIter);
        });
    };
}
auto workload(InList function) {
    return [=](Source& source, Digest& digest) {
        decompositions(source, digest, [=](Block&, Block& u, Block& w, Block& v, const Shape& shape, int nIter) {
            const auto to = rowsOf(u, shape.height, shape.step), right = rowsOf(v, shape.width, shape.step);
            return function(to.data(), shape.height, w.data(), right.data(), shape.width, nIter);
        });
    };
}

// operate(rows, height, width, dst) on columns of ordinary numbers and of any bit patterns.
template <class Operate>
auto onColumns(Operate operate) {
    return [=](Source& source, Digest& digest) {
        for (int height : lengths) {
            constexpr int width = 5;
            for (bool hard : {false, true}) {
                const std::size_t size = static_cast<std::size_t>(height) * width;
                Block block = hard ? source.patterns<Vorn64f>(size) : source.values<Vorn64f>(size);
                const auto rows = rowsOf(block, static_cast<std::size_t>(height), width);
                Vorn64f dst = 0.0;
                digest.add(operate(rows.data(), height, width, &dst));
                digest.add(dst);
                digest.add(block);
            }
        }
    };
}
// operate(x, y, len, dst) on two vectors.
template <class Operate>
auto onRows(Operate operate) {
    return [=](Source& source, Digest& digest) {
        for (int len : lengths) {
            for (bool hard : {false, true}) {
                Block x = hard ? source.patterns<Vorn64f>(len) : source.values<Vorn64f>(len);
                Block y = hard ? source.patterns<Vorn64f>(len) : source.values<Vorn64f>(len);
                Vorn64f dst = 0.0;
                digest.add(operate(x.data(), y.data(), len, &dst));
                digest.add(dst);
                digest.add(x);
                digest.add(y);
            }
        }
    };
}

#define ROW(function) \
    { #function, workload(function) }

const Workload workloads[] = {
    ROW(vornsSVD_64f_D2),
    ROW(vornsSVD_64f_D2L),
    ROW(vornsSVD_64f_D2_I),
    ROW(vornsSVD_64f_D2L_I),
    ROW(vornsSVDSort_64f_D2),
    ROW(vornsSVDSort_64f_D2L),
    ROW(vornsSVDSort_64f_D2_I),
    ROW(vornsSVDSort_64f_D2L_I),
    {"vornsSumColumnAbs_64f_D2L", onColumns([](Vorn64f* const* rows, int height, int width, Vorn64f* dst) {
         return vornsSumColumnAbs_64f_D2L(rows, width, height, dst, 2, height / 3);
     })},
    {"vornsSumColumnSqr_64f_D2L", onColumns([](Vorn64f* const* rows, int height, int width, Vorn64f* dst) {
         return vornsSumColumnSqr_64f_D2L(rows, width, height, dst, 4, height / 3, 0.3);
     })},
    {"vornsSumRowAbs_64f",
     onRows([](Vorn64f* x, Vorn64f*, int len, Vorn64f* dst) { return vornsSumRowAbs_64f(x, len, dst); })},
    {"vornsSumRowSqr_64f",
     onRows([](Vorn64f* x, Vorn64f*, int len, Vorn64f* dst) { return vornsSumRowSqr_64f(x, len, dst, -0.7); })},
    {"vornsDotProdColumn_64f_D2L", onColumns([](Vorn64f* const* rows, int height, int width, Vorn64f* dst) {
         return vornsDotProdColumn_64f_D2L(rows, width, height, dst, 0, 3, height / 3);
     })},
    {"vornsAddMulColumn_64f_D2L", onColumns([](Vorn64f* const* rows, int height, int width, Vorn64f*) {
         return vornsAddMulColumn_64f_D2L(rows, width, height, 0, 3, height / 3, 0.3);
     })},
    {"vornsMulColumn_64f_D2L", onColumns([](Vorn64f* const* rows, int height, int width, Vorn64f*) {
         return vornsMulColumn_64f_D2L(rows, width, height, 1, height / 3, 0.3);
     })},
    {"vornsQRTransColumn_64f_D2L", onColumns([](Vorn64f* const* rows, int height, int width, Vorn64f*) {
         return vornsQRTransColumn_64f_D2L(rows, width, height, 4, 1, 0.6, -0.8);
     })},
    {"vornsAddMulRow_64f",
     onRows([](Vorn64f* x, Vorn64f* y, int len, Vorn64f*) { return vornsAddMulRow_64f(x, y, len, 1.7); })},
};

#undef ROW

}  // namespace

Family singularValueWorkloads() { return {workloads, std::size(workloads)}; }

}  // namespace verify
