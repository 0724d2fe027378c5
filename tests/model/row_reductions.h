// Sums of columns and rows, and updates of rows, one element after the other. A matrix is a list of rows.
#pragma once

#include <algorithm>
#include <type_traits>

#include "model/convert.h"
#include "model/integers.h"
#include "vornsr/types.h"

namespace model {

template <class T, class Source>
void addAllRowSum(const Source* const* rows, int height, T* srcDst, int width) {
    for (int j = 0; j < width; ++j) {
        for (int i = 0; i < height; ++i) srcDst[j] = srcDst[j] + static_cast<T>(rows[i][j]);
    }
}

template <class T, class Source>
void sumColumn(const Source* const* rows, int height, T* dst, int width) {
    std::fill(dst, dst + width, T(0));
    addAllRowSum(rows, height, dst, width);
}

template <class T, class Source>
void sumRow(const Source* const* rows, int height, T* dst, int width) {
    constexpr int lanes = std::is_same_v<T, double> ? 2 : 4;
    for (int i = 0; i < height; ++i) {
        T lane[lanes] = {};
        int j = 0;
        for (; j < width - width % lanes; ++j) lane[j % lanes] += static_cast<T>(rows[i][j]);
        T sum;
        if constexpr (lanes == 4) {
            const T low = lane[0] + lane[1], high = lane[2] + lane[3];
            sum = low + high;
        } else {
            sum = lane[0] + lane[1];
        }
        for (; j < width; ++j) sum += static_cast<T>(rows[i][j]);
        dst[i] = sum;
    }
}

inline Vorn32s scaledRowSum(float sum, int scaleFactor) { return to32s(sum, 1, singleOfScale(scaleFactor)); }

inline void subRow(const float* row, float* x, int width) {
    for (int j = 0; j < width; ++j) x[j] = x[j] - row[j];
}
inline void subRow(const Vorn16s* row, Vorn16s* x, int width) {
    for (int j = 0; j < width; ++j) x[j] = saturateTo<Vorn16s>(x[j] - row[j]);
}

inline void normalizeRow(float* x, const float* mean, const float* scale, int width) {
    for (int j = 0; j < width; ++j) {
        const float difference = x[j] - mean[j];
        x[j] = difference * scale[j];
    }
}
// Shifted within 32 bits: what leaves them to the left is lost.
inline Vorn16s normalized(Vorn16s x, Vorn16s mean, Vorn16s scale, int scaleFactor) {
    const Big product = Big{x - mean} * scale;
    const Big shifted = scaleFactor < 0
                            ? wrapTo<Vorn32s>(product << static_cast<int>(std::min(-Big{scaleFactor}, Big{64})))
                            : product >> std::min(scaleFactor, 64);
    return saturateTo<Vorn16s>(shifted);
}

}  // namespace model
