// Rotations of neighbouring columns that wait for one another: nothing in the iteration depends on the columns, so many
// rotations are done at once, on a few rows that fit in the first-level cache and stand in it column by column.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "frame/rounding.h"
#include "linalg/svd/reduction.h"
#include "loops/stripes.h"
#include "simd/simd.h"

namespace vorn::svd {

struct Rotation {
    Vorn64f c, s;
};

// One step of a sweep: the columns j and j + 1 of V, and then of U.
struct Step {
    Rotation ofV, ofU;
    std::int64_t j;
};

#if defined(VORN_SIMD_AVX2) || defined(VORN_SIMD_AVX512)
using Tile = f64x4;
VORN_INLINE void transpose(f64x4 (&v)[4]) {
    const f64x4 low01 = interleaveLow(v[0], v[1]), high01 = interleaveHigh(v[0], v[1]);
    const f64x4 low23 = interleaveLow(v[2], v[3]), high23 = interleaveHigh(v[2], v[3]);
    v[0] = join(lowHalf(low01), lowHalf(low23));
    v[1] = join(lowHalf(high01), lowHalf(high23));
    v[2] = join(highHalf(low01), highHalf(low23));
    v[3] = join(highHalf(high01), highHalf(high23));
}
#else
using Tile = f64x2;
VORN_INLINE void transpose(f64x2 (&v)[2]) {
    const f64x2 low = interleaveLow(v[0], v[1]), high = interleaveHigh(v[0], v[1]);
    v[0] = low, v[1] = high;
}
#endif

// Some rows, column by column: element r of column c at c * stride + r.
class Block {
public:
    static constexpr std::ptrdiff_t lanes = f64xN::lanes, vectors = 4, stride = vectors * lanes;

    Block(Vorn64f* block, std::ptrdiff_t column, std::ptrdiff_t width)
        : block_(block), column_(column), width_(width) {}

    // The first `count` of the rows, at most `stride`. The places of what is missing to whole vectors are taken by the
    // last row.
    VORN_NOINLINE void take(Matrix rows, std::ptrdiff_t count) const {
        for (std::ptrdiff_t r = 0; r < count; r += Tile::lanes) {
            const Vorn64f* row[Tile::lanes];
            for (std::ptrdiff_t i = 0; i < Tile::lanes; ++i) row[i] = rows[std::min(r + i, count - 1)] + column_;
            std::ptrdiff_t c = 0;
            for (; c + Tile::lanes <= width_; c += Tile::lanes) {
                Tile tile[Tile::lanes];
                for (int i = 0; i < Tile::lanes; ++i) tile[i] = load<Tile>(row[i] + c);
                transpose(tile);
                for (int i = 0; i < Tile::lanes; ++i) store(block_ + (c + i) * stride + r, tile[i]);
            }
            for (; c < width_; ++c) {
                for (int i = 0; i < Tile::lanes; ++i) block_[c * stride + r + i] = row[i][c];
            }
        }
    }

    VORN_NOINLINE void give(Matrix rows, std::ptrdiff_t count) const {
        std::ptrdiff_t r = 0;
        for (; r + Tile::lanes <= count; r += Tile::lanes) {
            Vorn64f* row[Tile::lanes];
            for (std::ptrdiff_t i = 0; i < Tile::lanes; ++i) row[i] = rows[r + i] + column_;
            std::ptrdiff_t c = 0;
            for (; c + Tile::lanes <= width_; c += Tile::lanes) {
                Tile tile[Tile::lanes];
                for (int i = 0; i < Tile::lanes; ++i) tile[i] = load<Tile>(block_ + (c + i) * stride + r);
                transpose(tile);
                for (int i = 0; i < Tile::lanes; ++i) store(row[i] + c, tile[i]);
            }
            for (; c < width_; ++c) {
                for (int i = 0; i < Tile::lanes; ++i) row[i][c] = block_[c * stride + r + i];
            }
        }
        for (; r < count; ++r) {
            Vorn64f* const row = rows[r] + column_;
            for (std::ptrdiff_t c = 0; c < width_; ++c) row[c] = block_[c * stride + r];
        }
    }

    void rotate(const Step* steps, std::ptrdiff_t stepCount, const Rotation Step::*side, std::ptrdiff_t count) const {
        switch ((count + lanes - 1) / lanes) {
            case 1:
                return rotateVectors<1>(steps, stepCount, side);
            case 2:
                return rotateVectors<2>(steps, stepCount, side);
            case 3:
                return rotateVectors<3>(steps, stepCount, side);
            default:
                return rotateVectors<4>(steps, stepCount, side);
        }
    }

private:
    // What a step leaves in its second column is the first one of the next step of the sweep, and stays in registers.
    template <int count>
    VORN_NOINLINE void rotateVectors(const Step* steps, std::ptrdiff_t stepCount, const Rotation Step::*side) const {
        const VectorStripe<f64xN, count> stripe((count - 1) * lanes);
        for (std::ptrdiff_t i = 0; i < stepCount;) {
            Vorn64f* at = block_ + (steps[i].j - column_) * stride;
            auto p = stripe.load(at);
            std::int64_t next;
            do {
                const auto c = stripe.all((steps[i].*side).c), s = stripe.all((steps[i].*side).s);
                const auto q = stripe.load(at + stride);
                stripe.store(at, c * p + s * q);
                p = q * c - p * s;
                at += stride;
                next = steps[i].j + 1;
            } while (++i < stepCount && steps[i].j == next);
            stripe.store(at, p);
        }
    }

    Vorn64f* block_;
    std::ptrdiff_t column_, width_;
};

// The rotations of whole sweeps, done when there is no more room for them.
class Rotations {
public:
    static constexpr std::int64_t capacity(std::int64_t n) { return std::max<std::int64_t>(512, 4 * n); }
    static constexpr std::int64_t blockLength(std::int64_t n) { return n * Block::stride; }

    Rotations(Matrix u, std::ptrdiff_t m, Matrix v, std::ptrdiff_t n, Step* steps, Vorn64f* block)
        : u_(u), v_(v), m_(m), n_(n), steps_(steps), block_(block), capacity_(capacity(n)) {}

    VORN_INLINE void add(const Step& step) {
        if (count_ == capacity_) perform();
        steps_[count_++] = step;
    }

    void perform() {
        if (count_ == 0) return;
        std::int64_t first = steps_[0].j, last = first;
        for (std::ptrdiff_t i = 1; i < count_; ++i) {
            first = std::min(first, steps_[i].j);
            last = std::max(last, steps_[i].j);
        }
        const Block block(block_, first, last + 2 - first);
        performOn(v_, n_, &Step::ofV, block);
        performOn(u_, m_, &Step::ofU, block);
        count_ = 0;
    }

private:
    void performOn(Matrix rows, std::ptrdiff_t height, const Rotation Step::*side, const Block& block) const {
        for (std::ptrdiff_t row = 0; row < height; row += Block::stride) {
            const std::ptrdiff_t count = std::min(height - row, Block::stride);
            block.take(rows.from(row), count);
            block.rotate(steps_, count_, side, count);
            block.give(rows.from(row), count);
        }
    }

    Matrix u_, v_;
    std::ptrdiff_t m_, n_;
    Step* steps_;
    Vorn64f* block_;
    std::ptrdiff_t capacity_, count_ = 0;
};

}  // namespace vorn::svd
