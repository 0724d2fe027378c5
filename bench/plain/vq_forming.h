// Plain loops of vectors formed from indices.
#pragma once

#include <cstdint>

#include "vornsr/types.h"

namespace plain {

// A codebook as a caller would keep it.
template <class T>
struct Book {
    const T* words;
    int vecLen, bits;
};

template <class Index, class T>
void formRows(const Index* src, int srcStep, T* dst, int dstStep, int height, const Book<T>* books, int streams);
template <class T>
void formRowsOfBits(const Vorn8u* src, int bitStep, T* dst, int dstStep, int height, const Book<T>* books, int streams);

// False if an index is out of range.
template <int piece, class Index, class T>
bool formPieces(const Index* index, const T* const* tables, const int* sizes, T* dst, int len);
template <class Index, class T>
bool formStreams(const Index* index, const T* const* tables, const int* sizes, const int* lens, const int* strides,
                 int streams, T* dst);

}  // namespace plain
