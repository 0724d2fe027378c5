// Products of a matrix with a vector, one row or column after the other.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "model/integers.h"
#include "vornsr/types.h"

namespace model {

// 2^-sf in double, infinite or zero where it does not fit.
inline double doubleOfScale(int sf) {
    if (sf <= -1024) return std::numeric_limits<double>::infinity();
    if (sf > 1074) return 0.0;
    return std::ldexp(1.0, -sf);
}

// An exact sum by the shift of a scale factor: in 64 bits, by a count modulo 64, then saturated.
template <class R>
R shiftedSum(std::int64_t sum, int sf) {
    const Big count = (sf > 0 ? Big{sf} : -Big{sf}) % 64;
    const Big power = Big{1} << static_cast<int>(count);
    if (sf < 0) return saturateTo<R>(wrapTo<std::int64_t>(Big{sum} * power));
    const Big below = sum < 0 && sum % power != 0 ? 1 : 0;
    return saturateTo<R>(sum / power - below);
}

// The processor's conversion: what does not fit is the most negative integer.
inline std::int32_t unclamped(double x) {
    if (std::isnan(x) || std::isinf(x)) return std::numeric_limits<std::int32_t>::min();
    const double whole = nearestWhole(x);
    return whole < -2147483648.0 || whole > 2147483647.0 ? std::numeric_limits<std::int32_t>::min()
                                                         : static_cast<std::int32_t>(whole);
}

template <class R>
R clampedToNearest(double x) {
    if (std::isnan(x)) return 0;
    if (std::isinf(x)) return x > 0 ? std::numeric_limits<R>::max() : std::numeric_limits<R>::min();
    return saturateWhole<R>(nearestWhole(x));
}

// A row times the vector in `count` lanes of one type: whole groups of columns lane by lane, the lanes joined as
// neighbours, then the columns left over.
template <class Sum, int count, class T>
Sum rowInLanes(const T* row, const T* vec, int width) {
    Sum lane[count] = {};
    const int whole = width / count * count;
    for (int j = 0; j < whole; ++j) {
        const Sum product = (Sum)row[j] * (Sum)vec[j];
        lane[j % count] += product;
    }
    Sum sum;
    if (count == 4) {
        const Sum low = lane[0] + lane[1], high = lane[count - 2] + lane[count - 1];
        sum = low + high;
    } else {
        sum = lane[0] + lane[1];
    }
    for (int j = whole; j < width; ++j) {
        const Sum product = (Sum)row[j] * (Sum)vec[j];
        sum += product;
    }
    return sum;
}

template <class T, class R>
void matVecMul(const T* src, std::ptrdiff_t step, const T* vec, int width, R* dst, int height, int sf) {
    for (int i = 0; i < height; ++i) {
        const T* row = src + i * step;
        if constexpr (std::is_same_v<T, float>) {
            dst[i] = rowInLanes<float, 4>(row, vec, width);
        } else if constexpr (std::is_same_v<T, std::int32_t>) {
            const double sum = rowInLanes<double, 2>(row, vec, width);
            dst[i] = unclamped(sum * doubleOfScale(sf));
        } else {
            std::int64_t sum = 0;
            for (int j = 0; j < width; ++j) sum += std::int64_t{row[j]} * std::int64_t{vec[j]};
            dst[i] = shiftedSum<R>(sum, sf);
        }
    }
}

template <class T, class R>
void vecMatMul(const T* vec, const T* src, std::ptrdiff_t step, int height, R* dst, int width, int sf) {
    using Sum = std::conditional_t<std::is_same_v<T, float>, float, double>;
    for (int j = 0; j < width; ++j) {
        Sum sum = 0;
        for (int i = 0; i < height; ++i) {
            const Sum product = (Sum)vec[i] * (Sum)src[i * step + j];
            sum += product;
        }
        if constexpr (std::is_same_v<T, float>) {
            dst[j] = sum;
        } else {
            dst[j] = clampedToNearest<R>(sum * doubleOfScale(sf));
        }
    }
}

}  // namespace model
