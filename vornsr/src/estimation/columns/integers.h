// Means and variances of columns of 16-bit integers from exact sums.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "estimation/columns/exact.h"
#include "estimation/columns/floats.h"
#include "frame/scale.h"
#include "frame/wrap.h"
#include "move/convert_kernels.h"

namespace vorn::columns {

// A sum of squares up to here is exact as a double.
constexpr std::int64_t exactInDouble = std::int64_t{1} << 53;

// ---- Results of 16 bits, from sums in single.

// The very sums of singles that take the rows in pairs, as integers while no single would be rounded, for any order.
inline void sumInPairs(AnyRows<const Vorn16s> rows, std::ptrdiff_t height, Vorn32f* sum, std::ptrdiff_t width) {
    constexpr std::ptrdiff_t blockRows = 256;
    constexpr std::int64_t room = (std::int64_t{1} << 24) - blockRows * 32768;
    overPanels(width, [&](std::ptrdiff_t first, std::ptrdiff_t columns) {
        std::int64_t whole[mostPanelColumns] = {};
        const auto haveRoom = [&] {
            return std::all_of(whole, whole + columns, [](std::int64_t x) { return x <= room && x >= -room; });
        };
        std::ptrdiff_t done = 0;
        while (columns >= i16x8::lanes && done < height && haveRoom()) {
            const std::ptrdiff_t end = std::min(height, done + blockRows);
            done = addExactly<false>(rows, done, end, first, columns, whole);
        }
        for (std::ptrdiff_t j = 0; j < columns; ++j) sum[first + j] = static_cast<Vorn32f>(whole[j]);
        if (done < height) addRows<InPairs>(rows.from(done), height - done, first, columns, NoWeights(), {sum + first});
    });
}
inline void roundedMeanColumns(AnyRows<const Vorn16s> rows, std::ptrdiff_t height, Vorn32f* mean,
                               std::ptrdiff_t width) {
    const Vorn32f perRow = reciprocalInSingle(height);
    sumInPairs(rows, height, mean, width);
    for (std::ptrdiff_t j = 0; j < width; ++j) mean[j] *= perRow;
}

// ---- Results of 16 bits, from sums in integers: truncated.

// Truncated, shifted (by a count modulo 64) and saturated.
inline Vorn16s truncatedAndShifted(Vorn32f var, int scaleFactor) {
    const auto whole = static_cast<std::int64_t>(var);
    return saturate<Vorn16s>(scaleFactor > 0 ? shiftRight64(whole, scaleFactor)
                                             : shiftLeft64(whole, wrapSub(0, scaleFactor)));
}

inline void truncatedMeanColumns(AnyRows<const Vorn16s> rows, std::ptrdiff_t height, Vorn16s* mean,
                                 std::ptrdiff_t width) {
    const Vorn32f perRow = reciprocalInSingle(height);
    overPanels(width, [&](std::ptrdiff_t first, std::ptrdiff_t columns) {
        std::int64_t sum[mostPanelColumns] = {};
        addExactly<false>(rows, 0, height, first, columns, sum);
        for (std::ptrdiff_t j = 0; j < columns; ++j) {
            mean[first + j] = static_cast<Vorn16s>(static_cast<int>(static_cast<Vorn32f>(sum[j]) * perRow));
        }
    });
}

// (sum of x^2 - h mean^2) / (h - 1), the difference in integers.
inline void truncatedVarColumns(AnyRows<const Vorn16s> rows, std::ptrdiff_t height, const Vorn16s* mean, Vorn16s* var,
                                std::ptrdiff_t width, int scaleFactor) {
    const Vorn32f perDegree = reciprocalInSingle(height - 1);
    overPanels(width, [&](std::ptrdiff_t first, std::ptrdiff_t columns) {
        std::int64_t sum[mostPanelColumns] = {}, squares[mostPanelColumns] = {};
        addExactly<true>(rows, 0, height, first, columns, sum, squares);
        for (std::ptrdiff_t j = 0; j < columns; ++j) {
            const std::int64_t m = mean[first + j], difference = squares[j] - height * m * m;
            var[first + j] = truncatedAndShifted(static_cast<Vorn32f>(difference) * perDegree, scaleFactor);
        }
    });
}

// The sum of x is exact, that of x^2 in single; var takes the mean as it was before it is limited and truncated.
inline void truncatedMeanVarColumns(AnyRows<const Vorn16s> rows, std::ptrdiff_t height, Vorn16s* mean, Vorn16s* var,
                                    std::ptrdiff_t width, int scaleFactor) {
    const Vorn32f h = static_cast<Vorn32f>(height);
    const Vorn32f perRow = reciprocalInSingle(height), perDegree = reciprocalInSingle(height - 1);
    overPanels(width, [&](std::ptrdiff_t first, std::ptrdiff_t columns) {
        std::int64_t sum[mostPanelColumns] = {};
        Vorn32f squares[mostPanelColumns] = {};
        // What the first of the two walks has read is in the second-level cache for the other.
        const std::ptrdiff_t blockRows = (cachedBytes / 4) / (columns * static_cast<std::ptrdiff_t>(sizeof(Vorn16s)));
        for (std::ptrdiff_t begin = 0; begin < height; begin += blockRows) {
            const std::ptrdiff_t count = std::min(blockRows, height - begin);
            addExactly<false>(rows, begin, begin + count, first, columns, sum);
            addRows<Squares>(rows.from(begin), count, first, columns, NoWeights(), {squares});
        }
        for (std::ptrdiff_t j = 0; j < columns; ++j) {
            const Vorn32f m = static_cast<Vorn32f>(sum[j]) * perRow;
            mean[first + j] = static_cast<Vorn16s>(static_cast<int>(std::clamp(m, -32768.0f, 32767.0f)));
            var[first + j] = truncatedAndShifted((squares[j] - m * m * h) * perDegree, scaleFactor);
        }
    });
}

// ---- Wider results, from sums in double. As long as a double has them exactly, they are sums of integers.

// One block of rows gives the reciprocals in double, a list of rows in single.
inline Vorn64f reciprocalFor(RowBlock<const Vorn16s>, std::ptrdiff_t n) { return 1.0 / static_cast<Vorn64f>(n); }
inline Vorn64f reciprocalFor(RowList<const Vorn16s>, std::ptrdiff_t n) { return reciprocalInSingle(n); }

// The sums of x^2 are those of doubles that take the rows in their order. Sums of x are exact for any height.
inline void sumInDoubles(AnyRows<const Vorn16s> rows, std::ptrdiff_t height, std::ptrdiff_t first,
                         std::ptrdiff_t columns, std::int64_t* sum, Vorn64f* squares) {
    std::int64_t exactSquares[mostPanelColumns] = {};
    const std::ptrdiff_t done = addExactly<true>(rows, 0, height, first, columns, sum, exactSquares, exactInDouble);
    for (std::ptrdiff_t j = 0; j < columns; ++j) squares[j] = static_cast<Vorn64f>(exactSquares[j]);
    if (done == height) return;
    addExactly<false>(rows, done, height, first, columns, sum);
    addRows<Squares>(rows.from(done), height - done, first, columns, NoWeights(), {squares});
}

// put(first, mean, var, columns) is given means and variances that are not rounded yet. varFactor: what the variance is
// multiplied by, 1/(h - 1) and a scale.
template <class Put>
void meanVarColumnsInDouble(AnyRows<const Vorn16s> rows, std::ptrdiff_t height, std::ptrdiff_t width, Vorn64f perRow,
                            Vorn64f varFactor, const Put& put) {
    const auto h = static_cast<Vorn64f>(height);
    overPanels(width, [&](std::ptrdiff_t first, std::ptrdiff_t columns) {
        std::int64_t sum[mostPanelColumns] = {};
        Vorn64f mean[mostPanelColumns], var[mostPanelColumns];
        sumInDoubles(rows, height, first, columns, sum, var);
        for (std::ptrdiff_t j = 0; j < columns; ++j) {
            const Vorn64f m = static_cast<Vorn64f>(sum[j]) * perRow;
            mean[j] = m;
            var[j] = (var[j] - m * m * h) * varFactor;
        }
        put(first, mean, var, columns);
    });
}

// Rounded to nearest and limited to 32 bits. (No mean of 16-bit integers reaches the limits.)
template <class RowsOf>
void meanVarColumns_16s32s(RowsOf rows, std::ptrdiff_t height, Vorn32s* dstMean, Vorn32s* dstVar, std::ptrdiff_t width,
                           int scaleFactor) {
    meanVarColumnsInDouble(rows, height, width, reciprocalFor(rows, height),
                           reciprocalFor(rows, height - 1) * GetScale_32s64f(scaleFactor),
                           [&](std::ptrdiff_t first, const Vorn64f* mean, const Vorn64f* var, std::ptrdiff_t columns) {
                               convert(mean, dstMean + first, columns, vornRndNear, 0);
                               convert(var, dstVar + first, columns, vornRndNear, 0);
                           });
}

// Rounded to nearest; both are within their 16 and 32 bits, whatever the data.
template <class RowsOf>
void meanVarColumns_16s16s32s(RowsOf rows, std::ptrdiff_t height, Vorn16s* dstMean, Vorn32s* dstVar,
                              std::ptrdiff_t width) {
    meanVarColumnsInDouble(rows, height, width, reciprocalFor(rows, height), reciprocalFor(rows, height - 1),
                           [&](std::ptrdiff_t first, const Vorn64f* mean, const Vorn64f* var, std::ptrdiff_t columns) {
                               Vorn32s whole[mostPanelColumns];
                               convert(mean, whole, columns, vornRndNear, 0);
                               for (std::ptrdiff_t j = 0; j < columns; ++j)
                                   dstMean[first + j] = static_cast<Vorn16s>(whole[j]);
                               convert(var, dstVar + first, columns, vornRndNear, 0);
                           });
}

}  // namespace vorn::columns
