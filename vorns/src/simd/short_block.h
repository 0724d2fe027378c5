// Moves and fills of short blocks, where a call would take as long as the work. They become part of the function that
// asks for them.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "simd/simd.h"
#include "vornsr/types.h"

namespace vorn {

// Blocks up to this size are short: two runs of registers, from the start and from the end, cover them.
inline constexpr std::int64_t shortBytes = i8xN::lanes > 16 ? 256 : 128;

template <class Word>
VORN_INLINE Word wordAt(const Vorn8u* p) {
    Word word;
    std::memcpy(&word, p, sizeof word);
    return word;
}
template <class Word>
VORN_INLINE void putWord(Vorn8u* p, Word x) {
    std::memcpy(p, &x, sizeof x);
}

// len from count words to twice as much: words from the start and words up to the end, which may overlap. Everything is
// read before anything is written, so src and dst may overlap in any way.
template <class Word, int count>
VORN_INLINE void moveEnds(const Vorn8u* src, Vorn8u* dst, std::int64_t len) {
    constexpr std::int64_t size = sizeof(Word);
    Word head[count], tail[count];
    for (int i = 0; i < count; ++i) {
        head[i] = wordAt<Word>(src + i * size);
        tail[i] = wordAt<Word>(src + len - (i + 1) * size);
    }
    for (int i = 0; i < count; ++i) {
        putWord(dst + i * size, head[i]);
        putWord(dst + len - (i + 1) * size, tail[i]);
    }
}

// len from 1 to 32.
VORN_INLINE void moveFew(const Vorn8u* src, Vorn8u* dst, std::int64_t len) {
    if (len >= 16) {
        moveEnds<i8x16, 1>(src, dst, len);
    } else if (len >= 8) {
        moveEnds<std::uint64_t, 1>(src, dst, len);
    } else if (len >= 4) {
        moveEnds<std::uint32_t, 1>(src, dst, len);
    } else if (len >= 2) {
        moveEnds<std::uint16_t, 1>(src, dst, len);
    } else {
        *dst = *src;
    }
}

// len from 1 to shortBytes.
VORN_INLINE void moveShort(const Vorn8u* src, Vorn8u* dst, std::int64_t len) {
    if (len > 128) {
        moveEnds<i8xN, (i8xN::lanes > 16 ? 128 / i8xN::lanes : 1)>(src, dst, len);
    } else if (len > 64) {
        moveEnds<i8xN, 64 / i8xN::lanes>(src, dst, len);
    } else if (len > 32) {
        moveEnds<i8x16, 2>(src, dst, len);
    } else {
        moveFew(src, dst, len);
    }
}

template <class Word, int count>
VORN_INLINE void fillEnds(Word pattern, Vorn8u* dst, std::int64_t len) {
    constexpr std::int64_t size = sizeof(Word);
    for (int i = 0; i < count; ++i) {
        putWord(dst + i * size, pattern);
        putWord(dst + len - (i + 1) * size, pattern);
    }
}

// len from 1 to shortBytes, a whole number of patterns: then a word that ends with the block begins with a pattern too.
// even and odd are the pattern, repeated to 16 bytes.
VORN_INLINE void fillShort(std::int64_t even, std::int64_t odd, Vorn8u* dst, std::int64_t len) {
    if (len > 128) {
        fillEnds<i64xN, (i8xN::lanes > 16 ? 128 / i8xN::lanes : 1)>(splatPair<i64xN>(even, odd), dst, len);
    } else if (len > 64) {
        fillEnds<i64xN, 64 / i8xN::lanes>(splatPair<i64xN>(even, odd), dst, len);
    } else if (len > 32) {
        fillEnds<i64x2, 2>(splatPair<i64x2>(even, odd), dst, len);
    } else if (len >= 16) {
        fillEnds<i64x2, 1>(splatPair<i64x2>(even, odd), dst, len);
    } else if (len >= 8) {
        fillEnds<std::int64_t, 1>(even, dst, len);
    } else if (len >= 4) {
        fillEnds<std::int32_t, 1>(static_cast<std::int32_t>(even), dst, len);
    } else if (len >= 2) {
        fillEnds<std::int16_t, 1>(static_cast<std::int16_t>(even), dst, len);
    } else {
        *dst = static_cast<Vorn8u>(even);
    }
}

}  // namespace vorn
