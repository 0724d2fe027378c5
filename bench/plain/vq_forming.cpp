#include "plain/vq_forming.h"

namespace plain {

template <class Index, class T>
void formRows(const Index* src, int srcStep, T* dst, int dstStep, int height, const Book<T>* books, int streams) {
    for (int r = 0; r < height; ++r, src += srcStep, dst += dstStep) {
        T* to = dst;
        for (int s = 0; s < streams; ++s) {
            const T* word = books[s].words + std::int64_t{src[s]} * books[s].vecLen;
            for (int j = 0; j < books[s].vecLen; ++j) *to++ = word[j];
        }
    }
}

template <class T>
void formRowsOfBits(const Vorn8u* src, int bitStep, T* dst, int dstStep, int height, const Book<T>* books,
                    int streams) {
    for (int r = 0; r < height; ++r, dst += dstStep) {
        std::int64_t at = std::int64_t{r} * bitStep;
        T* to = dst;
        for (int s = 0; s < streams; ++s) {
            int index = 0;
            for (int b = 0; b < books[s].bits; ++b, ++at) index = 2 * index + (src[at / 8] >> (7 - at % 8) & 1);
            const T* word = books[s].words + std::int64_t{index} * books[s].vecLen;
            for (int j = 0; j < books[s].vecLen; ++j) *to++ = word[j];
        }
    }
}

template <int piece, class Index, class T>
bool formPieces(const Index* index, const T* const* tables, const int* sizes, T* dst, int len) {
    for (int g = 0; g < len / piece; ++g) {
        if (index[g] < 0 || index[g] >= sizes[g]) return false;
    }
    for (int g = 0; g < len / piece; ++g) {
        for (int j = 0; j < piece; ++j) dst[piece * g + j] = tables[g][piece * index[g] + j];
    }
    return true;
}

template <class Index, class T>
bool formStreams(const Index* index, const T* const* tables, const int* sizes, const int* lens, const int* strides,
                 int streams, T* dst) {
    for (int s = 0; s < streams; ++s) {
        if (lens[s] < 1 || strides[s] < 1 || index[s] < 0 || index[s] >= sizes[s]) return false;
    }
    for (int s = 0; s < streams; ++s) {
        const T* from = tables[s] + std::int64_t{index[s]} * strides[s];
        for (int j = 0; j < lens[s]; ++j) *dst++ = from[j];
    }
    return true;
}

#define OF_ELEMENT(Index, T)                                                         \
    template void formRows(const Index*, int, T*, int, int, const Book<T>*, int);    \
    template bool formPieces<2>(const Index*, const T* const*, const int*, T*, int); \
    template bool formPieces<4>(const Index*, const T* const*, const int*, T*, int); \
    template bool formStreams(const Index*, const T* const*, const int*, const int*, const int*, int, T*);
OF_ELEMENT(Vorn8u, Vorn16s)
OF_ELEMENT(Vorn16s, Vorn16s)
OF_ELEMENT(Vorn8u, Vorn32f)
OF_ELEMENT(Vorn16s, Vorn32f)
#undef OF_ELEMENT
template void formRowsOfBits(const Vorn8u*, int, Vorn16s*, int, int, const Book<Vorn16s>*, int);
template void formRowsOfBits(const Vorn8u*, int, Vorn32f*, int, int, const Book<Vorn32f>*, int);

}  // namespace plain
