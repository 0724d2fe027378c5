// Sums of products of deviations, the upper triangle of a matrix at a time.
//
// The term of a frame in row i and column j is e d with e = x[i] - mean[j] and d = x[j] - mean[j]: the mean is that of
// the larger index in both, and mean[i] is met on the diagonal alone. That is the definition.
//
// The matrix is cut into blocks of columns whose sums fit the first-level cache; some frames at a time, widened and
// freed of their means, are added to all sums of a block, a tile of registers after the other. Each sum takes its
// frames in their order, whatever the blocks and tiles.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "frame/rounding.h"
#include "frame/rows.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::accumulate {

constexpr int blockColumns = 64;
constexpr int blockFrames = 16;
constexpr int doublesAtOnce = f64xN::lanes;

// Calls whole(k) for vectors of so many lanes that cover n columns, the last of which ends at the last column and may
// begin early, or single(k) for each column of fewer.
template <int lanes, class Whole, class Single>
VORN_INLINE void overColumns(std::ptrdiff_t n, const Whole& whole, const Single& single) {
    if (n < lanes) {
        for (std::ptrdiff_t k = 0; k < n; ++k) single(k);
        return;
    }
    for (std::ptrdiff_t k = 0; k + lanes <= n; k += lanes) whole(k);
    if (n % lanes != 0) whole(n - lanes);
}

// Whose terms are added, and how a sum meets the matrix:
//   beginsAtZero             a sum begins at zero and is added to the matrix times val; else it begins at the matrix
//   Left, Mean, Right        what is kept of a number x[i], of mean[j] and of a deviation d
//   fillLeft, fillMeans, fillRight   make n of them
//   Columns                  the means of a register of columns
//   term(x, columns, d)      the terms of one row and these columns; d has their deviations

// In double throughout; a sum is complete before val meets it.
struct WholeSums {
    static constexpr bool beginsAtZero = true;
    using Left = Vorn64f;
    using Mean = Vorn64f;
    using Right = Vorn64f;
    Vorn64f val;

    struct Columns {
        f64xN mean;
        VORN_INLINE explicit Columns(const Mean* p) : mean(load<f64xN>(p)) {}
    };
    VORN_INLINE f64xN term(Left x, const Columns& columns, f64xN d) const {
        return (splat<f64xN>(x) - columns.mean) * d;
    }

    template <class Source>
    VORN_INLINE static void fillLeft(const Source* x, std::ptrdiff_t n, Left* left) {
        overColumns<doublesAtOnce>(
            n, [=](std::ptrdiff_t k) __attribute__((always_inline)) { store(left + k, loadWidened<f64xN>(x + k)); },
            [=](std::ptrdiff_t k) __attribute__((always_inline)) { left[k] = x[k]; });
    }
    template <class Source>
    VORN_INLINE static void fillMeans(const Source* mean, std::ptrdiff_t n, Mean* means) {
        fillLeft(mean, n, means);
    }
    template <class Source>
    VORN_INLINE void fillRight(const Source* x, const Mean* means, std::ptrdiff_t n, Right* right) const {
        overColumns<doublesAtOnce>(
            n,
            [=](std::ptrdiff_t k) __attribute__((always_inline)) {
                store(right + k, loadWidened<f64xN>(x + k) - load<f64xN>(means + k));
            },
            [=](std::ptrdiff_t k) __attribute__((always_inline)) { right[k] = x[k] - means[k]; });
    }
};

// How differences are taken frame by frame: of numbers widened by `widened`, as e times 1/scale in doubles, the lower
// half of a register's lanes.

// Rounded to single.
struct SingleDifference {
    using Source = Vorn32f;
    using Kept = Vorn32f;
    using V = f32xN;
    static constexpr Vorn64f scale = 1.0;
    VORN_INLINE static V load(const Source* p) { return vorn::load<V>(p); }
    VORN_INLINE static Kept kept(Source x) { return x; }
    VORN_INLINE static V difference(V x, V mean) { return x - mean; }
    VORN_INLINE static f64xN low(V difference) { return widenLow(difference); }
    VORN_INLINE static f64xN high(V difference) { return widenHigh(difference); }
};

// Saturated at 16 bits: numbers stand in the upper halves of 32-bit lanes, over zeros.
struct SaturatedDifference {
    using Source = Vorn16s;
    using Kept = Vorn32s;
    using V = i32xN;
    static constexpr Vorn64f scale = 0x1p-16;
    VORN_INLINE static V load(const Source* p) { return shiftLeft<16>(loadWidened<V>(p)); }
    VORN_INLINE static Kept kept(Source x) { return x * 65536; }
    VORN_INLINE static V difference(V x, V mean) { return intsOf(subSat(shortsOf(x), shortsOf(mean))); }
    VORN_INLINE static f64xN low(V difference) { return toDoubleLow(difference); }
    VORN_INLINE static f64xN high(V difference) { return toDoubleHigh(difference); }
};

// Frame by frame, each times val. The product of two such differences is exact in a double. So is one of them times a
// val that is a single: then val may meet the deviation first, once for all rows, and the bits are the same.
template <class Difference, bool valComesFirst>
struct TermsOfFrames {
    static constexpr bool beginsAtZero = false;
    using V = typename Difference::V;
    using Source = typename Difference::Source;
    using Left = typename Difference::Kept;
    using Mean = typename Difference::Kept;
    using Right = Vorn64f;
    Vorn64f val;

    struct Columns {
        V mean;
        VORN_INLINE explicit Columns(const Mean* p) : mean(load<V>(p)) {}
    };
    VORN_INLINE f64xN term(Left x, const Columns& columns, f64xN d) const {
        const f64xN product = Difference::low(Difference::difference(splat<V>(x), columns.mean)) * d;
        return valComesFirst ? product : splat<f64xN>(val) * product;
    }

    VORN_INLINE static void fillLeft(const Source* x, std::ptrdiff_t n, Left* left) {
        overColumns<V::lanes>(
            n, [=](std::ptrdiff_t k) __attribute__((always_inline)) { store(left + k, Difference::load(x + k)); },
            [=](std::ptrdiff_t k) __attribute__((always_inline)) { left[k] = Difference::kept(x[k]); });
    }
    VORN_INLINE static void fillMeans(const Source* mean, std::ptrdiff_t n, Mean* means) { fillLeft(mean, n, means); }
    VORN_INLINE void fillRight(const Source* x, const Mean* means, std::ptrdiff_t n, Right* right) const {
        // Both scales, as both differences are scaled.
        constexpr Vorn64f scale = Difference::scale * Difference::scale;
        const f64xN factor = splat<f64xN>(valComesFirst ? scale * val : scale);
        overColumns<V::lanes>(
            n,
            [=](std::ptrdiff_t k) __attribute__((always_inline)) {
                const V d = Difference::difference(Difference::load(x + k), load<V>(means + k));
                store(right + k, factor * Difference::low(d));
                store(right + k + doublesAtOnce, factor * Difference::high(d));
            },
            [=](std::ptrdiff_t k) __attribute__((always_inline)) {
                const V d = Difference::difference(splat<V>(Difference::kept(x[k])), splat<V>(means[k]));
                Vorn64f lanes[doublesAtOnce];
                store(lanes, factor * Difference::low(d));
                right[k] = lanes[0];
            });
    }
};

// A tile: so many rows of the matrix by one register of doubles.
constexpr int tileRows = 8;

// Whole registers of means, of which a tile may use a part.
constexpr int meansRoom = blockColumns + f32xN::lanes;

// What a call keeps on its stack.
template <class Terms>
struct alignas(64) CovarianceRoom {
    Vorn64f sums[blockColumns][blockColumns];
    typename Terms::Left left[blockFrames][blockColumns];
    typename Terms::Right right[blockFrames][blockColumns];
    typename Terms::Mean means[meansRoom];
};

constexpr std::ptrdiff_t upTo(std::ptrdiff_t n, std::ptrdiff_t multiple) {
    return (n + multiple - 1) / multiple * multiple;
}

// The terms of some frames added to the tile at row i and column j.
template <class Terms, bool fromZero>
VORN_INLINE void addTile(const Terms& terms, CovarianceRoom<Terms>& room, int frames, std::ptrdiff_t i,
                         std::ptrdiff_t j) {
    const typename Terms::Columns columns(room.means + j);
    f64xN sum[tileRows];
    for (int r = 0; r < tileRows; ++r) sum[r] = fromZero ? splat<f64xN>(0) : load<f64xN>(room.sums[i + r] + j);
    for (int f = 0; f < frames; ++f) {
        const f64xN d = load<f64xN>(room.right[f] + j);
        const typename Terms::Left* x = room.left[f] + i;
        for (int r = 0; r < tileRows; ++r) sum[r] = sum[r] + terms.term(x[r], columns, d);
    }
    for (int r = 0; r < tileRows; ++r) store(room.sums[i + r] + j, sum[r]);
}

// ni rows and nj columns; of a block on the diagonal the tiles that reach above it.
template <class Terms, bool fromZero>
VORN_NOINLINE void addFrames(const Terms& terms, CovarianceRoom<Terms>& room, int frames, std::ptrdiff_t ni,
                             std::ptrdiff_t nj, bool onDiagonal) {
    for (std::ptrdiff_t j = 0; j < nj; j += doublesAtOnce) {
        const std::ptrdiff_t end = onDiagonal ? std::min<std::ptrdiff_t>(ni, j + doublesAtOnce) : ni;
        for (std::ptrdiff_t i = 0; i < end; i += tileRows) addTile<Terms, fromZero>(terms, room, frames, i, j);
    }
}

// One block: rows i0 on by columns j0 on. end(i) is the column before which row i ends.
template <class Terms, class Source, class End>
VORN_INLINE void addBlock(const Terms& terms, CovarianceRoom<Terms>& room, AnyRows<const Source> src,
                          std::ptrdiff_t height, const Source* mean, AnyRows<Vorn64f> dst, std::ptrdiff_t i0,
                          std::ptrdiff_t j0, std::ptrdiff_t width, const End& end) {
    const std::ptrdiff_t ni = std::min<std::ptrdiff_t>(blockColumns, width - i0);
    const std::ptrdiff_t nj = std::min<std::ptrdiff_t>(blockColumns, width - j0);
    // What fills up the last tiles is computed as well, and dropped.
    const std::ptrdiff_t niTiles = upTo(ni, tileRows), njTiles = upTo(nj, doublesAtOnce);
    std::fill(room.means + nj, room.means + meansRoom, 0);
    Terms::fillMeans(mean + j0, nj, room.means);
    for (std::ptrdiff_t f = 0; f < std::min<std::ptrdiff_t>(blockFrames, height); ++f) {
        std::fill(room.left[f] + ni, room.left[f] + niTiles, 0);
        std::fill(room.right[f] + nj, room.right[f] + njTiles, 0);
    }
    if constexpr (!Terms::beginsAtZero) {
        for (std::ptrdiff_t i = 0; i < niTiles; ++i) {
            if (i < ni) std::copy_n(dst[i0 + i] + j0, nj, room.sums[i]);
            std::fill(room.sums[i] + (i < ni ? nj : 0), room.sums[i] + njTiles, 0.0);
        }
    }
    for (std::ptrdiff_t frame = 0; frame < height; frame += blockFrames) {
        const int frames = static_cast<int>(std::min<std::ptrdiff_t>(blockFrames, height - frame));
        for (int f = 0; f < frames; ++f) {
            const Source* x = src[frame + f];
            Terms::fillLeft(x + i0, ni, room.left[f]);
            terms.fillRight(x + j0, room.means, nj, room.right[f]);
        }
        if (Terms::beginsAtZero && frame == 0) {
            addFrames<Terms, Terms::beginsAtZero>(terms, room, frames, ni, nj, i0 == j0);
        } else {
            addFrames<Terms, false>(terms, room, frames, ni, nj, i0 == j0);
        }
    }
    for (std::ptrdiff_t i = 0; i < ni; ++i) {
        Vorn64f* row = dst[i0 + i];
        const Vorn64f* sums = room.sums[i];
        std::ptrdiff_t j = std::max(i0 + i, j0);
        const std::ptrdiff_t last = std::min<std::ptrdiff_t>(j0 + nj, end(i0 + i));
        if constexpr (Terms::beginsAtZero) {
            const f64xN val = splat<f64xN>(terms.val);
            const auto added = [=](f64xN old, f64xN sum) __attribute__((always_inline)) { return old + val * sum; };
            for (; j + doublesAtOnce <= last; j += doublesAtOnce) {
                store(row + j, added(load<f64xN>(row + j), load<f64xN>(sums + j - j0)));
            }
            if (j < last) {
                const std::ptrdiff_t n = last - j;
                storeFirst(row + j, added(loadFirst<f64xN>(row + j, n), loadFirst<f64xN>(sums + j - j0, n)), n);
            }
        } else {
            if (j < last) std::copy(sums + j - j0, sums + last - j0, row + j);
        }
    }
}

// The lower triangle after the upper one.
inline void mirror(AnyRows<Vorn64f> dst, std::ptrdiff_t width) {
    constexpr std::ptrdiff_t atOnce = 8;
    for (std::ptrdiff_t i0 = 0; i0 < width; i0 += atOnce) {
        const std::ptrdiff_t rows = std::min(atOnce, width - i0);
        const Vorn64f* from[atOnce];
        for (std::ptrdiff_t i = 0; i < rows; ++i) from[i] = dst[i0 + i];
        for (std::ptrdiff_t j = i0 + 1; j < width; ++j) {
            Vorn64f* row = dst[j] + i0;
            const std::ptrdiff_t n = std::min(rows, j - i0);
            for (std::ptrdiff_t i = 0; i < n; ++i) row[i] = from[i][j];
        }
    }
}

template <class Terms, class Source, class End>
VORN_NOINLINE void addTriangle(const Terms& terms, AnyRows<const Source> src, std::ptrdiff_t height, const Source* mean,
                               AnyRows<Vorn64f> dst, std::ptrdiff_t width, const End& end) {
    CovarianceRoom<Terms> room;
    for (std::ptrdiff_t i0 = 0; i0 < width; i0 += blockColumns) {
        for (std::ptrdiff_t j0 = i0; j0 < width; j0 += blockColumns) {
            addBlock(terms, room, src, height, mean, dst, i0, j0, width, end);
        }
    }
}

// The last columns of each row, as many as are missing to whole groups of four that begin on the diagonal: frame by
// frame as well, but with differences that do not saturate. Lanes go down the rows of the matrix.
constexpr int group = 4;
constexpr std::ptrdiff_t groupsEnd(std::ptrdiff_t i, std::ptrdiff_t width) { return width - (width - i) % group; }

VORN_NOINLINE inline void addBehindGroups(AnyRows<const Vorn16s> src, std::ptrdiff_t height, const Vorn16s* mean,
                                          AnyRows<Vorn64f> dst, std::ptrdiff_t width, Vorn64f val) {
    alignas(64) Vorn64f sums[group - 1][blockColumns];
    alignas(64) Vorn64f left[blockFrames][blockColumns];
    for (std::ptrdiff_t i0 = 0; i0 < width; i0 += blockColumns) {
        const std::ptrdiff_t ni = std::min<std::ptrdiff_t>(blockColumns, width - i0);
        const std::ptrdiff_t padded = upTo(ni, doublesAtOnce);
        for (auto& x : left) std::fill(x + ni, x + padded, 0.0);
        const std::ptrdiff_t first = std::max<std::ptrdiff_t>(0, width - (group - 1));
        const auto overEntries = [&](const auto& use) {
            for (std::ptrdiff_t i = i0; i < i0 + ni; ++i) {
                for (std::ptrdiff_t j = std::max(groupsEnd(i, width), first); j < width; ++j) {
                    use(dst[i][j], sums[j - first][i - i0]);
                }
            }
        };
        for (auto& column : sums) std::fill_n(column, padded, 0.0);
        overEntries([](Vorn64f entry, Vorn64f& sum) { sum = entry; });
        for (std::ptrdiff_t frame = 0; frame < height; frame += blockFrames) {
            const int frames = static_cast<int>(std::min<std::ptrdiff_t>(blockFrames, height - frame));
            for (int f = 0; f < frames; ++f) WholeSums::fillLeft(src[frame + f] + i0, ni, left[f]);
            const f64xN factor = splat<f64xN>(val);
            for (std::ptrdiff_t j = first; j < width; ++j) {
                const Vorn64f m = mean[j];
                Vorn64f d[blockFrames];
                for (int f = 0; f < frames; ++f) d[f] = src[frame + f][j] - m;
                for (std::ptrdiff_t k = 0; k < padded; k += doublesAtOnce) {
                    f64xN sum = load<f64xN>(sums[j - first] + k);
                    for (int f = 0; f < frames; ++f) {
                        const f64xN e = load<f64xN>(left[f] + k) - splat<f64xN>(m);
                        sum = sum + factor * (e * splat<f64xN>(d[f]));
                    }
                    store(sums[j - first] + k, sum);
                }
            }
        }
        overEntries([](Vorn64f& entry, Vorn64f sum) { entry = sum; });
    }
}

// ---- The two ways.

template <class Source>
void addCovariance(AnyRows<const Source> src, std::ptrdiff_t height, const Source* mean, AnyRows<Vorn64f> dst,
                   std::ptrdiff_t width, Vorn64f val) {
    addTriangle(WholeSums{val}, src, height, mean, dst, width, [=](std::ptrdiff_t) { return width; });
    mirror(dst, width);
}

template <class Difference, class Source, class End>
void addFrameByFrame(AnyRows<const Source> src, std::ptrdiff_t height, const Source* mean, AnyRows<Vorn64f> dst,
                     std::ptrdiff_t width, Vorn64f val, const End& end) {
    if (static_cast<Vorn64f>(static_cast<Vorn32f>(val)) == val) {
        addTriangle(TermsOfFrames<Difference, true>{val}, src, height, mean, dst, width, end);
    } else {
        addTriangle(TermsOfFrames<Difference, false>{val}, src, height, mean, dst, width, end);
    }
}

inline void addCovarianceByFrame(AnyRows<const Vorn32f> src, std::ptrdiff_t height, const Vorn32f* mean,
                                 AnyRows<Vorn64f> dst, std::ptrdiff_t width, Vorn64f val) {
    addFrameByFrame<SingleDifference>(src, height, mean, dst, width, val, [=](std::ptrdiff_t) { return width; });
    mirror(dst, width);
}

inline void addCovarianceByFrame(AnyRows<const Vorn16s> src, std::ptrdiff_t height, const Vorn16s* mean,
                                 AnyRows<Vorn64f> dst, std::ptrdiff_t width, Vorn64f val) {
    addFrameByFrame<SaturatedDifference>(src, height, mean, dst, width, val,
                                         [=](std::ptrdiff_t i) { return groupsEnd(i, width); });
    addBehindGroups(src, height, mean, dst, width, val);
    mirror(dst, width);
}

}  // namespace vorn::accumulate
