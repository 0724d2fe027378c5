// Dynamic time warping: the least cost of a path through the distances of two sequences, row by row of the longer one,
// inside a band and a moving beam.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "frame/align.h"
#include "frame/memory.h"
#include "scoring/warping/panels.h"
#include "simd/simd.h"
#include "vornsr/signal.h"

namespace vorn::warping {

// No path leads here; also the cost of no path at all.
inline constexpr Vorn32f noPath = std::numeric_limits<Vorn32f>::max();

// ---- Euclidean distances of one vector to rows of a panel, registers of them at a time, from panel's first lane on.

template <int registers>
struct Costs {
    f32xN of[registers];
};

// (x - row)^2 in one column of a register's rows.
VORN_INLINE f32xN squareIn(const Vorn32f* column, Vorn32f x) {
    const f32xN d = splat<f32xN>(x) - load<f32xN>(column);
    return d * d;
}

// Up to so many columns the squares are summed in single.
inline constexpr std::ptrdiff_t mostColumnsInSingle = 13;

// Groups of four columns, (0 + 1) + (2 + 3) each, which are added in order. The columns that the last group lacks count
// as zeros, and to add those changes nothing: squares are never negative.
template <int registers>
VORN_INLINE Costs<registers> distancesInSingle(const Vorn32f* panel, const Vorn32f* x, std::ptrdiff_t width) {
    Costs<registers> sum;
    for (f32xN& lanes : sum.of) lanes = splat<f32xN>(0.0f);
    std::ptrdiff_t c = 0;
    const auto square = [&](int r, std::ptrdiff_t at) __attribute__((always_inline)) {
        return squareIn(panel + at * panelRows + r * f32xN::lanes, x[at]);
    };
    for (; c + 4 <= width; c += 4) {
        for (int r = 0; r < registers; ++r) {
            const f32xN low = square(r, c) + square(r, c + 1), high = square(r, c + 2) + square(r, c + 3);
            sum.of[r] = sum.of[r] + (low + high);
        }
    }
    switch (width - c) {
        case 3:
            for (int r = 0; r < registers; ++r)
                sum.of[r] = sum.of[r] + ((square(r, c) + square(r, c + 1)) + square(r, c + 2));
            break;
        case 2:
            for (int r = 0; r < registers; ++r) sum.of[r] = sum.of[r] + (square(r, c) + square(r, c + 1));
            break;
        case 1:
            for (int r = 0; r < registers; ++r) sum.of[r] = sum.of[r] + square(r, c);
            break;
        default:
            break;
    }
    for (f32xN& lanes : sum.of) lanes = sqrtOf(lanes);
    return sum;
}

// Squares in single, summed in double in order of the columns; root in double.
template <int registers>
struct SumsInDouble {
    f64xN low[registers], high[registers];

    VORN_INLINE SumsInDouble() {
        for (int r = 0; r < registers; ++r) low[r] = high[r] = splat<f64xN>(0.0);
    }
    VORN_INLINE void add(const Vorn32f* panel, const Vorn32f* x, std::ptrdiff_t count) {
        for (std::ptrdiff_t c = 0; c < count; ++c) {
            for (int r = 0; r < registers; ++r) {
                const f32xN square = squareIn(panel + c * panelRows + r * f32xN::lanes, x[c]);
                low[r] = low[r] + widenLow(square);
                high[r] = high[r] + widenHigh(square);
            }
        }
    }
    VORN_INLINE Costs<registers> roots() const {
        Costs<registers> distance;
        for (int r = 0; r < registers; ++r) distance.of[r] = narrow(sqrtOf(low[r]), sqrtOf(high[r]));
        return distance;
    }
};

template <int registers>
VORN_INLINE Costs<registers> distancesToRows(Panels& panels, std::ptrdiff_t number, int firstLane, const Vorn32f* x) {
    const std::ptrdiff_t width = panels.width();
    if (width <= mostColumnsInSingle) return distancesInSingle<registers>(panels.whole(number) + firstLane, x, width);
    SumsInDouble<registers> sums;
    if (width <= Panels::mostColumns) {
        sums.add(panels.whole(number) + firstLane, x, width);
    } else {
        for (std::ptrdiff_t c = 0; c < width; c += Panels::mostColumns) {
            const std::ptrdiff_t count = std::min(Panels::mostColumns, width - c);
            sums.add(panels.part(number, c, count) + firstLane, x + c, count);
        }
    }
    return sums.roots();
}

// ---- One step of all paths.

// cost[j] of a row of the longer sequence, with room for two columns before the first one, for those behind the last
// one that its panel has, and for two more.
class CostRow {
public:
    static constexpr std::ptrdiff_t before = 16, behind = 16;
    static std::ptrdiff_t size(std::ptrdiff_t columns) { return before + roundUp(columns, panelRows) + behind; }

    explicit CostRow(Vorn32f* memory) : cost_(memory + before) {}
    Vorn32f& operator[](std::ptrdiff_t j) const { return cost_[j]; }
    Vorn32f* from(std::ptrdiff_t j) const { return cost_ + j; }

    // No path ends outside the columns from `first` to before `end`.
    void fenceIn(std::ptrdiff_t first, std::ptrdiff_t end) const {
        cost_[first - 2] = cost_[first - 1] = noPath;
        cost_[end] = cost_[end + 1] = noPath;
    }

private:
    Vorn32f* cost_;
};

// next[j] = distance(x, row j) + min(cost[j], cost[j - 1], cost[j - 2]) for the rows of some of a panel's registers.
template <int registers>
inline void stepRegisters(Panels& panels, std::ptrdiff_t number, int firstLane, const Vorn32f* x, CostRow cost,
                          CostRow next) {
    const Costs<registers> distance = distancesToRows<registers>(panels, number, firstLane, x);
    const std::ptrdiff_t first = number * panelRows + firstLane;
    for (int r = 0; r < registers; ++r) {
        const Vorn32f* before = cost.from(first + r * f32xN::lanes);
        const f32xN least = minOf(minOf(load<f32xN>(before), load<f32xN>(before - 1)), load<f32xN>(before - 2));
        store(next.from(first + r * f32xN::lanes), distance.of[r] + least);
    }
}

// The same for the columns from `from` to before `to`, and for those that share a register with them.
inline void stepColumns(Panels& panels, const Vorn32f* x, CostRow cost, CostRow next, std::ptrdiff_t from,
                        std::ptrdiff_t to) {
    constexpr int lanes = f32xN::lanes, registers = panelRows / lanes;
    const bool alwaysWhole = panels.width() > Panels::mostColumns;
    for (std::ptrdiff_t number = from / panelRows; number * panelRows < to; ++number) {
        const std::ptrdiff_t origin = number * panelRows;
        const int first = static_cast<int>(std::max<std::ptrdiff_t>(from - origin, 0)) / lanes;
        const int last = static_cast<int>(std::min(to - origin, panelRows) - 1) / lanes;
        if (alwaysWhole || last - first == registers - 1) {
            stepRegisters<registers>(panels, number, 0, x, cost, next);
        } else {
            for (int r = first; r <= last; ++r) stepRegisters<1>(panels, number, r * lanes, x, cost, next);
        }
    }
}

// ---- The path.

// A parallelogram of slopes 2 and 1/2, widened by halfWidth: the columns that row i of the longer sequence may meet.
struct Band {
    std::int64_t longer, shorter, halfWidth;

    std::int64_t upper(std::int64_t i) const {
        const std::int64_t column =
            3 * i < 2 * shorter - longer ? 2 * i + halfWidth : shorter + halfWidth + ((i - longer - 1) >> 1);
        return std::min(column, shorter - 1);
    }
    std::int64_t lower(std::int64_t i) const {
        const std::int64_t column =
            3 * i > 2 * (2 * longer - shorter) - 2 ? shorter - halfWidth + 2 * (i - longer) + 1 : i / 2 - halfWidth;
        return std::max<std::int64_t>(column, 0);
    }
};

// What a path is said to need, in words: two rows of costs and two of limits. The limits, which are cheaper to compute
// than to keep, leave their words to the cost rows, whose room at both ends they hold: at up to 512 words there are at
// most 124 columns, and above that at least 125 rows.
struct Memory {
    static constexpr std::int64_t mostWordsOnStack = 512, mostWordsOfPanels = 1 << 18;

    static std::int64_t words(std::int64_t longer, std::int64_t shorter) {
        const std::int64_t columns = (shorter + 8) / 4 * 4;
        return 2 * columns + 2 * roundUp(longer, 4);
    }
};

// The least cost of all paths; noPath where there is none.
inline Vorn32f leastCost(const Vorn32f* const* longer, Panels& panels, const Band& band, Vorn32f beam,
                         Vorn32f* memory) {
    const std::ptrdiff_t rowSize = CostRow::size(band.shorter);
    std::fill_n(memory, 2 * rowSize, 0.0f);
    CostRow cost(memory), next(memory + rowSize);

    // Paths begin in the first row, at no cost but the distance.
    std::ptrdiff_t start = 0, end = band.halfWidth + 1;
    stepColumns(panels, longer[0], cost, next, start, end);
    next.fenceIn(start, end);

    Vorn32f best = noPath;
    for (std::int64_t i = 1; i < band.longer; ++i) {
        std::swap(cost, next);
        end = std::min(end + 2, band.upper(i) + 1);
        start = std::max(start, band.lower(i));
        if (end <= start) return noPath;
        stepColumns(panels, longer[i], cost, next, start, end);

        vornsMin_32f(next.from(start), static_cast<int>(end - start), &best);
        if (best >= noPath) return best;
        const Vorn32f threshold = best + beam;
        while (end - start > 1 && next[end - 1] > threshold) --end;
        while (end - start > 1 && next[start] > threshold) ++start;
        next.fenceIn(start, end);
    }
    return best;
}

// The arguments have passed their checks. result is untouched if memory is short.
inline VornStatus warpedDistance(const Vorn32f* const* src1, int height1, const Vorn32f* const* src2, int height2,
                                 int width, Vorn32f* result, int delta, Vorn32f beam) {
    const bool secondIsLonger = height1 < height2;
    const Vorn32f* const* longer = secondIsLonger ? src2 : src1;
    const Vorn32f* const* shorter = secondIsLonger ? src1 : src2;
    const std::int64_t rows = std::max(height1, height2), columns = std::min(height1, height2);

    const std::int64_t words = Memory::words(rows, columns);
    const bool onStack = words <= Memory::mostWordsOnStack;
    alignas(64) Vorn32f stack[Memory::mostWordsOnStack + Panels::fewest];
    // A block that is asked for anyway has room for the panels of long sequences too.
    const std::int64_t wanted = Panels::all(columns, width);
    const bool hasPanels = !onStack && wanted > Panels::fewest && wanted <= Memory::mostWordsOfPanels;
    const Scratch<Vorn32f> block(onStack ? 0 : words + (hasPanels ? wanted + panelRows : 0));
    if (!onStack && !block) return vornStsMemAllocErr;

    // One row is no path. No column of the first row lies in a band of negative width.
    if (rows < 2 || delta < 0) {
        *result = noPath;
        return vornStsNoErr;
    }
    const Vorn32f notNegative = beam > 0.0f ? beam : 0.0f;  // which a not-a-number is neither
    Panels panels(shorter, columns, width,
                  hasPanels ? alignedUp(block.get() + words, 64) : stack + Memory::mostWordsOnStack,
                  hasPanels ? wanted : Panels::fewest);
    *result = leastCost(longer, panels, {rows, columns, std::min<std::int64_t>(delta, columns - 1)},
                        notNegative + std::numeric_limits<Vorn32f>::epsilon(), onStack ? stack : block.get());
    return vornStsNoErr;
}

}  // namespace vorn::warping
