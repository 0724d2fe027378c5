// The covariance method: sums of products of the frame, their triangular factors, two substitutions.
#include "features/prediction/covariance.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "frame/memory.h"
#include "move/convert_kernels.h"
#include "simd/simd.h"

namespace vorn::prediction {
namespace {

constexpr int lanes = f32xN::lanes;

// A frame in singles and in doubles, with zeros behind it, and the sums of its products: lag[d] of x(t) x(t+d) in
// double, next[d] of x(t) x(t+d+1) in single.
struct LagSums {
    Vorn32f* x;
    Vorn64f* wide;
    Vorn64f* lag;
    Vorn32f* next;

    // Over the first len samples, for `groups` registers of lags; each sum is in the order of t.
    template <int groups>
    VORN_INLINE void sumGroups(std::ptrdiff_t len, std::ptrdiff_t firstLag) const {
        f64xN low[groups], high[groups];
        f32xN single[groups];
        for (int g = 0; g < groups; ++g) {
            low[g] = high[g] = splat<f64xN>(0);
            single[g] = splat<f32xN>(0);
        }
        for (std::ptrdiff_t t = 0; t < len; ++t) {
            const f64xN wideHere = splat<f64xN>(wide[t]);
            const f32xN here = splat<f32xN>(x[t]);
            for (int g = 0; g < groups; ++g) {
                const std::ptrdiff_t at = t + firstLag + g * lanes;
                low[g] = low[g] + wideHere * load<f64xN>(wide + at);
                high[g] = high[g] + wideHere * load<f64xN>(wide + at + f64xN::lanes);
                single[g] = single[g] + here * load<f32xN>(x + at + 1);
            }
        }
        for (int g = 0; g < groups; ++g) {
            const std::ptrdiff_t at = firstLag + g * lanes;
            store(lag + at, low[g]);
            store(lag + at + f64xN::lanes, high[g]);
            store(next + at, single[g]);
        }
    }

    void sum(std::ptrdiff_t len, int lags) const {
        for (int first = 0; first < lags; first += 4 * lanes) {
            const int groups = (lags - first + lanes - 1) / lanes;
            if (groups == 1) {
                sumGroups<1>(len, first);
            } else if (groups == 2) {
                sumGroups<2>(len, first);
            } else if (groups == 3) {
                sumGroups<3>(len, first);
            } else {
                sumGroups<4>(len, first);
            }
        }
    }

    // One sample more, for the first lags at least: whole registers of sums change.
    void add(std::ptrdiff_t t, int lags) const {
        const f64xN wideHere = splat<f64xN>(wide[t]);
        const f32xN here = splat<f32xN>(x[t]);
        for (int d = 0; d < lags; d += f64xN::lanes) {
            store(lag + d, load<f64xN>(lag + d) + wideHere * load<f64xN>(wide + t + d));
        }
        for (int d = 0; d < lags; d += lanes) {
            store(next + d, load<f32xN>(next + d) + here * load<f32xN>(x + t + d + 1));
        }
    }
};

// The lower triangle of a symmetric matrix, column by column. `stride` is a whole number of registers, so that the
// columns' registers hold the same rows.
struct Triangle {
    Vorn32f* columns;
    std::ptrdiff_t stride;
    Vorn32f* column(std::ptrdiff_t j) const { return columns + j * stride; }
};

// The right side psi(k), the sum of x(t) x(t+k), and the matrix T(i,j), the sum of x(t) x(t+i-j) over the first len - i
// samples: one sum a lag runs through the elements of its diagonal, from the last row up. Row i takes the last of lag
// i - 1 and leaves that of psi(i).
void sumProducts(const LagSums& sums, int len, int order, Triangle matrix, Vorn32f* psi) {
    sums.sum(len - order, order);
    for (int i = order;; --i) {
        for (int d = 0; d < i; ++d) matrix.column(i - 1 - d)[i - 1] = static_cast<Vorn32f>(sums.lag[d]);
        psi[i - 1] = sums.next[i - 1];
        if (i == 1) break;
        sums.add(len - i, i - 1);
    }
}

// The elements of the unit triangle L below its diagonal, in the order of rows: L(2,1), L(3,1), L(3,2), L(4,1) ...
class PackedElements {
public:
    explicit PackedElements(Triangle matrix) : matrix_(matrix) {}
    Vorn32f next() {
        const Vorn32f element = matrix_.column(column_)[row_];
        if (++column_ == row_) {
            ++row_;
            column_ = 0;
        }
        return element;
    }

private:
    Triangle matrix_;
    std::ptrdiff_t row_ = 1, column_ = 0;
};

// One element a row; the rows are worked on together.
struct RowValues {
    Vorn32f *taken, *scaled, *diagonal, *right;  // sums for the elements, D(j) times the last one, sums for D and y
};

// Factors T = L D L' in place and eliminates forward: D into d, y into psi. An element's sum takes the packed elements
// of L from their very start in place of those of row j. That is on purpose; from order 4 on the factors are others.
void factor(Triangle matrix, RowValues rows, Vorn32f* d, Vorn32f* psi, int order) {
    PackedElements packed(matrix);
    for (int j = 0; j < order; ++j) {
        Vorn32f* column = matrix.column(j);
        d[j] = j == 0 ? column[0] : column[j] - rows.diagonal[j];
        if (j > 0) psi[j] -= rows.right[j];
        const f32xN divisor = splat<f32xN>(d[j]), y = splat<f32xN>(psi[j]);
        const f32xN element = splat<f32xN>(j == 0 ? 0.0f : packed.next());
        for (int i = (j + 1) / lanes * lanes; i < order; i += lanes) {
            const f32xN taken = load<f32xN>(rows.taken + i) + load<f32xN>(rows.scaled + i) * element;
            const f32xN factor = (load<f32xN>(column + i) - taken) / divisor, scaled = factor * divisor;
            store(column + i, factor);
            store(rows.taken + i, taken);
            store(rows.scaled + i, scaled);
            store(rows.diagonal + i, load<f32xN>(rows.diagonal + i) + scaled * factor);
            store(rows.right + i, load<f32xN>(rows.right + i) + factor * y);
        }
    }
}

// a(i) = y(i)/D(i) less the sum over L(m,i) a(m), from the last m down, which leaves the newest a(m) for the end.
void substituteBack(Triangle matrix, const Vorn32f* d, const Vorn32f* y, Vorn32f* a, int order) {
    a[order - 1] = y[order - 1] / d[order - 1];
    for (int i = order - 2; i >= 0; --i) {
        const Vorn32f* column = matrix.column(i);
        Vorn32f sum = 0;
        for (int m = order - 1; m > i; --m) sum += column[m] * a[m];
        a[i] = y[i] / d[i] - sum;
    }
}

}  // namespace

VornStatus covariance(const Vorn32f* src, int len, Vorn32f* dst, int order) {
    const std::int64_t samples = std::int64_t{len} + lanes;
    const std::int64_t stride = (std::int64_t{order} + lanes - 1) / lanes * lanes;
    const std::int64_t rows = stride * (std::int64_t{order} + 7);
    const Scratch<Vorn64f> doubles(samples + stride);
    const Scratch<Vorn32f> singles(samples + rows);
    if (!doubles || !singles) return vornStsMemAllocErr;
    Vorn32f* const frame = singles.get();
    std::copy_n(src, len, frame);
    std::fill(frame + len, frame + samples + rows, 0.0f);
    convert(frame, doubles.get(), samples);

    const auto row = [=](int i) { return frame + samples + i * stride; };
    Vorn32f *const psi = row(0), *const d = row(1);
    const Triangle matrix{row(7), stride};
    sumProducts({frame, doubles.get(), doubles.get() + samples, row(2)}, len, order, matrix, psi);
    factor(matrix, {row(3), row(4), row(5), row(6)}, d, psi, order);
    substituteBack(matrix, d, psi, dst, order);
    return vornStsNoErr;
}

}  // namespace vorn::prediction
