// Plain models of vectors formed from indices.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "vornsr/types.h"

namespace model {

// One bit after the other, from the top of each byte.
inline std::int64_t bitsAt(const std::vector<Vorn8u>& stream, std::int64_t at, int bits) {
    std::int64_t value = 0;
    for (int b = 0; b < bits; ++b) {
        const std::int64_t bit = at + b;
        value = 2 * value + ((stream[static_cast<std::size_t>(bit / 8)] & (0x80 >> bit % 8)) != 0);
    }
    return value;
}

template <class T>
struct Words {
    int vecLen, rowStep, indexBits;
    std::vector<std::vector<T>> word;
};

// One row of dst, from the indices of its streams.
template <class T>
std::vector<T> formedRow(const std::vector<Words<T>>& books, const std::vector<std::int64_t>& index) {
    std::vector<T> row;
    for (std::size_t s = 0; s < books.size(); ++s) {
        const bool exists = index[s] >= 0 && index[s] < static_cast<std::int64_t>(books[s].word.size());
        for (int j = 0; j < books[s].vecLen; ++j) {
            row.push_back(exists ? books[s].word[static_cast<std::size_t>(index[s])][static_cast<std::size_t>(j)]
                                 : T(0));
        }
    }
    return row;
}

// Entry `index` of a table of entries of `stride` elements, as far as `len`.
template <class T>
void appendEntry(std::vector<T>& row, const std::vector<T>& table, std::int64_t index, int stride, int len) {
    for (int j = 0; j < len; ++j) row.push_back(table[static_cast<std::size_t>(index * stride + j)]);
}

}  // namespace model
