#include "features/cepstrum/kernels.h"

#include <algorithm>

#include "frame/rounding.h"

namespace vorn {
namespace {

constexpr double pi = 3.141592653589793;

// The input in groups of four, the last one filled up with zeros. The rows are padded and are loaded whole.
struct Input {
    const Vorn32f* x;
    std::ptrdiff_t len, whole;  // whole: the elements in full groups
    f32x4 rest;

    Input(const Vorn32f* src, std::ptrdiff_t n)
        : x(src), len(n), whole(n / 4 * 4), rest(loadFirst<f32x4>(x + whole, n - whole)) {}
    VORN_INLINE f32x4 group(std::ptrdiff_t column) const { return load<f32x4>(x + column); }
};

VORN_INLINE f32x4 fourRows(const Input& in, const Vorn32f* const* rows) {
    f32x4 sum[4] = {splat<f32x4>(0), splat<f32x4>(0), splat<f32x4>(0), splat<f32x4>(0)};
    const auto take = [&](f32x4 x, std::ptrdiff_t column) {
        for (int row = 0; row < 4; ++row) sum[row] = sum[row] + x * load<f32x4>(rows[row] + column);
    };
    for (std::ptrdiff_t column = 0; column < in.whole; column += 4) take(in.group(column), column);
    if (in.whole < in.len) take(in.rest, in.whole);
    return sumNeighbours(sum[0], sum[1], sum[2], sum[3]);
}

VORN_INLINE Vorn32f oneRow(const Input& in, const Vorn32f* row) {
    f32x4 even = splat<f32x4>(0), odd = splat<f32x4>(0);
    std::ptrdiff_t column = 0;
    for (; column + 8 <= in.whole; column += 8) {
        even = even + in.group(column) * load<f32x4>(row + column);
        odd = odd + in.group(column + 4) * load<f32x4>(row + column + 4);
    }
    const bool odds = column < in.whole;
    if (odds) even = even + in.group(column) * load<f32x4>(row + column);
    if (in.whole < in.len) {
        f32x4& last = odds ? odd : even;
        last = last + in.rest * load<f32x4>(row + in.whole);
    }
    return sumNeighbours(even + odd);
}

// Sines and cosines are those of nearest mode, whatever the caller's.
VORN_NOINLINE void fillWeights(const RaisedSineLifter& lifter, Vorn32f* weight, int lenCep) {
    const Vorn32f half = static_cast<Vorn32f>(lifter.nLifter) * 0.5f;
    for (int i = 0; i <= lenCep; ++i) {
        weight[i] = static_cast<Vorn32f>(sin64(i * pi / lifter.nLifter) * half + 1.0) * lifter.val;
    }
}
VORN_NOINLINE void fillRows(Vorn32f* const* rows, std::int64_t stride, int lenDCT, int lenCep) {
    for (int i = 0; i <= lenCep; ++i) {
        for (int j = 1; j <= lenDCT; ++j) {
            const auto middle = static_cast<double>(static_cast<Vorn32f>(j) - 0.5f);
            rows[i][j - 1] = static_cast<Vorn32f>(cos64(middle * (i * pi) / lenDCT));
        }
        std::fill(rows[i] + lenDCT, rows[i] + stride, 0.0f);
    }
}

}  // namespace

void RaisedSineLifter::fill(Vorn32f* weight, int lenCep) const {
    const RoundingGuard nearest(Rounding::Nearest);
    fillWeights(*this, weight, lenCep);
}

void RaisedSineLifterC0::fill(Vorn32f* weight, int lenCep) const {
    RaisedSineLifter{nLifter, val}.fill(weight, lenCep);
    weight[0] = val0;
}

Vorn32f** fillCosines(Vorn32f* table, int lenDCT, int lenCep) {
    const std::int64_t stride = cosineStride(lenDCT);
    auto** rows = reinterpret_cast<Vorn32f**>(table + (std::int64_t{lenCep} + 1) * stride);
    for (int i = 0; i <= lenCep; ++i) rows[i] = table + i * stride;
    const RoundingGuard nearest(Rounding::Nearest);
    fillRows(rows, stride, lenDCT, lenCep);
    return rows;
}

void dctLifter(const Vorn32f* x, Vorn32f* dst, const Vorn32f* weight, const Vorn32f* const* rows, int lenDCT,
               int lenCep, bool withC0) {
    const Input in(x, lenDCT);
    int i = 1;
    for (; i + 3 <= lenCep; i += 4) store(dst + i - 1, load<f32x4>(weight + i) * fourRows(in, rows + i));
    for (; i <= lenCep; ++i) dst[i - 1] = weight[i] * oneRow(in, rows[i]);
    if (withC0) dst[lenCep] = weight[0] * oneRow(in, rows[0]);
}

}  // namespace vorn
