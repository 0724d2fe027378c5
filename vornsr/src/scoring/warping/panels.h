// Dynamic time warping: rows laid out by columns, sixteen rows a panel, so that one vector meets the rows of a panel in
// the lanes of registers and each row's sum keeps its own order.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "simd/simd.h"
#include "simd/tile.h"
#include "vornsr/types.h"

namespace vorn::warping {

inline constexpr std::ptrdiff_t panelRows = 16;

// Makes panels when they are asked for, and keeps those that its memory holds: a path meets the same rows again and
// again.
class Panels {
public:
    // Wider rows take several panels, which are not kept.
    static constexpr std::ptrdiff_t mostColumns = 384;

    // Singles of memory that a few panels need, and that all of them would take.
    static constexpr std::ptrdiff_t fewest = mostColumns * panelRows;
    static std::int64_t all(std::int64_t height, std::int64_t width) {
        return width > mostColumns ? fewest : (height + panelRows - 1) / panelRows * panelRows * width;
    }

    // memory: `singles` of them, at least the fewest.
    Panels(const Vorn32f* const* rows, std::ptrdiff_t height, std::ptrdiff_t width, Vorn32f* memory,
           std::ptrdiff_t singles)
        : rows_(rows),
          height_(height),
          width_(width),
          slots_(std::clamp<std::ptrdiff_t>(singles / panelRows / width, 1, most)),
          memory_(memory) {
        std::fill_n(held_, slots_, -1);
    }
    Panels(const Panels&) = delete;
    Panels& operator=(const Panels&) = delete;

    std::ptrdiff_t width() const { return width_; }

    // The rows from panelRows x number on, whole: column c stands at c x panelRows. Behind the last row it is repeated.
    const Vorn32f* whole(std::ptrdiff_t number) {
        const std::ptrdiff_t slot = static_cast<std::uint32_t>(number) % static_cast<std::uint32_t>(slots_);
        Vorn32f* panel = memory_ + slot * width_ * panelRows;
        if (held_[slot] != number) {
            held_[slot] = number;
            fill(panel, number, 0, width_);
        }
        return panel;
    }
    // The same of `count` columns from `first` on, for rows too wide to be kept.
    const Vorn32f* part(std::ptrdiff_t number, std::ptrdiff_t first, std::ptrdiff_t count) {
        fill(memory_, number, first, count);
        return memory_;
    }

private:
    static constexpr std::ptrdiff_t most = 256;

    void fill(Vorn32f* panel, std::ptrdiff_t number, std::ptrdiff_t first, std::ptrdiff_t count) const {
        for (std::ptrdiff_t r = 0; r < panelRows; r += 4) {
            const Vorn32f* row[4];
            for (std::ptrdiff_t k = 0; k < 4; ++k)
                row[k] = rows_[std::min(number * panelRows + r + k, height_ - 1)] + first;
            const std::ptrdiff_t rest = count % 4, grouped = count - rest;
            f32x4 column[4];
            for (std::ptrdiff_t c = 0; c < grouped; c += 4) {
                columnsOf(rowsOf<0>(load<f32x4>(row[0] + c), load<f32x4>(row[1] + c), load<f32x4>(row[2] + c),
                                    load<f32x4>(row[3] + c)),
                          column);
                for (std::ptrdiff_t k = 0; k < 4; ++k) store(panel + (c + k) * panelRows + r, column[k]);
            }
            for (std::ptrdiff_t c = grouped; c < count; ++c)
                store(panel + c * panelRows + r, lanesOf(row[0][c], row[1][c], row[2][c], row[3][c]));
        }
    }

    const Vorn32f* const* rows_;
    std::ptrdiff_t height_, width_, slots_;
    Vorn32f* memory_;
    std::ptrdiff_t held_[most];  // which panel a slot holds
};

}  // namespace vorn::warping
