// Autocorrelation by direct sums. Every lag is one sum in the order of the samples, so neither the lanes nor the number
// of lags changes a bit.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "fft/core/butterflies.h"
#include "simd/simd.h"

namespace vorn {

// The terms of a sum over samples a and b = sample at a lag behind a: a b for reals, conj(a) b for pairs. V is a vector
// of lags. A single lag is one of equal lanes: GCC 12 would make multiply-adds of plain arithmetic on pairs,
// contraction or not.
template <class T>
struct RealTerms {
    using Element = T;
    using Number = T;
    template <class V>
    using Sum = V;

    template <class V>
    static VORN_INLINE V at(const T* p) {
        return load<V>(p);
    }
    template <class V>
    static VORN_INLINE V everywhere(T a) {
        return splat<V>(a);
    }
    template <class V>
    static VORN_INLINE V plusTerm(V sum, V a, V b) {
        return sum + a * b;
    }
    template <class V>
    static VORN_INLINE void put(T* p, V sum) {
        store(p, sum);
    }
    template <class V>
    static VORN_INLINE T first(V sum) {
        return firstLane(sum);
    }
};

template <class Pair, class T>
struct PairTerms {
    using Element = Pair;
    using Number = T;
    template <class V>
    using Sum = fft::Complex<V>;

    template <class V>
    static VORN_INLINE Sum<V> at(const Pair* p) {
        Sum<V> value;
        loadPairs(&p->re, value.re, value.im);
        return value;
    }
    template <class V>
    static VORN_INLINE Sum<V> everywhere(Pair a) {
        return {splat<V>(a.re), splat<V>(a.im)};
    }
    template <class V>
    static VORN_INLINE Sum<V> plusTerm(Sum<V> sum, Sum<V> a, Sum<V> b) {
        return {sum.re + (a.re * b.re + a.im * b.im), sum.im + (a.re * b.im - a.im * b.re)};
    }
    template <class V>
    static VORN_INLINE void put(Pair* p, Sum<V> sum) {
        storePairs(&p->re, sum.re, sum.im);
    }
    template <class V>
    static VORN_INLINE Pair first(Sum<V> sum) {
        return {firstLane(sum.re), firstLane(sum.im)};
    }
};

template <class Terms>
using NarrowLags = std::conditional_t<sizeof(typename Terms::Number) == 4, f32x4, f64x2>;

// The sum of one lag so far, and the terms of the samples from `from` on.
template <class Terms>
typename Terms::Element finishedLag(typename Terms::Element sumSoFar, const typename Terms::Element* src,
                                    std::ptrdiff_t from, std::ptrdiff_t srcLen, std::ptrdiff_t lag) {
    using V = NarrowLags<Terms>;
    auto sum = Terms::template everywhere<V>(sumSoFar);
    for (std::ptrdiff_t n = from; n < srcLen - lag; ++n) {
        sum = Terms::template plusTerm<V>(sum, Terms::template everywhere<V>(src[n]),
                                          Terms::template everywhere<V>(src[n + lag]));
    }
    return Terms::template first<V>(sum);
}

// The sums of lanes lags from `lag` on stand in dst and hold the terms of the samples below `from`: takes in the
// others, fewer for every further lag, in vectors of half the lanes from where the last lag has ended.
template <class Terms, class V>
void finishLags(const typename Terms::Element* src, std::ptrdiff_t from, std::ptrdiff_t srcLen,
                typename Terms::Element* dst, std::ptrdiff_t lag) {
    const std::ptrdiff_t common = srcLen - (lag + V::lanes - 1);
    auto sum = Terms::template at<V>(dst + lag);
    for (std::ptrdiff_t n = from; n < common; ++n) {
        sum = Terms::template plusTerm<V>(sum, Terms::template everywhere<V>(src[n]),
                                          Terms::template at<V>(src + n + lag));
    }
    Terms::template put<V>(dst + lag, sum);
    if constexpr (V::lanes > NarrowLags<Terms>::lanes) {
        using Half = decltype(lowHalf(V{}));
        finishLags<Terms, Half>(src, common, srcLen, dst, lag);
        finishLags<Terms, Half>(src, common, srcLen, dst, lag + Half::lanes);
    } else {
        for (std::ptrdiff_t k = lag; k < lag + V::lanes; ++k) {
            dst[k] = finishedLag<Terms>(dst[k], src, common, srcLen, k);
        }
    }
}

// The lags from `lag` on in vectors of them, the last of which ends with the last lag and may overlap the one before.
template <class Terms, class V, int vectors>
void correlateVectors(const typename Terms::Element* src, std::ptrdiff_t srcLen, typename Terms::Element* dst,
                      std::ptrdiff_t lag, std::ptrdiff_t lags) {
    std::ptrdiff_t start[vectors];
    typename Terms::template Sum<V> sum[vectors];
    for (int v = 0; v < vectors; ++v) {
        start[v] = std::min(lag + v * V::lanes, lags - V::lanes);
        sum[v] = Terms::template everywhere<V>({});
    }
    const std::ptrdiff_t common = srcLen - (start[vectors - 1] + V::lanes - 1);
    for (std::ptrdiff_t n = 0; n < common; ++n) {
        const auto a = Terms::template everywhere<V>(src[n]);
        for (int v = 0; v < vectors; ++v) {
            sum[v] = Terms::template plusTerm<V>(sum[v], a, Terms::template at<V>(src + n + start[v]));
        }
    }
    for (int v = 0; v < vectors; ++v) {
        Terms::template put<V>(dst + start[v], sum[v]);
        finishLags<Terms, V>(src, common, srcLen, dst, start[v]);
    }
}

// Up to four vectors of lags at a time.
template <class Terms, class V>
void correlateLanes(const typename Terms::Element* src, std::ptrdiff_t srcLen, typename Terms::Element* dst,
                    std::ptrdiff_t lags) {
    for (std::ptrdiff_t lag = 0; lag < lags; lag += 4 * V::lanes) {
        if (lags - lag <= V::lanes) {
            correlateVectors<Terms, V, 1>(src, srcLen, dst, lag, lags);
        } else if (lags - lag <= 2 * V::lanes) {
            correlateVectors<Terms, V, 2>(src, srcLen, dst, lag, lags);
        } else {
            correlateVectors<Terms, V, 4>(src, srcLen, dst, lag, lags);
        }
    }
}

// The first lags values of the autocorrelation of srcLen samples; lags is at most srcLen.
template <class Terms>
void correlate(const typename Terms::Element* src, std::ptrdiff_t srcLen, typename Terms::Element* dst,
               std::ptrdiff_t lags) {
    using V = Wide<typename Terms::Number>;
    using Narrow = NarrowLags<Terms>;
    if (lags >= V::lanes) return correlateLanes<Terms, V>(src, srcLen, dst, lags);
    if constexpr (V::lanes > 2 * Narrow::lanes) {
        using Half = decltype(lowHalf(V{}));
        if (lags >= Half::lanes) return correlateLanes<Terms, Half>(src, srcLen, dst, lags);
    }
    if (lags >= Narrow::lanes) return correlateLanes<Terms, Narrow>(src, srcLen, dst, lags);
    for (std::ptrdiff_t lag = 0; lag < lags; ++lag) dst[lag] = finishedLag<Terms>({}, src, 0, srcLen, lag);
}

// Singles from 16-bit samples: products of two neighbouring samples are summed exactly, each sum is rounded to single
// and added in single.
inline void correlate(const std::int16_t* src, std::ptrdiff_t srcLen, float* dst, std::ptrdiff_t lags) {
    std::fill(dst, dst + lags, 0.0f);
    for (std::ptrdiff_t n = 0; n < srcLen; n += 2) {
        const std::ptrdiff_t both = std::clamp<std::ptrdiff_t>(srcLen - 1 - n, 0, lags);
        if (both == 0) {  // the last of an odd number, with itself
            dst[0] += static_cast<float>(src[n] * src[n]);
            break;
        }
        const std::int32_t a0 = src[n], a1 = src[n + 1];
        for (std::ptrdiff_t k = 0; k < both; ++k) {
            const auto sum = static_cast<std::int32_t>(static_cast<std::uint32_t>(a0 * src[n + k]) +
                                                       static_cast<std::uint32_t>(a1 * src[n + k + 1]));
            const auto term = static_cast<float>(sum);
            dst[k] += term == -2147483648.0f ? 2147483648.0f : term;  // only 2^31 wraps: four times -32768
        }
        // The lag at which the second product has left the samples.
        if (both < lags) dst[both] += static_cast<float>(a0 * src[n + both]);
    }
}

}  // namespace vorn
