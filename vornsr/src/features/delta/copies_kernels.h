// Frames moved into wider rows, and columns chosen by a list of indices.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/rows.h"
#include "loops/stripes.h"
#include "move/move_kernels.h"

namespace vorn::delta {

// Rows of width elements, packed in src.
template <class T>
void copyRows(const T* src, std::ptrdiff_t width, T* dst, std::ptrdiff_t step, std::ptrdiff_t height) {
    if (step == width) {
        ownsMove_8u_M7(reinterpret_cast<const Vorn8u*>(src), reinterpret_cast<Vorn8u*>(dst),
                       height * width * static_cast<std::int64_t>(sizeof(T)));
        return;
    }
    for (; height > 0; --height, src += width, dst += step) {
        overStripes<T>(
            width, [=](auto stripe, std::ptrdiff_t column)
                       __attribute__((always_inline)) { stripe.store(dst + column, stripe.load(src + column)); });
    }
}

// The first row, element by element up to an index that names no column; tells whether there was none.
template <class T>
bool pickFirstRow(const T* src, std::ptrdiff_t srcLen, T* dst, const std::int32_t* index, std::ptrdiff_t dstLen) {
    for (std::ptrdiff_t j = 0; j < dstLen; ++j) {
        const std::int32_t from = index[j];
        if (from < 0 || from >= srcLen) return false;
        dst[j] = src[from];
    }
    return true;
}

// Nothing is tested here, so that compilers may fetch several elements at once where the processor can.
template <class T>
void pickRow(const T* __restrict src, T* __restrict dst, const std::int32_t* __restrict index, std::ptrdiff_t dstLen) {
    for (std::ptrdiff_t j = 0; j < dstLen; ++j) dst[j] = src[index[j]];
}

// dst[i][j] = src[i][index[j]]. Indices that have served in the first row serve in all.
template <class T, template <class> class Layout>
bool pickColumns(Layout<const T> src, std::ptrdiff_t srcLen, Layout<T> dst, const std::int32_t* index,
                 std::ptrdiff_t dstLen, std::ptrdiff_t height) {
    if (!pickFirstRow(src[0], srcLen, dst[0], index, dstLen)) return false;
    for (std::ptrdiff_t row = 1; row < height; ++row) pickRow(src[row], dst[row], index, dstLen);
    return true;
}

}  // namespace vorn::delta
