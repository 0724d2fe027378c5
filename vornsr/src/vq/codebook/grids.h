// Search grids over words of one or two elements: for each cell, the words of which one is the nearest of any point in
// it. A grid pays only where most cells list few words.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "frame/checks.h"
#include "frame/memory.h"
#include "frame/rounding.h"
#include "simd/simd.h"
#include "vq/codebook/context.h"
#include "vq/codebook/distance.h"
#include "vq/codebook/tolerance.h"

namespace vorn::vq {

inline constexpr int fewestCells = 4;  // in each direction, where the search for the number of cells starts

// The range of one element over the words, as found and widened.
struct Range {
    Vorn32f lo, hi;
    Vorn32f low() const { return lo > 0 ? lo * 0.9f : lo * 1.1f; }
    Vorn32f high() const { return hi > 0 ? hi * 1.1f : hi * 0.9f; }
    Vorn64f width() const { return std::fabs(static_cast<Vorn64f>(hi) - lo); }
    Vorn32f cellWidth(int cells) const { return static_cast<Vorn32f>(width() * 1.1) / static_cast<Vorn32f>(cells); }

    template <class Element>
    static Range of(int count, const Element& element) {
        Range range{element(0), element(0)};
        for (int v = 1; v < count; ++v) {
            const Vorn32f x = element(v);
            if (x < range.lo) range.lo = x;
            if (x > range.hi) range.hi = x;
        }
        return range;
    }
};

// Whether one more row of cells saves more than a twentieth.
inline bool saves(Vorn32f cost, Vorn32f newCost, const Vorn32f*) {
    return static_cast<Vorn64f>(cost) - newCost > cost * 0.05;
}
inline bool saves(Vorn32f cost, Vorn32f newCost, const Vorn16s*) {
    return clearlyGreater(cost - newCost, static_cast<Vorn32f>(cost * 0.05));
}

inline bool pays(Vorn32f cost, Vorn32f limit) { return clearlyLess(cost, limit) || nearlyEqual(cost, limit); }

// What floats beyond the integers convert to.
inline int truncatedToInt(Vorn32f x) {
    return x >= -2147483648.0f && x < 2147483648.0f ? static_cast<int>(x) : INT_MIN;
}

// Words of one element.
template <class T>
class LineMaker {
public:
    explicit LineMaker(VornCdbkState& book)
        : book_(book),
          count_(book.cdbkSize),
          range_(Range::of(count_, [this](int v) { return word(v); })),
          marks_(mostMarks()) {}

    VornStatus make() {
        VORN_CHECK(require(static_cast<bool>(marks_), vornStsMemAllocErr));
        std::memset(marks_.get(), 0, sizeof(int) * static_cast<std::size_t>(mostMarks()));
        int cells = fewestCells;
        Vorn32f cost = costOf(cells);
        for (;; ++cells) {
            const Vorn32f next = costOf(cells + 1);
            if (!saves(cost, next, words())) break;
            cost = next;
        }
        if (!pays(cost, static_cast<Vorn32f>(count_ / 5.0))) return vornStsNoErr;
        return fill(cells);
    }

private:
    const T* words() const { return static_cast<const T*>(book_.words); }
    Vorn32f word(int v) const { return words()[static_cast<std::ptrdiff_t>(v) * book_.rowStep]; }
    // Of more cells than words one is empty.
    std::int64_t mostMarks() const { return count_ + std::int64_t{fewestCells} + 2; }
    int cellOf(int v, Vorn32f cellWidth) const { return truncatedToInt((word(v) - range_.low()) / cellWidth); }

    // Twice the mean length of a list, if no cell is empty.
    Vorn32f costOf(int cells) {
        if (range_.width() < 1e-05) return farthest;
        const Vorn32f cellWidth = range_.cellWidth(cells);
        int marked = 0;
        for (int v = 0; v < count_; ++v) {
            const int cell = cellOf(v, cellWidth);
            if (cell < 0 || cell >= cells || marks_[cell] == cells) continue;
            marks_[cell] = cells;
            ++marked;
        }
        if (marked < cells) return farthest;
        return 2 * static_cast<Vorn32f>(count_) / static_cast<Vorn32f>(cells);
    }

    // Record, lists, sizes and indices are one block. Each word stands in the list of one cell at most, and each cell
    // lists at most one word below it and one above.
    VornStatus fill(int cells) {
        const std::int64_t lists = static_cast<std::int64_t>(cells) + 2;
        MixedBlock block(static_cast<std::int64_t>(sizeof(Line)) +
                         lists * static_cast<std::int64_t>(sizeof(int*) + sizeof(int)) +
                         (count_ + 2 * lists) * static_cast<std::int64_t>(sizeof(int)));
        VORN_CHECK(require(static_cast<bool>(block), vornStsMemAllocErr));
        Line& line = *static_cast<Line*>(block.get());
        const Vorn32f cellWidth = range_.cellWidth(cells);
        line = {cells, cellWidth, range_.low(), range_.high(), reinterpret_cast<int**>(&line + 1), nullptr};
        line.sizes = reinterpret_cast<int*>(line.lists + lists);
        int* next = line.sizes + lists;
        for (int cell = 0; cell < cells; ++cell) {
            int* const list = next;
            const Vorn32f lower = line.low + static_cast<Vorn32f>(cell) * cellWidth,
                          upper = line.low + static_cast<Vorn32f>(cell + 1) * cellWidth;
            Vorn32f toBelow = std::numeric_limits<Vorn32f>::infinity(), toAbove = toBelow;
            int below = -1, above = -1;
            for (int v = 0; v < count_; ++v) {
                const int own = cellOf(v, cellWidth);
                if (own == cell) {
                    *next++ = v;
                } else if (own < cell) {
                    if (lower - word(v) < toBelow) toBelow = lower - word(v), below = v;
                } else {
                    if (word(v) - upper < toAbove) toAbove = word(v) - upper, above = v;
                }
            }
            if (cell > 0 && below >= 0) *next++ = below;
            if (cell < cells - 1 && above >= 0) *next++ = above;
            line.lists[cell + 1] = list;
            line.sizes[cell + 1] = static_cast<int>(next - list);
        }
        line.lists[0] = line.lists[1], line.sizes[0] = line.sizes[1];
        line.lists[cells + 1] = line.lists[cells], line.sizes[cells + 1] = line.sizes[cells];
        book_.grid = block.release();
        book_.mode |= hasGrid;
        return vornStsNoErr;
    }

    VornCdbkState& book_;
    int count_;
    Range range_;
    Scratch<int> marks_;  // of each cell: the number of cells when it was marked last
};

// A cell of a square grid.
struct Rectangle {
    Vorn32f left, right, top, bottom;
};

// The points of a codebook of pairs beside a rectangle, by the squared distances from its border: its corners, and the
// sides that a point faces squarely. Those from the corners are sums that rise with either part, so the extremes of the
// parts give the extremes of the sums.
class Points {
public:
    template <class T>
    explicit Points(const VornCdbkState& book, const T* words)
        : count_(book.cdbkSize),
          weight_{static_cast<Vorn32f>(static_cast<const T*>(book.weights)[0]),
                  static_cast<Vorn32f>(static_cast<const T*>(book.weights)[1])},
          memory_(2 * padded()) {
        if (!memory_) return;
        for (std::int64_t v = 0; v < padded(); ++v) {
            const T* word = words + (v < count_ ? v : 0) * book.rowStep;
            memory_[v] = word[0];
            memory_[padded() + v] = word[1];
        }
    }
    explicit operator bool() const { return static_cast<bool>(memory_); }
    int count() const { return static_cast<int>(count_); }
    Vorn32f x(int v) const { return memory_[v]; }
    Vorn32f y(int v) const { return memory_[padded() + v]; }

    // The largest distance from a rectangle at which a point can hold the nearest word of a point in it. Let M be the
    // smallest of all points' largest distances: those nearer than M, or as near, are candidates, no others. A point
    // that is infinitely far counts as near M by the rule of nearlyEqual, and one that is no number as nearer.
    VORN_NOINLINE Vorn32f reachOf(const Rectangle& cell) const {
        f32xN least = splat<f32xN>(farthest);
        for (std::int64_t v = 0; v < padded(); v += f32xN::lanes) {
            const Parts part = partsOf(cell, v);
            const f32xN largest = maxOf(part.left, part.right) + maxOf(part.top, part.bottom);
            least = select(largest < least, largest, least);
        }
        Vorn32f lanes[f32xN::lanes];
        store(lanes, least);
        const Vorn32f m = *std::min_element(lanes, lanes + f32xN::lanes);
        // The largest single that nearlyEqual holds for: near m / (1 - equality), and on one side of it true.
        auto reach = static_cast<Vorn32f>(std::min(m / (1 - equality), static_cast<Vorn64f>(farthest)));
        while (!nearlyEqual(reach, m)) reach = neighbour(reach, -1);
        while (reach < farthest && nearlyEqual(neighbour(reach, 1), m)) reach = neighbour(reach, 1);
        return reach;
    }

    // take(v) for the points within reach, in rising number.
    template <class Take>
    VORN_INLINE void forCandidates(const Rectangle& cell, Vorn32f reach, const Take& take) const {
        for (std::int64_t v = 0; v < padded(); v += f32xN::lanes) {
            unsigned bits = candidateBits(cell, reach, v);
            for (; bits != 0; bits &= bits - 1) take(static_cast<int>(v) + std::countr_zero(bits));
        }
    }
    VORN_NOINLINE int countCandidates(const Rectangle& cell, Vorn32f reach) const {
        int candidates = 0;
        for (std::int64_t v = 0; v < padded(); v += f32xN::lanes) {
            candidates += std::popcount(candidateBits(cell, reach, v));
        }
        return candidates;
    }

private:
    // Weighted squares of what parts a point from each side's line.
    struct Parts {
        f32xN left, right, top, bottom;
    };

    static Vorn32f neighbour(Vorn32f x, int by) { return std::bit_cast<Vorn32f>(std::bit_cast<std::int32_t>(x) + by); }
    std::int64_t padded() const { return roundUp(count_, f32xN::lanes); }
    f32xN xs(std::int64_t v) const { return load<f32xN>(memory_.get() + v); }
    f32xN ys(std::int64_t v) const { return load<f32xN>(memory_.get() + padded() + v); }
    static VORN_INLINE f32xN squareOf(f32xN x, Vorn32f border, Vorn32f weight) {
        return plusSquare(splat<f32xN>(0.0f), x, splat<f32xN>(border), splat<f32xN>(weight));
    }
    VORN_INLINE Parts partsOf(const Rectangle& cell, std::int64_t v) const {
        return {squareOf(xs(v), cell.left, weight_[0]), squareOf(xs(v), cell.right, weight_[0]),
                squareOf(ys(v), cell.top, weight_[1]), squareOf(ys(v), cell.bottom, weight_[1])};
    }
    VORN_INLINE unsigned candidateBits(const Rectangle& cell, Vorn32f reach, std::int64_t v) const {
        const Parts part = partsOf(cell, v);
        const f32xN x = xs(v), y = ys(v);
        const f32xN toSides = minOf(part.left, part.right), toEnds = minOf(part.top, part.bottom);
        const auto facesEnds = (splat<f32xN>(cell.left) <= x) & (x <= splat<f32xN>(cell.right));
        const auto facesSides = (splat<f32xN>(cell.bottom) <= y) & (y <= splat<f32xN>(cell.top));
        const f32xN whereEnds = select(facesSides, minOf(toSides, toEnds), toEnds);
        const f32xN elsewhere = select(facesSides, toSides, toSides + toEnds);
        const f32xN smallest = select(facesEnds, whereEnds, elsewhere);
        const auto beyond =
            (smallest > splat<f32xN>(reach)) & (smallest < splat<f32xN>(std::numeric_limits<Vorn32f>::infinity()));
        const unsigned bits = ~laneBits(beyond);
        const std::int64_t here = count_ - v;
        return here < f32xN::lanes ? bits & ((1u << here) - 1) : bits & ((2u << (f32xN::lanes - 1)) - 1);
    }

    std::int64_t count_;
    Vorn32f weight_[2];
    Scratch<Vorn32f> memory_;
};

// Words of two elements.
template <class T>
class SquareMaker {
public:
    explicit SquareMaker(VornCdbkState& book)
        : book_(book), points_(book, static_cast<const T*>(book.words)), edges_(book.cdbkSize) {}

    VornStatus make() {
        VORN_CHECK(require(points_ && edges_, vornStsMemAllocErr));
        x_ = Range::of(points_.count(), [this](int v) { return points_.x(v); });
        y_ = Range::of(points_.count(), [this](int v) { return points_.y(v); });
        int across = fewestCells, down = fewestCells;
        Vorn32f cost = costOf(across, down);
        for (;;) {
            const Vorn32f wider = costOf(across + 1, down), higher = costOf(across, down + 1);
            const bool widerWins = clearlyLess(wider, higher);
            const Vorn32f next = widerWins ? wider : higher;
            if (!saves(cost, next, static_cast<const T*>(nullptr))) break;
            (widerWins ? across : down) += 1;
            cost = next;
        }
        if (!pays(cost, static_cast<Vorn32f>(points_.count() / 10.0))) return vornStsNoErr;
        return fill(across, down);
    }

private:
    // Which borders of the grid a candidate's cell lies at.
    enum Edge : Vorn8u { top = 1, bottom = 2, left = 4, right = 8 };

    Rectangle cellAt(int column, int row, int across, int down) const {
        const Vorn32f width = x_.cellWidth(across), height = y_.cellWidth(down);
        return {x_.low() + static_cast<Vorn32f>(column) * width, x_.low() + static_cast<Vorn32f>(column + 1) * width,
                y_.high() - static_cast<Vorn32f>(row) * height, y_.high() - static_cast<Vorn32f>(row + 1) * height};
    }
    template <class Visit>
    static void forCells(int across, int down, const Visit& visit) {
        for (int row = 0; row < down; ++row) {
            for (int column = 0; column < across; ++column) visit(column, row);
        }
    }
    std::int64_t candidatesOf(int across, int down) const {
        std::int64_t candidates = 0;
        forCells(across, down, [&](int column, int row) {
            const Rectangle cell = cellAt(column, row, across, down);
            candidates += points_.countCandidates(cell, points_.reachOf(cell));
        });
        return candidates;
    }
    // The mean length of a list.
    Vorn32f costOf(int across, int down) const {
        if (nearlyEqual(x_.lo, x_.hi) || nearlyEqual(y_.lo, y_.hi)) return farthest;
        const auto cells = static_cast<std::int64_t>(across) * down;
        return static_cast<Vorn32f>(candidatesOf(across, down)) / static_cast<Vorn32f>(cells);
    }

    static Vorn8u edgesOf(int column, int row, int across, int down) {
        return static_cast<Vorn8u>((row == 0 ? top : 0) | (row == down - 1 ? bottom : 0) | (column == 0 ? left : 0) |
                                   (column == across - 1 ? right : 0));
    }
    // Of each word, the borders with a cell that it is a candidate of.
    void markEdges(int across, int down) {
        std::memset(edges_.get(), 0, static_cast<std::size_t>(points_.count()));
        forCells(across, down, [&](int column, int row) {
            const Vorn8u here = edgesOf(column, row, across, down);
            if (here == 0) return;
            const Rectangle cell = cellAt(column, row, across, down);
            points_.forCandidates(cell, points_.reachOf(cell), [&](int v) { edges_[v] |= here; });
        });
    }

    // The ring's eight lists: unions along one border for its sides, along the two that meet for its corners.
    static constexpr Vorn8u ringEdges[8] = {top | left, top,           top | right, left,
                                            right,      bottom | left, bottom,      bottom | right};
    static std::int64_t ringPlace(int list, int across, int down, int i) {
        const std::int64_t row = std::int64_t{across} + 2, last = (std::int64_t{down} + 1) * row;
        switch (list) {
            case 0:
                return 0;
            case 1:
                return 1 + i;
            case 2:
                return across + 1;
            case 3:
                return (1 + i) * row;
            case 4:
                return (1 + i) * row + across + 1;
            case 5:
                return last;
            case 6:
                return last + 1 + i;
            default:
                return last + across + 1;
        }
    }
    static int ringLength(int list, int across, int down) {
        return list == 1 || list == 6 ? across : list == 3 || list == 4 ? down : 1;
    }

    VornStatus fill(int across, int down) {
        markEdges(across, down);
        std::int64_t indices = candidatesOf(across, down);
        for (const Vorn8u edges : ringEdges) {
            for (int v = 0; v < points_.count(); ++v) indices += (edges_[v] & edges) != 0;
        }
        const std::int64_t lists = (std::int64_t{across} + 2) * (std::int64_t{down} + 2);
        MixedBlock block(static_cast<std::int64_t>(sizeof(Square)) +
                         lists * static_cast<std::int64_t>(sizeof(int*) + sizeof(int)) +
                         indices * static_cast<std::int64_t>(sizeof(int)));
        VORN_CHECK(require(static_cast<bool>(block), vornStsMemAllocErr));
        Square& square = *static_cast<Square*>(block.get());
        square = {across,
                  down,
                  x_.cellWidth(across),
                  y_.cellWidth(down),
                  x_.low(),
                  y_.high(),
                  x_.high(),
                  y_.low(),
                  reinterpret_cast<int**>(&square + 1),
                  nullptr};
        square.sizes = reinterpret_cast<int*>(square.lists + lists);
        int* next = square.sizes + lists;
        forCells(across, down, [&](int column, int row) {
            const std::int64_t place = (row + std::int64_t{1}) * (across + 2) + column + 1;
            const Rectangle cell = cellAt(column, row, across, down);
            square.lists[place] = next;
            points_.forCandidates(cell, points_.reachOf(cell), [&](int v) { *next++ = v; });
            square.sizes[place] = static_cast<int>(next - square.lists[place]);
        });
        for (int list = 0; list < 8; ++list) {
            int* const first = next;
            for (int v = 0; v < points_.count(); ++v) {
                if ((edges_[v] & ringEdges[list]) != 0) *next++ = v;
            }
            for (int i = 0; i < ringLength(list, across, down); ++i) {
                const std::int64_t place = ringPlace(list, across, down, i);
                square.lists[place] = first;
                square.sizes[place] = static_cast<int>(next - first);
            }
        }
        book_.grid = block.release();
        book_.mode |= hasGrid;
        return vornStsNoErr;
    }

    VornCdbkState& book_;
    Points points_;
    Range x_{}, y_{};
    Scratch<Vorn8u> edges_;
};

}  // namespace vorn::vq
