// Selection of Gaussians: rows of bits, the first bit of a row the most significant one of its first byte. Shortlists
// are filled here, and joined to tables of one bit a Gaussian.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "frame/checks.h"
#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn::selection {

constexpr std::ptrdiff_t bytesOfBits(std::int64_t bits) { return (bits + 7) / 8; }

// A row of step bytes holds the field of width bits from bit `start` on.
constexpr VornStatus fieldHolds(int step, std::int64_t start, std::int64_t width) {
    return strideHolds(step, bytesOfBits(start + width));
}

// ---- How many indices belong to each list (a row, a column, a frame), which stand one list behind the other.

struct EqualCounts {
    int count;
    int operator[](std::ptrdiff_t) const { return count; }
};
struct GivenCounts {
    const Vorn32s* counts;
    int operator[](std::ptrdiff_t list) const { return counts[list]; }
};

inline std::int64_t totalOf(EqualCounts counts, int lists) { return std::int64_t{counts.count} * lists; }
inline std::int64_t totalOf(GivenCounts counts, int lists) {
    std::int64_t total = 0;
    for (int list = 0; list < lists; ++list) total += counts[list];
    return total;
}

inline VornStatus eachPositive(const Vorn32s* counts, int lists) {
    for (int list = 0; list < lists; ++list) {
        if (counts[list] < 1) return vornStsSizeErr;
    }
    return vornStsNoErr;
}

// Every index is at least 0 and below limit.
inline VornStatus eachBelow(const Vorn32s* indices, std::int64_t total, int limit) {
    std::uint32_t largest = 0;  // a negative index counts as one above all others
    for (std::int64_t i = 0; i < total; ++i) largest = std::max(largest, static_cast<std::uint32_t>(indices[i]));
    return require(largest < static_cast<std::uint32_t>(limit), vornStsBadArgErr);
}

// ---- Shortlists.

inline void toggleBit(Vorn8u* row, std::int64_t bit) {
    row[bit / 8] = static_cast<Vorn8u>(row[bit / 8] ^ (128 >> (bit % 8)));
}

// What an index of a list names: a bit of the row whose list it is, or the row in which the list's bit is meant.
struct BitsOfRow {
    static void toggle(Vorn8u* const* rows, std::int64_t start, int list, Vorn32s index) {
        toggleBit(rows[list], start + index);
    }
};
struct RowsOfBit {
    static void toggle(Vorn8u* const* rows, std::int64_t start, int list, Vorn32s index) {
        toggleBit(rows[index], start + list);
    }
};

template <class Meaning, class Counts>
void fillShortlist(const Vorn32s* indices, Counts counts, int lists, Vorn8u* const* rows, int start) {
    for (int list = 0; list < lists; ++list) {
        for (int k = 0; k < counts[list]; ++k) Meaning::toggle(rows, start, list, *indices++);
    }
}

// ---- Sign tables: the shortlists of a frame's codewords, joined.

template <class Word>
VORN_INLINE Word wordAt(const Vorn8u* p) {
    Word word;
    std::memcpy(&word, p, sizeof word);
    return word;
}
template <>
VORN_INLINE i8xN wordAt<i8xN>(const Vorn8u* p) {
    return load<i8xN>(reinterpret_cast<const std::int8_t*>(p));
}

// The codewords of one frame, and the byte at which their rows' field begins.
struct JoinedRows {
    const Vorn32s* indices;
    std::ptrdiff_t count;
    const Vorn8u* const* rows;
    std::ptrdiff_t firstByte;

    // A word's bytes from byte `at` of the field on, of all rows.
    template <class Word>
    VORN_INLINE Word word(std::ptrdiff_t at) const {
        Word joined = wordAt<Word>(rows[indices[0]] + firstByte + at);
        for (std::ptrdiff_t i = 1; i < count; ++i)
            joined = static_cast<Word>(joined | wordAt<Word>(rows[indices[i]] + firstByte + at));
        return joined;
    }
    // Bytes of the field, not less than a word has; the last word overlaps the one before it.
    template <class Word>
    void store(std::ptrdiff_t from, std::ptrdiff_t bytes, Vorn8u* joined) const {
        constexpr std::ptrdiff_t size = sizeof(Word);
        for (std::ptrdiff_t at = 0; at < bytes; at += size) {
            const std::ptrdiff_t place = std::min(at, bytes - size);
            const Word here = word<Word>(from + place);
            std::memcpy(joined + place, &here, size);
        }
    }
    void store(std::ptrdiff_t from, std::ptrdiff_t bytes, Vorn8u* joined) const {
        if (bytes >= static_cast<std::ptrdiff_t>(sizeof(i8xN))) {
            store<i8xN>(from, bytes, joined);
        } else if (bytes >= 8) {
            store<std::uint64_t>(from, bytes, joined);
        } else {
            store<Vorn8u>(from, bytes, joined);
        }
    }
};

// The field of a shortlist that becomes a row of the table: its first bit moves to bit 0.
struct SignField {
    std::ptrdiff_t firstByte, bytes, rowBytes;
    int shift, width;

    SignField(int start, int width_)
        : firstByte(start / 8),
          bytes(bytesOfBits(start % 8 + std::int64_t{width_})),
          rowBytes(bytesOfBits(width_)),
          shift(start % 8),
          width(width_) {}
    // The bits of the table's last byte that the width has.
    Vorn8u lastMask() const { return static_cast<Vorn8u>(0xFF << (8 * rowBytes - width)); }
};

// A field that one word holds. Eight bytes from its first one on are read.
inline void signRowInOneWord(const SignField& field, const JoinedRows& codewords, Vorn8u* sign) {
    const std::uint64_t word = __builtin_bswap64(codewords.word<std::uint64_t>(0)) << field.shift;
    for (std::ptrdiff_t b = 0; b < field.rowBytes; ++b) sign[b] = static_cast<Vorn8u>(word >> (56 - 8 * b));
    sign[field.rowBytes - 1] &= field.lastMask();
}

// The bytes that begin at bit `shift` of the first one: result[b] takes the last bits of joined[b] and the first of
// joined[b + 1].
inline void shiftBits(const Vorn8u* joined, int shift, Vorn8u* result, std::ptrdiff_t count) {
    if (count < 8) {
        for (std::ptrdiff_t b = 0; b < count; ++b)
            result[b] = static_cast<Vorn8u>((joined[b] << shift) | (joined[b + 1] >> (8 - shift)));
        return;
    }
    for (std::ptrdiff_t b = 0; b < count; b += 8) {
        const Vorn8u* from = joined + std::min(b, count - 8);
        const std::uint64_t eight = __builtin_bswap64(wordAt<std::uint64_t>(from)) << shift;
        const std::uint64_t shifted = __builtin_bswap64(eight | static_cast<std::uint64_t>(from[8] >> (8 - shift)));
        std::memcpy(result + (from - joined), &shifted, sizeof shifted);
    }
}

// Any field, some bytes at a time. No byte behind it is read.
inline void signRowInPieces(const SignField& field, const JoinedRows& codewords, Vorn8u* sign) {
    constexpr std::ptrdiff_t piece = 1024;
    Vorn8u joined[piece + 1];
    for (std::ptrdiff_t done = 0; done < field.rowBytes; done += piece) {
        const std::ptrdiff_t count = std::min(piece, field.rowBytes - done);
        joined[count] = 0;
        codewords.store(done, std::min(count + 1, field.bytes - done), joined);
        shiftBits(joined, field.shift, sign + done, count);
    }
    sign[field.rowBytes - 1] &= field.lastMask();
}

inline void buildSignTable(const Vorn32s* indices, int count, const Vorn8u* const* rows, int step, int start,
                           Vorn8u* sign, int frames, int width) {
    const SignField field(start, width);
    const bool oneWord = field.bytes <= 8 && field.firstByte + 8 <= step;
    for (int f = 0; f < frames; ++f, indices += count, sign += field.rowBytes) {
        const JoinedRows codewords{indices, count, rows, field.firstByte};
        if (oneWord) {
            signRowInOneWord(field, codewords, sign);
        } else {
            signRowInPieces(field, codewords, sign);
        }
    }
}

// Whether a field has any bit set.
inline bool anyBit(const SignField& field, const Vorn8u* row) {
    const Vorn8u* p = row + field.firstByte;
    const std::ptrdiff_t last = field.bytes - 1;
    const int firstBits = 0xFF >> field.shift;
    const int lastBits = 0xFF << (8 * field.bytes - field.shift - field.width) & 0xFF;
    if (last == 0) return (p[0] & firstBits & lastBits) != 0;
    if ((p[0] & firstBits) != 0 || (p[last] & lastBits) != 0) return true;
    std::ptrdiff_t b = 1;
    for (; b + 8 <= last; b += 8) {
        if (wordAt<std::uint64_t>(p + b) != 0) return true;
    }
    for (; b < last; ++b) {
        if (p[b] != 0) return true;
    }
    return false;
}

// A table of which only the first bit of each row is ever set: frame f has it if one of the first counts[f] codewords,
// counted from the beginning of all indices, selects anything. Kept so on purpose.
inline void buildFirstSigns(const Vorn32s* indices, GivenCounts counts, const Vorn8u* const* rows, int start,
                            Vorn8u* sign, int frames, int width) {
    const SignField field(start, width);
    std::memset(sign, 0, static_cast<std::size_t>(field.rowBytes) * static_cast<std::size_t>(frames));
    int most = 0;
    for (int f = 0; f < frames; ++f) most = std::max(most, counts[f]);
    int first = 0;
    while (first < most && !anyBit(field, rows[indices[first]])) ++first;
    for (int f = 0; f < frames; ++f) {
        if (counts[f] > first) sign[f * field.rowBytes] = 128;
    }
}

}  // namespace vorn::selection
