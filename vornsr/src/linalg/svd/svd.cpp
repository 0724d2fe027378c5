// Singular value decomposition: the exported functions and the room that they work in.
#include <cstddef>
#include <cstdint>
#include <utility>

#include "frame/checks.h"
#include "frame/memory.h"
#include "frame/rounding.h"
#include "frame/rows.h"
#include "linalg/svd/diagonal.h"
#include "linalg/svd/reduction.h"
#include "linalg/svd/rotations.h"
#include "move/move_kernels.h"
#include "vornsr/linalg.h"
#include "vornsr/signal.h"

namespace vorn::svd {
namespace {

// What a call works in: two vectors of n, the steps of the rotations that wait, and some rows for them.
struct Room {
    Vorn64f *e, *vector, *rows;
    Step* steps;

    static constexpr std::int64_t size(std::int64_t n) {
        return static_cast<std::int64_t>(sizeof(Vorn64f)) * (2 * n + Rotations::blockLength(n)) +
               static_cast<std::int64_t>(sizeof(Step)) * Rotations::capacity(n);
    }
    Room(Vorn8u* begin, std::int64_t n)
        : e(reinterpret_cast<Vorn64f*>(begin)),
          vector(e + n),
          rows(vector + n),
          steps(reinterpret_cast<Step*>(rows + Rotations::blockLength(n))) {}
};

// Up to this width the room is on the stack.
constexpr int smallWidth = 64;

enum class Order { AsConverged, Descending };

void copyElements(const Vorn64f* src, Vorn64f* dst, std::int64_t len) {
    ownsMove_8u_M7(reinterpret_cast<const Vorn8u*>(src), reinterpret_cast<Vorn8u*>(dst),
                   len * static_cast<std::int64_t>(sizeof *src));
}

// What becomes U: already there, one run with all that lies between the rows, or row by row.
struct InPlace {
    void copy() const {}
};
struct Run {
    const Vorn64f* src;
    Vorn64f* dst;
    std::int64_t len;
    void copy() const { copyElements(src, dst, len); }
};
struct EachRow {
    const Vorn64f* const* src;
    Vorn64f* const* dst;
    int height, width;
    void copy() const {
        for (int row = 0; row < height; ++row) copyElements(src[row], dst[row], width);
    }
};

struct Factors {
    Matrix u;
    int height;
    Vorn64f* w;
    Matrix v;
    int width;
};

// Column j of each row becomes what column order[j] was.
void permuteColumns(Matrix rows, std::ptrdiff_t height, int width, const int* order, Vorn64f* room) {
    for (std::ptrdiff_t row = 0; row < height; ++row) {
        Vorn64f* const x = rows[row];
        for (int j = 0; j < width; ++j) room[j] = x[order[j]];
        copyElements(room, x, width);
    }
}

void sortDescending(const Factors& factors, Vorn64f* magnitudes, int* order, Vorn64f* room) {
    const int n = factors.width;
    vornsAbs_64f(factors.w, magnitudes, n);
    for (int i = 0; i < n; ++i) order[i] = i;
    for (int i = 0; i < n; ++i) {
        Vorn64f largest;
        int at;
        vornsMaxIndx_64f(magnitudes + i, n - i, &largest, &at);
        std::swap(magnitudes[i], magnitudes[i + at]);
        std::swap(factors.w[i], factors.w[i + at]);
        std::swap(order[i], order[i + at]);
    }
    permuteColumns(factors.v, n, n, order, room);
    permuteColumns(factors.u, factors.height, n, order, room);
}

VORN_NOINLINE VornStatus decomposeIn(const Room& room, const Factors& factors, int nIter, Order order) {
    const std::ptrdiff_t m = factors.height, n = factors.width;
    const Vorn64f norm = reduceToBidiagonal(factors.u, m, n, factors.w, room.e, room.vector);
    accumulateRight(factors.u, n, room.e, factors.v, room.vector);
    accumulateLeft(factors.u, m, n, factors.w, room.vector);
    const Rotations rotations(factors.u, m, factors.v, n, room.steps, room.rows);
    VORN_CHECK(Diagonalisation(factors.u, m, factors.w, factors.v, n, room.e, norm, rotations).run(nIter));
    if (order == Order::Descending) sortDescending(factors, room.vector, reinterpret_cast<int*>(room.steps), room.rows);
    return vornStsNoErr;
}

template <class Source>
VornStatus decomposeSmall(const Source& source, const Factors& factors, int nIter, Order order) {
    alignas(64) Vorn8u room[Room::size(smallWidth)];
    source.copy();
    return decomposeIn(Room(room, factors.width), factors, nIter, order);
}

template <class Source>
VornStatus decompose(const Source& source, const Factors& factors, int nIter, Order order) {
    if (factors.width <= smallWidth) return decomposeSmall(source, factors, nIter, order);
    const Scratch<Vorn8u> room(Room::size(factors.width));
    // No room to iterate in: the one status that a caller of an iteration expects, and nothing is written.
    if (!room) return vornStsSvdNoConvergeErr;
    source.copy();
    return decomposeIn(Room(room.get(), factors.width), factors, nIter, order);
}

}  // namespace
}  // namespace vorn::svd

using namespace vorn;

VornStatus vornsSVD_64f_D2(const Vorn64f* src, Vorn64f* dstU, int height, Vorn64f* dstW, Vorn64f* dstV, int width,
                           int step, int nIter) {
    VORN_CHECK(notNull(src, dstU, dstV, dstW));
    VORN_CHECK(positive(height, width, nIter));
    VORN_CHECK(atLeast(width, step));
    return svd::decompose(svd::Run{src, dstU, std::int64_t{height} * step},
                          {Rows(dstU, step), height, dstW, Rows(dstV, step), width}, nIter, svd::Order::AsConverged);
}

VornStatus vornsSVDSort_64f_D2(const Vorn64f* src, Vorn64f* dstU, int height, Vorn64f* dstW, Vorn64f* dstV, int width,
                               int step, int nIter) {
    VORN_CHECK(notNull(src, dstU, dstV, dstW));
    VORN_CHECK(positive(height, width, nIter));
    VORN_CHECK(atLeast(width, step));
    return svd::decompose(svd::Run{src, dstU, std::int64_t{height} * step},
                          {Rows(dstU, step), height, dstW, Rows(dstV, step), width}, nIter, svd::Order::Descending);
}

VornStatus vornsSVD_64f_D2L(const Vorn64f* const* src, Vorn64f* const* dstU, int height, Vorn64f* dstW,
                            Vorn64f* const* dstV, int width, int nIter) {
    VORN_CHECK(notNull(src, dstU, dstV, dstW));
    VORN_CHECK(positive(height, width, nIter));
    return svd::decompose(svd::EachRow{src, dstU, height, width}, {Rows(dstU), height, dstW, Rows(dstV), width}, nIter,
                          svd::Order::AsConverged);
}

VornStatus vornsSVDSort_64f_D2L(const Vorn64f* const* src, Vorn64f* const* dstU, int height, Vorn64f* dstW,
                                Vorn64f* const* dstV, int width, int nIter) {
    VORN_CHECK(notNull(src, dstU, dstV, dstW));
    VORN_CHECK(positive(height, width, nIter));
    return svd::decompose(svd::EachRow{src, dstU, height, width}, {Rows(dstU), height, dstW, Rows(dstV), width}, nIter,
                          svd::Order::Descending);
}

VornStatus vornsSVD_64f_D2_I(Vorn64f* srcDstU, int height, Vorn64f* dstW, Vorn64f* dstV, int width, int step,
                             int nIter) {
    VORN_CHECK(notNull(srcDstU, dstV, dstW));
    VORN_CHECK(positive(height, width, nIter));
    VORN_CHECK(atLeast(width, step));
    return svd::decompose(svd::InPlace(), {Rows(srcDstU, step), height, dstW, Rows(dstV, step), width}, nIter,
                          svd::Order::AsConverged);
}

VornStatus vornsSVDSort_64f_D2_I(Vorn64f* srcDstU, int height, Vorn64f* dstW, Vorn64f* dstV, int width, int step,
                                 int nIter) {
    VORN_CHECK(notNull(srcDstU, dstV, dstW));
    VORN_CHECK(positive(height, width, nIter));
    VORN_CHECK(atLeast(width, step));
    return svd::decompose(svd::InPlace(), {Rows(srcDstU, step), height, dstW, Rows(dstV, step), width}, nIter,
                          svd::Order::Descending);
}

VornStatus vornsSVD_64f_D2L_I(Vorn64f* const* srcDstU, int height, Vorn64f* dstW, Vorn64f* const* dstV, int width,
                              int nIter) {
    VORN_CHECK(notNull(srcDstU, dstV, dstW));
    VORN_CHECK(positive(height, width, nIter));
    return svd::decompose(svd::InPlace(), {Rows(srcDstU), height, dstW, Rows(dstV), width}, nIter,
                          svd::Order::AsConverged);
}

VornStatus vornsSVDSort_64f_D2L_I(Vorn64f* const* srcDstU, int height, Vorn64f* dstW, Vorn64f* const* dstV, int width,
                                  int nIter) {
    VORN_CHECK(notNull(srcDstU, dstV, dstW));
    VORN_CHECK(positive(height, width, nIter));
    return svd::decompose(svd::InPlace(), {Rows(srcDstU), height, dstW, Rows(dstV), width}, nIter,
                          svd::Order::Descending);
}
