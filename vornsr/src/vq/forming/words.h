// Rows of codewords from rows of indices.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "vq/codebook/state.h"
#include "vq/forming/bits.h"
#include "vq/forming/copy.h"
#include "vq/forming/streams.h"

namespace vorn::vq {

// The indices of one stream, row by row; behind() is the next stream's.

template <class Index>
struct StreamOfIndices {
    const Index* first;
    std::ptrdiff_t step;
    std::int64_t at(std::ptrdiff_t row, const VornCdbkState&) const { return first[row * step]; }
    StreamOfIndices behind(const VornCdbkState&) const { return {first + 1, step}; }
};

struct StreamOfBits {
    const Vorn8u* stream;
    std::int64_t first, step;  // bits
    std::int64_t at(std::ptrdiff_t row, const VornCdbkState& codebook) const {
        return readBits(stream, first + row * step, codebook.indexBits);
    }
    StreamOfBits behind(const VornCdbkState& codebook) const { return {stream, first + codebook.indexBits, step}; }
};

// The words of one stream in rows of dst, or zeros where the codebook has none of an index: nothing outside its words
// is read. A width of 0 is any, the codebook's.
template <int width, class T, class Column>
VORN_INLINE void formColumn(const Column& column, const VornCdbkState& codebook, T* dst, std::ptrdiff_t dstStep,
                            std::ptrdiff_t rows) {
    const T* words = static_cast<const T*>(codebook.words);
    const std::ptrdiff_t step = codebook.rowStep, len = width != 0 ? width : codebook.vecLen;
    const auto count = static_cast<std::uint64_t>(codebook.cdbkSize);
    for (std::ptrdiff_t r = 0; r < rows; ++r) {
        const std::int64_t index = column.at(r, codebook);
        T* to = dst + r * dstStep;
        if (static_cast<std::uint64_t>(index) >= count) {
            std::fill_n(to, len, T(0));
        } else if constexpr (width != 0) {
            std::memcpy(to, words + index * step, width * sizeof(T));
        } else {
            copyElements(words + index * step, to, len);
        }
    }
}

template <class T, class Column>
void formRows(Column first, T* dst, std::ptrdiff_t dstStep, std::ptrdiff_t height, const Streams& streams) {
    constexpr std::ptrdiff_t block = 32;  // rows that stay in the cache from stream to stream
    for (std::ptrdiff_t r = 0; r < height; r += block) {
        const std::ptrdiff_t rows = std::min(block, height - r);
        Column column = first;
        column.first += r * column.step;
        T* to = dst + r * dstStep;
        for (int s = 0; s < streams.count; ++s) {
            const VornCdbkState& codebook = streams[s];
            switch (codebook.vecLen) {
                case 1:
                    formColumn<1>(column, codebook, to, dstStep, rows);
                    break;
                case 2:
                    formColumn<2>(column, codebook, to, dstStep, rows);
                    break;
                case 4:
                    formColumn<4>(column, codebook, to, dstStep, rows);
                    break;
                default:
                    formColumn<0>(column, codebook, to, dstStep, rows);
            }
            column = column.behind(codebook);
            to += codebook.vecLen;
        }
    }
}

}  // namespace vorn::vq
