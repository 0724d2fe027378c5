#include "plain/selection.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

#include "plain/gauss_single.h"

namespace plain {
namespace {

bool allBelow(const Vorn32s* indices, std::ptrdiff_t count, int limit) {
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        if (indices[i] < 0 || indices[i] >= limit) return false;
    }
    return true;
}
void flip(Vorn8u* row, int bit) { row[bit / 8] ^= static_cast<Vorn8u>(128 >> (bit % 8)); }

template <class Score>
inline void select(const Score& score, const Vorn8u* sign, int width, Vorn32f* result, int frames, Vorn32f floor) {
    const int rowBytes = (width + 7) / 8;
    for (int f = 0; f < frames; ++f) {
        const Vorn8u* row = sign + static_cast<std::ptrdiff_t>(f) * rowBytes;
        bool any = false;
        Vorn32f sum = floor;
        for (int g = 0; g < width; ++g) {
            if ((row[g / 8] & (128 >> (g % 8))) == 0) continue;
            const Vorn32f s = score(f, g);
            sum = any ? std::max(s, sum) + std::log1p(std::exp(-std::fabs(s - sum))) : s;
            any = true;
        }
        result[f] = sum;
    }
}

}  // namespace

void fillRows(const Vorn32s* indices, int width, int count, Vorn8u* const* rows, int numRows, int start) {
    if (!allBelow(indices, static_cast<std::ptrdiff_t>(count) * numRows, width)) return;
    for (int r = 0; r < numRows; ++r) {
        for (int k = 0; k < count; ++k) flip(rows[r], start + *indices++);
    }
}

void fillColumns(const Vorn32s* indices, int count, Vorn8u* const* rows, int numRows, int start, int width) {
    if (!allBelow(indices, static_cast<std::ptrdiff_t>(count) * width, numRows)) return;
    for (int c = 0; c < width; ++c) {
        for (int k = 0; k < count; ++k) flip(rows[*indices++], start + c);
    }
}

bool signTable(const Vorn32s* indices, int count, const Vorn8u* const* rows, int numRows, int start, Vorn8u* sign,
               int frames, int width) {
    if (!allBelow(indices, static_cast<std::ptrdiff_t>(count) * frames, numRows)) return false;
    const int rowBytes = (width + 7) / 8, shift = start % 8, bytes = (shift + width + 7) / 8;
    const auto mask = static_cast<Vorn8u>(0xFF << (8 * rowBytes - width));
    std::memset(sign, 0, static_cast<std::size_t>(frames) * rowBytes);
    for (int f = 0; f < frames; ++f) {
        Vorn8u* table = sign + static_cast<std::ptrdiff_t>(f) * rowBytes;
        for (int i = 0; i < count; ++i) {
            const Vorn8u* row = rows[*indices++] + start / 8;
            for (int b = 0; b + 1 < bytes; ++b)
                table[b] |= static_cast<Vorn8u>(row[b] << shift | row[b + 1] >> (8 - shift));
            if (bytes == rowBytes) table[bytes - 1] |= static_cast<Vorn8u>(row[bytes - 1] << shift);
        }
        table[rowBytes - 1] &= mask;
    }
    return true;
}

bool firstSigns(const Vorn32s* indices, const Vorn32s* counts, const Vorn8u* const* rows, int numRows, int start,
                Vorn8u* sign, int frames, int width) {
    std::ptrdiff_t total = 0;
    for (int f = 0; f < frames; ++f) total += counts[f];
    if (!allBelow(indices, total, numRows)) return false;
    const int rowBytes = (width + 7) / 8, shift = start % 8, bytes = (shift + width + 7) / 8;
    const auto firstMask = static_cast<Vorn8u>(0xFF >> shift),
               lastMask = static_cast<Vorn8u>(0xFF << (8 * bytes - shift - width));
    std::memset(sign, 0, static_cast<std::size_t>(frames) * rowBytes);
    for (int f = 0; f < frames; ++f) {
        bool hit = false;
        for (int i = 0; i < counts[f] && !hit; ++i) {
            const Vorn8u* row = rows[indices[i]] + start / 8;
            for (int b = 0; b < bytes && !hit; ++b) {
                Vorn8u byte = row[b];
                if (b == 0) byte &= firstMask;
                if (b == bytes - 1) byte &= lastMask;
                hit = byte != 0;
            }
        }
        if (hit) sign[static_cast<std::ptrdiff_t>(f) * rowBytes] = 128;
    }
    return true;
}

void selectedMixture(const Vorn32f* src, const Vorn32f* mean, const Vorn32f* var, int len, const Vorn32f* val,
                     const Vorn8u* sign, int width, Vorn32f* result, int frames, Vorn32f floor) {
    const auto at = [=](const Vorn32f* rows, int r) { return rows + static_cast<std::ptrdiff_t>(r) * len; };
    select(
        [=](int f, int g) {
            return var != nullptr ? gaussScore(at(src, f), at(mean, g), at(var, g), len, val[g])
                                  : gaussScoreIdentity(at(src, f), at(mean, g), len, val[g]);
        },
        sign, width, result, frames, floor);
}

void selectedMixture(const Vorn16s* src, const Vorn16s* mean, const Vorn16s* var, int len, const Vorn32f* val,
                     const Vorn8u* sign, int width, Vorn32f* result, int frames, Vorn32f floor, Vorn32f scale) {
    const auto at = [=](const Vorn16s* rows, int r) { return rows + static_cast<std::ptrdiff_t>(r) * len; };
    select(
        [=](int f, int g) {
            return var != nullptr ? gaussScore(at(src, f), at(mean, g), at(var, g), len, val[g], scale)
                                  : gaussScoreIdentity(at(src, f), at(mean, g), len, val[g], scale);
        },
        sign, width, result, frames, floor);
}

}  // namespace plain
