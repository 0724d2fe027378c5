// Selection of Gaussians as plain scalar code, bit by bit and score by score.
#pragma once

#include <cstdint>
#include <vector>

#include "model/gauss_one_vector.h"
#include "model/log_arithmetic.h"
#include "vornsr/types.h"

namespace model {

// Bit 0 of a row is the most significant bit of its first byte.
inline bool bitOf(const Vorn8u* row, std::int64_t bit) { return (row[bit / 8] >> (7 - bit % 8) & 1) != 0; }
inline void setBit(Vorn8u* row, std::int64_t bit, bool value) {
    const int place = static_cast<int>(7 - bit % 8);
    row[bit / 8] = static_cast<Vorn8u>((row[bit / 8] & ~(1 << place)) | (value ? 1 << place : 0));
}
inline void flipBit(Vorn8u* row, std::int64_t bit) { setBit(row, bit, !bitOf(row, bit)); }

// counts[r] bit numbers for each row, row after row.
inline void fillRows(const Vorn32s* indices, const std::vector<int>& counts, Vorn8u* const* rows, int start) {
    for (std::size_t r = 0; r < counts.size(); ++r) {
        for (int k = 0; k < counts[r]; ++k) flipBit(rows[r], std::int64_t{start} + *indices++);
    }
}
// counts[c] row numbers for each column, column after column.
inline void fillColumns(const Vorn32s* indices, const std::vector<int>& counts, Vorn8u* const* rows, int start) {
    for (std::size_t c = 0; c < counts.size(); ++c) {
        for (int k = 0; k < counts[c]; ++k) flipBit(rows[*indices++], start + static_cast<std::int64_t>(c));
    }
}

inline std::vector<Vorn8u> signTable(const Vorn32s* indices, int count, const Vorn8u* const* rows, int start,
                                     int frames, int width) {
    const int rowBytes = (width + 7) / 8;
    std::vector<Vorn8u> table(static_cast<std::size_t>(frames) * rowBytes, 0);
    for (int f = 0; f < frames; ++f) {
        for (int b = 0; b < width; ++b) {
            for (int i = 0; i < count; ++i) {
                if (bitOf(rows[indices[f * count + i]], std::int64_t{start} + b))
                    setBit(&table[static_cast<std::size_t>(f) * rowBytes], b, true);
            }
        }
    }
    return table;
}
// Indices begin anew for each frame, and every hit sets the row's first bit.
inline std::vector<Vorn8u> signTableOfCounts(const Vorn32s* indices, const std::vector<int>& counts,
                                             const Vorn8u* const* rows, int start, int width) {
    const int rowBytes = (width + 7) / 8;
    std::vector<Vorn8u> table(counts.size() * rowBytes, 0);
    for (std::size_t f = 0; f < counts.size(); ++f) {
        for (int b = 0; b < width; ++b) {
            for (int i = 0; i < counts[f]; ++i) {
                if (bitOf(rows[indices[i]], std::int64_t{start} + b)) table[f * rowBytes] |= 0x80;
            }
        }
    }
    return table;
}

// score(f, g): of frame f under Gaussian g.
template <class Score>
std::vector<float> selectedMixture(const Score& score, const Vorn8u* sign, int width, int frames, float floor) {
    const int rowBytes = (width + 7) / 8;
    std::vector<std::uint16_t> counter(frames, 0);
    std::vector<float> result(frames, -4500000.0f);
    for (int g = 0; g < width; ++g) {
        for (int f = 0; f < frames; ++f) {
            if (!bitOf(sign + static_cast<std::ptrdiff_t>(f) * rowBytes, g)) continue;
            const float s = score(f, g);
            result[f] = counter[f] != 0 ? logAdd(s, result[f], false) : s;
            ++counter[f];
        }
    }
    for (int f = 0; f < frames; ++f) {
        if (counter[f] == 0) result[f] = floor;
    }
    return result;
}

}  // namespace model
