// Plain loops of curves and small tools: what a compiler makes of the formula and the C library.
#pragma once

#include <algorithm>
#include <cmath>
#include <functional>
#include <type_traits>
#include <vector>

#include "vornsr/types.h"

namespace plain {

// The sine in double, rounded to the result's type and divided there.
template <class T, class R>
void sinC(const T* __restrict src, R* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) {
        const R x = src[i];
        dst[i] = x == 0 ? R(1) : static_cast<R>(std::sin(static_cast<double>(x))) / x;
    }
}
// The sine in the source's type.
inline void sinCNarrow(const Vorn32f* __restrict src, Vorn32f* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = src[i] == 0 ? 1.0f : std::sin(src[i]) / src[i];
}
template <class T, class R>
void expNegSqr(const T* __restrict src, R* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) {
        const R x = src[i];
        dst[i] = static_cast<R>(std::exp(static_cast<double>(-(x * x))));
    }
}
inline void expNegSqrNarrow(const Vorn32f* __restrict src, Vorn32f* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) dst[i] = std::exp(-(src[i] * src[i]));
}

inline VornStatus recSqrt(Vorn32f* srcDst, int len, Vorn32f val) {
    int count = 0;
    for (int i = 0; i < len; ++i) {
        const bool kept = val < srcDst[i];
        srcDst[i] = kept ? 1.0f / std::sqrt(srcDst[i]) : val;
        count += kept ? 0 : 1;
    }
    return count == len ? vornStsZeroRange : vornStsNoErr;
}
inline VornStatus recSqrt(const Vorn32s* __restrict src, Vorn16s* __restrict dst, int len, Vorn32s val, float scale) {
    int count = 0;
    const auto ceiling = static_cast<float>(val);
    for (int i = 0; i < len; ++i) {
        const auto x = static_cast<float>(src[i]);
        const bool kept = x >= ceiling;
        const float r = (kept ? 1.0f / std::sqrt(x) : ceiling) * scale;
        dst[i] = static_cast<Vorn16s>(std::min(std::max(r, -32768.0f), 32767.0f));
        count += kept ? 0 : 1;
    }
    return count == len ? vornStsZeroRange : vornStsNoErr;
}

inline void unitCurve(const Vorn32f* __restrict src, Vorn32f* __restrict dst, int len) {
    for (int i = 0; i < len; ++i) {
        const float x = src[i];
        dst[i] = x < 0 ? 0.0f : x < 1 ? x * x : x < 2 ? 4 * x - x * x - 2 : 2.0f;
    }
}
inline void unitCurve(const Vorn16s* __restrict src, Vorn16s* __restrict dst, int len, int q, int scaleFactor) {
    const int one = 1 << q, two = 2 << q, t = scaleFactor + 2 * q;
    for (int i = 0; i < len; ++i) {
        const int x = src[i];
        const int v = x <= 0 ? 0 : x < one ? x * x : x < two ? two * one - (two - x) * (two - x) : two * one;
        const int shifted = t >= 1 ? v >> (t & 31) : static_cast<int>(static_cast<unsigned>(v) << (-t & 31));
        dst[i] = static_cast<Vorn16s>(std::min(shifted, 32767));
    }
}

inline Vorn32f entropy(const Vorn32f* src, int len) {
    float sum = 0;
    for (int i = 0; i < len; ++i) {
        if (!(src[i] >= 0)) return NAN;
        if (src[i] > 0) sum += src[i] * static_cast<float>(std::log(static_cast<double>(src[i])));
    }
    return sum / 0.6931472f;
}

inline void scaleLM(const Vorn32f* __restrict src, Vorn32f* __restrict dst, int len, float floor, float mul,
                    float add) {
    for (int i = 0; i < len; ++i) dst[i] = (src[i] > floor ? src[i] : floor) * mul + add;
}
inline void scaleLM(const Vorn16s* __restrict src, Vorn32s* __restrict dst, int len, Vorn16s floor, Vorn16s mul,
                    Vorn32s add) {
    for (int i = 0; i < len; ++i) {
        dst[i] = static_cast<Vorn32s>(static_cast<Vorn32u>(std::max(src[i], floor) * mul) + static_cast<Vorn32u>(add));
    }
}

template <class T>
void weightedSum(const T* __restrict a, const T* __restrict b, T* __restrict dst, int len, T weight1, T weight2) {
    const T r = 1 / (weight1 + weight2), first = weight1 * r, second = weight2 * r;
    for (int i = 0; i < len; ++i) dst[i] = a[i] * first + b[i] * second;
}
inline void weightedSum(const Vorn16s* __restrict a, const Vorn16s* __restrict b, Vorn16s* __restrict dst, int len,
                        Vorn16s weight1, Vorn16s weight2) {
    const float r = 1.0f / static_cast<float>(weight1 + weight2), first = weight1 * r, second = weight2 * r;
    for (int i = 0; i < len; ++i) {
        dst[i] = static_cast<Vorn16s>(std::min(std::max(a[i] * first + b[i] * second, -32768.0f), 32767.0f));
    }
}

template <class T>
void middle(const T* src, int len, T* result) {
    std::vector<T> copy(src, src + len);
    std::nth_element(copy.begin(), copy.begin() + len / 2, copy.end(), std::greater<T>());
    *result = copy[static_cast<std::size_t>(len / 2)];
}

}  // namespace plain
