// Rows of codewords from rows of indices.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "vq/codebook/state.h"
#include "vq/forming/bits.h"
#include "vq/forming/copy.h"
#include "vq/forming/streams.h"

namespace vorn::vq {

// Where the indices of a row come from, stream by stream.

template <class Index>
struct IndexRows {
    const Index* src;
    std::ptrdiff_t step;
    class Row {
    public:
        explicit Row(const Index* next) : next_(next) {}
        std::int64_t take(const VornCdbkState&) { return *next_++; }

    private:
        const Index* next_;
    };
    Row row(std::ptrdiff_t r) const { return Row(src + r * step); }
};

struct PackedRows {
    const Vorn8u* src;
    std::int64_t bitStep;
    class Row {
    public:
        Row(const Vorn8u* stream, std::int64_t at) : stream_(stream), at_(at) {}
        std::int64_t take(const VornCdbkState& codebook) {
            const std::uint32_t index = readBits(stream_, at_, codebook.indexBits);
            at_ += codebook.indexBits;
            return index;
        }

    private:
        const Vorn8u* stream_;
        std::int64_t at_;
    };
    Row row(std::ptrdiff_t r) const { return {src, r * bitStep}; }
};

// A word, or zeros where the codebook has none of this index: nothing outside its words is read.
template <class T>
VORN_INLINE void copyWord(const VornCdbkState& codebook, std::int64_t index, T* dst) {
    if (index < 0 || index >= codebook.cdbkSize) {
        std::fill_n(dst, codebook.vecLen, T(0));
    } else {
        copyElements(static_cast<const T*>(codebook.words) + index * codebook.rowStep, dst, codebook.vecLen);
    }
}

template <class T, class Indices>
void formRows(const Indices& indices, T* dst, std::ptrdiff_t dstStep, std::ptrdiff_t height, const Streams& streams) {
    for (std::ptrdiff_t r = 0; r < height; ++r) {
        auto row = indices.row(r);
        T* to = dst + r * dstStep;
        for (int s = 0; s < streams.count; ++s) {
            const VornCdbkState& codebook = streams[s];
            copyWord(codebook, row.take(codebook), to);
            to += codebook.vecLen;
        }
    }
}

}  // namespace vorn::vq
