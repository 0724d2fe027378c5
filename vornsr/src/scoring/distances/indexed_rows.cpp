// The sum of indexed rows of a matrix: vornsAddNRows_32f_D2.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "frame/checks.h"
#include "loops/stripes.h"
#include "simd/simd.h"
#include "simd/tile.h"
#include "vornsr/scoring.h"

using namespace vorn;

namespace vorn::indexed_rows {
namespace {

// The number of row i is index[i] + shift[i]. Modulo 2^32 it is in range exactly when the true sum is: one beyond the
// integers, or below zero, comes out above every height.
struct RowNumbers {
    const Vorn32s* index;
    const Vorn16u* shift;
    std::uint32_t operator[](std::ptrdiff_t i) const { return static_cast<std::uint32_t>(index[i]) + shift[i]; }
};

VornStatus rowsInRange(RowNumbers numbers, std::ptrdiff_t rows, int height) {
    std::uint32_t highest = 0;
    for (std::ptrdiff_t i = 0; i < rows; ++i) highest = std::max(highest, numbers[i]);
    return require(highest < static_cast<std::uint32_t>(height), vornStsSizeErr);
}

class IndexedRows {
public:
    IndexedRows(const Vorn32f* first, std::ptrdiff_t step, RowNumbers numbers)
        : first_(first), step_(step), numbers_(numbers) {}
    VORN_INLINE const Vorn32f* operator[](std::ptrdiff_t i) const {
        return first_ + static_cast<std::ptrdiff_t>(numbers_[i]) * step_;
    }

private:
    const Vorn32f* first_;
    std::ptrdiff_t step_;
    RowNumbers numbers_;
};

// So many vectors stay in registers over all rows.
constexpr std::ptrdiff_t mostInRegisters = 4 * f32xN::lanes;

void addToNarrow(const IndexedRows& rows, std::ptrdiff_t count, Vorn32f* dst, std::ptrdiff_t len, Vorn32f weight) {
    overStripes<Vorn32f>(
        len, [&](auto stripe, std::ptrdiff_t column) __attribute__((always_inline)) {
            auto sum = stripe.all(weight);
            for (std::ptrdiff_t i = 0; i < count; ++i) sum = sum + stripe.load(rows[i] + column);
            stripe.store(dst + column, sum);
        });
}

// `count` rows cross all columns at once, onto start(column). The last vector may begin early: it is computed before
// its columns are stored.
template <int count, class Start>
VORN_INLINE void addRowsAcross(const IndexedRows& rows, std::ptrdiff_t from, Vorn32f* dst, std::ptrdiff_t len,
                               const Start& start) {
    const Vorn32f* x[count];
    for (int r = 0; r < count; ++r) x[r] = keepApart(rows[from + r]);
    const auto sumAt = [&](std::ptrdiff_t column) __attribute__((always_inline)) {
        f32xN sum = start(column);
        for (int r = 0; r < count; ++r) sum = sum + load<f32xN>(x[r] + column);
        return sum;
    };
    const std::ptrdiff_t end = len - f32xN::lanes;
    const f32xN last = sumAt(end);
    for (std::ptrdiff_t column = 0; column < end; column += f32xN::lanes) store(dst + column, sumAt(column));
    store(dst + end, last);
}

template <class Start>
VORN_INLINE std::ptrdiff_t addSomeRows(const IndexedRows& rows, std::ptrdiff_t from, std::ptrdiff_t count, Vorn32f* dst,
                                       std::ptrdiff_t len, const Start& start) {
    if (count - from >= 8) return addRowsAcross<8>(rows, from, dst, len, start), from + 8;
    if (count - from >= 4) return addRowsAcross<4>(rows, from, dst, len, start), from + 4;
    if (count - from >= 2) return addRowsAcross<2>(rows, from, dst, len, start), from + 2;
    return addRowsAcross<1>(rows, from, dst, len, start), from + 1;
}

void addToWide(const IndexedRows& rows, std::ptrdiff_t count, Vorn32f* dst, std::ptrdiff_t len, Vorn32f weight) {
    const auto fromWeight = [weight](std::ptrdiff_t) __attribute__((always_inline)) { return splat<f32xN>(weight); };
    const auto fromBefore = [dst](std::ptrdiff_t column) __attribute__((always_inline)) {
        return load<f32xN>(dst + column);
    };
    std::ptrdiff_t i = addSomeRows(rows, 0, count, dst, len, fromWeight);
    while (i < count) i = addSomeRows(rows, i, count, dst, len, fromBefore);
}

}  // namespace
}  // namespace vorn::indexed_rows

VornStatus vornsAddNRows_32f_D2(const Vorn32f* src, int height, int offset, int step, const Vorn32s* ind,
                                const Vorn16u* addInd, int rows, Vorn32f* dst, int len, Vorn32f weight) {
    VORN_CHECK(notNull(src, dst, addInd, ind));
    VORN_CHECK(positive(rows, height, len));
    VORN_CHECK(atLeast(0, offset));
    VORN_CHECK(strideHolds(step, std::int64_t{offset} + len));
    const indexed_rows::RowNumbers numbers{ind, addInd};
    VORN_CHECK(indexed_rows::rowsInRange(numbers, rows, height));
    const indexed_rows::IndexedRows chosen(src + offset, step, numbers);
    if (len <= indexed_rows::mostInRegisters) {
        indexed_rows::addToNarrow(chosen, rows, dst, len, weight);
    } else {
        indexed_rows::addToWide(chosen, rows, dst, len, weight);
    }
    return vornStsNoErr;
}
